#!/usr/bin/env python3
"""Writes the inputs that each fuzz target begins with: make_seeds.py FOLDER, one folder a target below it."""
import os
import struct
import sys
import zlib

MEDIA = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../tests/platform/media")

ALBUM_TARGETS = ["", "Index", "ShowHelp", "favicon.ico", "ShowStats", "ShowPopular?thumbs", "Show.Help", "Blank",
                 "ShowAlbum?1&thumbs&1&a%20b&c&", "ShowAlbum?2&slideshow&1&play&0&5&x", "ShowAlbum?9&thumbs&1",
                 "ShowAlbum?ShowPopular&thumbs", "ShowAlbum?x&thumbs&1", "ShowAlbum?1&thumbs", "ShowAlbum?1&t&1&%zz",
                 "ShowPicture?1&thumb&/a%2541.jpg", "ShowPicture?1*thumb**x", "ShowMovie?1&%25252541", "X?%41%2%41"]

TEXTS = {
    "RequestGrammar": ["GET /%s HTTP/1.0\r\nHost: x\r\n\r\n" % target for target in ALBUM_TARGETS] +
                      ["GET /x", "GET", "a & b+c#d 100%.jpg", "caf\u00e9_au.lait.jpg",
                       "R<amp>and<amp>B <percent>num<percent>"],
    "Login": ["GET /X?1 HTTP/1.0\r\nCookie: password=x; ms_username=Ann; a=b\r\nAge: 1\r\n\r\n",
              "Cookie: ms_username\r\n\r\n",
              "POST /SendLogin HTTP/1.0\r\n\r\nusername=Ann&password=p+q&args=1%26thumbs%261%26a%2Bb\r\n",
              "username=a&password=b", "username='&password=\"", "username&x=1"],
    "LoginGathering": ["\4\nusername=Ann&password=p&args=1%26thumbs%261", "\0 HTTP/1.0\nx", "\xff\nContent-Length: 3\n"],
    "ForwardedAddress": ["X-Forwarded-For: 192.0.2.1, 10.0.0.1\r\n", "10.1.2.3\n10.0.0.0/8", "2001:db8::1\n2001:db8::/32",
                         "::ffff:192.0.2.1", "example.org:8080", "https://example.org/a", "[::1]:80"],
    "Statements": ["AlbumName='Trips' and WhichDay=#3/1/2004#", "Username LIKE '*n?#' or not (Admin=TRUE)",
                   "[Order]<>-5 and a is not null or b IS NULL", "a<=2.5 and \"x\"\"y\" >= c and d=FALSE",
                   "SELECT * FROM Users WHERE Username not like 'a*' ORDER BY Password DESC, Username",
                   "SELECT SUM(Visitors) AS v, COUNT(*) AS n, Max(Thumbs) FROM StatsDaily WHERE WhichDay<#2004-03-01#",
                   "SELECT Username, [Password] AS p FROM Users", "Users", "Ann", "O%34Brien", "' or 'a'='a", "b?b"],
    "Like": ["Private*\nPrivate Stuff", "[A-C]?#[!x]\nBa7y", "*.jpg;*.gif\na.GIF", "[[]*]\n[abc]", "*a*a*a*b\naaaaaaaa"],
    "StripTags": ["\nplain <b>bold</b> <br", "b, /b\n <b>bold</b><i>not</i>\r\n"],
    "IniFiles": ["# remark\n[HKCU\\Software\\X]\nName=text%20\nNumber=dword:15\n;remark\n[broken\nbroken\n%5Bn=%25%34\n",
                 "[Orientation]\n1 = 'upright'\n[Model]\nFormat=\"@X!\"\n", "\ufeff[a]\r\nb=c\r\n[A]\r\nB=d\r\n",
                 "name\nvalue\n \x01"],
}

# Number, format, count, bytes: an entry for each way that a value becomes a text.
EXIF_ENTRIES = [
    (270, 2, 3, b"R98\0"), (272, 2, 9, b"Acme Snap"), (274, 3, 1, 6), (282, 5, 1, (72, 1)), (318, 5, 2, (313, 1000, 2, 3)),
    (37122, 5, 1, (6, 4)), (33434, 5, 1, (1, 250)), (33437, 5, 1, (28, 10)), (37378, 5, 1, (3, 1)),
    (36864, 7, 4, b"0210"), (37121, 7, 4, b"\1\2\3\0"), (37500, 7, 6, b"a\x1f\x80 b\x7f"), (41728, 7, 1, b"\3\0\0\0"),
    (37510, 7, 10, b"ASCII\0\0\0hi"), (37377, 10, 1, (7, 1)), (37380, 10, 1, (2**32 - 1, 3)), (37379, 10, 1, (1, 2)),
    (5001, 6, 1, b"\x80\0\0\0"), (5002, 9, 1, 2**31), (5003, 1, 1, b"\7\0\0\0"), (5004, 99, 1, 7), (5005, 12, 1, (0, 0))]


def exif_directory(order, offset, entries):
    head, values = struct.pack(order + "H", len(entries)), b""
    behind = offset + 2 + 12 * len(entries)
    for tag, kind, count, value in entries:
        if isinstance(value, int):
            value = struct.pack(order + ("H2x" if kind == 3 else "I"), value)
        elif isinstance(value, tuple):
            value = struct.pack(order + "%dI" % len(value), *value)
        if len(value) > 4:
            value, values = struct.pack(order + "I", behind + len(values)), values + value
        head += struct.pack(order + "HHI", tag, kind, count) + value
    return head + values


def exif_block(order, entries, camera):
    start = b"II*\0\10\0\0\0" if order == "<" else b"MM\0*\0\0\0\10"
    second = 8 + len(exif_directory(order, 8, entries + [(34665, 4, 1, 0)]))
    first = exif_directory(order, 8, entries + [(34665, 4, 1, second)])
    return b"Exif\0\0" + start + first + exif_directory(order, second, camera)


def exif_seeds():
    for order in "<>":
        yield b"\xff\xd8\xff\xe1\1\0" + exif_block(order, EXIF_ENTRIES[:5], EXIF_ENTRIES[5:])
        for entry in EXIF_ENTRIES:
            yield exif_block(order, [entry], [entry])
    yield b"no such mark"


def bitmap(width, height, pixels, bits=24):
    info = struct.pack("<IiiHHIIiiII", 40, width, height, 1, bits, 0, len(pixels), 0, 0, 0, 0)
    return b"BM" + struct.pack("<IHHI", 54 + len(pixels), 0, 0, 54) + info + pixels


def portable_network_graphic(width, height):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    head = chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 0, 0, 0, 0))
    return b"\x89PNG\r\n\x1a\n" + head + chunk(b"IDAT", zlib.compress(bytes((width + 1) * height))) + chunk(b"IEND", b"")


ORIENTATION = exif_block(">", [(274, 3, 1, 6)], [])


def picture_seeds():
    yield bitmap(8, 4, bytes(96))
    yield bitmap(8, -4, bytes(96))
    yield bitmap(30000, 20000, b"")
    yield portable_network_graphic(6, 5)
    with open(MEDIA + "/printers_red.jpg", "rb") as file:
        plain = file.read()
    yield plain
    yield plain.replace(b"\xff\xc0", b"\xff\xc2", 1)
    yield plain[:2] + b"\xff\xe1" + struct.pack(">H", 2 + len(ORIENTATION)) + ORIENTATION + plain[2:]
    yield from media_seeds("gif", "webp")


def media_seeds(*endings):
    for name in sorted(os.listdir(MEDIA)):
        if name.rsplit(".", 1)[1] in endings:
            with open(os.path.join(MEDIA, name), "rb") as file:
                yield file.read()


def main(folder):
    seeds = {name: [text.encode("utf-8") for text in texts] for name, texts in TEXTS.items()}
    seeds.update(Exif=list(exif_seeds()), Pictures=list(picture_seeds()), Movies=list(media_seeds("avi", "mov", "mpg", "mpeg")),
                 Heif=list(media_seeds("heic", "avif")))
    for name, inputs in seeds.items():
        os.makedirs(os.path.join(folder, name), exist_ok=True)
        for number, data in enumerate(inputs):
            with open(os.path.join(folder, name, "seed_%02d" % number), "wb") as file:
                file.write(data)


if __name__ == "__main__":
    main(sys.argv[1])
