"""The paths through the machine code of a shared library: jumps, calls and jump tables."""

import bisect
import functools
import re

import binaries

JUMP_TABLE_WORD = 4
RELATIVE = re.compile(r"[0-9a-f]+")
# Instructions behind which a function does not continue.
ENDS = {"ret", "hlt", "ud2", "int3"}


class Code:
    def __init__(self, path):
        self.instructions = list(binaries.instructions(path))
        self.place = {i.address: n for n, i in enumerate(self.instructions)}
        self.starts = [n for n, i in enumerate(self.instructions)
                       if n == 0 or i.function != self.instructions[n - 1].function]
        self.isStart = set(self.starts)
        self.constants, self.contents = binaries.constants(path)

    def functions(self):
        """The demangled name and the place of each function."""
        return [(self.instructions[n].function, n) for n in self.starts]

    @functools.cache
    def _loaded(self, start):
        """The addresses that the function at this place computes: of jump tables, of functions that it calls later."""
        after = bisect.bisect(self.starts, start)
        end = self.starts[after] if after < len(self.starts) else len(self.instructions)
        return [int(i.target.split()[0], 16) for i in self.instructions[start:end] if i.name == "lea" and i.target]

    def _function(self, n):
        return self.starts[bisect.bisect(self.starts, n) - 1]

    @functools.cache
    def _jumpTables(self, start):
        """The places to which a jump by a table may go. A table has the distances of its targets from itself, and ends
        where they leave the function and its cold part."""
        found, name = set(), self.instructions[start].function
        for table in self._loaded(start):
            at = table - self.constants
            while 0 <= at <= len(self.contents) - JUMP_TABLE_WORD:
                distance = int.from_bytes(self.contents[at:at + JUMP_TABLE_WORD], "little", signed=True)
                target = self.place.get(table + distance)
                if target is None or self.instructions[target].function.partition(" [clone .cold")[0] != name:
                    break
                found.add(target)
                at += JUMP_TABLE_WORD
        return found

    @functools.cache
    def next(self, n):
        """Where the code continues behind the instruction at this place, and the functions that it calls before."""
        i = self.instructions[n]
        following = (n + 1,) if n + 1 < len(self.instructions) else ()
        if i.name in ENDS:
            return (), ()
        if i.name[0] != "j" and i.name != "call":
            return following, ()
        if RELATIVE.fullmatch(i.operands):
            target = (self.place[int(i.operands, 16)],)
        elif i.name == "jmp":
            # Through memory it goes to another library, or from a stub into a row of the table.
            return (tuple(self._jumpTables(self._function(n))) if "[" not in i.operands else ()), ()
        else:
            # The call of a function of whose addresses it has loaded one.
            target = tuple(self.place[a] for a in self._loaded(self._function(n))
                           if self.place.get(a) in self.isStart) if "[" not in i.operands else ()
        if i.name == "call":
            return following, target
        return (target if i.name == "jmp" else target + following), ()
