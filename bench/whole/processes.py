"""Programs under measurement: started on a free port of 127.0.0.1, ended by their process id, their processor time."""
import glob
import os
import signal
import socket
import subprocess
import time


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def processor_seconds(pid):
    """What all threads of a process have used so far; the kernel's count in nanoseconds."""
    total = 0
    for path in glob.glob("/proc/%d/task/*/schedstat" % pid):
        with open(path) as file:
            total += int(file.read().split()[0])
    return total / 1e9


def memory_megabytes(pid, field="VmRSS"):
    """VmRSS: resident now; VmHWM: its peak; RssAnon: the part that is no file's."""
    with open("/proc/%d/status" % pid) as file:
        for line in file:
            if line.startswith(field + ":"):
                return int(line.split()[1]) / 1024
    raise ValueError(field)


def forget_memory_peak(pid):
    with open("/proc/%d/clear_refs" % pid, "w") as file:
        file.write("5")


def run_measured(command, **options):
    """Runs a command to its end. Returns (its output, seconds, processor seconds)."""
    start = time.monotonic()
    with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options) as process:
        output = process.stdout.read()
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise RuntimeError("%s failed:\n%s" % (command[0], output))
    return output, time.monotonic() - start, usage.ru_utime + usage.ru_stime


def end(process):
    if process is not None and process.poll() is None:
        process.send_signal(signal.SIGTERM)
        try:
            process.wait(30)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


def wait_for_port(port, process, seconds=20):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        if process.poll() is not None:
            raise RuntimeError("%s ended with %d" % (process.args[0], process.returncode))
        try:
            socket.create_connection(("127.0.0.1", port), 1).close()
            return
        except OSError:
            time.sleep(0.05)
    raise RuntimeError("nothing answers on port %d" % port)
