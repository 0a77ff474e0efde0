"""One pixmorad of the bench's own on a folder."""
import os
import sqlite3
import subprocess
import threading

from processes import end, free_port, processor_seconds, wait_for_port


class Site:
    """Albums and settings are made while it is stopped; `with` runs it."""

    def __init__(self, programs, folder):
        self.programs = programs
        self.home = os.path.join(folder, "home")
        self.port = free_port()
        self.process = None
        self.environment = dict(os.environ, PIXMORA_HOME=self.home, XDG_CONFIG_HOME=os.path.join(folder, "config"),
                                TZ="UTC")
        os.makedirs(self.home)
        self.control("set", "Setup", "ListenPort", str(self.port))

    def control(self, *words):
        subprocess.run([os.path.join(self.programs, "pixmoractl"), *words], env=self.environment, check=True,
                       stdout=subprocess.DEVNULL)

    def add_album(self, name, folder, *options):
        self.control("album", "add", name, folder, *options)

    def set_order(self, album, names):
        """Stores the owner's own order of an album's top folders."""
        database = sqlite3.connect(os.path.join(self.home, "db_v9.mdb"))
        database.executemany("INSERT INTO DBOrder (AlbumName, SubDir, SeqPos) VALUES (?, ?, ?)",
                             [(album, "\\\\" + name, place) for place, name in enumerate(names, 1)])
        database.commit()
        database.close()

    def __enter__(self):
        self.process = subprocess.Popen([os.path.join(self.programs, "pixmorad")], env=self.environment, text=True,
                                        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        for line in self.process.stdout:
            if line.startswith("Your Website is Live!"):
                break
        threading.Thread(target=self.process.stdout.read, daemon=True).start()
        wait_for_port(self.port, self.process)
        return self

    def __exit__(self, *_):
        end(self.process)
        self.process.stdout.close()

    @property
    def pid(self):
        return self.process.pid

    def processor_seconds(self):
        return processor_seconds(self.pid)

    def address(self, target):
        return "http://127.0.0.1:%d/%s" % (self.port, target)
