#!/usr/bin/env python3
"""Plants faults in the library, one at a time, and reports those that no quick test notices.

run_mutants.py ROOT BUILD FOLDER [--count=N] [--seed=N] [--files=REGEX] [--again]

ROOT     the repository, which is only read
BUILD    a build folder with all tests
FOLDER   for the log, and for what is compiled here
--count  the number of faults that change machine code; 100 without it
--seed   draws other faults
--files  only files whose path matches
--again  only the survivors in the log, once more

A fault in a header of kernels is compiled for one variant, drawn among those that this processor runs and whose
machine code it changes, first with lowered limits, then with the library's. The changed objects are linked with the build folder's, so that only
the sources that include the file are compiled, at -O1.

The log has a line of JSON for each fault. Faults that it already has are not tried again, so that an ended run
continues. The order of faults depends on the seed and on the sources only.
"""

import argparse
import collections
import concurrent.futures
import contextlib
import difflib
import filecmp
import json
import os
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import threading
import time

sys.path.insert(1, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "objects"))

import builds
import changes
import same_code

SECONDS = 60  # of processor time for one process: a fault may make a loop endless
BYTES = 8 << 30

# The folders of test programs for the parts of the library, in the order in which they run.
PROGRAMS = {
    "zorvan/containers": ("foundation", "facades"),
    "zorvan/foundation": ("foundation", "facades"),
    "zorvan/methods": ("facades",),
    "zorvan/operations": ("facades",),
    "zorvan/primitives/frame": ("frame",),
    "zorvan/primitives/kernels/memory": ("foundation", "facades"),
}

KILLED, SURVIVED, REFUSED, SAME = "killed", "survived", "did not compile", "same machine code"
ABSENT = "not in the code of this processor"


class Refused(Exception):
    """The changed file does not compile, or the library with it does not link."""


class Killed(Exception):
    """A test has failed; its text says which."""


def limitResources():
    resource.setrlimit(resource.RLIMIT_CPU, (SECONDS, SECONDS))
    resource.setrlimit(resource.RLIMIT_AS, (BYTES, BYTES))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def execute(program, *options):
    """Runs a test program until its first failure."""
    with subprocess.Popen([program, "--gtest_fail_fast", "--gtest_brief=1", *options], stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, errors="replace", start_new_session=True,
                          preexec_fn=limitResources) as running:
        try:
            output, _ = running.communicate(timeout=4 * SECONDS)
        finally:
            # A program may have started others. One that waits for ever keeps the pipe open.
            with contextlib.suppress(ProcessLookupError):
                os.killpg(running.pid, signal.SIGKILL)
    if running.returncode == 0:
        return
    failed = re.search(r"\[  FAILED  \] ([^\s,]+)", output)
    how = failed[1] if failed else f"ended by {signal.Signals(-running.returncode).name}" if running.returncode < 0 \
        else f"ended with {running.returncode}"
    raise Killed(f"{os.path.basename(program)}: {how}")


class Trial:
    """One fault: compiles what it changes, and runs the tests."""

    def __init__(self, build, fault, variants, folder):
        self.build, self.path, self.folder = build, fault["file"], folder
        self.overlay = os.path.join(folder, "overlay")
        shutil.rmtree(folder, ignore_errors=True)
        changed = os.path.join(self.overlay, self.path)
        os.makedirs(os.path.dirname(changed))
        with open(os.path.join(build.root, self.path), encoding="utf-8") as file:
            self.before = file.read()
        lines = self.before.split("\n")
        lines[fault["line"] - 1] = fault["after"]
        self.after = "\n".join(lines)
        with open(changed, "w", encoding="utf-8") as file:
            file.write(self.after)

        self.includers = build.includers(self.path)
        self.kernels = collections.defaultdict(list)
        for obj in self.includers:
            if found := builds.KERNELS.match(obj):
                self.kernels[found[2]].append(obj)
        self.shared = [obj for obj in self.includers if re.match(r"zorvan/CMakeFiles/zorvan_(base|frame)\.dir/", obj)]
        self.variants = [variant for variant in variants if any(map(self.appears, self.kernels[variant]))]
        self.compiled = {}  # new objects whose bytes differ
        self.present = False  # whether the changed line is compiled at all
        self.variant = None

    def source(self, obj):
        return os.path.relpath(self.build.compilers[obj][-1], self.build.root)

    def compile(self, objects):
        """The changed objects among `objects`, by the names of those that they replace."""
        for obj in objects:
            if obj in self.compiled:
                continue
            output = os.path.join(self.folder, obj.replace("/", "_"))
            if not self.build.compile(obj, self.overlay, self.source(obj), output) or \
                    self.build.missesNames(obj, output):
                raise Refused
            same = self.build.comparable(obj) and filecmp.cmp(output, os.path.join(self.build.folder, obj), False)
            self.compiled[obj] = None if same else output
        return {obj: self.compiled[obj] for obj in objects if self.compiled[obj]}

    def run(self, program, objects, *options):
        if objects:
            output = os.path.join(self.folder, os.path.basename(program))
            if not self.build.link(program, objects, output):
                raise Refused
            try:
                execute(output, *options)
            finally:
                os.remove(output)

    def ofParts(self):
        """The tests of parts that all variants share, and of plans."""
        if not self.shared and not any(obj.startswith("tests/") for obj in self.includers):
            return
        folders = next((folders for part, folders in PROGRAMS.items() if self.path.startswith(part + "/")), ())
        programs = [program for folder in folders for program in sorted(self.build.programs)
                    if program.startswith(f"tests/{folder}/")]
        family = os.path.basename(os.path.dirname(self.path))
        programs.sort(key=lambda program: family not in program)
        programs += ["tests/entries/plan_tests", "tests/entries/copy_leaf2_tests"]
        if not folders:
            near = [obj for obj in self.build.compilers if "zorvan_base.dir" in obj
                    and os.path.dirname(self.source(obj)) == os.path.dirname(self.path)]
            entries = set().union(*map(self.build.entries, near))
            if self.shared and entries:
                programs += [program for program in sorted(self.build.programs)
                             if program.startswith("tests/entries/") and not program.endswith("_lowered")
                             and self.build.tests(program, entries)]
        for program in programs:
            own = [obj for obj in self.build.ownObjects(program) if obj in self.includers]
            if own or self.shared:
                self.present = True
                self.run(program, self.compile(self.shared + own))

    def ofKernels(self, variant, lowered):
        """The tests of the families whose kernels include the file, in one variant with one set of limits."""
        objects = [obj for obj in self.kernels[variant] if ("lowered_kernels" in obj) == lowered]
        if not objects or not self.appears(objects[0]):
            return False
        self.present = True
        # The kernels of morphology take longest to compile.
        objects.sort(key=lambda obj: "morphology" in obj)
        differs = False
        for obj in objects:
            twin = obj.replace("zorvan_kernels", "zorvan_lowered_kernels")
            if not lowered and self.compiled.get(twin, "") is None and self.appears(twin):
                continue
            changed = self.compile([obj])
            differs |= bool(changed)
            for program in sorted(self.build.programs):
                if not program.startswith("tests/entries/") or program.endswith("_lowered") != lowered:
                    continue
                if program.endswith(("plan_tests", "leaf2_tests")):
                    continue
                if self.build.tests(program, self.build.entries(obj)):
                    self.run(program, changed, f"--variant={variant}")
        return differs

    def appears(self, obj):
        """Whether the changed line is among those that the preprocessor leaves."""
        return self.build.preprocessed(obj, self.before) != self.build.preprocessed(obj, self.after)

    def verdict(self):
        try:
            self.ofParts()
            for variant in self.variants:
                self.variant = variant
                differs = [self.ofKernels(variant, lowered) for lowered in (True, False)]
                if any(differs):
                    break
        except Refused:
            return REFUSED, ""
        except Killed as killed:
            return KILLED, str(killed)
        except subprocess.TimeoutExpired:
            return KILLED, "does not end"
        if not self.present:
            return ABSENT, ""
        return (SURVIVED if self.changesCode() else SAME), ""

    def changesCode(self):
        for obj, output in self.compiled.items():
            if output and not obj.startswith("tests/"):
                before = os.path.join(self.build.folder, obj)
                if not self.build.comparable(obj):
                    before = os.path.join(self.folder, "before.o")
                    self.build.compile(obj, "/none", self.source(obj), before)
                if same_code.difference(before, output) or \
                        self.build.initialData(before) != self.build.initialData(output):
                    return True
        return False


def drawn(root, seed, files):
    """All faults in an order that the seed determines: of each line, in turn, one."""
    generator = random.Random(seed)
    lines = []
    for folder, _, names in sorted(os.walk(os.path.join(root, "zorvan"))):
        for name in sorted(names):
            path = os.path.relpath(os.path.join(folder, name), root)
            if not name.endswith((".h", ".cpp")) or not re.search(files, path):
                continue
            with open(os.path.join(root, path), encoding="utf-8") as file:
                text = file.read().split("\n")
            for number, line in enumerate(text):
                if found := changes.changed(line):
                    lines.append((path, number, line, found))
    generator.shuffle(lines)
    for path, number, line, found in lines:
        kind, after = generator.choice(found)
        yield {"file": path, "line": number + 1, "kind": kind, "before": line, "after": after,
               "order": generator.random()}


def identity(fault):
    return fault["file"], fault["before"], fault["after"], fault["line"]


def difference(fault):
    text = difflib.unified_diff([fault["before"]], [fault["after"]], fault["file"], fault["file"], lineterm="", n=0)
    lines = [line for line in text if not line.startswith("@@")]
    lines.insert(2, f"@@ -{fault['line']} +{fault['line']} @@ {fault['variant'] or ''}".rstrip())
    return "\n".join(lines)


def runningVariants(root, build):
    with open(os.path.join(root, "zorvan/primitives/frame/Variants.def"), encoding="utf-8") as file:
        names = re.findall(r"^VARIANT\((\w+),", file.read(), re.M)
    program = os.path.join(build.folder, "tests/entries/set_tests")
    return [name for name in names if "SKIPPED" not in builds.run([program, f"--variant={name}", "--level=few"]).stdout]


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("root")
    parser.add_argument("build")
    parser.add_argument("folder")
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--files", default="")
    parser.add_argument("--again", action="store_true")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    options = parser.parse_args()

    root, folder = os.path.abspath(options.root), os.path.abspath(options.folder)
    os.makedirs(folder, exist_ok=True)
    build = builds.Build(root, os.path.abspath(options.build))
    variants = runningVariants(root, build)
    log = os.path.join(folder, "log.jsonl")
    known = {}
    if os.path.exists(log):
        with open(log, encoding="utf-8") as lines:
            known = {identity(fault): fault for fault in map(json.loads, lines)}

    faults = list(drawn(root, options.seed, options.files))
    if options.again:
        faults = [fault for fault in faults if known.get(identity(fault), {}).get("verdict") == SURVIVED]
        known = {}
    lock, results = threading.Lock(), []
    waiting = iter(faults)

    def changedCode():
        return sum(fault["verdict"] in (KILLED, SURVIVED) for fault in results)

    def work(worker):
        while True:
            with lock:
                fault = next(waiting, None) if changedCode() < options.count else None
            if fault is None:
                return
            if identity(fault) in known:
                fault = known[identity(fault)]
            else:
                began = time.monotonic()
                order = variants[:]
                random.Random(fault.pop("order")).shuffle(order)
                trial = Trial(build, fault, order, os.path.join(folder, f"trial{worker}"))
                fault["verdict"], fault["by"] = trial.verdict()
                fault["variant"], fault["seconds"] = trial.variant, round(time.monotonic() - began)
                with lock, open(log, "a", encoding="utf-8") as file:
                    print(json.dumps(fault), file=file)
                print(f"{fault['verdict']:17} {fault['file']}:{fault['line']} {fault['variant'] or ''} {fault['by']}", flush=True)
            with lock:
                results.append(fault)

    def workOrEndAll(worker):
        nonlocal waiting
        try:
            work(worker)
        except BaseException:
            waiting = iter(())
            raise

    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        list(pool.map(workOrEndAll, range(options.jobs)))

    print()
    for fault in results:
        if fault["verdict"] == SURVIVED:
            print(difference(fault))
    counts = collections.Counter(fault["verdict"] for fault in results)
    print()
    for verdict in (KILLED, SURVIVED, SAME, REFUSED, ABSENT):
        print(f"{counts[verdict]:5} {verdict}")


if __name__ == "__main__":
    main()
