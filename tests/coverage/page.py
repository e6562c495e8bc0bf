"""The pages: a table of the variants, and for each of them the marked sources, which gcovr writes."""

import html
import json
import os
import subprocess

STYLE = """
body { font-family: sans-serif; margin: 2em auto; max-width: 70em; }
table { border-collapse: collapse; margin: 1em 0; }
td, th { border: 1px solid #ccc; padding: 0.3em 0.8em; text-align: left; }
td.number { text-align: right; }
"""


def percent(part, whole):
    """Never rounded up to 100."""
    return f"{int(10000 * part / whole) / 100:.2f} %" if whole else "-"


def total(files):
    """The lines that have run, all lines, the outcomes of branches that have been reached, all outcomes."""
    lines = [count > 0 for file in files.values() for count in file.lines.values()]
    outcomes = [times > 0 for file in files.values() for branch in file.branches.values() for times in branch]
    return sum(lines), len(lines), sum(outcomes), len(outcomes)


def table(rows):
    def cells(row):
        return "".join(f'<td class="number">{cell}</td>' if cell[:1].isdigit() else f"<td>{cell}</td>" for cell in row)

    first, *others = rows
    heads = "".join(f"<th>{cell}</th>" for cell in first)
    return f"<table>\n<tr>{heads}</tr>\n" + "".join(f"<tr>{cells(row)}</tr>\n" for row in others) + "</table>\n"


def writeSources(root, folder, unit, files):
    """The sources of a unit, with the lines and branches that have run, in a folder of its own."""
    records = []
    for path, file in sorted(files.items()):
        branches = {}
        for span, outcomes in sorted(file.branches.items()):
            branches.setdefault(span[0], []).extend(
                {"count": times, "fallthrough": False, "throw": False} for times in outcomes)
        records.append({"file": os.path.relpath(path, root), "functions": [], "lines": [
            {"line_number": line, "count": count, "branches": branches.get(line, []),
             "gcovr/noncode": False, "gcovr/excluded": False} for line, count in sorted(file.lines.items())]})
    os.makedirs(os.path.join(folder, unit), exist_ok=True)
    counts = os.path.join(folder, unit, "counts.json")
    with open(counts, "w", encoding="utf-8") as out:
        json.dump({"gcovr/format_version": "0.3", "files": records}, out)
    subprocess.run(["gcovr", "--root", root, "--add-tracefile", counts, "--html-title", unit,
                    "--html-details", os.path.join(folder, unit, "index.html")], check=True)


def write(root, folder, units, skipped, complaints, listed):
    """units: by their names, the files of each. listed: rows of the table of the exceptions."""
    rows = [("", "Lines", "of", "", "Outcomes of branches", "of", "")]
    for unit, files in units.items():
        if unit in skipped:
            rows.append((unit, "does not run on this processor") + ("",) * 5)
            continue
        writeSources(root, folder, unit, files)
        lines, allLines, outcomes, allOutcomes = total(files)
        rows.append((f'<a href="{unit}/index.html">{unit}</a>', str(lines), str(allLines), percent(lines, allLines),
                     str(outcomes), str(allOutcomes), percent(outcomes, allOutcomes)))
    body = "<h1>Coverage by variant</h1>\n" + table(rows)
    if complaints:
        body += "<h2>Not on the list</h2>\n<ul>" + "".join(f"<li>{html.escape(c)}</li>\n" for c in complaints) + "</ul>\n"
    if listed:
        body += "<h2>Not covered</h2>\n" + table([("Variants", "File", "What", "Text", "Reason")] +
                                               [tuple(map(html.escape, row)) for row in listed])
    page = os.path.join(folder, "index.html")
    with open(page, "w", encoding="utf-8") as out:
        out.write(f'<!DOCTYPE html>\n<html lang="en"><head><meta charset="utf-8"><title>Coverage by variant</title>'
                  f"<style>{STYLE}</style></head><body>\n{body}</body></html>\n")
    return page
