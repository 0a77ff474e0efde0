"""Resident memory of the site: at rest, after thumbnails, in a large conversion, after many requests."""
import os
import shutil
import time
import urllib.request

from load import ab
from site_under_test import Site, forget_memory_peak, memory_kb

THUMBNAILS = 1000
REQUESTS = 200_000
MOVIE = os.path.join(os.path.dirname(__file__), "../../tests/platform/media/mpeg4.avi")


def fetch(site, target):
    with urllib.request.urlopen(site.address(target)) as answer:
        return len(answer.read())


def now(site):
    """(resident MB, of which no file's) once the answers are out."""
    time.sleep(0.5)
    return memory_kb(site.pid) / 1024, memory_kb(site.pid, "RssAnon") / 1024


def with_modules(programs, folder, photographs):
    """(resident MB, of which no file's) once a HEIC picture and a movie's details have been asked for."""
    album = folder + "/album"
    os.makedirs(album)
    shutil.copy(os.path.join(photographs.newer, "photo_small_inside.heic"), album + "/photo.heic")
    shutil.copy(MOVIE, album + "/film.avi")
    site = Site(programs, folder, {"MoreTypes": "1", "ConversionSpacing": "0"})
    site.add_album("Pictures", album)
    with site:
        fetch(site, "ShowPicture?1&thumb&/photo.heic")
        fetch(site, "ShowDetails?1&nocount&/film.avi")
        return now(site)


def report(page, programs, folder, photographs):
    page.section("Memory", "`pixmorad`, megabytes resident, and the part of them that is no file's (the rest is libraries, "
                 "which other programs share).")
    site = Site(programs, folder)
    site.add_album("Pictures", photographs.folder)
    site.control("set", "Setup", "ConversionSpacing", "0")
    rows = []
    with site:
        idle = now(site)
        rows.append(["idle after the start", idle])
        fetch(site, "ShowPicture?1&thumb&/%s.jpg" % photographs.small[0])
        rows.append(["after the first thumbnail", now(site)])
        forget_memory_peak(site.pid)
        fetch(site, "ShowPicture?1&preview&/%s.jpg" % photographs.large)
        rows.append(["peak in the preview of the large picture", (memory_kb(site.pid, "VmHWM") / 1024, None)])
        for number in range(50):
            fetch(site, "ShowPicture?1&thumb&/%s.jpg" % photographs.small[number % len(photographs.small)])
        warm = now(site)
        rows.append(["after 50 thumbnails", warm])
        for number in range(THUMBNAILS):
            fetch(site, "ShowPicture?1&thumb&/%s.jpg" % photographs.small[number % len(photographs.small)])
        after_thumbnails = now(site)
        rows.append(["after %s more" % "{:,}".format(THUMBNAILS), after_thumbnails])
        for target in ("", "ShowAlbumMedia?1&thumbs&1"):
            ab(site, target, 10_000)
        before = now(site)
        rows.append(["after 20,000 pages", before])
        for target in ("", "ShowHelp", "ShowAlbumMedia?1&thumbs&1", "ShowGraphic?album32.gif"):
            ab(site, target, REQUESTS // 4)
        after = now(site)
        rows.append(["after %s more requests" % "{:,}".format(REQUESTS), after])
    modules = with_modules(programs, folder + "/modules", photographs)
    rows.append(["another one, after a HEIC thumbnail and a movie's details", modules])
    page.table(["State", "resident MB", "no file's MB"],
               [[name, "%.1f" % values[0], "" if values[1] is None else "%.1f" % values[1]] for name, values in rows])
    page.wanted("idle at most 19 MB", idle[0] <= 19, "%.1f MB" % idle[0])
    page.wanted("with the modules loaded at most 60 MB", modules[0] <= 60, "%.1f MB" % modules[0])
    # Two megabytes are what the store's own page cache and the allocator still move by.
    growth = after_thumbnails[0] - warm[0]
    page.wanted("no growth over 1,000 thumbnails (2 MB)", growth <= 2, "%+.1f MB" % growth)
    growth = after[0] - before[0]
    page.wanted("no growth over 200,000 requests (2 MB)", growth <= 2, "%+.1f MB" % growth)
