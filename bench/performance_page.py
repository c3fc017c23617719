"""The figures of docs/performance.md: written between its markers, never by hand."""
import platform
import re

import table


def machine():
    try:
        with open("/proc/cpuinfo", encoding="utf-8") as file:
            names = [line.split(":", 1)[1].strip() for line in file if line.startswith("model name")]
    except OSError:
        names = []
    cpu = f"{len(names)} x {names[0]}" if names else platform.machine()
    return f"{cpu}, Linux {platform.release().split('-')[0]}"


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
    text = replaced(text, "measured", f"Measured on {result['date']}: {machine()}.")
    text = replaced(text, "table", table.as_markdown(others))
    text = replaced(text, "growth", table.as_markdown(growth))
    page.write_text(text, encoding="utf-8")
