"""Movies: how fast they go, what they cost, and how long pages take meanwhile."""
import os
import selectors
import socket
import subprocess
import sys
import threading
import time

from load import spread
from peers import nginx
from site_under_test import Site

MEGABYTE = 1_000_000
MOVIE_MEGABYTES = 300


def drain(port, target, count):
    """Reads so many answers at once and throws them away. Returns how many bytes came."""
    chooser = selectors.DefaultSelector()
    for _ in range(count):
        connection = socket.create_connection(("127.0.0.1", port))
        connection.sendall(("GET /%s HTTP/1.0\r\n\r\n" % target).encode())
        chooser.register(connection, selectors.EVENT_READ)
    buffer, total, left = bytearray(1 << 18), 0, count
    while left:
        for key, _ in chooser.select():
            taken = key.fileobj.recv_into(buffer)
            total += taken
            if taken == 0:
                chooser.unregister(key.fileobj)
                key.fileobj.close()
                left -= 1
    return total


def page_seconds(port, target):
    start = time.monotonic()
    drain(port, target, 1)
    return time.monotonic() - start


class PageWalker(threading.Thread):
    """Asks for a page over and over, with a pause between, and keeps each one's seconds."""

    def __init__(self, port, target):
        super().__init__(daemon=True)
        self.port, self.target = port, target
        self.seconds = []
        self.is_over = threading.Event()

    def run(self):
        while not self.is_over.wait(0.005):
            self.seconds.append(page_seconds(self.port, self.target))


def transfer(server, target, count, total_megabytes, page_target):
    """Whole movies until about so many megabytes went. Returns (MB/s, processor ms for each MB, pages' seconds)."""
    rounds = max(1, total_megabytes // (count * MOVIE_MEGABYTES))
    walker = PageWalker(server.port, page_target) if page_target else None
    before, start, total = server.processor_seconds(), time.monotonic(), 0
    if walker:
        walker.start()
    for _ in range(rounds):
        # A process of its own reads, so that the pages' times are not those of this interpreter's lock.
        output = subprocess.run([sys.executable, __file__, str(server.port), target, str(count)], check=True, text=True,
                                stdout=subprocess.PIPE, env=dict(os.environ, PYTHONPATH=os.pathsep.join(sys.path))).stdout
        total += int(output)
    seconds, used = time.monotonic() - start, server.processor_seconds() - before
    if walker:
        walker.is_over.set()
        walker.join()
    if total < rounds * count * MOVIE_MEGABYTES * MEGABYTE:
        raise RuntimeError("a movie came short: %d bytes" % total)
    return total / MEGABYTE / seconds, used * 1e3 / (total / MEGABYTE), walker.seconds if walker else []


def report(page, programs, folder):
    page.section("Movies", "A movie of %d MB, whole each time, thrown away by the reader; meanwhile a visitor asks for a "
                 "media page of 20 files every 5 ms. nginx sends the same file with sendfile." % MOVIE_MEGABYTES)
    album = os.path.join(folder, "movies")
    os.makedirs(album)
    block = os.urandom(MEGABYTE)
    with open(os.path.join(album, "movie.avi"), "wb") as movie:
        for _ in range(MOVIE_MEGABYTES):
            movie.write(block)
    for number in range(20):
        with open(os.path.join(album, "clip_%02d.mpg" % number), "wb") as clip:
            clip.write(block[:1000])
    site = Site(programs, folder)
    site.add_album("Movies", album)
    movie_target, page_target = "ShowMovie?1&full&/movie.avi", "ShowAlbumMedia?1&thumbs&1"
    rows, measured = [], {}
    with site, nginx(folder, album) as peer:
        for _ in range(50):
            page_seconds(site.port, page_target)
        rows.append(["no transfer", "", "", "", *("%.1f" % value for value in spread(
            [page_seconds(site.port, page_target) for _ in range(300)]))])
        for count in (1, 20):
            rate, cost, seconds = transfer(site, movie_target, count, 3000, page_target)
            other, other_cost, _ = transfer(peer, "movie.avi", count, 3000, None)
            measured[count] = (rate, spread(seconds))
            rows.append(["%d at once" % count, "%.0f" % rate, "%.2f" % cost, "%.0f / %.2f" % (other, other_cost),
                         *("%.1f" % value for value in spread(seconds))])
    page.table(["Transfers", "MB/s", "processor ms/MB", "nginx MB/s / ms/MB", "page: median ms", "99 % ms", "slowest ms"],
               rows)
    for count, (rate, times) in measured.items():
        page.wanted("%d at once: above 118 MB/s" % count, rate > 118, "%.0f MB/s" % rate)
        page.wanted("%d at once: pages in under 10 ms meanwhile" % count, times[1] < 10,
                    "median %.1f, 99 %% %.1f, slowest %.1f ms" % times)


if __name__ == "__main__":
    print(drain(int(sys.argv[1]), sys.argv[2], int(sys.argv[3])))
