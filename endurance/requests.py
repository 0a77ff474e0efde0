#!/usr/bin/env python3
"""Requests that no browser sends, answered over a socket: requests.py FOLDER_OF_THE_PROGRAMS"""
import contextlib
import functools
import glob
import itertools
import random
from pathlib import Path

from endurance import *

HEAD = b"HTTP/1.0 200 OK\r\nServer: Pixmora! Digital Media Software v1.0\r\nContent-Type: %s\r\nPragma: no-cache\r\n"
BARE = [b"Bad Request", b"Bad Request!", b"File Not Found!", b"Picture Not Found!", b"Not a Valid Picture!"]
RAW_PAGE = re.compile(rb'<html><head><title></title></head><body bgcolor="(white|#.*)"></body></html>', re.S)
CONTENT_TYPES = [b"text/html", b"image/gif", b"image/jpeg", b"image/x-icon", b"application/octet-stream"]
FIRST_SIGN = 1.0  # s within which every request is answered or closed
GOOD = [
    b"GET /ShowHelp HTTP/1.0\r\n\r\n",
    b"GET /ShowAlbumMedia?1&thumbs&1 HTTP/1.1\r\nHost: example.org\r\nConnection: keep-alive\r\n\r\n",
    b"GET /Border?A0B1C2 HTTP/1.0\r\nCookie: a=b; ms_username=Ann; c=d\r\n\r\n",
    b"GET /ShowPicture?1&thumb&/picture_00.bmp HTTP/1.0\r\n\r\n",
    b"GET /ShowGraphic?movie.gif HTTP/1.0\r\n\r\n",
    b"GET /ShowAlbum?1&list&1&Private HTTP/1.0\r\nUser-Agent: Mozilla/5.0 (X11; Linux x86_64)\r\n\r\n",
    b"GET /ShowDetails?1&nocount&/picture_01.bmp HTTP/1.0\r\nAccept: */*\r\n\r\n",
    b"GET /ShowMovie?1&fullnocount&/clip.avi HTTP/1.0\r\n\r\n",
    b"POST /SendLogin HTTP/1.0\r\nContent-Type: application/x-www-form-urlencoded\r\n\r\n"
    b"username=Ann&password=secret&args=1%26thumbs%261",
]


def make_site(programs):
    """A site with odd files in its album, a user, and files beside the album that nobody may see."""
    site = Site(programs)
    for name, content in [("broken.bmp", b"BM" + bytes(100)), ("empty.bmp", b""), ("clip.avi", b"RIFF" + bytes(5000))]:
        Path(site.album, name).write_bytes(content)
    for name in ["Private", "folder.bmp"]:
        Path(site.album, name).mkdir()
    Path(site.album, "Private", "closed.bmp").write_bytes(bitmap())
    site.control("user", "add", "Ann", "secret")
    site.start()
    return site


def is_known_answer(answer):
    """Whether the bytes are one of the answers that the server has at all."""
    if not answer or answer in BARE or RAW_PAGE.fullmatch(answer):
        return True
    return any(answer.startswith(HEAD % kind) for kind in CONTENT_TYPES)


def complain(row, name, seen):
    """Tells on standard error what a row's count means."""
    print("%s: %s: %.200r" % (row, name, seen), file=sys.stderr)


class Watch:
    """What a run of requests did: faults, the slowest first sign of life, and whether descriptors and memory returned."""

    def __init__(self, site, row):
        self.site, self.row, self.faults, self.slowest = site, row, 0, 0.0
        self.descriptors, self.resident = site.descriptors(), site.resident_kb()

    def send(self, name, request, is_right=is_known_answer):
        try:
            talk = Talk(self.site.port, request)
        except OSError as error:
            self.fault(name, error)
            return b""
        self.slowest = max(self.slowest, talk.seconds)
        if not is_right(talk.answer) or talk.seconds > FIRST_SIGN:
            self.fault(name, "%.2f s %.150r" % (talk.seconds, talk.answer))
        return talk.answer

    def fault(self, name, seen):
        self.faults += 1
        complain(self.row, name, seen)

    def left_over(self):
        """Descriptors that have not come back, after a moment for the last closing."""
        end = time.monotonic() + 3
        while self.site.descriptors() > self.descriptors and time.monotonic() < end:
            time.sleep(0.05)
        return self.site.descriptors() - self.descriptors

    def grown_kb(self):
        return self.site.resident_kb() - self.resident

    def report(self, results, what, times, growth_limit_kb=None):
        alive = self.site.is_alive()
        left, grown = (self.left_over(), self.grown_kb()) if alive else (0, 0)
        seen = "%d wrong, slowest %.1f ms, %d descriptors left, %+d kB%s" % (
            self.faults, 1000 * self.slowest, left, grown, "" if alive else ", the process ended")
        wanted = "0 wrong, each answered or closed in 1 s, 0 descriptors left, process alive"
        met = alive and not self.faults and left <= 0
        if growth_limit_kb is not None:
            wanted += ", memory +%d kB at most" % growth_limit_kb
            met = met and grown <= growth_limit_kb
        results.add(self.row, what, times, seen, wanted, met)


def traversals():
    """Paths that would lead out of a shared folder, if any of their spellings were taken for "..". The lists of a
    security package join in when it is installed."""
    ups = ["..", "%2e%2e", "%2E.", "%252e%252e", "..%00", ".%00.", "%c0%ae%c0%ae", "%uff0e%uff0e", "...", "....", ".. ", "..;",
           "%e0%80%ae%e0%80%ae", "..%01", "..%0d%0a", "%%32%65%%32%65", ".%2e", "..+", "..**", "..*", "\"..\"", "..::$DATA"]
    separators = ["/", "\\", "//", "%2f", "%5c", "%255c", "%252f", "/./", "%c0%af", "%c1%9c", "\\/", "/\\", "&", "%26", "*"]
    starts = ["", "/", "\\", "/Private/", "/picture_00.bmp/", "/./", "//", "/folder.bmp/../"]
    ends = ["outside.bmp", "home/db_v9.mdb", "etc/passwd"]
    paths = [start + separator.join([up] * depth + [end])
             for start, separator, up, depth, end in itertools.product(starts, separators, ups, (1, 2, 8), ends)]
    absolute = ["/etc/passwd", "file:///etc/passwd", "\\\\127.0.0.1\\c$\\boot.ini", "C:\\boot.ini", "/proc/self/environ",
                "/dev/zero", "/dev/stdin", "/proc/self/fd/0", "-outside/outside.bmp", "con", "nul.bmp", "aux.bmp", "|id", "$(id)"]
    lists = []
    for pattern in ["Injections/Traversal.txt", "Injections/All_attack.txt", "vulns/dirTraversal*.txt", "vulns/cgis.txt"]:
        for name in sorted(glob.glob("/usr/share/wfuzz/wordlist/" + pattern)):
            lists += Path(name).read_text("latin-1").splitlines()
    return paths, absolute + lists


def check_traversals(site, results):
    """H4. Beside the album lie files of known content and names; none of either may come out, and no database, password
    file or directory from outside."""
    secret, unasked = b"outside-%d" % random.randrange(10 ** 9), b"unasked-%d" % random.randrange(10 ** 9)
    for folder in [site.folder, site.album + "-outside"]:
        Path(folder).mkdir(exist_ok=True)
        Path(folder, "outside.bmp").write_bytes(secret + bitmap())
        Path(folder, unasked.decode() + ".bmp").write_bytes(bitmap())
    marks = [secret, unasked, b"root:x:0:0", b"SQLite format 3"]
    paths, strange = traversals()
    chance = random.Random(4)
    targets = ["/ShowPicture?1&full&%s", "/ShowPicture?1&full&%s.bmp", "/ShowPicture?1&thumb&%s", "/ShowMovie?1&x&%s",
               "/ShowGraphic?%s", "/ShowDetails?1&nocount&%s",
               "/ShowAlbumMedia?1&list&1&%s", "/ShowAlbumDirList?1&thumbs&1&%s", "/%s", "%s"]
    tried = [chance.choice(targets) % path for path in chance.sample(paths, 9000)]
    tried += [target % path for path in strange for target in (chance.sample(targets, 3) if len(strange) > 100 else targets)]

    def is_harmless(answer):
        return is_known_answer(answer) and not any(mark in answer for mark in marks)

    Path(site.album, "inside.bmp").write_bytes(secret)
    if is_harmless(site.get("/ShowPicture?1&full&/inside.bmp")):
        raise RuntimeError("a file with the mark came without it")
    watch = Watch(site, "H4")
    for target in tried:
        request = b"GET " + target.replace(" ", "%20").encode("latin-1", "replace") + b" HTTP/1.0\r\n\r\n"
        watch.send(target, request, is_harmless)
    what = "paths out of the folders, attack strings and old script names in every place that takes a path (%d strings)" % (
        len(paths) + len(strange))
    watch.report(results, what + "; 0 bytes from outside", len(tried))


def check_too_big(site, results):
    """H6. What is too big is answered by its first 64 kB, at once, and the rest is not kept."""
    megabyte = bytes(b"a" * (1 << 20))
    cases = [
        ("a target of 8 kB", b"GET /" + megabyte[:8192] + b" HTTP/1.0\r\n\r\n", b"Bad Request"),
        ("a line of 1 MB", b"GET /" + megabyte + b" HTTP/1.0\r\n\r\n", b"Bad Request"),
        ("100 headers", b"GET /Blank HTTP/1.0\r\n" + b"X: a\r\n" * 100 + b"\r\n", None),
        ("a header of 64 kB", b"GET /Blank HTTP/1.0\r\nX: " + megabyte[:65536] + b"\r\n\r\n", None),
        ("20 MB of headers without end", b"GET /Blank HTTP/1.0\r\n" + b"X: a\r\n" * 3500000, None),
        ("20 MB of ten announced gigabytes", b"POST /SendLogin HTTP/1.0\r\nContent-Length: 10737418240\r\n\r\n" + megabyte * 20,
         b"Bad Request"),
        ("20 MB without a blank", megabyte * 20, b""),
    ]
    site.ask(cases[0][1])
    watch, slowest = Watch(site, "H6"), 0.0
    for name, request, wanted in cases:
        for _ in range(5):
            talk = Talk(site.port, request)
            slowest = max(slowest, talk.seconds)
            if not (RAW_PAGE.fullmatch(talk.answer) if wanted is None else talk.answer == wanted):
                watch.fault(name, talk.answer)
    results.add("H6", "too big: " + "; ".join(name for name, _, _ in cases), 5 * len(cases),
                "%d wrong, slowest answer %.1f ms" % (watch.faults, 1000 * slowest), "0 wrong, answered in 100 ms",
                not watch.faults and slowest <= 0.1)
    count = 100
    request = b"GET /Blank HTTP/1.0\r\nX: " + megabyte
    most = [watch.resident]
    senders = [threading.Thread(target=Talk, args=(site.port, request)) for _ in range(count)]
    for thread in senders:
        thread.start()
    while any(thread.is_alive() for thread in senders):
        most.append(site.resident_kb())
        time.sleep(0.005)
    grown = max(most) - watch.resident
    results.add("H6", "1 MB of header on each of 100 connections at once", count, "memory %+d kB at the most" % grown,
                "64 kB a connection at most", grown <= 64 * count)


def mutations(requests, seed, ratio):
    """The requests with bits flipped by zzuf, reproduced from seed and ratio."""
    noise = subprocess.run(["zzuf", "-s", str(seed), "-r", "%.4f" % ratio], input=b"".join(requests), stdout=subprocess.PIPE,
                           check=True).stdout
    ends = list(itertools.accumulate(map(len, requests)))
    return [noise[end - len(request):end] for end, request in zip(ends, requests)]


def check_mutations(site, results):
    """H7."""
    seeds, each = range(20), 5000
    watch = Watch(site, "H7")
    for seed in seeds:
        ratio = 0.001 + 0.001 * seed
        for number, request in enumerate(mutations((GOOD * each)[:each], seed, ratio)):
            watch.send("seed %d, ratio %.3f, number %d" % (seed, ratio, number), request)
            if not site.is_alive():
                break
    what = "good requests with flipped bits (zzuf, seeds 0 to %d, ratio 0.001 to %.3f)" % (seeds[-1], 0.001 * len(seeds))
    watch.report(results, what, each * len(seeds), growth_limit_kb=4096)


def on_a_site(check, programs, results):
    with contextlib.closing(make_site(programs)) as site:
        check(site, results)
        if not site.is_alive() or site.stop() != 0 or site.error_text():
            results.add("H", "the process afterwards", 1, "%.300r" % site.error_text(), "ends with 0, no message", False)


if __name__ == "__main__":
    run_rows([(row, functools.partial(on_a_site, check))
              for row, check in [("H4", check_traversals), ("H6", check_too_big), ("H7", check_mutations)]])
