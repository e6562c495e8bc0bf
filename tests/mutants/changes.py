"""Faults that can be planted in a line of C++: each is the line with one change."""

import re

COMMENT_OR_TEXT = re.compile(r'//.*|"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])\'')

# Binary operators stand between spaces, so that the brackets of templates and the signs of references are left out.
OPERATORS = {
    " < ": (" <= ", " > "), " <= ": (" < ",), " > ": (" >= ", " < "), " >= ": (" > ",),
    " == ": (" != ",), " != ": (" == ",), " && ": (" || ",), " || ": (" && ",),
    " + ": (" - ",), " - ": (" + ",), " * ": (" + ",), " / ": (" * ",), " % ": (" / ",),
    " & ": (" | ",), " | ": (" & ",), " ^ ": (" | ",), " << ": (" >> ",), " >> ": (" << ",),
    " += ": (" -= ", " = "), " -= ": (" += ", " = "), " |= ": (" &= ", " = "), " &= ": (" |= ", " = "),
}

# Parts of names, with what takes their place.
NAMES = {
    r"\btrue\b": "false", r"\bfalse\b": "true",
    r"epi(?=8|16|32|64)": "epu", r"epu(?=8|16|32|64)": "epi",
    r"\bstd::int(?=\d+_t\b(?!\*))": "std::uint", r"\bstd::uint(?=\d+_t\b(?!\*))": "std::int",
    r"\bu8\b(?!\*)": "s8", r"\bu16\b(?!\*)": "s16", r"\bs16\b(?!\*)": "u16",
    r"unpacklo": "unpackhi", r"unpackhi": "unpacklo", r"(?<=_)adds(?=_)": "add", r"(?<=_)subs(?=_)": "sub",
    r"(?<=[_:])min(?=[_(])": "max", r"(?<=[_:])max(?=[_(])": "min",
    r"_OQ\b": "_UQ", r"_UQ\b": "_OQ", r"(?<=_CMP_)ORD": "UNORD", r"(?<=_CMP_)UNORD": "ORD",
    r"cmpord": "cmpunord", r"cmpunord": "cmpord", r"cmplt": "cmple", r"cmple(?=_)": "cmplt",
    r"_CMP_LT_OQ": "_CMP_NGE_UQ", r"_CMP_GT_OQ": "_CMP_NLE_UQ",
    r"andnot": "and", r"\bippStsNullPtrErr\b": "ippStsSizeErr", r"\bippStsNoErr\b": "ippStsErr",
    r"\bippSts(?!NullPtrErr|NoErr|Err\b)\w+": "ippStsErr",
}

NUMBER = re.compile(r"(?<![\w.])(0[xX][0-9A-Fa-f]+|\d+)(?=[uUlL]*\b)(?![\w.]*[.\w])")
REAL = re.compile(r"(?<![\w.])(\d+\.\d+)(?=F?\b)")
CONDITION = re.compile(r"\b(if(?: constexpr)?|while) \((.*)\)(?= )")
TWO_ARGUMENTS = re.compile(r"(?<=\w\()([\w.\[\]]+), ([\w.\[\]]+)(?=\))")
COMMUTATIVE = re.compile(r"(?:adds?|mul\w*|and|or|xor|cmpeq)(?:_\w+)?\($")
STATEMENT = re.compile(r"\s*(?:else )?(?:[\w.:>\[\]()&*+ -]*[\w\])] (?:[-+*&|^]|<<|>>)?= .*|[\w.:<>]+\(.*\)|(?:\+\+|--)\w+);")
DECLARATION = re.compile(r"\s*(?:using|return|const|constexpr|static|auto|template|typedef|extern|friend|throw)\b"
                         r"|\s*[\w:]+(?:<[^=]*>)?[&*]* [*&]?\w+(?:\[\w*\])* = |\s*static_assert|\s*static_cast<void>")


def code(line):
    """The line, with spaces for its comment and its texts."""
    return COMMENT_OR_TEXT.sub(lambda found: " " * len(found[0]), line)


def isCode(line):
    return bool(line.strip()) and not line.lstrip().startswith(("#", "}", "namespace", "/*", "*"))


def changed(line):
    """All changes of the line: pairs of a kind and the new line."""
    text = code(line)
    if not isCode(text):
        return []
    found = []

    def replace(kind, start, end, new):
        found.append((kind, line[:start] + new + line[end:]))

    for old, replacements in OPERATORS.items():
        for match in re.finditer(re.escape(old), text):
            for new in replacements:
                replace("operator", match.start(), match.end(), new)
    for old, new in NAMES.items():
        for match in re.finditer(old, text):
            replace("name", match.start(), match.end(), new)
    for match in NUMBER.finditer(text):
        value = int(match[1], 0)
        for new in (value + 1, value - 1):
            if new >= 0:
                replace("constant", match.start(1), match.end(1), hex(new) if "x" in match[1].lower() else str(new))
    for match in REAL.finditer(text):
        replace("constant", match.start(1), match.end(1), str(float(match[1]) + 0.5))
    for match in CONDITION.finditer(text):
        replace("condition", match.start(2), match.end(2), f"!({match[2]})")
    for match in TWO_ARGUMENTS.finditer(text):
        if match[1] != match[2] and not COMMUTATIVE.search(text[:match.start()]):
            replace("operands", match.start(), match.end(), f"{match[2]}, {match[1]}")
    if STATEMENT.fullmatch(text.rstrip()) and not DECLARATION.match(text):
        found.append(("statement", re.match(r"\s*(?:else )?", line)[0] + ";"))
    return found


def ofFile(lines):
    """All changes of a file: the number of the line from 0, a kind, the new line."""
    return [(number, kind, new) for number, line in enumerate(lines) for kind, new in changed(line)]
