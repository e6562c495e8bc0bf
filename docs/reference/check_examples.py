#!/usr/bin/env python3
"""Fails unless the reference has an example of each member, record and enumeration: check_examples.py XML

XML is the folder into which Doxygen writes the reference in this form. Every example of this folder must be in it.
"""

import pathlib
import re
import sys
import xml.etree.ElementTree as ElementTree


def exampleOf(description):
    """The code below the heading Example, without spaces."""
    for section in description.findall("detaileddescription//simplesect[@kind='par']"):
        if section.findtext("title") == "Example":
            return re.sub(r"\s", "", "".join(section.find(".//programlisting").itertext()))
    return None


def described(xml):
    """Name and description of everything that needs an example."""
    for path in sorted(pathlib.Path(xml).glob("*.xml")):
        for compound in ElementTree.parse(path).getroot().findall("compounddef"):
            name = compound.findtext("compoundname")
            if compound.get("kind") == "struct":
                yield name, compound
            for member in compound.findall("sectiondef/memberdef[@prot='public']"):
                isFunction = member.get("kind") == "function" and compound.get("kind") in ("class", "struct")
                isEnumeration = member.get("kind") == "enum" and compound.get("kind") == "namespace"
                if isFunction or isEnumeration:
                    yield f"{name}::{member.findtext('name')}{member.findtext('argsstring') or ''}", member


def main(xml):
    examples = {name: exampleOf(description) for name, description in described(xml)}
    faults = [f"no example of {name}" for name, example in examples.items() if not example]
    for source in sorted(pathlib.Path(__file__).parent.glob("*.cpp")):
        for key, code in re.findall(r"^ *//! \[(.*)\]\n(.*?)^ *//! \[\1\]$", source.read_text(), re.M | re.S):
            if re.sub(r"\s", "", code) not in examples.values():
                faults.append(f"{source.name}: the reference does not show [{key}]")
    print("\n".join(faults) or f"{len(examples)} members, records and enumerations, each with an example")
    return 1 if faults or not examples else 0


sys.exit(main(sys.argv[1]))
