"""Rows of measurements as a table, for the terminal and for the page."""

HEADINGS = ["what", "value", "floor", "ratio", "target", "met", "note"]
TIMES = [("s", 1e9), ("ms", 1e6), ("µs", 1e3), ("ns", 1.0)]
SIZES = [("MiB", 2**20), ("KiB", 2**10), ("B", 1.0)]


def three_figures(value):
    """Three figures are what such a measurement can tell."""
    if value == 0:
        return "0"
    return f"{value:.0f}" if value >= 100 else f"{value:.3g}"


def quantity(value, unit):
    """A value in the largest unit that leaves a digit before the point."""
    for family in (TIMES, SIZES):
        factor = dict(family).get(unit)
        if factor is None:
            continue
        base = value * factor
        name, size = next(((n, f) for n, f in family if base >= f), family[-1])
        return f"{three_figures(base / size)} {name}"
    return f"{three_figures(value)} {unit}".strip()


def target(row):
    if "limit" not in row:
        return row["target"]
    limit = three_figures(row["limit"]) if "ratio" in row else quantity(row["limit"], row["unit"])
    stretch = f", stretch {three_figures(row['stretch'])}" if "stretch" in row else ""
    return f"{row['target']} {limit}{stretch}"


def verdict(row):
    if "met" not in row:
        return ""
    if not row["met"]:
        return "NO"
    return "yes, stretch no" if row.get("stretch met") is False else "yes"


def cells(row):
    return [
        row["what"],
        quantity(row["value"], row["unit"]),
        quantity(row["floor"], row["unit"]) if "floor" in row else "",
        f"{row['ratio']:.2f}" if "ratio" in row else "",
        target(row),
        verdict(row),
        row["note"],
    ]


def as_text(rows):
    lines = [HEADINGS] + [cells(row) for row in rows]
    widths = [max(len(line[column]) for line in lines) for column in range(len(HEADINGS))]
    printed = ["  ".join(cell.ljust(width) for cell, width in zip(line, widths)).rstrip() for line in lines]
    printed.insert(1, "-" * max(len(line) for line in printed))
    return "\n".join(printed)


def as_markdown(rows):
    head = f"| {' | '.join(HEADINGS)} |\n|{'---|' * len(HEADINGS)}"
    return "\n".join([head] + [f"| {' | '.join(cells(row))} |" for row in rows])
