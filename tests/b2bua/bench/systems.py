"""What is measured and what stands around it: a proxy or the engine, its relay and store, callers and callees."""

import csv
import os
import re
import resource
import shutil
import signal
import socket
import subprocess
import time

FOLDER = os.path.dirname(os.path.abspath(__file__))
HOST = "127.0.0.1"
LONGEST_START = 20  # seconds
MEDIA_PORTS = (10000, 32000)  # below those that the kernel gives to others
POLICY = "to-target = keep-codecs PCMA,telephone-event audio; set-profile RTP/AVP\n"
# A second's share and the sum of all is what the benchmark chooses, so no limit of the engine may be in its way.
LIMITS = {"--max-calls": "1000000", "--max-invites": "1000000", "--max-transactions": "10000000",
          "--max-calls-per-source": "1000000", "--max-messages-per-source": "10000000"}


class Failure(Exception):
    pass


def free_port():
    """One of UDP and of TCP that nobody has."""
    while True:
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as udp, socket.socket() as tcp:
            udp.bind((HOST, 0))
            try:
                tcp.bind((HOST, udp.getsockname()[1]))
            except OSError:
                continue
            return udp.getsockname()[1]


def await_that(what, condition):
    end = time.monotonic() + LONGEST_START
    while not condition():
        if time.monotonic() > end:
            raise Failure(f"in vain: {what}")
        time.sleep(0.01)


def listens(port):
    """Whether a program has the UDP port."""
    with open("/proc/net/udp", encoding="ascii") as table:
        return any(line.split()[1].endswith(f":{port:04X}") for line in table.readlines()[1:])


class Process:
    """A program on one core, with all processes that it starts."""

    def __init__(self, folder, name, words, core):
        self.name = name
        self.output = os.path.join(folder, name + ".out")

        def become():
            if core is not None:
                os.sched_setaffinity(0, {core})
            most = resource.getrlimit(resource.RLIMIT_NOFILE)[1]
            resource.setrlimit(resource.RLIMIT_NOFILE, (most, most))

        with open(self.output, "wb") as output:
            # The group is ended as one.
            self.child = subprocess.Popen([str(word) for word in words], cwd=folder, stdin=subprocess.DEVNULL,
                                          stdout=output, stderr=output, preexec_fn=become, start_new_session=True)

    def ids(self):
        """Of the program and its children."""
        ids = [self.child.pid]
        for one in ids:
            with open(f"/proc/{one}/task/{one}/children", encoding="ascii") as children:
                ids += map(int, children.read().split())
        return ids

    def cpu(self):
        """Seconds of the CPU so far, by the kernel's clock of each process: in nanoseconds, not in its ticks."""
        return sum(time.clock_gettime((~one << 3) | 2) for one in self.ids())

    def user_share(self):
        """Of that time, what was not spent in the kernel."""
        user = system = 0
        for one in self.ids():
            with open(f"/proc/{one}/stat", encoding="ascii") as stat:
                ticks = stat.read().rpartition(")")[2].split()
            user, system = user + int(ticks[11]), system + int(ticks[12])
        return user / max(1, user + system)

    def memory(self):
        """Bytes of the memory that the processes have, shared ones counted once."""
        total = 0
        for one in self.ids():
            with open(f"/proc/{one}/smaps_rollup", encoding="ascii") as rollup:
                total += int(re.search(r"^Pss:\s+(\d+)", rollup.read(), re.M)[1]) * 1024
        return total

    def text(self):
        with open(self.output, encoding="utf-8", errors="replace") as output:
            return output.read()

    def stop(self):
        for wanted in (signal.SIGTERM, signal.SIGKILL):
            if self.child.poll() is not None:
                return
            os.killpg(self.child.pid, wanted)
            try:
                self.child.wait(LONGEST_START)
            except subprocess.TimeoutExpired:
                continue


class Redis(Process):
    def __init__(self, folder, core):
        self.port = free_port()
        super().__init__(folder, "redis", ["redis-server", "--port", self.port, "--bind", HOST, "--save", "",
                                           "--appendonly", "no"], core)
        self.asked = 0
        await_that("Redis is ready", lambda: "Ready to accept connections" in self.text())

    def commands(self):
        """That others than this program have given."""
        self.asked += 1
        with socket.create_connection((HOST, self.port)) as link:
            link.sendall(b"INFO stats\r\n")
            told = b""
            while b"total_commands_processed:" not in told or not told.endswith(b"\r\n"):
                told += link.recv(65536)
        return int(re.search(rb"total_commands_processed:(\d+)", told)[1]) - (self.asked - 1)


class Relay(Process):
    def __init__(self, folder, core):
        self.port = free_port()
        super().__init__(folder, "rtpengine",
                         ["rtpengine", "--config-file=none", "--table=-1", "--foreground", "--log-stderr",
                          "--log-level=3", f"--interface={HOST}", f"--listen-ng={HOST}:{self.port}",
                          f"--port-min={MEDIA_PORTS[0]}", f"--port-max={MEDIA_PORTS[1]}", "--num-threads=1"], core)
        await_that("rtpengine is ready", lambda: listens(self.port))


def known_options(engine):
    """The options that an engine has, by its own help."""
    told = subprocess.run([engine, "--help"], capture_output=True, text=True, check=True).stdout
    return set(re.findall(r"--[a-z][a-z-]*", told))


class System:
    """Something that leads calls to a callee, and what it needs for that; ended with `with`."""

    def __init__(self, folder, cores):
        os.makedirs(folder)
        self.folder, (self.core, self.other_core) = folder, cores
        self.port, self.callee_port = free_port(), free_port()
        self.measured, self.store, self.around, self.callers = None, None, [], []

    def __enter__(self):
        try:
            callee = Process(self.folder, "callee", self.sipp("callee", self.callee_port), self.other_core)
            self.around.append(callee)
            await_that("the callee is ready", lambda: listens(self.callee_port))
            self.start()
            await_that(f"{self.measured.name} is ready", lambda: listens(self.port))
        except BaseException as reason:
            told = self.measured.text()[-1000:] if self.measured else ""
            self.stop()
            if isinstance(reason, Failure):
                raise Failure(f"{reason}: {told}") from None
            raise
        return self

    def __exit__(self, *_):
        self.stop()

    def stop(self):
        for process in self.callers + [self.measured] + self.around:
            if process:
                process.stop()
        self.around, self.callers, self.measured = [], [], None

    def servers_cpu(self):
        """Seconds of the CPU that the store and the relay have had."""
        return sum(process.cpu() for process in self.around if process.name != "callee")

    @staticmethod
    def sipp(role, port):
        scenario = os.path.join(FOLDER, role + ".xml")
        return ["sipp", "-sf", scenario, "-i", HOST, "-p", port, "-nostdin", "-max_retrans", 12]

    def call(self, calls, rate, held=0):
        """Begins calls, each held for some seconds."""
        port = free_port()
        words = self.sipp("caller", port) + [
            "-r", rate, "-m", calls, "-l", calls, "-d", int(held * 1000), "-max_invite_retrans", 12, "-trace_stat",
            "-stf", "caller.csv", "-fd", 1, f"{HOST}:{self.port}"]
        self.callers.append(Process(self.folder, "caller", words, self.other_core))
        return self.callers[-1]

    def called(self):
        """How many calls succeeded, and how many messages the caller had to repeat."""
        with open(os.path.join(self.folder, "caller.csv"), encoding="ascii") as statistics:
            last = list(csv.DictReader(statistics, delimiter=";"))[-1]
        return int(last["SuccessfulCall(C)"]), int(last["Retransmissions(C)"])


class Proxy(System):
    def start(self):
        program = shutil.which("kamailio", path=os.environ["PATH"] + ":/usr/sbin")
        self.measured = Process(self.folder, "kamailio", [
            program, "-f", os.path.join(FOLDER, "kamailio.cfg"), "-A", f"LISTEN=udp:{HOST}:{self.port}",
            "-A", f'CALLEE="sip:{HOST}:{self.callee_port}"', "-DD", "-m", 512, "-Y", self.folder, "-w", self.folder],
            self.core)


class Engine(System):
    def __init__(self, folder, cores, program, media, has_policy, has_state):
        super().__init__(folder, cores)
        self.program = program
        self.media, self.has_policy, self.has_state = media, has_policy, has_state

    def start(self):
        known = known_options(self.program)
        words = [self.program, "--listen", f"{HOST}:{self.port}", "--target", f"{HOST}:{self.callee_port}",
                 "--log", "engine.log"]
        words += [word for name, value in LIMITS.items() if name in known for word in (name, value)]
        if self.has_policy:
            with open(os.path.join(self.folder, "calls.policy"), "w", encoding="ascii") as policy:
                policy.write(POLICY)
            words += ["--policy", "calls.policy"]
        if self.has_state:
            self.store = Redis(self.folder, self.other_core)
            self.around.append(self.store)
            words += ["--state", f"redis://{HOST}:{self.store.port}"]
        if self.media == "anchor":
            words += ["--media", "anchor", HOST, f"{MEDIA_PORTS[0]}-{MEDIA_PORTS[1]}"]
        elif self.media == "rtpengine":
            relay = Relay(self.folder, self.other_core)
            self.around.append(relay)
            words += ["--media", "rtpengine", f"udp:{HOST}:{relay.port}"]
        self.measured = Process(self.folder, "engine", words, self.core)
