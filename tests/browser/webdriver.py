"""A headless Chromium of a test's own, driven over the WebDriver protocol (W3C) with the standard library alone."""
import json
import shutil
import subprocess
import tempfile
import time
import urllib.request

FLAGS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
         "--disable-component-update", "--disable-sync", "--disable-dev-shm-usage"]
ELEMENT = "element-6066-11e4-a52e-4f735466cecf"
PATIENCE = 20  # seconds


class PageChanged(Exception):
    """What was asked for is not there, or no longer: the page is on its way to another."""


def wait_until(condition, what):
    """The condition's first true value; fails when it doesn't come in time. A page that changes meanwhile is asked again."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        try:
            value = condition()
        except PageChanged:
            value = None
        if value:
            return value
        time.sleep(0.05)
    raise AssertionError("too long: " + what)


class Browser:
    def __init__(self, width=1200, height=800, phone=False):
        self.profile = tempfile.mkdtemp(prefix="pixmora-browser-")
        self.driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        for line in self.driver.stdout:
            if "started successfully on port" in line:
                self.base = "http://127.0.0.1:%d" % int(line.rstrip().rstrip(".").rsplit(" ", 1)[1])
                break
        options = {"args": FLAGS + ["--user-data-dir=" + self.profile, "--window-size=%d,%d" % (width, height)]}
        if phone:
            options["mobileEmulation"] = {"deviceMetrics": {"width": width, "height": height, "pixelRatio": 2, "touch": True}}
        capabilities = {"alwaysMatch": {"browserName": "chrome", "goog:chromeOptions": options}}
        self.session = self._call("POST", "/session", {"capabilities": capabilities})["sessionId"]

    def close(self):
        self._call("DELETE", "/session/" + self.session)
        self.driver.terminate()
        self.driver.wait()
        self.driver.stdout.close()
        shutil.rmtree(self.profile, ignore_errors=True)

    def _call(self, method, path, body=None):
        data = None if method != "POST" else json.dumps(body or {}).encode()
        request = urllib.request.Request(self.base + path, data, {"Content-Type": "application/json"}, method=method)
        try:
            with urllib.request.urlopen(request, timeout=60) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as error:
            message = error.read().decode()
            is_passing = any(word in message for word in ("stale element", "no such", "not interactable", "intercepted"))
            raise (PageChanged if is_passing else AssertionError)(message[:500]) from None

    def _session(self, method, path, body=None):
        return self._call(method, "/session/" + self.session + path, body)

    def open(self, url):
        self._session("POST", "/url", {"url": url})

    def url(self):
        return self._session("GET", "/url")

    def run(self, script, *args):
        """Runs the body of a function in the present frame."""
        return self._session("POST", "/execute/sync", {"script": script, "args": list(args)})

    def top(self):
        self._session("POST", "/frame", {"id": None})

    def frame(self, selector):
        """Enters the first frame of the present document that the selector finds, once it is there."""
        self._with_element(selector, lambda element: self._session("POST", "/frame", {"id": {ELEMENT: element}}))

    def _with_element(self, selector, action):
        """The action's result for the first element that the selector finds, once there is one that bears it."""
        def act():
            found = self._session("POST", "/elements", {"using": "css selector", "value": selector})
            return found and [action(found[0][ELEMENT])]
        return wait_until(act, selector)[0]

    def click(self, selector):
        self._with_element(selector, lambda element: self._session("POST", "/element/%s/click" % element))

    def type(self, selector, text):
        self._with_element(selector, lambda element: self._session("POST", "/element/%s/value" % element, {"text": text}))

    def text(self, selector="body"):
        return self._with_element(selector, lambda element: self._session("GET", "/element/%s/text" % element))
