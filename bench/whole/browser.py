"""What a visitor waits for: a page of 12 thumbnails of the large picture in Chromium, from the click to the last picture."""
import os
import statistics
import sys

from benchmarks import run_benchmarks
from site_under_test import Site

TOP = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.append(os.path.join(TOP, "tests", "browser"))

PICTURES = 12
ROUNDS = 7

# Of the page that is looked at: its number's link, as a visitor clicks it. Without one the page is open already.
CLICK = """
const link = document.querySelector('a[href^="ShowAlbumMedia?1&thumbs&' + arguments[0] + '&"]');
link.addEventListener('click', () => sessionStorage.setItem('click', performance.timeOrigin + performance.now()));
link.click();
"""
# Milliseconds from the click to the last picture's last byte, and the bytes that the network brought; null while one lacks.
LOOK = """
const [page, count] = arguments;
if (document.readyState != 'complete' || !new RegExp('&thumbs&' + page + '&').test(location.href)) return null;
const shown = [...document.images].filter((image) => image.src.includes('ShowPicture'));
if (shown.length != count || !shown.every((image) => image.complete && image.naturalWidth)) return null;
const entries = performance.getEntriesByType('resource').filter((entry) => entry.name.includes('ShowPicture'));
if (entries.length != count) return null;
const last = Math.max(...entries.map((entry) => performance.timeOrigin + entry.responseEnd));
return [last - sessionStorage.getItem('click'), entries.reduce((sum, entry) => sum + entry.transferSize, 0)];
"""


class Visitor:
    """Somebody who turns the album's pages in Chromium."""

    def __init__(self, driver, site):
        self.driver, self.site = driver, site

    def _wait(self, page):
        from engines import wait_until
        return wait_until(lambda: self.driver.execute_script(LOOK, page, PICTURES), "the last picture of page %d" % page)

    def come(self):
        """To the first page, with nothing kept."""
        self.driver.execute_cdp_cmd("Network.clearBrowserCache", {})
        self.driver.switch_to.default_content()
        self.driver.get(self.site.address("ShowAlbum?1&thumbs&1"))
        self.driver.switch_to.frame("media")
        self._wait(1)

    def turn_to(self, page):
        """Returns the milliseconds from the click to the last picture."""
        self.driver.execute_script(CLICK, page)
        return self._wait(page)[0]


def thumbnails(site):
    return site.query("SELECT TotalCount FROM StatsTotal WHERE Stat=2")[0][0]


def measure(site):
    """Of each round: (ms of a new page, ms of pages seen before, conversions for those)."""
    from engines import Engine
    engine = Engine("chromium")
    rounds = []
    try:
        for _ in range(ROUNDS):
            visitor = Visitor(engine.driver, site)
            visitor.come()
            first, before = visitor.turn_to(2), thumbnails(site)
            again = [visitor.turn_to(page) for page in (1, 2, 1, 2)]
            rounds.append((first, again, thumbnails(site) - before))
    finally:
        engine.close()
    return rounds


def report(page, programs, folder, photographs):
    page.section("Browser", "Chromium, headless, on the same machine: a page of %d thumbnails of the large picture, no spacing of "
                 "conversions, from the click on the page's number to the last picture's last byte; of %d rounds. "
                 "*bare*: libjpeg-turbo alone decodes the picture at an eighth." % (PICTURES, ROUNDS))
    os.makedirs(folder + "/album")
    for number in range(2 * PICTURES):
        os.link(photographs.path(photographs.large), "%s/album/photo_%02d.jpg" % (folder, number))
    site = Site(programs, folder, {"ConversionSpacing": "0", "BrowserCache": "60"})
    site.add_album("Pictures", folder + "/album")
    with site:
        rounds = measure(site)
    bare = run_benchmarks(os.path.join(programs, "bench_platform"), pattern="^%s/thumb/bare decode" % photographs.large,
                          environment={"PIXMORA_BENCH_PHOTOS": photographs.folder})
    decode = 1e3 * bare[photographs.large + "/thumb/bare decode"]["real"]
    first = [round_[0] for round_ in rounds]
    again = [time for round_ in rounds for time in round_[1]]
    conversions = sum(round_[2] for round_ in rounds)
    page.table(["From the click to the last picture", "best ms", "median ms"],
               [[name, "%.0f" % min(times), "%.0f" % statistics.median(times)]
                for name, times in [("a new page", first), ("a page seen before", again)]])
    limit = 13 * decode + 100
    page.wanted("%d thumbnails within 13 bare decodes and 100 ms" % PICTURES, min(first) <= limit,
                "%.0f ms of %.0f (a decode %.1f)" % (min(first), limit, decode))
    page.wanted("the same page again below 60 ms", min(again) < 60, "%.0f ms" % min(again))
    page.wanted("the same page again without a conversion", conversions == 0, str(conversions))
