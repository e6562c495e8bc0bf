#!/usr/bin/env python3
"""Checks the sources themselves: sources.py CHECK ROOT

vectors  Kernels load and store pixels by the helpers of zorvan/primitives/kernels/simd: no other source of the
         library has loads, stores, prefetches or tail masks of its own.
names    The sources of kernels, and those that are programs, are named in snake_case, and programs of tests end in
         _test.cpp. What is named after a class, a record or a list may have capitals.
"""

import os
import re
import sys

VECTOR_ACCESS = re.compile(r"\b(_mm\d*_\w*(load|store|stream)\w*|_mm_prefetch|__builtin_prefetch|_bzhi_\w+)")
COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.DOTALL)
SNAKE_CASE = re.compile(r"[a-z0-9]+(_[a-z0-9]+)*\.(h|cpp|def)")
KERNELS = "zorvan/primitives/kernels/"
VECTOR_LAYER = KERNELS + "simd/"
TEST = re.compile(r"^(TEST|TEST_F|TEST_P|TYPED_TEST)\(|^void (Zorvan::Test::)?registerEntryTests\(\) \{", re.MULTILINE)
PROGRAM = re.compile(r"^int main\(", re.MULTILINE)


def sources(root, *folders):
    """The paths below the folders and the code without comments of each."""
    for folder in folders:
        for path, _, names in sorted(os.walk(os.path.join(root, folder))):
            for name in sorted(names):
                if name.endswith((".h", ".cpp", ".def")):
                    file = os.path.join(path, name)
                    with open(file, encoding="utf-8") as text:
                        yield os.path.relpath(file, root), COMMENT.sub("", text.read())


def vectors(root):
    return [f"{path}: {found[0]} belongs into {VECTOR_LAYER}" for path, code in sources(root, "zorvan")
            if not path.startswith(VECTOR_LAYER) and (found := VECTOR_ACCESS.search(code))]


def names(root):
    complaints = []
    for path, code in sources(root, "zorvan", "tests", "bench", "examples"):
        name = os.path.basename(path)
        isProgram = PROGRAM.search(code)
        if (path.startswith(KERNELS) or isProgram or name.endswith("_test.cpp")) and not SNAKE_CASE.fullmatch(name):
            complaints.append(f"{path}: not in snake_case")
        if name.endswith(".cpp") and TEST.search(code) and not name.endswith("_test.cpp"):
            complaints.append(f"{path}: holds tests, but does not end in _test.cpp")
    return complaints


def main():
    check, root = sys.argv[1:]
    complaints = {"names": names, "vectors": vectors}[check](root)
    for text in complaints:
        print(text)
    print(f"{check}: {len(complaints)} complaints")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
