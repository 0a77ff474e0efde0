"""Headless Chromium, Firefox and WebKit behind Selenium's one interface. Firefox is spoken to over its Marionette protocol,
since Debian has no driver for it."""
import json
import os
import shutil
import socket
import subprocess
import tempfile
import time
from pathlib import Path

from selenium import webdriver
from selenium.common.exceptions import WebDriverException
from selenium.webdriver.remote.webdriver import WebDriver

CHROMIUM_FLAGS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-sync",
                  "--disable-background-networking", "--disable-component-update", "--disable-dev-shm-usage",
                  "--window-size=1200,800"]
# Selenium's commands by Marionette's names.
COMMANDS = {"newSession": "NewSession", "get": "Navigate", "w3cExecuteScript": "ExecuteScript", "findElements": "FindElements",
            "switchToFrame": "SwitchToFrame", "getCurrentUrl": "GetCurrentURL", "clickElement": "ElementClick",
            "sendKeysToElement": "ElementSendKeys", "getElementText": "GetElementText",
            "getElementProperty": "GetElementProperty"}
PATIENCE = 20  # seconds


class Marionette:
    """Carries Selenium's commands to a Firefox: each message is its length, ":" and JSON."""

    def __init__(self, port):
        self.connection = socket.create_connection(("127.0.0.1", port), PATIENCE)
        self.input = self.connection.makefile("rb")
        self.number = 0
        self._receive()  # the greeting

    def _receive(self):
        length = b""
        while (digit := self.input.read(1)) != b":":
            length += digit
        return json.loads(self.input.read(int(length)))

    def execute(self, command, params):
        self.number += 1
        words = {key: value for key, value in (params or {}).items() if key != "sessionId"}
        message = json.dumps([0, self.number, "WebDriver:" + COMMANDS[command], words]).encode()
        self.connection.sendall(b"%d:%s" % (len(message), message))
        _, _, error, value = self._receive()
        if error:
            return {"status": 500, "value": json.dumps({"value": error})}
        return value if command == "newSession" else {"value": value.get("value") if isinstance(value, dict) else value}

    def close(self):
        self.input.close()
        self.connection.close()


class Engine:
    """A browser of a test's own: `driver` is Selenium's. @param name chromium, firefox or webkit"""

    def __init__(self, name):
        self.firefox = self.screen = None
        self.profile = tempfile.mkdtemp(prefix="pixmora-browser-")
        self.driver = {"chromium": self._chromium, "firefox": self._firefox, "webkit": self._webkit}[name]()

    def _chromium(self):
        options = webdriver.ChromeOptions()
        for flag in [*CHROMIUM_FLAGS, "--user-data-dir=" + self.profile]:
            options.add_argument(flag)
        return webdriver.Chrome(options=options)

    def _firefox(self):
        Path(self.profile, "user.js").write_text('user_pref("marionette.port", 0);\n')
        words = ["firefox-esr", "--headless", "--no-remote", "--marionette", "--profile", self.profile, "--width=1200",
                 "--height=800"]
        self.firefox = subprocess.Popen(words, env=dict(os.environ, HOME=self.profile), stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)
        told = Path(self.profile, "MarionetteActivePort")
        port = wait_until(lambda: told.exists() and told.read_text(), "firefox", 3 * PATIENCE)
        return WebDriver(command_executor=Marionette(int(port)), options=webdriver.FirefoxOptions())

    def _webkit(self):
        """On a screen of its own, whose number the server itself finds and tells: others may start theirs at the same time."""
        here, there = os.pipe()
        self.screen = subprocess.Popen(["Xvfb", "-displayfd", str(there), "-screen", "0", "1280x1024x24"], pass_fds=[there],
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(there)
        with open(here) as told:
            os.environ["DISPLAY"] = ":" + told.readline().strip()
        return webdriver.WebKitGTK()

    def close(self):
        if self.firefox:
            self.driver.command_executor.close()
        else:
            self.driver.quit()
        for server in filter(None, [self.firefox, self.screen]):
            server.terminate()
            server.wait()
        shutil.rmtree(self.profile, ignore_errors=True)


def wait_until(condition, what, patience=PATIENCE, told=lambda: ""):
    """The condition's first true value; fails with what is told then when it doesn't come in time. A page that changes
    meanwhile is asked again."""
    end, last = time.monotonic() + patience, None
    while time.monotonic() < end:
        try:
            if value := condition():
                return value
        except WebDriverException as error:
            last = error
        time.sleep(0.02)
    raise AssertionError("too long: %s %s" % (what, told() or last or ""))
