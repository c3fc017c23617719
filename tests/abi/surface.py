#!/usr/bin/env python3
"""The binary interface of a shared library as text: its exported symbols and the slots of its virtual tables.

    surface.py LIBRARY BASELINE            compares; exit code 1 and the differences when they are not the same
    surface.py --update LIBRARY BASELINE   writes the baseline

Reads the library itself, not the sources, so it works on what is shipped, stripped or not, for any processor.
"""
import argparse
import collections
import difflib
import re
import shutil
import subprocess
import sys

READELF = shutil.which("readelf") or sys.exit("surface.py: readelf is missing; install binutils")

Symbol = collections.namedtuple("Symbol", "address size name version")


def output(*command, text=None):
    return subprocess.run(command, check=True, capture_output=True, text=True, input=text).stdout


def demangled(names):
    return dict(zip(names, output("c++filt", text="\n".join(names)).splitlines()))


def exported_symbols(library):
    """Defined dynamic symbols; version definitions themselves (absolute) are left out."""
    symbols = []
    for line in output(READELF, "--wide", "--dyn-syms", library).splitlines():
        match = re.match(r"\s*\d+: ([0-9a-f]+)\s+(\S+) (\S+)\s+\S+\s+\S+\s+(\S+) (\S+)$", line)
        if match and match[3] != "SECTION" and match[4] not in ("UND", "ABS"):
            name, _, version = match[5].partition("@@")
            symbols.append(Symbol(int(match[1], 16), int(match[2], 0), name, version or "-"))
    return symbols


def relocations(library):
    """What the loader writes: {place: name or address}."""
    places = {}
    for line in output(READELF, "--wide", "--relocs", library).splitlines():
        match = re.match(r"([0-9a-f]+)\s+[0-9a-f]+ R_\S+\s+(.*)$", line)
        if match:
            symbolic = re.match(r"[0-9a-f]+ +([A-Za-z_][^\s@]*)", match[2])
            relative = re.match(r"([0-9a-f]+)$", match[2].strip())
            if symbolic:
                places[int(match[1], 16)] = symbolic[1]
            elif relative:
                places[int(match[1], 16)] = int(relative[1], 16)
    return places


def pointer_size(library):
    return 8 if "ELF64" in output(READELF, "--file-header", library) else 4


def table_lines(table, places, by_address, width):
    """The words of one table that hold operations, numbered from the table's begin."""
    for index in range(table.size // width):
        target = places.get(table.address + index * width)
        if isinstance(target, int):
            target = by_address.get(target, "an operation that is not exported")
        if target is not None:
            yield index, target


def surface(library):
    symbols = exported_symbols(library)
    if not symbols:
        sys.exit(f"surface.py: {library} exports nothing; is it a shared library?")
    places, width = relocations(library), pointer_size(library)
    by_address = {symbol.address: symbol.name for symbol in symbols}
    tables = [symbol for symbol in symbols if symbol.name.startswith("_ZTV")]
    slots = {table.name: list(table_lines(table, places, by_address, width)) for table in tables}

    targets = [target for lines in slots.values() for _, target in lines]
    plain = demangled(sorted({symbol.name for symbol in symbols} | set(targets)))
    # A constructor or destructor is exported once for whole objects and once for parts of others.
    counted = collections.Counter((symbol.version, plain[symbol.name]) for symbol in symbols)
    lines = ["# exported symbols: version, name, how often"]
    lines += [f"{version} {name}" + (f" x{count}" if count > 1 else "")
              for (version, name), count in sorted(counted.items())]
    for table in sorted(slots):
        lines += ["", f"# {plain[table]}"]
        lines += [f"{index:4} {plain[target]}" for index, target in slots[table]]
    return lines


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--update", action="store_true")
    parser.add_argument("library")
    parser.add_argument("baseline")
    options = parser.parse_args()
    found = surface(options.library)
    if options.update:
        with open(options.baseline, "w", encoding="utf-8") as file:
            file.write("\n".join(found) + "\n")
        return 0
    with open(options.baseline, encoding="utf-8") as file:
        kept = file.read().splitlines()
    difference = list(difflib.unified_diff(kept, found, options.baseline, options.library, lineterm="", n=0))
    print("\n".join(difference) if difference else f"{len(found)} lines agree with {options.baseline}")
    return 1 if difference else 0


if __name__ == "__main__":
    sys.exit(main())
