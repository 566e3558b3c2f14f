#!/usr/bin/env python3
"""A browser's offers answered by sdpneg, a browser's answers judged by it, and calls with its answers in between."""

import functools
import os
import re
import signal
import subprocess
import sys
import tempfile
import time

import browserAnswers
import browserOffers
import calls
import description
from chromium import BrowserDoesNotStart, BrowserError, Chromium, find_program

FOLDER = os.path.dirname(os.path.abspath(__file__))
SKIPPED = 77


class Failure(Exception):
    """What a case found wrong."""


def expect(what, found, expected):
    if found != expected:
        raise Failure(f"{what}: {found!r}, not {expected!r}")


def expect_refusal(words, function, *arguments):
    try:
        function(*arguments)
    except BrowserError as refusal:
        if words in str(refusal):
            return
        raise
    raise Failure(f"the browser does not refuse it with: {words}")


def read(*names):
    with open(os.path.join(FOLDER, *names), newline="", encoding="utf-8") as file:
        return file.read()


class Tool:
    """The program sdpneg, given texts."""

    def __init__(self, program):
        self.program = program

    def _run(self, folder, command, *arguments, **texts):
        paths = {}
        for name, text in texts.items():
            paths[name] = os.path.join(folder, name)
            with open(paths[name], "w", newline="", encoding="utf-8") as file:
                file.write(text)
        words = [paths[word[1:]] if word.startswith("@") else word for word in arguments]
        return subprocess.run([self.program, command, *words], capture_output=True, timeout=20, check=False)

    def answer(self, local, offer, previous, options):
        """Exit status, the answer, and what was said about it."""
        arguments = ["--local", "@local", *options]
        texts = {"local": local, "offer": offer}
        if previous is not None:
            arguments += ["--previous", "@previous"]
            texts["previous"] = previous
        with tempfile.TemporaryDirectory() as folder:
            run = self._run(folder, "answer", *arguments, "@offer", **texts)
        return run.returncode, run.stdout.decode(), run.stderr.decode().strip()

    def findings(self, offer, answer):
        """The lines of the judge."""
        with tempfile.TemporaryDirectory() as folder:
            run = self._run(folder, "check-answer", "@offer", "@answer", offer=offer, answer=answer)
        lines = run.stdout.decode().splitlines()
        if run.returncode != (1 if lines else 0):
            raise Failure(f"check-answer ends with {run.returncode}: {lines} {run.stderr.decode().strip()}")
        return lines


def check_state(state, answer, encodings):
    """The connection of the offerer is as the answer says."""
    expect("signalling state", state["signaling"], "stable")
    expect("something pending", state["pending"], False)
    expect("transports", state["transports"], description.transports_of(answer))
    for section in description.sections_of(answer):
        mid = section.value("mid")
        if section.media == "application":
            size = None if section.refused else int(section.value("max-message-size"))
            expect("message size", state["messageSize"], size)
            continue
        found = state["transceivers"].get(mid, {"direction": "stopped"})
        if section.refused:
            expect(f"direction of {mid}", found["direction"], "stopped")
            continue
        direction = description.OTHER_WAY.get(section.direction, section.direction)
        expect(f"direction of {mid}", found["direction"], direction)
        if direction in ("sendrecv", "sendonly"):
            expect(f"codecs that {mid} sends", found["sent"], section.codecs)
        if direction in ("sendrecv", "recvonly"):
            # It goes on to tell all that it offered.
            expect(f"codecs that {mid} lacks", [each for each in section.codecs if each not in found["received"]], [])
        if mid in encodings:
            expect(f"layers of {mid}", found["encodings"], encodings[mid])


def made_answer(tool, local, offer, previous, options):
    """The answer of sdpneg, in which its judge finds nothing."""
    status, answer, said = tool.answer(local, offer, previous, options)
    if status != 0:
        raise Failure(f"sdpneg answer ends with {status}: {said}")
    expect("findings of the judge", tool.findings(offer, answer), [])
    return answer


def take_answer(browser, name, answer, encodings):
    browser.call("takeAnswer", name, answer)
    check_state(browser.call("stateOf", name), answer, encodings)


def check_browser_offers(browser, tool, case):
    browser.call("openPeer", "offerer", case.configuration)
    previous = None
    for step in case.steps:
        local = description.with_edits(read("local", case.local + ".sdp"), step.edits)
        offer = browser.call("makeOffer", "offerer", step.script, step.trickle)
        if step.unanswerable:
            status, answer, said = tool.answer(local, offer, previous, step.options)
            expect("status and answer", (status, answer), (1, ""))
            expect("whether it says why", said != "", True)
            continue
        answer = made_answer(tool, local, offer, previous, step.options)
        expect("sections", description.summary_of(answer), step.expected)
        expect("transports", description.transports_of(answer), step.transports)
        expect("roles", description.roles_of(answer), {step.role})
        if step.browser_refusal:
            expect_refusal(step.browser_refusal, browser.call, "takeAnswer", "offerer", answer)
            continue
        take_answer(browser, "offerer", answer, step.encodings)
        previous = answer


def browser_answer(browser, step):
    """An offer with its edits, and the browser's answer."""
    offer = description.with_edits(read(step.file), step.edits)
    answer = browser.call("makeAnswer", "answerer", step.script, offer)
    expect("sections", description.summary_of(answer), step.expected)
    return offer, answer


def check_browser_answers(browser, tool, case):
    browser.call("openPeer", "answerer", case.configuration)
    for step in case.steps:
        if step.browser_refusal:
            expect_refusal(step.browser_refusal, browser_answer, browser, step)
            continue
        offer, answer = browser_answer(browser, step)
        findings = [": ".join(line.split(": ")[:2]) for line in tool.findings(offer, answer)]
        expect("findings of the judge", findings, step.findings)
        expect("signalling state", browser.call("stateOf", "answerer")["signaling"], "stable")


@functools.cache
def answer_to_spoil(browser):
    browser.call("openPeer", "answerer", {})
    return browser_answer(browser, browserAnswers.SPOILT_OFFER)


def check_spoilt_answer(browser, tool, case):
    offer, answer = answer_to_spoil(browser)
    spoilt = re.sub(case.pattern, case.replacement, answer)
    if spoilt == answer:
        raise Failure("nothing to spoil")
    rules = [line.split(": ")[1] for line in tool.findings(offer, spoilt)]
    if case.rule not in rules:
        raise Failure(f"not among the findings {rules}")


def check_call(browser, tool, case):
    browser.call("openPeer", "caller", {})
    browser.call("openPeer", "callee", {})
    previous = None
    for step in case.steps:
        offer = browser.call("makeOffer", "caller", step.script, False)
        local = browser.call("makeAnswer", "callee", step.callee, offer)
        answer = made_answer(tool, local, offer, previous, step.options)
        summary = description.summary_of(answer)
        if not step.options:
            expect("sections", summary, description.summary_of(local))
        take_answer(browser, "caller", answer, {})
        previous = answer
        for name in ("caller", "callee"):
            browser.call("connected", name)
            browser.call("startMedia", name)
        for name in ("caller", "callee"):
            browser.call("receives", name)
        echo = "hello back" if summary[-1].startswith("data") else None
        expect("echo", browser.call("echoed", "caller", "hello"), echo)


GROUPS = (
    ("offer", check_browser_offers, browserOffers.CASES),
    ("answer", check_browser_answers, browserAnswers.CASES),
    ("spoilt answer", check_spoilt_answer, browserAnswers.SPOILT),
    ("call", check_call, calls.CASES),
)


def check_all(browser, tool):
    """How many cases went well, and how many failed."""
    passed = failed = 0
    browser.run(read("page.js"))
    for group, check, cases in GROUPS:
        for case in cases:
            name = f"{group}: {case.name}"
            try:
                check(browser, tool, case)
            except (Failure, BrowserError, subprocess.TimeoutExpired) as problem:
                failed += 1
                print(f"failed {name}: {' '.join(str(problem).split())}", flush=True)
            else:
                passed += 1
                print(f"ok {name}", flush=True)
            browser.call("closePeers")
    return passed, failed


def main():
    if len(sys.argv) != 2:
        print("usage: checkBrowser.py <program sdpneg>", file=sys.stderr)
        return 64
    program = find_program()
    if program is None:
        print("skipped: no Chromium is installed; scripts/setup --browser installs it")
        return SKIPPED
    start = time.monotonic()
    # The browser is ended then as well.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    try:
        with Chromium(program) as browser:
            passed, failed = check_all(browser, Tool(sys.argv[1]))
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
