#!/usr/bin/env python3
"""Prints a page of docs/ as the reference takes it: reference_page.py PAGE

Doxygen knows headings by names of its own. Each heading gets the name that links have for it, made unique by the
page's; links to pages become references to these names, and links to files that are not pages become plain text.
Pictures are in the folder that write_reference makes beside the pages.
"""

import os
import re
import sys

HEADING = re.compile(r"^(#+) (.*?)\s*$")
LINK = re.compile(r"(?<!!)\[([^\]]*)\]\(([^)\s]+)\)")
PICTURE = re.compile(r'!\[(?P<alt>[^\]]*)\]\((?P<path>[^)]+)\)|<img src="(?P<source>[^"]+)"(?P<rest>[^>]*)>')
FENCE = re.compile(r"^\s*```")


def slug(text):
    return re.sub(r"[^\w\- ]", "", text.replace("`", "").lower()).strip().replace(" ", "-")


def nameOf(path, heading=""):
    """The name of a page's heading; of its title without one."""
    page = re.sub(r"\W", "_", os.path.relpath(path, DOCS).removesuffix(".md"))
    return f"page_{page}" + (f"_{re.sub(r'[^0-9A-Za-z]', '_', heading)}" if heading else "")


def reference(match):
    text, target = match[1], match[2]
    if re.match(r"https?:", target):
        return match[0]
    path, _, heading = target.partition("#")
    path = os.path.normpath(os.path.join(os.path.dirname(PAGE), path)) if path else PAGE
    if path.startswith(DOCS + os.sep) and path.endswith(".md"):
        return f'@ref {nameOf(path, heading)} "{text.replace("`", "")}"'
    return text


def picture(match):
    path = os.path.normpath(os.path.join(os.path.dirname(PAGE), match["path"] or match["source"]))
    rest = match["rest"] or f' alt="{match["alt"]}"'
    return f'<img src="pictures/{os.path.relpath(path, os.path.dirname(DOCS))}"{rest}>'


PAGE = os.path.abspath(sys.argv[1])
DOCS = os.path.dirname(os.path.abspath(__file__))

isCode = False
with open(PAGE, encoding="utf-8") as page:
    for line in page:
        line = line.rstrip("\n")
        if FENCE.match(line):
            isCode = not isCode
        elif not isCode:
            if found := HEADING.match(line):
                heading = "" if len(found[1]) == 1 else slug(found[2])
                line = f"{found[1]} {found[2]} {{#{nameOf(PAGE, heading)}}}"
            else:
                line = PICTURE.sub(picture, LINK.sub(reference, line))
        print(line)
