#!/usr/bin/env python3
"""Prints a public header as the reference takes it: reference_header.py HEADER

Doxygen does not put what a header includes in its place. So the table of status codes is written out here, each code
with its message.

Each member, record and enumeration gets its example: the lines between two comments `//! [Copy(src, dst, rect)]` in
the source in docs/reference/ that has the header's name. The brackets hold a member's name and parameters, or the name
of a type. Where there is no example, Doxygen is asked for it, and warns.
"""

import os
import re
import sys
import textwrap

DOCS = os.path.dirname(os.path.abspath(__file__))
ROW = re.compile(r'^ZORVAN_IPP_STATUS\((-?\d+), (\w+), "(.*)"\)$', re.M)
DOCUMENTED = re.compile(r"((?:^ *///(?!<).*\n)+)((?:^ *template <.*>\n)?)([^;{]*)", re.M)
NAME = re.compile(r"(?:struct|enum) ZORVAN_IPP_API (\w+)|(~?\w+|operator=)\((.*)\)", re.S)


def withCodes(text):
    for include in re.findall(r'^#include "(.*\.def)"\n', text, re.M):
        with open(os.path.join(os.path.dirname(DOCS), include), encoding="utf-8") as table:
            rows = "".join(f"  {name} = {code},  ///< {message}\n" for code, name, message in ROW.findall(table.read()))
        text = text.replace(f'#include "{include}"\n', rows)
    return text


def keyOf(declaration):
    """What the brackets hold for a documented declaration; nothing for data members, classes, namespaces and macros."""
    if declaration.startswith("#") or not (found := NAME.search(declaration)):
        return None
    if found[1]:
        return found[1]
    parameters = re.findall(r"(\w+)(?:\s*=[^,]*)?\s*(?:,|$)", found[3])
    return f"{found[2]}({', '.join(parameters)})"


def withExamples(text, source):
    examples = {}
    if os.path.exists(source):
        with open(source, encoding="utf-8") as file:
            examples = dict(re.findall(r"^ *//! (\[.*\])\n(.*?)^ *//! \1$", file.read(), re.M | re.S))

    def withExample(found):
        comment, template, declaration = found.groups()
        if not (key := keyOf(declaration)):
            return found[0]
        if code := examples.get(f"[{key}]"):
            example = f"@code{{.cpp}}\n{textwrap.dedent(code)}@endcode\n"
        else:
            example = f"@snippet {source} {key}\n"
        lines = "".join(f"/// {line}\n" for line in ["", "@par Example", *example.splitlines()])
        return comment + lines + template + declaration

    return DOCUMENTED.sub(withExample, text)


def main(path):
    with open(path, encoding="utf-8") as header:
        text = header.read()
    name = os.path.basename(path).removesuffix(".h")
    print(withCodes(withExamples(text, os.path.join(DOCS, "reference", f"{name}.cpp"))), end="")


main(sys.argv[1])
