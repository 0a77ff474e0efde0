"""A pixmorad of one's own on a folder, for what runs the whole program: benchmarks, endurance, browsers."""
import os
import random
import resource
import shutil
import signal
import socket
import sqlite3
import subprocess
import tempfile
import threading
from pathlib import Path


def bitmap(width=40, height=30, shade=90):
    """The bytes of a BMP picture of one colour."""
    row = bytes([shade, 90, 255 - shade]) * width
    pixels = (row + bytes(-len(row) % 4)) * height
    head = b"BM" + (54 + len(pixels)).to_bytes(4, "little") + bytes(4) + (54).to_bytes(4, "little")
    info = (40).to_bytes(4, "little") + width.to_bytes(4, "little") + height.to_bytes(4, "little") + b"\1\0\x18\0"
    return head + info + bytes(4) + len(pixels).to_bytes(4, "little") + bytes(16) + pixels


def free_port():
    """Outside the range that the system gives to clients, so that none takes it while its server is down."""
    while True:
        port = random.randrange(10000, 32000)
        with socket.socket() as probe:
            try:
                probe.bind(("0.0.0.0", port))
                return port
            except OSError:
                pass  # another program's


def processor_seconds(pid):
    """What all threads of a process have used so far; the kernel's count in nanoseconds."""
    return sum(int(path.read_text().split()[0]) for path in Path("/proc/%d/task" % pid).glob("*/schedstat")) / 1e9


def memory_kb(pid, field="VmRSS"):
    """VmRSS: resident now; VmHWM: its peak; RssAnon: the part that is no file's."""
    lines = Path("/proc/%d/status" % pid).read_text().splitlines()
    return next(int(line.split()[1]) for line in lines if line.startswith(field + ":"))


def forget_memory_peak(pid):
    Path("/proc/%d/clear_refs" % pid).write_text("5")


def read_all(client):
    """What comes until the other side closes."""
    parts = []
    while part := client.recv(65536):
        parts.append(part)
    return b"".join(parts)


class Site:
    """Albums and settings are made while it is stopped. Started by `start` or `with`; `stop` and `kill` end it, `close`
    also removes the folder that it has made."""

    def __init__(self, programs, folder=None, settings=None, command_prefix=(), limits=None):
        """command_prefix: words before pixmorad's (strace ...). limits: {resource.RLIMIT_...: value} for the process."""
        self.programs = os.path.abspath(programs)
        self._is_own_folder = folder is None
        self.folder = folder or tempfile.mkdtemp(prefix="pixmora-site-")
        self.home = self.folder + "/home"
        self.database = self.home + "/db_v9.mdb"
        self.errors = self.folder + "/stderr"  # what pixmorad said on standard error, over all its starts
        self.port = free_port()
        self.process = self._reader = None
        self.command_prefix = list(command_prefix)
        self.limits = {what: (value, value) for what, value in (limits or {}).items()}
        self.environment = dict(os.environ, PIXMORA_HOME=self.home, XDG_CONFIG_HOME=self.folder + "/config", TZ="UTC")
        os.makedirs(self.home)
        for key, value in {"ListenPort": str(self.port), **(settings or {})}.items():
            self.control("set", "Setup", key, value)

    def __enter__(self):
        self.start()
        return self

    def __exit__(self, *_):
        self.close()

    def control(self, *words):
        """Runs pixmoractl while the website is stopped."""
        subprocess.run([self.programs + "/pixmoractl", *words], env=self.environment, check=True, stdout=subprocess.DEVNULL)

    def add_album(self, name, folder, *options):
        self.control("album", "add", name, folder, *options)

    def start(self, timeout=30):
        """Starts and waits until the site tells its address; raises when it did not come up."""
        with open(self.errors, "ab") as errors:
            self.process = subprocess.Popen(
                self.command_prefix + [self.programs + "/pixmorad"], env=self.environment, stdout=subprocess.PIPE,
                stderr=errors, preexec_fn=lambda: [resource.setrlimit(*limit) for limit in self.limits.items()])
        watchdog = threading.Timer(timeout, self.process.kill)
        watchdog.start()
        has_started = any(line.startswith(b"http://") for line in self.process.stdout)
        watchdog.cancel()
        if not has_started:
            raise RuntimeError("pixmorad did not start: %r" % self.error_text()[-500:])
        self._reader = threading.Thread(target=self.process.stdout.read, daemon=True)
        self._reader.start()

    def is_alive(self):
        return self.process is not None and self.process.poll() is None

    @property
    def pid(self):
        """The process id of pixmorad itself, also behind a command prefix."""
        if not self.command_prefix:
            return self.process.pid
        children = Path("/proc/%d/task/%d/children" % (self.process.pid, self.process.pid)).read_text().split()
        return int(children[0]) if children else self.process.pid  # a prefix may become the program

    def stop(self, number=signal.SIGTERM, timeout=20):
        """Ends it and returns the exit status (negative: the signal's number)."""
        if self.process is None:
            return None
        if self.is_alive():
            os.kill(self.pid, number)
        status = self.process.wait(timeout)
        self._reader.join()
        self.process.stdout.close()
        self.process = None
        return status

    def kill(self):
        return self.stop(signal.SIGKILL)

    def close(self):
        if self.is_alive():
            self.kill()
        if self._is_own_folder:
            shutil.rmtree(self.folder, ignore_errors=True)

    def error_text(self):
        return Path(self.errors).read_text("utf-8", "replace")

    def address(self, target=""):
        return "http://127.0.0.1:%d/%s" % (self.port, target)

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
        return memory_kb(self.pid)

    def descriptors(self):
        return len(os.listdir("/proc/%d/fd" % self.pid))

    def processor_seconds(self):
        return processor_seconds(self.pid)
