"""Cases in which the browser offers and sdpneg answers."""

from dataclasses import dataclass, field

VOICE = "opus PCMU PCMA telephone-event"
CAMERA = "VP8 rtx H264 rtx"
NARROW = "PCMU PCMA telephone-event"
MESSAGES = "data 65536"

AUDIO = "peer.addTransceiver('audio');"
VIDEO = "peer.addTransceiver('video');"
DATA = "peer.createDataChannel('messages');"
LAYERS = """peer.addTransceiver('video', {sendEncodings: [
  {rid: 'high'}, {rid: 'middle', scaleResolutionDownBy: 2}, {rid: 'low', scaleResolutionDownBy: 4}]});"""
# A local description with one section that has no group gets one.
GROUP_OF_ONE = (("t=0 0", "t=0 0\r\na=group:BUNDLE voice"), ("a=sendrecv", "a=mid:voice\r\na=sendrecv"))


def turned(direction):
    """A script that gives all media another direction."""
    return f"for (const each of peer.getTransceivers()) each.direction = '{direction}';"


def preferring(kind, pattern):
    """A script that adds a medium with the codecs whose names fit."""
    return (f"peer.addTransceiver('{kind}').setCodecPreferences("
            f"RTCRtpSender.getCapabilities('{kind}').codecs.filter(({{mimeType}}) => {pattern}.test(mimeType)));")


@dataclass
class Step:
    """An offer that a script leads to, and the sections of its answer as Section.summary gives them."""
    script: str
    expected: list
    transports: int = 1
    role: str = "active"  # that of DTLS
    options: tuple = ()
    trickle: bool = False
    edits: tuple = ()  # of the local description: pairs of what stands there and what comes for it
    encodings: dict = field(default_factory=dict)  # mid: how many layers are sent then
    unanswerable: bool = False  # sdpneg says why, and makes no answer
    browser_refusal: str = ""  # those with which the browser refuses the answer


@dataclass
class Case:
    name: str
    local: str
    steps: list
    configuration: dict = field(default_factory=dict)


CASES = [
    Case("audio", "conference", [Step(AUDIO, ["sendrecv " + VOICE])]),
    Case("audio and video", "conference", [
        Step(AUDIO + VIDEO, ["sendrecv " + VOICE, "sendrecv " + CAMERA])]),
    Case("data channel only", "conference", [Step(DATA, [MESSAGES])]),
    Case("audio, video and data", "conference", [
        Step(AUDIO + VIDEO + DATA, ["sendrecv " + VOICE, "sendrecv " + CAMERA, MESSAGES])]),
    Case("an offer without candidates yet", "conference", [
        Step(AUDIO + VIDEO + DATA, ["sendrecv " + VOICE, "sendrecv " + CAMERA, MESSAGES], trickle=True)]),
    Case("data before audio", "conference", [
        Step(DATA, [MESSAGES]),
        Step(AUDIO, [MESSAGES, "sendrecv " + VOICE])]),
    Case("simulcast is answered with one layer", "conference", [
        Step(LAYERS, ["sendrecv " + CAMERA], encodings={"0": 1})]),
    Case("four videos where three can be had", "conference", [
        Step(AUDIO + 4 * VIDEO, ["sendrecv " + VOICE, *3 * ["sendrecv " + CAMERA], "refused"])]),
    Case("recvonly", "conference", [
        Step(AUDIO + VIDEO + turned("recvonly"), ["sendonly " + VOICE, "sendonly " + CAMERA])]),
    Case("sendonly", "conference", [
        Step(AUDIO + VIDEO + turned("sendonly"), ["recvonly " + VOICE, "recvonly " + CAMERA])]),
    Case("one direction for each medium", "conference", [
        Step(AUDIO + turned("recvonly") + "peer.addTransceiver('video', {direction: 'inactive'});",
             ["sendonly " + VOICE, "inactive " + CAMERA])]),
    Case("video is added later", "conference", [
        Step(AUDIO, ["sendrecv " + VOICE]),
        Step(VIDEO, ["sendrecv " + VOICE, "sendrecv " + CAMERA])]),
    Case("video goes and its place is taken again", "conference", [
        Step(AUDIO + VIDEO, ["sendrecv " + VOICE, "sendrecv " + CAMERA]),
        Step("peer.getTransceivers()[1].stop();", ["sendrecv " + VOICE, "refused"]),
        Step(VIDEO, ["sendrecv " + VOICE, "sendrecv " + CAMERA])]),
    Case("ICE restart", "conference", [
        Step(AUDIO + DATA, ["sendrecv " + VOICE, MESSAGES]),
        Step("peer.restartIce();", ["sendrecv " + VOICE, MESSAGES],
             edits=(("ice-ufrag:Conf", "ice-ufrag:Anew"), ("conferenceServerPass", "conferenceServerAnewPass")))]),
    Case("hold and resume", "conference", [
        Step(AUDIO + VIDEO, ["sendrecv " + VOICE, "sendrecv " + CAMERA]),
        Step(turned("sendonly"), ["recvonly " + VOICE, "recvonly " + CAMERA]),
        Step(turned("inactive"), ["inactive " + VOICE, "inactive " + CAMERA]),
        Step(turned("sendrecv"), ["sendrecv " + VOICE, "sendrecv " + CAMERA])]),
    Case("the other side holds", "conference", [
        Step(AUDIO, ["sendrecv " + VOICE]),
        Step("", ["sendonly " + VOICE], edits=(("a=sendrecv", "a=sendonly"),)),
        Step("", ["inactive " + VOICE], edits=(("a=sendrecv", "a=inactive"),)),
        Step("", ["sendrecv " + VOICE])]),
    Case("max-bundle", "conference", [
        Step(AUDIO + VIDEO + DATA, ["sendrecv " + VOICE, "sendrecv " + CAMERA, MESSAGES])],
        {"bundlePolicy": "max-bundle"}),
    Case("balanced", "conference", [
        Step(AUDIO + 2 * VIDEO, ["sendrecv " + VOICE, "sendrecv " + CAMERA, "sendrecv " + CAMERA])],
        {"bundlePolicy": "balanced"}),
    Case("balanced, answered without BUNDLE", "gateway", [
        Step(AUDIO + VIDEO, ["sendrecv " + NARROW, "sendrecv H264"], 2)],
        {"bundlePolicy": "balanced"}),
    Case("max-compat, answered without BUNDLE", "gateway", [
        Step(AUDIO + VIDEO, ["sendrecv " + NARROW, "sendrecv H264"], 2)],
        {"bundlePolicy": "max-compat"}),
    Case("what a gateway lacks is refused", "gateway", [
        Step(AUDIO + VIDEO + DATA, ["sendrecv " + NARROW, "sendrecv H264", "refused"], 2)]),
    Case("audio alone is answered", "voice-gateway", [
        Step(AUDIO + VIDEO + DATA, ["sendrecv " + NARROW, "refused", "refused"])]),
    Case("audio alone is answered, with video in front", "voice-gateway", [
        Step(VIDEO + AUDIO, ["refused", "sendrecv " + NARROW])]),
    Case("max-bundle, audio alone is answered", "voice-gateway", [
        Step(AUDIO + VIDEO, ["sendrecv " + NARROW, "refused"], edits=GROUP_OF_ONE)],
        {"bundlePolicy": "max-bundle"}),
    Case("max-bundle takes no answer without BUNDLE", "voice-gateway", [
        Step(AUDIO + VIDEO, ["sendrecv " + NARROW, "refused"], browser_refusal="BUNDLE group")],
        {"bundlePolicy": "max-bundle"}),
    Case("an answer of ICE lite", "lite-gateway", [Step(AUDIO, ["sendrecv " + NARROW])]),
    Case("a video codec that is not shared", "gateway", [
        Step(AUDIO + preferring("video", "/VP8/"), ["sendrecv " + NARROW, "refused"])]),
    Case("one audio codec", "voice-gateway", [
        Step(preferring("audio", "/PCMA/"), ["sendrecv PCMA"])]),
    Case("the local order", "conference", [
        Step(AUDIO, ["sendrecv opus PCMA PCMU telephone-event"], options=("--prefer", "local"))]),
    Case("one codec for each medium", "gateway", [
        Step(AUDIO + VIDEO, ["sendrecv PCMU telephone-event", "sendrecv H264"], 2, options=("--single",))]),
    Case("the browser is the active side", "conference", [
        Step(AUDIO + DATA, ["sendrecv " + VOICE, MESSAGES], role="passive", options=("--setup", "passive"))]),
    Case("the role of DTLS stays", "conference", [
        Step(AUDIO, ["sendrecv " + VOICE], role="passive", options=("--setup", "passive")),
        Step(VIDEO, ["sendrecv " + VOICE, "sendrecv " + CAMERA], role="passive")]),
    Case("a plain gateway cannot answer", "plain-gateway", [Step(AUDIO, [], unanswerable=True)]),
    Case("a gateway with SDES cannot answer", "sdes-gateway", [Step(AUDIO, [], unanswerable=True)]),
]
