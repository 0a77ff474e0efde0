#!/usr/bin/env python3
"""Clients that are slow, many, rude or gone: connections.py FOLDER_OF_THE_PROGRAMS [ROW...]"""
import multiprocessing
import random
import struct
from pathlib import Path

from endurance import *

HELP = b"GET /ShowHelp HTTP/1.0\r\n\r\n"
MOVIE_HEAD = b"Content-Type: application/octet-stream\r\nPragma: no-cache\r\nContent-Length: %d\r\n\r\n"
IDLE_TIMEOUT = 10  # s, in place of the usual 60, so that a run sees it happen
STALL_LIMIT = 90  # s: a transfer that stands still falls to the sweep of the minute after its 20 s
SWEEP_INTERVAL = 60  # s
KEPT_KB = 8192  # what may stay of a rush in memory
PAGES = ["/", "/ShowHelp", "/ShowStats", "/ShowAlbum?1&thumbs&1", "/ShowAlbumMedia?1&thumbs&1", "/ShowAlbumMedia?1&list&1",
         "/ShowAlbumDirList?1&thumbs&1&", "/ShowPopular?thumbs", "/ShowDetails?1&nocount&/picture_01.bmp"]


def is_page(answer):
    return answer.startswith(b"HTTP/1.0 200 OK\r\n") and answer.rstrip().endswith(b"</html>")


def write_movie(site, size, name="big.avi"):
    """A movie of random bytes in the album."""
    content = random.Random(size).randbytes(min(size, 1 << 20)) * (size // (1 << 20) or 1)
    Path(site.album, name).write_bytes(content)
    return content


def open_files_limit(count):
    resource.setrlimit(resource.RLIMIT_NOFILE, (count, resource.getrlimit(resource.RLIMIT_NOFILE)[1]))


def reset(client):
    """Closes as one who pulls the plug: the other side sees a reset."""
    client.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
    client.close()


def has_ended(client):
    """Whether the other side has closed; takes what has come."""
    try:
        client.setblocking(False)
        while client.recv(65536):
            pass
        return True
    except BlockingIOError:
        return False
    except OSError:
        return True


def _probe(port, request, every, ends, found):
    """Runs in a process of its own, so that nothing of the load's delays it."""
    waits, failures = [], 0
    while not ends.is_set():
        begun = time.monotonic()
        try:
            with socket.create_connection(("127.0.0.1", port), 60) as client:
                client.sendall(request)
                failures += not is_page(read_all(client))
        except OSError:
            failures += 1
        waits.append(time.monotonic() - begun)
        ends.wait(every)
    found.put((waits, failures))


class Probe:
    """Somebody else, who asks for a small page all the time: `waits` in seconds, and how many did not get it."""

    def __init__(self, site, every=0.05, request=HELP):
        self._ends, self._found = multiprocessing.Event(), multiprocessing.Queue()
        self._process = multiprocessing.Process(target=_probe, args=(site.port, request, every, self._ends, self._found))
        self.waits, self.failures = [], 0

    def __enter__(self):
        self._process.start()
        return self

    def __exit__(self, *_):
        self._ends.set()
        self.waits, self.failures = self._found.get()
        self._process.join()

    def p99(self):
        return 1000 * percentile(self.waits, 0.99)

    def text(self):
        return "a page beside them p99 %.0f ms, longest %.0f ms, %d of %d failed" % (
            self.p99(), 1000 * max(self.waits), self.failures, len(self.waits))


class Load:
    """Processor time from now on, as a share of one core."""

    def __init__(self, site):
        self.site, self.begun, self.used = site, time.monotonic(), site.processor_seconds()

    def percent(self):
        return 100 * (self.site.processor_seconds() - self.used) / (time.monotonic() - self.begun)


class Crowd:
    """Connections that are opened at a rate and then looked after until they have all been closed by the server."""

    def __init__(self, site, count, rate, first, drip=b"", drip_every=10.0, receive_buffer=0):
        self.site, self.count, self.first = site, count, first
        self.drip, self.drip_every = drip, drip_every
        self.clients = []
        for number in range(count):
            client = socket.socket()
            if receive_buffer:
                client.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, receive_buffer)
            client.settimeout(10)
            client.connect(("127.0.0.1", site.port))
            if first:
                client.sendall(first)
            self.clients.append(client)
            if rate:
                time.sleep(1 / rate)

    def outlast(self, seconds):
        """Goes on dripping; returns the seconds until all were closed, or None."""
        begun = dripped = time.monotonic()
        while time.monotonic() - begun < seconds:
            self.clients = [client for client in self.clients if not has_ended(client)]
            if not self.clients:
                return time.monotonic() - begun
            if self.drip and time.monotonic() - dripped > self.drip_every:
                dripped = time.monotonic()
                for client in self.clients:
                    try:
                        client.send(self.drip)
                    except OSError:
                        pass
            time.sleep(0.1)
        return None

    def close(self):
        for client in self.clients:
            client.close()


def guarded(programs, **settings):
    return Site(programs, settings={"IdleTimeout": str(IDLE_TIMEOUT), **settings})


def stand_slow_clients(programs, results, row, what, count, first, drip=b"", drop_limit=30, wait_limit=250):
    """What slow clients cost the others: L1 and L2."""
    with guarded(programs) as site:
        before, load = site.descriptors(), Load(site)
        begun = time.monotonic()
        with Probe(site) as probe:
            crowd = Crowd(site, count, 200, first, drip)
            ended = crowd.outlast(60)
            crowd.close()
            took = time.monotonic() - begun if ended is not None else None
            time.sleep(max(0, 20 - (time.monotonic() - begun)))
        percent = load.percent()
        time.sleep(1.5)
        left = site.descriptors() - before
        seen = "%s; all closed by the server after %s; %.1f %% of a core, the pages' share included; %d descriptors left" % (
            probe.text(), "%.1f s" % took if took else "more than 60 s", percent, left)
        wanted = "p99 %d ms, none failed, all closed in %d s, 5 %% of a core, 0 descriptors left" % (wait_limit, drop_limit)
        met = (site.is_alive() and probe.p99() <= wait_limit and not probe.failures and took is not None and took <= drop_limit
               and percent <= 5 and left <= 0)
        results.add(row, what, count, seen, wanted, met)


def check_slow_headers(programs, results):
    """L1. The first bytes are the request, so who never ends it is answered at once; who sends none is timed out. Beyond
    MaxConnections everybody waits in the system's queue, the page beside them too."""
    stand_slow_clients(programs, results, "L1", "headers without end, a line each 10 s", 400,
                       b"GET /ShowHelp HTTP/1.0\r\nX-a: b\r\n", b"X-c: d\r\n")
    stand_slow_clients(programs, results, "L1", "not a byte sent (IdleTimeout %d s)" % IDLE_TIMEOUT, 150, b"")
    stand_slow_clients(programs, results, "L1", "not a byte sent, twice MaxConnections (IdleTimeout %d s)" % IDLE_TIMEOUT, 400,
                       b"", wait_limit=1000 * 2 * (IDLE_TIMEOUT + 2))


def check_slow_bodies(programs, results):
    """L2. A body that comes apart from its head is not waited for."""
    stand_slow_clients(programs, results, "L2", "8 kB of body announced, bytes of it each 10 s", 400,
                       b"POST /SendLogin HTTP/1.0\r\nContent-Length: 8192\r\n\r\n", b"username")


def read_slowly(programs, results, what, target, growth_limit_kb, drop_limit):
    count = 200
    with guarded(programs, MaxConnections="250") as site:
        write_movie(site, 20 << 20)
        write_movie(site, 4 << 20, "big.bmp")
        site.get("/ShowHelp")
        before, resident = site.descriptors(), site.resident_kb()
        most, took = resident, None
        with Probe(site) as probe:
            begun = time.monotonic()
            crowd = Crowd(site, count, 50, b"GET " + target + b" HTTP/1.0\r\n\r\n", receive_buffer=1024)
            read = begun
            while time.monotonic() - begun < drop_limit + 10:
                most = max(most, site.resident_kb())
                if site.descriptors() - before <= 2:  # the probe's own
                    took = time.monotonic() - begun
                    break
                if time.monotonic() - read > 5:
                    read = time.monotonic()
                    for client in crowd.clients:
                        client.settimeout(0)
                        try:
                            client.recv(32)
                        except OSError:
                            pass
                time.sleep(0.1)
            crowd.close()
        begun = time.monotonic()
        while site.resident_kb() - resident > KEPT_KB and time.monotonic() - begun < SWEEP_INTERVAL + 5:
            time.sleep(0.5)
        kept, left = site.resident_kb() - resident, site.descriptors() - before
        seen = "memory %+d kB at the most, %+d kB after %.0f s more; all dropped after %s; %s; %d descriptors left" % (
            most - resident, kept, time.monotonic() - begun, "%.0f s" % took if took else "never", probe.text(), left)
        wanted = "memory +%d kB at the most, +%d kB a minute later, all dropped in %d s, p99 250 ms, 0 descriptors left" % (
            growth_limit_kb, KEPT_KB, drop_limit)
        met = (most - resident <= growth_limit_kb and kept <= KEPT_KB and took is not None and took <= drop_limit
               and probe.p99() <= 250 and not probe.failures and left <= 0)
        results.add("L3", what, count, seen, wanted, met)


def check_slow_readers(programs, results):
    """L3. A movie goes out in chunks and costs next to nothing. A picture is sent whole, so each reader holds one copy of
    it until the timeout."""
    read_slowly(programs, results, "a movie of 20 MB read at 32 bytes each 5 s", b"/ShowMovie?1&x&/big.avi", 200 * 64,
                STALL_LIMIT)
    read_slowly(programs, results, "a picture of 4 MB read at 32 bytes each 5 s", b"/ShowPicture?1&full&/big.bmp",
                200 * (4096 + 64), STALL_LIMIT)


def check_half_closed(programs, results):
    """L4."""
    sizes = [1 << 10, 64 << 10, 1 << 20, 20 << 20]
    tried = wrong = 0
    with Site(programs) as site:
        for size in sizes:
            content = random.Random(size).randbytes(size)
            for name in ["a.avi", "a.bmp"]:
                Path(site.album, name).write_bytes(content)
            for target in [b"/ShowMovie?1&x&/a.avi", b"/ShowPicture?1&full&/a.bmp"]:
                for delay in [0, 0.001, 0.005, 0.05] * 5:
                    with site.connect() as client:
                        client.sendall(b"GET " + target + b" HTTP/1.0\r\n\r\n")
                        client.shutdown(socket.SHUT_WR)
                        time.sleep(delay)
                        body = read_all(client).partition(b"\r\n\r\n")[2]
                    tried += 1
                    wrong += body != content
    results.add("L4", "request, end of sending at once, then reading after 0, 1, 5, 50 ms; movies and pictures of 1 kB to 20 MB",
                tried, "%d not whole" % wrong, "0 not whole", wrong == 0)


def check_descriptors_used_up(programs, results):
    """L5."""
    count, limit = 200, 40
    with Site(programs, limits={resource.RLIMIT_NOFILE: limit}) as site:
        clients = [site.connect() for _ in range(count)]
        time.sleep(1)
        load = Load(site)
        held = site.descriptors()
        time.sleep(5)
        percent = load.percent()
        for client in clients:
            client.sendall(HELP)
        answered = 0
        for client in clients:
            client.settimeout(20)
            answered += is_page(read_all(client))
            client.close()
        results.add("L5", "%d clients at a limit of %d descriptors, silent for 5 s, then asking" % (count, limit), count,
                    "%.1f %% of a core while full (%d descriptors), %d answered" % (percent, held, answered),
                    "2 %% of a core, %d answered" % count, percent <= 2 and answered == count)


def ask_at_once(port, count, request, seconds):
    """Opens so many connections within the seconds, asks on each as soon as it is open, reads all. Returns (answers,
    refused or broken)."""
    poll, open_ones, answers, broken = select.epoll(), {}, [], 0
    begun, opened = time.monotonic(), 0
    while opened < count or open_ones:
        while opened < count and opened <= count * (time.monotonic() - begun) / seconds:
            client = socket.socket()
            client.setblocking(False)
            client.connect_ex(("127.0.0.1", port))
            open_ones[client.fileno()] = [client, b"", False]
            poll.register(client, select.EPOLLOUT)
            opened += 1
        for number, events in poll.poll(0.002):
            entry = open_ones[number]
            client = entry[0]
            try:
                if not entry[2]:
                    client.send(request)
                    entry[2] = True
                    poll.modify(number, select.EPOLLIN)
                    continue
                part = client.recv(65536)
                entry[1] += part
                if part:
                    continue
                answers.append(entry[1])
            except OSError:
                broken += 1
            poll.unregister(number)
            client.close()
            del open_ones[number]
        if time.monotonic() - begun > 60:
            return answers, broken + len(open_ones)
    return answers, broken


def check_flood(programs, results):
    """L6: the rush of connections."""
    count = 2000
    with Site(programs) as site:
        site.ask(HELP)
        resident, before = site.resident_kb(), site.descriptors()
        with Probe(site, every=0.02) as probe:
            answers, broken = ask_at_once(site.port, count, HELP, 1.0)
            time.sleep(1)
        whole = sum(map(is_page, answers))
        end = time.monotonic() + 30
        while time.monotonic() < end and (site.descriptors() > before or abs(site.resident_kb() - resident) > 5120):
            time.sleep(0.1)
        grown, left = site.resident_kb() - resident, site.descriptors() - before
        results.add("L6", "connections within a second, each asking", count,
                    "%d answered, %d refused or broken, %s, memory %+d kB, %d descriptors left" % (
                        whole, broken, probe.text(), grown, left),
                    "all answered, p99 1000 ms, memory +-5120 kB within 30 s, 0 descriptors left",
                    whole == count and not broken and probe.p99() <= 1000 and not probe.failures and abs(grown) <= 5120
                    and left <= 0)

        clients = [site.connect(30) for _ in range(200)]
        time.sleep(2)
        for client in clients:
            client.sendall(b"GET / HTTP/1.0\r\n\r\n")
        whole = sum(is_page(read_all(client)) for client in clients)
        for client in clients:
            client.close()
        results.add("L6", "connections open at once, then asking at the same moment", 200, "%d answered" % whole, "200 answered",
                    whole == 200)


def _churn(port, count, wanted, found):
    wrong = 0
    for _ in range(count):
        try:
            with socket.create_connection(("127.0.0.1", port), 10) as client:
                client.sendall(b"GET /ShowGraphic?movie.gif HTTP/1.0\r\n\r\n")
                wrong += read_all(client) != wanted
        except OSError:
            wrong += 1
    found.put(wrong)


def churn(site, count, wanted, workers=4):
    """So many requests from some processes at once; returns how many got something else than wanted."""
    found = multiprocessing.Queue()
    words = (site.port, count // workers, wanted, found)
    processes = [multiprocessing.Process(target=_churn, args=words) for _ in range(workers)]
    for process in processes:
        process.start()
    wrong = sum(found.get() for _ in processes)
    for process in processes:
        process.join()
    return wrong


def check_churn(programs, results):
    """L6: a new connection for each of 100,000 requests, and the books afterwards."""
    count = 100000
    with Site(programs) as site:
        wanted = site.get("/ShowGraphic?movie.gif")
        kilobytes = len(wanted.partition(b"\r\n\r\n")[2]) // 1024
        before, resident = site.descriptors(), site.resident_kb()
        begun = time.monotonic()
        wrong = churn(site, count, wanted)
        took = time.monotonic() - begun
        time.sleep(1.5)
        grown, left = site.resident_kb() - resident, site.descriptors() - before
        status = site.stop()
        booked = site.query("SELECT TotalCount FROM StatsTotal WHERE Stat=4")[0][0]
        due = 1 + kilobytes * count  # a total's first entry counts as 1, whatever its value
        results.add("L6", "requests, a connection each, from 4 clients", count,
                    "%d wrong, %.0f a second, memory %+d kB, %d descriptors left, %d of %d kB booked, integrity %s, exit %s" % (
                        wrong, count / took, grown, left, booked, due, site.integrity(), status),
                    "0 wrong, memory +2048 kB at most, 0 descriptors left, all booked, integrity ok, exit 0",
                    not wrong and grown <= 2048 and left <= 0 and booked == due and site.integrity() == "ok" and status == 0)


def check_resets(programs, results):
    """L7: clients that reset in the middle of an answer. A broken transfer's file stays open until the sweep."""
    count = 1000
    with Site(programs) as site:
        write_movie(site, 20 << 20)
        write_movie(site, 4 << 20, "big.bmp")
        site.get("/ShowPicture?1&full&/big.bmp")
        before, resident = site.descriptors(), site.resident_kb()
        for number in range(count):
            target = [b"/ShowMovie?1&x&/big.avi", b"/ShowPicture?1&full&/big.bmp"][number % 2]
            client = site.connect()
            client.sendall(b"GET " + target + b" HTTP/1.0\r\n\r\n")
            client.recv(1000)
            reset(client)
        begun = time.monotonic()
        while site.descriptors() > before and time.monotonic() - begun < STALL_LIMIT:
            time.sleep(0.5)
        took = time.monotonic() - begun
        left, grown = site.descriptors() - before, site.resident_kb() - resident
        page = is_page(site.get("/ShowHelp"))
        results.add("L7", "resets in mid-answer, movies and pictures by turns", count,
                    "%d descriptors left after %.0f s, memory %+d kB, page afterwards %s" % (
                        left, took, grown, "whole" if page else "broken"),
                    "0 left after %d s, memory +5120 kB at most, page whole" % STALL_LIMIT,
                    left <= 0 and grown <= 5120 and page)


def vanish(programs):
    """In a network namespace of its own: clients in all stages, then the network goes. Prints what is left."""
    subprocess.run(["ip", "link", "set", "lo", "up"], check=True)
    with guarded(programs) as site:
        write_movie(site, 20 << 20)
        write_movie(site, 4 << 20, "big.bmp")
        site.get("/ShowHelp")
        before = site.descriptors()
        clients = []
        for target in [b"", b"/ShowMovie?1&x&/big.avi", b"/ShowPicture?1&full&/big.bmp"] * 20:
            client = site.connect()
            if target:
                client.sendall(b"GET " + target + b" HTTP/1.0\r\n\r\n")
                client.recv(1000)
            clients.append(client)
        held = site.descriptors() - before
        subprocess.run(["ip", "link", "set", "lo", "down"], check=True)
        begun = time.monotonic()
        while site.descriptors() > before and time.monotonic() - begun < STALL_LIMIT + 10:
            time.sleep(0.5)
        print(len(clients), held, site.descriptors() - before, "%.0f" % (time.monotonic() - begun), site.is_alive())


def check_vanished(programs, results):
    """L7: clients that vanish without a word."""
    what = "clients that vanish: silent ones, in a movie, in a picture (IdleTimeout %d s)" % IDLE_TIMEOUT
    words = ["unshare", "--net", sys.executable, __file__, programs, "vanish"]
    if os.geteuid() != 0:
        results.add("L7", what, 0, "not run: needs root", "0 descriptors left after %d s" % STALL_LIMIT, True)
        return
    said = subprocess.run(words, stdout=subprocess.PIPE, text=True, check=True).stdout.split()
    count, held, left, took, alive = said
    results.add("L7", what, count, "%s descriptors held, %s left after %s s, process alive: %s" % (held, left, took, alive),
                "0 left after %d s" % STALL_LIMIT, int(held) >= int(count) and int(left) <= 0 and alive == "True"
                and int(took) <= STALL_LIMIT)


class Visitor(threading.Thread):
    """One of the soak's clients: asks for something by lot, judges the answer, rests, until told to end."""

    def __init__(self, site, number, ends, movie, rest):
        super().__init__(daemon=True)
        self.site, self.ends, self.movie, self.rest = site, ends, movie, rest
        self.chance = random.Random(number)
        self.asked, self.faults = 0, []

    def run(self):
        while not self.ends.is_set():
            target, request, is_right = self.choose()
            try:
                answer = self.site.ask(request, 60)
                if not is_right(answer):
                    self.faults.append("%s: %.80r" % (target, answer))
            except OSError as error:
                self.faults.append("%s: %s" % (target, error))
            self.asked += 1
            self.ends.wait(self.chance.uniform(0, 2 * self.rest))

    def choose(self):
        lot = self.chance.random()
        if lot < 0.05:
            return self.bad_one()
        if lot < 0.10:
            body = b"username=Ann&password=secret&args=1%26thumbs%261"
            return "login", b"POST /SendLogin HTTP/1.0\r\n\r\n" + body, lambda answer: b"Set-Cookie: ms_username=Ann" in answer
        if lot < 0.15:
            return self.get("/ShowMovie?1&x&/soak.avi", lambda answer: answer.endswith(MOVIE_HEAD % len(self.movie) + self.movie))
        if lot < 0.35:
            mode = self.chance.choice(["thumb", "slideshow", "full"])
            target = "/ShowPicture?1&%s&/picture_%02d.bmp" % (mode, self.chance.randrange(12))
            return self.get(target, lambda answer: len(answer) > 400 and b"Content-Type: image/jpeg" in answer[:200])
        if lot < 0.5:
            return self.get("/ShowGraphic?folderclosed16.gif", lambda answer: b"\r\n\r\nGIF8" in answer)
        return self.get(self.chance.choice(PAGES), is_page)

    @staticmethod
    def get(target, is_right):
        return target, b"GET " + target.encode() + b" HTTP/1.0\r\n\r\n", is_right

    def bad_one(self):
        target, wanted = self.chance.choice([("/NoSuchPage", b"Bad Request"), ("/ShowAlbum?99&thumbs&1", b"Bad Request!"),
                                             ("/ShowPicture?1&thumb&/../x.bmp", b"Picture Not Found!"), ("/%", b"Bad Request"),
                                             ("/ShowGraphic?..%2Fdb_v9.mdb", b"File Not Found!")])
        return self.get(target, lambda answer: answer == wanted)


def growth_for_ten_minutes(samples):
    """kB, from the middles of the second and the last quarter of (second, kB)."""
    quarter = len(samples) // 4
    early, late = samples[quarter:2 * quarter], samples[3 * quarter:]
    return (percentile([kb for _, kb in late], 0.5) - percentile([kb for _, kb in early], 0.5)) * 600 / (late[0][0] - early[0][0])


def check_soak(programs, results):
    """L8 and R2's last word: an orderly end after it."""
    minutes = float(os.environ.get("ENDURE_SOAK_MINUTES", "5"))
    # Apart enough that pictures wait inside each other, near enough that they keep up: the last to come is served first,
    # so the first would wait for as long as they do not.
    site = Site(programs, settings={"ConversionSpacing": "5"})
    site.control("user", "add", "Ann", "secret")
    movie = write_movie(site, 1 << 20, "soak.avi")
    with site:
        # The hour's statistics grow with each request until they fill the database's page cache; then memory stands still.
        churn(site, 200000, site.get("/ShowGraphic?movie.gif"))
        ends = threading.Event()
        visitors = [Visitor(site, number, ends, movie, rest=0.1) for number in range(20)]
        samples, descriptors, begun = [], [], time.monotonic()
        with Probe(site, request=b"GET /ShowLogout HTTP/1.0\r\n\r\n") as probe:
            for visitor in visitors:
                visitor.start()
            while time.monotonic() - begun < 60 * minutes and site.is_alive():
                time.sleep(0.5)
                samples.append((time.monotonic(), site.resident_kb()))
                descriptors.append(site.descriptors())
            ends.set()
            for visitor in visitors:
                visitor.join()
        faults = [fault for visitor in visitors for fault in visitor.faults]
        for fault in faults[:20]:
            print("L8: " + fault, file=sys.stderr)
        quarter = len(descriptors) // 4
        drift = percentile(descriptors[-quarter:], 0.5) - percentile(descriptors[quarter:2 * quarter], 0.5)
        growth = growth_for_ten_minutes(samples)
        status = site.stop() if site.is_alive() else "early"
        results.add("L8", "%g minutes of 20 visitors: pages, thumbnails, movies, graphics, logins, 5 %% bad" % minutes,
                    sum(visitor.asked for visitor in visitors),
                    "%d wrong, memory %+.0f kB for 10 minutes, descriptors %+d, %s, exit %s" % (
                        len(faults), growth, drift, probe.text(), status),
                    "0 wrong, memory +1024 kB at most, descriptors +-2, p99 100 ms, exit 0",
                    not faults and growth <= 1024 and abs(drift) <= 2 and probe.p99() <= 100 and not probe.failures
                    and status == 0)


def check_big_pictures(programs, results):
    """L9: how late the loop is while pictures of 24 megapixels are made small."""
    with Site(programs, settings={"ConversionSpacing": "500"}) as site:
        picture = site.album + "/huge.jpg"
        subprocess.run(["convert", "-size", "6000x4000", "plasma:", "-quality", "90", picture], check=True)
        with Probe(site, every=0.01, request=b"GET /ShowLogout HTTP/1.0\r\n\r\n") as probe:
            for _ in range(2):
                clients = [site.connect(60) for _ in range(8)]
                for client in clients:
                    client.sendall(b"GET /ShowPicture?1&thumb&/huge.jpg HTTP/1.0\r\n\r\n")
                sizes = [len(read_all(client)) for client in clients]
        results.add("L9", "8 thumbnails of 24 megapixels at once, twice", 16,
                    "%s, smallest answer %d bytes" % (probe.text(), min(sizes)), "p99 250 ms, every answer a picture",
                    probe.p99() <= 250 and not probe.failures and min(sizes) > 1000)


def check_termination(programs, results):
    """R2: SIGTERM under load. The movies in hand are cut, as is meant; what else was begun comes whole."""
    times, cut, bad, slowest = 10, 0, 0, 0.0
    for _ in range(times):
        site = Site(programs)
        site.control("user", "add", "Ann", "secret")
        movie = write_movie(site, 1 << 20, "soak.avi")
        with site:
            ends = threading.Event()
            visitors = [Visitor(site, number, ends, movie, rest=0.002) for number in range(20)]
            for visitor in visitors:
                visitor.start()
            time.sleep(random.uniform(0.3, 1))
            begun = time.monotonic()
            status = site.stop(timeout=30)
            slowest = max(slowest, time.monotonic() - begun)
            ends.set()
            for visitor in visitors:
                visitor.join()
            faults = [fault for visitor in visitors for fault in visitor.faults]
            # An empty answer, a refusal: the request came too late.
            broken = [fault for fault in faults if not any(word in fault for word in ["ShowMovie", ": b''", "refused", "reset"])]
            cut += len(broken)
            print("".join("R2: %s\n" % fault for fault in broken), end="", file=sys.stderr)
            log = Path(site.database + "-wal")
            bad += status != 0 or site.integrity() != "ok" or log.exists() and log.stat().st_size > 0 or bool(site.error_text())
    results.add("R2", "SIGTERM under the load of 20 visitors", times,
                "slowest end %.1f s, %d ends with a status, a message, a log left or damage, %d answers cut" % (
                    slowest, bad, cut),
                "5 s, 0, 0", slowest <= 5 and not bad and not cut)


CHECKS = [
    ("L1", check_slow_headers), ("L2", check_slow_bodies), ("L3", check_slow_readers), ("L4", check_half_closed),
    ("L5", check_descriptors_used_up), ("L6", check_flood), ("L6", check_churn), ("L7", check_resets), ("L7", check_vanished),
    ("L8", check_soak), ("L9", check_big_pictures), ("R2", check_termination),
]


def main():
    programs, only = programs_folder(), sys.argv[2:]
    if only == ["vanish"]:
        vanish(programs)
        return
    open_files_limit(4096)
    results = Results()
    for row, check in CHECKS:
        if not only or row in only:
            check(programs, results)
    results.finish()


if __name__ == "__main__":
    main()
