#!/usr/bin/env python3
"""Runs each fuzz target for a time and prints a row of the results' table for each.

    run_fuzz.py FOLDER_OF_THE_TARGETS WORK_FOLDER [SECONDS_PER_TARGET [SEED [TARGET...]]]

WORK_FOLDER keeps what was learnt from run to run (corpus/NAME), the inputs that broke something (findings/NAME-...) and
each target's log. The seed, given or drawn, is told on standard error.
"""
import os
import random
import re
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.dirname(HERE))
import make_seeds  # noqa: E402
from endurance import Results  # noqa: E402

# The longest input of each, in bytes.
LONGEST = {"RequestGrammar": 1024, "Login": 1024, "Statements": 512, "Like": 512, "StripTags": 1024, "Exif": 4608, "IniFiles": 1024,
           "Pictures": 8192, "Movies": 16384, "Heif": 8192, "LoginGathering": 512, "ForwardedAddress": 512}
MOST_MEGABYTES = 512
MOST_ENDS = 20  # after so many findings a target's time is over
# The sanitizer keeps freed memory back; of pictures that would count as the target's own.
ENVIRONMENT = dict(os.environ, ASAN_OPTIONS="quarantine_size_mb=16:detect_leaks=1")


class Target:
    def __init__(self, programs, work, name):
        self.name = name
        self.program = os.path.join(programs, "fuzz_" + name)
        self.corpus, self.seeds, findings = (os.path.join(work, part, name) for part in ("corpus", "seeds", "findings"))
        self.findings, self.log = findings + "-", os.path.join(work, name + ".log")
        self.runs = self.megabytes = self.coverage = 0
        self.crashes, self.timeouts = set(), set()
        for folder in (self.corpus, os.path.dirname(findings)):
            os.makedirs(folder, exist_ok=True)

    def command(self, *options):
        return [self.program, "-timeout=1", "-rss_limit_mb=%d" % MOST_MEGABYTES, "-artifact_prefix=" + self.findings,
                *options]

    def run(self, seconds, seed):
        """The target ends at each finding and then begins anew, until the time is over."""
        end = time.monotonic() + seconds
        open(self.log, "w").close()
        for number in range(MOST_ENDS):
            left = int(end - time.monotonic() + 0.5)
            if left < 1:
                return
            if finding := self.run_once(left, seed + number):
                self.judge(finding)

    def run_once(self, seconds, seed):
        """Gives the input that ended the run, or what else did; nothing when time did."""
        command = self.command(
            "-max_total_time=%d" % seconds, "-seed=%d" % seed, "-max_len=%d" % LONGEST[self.name],
            "-print_final_stats=1", "-dict=%s/%s.dict" % (HERE, self.name), "-reload=0", self.corpus, self.seeds)
        with open(self.log, "ab+") as log:
            start = log.tell()
            status = subprocess.run(command, stdout=log, stderr=log, env=ENVIRONMENT).returncode
            log.seek(start)
            text = log.read().decode("utf-8", "replace")
        self.read_log(text)
        inputs = [path for path in re.findall(r"Test unit written to (.*)", text) if "-slow-unit-" not in path]
        return None if status == 0 else inputs[-1] if inputs else "%s with status %d" % (self.program, status)

    def read_log(self, text):
        def numbers(pattern):
            return [int(number) for number in re.findall(pattern, text, re.MULTILINE)] or [0]
        self.runs += numbers(r"stat::number_of_executed_units:\s*(\d+)")[0] or numbers(r"^#(\d+)\s")[-1]
        self.megabytes = max(self.megabytes, *numbers(r"(?:stat::peak_rss_mb:\s*|rss: )(\d+)"))
        self.coverage = max(self.coverage, *numbers(r" cov: (\d+)"))

    def judge(self, finding):
        """On a machine with other work a quick input can seem slow: a timeout counts when it is slow three times more,
        alone."""
        if not os.path.basename(finding).startswith(self.name + "-timeout-"):
            self.crashes.add(finding)
            return
        quiet = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL, "env": ENVIRONMENT}
        if all(subprocess.run(self.command(finding), **quiet).returncode for _ in range(3)):
            self.timeouts.add(finding)
        else:
            os.replace(finding, finding.replace("-timeout-", "-quick-when-alone-"))


def main():
    programs, work = sys.argv[1:3]
    seconds = int(sys.argv[3]) if len(sys.argv) > 3 else 60
    seed = int(sys.argv[4]) if len(sys.argv) > 4 else random.randrange(1, 1 << 31)
    names = sys.argv[5:] or list(LONGEST)
    print("seed %d" % seed, file=sys.stderr, flush=True)
    make_seeds.main(os.path.join(work, "seeds"))
    # A target that ends at a finding leaves its folder behind.
    leftovers = tempfile.TemporaryDirectory(prefix="pixmora-fuzz-")
    ENVIRONMENT["TMPDIR"] = leftovers.name
    results, runs = Results(), 0
    what = "fuzz %s, fast" if "fast" in programs else "fuzz %s"
    for name in names:
        target = Target(programs, work, name)
        target.run(seconds, seed)
        print("".join("found: %s\n" % finding for finding in sorted(target.crashes | target.timeouts)), end="", file=sys.stderr)
        seen = "%d crashes, %d timeouts, peak %d MB, coverage %d" % (
            len(target.crashes), len(target.timeouts), target.megabytes, target.coverage)
        wanted = "0 crashes, 0 timeouts, RSS at most %d MB" % MOST_MEGABYTES
        met = not target.crashes and not target.timeouts and target.megabytes <= MOST_MEGABYTES and target.runs > 0
        runs += target.runs
        results.add("H3", what % name, "%d runs" % target.runs, seen, wanted, met)
    results.add("H3", what % "targets", len(names), "%d runs in all" % runs, "each target found nothing", not results.failed)
    leftovers.cleanup()
    results.finish()


if __name__ == "__main__":
    main()
