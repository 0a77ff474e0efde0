#!/usr/bin/env python3
"""A year without a hand on it: year.py FOLDER_OF_THE_PROGRAMS_AND_TESTS [ROW...]"""
import contextlib
from pathlib import Path

from clients import *
from store import AS_ROOT, JPEG_HEAD, ask_thumb, is_whole

NOBODY = 65534
THUMB = b"GET /ShowPicture?1&thumb&/picture_%02d.bmp HTTP/1.0\r\n\r\n"


def check_year(programs, results):
    """Y1. The clock is set, so it takes minutes."""
    year = str(365 * 24 * 60)
    done = subprocess.run([programs + "/test_core", "--gtest_filter=Year.*"], env=dict(os.environ, PIXMORA_MINUTES=year),
                          stdout=subprocess.PIPE, text=True)
    told = re.search(r"^\d+ minutes, .*", done.stdout, re.M)
    results.add("Y1", "minutes with a visitor in each fifth, past the wraps of the tick count", year,
                told.group().partition(", ")[2] if told else done.stdout[-300:],
                "memory +5120 kB at most, descriptors flat, tables as small as described", done.returncode == 0 and bool(told))


def start_desktop(site):
    """The desktop program on the site's folder, without a screen."""
    process = subprocess.Popen([site.programs + "/pixmora", "start"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                               env=dict(site.environment, QT_QPA_PLATFORM="offscreen"))
    end = time.monotonic() + 30
    while time.monotonic() < end and process.poll() is None:
        with contextlib.suppress(OSError):
            if is_page(site.get("/ShowHelp")):
                return process
        time.sleep(0.1)
    raise RuntimeError("pixmora did not start its site")


def check_desktop(programs, results):
    """Y2. What a stranger holds open at the desktop program is bounded as at pixmorad."""
    count = 300
    with contextlib.closing(Site(programs, settings={"RunSetup": "1", "IdleTimeout": "5"})) as site:
        process = start_desktop(site)
        try:
            silent = [site.connect() for _ in range(count)]
            refused = sum(Talk(site.port, b"PUT / HTTP/1.0\r\n\r\n", 30).answer == b"" for _ in range(20))
            page = is_page(site.get("/ShowHelp", timeout=30))
            for client in silent:
                client.close()
            results.add("Y2", "the desktop program: silent connections at once, then requests that it refuses", count,
                        "%d of 20 closed, %s, %s" % (refused, "a page" if page else "no page",
                                                     "alive" if process.poll() is None else "ended"),
                        "20 of 20 closed, a page, alive", refused == 20 and page and process.poll() is None)
        finally:
            process.terminate()
            process.wait(20)


@contextlib.contextmanager
def dead_mount(folder):
    """A file system whose server has gone: whatever is asked of it fails."""
    with tempfile.TemporaryDirectory(prefix="pixmora-served-") as served:
        server = subprocess.Popen(["bindfs", "-f", "-o", "allow_other", served, folder])
        while not os.path.ismount(folder):
            time.sleep(0.02)
        server.kill()
        server.wait()
        try:
            yield
        finally:
            subprocess.run([*AS_ROOT, "umount", "--lazy", folder], check=True)


def check_folders(programs, results):
    """Y6. A start with albums that can't be read, the site being an ordinary user's."""
    site = Site(programs, command_prefix=["setpriv", "--reuid=%d" % NOBODY, "--clear-groups"] if os.geteuid() == 0 else [])
    places = {name: site.folder + "/" + name for name in ("unsearched", "dead", "gone")}
    for name, place in places.items():
        os.makedirs(place)
        site.add_album(name, place)
    os.rename(places["gone"], places["gone"] + "-away")
    subprocess.run([*AS_ROOT, "chown", "-R", str(NOBODY), site.folder], check=os.geteuid() == 0)
    with contextlib.closing(site), dead_mount(places["dead"]):
        os.chmod(places["unsearched"], 0o444)
        try:
            with contextlib.suppress(RuntimeError):
                site.start()
            pages = site.is_alive() and [is_page(site.get("/ShowAlbumMedia?%d&list&1" % (1 + i))) for i in range(4)]
        finally:
            os.chmod(places["unsearched"], 0o755)
        named = sum("'%s'" % name in site.error_text() or places[name] in site.error_text() for name in places)
        results.add("Y6", "a start with a folder that may not be searched, one that is gone and one of a dead mount", 3,
                    "%s, %d of 3 named" % ("serves" if pages and all(pages) else "doesn't serve", named), "serves, 3 of 3 named",
                    bool(pages) and all(pages) and named == 3)


def check_given_up(programs, results):
    """Y8. Six browsers want a page of pictures each and leave: he who waits below all of theirs has his then."""
    spacing, browsers = 200, 6
    with Site(programs, settings={"ConversionSpacing": str(spacing)}) as site:
        ask_thumb(site)
        patient = site.connect(60)
        patient.sendall(THUMB % 1)
        waiting = [site.connect() for _ in range(browsers * 12)]
        for number, client in enumerate(waiting):
            client.sendall(THUMB % (number % 12))
        time.sleep(1)
        for client in waiting:
            client.close()
        begun = time.monotonic()
        whole = JPEG_HEAD in read_all(patient)
        took = 1000 * (time.monotonic() - begun)
        results.add("Y8", "browsers that give up 12 pictures each, at a spacing of %d ms: the picture that waited below" % spacing,
                    browsers, "%s after %.0f ms" % ("whole" if whole else "broken", took), "whole, <= %d ms" % (3 * spacing),
                    whole and took <= 3 * spacing)


def check_names(programs, results):
    """Y9. What is wrong is named."""
    wrong = [({"FilesPerRow": "many"}, "", "Type mismatch (Setup, FilesPerRow)"),
             ({}, "good\nb[\n", "Invalid pattern string (restrictwords.txt, line 2)")]
    told = 0
    for settings, words, message in wrong:
        with contextlib.closing(Site(programs, settings=settings)) as site:
            Path(site.home, "restrictwords.txt").write_text(words)
            with contextlib.suppress(RuntimeError, OSError):
                site.start()
                site.get("/ShowAlbumDirList?1&thumbs&1&")
            check = subprocess.run([site.programs + "/pixmoractl", "check"], env=site.environment, stdout=subprocess.PIPE, text=True)
            told += check.returncode == 1 and check.stdout.strip() == message
    results.add("Y9", "pixmoractl check on a setting and a pattern that can't be read: named", len(wrong), told, len(wrong),
                told == len(wrong))


def check_privacy(programs, results):
    """Y10, Y11. Two programs on one store of settings; and who may read what holds passwords."""
    with Site(programs) as site, contextlib.closing(Site(programs)) as other:
        other.environment["XDG_CONFIG_HOME"] = site.environment["XDG_CONFIG_HOME"]
        done = subprocess.run([programs + "/pixmorad"], env=other.environment, stderr=subprocess.PIPE, text=True, timeout=30)
        results.add("Y10", "a second copy with another folder and the same settings: told and ended", 1,
                    "status %d; %s" % (done.returncode, done.stderr.strip()), "status 1, already running",
                    done.returncode == 1 and "already running" in done.stderr)
        site.stop()
        kept = [site.database, *map(str, Path(site.folder, "config").rglob("settings.ini"))]
        for path in kept:
            os.chmod(path, 0o644)
        site.start()
        ask_thumb(site)
        modes = {oct(os.stat(path).st_mode & 0o777) for path in [*kept, site.database + "-wal"]}
        results.add("Y11", "files that hold passwords, formerly readable by all, at a start", len(kept) + 1,
                    ", ".join(sorted(modes)), "0o600", modes == {"0o600"})


def check_backup(programs, results):
    """Y15. Copies of the database while it is written to."""
    times = 20
    with Site(programs) as site:
        ends = threading.Event()
        visitors = [Visitor(site, number, ends, b"", rest=0.002) for number in range(4)]
        write_movie(site, 1 << 20, "soak.avi")
        for visitor in visitors:
            visitor.start()
        whole = 0
        for number in range(times):
            copy = "%s/copy_%d.mdb" % (site.folder, number)
            site.control("backup", copy)
            with contextlib.closing(sqlite3.connect(copy)) as base:
                whole += is_whole(base) and base.execute("SELECT count(*) FROM StatsTotal").fetchone()[0] > 0
        ends.set()
        for visitor in visitors:
            visitor.join()
        results.add("Y15", "pixmoractl backup while visitors are counted", times, "%d whole" % whole, times, whole == times)


ROWS = [("Y1", check_year), ("Y2", check_desktop), ("Y6", check_folders), ("Y8", check_given_up), ("Y9", check_names),
        ("Y10", check_privacy), ("Y15", check_backup)]


if __name__ == "__main__":
    open_files_limit(4096)
    run_rows(ROWS)
