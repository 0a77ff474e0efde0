"""What the endurance scripts share: a pixmorad of their own on a temporary folder, and the rows of the results' table.

    from endurance import *

    with Site(programs, settings={"IdleTimeout": "5"}) as site: ...
    results = Results(); results.add("D1", "kill -9 while events are written", 1000, "0 lost", "0 lost", lost == 0)
"""
import os
import random
import re
import resource
import select
import shutil
import signal
import socket
import sqlite3
import subprocess
import sys
import tempfile
import threading
import time


def bitmap(width=40, height=30, shade=90):
    """The bytes of a BMP picture of one colour."""
    row = bytes([shade, 90, 255 - shade]) * width
    pixels = (row + bytes(-len(row) % 4)) * height
    head = b"BM" + (54 + len(pixels)).to_bytes(4, "little") + bytes(4) + (54).to_bytes(4, "little")
    info = (40).to_bytes(4, "little") + width.to_bytes(4, "little") + height.to_bytes(4, "little") + b"\1\0\x18\0"
    return head + info + bytes(4) + len(pixels).to_bytes(4, "little") + bytes(16) + pixels


def free_port():
    """Outside the range that the system gives to clients, so that none takes it while its site is down."""
    while True:
        port = random.randrange(10000, 32000)
        with socket.socket() as probe:
            try:
                probe.bind(("0.0.0.0", port))
                return port
            except OSError:
                pass  # another program's


class Site:
    """One pixmorad with its settings, database and one album "Trips" in a temporary folder (`folder`). Started by
    `start` or `with`; `stop` and `kill` end it, `close` also removes the folder."""

    def __init__(self, programs, settings=None, album=None, command_prefix=(), limits=None):
        """album: a folder to serve, else 12 drawn pictures and a movie of 300,000 bytes. command_prefix: words before
        pixmorad's (strace ...). limits: {resource.RLIMIT_...: value} for the process."""
        self.programs = os.path.abspath(programs)
        self.folder = tempfile.mkdtemp(prefix="pixmora-endurance-")
        self.home = self.folder + "/home"
        self.database = self.home + "/db_v9.mdb"
        self.album = album or self.folder + "/album"
        self.errors = self.folder + "/stderr"  # what pixmorad said on standard error, over all its starts
        self.port = free_port()
        self.process = None
        self.command_prefix = list(command_prefix)
        self.limits = limits or {}
        self.environment = dict(os.environ, PIXMORA_HOME=self.home, XDG_CONFIG_HOME=self.folder + "/config")
        os.makedirs(self.home)
        if not album:
            os.makedirs(self.album)
            for i in range(12):
                with open("%s/picture_%02d.bmp" % (self.album, i), "wb") as file:
                    file.write(bitmap(shade=20 * i))
            with open(self.album + "/film.avi", "wb") as file:
                file.write(os.urandom(300000))
        self.control("album", "add", "Trips", self.album)
        for key, value in {"ListenPort": str(self.port), "ConversionSpacing": "0", **(settings or {})}.items():
            self.control("set", "Setup", key, value)

    def __enter__(self):
        self.start()
        return self

    def __exit__(self, *_):
        self.close()

    def control(self, *words):
        """Runs pixmoractl while the website is stopped."""
        subprocess.run([self.programs + "/pixmoractl", *words], env=self.environment, check=True)

    def _limit(self):
        for what, value in self.limits.items():
            resource.setrlimit(what, (value, value))

    def start(self, timeout=30):
        """Starts and waits for "Your Website is Live!". Returns the seconds it took; raises when it did not come up."""
        begun = time.monotonic()
        with open(self.errors, "ab") as errors:
            self.process = subprocess.Popen(
                self.command_prefix + [self.programs + "/pixmorad"], env=self.environment, stdout=subprocess.PIPE,
                stderr=errors, preexec_fn=self._limit)
        watchdog = threading.Timer(timeout, self.process.kill)
        watchdog.start()
        said = b""
        for line in self.process.stdout:
            said += line
            if line.startswith(b"http://"):
                break
        else:
            watchdog.cancel()
            raise RuntimeError("pixmorad did not start: %r %r" % (said, self.error_text()[-500:]))
        watchdog.cancel()
        threading.Thread(target=self.process.stdout.read, daemon=True).start()
        return time.monotonic() - begun

    def is_alive(self):
        return self.process is not None and self.process.poll() is None

    def pid(self):
        """The process id of pixmorad itself, also behind a command prefix."""
        if not self.command_prefix:
            return self.process.pid
        with open("/proc/%d/task/%d/children" % (self.process.pid, self.process.pid)) as file:
            return int(file.read().split()[0])

    def stop(self, number=signal.SIGTERM, timeout=20):
        """Ends it and returns the exit status (negative: the signal's number)."""
        if self.process is None:
            return None
        if self.is_alive():
            os.kill(self.pid(), number)
        status = self.process.wait(timeout)
        self.process = None
        return status

    def kill(self):
        return self.stop(signal.SIGKILL)

    def close(self):
        if self.is_alive():
            self.kill()
        shutil.rmtree(self.folder, ignore_errors=True)

    def error_text(self):
        with open(self.errors, "rb") as file:
            return file.read().decode("utf-8", "replace")

    def connect(self, timeout=10):
        return socket.create_connection(("127.0.0.1", self.port), timeout)

    def ask(self, request, timeout=10):
        """Sends bytes and returns all bytes of the answer until the other side closes."""
        with self.connect(timeout) as client:
            client.sendall(request)
            return read_all(client)

    def get(self, target, timeout=10):
        return self.ask(b"GET " + target.encode() + b" HTTP/1.0\r\n\r\n", timeout)

    def query(self, statement):
        """Rows of the database, read beside the running program."""
        with sqlite3.connect("file:%s?mode=ro" % self.database, uri=True, timeout=10) as base:
            return base.execute(statement).fetchall()

    def integrity(self):
        return self.query("PRAGMA integrity_check")[0][0]

    def resident_kb(self):
        with open("/proc/%d/status" % self.pid()) as file:
            return int(re.search(r"VmRSS:\s*(\d+)", file.read()).group(1))

    def descriptors(self):
        return len(os.listdir("/proc/%d/fd" % self.pid()))

    def processor_seconds(self):
        with open("/proc/%d/stat" % self.pid()) as file:
            fields = file.read().rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def read_all(client):
    parts = []
    while True:
        part = client.recv(65536)
        if not part:
            return b"".join(parts)
        parts.append(part)


class Talk:
    """One connection's whole life: `answer`, the `seconds` until the other side's first sign of life, and whether it
    `was_reset`. Raises socket.timeout when the other side leaves the connection open without a byte for `timeout`."""

    def __init__(self, port, request, timeout=10, half_close=False):
        self.answer, self.seconds, self.was_reset = b"", None, False
        begun = time.monotonic()
        with socket.create_connection(("127.0.0.1", port), timeout) as client:
            client.setblocking(False)
            try:
                self._run(client, memoryview(request), timeout, half_close, begun)
            except (ConnectionResetError, BrokenPipeError):
                self.was_reset = True
            self.seconds = self.seconds or time.monotonic() - begun

    def _run(self, client, unsent, timeout, half_close, begun):
        while True:
            readable, writable, _ = select.select([client], [client] if unsent else [], [], timeout)
            if readable:
                part = client.recv(1 << 20)
                self.seconds = self.seconds or time.monotonic() - begun
                if not part:
                    return
                self.answer += part
            elif writable:
                unsent = unsent[client.send(unsent[:1 << 16]):]
                if not unsent and half_close:
                    client.shutdown(socket.SHUT_WR)
            else:
                raise socket.timeout("no sign of life for %s s" % timeout)


def percentile(values, share):
    """The value below which that share (0 to 1) of them lies."""
    ordered = sorted(values)
    return ordered[min(len(ordered) - 1, int(share * len(ordered)))]


class Results:
    """Rows of the table; prints each as it comes, one line of tab-separated fields."""

    def __init__(self):
        self.failed = 0

    def add(self, row, what, times, seen, wanted, met):
        """row: the target's name (D1 ...). what: what was done. times: how often. met: whether `seen` is what was
        wanted; None where it could not be done here."""
        self.failed += met is not None and not met
        fields = [row, what, times, seen, wanted, "not done" if met is None else "met" if met else "NOT MET"]
        print("\t".join(str(field) for field in fields), flush=True)

    def finish(self):
        sys.exit(1 if self.failed else 0)


def programs_folder():
    """The folder of the programs, the scripts' first argument."""
    if len(sys.argv) < 2:
        sys.exit("usage: %s FOLDER_OF_THE_PROGRAMS" % sys.argv[0])
    return sys.argv[1]


def run_rows(rows):
    """All rows, or those that the command line names, of (name, check(programs, results))."""
    programs, only = programs_folder(), sys.argv[2:]
    results = Results()
    for row, check in rows:
        if not only or row in only:
            check(programs, results)
    results.finish()
