"""A page that is open, what it shows, and the calls that it should show."""

import json
import os
import subprocess

import capture

HIDDEN = ([*range(0x00, 0x09), *range(0x0b, 0x20), *range(0x7f, 0xa0), 0x61c, *range(0x200b, 0x2010),
           *range(0x2028, 0x202f), *range(0x2060, 0x206a), 0xfeff])
SHOWN = {code: f"\\u{code:04x}" for code in HIDDEN}


class Failure(Exception):
    """What a case found wrong."""


def expect(what, found, expected):
    if found != expected:
        raise Failure(f"{what}: {str(found)[:500]!r}, not {str(expected)[:500]!r}")


def shown_lines(text):
    """The lines of a text as a page shows them."""
    lines = text.split("\n")
    if lines[-1] == "":
        lines.pop()
    return [(line[:-1] if line.endswith("\r") else line).translate(SHOWN) for line in lines]


class Programs:
    """What writes pages, and the JSON of the same calls."""

    def __init__(self, tool, maker):
        self.tool = tool
        self.maker = maker

    def write(self, kind, folder):
        """The names of page, JSON and capture. Calls of a capture are the tool's, all others are made by hand."""
        page, calls, captured = (os.path.join(folder, kind + end) for end in (".html", ".json", ".pcap"))
        if kind != "capture":
            subprocess.run([self.maker, kind, page, calls], check=True, timeout=120)
            return page, calls, None
        with open(captured, "wb") as file:
            file.write(capture.calls())
        with open(calls, "wb") as file:
            subprocess.run([self.tool, "calls", "--html", page, "--json", "--bodies", captured],
                           check=True, timeout=60, stdout=file)
        return page, calls, captured

    def printed(self, captured, number):
        """What the tool prints of a call."""
        run = subprocess.run([self.tool, "calls", "--call", str(number), "--bodies", captured],
                             check=True, timeout=60, capture_output=True)
        return run.stdout.decode()


class Page:
    """A page that is open, with the calls that it should show."""

    def __init__(self, browser, programs, kind, folder):
        self.browser = browser
        self.programs = programs
        page, calls, self.captured = programs.write(kind, folder)
        with open(calls, encoding="utf-8") as file:
            self.document = json.load(file)
        self.calls = {call["number"]: call for call in self.document["calls"]}
        self.url = "file://" + page
        self.seconds = browser.open(self.url)

    def texts(self, selector):
        return self.browser.run(f"[...document.querySelectorAll({selector!r})].map((node) => node.textContent)")

    def shown_message(self):
        """The lines of the message that is shown."""
        return self.texts("#text .text-line .line-rest")

    def shown_diff(self):
        """What is shown of a hop: sections with their lines."""
        return self.browser.run("""[...document.querySelectorAll('#text .changed-section')].map((part) => ({
            section: part.dataset.section,
            lines: [...part.querySelectorAll('.diff-line')].map((line) => line.textContent + '\\n').join('')}))""")

    def open_call(self, number):
        self.browser.run(f"document.getElementById('rows').scrollTop = {30 * (number - 1)}")
        self.browser.click(f"#row-of-{number}")


def listed_numbers(page):
    """The calls that the list has, found by going through all of it."""
    return page.browser.run("""(async () => {
        const rows = document.getElementById('rows');
        const found = new Set();
        for (let top = 0; ; top += rows.clientHeight) {
            rows.scrollTop = top;
            await new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)));
            for (const row of document.querySelectorAll('.call-row')) found.add(Number(row.id.slice('row-of-'.length)));
            if (top + rows.clientHeight >= rows.scrollHeight) break;
        }
        rows.scrollTop = 0;
        return [...found].sort((a, b) => a - b);
    })()""")
