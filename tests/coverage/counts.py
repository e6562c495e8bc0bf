"""Which lines and branches of the library have run in each variant.

A line has run in a variant if it has run in any instantiation of its template there; so has each outcome of a
branch. A condition that is constant in an instantiation is no branch in it.
"""

import collections
import re

COMMON = "common"  # the unit of what all variants share

# The kinds of regions in what `llvm-cov export` writes.
CODE, EXPANSION, SKIPPED, GAP = range(4)

Region = collections.namedtuple("Region", "span count kind")  # span: line, column, last line, column after the last


class File:
    def __init__(self):
        self.lines = {}  # number: how often it has run
        self.branches = {}  # span of the condition: how often it was true and false


class Function:
    """One instantiation of a function."""

    def __init__(self, record):
        self.name = record["name"]
        self.files = record["filenames"]  # the one with the body is first; each macro expansion has one more
        self.regions = [[] for _ in self.files]
        for *span, count, file, _, kind in record["regions"]:
            self.regions[file].append(Region(tuple(span), count, kind))
        self.branches = [(self.files[file], tuple(span), timesTrue, timesFalse)
                         for *span, timesTrue, timesFalse, file, _, _ in record["branches"]]
        self.body = self.files[0], self.regions[0][0].span


def countsOfLines(regions):
    """Of the regions of one function in one file: a line's count is that of the innermost region around its start,
    or a higher one of a region that starts in the line."""
    around, within = {}, {}
    for span, count, kind in sorted(regions, key=lambda r: (r.span[:2], [-end for end in r.span[2:]])):
        isCode = kind in (CODE, EXPANSION)
        for line in range(span[0] + 1, span[2] + 1):
            around[line] = count if isCode else None
        if isCode:
            within[span[0]] = max(within.get(span[0], 0), count)
    for line, count in around.items():
        if count is not None:
            within[line] = max(within.get(line, 0), count)
    return within


def linesOfInnerFunctions(functions):
    """For each body: the lines that belong only to functions within it, such as lambdas."""
    spans = collections.defaultdict(set)
    for function in functions:
        file, span = function.body
        spans[file].add(span)
    lines = {}
    for file, all_ in spans.items():
        for span in all_:
            inner = [i for i in all_ if i != span and span[:2] <= i[:2] and i[2:] <= span[2:]]
            lines[file, span] = {line for i in inner for line in range(i[0] + 1, i[2])}
    return lines


class Counts:
    """units: for each variant, and for what all variants share, the files by their paths.
    unused: the file and line of each function that no source uses."""

    def __init__(self, variants, records, counted):
        """records: the functions as `llvm-cov export` lists them. counted: the names of those with code; the others
        are only in the text of a source, which does not use them."""
        self.units = {unit: collections.defaultdict(File) for unit in (*variants, COMMON)}
        longestFirst = "|".join(sorted(variants, key=len, reverse=True))
        self._variant = re.compile(rf"^(?:lowered\.)?({longestFirst}):|8Routines.*?\d({longestFirst})E")
        functions = [Function(record) for record in records]
        used = {f.body for f in functions if f.name in counted}
        self.unused = {f.body for f in functions} - used
        self._add([f for f in functions if f.name in counted])

    def _unitOf(self, function):
        found = self._variant.search(function.name)
        return self.units[found[1] or found[2] if found else COMMON]

    def _add(self, functions):
        innerLines = linesOfInnerFunctions(functions)
        ofBodies = {}  # file of a unit: for each body the counts of its lines
        for function in functions:
            unit = self._unitOf(function)
            for index, (path, regions) in enumerate(zip(function.files, function.regions)):
                isBody = index == 0
                bodies = ofBodies.setdefault(id(unit[path]), (unit[path], collections.defaultdict(collections.Counter)))
                counts = bodies[1][function.body if isBody else None]
                for line, count in countsOfLines(regions).items():
                    if not (isBody and line in innerLines[function.body]):
                        counts[line] += count
            for path, span, timesTrue, timesFalse in function.branches:
                before = unit[path].branches.get(span, (0, 0))
                unit[path].branches[span] = (before[0] + timesTrue, before[1] + timesFalse)

        # A line that several functions share, such as one with a lambda, has run if it has run in all of them.
        for file, bodies in ofBodies.values():
            for counts in bodies.values():
                for line, count in counts.items():
                    file.lines[line] = min(file.lines.get(line, count), count)
