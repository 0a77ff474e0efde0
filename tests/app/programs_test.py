#!/usr/bin/env python3
"""The programs as a shell meets them: exit codes, refusals, signals, defaults: programs_test.py FOLDER_OF_THE_PROGRAMS"""
import contextlib
import os
import re
import shutil
import signal
import socket
import sqlite3
import subprocess
import sys
import time
import unittest
from pathlib import Path

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.append(HERE + "/../support")
from site_under_test import Site, bitmap  # noqa: E402

PROGRAMS = sys.argv.pop(1)

class ProgramsTest(unittest.TestCase):
    def setUp(self):
        self.site = Site(PROGRAMS)
        self.addCleanup(self.site.close)
        self.pictures = self.site.folder + "/pictures"
        os.makedirs(self.pictures + "/sub")
        Path(self.pictures, "a.bmp").write_bytes(bitmap())

    def run_words(self, *words):
        return subprocess.run(words, env=self.site.environment, capture_output=True, text=True, timeout=60)

    def test_pixmoractl_answers_as_the_table_says(self):
        table = Path(HERE, "commands.tsv").read_text("utf-8").replace("{folder}", self.site.folder)
        for words, status, output, errors in [line.split("\t") for line in table.splitlines()[1:]]:
            with self.subTest(words):
                done = self.run_words(PROGRAMS + "/pixmoractl", *words.split())
                wanted = output.replace("<tab>", "\t").replace("<line>", "\n") + "\n" if output != "-" else ""
                self.assertEqual((int(status), wanted), (done.returncode, done.stdout), done.stderr)
                said = done.stderr.endswith(errors + "\n") if errors not in "-?" else (errors == "?") == bool(done.stderr)
                self.assertTrue(said, done.stderr)

    def test_a_check_names_what_would_trouble_the_site(self):
        self.site.add_album("Trips", self.pictures)
        shutil.rmtree(self.pictures)
        Path(self.site.home, "restrictwords.txt").write_text("Private*\na[b\n")
        done = self.run_words(PROGRAMS + "/pixmoractl", "check")
        self.assertEqual((1, 2), (done.returncode, done.stdout.count("\n")), done.stdout)
        self.assertIn("restrictwords.txt, line 2", done.stdout)
        self.assertIn("The folder '%s' of the album 'Trips' is missing" % self.pictures, done.stdout)

    def test_a_running_site_keeps_its_tables_and_ends_by_each_signal(self):
        self.site.add_album("Trips", self.pictures)
        manager = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.addCleanup(manager.close)
        self.site.environment["NOTIFY_SOCKET"] = self.site.folder + "/notify"
        manager.bind(self.site.environment["NOTIFY_SOCKET"])
        manager.settimeout(10)
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            self.site.start()
            while not manager.recv(1000).startswith(b"READY=1\nSTATUS=Serving http://"):
                pass
            self.assertIn(b"Trips", self.site.get("/"))
            for words in [["pixmoractl", "album", "remove", "Trips"], ["pixmorad"]]:
                done = self.run_words(PROGRAMS + "/" + words[0], *words[1:])
                self.assertEqual((1, True), (done.returncode, "already running" in done.stderr), done)
            self.assertEqual(0, self.site.stop(number))
        self.assertEqual("Trips\t%s\n" % self.pictures, self.run_words(PROGRAMS + "/pixmoractl", "album", "list").stdout)

    def test_words_are_answered_or_refused(self):
        self.site.environment["QT_QPA_PLATFORM"] = "offscreen"
        file = self.pictures + "/a.bmp"
        for words, status in [("pixmorad --help", 0), ("pixmorad --version", 0), ("pixmorad start", 2), ("pixmorad --help me", 2),
                              ("pixmora --help", 0), ("pixmora --version", 0), ("pixmora START", 2), ("pixmora " + file, 2)]:
            with self.subTest(words):
                done = self.run_words(*(PROGRAMS + "/" + words).split())
                self.assertEqual((status, status == 0, status != 0), (done.returncode, bool(done.stdout), bool(done.stderr)))

    def test_a_reader_of_the_messages_who_goes_ends_nothing(self):
        self.site.add_album("Trips", self.pictures)
        reading, writing = os.pipe()
        os.close(reading)
        server = subprocess.Popen([PROGRAMS + "/pixmorad"], env=self.site.environment, stdout=writing, stderr=writing)
        os.close(writing)
        self.addCleanup(server.wait)
        self.addCleanup(server.kill)
        deadline, page = time.monotonic() + 60, b""
        while not page and server.poll() is None and time.monotonic() < deadline:
            with contextlib.suppress(OSError):
                page = self.site.get("/ShowHelp")
            time.sleep(0.1)
        self.assertIn(b"</html>", page)
        server.send_signal(signal.SIGHUP)
        self.assertEqual(0, server.wait(60))

    def test_a_start_that_cannot_be_says_why(self):
        self.assertEqual(1, self.run_words(PROGRAMS + "/pixmorad").returncode, "no albums")
        self.site.add_album("Trips", self.pictures)
        with socket.socket() as other:
            other.bind(("0.0.0.0", self.site.port))
            other.listen()
            done = self.run_words(PROGRAMS + "/pixmorad")
        self.assertEqual(1, done.returncode)
        self.assertIn("port %d! Please go to Port Setup in Setup and choose another port." % self.site.port, done.stderr)
        self.site.control("set", "Setup", "ListenPort", "70000")
        self.assertIn('use "pixmoractl set Setup ListenPort" and choose', self.run_words(PROGRAMS + "/pixmorad").stderr)
        self.site.control("set", "Setup", "FilesPerRow", "many")
        done = self.run_words(PROGRAMS + "/pixmorad")
        self.assertEqual((70, "Type mismatch"), (done.returncode, done.stderr[:13]))
        with sqlite3.connect(self.site.database) as base:
            base.execute("DROP TABLE Albums")
        done = self.run_words(PROGRAMS + "/pixmorad")
        self.assertEqual((70, 2), (done.returncode, done.stderr.count("\n")), done.stderr)
        self.assertIn("Error in database! |  | Please make sure '", done.stderr)

    def test_a_stop_leaves_nothing_open_and_a_start_begins_anew(self):
        """With no setting but the port: every default takes part."""
        Path(self.pictures, "film.avi").write_bytes(bytes(20 << 20))
        self.site.add_album("Trips", self.pictures)
        for _ in range(2):
            self.site.start()
            for target, part in [("/", b"</html>"), ("/ShowStats", b"</html>"), ("/ShowAlbumMedia?1&thumbs&1&", b"Page 1 of 1"),
                                 ("/ShowPopular?thumbs", b"</html>"), ("/ShowPicture?1&thumb&/a.bmp", b"\r\n\r\n\xff\xd8")]:
                self.assertIn(part, self.site.get(target), target)
            with self.site.connect() as viewer:
                viewer.sendall(b"GET /ShowMovie?1&full&/film.avi HTTP/1.0\r\n\r\n")
                viewer.recv(1000)
                self.assertEqual(0, self.site.stop())
            left = [name for name in os.listdir(self.site.home) if re.search(r"-(wal|shm)$|\.(tmp|new|part)$", name)]
            self.assertEqual([], left)
            self.assertEqual("", self.site.error_text())
            self.assertEqual("0", self.run_words(PROGRAMS + "/pixmoractl", "get", "Website", "LastOnline").stdout.strip())
        self.assertEqual([(1,)], self.site.query("SELECT count(*) FROM StatsDaily WHERE AlbumName='Trips'"))
        self.assertEqual([(2,)], self.site.query("SELECT TotalCount FROM StatsTotal WHERE Stat=1"))
        overall = self.site.query("SELECT TOTAL(Visitors), TOTAL(Thumbs), TOTAL(Downloads), TOTAL(Bandwidth) FROM StatsMonthly")[0]
        self.assertIn("Stats Summary,Overall,%d,%d,%d,%d\n" % overall,
                      self.run_words(PROGRAMS + "/pixmoractl", "stats", "--csv").stdout)


if __name__ == "__main__":
    unittest.main(verbosity=2)
