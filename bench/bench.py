#!/usr/bin/env python3
"""Measures and prints one table: what, time, floor, ratio, target, met or not.

Started by `./run bench`, which builds first. The figures also go to build/bench/bench.json.
"""
import argparse
import datetime
import json
import pathlib
import platform
import subprocess
import sys

sys.dont_write_bytecode = True
import library_size
import performance_page
import table

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "bench"
SIZE_GROUP = "size"  # measured here; all others by koine_bench


def arguments():
    parser = argparse.ArgumentParser(prog="./run bench", description=__doc__)
    parser.add_argument("--filter", default="", metavar="TEXT", help="only the groups with TEXT in their names")
    parser.add_argument("--strict", action="store_true", help="a target that is not met is an error")
    parser.add_argument("--update-docs", action="store_true", help="write the tables into docs/performance.md")
    return parser.parse_args()


def measure(text):
    program = BUILD / "bench" / "koine_bench"
    done = subprocess.run([program, text], stdout=subprocess.PIPE, text=True, check=False)
    if done.returncode != 0:
        also = f"; {SIZE_GROUP} is a group as well" if done.returncode == 2 else ""
        sys.exit(f"bench: {program.name} failed, the reason stands above{also}")
    return json.loads(done.stdout)


def machine():
    try:
        lines = pathlib.Path("/proc/cpuinfo").read_text(encoding="utf-8").splitlines()
    except OSError:
        lines = []
    names = [line.split(":", 1)[1].strip() for line in lines if line.startswith("model name")]
    processor = f"{len(names)} x {names[0]}" if names else platform.machine()
    return f"{processor}, Linux {platform.release().split('-')[0]}"


def main():
    options = arguments()
    if options.update_docs and options.filter:
        sys.exit("bench: --update-docs needs all figures; leave --filter away")
    rows = [] if options.filter == SIZE_GROUP else measure(options.filter)
    if options.filter in SIZE_GROUP:
        rows += library_size.rows(ROOT)
    result = {"date": datetime.date.today().isoformat(), "machine": machine(), "rows": rows}
    file = BUILD / "bench.json"
    file.write_text(json.dumps(result, indent=2) + "\n")

    print(table.as_text(rows))
    missed = [row["what"] for row in rows if row.get("met") is False]
    print(f"\n{len(rows)} rows, {len(missed)} targets not met; figures: {file.relative_to(ROOT)}")
    if options.update_docs:
        performance_page.update(ROOT / "docs" / "performance.md", result)
        print("docs/performance.md holds these figures now")
    return 1 if options.strict and missed else 0


if __name__ == "__main__":
    sys.exit(main())
