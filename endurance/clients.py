"""The clients' side of the endurance scripts: somebody who watches, crowds of connections, visitors of all tastes."""
from endurance import *

HELP, LOGOUT = [b"GET /%s HTTP/1.0\r\n\r\n" % page for page in (b"ShowHelp", b"ShowLogout")]
MOVIE_HEAD = b"Content-Type: application/octet-stream\r\nPragma: no-cache\r\nContent-Length: %d\r\n\r\n"
PAGES = ["/", "/ShowHelp", "/ShowStats", "/ShowAlbum?1&thumbs&1", "/ShowAlbumMedia?1&thumbs&1", "/ShowAlbumMedia?1&list&1",
         "/ShowAlbumDirList?1&thumbs&1&", "/ShowPopular?thumbs", "/ShowDetails?1&nocount&/picture_01.bmp"]


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


def _churn(port, count, wanted):
    wrong = 0
    for _ in range(count):
        try:
            with socket.create_connection(("127.0.0.1", port), 10) as client:
                client.sendall(b"GET /ShowGraphic?movie.gif HTTP/1.0\r\n\r\n")
                wrong += read_all(client) != wanted
        except OSError:
            wrong += 1
    return wrong


def churn(site, count, wanted, workers=4):
    """So many requests from some processes at once; returns how many got something else than wanted."""
    return sum(in_lanes(functools.partial(_churn, site.port, count // workers), workers * [wanted], workers))


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


@contextlib.contextmanager
def visiting(site, count, movie, rest):
    """So many visitors while the scope lasts; gives them, with their faults when it is over."""
    ends = threading.Event()
    visitors = [Visitor(site, number, ends, movie, rest) for number in range(count)]
    for visitor in visitors:
        visitor.start()
    yield visitors
    ends.set()
    for visitor in visitors:
        visitor.join()


def faults_of(visitors):
    return [fault for visitor in visitors for fault in visitor.faults]
