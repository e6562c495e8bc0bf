"""The output of nm, objdump and readelf about an object or a shared library."""

import re
import subprocess
from collections import namedtuple

Symbol = namedtuple("Symbol", "address letter name")
Section = namedtuple("Section", "name address size flags")
Instruction = namedtuple("Instruction", "address function name operands target")

# Words that objdump prints before the name of an instruction.
PREFIX = re.compile(r"repn?z?|lock|notrack|bnd|[cdefgs]s|data16|addr32|rex(\.\w+)?")

# The lines that objdump prints for the beginning of a function and for an instruction: address, words, comment.
FUNCTION = re.compile(r"[0-9a-f]+ <(.*)>:")
INSTRUCTION = re.compile(r" *([0-9a-f]+):\t([^#\t]*)(?:#([^\t]*))?")
NAMED_ADDRESS = re.compile(r"<.*>")


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def definedSymbols(path):
    """The symbols that the file defines, by their C++ names."""
    symbols = []
    for line in output("nm", "--defined-only", "--demangle", path).splitlines():
        found = re.fullmatch(r"([0-9a-f]{16}) (\S) (.*)", line)
        if found:
            symbols.append(Symbol(int(found[1], 16), found[2], found[3]))
    return symbols


def undefinedNames(path):
    return {line.split()[-1] for line in output("nm", "--undefined-only", path).splitlines()}


def groupSignatures(path):
    """The names of groups of sections, of which the linker keeps one of several equal ones."""
    groups = output("readelf", "--section-groups", "-W", path)
    mangled = re.findall(r"^COMDAT group section .* \[(.*?)\] contains", groups, re.M)
    return output("c++filt", *mangled).splitlines() if mangled else []


def sections(path):
    found = re.findall(
        r"^ *\[ *\d+\] (\S+) +\S+ +([0-9a-f]+) [0-9a-f]+ ([0-9a-f]+) [0-9a-f]+ +([A-Za-z]*) +\d+ +\d+ +\d+$",
        output("readelf", "--sections", "-W", path), re.M)
    return [Section(name, int(address, 16), int(size, 16), flags) for name, address, size, flags in found]


def segments(path):
    """Name, address, size in memory and flags of each program header."""
    found = re.findall(r"^ +([A-Z_]+) +0x\S+ 0x(\S+) 0x\S+ 0x\S+ 0x(\S+) ([RWE ]{3})",
                       output("readelf", "--segments", "-W", path), re.M)
    return [Section(name, int(address, 16), int(size, 16), flags) for name, address, size, flags in found]


def dynamicEntries(path):
    return output("readelf", "--dynamic", "-W", path)


def instructions(path):
    """All instructions of the sections with code, in Intel syntax. `target` is the address and symbol that
    objdump computes for an operand relative to the instruction."""
    function = ""
    text = output("objdump", "--disassemble", "--no-show-raw-insn", "--demangle", "-M", "intel", path)
    for line in text.splitlines():
        if found := INSTRUCTION.match(line):
            address, text, target = found.groups()
            words = NAMED_ADDRESS.sub("", text).split()
            while len(words) > 1 and PREFIX.fullmatch(words[0]):
                words = words[1:]
            if words and not PREFIX.fullmatch(words[0]):
                yield Instruction(int(address, 16), function, words[0], " ".join(words[1:]), (target or "").strip())
        elif head := FUNCTION.fullmatch(line):
            function = head[1]
