"""Runs of the programs made with Google Benchmark."""
import json
import os
import re
import subprocess

TO_SECONDS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}


def run_benchmarks(program, pattern="", repetitions=3, minimum_seconds=0.2, environment=None):
    """Returns {name: {"real": seconds, "processor": seconds}}, each the best of the repetitions, which come mixed with
    those of the other benchmarks so that what else the machine does falls on all alike."""
    command = [program, "--benchmark_format=json", "--benchmark_filter=" + (pattern or "."),
               "--benchmark_repetitions=%d" % repetitions, "--benchmark_min_time=%g" % minimum_seconds,
               "--benchmark_enable_random_interleaving=true"]
    result = subprocess.run(command, stdout=subprocess.PIPE, env=dict(os.environ, **(environment or {})), text=True,
                            check=True)
    best = {}
    for run in json.loads(result.stdout)["benchmarks"]:
        if run.get("error_occurred"):
            raise RuntimeError("%s: %s" % (run["name"], run["error_message"]))
        if run["run_type"] != "iteration":
            continue
        name = re.sub(r"/(real_time|process_time|iterations:\d+|repeats:\d+)", "", run["name"])
        unit = TO_SECONDS[run["time_unit"]]
        times = best.setdefault(name, {"real": float("inf"), "processor": float("inf")})
        times["real"] = min(times["real"], run["real_time"] * unit)
        times["processor"] = min(times["processor"], run["cpu_time"] * unit)
    return best
