#!/usr/bin/env python3
"""Measures everything and writes one page: measure.py PROGRAMS PAGE [--photos FOLDER] [--only PART ...]

PROGRAMS is the folder of the built programs, PAGE the Markdown file. Parts: pictures, browser, pages, movies, scale,
start, statistics, memory, functions. Exit status 1 when a wanted figure was not met.
"""
import argparse
import os
import signal
import sys
import tempfile
import time

TOP = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.append(os.path.join(TOP, "tests", "support"))

import browser
import memory
import movies
import pages
import pictures
import scale
import stores
from photographs import Photographs
from report import Report


def parts_of(page, programs, photographs, folder_of):
    return {
        "pictures": lambda: pictures.report(page, programs, folder_of("pictures"), photographs),
        "browser": lambda: browser.report(page, programs, folder_of("browser"), photographs),
        "pages": lambda: pages.report(page, programs, folder_of("pages"), photographs),
        "movies": lambda: movies.report(page, programs, folder_of("movies")),
        "scale": lambda: scale.report(page, programs, folder_of("scale"), photographs),
        "start": lambda: stores.report_scan(page, programs),
        "statistics": lambda: stores.report_events(page, programs),
        "memory": lambda: memory.report(page, programs, folder_of("memory"), photographs),
        "functions": lambda: stores.report_functions(page, programs),
    }


def main():
    arguments = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    arguments.add_argument("programs")
    arguments.add_argument("page")
    arguments.add_argument("--photos")
    arguments.add_argument("--only", nargs="+", default=[])
    options = arguments.parse_args()

    # An end from outside, too, leaves no server and no folder behind.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    page = Report()
    start = time.monotonic()
    with tempfile.TemporaryDirectory(prefix="pixmora-bench-") as folder:
        photographs = Photographs(folder, options.photos, TOP)

        def folder_of(name):
            place = os.path.join(folder, name)
            os.makedirs(place)
            return place

        page.head("bench/run.sh" + (" FOLDER_OF_PHOTOGRAPHS" if options.photos else ""))
        for name, run in parts_of(page, os.path.abspath(options.programs), photographs, folder_of).items():
            if not options.only or name in options.only:
                run()
    page.section("Not met", "\n".join("- " + line for line in page.unmet) or "Nothing.")
    page.write("`bench/README.md` tells why.\n")
    page.write("The run took %.0f minutes." % ((time.monotonic() - start) / 60))
    page.save(options.page)
    raise SystemExit(1 if page.unmet else 0)


if __name__ == "__main__":
    main()
