#!/usr/bin/env python3
"""Draws the plots of docs/performance.md: plots.py docs/performance/<machine>

It reads <machine>.csv and <machine>_shapes.csv, and writes <machine>_speed.svg, <machine>_variants.svg,
<machine>_reuse.svg and <machine>_shapes.svg. The background is white, so that they can be read on dark pages too.
"""

import math
import pathlib
import sys

import matplotlib

matplotlib.use("svg")
matplotlib.rcParams.update({
    "svg.hashsalt": "zorvan", "svg.fonttype": "none", "font.family": "sans-serif", "font.size": 9,
    "axes.spines.top": False, "axes.spines.right": False, "axes.grid": True, "grid.color": "#e0e0e0",
    "grid.linewidth": 0.6, "legend.frameon": False, "figure.facecolor": "white", "savefig.facecolor": "white"})

import matplotlib.pyplot as plt  # noqa: E402
import matplotlib.ticker  # noqa: E402

import report  # noqa: E402
import results  # noqa: E402

OURS, PLAIN, THIRD = "#1f5fa8", "#d9731a", "#3a8f4d"

# The rows of the first plot, from the top: a name and the operations that belong to it.
GROUPS = [
    ("fill", ["fill"]), ("copy", ["copy"]), ("convert", ["convert"]),
    ("fill, copy under a mask", ["fill_mask", "copy_mask"]),
    ("sums, products", ["add", "sub", "mul", "addc"]), ("quotients", ["div"]),
    ("squares, absolutes", ["sqr", "abs"]), ("roots", ["sqrt"]), ("accumulate under a mask", ["accumulate"]),
    ("and, or, xor, not", ["and", "or", "xor", "not"]), ("compare", ["compare"]),
    ("min, max, mean", ["min", "max", "mean"]),
    ("statistics under a mask", ["mean_mask", "meanstd_mask", "minmaxloc_mask"]),
    ("Laplace 3x3, 5x5", ["laplace"]), ("erode, dilate", ["erode", "dilate"]), ("open, close", ["open", "close"]),
    ("flood fill", ["flood"])]


def group_of(operation):
    """The group with the longest name that the operation's name begins with; None for chains."""
    if operation in report.CHAINS:
        return None
    matching = [(len(word), name) for name, words in GROUPS for word in words
                if operation == word or operation.startswith(word + "_") or operation.startswith(word)
                and operation[len(word):len(word) + 1].isdigit()]
    return max(matching)[1]


def mean(values):
    return math.exp(sum(map(math.log, values)) / len(values))


def plain_number(value, _=None):
    return f"{value:g}"


def log_axis(axis, ticks):
    axis.set_major_locator(matplotlib.ticker.FixedLocator(ticks))
    axis.set_major_formatter(matplotlib.ticker.FuncFormatter(plain_number))
    axis.set_minor_locator(matplotlib.ticker.NullLocator())


def sizes_of(rows):
    return sorted({row.size for row in rows}, key=results.pixels_of)


def selected_rows(context, rows):
    return [row for row in rows if row.variant == context["variant"] and row.limit_ns and group_of(row.operation)]


def draw_speed(context, rows):
    """Our time and that of the plain loop over the limit, a panel for each size."""
    rows = selected_rows(context, rows)
    sizes = sizes_of(rows)
    figure, panels = plt.subplots(1, len(sizes), sharey=True, figsize=(2.6 * len(sizes) + 1.6, 5.6), squeeze=False)
    for panel, size in zip(panels[0], sizes):
        for place, (group, _) in enumerate(GROUPS):
            of = [row for row in rows if row.size == size and group_of(row.operation) == group]
            if not of:
                continue
            for offset, color, marker, values in ((-0.17, OURS, "o", [row.ns / row.limit_ns for row in of]),
                                                  (0.17, PLAIN, "D", [row.plain_ns / row.limit_ns for row in of])):
                panel.plot(values, [place + offset] * len(values), linestyle="", marker=".", markersize=5,
                           color=color, alpha=0.45, markeredgewidth=0)
                panel.plot([mean(values)], [place + offset], marker=marker, markersize=5, color=color)
        panel.axvline(1, color="black", linewidth=0.8)
        panel.set_xscale("log")
        log_axis(panel.xaxis, [0.5, 1, 2, 5, 10, 20, 50, 100, 200])
        panel.set_xlim(0.4, 350)
        panel.set_title(size, fontsize=10)
        panel.set_xlabel("time / limit")
        panel.tick_params(axis="y", length=0)
    panels[0][0].set_yticks(range(len(GROUPS)), [name for name, _ in GROUPS])
    panels[0][0].set_ylim(len(GROUPS) - 0.4, -0.6)
    marks = [plt.Line2D([], [], color=OURS, marker="o", linestyle="", label="the library"),
             plt.Line2D([], [], color=PLAIN, marker="D", linestyle="", label="the plain loop"),
             plt.Line2D([], [], color="grey", marker=".", linestyle="", label="single operations"),
             plt.Line2D([], [], color="black", label="the streaming limit")]
    figure.legend(handles=marks, loc="upper center", ncols=4)
    figure.tight_layout(rect=(0, 0, 1, 0.94))
    return figure


# The lines of the plot by variant, merged from the groups, so that each has many operations.
FAMILIES = [("fill, copy, convert", GROUPS[0:4], "#1f5fa8"), ("arithmetic", GROUPS[4:9], "#d9731a"),
            ("logic, compare", GROUPS[9:11], "#3a8f4d"), ("statistics", GROUPS[11:13], "#b3282d"),
            ("Laplace filter", GROUPS[13:14], "#7b4fa3"), ("morphology", GROUPS[14:16], "#7a5230"),
            ("flood fill", GROUPS[16:17], "#606060")]


def draw_variants(context, rows):
    """The time over the limit of each variant, a panel for each size that all variants have."""
    limits = results.limits_of(rows)
    variants = context["variants"].split()
    rows = [row for row in rows if group_of(row.operation) and (row.operation, row.pixels, row.size) in limits]
    sizes = [size for size in sizes_of(rows) if {row.variant for row in rows if row.size == size} == set(variants)]
    figure, panels = plt.subplots(1, len(sizes), sharey=True, figsize=(2.9 * len(sizes) + 1.9, 4.2), squeeze=False)
    for panel, size in zip(panels[0], sizes):
        for name, groups, color in FAMILIES:
            members = {group for group, _ in groups}
            means = []
            for variant in variants:
                of = [row.ns / limits[row.operation, row.pixels, size] for row in rows
                      if row.size == size and row.variant == variant and group_of(row.operation) in members]
                means.append(mean(of) if of else math.nan)
            panel.plot(range(len(variants)), means, marker="o", markersize=4, linewidth=1.6, color=color, label=name)
        panel.axhline(1, color="black", linewidth=0.8)
        panel.set_yscale("log")
        log_axis(panel.yaxis, [1, 2, 5, 10, 20, 50, 100])
        panel.set_xticks(range(len(variants)), [name.removeprefix("Variant") for name in variants], rotation=45)
        panel.set_title(size, fontsize=10)
    panels[0][0].set_ylabel("time / limit, geometric means")
    figure.legend(*panels[0][0].get_legend_handles_labels(), loc="center right")
    figure.tight_layout(rect=(0, 0, 1 - 1.7 / figure.get_size_inches()[0], 1))
    return figure


# An operation, the one that reads its result, and both as one row.
READERS = [("copy", "mean", "copy_mean", "u8"), ("copy", "max", "copy_max", "f32"), ("add", "max", "add_max", "f32"),
           ("abs", "max", "abs_max", "f32")]
PIXEL_BYTES = {"u8": 1, "u16": 2, "s16": 2, "s32": 4, "f32": 4}


def draw_reuse(context, rows):
    """The time for reading a result again and again, and just after it has been written."""
    rows = [row for row in rows if row.variant == context["variant"] and row.layout == "tight"]
    ns = {(row.operation, row.pixels, row.size): row.ns for row in rows}
    figure, panels = plt.subplots(1, len(READERS), figsize=(11.5, 3.4), sharey=True)
    for panel, (writer, reader, both, pixels) in zip(panels, READERS):
        sizes = [size for size in sizes_of(rows) if (both, pixels, size) in ns and (writer, pixels, size) in ns]
        bytes_of = [results.pixels_of(size) * PIXEL_BYTES[pixels] / 2**20 for size in sizes]

        def per_byte(time_of):
            return [time_of(size) / (results.pixels_of(size) * PIXEL_BYTES[pixels]) for size in sizes]

        panel.plot(bytes_of, per_byte(lambda size: ns[reader, pixels, size]), marker="o", markersize=4, color=OURS,
                   label="the same image again and again")
        panel.plot(bytes_of, per_byte(lambda size: max(0, ns[both, pixels, size] - ns[writer, pixels, size])),
                   marker="D", markersize=4, color=PLAIN, label="an image that has just been written")
        for cache in map(int, context["caches"].split()[1:]):
            panel.axvline(cache / 2**20, color="black", linewidth=0.8, linestyle=":")
        panel.set_xscale("log", base=2)
        log_axis(panel.xaxis, [0.25, 1, 4, 16, 64])
        panel.set_title(f"{reader} after {writer}, {pixels}", fontsize=10)
        panel.set_xlabel("MiB of the image")
    panels[0].set_ylabel("ns per byte read")
    panels[0].set_ylim(bottom=0)
    figure.legend(*panels[0].get_legend_handles_labels(), loc="upper center", ncols=2)
    figure.tight_layout(rect=(0, 0, 1, 0.91))
    return figure


LAYOUTS = [("tight", OURS, "without gaps"), ("padded", THIRD, "gaps, rows on cache lines"),
           ("odd", PLAIN, "gaps, rows on all addresses")]


def draw_shapes(context, shapes):
    """The time per pixel of all widths, a panel for each operation."""
    operations = list(dict.fromkeys(key[:2] for key in shapes))
    columns = 4
    lines = -(-len(operations) // columns)
    figure, panels = plt.subplots(lines, columns, sharex=True, figsize=(11.5, 2.0 * lines + 0.6), squeeze=False)
    for panel, (operation, pixels) in zip(panels.flat, operations):
        for layout, color, label in LAYOUTS:
            times = shapes.get((operation, pixels, context["variant"], layout), {})
            widths = sorted(int(size.split("x")[0]) for size in times if size.endswith("x480"))
            widths = [width for width in widths if width <= 130]
            panel.plot(widths, [times[f"{width}x480"] / (width * 480) for width in widths], color=color, linewidth=1.1,
                       label=label)
        panel.set_yscale("log")
        low, high = panel.get_ylim()
        log_axis(panel.yaxis, [tick for tick in (0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1, 2, 5, 10, 20, 50)
                               if low / 1.5 <= tick <= high * 1.5])
        panel.set_xticks([1, 32, 64, 96, 128])
        panel.set_title(f"{operation}, {pixels}", fontsize=9, loc="left")
    for panel in list(panels.flat)[len(operations):]:
        panel.set_visible(False)
    for panel in panels[-1]:
        panel.set_xlabel("width, 480 rows")
    for line in panels:
        line[0].set_ylabel("ns per pixel")
    figure.legend(*panels[0][0].get_legend_handles_labels(), loc="upper center", ncols=3)
    figure.tight_layout(rect=(0, 0, 1, 1 - 0.35 / figure.get_size_inches()[1]))
    return figure


def main():
    machine = pathlib.Path(sys.argv[1])
    context, rows = results.read_rows(machine.with_suffix(".csv"))
    _, shapes = results.read_shapes(machine.with_name(machine.name + "_shapes.csv"))
    for name, figure in (("speed", draw_speed(context, rows)), ("variants", draw_variants(context, rows)),
                         ("reuse", draw_reuse(context, rows)), ("shapes", draw_shapes(context, shapes))):
        path = machine.with_name(f"{machine.name}_{name}.svg")
        figure.savefig(path, metadata={"Date": None})
        print(path)


if __name__ == "__main__":
    main()
