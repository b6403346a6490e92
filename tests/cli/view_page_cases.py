"""The page of uxtree view, driven in Chromium by clicks and keys. Cannot be tried without it."""
import contextlib
import json
import os
import pathlib
import re
import time

from harness import Skip, case

EXAMPLES = pathlib.Path(__file__).resolve().parents[2] / "examples"

CASES = [
    case("SaysWhereAFileIsBroken", ["view", "t.xml", "-o", "p.html"], files={"t.xml": "<r><a></r>"},
         code=3, err=["t.xml:1:9: "], after={"p.html": None}),
    case("SaysWhyASpectrumFileHasNoChart", ["view", "--no-open", "s.n42", "-o", "s.html"],
         files={"s.n42": "<RadInstrumentData/>"}, err=["note: s.n42 has no spectra"]),
]


def test_NeedsNothingFromElsewhere(tool):
    assert tool.run(["view", str(EXAMPLES / "spectrum.n42"), "-o", "p.html"]).code == 0
    page = tool.path("p.html").read_text()
    policy = re.search('Content-Security-Policy" content="([^"]*)"', page).group(1)
    assert policy.startswith("default-src 'none'; script-src 'sha256-"), policy
    assert "http" not in policy and not re.search(r"(src|href)=[\"']?http", page)
    assert not re.search(r'<[^>]* on[a-z]+="', page), "a handler in an attribute would not run"


def test_PrintsTheNameOfATemporaryPage(tool):
    tool.write("t.xml", "<r/>")
    told = tool.run(["view", "t.xml", "--no-open"], env={"TMPDIR": str(tool.folder)})
    assert told.code == 0 and told.err == "", told.err
    page = pathlib.Path(told.out.rstrip("\n"))
    assert page.parent.parent == tool.folder and page.name == "t.xml.html", told.out
    assert page.parent.stat().st_mode & 0o077 == 0


@contextlib.contextmanager
def browser(tool, *args):
    """Chromium with a page open; yields the driver. What is said on the console is a failure."""
    try:
        from selenium import webdriver
        from selenium.webdriver.chrome.service import Service
    except ImportError as error:
        raise Skip(f"no Selenium ({error})")
    options = webdriver.ChromeOptions()
    for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--window-size=1100,700",
                     "--disable-dev-shm-usage", *args):
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    program = next((p for p in ("/usr/bin/chromium", "/usr/bin/chromium-browser")
                    if os.access(p, os.X_OK)), None)
    driver = "/usr/bin/chromedriver"
    if not program or not os.access(driver, os.X_OK):
        raise Skip("no Chromium, so the page is not opened")
    options.binary_location = program
    page = webdriver.Chrome(service=Service(driver), options=options)
    try:
        yield page
        said = [entry for entry in page.get_log("browser") if entry["level"] != "INFO"]
        assert not said, said
    finally:
        page.quit()


class Page:
    """What a person does with the page, and what there is to see."""

    def __init__(self, driver):
        self.driver = driver

    def open(self, tool, *args, name="page.html"):
        made = tool.run(["view", "--no-open", *args, "-o", name], timeout=300)
        assert made.code == 0, made.err
        self.driver.get(tool.path(name).as_uri())
        self.driver.execute_script("return document.documentElement.dataset.ready")
        return self

    def by(self, selector):
        return self.driver.find_element("css selector", selector)

    def tabs(self):
        return [tab.text for tab in self.driver.find_elements("css selector", "#tabs button")]

    def tab(self, text):
        self.driver.find_element("xpath", f"//*[@id='tabs']/button[.='{text}']").click()

    def rows(self):
        """The rows in the document, with "+" or "-" where a branch is closed or open."""
        return self.driver.execute_script("""
            return [...document.querySelectorAll("#rows .row")].map(row =>
              ({true: "- ", false: "+ "}[row.ariaExpanded] || "  ") +
              "  ".repeat(row.ariaLevel - 1) + row.textContent.slice(
                row.querySelector(".fold").textContent.length))""")

    def click(self, text, part="."):
        """Clicks on the first row with this text, or on a part of it; rows are drawn anew at times."""
        from selenium.common.exceptions import StaleElementReferenceException
        for _ in range(20):
            with contextlib.suppress(StaleElementReferenceException):
                return self.driver.find_element(
                    "xpath", f"//div[@id='rows']/div[contains(., '{text}')]/{part}").click()
        raise AssertionError(f"the row '{text}' does not stand still")

    def fold(self, text):
        self.click(text, "span[@class='fold']")

    def keys(self, *keys):
        self.driver.switch_to.active_element.send_keys(*keys)

    def search(self, words, where="all"):
        from selenium.webdriver.support.ui import Select
        Select(self.by("#where")).select_by_value(where)
        box = self.by("#words")
        box.send_keys("\ue009a\ue000", words, "\ue007")  # in place of what stands there
        return self.by("#hits").text

    def details(self):
        return self.by("#details").text

    def elements(self):
        return self.driver.execute_script("return document.getElementsByTagName('*').length")


def test_ShowsTheOutlineAndTheTreeOfAnyFile(tool):
    with browser(tool) as driver:
        page = Page(driver).open(tool, str(EXAMPLES / "stations.xml"))
        assert page.tabs() == ["Outline", "Tree"], page.tabs()
        assert page.rows() == [
            "- stations  @xmlns @updated", "-   station  ×2  @id @height", "      name  ×2",
            "      sensor  ×4  @kind @since @retired", "-     note", "        b"], page.rows()
        page.click("sensor")
        assert "/stations/station/sensor" in page.details() and "@retired 1" in page.details()
        page.by("#go").click()
        assert page.by("#path").text == "/stations/station[1]/sensor[1]", page.details()

        page.by("#list").click()
        page.click("Black ridge")
        assert page.by("#path").text == "/stations/station[2]/name", page.details()
        assert "Black ridge" in page.details()
        # The order of text and elements is the file's.
        assert page.rows()[-6:] == [
            '-     note  3 below', '        Snow covers the', '        b  rain gauge',
            '        from December on.', '      sensor kind="rain" since="2018-06-20"',
            '      sensor kind="snow" since="2018-06-20"'], page.rows()
        page.fold("note")
        assert "+     note  3 below" in page.rows(), page.rows()

        assert page.search("RAIN") == "1 of 3", page.by("#hits").text
        page.by("#after").click()
        page.by("#after").click()
        assert page.by("#hits").text == "3 of 3"
        assert page.by(".row.chosen").text.endswith('sensor kind="rain" since="2018-06-20"')
        assert page.search("rain", "text") == "1 of 1"
        assert page.search("rain", "tag") == "0 hits"
        assert page.search("kind", "attribute") == "1 of 4"


def test_KeysMoveOpenAndClose(tool):
    down, left, right, home, end = "\ue015", "\ue012", "\ue014", "\ue011", "\ue010"
    with browser(tool) as driver:
        page = Page(driver).open(tool, str(EXAMPLES / "stations.xml"))
        page.tab("Tree")
        page.by("#list").send_keys(home)
        page.keys(down, left)
        assert page.rows()[1].startswith("+   station"), page.rows()
        page.keys(right, right)
        assert page.by("#path").text == "/stations/station[1]/name"
        page.keys(left, left, left, left)
        assert len(page.rows()) == 1, page.rows()
        page.keys(right, end)
        assert page.by("#path").text == "/stations/station[2]/sensor[2]"
        page.keys("/")
        assert driver.switch_to.active_element.get_attribute("id") == "words"


def test_ShowsAnOptionTreeAsItsDialog(tool):
    with browser(tool) as driver:
        page = Page(driver).open(tool, str(EXAMPLES / "dialog.xml"))
        assert page.tabs() == ["Dialog", "Outline", "Tree"], page.tabs()
        rows = page.rows()
        assert rows[:6] == ["- Peak Analysis", "-    Input", "-      Range 1  copy 1",
                            "        X[Book1]Sheet1!A", "        Y[Book1]Sheet1!B  automatic",
                            "-      Range 2  copy 2"], rows
        boxes = driver.execute_script(
            "return [...document.querySelectorAll('#rows input')].slice(0, 3).map(b => b.checked)")
        assert boxes == [True, True, False], boxes
        assert not any("Weight" in row for row in rows)
        page.by("#hidden").click()
        assert "        Weight  hidden" in page.rows(), page.rows()
        page.click("Anchor Points")
        assert page.by("#path").text == "/PeakAnalysis/Baseline/Points"
        assert "DataID 22" in page.details(), page.details()


def test_MarksWhatIsDifferentInTwoFiles(tool):
    old = "<r><a id='1' k='x'>one</a><b/><c>gone</c><d>same</d></r>"
    new = "<r><a id='1' k='y'>two</a><b><new/></b><d>same</d></r>"
    tool.write("old.xml", old)
    tool.write("new.xml", new)
    with browser(tool) as driver:
        page = Page(driver).open(tool, "old.xml", "new.xml")
        assert page.tabs() == ["Changes", "Outline", "Tree"], page.tabs()
        assert page.by("#hits").text == "3 changes"
        assert page.rows() == ["- r  4 below", '    a id="1" k="y"  two', "-   b", "      new",
                               "    c  gone", "    d  same"], page.rows()
        marks = driver.execute_script(
            "return [...document.querySelectorAll('#rows .row')].map(row => row.className)")
        assert marks == ["row", "row change", "row", "row plus", "row minus", "row"], marks
        page.by("#change").click()
        assert "text one two" in page.details() and "@k x y" in page.details(), page.details()
        page.by("#only").click()
        assert not any("same" in row for row in page.rows()), page.rows()


def test_DrawsTheSpectra(tool):
    with browser(tool) as driver:
        page = Page(driver).open(tool, str(EXAMPLES / "spectrum.n42"))
        assert page.tabs() == ["Chart", "Outline", "Tree"], page.tabs()
        driver.switch_to.frame(page.by("#chart"))
        for _ in range(50):
            points = driver.execute_script(
                "return Number((document.querySelector('[data-points]') || "
                "document.documentElement).dataset.points || 0)")
            if points:
                break
            time.sleep(0.1)
        assert points > 4 * 500, points
        assert len(driver.find_elements("css selector", "input[type=checkbox]")) == 4
        page.by("#linear").click()
        assert page.by("#linear").get_attribute("aria-pressed") == "true"
        driver.switch_to.default_content()
        page.tab("Tree")
        assert page.rows()[0].startswith("- RadInstrumentData"), page.rows()[0]


def test_TextsOfAFileStayTexts(tool):
    evil = "</script><script>document.title='x'</script><!--<script>"
    escaped = evil.replace("&", "&amp;").replace("<", "&lt;")
    tool.write("t.xml", f'<r a="{escaped}">{escaped}</r>')
    with browser(tool) as driver:
        page = Page(driver).open(tool, "t.xml")
        page.tab("Tree")
        page.click("r")
        assert evil in page.details(), page.details()
        assert driver.title == "t.xml"


def test_ALargeFileIsOpenedAndUnfoldedAtOnce(tool):
    """The bounds are far above what it takes; the time of a page is that of a loaded machine."""
    leaves, branch = 200_000, 50
    xml = ["<r>"]
    for i in range(0, leaves, branch):
        xml.append(f"<b id='{i}'>")
        xml += [f"<v k='{k}' Label='leaf {k}'>{k * 0.5}</v>" for k in range(i, i + branch)]
        xml.append("</b>")
    xml.append("</r>")
    tool.write("big.xml", "".join(xml))
    with browser(tool) as driver:
        page = Page(driver).open(tool, "big.xml")
        assert tool.path("page.html").stat().st_size < 100 * (leaves + leaves // branch)
        page.tab("Tree")
        took = driver.execute_script("""
            const begin = performance.now();
            document.querySelector("#list").focus();
            const row = document.querySelector("#rows .row:nth-child(3) .fold");
            row.click();
            return performance.now() - begin""")
        assert took < 1000, took
        assert page.elements() < 5000, page.elements()
        page.by("#list").send_keys("\ue011")
        page.keys("\ue008\ue014\ue000")  # Shift and the right arrow
        page.keys("\ue008\ue014\ue000")
        page.by("#list").send_keys("\ue010")  # End: far behind what a browser scrolls in one piece
        assert page.by("#path").text == f"/r/b[{leaves // branch}]/v[{branch}]", page.details()
        assert "Label=\"leaf 199999\"" in page.rows()[-1] or \
            "Label=\"leaf 199999\"" in page.rows()[-2], page.rows()[-3:]
        assert page.elements() < 5000, page.elements()


def test_FitsATelephone(tool):
    with browser(tool) as driver:
        driver.set_window_size(500, 800)
        page = Page(driver).open(tool, str(EXAMPLES / "stations.xml"))
        width = driver.execute_script("return [document.documentElement.scrollWidth, innerWidth]")
        assert width[0] <= width[1], width
        page.tab("Tree")
        page.click("Black ridge")
        assert page.by("#path").text == "/stations/station[2]/name"


def test_DataOfThePageIsJson(tool):
    page = tool.run(["view", str(EXAMPLES / "smooth.xml"), "-o", "-"])
    assert page.code == 0, page.err
    data = json.loads(re.search(r'id="data">(.*?)</script>', page.out, re.DOTALL).group(1))
    assert data[0]["name"] == "smooth.xml" and data[0]["names"][data[0]["tags"][0]] == "Smooth"
    assert len(data[0]["tags"]) == len(data[0]["sizes"]) == len(data[0]["attrs"]) == \
        len(data[0]["texts"]) == 11, data


def test_WhatIsDifferentIsInTheData(tool):
    def element(i):
        return f"<a id='{i}' k='v'>{i}</a>"

    tool.write("old.xml", "<r>" + "".join(map(element, (1, 2, 3, 4, 5, 6))) + "</r>")
    tool.write("new.xml", "<r>" + "".join(map(element, (1, 3, 2, 4))) + "<a k='w' id='6'>6</a>" +
               "<a id='7'>7<b/></a></r>")
    page = tool.run(["view", "old.xml", "new.xml", "-o", "-"])
    assert page.code == 0, page.err
    data = json.loads(re.search(r'id="changesData">(.*?)</script>', page.out, re.DOTALL).group(1))
    # Both from 0 on; 3 and 2 have changed places; 5 went, 6 has changed, and 7 came with three nodes.
    assert data == {"runs": [[0, 0, 2], [3, 2, 1], [2, 3, 1], [4, 4, 1], [5, -1, 1], [6, 5, 1],
                             [-1, 6, 3]], "changed": [6]}, data
