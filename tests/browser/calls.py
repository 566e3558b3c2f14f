"""Calls between two connections of the page. The callee's own answer is the local description from which sdpneg makes
the one that the caller gets; what it changed, the callee does not know."""

from dataclasses import dataclass

from browserOffers import AUDIO, LAYERS, VIDEO, turned

DATA = "peer.messages ??= peer.createDataChannel('messages');"


@dataclass
class Step:
    """An offer that a script leads to."""
    script: str
    options: tuple = ()
    callee: str = turned("sendrecv")  # what the callee does before it answers


@dataclass
class Case:
    name: str
    steps: list


CASES = [
    Case("audio, video and data", [Step(AUDIO + VIDEO + DATA)]),
    Case("data alone", [Step(DATA)]),
    Case("simulcast that the answer lacks", [Step(AUDIO + LAYERS)]),
    Case("one codec for each medium", [Step(AUDIO + VIDEO, ("--single",))]),
    Case("the callee's order", [Step(AUDIO + VIDEO, ("--prefer", "local"))]),
    Case("audio alone, then video and data", [Step(AUDIO), Step(VIDEO + DATA)]),
    Case("one way, then the other", [
        Step(AUDIO + VIDEO + turned("sendonly"), callee=""),
        Step(turned("recvonly"))]),
    Case("ICE restart", [Step(AUDIO + DATA), Step("peer.restartIce();")]),
]
