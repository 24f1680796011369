"""The page of `finf inspect --html`: what it shows is what the tool says, and it is fit for use."""

import json
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import unittest

from selenium.webdriver.common.keys import Keys

import documents
from browser import Browser

TOP = pathlib.Path(__file__).resolve().parents[2]
FINF = ""
PICTURES = None

browser = None
directory = None


def setUpModule():
    global browser, directory
    directory = pathlib.Path(tempfile.mkdtemp(prefix="finf-web-"))
    browser = Browser()


def tearDownModule():
    browser.close()
    shutil.rmtree(directory)


def finf(*arguments, status=0):
    """Runs the tool, which must end with the status; returns what it has written on standard output."""
    return finf_says(*arguments, status=status)[0]


def finf_says(*arguments, status):
    """The same with standard error."""
    result = subprocess.run([FINF, *map(str, arguments)], capture_output=True, cwd=directory, check=False)
    if result.returncode != status:
        raise AssertionError(f"{arguments}: status {result.returncode}, {result.stderr.decode()}")
    return result.stdout.decode(), result.stderr.decode()


def document(name, octets):
    (directory / name).write_bytes(octets)
    return name


def sample(name, *options):
    """A document of samples/ as Fast Infoset."""
    target = f"{pathlib.Path(name).stem}.finf"
    finf("encode", TOP / "samples" / name, "-o", target, "--force", *options)
    return target


def show(name, *options, status=0):
    """Makes the page of a document and opens it; returns the seconds that opening took."""
    finf("inspect", "--html", name, "-o", "page.html", "--force", *options, status=status)
    return browser.open(directory / "page.html")


def said(name, *options, status=0):
    """What the tool says of a document as JSON."""
    return json.loads(finf("inspect", "--json", "--full", "--tables", name, *options, status=status))


def quoted(text):
    """Text as the tool quotes it; what it shortens ends with an ellipsis."""
    octets = text.encode()
    end = len(octets)
    if end > 120 + 8:
        end = 120
        while octets[end] & 0xC0 == 0x80:
            end -= 1
    shown = "".join(
        {"\n": "\\n", "\t": "\\t", '"': '\\"', "\\": "\\\\"}.get(c) or
        (c if c >= " " and not "\x7f" <= c < "\xa0" else "".join(f"\\x{octet:02x}" for octet in c.encode()))
        for c in octets[:end].decode())
    return f'"{shown}"' + (f"\u2026 ({len(octets)} octets)" if end < len(octets) else "")


def expected_row(field):
    """What the tree has to show of a field."""
    place = f"{field['offset']:08x}" + (f".{field['bit']}" if field["bit"] else "")
    entry = ""
    if field.get("index"):
        entry = f"{'+' if field['use'] == 'adds' else '='} {field['table']} {field['index']}"
    return {
        "offset": place if field["bits"] else "", "level": field["depth"] + 1, "construct": field["construct"],
        "value": quoted(field["value"]) if "value" in field else "", "note": field.get("note", ""),
        "encoding": field.get("encoding", "").removeprefix("UTF-8"), "entry": entry,
    }


def expected_size(fields, number):
    """The octets of a field and of all that is nested in it, as the tree shows them."""
    depth = fields[number]["depth"]
    last = number
    while last + 1 < len(fields) and fields[last + 1]["depth"] > depth:
        last += 1
    if fields[number]["construct"] == "element" and last + 1 < len(fields):
        last += 1  # the end of the element
    bits = begin(fields[last]) + fields[last]["bits"] - begin(fields[number])
    return f"{bits / 8:,g}".replace(",", "\u2009") if bits else ""


def begin(field):
    return 8 * field["offset"] + field["bit"]


class PageTest(unittest.TestCase):
    maxDiff = 4000

    def setUp(self):
        browser.size(1440, 900)
        browser.scheme("light")

    def tearDown(self):
        if PICTURES is None:
            self.assertEqual(browser.messages(), [])


class Content(PageTest):
    """The page says what the tool says elsewhere."""

    def test_constructs(self):
        # Every part that a header can have, and a fault.
        head = bytes.fromhex(
            "3C3F783E E000 0001 7F 00 0075 016464 0FFF 00 016162 00 0061 00 0070 00 0075 00 006C 00 0074 00 0073 00 110076"
            "00 20000001 00 30303300000007 00 03010100 00 03010100 C2006E80F0 D000658081F0 047574662D38 01 4031 C680E18080F0"
            "40 00 0800313233343536373839 F0 8C0E0100000001 E3")
        cases = [
            (sample("order.xml"), [], 0),
            (sample("track.xml", "--typed"), [], 0),
            (sample("article.xml"), [], 0),
            (sample("sensors.xml", "--typed"), ["--offset", "300", "--limit", "200"], 0),
            (document("head.finf", head), [], 1),
            (document("trailing.finf", (directory / "order.finf").read_bytes() + b"behind"), ["--first"], 0),
        ]
        finf("encode", TOP / "samples/order.xml", "-o", "known.finf", "--external-vocabulary",
             f"urn:v={TOP}/samples/order.xml")
        cases.append(("known.finf", ["--external-vocabulary", f"urn:v={TOP}/samples/order.xml"], 0))
        for name, options, status in cases:
            with self.subTest(name):
                fields = said(name, *options, status=status)["fields"]
                show(name, *options, status=status)
                self.assertTrue(browser.find("#summary").text.endswith(
                    "broken" if status else "a part of the document" if "--limit" in options else "complete"))
                rows = browser.run("return allRows();")
                if status:
                    self.assertEqual(rows.pop()["construct"], "broken child or end")
                    self.assertEqual(int(rows[-1]["offset"], 16), len(head) - 8)
                self.assertEqual(len(rows), len(fields))
                for number, (row, field) in enumerate(zip(rows, fields)):
                    size = row.pop("size")
                    if not status:
                        self.assertEqual(size, expected_size(fields, number))
                    if re.search(r"algorithm \d ", row["encoding"]) and len(field["value"]) > 120:
                        # Of arrays, what is left out are values.
                        self.assertEqual(row["value"][:121], f'"{field["value"][:120]}')
                        row["value"] = quoted(field["value"])
                    if row.pop("implied"):
                        self.assertEqual(field["construct"], "element")
                        row["value"] = ""
                    if field["construct"] == "trailing octets":
                        row["note"] = ""
                    self.assertEqual(row, expected_row(field))

    def test_every_construct_marks_its_octets(self):
        fields = said(sample("order.xml"))["fields"]
        show("order.finf")
        browser.click("#construct-0")
        pressed = browser.run("const all = []; for (let i = 1; i < given[0]; ++i) {"
                              "all.push(await press('constructs', 'ArrowDown')); } return all;", len(fields))
        whole = "".join(f"{octet:08b}" for octet in (directory / "order.finf").read_bytes())
        for number, (selected, marked, seen, shown) in enumerate(pressed, 1):
            field = fields[number]
            self.assertEqual(selected, number)
            first, last = begin(field), begin(field) + field["bits"]
            self.assertEqual(marked, [first, min(last, seen[1])] if field["bits"] else None, field)
            if not any("\u2026" in part for part, _ in shown):
                bits = "".join("".join(f"{int(pair, 16):08b}" for pair in part.split()) if purpose.startswith("literal")
                               else part.replace(" ", "") for part, purpose in shown)
                self.assertEqual(bits, whole[first:last], shown)

    def test_every_octet_selects_its_construct(self):
        fields = said(sample("order.xml"))["fields"]
        show("order.finf")
        browser.click("#octet-0")
        holders = {}
        for number, field in enumerate(fields):
            for octet in range(begin(field) // 8, (begin(field) + field["bits"] + 7) // 8):
                holders.setdefault(octet, []).append(number)
        self.assertTrue(any(len(numbers) > 1 for numbers in holders.values()))
        # Those that share the octet, one after the other.
        keys = [key for octet in range(700) for key in [" "] * (len(holders[octet]) - 1) + ["ArrowRight"]]
        pressed = browser.run("const all = []; for (const key of given[0]) {"
                              "all.push((await press('octets', key))[0]); } return all;", keys)
        self.assertEqual([0, *pressed[:-1]], [number for octet in range(700) for number in holders[octet]])

    def test_pointer(self):
        fields = said(sample("order.xml"))["fields"]
        show("order.finf")
        browser.click("#construct-8 .construct")
        self.assertEqual(browser.run("return markedBits('selected');"), [begin(fields[8]), begin(fields[9])])
        browser.click("#octet-3")
        self.assertEqual(browser.selected(), 1)
        script = ("given.dispatchEvent(new MouseEvent('mousemove', {bubbles: true})); await frames();"
                  "return markedBits('hovered');")
        self.assertEqual(
            browser.run(script.replace("given", "document.querySelector('#construct-5 .construct')")),
            [begin(fields[5]), begin(fields[6])])
        browser.run(script.replace("given", "document.getElementById('octet-4')"))
        self.assertEqual(browser.run("return document.querySelector('.row.hovered').id;"), "construct-2")

    def test_colours_of_octets(self):
        show(sample("order.xml"))
        kinds = browser.run("return [...document.querySelectorAll('#octets [id]')].slice(0, 200)"
                            ".map(cell => Number(cell.className.match(/kind-(\\d)/)[1]));")
        # Header, comment: 8 bits that say so, 5 bits in front of a length of 11, the text; an element.
        self.assertEqual(kinds[:186], [0] * 5 + [0, 0, 2] + [5] * 178)
        self.assertEqual(kinds[186:190], [0, 0, 2, 4])

    def test_damage(self):
        octets = (directory / sample("track.xml", "--typed")).read_bytes()
        broken = octets[:0x6FF] + b"\xe3" + octets[0x700:]
        for name, damaged in [("cut", octets[:900]), ("early", octets[:6]), ("broken", broken),
                              ("end", octets[:octets.index(b"\xf0") + 1])]:
            with self.subTest(name):
                document(name, damaged)
                _, message = finf_says("inspect", "--html", name, "-o", "page.html", "-f", status=1)
                fault = said(name, status=1)["fault"]
                browser.open(directory / "page.html")
                banner = browser.find("#fault").text
                self.assertIn(re.sub("^finf: [a-z]+: (.*)\n$", r"\1", message), banner)
                browser.keys((Keys.CONTROL, Keys.HOME))
                browser.click("#fault button")
                place = 8 * fault["offset"] + fault["bit"]
                row = browser.find("#constructs .row.selected")
                self.assertEqual(row.find_element("class name", "construct").text, f"broken {fault['construct']}")
                self.assertEqual(row.find_element("class name", "note").text, fault["reason"])
                marked = browser.run("return markedBits('fault');")
                unread = browser.run("return markedBits('unread');")
                if fault["offset"] < len(damaged):
                    self.assertEqual(marked[0], place)
                    self.assertEqual(unread[0] if unread else 8 * len(damaged), marked[1])
                else:
                    self.assertIsNone(marked)
        show("broken", status=1)
        browser.run("document.getElementById('octets').scrollTop = 1e6; await frames();")
        self.assertTrue(browser.find(f"#octet-{len(broken) - 1}").get_attribute("class").startswith("unread"))
        browser.click(f"#octet-{len(broken) - 1}")
        self.assertIn("behind the fault", browser.find("#panel-construct").text)

    def test_arrays(self):
        show(document("arrays.finf", documents.arrays()))
        fields = [field for field in said("arrays.finf")["fields"] if "encoding" in field]
        formats = {3: ">h", 4: ">i", 5: ">q", 7: ">f", 8: ">d"}
        for field, (algorithm, octets) in zip(fields, documents.ARRAYS.items()):
            browser.search("construct", field["encoding"])
            value = browser.find("#panel-construct .value").text
            self.assertEqual(value, f'"{field["value"]}"')
            buttons = browser.driver.find_elements(
                "css selector", ".numbers .row:not([hidden]) [role=cell]:not([hidden]) button")
            texts = [button.text for button in buttons]
            self.assertEqual(texts, field["value"].split(" ") if algorithm > 2 else [], algorithm)
            if algorithm in formats:
                end = begin(field) + field["bits"]
                for button, text in list(zip(buttons, texts))[:9]:
                    browser.run("given[0].click(); await frames();", button)
                    first, last = browser.run("return markedBits('number');")
                    at = len(octets) - (end - first) // 8
                    number, = struct.unpack(formats[algorithm], octets[at:at + (last - first) // 8])
                    self.assertEqual(str(number), str(type(number)(text.lower())))

    def test_tables(self):
        name = sample("order.xml")
        tables = said(name)["tables"]
        fields = said(name)["fields"]
        show(name)
        browser.click("#tab-tables")
        self.assertEqual(browser.texts("#table option"),
                         [f"{table} ({len(entries)})" for table, entries in tables.items() if entries])
        stats = finf("stats", name)
        for table, entries in tables.items():
            if not entries:
                continue
            with self.subTest(table):
                browser.run("const select = document.getElementById('table'); select.selectedIndex ="
                            "[...select.options].findIndex(each => each.text.startsWith(given[0]));"
                            "select.dispatchEvent(new Event('change')); await frames();", table)
                rows = list(zip(browser.texts(".entries .row:not([hidden]) .text"),
                                browser.texts(".entries .row:not([hidden]) .uses")))
                self.assertGreater(len(rows), 1)
                for index, (text, uses) in enumerate(rows, 1):
                    self.assertEqual(text.split(" in ")[0], quoted(entries[index - 1]))
                    reads = sum(field.get("use") == "reads" and field["table"] == table and field["index"] == index
                                for field in fields)
                    self.assertEqual(int(re.search(r"(\d+) uses?$", uses)[1]), reads)
                line = re.search(rf"^{table} +(\d+) +(\d+) +(\d+)", stats, re.M)
                hits, added, neither = line.groups() if line else ("0", "0", "0")
                self.assertRegex(browser.find(".summary").text,
                                 rf"^{hits} hits .*, {added} added, {neither} literals in no table")
        # From an entry to what has added it, and back.
        browser.run("document.querySelector('.entries .row button').click(); await frames();")
        field = fields[browser.selected()]
        self.assertEqual((field["table"], field["index"]), ("ATTRIBUTE NAME", 1))
        browser.click("#tab-construct")
        browser.press("In its table")
        self.assertEqual(browser.find(".entries .selected .text").text.split(" in ")[0],
                         quoted(tables["ATTRIBUTE NAME"][0]))

    def test_uses_of_an_entry(self):
        fields = said(sample("order.xml"))["fields"]
        show("order.finf")
        reads = [field["index"] for field in fields
                 if (field.get("use"), field.get("table")) == ("reads", "ELEMENT NAME")]
        index = max(reads, key=reads.count)
        uses = [number for number, field in enumerate(fields)
                if (field.get("use"), field.get("table"), field.get("index")) == ("reads", "ELEMENT NAME", index)]
        self.assertGreater(len(uses), 3)
        browser.search("offset", hex(fields[uses[0]]["offset"]))
        for use in uses[1:]:
            browser.press("Next use")
            self.assertEqual(browser.selected(), use)
        browser.press("Previous use")
        self.assertEqual(browser.selected(), uses[-2])
        browser.press("Where it was added")
        added = fields[browser.selected()]
        self.assertEqual((added["use"], added["table"], added["index"]), ("adds", "ELEMENT NAME", index))

    def test_spending(self):
        name = sample("track.xml", "--typed")
        show(name)
        browser.click("#tab-spending")
        browser.counted()
        tables = browser.tables("#panel-spending table")
        self.assertEqual(len(tables), 4)
        stats = finf("stats", name)
        number = lambda text: float(text.replace("\u2009", ""))
        for purpose, octets, _ in tables[0]:
            self.assertEqual(re.search(rf"^{purpose} +([\d.]+)", stats, re.M)[1], f"{number(octets):.1f}")
        size = (directory / name).stat().st_size
        constructs, elements = tables[3], tables[1]
        self.assertEqual(sum(number(row[2]) for row in constructs), size)
        counts = {row[0]: number(row[1]) for row in constructs}
        self.assertEqual(f"{counts['element']:.0f} elements, {counts['attribute']:.0f} attributes",
                         re.search(r": (\d+ elements, \d+ attributes)", stats)[1])
        self.assertEqual(sum(number(row[1]) for row in elements), counts["element"])
        self.assertLess(size - sum(number(row[2]) for row in elements), 150)  # header, comment, end of the document
        self.assertEqual(sum(number(row[1]) for row in tables[2]), counts["attribute"])
        fields = said(name)["fields"]
        attributes = [expected_size(fields, place) for place, field in enumerate(fields)
                      if field["construct"] == "attribute"]
        self.assertEqual(sum(number(row[2]) for row in tables[2]), sum(map(number, attributes)))
        widths = browser.run("return [...document.querySelectorAll('.stack div')].map(each => each.offsetWidth);")
        self.assertAlmostEqual(widths[-1] / sum(widths), number(tables[0][-1][1]) / size, delta=0.02)
        pixel = ("const canvas = document.getElementById('map-canvas'); const style = document.createElement('span');"
                 "return [...canvas.getContext('2d').getImageData(canvas.width * 0.4, canvas.height / 2, 1, 1).data];")
        colour = browser.run("return getComputedStyle(document.querySelector('#legend .kind-6')).color;")
        self.assertEqual(browser.run(pixel)[:3], [int(each) for each in re.findall(r"\d+", colour)])

    def test_repeats(self):
        again = b"a text that is in no table"
        text = documents.HEADER + documents.element(b"a")
        for _ in range(5):
            text += documents.chunk(again) + documents.comment(b"only one " + str(len(text)).encode())
        show(document("again.finf", text + documents.END))
        browser.click("#tab-repeats")
        browser.counted()
        self.assertEqual(browser.tables("#panel-repeats table"), [[
            [f'"{again.decode()}"', "character chunk", "5", str(4 * (len(again) + 2)), "at 0x8"]]])
        show(sample("order.xml"))
        browser.click("#tab-repeats")
        browser.counted()
        self.assertRegex(browser.find("#panel-repeats").text, "No literal")

    def test_departures(self):
        text = documents.HEADER + b"\x3c\x00a" + b"\xe2\x00\x01" + b"\x82\x00\xff\xfe\xfd" + b"\xf1"
        name = document("departs.finf", text[:-1] + documents.END)
        lines = finf("validate", name, status=3)
        show(name)
        browser.click("#tab-departures")
        rows, = browser.tables("#panel-departures table")
        self.assertEqual([f"{name}: {place}: {what}" for place, what, _ in rows], lines.splitlines())
        self.assertGreater(len(rows), 1)
        browser.press("Show")
        place = re.search("0x[0-9a-f]+", rows[0][0])[0]
        self.assertEqual(said(name)["fields"][browser.selected()]["offset"], int(place, 16))


class Search(PageTest):
    """The search finds what is there, and no more."""

    def test_text(self):
        for name, text in [(sample("order.xml"), "NAME"), (sample("track.xml", "--typed"), "531"),
                           ("order.finf", "\u00e9"), ("order.finf", "nowhere to be found")]:
            fields = said(name)["fields"]
            found = [number for number, field in enumerate(fields)
                     if text.lower() in field.get("value", "").lower() and field["construct"] != "end of element"]
            show(name)
            result = browser.search("text", text)
            self.assertEqual(result, f"1 of {len(found)}" if found else "No match")
            visited = []
            for _ in found[:20]:
                visited.append(browser.selected())
                browser.click("#search-next")
            self.assertEqual(visited, found[:20])
            if found:
                browser.click("#search-previous")
                self.assertIn(f"{min(20, len(found))} of", browser.find("#search-result").text)
                browser.run("document.getElementById('search-text').focus();")
                browser.keys(Keys.ENTER, (Keys.SHIFT, Keys.ENTER))
                self.assertIn(f"{min(20, len(found))} of", browser.find("#search-result").text)

    def test_octets_offset_and_construct(self):
        octets = (directory / sample("order.xml")).read_bytes()
        fields = said("order.finf")["fields"]
        show("order.finf")
        wanted = octets[0x20:0x22]
        count = octets.count(wanted)
        self.assertGreater(count, 1)
        self.assertEqual(browser.search("octets", wanted.hex(" ").upper()), f"1 of {count}")
        self.assertEqual(browser.run("return markedBits('match')[0] / 8;"), octets.index(wanted))
        self.assertEqual(browser.search("octets", "0"), "Octets are pairs of hexadecimal digits")
        self.assertEqual(browser.search("offset", "0x1f0"), "0x1f0")
        self.assertEqual(browser.run("return markedBits('cursor')[0] / 8;"), 0x1F0)
        self.assertEqual(browser.search("offset", "2860"), "Not on this page")
        self.assertEqual(browser.search("offset", "somewhere"), "An offset is 27 or 0x1b")
        browser.keys((Keys.CONTROL, Keys.HOME))
        comments = [number for number, field in enumerate(fields) if field["construct"] == "comment"]
        self.assertRegex(browser.search("construct", "comment"), f"of {len(comments)}$")
        self.assertIn(browser.selected(), comments)

    def test_address(self):
        show(sample("order.xml"))
        browser.driver.get(f"file://{directory}/page.html#0x100")
        browser.run("await opened; await frames();")
        self.assertEqual(browser.run("return markedBits('cursor')[0] / 8;"), 0x100)
        browser.keys((Keys.CONTROL, "f"), "nut")
        self.assertEqual(browser.find("#search-text").get_attribute("value"), "nut")


class Safety(PageTest):
    """Text of a document is text."""

    def test_hostile_document(self):
        name = document("\"><img src=x onerror='window.hacked=1'>.finf", documents.hostile())
        show(name)
        page = (directory / "page.html").read_bytes()
        for octets in documents.HOSTILE:
            self.assertNotIn(octets, page)
        self.assertNotIn(b"hacked", page)
        elements = "return document.querySelectorAll('script, img, svg, iframe, a, link, plaintext, title').length;"
        before = browser.run(elements)
        rows = browser.run("return allRows();")
        text = finf("inspect", name, "--full").splitlines()
        shown = [re.search(r' ("(?:[^"\\]|\\.)*")', line) for line in text if re.match("[0-9a-f]{8}| {30}", line)]
        self.assertEqual([row["value"] for row in rows if row["value"] and not row["implied"]],
                         [match[1] for match in shown if match])
        for tab in ["tables", "spending", "repeats", "departures", "construct"]:
            browser.click(f"#tab-{tab}")
            browser.counted()
        for octets in documents.HOSTILE:
            browser.search("text", octets.decode(errors="ignore")[:8])
        for number in range(0, len(rows), 3):
            browser.run("(await opened).select(given[0], {from: null}); await frames();", number)
        self.assertEqual(browser.run(elements), before)
        self.assertIsNone(browser.run("return window.hacked ?? null;"))
        self.assertEqual(browser.driver.title, name + " \u2013 Fast Infoset")
        self.assertEqual(browser.find("#file").text, name)

    def test_policy(self):
        """Even if markup got through, the page would run none of it and fetch nothing."""
        show(sample("order.xml"))
        blocked = browser.run("""
            const blocked = [];
            document.addEventListener("securitypolicyviolation", event => blocked.push(event.effectiveDirective));
            try {
                document.body.innerHTML += "<p>";
                blocked.push("markup was taken");
            } catch (error) {
                blocked.push(error.name);
            }
            const script = document.createElement("script");
            script.append("window.hacked = 1");
            try { document.body.append(script); } catch { }
            const image = document.createElement("img");
            image.src = "http://192.0.2.1/x";
            document.body.append(image);
            image.setAttribute("style", "width: 77px");
            await fetch("data:,x").catch(() => {});
            await new Promise(resolve => setTimeout(resolve, 200));
            return [blocked, window.hacked ?? null, image.style.width];""")
        self.assertIn("TypeError", blocked[0])
        for directive in ["img-src", "connect-src", "style-src-attr"]:
            self.assertIn(directive, blocked[0])
        self.assertEqual(blocked[1:], [None, ""])
        browser.messages()

    def test_without_javascript(self):
        finf("inspect", "--html", sample("order.xml"), "-o", "page.html", "-f")
        browser.command("Emulation.setScriptExecutionDisabled", value=True)
        try:
            browser.driver.get("about:blank")
            browser.driver.get(f"file://{directory}/page.html")
            tree = browser.command("Accessibility.getFullAXTree")["nodes"]
            texts = [node["name"]["value"] for node in tree if node.get("role", {}).get("value") == "StaticText"]
        finally:
            browser.command("Emulation.setScriptExecutionDisabled", value=False)
        self.assertEqual(len(texts), 1)
        self.assertRegex(texts[0], r"^[^.]*JavaScript[^.]*\.$")

    def test_browsers_that_lack_something(self):
        finf("inspect", "--html", sample("order.xml"), "-o", "page.html", "-f")
        for lacking, text in [("Uint8Array.fromBase64", "2\u2009860 octets, 694 constructs, complete"),
                              ("globalThis.DecompressionStream", "This browser is too old")]:
            script = browser.command("Page.addScriptToEvaluateOnNewDocument", source=f"delete {lacking};")["identifier"]
            browser.driver.get("about:blank")
            browser.driver.get(f"file://{directory}/page.html")
            browser.run("await until(() => document.body.innerText.includes(given[0]));", text)
            browser.command("Page.removeScriptToEvaluateOnNewDocument", identifier=script)
        browser.messages()

    def test_damaged_page(self):
        page = (directory / "page.html").read_bytes()
        at = page.index(b'data-name="fields">') + 30
        (directory / "damaged.html").write_bytes(page[:at] + b"AAAA" + page[at + 4:])
        browser.driver.get(f"file://{directory}/damaged.html")
        text = browser.run("return until(() => /damaged/.test(document.body.innerText) && document.body.innerText);")
        self.assertIn("The page is damaged", text)
        browser.messages()


class Access(PageTest):
    """Roles, keys, focus and contrast."""

    def test_roles_and_names(self):
        show(sample("track.xml", "--typed"))
        nodes = browser.command("Accessibility.getFullAXTree")["nodes"]
        value = lambda node, key: node.get(key, {}).get("value", "")
        found = {(value(node, "role"), value(node, "name")) for node in nodes if not node["ignored"]}
        for role, name in [("tree", "Constructs"), ("grid", "Octets"), ("slider", "Place in the document"),
                           ("searchbox", "Search"), ("combobox", "What to search for"), ("button", "Next match"),
                           ("button", "Previous match"), ("combobox", "Colours"), ("tablist", "More about it"),
                           ("tab", "Tables"), ("tabpanel", "Construct"), ("separator", "Height of the constructs"),
                           ("heading", "track.finf"), ("list", "What octets are spent on"), ("status", "")]:
            self.assertIn((role, name), found)
        properties = lambda node: {each["name"]: each["value"].get("value") for each in node.get("properties", [])}
        items = [properties(node) for node in nodes if value(node, "role") == "treeitem" and not node["ignored"]]
        self.assertGreater(len(items), 10)
        self.assertTrue(all("level" in item for item in items))
        self.assertEqual(sum(bool(item.get("selected")) for item in items), 1)
        self.assertTrue(any(item.get("expanded") for item in items))
        for node in nodes:
            if not node["ignored"] and properties(node).get("focusable") and value(node, "role") != "RootWebArea":
                self.assertTrue(value(node, "name"), node)

    def test_focus_order(self):
        show(sample("order.xml"))
        order = []
        for _ in range(13):
            browser.keys(Keys.TAB)
            order.append(browser.run("return document.activeElement.id;"))
            self.assertGreaterEqual(browser.run("return focusContrast();"), 3, order[-1])
        self.assertEqual(order, ["search-kind", "search-text", "search-previous", "search-next", "theme", "map-canvas",
                                      "octets", "collapse", "expand", "constructs", "splitter", "tab-construct",
                                      "panel-construct"])

    def test_keys_of_the_tree(self):
        fields = said(sample("order.xml"))["fields"]
        show("order.finf")
        browser.run("document.getElementById('constructs').focus();")
        root = next(number for number, field in enumerate(fields) if field["construct"] == "element")
        child = next(number for number in range(root + 1, len(fields))
                     if fields[number]["construct"] == "element" and fields[number]["depth"] == 1)
        end = next(number for number in range(child, len(fields))
                   if fields[number]["construct"] == "end of element" and fields[number]["depth"] == 1)
        browser.keys(Keys.END)
        self.assertEqual(browser.selected(), len(fields) - 1)
        browser.search("offset", hex(fields[child]["offset"]))
        browser.run("document.getElementById('constructs').focus();")
        self.assertEqual(browser.selected(), child)
        for key, target, expanded in [(Keys.ARROW_LEFT, child, "false"), (Keys.ARROW_DOWN, end + 1, None),
                                      (Keys.ARROW_UP, child, "false"), (Keys.ARROW_RIGHT, child, "true"),
                                      (Keys.ARROW_RIGHT, child + 1, None), (Keys.ARROW_LEFT, child, "true"),
                                      (Keys.ARROW_LEFT, child, "false"), (Keys.ARROW_LEFT, root, "true"),
                                      (Keys.HOME, 0, None)]:
            browser.keys(key)
            self.assertEqual(browser.selected(), target)
            row = browser.find(f"#construct-{target}")
            if expanded:
                self.assertEqual(row.get_attribute("aria-expanded"), expanded)
            self.assertEqual(browser.find("#constructs").get_attribute("aria-activedescendant"), f"construct-{target}")
        browser.keys(Keys.ENTER)
        self.assertEqual(browser.run("return document.activeElement.id;"), "octets")
        browser.keys(Keys.ENTER)
        self.assertEqual(browser.run("return document.activeElement.id;"), "constructs")
        # All closed, all open; what is selected comes into sight again.
        browser.click("#collapse")
        self.assertLess(len(browser.run("return allRows();")), 60)
        browser.search("offset", hex(fields[end - 3]["offset"]))
        self.assertGreaterEqual(browser.selected(), child)
        browser.click("#expand")
        self.assertEqual(len(browser.run("return allRows();")), len(fields))

    def test_keys_elsewhere(self):
        show(sample("order.xml"))
        cursor = lambda: browser.run("return (markedBits('cursor') ?? [-8])[0] / 8;")
        browser.run("document.getElementById('octets').focus();")
        for key, target in [(Keys.ARROW_DOWN, 16), (Keys.END, 31), (Keys.ARROW_LEFT, 30), (Keys.HOME, 16),
                            (Keys.ARROW_UP, 0), ((Keys.CONTROL, Keys.END), 2859), ((Keys.CONTROL, Keys.HOME), 0)]:
            browser.keys(key)
            self.assertEqual(cursor(), target)
            self.assertEqual(browser.find("#octets").get_attribute("aria-activedescendant"), f"octet-{target}")
        browser.keys(Keys.PAGE_DOWN)
        self.assertGreater(cursor(), 200)
        browser.run("document.getElementById('map-canvas').focus();")
        browser.keys(Keys.END)
        self.assertEqual(cursor(), 2859)
        self.assertEqual(browser.find("#map-canvas").get_attribute("aria-valuetext"), "Offset 0xb2b")
        browser.run("document.getElementById('tab-construct').focus();")
        browser.keys(Keys.ARROW_RIGHT, Keys.ARROW_RIGHT)
        self.assertEqual(browser.find("[role=tab][aria-selected=true]").text, "Spent on")
        height = "return document.getElementById('constructs').clientHeight;"
        before = browser.run(height)
        browser.run("document.getElementById('splitter').focus();")
        browser.keys(Keys.ARROW_UP, Keys.ARROW_UP)
        self.assertLess(browser.run(height), before - 40)

    def test_contrast(self):
        octets = (directory / sample("track.xml", "--typed")).read_bytes()
        document("bad.finf", octets[:0x6FF] + b"\xe3" + octets[0x700:])
        for scheme in ["light", "dark"]:
            browser.scheme(scheme)
            self._contrast_in(f"{scheme}, by the system")
        browser.scheme("light")
        show("track.finf")
        for theme in ["dark", "light"]:
            browser.run("const theme = document.getElementById('theme'); theme.value = given[0];"
                        "theme.dispatchEvent(new Event('change')); await frames();", theme)
            background = browser.run("return luminance(backgroundOf(document.body));")
            self.assertEqual(background < 0.2, theme == "dark")
            self._check_contrast(theme)

    def _contrast_in(self, state):
        show("bad.finf", status=1)
        self._check_contrast(f"{state}, fault")
        show("track.finf")
        browser.search("construct", "double")
        browser.run("const number = document.querySelector('.numbers button'); number.focus(); number.click();"
                    "document.querySelector('#constructs .row').dispatchEvent("
                    "new MouseEvent('mousemove', {bubbles: true}));"
                    "document.getElementById('panel-construct').scrollTop = 1e4; await frames();")
        self._check_contrast(f"{state}, array")
        browser.search("octets", "2d 39 2e")
        browser.search("construct", "attribute")
        for tab in ["tables", "spending", "repeats", "departures"]:
            browser.click(f"#tab-{tab}")
            browser.counted()
            self._check_contrast(f"{state}, {tab}")

    def _check_contrast(self, state):
        texts, signs = browser.run("return [faintTexts(), faintSigns()];")
        self.assertEqual(texts["faint"] + signs["faint"], [], state)
        self.assertGreater(texts["count"], 300)
        self.assertGreater(signs["count"], 10)

    def test_little_room(self):
        show(sample("order.xml"))
        for width, height, across in [(1440, 900, 16), (1000, 700, 8), (400, 800, 8)]:
            browser.size(width, height)
            browser.run("await frames();")
            cells = browser.run("return document.querySelectorAll('#octets .row')[1]"
                                ".querySelectorAll('[role=gridcell]:not([hidden])').length;")
            self.assertEqual(cells, across)
            self.assertLessEqual(browser.run("return document.documentElement.scrollWidth;"), width)
            self.assertGreater(browser.run("return document.querySelector('#constructs').clientWidth;"), width * 0.35)


class Large(PageTest):
    """A document of 20 MB stays usable."""

    def test_large_document(self):
        document("large.xml", documents.large(20_000_000).encode())
        finf("encode", "large.xml", "-o", "large.finf")
        size = (directory / "large.finf").stat().st_size
        self.assertGreater(size, 19_000_000)
        start = time.monotonic()
        process = subprocess.Popen([FINF, "inspect", "--html", "large.finf", "-o", "large.html"], cwd=directory)
        memory = 0
        while process.poll() is None:
            found = re.search(r"VmHWM:\s+(\d+)", pathlib.Path(f"/proc/{process.pid}/status").read_text())
            memory = max(memory, int(found[1]) if found else 0)
            time.sleep(0.01)
        self.assertEqual(process.returncode, 0)
        measured = {"octets": size, "page": (directory / "large.html").stat().st_size,
                    "tool: s": time.monotonic() - start, "tool: MiB": memory / 1024}
        measured["load: s"] = browser.open(directory / "large.html")
        measured["constructs"] = browser.run("return (await opened).fields.count;")
        nodes = "return document.querySelectorAll('*').length;"
        measured["elements of the page"] = browser.run(nodes)
        timed = lambda script: browser.run(f"const start = performance.now(); {script}; await frames();"
                                           "return performance.now() - start;")
        scrolls = [timed(f"const pane = document.getElementById('{pane}'); pane.scrollTop = {part} * pane.scrollHeight")
                   for pane in ["octets", "constructs"] for part in [0.2, 0.9, 0.5001, 0]]
        measured["scroll, worst: ms"] = max(scrolls)
        jumps = [timed(f"(await opened).select((await opened).fields.fieldAt({octet * 8}), {{octet: {octet}}})")
                 for octet in [size - 1, size // 3, size // 2, 100]]
        measured["jump, worst: ms"] = max(jumps)
        self.assertEqual(browser.search("offset", str(size - 1)), hex(size - 1))
        self.assertIsNotNone(browser.run("return document.getElementById(given[0])?.id ?? null;", f"octet-{size - 1}"))
        browser.search("offset", "0")
        for kind, text in [("text", "gboolean"), ("text", "not in any document"), ("octets", "00 6e 00 70"),
                           ("construct", "qualified")]:
            start = time.monotonic()
            result = browser.search(kind, text)
            browser.run("const result = document.getElementById('search-result');"
                        "await until(() => /\\d of \\d|No match/.test(result.value));")
            measured[f"search, {kind} {text} ({result}): s"] = time.monotonic() - start
        measured["collapse: ms"] = timed("document.getElementById('collapse').click()")
        measured["expand: ms"] = timed("document.getElementById('expand').click()")
        for tab in ["spending", "repeats"]:
            start = time.monotonic()
            browser.click(f"#tab-{tab}")
            browser.counted()
            measured[f"{tab}: s"] = time.monotonic() - start
        # By the wheel and the keys every row is reached, although the scroll bar is too coarse for that.
        browser.search("offset", str(size // 2))
        browser.run("document.getElementById('constructs').focus();")
        first = browser.selected()
        browser.keys(Keys.ARROW_DOWN, Keys.ARROW_DOWN, Keys.ARROW_DOWN)
        self.assertEqual(browser.selected(), first + 3)
        top = "return document.querySelector('#constructs .row').row;"
        before = browser.run(top)
        browser.run("document.getElementById('constructs').dispatchEvent(new WheelEvent('wheel',"
                    "{deltaY: 22 * 7, cancelable: true})); await frames();")
        self.assertEqual(browser.run(top), before + 7)
        measured["elements of the page, in the end"] = browser.run(nodes)
        measured["heap: MiB"] = browser.run("return performance.memory.usedJSHeapSize / 1048576;")
        for name, value in measured.items():
            print(f"  {name:50} {value:14.1f}" if isinstance(value, float) else f"  {name:50} {value:12}")
        self.assertLess(measured["tool: MiB"], 64)
        self.assertLess(measured["page"], 1.4 * size)
        self.assertLess(measured["load: s"], 30)
        self.assertLess(measured["elements of the page, in the end"], 6000)
        self.assertLess(measured["scroll, worst: ms"], 1000)
        self.assertLess(measured["jump, worst: ms"], 1000)
        for name, value in measured.items():
            if name.startswith("search"):
                self.assertLess(value, 20, name)


@unittest.skipIf("--pictures" not in sys.argv, "only when pictures are asked for")
class Pictures(PageTest):
    """The pictures of docs/."""

    def test_pictures(self):
        octets = (directory / sample("track.xml", "--typed")).read_bytes()
        document("broken.finf", octets[:0x6FF] + b"\xe3" + octets[0x700:])
        browser.size(1240, 700)
        show(sample("order.xml"))
        browser.search("text", "outside")
        self._take("inspect-page")
        browser.scheme("dark")
        show("track.finf")
        browser.search("construct", "double")
        browser.run("document.querySelector('.numbers').scrollIntoView(); await frames();")
        browser.run("document.querySelectorAll('.numbers button')[6].click(); await frames();")
        self._take("inspect-page-array")
        browser.scheme("light")
        show("broken.finf", status=1)
        self._take("inspect-page-fault")

    def _take(self, name):
        browser.run("document.activeElement.blur(); await frames();")
        PICTURES.mkdir(parents=True, exist_ok=True)
        self.assertTrue(browser.driver.save_screenshot(str(PICTURES / f"{name}.png")))


if __name__ == "__main__":
    FINF = str(pathlib.Path(sys.argv.pop(1)).resolve())
    if "--pictures" in sys.argv:
        place = sys.argv.index("--pictures")
        PICTURES = pathlib.Path(sys.argv[place + 1]).resolve()
        argv = [*sys.argv[:place], *sys.argv[place + 2:]]
    else:
        argv = sys.argv
    unittest.main(argv=argv, verbosity=2)
