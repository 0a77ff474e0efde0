"""What the endurance scripts share: a site with an album, and the rows of the results' table.

    from endurance import *

    with Site(programs, settings={"IdleTimeout": "5"}) as site: ...
    results = Results(); results.add("D1", "kill -9 while events are written", 1000, "0 lost", "0 lost", lost == 0)
"""
import concurrent.futures
import contextlib
import functools
import multiprocessing
import os
import random
import re
import resource
import select
import shutil
import signal
import socket
import sqlite3
import struct
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), "../tests/support"))
import site_under_test  # noqa: E402
from site_under_test import bitmap, forget_memory_peak, memory_kb, read_all  # noqa: E402


def is_page(answer):
    return answer.startswith(b"HTTP/1.0 200 OK\r\n") and answer.rstrip().endswith(b"</html>")


def draw_album(folder):
    """12 pictures and a movie of 300,000 bytes."""
    os.makedirs(folder)
    for i in range(12):
        with open("%s/picture_%02d.bmp" % (folder, i), "wb") as file:
            file.write(bitmap(shade=20 * i))
    with open(folder + "/film.avi", "wb") as file:
        file.write(os.urandom(300000))
    return folder


class Site(site_under_test.Site):
    """With one album "Trips", a folder given or drawn, and no spacing of conversions."""

    def __init__(self, programs, settings=None, album=None, **more):
        super().__init__(programs, settings={"ConversionSpacing": "0", **(settings or {})}, **more)
        self.album = album or draw_album(self.folder + "/album")
        self.add_album("Trips", self.album)


class Talk:
    """One connection's whole life: `answer`, and the `seconds` until the other side's first sign of life. Raises
    socket.timeout when the other side leaves the connection open without a byte for `timeout`."""

    def __init__(self, port, request, timeout=10):
        self.answer, self.seconds = b"", None
        begun = time.monotonic()
        with socket.create_connection(("127.0.0.1", port), timeout) as client:
            client.setblocking(False)
            with contextlib.suppress(ConnectionResetError, BrokenPipeError):
                self._run(client, memoryview(request), timeout, begun)
            self.seconds = self.seconds or time.monotonic() - begun

    def _run(self, client, unsent, timeout, begun):
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
            else:
                raise socket.timeout("no sign of life for %s s" % timeout)


def percentile(values, share):
    """The value below which that share (0 to 1) of them lies."""
    ordered = sorted(values)
    return ordered[min(len(ordered) - 1, int(share * len(ordered)))]


def in_lanes(work, items, lanes=8):
    """The results of work(item), each in one of some processes."""
    with concurrent.futures.ProcessPoolExecutor(lanes) as pool:
        return list(pool.map(work, items))


class Results:
    """Rows of the table; prints each as it comes, one line of tab-separated fields."""

    def __init__(self):
        self.failed = 0

    def add(self, row, what, times, seen, wanted, met):
        """row: the target's name (D1 ...). what: what was done. times: how often. met: whether `seen` is what was
        wanted."""
        self.failed += not met
        fields = [row, what, times, seen, wanted, "met" if met else "NOT MET"]
        print("\t".join(str(field) for field in fields), flush=True)

    def finish(self):
        sys.exit(1 if self.failed else 0)


def run_rows(rows):
    """All rows, or those that the command line names behind the folder of the programs, of (name, check(programs, results))."""
    if len(sys.argv) < 2:
        sys.exit("usage: %s FOLDER_OF_THE_PROGRAMS [ROW...]" % sys.argv[0])
    programs, only, results = sys.argv[1], sys.argv[2:], Results()
    for row, check in rows:
        if not only or row in only:
            check(programs, results)
    results.finish()
