#!/usr/bin/env -S python3 -B
"""Names the rows of the benchmark that a change made slower, or faster.

    compare.py BEFORE.json AFTER.json           two results of zorvan_bench
    compare.py BEFORE AFTER [options]           two build folders

The programs of two build folders run alternately on one processor, each for two milliseconds, so that a change of its
speed affects both. They measure the library only. Rows that seem to differ are measured again, by new processes. The
options are --rounds=N, the number of runs of each row (default: 15), and those of zorvan_bench that choose rows.

The ratio of a row is the median of the ratios of its pairs of runs. It lies between two of these ratios with a
certainty of three standard deviations; half of their distance is the noise. For a single run it is computed from the
noise that the run has recorded. A row is named if its ratio differs from 1 by more than 3 % and by more than the noise.
The status is 1 if a row is slower, fails or is missing after the change.
"""

import argparse
import json
import math
import os
import pathlib
import statistics
import subprocess
import sys

from report import text_table

# Two minima of the same code can differ by this factor.
TOLERANCE = 1.03

RUN_NANOSECONDS = 2e6  # one run of a row, as long as many calls or some time slices
# How often rows that seem to differ are measured again, with the same number of rounds.
REPEATS = 3

SUFFIX = "/iterations:1/manual_time"


class Row:
    """The times of one row in several runs."""

    def __init__(self):
        self.times, self.recorded_noise, self.failures = [], [], []

    def add(self, entry):
        if entry.get("error_occurred"):
            self.failures.append(entry["error_message"])
        else:
            self.times.append(entry["real_time"])
            self.recorded_noise.append(entry["ours_noise"])


def read_into(rows, path):
    with open(path, encoding="utf-8") as file:
        for entry in json.load(file)["benchmarks"]:
            if entry["run_type"] == "iteration":  # no mean or deviation of repetitions
                rows.setdefault(entry["name"].removesuffix(SUFFIX), Row()).add(entry)


class Change:
    """The times of a row after the change over those before, and between which values this ratio lies."""

    def __init__(self, before, after):
        self.before, self.after = min(before.times), min(after.times)
        ratios = sorted(second / first for first, second in zip(before.times, after.times))
        self.ratio = statistics.median(ratios)
        if len(ratios) == 1:
            noise = (1 + before.recorded_noise[0]) * (1 + after.recorded_noise[0])
            self.low, self.high = self.ratio / noise, self.ratio * noise
        else:
            # Of n ratios, n / 2 are expected below the true one, with a standard deviation of sqrt(n) / 2.
            beyond = max(0, int(len(ratios) / 2 - 1.5 * math.sqrt(len(ratios))))
            self.low, self.high = ratios[beyond], ratios[-1 - beyond]
        self.noise = (self.high - self.low) / 2 / self.ratio

    def is_large(self):
        return not 1 / TOLERANCE <= self.ratio <= TOLERANCE

    def is_certain(self):
        return self.low > 1 or self.high < 1


def usable(rows, name):
    return name in rows and rows[name].times and not rows[name].failures


def program_of(folder):
    program = folder / "bench" / "zorvan_bench"
    if not program.is_file():
        sys.exit(f"{program} is missing; build the target zorvan_bench with -DZORVAN_IPP_BENCHMARKS=ON")
    return program


def names_of(program, options):
    listed = subprocess.run([program, "--benchmark_list_tests", "--ours", *options], stdout=subprocess.PIPE, check=True,
                            text=True)
    return [name.removesuffix(SUFFIX) for name in listed.stdout.split()]


class Server:
    """A program that measures the rows that it is asked for."""

    def __init__(self, program, options):
        self.program = program
        self.process = subprocess.Popen([program, "--serve", *options], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        text=True)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.wait()
        self.process.stdout.close()

    def ask(self, text):
        self.process.stdin.write(f"{text}\n")
        self.process.stdin.flush()
        if not (answer := self.process.stdout.readline()):
            sys.exit(f"{self.program} ended, asked for {text}")
        return answer

    def nanoseconds(self, calls):
        return float(self.ask(calls))


def measure_row(servers, name, rounds, rows):
    for server in servers:
        server.ask(name)
    first = min(server.nanoseconds(2) for server in servers)
    short = min(server.nanoseconds(max(1, int(RUN_NANOSECONDS / 10 / first))) for server in servers)
    calls = max(1, int(RUN_NANOSECONDS / short))
    for index in range(rounds):
        # before after, after before, ...: neither is always the first
        for side in (0, 1) if index % 2 == 0 else (1, 0):
            rows[side].times.append(servers[side].nanoseconds(calls))


def measure(programs, options, names, rounds, both):
    with Server(programs[0], options) as before, Server(programs[1], options) as after:
        for done, name in enumerate(names, 1):
            measure_row((before, after), name, rounds, [side.setdefault(name, Row()) for side in both])
            print(f"\r{done} of {len(names)} rows", end="", file=sys.stderr, flush=True)
    print(file=sys.stderr)


def changes(before, after):
    return {name: Change(before[name], after[name]) for name in before if usable(before, name) and usable(after, name)}


def measure_folders(folders, options, rounds):
    programs = [program_of(folder) for folder in folders]
    # The programs stay on the processor on which they begin, and they inherit this one.
    os.sched_setaffinity(0, {min(os.sched_getaffinity(0))})
    names = [names_of(program, options) for program in programs]
    both = {}, {}
    measure(programs, options, [name for name in names[0] if name in set(names[1])], rounds, both)
    for _ in range(REPEATS):
        if large := [name for name, change in changes(*both).items() if change.is_large()]:
            measure(programs, options, large, rounds, both)
    for side, other in ((0, 1), (1, 0)):
        for name in names[side]:
            if name not in names[other]:
                both[side].setdefault(name, Row())
    return both


def report(before, after):
    """Prints the table. Returns whether the change made something worse."""
    common = changes(before, after)
    named = [(name, change) for name, change in common.items() if change.is_large() and change.is_certain()]
    named.sort(key=lambda pair: -pair[1].ratio)
    slower = [name for name, change in named if change.ratio > 1]
    if named:
        print("\n".join(text_table(
            [("", "row", "before ns", "after ns", "ratio", "noise"),
             *(("slower" if change.ratio > 1 else "faster", name, f"{change.before:.0f}", f"{change.after:.0f}",
                f"{change.ratio:.3f}", f"{change.noise:.3f}") for name, change in named)])))
    lost = [name for name in before if name not in after]
    failed = [name for name in after if after[name].failures]
    new = [name for name in after if name not in before]
    for name in lost:
        print(f"missing after the change: {name}")
    for name in failed:
        print(f"fails after the change: {name}: {after[name].failures[0]}")
    if not common:
        sys.exit("no row has a time in both")
    mean = math.exp(sum(math.log(change.ratio) for change in common.values()) / len(common))
    noisy = sum(change.noise > 0.05 for change in common.values())
    print(f"{len(common)} rows: {len(slower)} slower, {len(named) - len(slower)} faster, {noisy} with a noise above 5 %; "
          f"geometric mean of the ratios {mean:.3f}" + (f"; {len(new)} new rows" if new else ""))
    return bool(slower or lost or failed)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("before", type=pathlib.Path, metavar="BEFORE")
    parser.add_argument("after", type=pathlib.Path, metavar="AFTER")
    parser.add_argument("--rounds", type=int, default=15, metavar="N")
    arguments, options = parser.parse_known_args()
    sides = arguments.before, arguments.after
    if all(path.is_dir() for path in sides):
        if arguments.rounds < 2:
            parser.error("the noise needs at least two rounds")
        before, after = measure_folders(sides, options, arguments.rounds)
    elif all(path.is_file() for path in sides):
        if options:
            parser.error(f"results take no options: {' '.join(options)}")
        before, after = {}, {}
        read_into(before, sides[0])
        read_into(after, sides[1])
    else:
        parser.error("BEFORE and AFTER are two results or two build folders")
    return 1 if report(before, after) else 0


if __name__ == "__main__":
    sys.exit(main())
