#!/usr/bin/env python3
"""Writes the results of bench/measure into the documentation: publish.py RESULTS COMMIT DOCS

RESULTS has a file for each of the RUNS of zorvan_bench. In DOCS/performance they become the tables, data and plots of
this machine, and in DOCS/performance.md its section.
"""

import math
import pathlib
import re
import subprocess
import sys

import report
import results

RUNS = "small", "large", "variants", "chains", "shapes"

VECTOR_BYTES = {"VariantSse2": 16, "VariantSsse3": 16, "VariantSse42": 16, "VariantAvx": 32, "VariantAvx2": 32,
                "VariantAvx512": 64}
PIXEL_BYTES = {"u8": 1, "u16": 2, "s16": 2, "s32": 4, "f32": 4, "f32_u8": 1, "s32_u8": 1, "u8_f32": 1, "s32_f32": 4}

# Time per pixel over that of the next width of whole vectors: what is above is in bold.
MOST = 2
NARROW = 32  # widths up to it are not judged


def machine_of(kind):
    """For example amd_25_1, from 'AuthenticAMD family 25 model 1'."""
    maker, _, family, _, model = kind.split()
    return f"{maker.replace('Authentic', '').replace('Genuine', '').lower()}_{family}_{model}"


def context_of(runs, commit):
    first, rows, _ = runs["small"]
    return {
        "processor": first["processor"],
        "kind": first["kind"],
        "caches": " ".join(str(cache["size"]) for cache in first["caches"] if cache["type"] != "Instruction"),
        "compiler": first["compiler"],
        "commit": commit,
        "date": first["date"][:10],
        "variant": rows[0].variant,
        "variants": " ".join(dict.fromkeys(row.variant for row in runs["variants"][1])),
        "skipped": runs["variants"][0].get("skipped_variants", ""),
        **{f"command of {name}": run[0]["command"] for name, run in runs.items()},
    }


def mean(values):
    return math.exp(sum(map(math.log, values)) / len(values))


def sizes_of(contests):
    return sorted({c.size for c in contests}, key=results.pixels_of)


def summary_rows(context, contests):
    """Geometric means by variant and size, and of the plain loop."""
    contests = [c for c in contests if not c.operation.startswith("flood") and c.operation not in report.CHAINS]
    sizes = sizes_of(contests)
    yield "time / limit, geometric means", *sizes
    for variant in reversed(context["variants"].split()):
        of = {size: [c.to_limit for c in contests if c.variant == variant and c.size == size] for size in sizes}
        yield variant, *(f"{mean(of[size]):.2f}" if of[size] else "" for size in sizes)
    plain = {size: [c.to_limit / c.to_plain for c in contests if c.to_plain and c.size == size] for size in sizes}
    yield "plain loop", *(f"{mean(plain[size]):.2f}" if plain[size] else "" for size in sizes)


def worst_ratio(times, variant, pixels):
    """The largest time per pixel of a width over that of the next width of whole vectors, and the width."""
    vector = max(1, VECTOR_BYTES[variant] // PIXEL_BYTES[pixels])
    found = []
    for size, time in times.items():
        width, height = map(int, size.split("x"))
        whole = f"{-(-width // vector) * vector}x{height}"
        if width > NARROW and whole in times:
            found.append((time / results.pixels_of(size) * results.pixels_of(whole) / times[whole], width))
    return max(found, default=None)


def shape_rows(context, shapes):
    variants = context["variants"].split()
    yield "operation", "pixels", "rows", *variants
    for operation, pixels, layout in dict.fromkeys((key[0], key[1], key[3]) for key in shapes):
        cells = []
        for variant in variants:
            worst = worst_ratio(shapes.get((operation, pixels, variant, layout), {}), variant, pixels)
            text = f"{worst[0]:.2f} at {worst[1]}" if worst else ""
            cells.append(f"**{text}**" if worst and worst[0] > MOST else text)
        yield operation, pixels, layout, *cells


def title_of(context):
    _, _, family, _, model = context["kind"].split()
    return f"{context['processor']}, family {family}, model {model}"


def origin_of(context):
    caches = ", ".join(f"{int(size) // 1024} KiB" for size in context["caches"].split())
    skipped = f" Skipped, not supported by this processor: {context['skipped']}." if context["skipped"] else ""
    return (f"{context['date']}, commit {context['commit']}, compiler {context['compiler']}; {context['kind']}; caches "
            f"of {caches}; selected: {context['variant']}.{skipped}")


def tables(context, contests, failures, shapes):
    """The page with all tables of the machine."""
    yield f"# {title_of(context)}"
    yield ""
    yield "Made by `./run bench measure`; [performance](../performance.md) explains the columns."
    yield ""
    yield origin_of(context)
    selected = [c for c in contests if c.variant == context["variant"] and c.to_plain]
    for title, rows in [*report.one_variant(selected), *report.several_variants(contests)]:
        rows = list(rows)
        yield ""
        yield f"## {title}"
        yield ""
        yield from report.markdown_table(rows) if len(rows) > 1 else ["None."]
    yield ""
    yield "## Shapes"
    yield ""
    yield (f"The largest ratio of the time per pixel at a width above {NARROW} to that at the next width of whole "
           f"vectors, and that width. Those above {MOST} are in bold.")
    yield ""
    yield from report.markdown_table(shape_rows(context, shapes))
    for failure in failures:
        yield f"FAILED {failure}"


def section(machine, context, contests):
    """What the page about performance says of the machine."""
    yield f"### {title_of(context)}"
    yield ""
    yield origin_of(context)
    yield ""
    yield from report.markdown_table(summary_rows(context, contests))
    yield ""
    yield f"[All tables](performance/{machine}.md). A row of dots is a group of operations, the large one their mean:"
    yield ""
    yield f"![time over limit by size](performance/{machine}_speed.svg)"
    yield ""
    yield "All variants:"
    yield ""
    yield f"![time over limit by variant](performance/{machine}_variants.svg)"
    yield ""
    yield ("The time for reading an image that the call before has written. Streaming stores leave it in memory; the "
           "dotted lines are the sizes of the caches from the second on:")
    yield ""
    yield f"![reading a result](performance/{machine}_reuse.svg)"
    yield ""
    yield "Narrow images, and rows with gaps at all addresses:"
    yield ""
    yield f"![time per pixel by width](performance/{machine}_shapes.svg)"


def insert(page, machine, lines):
    """Replaces the machine's section, or adds it after the others."""
    begin, end, last = f"<!-- {machine} begin -->", f"<!-- {machine} end -->", "<!-- machines end -->"
    text = page.read_text(encoding="utf-8")
    whole = "\n".join([begin, "", *lines, "", end])
    if begin in text:
        text = re.sub(f"{begin}.*?{end}", lambda _: whole, text, flags=re.DOTALL)
    elif last in text:
        text = text.replace(last, f"{whole}\n\n{last}")
    else:
        sys.exit(f"{page} has no line '{last}', before which the section belongs")
    page.write_text(text, encoding="utf-8")


def main():
    folder, commit, docs = pathlib.Path(sys.argv[1]), sys.argv[2], pathlib.Path(sys.argv[3])
    runs = {name: results.read_json(folder / f"{name}.json") for name in RUNS}
    context = context_of(runs, commit)
    rows = results.fastest([row for name in RUNS if name != "shapes" for row in runs[name][1]])
    rows.sort(key=lambda row: context["variants"].split().index(row.variant))  # the oldest first, as in the tables
    failures = [failure for run in runs.values() for failure in run[2]]
    machine = machine_of(context["kind"])
    base = docs / "performance" / machine
    base.parent.mkdir(exist_ok=True)
    results.write_rows(base.with_suffix(".csv"), context, rows)
    results.write_shapes(base.with_name(f"{machine}_shapes.csv"), context, runs["shapes"][1])
    _, shapes = results.read_shapes(base.with_name(f"{machine}_shapes.csv"))
    contests = list(report.contests_of(rows, report.read_others()))
    base.with_suffix(".md").write_text("\n".join(tables(context, contests, failures, shapes)) + "\n", encoding="utf-8")
    insert(docs / "performance.md", machine, section(machine, context, contests))
    subprocess.run([sys.executable, "-B", pathlib.Path(__file__).with_name("plots.py"), base], check=True)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
