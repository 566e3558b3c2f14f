"""A headless Chromium on an empty page, driven by the DevTools protocol over two pipes."""

import json
import os
import select
import shutil
import subprocess
import tempfile
import time

PROGRAMS = ("chromium", "chromium-browser", "google-chrome", "google-chrome-stable")

# Real addresses in place of names that only multicast DNS resolves, those of the loopback interface included, so that
# two connections of one page find each other on a machine without a network.
OPTIONS = (
    "--headless=new",
    "--remote-debugging-pipe",
    "--no-first-run",
    "--no-default-browser-check",
    "--disable-background-networking",
    "--disable-component-update",
    "--disable-dev-shm-usage",
    "--disable-extensions",
    "--disable-gpu",
    "--disable-sync",
    "--disable-features=WebRtcHideLocalIpsWithMdns",
    "--allow-loopback-in-peer-connection",
    "--use-fake-device-for-media-stream",
    "--use-fake-ui-for-media-stream",
)


class BrowserError(Exception):
    """What the browser refused, in its words."""


class BrowserDoesNotStart(Exception):
    """The browser is there, but does not run on this machine."""


def find_program():
    """The browser that the environment's CHROMIUM names, else the first that is installed, else None."""
    if named := os.environ.get("CHROMIUM"):
        return named
    return next((name for name in PROGRAMS if shutil.which(name)), None)


class Chromium:
    """One run of the browser with one page; a context manager that ends it."""

    def __init__(self, program, seconds=20):
        self.seconds = seconds
        self.number = 0
        self.received = b""
        self.session = None
        self.home = tempfile.TemporaryDirectory(prefix="check-browser-", ignore_cleanup_errors=True)
        self.process, self.reader, self.writer = self._start(program)

    def _start(self, program):
        """The browser reads requests from its descriptor 3 and writes answers to 4, each with a NUL behind it."""
        their_input, writer = os.pipe()
        reader, their_output = os.pipe()
        arguments = [program, *OPTIONS, "--user-data-dir=" + self.home.name]
        if os.geteuid() == 0:
            arguments.append("--no-sandbox")
        # Only a shell gives descriptors the numbers that are wanted, whichever they had before.
        redirect = f'exec "$@" 3<&{their_input} 4>&{their_output}'
        with open(os.path.join(self.home.name, "log"), "wb") as log:
            process = subprocess.Popen(
                ["bash", "-c", redirect, "bash", *arguments, "about:blank"],
                pass_fds=(their_input, their_output), stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                start_new_session=True, env={**os.environ, "HOME": self.home.name})
        os.close(their_input)
        os.close(their_output)
        return process, reader, writer

    def __enter__(self):
        try:
            self.version = self._request("Browser.getVersion")["product"]
            target = self._request("Target.createTarget", {"url": "about:blank"})["targetId"]
            attached = self._request("Target.attachToTarget", {"targetId": target, "flatten": True})
            self.session = attached["sessionId"]
        except (BrowserError, OSError) as problem:
            self._end()
            raise BrowserDoesNotStart(str(problem)) from problem
        except BaseException:
            self._end()
            raise
        return self

    def __exit__(self, *_):
        self._end()

    def _end(self):
        try:
            self.session = None
            self._request("Browser.close")
        except (BrowserError, OSError):
            pass
        os.close(self.writer)
        os.close(self.reader)
        try:
            self.process.wait(5)
        except subprocess.TimeoutExpired:
            os.killpg(self.process.pid, 9)
            self.process.wait()
        self.home.cleanup()

    def log(self):
        """The last that the browser wrote."""
        with open(os.path.join(self.home.name, "log"), encoding="utf-8", errors="replace") as file:
            return file.read()[-2000:]

    def _message(self, deadline):
        while b"\0" not in self.received:
            left = deadline - time.monotonic()
            if left <= 0 or not select.select([self.reader], [], [], left)[0]:
                raise BrowserError(f"no answer within {self.seconds} seconds")
            part = os.read(self.reader, 1 << 16)
            if not part:
                raise BrowserError("the browser has ended: " + self.log())
            self.received += part
        message, self.received = self.received.split(b"\0", 1)
        return json.loads(message)

    def _request(self, method, parameters=None):
        self.number += 1
        request = {"id": self.number, "method": method, "params": parameters or {}}
        if self.session:
            request["sessionId"] = self.session
        os.write(self.writer, json.dumps(request).encode() + b"\0")
        deadline = time.monotonic() + self.seconds
        while True:
            message = self._message(deadline)
            if message.get("id") == self.number:
                break
            self.note(message)
        if "error" in message:
            raise BrowserError(message["error"]["message"])
        return message["result"]

    def note(self, message):
        """Is called with each event that comes while an answer is waited for."""

    def run(self, script):
        """The value of a script on the page, of its promise where it gives one."""
        result = self._request("Runtime.evaluate", {
            "expression": script, "awaitPromise": True, "returnByValue": True, "userGesture": True})
        if "exceptionDetails" in result:
            details = result["exceptionDetails"]
            raise BrowserError(details.get("exception", {}).get("description", details["text"]).split("\n")[0])
        return result["result"].get("value")

    def call(self, function, *arguments):
        """What a function of the page returns, its arguments being anything that JSON holds."""
        return self.run(f"{function}({', '.join(json.dumps(each) for each in arguments)})")
