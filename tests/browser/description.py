"""What the checks read from a session description by themselves."""

import re

DIRECTIONS = ("sendrecv", "sendonly", "recvonly", "inactive")
OTHER_WAY = {"sendonly": "recvonly", "recvonly": "sendonly"}
STATIC = {"0": "PCMU", "8": "PCMA", "9": "G722", "13": "CN"}


class Section:
    """An m-line and what stands below it."""

    def __init__(self, lines):
        self.lines = lines
        self.media, self.port, _, *self.formats = lines[0][2:].split()

    def value(self, attribute):
        """That of the first attribute of a name, else None."""
        prefix = f"a={attribute}:"
        return next((line[len(prefix):] for line in self.lines if line.startswith(prefix)), None)

    @property
    def refused(self):
        return self.port == "0"

    @property
    def direction(self):
        return next((line[2:] for line in self.lines if line[2:] in DIRECTIONS), "sendrecv")

    @property
    def codecs(self):
        """The formats with their names, as "111 opus"."""
        names = dict(STATIC)
        for line in self.lines:
            if mapped := re.match(r"a=rtpmap:(\d+) ([^/]+)/", line):
                names[mapped[1]] = mapped[2]
        return [f"{each} {names.get(each, '?')}" for each in self.formats]

    def summary(self):
        """As the cases expect it: "refused", "data" with its largest message, or a direction and the codecs, as
        "sendrecv opus PCMU"."""
        if self.refused:
            return "refused"
        if self.media == "application":
            return f"data {self.value('max-message-size')}"
        return " ".join([self.direction, *(each.split()[1] for each in self.codecs)])


def lines_of(text):
    return text.replace("\r\n", "\n").splitlines()


def sections_of(text):
    starts = []
    for line in lines_of(text):
        if line.startswith("m="):
            starts.append([])
        if starts:
            starts[-1].append(line)
    return [Section(lines) for lines in starts]


def summary_of(text):
    return [section.summary() for section in sections_of(text)]


def bundled_of(text):
    """The mids of the groups BUNDLE."""
    return {mid for line in lines_of(text) if line.startswith("a=group:BUNDLE") for mid in line.split()[1:]}


def transports_of(text):
    """How many transports the sections of an answer take: one for its group, and one for each section outside."""
    bundled = bundled_of(text)
    used = {"group" if section.value("mid") in bundled else index
            for index, section in enumerate(sections_of(text)) if not section.refused}
    return len(used)


def roles_of(text):
    """Those that the sections of an answer have for DTLS."""
    return {section.value("setup") for section in sections_of(text) if not section.refused}


def with_edits(text, edits):
    """Each edit, what stands there and what comes for it, changes something, or a case would not try what it says."""
    for old, new in edits:
        if old not in text:
            raise ValueError(f"nothing to edit: {old}")
        text = text.replace(old, new)
    return text
