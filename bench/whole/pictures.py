"""Conversions: processor milliseconds for each picture, ours beside others'."""
import os
import statistics
import urllib.request

from benchmarks import run_benchmarks
from processes import run_measured
from site_under_test import Site
from peers import nginx

# Width in pixels and quality in percent, as the program has them when the owner has set nothing.
MODES = {"thumb": (150, 50), "slideshow": (300, 60), "preview": (375, 70)}
IN_PROCESS = ["bare", "ours", "libvips"]
WITH_SERVER = ["ours, whole request", "nginx image_filter"]
COLUMNS = [*IN_PROCESS, "ImageMagick", *WITH_SERVER]
ROUNDS = 3


def image_magick(path, width, quality):
    """A whole process, its start with it: there is no other way to use the command."""
    command = ["convert", "-define", "jpeg:size=%dx%d" % (2 * width, 2 * width), path, "-auto-orient", "-thumbnail",
               "%dx>" % width, "-quality", str(quality), "jpeg:/dev/null"]
    environment = dict(os.environ, MAGICK_THREAD_LIMIT="1")
    return min(run_measured(command, env=environment)[2] for _ in range(ROUNDS))


def by_server(server, target, count):
    """Processor seconds of the server for each of so many requests."""
    before = server.processor_seconds()
    for _ in range(count):
        with urllib.request.urlopen(server.address(target)) as answer:
            if len(answer.read()) < 500:
                raise RuntimeError("no picture came from " + target)
    return (server.processor_seconds() - before) / count


def newer_formats(programs, folder):
    """Rows of a table: the large picture's thumbnail from each file of the folder."""
    results = run_benchmarks(os.path.join(programs, "bench_platform"), pattern="^photo.*thumb",
                             environment={"PIXMORA_BENCH_PHOTOS": folder, "VIPS_CONCURRENCY": "1"})
    rows = {}
    for file in sorted(os.listdir(folder)):
        name = os.path.splitext(file)[0]
        row = {who: results["%s/thumb/%s" % (name, who)]["processor"] for who in ("ours", "libvips")}
        row["ImageMagick"] = image_magick(os.path.join(folder, file), *MODES["thumb"])
        rows[file] = row
    return rows


def measure_servers(site, peer, photographs, times):
    for name in [photographs.large, *photographs.small]:
        count = 5 if name == photographs.large else 10
        for mode, (width, quality) in MODES.items():
            targets = [(site, "ShowPicture?1&%s&/%s.jpg" % (mode, name)),
                       (peer, "resize/%d/%d/%s.jpg" % (width, quality, name))]
            best = [float("inf")] * 2
            for _ in range(ROUNDS):
                best = [min(old, by_server(server, target, count)) for old, (server, target) in zip(best, targets)]
            times.update({(name, mode, who): seconds for who, seconds in zip(WITH_SERVER, best)})


def measure(programs, folder, photographs):
    """Returns {(picture, mode, who): processor seconds}."""
    times = {}
    results = run_benchmarks(os.path.join(programs, "bench_platform"), pattern="^photo",
                             environment={"PIXMORA_BENCH_PHOTOS": photographs.folder, "VIPS_CONCURRENCY": "1"})
    for name, result in results.items():
        times[tuple(name.split("/"))] = result["processor"]
    for name in [photographs.large, *photographs.small]:
        for mode, (width, quality) in MODES.items():
            times[name, mode, "ImageMagick"] = image_magick(photographs.path(name), width, quality)
    site = Site(programs, folder)
    site.add_album("Pictures", photographs.folder)
    site.control("set", "Setup", "ConversionSpacing", "0")
    with site, nginx(folder, photographs.folder, photographs.folder) as peer:
        measure_servers(site, peer, photographs, times)
    return times


def report(page, programs, folder, photographs):
    page.section("Pictures", photographs.description() + " Processor milliseconds for one conversion, best of %d rounds in "
                 "turn. *bare*: libjpeg-turbo alone decodes the same fraction and encodes the size wanted at the same "
                 "quality, with no scaling. *ours* scales as well. "
                 "libvips works in process on one thread; ImageMagick (`jpeg:size`, one thread) with its process's "
                 "start. The last two columns are servers: the site with its statistics (no spacing of conversions), "
                 "and nginx." % ROUNDS)
    times = measure(programs, folder, photographs)
    groups = {"large": [photographs.large], "small, mean": photographs.small}
    means = {(group, mode, who): statistics.mean(times[name, mode, who] for name in names)
             for group, names in groups.items() for mode in MODES for who in COLUMNS}
    page.table(["Picture", *COLUMNS, "ours / bare"],
               [["%s, %s" % (group, mode), *("%.2f" % (1e3 * means[group, mode, who]) for who in COLUMNS),
                 "%.2f" % (means[group, mode, "ours"] / means[group, mode, "bare"])]
                for group in groups for mode in MODES])
    for group in groups:
        ratios = {mode: means[group, mode, "ours"] / means[group, mode, "bare"] for mode in MODES}
        page.wanted("%s: at most 1.10 of the bare decode plus encode" % group, max(ratios.values()) <= 1.10,
                    ", ".join("%s %.2f" % item for item in ratios.items()))
    behind = ["%s %s behind %s" % (group, mode, peer) for group in groups for mode in MODES
              for ours, peer in [("ours", "libvips"), ("ours", "ImageMagick"), WITH_SERVER]
              if means[group, mode, ours] >= means[group, mode, peer]]
    page.wanted("ahead of every peer", not behind, "; ".join(behind) or "ahead everywhere")
    newer = newer_formats(programs, photographs.newer)
    page.table(["The large picture's thumbnail", "ours", "libvips", "ImageMagick"],
               [[file, *("%.1f" % (1e3 * row[who]) for who in ("ours", "libvips", "ImageMagick"))]
                for file, row in newer.items()])
    heic = {file: row for file, row in newer.items() if file.endswith(".heic")}
    page.wanted("HEIC: ahead of libvips and ImageMagick",
                all(row["ours"] < min(row["libvips"], row["ImageMagick"]) for row in heic.values()),
                ", ".join("%s %.1f ms" % (file, 1e3 * row["ours"]) for file, row in heic.items()))
