#!/usr/bin/env python3
"""What a call costs: the example engine with each way of media, a policy and a store, beside Kamailio as a plain proxy.

What is measured is the time of the CPU that a process has for calls at a fixed rate, from the first INVITE until what
may still be repeated is forgotten. Unlike the highest rate that it keeps up with, that hardly depends on what else the
machine does. Calls a second of one core are what follows from it.
"""

import argparse
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
from dataclasses import dataclass, field

from profiles import share_within
from systems import Engine, Failure, Process, Proxy, known_options

SKIPPED = 77
PACKAGES = {"sipp": "sip-tester", "kamailio": "kamailio", "redis-server": "redis-server",
            "rtpengine": "rtpengine-daemon", "perf": "linux-perf"}


@dataclass
class Plan:
    calls: int = 3000
    rate: int = 200  # calls a second
    forgotten: float = 34  # seconds after which nothing is left of a call that has ended
    held_rate: int = 30
    held: float = 25  # seconds of calls that are held, behind those of `forgotten`
    profiled: int = 1000
    profiled_rate: int = 100


QUICK = Plan(calls=20, rate=40, forgotten=0.2, held_rate=20, held=1, profiled=20, profiled_rate=40)


@dataclass(eq=False)
class Row:
    name: str
    make: object  # a function of a folder
    is_held: bool = False  # whether memory is measured
    is_profiled: bool = False
    figures: dict = field(default_factory=dict)


def has(program):
    return shutil.which(program, path=os.environ["PATH"] + ":/usr/sbin") is not None


def rows_of(engine, cores):
    """The rows, and the names of those left out with the reason."""
    rows, left_out = [], {}
    known = known_options(engine)

    def add(name, reason, make, **what):
        if reason:
            left_out[name] = reason
        else:
            rows.append(Row(name, make, **what))

    add("Kamailio, a plain proxy", "" if has("kamailio") else "no kamailio",
        lambda folder: Proxy(folder, cores), is_held=True)
    for media in ("none", "anchor", "rtpengine"):
        for has_state in (False, True):
            for has_policy in (False, True):
                reason = ""
                if media != "none" and "--media" not in known:
                    reason = "no --media in the engine"
                elif media == "rtpengine" and not has("rtpengine"):
                    reason = "no rtpengine"
                elif has_state and not has("redis-server"):
                    reason = "no redis-server"
                add(f"engine, media {media}" + ", Redis" * has_state + ", policy" * has_policy, reason,
                    lambda folder, of=(media, has_policy, has_state): Engine(folder, cores, engine, *of),
                    is_held=not has_policy, is_profiled=has_state == has_policy)
    return rows, left_out


class Bench:
    def __init__(self, plan, folder, rows):
        self.plan, self.folder, self.rows = plan, folder, rows
        self.faults = []
        self.ending = []

    def make(self, row, what):
        return row.make(os.path.join(self.folder, f"{what}-{self.rows.index(row)}"))

    def fail(self, row, why):
        self.faults.append(f"{row.name}: {why}")
        print(self.faults[-1], file=sys.stderr)

    def measure_time(self, row):
        """Calls at a fixed rate; the end is taken by a thread, beside the next row's calls."""
        system = self.make(row, "time").__enter__()
        time.sleep(min(1, self.plan.forgotten))
        before, around = system.measured.cpu(), system.servers_cpu()
        commands = system.store.commands() if system.store else 0
        status = system.call(self.plan.calls, self.plan.rate).child.wait()
        succeeded, repeated = system.called()
        if status != 0 or succeeded != self.plan.calls:
            self.fail(row, f"{succeeded} of {self.plan.calls} calls succeeded")

        def end():
            try:
                row.figures |= {
                    "calls": succeeded, "repeated": repeated,
                    "time": (system.measured.cpu() - before) / self.plan.calls,
                    "around": (system.servers_cpu() - around) / self.plan.calls,
                    "user": system.measured.user_share()}
                if system.store:
                    row.figures["commands"] = (system.store.commands() - commands) / self.plan.calls
            finally:
                system.stop()

        self.ending.append(threading.Timer(self.plan.forgotten, end))
        self.ending[-1].start()

    def measure_memory(self, rows):
        """Calls that are held, by all systems at once: what one more takes when as many transactions are forgotten as
        begin."""
        systems = {}
        steady, end = self.plan.forgotten + 3, self.plan.forgotten + 3 + self.plan.held
        try:
            for row in rows:
                systems[row] = self.make(row, "memory").__enter__()
            for system in systems.values():
                system.call(int(self.plan.held_rate * (end + 5)), self.plan.held_rate, 3600)
            time.sleep(steady)
            before = {row: system.measured.memory() for row, system in systems.items()}
            time.sleep(self.plan.held)
            for row, system in systems.items():
                more = system.measured.memory() - before[row]
                row.figures["memory"] = more / (self.plan.held_rate * self.plan.held)
        finally:
            for system in systems.values():
                system.stop()

    def measure_share(self, row):
        """Calls while perf takes samples of the engine, with their stacks."""
        with self.make(row, "share") as system:
            profile = os.path.join(system.folder, "profile")
            sampler = Process(system.folder, "perf", [
                "perf", "record", "-q", "-F", 1999, "--call-graph", "dwarf,8192", "-p", system.measured.child.pid,
                "-o", profile], system.other_core)
            time.sleep(min(1, self.plan.forgotten))
            succeeded = system.call(self.plan.profiled, self.plan.profiled_rate).child.wait() == 0
            if sampler.child.poll() is None:
                sampler.child.send_signal(signal.SIGINT)
            sampler.child.wait()
            if not succeeded:
                self.fail(row, "calls under perf failed")
        told = subprocess.run(["perf", "script", "-i", profile, "--no-inline", "-F", "ip,sym,dso"], capture_output=True,
                              text=True, errors="replace", check=False).stdout
        try:
            row.figures["share"], row.figures["samples"] = share_within(
                told.splitlines(), lambda path: os.path.basename(path).startswith("libsdp_"))
        except ValueError as reason:
            print(f"... perf gives {reason} here: the library's share is left out", file=sys.stderr)

    def run(self):
        for row in self.rows:
            print(f"... {row.name}", file=sys.stderr)
            self.measure_time(row)
        for timer in self.ending:
            timer.join()
        print("... calls that are held", file=sys.stderr)
        self.measure_memory([row for row in self.rows if row.is_held])
        for row in self.rows:
            if row.is_profiled and has("perf"):
                print(f"... {row.name}, with perf", file=sys.stderr)
                self.measure_share(row)


def table_of(rows):
    """A line of a table for each row."""
    first = rows[0].figures["time"] if rows[0].name.startswith("Kamailio") else None

    def cell(figures, name, text):
        return text(figures[name]) if name in figures else ""

    yield ("|  | calls | CPU of a call, us | calls a second of a core | to Kamailio | of it in the kernel | "
           "in the library | memory of a call, kB | Redis' commands a call | CPU of Redis and rtpengine, us |")
    yield "|---" + "|---:" * 9 + "|"
    for row in rows:
        figures = row.figures
        cells = [row.name, str(figures["calls"]), f"{figures['time'] * 1e6:.0f}", f"{1 / figures['time']:.0f}",
                 f"{figures['time'] / first:.2f}" if first else "", f"{100 - figures['user'] * 100:.0f} %",
                 cell(figures, "share", lambda share: f"{share * 100:.1f} %"),
                 cell(figures, "memory", lambda memory: f"{memory / 1000:.1f}"),
                 cell(figures, "commands", lambda commands: f"{commands:.2f}"),
                 f"{figures['around'] * 1e6:.0f}" if figures["around"] else ""]
        yield "| " + " | ".join(cells) + " |"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("engine", nargs="?", default="build/release/examples/b2bua/b2bua")
    parser.add_argument("--quick", action="store_true",
                        help="a few calls, to see that it works; the figures say nothing")
    parser.add_argument("--calls", type=int, help=f"of a row; {Plan.calls} when not given")
    parser.add_argument("--rate", type=int, help=f"calls a second; {Plan.rate} when not given")
    parser.add_argument("--only", default="", metavar="TEXT", help="rows with that in their names, and Kamailio")
    parser.add_argument("--keep", action="store_true", help="leave the folder with logs and profiles")
    arguments = parser.parse_args()

    for program in ("sipp", arguments.engine):
        if not has(program):
            print(f"bench-engine: no {program}; it is of {PACKAGES.get(program, 'the target b2bua')}", file=sys.stderr)
            return SKIPPED
    plan = QUICK if arguments.quick else Plan()
    plan.calls, plan.rate = arguments.calls or plan.calls, arguments.rate or plan.rate
    cores = sorted(os.sched_getaffinity(0))
    chosen = (cores[0], cores[1]) if len(cores) > 1 else (None, None)
    rows, left_out = rows_of(os.path.realpath(arguments.engine), chosen)
    rows = [row for row in rows if arguments.only in row.name or row.name.startswith("Kamailio")]
    folder = tempfile.mkdtemp()
    try:
        bench = Bench(plan, folder, rows)
        bench.run()
    finally:
        if arguments.keep:
            print(f"kept in {folder}", file=sys.stderr)
        else:
            shutil.rmtree(folder)
    print(f"{plan.calls} calls of a row at {plan.rate} a second")
    for line in table_of(rows):
        print(line)
    for name, reason in left_out.items():
        print(f"left out: {name}: {reason}")
    return 1 if bench.faults else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except Failure as failure:
        sys.exit(f"bench-engine: {failure}")
