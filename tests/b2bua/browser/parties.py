"""Who is in a call of the browser beside it: the SIP of its page, a phone, the relay's own account of the media."""

import contextlib
import json
import os
import socket

from systems import HOST, Failure, Process, Relay, await_that, free_port, listens

LONGEST_WAIT = 10  # seconds


def free_port_pair():
    """A free port whose next one, which baresip takes for TLS, is free too."""
    while True:
        port = free_port()
        with socket.socket() as tcp:
            with contextlib.suppress(OSError):
                tcp.bind((HOST, port + 1))
                return port


class Message:
    def __init__(self, datagram):
        head, _, self.body = datagram.decode().partition("\r\n\r\n")
        self.start, *lines = head.split("\r\n")
        self.headers = dict(reversed([line.partition(": ")[::2] for line in lines]))

    def __getitem__(self, name):
        return self.headers[name]


class SipParty:
    """The SIP that a page has not: one call at a time, by one socket."""

    def __init__(self):
        self.socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.socket.bind((HOST, 0))
        self.socket.settimeout(LONGEST_WAIT)
        self.port = self.socket.getsockname()[1]
        self.contact = f"<sip:browser@{HOST}:{self.port}>"
        self.remote, self.call, self.cseq = "", "", 0
        self.local = self.contact + ";tag=browser"

    def receive(self, start, cseq=""):
        """The next message like that; others are dropped."""
        while True:
            try:
                message = Message(self.socket.recv(65536))
            except TimeoutError:
                raise Failure(f"no {start} has come") from None
            if message.start.startswith(start) and message["CSeq"].startswith(cseq):
                return message

    def _send(self, start, headers, body):
        lines = [start, *(f"{name}: {value}" for name, value in headers.items()), f"Contact: {self.contact}"]
        if body:
            lines.append("Content-Type: application/sdp")
        lines.append(f"Content-Length: {len(body.encode())}")
        self.socket.sendto("\r\n".join([*lines, "", body]).encode(), (HOST, self.engine))

    def _request(self, method, body=""):
        self._send(f"{method} sip:phone@{HOST}:{self.engine} SIP/2.0", {
            "Via": f"SIP/2.0/UDP {HOST}:{self.port};branch=z9hG4bK{self.call}{method}{self.cseq}", "Max-Forwards": 70,
            "From": self.local, "To": self.remote, "Call-ID": self.call, "CSeq": f"{self.cseq} {method}"}, body)

    def dial(self, engine):
        self.engine, self.call = engine, os.urandom(8).hex()
        self.remote = f"<sip:phone@{HOST}:{engine}>"

    def offer(self, body):
        """The answer to an offer, by an INVITE within the call or the first one."""
        self.cseq += 1
        self._request("INVITE", body)
        while (response := self.receive("SIP/2.0 ", f"{self.cseq} INVITE")).start < "SIP/2.0 2":
            pass
        self.remote = response["To"]
        self._request("ACK")
        if not response.start.startswith("SIP/2.0 200 "):
            raise Failure(f"{response.start}: {response.headers.get('Warning')}")
        return response.body

    def answer(self, engine, invited, body):
        """Takes the call that an INVITE offers."""
        self.engine, self.call = engine, invited["Call-ID"]
        self.local, self.remote = invited["To"] + ";tag=browser", invited["From"]
        self._send("SIP/2.0 200 OK", {"Via": invited["Via"], "From": self.remote, "To": self.local,
                                      "Call-ID": self.call, "CSeq": invited["CSeq"]}, body)
        self.receive("ACK ")

    def hang_up(self):
        self.cseq += 1
        self._request("BYE")
        self.receive("SIP/2.0 200 ", f"{self.cseq} BYE")


class Phone(Process):
    """baresip, which sends a tone in plain RTP and answers by itself."""

    def __init__(self, folder, modules, dialled=None):
        self.port, console = free_port_pair(), free_port()
        home = os.path.join(folder, "phone")
        os.makedirs(home)
        own = f"{HOST}:{self.port}"
        texts = {
            "config": f"sip_listen {own}\nnet_interface {HOST}\ncons_listen {HOST}:{console}\nmodule_path {modules}\n"
                      "module g711.so\nmodule aubridge.so\nmodule ausine.so\nmodule cons.so\n"
                      "module_tmp account.so\nmodule_app menu.so\naudio_source ausine,440\nausrc_srate 48000\n"
                      "ausrc_channels 2\naudio_player aubridge,nothing\naudio_alert aubridge,nothing\n",
            "accounts": f"<sip:phone@{own}>;regint=0;answermode=auto;audio_codecs=PCMU/8000/1,PCMA/8000/1\n",
            "contacts": ""}
        for name, text in texts.items():
            with open(os.path.join(home, name), "w", encoding="ascii") as file:
                file.write(text)
        dial = ["-e", f"/dial {dialled}"] if dialled else []
        super().__init__(folder, "baresip", ["baresip", "-s", "-f", home, *dial], None)
        await_that("the phone is ready", lambda: "baresip is ready." in self.text())


class AskedRelay(Relay):
    """rtpengine, and what it says of the only call."""

    def ask(self, **members):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as link:
            link.settimeout(LONGEST_WAIT)
            link.sendto(b"cookie" + os.urandom(8).hex().encode() + b" " + json.dumps(members).encode(),
                        (HOST, self.port))
            return json.loads(link.recv(65536).partition(b" ")[2])

    def calls(self):
        return self.ask(command="list")["calls"]

    def audio(self, side):
        """The audio of the side whose tag ends so: packets that came, those that were of no use, codec, suite."""
        [call] = self.calls()
        [tag] = [each for name, each in self.ask(command="query", **{"call-id": call})["tags"].items()
                 if name.endswith(side)]
        medium = tag["medias"][0]
        stream = medium["streams"][0]
        return stream["stats"] | {"codec": medium.get("codec"), "suite": stream.get("crypto suite")}


class Engine(Process):
    def __init__(self, folder, program, relay, target, caller_kind, target_kind):
        self.port = free_port()
        super().__init__(folder, "engine", [
            program, "--listen", f"{HOST}:{self.port}", "--target", f"{HOST}:{target}", "--log", "engine.log",
            "--media", "rtpengine", f"udp:{HOST}:{relay.port}",
            "--media-caller", caller_kind, "--media-target", target_kind], None)
        await_that("the engine is ready", lambda: listens(self.port))
