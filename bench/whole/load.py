"""Requests in numbers: ab with 16 connections, HTTP/1.0, each request on a connection of its own."""
import re
import statistics
from dataclasses import dataclass

from processes import run_measured

CONNECTIONS = 16


@dataclass
class Load:
    rate: float  # requests a second
    server_microseconds: float  # the server's processor time for each
    is_limited_by_ab: bool  # ab itself had a core for itself and filled it
    body_bytes: int


def ab(server, target, count, options=()):
    """@param server with `address` and `processor_seconds` @param options ab's own"""
    before = server.processor_seconds()
    command = ["ab", "-q", "-r", "-c", str(CONNECTIONS), "-n", str(count), *options, server.address(target)]
    output, seconds, own = run_measured(command)
    used = server.processor_seconds() - before
    complete = int(re.search(r"Complete requests:\s+(\d+)", output)[1])
    if complete != count or "Non-2xx" in output:
        raise RuntimeError("ab did not get its answers:\n" + output)
    # A page whose length changes is no failure; a connection that fails is one.
    failures = re.search(r"Connect: (\d+), Receive: (\d+), Length: \d+, Exceptions: (\d+)", output)
    if failures and any(int(number) for number in failures.groups()):
        raise RuntimeError("ab saw connections fail:\n" + output)
    return Load(rate=float(re.search(r"Requests per second:\s+([\d.]+)", output)[1]),
                server_microseconds=used / count * 1e6, is_limited_by_ab=own / seconds > 0.9,
                body_bytes=int(re.search(r"Document Length:\s+(\d+)", output)[1]))


def best(loads):
    """The fastest of several rounds; what disturbs a round only slows it."""
    fastest = max(loads, key=lambda load: load.rate)
    return Load(fastest.rate, min(load.server_microseconds for load in loads), fastest.is_limited_by_ab,
                fastest.body_bytes)


def percentile(values, share):
    ordered = sorted(values)
    return ordered[min(len(ordered) - 1, int(len(ordered) * share))]


def spread(seconds):
    """Median, 99th percentile and maximum, in ms."""
    return tuple(1e3 * value for value in (statistics.median(seconds), percentile(seconds, 0.99), max(seconds)))
