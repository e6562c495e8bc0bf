"""What has not run, and the list of what need not run."""

import collections
import os
import re

# what: "line", "never true", "never false" or "unused". text: the line, or the condition of the branch.
Hole = collections.namedtuple("Hole", "path what text")

COMMENT = re.compile(r"//.*|/\*.*?\*/")
CONDITIONAL = re.compile(r"\s*#\s*(if|el|endif)")


def textOf(lines, span):
    """The source between two positions, in one line."""
    first, column, last, end = span
    parts = lines[first - 1:last]
    parts[-1] = parts[-1][:end - 1]
    parts[0] = parts[0][column - 1:]
    return " ".join(" ".join(parts).split())


class Sources:
    def __init__(self, root):
        self._root = root
        self._lines = {}

    def isIn(self, path):
        return path.startswith(os.path.join(self._root, "zorvan") + os.sep)

    def relative(self, path):
        return os.path.relpath(path, self._root)

    def lines(self, path):
        if path not in self._lines:
            with open(path, encoding="utf-8") as text:
                self._lines[path] = text.read().split("\n")
        return self._lines[path]

    def isCode(self, path, line):
        """Whether the line has more than a comment, a bracket or a condition of the preprocessor."""
        text = COMMENT.sub("", self.lines(path)[line - 1])
        return re.search(r"\w", text) is not None and not CONDITIONAL.match(text)

    def isSwitch(self, path, span):
        """Whether the condition is that of a switch: its branch is a default that the source does not have, since
        compilers report an enumerator without a case."""
        return self.lines(path)[span[0] - 1][:span[1] - 1].rstrip().endswith("switch (")

    def ofLibrary(self, files):
        """The files of the library, without what is no code."""
        kept = {path: file for path, file in files.items() if self.isIn(path)}
        for path, file in kept.items():
            file.lines = {line: times for line, times in file.lines.items() if self.isCode(path, line)}
            file.branches = {span: times for span, times in file.branches.items() if not self.isSwitch(path, span)}
        return kept


def holesOf(sources, files):
    """The lines and branches of a unit that have not run: for each hole the numbers of its lines."""
    holes = collections.defaultdict(list)
    for path, file in sorted(files.items()):
        for line, times in sorted(file.lines.items()):
            if times == 0:
                text = " ".join(sources.lines(path)[line - 1].split())
                holes[Hole(sources.relative(path), "line", text)].append(line)
        for span, outcomes in sorted(file.branches.items()):
            for what, times in zip(("never true", "never false"), outcomes):
                if times == 0 and file.lines.get(span[0], 0) > 0:
                    text = textOf(sources.lines(path), span)
                    holes[Hole(sources.relative(path), what, text)].append(span[0])
    return holes


def unusedFunctions(sources, bodies):
    """Functions that no source of any variant uses, except those that may be for the compiler alone."""
    holes = collections.defaultdict(list)
    for path, span in sorted(bodies):
        if sources.isIn(path):
            text = " ".join(sources.lines(path)[span[0] - 1].split())
            if not re.search(r"\b(constexpr|consteval)\b", text):
                holes[Hole(sources.relative(path), "unused", text)].append(span[0])
    return holes


class Exceptions:
    """The list of holes that may be, with their reasons. A group is the reason in lines with `#`, and below it lines

        units | path | what | text

    where units are names with commas, or `all variants`. An empty line ends the group."""

    def __init__(self, file, variants, units):
        self.complaints = []
        self.rows = []  # of the page: units, path, what, text, reason
        self._units = {}  # for each hole the units
        reason, lastWasReason = "", False
        with open(file, encoding="utf-8") as lines:
            for number, line in enumerate(lines, 1):
                line = line.strip()
                if line.startswith("#"):
                    reason = (reason + " " if lastWasReason else "") + line.lstrip("# ")
                elif not line:
                    reason = ""
                else:
                    self._add(line, reason, variants, units, f"{os.path.basename(file)}:{number}")
                lastWasReason = line.startswith("#")

    def _add(self, line, reason, variants, units, place):
        fields = line.split(" | ", 3)
        names = variants if fields[0] == "all variants" else fields[0].split(",")
        if len(fields) != 4:
            self.complaints.append(f"{place}: not of the form: units | path | what | text")
        elif not reason:
            self.complaints.append(f"{place}: no reason above")
        elif not set(names) <= set(units):
            self.complaints.append(f"{place}: no such units: {fields[0]}")
        else:
            self._units.setdefault(Hole(*fields[1:]), set()).update(names)
            self.rows.append((*fields, reason))

    def compare(self, unit, holes):
        """holes: of the unit, each with its lines. Returns what is on one side only."""
        complaints = []
        for hole, lines in holes.items():
            if unit not in self._units.get(hole, ()):
                complaints += [f"{unit}: {hole.path}:{line}: {hole.what}: {hole.text}" for line in lines]
        for hole, units in self._units.items():
            if unit in units and hole not in holes:
                complaints.append(f"{unit}: {hole.path}: is on the list, but runs: {hole.what}: {hole.text}")
        return complaints
