"""The page of results: tables in Markdown, each wanted figure with whether it was met."""
import datetime
import os
import platform
import subprocess


def first_line(command):
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    return result.stdout.strip().split("\n")[0]


def field_of(path, name):
    with open(path) as file:
        for line in file:
            if line.startswith(name):
                return line.split(":", 1)[1].strip()
    return ""


def package_version(package):
    return first_line(["dpkg-query", "-W", "-f", "${Version}", package])


PEERS = ["nginx", "lighttpd", "libvips42", "imagemagick", "libjpeg62-turbo", "apache2-utils", "findutils",
         "libqt6gui6", "libsqlite3-0", "g++"]


def machine():
    memory = int(field_of("/proc/meminfo", "MemTotal").split()[0]) / 1024 / 1024
    with open("/etc/debian_version") as file:
        debian = file.read().strip()
    return "%s, %d cores, %.0f GB, Linux %s, Debian %s" % (
        field_of("/proc/cpuinfo", "model name") or platform.machine(), os.cpu_count(), memory, platform.release().split("-")[0],
        debian)


class Report:
    """Keeps the page and prints it as it grows."""

    def __init__(self):
        self.lines = []
        self.unmet = []

    def write(self, text=""):
        self.lines.append(text)
        print(text, flush=True)

    def head(self, command):
        self.write("# Performance\n")
        self.write("Measured %s (UTC) on %s. Load of the machine before: %.2f.\n" % (
            datetime.datetime.now(datetime.timezone.utc).strftime("%Y-%m-%d %H:%M"), machine(), os.getloadavg()[0]))
        self.write("Command: `%s`\n" % command)
        self.write("With: " + ", ".join("%s %s" % (name, package_version(name)) for name in PEERS) + ".\n")

    def section(self, title, text):
        self.write("\n## %s\n\n%s\n" % (title, text))

    def table(self, columns, rows):
        """The first column holds names, the others numbers."""
        self.write("| " + " | ".join(columns) + " |")
        self.write("|---|" + "---:|" * (len(columns) - 1))
        for row in rows:
            self.write("| " + " | ".join(str(cell) for cell in row) + " |")
        self.write()

    def wanted(self, text, is_met, measured):
        """One wanted figure. @param measured what came, as text"""
        verdict = "met" if is_met else "**not met**"
        if not is_met:
            self.unmet.append("%s: %s" % (text, measured))
        self.write("- Wanted: %s. Measured: %s; %s." % (text, measured, verdict))

    def save(self, path):
        with open(path, "w") as file:
            file.write("\n".join(self.lines) + "\n")
