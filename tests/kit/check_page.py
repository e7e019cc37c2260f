"""The page of `tolvanixkit report` in a browser: check_page.py <tolvanixkit> <folder>

Leaves in the folder the page and pictures of it: wide, narrow, dark and printed.
"""

import base64
import pathlib
import subprocess
import sys

from selenium import webdriver

KIT, FOLDER = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
NETWORK, STORAGE = "Sample Gigabit Network Adapter", "Sample Storage Controller"
LONG_NAME = "A name that is much longer than a telephone is wide and goes on and on and on"
DOCUMENTS = sorted((pathlib.Path(__file__).parents[1] / "fixtures/report").glob("*.xml"))


class Page:
    def __init__(self):
        options = webdriver.ChromeOptions()
        for argument in ("headless=new", "no-sandbox", "disable-gpu", "disable-dev-shm-usage"):
            options.add_argument("--" + argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        self.browser = webdriver.Chrome(options=options)

    def ask(self, script):
        return self.browser.execute_script("return " + script)

    def show(self, width, scheme="light", media=""):
        self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": 900, "deviceScaleFactor": 1, "mobile": width < 600})
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "media": media, "features": [{"name": "prefers-color-scheme", "value": scheme}]})

    def picture(self, name):
        taken = self.browser.execute_cdp_cmd("Page.captureScreenshot",
                                             {"captureBeyondViewport": True})
        (FOLDER / name).write_bytes(base64.b64decode(taken["data"]))

    def column(self, title):
        return self.ask(f"""[...document.querySelectorAll('tbody td[data-title="{title}"]')]
                            .map((cell) => cell.innerText.trim())""")

    def sort(self, title):
        self.ask(f"""[...document.querySelectorAll('th button')]
                     .find((button) => button.innerText.trim() === "{title}").click()""")
        return self.column(title)

    def colour(self, selector):
        return self.ask(f"getComputedStyle(document.querySelector('{selector}')).backgroundColor")


def expect(what, actual, wanted):
    if actual != wanted:
        failures.append(f"{what}: {actual!r}, wanted {wanted!r}")


def check(page):
    expect("devices", sorted(page.column("Device")),
           ["(the run)", LONG_NAME, *[NETWORK] * 2, *[STORAGE] * 2, "網路卡"])
    expect("restart", page.ask("document.querySelector('.note').innerText"),
           "Restart needed: office-pc-14")
    expect("failed rows", page.ask("document.querySelectorAll('tr.bad').length"), 2)
    versions = ["1.0.0.5", "1.2.0.5", "1.4.0.5", "1.9.0.5", "1.10.0.5", "1.33.0.5", ""]
    expect("sorted", page.sort("Installed"), versions)
    expect("sorted down", page.sort("Installed"), versions[-2::-1] + [""])
    for width in (1280, 390):
        for scheme in ("light", "dark"):
            page.show(width, scheme)
            place = f"{width} {scheme}"
            expect(f"{place}: nothing is wider than the page",
                   page.ask(f"Math.max({width}, document.documentElement.scrollWidth)"), width)
            cell = "" if width < 600 else " td"
            expect(f"{place}: failures look different", page.colour("tbody tr.bad" + cell) ==
                   page.colour("tbody tr:not(.bad)" + cell), False)
            page.picture(f"{width}-{scheme}.png")
    dark = page.colour("body")
    page.show(1280, "dark", "print")
    page.picture("print.png")
    expect("paper is white in the dark", page.colour("body"), "rgb(255, 255, 255)")
    expect("and only paper", dark != page.colour("body"), True)
    expect("complaints", page.browser.get_log("browser"), [])


failures = []
FOLDER.mkdir(parents=True, exist_ok=True)
command = [KIT, "report", "--format", "html", "-o", FOLDER / "page.html", *DOCUMENTS]
subprocess.run(command, check=True)
shown = Page()
try:
    shown.browser.get((FOLDER / "page.html").as_uri())
    check(shown)
finally:
    shown.browser.quit()
print("\n".join(failures))
sys.exit(1 if failures else 0)
