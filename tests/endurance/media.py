#!/usr/bin/env python3
"""What strangers' pictures and movies do to the site: media.py FOLDER_OF_THE_PROGRAMS [ROW...]"""
import contextlib
import functools
from pathlib import Path

import hostile
from endurance import *
from store import attached, in_lanes

HEAD = b"HTTP/1.0 200 OK\r\nServer: Pixmora! Digital Media Software v1.0\r\nContent-Type: image/jpeg\r\n" \
       b"Pragma: no-cache\r\n\r\n"
UNREADABLE, CONVERTED = "an empty picture", "a picture"


@contextlib.contextmanager
def empty_album(programs):
    """A running site on an empty album; files that are dropped into it are there at once."""
    with tempfile.TemporaryDirectory(prefix="pixmora-album-") as album:
        with Site(programs, album=album, limits={resource.RLIMIT_CORE: 0}) as site:
            yield site, Path(album)


class Peak:
    """The greatest resident size since it was made, in MB over the size then."""

    def __init__(self, site):
        self.site = site
        Path("/proc/%d/clear_refs" % site.pid()).write_text("5")
        self.before = site.resident_kb()

    def megabytes(self):
        text = Path("/proc/%d/status" % self.site.pid()).read_text()
        return (int(re.search(r"VmHWM:\s*(\d+)", text).group(1)) - self.before) / 1024


def ask_picture(site, name):
    """(what came, the picture's bytes, seconds). Nothing else is asked of the site, so the seconds are also how long
    the message loop stood still."""
    begun = time.monotonic()
    answer = site.get("/ShowPicture?1&thumb&/" + name, timeout=60)
    seconds = time.monotonic() - begun
    if not answer.startswith(HEAD):
        return answer.split(b"\r\n")[-1].decode(errors="replace"), b"", seconds
    body = answer[len(HEAD):]
    return (CONVERTED if body else UNREADABLE), body, seconds


def try_bomb(site, album, results, row, what, name, content, wanted, most=0.5, megabytes=150):
    """Three times; the quickest counts, because the machine's other work is not the picture's."""
    (album / name).write_bytes(content)
    peak = Peak(site)
    tries = [ask_picture(site, name) for _ in range(3)]
    grown = peak.megabytes()
    got = tries[0][0]
    seconds = min(each[2] for each in tries)
    results.add(row, "%s, %d kB" % (what, len(content) // 1024), len(tries), "%s in %.0f ms, %.0f MB" % (got, seconds * 1000, grown),
                "%s, <= %d ms, <= %d MB" % (wanted, most * 1000, megabytes),
                all(each[0] == wanted for each in tries) and seconds <= most and grown <= megabytes and site.is_alive())
    (album / name).unlink()


def i1(programs, results):
    with empty_album(programs) as (site, album):
        bomb = functools.partial(try_bomb, site, album, results, "I1")
        bomb("JPEG of 900 megapixels", "a.jpg", hostile.flat_jpeg(30000, 30000), UNREADABLE)
        bomb("JPEG that says 65,500 squared", "a.jpg", hostile.flat_jpeg(65500, 65500)[:4000], UNREADABLE)
        bomb("JPEG of 144 megapixels", "a.jpg", hostile.flat_jpeg(12000, 12000), CONVERTED)
        bomb("JPEG of 248 megapixels, just below the limit", "a.jpg", hostile.flat_jpeg(15744, 15744), CONVERTED)
        bomb("JPEG of 100 megapixels with grain", "a.jpg", hostile.large_jpeg(10000, 10000), CONVERTED, most=1)
        row = bytes(30000)
        bomb("PNG of 900 megapixels", "a.jpg", hostile.png(30000, 30000, (row for _ in range(30000))), UNREADABLE)
        bomb("BMP of 60,000 squared", "a.bmp", hostile.lying_bitmap(60000, 60000), UNREADABLE)
        bomb("BMP of 8,000 by 4,000 without its pixels", "a.bmp", hostile.lying_bitmap(8000, 4000), CONVERTED)
        bomb("GIF of 65,535 squared", "a.gif", hostile.lying_gif(65535, 65535), UNREADABLE)


def i2(programs, results):
    with empty_album(programs) as (site, album):
        bomb = functools.partial(try_bomb, site, album, results, "I2")
        for side in (7100, 12000, 30000):
            bomb("progressive JPEG of %.0f megapixels" % (side * side / 1e6), "a.jpg",
                 hostile.flat_progressive_jpeg(side, side), UNREADABLE)
        bomb("progressive JPEG of 49 megapixels, just below the limit", "a.jpg",
             hostile.flat_progressive_jpeg(7000, 7000), CONVERTED)
        # What a picture of this size takes; the limit is where it becomes too much.
        bomb("the same with grain", "a.jpg", hostile.large_jpeg(7000, 7000, "-progressive"), CONVERTED, most=1)


def i3(programs, results):
    with empty_album(programs) as (site, album):
        bomb = functools.partial(try_bomb, site, album, results, "I3")
        bomb("JPEG of 1,000 scans", "a.jpg", hostile.flat_progressive_jpeg(4000, 4000, 1000), UNREADABLE)
        bomb("JPEG of 100,000 scans", "a.jpg", hostile.flat_progressive_jpeg(800, 800, 100000), UNREADABLE)
        bomb("JPEG of 100 scans", "a.jpg", hostile.flat_progressive_jpeg(800, 800, 100), CONVERTED)


def sample_pictures():
    rows = hostile.grain(320, 240)
    return {"jpg": hostile.compressed_jpeg(320, rows, 240), "gif": hostile.grey_gif(320, rows),
            "bmp": hostile.grey_bitmap(320, rows), "png.jpg": hostile.png(320, 240, rows)}


def is_fault(got, body, seconds):
    """What a damaged picture may give: nothing, or a whole thumbnail of what there is of it."""
    if got == CONVERTED:
        return hostile.decoded(body) is None
    return got not in (UNREADABLE, "Picture Conversion Error")


def spread(rows):
    """How much there is to see in rows of pixels."""
    values = b"".join(rows)
    return max(values) - min(values)


def sight(body, end):
    """What there is to see in a thumbnail whose file was cut in the middle, or was not."""
    if not body:
        return "nothing"
    rows = hostile.decoded(body)
    quarter = len(rows) // 4
    if end == "bmp":  # its bytes begin with the picture's lowest row
        rows = rows[::-1]
    begun, ended = spread(rows[:quarter]) > 40, spread(rows[-quarter:]) > 40
    return {(True, True): "all", (True, False): "the part that is there"}.get((begun, ended), "neither")


def damage_pictures(programs, job):
    """Cuts and mutants of one picture."""
    end, content, mutants = job
    kinds = {}
    faults, slowest, cuts = 0, 0, 200
    with empty_album(programs) as (site, album):
        name = "a." + end
        variants = [content[:len(content) * i // cuts] for i in range(cuts)]
        variants += [hostile.flipped(content, seed, 0.004) for seed in range(mutants)]
        for variant in variants:
            (album / name).write_bytes(variant)
            got, body, seconds = ask_picture(site, name)
            kinds[got] = kinds.get(got, 0) + 1
            faults += is_fault(got, body, seconds)
            slowest = max(slowest, seconds)
        (album / name).write_bytes(content[:len(content) // 2])
        half = ask_picture(site, name)[1]
        (album / name).write_bytes(content)
        whole = ask_picture(site, name)[1]
        return {"end": end, "count": len(variants), "faults": faults, "slowest": slowest, "alive": site.is_alive(),
                "kinds": kinds, "half": sight(half, end), "whole": sight(whole, end)}


def i4(programs, results):
    jobs = [(end, content, 1000) for end, content in sample_pictures().items()]
    for found in in_lanes(functools.partial(damage_pictures, programs), jobs, 2):
        kinds = ", ".join("%d x %s" % (count, kind) for kind, count in sorted(found["kinds"].items()))
        results.add("I4", "%s cut at 200 places and 1,000 mutants" % found["end"], found["count"],
                    "%s; slowest %.0f ms" % (kinds, found["slowest"] * 1000), "no crash, each whole or empty, <= 500 ms",
                    found["alive"] and found["faults"] == 0 and found["slowest"] <= 0.5)
        results.add("I4", "... half a %s, and the same file whole again" % found["end"], 1,
                    "%s, %s" % (found["half"], found["whole"]), "nothing or the part that is there, all",
                    found["half"] in ("nothing", "the part that is there") and found["whole"] == "all")


def i5(programs, results):
    with empty_album(programs) as (site, album):
        try_bomb(site, album, results, "I5", "GIF of 2,000 frames of 5,000 squared", "a.gif",
                 hostile.lying_gif(5000, 5000, 2000), CONVERTED, most=0.2)


def ask_details(site, name):
    """(whether a page came, seconds)"""
    begun = time.monotonic()
    answer = site.get("/ShowDetails?1&nocount&/" + name, timeout=60)
    return answer.rstrip().endswith(b"</html>"), time.monotonic() - begun


PLAYLISTS = {
    "hls.mpg": "#EXTM3U\n#EXT-X-TARGETDURATION:5\n#EXTINF:5,\n%s\n#EXT-X-ENDLIST\n",
    "hls.mov": "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=1\nfile://%s\n",
    "net.avi": "#EXTM3U\n#EXT-X-TARGETDURATION:5\n#EXTINF:5,\nhttp://127.0.0.1:1/film.ts\n#EXT-X-ENDLIST\n",
    "concat.mov": "ffconcat version 1.0\nfile '%s'\n",
    "concat.avi": "ffconcat version 1.0\nfile 'concat:%s'\n",
    "sdp.mpg": "v=0\no=- 0 0 IN IP4 127.0.0.1\ns=x\nc=IN IP4 127.0.0.1\nt=0 0\nm=video 9 RTP/AVP 96\n",
    "stream.avi": '<?xml version="1.0"?><MPD type="static"><BaseURL>%s</BaseURL></MPD>',
}


def i7(programs, results):
    with empty_album(programs) as (site, album), tempfile.TemporaryDirectory(prefix="pixmora-secret-") as elsewhere:
        secret = elsewhere + "/secret.avi"
        hostile.movie(secret)
        hostile.movie(str(album / "good.avi"))
        good, _ = ask_details(site, "good.avi")  # the movie readers are loaded at their first use
        for name, text in PLAYLISTS.items():
            (album / name).write_text(text % secret if "%s" in text else text)
        slowest = max(ask_details(site, name)[1] for name in PLAYLISTS)
        log = site.folder + "/trace"
        with attached(site, log, ["strace", "-f", "-o", log, "-e", "trace=open,openat,openat2,connect"]):
            pages = sum(ask_details(site, name)[0] for name in PLAYLISTS)
        calls = Path(log).read_text()
        own = sum("/" + name in calls for name in PLAYLISTS)
        others = calls.count("secret") + calls.count("connect(")
        results.add("I7", "movies that are playlists of others: nothing else opened, no address asked", len(PLAYLISTS),
                    "%d others opened or asked; %d opened themselves; slowest %.0f ms" % (others, own, slowest * 1000),
                    "0, <= 200 ms", good and others == 0 and own == pages == len(PLAYLISTS) and slowest <= 0.2)


MOVIES = {"avi": ("avi", []), "mov": ("mov", []), "mpg": ("mpg", []), "mp4": ("mov", []), "mkv": ("avi", [])}


def damage_movies(programs, job):
    kind, mutants = job
    shown_as, options = MOVIES[kind]
    with empty_album(programs) as (site, album), tempfile.TemporaryDirectory(prefix="pixmora-movie-") as folder:
        source = "%s/film.%s" % (folder, kind)
        hostile.movie(source, *options)
        content = Path(source).read_bytes()
        name = "film." + shown_as
        (album / name).write_bytes(content)
        good, _ = ask_details(site, name)
        peak = Peak(site)
        slowest = pages = 0
        for seed in range(mutants):
            (album / name).write_bytes(hostile.flipped(content, seed, (0.0005, 0.004, 0.02)[seed % 3]))
            is_page, seconds = ask_details(site, name)
            pages += is_page
            slowest = max(slowest, seconds)
        return {"kind": kind, "count": mutants, "pages": pages, "slowest": slowest, "grown": peak.megabytes(),
                "good": good and site.is_alive()}


def i8(programs, results):
    for found in in_lanes(functools.partial(damage_movies, programs), [(kind, 200) for kind in MOVIES], 2):
        results.add("I8", "mutants of a small %s: details" % found["kind"], found["count"],
                    "%d pages, slowest %.0f ms, %.0f MB" % (found["pages"], found["slowest"] * 1000, found["grown"]),
                    "all, <= 2 s, <= 100 MB, no crash", found["good"] and found["pages"] == found["count"]
                    and found["slowest"] <= 2 and found["grown"] <= 100)


ROWS = [("I1", i1), ("I2", i2), ("I3", i3), ("I4", i4), ("I5", i5), ("I7", i7), ("I8", i8)]


if __name__ == "__main__":
    run_rows(ROWS)
