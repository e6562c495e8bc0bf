#!/usr/bin/env python3
"""Compares the machine code of two builds: same_code.py BEFORE AFTER [FAMILY ...]

BEFORE, AFTER  build folders
FAMILY         only objects whose source's name begins so: arithmetic, statistic, ...

For changes that must not change code: renamed functions, moved files, comments. Names do not count, nor does the
order in which the linker would put the functions of an object. Names each object that differs, with the functions
that have no counterpart; ends with 1 if there is one.
"""

import collections
import os
import re
import sys

import binaries

NAME = re.compile(r"<[^<>]+?(\+0x[0-9a-f]+)?>")
RELOCATION = re.compile(r"\s*(R_X86_64_\w+)\s")
FUNCTION = re.compile(r"<(.*)>:")


def objects(folder):
    """The kernels' objects by variant and source. A source keeps its key when its folder or style changes."""
    found = {}
    for path, _, files in os.walk(os.path.join(folder, "zorvan")):
        variant = re.search(r"/zorvan_kernels_(Variant\w+)\.dir", path)
        if variant:
            for name in files:
                if name.endswith(".cpp.o"):
                    found[variant[1], name.removesuffix(".cpp.o").replace("_", "").lower()] = os.path.join(path, name)
    return found


def functions(path):
    """The code of each function by its name, without the names and addresses in it."""
    code, name = {}, None
    for line in binaries.output("objdump", "-d", "-r", "--no-show-raw-insn", "--no-addresses", path).splitlines():
        if found := FUNCTION.fullmatch(line):
            name = found[1]
            code[name] = []
        elif name and line.strip() and not line.startswith("Disassembly"):
            relocation = RELOCATION.match(line)
            code[name].append(relocation[1] if relocation else NAME.sub(r"\1", line).split("#")[0].strip())
    return {name: "\n".join(lines) for name, lines in code.items()}


def constants(path):
    """How often the constants have each word of 4 bytes: the compiler chooses their order."""
    words = collections.Counter()
    for section in binaries.sections(path):
        if section.name.startswith(".rodata"):
            for line in binaries.output("objdump", "-s", "-j", section.name, path).splitlines():
                if found := re.match(r" [0-9a-f]+ ((?:[0-9a-f]+ ){1,4}) ", line):
                    words.update(found[1].split())
    return words


def difference(before, after):
    """Names of the functions of either object that have no counterpart in the other."""
    old, new = functions(before), functions(after)
    missing = collections.Counter(old.values()) - collections.Counter(new.values())
    added = collections.Counter(new.values()) - collections.Counter(old.values())
    return ([f"- {name}" for name, code in old.items() if code in missing] +
            [f"+ {name}" for name, code in new.items() if code in added] +
            (["constants"] if constants(before) != constants(after) else []))


def main():
    before, after = (objects(folder) for folder in sys.argv[1:3])
    families = tuple(sys.argv[3:]) or ("",)
    keys = [key for key in sorted(before.keys() | after.keys()) if key[1].startswith(families)]
    differing = 0
    for key in keys:
        if key not in before or key not in after:
            lines = ["only in one build"]
        else:
            lines = difference(before[key], after[key])
        if lines:
            differing += 1
            print(*key)
            for line in lines:
                print("   ", line)
    print(f"{len(keys)} objects, {differing} differ")
    return 1 if differing or not keys else 0


if __name__ == "__main__":
    sys.exit(main())
