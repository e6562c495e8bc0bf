#!/usr/bin/env python3
"""Tables and plots of a benchmark run.

    report.py run.json                     tables on the terminal
    report.py run.json --svg FOLDER        one plot for each size

A run of several variants has its own tables, with a column for each variant.
"""

import argparse
import collections
import csv
import math
import pathlib
import sys

import results

OTHERS = pathlib.Path(__file__).parent / "others.csv"

# Two minima of the same loop differ by up to this factor between runs, so a smaller difference is not a loss.
TOLERANCE = 1.03

# A time within this factor of the limit is never slower than others.
NEAR_LIMIT = 1.05

# If the minima of the even and the odd rounds differ by more than this, the machine was busy.
NOISY = 0.05

# Two sizes of the same width are the two sides of a limit if their numbers of pixels differ by less than this factor.
NEIGHBOURS = 1.1
# The time per pixel may grow by this factor at a limit, because memory gets slower there.
CLIFF = 1.15

# A variant is reported as slower than an older one if its time is longer by more than this factor.
SLOWER = 1.1

# Rows of two operations, which are not compared with others.
CHAINS = "copy_mean", "copy_max", "add_max", "abs_max"

Contest = collections.namedtuple(
    "Contest", "operation pixels size variant ns call_ns to_limit to_plain others limit_loop limit_noise noise")


def read_others(path=OTHERS):
    with open(path, encoding="utf-8") as file:
        rows = csv.DictReader(line for line in file if not line.startswith("#"))
        return {(row["operation"], row["pixels"], size): float(row[size])
                for row in rows for size in row if "x" in size and size[0].isdigit()}


def contests_of(rows, others):
    """The rows that have a limit. One that measured the library only takes the lowest limit of the other rows of its
    operation and size, and is not compared with the plain loop."""
    limits = results.limits_of(rows)
    for row in rows:
        limit = row.limit_ns or limits.get((row.operation, row.pixels, row.size))
        if limit is None:
            continue
        yield Contest(row.operation, row.pixels, row.size, row.variant, row.ns, row.call_ns, row.ns / limit,
                      row.ns / row.plain_ns if row.plain_ns else None,
                      others.get((row.operation, row.pixels, row.size)), row.limit_by, row.limit_noise or 0,
                      max(row.noise, row.plain_noise or 0))


def loses_to_plain(contest):
    return contest.to_plain is not None and contest.to_plain > TOLERANCE


def loses_by_the_call(contest):
    """Whether the plain loop, which is inlined, is faster only because the library is called."""
    kernel_ns = contest.ns - (contest.call_ns or 0)
    return loses_to_plain(contest) and kernel_ns <= TOLERANCE * contest.ns / contest.to_plain


def misses_others(contest):
    return contest.others is not None and contest.to_limit > max(contest.others, NEAR_LIMIT)


def marks(contest):
    found = []
    if loses_to_plain(contest):
        found.append("slower than plain" + (" by the call" if loses_by_the_call(contest) else ""))
    if misses_others(contest):
        found.append("slower than others")
    if contest.limit_noise > NOISY:
        found.append("noisy limit")
    if contest.noise > NOISY:
        found.append("noisy")
    return ", ".join(found)


def grouped(contests, *fields):
    groups = {}
    for contest in contests:
        groups.setdefault(tuple(getattr(contest, field) for field in fields), []).append(contest)
    return groups


def size_rows(contests):
    with_call = any(c.call_ns is not None for c in contests)
    yield ("operation", "pixels", "ns", *(["call"] if with_call else []), "x limit", "others", "x plain",
           "limit by", "remarks")
    for c in contests:
        call = "" if c.call_ns is None else f"{c.call_ns:.0f}"
        yield (c.operation, c.pixels, f"{c.ns:.0f}", *([call] if with_call else []), f"{c.to_limit:.2f}",
               "" if c.others is None else f"{c.others:.2f}", f"{c.to_plain:.2f}", c.limit_loop, marks(c))


def variant_rows(contests, variants):
    """The time of each variant divided by the limit, and the lowest limit of all variants."""
    yield ("operation", "pixels", "limit ns", *variants)
    for (operation, pixels), row in grouped(contests, "operation", "pixels").items():
        limit = min(c.ns / c.to_limit for c in row)
        times = {c.variant: c.ns for c in row}
        yield (operation, pixels, f"{limit:.0f}",
               *(f"{times[variant] / limit:.2f}" if variant in times else "" for variant in variants))


def pixels_of(size):
    width, height = map(int, size.split("x"))
    return width * height


def size_pairs(contests):
    """The sizes on both sides of a limit: of one width, with a small difference in pixels."""
    sizes = sorted({c.size for c in contests}, key=pixels_of)
    return [(below, above) for below in sizes for above in sizes
            if below.split("x")[0] == above.split("x")[0]
            and 1 < pixels_of(above) / pixels_of(below) < NEIGHBOURS]


def limit_rows(contests, variants, below, above):
    """The time per pixel above a limit divided by the time per pixel below it."""
    yield ("operation", "pixels", *variants)
    for (operation, pixels), row in grouped(contests, "operation", "pixels").items():
        per_pixel = {(c.variant, c.size): c.ns / pixels_of(c.size) for c in row}
        cells = []
        for variant in variants:
            both = [per_pixel.get((variant, size)) for size in (below, above)]
            cells.append("" if None in both else f"{both[1] / both[0]:.2f}")
        yield (operation, pixels, *cells)


def has_cliff(row):
    return any(cell and float(cell) > CLIFF for cell in row[2:])


def slower_rows(contests, variants):
    """Variants slower than an older one, the slowest first."""
    found = []
    for row in grouped(contests, "operation", "pixels", "size").values():
        older = None
        for c in sorted(row, key=lambda c: variants.index(c.variant)):
            if older and c.ns > SLOWER * older.ns:
                found.append((c.ns / older.ns, c, older))
            if older is None or c.ns < older.ns:
                older = c
    yield ("operation", "pixels", "size", "variant", "slower than", "by")
    for ratio, c, older in sorted(found, key=lambda entry: -entry[0]):
        yield (c.operation, c.pixels, c.size, c.variant, older.variant, f"{ratio:.2f}")


def text_table(rows):
    rows = [list(row) for row in rows]
    widths = [max(len(row[i]) for row in rows) for i in range(len(rows[0]))]
    numeric = [all(row[i] == "" or row[i][0].isdigit() for row in rows[1:]) for i in range(len(widths))]
    for row in rows:
        yield "  ".join(cell.rjust(w) if right else cell.ljust(w)
                        for cell, w, right in zip(row, widths, numeric)).rstrip()


def markdown_table(rows):
    rows = [list(row) for row in rows]
    numeric = [all(row[i] == "" or row[i][0].isdigit() for row in rows[1:]) for i in range(len(rows[0]))]
    yield "| " + " | ".join(rows[0]) + " |"
    yield "|" + "|".join("--:" if right else "---" for right in numeric) + "|"
    for row in rows[1:]:
        yield "| " + " | ".join(row) + " |"


def variants_of(contests):
    return list(dict.fromkeys(c.variant for c in contests))


def one_variant(contests):
    for (variant, size), of_size in grouped(contests, "variant", "size").items():
        yield f"{size}, {variant}", size_rows(of_size)


def several_variants(contests):
    variants = variants_of(contests)
    for (size,), of_size in grouped(contests, "size").items():
        yield f"{size}, time over the limit", variant_rows(of_size, variants)
    pairs = size_pairs(contests)
    for below, above in pairs:
        yield (f"Time per pixel of {above} over that of {below}, where some variant is above {CLIFF}",
               (row for i, row in enumerate(limit_rows(contests, variants, below, above))
                if i == 0 or has_cliff(row)))
    yield f"More than {SLOWER - 1:.0%} slower than an older variant", slower_rows(contests, variants)


def report(context, contests, failures, table, heading):
    yield (f"Processor: {context.get('processor', '?')}; compiler: {context.get('compiler', '?')}; "
           f"{context['date'][:10]}; `{context.get('command', './run bench')}`.")
    if "skipped_variants" in context:
        yield f"Skipped, not supported by this processor: {context['skipped_variants']}."
    sections = several_variants if len(variants_of(contests)) > 1 else one_variant
    for title, rows in sections(contests):
        rows = list(rows)
        yield ""
        yield heading(title)
        yield ""
        yield from table(rows) if len(rows) > 1 else ["None."]
    yield ""
    counts = [f"{sum(c.limit_noise > NOISY for c in contests)} with a noisy limit", f"{len(failures)} failed"]
    if sections is one_variant:
        counts[:0] = [f"{sum(map(loses_to_plain, contests))} slower than the plain loop "
                      f"({sum(map(loses_by_the_call, contests))} of them by the call)",
                      f"{sum(map(misses_others, contests))} slower than others"]
    yield f"{len(contests)} contests: {', '.join(counts)}."
    for failure in failures:
        yield f"FAILED {failure}"


def write_plots(contests, folder):
    """For each size, bars of the time over the limit, with marks for others and the plain loop."""
    from matplotlib.figure import Figure  # the tables do without it
    from matplotlib.ticker import FormatStrFormatter, LogLocator

    folder.mkdir(parents=True, exist_ok=True)
    for (variant, size), rows in grouped(contests, "variant", "size").items():
        figure = Figure(figsize=(10, 1.2 + 0.22 * len(rows)), layout="constrained")
        figure.suptitle(f"{size}, {variant}: time over streaming limit")
        axes = figure.add_subplot(xscale="log")
        axes.barh(range(len(rows)), [c.to_limit for c in rows], height=0.6, color="#4878a8", label="ours")
        compared = [(c.others, place) for place, c in enumerate(rows) if c.others]
        if compared:
            axes.plot(*zip(*compared), "|", color="#d06020", markersize=10, markeredgewidth=3, label="others")
        axes.plot([c.to_limit / c.to_plain for c in rows], range(len(rows)), "o", color="black",
                  markerfacecolor="none", label="plain loop")
        axes.axvline(1, color="black", linewidth=0.8)
        axes.set_yticks(range(len(rows)), [f"{c.operation} {c.pixels}" for c in rows])
        axes.set_ylim(len(rows) - 0.4, -0.6)
        axes.set_xlim(left=min(0.5, *(0.9 * c.to_limit for c in rows)))
        axes.xaxis.set_major_locator(LogLocator(subs=(1, 2, 5)))
        axes.xaxis.set_major_formatter(FormatStrFormatter("%g"))
        axes.minorticks_off()
        axes.grid(axis="x", color="#ccc")
        axes.set_axisbelow(True)
        axes.legend(loc="lower left", bbox_to_anchor=(0, 1), ncols=3, frameon=False)
        path = folder / f"{variant}-{size}.svg"
        figure.savefig(path)
        print(f"plot: {path}")


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("runs", type=pathlib.Path, nargs="+", metavar="run.json",
                        help="output of zorvan_bench with --benchmark_out; the first file names the machine")
    parser.add_argument("--svg", type=pathlib.Path, metavar="FOLDER")
    arguments = parser.parse_args()
    runs = [results.read_json(path) for path in arguments.runs]
    context = runs[0][0]
    rows = results.fastest([row for run in runs for row in run[1]])
    failures = [failure for run in runs for failure in run[2]]
    contests = list(contests_of(rows, read_others()))
    if not rows and not failures:
        sys.exit("the run has no measurements: does the filter match a name?")
    if contests or failures:
        print("\n".join(report(context, contests, failures, text_table, lambda text: text)))
    else:
        print("\n".join(text_table([("operation", "pixels", "size", "variant", "layout", "ns"),
                                    *((*row[:5], f"{row.ns:.0f}") for row in rows)])))
    if arguments.svg:
        write_plots(contests, arguments.svg)


if __name__ == "__main__":
    main()
