"""The figures of docs/performance.md: written between its markers, never by hand."""
import re

import table


def replaced(text, name, content):
    begin, end = f"<!-- {name}: begin -->", f"<!-- {name}: end -->"
    pattern = re.compile(re.escape(begin) + ".*?" + re.escape(end), re.DOTALL)
    if not pattern.search(text):
        raise SystemExit(f"bench: docs/performance.md has lost its marker {begin}")
    return pattern.sub(lambda _: f"{begin}\n{content}\n{end}", text)


def update(page, result):
    growth = [row for row in result["rows"] if row["group"] == "growth"]
    others = [row for row in result["rows"] if row["group"] != "growth"]
    text = page.read_text(encoding="utf-8")
    text = replaced(text, "measured", f"Measured on {result['date']}: {result['machine']}.")
    text = replaced(text, "table", table.as_markdown(others))
    text = replaced(text, "growth", table.as_markdown(growth))
    page.write_text(text, encoding="utf-8")
