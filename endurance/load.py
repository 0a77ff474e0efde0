#!/usr/bin/env python3
"""Many clients at once, for long, and the end under them: load.py FOLDER_OF_THE_PROGRAMS [ROW...]"""
from clients import *


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


def drift_of(values):
    """From the middle of their second quarter to that of the last."""
    quarter = len(values) // 4
    return percentile(values[-quarter:], 0.5) - percentile(values[quarter:2 * quarter], 0.5)


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
        memory, descriptors, begun = [], [], time.monotonic()
        with Probe(site, request=LOGOUT) as probe, visiting(site, 20, movie, 0.1) as visitors:
            while time.monotonic() - begun < 60 * minutes and site.is_alive():
                time.sleep(0.5)
                memory.append(site.resident_kb())
                descriptors.append(site.descriptors())
        faults = faults_of(visitors)
        for fault in faults[:20]:
            print("L8: " + fault, file=sys.stderr)
        drift = drift_of(descriptors)
        growth = drift_of(memory) * 1200 / (time.monotonic() - begun)  # in half of the time, for 600 s
        status = site.stop() if site.is_alive() else "early"
        results.add("L8", "%g minutes of 20 visitors: pages, thumbnails, movies, graphics, logins, 5 %% bad" % minutes,
                    sum(visitor.asked for visitor in visitors),
                    "%d wrong, memory %+.0f kB for 10 minutes, descriptors %+d, %s, exit %s" % (
                        len(faults), growth, drift, probe.text(), status),
                    "0 wrong, memory +1024 kB at most, descriptors +-2, p99 100 ms, exit 0",
                    not faults and growth <= 1024 and abs(drift) <= 2 and probe.p99() <= 100 and not probe.failures
                    and status == 0)


def check_termination(programs, results):
    """R2: SIGTERM under load. The movies in hand are cut, as is meant; what else was begun comes whole."""
    times, cut, bad, slowest = 10, 0, 0, 0.0
    for _ in range(times):
        site = Site(programs)
        site.control("user", "add", "Ann", "secret")
        movie = write_movie(site, 1 << 20, "soak.avi")
        with site:
            with visiting(site, 20, movie, 0.002) as visitors:
                time.sleep(random.uniform(0.3, 1))
                begun = time.monotonic()
                status = site.stop(timeout=30)
                slowest = max(slowest, time.monotonic() - begun)
            # An empty answer, a refusal: the request came too late.
            broken = [fault for fault in faults_of(visitors) if not any(word in fault for word in ["ShowMovie", ": b''", "refused", "reset"])]
            cut += len(broken)
            print("".join("R2: %s\n" % fault for fault in broken), end="", file=sys.stderr)
            log = Path(site.database + "-wal")
            bad += status != 0 or site.integrity() != "ok" or log.exists() and log.stat().st_size > 0 or bool(site.error_text())
    results.add("R2", "SIGTERM under the load of 20 visitors", times,
                "slowest end %.1f s, %d ends with a status, a message, a log left or damage, %d answers cut" % (
                    slowest, bad, cut),
                "5 s, 0, 0", slowest <= 5 and not bad and not cut)


ROWS = [("L6", check_churn), ("L8", check_soak), ("R2", check_termination)]


if __name__ == "__main__":
    open_files_limit(4096)
    run_rows(ROWS)
