"""The output of nm, objdump and readelf about an object or a shared library."""

import functools
import re
import subprocess
import sys
import tempfile
from collections import namedtuple

Symbol = namedtuple("Symbol", "address letter name")
Section = namedtuple("Section", "name address size flags")
Instruction = namedtuple("Instruction", "address function name operands target code section", defaults=("", ""))

# Words that objdump prints before the name of an instruction.
PREFIX = re.compile(r"repn?z?|lock|notrack|bnd|[cdefgs]s|data16|addr32|rex(\.\w+)?|\{evex\}")

# The line that objdump prints for the beginning of a section.
SECTION = re.compile(r"Disassembly of section (.*):")
NAMED_ADDRESS = re.compile(r"<.*>")


def output(*command, words=None):
    return subprocess.run(command, check=True, capture_output=True, text=True, input=words).stdout


def definedSymbols(path):
    """The symbols that the file defines, by their C++ names."""
    symbols = []
    for line in output("nm", "--defined-only", "--demangle", path).splitlines():
        found = re.fullmatch(r"([0-9a-f]{16}) (\S) (.*)", line)
        if found:
            symbols.append(Symbol(int(found[1], 16), found[2], found[3]))
    return symbols


def undefinedNames(path):
    """The names that the file takes from others: of C++ names the demangled ones."""
    return {line.strip().partition(" ")[2] for line in output("nm", "--undefined-only", "--demangle", path).splitlines()}


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


def constants(path):
    """The address and the bytes of the section with constants."""
    address = next(s.address for s in sections(path) if s.name == ".rodata")
    with tempfile.NamedTemporaryFile() as file:
        output("objcopy", "--output-target=binary", "--only-section=.rodata", path, file.name)
        return address, file.read()


def functionSections(path):
    """The names of functions, each with the section that holds it."""
    numbered = dict(enumerate(sections(path), start=1))
    found = re.findall(r"^ *\d+: [0-9a-f]+ +\S+ I?FUNC +\S+ +\S+ +(\d+) (\S+)$",
                       output("readelf", "--symbols", "-W", path), re.M)
    return [(name, numbered[int(number)]) for number, name in found]


def segments(path):
    """Name, address, size in memory and flags of each program header."""
    found = re.findall(r"^ +([A-Z_]+) +0x\S+ 0x(\S+) 0x\S+ 0x\S+ 0x(\S+) ([RWE ]{3})",
                       output("readelf", "--segments", "-W", path), re.M)
    return [Section(name, int(address, 16), int(size, 16), flags) for name, address, size, flags in found]


def dynamicEntries(path):
    return output("readelf", "--dynamic", "-W", path)


@functools.cache
def _withoutPrefixes(text):
    """Name and operands. A prefix without an instruction is the name."""
    words = NAMED_ADDRESS.sub("", text).split()
    while len(words) > 1 and PREFIX.fullmatch(words[0]):
        words = words[1:]
    return sys.intern(words[0]), " ".join(words[1:])


def instructions(path, first=0, behind=None):
    """The instructions of the sections with code, in Intel syntax: all, or those from one address to before another.
    `code` is the bytes as hexadecimal numbers with spaces between, `target` the address and symbol that objdump computes
    for an operand relative to the instruction."""
    section = function = ""
    area = [f"--start-address={first}"] + ([f"--stop-address={behind}"] if behind else [])
    lines = output("objdump", "--disassemble", "--disassemble-zeroes", "--wide", "-M", "intel", *area, path).splitlines()
    # Names with template arguments are long, and objdump prints them with each jump.
    mangled = [line.split("<", 1)[1][:-2] for line in lines if line.endswith(">:")]
    names = iter(output("c++filt", words="\n".join(mangled)).splitlines())
    for line in lines:
        # Address, bytes, words; after # the comment.
        columns = line.split("\t")
        if len(columns) > 2:
            words, _, target = columns[2].partition("#")
            name, operands = _withoutPrefixes(words)
            yield Instruction(int(columns[0].rstrip(":"), 16), function, name, operands, target.strip(),
                              columns[1].rstrip(), section)
        elif line.endswith(">:"):
            function = next(names)
        elif head := SECTION.fullmatch(line):
            section = head[1]
