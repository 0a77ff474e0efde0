#!/usr/bin/env python3
"""How the site comes back, and how it goes on while something is missing: recovery.py FOLDER_OF_THE_PROGRAMS [ROW...]"""
import contextlib

from endurance import *
from store import AS_ROOT, JPEG_HEAD, THUMBS, Load, ask_thumb, copied, total, total_running


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


def read_only_places(programs, results):
    with Site(programs) as site:
        before = site.error_text()
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


# ---- lock: a database that another program has locked

def locked(programs, results):
    seconds = 70
    with Site(programs) as site:
        ask_thumb(site)
        before, kept = site.error_text(), total_running(site)
        other = sqlite3.connect(site.database, isolation_level=None, timeout=10)
        other.execute("BEGIN EXCLUSIVE")
        begun, waits, answered = time.monotonic(), [], 0
        while time.monotonic() - begun < seconds:
            for target in ("/ShowPicture?1&thumb&/picture_01.bmp", "/", "/ShowAlbumMedia?1&list&1", "/ShowStats"):
                talk = Talk(site.port, b"GET %s HTTP/1.0\r\n\r\n" % target.encode())
                waits.append(talk.seconds)
                answered += JPEG_HEAD in talk.answer or is_page(talk.answer)
            time.sleep(0.05)
        said = new_lines(site, before)
        counted_meanwhile = total_running(site) - kept
        other.execute("ROLLBACK")
        after = sum(ask_thumb(site) for _ in range(20))
        again = total_running(site) - kept - counted_meanwhile
        lost = new_lines(site, before)[len(said):]
        results.add("D3", "database locked by another program for %d s: visitors answered" % seconds, len(waits), answered,
                    len(waits), answered == len(waits) and counted_meanwhile == 0)
        results.add("D3", "... the longest wait for an answer, which is the loop's", len(waits),
                    "longest %.0f ms, median %.1f ms" % (max(waits) * 1000, percentile(waits, 0.5) * 1000), "<= 250 ms",
                    max(waits) <= 0.25)
        results.add("D3", "... the owner is told", 1, "%d lines: %s" % (len(said), " / ".join(said[:1])),
                    "one a minute for counts and one for the log", 2 <= len(said) <= 3)
        results.add("D3", "... unlocked it counts again without a restart", after, "%d more; %s" % (again, " / ".join(lost)),
                    "20 more", after == again == 20 and site.is_alive())
        other.execute("BEGIN EXCLUSIVE")
        begun = time.monotonic()
        status, took = site.stop(), time.monotonic() - begun
        other.close()
        results.add("D3", "... stopped while it is locked: exit status, and the counts kept", 1,
                    "%d after %.1f s, %d" % (status, took, total_running(site)), "0 <= 5 s, %d" % (kept + 20),
                    status == 0 and took <= 5 and total_running(site) == kept + 20)


def short_locks(programs, results):
    """A program that writes now and then, as an editor of databases does: nothing is lost."""
    with Site(programs) as site:
        ask_thumb(site)
        other = sqlite3.connect(site.database, isolation_level=None, timeout=10)
        load = Load(site)
        locks = 100
        for _ in range(locks):
            other.execute("BEGIN IMMEDIATE")
            time.sleep(0.05)
            other.execute("COMMIT")
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


def lock(programs, results):
    short_locks(programs, results)
    locked(programs, results)


ROWS = [("R3", read_only_places), ("lock", lock)]


if __name__ == "__main__":
    run_rows(ROWS)
