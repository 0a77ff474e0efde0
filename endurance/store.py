#!/usr/bin/env python3
"""What kills, locks, failing disks and damage do to what the site has counted: store.py FOLDER_OF_THE_PROGRAMS [ROW...]"""
from endurance import *

LANES = 8  # sites at once: most of a start is its own pauses
THUMB = "/ShowPicture?1&thumb&/picture_%02d.bmp"
JPEG_HEAD = b"Content-Type: image/jpeg\r\nPragma: no-cache\r\n\r\n\xff\xd8\xff"
THUMBS = 2  # a kind of events
QUIET = {resource.RLIMIT_CORE: 0}
AS_ROOT = [] if os.geteuid() == 0 else ["sudo"]


@contextlib.contextmanager
def copied(database):
    """The database as a crash left it, opened on a copy, so that the program itself does the recovery."""
    with tempfile.TemporaryDirectory(prefix="pixmora-copy-") as folder:
        for end in ("", "-wal"):
            if os.path.exists(database + end):
                shutil.copy(database + end, folder + "/copy.mdb" + end)
        base = sqlite3.connect(folder + "/copy.mdb")
        try:
            yield base
        finally:
            base.close()


def is_whole(base):
    return base.execute("PRAGMA integrity_check").fetchone()[0] == "ok"


def total(base, kind):
    row = base.execute("SELECT TotalCount FROM StatsTotal WHERE Stat=?", (kind,)).fetchone()
    return int(row[0]) if row else 0


def ask_thumb(site, number=0):
    return JPEG_HEAD in site.get(THUMB % (number % 12))


def files_of(database):
    return {end: Path(database + end).read_bytes() for end in ("", "-wal") if os.path.exists(database + end)}


@contextlib.contextmanager
def attached(site, log, words):
    """strace at work on the site's process."""
    tracer = subprocess.Popen([*words, "-p", str(site.pid)], stderr=subprocess.PIPE)
    try:
        if b"attached" not in tracer.stderr.readline():
            raise RuntimeError("strace can't attach")
        yield
    finally:
        tracer.send_signal(signal.SIGINT)
        tracer.communicate()


class Load:
    """Visitors that ask for thumbnails until the site is gone. An answer that has come is an event acknowledged."""

    def __init__(self, site, visitors=2):
        self.asked = self.answered = 0
        self.lock = threading.Lock()
        self.threads = [threading.Thread(target=self._visit, args=(site,)) for _ in range(visitors)]
        for thread in self.threads:
            thread.start()

    def _visit(self, site):
        while True:
            with self.lock:
                self.asked += 1
                number = self.asked
            try:
                is_answered = ask_thumb(site, number)
            except OSError:
                return
            with self.lock:
                self.answered += is_answered

    def wait(self):
        for thread in self.threads:
            thread.join()


def sums(found, *names):
    return [sum(each[name] for each in found) for name in names]


# ---- D1

def kill_lane(programs, seed):
    """One site, killed and started again. Every fifth kill comes at some moment of the start."""
    kills, chance = 125, random.Random(seed)
    lost = damaged = 0
    answered = asked = 0
    starts = []
    with contextlib.closing(Site(programs)) as site:
        for kill in range(kills):
            if kill % 5 == 4:
                killer = threading.Timer(chance.uniform(0, 1.1), lambda: site.process and site.process.kill())
                killer.start()
                with contextlib.suppress(RuntimeError):
                    site.start()
                killer.join()
                site.kill()
            else:
                begun = time.monotonic()
                site.start()
                starts.append(time.monotonic() - begun)
                load = Load(site)
                time.sleep(chance.uniform(0, 0.25))
                site.kill()
                load.wait()
                answered += load.answered
                asked += load.asked
            with copied(site.database) as base:
                damaged += not is_whole(base)
                counted = total(base, THUMBS)
            lost += max(0, answered - counted)
            if counted > asked:
                raise RuntimeError("%d events counted of %d asked" % (counted, asked))
    return {"kills": kills, "lost": lost, "damaged": damaged, "answered": answered, "starts": starts}


def d1(programs, results):
    lanes = in_lanes(functools.partial(kill_lane, programs), range(LANES))
    kills, answered, lost, damaged = sums(lanes, "kills", "answered", "lost", "damaged")
    results.add("D1", "kill -9 under load, each fifth within the start: acknowledged events kept", kills,
                "%d of %d lost" % (lost, answered), "0 lost", lost == 0 and answered > kills)
    results.add("D1", "... and the database whole", kills, "%d damaged" % damaged, "0", damaged == 0)
    starts = [start for lane in lanes for start in lane["starts"]]
    middle = percentile(starts, 0.5)
    results.add("D1", "... and the next start, %d sites at once, 1 s of it the start's own pauses" % LANES, len(starts),
                "median %.2f s, longest %.2f s" % (middle, max(starts)), "median <= 2 s", middle <= 2)


# ---- D3: a database that another program has locked

def total_running(site):
    rows = site.query("SELECT TotalCount FROM StatsTotal WHERE Stat=%d" % THUMBS)
    return int(rows[0][0]) if rows else 0


def locked(programs, results):
    seconds = 70
    with Site(programs) as site:
        ask_thumb(site)
        before, kept = site.error_text(), total_running(site)
        other = sqlite3.connect(site.database, isolation_level=None, timeout=10)
        other.execute("BEGIN EXCLUSIVE")
        begun, told_after, waits, answered = time.monotonic(), None, [], 0
        while time.monotonic() - begun < seconds:
            for target in ("/ShowPicture?1&thumb&/picture_01.bmp", "/", "/ShowAlbumMedia?1&list&1", "/ShowStats"):
                talk = Talk(site.port, b"GET %s HTTP/1.0\r\n\r\n" % target.encode())
                waits.append(talk.seconds)
                answered += JPEG_HEAD in talk.answer or is_page(talk.answer)
            if told_after is None and site.error_text() != before:
                told_after = time.monotonic() - begun
            time.sleep(0.05)
        said = site.error_text()[len(before):].splitlines()
        counted_meanwhile = total_running(site) - kept
        other.execute("ROLLBACK")
        after = sum(ask_thumb(site) for _ in range(20))
        again = total_running(site) - kept - counted_meanwhile
        lost = site.error_text()[len(before):].splitlines()[len(said):]
        results.add("D3", "database locked by another program for %d s: visitors answered" % seconds, len(waits), answered,
                    len(waits), answered == len(waits) and counted_meanwhile == 0)
        results.add("D3", "... the longest wait for an answer, which is the loop's", len(waits),
                    "longest %.0f ms, median %.1f ms" % (max(waits) * 1000, percentile(waits, 0.5) * 1000), "<= 250 ms",
                    max(waits) <= 0.25)
        results.add("D3", "... the owner is told", 1, "after %.2f s, %d lines: %s" % (told_after or -1, len(said), said[:1]),
                    "<= 1 s, one a minute for counts and one for the log", bool(told_after and told_after <= 1) and 2 <= len(said) <= 3)
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
        said = site.error_text()
        site.kill()
        load.wait()
        with copied(site.database) as base:
            counted = total(base, THUMBS)
        results.add("D3", "locks of 50 ms by another program under load: every event counted", locks,
                    "%d of %d counted, %d lines said" % (counted, load.answered + 1, said.count("\n")), "all, silent",
                    load.answered + 1 <= counted and not said)


# ---- D4

def injecting(log, call, error, number):
    """strace by which the call of that number fails."""
    return ["strace", "-f", "-o", log, "-e", "trace=" + call, "-e", "inject=%s:error=%s:when=%d" % (call, error, number)]


def injected(log):
    return Path(log).read_text().count("(INJECTED)") if os.path.exists(log) else 0


def fail_while_serving(programs, job):
    """One site; the Nth write of each round fails. An event whose write failed may be missing, no other."""
    call, error, numbers = job
    with contextlib.closing(Site(programs, limits=QUIET)) as site:
        site.start()
        log = site.folder + "/trace"
        asked = hits = unanswered = 0
        for number in numbers:
            with attached(site, log, injecting(log, call, error, number)):
                for i in range(number // 10 + 2):  # each is about twelve writes
                    asked += 1
                    unanswered += not ask_thumb(site, i)
            hits += injected(log)
        alive = site.is_alive()
        kept = site.query("SELECT count(*) FROM StatsRecent")[0][0]
        status = site.stop()
        with copied(site.database) as base:
            whole = is_whole(base)
    # Each picture is two events, itself and its kilobytes.
    return {"rounds": len(numbers), "hits": hits, "crashes": int(not alive or status not in (0, 70)),
            "unanswered": unanswered, "lost": max(0, 2 * asked - kept - hits), "damaged": int(not whole)}


def fail_while_starting(programs, job):
    """A start and a stop of which one call fails: it runs, or says why not; and the next start is whole."""
    call, error, number = job
    with contextlib.closing(Site(programs, limits=QUIET)) as site:
        site.start()
        thumbs = sum(ask_thumb(site, i) for i in range(5))
        site.kill()
        log = site.folder + "/trace"
        site.command_prefix = injecting(log, call, error, number)
        try:
            site.start()
            thumbs += ask_thumb(site)
            status = site.stop()
        except RuntimeError:
            status = site.process.wait(20)
        hit = injected(log)
        crashed = status not in (0, 1, 70) or (status != 0 and not site.error_text().strip())
        site.command_prefix = []
        with copied(site.database) as base:
            whole, counted = is_whole(base), total(base, THUMBS)
        site.start()
        thumbs += ask_thumb(site)
        lost = max(0, thumbs - total_running(site), thumbs - 1 - counted)
    # One event may be the one whose write failed.
    return {"hits": hit, "crashes": int(crashed), "lost": max(0, lost - hit), "damaged": int(not whole)}


def d4(programs, results):
    for call, error in (("pwrite64", "ENOSPC"), ("pwrite64", "EIO")):
        jobs = [(call, error, range(1 + lane, 201, 4)) for lane in range(4)]
        found = in_lanes(functools.partial(fail_while_serving, programs), jobs, 4)
        rounds, hits, crashes, unanswered, lost, damaged = sums(found, "rounds", "hits", "crashes", "unanswered", "lost",
                                                                "damaged")
        results.add("D4", "the Nth %s fails with %s while serving, N = 1 to 200" % (call, error), rounds,
                    "%d met; %d crashes, %d unanswered, %d other events lost, %d damaged"
                    % (hits, crashes, unanswered, lost, damaged), "0, 0, 0, 0",
                    hits == rounds and crashes == unanswered == lost == damaged == 0)
    for call, error in (("fdatasync", "EIO"), ("fsync", "EIO"), ("pwrite64", "ENOSPC"), ("pwrite64", "EIO")):
        found = []
        while not found or found[-1]["hits"]:  # until a whole start has none left to fail
            numbers = [(call, error, len(found) + 1 + lane) for lane in range(LANES)]
            found += in_lanes(functools.partial(fail_while_starting, programs), numbers)
        hits, crashes, lost, damaged = sums(found, "hits", "crashes", "lost", "damaged")
        results.add("D4", "the Nth %s fails with %s in a start or stop, N = 1 until none is left" % (call, error), hits,
                    "%d crashes, %d lost, %d damaged" % (crashes, lost, damaged), "0, 0, 0",
                    hits > 0 and crashes == lost == damaged == 0)


# ---- D6

def d6(programs, results):
    kills, chance = 500, random.Random(6)
    with contextlib.closing(Site(programs)) as site:
        control = [site.programs + "/pixmoractl", "set", "Setup", "ServerTitle"]
        settings = next(Path(site.folder, "config").rglob("settings.ini"))
        begun = time.monotonic()
        subprocess.run([*control, "value 0"], env=site.environment, check=True)
        usual = time.monotonic() - begun
        former = settings.read_text()
        broken = changed = 0
        for i in range(1, kills + 1):
            process = subprocess.Popen([*control, "value %d" % i], env=site.environment)
            time.sleep(chance.uniform(0, 1.2 * usual))
            process.kill()
            process.wait()
            text = settings.read_text()
            wanted = re.sub(r"(?m)^ServerTitle=.*$", "ServerTitle=value %d" % i, former)
            changed += text == wanted
            broken += text not in (former, wanted)
            former = text
    results.add("D6", "kill -9 of pixmoractl set at a random moment: the file is the old or the new one", kills,
                "%d broken, %d new" % (broken, changed), "0 broken", broken == 0 and 0 < changed < kills)


# ---- D7

def flipped(content, seed, share):
    """The content with this share of its bytes changed in one bit each, the same for the same seed."""
    chance = random.Random(seed)
    content = bytearray(content)
    for _ in range(max(1, int(len(content) * share))):
        content[chance.randrange(len(content))] ^= 1 << chance.randrange(8)
    return bytes(content)


def damaged_files(programs):
    """(name, {end of the file's name: content}) of each kind of damage."""
    with contextlib.closing(Site(programs)) as site:
        for i in range(20):
            site.control("user", "add", "user%d" % i, "secret")
        site.start()
        for i in range(60):
            ask_thumb(site, i)
            site.get("/ShowDetails?1&count&/picture_%02d.bmp" % (i % 12))
        site.kill()
        withLog = files_of(site.database)
        site.start()
        site.stop()
        whole = files_of(site.database)[""]
    cases = [("bits", {"": flipped(whole, seed, 0.001)}) for seed in range(100)]
    cases += [("bits of the log", {"": withLog[""], "-wal": flipped(withLog["-wal"], seed, 0.001)}) for seed in range(20)]
    cases += [("cut short", {"": whole[:len(whole) * part // 10]}) for part in range(10)]
    cases += [("no log", {"": withLog[""]}), ("all zeros", {"": bytes(len(whole))}), ("a text", {"": b"no database\n"})]
    return cases


PAGES = ["/", "/ShowStats", "/ShowPopular?thumbs", "/ShowAlbumMedia?1&thumbs&1", "/ShowAlbumDirList?1&thumbs&1&",
         THUMB % 1, "/ShowDetails?1&count&/picture_02.bmp", "/ShowGraphic?webcam.gif"]


def asked(site, page):
    """The answer; empty when the process ends meanwhile."""
    try:
        return site.get(page)
    except OSError:
        time.sleep(0.5)
        return b""


def start_damaged(programs, case):
    """What came of it: "serves", "ends with words ...", or what went wrong."""
    with contextlib.closing(Site(programs, limits=QUIET)) as site:
        Path(site.database).unlink()
        for end, content in case[1].items():
            Path(site.database + end).write_bytes(content)
        when = ""
        with contextlib.suppress(RuntimeError):
            site.start()
            when = " while serving"
            unanswered = [page for page in PAGES if site.is_alive() and not asked(site, page)]
            if site.is_alive():
                status = site.stop()
                return "no answer to " + unanswered[0] if unanswered else "serves" if status in (0, 70) else "stopped badly"
        status = site.process.wait(20)
        is_said = status in (1, 70) and site.error_text().strip()
        return "ends with %s status %d%s" % ("words and" if is_said else "nothing but", status, when)


def d7(programs, results):
    cases = damaged_files(programs)
    found = in_lanes(functools.partial(start_damaged, programs), cases)
    for kind in dict(cases):
        outcomes = [outcome for case, outcome in zip(cases, found) if case[0] == kind]
        counts = ", ".join("%d x %s" % (outcomes.count(each), each) for each in sorted(set(outcomes)))
        results.add("D7", "damaged database (%s): serves, or says so and ends" % kind, len(outcomes), counts,
                    "nothing else", all(each == "serves" or each.startswith("ends with words") for each in outcomes))


ROWS = [("D1", d1), ("D3", locked), ("D3", short_locks), ("D4", d4), ("D6", d6), ("D7", d7)]


if __name__ == "__main__":
    run_rows(ROWS)
