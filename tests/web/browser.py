"""A browser without a window, and what it sees of a page."""

import pathlib
import shutil
import tempfile
import time

from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

HERE = pathlib.Path(__file__).parent
ARGUMENTS = ["--headless=new", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
             "--disable-background-networking", "--disable-component-update", "--disable-sync"]


class Browser:
    """Chromium with a page of the tool."""

    def __init__(self):
        self._profile = tempfile.mkdtemp(prefix="finf-web-")
        options = Options()
        options.binary_location = shutil.which("chromium") or "/usr/bin/chromium"
        for argument in [*ARGUMENTS, f"--user-data-dir={self._profile}"]:
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        self.driver = webdriver.Chrome(options=options, service=Service(shutil.which("chromedriver")))
        self.driver.set_script_timeout(120)
        self._probes = (HERE / "probes.js").read_text()
        self.size(1440, 900)

    def close(self):
        self.driver.quit()
        shutil.rmtree(self._profile, ignore_errors=True)

    def size(self, width, height):
        """The size of what is seen of a page."""
        self.command("Emulation.setDeviceMetricsOverride",
                     width=width, height=height, deviceScaleFactor=1, mobile=False)

    def scheme(self, scheme):
        """What the system prefers: "light" or "dark"."""
        self.command("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])

    def command(self, name, **arguments):
        return self.driver.execute_cdp_cmd(name, arguments)

    def open(self, path):
        """Opens a page and waits until it is drawn. Returns the seconds that took."""
        self.driver.get("about:blank")
        self.driver.get_log("browser")
        start = time.monotonic()
        self.driver.get(f"file://{path}")
        self.run("const page = await opened; await page.counted; await frames();")
        return time.monotonic() - start

    def run(self, script, *arguments):
        """Runs asynchronous JavaScript with the functions of probes.js; returns what it returns."""
        result = self.driver.execute_async_script(
            "const done = arguments[arguments.length - 1];\n" + self._probes +
            "\n(async (...given) => {" + script + "})(...arguments).then(value => done({value}),"
            " error => done({error: String(error.stack)}));", *arguments)
        if "error" in result:
            raise AssertionError(result["error"])
        return result.get("value")

    def find(self, selector):
        return self.driver.find_element(By.CSS_SELECTOR, selector)

    def click(self, selector):
        self.find(selector).click()
        self.run("await frames();")

    def keys(self, *keys):
        """Presses keys, one after the other; in a tuple, the first ones are held."""
        for key in keys:
            chain = ActionChains(self.driver, duration=0)
            *held, key = key if isinstance(key, tuple) else (key,)
            for each in held:
                chain.key_down(each)
            chain.send_keys(key)
            for each in held:
                chain.key_up(each)
            chain.perform()
        self.run("await frames();")

    def press(self, text):
        """Presses the button in the panel that has a text."""
        self.run("[...document.querySelectorAll('[role=tabpanel]:not([hidden]) button')]"
                 ".find(each => each.textContent === given[0]).click(); await frames();", text)

    def texts(self, selector):
        """The texts of elements."""
        return self.run("return [...document.querySelectorAll(given[0])].map(each => each.textContent);", selector)

    def tables(self, selector):
        """The tables that a selector finds, as rows of texts without the heads."""
        return self.run("return [...document.querySelectorAll(given[0])].map(table => [...table.tBodies[0].rows]"
                        ".map(row => [...row.cells].map(each => each.textContent)));", selector)

    def selected(self):
        """The number of the construct that is selected."""
        return self.run("return selectedConstruct();")

    def counted(self):
        """Waits until a panel has counted what it shows."""
        self.run("await until(() => !document.getElementById('panels').textContent.includes('Counting'));")

    def search(self, kind, text):
        """Searches and returns what the page says of the result."""
        self.run("document.getElementById('search-kind').value = given[0];", kind)
        field = self.find("#search-text")
        field.clear()
        field.send_keys(text, Keys.ENTER)
        return self.run("return until(() => { const text = document.getElementById('search-result').value;"
                        "return text !== 'Searching' && text; });")

    def messages(self):
        """What the browser has complained of since the page was opened."""
        return [entry["message"] for entry in self.driver.get_log("browser")]
