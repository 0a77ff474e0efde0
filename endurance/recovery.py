#!/usr/bin/env python3
"""How the site comes back, and how it goes on while something is missing: recovery.py FOLDER_OF_THE_PROGRAMS [ROW...]"""
import contextlib
import fcntl
from pathlib import Path

from endurance import *
from store import AS_ROOT, JPEG_HEAD, THUMBS, Load, ask_thumb, copied, total, total_running

MEDIA_PAGE = "/ShowAlbumMedia?1&list&1"


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


def settings_locked(programs, results):
    """Another program that has locked the folder of the settings, over a heartbeat and a start."""
    seconds = 70
    with Site(programs) as site:
        folder = next(Path(site.folder, "config").rglob("settings.ini")).parent
        descriptor = os.open(folder, os.O_RDONLY)
        fcntl.flock(descriptor, fcntl.LOCK_EX)
        waits, begun = [], time.monotonic()
        while time.monotonic() - begun < seconds:
            sent = time.monotonic()
            is_answered = is_page(site.get("/"))
            waits.append(time.monotonic() - sent if is_answered else 99)
            time.sleep(0.05)
        results.add("R3", "settings' folder locked by another program for %d s: the longest wait for an answer" % seconds,
                    len(waits), "%.0f ms" % (1000 * max(waits)), "<= 250 ms", max(waits) <= 0.25)
        os.close(descriptor)


def locked_at_the_start(programs, results):
    with contextlib.closing(Site(programs)) as site:
        with contextlib.closing(sqlite3.connect(site.database, isolation_level=None)) as other:
            other.execute("BEGIN EXCLUSIVE")
            with contextlib.suppress(RuntimeError):
                site.start()
            status = site.process.wait(30)
        said = new_lines(site, "")
        site.start()
        results.add("D3", "database locked by another program at the start: says so and ends; free again, it starts", 1,
                    "status %d; %s" % (status, " / ".join(said)), "status 1 and the message",
                    status == 1 and len(said) == 1 and said[0].startswith("Error loading database!") and is_page(site.get("/")))


def lock(programs, results):
    locked_at_the_start(programs, results)
    settings_locked(programs, results)
    short_locks(programs, results)
    locked(programs, results)


ROWS = [("R3", read_only_places), ("lock", lock)]


if __name__ == "__main__":
    run_rows(ROWS)
