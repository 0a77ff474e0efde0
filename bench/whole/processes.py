"""Programs beside the site: measured to their end, or ended by their process id."""
import os
import signal
import socket
import subprocess
import time


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
