"""The example of packaging/nginx in front of two homes: that it keeps what it may and nothing else, what still reaches a
home, and what a warm cache gives."""
import collections
import contextlib
import html
import http.client
import os
import re
import shutil
import ssl
import subprocess

from load import Load, ab, best
from peers import Peer
from processes import run_measured
from site_under_test import Site, free_port

TOP = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
EXAMPLE = os.path.join(TOP, "packaging", "nginx", "pixmora.conf")
NGINX = """{user}daemon off;
worker_processes 1;
pid {folder}/nginx.pid;
error_log {folder}/nginx.log;
events {{ worker_connections 1024; }}
http {{
  log_format asked "$request_uri\\t$upstream_addr";
  access_log {folder}/access.log asked;
  client_body_temp_path {folder}/body;
  proxy_temp_path {folder}/proxy;
  fastcgi_temp_path {folder}/fastcgi;
  uwsgi_temp_path {folder}/uwsgi;
  scgi_temp_path {folder}/scgi;
  include {folder}/pixmora.conf;
}}
"""
ROUNDS = 3
VISITORS = 20
CACHED = 12_000  # requests; nginx closes a connection behind its thousandth
FILES = 12  # as many as a page shows; one of them is a movie
# A visit: the front page, an album's frames, a file's details.
PAGES = ["", "ShowAlbum?1&thumbs&1", "ShowAlbumDirList?1&thumbs&1", "ShowAlbumMedia?1&thumbs&1", "ShowAlbumTop",
         "ShowAlbumBottom", "ShowDetails?1&count&/photo1.jpg"]
CLOSED = "ShowPicture?1&thumb&/%s/photo1.jpg"

Answer = collections.namedtuple("Answer", "status head body")


class Front(Peer):
    """nginx by the example, with this machine's addresses in place of the example's."""

    def __init__(self, folder, homes):
        super().__init__(folder, "", NGINX, ["nginx", "-c", "{configuration}", "-p", "{folder}", "-e", "{folder}/nginx.log"])
        self.folder = folder
        certificate = [folder + "/pictures.crt", folder + "/pictures.key"]
        subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                        "-subj", "/CN=pictures.example.org", "-out", certificate[0], "-keyout", certificate[1]],
                       check=True, stderr=subprocess.DEVNULL)
        with open(EXAMPLE) as file:
            text = file.read()
        for of_example, here in [("listen 80", "listen 127.0.0.1:%d" % free_port()),
                                 ("listen 443", "listen 127.0.0.1:%d" % self.port),
                                 ("/etc/ssl/pictures.example.org.crt", certificate[0]),
                                 ("/etc/ssl/private/pictures.example.org.key", certificate[1]),
                                 ("/var/cache/nginx/pixmora", folder + "/cache"),
                                 ("server 127.0.0.1:8080", "server 127.0.0.1:%d" % homes["ann"].port),
                                 ("server 10.8.0.3:8080", "server 127.0.0.1:%d" % homes["ben"].port),
                                 ("# ~*^/ann/.*&/Wedding/", "~*^/ann/.*&/Wedding/")]:
            if of_example not in text:
                raise RuntimeError("the example has no " + of_example)
            text = text.replace(of_example, here)
        with open(folder + "/pixmora.conf", "w") as file:
            file.write(text)

    def address(self, target):
        return "https://127.0.0.1:%d/%s" % (self.port, target)

    def ask(self, target, visitor=1, method="GET", body=None, **headers):
        """@param visitor the last part of the address that it comes from"""
        trusting = ssl._create_unverified_context()  # the certificate is its own witness
        connection = http.client.HTTPSConnection("127.0.0.1", self.port, timeout=60, context=trusting,
                                                 source_address=("127.0.0.%d" % visitor, 0))
        with contextlib.closing(connection):
            connection.request(method, "/" + target, body, {name.replace("_", "-"): text for name, text in headers.items()})
            answer = connection.getresponse()
            return Answer(answer.status, answer.headers, answer.read())

    def asked_since(self, mark):
        """(requests, those that reached a home)"""
        with open(self.folder + "/access.log") as file:
            lines = [line.rstrip("\n").split("\t") for line in file][mark:]
        return len(lines), sum(line[1] != "-" for line in lines)

    def mark(self):
        return self.asked_since(0)[0]


def make_home(programs, folder, photographs, pictures):
    os.makedirs(folder)
    album = folder + "/album"
    for number, name in enumerate(pictures):
        for place in ("", "Wedding", "Quiet", "Private"):
            os.makedirs(os.path.join(album, place), exist_ok=True)
            shutil.copy(photographs.path(name), os.path.join(album, place, "photo%d.jpg" % number))
    with open(album + "/film.mov", "wb") as file:
        file.write(os.urandom(500_000))
    site = Site(programs, folder, {"BrowserCache": "60", "TrustedProxy": "127.0.0.1", "ListenAddress": "127.0.0.1",
                                   "ConversionSpacing": "0", "MoreTypes": "1"})
    site.add_album("Pictures", album)
    site.control("user", "add", "Ann", "secret")
    for place in ("Wedding", "Quiet"):
        site.control("protect", "Pictures", "\\" + place, "Ann")
    return site


def totals(site):
    """What the statistics have counted: visitors, thumbnails, file views, kilobytes."""
    counted = dict(site.query("SELECT Stat, TotalCount FROM StatsTotal"))
    return [int(counted.get(kind, 0)) for kind in (1, 2, 3, 4)]


def visit(front, home, number):
    """One visitor looks at the pages and all that stands in them, once, as a browser does."""
    seen = set()
    for page in PAGES:
        body = front.ask("%s/%s" % (home, page), number).body.decode()
        for source in re.findall(r"""(?:src|background)=["']?((?:ShowPicture|ShowGraphic|ShowAlbumIcon)\?[^"'> ]+)""", body):
            source = html.unescape(source)
            if source not in seen:
                seen.add(source)
                answer = front.ask("%s/%s" % (home, source), number)
                if answer.status != 200 or not answer.body:
                    raise RuntimeError("no picture came from " + source)


def is_hit(answer):
    return answer.head.get("X-Cache") == "HIT"


def check_rules(page, front):
    """What must pass through passes, and what is closed is never a stranger's from the cache."""
    pages = [front.ask("ann/" + target) for target in PAGES * 2]
    page.wanted("pages come from the home each time", not any(is_hit(answer) or "ETag" in answer.head for answer in pages),
                "%d of %d" % (sum(not is_hit(answer) for answer in pages), len(pages)))
    form = "username=Ann&password=secret&args=1%26thumbs%261%26Wedding"
    login = front.ask("ann/SendLogin", method="POST", body=form, Content_Type="application/x-www-form-urlencoded")
    cookies = login.head.get_all("Set-Cookie", [])
    cookie = "; ".join(text.split(";")[0] for text in cookies)
    media = "ann/ShowAlbumMedia?1&thumbs&1&Wedding"
    shown, hidden = front.ask(media, Cookie=cookie).body, front.ask(media).body
    page.wanted("logins pass through, each home's own", b"photo1.jpg" in shown and b"photo1.jpg" not in hidden and
                not any("path" in text.lower() for text in cookies), ", ".join(text.split("=")[0] for text in cookies))
    served = []
    for place in ("Wedding", "Quiet", "Private"):
        target = "ann/" + CLOSED % place
        mine = [front.ask(target, Cookie=cookie) for _ in range(2)]
        others = [front.ask(target, visitor=7) for _ in range(1 if place == "Quiet" else 3)]
        served += [is_hit(answer) for answer in mine + others]
        if mine[0].status != 200 or not mine[0].body.startswith(b"\xff\xd8"):
            raise RuntimeError("no picture came from " + target)
    page.wanted("nothing that is closed comes from the cache", not any(served), "%d of %d" % (sum(served), len(served)))
    bodies = [front.ask("%s/ShowPicture?1&thumb&/photo1.jpg" % home).body for home in ("ann", "ben", "ann")]
    page.wanted("each home's pictures are its own", bodies[0] == bodies[2] != bodies[1], "%d bytes and %d" % (
        len(bodies[0]), len(bodies[1])))
    part = front.ask("ann/ShowMovie?1&preview&/film.mov", Range="bytes=400000-")
    page.wanted("a movie's part comes as one", (part.status, len(part.body)) == (206, 100_000), "%d, %d bytes" % (
        part.status, len(part.body)))


def report_visits(page, front, homes):
    rows = []
    for name, numbers in [("the first visitor", range(20, 21)), ("%d more" % VISITORS, range(21, 21 + VISITORS))]:
        mark, before = front.mark(), totals(homes["ben"])
        for number in numbers:
            visit(front, "ben", number)
        requests, reached = front.asked_since(mark)
        rows.append([name, requests, reached, *(now - then for now, then in zip(totals(homes["ben"]), before))])
    page.table(["Visits", "requests", "reach the home", "visitors counted", "thumbnails counted", "file views counted",
                "KB counted"], rows)
    page.wanted("behind the first visitor only pages reach the home", rows[1][2] == VISITORS * len(PAGES),
                "%d of %d requests" % (rows[1][2], rows[1][1]))
    page.wanted("each visitor counts", rows[1][3] == VISITORS, str(rows[1][3]))


def h2load(server, target, count):
    """Requests by HTTP/2 on 16 kept connections, as browsers keep them."""
    before = server.processor_seconds()
    output, seconds, own = run_measured(["h2load", "-n", str(count), "-c", "16", "-m", "8", server.address(target)])
    used = server.processor_seconds() - before
    if "%d succeeded, 0 failed" % count not in output:
        raise RuntimeError("h2load did not get its answers:\n" + output)
    body = int(re.search(r"\((\d+)\) data", output)[1])
    return Load(float(re.search(r"([\d.]+) req/s", output)[1]), used / count * 1e6, own / seconds > 0.9, body // count)


def report_loads(page, front, homes):
    picture, media = "ShowPicture?1&thumb&/photo1.jpg", "ShowAlbumMedia?1&thumbs&1"
    ways = {"a thumbnail from the cache": (h2load, front, "ann/" + picture, CACHED),
            "a page through it": (h2load, front, "ann/" + media, 2_000),
            "the page from the home alone, no TLS": (ab, homes["ann"], media, 2_000),
            "the thumbnail from the home alone, no TLS": (ab, homes["ann"], picture, 1_000)}
    mark, before = front.mark(), totals(homes["ann"])[1]
    loads = collections.defaultdict(list)
    for _ in range(ROUNDS):
        for name, (measure, server, target, count) in ways.items():
            loads[name].append(measure(server, target, count))
    page.table(["Answers", "bytes", "requests/s", "processor µs of that server"],
               [[name, load.body_bytes, "%.0f" % load.rate, "%.0f" % load.server_microseconds]
                for name, load in ((name, best(rounds)) for name, rounds in loads.items())])
    reached, converted = front.asked_since(mark)[1] - ROUNDS * 2_000, totals(homes["ann"])[1] - before - ROUNDS * 1_000
    page.wanted("with a warm cache no picture reaches the home", (reached, converted) == (0, 0), "%d of %d" % (
        reached, ROUNDS * CACHED))


def report(page, programs, folder, photographs):
    page.section("Scale", "nginx by `packaging/nginx/pixmora.conf`, one worker, TLS, in front of two homes on the same machine; "
                 "a visit is the front page, an album's frames, its thumbnails and graphics, and a file's details "
                 "(`docs/scale.md`). Answers by h2load, 16 connections, HTTP/2, those of the home alone by ab. Best of %d rounds in turn." % ROUNDS)
    os.makedirs(folder + "/front")
    small = photographs.small
    homes = {name: make_home(programs, "%s/%s" % (folder, name), photographs,
                             [small[(number + shift) % len(small)] for number in range(FILES - 1)])
             for shift, name in enumerate(("ann", "ben"))}
    with homes["ann"], homes["ben"], Front(folder + "/front", homes) as front:
        check_rules(page, front)
        report_visits(page, front, homes)
        report_loads(page, front, homes)
