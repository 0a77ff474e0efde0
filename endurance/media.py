#!/usr/bin/env python3
"""What strangers' pictures do to the site: media.py FOLDER_OF_THE_PROGRAMS [ROW...]. What damaged ones hold is the fuzz targets'."""
import functools

from clients import *
from hostile import flat_jpeg, flat_progressive_jpeg, large_jpeg, lying_bitmap, lying_gif, png

HEAD = b"HTTP/1.0 200 OK\r\nServer: Pixmora! Digital Media Software v1.0\r\nContent-Type: image/jpeg\r\n" \
       b"Pragma: no-cache\r\n\r\n"
UNREADABLE, CONVERTED = "an empty picture", "a picture"
# (row, what, the file's end, its content, what is wanted, within ms)
BOMBS = [
    ("I1", "JPEG of 900 megapixels", "jpg", lambda: flat_jpeg(30000, 30000), UNREADABLE, 500),
    ("I1", "JPEG that says 65,500 squared", "jpg", lambda: flat_jpeg(65500, 65500)[:4000], UNREADABLE, 500),
    ("I1", "JPEG of 248 megapixels, just below the limit", "jpg", lambda: flat_jpeg(15744, 15744), CONVERTED, 500),
    ("I1", "JPEG of 100 megapixels with grain", "jpg", lambda: large_jpeg(10000, 10000), CONVERTED, 1000),
    ("I1", "PNG of 900 megapixels", "jpg", lambda: png(30000, 30000, (bytes(30000) for _ in range(30000))), UNREADABLE, 500),
    ("I1", "BMP of 60,000 squared", "bmp", lambda: lying_bitmap(60000, 60000), UNREADABLE, 500),
    ("I1", "BMP of 8,000 by 4,000 without its pixels", "bmp", lambda: lying_bitmap(8000, 4000), CONVERTED, 500),
    ("I1", "GIF of 65,535 squared", "gif", lambda: lying_gif(65535, 65535), UNREADABLE, 500),
    *[("I2", "progressive JPEG of %.0f megapixels" % (side * side / 1e6), "jpg",
       functools.partial(flat_progressive_jpeg, side, side), UNREADABLE, 500) for side in (7100, 30000)],
    ("I2", "progressive JPEG of 49 megapixels, just below the limit", "jpg", lambda: flat_progressive_jpeg(7000, 7000),
     CONVERTED, 500),
    # What a picture of this size takes; the limit is where it becomes too much.
    ("I2", "the same with grain", "jpg", lambda: large_jpeg(7000, 7000, "-progressive"), CONVERTED, 1000),
    ("I3", "JPEG of 100,000 scans", "jpg", lambda: flat_progressive_jpeg(800, 800, 100000), UNREADABLE, 500),
    ("I3", "JPEG of 100 scans", "jpg", lambda: flat_progressive_jpeg(800, 800, 100), CONVERTED, 500),
    ("I3", "JPEG of 49 megapixels and as many scans as are taken", "jpg", lambda: flat_progressive_jpeg(7000, 7000, 20), CONVERTED,
     2000),
    ("I5", "GIF of 2,000 frames of 5,000 squared", "gif", lambda: lying_gif(5000, 5000, 2000), CONVERTED, 200),
]
MOST_MEGABYTES = 150
LONGEST_HOLD = 300  # ms


def ask_picture(site, name):
    """(what came, seconds)."""
    begun = time.monotonic()
    answer = site.get("/ShowPicture?1&thumb&/" + name, timeout=60)
    seconds = time.monotonic() - begun
    if not answer.startswith(HEAD):
        return answer.split(b"\r\n")[-1].decode(errors="replace"), seconds
    return (CONVERTED if len(answer) > len(HEAD) else UNREADABLE), seconds


def try_bomb(bomb, programs, results):
    """Three times; the quickest counts, because the machine's other work is not the picture's. The page that somebody
    asks for beside them tells how long the message loop stands still."""
    row, what, end, make, wanted, most = bomb
    content = make()
    with tempfile.TemporaryDirectory(prefix="pixmora-album-") as album, Site(programs, album=album) as site:
        Path(album, "a." + end).write_bytes(content)
        forget_memory_peak(site.pid)
        before = site.resident_kb()
        with Probe(site, every=0.01, request=b"GET /ShowLogout HTTP/1.0\r\n\r\n") as probe:
            tries = [ask_picture(site, "a." + end) for _ in range(3)]
        grown = (memory_kb(site.pid, "VmHWM") - before) / 1024
        took, held = 1000 * min(seconds for _, seconds in tries), 1000 * max(probe.waits)
        results.add(row, "%s, %d kB" % (what, len(content) // 1024), len(tries),
                    "%s in %.0f ms, %.0f MB, a page beside it after %.0f ms" % (tries[0][0], took, grown, held),
                    "%s, <= %d ms, <= %d MB, <= %d ms" % (wanted, most, MOST_MEGABYTES, LONGEST_HOLD),
                    all(got == wanted for got, _ in tries) and took <= most and grown <= MOST_MEGABYTES
                    and held <= LONGEST_HOLD and site.is_alive())


if __name__ == "__main__":
    run_rows([(bomb[0], functools.partial(try_bomb, bomb)) for bomb in BOMBS])
