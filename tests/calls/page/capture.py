"""A capture of calls, made message by message."""

import socket
import struct

RAW_IP = 101
START = 1773044100  # 2026-03-09 08:15:00 UTC
KEY = "dGhpcyBrZXkgaXMgbm90IGZvciByZWFkZXJzIQ=="

PHONE, ENGINE, PEER = "192.0.2.10", "198.51.100.5", "203.0.113.20"


def body(address, port, transport="RTP/AVP", lines=()):
    return "".join(line + "\r\n" for line in (
        "v=0", f"o=- 3901 1 IN IP4 {address}", "s=-", f"c=IN IP4 {address}", "t=0 0",
        f"m=audio {port} {transport} 8 0 101", "a=rtpmap:101 telephone-event/8000", *lines))


class Capture:
    """Packets one after the other, each some time behind the last."""

    def __init__(self):
        self.file = struct.pack("<IHHiIII", 0xa1b2c3d4, 2, 4, 0, 0, 65535, RAW_IP)
        self.micros = 0

    def add(self, source, destination, text):
        payload = text if isinstance(text, bytes) else text.encode()
        udp = struct.pack(">HHHH", 5060, 5060, 8 + len(payload), 0) + payload
        packet = struct.pack(">BBHHHBBH4s4s", 0x45, 0, 20 + len(udp), 0, 0, 64, 17, 0,
                             socket.inet_aton(source), socket.inet_aton(destination)) + udp
        seconds, micros = divmod(self.micros, 1000000)
        self.file += struct.pack("<IIII", START + seconds, micros, len(packet), len(packet)) + packet
        self.micros += 20125


def message(first, call_id, cseq, sdp="", more=(), caller="alice"):
    """A message of a dialog whose ends have the tags a and b."""
    lines = [first, f"Via: SIP/2.0/UDP 192.0.2.1;branch=z9hG4bK{call_id}{cseq.replace(' ', '')}",
             f"From: <sip:{caller}@example.org>;tag=a", "To: <sip:bob@example.net>" + (";tag=b" if "INVITE sip" not in first else ""),
             f"Call-ID: {call_id}", f"CSeq: {cseq}", *more]
    if sdp:
        lines.append("Content-Type: application/sdp")
    return "".join(line + "\r\n" for line in lines) + f"Content-Length: {len(sdp)}\r\n\r\n{sdp}"


def call_through_engine(capture, number):
    """A call of two legs. The engine takes the key away and puts its own address in."""
    one, two = f"one-{number}", f"two-{number}"
    from_phone = body(PHONE, 40000, "RTP/SAVP", [f"a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:{KEY}", "a=ptime:20"])
    from_engine = body(ENGINE, 22000, lines=["a=ptime:20"])
    answer = body(PEER, 31000, lines=["a=ptime:20"])
    leg = [f"X-Call-ID: {one}"]
    capture.add(PHONE, ENGINE, message("INVITE sip:bob@example.net SIP/2.0", one, "1 INVITE", from_phone))
    capture.add(ENGINE, PHONE, message("SIP/2.0 100 Trying", one, "1 INVITE"))
    capture.add(ENGINE, PEER, message("INVITE sip:bob@example.net SIP/2.0", two, "1 INVITE", from_engine, leg))
    capture.add(ENGINE, PEER, message("INVITE sip:bob@example.net SIP/2.0", two, "1 INVITE", from_engine, leg))
    capture.add(PEER, ENGINE, message("SIP/2.0 200 OK", two, "1 INVITE", answer))
    capture.add(ENGINE, PHONE, message("SIP/2.0 200 OK", one, "1 INVITE", body(ENGINE, 22002, lines=["a=ptime:20"])))
    capture.add(PHONE, ENGINE, message("ACK sip:bob@example.net SIP/2.0", one, "1 ACK"))
    capture.add(ENGINE, PEER, message("ACK sip:bob@example.net SIP/2.0", two, "1 ACK", more=leg))
    capture.add(PHONE, ENGINE, message("BYE sip:bob@example.net SIP/2.0", one, "2 BYE"))
    capture.add(ENGINE, PHONE, message("SIP/2.0 200 OK", one, "2 BYE"))


def refused_call(capture, number):
    """A call that its peer refuses, with texts that would do something where they are not taken as texts."""
    hostile = "</script><script>window.__pwned = 1</script><img src=x onerror=window.__pwned=1>"
    name = f"three-{number}"
    more = [f"Subject: {hostile}"]
    offer = body(PHONE, 40000, lines=[f"a=note:{hostile}"])
    capture.add(PHONE, PEER, message("INVITE sip:bob@example.net SIP/2.0", name, "1 INVITE", offer, more, "mallory"))
    capture.add(PEER, PHONE, message(f"SIP/2.0 488 {hostile}", name, "1 INVITE", caller="mallory"))
    capture.add(PHONE, PEER, message("ACK sip:bob@example.net SIP/2.0", name, "1 ACK", caller="mallory"))


def calls():
    """The bytes of a capture of 40 calls, every fourth of them refused."""
    capture = Capture()
    for number in range(1, 41):
        if number % 4 == 0:
            refused_call(capture, number)
        else:
            call_through_engine(capture, number)
    return capture.file
