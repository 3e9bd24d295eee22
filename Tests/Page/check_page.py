"""The page of zibsim serve in a real browser: what it shows, how it is reached, what cannot hurt it.

    check_page.py ZIBSIM [PICTURES]

With a folder, the pictures of the documentation are taken into it. Where no browser starts, everything is
skipped, with what it said, and the exit status is 77.
"""

import json
import pathlib
import re
import subprocess
import sys
import tempfile
import time
import unittest

from webdriver import Browser, BrowserError

ROOT = pathlib.Path(__file__).resolve().parents[2]
TAB, ENTER, CONTROL, ARROW_RIGHT = "\ue004", "\ue007", "\ue009", "\ue014"

PAYLOAD = {
    "aps": {"alert": {"title": "Title", "subtitle": "Subtitle", "body": "Body"}},
    "node_id": 5, "club": "gold", "url": "NA", "link": "https://a.example/x",
}


class Page(unittest.TestCase):
    zibsim = None
    pictures = None

    @classmethod
    def setUpClass(cls):
        cls.server = subprocess.Popen([cls.zibsim, "serve", "--port", "0"], stdout=subprocess.PIPE,
                                      text=True)
        cls.url = re.match(r"(http://\S+)", cls.server.stdout.readline())[1]
        cls.browser = Browser()

    @classmethod
    def tearDownClass(cls):
        cls.browser.__exit__()
        cls.server.terminate()
        cls.server.wait()
        cls.server.stdout.close()

    def setUp(self):
        self.browser.prefer("light")
        self.browser.open(self.url)
        self.until("return document.querySelector('#shown .inspection') !== null")

    def until(self, script, *arguments):
        end = time.monotonic() + 20
        while time.monotonic() < end:
            if value := self.browser.run(script, *arguments):
                return value
            time.sleep(0.05)
        self.fail(f"never came true: {script}\n{self.text('#shown')}")

    def text(self, selector):
        return self.browser.run(
            "const e = document.querySelector(arguments[0]); return e ? e.innerText : null", selector)

    def enter(self, field, text):
        self.browser.run("""
            const field = document.getElementById(arguments[0]);
            document.getElementById('status').textContent = '…';
            field.value = arguments[1];
            field.dispatchEvent(new Event('input', {bubbles: true}));""", field, text)

    def inspect(self, payload):
        self.enter("payload", payload if isinstance(payload, str) else json.dumps(payload))
        return self.until("""const text = document.getElementById('status').textContent;
                             return text === '…' ? null : text""")

    def play(self, scenario):
        self.browser.run("document.getElementById('tab-play').click()")
        self.enter("scenario", scenario if isinstance(scenario, str) else json.dumps(scenario))
        self.browser.run("document.getElementById('play').click()")
        return self.until("""const text = document.getElementById('status').textContent;
                             return ['…', 'Playing …', ''].includes(text) ? null : text""")

    def field(self, name):
        return self.browser.run("""
            const row = [...document.querySelectorAll('#shown tbody tr')]
                .find(row => row.cells[0].innerText === arguments[0]);
            return row && [...row.cells].slice(1).map(cell => cell.innerText)""", name)

    def assert_quiet(self):
        complaints = [line["message"] for line in self.browser.log()
                      if line["level"] in ("SEVERE", "WARNING") and " 422 " not in line["message"]]
        self.assertEqual(complaints, [])

    def test_shows_the_event_the_link_and_the_notification(self):
        self.assertEqual(self.inspect(PAYLOAD), "Opens https://a.example/x. 1 remark.")
        self.assertEqual(self.field("club"), ["gold", "from the key \"club\""])
        self.assertEqual(self.field("node_id"), ["null", "a number, not text"])
        self.assertEqual(self.text("#shown .url"), "https://a.example/x")
        self.assertIn("Subtitle", self.text("#shown .notification"))
        ladder = self.browser.run("""
            return [...document.querySelectorAll('#shown .ladder li')].map(li => li.className)""")
        self.assertEqual(ladder, ["notApplicable", "opens"] + ["notReached"] * 7)
        self.assertIn("write \"5\"", self.text("#shown .remarks"))
        self.assert_quiet()

    def test_follows_what_is_typed(self):
        self.browser.run("""const field = document.getElementById('payload');
                            field.value = '{"url": "app://'; field.focus();
                            field.setSelectionRange(15, 15)""")
        self.browser.press('home"}')
        self.until("return document.querySelector('#shown .url')?.innerText === 'app://home'")

    def test_follows_what_happens_to_the_notification(self):
        self.browser.run("""const choice = document.getElementById('event-type');
                            choice.value = 'notification-delivered';
                            choice.dispatchEvent(new Event('change'))""")
        self.until("""return [...document.querySelectorAll('#shown td')]
                      .some(cell => cell.innerText === 'notification-delivered')""")

    def test_says_what_is_no_payload(self):
        self.assertIn("allowed: a JSON object", self.inspect("[1, 2]"))
        self.assertIn("allowed: a JSON object", self.text("#shown .failure"))
        self.assertIn("Paste a payload", self.inspect("  "))

    def test_shows_markup_as_text(self):
        attack = "<img src=x onerror=\"document.title='hurt'\"><script>document.title='hurt'</script>"
        self.inspect({"aps": {"alert": {"title": attack, "body": "</main>" + attack}},
                      "club": attack, attack: attack, "url": "javascript:" + attack})
        self.assertEqual(self.text("#shown .notification .title"), attack)
        self.assertEqual(self.field("club")[0], attack)
        self.assertEqual(self.browser.run("return document.title"), "zibsim: try a push")
        self.assertEqual(self.browser.run(
            "return document.querySelectorAll('#shown img, #shown script, #shown a').length"), 0)
        self.assertEqual(self.play({"name": attack, "steps": []}), attack + ": passed")
        self.assertEqual(self.browser.run(
            "return document.querySelectorAll('#shown img, #shown script').length"), 0)
        self.assert_quiet()

    def test_survives_deep_and_large_payloads(self):
        deep = '{"a":' + "[" * 100_000 + "]" * 100_000 + "}"
        self.assertIn("allowed: a JSON object", self.inspect(deep))
        self.browser.run("""const field = document.getElementById('payload');
                            document.getElementById('status').textContent = '…';
                            field.value = JSON.stringify({text: 'x'.repeat(2 << 20)});
                            field.dispatchEvent(new Event('input', {bubbles: true}))""")
        self.until("return document.getElementById('status').textContent !== '…'")
        self.assertEqual(self.inspect(PAYLOAD), "Opens https://a.example/x. 1 remark.")

    def test_plays_a_scenario(self):
        scenario = json.loads((ROOT / "Examples/first-light.json").read_text())
        self.assertEqual(self.play(scenario), f"{scenario['name']}: passed")
        lanes = self.browser.run("""
            return ['system', 'module', 'host', 'core']
                .filter(lane => document.querySelector('#shown .entry.' + lane))""")
        self.assertEqual(lanes, ["system", "module", "host", "core"])
        steps = self.browser.run("return document.querySelectorAll('#shown tr.step').length")
        self.assertEqual(steps, len(scenario["steps"]))
        self.assert_quiet()

    def test_shows_what_was_not_met(self):
        self.assertEqual(self.play({"name": "n", "steps": [{"do": "state"}],
                                    "expect": [{"kind": "state"}, {"kind": "event"}]}), "n: failed")
        self.assertEqual(self.browser.run("""
            return [...document.querySelectorAll('#shown .expectations li')].map(li => li.className)"""),
            ["met", "unmet"])

    def test_says_what_is_wrong_with_a_scenario(self):
        self.assertIn("/steps/0/do: got \"stat\"", self.play({"steps": [{"do": "stat"}]}))

    def test_reads_no_files_for_a_scenario(self):
        network = {"a.example": {"/x": {"file": "/etc/hostname"}}}
        self.assertIn("reads no files", self.play({"network": network, "steps": []}))

    def test_plays_by_keyboard(self):
        self.browser.run("""document.getElementById('tab-play').click();
                            document.getElementById('scenario').focus()""")
        self.browser.press([CONTROL, ENTER])
        self.until("return document.querySelector('#shown .lanes') !== null")

    def test_is_reached_by_keyboard(self):
        reached = []
        self.browser.run("document.body.focus()")
        for _ in range(5):
            self.browser.press([TAB])
            reached.append(self.browser.run(
                "return document.activeElement.id || document.activeElement.className"))
        self.assertEqual(reached, ["skip", "tab-inspect", "payload", "event-type", "payload-file"])
        self.browser.run("document.getElementById('tab-inspect').focus()")
        self.browser.press([ARROW_RIGHT])
        self.assertEqual(self.browser.run("return document.activeElement.id"), "tab-play")
        self.assertEqual(self.browser.run(
            "return document.getElementById('tab-play').getAttribute('aria-selected')"), "true")
        self.assertTrue(self.browser.run("return document.getElementById('panel-inspect').hidden"))

    def test_has_names_for_a_screen_reader(self):
        tree = self.browser.tool("Accessibility.getFullAXTree")["nodes"]
        nameless = [node["role"]["value"] for node in tree
                    if node.get("role", {}).get("value") in
                    ("button", "textbox", "combobox", "tab", "tabpanel", "link", "table", "region")
                    and not node.get("ignored") and not node.get("name", {}).get("value")
                    and node["role"]["value"] != "table"]
        self.assertEqual(nameless, [])
        roles = [node.get("role", {}).get("value") for node in tree]
        for role in ("main", "heading", "tablist", "status", "columnheader", "rowheader"):
            self.assertIn(role, roles)

    def test_can_be_read_in_both_schemes(self):
        for scheme in ("light", "dark"):
            self.browser.prefer(scheme)
            self.inspect(PAYLOAD)
            weak = self.browser.run(CONTRAST)
            self.assertEqual(weak, [], scheme)

    def test_fits_a_narrow_window(self):
        self.browser.tool("Emulation.setDeviceMetricsOverride", width=360, height=740,
                          deviceScaleFactor=1, mobile=False)
        try:
            self.inspect(PAYLOAD)
            width = self.browser.run("return document.documentElement.scrollWidth")
            self.assertLessEqual(width, 360)
        finally:
            self.browser.tool("Emulation.clearDeviceMetricsOverride")

    def test_pages_on_their_own_load_and_run_nothing(self):
        with tempfile.TemporaryDirectory() as folder:
            payload = pathlib.Path(folder) / "p.apns"
            attack = "<script>document.title='hurt'</script>"
            payload.write_text(json.dumps({**PAYLOAD, "club": attack}))
            page = pathlib.Path(folder) / "p.html"
            page.write_bytes(subprocess.run([self.zibsim, "inspect", "--format", "html", payload],
                                            capture_output=True, check=True).stdout)
            self.browser.open(page.as_uri())
            self.assertEqual(self.browser.run("return document.title"), "p.apns")
            self.assertEqual(self.text("td.value:nth-child(2)"), "push")
            self.assertIn(attack, self.browser.run("return document.body.innerText"))
            requested = self.browser.run("return performance.getEntriesByType('resource').length")
            self.assertEqual(requested, 0)

    def test_takes_the_pictures_of_the_documentation(self):
        if self.pictures is None:
            self.skipTest("no folder for them is given")
        size = {"width": 1180, "height": 1090, "deviceScaleFactor": 1, "mobile": False}
        self.browser.tool("Emulation.setDeviceMetricsOverride", **size)
        self.browser.run("document.getElementById('payload').style.minHeight = '8rem'")
        for scheme in ("light", "dark"):
            self.browser.prefer(scheme)
            self.browser.picture(self.pictures / f"page-payload-{scheme}.png")
        self.browser.prefer("light")
        with tempfile.TemporaryDirectory() as folder:
            page = pathlib.Path(folder) / "t.html"
            subprocess.run([self.zibsim, "run", "--format", "html", "--output", page,
                            "Examples/first-light.json"], cwd=ROOT, capture_output=True, check=True)
            self.browser.open(page.as_uri())
            self.browser.run("""
                const style = document.documentElement.style;
                style.scrollBehavior = 'auto';
                document.querySelectorAll('tr.step')[1].scrollIntoView()""")
            self.browser.picture(self.pictures / "timeline.png")
        self.browser.tool("Emulation.clearDeviceMetricsOverride")


# The texts whose colour is too near to what is behind them: a ratio below 4.5.
CONTRAST = """
const channel = value => value <= 0.03928 ? value / 12.92 : ((value + 0.055) / 1.055) ** 2.4;
const parse = colour => colour.match(/[\\d.]+/g).map(Number);
const luminance = ([r, g, b]) => 0.2126 * channel(r / 255) + 0.7152 * channel(g / 255)
    + 0.0722 * channel(b / 255);
const behind = element => {
  for (let e = element; e; e = e.parentElement) {
    const style = getComputedStyle(e);
    if (style.backgroundImage !== 'none') return null;
    const colour = parse(style.backgroundColor);
    if (colour.length === 3 || colour[3] > 0.9) return colour;
  }
  return [255, 255, 255];
};
const weak = [];
const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
while (walker.nextNode()) {
  const element = walker.currentNode.parentElement;
  if (!walker.currentNode.data.trim() || !element.checkVisibility()) continue;
  const ground = behind(element);
  if (!ground) continue;
  const [one, other] = [luminance(parse(getComputedStyle(element).color)), luminance(ground)];
  const ratio = (Math.max(one, other) + 0.05) / (Math.min(one, other) + 0.05);
  if (ratio < 4.5) weak.push(`${element.tagName}.${element.className}: ${ratio.toFixed(2)}`);
}
return weak;
"""

def a_browser_starts(attempts=3):
    for attempt in range(attempts):
        try:
            with Browser():
                return True
        except (BrowserError, OSError) as error:
            print(f"check-page: attempt {attempt + 1}: no browser starts: {error}", file=sys.stderr)
    return False


if __name__ == "__main__":
    if not a_browser_starts():
        print("check-page: skipped: no browser starts on this machine")
        sys.exit(77)
    Page.zibsim = pathlib.Path(sys.argv[1]).resolve()
    if len(sys.argv) > 2:
        Page.pictures = pathlib.Path(sys.argv[2])
    unittest.main(argv=sys.argv[:1], verbosity=1)
