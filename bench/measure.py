#!/usr/bin/env python3
"""Measures whole scans of invented machines and the reading of what they leave, beside yardsticks that
are run in the same minute. scripts/bench builds what it needs and starts it.

    measure.py BUILD_FOLDER [--quick]
"""
import glob
import os
import platform
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
import zlib

import machines

HERE = os.path.dirname(os.path.abspath(__file__))
MEGABYTE = 1e6


class Run:
    """One process: processor time of its own, without its commands, and its peak memory."""

    def __init__(self, arguments, environment, folder):
        start = time.monotonic()
        process = subprocess.Popen(arguments, env=environment, cwd=folder, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL)
        os.waitid(os.P_PID, process.pid, os.WEXITED | os.WNOWAIT)
        self.wall = time.monotonic() - start
        with open(f"/proc/{process.pid}/schedstat") as file:
            self.own = int(file.read().split()[0]) / 1e9
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = 0
        if status != 0:
            sys.exit(f"{arguments} failed")
        self.peak = usage.ru_maxrss * 1024


def median(runs, field):
    return statistics.median(getattr(run, field) for run in runs)


class Bench:
    def __init__(self, build, quick, folder):
        self.build = build
        self.folder = folder
        self.times = 3 if quick else 7
        self.agent = [self.program("orbexagent"), "-silent"]
        machines.write_tools(os.path.join(folder, "tools"))

    def program(self, name):
        return os.path.join(self.build, name)

    def environment(self, machine):
        tools = os.path.join(self.folder, "tools")
        return {"PATH": f"{tools}:/usr/bin:/bin", "MACHINE": os.path.join(self.folder, machine),
                "HOME": "/", "TZ": "UTC0", "LC_ALL": "C"}

    def machine(self, name, **what):
        machines.write_machine(os.path.join(self.folder, name), **what)

    def turns(self, machine, *programs, times=None):
        """The runs of each program, as many as asked for and one before that is not counted. They take turns,
        since the machine is faster in one second than in another."""
        place = os.path.join(self.folder, "place")
        runs = []
        for _ in range((times or self.times) + 1):
            runs.append([])
            for arguments in programs:
                shutil.rmtree(place, ignore_errors=True)
                os.makedirs(place)
                runs[-1].append(Run(arguments, self.environment(machine), place))
                for snapshot in glob.glob(os.path.join(place, "*.hux")):
                    shutil.move(snapshot, self.snapshot(machine))
        return list(zip(*runs[1:]))

    def snapshot(self, machine):
        """The file of the last scan of it."""
        return os.path.join(self.folder, machine + ".hux")

    def scan(self, machine, times=None):
        scans, = self.turns(machine, self.agent, times=times)
        return scans

    def tell(self, what, value, goal=""):
        print(f"{what:<66} {value:>12}  {goal}", flush=True)

    def milliseconds(self, what, seconds):
        self.tell(what, f"{seconds * 1000:.1f} ms")

    def ratio(self, what, value, goal=""):
        self.tell(what, f"{value:.2f}", goal)

    def applications(self, counts):
        own = {}
        for count in counts:
            machine = f"applications-{count}"
            self.machine(machine, applications=count)
            xml = os.path.join(self.folder, machine, "SPApplicationsDataType")
            times = min(self.times, 3) if count > 10000 else self.times
            self.scan(machine, times=1)
            text = os.path.join(self.folder, "text")
            with open(self.snapshot(machine), "rb") as snapshot, open(text, "wb") as file:
                file.write(zlib.decompressobj().decompress(snapshot.read()))
            scans, *yardsticks = self.turns(machine, self.agent, [self.program("orbex_bench"), "scan", xml, text],
                                            [sys.executable, os.path.join(HERE, "script.py"), "out"], times=times)
            own[count] = median(scans, "own")
            floor, script = (median(runs, "own") for runs in yardsticks)
            label = f"{count:,} applications"
            self.milliseconds(f"{label}: the agent itself", own[count])
            self.milliseconds(f"{label}: the floor, parsing and deflating alone", floor)
            self.milliseconds(f"{label}: the script", script)
            goals = ("at most 1.4", "at least 3.3") if count == 10000 else ("", "")
            self.ratio(f"{label}: agent / floor", own[count] / floor, goals[0])
            self.ratio(f"{label}: script / agent", script / own[count], goals[1])
            self.ratio(f"{label}: peak memory / XML", median(scans, "peak") / os.path.getsize(xml),
                       "at most 4" if count == 100000 else "")
        if 100000 in own:
            self.ratio("100,000 applications / 10,000", own[100000] / own[10000], "at most 10.2")

    def processes(self, counts):
        self.machine("empty")
        bench = self.program("orbex_bench")
        for count in counts:
            turns = []
            for _ in range(5):
                before, = self.scan("empty", times=1)  # all other commands, and the processes that are there
                with subprocess.Popen([bench, "sleep", str(count)], stdin=subprocess.PIPE,
                                      stdout=subprocess.PIPE) as sleepers:
                    sleepers.stdout.readline()
                    (scan,), (loop,) = self.turns("empty", self.agent, [bench, "popen", str(count)], times=1)
                turns.append((scan, (scan.wall - before.wall) / loop.wall))
            scans, ratios = zip(*turns)
            label = f"{count:,} processes"
            self.milliseconds(f"{label}: the agent itself", median(scans, "own"))
            self.milliseconds(f"{label}: the agent and its commands, elapsed", median(scans, "wall"))
            self.ratio(f"{label}: what they add / a bare loop over the same tool", statistics.median(ratios),
                       "at most 1.1")

    def lists(self, count):
        self.machine("users", users=count)
        self.milliseconds(f"{count:,} users: the agent itself", median(self.scan("users", times=3), "own"))
        self.machine("volumes", volumes=count)
        self.milliseconds(f"{count:,} volumes: the agent itself", median(self.scan("volumes"), "own"))

    def output(self, length):
        machine = f"output-{length}"
        self.machine(machine, environment=length)
        peak = median(self.scan(machine, times=1), "peak")
        size = length + os.path.getsize(self.snapshot(machine))
        # Of less, the program itself is a part that counts.
        goal = "at most 2.2" if length >= 200 * MEGABYTE else ""
        self.ratio(f"{length / MEGABYTE:.0f} MB of env: peak memory / output and file", peak / size, goal)

    def readers(self, count):
        file = self.snapshot(f"applications-{count}")
        commands = ["verify"], ["csv", "software"]
        runs = self.turns("empty", [self.program("orbex_bench"), "inflate", file],
                          *([self.program("huxutil"), *command, file] for command in commands))
        bare, *readers = (median(each, "own") for each in runs)
        label = f"snapshot of {count:,} applications"
        self.milliseconds(f"{label}: bare inflate", bare)
        for command, reader in zip(commands, readers):
            self.ratio(f"{label}: {' '.join(command)} / bare inflate", reader / bare, "at most 3")


def main():
    quick = "--quick" in sys.argv
    counts = [1000, 10000] if quick else [1000, 10000, 100000]
    load = os.getloadavg()[0]
    print(f"{time.strftime('%Y-%m-%d')}, {platform.system()} {platform.machine()}, {os.cpu_count()} processors, "
          f"load {load:.1f}\n")
    with tempfile.TemporaryDirectory() as folder:
        bench = Bench(os.path.abspath(sys.argv[1]), quick, folder)
        bench.applications(counts)
        bench.processes([300] if quick else [300, 3000])
        bench.lists(500 if quick else 5000)
        for length in [20_000_000] if quick else [200_000_000, 1_000_000_000]:
            bench.output(length)
        bench.readers(counts[-1])


main()
