#!/usr/bin/env python3
"""What strangers' pictures do to the site: media.py FOLDER_OF_THE_PROGRAMS [ROW...]. Pictures of which each is nearly too much;
which are refused the picture engine's tests tell, and what damaged ones hold is the fuzz targets'."""
from clients import *

HEAD = b"HTTP/1.0 200 OK\r\nServer: Pixmora! Digital Media Software v1.0\r\nContent-Type: image/jpeg\r\n" \
       b"Pragma: no-cache\r\n\r\n"
MOST_MEGABYTES = 150
LONGEST_HOLD = 300  # ms


def segment(marker, content):
    return b"\xff" + bytes([marker]) + struct.pack(">H", len(content) + 2) + content


def jpeg_tables(width, height, frame):
    """A JPEG up to its first scan, with tables of one code each: "0" is no difference (DC) and end of block (AC).
    frame: 0xC0 baseline, 0xC2 progressive."""
    one_code = bytes([1] + 15 * [0])
    ac_symbol = b"\x00" if frame == 0xC0 else b"\xe0"  # progressive: a run of 16,384 ended blocks and 14 bits more
    return (b"\xff\xd8" + segment(0xDB, b"\0" + bytes([1] * 64))
            + segment(frame, struct.pack(">BHHB", 8, height, width, 1) + b"\1\x11\0")
            + segment(0xC4, b"\x00" + one_code + b"\x00") + segment(0xC4, b"\x10" + one_code + ac_symbol))


def scan(first, last, bits):
    """A scan whose data are zero bits."""
    return segment(0xDA, bytes([1, 1, 0, first, last, 0])) + bytes(bits // 8 + 1)


def flat_jpeg(side):
    """A baseline JPEG of one grey, 2 bits for 64 pixels."""
    return jpeg_tables(side, side, 0xC0) + scan(0, 63, 2 * (side // 8 + 1) ** 2) + b"\xff\xd9"


def flat_progressive_jpeg(side, scans):
    """The same with its coefficients in several scans, of which all but the first are next to nothing."""
    blocks = (side // 8 + 1) ** 2
    later = scan(1, 63, 15 * (blocks // 16384 + 1))
    return jpeg_tables(side, side, 0xC2) + scan(0, 0, blocks) + (scans - 1) * later + b"\xff\xd9"


def lying_bitmap(width, height):
    """154 bytes that promise width times height pixels."""
    return (b"BM" + struct.pack("<IHHI", 154, 0, 0, 54)
            + struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, 0, 0, 0, 0, 0) + bytes(100))


def lying_gif(side, frames):
    frame = b"," + struct.pack("<HHHHB", 0, 0, side, side, 0) + b"\x02\x02\x4c\x01\x00"
    return b"GIF89a" + struct.pack("<HHBBB", side, side, 0x80, 0, 0) + b"\0\0\0\xff\xff\xff" + frame * frames + b";"


def grained_jpeg(side, *options):
    """Slopes with noise on them everywhere, by cjpeg."""
    chance = random.Random(0)
    tile = [bytes((x + 2 * y + chance.randrange(40)) % 256 for x in range(256)) * (side // 256 + 1) for y in range(64)]
    grey = b"P5 %d %d 255\n" % (side, side) + b"".join(tile[y % 64][:side] for y in range(side))
    return subprocess.run(["cjpeg", "-quality", "75", *options], input=grey, stdout=subprocess.PIPE, check=True).stdout


# (row, what, the file's end, its content, within ms)
BOMBS = [
    ("I1", "JPEG of 248 megapixels, just below the limit", "jpg", lambda: flat_jpeg(15744), 500),
    ("I1", "JPEG of 100 megapixels with grain", "jpg", lambda: grained_jpeg(10000), 1000),
    ("I1", "BMP of 8,000 by 4,000 without its pixels", "bmp", lambda: lying_bitmap(8000, 4000), 500),
    ("I2", "progressive JPEG of 49 megapixels with grain", "jpg", lambda: grained_jpeg(7000, "-progressive"), 1000),
    ("I3", "JPEG of 49 megapixels and as many scans as are taken", "jpg", lambda: flat_progressive_jpeg(7000, 20), 2000),
    ("I5", "GIF of 2,000 frames of 5,000 squared", "gif", lambda: lying_gif(5000, 2000), 200),
]


def try_bomb(bomb, programs, results):
    """Three times; the quickest counts, because the machine's other work is not the picture's. The page that somebody
    asks for beside them tells how long the message loop stands still."""
    row, what, end, make, most = bomb
    content, times = make(), 3
    with tempfile.TemporaryDirectory(prefix="pixmora-album-") as album, Site(programs, album=album) as site:
        Path(album, "a." + end).write_bytes(content)
        forget_memory_peak(site.pid)
        before, converted, waits = site.resident_kb(), 0, []
        with Probe(site, every=0.01, request=LOGOUT) as probe:
            for _ in range(times):
                begun = time.monotonic()
                answer = site.get("/ShowPicture?1&thumb&/a." + end, timeout=60)
                waits.append(1000 * (time.monotonic() - begun))
                converted += answer.startswith(HEAD + b"\xff\xd8")
        grown = (memory_kb(site.pid, "VmHWM") - before) / 1024
        took, held = min(waits), 1000 * max(probe.waits)
        results.add(row, "%s, %d kB" % (what, len(content) // 1024), times,
                    "%d pictures in %.0f ms, %.0f MB, a page beside it after %.0f ms" % (converted, took, grown, held),
                    "a picture, <= %d ms, <= %d MB, <= %d ms" % (most, MOST_MEGABYTES, LONGEST_HOLD),
                    converted == times and took <= most and grown <= MOST_MEGABYTES and held <= LONGEST_HOLD
                    and site.is_alive())


if __name__ == "__main__":
    run_rows([(bomb[0], functools.partial(try_bomb, bomb)) for bomb in BOMBS])
