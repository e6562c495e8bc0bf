"""The checks. Each returns a list of complaints, empty if it passes."""

import re

import binaries
import instruction_sets

TAG = re.compile(r"Zorvan::Primitives::(Variant\w+)")
DIRECT_JUMP = re.compile(r"(?:j[a-z]+|call) ([0-9a-f]+)")
ROW_BYTES, WORD_BYTES = 64, 8


def symbols(part, path):
    """A variant's object may define global names of its own variant only. If two objects define the same name, the
    linker keeps one: the code of a newer variant could run on an older processor. Nor may it use another variant's
    names."""
    offered = {s.name for s in binaries.definedSymbols(path) if s.letter.isupper() or s.letter in "ui"}
    offered.update(binaries.groupSignatures(path))
    return ([f"{path}: offers {name}" for name in sorted(offered) if set(TAG.findall(name)) != {part}] +
            [f"{path}: uses {name}" for name in sorted(binaries.undefinedNames(path))
             if not set(TAG.findall(name)) <= {part}])


def instructions(part, path):
    complaints, starts, targets = {}, {}, {}
    for i in binaries.instructions(path):
        # In an object a jump to elsewhere has the address behind it, which may be the section's end.
        if i.section not in starts:
            starts[i.section], targets[i.section] = set(), {}
        starts[i.section].add(i.address)
        starts[i.section].add(i.address + len(i.code) // 3 + 1)
        if i.name[0] in "jc" and (jump := DIRECT_JUMP.fullmatch(f"{i.name} {i.operands}")):
            targets[i.section][int(jump[1], 16)] = i
        why = instruction_sets.complaint(part, i.name, i.operands, i.code)
        if why:
            text = f"{path}: {i.name} {why}"
            complaints.setdefault(text, f"first: {i.name} {i.operands} in {i.function}")
    # Between its instructions a jump finds others, which are not in the list.
    for section, jumps in targets.items():
        if between := sorted(jumps.keys() - starts[section]):
            jump = jumps[between[0]]
            complaints[f"{path}: {len(between)} jumps between the instructions of {section}"] = \
                f"first: {jump.name} {jump.operands} in {jump.function}"
    return [f"{text}; {first}" for text, first in complaints.items()]


def initialisers(part, path):
    """Code that runs at load time runs before a variant is selected."""
    complaints = [f"{path}: section {s.name}" for s in binaries.sections(path)
                  if re.match(r"\.(pre)?(init|fini)_array|\.[cd]tors|\.init$|\.fini$", s.name)]
    running = re.compile("_GLOBAL__sub_I|global constructors|__cxx_global_var_init|__static_initialization")
    complaints += [f"{path}: function {s.name}" for s in binaries.definedSymbols(path) if running.search(s.name)]
    return complaints


def codeInData(path):
    """Only sections that nothing may write hold code: the disassembly has the instructions of no other section."""
    sections = binaries.sections(path)
    complaints = [f"{path}: code in {s.name} can be written" for s in sections if {"W", "X"} <= set(s.flags)]
    complaints += [f"{path}: {name} is in {section.name}, which holds no code"
                   for name, section in binaries.functionSections(path) if "X" not in section.flags]
    return complaints


def stackOfObject(path):
    notes = [s for s in binaries.sections(path) if s.name == ".note.GNU-stack"]
    if not notes:
        return [f"{path}: does not say that its stack holds no code"]
    return [f"{path}: wants code on the stack"] if "X" in notes[0].flags else []


def memoryOfLibrary(path):
    stacks = [s for s in binaries.segments(path) if s.name == "GNU_STACK"]
    complaints = []
    if not stacks or "E" in stacks[0].flags:
        complaints.append(f"{path}: the stack is executable")
    complaints += [f"{path}: a part of the memory can be written and executed" for s in binaries.segments(path)
                   if s.name == "LOAD" and {"W", "E"} <= set(s.flags)]
    if "TEXTREL" in binaries.dynamicEntries(path):
        complaints.append(f"{path}: the loader has to write into code")
    return complaints


def _symbol(path, name):
    found = [s for s in binaries.definedSymbols(path) if s.name == f"Zorvan::Primitives::{name}"]
    return found[0].address if len(found) == 1 else None


def rows(path, entryCount):
    """The loader writes the rows once; then they are read-only."""
    table = _symbol(path, "table")
    if table is None:
        return [f"{path}: has no symbol of the table"]
    end = table + entryCount * ROW_BYTES
    complaints = []
    holding = [s for s in binaries.sections(path) if s.address <= table and end <= s.address + s.size and s.address]
    if [s.name for s in holding] != [".data.rel.ro"]:
        complaints.append(f"{path}: the table is in {' '.join(s.name for s in holding) or 'no one section'}")
    if not any(s.name == "GNU_RELRO" and s.address <= table and end <= s.address + s.size
               for s in binaries.segments(path)):
        complaints.append(f"{path}: the table stays writable")
    return complaints


def _numbers(text):
    return [int(n, 16) for n in re.findall(r"(?<!\w)0x([0-9a-f]+)", text)]


def stub(code, variantIndex, row):
    """A stub loads the index, computes the address of the entry's own row and jumps to the routine, nothing else.
    `code` is its instructions up to the padding after its jump."""
    loadsOfIndex, address, routine = 0, 0, None
    for i in code:
        target = int(i.target.split()[0], 16) if i.target else None
        memory = re.search(r"\[(.*)\]", i.operands)
        isIndexed = memory is not None and "*8" in memory[1]
        if i.name == "endbr64":
            continue
        if i.name in ("mov", "movsxd") and target == variantIndex:
            loadsOfIndex += 1
        elif i.name == "cdqe":
            continue
        elif i.name == "lea" and target is not None:
            address = target
        elif i.name == "mov" and isIndexed and routine is None:
            routine = address + sum(_numbers(memory[1]))
        elif i.name == "jmp" and isIndexed and routine is None:
            routine = address + sum(_numbers(memory[1]))
        elif i.name == "jmp" and memory is None and re.fullmatch("r[a-z0-9]+", i.operands) and routine is not None:
            pass
        else:
            return f"has {i.name} {i.operands}"
    if not code or code[-1].name != "jmp" or sum(i.name == "jmp" for i in code) != 1:
        return "does not end in its one jump"
    if loadsOfIndex != 1:
        return "does not load the index once"
    # The index is -1 before the first call, so the stub uses the address of word 1.
    if routine != row + WORD_BYTES:
        return "does not jump through its own row"
    if code[0].address % 16 != 0:
        return "does not start at a multiple of 16"
    return None


def stubs(path, names):
    table, variantIndex = _symbol(path, "table"), _symbol(path, "variantIndex")
    if table is None or variantIndex is None:
        return [f"{path}: has no symbols of the table and the index"]
    wanted, symbols = {f"Zorvan::Primitives::{name}" for name in names}, binaries.definedSymbols(path)
    stubAddresses = [s.address for s in symbols if s.name.partition("(")[0] in wanted]
    functions = {}
    if stubAddresses:
        behind = min((s.address for s in symbols if s.address > max(stubAddresses)), default=None)
        for i in binaries.instructions(path, min(stubAddresses), behind):
            functions.setdefault(i.function, []).append(i)
    byName = {}
    for function in functions:
        byName.setdefault(function.partition("(")[0], []).append(function)
    complaints = []
    for position, name in enumerate(names):
        found = byName.get(f"Zorvan::Primitives::{name}", [])
        if len(found) != 1:
            complaints.append(f"{path}: has {len(found)} stubs {name}")
            continue
        code = functions[found[0]]
        while code and (code[-1].name in ("nop", "int3", "ud2") or code[-1].operands == "ax,ax"):
            code = code[:-1]
        why = stub(code, variantIndex, table + position * ROW_BYTES)
        if why:
            complaints.append(f"{path}: the stub of {name} {why}")
    return complaints
