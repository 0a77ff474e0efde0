#!/usr/bin/env python3
"""The whole site in headless Chromium: site_test.py FOLDER_OF_THE_PROGRAMS"""
import os
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import unittest

from webdriver import Browser, wait_until

PROGRAMS = sys.argv.pop(1)
ODD_NAMES = ["a & b", "1+1=2", "#5", "100% fun", "O'Brien", "caf\u00e9"]

# Every frame below the present window with what is wrong in it.
FAULTS = """
const faults = [];
(function look(view, path) {
  let page;
  try { page = view.document; page.body; } catch (error) { faults.push(path + ': unreadable frame'); return; }
  if (page.readyState !== 'complete') faults.push(path + ': still loading');
  for (const image of page.images || []) {
    if (!image.complete || image.naturalWidth === 0) faults.push(path + ': broken image ' + image.src);
  }
  for (let i = 0; i < view.frames.length; ++i) look(view.frames[i], path + '/' + i);
})(window, 'top');
return faults;
"""


def bitmap(shade):
    """A picture of 40 by 30 pixels."""
    width, height = 40, 30
    pixels = bytes([shade, 90, 255 - shade]) * width * height
    head = b"BM" + (54 + len(pixels)).to_bytes(4, "little") + bytes(4) + (54).to_bytes(4, "little")
    info = (40).to_bytes(4, "little") + width.to_bytes(4, "little") + height.to_bytes(4, "little") + b"\1\0\x18\0"
    return head + info + bytes(4) + len(pixels).to_bytes(4, "little") + bytes(16) + pixels


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Site:
    """A pixmorad of the test's own on a temporary folder."""

    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix="pixmora-site-")
        self.port = free_port()
        self.environment = dict(os.environ, PIXMORA_HOME=self.folder + "/home", XDG_CONFIG_HOME=self.folder + "/config")
        os.makedirs(self.folder + "/home")
        album = self.folder + "/album"
        for place in [""] + ["/" + name for name in ODD_NAMES] + ["/closed"]:
            os.makedirs(album + place, exist_ok=True)
            for i in range(3):
                with open("%s%s/picture_%d.bmp" % (album, place, i), "wb") as file:
                    file.write(bitmap(40 * i))
        for name in ODD_NAMES:
            shutil.copy(album + "/picture_0.bmp", album + "/" + name + ".bmp")
        self.movie = os.urandom(300000)
        with open(album + "/film.avi", "wb") as file:
            file.write(self.movie)
        self.control("album", "add", "Trips", album)
        self.control("user", "add", "Ann", "secret", "--admin")
        self.control("protect", "Trips", "\\closed", "Ann")
        self.control("set", "Setup", "ListenPort", str(self.port))
        self.control("set", "Setup", "ConversionSpacing", "0")
        self.control("set", "Setup", "FilesPerPage", "0")
        self.server = subprocess.Popen([PROGRAMS + "/pixmorad"], env=self.environment, stdout=subprocess.PIPE, text=True)
        for line in self.server.stdout:
            if line.startswith("http://"):
                break

    def control(self, *words):
        subprocess.run([PROGRAMS + "/pixmoractl", *words], env=self.environment, check=True)

    def address(self, target=""):
        return "http://127.0.0.1:%d/%s" % (self.port, target)

    def close(self):
        self.server.send_signal(signal.SIGTERM)
        status = self.server.wait(10)
        self.server.stdout.close()
        shutil.rmtree(self.folder)
        if status != 0:
            raise AssertionError("pixmorad ended with %d" % status)


class SiteTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.site = Site()
        cls.addClassCleanup(cls.site.close)
        cls.browser = Browser()
        cls.addClassCleanup(cls.browser.close)

    def setUp(self):
        self.open()

    def open(self, target=""):
        self.browser.top()
        self.browser.open(self.site.address(target))

    def enter(self, frame):
        """Goes into the frame of the album view that is named so, or whose address starts so."""
        self.browser.top()
        self.browser.frame("frame[name=%s], frame[src^=%s], iframe[name=%s], iframe[src^=%s]" % ((frame,) * 4))

    def assert_whole(self):
        self.browser.top()
        faults = []

        def is_whole():
            faults[:] = self.browser.run(FAULTS)
            return not faults
        try:
            wait_until(is_whole, "the page")
        except AssertionError:
            self.fail("\n".join(faults))

    def media_source(self):
        self.enter("media")
        return self.browser.run("return document.documentElement.outerHTML")

    def test_front_page_leads_into_the_album(self):
        self.assert_whole()
        self.assertIn("Trips", self.browser.text())
        self.browser.click("a[href^='ShowAlbum?1&thumbs'] font")
        wait_until(lambda: "ShowAlbum?1" in self.browser.url(), "the frameset")
        self.assert_whole()
        self.assertIn("film", self.media_source())

    def test_views(self):
        for view in ["thumbs", "list", "slideshow&1&pause&0&5"]:
            self.open("ShowAlbum?1&%s%s" % (view, "" if "&" in view else "&1"))
            self.assert_whole()
        for page in ["ShowPopular&thumbs", "ShowHelp", "ShowStats", "ShowLogin&1&thumbs&1"]:
            self.open("ShowAlbum?" + page)
            self.assert_whole()

    def test_odd_names_as_directories(self):
        for name in ODD_NAMES:
            self.open("ShowAlbum?1&thumbs&1")
            self.enter("ShowAlbumDirList")
            link = self.browser.run(
                "return [...document.querySelectorAll('a')].find(a => a.textContent.trim() === arguments[0]).href", name)
            self.browser.top()
            self.browser.open(link)
            self.assert_whole()
            self.enter("media")
            self.assertEqual(3, self.browser.run("return document.querySelectorAll('img[src*=ShowPicture]').length"), name)
            self.assertIn(name, self.browser.text(), name)

    def test_odd_names_as_files(self):
        for name in ODD_NAMES:
            self.open("ShowAlbum?1&list&1")
            self.enter("media")
            link = self.browser.run(
                "return [...document.querySelectorAll('a')].find(a => a.textContent.trim() === arguments[0]).href", name)
            self.browser.top()
            self.browser.open(link)
            self.assert_whole()
            self.assertIn("40 x 30", self.browser.text(), name)

    def test_slide_show_plays_pauses_and_wraps(self):
        self.open("ShowAlbum?1&slideshow&1&play&0&1")
        seen = set()

        def has_wrapped():
            self.enter("media")
            place = self.browser.run("return (document.body.innerText.match(/File (\\d+) of (\\d+)/) || []).slice(1).join(' ')")
            if place:
                seen.add(place)
            return len(seen) >= 3
        wait_until(has_wrapped, "the third picture")
        last = int(next(iter(seen)).split()[1])
        self.open("ShowAlbum?1&slideshow&1&pause&%d&5" % (last - 1))
        self.enter("media")
        self.assertIn("File %d of %d" % (last, last), self.browser.text())
        self.browser.click("a img[src*='next.gif']")
        wait_until(lambda: "File 1 of" in self.browser.text(), "the wrap forward")
        self.browser.click("a img[src*='previous.gif']")
        wait_until(lambda: "File %d of" % last in self.browser.text(), "the wrap back")

    def test_login_opens_a_protected_directory(self):
        self.open("ShowAlbum?1&thumbs&1&closed")
        self.enter("media")
        self.browser.type("input[name=username]", "Ann")
        self.browser.type("input[name=password]", "wrong\ue007")
        wait_until(lambda: "Invalid username or password!" in self.media_source(), "the refusal")
        self.open("ShowAlbum?1&thumbs&1&closed")
        self.enter("media")
        self.browser.type("input[name=username]", "Ann")
        self.browser.type("input[name=password]", "secret\ue007")
        wait_until(lambda: "picture_0.bmp" in self.media_source(), "the closed directory")
        self.assert_whole()
        self.enter("ShowAlbumDirList")
        self.assertIn("Logged in as Ann", self.browser.text())

    def test_movie_downloads_whole(self):
        self.open("ShowAlbum?1&thumbs&1")
        size, total = self.browser.run("""
            const request = new XMLHttpRequest();
            request.open('GET', 'ShowMovie?1&full&/film.avi', false);
            request.overrideMimeType('text/plain; charset=x-user-defined');
            request.send();
            let total = 0;
            for (const c of request.responseText) total += c.charCodeAt(0) & 255;
            return [request.responseText.length, total];""")
        self.assertEqual((len(self.site.movie), sum(self.site.movie)), (size, total))


class PhoneTest(unittest.TestCase):
    def test_tree_folds_away_and_pages_fit(self):
        site = Site()
        self.addCleanup(site.close)
        browser = Browser(390, 844, phone=True)
        self.addCleanup(browser.close)
        for target in ["", "ShowAlbum?1&thumbs&1", "ShowAlbum?1&list&1"]:
            browser.top()
            browser.open(site.address(target))
            wait_until(lambda: browser.run("return document.readyState") == "complete", target)
            if target:
                browser.frame("frame[name=media]")
            wait_until(lambda: browser.run("return innerWidth > 300"), "the full width of " + target)
            self.assertLessEqual(browser.run("return document.documentElement.scrollWidth - innerWidth"), 0, target)
        browser.top()
        browser.frame("frame[src^=ShowAlbumDirList]")
        self.assertLess(browser.run("return innerWidth"), 60)
        browser.top()
        browser.frame("frame[src=ShowAlbumTop]")
        browser.click("a")
        browser.top()
        browser.frame("frame[src^=ShowAlbumDirList]")
        wait_until(lambda: browser.run("return innerWidth > 200"), "the opened tree")


if __name__ == "__main__":
    unittest.main(verbosity=2)
