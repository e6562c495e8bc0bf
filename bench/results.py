"""Results of zorvan_bench: the files that it writes, and the compact ones in docs/performance."""

import collections
import csv
import io
import json

# Times in nanoseconds. Of the library only (`--ours`) a row has no plain loop and no limit.
Row = collections.namedtuple(
    "Row", "operation pixels size variant layout ns noise call_ns plain_ns plain_noise limit_ns limit_noise limit_by")

ORDINARY = "iteration"  # the rest are means and deviations of repetitions


def read_json(path):
    """The context, the rows and the failures of a run."""
    with open(path, encoding="utf-8") as file:
        run = json.load(file)
    rows, failures = [], []
    for entry in run["benchmarks"]:
        if entry["run_type"] != ORDINARY:
            continue
        operation, pixels, size, variant, layout = entry["name"].split("/")[:5]
        if layout.startswith("iterations"):
            layout = "tight"
        if entry.get("error_occurred"):
            failures.append(f"{operation} {pixels} {size} {variant}: {entry['error_message']}")
            continue
        numbers = {name: entry.get(name) for name in ("call_ns", "plain_ns", "plain_noise", "limit_ns", "limit_noise")}
        rows.append(Row(operation, pixels, size, variant, layout, entry["real_time"], entry["ours_noise"], **numbers,
                        limit_by=entry.get("label", "")))
    return run["context"], rows, failures


def fastest(rows):
    """The fastest of the rows that have the same name; those that were compared before those of the library only."""
    best = {}
    for row in rows:
        key = row[:5]
        if key not in best or (row.limit_ns is None, row.ns) < (best[key].limit_ns is None, best[key].ns):
            best[key] = row
    return list(best.values())


def limits_of(rows):
    """The lowest limit of each operation and size."""
    limits = {}
    for row in rows:
        if row.limit_ns:
            key = row.operation, row.pixels, row.size
            limits[key] = min(limits.get(key, row.limit_ns), row.limit_ns)
    return limits


def pixels_of(size):
    width, height = map(int, size.split("x"))
    return width * height


def _number(value):
    """Four digits, more than the noise."""
    return "" if value is None else f"{float(f'{value:.4g}'):.10g}"


def _write(path, context, lines):
    """The context is in lines that begin with #."""
    text = io.StringIO()
    for name, value in context.items():
        text.write(f"# {name}: {value}\n")
    csv.writer(text, lineterminator="\n").writerows(lines)
    path.write_text(text.getvalue(), encoding="utf-8")


def _read(path):
    lines = path.read_text(encoding="utf-8").splitlines()
    context = dict(line[2:].split(": ", 1) for line in lines if line.startswith("# "))
    return context, csv.DictReader(line for line in lines if not line.startswith("#"))


def write_rows(path, context, rows):
    _write(path, context,
           [Row._fields, *([cell if isinstance(cell, str) else _number(cell) for cell in row] for row in rows)])


def read_rows(path):
    context, lines = _read(path)
    rows = []
    for cells in lines:
        numbers = {name: float(cells[name]) if cells[name] else None
                   for name in Row._fields if name.endswith("ns") or name.endswith("noise")}
        rows.append(Row(**{**cells, **numbers}))
    return context, rows


SHAPE = "operation", "pixels", "variant", "layout"


def write_shapes(path, context, rows):
    """A line for each operation, variant and layout, with the times of all sizes."""
    sizes = sorted({row.size for row in rows}, key=lambda size: (pixels_of(size), size))
    times = collections.defaultdict(dict)
    for row in rows:
        times[tuple(getattr(row, name) for name in SHAPE)][row.size] = row.ns
    _write(path, context,
           [[*SHAPE, *sizes], *([*key, *(_number(of.get(size)) for size in sizes)] for key, of in times.items())])


def read_shapes(path):
    """The context, and the nanoseconds by size of each (operation, pixels, variant, layout)."""
    context, lines = _read(path)
    return context, {tuple(cells[name] for name in SHAPE): {size: float(time) for size, time in cells.items()
                                                            if size not in SHAPE and time} for cells in lines}
