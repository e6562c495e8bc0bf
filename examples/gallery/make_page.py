#!/usr/bin/env python3
"""The gallery: every exported operation in each of its forms, with the pictures before and after.

make_page.py page <program> <style sheet> <output folder>   runs the program and writes index.html
make_page.py check <output folder> <exported names>         fails unless each exported form has exactly one row
"""

import html
import pathlib
import re
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "common"))
from page import page, picture


class Row:
    def __init__(self, line):
        before, _, after = line.partition("\t\t")
        self.section, self.sentence, self.code, *inputs = before.split("\t")
        self.before = [shown.split("=") for shown in inputs]
        self.after = after.split("=")


def rows_of(folder):
    return [Row(line) for line in (folder / "gallery.tsv").read_text().splitlines()]


def parts(arguments):
    """The arguments of a call or declaration: the parts between commas outside brackets."""
    found, depth, start = [], 0, 0
    for at, character in enumerate(arguments):
        depth += character in "(<{"
        depth -= character in ")>}"
        if character == "," and depth == 0:
            found.append(arguments[start:at].strip())
            start = at + 1
    return [*found, arguments[start:].strip()] if arguments.strip() else []


def form(call, is_flag):
    """What distinguishes the forms of an operation: its name, the number of arguments, and whether one is a flag.

    This is the same for all pixel types."""
    name, arguments = re.search(r"(\w+(?:<[^>]*>)?::\w+(?:<[^>()]*>)?)\((.*)\)", call).groups()
    arguments = parts(arguments)
    return re.sub("<[^>]*>", "", name), len(arguments), any(map(is_flag, arguments))


def exported_forms(path):
    classes = "Initializer|IppIArithmetic|IppILogical|Comparer|Statistic|IppIMorphology|FilteringFunction|ComputerVision"
    plain = path.read_text().replace("Zorvan::Ipp::Image::", "").replace("Zorvan::", "")
    lines = [line for line in plain.splitlines()
             if re.search(rf"(^|\s)({classes})(<[^>]*>)?::\w", line) and "operator=" not in line]
    return {form(line, lambda argument: argument == "bool") for line in lines}


def check(folder, exported):
    shown = [form(row.code, lambda argument: argument in ("true", "false")) for row in rows_of(folder)]
    expected = exported_forms(exported)
    faults = [f"no row shows {missing}" for missing in sorted(expected - set(shown))]
    faults += [f"{row} is not exported" for row in sorted(set(shown) - expected)]
    faults += [f"{row} has several rows" for row in sorted(set(shown)) if shown.count(row) > 1]
    faults += [f"{file} is missing" for row in rows_of(folder) for _, file in [*row.before, row.after]
               if file and not (folder / file).exists()]
    articles = (folder / "index.html").read_text().count("<article>")
    faults += [f"the page has {articles} of {len(shown)} rows"] * (articles != len(shown))
    print("\n".join(faults) or f"{len(shown)} rows, one for each of {len(expected)} forms")
    return 1 if faults or not expected else 0


def figure(shown):
    caption, file = shown
    if not file:
        return f'<p class="value">{html.escape(caption)}</p>'
    return picture(caption, file, caption)


def article(row):
    before = "".join(map(figure, row.before))
    code = re.sub(r"\s+", " ", row.code)
    return (f"<article>\n<p>{html.escape(row.sentence)}</p>\n<pre>{html.escape(code)}</pre>\n"
            f'<div class="row">{before}<div class="result"><span class="arrow">&rarr;</span>{figure(row.after)}</div></div>\n</article>')


STYLE = """
.row { display: flex; flex-wrap: wrap; gap: .8rem; align-items: center; }
.row figure { flex: 0 1 min(12rem, 42%); }
article > pre { white-space: pre-wrap; }
.result { display: flex; gap: .8rem; align-items: center; }
.row > .result:has(img) { flex: 0 1 min(14rem, 55%); }
.row > .result > figure { flex: 1 1 0; }
.row .value { margin: 0; color: var(--ink); font-weight: 600; }
.arrow { color: var(--accent); font-size: 1.4rem; }
h2 { margin: 2.5rem 0 .6rem; }
"""


def write_page(program, style, folder):
    folder.mkdir(parents=True, exist_ok=True)
    subprocess.run([program.resolve()], cwd=folder, check=True)
    rows = rows_of(folder)
    sections = list(dict.fromkeys(row.section for row in rows))
    links = "".join(f'<li><a href="#{number}">{html.escape(name)}</a></li>' for number, name in enumerate(sections))
    body = "\n".join(f'<h2 id="{number}">{html.escape(name)}</h2>\n' +
                     "\n".join(article(row) for row in rows if row.section == name)
                     for number, name in enumerate(sections))
    introduction = (f"Every exported operation in each of its forms: {len(rows)} calls, each with its input images, its "
                    "line of code and its result. In images of types other than bytes, the lowest value is black and "
                    "the highest is white. <code>whole</code> is the whole image; <code>region</code> begins in row 20 "
                    "and column 60 and is 120 pixels wide and 100 high; <code>corner</code> is 150 wide and 100 high "
                    "and begins at the origin.")
    (folder / "index.html").write_text(page("Gallery", introduction, links, body, style.read_text() + STYLE))


def main():
    task, *paths = sys.argv[1], *map(pathlib.Path, sys.argv[2:])
    return write_page(*paths) if task == "page" else check(*paths)


sys.exit(main())
