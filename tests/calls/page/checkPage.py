#!/usr/bin/env python3
"""Opens pages of calls in a headless Chromium: what they show, what they do, and that nothing of a capture runs in them."""

import os
import signal
import subprocess
import sys
import tempfile
import time

FOLDER = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(FOLDER, "..", "..", "browser"))

from chromium import BrowserDoesNotStart, BrowserError, find_program  # noqa: E402  (the folder is known only now)
import capture  # noqa: E402
from pageBrowser import PageBrowser  # noqa: E402
from shownPage import Failure, Page, Programs, expect, listed_numbers, shown_lines  # noqa: E402

SKIPPED = 77


def check_list(page):
    expect("calls", listed_numbers(page), sorted(page.calls))
    call = page.calls[1]
    page.browser.frame()
    cells = page.texts("#row-of-1 .cell")
    expect("from and to", cells[3:5], [call["from"].removeprefix("sip:"), call["to"].removeprefix("sip:")])
    expect("state, result, codecs", cells[5:8], [call["state"], str(call["result"]), ", ".join(call["codecs"])])
    expect("messages", cells[9], str(len(call["messages"])))
    errors = sum(problem["severity"] == "error" for problem in call["problems"])
    rules = ", ".join(problem["rule"] for problem in call["problems"])
    expect("problems", cells[10], f"{errors}{len(call['problems']) - errors}{rules}")


def check_filters(page):
    browser = page.browser

    def numbers():
        return listed_numbers(page)

    def choose(name, value):
        browser.run(f"document.getElementById({name!r}).value = {value!r};"
                    f"document.getElementById({name!r}).dispatchEvent(new Event('change'))")

    for state in ("failed", "up", "cancelled"):
        choose("state", state)
        expect(state, numbers(), [n for n, call in page.calls.items() if call["state"] == state])
    choose("state", "")
    choose("problem", "=one-way")
    expect("one-way", numbers(), [n for n, call in page.calls.items()
                                  if any(problem["rule"] == "one-way" for problem in call["problems"])])
    choose("problem", "none")
    expect("without problems", numbers(), [n for n, call in page.calls.items() if not call["problems"]])
    choose("problem", "")
    browser.press("/", *"erin @example.org")
    browser.wait_for("document.getElementById('count').textContent.endsWith('of 30 calls')")
    expect("search", numbers(), [n for n, call in page.calls.items()
                                 if "erin" in call["from"] + call["to"]])
    browser.run("document.getElementById('search').value = ''")
    browser.press(*"m=audio 22000 rtp/avp")
    expect("search that only messages fit", numbers(), [])
    browser.click("#deep")
    browser.wait_for("!document.getElementById('count').textContent.startsWith('searching')")
    expect("search in messages", numbers(), [n for n, call in page.calls.items() if len(call["callIds"]) == 2])


def check_sorting(page):
    page.browser.click("#columns .problems button")
    first = page.texts("#rowWindow .cell.problems")[0]
    expect("most problems first", first.startswith("21"), True)
    expect("sorted", page.browser.run("document.querySelector('#columns .problems').getAttribute('aria-sort')"), "descending")


def check_ladder(page):
    call = page.calls[1]
    page.open_call(1)
    expect("messages", len(page.texts("#ladderSpace .message")), len(call["messages"]))
    expect("participants", page.texts("#ladderHead .participant .address"), ["192.0.2.10", "198.51.100.5"])
    expect("names", page.texts("#ladderHead .participant .name"), ["phone", "border", "203.0.113.20"])
    label = page.texts("#message-0 .label")[0].split()
    expect("first message", label, ["A", "INVITE", "offer"])
    expect("short form", page.texts("#message-0 .short")[0].endswith(call["messages"][0]["short"]), True)
    expect("answer", page.texts("#message-6 .label")[0].split(), ["B", "200", "OK", "INVITE", "answer"])
    expect("retransmission", page.texts("#message-3 .label")[0].split()[-1], "again")
    expect("hops", len(page.texts(".hop")), len(call["hops"]))
    expect("hops that changed something", len(page.texts(".hop.changed")), 1)
    expect("marks", len(page.texts(".message .mark")),
           len({problem["message"] for problem in call["problems"]}))
    page.browser.click("#options input")
    expect("bodies only", len(page.texts("#ladderSpace .message")),
           sum(message["body"] is not None for message in call["messages"]))


def check_message(page):
    page.open_call(1)
    for index, message in enumerate(page.calls[1]["messages"]):
        page.browser.click(f"#message-{index} .time")
        expect("text", page.shown_message(), shown_lines(message["text"]))


def check_problems(page):
    page.open_call(1)
    problems = page.calls[1]["problems"]
    expect("rules", page.texts(".problem .rule"), [problem["rule"] for problem in problems])
    expect("texts", page.texts(".problem .what"), [problem["text"] for problem in problems])
    page.browser.click(".problem-list li:nth-child(2) .problem")
    problem = problems[1]
    text = next(each["text"] for each in page.calls[1]["messages"] if each["number"] == problem["message"])
    expect("message", page.shown_message(), shown_lines(text))
    expect("line", page.texts("#text .meant .line-rest"), [shown_lines(text)[problem["line"] - 1]])
    expect("note", page.texts("#text .meant + .note"), [f"{problem['rule']} {problem['text']}"])


def check_hops(page):
    page.open_call(1)
    for index, hop in enumerate(page.calls[1]["hops"]):
        page.browser.click(f"[data-hop='{index}'] .hop-hit")
        expect("hop", page.shown_diff(), hop["diff"])
        expect("title", page.texts("#detail h2"), ["What border changed"])


def check_comparison(page):
    page.open_call(1)
    messages = page.calls[1]["messages"]
    page.browser.click("#message-0 .time")
    page.browser.click("#message-2 .time", "ctrl")
    expect("title", page.texts("#detail h2"), ["Messages 1 and 3"])

    def side(marks):
        return page.browser.run(f"""[...document.querySelectorAll('#text .diff-line')].map((line) => line.textContent)
            .filter((line) => {marks!r}.includes(line[0])).map((line) => line.slice(1))""")

    expect("the one", side(" -"), shown_lines(messages[0]["text"]))
    expect("the other", side(" +"), shown_lines(messages[2]["text"]))
    expect("what both have", [line for line in side(" ") if line.startswith(("v=", "t=", "m="))], ["v=0", "t=0 0"])
    page.browser.click("#message-4 .time")
    page.browser.press("c")
    page.browser.click("#message-5 .time")
    expect("title", page.texts("#detail h2"), ["Messages 5 and 6"])


def check_keys(page):
    browser = page.browser
    browser.press("Home", "ArrowDown", "ArrowDown", "ArrowDown", "Enter")
    expect("call", page.texts(".call-number"), ["#4"])
    browser.press("ArrowDown", "ArrowDown")
    expect("message", page.shown_message(), shown_lines(page.calls[4]["messages"][1]["text"]))
    browser.press("n")
    expect("problem", page.shown_message(), shown_lines(page.calls[4]["messages"][2]["text"]))
    browser.press("h")
    expect("hop", page.shown_diff(), page.calls[4]["hops"][0]["diff"])
    browser.press("Escape")
    expect("detail", browser.run("document.getElementById('detail').hidden"), True)
    browser.press("]")
    expect("next call", page.texts(".call-number"), ["#5"])
    browser.press("Escape")
    expect("call", browser.run("document.getElementById('call').hidden"), True)
    expect("focus", browser.run("document.activeElement.id"), "rows")
    browser.press("?")
    expect("help", browser.run("document.getElementById('keys').open"), True)
    browser.press("Escape")
    expect("help", browser.run("document.getElementById('keys').open"), False)
    browser.press("/")
    expect("focus", browser.run("document.activeElement.id"), "search")


def check_colours(page):
    browser = page.browser
    colour = "getComputedStyle(document.documentElement).backgroundColor"
    browser.prefer("dark")
    dark = browser.run(colour)
    browser.prefer("light")
    light = browser.run(colour)
    expect("colours differ", dark != light, True)
    browser.press("t")
    expect("switched", browser.run(colour), dark)
    browser.press("t")
    expect("switched back", browser.run(colour), light)


def check_address(page):
    browser = page.browser
    page.open_call(4)
    browser.click("[data-hop='0'] .hop-hit")
    address = browser.run("location.href")
    expect("address", address.endswith("#call=4&hop=1"), True)
    browser.open(address)
    expect("opened again", page.shown_diff(), page.calls[4]["hops"][0]["diff"])


def check_print(page):
    browser = page.browser
    page.open_call(1)
    browser.run("dispatchEvent(new Event('beforeprint'))")
    messages = page.texts("#print .message .number")
    expect("messages", messages, [str(message["number"]) for message in page.calls[1]["messages"]])
    expect("problems", page.texts("#print .problem .rule"), [each["rule"] for each in page.calls[1]["problems"]])
    browser.run("dispatchEvent(new Event('afterprint'))")
    expect("nothing is left", page.texts("#print *"), [])
    expect("PDF", browser.printed()[:5], b"%PDF-")


def check_hostile(page):
    browser = page.browser
    expect("calls", listed_numbers(page), sorted(page.calls))
    for number, call in page.calls.items():
        page.open_call(number)
        for index, message in enumerate(call["messages"]):
            if message["body"] is None and index != 1:
                continue
            browser.run(f"document.querySelector('#message-{index}').dispatchEvent("
                        "new MouseEvent('click', {bubbles: true}))")
            expect(f"text of call {number}", page.shown_message(), shown_lines(message["text"]))
        browser.click("[data-hop='0'] .hop-hit")
        expect(f"hop of call {number}", [part["section"] for part in page.shown_diff()],
               [part["section"] for part in call["hops"][0]["diff"]])
        browser.run("dispatchEvent(new Event('beforeprint')); dispatchEvent(new Event('afterprint'))")
    browser.press("Escape", "Escape", "/", *"<script>window")
    browser.wait_for("document.getElementById('count').textContent.endsWith('calls')")
    browser.click("#deep")
    browser.wait_for("!document.getElementById('count').textContent.startsWith('searching')")
    expect("search", listed_numbers(page), sorted(page.calls))  # it is a participant's name
    expect("something ran", browser.run("typeof window.__pwned"), "undefined")
    expect("elements of the capture", browser.run("document.querySelectorAll('img, svg[onload], body svg script').length"), 0)
    expect("scripts", browser.run("document.scripts.length"), 2 * len(page.calls) + 2)


def check_large(page):
    browser = page.browser
    expect("count", page.texts("#count"), [f"{len(page.calls):,} of {len(page.calls):,} calls"])
    expect("rows are few", browser.run("document.querySelectorAll('.call-row').length") < 80, True)
    expect("messages", sum(len(call["messages"]) for call in page.calls.values()) >= 100000, True)
    begin = time.monotonic()
    page.open_call(1)
    browser.press("End")
    opened = time.monotonic() - begin
    messages = page.calls[1]["messages"]
    expect("last message", page.shown_message(), shown_lines(messages[-1]["text"]))
    expect("messages are few", browser.run("document.querySelectorAll('.message').length") < 120, True)
    browser.run("dispatchEvent(new Event('beforeprint'))")
    expect("printed messages", browser.run("document.querySelectorAll('#print .message').length"), 3000)
    expect("what is not printed", page.texts("#print td.empty"), [f"{len(messages) - 3000:,} messages more are not printed."])
    browser.run("dispatchEvent(new Event('afterprint'))")
    browser.press("Escape", "Escape", "End")
    last = max(page.calls)
    expect("last call", f"row-of-{last}" in browser.run("[...document.querySelectorAll('.call-row')].map((row) => row.id)"), True)
    begin = time.monotonic()
    browser.click("#deep")
    browser.press("/", *"branch=z9hG4bK99999")
    browser.wait_for("document.getElementById('count').textContent.startsWith('1 of')")
    print(f"  100,000 messages: list after {page.seconds:.1f} s, a call of 5,000 opened and gone through in {opened:.1f} s, "
          f"searched in {time.monotonic() - begin:.1f} s")


def check_capture(page):
    expect("calls of the capture", sorted(page.calls), list(range(1, 41)))
    expect("calls", listed_numbers(page), sorted(page.calls))
    for number in (1, 4):
        page.open_call(number)
        for index, message in enumerate(page.calls[number]["messages"]):
            page.browser.click(f"#message-{index} .time")
            expect("text", page.shown_message(), shown_lines(message["text"]))
            expect("key", capture.KEY in message["text"], False)
    page.open_call(1)
    changed = [index for index, hop in enumerate(page.calls[1]["hops"]) if hop["diff"]]
    expect("hops that changed a body", len(changed), 2)
    printed = page.programs.printed(page.captured, 1)
    for index in changed:
        page.browser.click(f"[data-hop='{index}'] .hop-hit")
        shown = page.shown_diff()
        expect("hop", shown, page.calls[1]["hops"][index]["diff"])
        lines = "".join(f"   {part['section']}\n" + "".join(f"    {line}\n" for line in part["lines"].splitlines())
                        for part in shown)
        expect("whether the tool prints the same", lines in printed, True)
    expect("something ran", page.browser.run("typeof window.__pwned"), "undefined")


CASES = (
    ("capture", "the calls of a capture are as the tool tells them", check_capture),
    ("example", "the list has every call", check_list),
    ("example", "filters and search leave what fits", check_filters),
    ("example", "a column sorts", check_sorting),
    ("example", "the ladder has every message", check_ladder),
    ("example", "a click shows the text of a message", check_message),
    ("example", "problems lead to their lines", check_problems),
    ("example", "a hop shows what it changed", check_hops),
    ("example", "two messages are compared", check_comparison),
    ("example", "keys do what the page says", check_keys),
    ("example", "colours are chosen and switched", check_colours),
    ("example", "an address opens what was open", check_address),
    ("example", "a call is printed whole", check_print),
    ("hostile", "nothing of a capture runs", check_hostile),
    ("large", "a hundred thousand messages are usable", check_large),
)


def check(browser, programs, folder, kind, case):
    page = Page(browser, programs, kind, folder)
    case(page)
    expect("complaints of the browser", browser.complaints, [])
    expect("requests", {address.split("#")[0] for address in browser.requests}, {page.url})


def check_all(browser, programs):
    """How many cases went well, and how many failed."""
    passed = failed = 0
    with tempfile.TemporaryDirectory(prefix="check-page-") as folder:
        for kind, name, case in CASES:
            try:
                check(browser, programs, folder, kind, case)
            except (Failure, BrowserError, subprocess.SubprocessError) as problem:
                failed += 1
                print(f"failed {kind}: {name}: {' '.join(str(problem).split())}", flush=True)
            else:
                passed += 1
                print(f"ok {kind}: {name}", flush=True)
    return passed, failed


def take_pictures(browser, programs, target):
    """What the documentation shows: a call with the hop that changed its offer."""
    with tempfile.TemporaryDirectory(prefix="check-page-") as folder:
        for scheme in ("light", "dark"):
            browser.prefer(scheme)
            page = Page(browser, programs, "example", folder)
            browser.click("#row-of-4")
            browser.click("[data-hop='0'] .hop-hit")
            # The mouse marks the row below it, and the keyboard where it is.
            browser.move_to(5, 5)
            browser.run("document.activeElement.blur()")
            browser.picture(os.path.join(target, f"calls-{scheme}.png"))


def main():
    takes_pictures = len(sys.argv) == 5 and sys.argv[3] == "--pictures"
    if len(sys.argv) != 3 and not takes_pictures:
        print("usage: checkPage.py <program sdpneg> <program sdpneg_make_page> [--pictures <folder>]", file=sys.stderr)
        return 64
    programs = Programs(*sys.argv[1:3])
    program = find_program()
    if program is None:
        print("skipped: no Chromium is installed; scripts/setup --browser installs it")
        return SKIPPED
    start = time.monotonic()
    # The browser is ended then as well.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    try:
        with PageBrowser(program) as browser:
            if takes_pictures:
                take_pictures(browser, programs, sys.argv[4])
                return 0
            passed, failed = check_all(browser, programs)
            print(f"{browser.version}: {passed} ok, {failed} failed, in {time.monotonic() - start:.0f} seconds")
    except BrowserDoesNotStart as problem:
        print(f"skipped: {program} does not start here: {problem}")
        return SKIPPED
    except (BrowserError, OSError) as problem:
        print(f"failed {program}: {problem}")
        return 1
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
