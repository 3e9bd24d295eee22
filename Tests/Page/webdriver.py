"""A browser without a window, driven by the W3C protocol that chromedriver speaks.

Not a general client: what the check of the page needs, and no more.
"""

import base64
import json
import re
import subprocess
import urllib.error
import urllib.request

ELEMENT = "element-6066-11e4-a52e-4f735466cecf"


class BrowserError(Exception):
    pass


class Browser:
    def __init__(self, width=1280, height=900):
        self._driver, self._base = self._start_driver()
        try:
            self._session = self._start_session(width, height)
        except (BrowserError, OSError):
            self._stop_driver()
            raise

    @staticmethod
    def _start_driver():
        driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE,
                                  stderr=subprocess.STDOUT, text=True)
        said = []
        for line in driver.stdout:
            if started := re.search(r"started successfully on port (\d+)", line):
                return driver, f"http://127.0.0.1:{started[1]}"
            said.append(line)
        driver.stdout.close()
        raise BrowserError(f"chromedriver ended with {driver.wait()} and said: {''.join(said).strip()}")

    def _stop_driver(self):
        self._driver.terminate()
        self._driver.wait()
        self._driver.stdout.close()

    def _start_session(self, width, height):
        options = {
            "args": ["--headless=new", "--no-sandbox", "--disable-dev-shm-usage", "--disable-gpu",
                     "--hide-scrollbars", "--disable-background-networking",
                     f"--window-size={width},{height}"],
        }
        answer = self._call("POST", "/session", {"capabilities": {"alwaysMatch": {
            "browserName": "chrome", "goog:chromeOptions": options,
            "goog:loggingPrefs": {"browser": "ALL"}}}})
        return f"/session/{answer['sessionId']}"

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            self._call("DELETE", self._session)
        finally:
            self._stop_driver()

    def _call(self, method, path, body=None):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(self._base + path, data, {"Content-Type": "application/json"},
                                         method=method)
        try:
            with urllib.request.urlopen(request, timeout=60) as response:
                return json.load(response)["value"]
        except urllib.error.HTTPError as error:
            raise BrowserError(json.load(error)["value"]["message"]) from error

    def _in_session(self, method, path, body=None):
        return self._call(method, self._session + path, body)

    def open(self, url):
        self._in_session("POST", "/url", {"url": url})

    def run(self, script, *arguments):
        return self._in_session("POST", "/execute/sync", {"script": script, "args": list(arguments)})

    def press(self, keys):
        """Types into whatever has the focus. Control is held for what comes after it."""
        actions = [{"type": kind, "value": key} for key in keys
                   for kind in (["keyDown"] if key == "\ue009" else ["keyDown", "keyUp"])]
        if "\ue009" in keys:
            actions.append({"type": "keyUp", "value": "\ue009"})
        self._in_session("POST", "/actions",
                         {"actions": [{"type": "key", "id": "keyboard", "actions": actions}]})

    def log(self):
        return self._in_session("POST", "/se/log", {"type": "browser"})

    def tool(self, command, **parameters):
        return self._in_session("POST", "/goog/cdp/execute", {"cmd": command, "params": parameters})

    def prefer(self, scheme):
        self.tool("Emulation.setEmulatedMedia",
                  features=[{"name": "prefers-color-scheme", "value": scheme}])

    def picture(self, file):
        with open(file, "wb") as out:
            out.write(base64.b64decode(self._in_session("GET", "/screenshot")))
