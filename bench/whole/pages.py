"""Pages: requests a second beside two servers of files, and each listing beside its bare directory walk."""
import os
import sqlite3
import subprocess
import urllib.request

from load import CONNECTIONS, ab, best
from peers import lighttpd, nginx
from site_under_test import Site

ROUNDS = 3
FILES = 1000
DIRECTORIES = 200


def write_files(folder, names, source):
    os.makedirs(folder, exist_ok=True)
    for name in names:
        os.link(source, os.path.join(folder, name))


def make_albums(folder, picture):
    """Ten albums: one of 1,000 pictures, one of 200 directories, eight small ones. Returns their folders in order."""
    source = os.path.join(folder, "source.jpg")
    with open(picture, "rb") as original, open(source, "wb") as copy:
        copy.write(original.read())
    roots = [os.path.join(folder, "albums", name) for name in ["A files", "B tree"] + ["C%d" % n for n in range(8)]]
    write_files(roots[0], ["IMG_%05d.jpg" % n for n in range(FILES)], source)
    for n in range(DIRECTORIES):
        place = os.path.join(roots[1], "Trip_%03d" % n)
        write_files(place, ["picture_%d.jpg" % n for n in range(6)] + ["movie.avi"], source)
    for root in roots[2:]:
        write_files(root, ["picture_%02d.jpg" % n for n in range(20)], source)
    return roots


def set_order(site, album, names):
    """Stores the owner's own order of an album's top folders."""
    with sqlite3.connect(site.database) as database:
        database.executemany("INSERT INTO DBOrder (AlbumName, SubDir, SeqPos) VALUES (?, ?, ?)",
                             [(album, "\\\\" + name, place) for place, name in enumerate(names, 1)])


def make_site(programs, folder, roots):
    site = Site(programs, folder)
    for root in roots:
        site.add_album(os.path.basename(root), root, "--description", "Where we were", "--featured", "random")
    set_order(site, "B tree", sorted((os.path.basename(entry) for entry in os.listdir(roots[1])), reverse=True))
    return site


def bare_walk(programs, words):
    command = [os.path.join(programs, "bare_walk"), "0.5", *words]
    return float(subprocess.run(command, stdout=subprocess.PIPE, text=True, check=True).stdout)


def body_size(site, target):
    with urllib.request.urlopen(site.address(target)) as answer:
        return len(answer.read())


def beside_servers(page, site, folder):
    """The pages whose wanted figure is a share of nginx's."""
    root = os.path.join(folder, "files")
    os.makedirs(root)
    targets = {"help page": ("ShowHelp", 0.6, 20000), "graphic": ("ShowGraphic?album32.gif", 0.6, 20000),
               "front page": ("", 0.4, 10000)}
    rows, verdicts = [], []
    with nginx(folder, root) as first, lighttpd(folder, root) as second:
        for name, (target, share, count) in targets.items():
            size = body_size(site, target)
            with open(os.path.join(root, "file.html"), "wb") as file:
                file.write(b"x" * size)
            loads = {"ours": [], "nginx": [], "lighttpd": []}
            for _ in range(ROUNDS):
                loads["ours"].append(ab(site, target, count))
                loads["nginx"].append(ab(first, "file.html", count))
                loads["lighttpd"].append(ab(second, "file.html", count))
            fastest = {who: best(rounds) for who, rounds in loads.items()}
            if any(abs(load.body_bytes - size) > size / 10 for load in fastest.values()):
                raise RuntimeError("the answers to %s differ in size" % name)
            cells = ["%.0f%s / %.0f" % (load.rate, " (ab full)" if load.is_limited_by_ab else "", load.server_microseconds)
                     for load in fastest.values()]
            ratio = fastest["ours"].rate / fastest["nginx"].rate
            rows.append([name, size, *cells, "%.2f" % ratio])
            verdicts.append(("%s at %.1f of nginx's requests a second" % (name, share), ratio >= share, "%.2f" % ratio))
    page.table(["Page", "bytes", "ours: requests/s / processor µs", "nginx", "lighttpd", "ours / nginx"], rows)
    for verdict in verdicts:
        page.wanted(*verdict)


def measured_listings(page, site, programs, listings):
    rows, verdicts = [], []
    for name, (target, walk, count) in listings.items():
        walks, loads = [], []
        for _ in range(ROUNDS):
            walks.append(bare_walk(programs, walk) if walk else 0.0)
            loads.append(ab(site, target, count))
        load, bare = best(loads), min(walks)
        time, limit = load.server_microseconds, 3 * bare + 100
        rows.append([name, load.body_bytes, "%.0f" % load.rate, "%.0f" % time, "%.0f" % bare if walk else "none",
                     "%.0f" % limit])
        verdicts.append((name, time <= limit, "%.0f µs of %.0f" % (time, limit)))
    page.table(["Page", "bytes", "requests/s", "processor µs", "bare walk µs", "3 walks + 100 µs"], rows)
    for name, is_met, measured in verdicts:
        page.wanted("%s within 3 bare walks and 100 µs" % name, is_met, measured)


def report(page, programs, folder, photographs):
    page.section("Pages", "ab, %d connections, HTTP/1.0, best of %d rounds in turn. The site has 10 albums, among them one "
                 "of %s pictures and one of %d directories with 7 files each, and writes all its statistics. nginx and "
                 "lighttpd send a file of the page's size, one worker, no access log: they write nothing at all. *ab "
                 "full*: ab itself filled its core, so the server may have had more to give. The bare walk is readdir "
                 "of the folders that the page can't do without, and stat where it needs a date or a size; processor time on both "
                 "sides." % (
                     CONNECTIONS, ROUNDS, "{:,}".format(FILES), DIRECTORIES))
    roots = make_albums(folder, photographs.path(photographs.small[0]))
    site = make_site(programs, folder, roots)
    # The tree counts each album's root, and of the open album each directory, which it dates too.
    tree = [roots[0], roots[1], "-d", roots[1], *roots[2:]]
    with site:
        beside_servers(page, site, folder)
        measured_listings(page, site, programs, {
            "media page, 12 of %s files" % "{:,}".format(FILES): ("ShowAlbumMedia?1&thumbs&1", [roots[0]], 6000),
            "tree, %d directories by name" % DIRECTORIES: ("ShowAlbumDirList?2&thumbs&1", tree, 600),
            "frameset": ("ShowAlbum?1&thumbs&1", None, 6000),
            "file's details": ("ShowDetails?1&nocount&/IMG_00500.jpg", [roots[0]], 3000),
            "statistics": ("ShowStats", None, 2000),
        })
    site.control("set", "Setup", "SortMethod", "1")
    with site:
        measured_listings(page, site, programs,
                          {"tree, %d directories by date" % DIRECTORIES: ("ShowAlbumDirList?2&thumbs&1", tree, 600)})
    site.control("set", "Setup", "SortMethod", "2")
    with site:
        measured_listings(page, site, programs, {"tree, %d directories in the owner's order" % DIRECTORIES:
                                                 ("ShowAlbumDirList?2&thumbs&1", tree, 600)})
