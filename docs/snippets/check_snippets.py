#!/usr/bin/env python3
"""Fails unless every block of C++ in the texts is a snippet of a tested source.

check_snippets.py <folder of the project>

A block of a text that begins with ```cpp must be equal to the lines between `// snippet` and `// end of snippet` in a
file in docs/snippets, without their common indentation. A block that begins with ```text must be equal to a .txt file
there, which a program prints. Every snippet must be in a text.
"""
import pathlib
import sys
import textwrap

OTHER_NAMES = {"c++", "cc", "cxx", "c", "h", "hpp"}  # C++ that would escape the check


def snippets_of(path):
    snippets, lines = [], None
    for line in path.read_text().splitlines():
        if line.strip() == "// snippet":
            lines = []
        elif line.strip() == "// end of snippet":
            snippets.append(textwrap.dedent("\n".join(lines)))
            lines = None
        elif lines is not None:
            lines.append(line)
    if lines is not None:
        raise SystemExit(f"{path}: a snippet does not end")
    return snippets


def blocks_of(path):
    """Line number, name and content of each block between fences."""
    name, lines = None, []
    for number, line in enumerate(path.read_text().splitlines(), 1):
        if not line.lstrip().startswith("```"):
            lines.append(line)
        elif name is None:
            name, start, lines = line.strip().strip("`").strip().lower(), number, []
        else:
            yield start, name, textwrap.dedent("\n".join(lines))
            name = None
    if name is not None:
        yield start, "a block that does not end", ""


def main(root):
    folder = root / "docs" / "snippets"
    sources = {}
    for path in sorted(folder.glob("*.cpp")):
        sources.update({snippet: path for snippet in snippets_of(path)})
    outputs = {path.read_text().rstrip("\n") for path in folder.glob("*.txt")}

    faults, used, count = [], set(), 0
    for path in sorted([*root.glob("*.md"), *(root / "docs").rglob("*.md")]):
        for line, name, content in blocks_of(path):
            where = f"{path.relative_to(root)}:{line}"
            if name == "cpp":
                count += 1
                used.add(content)
                if content not in sources:
                    faults.append(f"{where}: no source in docs/snippets has this block:\n{content}")
            elif name == "text" and content not in outputs:
                faults.append(f"{where}: no .txt in docs/snippets is this output:\n{content}")
            elif name in OTHER_NAMES or " " in name:
                faults.append(f"{where}: begin a block of C++ with ```cpp, not with {name}")
    for snippet, path in sources.items():
        if snippet not in used:
            faults.append(f"{path.relative_to(root)}: no text has this snippet:\n{snippet}")
    if count == 0:
        faults.append("no text has a block of C++")
    print("\n".join(faults) or f"{count} blocks, all from tested sources")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
