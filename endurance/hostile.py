"""Makers of pictures that mean no good."""
import random
import struct
import subprocess
import tempfile
import zlib


def segment(marker, content):
    return b"\xff" + bytes([marker]) + struct.pack(">H", len(content) + 2) + content


def jpeg_tables(width, height, frame, components=1):
    """A JPEG up to its first scan, with tables of one code each: "0" is no difference (DC) and end of block (AC).
    frame: 0xC0 baseline, 0xC2 progressive."""
    parts = b"".join(bytes([number + 1, 0x11, 0]) for number in range(components))
    one_code = bytes([1] + 15 * [0])
    ac_symbol = b"\x00" if frame == 0xC0 else b"\xe0"  # progressive: a run of 16,384 ended blocks and 14 bits more
    return (b"\xff\xd8" + segment(0xDB, b"\0" + bytes([1] * 64))
            + segment(frame, struct.pack(">BHHB", 8, height, width, components) + parts)
            + segment(0xC4, b"\x00" + one_code + b"\x00") + segment(0xC4, b"\x10" + one_code + ac_symbol))


def scan(first, last, bits, component=1):
    """A scan of one component whose data are zero bits."""
    return segment(0xDA, bytes([1, component, 0, first, last, 0])) + bytes(bits // 8 + 1)


def blocks(width, height):
    return ((width + 7) // 8) * ((height + 7) // 8)


def flat_jpeg(width, height):
    """A baseline JPEG of one grey, 2 bits for 64 pixels."""
    return jpeg_tables(width, height, 0xC0) + scan(0, 63, 2 * blocks(width, height)) + b"\xff\xd9"


def flat_progressive_jpeg(width, height, scans=2):
    """The same with its coefficients in several scans, of which all but the first are next to nothing."""
    later = scan(1, 63, 15 * (blocks(width, height) // 16384 + 1))
    return jpeg_tables(width, height, 0xC2) + scan(0, 0, blocks(width, height)) + (scans - 1) * later + b"\xff\xd9"


def lying_bitmap(width, height):
    """154 bytes that promise width times height pixels."""
    return (b"BM" + struct.pack("<IHHI", 154, 0, 0, 54)
            + struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, 0, 0, 0, 0, 0) + bytes(100))


def lying_gif(width, height, frames=1):
    frame = b"," + struct.pack("<HHHHB", 0, 0, width, height, 0) + b"\x02\x02\x4c\x01\x00"
    return b"GIF89a" + struct.pack("<HHBBB", width, height, 0x80, 0, 0) + b"\0\0\0\xff\xff\xff" + frame * frames + b";"


def chunk(kind, content):
    return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))


def png(width, height, rows):
    """rows: the bytes of each row, 8 bits of grey a pixel."""
    packer = zlib.compressobj(9)
    data = b"".join(packer.compress(b"\0" + row) for row in rows) + packer.flush()
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 0, 0, 0, 0))
            + chunk(b"IDAT", data) + chunk(b"IEND", b""))


def grain(width, height, seed=0):
    """Rows of a picture that has something to see everywhere: slopes with noise on them."""
    chance = random.Random(seed)
    return [bytes((x + 2 * y + chance.randrange(40)) % 256 for x in range(width)) for y in range(height)]


def compressed_jpeg(width, rows, height, *options):
    """A JPEG by cjpeg. rows: an iterable of the rows' bytes, 8 bits of grey a pixel."""
    with tempfile.TemporaryFile() as output:
        with subprocess.Popen(["cjpeg", "-quality", "75", *options], stdin=subprocess.PIPE, stdout=output) as maker:
            maker.stdin.write(b"P5 %d %d 255\n" % (width, height))
            for row in rows:
                maker.stdin.write(row)
        output.seek(0)
        return output.read()


def large_jpeg(width, height, *options):
    """A JPEG of that size with grain everywhere."""
    band = grain(256, 64)
    tile = [row * (width // 256 + 1) for row in band]
    return compressed_jpeg(width, (tile[y % 64][:width] for y in range(height)), height, *options)


