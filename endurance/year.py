#!/usr/bin/env python3
"""A year without a hand on it: year.py FOLDER_OF_THE_PROGRAMS_AND_TESTS [ROW...]"""
from endurance import *
from store import AS_ROOT

NOBODY = 65534


def check_year(programs, results):
    """Y1. The clock is set, so it takes minutes."""
    year = str(365 * 24 * 60)
    done = subprocess.run([programs + "/test_core", "--gtest_filter=Year.*First*"], env=dict(os.environ, PIXMORA_MINUTES=year),
                          stdout=subprocess.PIPE, text=True)
    told = re.search(r"^\d+ minutes, .*", done.stdout, re.M)
    results.add("Y1", "minutes with a visitor in each fifth, past the wraps of the tick count", year,
                told.group().partition(", ")[2] if told else done.stdout[-300:],
                "memory +5120 kB at most, descriptors flat, tables as small as described", done.returncode == 0 and bool(told))


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


def check_second_copy(programs, results):
    """Y10. Two programs on one store of settings."""
    with Site(programs) as site, contextlib.closing(Site(programs)) as other:
        other.environment["XDG_CONFIG_HOME"] = site.environment["XDG_CONFIG_HOME"]
        done = subprocess.run([programs + "/pixmorad"], env=other.environment, stderr=subprocess.PIPE, text=True, timeout=30)
        results.add("Y10", "a second copy with another folder and the same settings: told and ended", 1,
                    "status %d; %s" % (done.returncode, done.stderr.strip()), "status 1, already running",
                    done.returncode == 1 and "already running" in done.stderr)


# What the tests show of the other points is worn by repeating them, in other orders: (row, what, program, its cases).
TESTED = [
    ("Y2", "limits of connections, idle peers, an answer that is being made", "test_core", "Guards.*Limit*:Guards.*Idle*:Guards.*Peers*"),
    ("Y4", "settings that another program has locked", "test_platform", "RegistryTest.*Lock*"),
    ("Y6", "a folder that goes and comes back", "test_core", "Website.*Folder*"),
    ("Y8", "pictures that their browser gives up", "test_core", "Guards.*Picture*"),
    ("Y11", "files that hold passwords, formerly readable by all", "test_store:test_platform", "SchemaTest.*:RegistryTest.*"),
    ("Y12", "texts of every language compared and sorted", "test_platform", "Functions.*:RecordsetTest.*Case*"),
    ("Y16", "what is shipped follows the program, what the owner has changed stays", "test_platform", "AppTest.*"),
]
REPEATS = 50


def check_tested(programs, results):
    for row, what, names, cases in TESTED:
        passed = failed = 0
        for name in names.split(":"):
            done = subprocess.run([os.path.abspath(programs) + "/" + name, "--gtest_filter=" + cases, "--gtest_shuffle",
                                   "--gtest_repeat=%d" % REPEATS],
                                  cwd=programs + "/..", stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
            passed += done.stdout.count("[       OK ]")
            failed += done.stdout.count("[  FAILED  ]") + (done.returncode != 0)
        results.add(row, what + " (tests)", REPEATS, "%d passed, %d failed" % (passed, failed), "0 failed",
                    failed == 0 and passed >= REPEATS)


def check_programs(programs, results):
    """Y3, Y5, Y9, Y14, Y15: signals, a reader who goes, locks, faults named, words refused, backups."""
    test = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../tests/app/programs_test.py")
    done = [subprocess.run([sys.executable, test, programs], stderr=subprocess.DEVNULL).returncode for _ in range(5)]
    results.add("Y3", "the programs by shell: signals, a reader who goes, faults named, words refused, backups (tests)", len(done),
                "%d failed" % sum(map(bool, done)), "0 failed", not any(done))


ROWS = [("Y1", check_year), ("Y2", check_tested), ("Y3", check_programs), ("Y6", check_folders), ("Y10", check_second_copy)]


if __name__ == "__main__":
    run_rows(ROWS)
