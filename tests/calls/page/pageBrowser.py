"""A headless Chromium with a page of calls open, its keys and its mouse, and what it complains of and asks for."""

import base64
import json
import struct
import time
import zlib

from chromium import BrowserError, Chromium

WIDTH, HEIGHT = 1440, 900
MODIFIERS = {"ctrl": 2, "shift": 8}
NAMED_KEYS = {"Enter": 13, "Escape": 27, "ArrowUp": 38, "ArrowDown": 40, "Home": 36, "End": 35, "PageDown": 34}


# The most frequent colours of a picture, and for each pixel the place of the nearest of them.
FEW_COLOURS = """(async () => {
    const picture = await createImageBitmap(await (await fetch('data:image/png;base64,' + %s)).blob());
    const canvas = new OffscreenCanvas(picture.width, picture.height).getContext('2d');
    canvas.drawImage(picture, 0, 0);
    const {data} = canvas.getImageData(0, 0, picture.width, picture.height);
    const pixels = new Uint32Array(data.length / 4);
    const counts = new Map();
    for (let i = 0; i < pixels.length; ++i) {
        pixels[i] = data[4 * i] << 16 | data[4 * i + 1] << 8 | data[4 * i + 2];
        counts.set(pixels[i], (counts.get(pixels[i]) || 0) + 1);
    }
    const parts = (colour) => [colour >> 16, colour >> 8 & 255, colour & 255];
    const palette = [...counts].sort((a, b) => b[1] - a[1]).slice(0, 128).map(([colour]) => parts(colour));
    const nearest = new Map();
    for (const colour of counts.keys()) {
        const own = parts(colour);
        const distances = palette.map((other) => other.reduce((sum, part, i) => sum + (part - own[i]) ** 2, 0));
        nearest.set(colour, distances.indexOf(Math.min(...distances)));
    }
    const places = Uint8Array.from(pixels, (colour) => nearest.get(colour));
    let text = '';
    for (let i = 0; i < places.length; i += 8192) text += String.fromCharCode(...places.subarray(i, i + 8192));
    return {width: picture.width, palette: palette.flat(), places: btoa(text)};
})()"""


def png_of(width, palette, places):
    """A PNG file of places in a palette."""
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows = b"".join(b"\0" + places[begin:begin + width] for begin in range(0, len(places), width))
    header = struct.pack(">IIBBBBB", width, len(places) // width, 8, 3, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"PLTE", palette) +
            chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


class PageBrowser(Chromium):
    """Keeps what the page writes to its console, what it throws, and each address that it asks for."""

    def __init__(self, program):
        super().__init__(program, seconds=60)
        self.complaints = []
        self.requests = []

    def __enter__(self):
        super().__enter__()
        for domain in ("Page", "Runtime", "Log", "Network"):
            self._request(domain + ".enable")
        self._request("Emulation.setDeviceMetricsOverride", {
            "width": WIDTH, "height": HEIGHT, "deviceScaleFactor": 1, "mobile": False})
        return self

    def note(self, message):
        method, parameters = message.get("method"), message.get("params", {})
        if method == "Network.requestWillBeSent":
            self.requests.append(parameters["request"]["url"])
        elif method == "Runtime.exceptionThrown":
            details = parameters["exceptionDetails"]
            self.complaints.append(details.get("exception", {}).get("description", details["text"]))
        elif method == "Runtime.consoleAPICalled":
            self.complaints.append(f"console.{parameters['type']}: {parameters['args']}")
        elif method == "Log.entryAdded":
            self.complaints.append(parameters["entry"]["text"])

    def open(self, url):
        """Opens a page. Gives the seconds until its list was there."""
        # A page that differs from the last in its fragment alone would not be read anew.
        self._request("Page.navigate", {"url": "about:blank"})
        self.run("0")
        self.requests.clear()
        self.complaints.clear()
        begin = time.monotonic()
        self._request("Page.navigate", {"url": url})
        self.wait_for("document.readyState === 'complete' && document.querySelector('#rows .call-row') !== null")
        return time.monotonic() - begin

    def wait_for(self, condition):
        """Waits until a condition holds on the page."""
        end = time.monotonic() + self.seconds
        while not self.run(condition):
            if time.monotonic() > end:
                raise BrowserError(f"it never becomes so: {condition}")
            time.sleep(0.02)

    def frame(self):
        """Waits until what was asked to be drawn is drawn."""
        self.run("new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(() => done(0))))")

    def click(self, selector, modifier=None):
        """Clicks into the middle of the first element that a selector finds, with the mouse."""
        self.frame()
        place = self.run(f"""(() => {{
            const node = document.querySelector({selector!r});
            if (node === null) throw new Error('nothing is ' + {selector!r});
            node.scrollIntoView({{block: 'nearest', inline: 'nearest'}});
            const box = node.getBoundingClientRect();
            return [box.x + box.width / 2, box.y + box.height / 2];
        }})()""")
        self.frame()
        for kind in ("mousePressed", "mouseReleased"):
            self._request("Input.dispatchMouseEvent", {
                "type": kind, "x": place[0], "y": place[1], "button": "left", "clickCount": 1,
                "modifiers": MODIFIERS.get(modifier, 0)})
        self.frame()

    def move_to(self, x, y):
        """Moves the mouse."""
        self._request("Input.dispatchMouseEvent", {"type": "mouseMoved", "x": x, "y": y})

    def press(self, *keys):
        """Presses keys one after the other: a character, or the name of a key."""
        for key in keys:
            code = {"windowsVirtualKeyCode": NAMED_KEYS[key]} if key in NAMED_KEYS else {"text": key}
            if key == "Enter":
                code["text"] = "\r"
            self._request("Input.dispatchKeyEvent", {"type": "keyDown", "key": key, **code})
            self._request("Input.dispatchKeyEvent", {"type": "keyUp", "key": key})
        self.frame()

    def prefer(self, scheme):
        """Lets the page think that the user likes light or dark colours."""
        self._request("Emulation.setEmulatedMedia", {
            "features": [{"name": "prefers-color-scheme", "value": scheme}]})

    def picture(self, path):
        """Writes what is seen as PNG of few colours, so that it is small."""
        self.frame()
        png = self._request("Page.captureScreenshot", {"format": "png"})["data"]
        # The page itself must not read pictures.
        self._request("Page.navigate", {"url": "about:blank"})
        pixels = self.run(FEW_COLOURS % json.dumps(png))
        with open(path, "wb") as file:
            file.write(png_of(pixels["width"], bytes(pixels["palette"]), base64.b64decode(pixels["places"])))

    def printed(self):
        """The page as PDF."""
        result = self._request("Page.printToPDF", {"landscape": False, "printBackground": True})
        return base64.b64decode(result["data"])
