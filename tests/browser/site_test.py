#!/usr/bin/python3
"""The whole site in a headless browser: site_test.py FOLDER_OF_THE_PROGRAMS chromium|firefox|webkit [TEST...]"""
import os
import sys
import unittest

sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), "../support"))
from selenium.webdriver.common.by import By  # noqa: E402
from engines import Engine, wait_until  # noqa: E402
from site_under_test import Site, bitmap  # noqa: E402

PROGRAMS, ENGINE = sys.argv[1:3]
del sys.argv[1:3]
ODD_NAMES = ["a & b", "1+1=2", "#5", "100% fun", "O'Brien", "caf\u00e9", "a;b", "Trip 2003", "x*y", 'say "x"', "<b>bold",
             "R<amp>and<amp>B", "b\udce9te"]  # the last is no UTF-8

# Every frame below the present window with what is wrong in it.
FAULTS = r"""
const faults = [];
(function look(view, path) {
  let page, text;
  try { page = view.document; text = page.body ? page.body.innerText || '' : ''; }
  catch (error) { faults.push(path + ': unreadable frame'); return; }
  if (page.readyState !== 'complete') faults.push(path + ': still loading');
  if (!/^(https?:|about:blank)/.test(view.location.href)) faults.push(path + ': ' + view.location.href);
  if (/<\/?(html|head|body|title)\b/i.test(text)) faults.push(path + ': markup ' + text.slice(0, 80));
  if (/^(Bad Request|File Not Found|Picture Not Found|Not a Valid)/.test(text)) faults.push(path + ': ' + text);
  for (const image of page.images || []) {
    if (!image.complete || image.naturalWidth === 0) faults.push(path + ': broken image ' + image.src);
  }
  for (let i = 0; i < view.frames.length; ++i) look(view.frames[i], path + '/' + i);
})(window, 'top');
return faults;
"""

# Asks for all that the page at an address leads to in the view of thumbnails, by the browser's own reading of its links.
# Answers the beginnings of the pages and the types of all else, by their addresses.
WALK = r"""
const left = [new URL(arguments[0], location).href], found = {};
while (left.length > 0) {
  const address = left.pop();
  if (address in found) continue;
  const request = new XMLHttpRequest();
  request.open('GET', address, false);
  request.send();
  const type = request.getResponseHeader('Content-Type'), isPage = type === 'text/html';
  found[address] = isPage ? request.responseText.slice(0, 9) : type;
  if (!isPage) continue;
  const page = new DOMParser().parseFromString(request.responseText, type);
  for (const part of page.querySelectorAll('a, frame, img')) {
    const link = part.href || part.src;
    if (/[?&](thumbs?|full)(&|$)|ShowDetails/.test(link) && !/ShowPopular/.test(link)) left.push(link);
  }
}
return found;
"""


def odd_site():
    """An album of odd names: folders with a picture of their name and a folder "Day one" with another, and a closed one."""
    site = Site(PROGRAMS, settings={"ConversionSpacing": "0", "FilesPerPage": "0"})
    album = site.folder + "/album"
    pictures = ["%s/%s%s" % (name, day, name) for name in ODD_NAMES for day in ("", "Day one/")]
    for picture in pictures + ["%spicture_%d" % (folder, i) for folder in ("", "closed/") for i in range(3)]:
        path = "%s/%s.bmp" % (album, picture)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(bitmap())
    with open(album + "/film.avi", "wb") as file:
        file.write(os.urandom(300000))
    site.add_album("Trips", album)
    site.control("user", "add", "Ann", "secret", "--admin")
    site.control("protect", "Trips", "\\closed", "Ann")
    site.start()
    return site


class SiteTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.site = odd_site()
        cls.addClassCleanup(cls.site.close)
        engine = Engine(ENGINE)
        cls.addClassCleanup(engine.close)
        cls.driver = engine.driver
        cls.run_script = engine.driver.execute_script

    def open(self, target):
        self.driver.switch_to.default_content()
        self.driver.get(self.site.address(target))

    def find(self, selector):
        return wait_until(lambda: self.driver.find_elements(By.CSS_SELECTOR, selector), selector)

    def enter(self, name):
        """Goes into that frame of the album view."""
        self.driver.switch_to.default_content()
        self.driver.switch_to.frame(self.find("frame[name=%s]" % name)[0])

    def click(self, selector):
        wait_until(lambda: self.find(selector)[0].click() or True, "a click on " + selector)

    def assert_whole(self):
        self.driver.switch_to.default_content()
        wait_until(lambda: self.run_script(FAULTS) == [], "the page", told=lambda: self.run_script(FAULTS))

    def wait_for_text(self, text, frame="media"):
        source = "return document.documentElement.outerHTML"
        wait_until(lambda: self.enter(frame) or text in (self.run_script(source) or ""), text)

    def test_front_page_leads_into_the_album_and_every_view_is_whole(self):
        self.open("")
        self.assert_whole()
        self.click("a[href^='ShowAlbum?1&thumbs'] font")
        wait_until(lambda: "ShowAlbum?1" in self.driver.current_url, "the frameset")
        self.assert_whole()
        self.wait_for_text("film")
        self.enter("tree")
        self.click("a[href^='ShowAlbum?1&thumbs&1&'][href*='%20']")
        wait_until(lambda: "%20" in self.driver.current_url, "the directory")
        self.enter("media")
        self.click("a[href*='ShowDetails']")
        self.wait_for_text("40 x 30")
        self.assert_whole()
        for view in ["1&thumbs&1", "1&list&1", "1&slideshow&1&pause&0&5", "ShowPopular&thumbs", "ShowHelp", "ShowStats",
                     "ShowLogin&1&thumbs&1"]:
            self.open("ShowAlbum?" + view)
            self.assert_whole()

    def test_all_that_needs_no_script_is_reached_by_its_links(self):
        self.open("")
        kinds = {}
        for address, kind in self.run_script(WALK, "ShowAlbum?1&thumbs&1").items():
            kinds.setdefault(address.partition("?")[0].rpartition("/")[2], []).append(kind.strip()[:5])
        reached = 3 + len(ODD_NAMES) + len([name for name in ODD_NAMES if " " not in name])
        self.assertEqual(["image"] * 2 * reached, kinds["ShowPicture"])
        self.assertEqual({"<!DOC"}, {*kinds["ShowDetails"], *kinds["ShowAlbum"], *kinds["ShowAlbumMedia"]})

    def test_slide_show_plays_pauses_and_wraps(self):
        self.open("ShowAlbum?1&slideshow&1&play&0&1")
        seen = set()

        def has_wrapped():
            self.enter("media")
            place = self.run_script("return (document.body.innerText.match(/File (\\d+) of (\\d+)/) || []).slice(1).join(' ')")
            if place:
                seen.add(place)
            return len(seen) >= 3
        wait_until(has_wrapped, "the third picture")
        last = int(next(iter(seen)).split()[1])
        self.open("ShowAlbum?1&slideshow&1&pause&%d&5" % (last - 1))
        self.wait_for_text("File %d of %d" % (last, last))
        self.click("a img[src*='next.gif']")
        self.wait_for_text("File 1 of")

    def test_login_opens_a_protected_directory(self):
        for password, wanted in [("wrong", "Invalid username or password!"), ("secret", "/closed/picture_0.bmp")]:
            self.open("ShowAlbum?1&thumbs&1&closed")
            self.enter("media")
            self.find("input[name=username]")[0].send_keys("Ann")
            self.find("input[name=password]")[0].send_keys(password + "\ue007")
            self.wait_for_text(wanted)
        self.assert_whole()
        self.wait_for_text("Logged in as Ann", "tree")

    @unittest.skipIf(ENGINE != "chromium", "one engine that plays a phone is enough")
    def test_on_a_phone_the_tree_folds_away_and_pages_fit(self):
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride",
                                    {"width": 390, "height": 844, "deviceScaleFactor": 2, "mobile": True})
        self.addCleanup(self.driver.execute_cdp_cmd, "Emulation.clearDeviceMetricsOverride", {})
        for target in ["", "ShowAlbum?1&thumbs&1", "ShowAlbum?1&list&1"]:
            self.open(target)
            if target:
                self.enter("media")
            wait_until(lambda: self.run_script("return innerWidth > 300"), "the full width of " + target)
            self.assertLessEqual(self.run_script("return document.documentElement.scrollWidth - innerWidth"), 0, target)
        self.enter("tree")
        self.assertLess(self.run_script("return innerWidth"), 60)
        self.enter("titlebar")
        self.click("a")
        self.enter("tree")
        wait_until(lambda: self.run_script("return innerWidth > 200"), "the opened tree")


if __name__ == "__main__":
    unittest.main(verbosity=2)
