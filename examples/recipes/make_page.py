#!/usr/bin/env python3
"""The cookbook: the source of each recipe, with the pictures before and after and the printed text.

make_page.py page <sources> <output folder> <program>...   runs the programs and writes index.html
make_page.py check <sources> <docs/cookbook.md> <program>...   fails unless the list in the documentation is right
make_page.py list <sources> <docs/cookbook.md> <program>...   writes that list

A source begins with a comment: a title, an empty line, a paragraph.
"""

import difflib
import html
import pathlib
import re
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "common"))
from page import page, picture


class Recipe:
    def __init__(self, sources, program):
        self.program = pathlib.Path(program)
        self.name = self.program.name.removeprefix("recipe_")
        self.source = (sources / f"{self.name}.cpp").read_text()
        comment, self.code = self.source.split("\n\n", 1)
        title, paragraph = re.fullmatch(r"// (.*)\n//\n((?:// .*\n?)+)", comment).groups()
        self.title = title
        self.text = " ".join(line.removeprefix("// ") for line in paragraph.splitlines())


def coloured(code):
    """The code as HTML, with comments, strings and directives marked."""
    parts = re.split(r'(//.*|"(?:[^"\\]|\\.)*"|^#.*)', code, flags=re.MULTILINE)
    classes = {"/": "note", '"': "text", "#": "note"}
    return "".join(f'<span class="{classes[part[0]]}">{html.escape(part)}</span>' if place % 2 else html.escape(part)
                   for place, part in enumerate(parts))


def article(number, recipe, folder):
    pictures = folder / recipe.name
    pictures.mkdir(parents=True, exist_ok=True)
    done = subprocess.run([recipe.program.resolve()], cwd=pictures, capture_output=True, text=True, check=True)
    printed = f'<pre class="printed">{html.escape(done.stdout)}</pre>' if done.stdout else ""
    figures = "".join(picture(when, f"{recipe.name}/{when}.png", f"{recipe.title}: {when}")
                      for when in ("before", "after"))
    return (f'<article id="{recipe.name}">\n<h2><span>{number}</span> {html.escape(recipe.title)}</h2>\n'
            f"<p>{html.escape(recipe.text)}</p>\n"
            f'<div class="figures">{figures}</div>\n{printed}\n'
            f"<details open><summary>{recipe.name}.cpp</summary><pre>{coloured(recipe.code)}</pre></details>\n</article>")


def write_page(recipes, sources, folder):
    folder.mkdir(parents=True, exist_ok=True)
    links = "".join(f'<li><a href="#{r.name}">{html.escape(r.title)}</a></li>' for r in recipes)
    articles = "\n".join(article(number, recipe, folder) for number, recipe in enumerate(recipes, 1))
    style = (sources.parent / "common" / "page.css").read_text()
    introduction = (f"{len(recipes)} short programs. A test runs each of them and compares its results with stored ones. "
                    "The programs wrote the pictures when this page was made.")
    (folder / "index.html").write_text(page("Cookbook", introduction, links, articles, style))


def listing(recipes):
    rows = [f"| {number} | **{r.title}**<br>{r.text}<br>[`{r.name}.cpp`](../examples/recipes/{r.name}.cpp) "
            f"| ![before](../examples/recipes/expected/{r.name}/before.png) "
            f"| ![after](../examples/recipes/expected/{r.name}/after.png) |" for number, r in enumerate(recipes, 1)]
    return "\n".join([
        "# Cookbook", "",
        f"{len(recipes)} short programs, each for one task. The tests build and run all of them, and compare their",
        "pictures and their printed text with those in `examples/recipes/expected`. The build with examples makes a",
        "page with their sources, pictures and texts: `build/release/examples/recipes/cookbook/index.html`.",
        "",
        "| | Recipe | Before | After |", "|---|---|---|---|", *rows, ""])


def main():
    task, sources, target = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])
    recipes = [Recipe(sources, program) for program in sys.argv[4:]]
    if task == "page":
        write_page(recipes, sources, target)
    elif task == "list":
        target.write_text(listing(recipes))
    elif task == "check":
        found = target.read_text()
        sys.exit("".join(difflib.unified_diff(listing(recipes).splitlines(True), found.splitlines(True),
                                              "made from the sources", str(target))) or None)
    else:
        sys.exit(__doc__)


main()
