#!/usr/bin/env -S python3 -B
"""Names the rows of the benchmark that a change made slower, or faster.

    compare.py BEFORE.json AFTER.json           two results of zorvan_bench
    compare.py BEFORE AFTER [options]           two build folders

The programs of two build folders run alternately on one processor, each for two milliseconds, so that a change of its
speed affects both. They measure the library only. Rows that seem to differ are measured again, by new processes. The
options are --rounds=N, the number of runs of each row (default: 15), and those of zorvan_bench that choose rows.

A row's time is the minimum of its runs. Its noise is the relative difference between the minima of the even and of
the odd runs, or, of a single run, the one that the run has recorded. A row is named if its times differ by more than
3 % and the noise of both, and if three of four pairs of runs agree: a minimum alone can be that of a faster moment. The
status is 1 if a row is slower, fails or is missing after the change.
"""

import argparse
import json
import math
import os
import pathlib
import subprocess
import sys

from report import text_table

# Two minima of the same code can differ by this factor.
TOLERANCE = 1.03
# The share of the pairs of runs in which the slower one must be slower.
AGREEING = 0.75

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

    def best(self):
        return min(self.times)

    def noise(self):
        if len(self.times) == 1:
            return self.recorded_noise[0]
        minima = [min(self.times[0::2]), min(self.times[1::2])]
        return max(minima) / min(minima) - 1


def read_into(rows, path):
    with open(path, encoding="utf-8") as file:
        for entry in json.load(file)["benchmarks"]:
            if entry["run_type"] == "iteration":  # no mean or deviation of repetitions
                rows.setdefault(entry["name"].removesuffix(SUFFIX), Row()).add(entry)


def ratio(before, after):
    return after.best() / before.best()


def is_slower(before, after):
    pairs = list(zip(before.times, after.times))
    agreeing = sum(first < second for first, second in pairs)
    return (ratio(before, after) > TOLERANCE * (1 + before.noise()) * (1 + after.noise())
            and agreeing >= AGREEING * len(pairs))


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


def in_doubt(both):
    before, after = both
    return [name for name in before if usable(before, name) and usable(after, name)
            and not 1 / TOLERANCE <= ratio(before[name], after[name]) <= TOLERANCE]


def measure_folders(folders, options, rounds):
    programs = [program_of(folder) for folder in folders]
    # The programs stay on the processor on which they begin, and they inherit this one.
    os.sched_setaffinity(0, {min(os.sched_getaffinity(0))})
    names = [names_of(program, options) for program in programs]
    both = {}, {}
    measure(programs, options, [name for name in names[0] if name in set(names[1])], rounds, both)
    for _ in range(REPEATS):
        if doubtful := in_doubt(both):
            measure(programs, options, doubtful, rounds, both)
    for side, other in ((0, 1), (1, 0)):
        for name in names[side]:
            if name not in names[other]:
                both[side].setdefault(name, Row())
    return both


def report(before, after):
    """Prints the table. Returns whether the change made something worse."""
    common = [name for name in before if usable(before, name) and usable(after, name)]
    slower = [name for name in common if is_slower(before[name], after[name])]
    faster = [name for name in common if is_slower(after[name], before[name])]
    changed = sorted(slower + faster, key=lambda name: -ratio(before[name], after[name]))
    if changed:
        print("\n".join(text_table(
            [("", "row", "before ns", "after ns", "ratio", "noise"),
             *(("slower" if name in slower else "faster", name, f"{before[name].best():.0f}",
                f"{after[name].best():.0f}", f"{ratio(before[name], after[name]):.3f}",
                f"{max(before[name].noise(), after[name].noise()):.3f}") for name in changed)])))
    lost = [name for name in before if name not in after]
    failed = [name for name in after if after[name].failures]
    new = [name for name in after if name not in before]
    for name in lost:
        print(f"missing after the change: {name}")
    for name in failed:
        print(f"fails after the change: {name}: {after[name].failures[0]}")
    if common:
        mean = math.exp(sum(math.log(ratio(before[name], after[name])) for name in common) / len(common))
        noisy = sum(max(before[name].noise(), after[name].noise()) > 0.05 for name in common)
        print(f"{len(common)} rows: {len(slower)} slower, {len(faster)} faster, {noisy} with a noise "
              f"above 5 %; geometric mean of the ratios {mean:.3f}" + (f"; {len(new)} new rows" if new else ""))
    else:
        sys.exit("no row has a time in both")
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
