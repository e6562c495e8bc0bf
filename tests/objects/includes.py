#!/usr/bin/env python3
"""Checks that the library's includes point downward: includes.py ZORVAN_FOLDER

Facades know entries and the sizes of work memory, and no kernel; kernels know no facade; what all share knows
nobody. A new folder needs a line here.
"""

import os
import re
import sys

# For each layer the other layers that it may include.
BELOW = {
    "foundation": [],
    "primitives/frame": ["foundation"],
    "primitives/kernels": ["primitives/frame", "foundation"],
    "containers": ["primitives/frame", "foundation"],
    "methods": ["primitives/frame", "foundation"],
    "operations": ["methods", "primitives/frame", "foundation"],
    "ipp.h": ["operations", "foundation"],
}
INCLUDE = re.compile(r'\s*#\s*include\s*"([^"]*)"')


def layer(path):
    """The layer of a path below the library's folder; None if it has none."""
    return next((name for name in BELOW if path == name or path.startswith(name + "/")), None)


def sources(root):
    for folder, _, names in os.walk(root):
        for name in sorted(names):
            if name.endswith((".h", ".cpp", ".def")):
                yield os.path.relpath(os.path.join(folder, name), root)


def complaints(root):
    """A line for each include that does not point downward; none if all is well."""
    found = []
    for path in sources(root):
        own = layer(path)
        if own is None:
            found.append(f"{path}: is in no layer")
            continue
        with open(os.path.join(root, path), encoding="utf-8") as lines:
            for number, text in enumerate(lines, 1):
                include = INCLUDE.match(text)
                if not include:
                    continue
                library, _, target = include[1].partition("/")
                if library != "zorvan" or layer(target) not in (own, *BELOW[own]):
                    found.append(f"{path}:{number}: {own} includes {include[1]}")
    return found


def main():
    found = complaints(sys.argv[1])
    for text in found:
        print(text)
    count = sum(1 for _ in sources(sys.argv[1]))
    print(f"includes: {count} files, {len(found)} complaints")
    return 1 if found or not count else 0


if __name__ == "__main__":
    sys.exit(main())
