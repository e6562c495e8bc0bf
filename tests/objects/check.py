#!/usr/bin/env python3
"""Checks the library's objects: check.py CHECK OBJECTS LIBRARY ENTRIES

OBJECTS  a file with a line for each object: its part of the library, which is a variant, frame or base; a space; its path
LIBRARY  the shared library
ENTRIES  a program that prints the names of all entries in their order
"""

import sys

import binaries
import checks
import paths
import streaming

SKIPPED = 77
INSTRUMENTATION = ("__asan_", "__tsan_", "__msan_", "__ubsan_", "__gcov", "__llvm_profile", "__sanitizer_")


def readObjects(listFile):
    with open(listFile, encoding="utf-8") as lines:
        return [tuple(line.rstrip("\n").split(" ", 1)) for line in lines if line.strip()]


def run(check, objects, library, entries):
    variants = [(part, path) for part, path in objects if part.startswith("Variant")]
    if not variants:
        return ["no objects to check"]
    if check == "symbols":
        return [c for part, path in variants for c in checks.symbols(part, path)]
    if check == "instructions":
        return [c for part, path in objects for c in checks.instructions(part, path)]
    if check == "initialisers":
        return [c for part, path in variants for c in checks.initialisers(part, path)]
    if check == "memory":
        return [c for _, path in objects for c in checks.stackOfObject(path) + checks.codeInData(path)] + \
            checks.memoryOfLibrary(library)
    names = binaries.output(entries).split()
    if check == "rows":
        return checks.rows(library, len(names))
    if check == "stubs":
        return checks.stubs(library, names)
    if check == "streaming":
        return streaming.streaming(paths.Code(library), names)
    raise SystemExit(f"unknown check {check}")


def main():
    check, listFile, library, entries = sys.argv[1:]
    objects = readObjects(listFile)
    for _, path in objects:
        if any(name.startswith(INSTRUMENTATION) for name in binaries.undefinedNames(path)):
            print("skipped: this build's objects hold the code of a sanitizer or a profiler")
            return SKIPPED
    complaints = run(check, objects, library, entries)
    for text in complaints:
        print(text)
    print(f"{check}: {len(objects)} objects, {len(complaints)} complaints")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
