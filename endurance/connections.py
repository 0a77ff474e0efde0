#!/usr/bin/env python3
"""Clients that are slow, rude or gone: connections.py FOLDER_OF_THE_PROGRAMS [ROW...]"""
from clients import *

STALL_LIMIT = 90  # s: a transfer that stands still falls to the sweep of the minute after its 20 s
SWEEP_INTERVAL = 60  # s
KEPT_KB = 8192  # what may stay of a rush in memory


def read_slowly(programs, results, what, target):
    count, growth_limit_kb, most_kb = 200, 200 * 64, 60 * 1024
    with Site(programs, settings={"IdleTimeout": "10", "MaxConnections": "250"}) as site:
        write_movie(site, 20 << 20)
        write_movie(site, 4 << 20, "big.bmp")
        site.get("/ShowHelp")
        before, resident = site.descriptors(), site.resident_kb()
        most, took, clients = resident, None, []
        with Probe(site) as probe:
            begun = read = time.monotonic()
            for _ in range(count):
                client = socket.socket()
                client.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 1024)
                client.connect(("127.0.0.1", site.port))
                client.sendall(b"GET " + target + b" HTTP/1.0\r\n\r\n")
                client.setblocking(False)
                clients.append(client)
                time.sleep(0.02)
            while took is None and time.monotonic() - begun < STALL_LIMIT + 10:
                most = max(most, site.resident_kb())
                if site.descriptors() - before <= 2:  # the probe's own
                    took = time.monotonic() - begun
                if time.monotonic() - read > 5:
                    read = time.monotonic()
                    for client in clients:
                        with contextlib.suppress(OSError):
                            client.recv(32)
                time.sleep(0.1)
            for client in clients:
                client.close()
        begun = time.monotonic()
        while site.resident_kb() - resident > KEPT_KB and time.monotonic() - begun < SWEEP_INTERVAL + 5:
            time.sleep(0.5)
        kept, left = site.resident_kb() - resident, site.descriptors() - before
        seen = "%d MB at the most, %+d kB after %.0f s more; all dropped after %s; %s; %d descriptors left" % (
            most / 1024, kept, time.monotonic() - begun, "%.0f s" % took if took else "never", probe.text(), left)
        wanted = "60 MB and +%d kB at the most, +%d kB a minute later, all dropped in %d s, p99 20 ms, 0 descriptors left" % (
            growth_limit_kb, KEPT_KB, STALL_LIMIT)
        met = (most <= most_kb and most - resident <= growth_limit_kb and kept <= KEPT_KB and took is not None
               and took <= STALL_LIMIT and probe.p99() <= 20 and not probe.failures and left <= 0)
        results.add("L3", what, count, seen, wanted, met)


def check_slow_readers(programs, results):
    """L3. A movie goes out in chunks, a picture piece by piece from its file: either costs next to nothing."""
    read_slowly(programs, results, "a movie of 20 MB read at 32 bytes each 5 s", b"/ShowMovie?1&x&/big.avi")
    read_slowly(programs, results, "a picture of 4 MB read at 32 bytes each 5 s", b"/ShowPicture?1&full&/big.bmp")


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


ROWS = [("L3", check_slow_readers), ("L7", check_resets)]


if __name__ == "__main__":
    open_files_limit(4096)
    run_rows(ROWS)
