#!/usr/bin/env python3
"""How the site comes back, and how it goes on while something is missing: recovery.py FOLDER_OF_THE_PROGRAMS [ROW...]"""
import contextlib
import random
from pathlib import Path

from endurance import *
from store import AS_ROOT, JPEG_HEAD, QUIET, THUMBS, Load, ask_thumb, copied, is_whole, total, total_running

MEDIA_PAGE = "/ShowAlbumMedia?1&list&1"
FULL = "/ShowPicture?1&full&/picture_01.bmp"


def is_page(answer):
    return answer.startswith(b"HTTP/1.0 200 OK\r\n") and answer.rstrip().endswith(b"</html>")


@contextlib.contextmanager
def read_only(folder):
    """The folder as one that nothing can be written to, not by root either."""
    subprocess.run([*AS_ROOT, "mount", "--bind", folder, folder], check=True)
    subprocess.run([*AS_ROOT, "mount", "-o", "remount,ro,bind", folder], check=True)
    try:
        yield
    finally:
        subprocess.run([*AS_ROOT, "umount", "--lazy", folder], check=True)


def new_lines(site, before):
    return [line for line in site.error_text()[len(before):].split("\n") if line]


# ---- R1

def r1(programs, results):
    """Deaths in a row, each under load, with a start at once after it."""
    with contextlib.closing(Site(programs, limits=QUIET)) as site:
        chance = random.Random(1)
        answered = 0
        for number in (signal.SIGSEGV, signal.SIGABRT, signal.SIGKILL):
            slowest = lost = damaged = 0
            for _ in range(20):
                begun = time.monotonic()
                site.start()
                first = is_page(site.get("/"))
                slowest = max(slowest, time.monotonic() - begun if first else 99)
                load = Load(site)
                time.sleep(chance.uniform(0, 0.5))
                status = site.stop(number)
                load.wait()
                answered += load.answered
                with copied(site.database) as base:
                    lost = max(lost, answered - total(base, THUMBS))
                    damaged += not is_whole(base)
                if status != -number:
                    raise RuntimeError("ended with %d" % status)
            results.add("R1", "%s under load, then started again" % number.name, 20,
                        "a page after %.2f s at the longest; %d lost, %d damaged" % (slowest, lost, damaged),
                        "<= 5 s, 0, 0", slowest <= 5 and lost == damaged == 0)


# ---- R3: something that the site needs is missing

def port_in_use(programs, results):
    with contextlib.closing(Site(programs)) as site:
        with socket.socket() as other:
            other.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
            other.bind(("0.0.0.0", site.port))
            other.listen()
            with contextlib.suppress(RuntimeError):
                site.start()
            status = site.process.wait(20)
        said = new_lines(site, "")
        wanted = ["There is another application already listening on port %d! Please go to Port Setup in Setup and "
                  "choose another port." % site.port]
        site.start()
        results.add("R3", "port in use at the start: says so and ends; free again, it starts", 1,
                    "status %d; %s" % (status, " / ".join(said)), "status 1 and the message",
                    status == 1 and said == wanted and is_page(site.get("/")))


def folder_gone(programs, results):
    with Site(programs) as site:
        away = site.album + "-away"
        rounds = good = 0
        for _ in range(20):
            rounds += 1
            os.rename(site.album, away)
            gone = (is_page(site.get("/")) and is_page(site.get("/ShowAlbum?1&thumbs&1")) and
                    is_page(site.get(MEDIA_PAGE)) and is_page(site.get("/ShowAlbumDirList?1&thumbs&1&")) and
                    site.get(FULL) == b"Picture Not Found!" and site.get("/ShowMovie?1&full&/film.avi") == b"Bad Request"
                    and site.get("/ShowDetails?1&count&/film.avi") == b"File Not Found!" and b"picture_" not in
                    site.get(MEDIA_PAGE))
            os.rename(away, site.album)
            back = b"picture_01" in site.get(MEDIA_PAGE) and len(site.get("/ShowMovie?1&full&/film.avi")) > 300000
            good += gone and back and ask_thumb(site)
        results.add("R3", "album folder taken away and brought back while served: each page answered", rounds,
                    "%d as described" % good, "all", good == rounds and site.is_alive())
        Path(site.album, "long.avi").write_bytes(bytes(30 << 20))  # more than waits on the way
        client = site.connect()
        client.sendall(b"GET /ShowMovie?1&full&/long.avi HTTP/1.0\r\n\r\n")
        client.recv(100)
        shutil.rmtree(site.album)
        rest = len(read_all(client))
        client.close()
        results.add("R3", "... deleted in the middle of a movie: the movie is whole", 1, "%d bytes more" % rest, ">= 30 MB",
                    rest >= 30 << 20)
        site.stop()
        before = site.error_text()
        site.start()
        said = new_lines(site, before)
        results.add("R3", "album folder missing at the start: asks, and runs without", 1, " / ".join(said), "one question",
                    len(said) == 1 and "cannot be found!" in said[0] and is_page(site.get(MEDIA_PAGE)))


def webcam_missing(programs, results):
    with Site(programs, settings={"WebCam": "1", "WebCamDevice": "9"}) as site:
        said = new_lines(site, "")
        results.add("R3", "webcam missing at the start: says so once, runs without", 1, " / ".join(said), "one message",
                    len(said) == 1 and said[0].startswith("Unable to connect to capture driver!")
                    and b"My Webcam" not in site.get("/"))


def read_only_places(programs, results):
    with Site(programs) as site:
        before = site.error_text()
        with read_only(site.album):
            refused = b"Picture Conversion Error" in site.get("/ShowPicture?1&thumb&/picture_01.bmp")
            rest = is_page(site.get(MEDIA_PAGE)) and JPEG_HEAD[:-3] in site.get(FULL)
        results.add("R3", "album folder become read-only: scaled pictures refused, all else served, and scaled again after",
                    1, "%s, %s, %s" % (refused, rest, ask_thumb(site)), "True, True, True",
                    refused and rest and ask_thumb(site))
        thumbs = total_running(site)
        with read_only(site.home):
            served = sum(ask_thumb(site) and is_page(site.get("/")) for _ in range(20))
        kept = total_running(site) - thumbs
        results.add("R3", "program's folder become read-only while served: all answered, counted on the open files", 20,
                    "%d answered, %d counted; %s" % (served, kept, " / ".join(new_lines(site, before)) or "silent"), "20",
                    served == 20 and site.is_alive())
        site.stop()
        before = site.error_text()
        with read_only(site.home):
            with contextlib.suppress(RuntimeError):
                site.start()
            status = site.process.wait(20)
        said = new_lines(site, before)
        results.add("R3", "program's folder read-only at the start: says so and ends", 1,
                    "status %d; %s" % (status, " / ".join(said)), "status 1 and the message",
                    status == 1 and len(said) == 1 and said[0].startswith("Error loading database!"))
        site.start()
        results.add("R3", "... and writable again, it starts with all counts", 1, total_running(site), thumbs + kept,
                    total_running(site) == thumbs + kept)
    with Site(programs) as site:
        before = site.error_text()
        with read_only(site.folder + "/config"):
            time.sleep(63)  # the heartbeat of each minute saves a setting
            served = is_page(site.get("/"))
        said = new_lines(site, before)
        results.add("R3", "settings' folder read-only over a heartbeat: runs on, says so", 1, " / ".join(said), "one line",
                    served and site.is_alive() and len(said) == 1 and said[0].startswith("Unable to save the time"))


# ---- lock: a database that another program has locked

def locked(programs, results):
    seconds = 70
    with Site(programs) as site:
        ask_thumb(site)
        site.get("/")
        before = site.error_text()
        kept = total_running(site)
        other = sqlite3.connect(site.database, isolation_level=None, timeout=10)
        other.execute("BEGIN EXCLUSIVE")
        begun = time.monotonic()
        told_after, waits, asked, answered = None, [], 0, 0
        while time.monotonic() - begun < seconds:
            for target in ("/ShowPicture?1&thumb&/picture_01.bmp", "/", MEDIA_PAGE, "/ShowStats"):
                asked += 1
                sent = time.monotonic()
                answer = site.get(target)
                waits.append(time.monotonic() - sent)
                answered += JPEG_HEAD in answer or is_page(answer)
            if told_after is None and site.error_text() != before:
                told_after = time.monotonic() - begun
            time.sleep(0.05)
        said = new_lines(site, before)
        counted_meanwhile = total_running(site) - kept
        other.execute("ROLLBACK")
        other.close()
        after = sum(ask_thumb(site) for _ in range(20))
        again = total_running(site) - kept - counted_meanwhile
        waits.sort()
        lost = new_lines(site, before)[len(said):]
        results.add("D3", "database locked by another program for %d s: visitors answered" % seconds, asked, answered, asked,
                    answered == asked and counted_meanwhile == 0)
        results.add("D3", "... the longest wait for an answer, which is the loop's", asked,
                    "longest %.0f ms, median %.1f ms" % (waits[-1] * 1000, waits[len(waits) // 2] * 1000), "<= 250 ms",
                    waits[-1] <= 0.25)
        results.add("D3", "... the owner is told", 1, "after %.2f s, %d lines: %s" % (told_after or -1, len(said), said[0]
                    if said else ""), "<= 1 s, one a minute for counts and one for the log",
                    told_after is not None and told_after <= 1 and 2 <= len(said) <= 3)
        results.add("D3", "... unlocked it counts again without a restart", after, "%d more; %s" % (again, " / ".join(lost)),
                    "20 more", after == again == 20 and site.is_alive())
        with sqlite3.connect(site.database, isolation_level=None, timeout=10) as other:
            other.execute("BEGIN EXCLUSIVE")
            begun = time.monotonic()
            status = site.stop()
            took = time.monotonic() - begun
            other.execute("ROLLBACK")
        results.add("D3", "... stopped while it is locked: exit status, and the counts kept", 1,
                    "%d after %.1f s, %d" % (status, took, total_running(site)), "0 <= 5 s, %d" % (kept + 20),
                    status == 0 and took <= 5 and total_running(site) == kept + 20)


def short_locks(programs, results):
    """A program that writes now and then, as an editor of databases does: nothing is lost."""
    with Site(programs) as site:
        ask_thumb(site)
        other = sqlite3.connect(site.database, isolation_level=None, timeout=10)
        load = Load(site)
        locks = 0
        for _ in range(100):
            other.execute("BEGIN IMMEDIATE")
            time.sleep(0.05)
            other.execute("COMMIT")
            locks += 1
            time.sleep(0.02)
        other.close()
        said = new_lines(site, "")
        site.kill()
        load.wait()
        with copied(site.database) as base:
            counted = total(base, THUMBS)
        results.add("D3", "locks of 50 ms by another program under load: every event counted", locks,
                    "%d of %d counted, %d lines said" % (counted, load.answered + 1, len(said)), "all, silent",
                    load.answered + 1 <= counted and not said)


def r3(programs, results):
    for what in (port_in_use, folder_gone, webcam_missing, read_only_places):
        what(programs, results)


def lock(programs, results):
    short_locks(programs, results)
    locked(programs, results)


ROWS = [("R1", r1), ("R3", r3), ("lock", lock)]


if __name__ == "__main__":
    run_rows(ROWS)
