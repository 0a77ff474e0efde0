#!/usr/bin/env python3
"""Requests that no browser sends, answered over a socket: requests.py FOLDER_OF_THE_PROGRAMS [ROW...]. Malformed ones are in
the tests' table; what damaged ones hold is the fuzz targets'."""
import itertools

from endurance import *

BARE = [b"", b"Bad Request", b"Bad Request!", b"File Not Found!", b"Picture Not Found!", b"Not a Valid Picture!"]
RAW_PAGE = re.compile(rb'<html><head><title></title></head><body bgcolor="(white|#.*)"></body></html>', re.S)
HEAD = re.compile(rb"HTTP/1.0 200 OK\r\nServer: Pixmora! Digital Media Software v1.0\r\n"
                  rb"Content-Type: (text/html|image/gif|image/jpeg|image/x-icon|application/octet-stream)\r\nPragma: no-cache\r\n")


def traversals():
    """Paths that would lead out of a shared folder, if any of their spellings were taken for ".."."""
    ups = ["..", "%2e%2e", "%2E.", "%252e%252e", "..%00", ".%00.", "%c0%ae%c0%ae", "%uff0e%uff0e", "...", "....", ".. ", "..;",
           "%e0%80%ae%e0%80%ae", "..%01", "..%0d%0a", "%%32%65%%32%65", ".%2e", "..+", "..**", "..*", "\"..\"", "..::$DATA"]
    separators = ["/", "\\", "//", "%2f", "%5c", "%255c", "%252f", "/./", "%c0%af", "%c1%9c", "\\/", "/\\", "&", "%26", "*"]
    starts = ["", "/", "\\", "/Private/", "/picture_00.bmp/", "/./", "//", "/folder.bmp/../"]
    ends = ["outside.bmp", "home/db_v9.mdb", "etc/passwd"]
    paths = [start + separator.join([up] * depth + [end])
             for start, separator, up, depth, end in itertools.product(starts, separators, ups, (1, 2, 8), ends)]
    absolute = ["/etc/passwd", "file:///etc/passwd", "\\\\127.0.0.1\\c$\\boot.ini", "C:\\boot.ini", "/proc/self/environ",
                "/dev/zero", "/dev/stdin", "/proc/self/fd/0", "-outside/outside.bmp", "con", "nul.bmp", "aux.bmp", "|id", "$(id)"]
    return paths, absolute


def check_traversals(programs, results):
    """H4. Beside the album lie files of known content and names; none of either may come out, and no database, password
    file or directory from outside."""
    with Site(programs) as site:
        Path(site.album, "Private").mkdir()
        secret, unasked = b"outside-%d" % random.randrange(10 ** 9), b"unasked-%d" % random.randrange(10 ** 9)
        for folder in [site.folder, site.album + "-outside"]:
            Path(folder).mkdir(exist_ok=True)
            Path(folder, "outside.bmp").write_bytes(secret + bitmap())
            Path(folder, unasked.decode() + ".bmp").write_bytes(bitmap())
        marks = [secret, unasked, b"root:x:0:0", b"SQLite format 3"]
        Path(site.album, "inside.bmp").write_bytes(secret)
        if secret not in site.get("/ShowPicture?1&full&/inside.bmp"):
            raise RuntimeError("a file with the mark came without it")
        paths, strange = traversals()
        chance = random.Random(4)
        targets = ["/ShowPicture?1&full&%s", "/ShowPicture?1&full&%s.bmp", "/ShowPicture?1&thumb&%s", "/ShowMovie?1&x&%s",
                   "/ShowGraphic?%s", "/ShowDetails?1&nocount&%s",
                   "/ShowAlbumMedia?1&list&1&%s", "/ShowAlbumDirList?1&thumbs&1&%s", "/%s", "%s"]
        tried = [chance.choice(targets) % path for path in chance.sample(paths, 9000)]
        tried += [target % path for path in strange for target in targets]
        before, faults, slowest = site.descriptors(), 0, 0.0
        for target in tried:
            talk = Talk(site.port, b"GET " + target.replace(" ", "%20").encode("latin-1", "replace") + b" HTTP/1.0\r\n\r\n")
            slowest = max(slowest, talk.seconds)
            is_known = talk.answer in BARE or RAW_PAGE.fullmatch(talk.answer) or HEAD.match(talk.answer)
            if not is_known or any(mark in talk.answer for mark in marks):
                faults += 1
                print("H4: %s: %.200r" % (target, talk.answer), file=sys.stderr)
        time.sleep(1.5)
        left = site.descriptors() - before
        status = site.stop()
        results.add("H4", "paths out of the folders, and names of the system's, in every place that takes a path "
                    "(%d strings); 0 bytes from outside" % (len(paths) + len(strange)), len(tried),
                    "%d wrong, slowest %.1f ms, %d descriptors left, exit %d" % (faults, 1000 * slowest, left, status),
                    "0 wrong, each answered or closed in 1 s, 0 descriptors left, exit 0",
                    not faults and slowest <= 1 and left <= 0 and status == 0)


def check_too_big(programs, results):
    """H6. What is too big is answered by its first 64 kB, at once, and the rest is not kept."""
    blank, megabyte = b"GET /Blank HTTP/1.0\r\n", bytes(b"a" * (1 << 20))
    cases = [
        ("a target of 8 kB", b"GET /" + megabyte[:8192] + b" HTTP/1.0\r\n\r\n", b"Bad Request"),
        ("a line of 1 MB", b"GET /" + megabyte + b" HTTP/1.0\r\n\r\n", b"Bad Request"),
        ("20 MB of headers without end", blank + b"X: a\r\n" * 3500000, None),
        ("20 MB of ten announced gigabytes", b"POST /SendLogin HTTP/1.0\r\nContent-Length: 10737418240\r\n\r\n" + megabyte * 20,
         b"Bad Request"),
        ("20 MB without a blank", megabyte * 20, b""),
    ]
    count = 100
    with Site(programs) as site:
        site.ask(cases[0][1])
        resident = site.resident_kb()
        talks = [(wanted, Talk(site.port, request)) for _, request, wanted in cases for _ in range(5)]
        wrong = sum(not RAW_PAGE.fullmatch(talk.answer) if wanted is None else talk.answer != wanted for wanted, talk in talks)
        slowest = max(talk.seconds for _, talk in talks)
        results.add("H6", "too big: " + "; ".join(name for name, _, _ in cases), len(talks),
                    "%d wrong, slowest answer %.1f ms" % (wrong, 1000 * slowest), "0 wrong, answered in 100 ms",
                    not wrong and slowest <= 0.1)
        senders = [threading.Thread(target=Talk, args=(site.port, blank + b"X: " + megabyte)) for _ in range(count)]
        for thread in senders:
            thread.start()
        grown = 0
        while any(thread.is_alive() for thread in senders):
            grown = max(grown, site.resident_kb() - resident)
            time.sleep(0.005)
        results.add("H6", "1 MB of header on each of 100 connections at once", count, "memory %+d kB at the most" % grown,
                    "64 kB a connection at most", grown <= 64 * count)


if __name__ == "__main__":
    run_rows([("H4", check_traversals), ("H6", check_too_big)])
