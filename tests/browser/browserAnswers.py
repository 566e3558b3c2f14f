"""Cases in which the browser answers what is offered to it, for the judge of sdpneg."""

from dataclasses import dataclass, field

from browserOffers import turned

NARROW = "PCMA PCMU telephone-event"
VOICE = "opus G722 PCMA PCMU telephone-event"
MESSAGES = "data 100000"  # the lower of both, of which Chromium's is 262144
BOTH_WAYS = turned("sendrecv")
# Chromium gives every section a mid, also where none was offered.
MID = ["1: mid-not-offered"]
TWO_MIDS = ["1: mid-not-offered", "2: mid-not-offered"]


@dataclass
class Offered:
    """An offer, what the browser does with it, and the sections of its answer as Section.summary gives them."""
    file: str
    expected: list
    script: str = ""
    edits: tuple = ()  # of the offer: pairs of what stands there and what comes for it
    findings: list = field(default_factory=list)  # section and rule of what the judge finds in the answer
    browser_refusal: str = ""  # the words with which the browser refuses the offer


@dataclass
class Case:
    name: str
    steps: list
    configuration: dict = field(default_factory=dict)


CASES = [
    Case("a bundle", [Offered("offers/bundled.sdp", ["sendrecv " + VOICE, "sendrecv VP8 rtx", MESSAGES], BOTH_WAYS)]),
    Case("a bundle, received only", [
        Offered("offers/bundled.sdp", ["recvonly " + VOICE, "recvonly VP8 rtx", MESSAGES])]),
    Case("a bundle for max-bundle", [
        Offered("offers/bundled.sdp", ["sendrecv " + VOICE, "sendrecv VP8 rtx", MESSAGES], BOTH_WAYS)],
        {"bundlePolicy": "max-bundle"}),
    Case("several videos", [
        Offered("offers/three-videos.sdp", ["sendrecv " + VOICE, *3 * ["sendrecv VP8 rtx"]], BOTH_WAYS)]),
    Case("a transceiver stopped behind the offer", [
        Offered("offers/three-videos.sdp", [
            "recvonly " + VOICE, "recvonly VP8 rtx", "inactive VP8 rtx", "recvonly VP8 rtx"],
                "peer.getTransceivers()[2].stop();")]),
    Case("many codecs", [
        Offered("offers/many-codecs.sdp", [
            "recvonly VP8 rtx H264 rtx H264 rtx H264 rtx VP9 rtx VP9 rtx AV1 rtx red ulpfec"])]),
    Case("simulcast", [Offered("offers/simulcast.sdp", ["recvonly " + VOICE, "sendonly VP8 rtx"],
                               "peer.getTransceivers()[1].direction = 'sendonly';")]),
    Case("data alone", [Offered("offers/data.sdp", [MESSAGES])]),
    Case("no BUNDLE", [Offered("local/gateway.sdp", ["sendrecv " + NARROW, "sendrecv H264"], BOTH_WAYS,
                                findings=TWO_MIDS)]),
    Case("audio alone", [
        Offered("local/voice-gateway.sdp", ["sendrecv PCMU PCMA telephone-event"], BOTH_WAYS, findings=MID)]),
    Case("ICE lite, passive", [Offered("local/lite-gateway.sdp", ["sendrecv " + NARROW], BOTH_WAYS, findings=MID)]),
    Case("an active offerer", [
        Offered("local/voice-gateway.sdp", ["sendrecv PCMU PCMA telephone-event"], BOTH_WAYS,
                findings=MID, edits=(("setup:actpass", "setup:active"),))]),
    Case("disabled and foreign sections", [
        Offered("offers/mixed.sdp", ["recvonly " + NARROW, "refused", "refused", "refused", "refused"])]),
    Case("hold and resume", [
        Offered("local/voice-gateway.sdp", ["sendrecv PCMU PCMA telephone-event"], BOTH_WAYS, findings=MID),
        Offered("local/voice-gateway.sdp", ["recvonly PCMU PCMA telephone-event"], findings=MID,
                edits=(("7300 2 IN", "7300 3 IN"), ("a=sendrecv", "a=sendonly"))),
        Offered("local/voice-gateway.sdp", ["inactive PCMU PCMA telephone-event"], findings=MID,
                edits=(("7300 2 IN", "7300 4 IN"), ("a=sendrecv", "a=inactive"))),
        Offered("local/voice-gateway.sdp", ["sendrecv PCMU PCMA telephone-event"], findings=MID,
                edits=(("7300 2 IN", "7300 5 IN"),))]),
    Case("ICE restart", [
        Offered("offers/bundled.sdp", ["recvonly " + VOICE, "recvonly VP8 rtx", MESSAGES]),
        Offered("offers/bundled.sdp", ["recvonly " + VOICE, "recvonly VP8 rtx", MESSAGES],
                edits=(("8100 2 IN", "8100 3 IN"), ("ufrag:Serv", "ufrag:Anew"), ("OfServ", "OfAnew")))]),
    Case("video is added later", [
        Offered("offers/bundled.sdp", ["recvonly " + VOICE, "refused", "refused"],
                edits=(("BUNDLE sound picture messages", "BUNDLE sound"), ("a=bundle-only\r\n", ""))),
        Offered("offers/bundled.sdp", ["recvonly " + VOICE, "recvonly VP8 rtx", MESSAGES],
                edits=(("8100 2 IN", "8100 3 IN"),))]),
    Case("no rtcp-mux is not taken", [
        Offered("local/voice-gateway.sdp", [], edits=(("a=rtcp-mux\r\n", ""),), browser_refusal="RTCP-MUX")]),
    Case("plain RTP is not taken", [Offered("local/plain-gateway.sdp", [], browser_refusal="fingerprint")]),
    Case("SDES is not taken", [Offered("local/sdes-gateway.sdp", [], browser_refusal="fingerprint")]),
]

@dataclass
class Spoilt:
    """A pattern in the browser's answer to a bundle, what comes for all that fits, and the rule that must find it."""
    pattern: str
    replacement: str
    rule: str

    @property
    def name(self):
        return self.rule


SPOILT_OFFER = Offered("offers/bundled.sdp", ["recvonly " + VOICE, "recvonly VP8 rtx", MESSAGES], BOTH_WAYS,
                       edits=(("a=sendrecv", "a=sendonly"),))
SPOILT = [
    Spoilt(r"m=application [\s\S]*", "", "section-count"),
    Spoilt(r"m=video (\d+) UDP", r"m=audio \1 UDP", "section-media"),
    Spoilt(r"m=audio (\d+) UDP/TLS/RTP/SAVPF", r"m=audio \1 RTP/AVP", "transport"),
    Spoilt(r"(m=audio \d+ \S+) [^\r]*", r"\1 3", "no-format"),
    Spoilt(r"m=audio \d+", "m=audio none", "no-port"),
    Spoilt(r"(m=audio \d+ \S+) [^\r]*", r"\1 101", "no-codec"),
    Spoilt(r"a=recvonly", "a=sendonly", "direction"),
    Spoilt(r"c=[^\r]*\r\n", "", "no-address"),
    Spoilt(r"m=video \d+", "m=video 0", "refused-in-group"),
    Spoilt(r"a=setup:active", "a=setup:actpass", "setup-actpass"),
    Spoilt(r"a=setup:active\r\n", "", "no-setup"),
    Spoilt(r"a=fingerprint:[^\r]*\r\n", "", "no-fingerprint"),
    Spoilt(r"a=mid:picture", "a=mid:film", "mid-not-offered"),
    Spoilt(r"a=mid:picture", "a=mid:film", "group-without-section"),
    Spoilt(r"a=mid:picture\r\n", "", "mid-missing"),
    Spoilt(r"a=rtcp-mux\r\n", "", "mux-missing"),
    Spoilt(r"a=group:BUNDLE", "a=group:LS", "group-not-offered"),
    Spoilt(r"a=group:BUNDLE[^\r]*\r\n", "", "bundle-only-alone"),
    Spoilt(r"a=ice-ufrag:[^\r]*", "a=ice-ufrag:abc", "ice-short"),
    Spoilt(r"a=rtpmap:120 VP8", "a=rtpmap:120 VP9", "payload-changed"),
    Spoilt(r"a=rtpmap:120 [^\r]*\r\n", "", "no-rtpmap"),
    Spoilt(r"a=fmtp:121 apt=120", "a=fmtp:121 apt=119", "rtx-without-codec"),
    Spoilt(r"(m=audio [^\r]*) 101\r\n", r"\1 101 101\r\n", "payload-twice"),
    Spoilt(r"(m=audio [^\r]*) 101\r\n", r"\1 101 102\r\na=rtpmap:102 L16/16000\r\n", "codec-not-offered"),
    Spoilt(r"(a=extmap:\d+ )[^\r]*", r"\1urn:example:other", "extmap-not-offered"),
]
