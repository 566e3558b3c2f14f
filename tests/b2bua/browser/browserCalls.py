#!/usr/bin/env python3
"""Calls between a headless Chromium (DTLS, ICE, BUNDLE) and a phone (plain RTP), by way of the engine and rtpengine.

    browserCalls.py <program b2bua> <folder of baresip's modules>

One line for each case; exit status 1 when one failed, 77 when a program is missing."""

import contextlib
import os
import shutil
import signal
import sys
import tempfile
import time

FOLDER = os.path.dirname(os.path.abspath(__file__))
BROWSER_FOLDER = os.path.join(FOLDER, "..", "..", "browser")
sys.path[:0] = [BROWSER_FOLDER, os.path.join(FOLDER, "..", "bench")]

from browserOffers import AUDIO, VIDEO, turned  # noqa: E402
from chromium import BrowserDoesNotStart, BrowserError, Chromium, find_program  # noqa: E402
from parties import AskedRelay, Engine, Phone, SipParty  # noqa: E402
from systems import HOST, Failure, await_that  # noqa: E402

SKIPPED = 77
SILENCE = 0.4  # seconds


def expect(what, found, expected):
    if found != expected:
        raise Failure(f"{what}: {found!r}, not {expected!r}")


class Call:
    """A call of the browser's page that is up, and its end."""

    def __init__(self, browser, relay, engine, party, phone, sides):
        self.browser, self.relay, self.engine, self.party, self.phone = browser, relay, engine, party, phone
        self.browsers_side, self.phones_side = sides
        self.errors = None

    def offer(self, script):
        """What an offer of the page leads to."""
        answer = self.party.offer(self.browser.call("makeOffer", "browser", script, False))
        self.browser.call("takeAnswer", "browser", answer)

    def count_errors(self):
        """Packets of each side that the relay could not use."""
        return [self.relay.audio(side)["errors"] for side in (self.browsers_side, self.phones_side)]

    def counts(self):
        """What has come so far: to the page, and from each side to the relay."""
        heard = self.browser.call("heard", "browser")
        return [heard["bytes"], heard["energy"], self.relay.audio(self.browsers_side)["packets"],
                self.relay.audio(self.phones_side)["packets"]]

    def expect_flow(self):
        """Something that can be heard comes to the page, and packets from both sides, all of use."""
        before = self.counts()
        # The first packets came before their keys.
        self.errors = self.errors or self.count_errors()
        await_that(f"media flow both ways: {before}",
                   lambda: all(now > then for now, then in zip(self.counts(), before)))
        for side, secured in ((self.browsers_side, True), (self.phones_side, False)):
            audio = self.relay.audio(side)
            expect(f"codec and security of {side}", (audio["codec"], audio["suite"] is not None),
                   ("PCMU/8000", secured))
        expect("packets that the relay could not use", self.count_errors(), self.errors)

    def expect_silence(self):
        """What is on its way still arrives; then nothing more comes from the phone."""
        def is_silent():
            before = self.relay.audio(self.phones_side)["packets"]
            time.sleep(SILENCE)
            return self.relay.audio(self.phones_side)["packets"] == before
        await_that("the phone is silent", is_silent)

    def hang_up(self):
        self.party.hang_up()
        await_that("the relay has forgotten the call", lambda: not self.relay.calls())
        await_that("the phone has the BYE", lambda: "session closed" in self.phone.text())


def browser_dials(world, script):
    phone = world.phone()
    engine = world.engine(phone.port, "webrtc", "rtp")
    party = SipParty()
    party.dial(engine.port)
    call = Call(world.browser, world.relay, engine, party, phone, ("-c", "-t"))
    call.offer(script)
    return call


def phone_dials(world):
    party = SipParty()
    engine = world.engine(party.port, "rtp", "webrtc")
    phone = world.phone(f"sip:browser@{HOST}:{engine.port}")
    invited = party.receive("INVITE ")
    party.answer(engine.port, invited,
                 world.browser.call("makeAnswer", "browser", turned("sendrecv"), invited.body))
    return Call(world.browser, world.relay, engine, party, phone, ("-t", "-c"))


def check_call(world, call):
    """Media flow, stop while the browser holds, flow again, and end."""
    for function in ("connected", "startMedia", "receives", "play"):
        world.browser.call(function, "browser")
    call.expect_flow()
    call.offer(turned("sendonly"))
    call.expect_silence()
    call.offer(turned("sendrecv"))
    call.expect_flow()
    call.hang_up()


class World:
    """What a case needs, ended with `with`."""

    def __init__(self, browser, program, modules):
        self.browser, self.program, self.modules = browser, program, modules
        self.stack = contextlib.ExitStack()

    def __enter__(self):
        self.folder = self.stack.enter_context(tempfile.TemporaryDirectory())
        self.relay = self._ended(AskedRelay(self.folder, None))
        self.browser.call("openPeer", "browser", {})
        self.stack.callback(self.browser.call, "closePeers")
        return self

    def __exit__(self, *_):
        self.stack.close()

    def _ended(self, process):
        self.stack.callback(process.stop)
        return process

    def phone(self, dialled=None):
        return self._ended(Phone(self.folder, self.modules, dialled))

    def engine(self, target, caller_kind, target_kind):
        return self._ended(Engine(self.folder, self.program, self.relay, target, caller_kind, target_kind))


CASES = (
    ("the browser calls the phone", lambda world: browser_dials(world, AUDIO)),
    ("the browser calls with a picture, in one BUNDLE", lambda world: browser_dials(world, AUDIO + VIDEO)),
    ("the phone calls the browser", phone_dials),
)


def check_all(browser, program, modules):
    """How many cases failed."""
    with open(os.path.join(BROWSER_FOLDER, "page.js"), encoding="utf-8") as page:
        browser.run(page.read())
    failed = 0
    for name, begin in CASES:
        try:
            with World(browser, program, modules) as world:
                check_call(world, begin(world))
        except (Failure, BrowserError) as problem:
            failed += 1
            print(f"failed {name}: {' '.join(str(problem).split())}", flush=True)
        else:
            print(f"ok {name}", flush=True)
    return failed


def main():
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        return 64
    missing = [program for program in ("rtpengine", "baresip", sys.argv[1]) if not shutil.which(program)]
    browser_program = find_program()
    if missing or browser_program is None:
        print(f"skipped: not installed: {', '.join(missing) or 'a Chromium'}")
        return SKIPPED
    # The browser and all others are ended then as well.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    try:
        with Chromium(browser_program) as browser:
            return 1 if check_all(browser, os.path.abspath(sys.argv[1]), sys.argv[2]) else 0
    except BrowserDoesNotStart as problem:
        print(f"skipped: {browser_program} does not start here: {problem}")
        return SKIPPED


if __name__ == "__main__":
    sys.exit(main())
