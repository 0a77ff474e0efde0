"""The scan at website start beside find, and the cost of one statistics event."""
import os

from benchmarks import run_benchmarks


def report_scan(page, programs):
    page.section("Start", "The scan of an album's pictures in folders of 500, into its table, beside `find -printf "
                 "'%s %T@\\n'` with its process's start. Best of 3 rounds in turn, files in the system's cache.")
    results = run_benchmarks(os.path.join(programs, "bench_store"), pattern="OfFiles")
    rows, seconds = [], {}
    for count in (1_000, 10_000, 100_000):
        ours = results["ScanAlbumOfFiles/%d" % count]["real"]
        find = results["FindOfFiles/%d" % count]["real"]
        seconds[count] = (ours, find)
        rows.append(["{:,}".format(count), "%.4f" % ours, "%.4f" % find, "%.2f" % (ours / find),
                     "%.2f" % (ours / count * 1e6)])
    page.table(["Files", "scan s", "find s", "scan / find", "µs a file"], rows)
    for count, (ours, find) in seconds.items():
        page.wanted("%s files: at most 4 times find" % "{:,}".format(count), ours <= 4 * find, "%.2f" % (ours / find))
    growth = seconds[100_000][0] / seconds[10_000][0]
    page.wanted("linear: 10 times the files in at most 12 times the time", growth <= 12, "%.1f times" % growth)


def report_events(page, programs):
    page.section("Statistics", "One event in its five tables, kept when the call returns, with so many rows in the last "
                 "hour's table. Best of 3 rounds of 20,000 events in turn. The time includes the log's checkpoints and their "
                 "waits for the disk, the processor time does not.")
    results = run_benchmarks(os.path.join(programs, "bench_store"), pattern="RecordStat")
    times = {count: results["RecordStatWithRecentRows/%d" % count] for count in (0, 10_000, 1_000_000)}
    page.table(["Rows", "µs an event", "processor µs"],
               [["{:,}".format(count), "%.1f" % (1e6 * time["real"]), "%.1f" % (1e6 * time["processor"])]
                for count, time in times.items()])
    costs = [time["processor"] for time in times.values()]
    page.wanted("flat: processor times within 1.25 of each other", max(costs) <= 1.25 * min(costs),
                "%.2f" % (max(costs) / min(costs)))


def report_functions(page, programs):
    page.section("Functions", "Those that run for each request, each file of a listing or each statement; nanoseconds, "
                 "best of 3 rounds.")
    rows = []
    for program, pattern in (("bench_platform", "^[A-Z]"), ("bench_site", "")):
        results = run_benchmarks(os.path.join(programs, program), pattern=pattern, minimum_seconds=0.1)
        rows += [[name, "%.0f" % (result["processor"] * 1e9)] for name, result in results.items()]
    page.table(["Function", "ns"], rows)
