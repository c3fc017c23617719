#!/usr/bin/env python3
"""Writes the C and C++ blocks of the documents into files that the build compiles.

usage: extract.py ROOT OUTPUT

A block with a `main` is a program, anything else a fragment that a file of wrappers/ stands around. Addresses
of devices in programs are asked for when the program runs. The list of what was written goes to standard output:
"program NAME FILE" or "fragment NAME FILE".
"""

import re
import sys
from pathlib import Path

from markdown import pages_of

SUFFIX = {"cpp": ".cpp", "c": ".c"}
PLACE = re.compile(r"^ *// @BLOCK@\n", re.M)
ADDRESS = re.compile(r'"(https?://[^"]*\b192\.168\.0\.10\b[^"]*)"')


def is_program(block):
    return re.search(r"\bmain\s*\(", block.text) is not None


def file_name(root, block):
    page = block.page.relative_to(root).with_suffix("").as_posix().lower()
    return re.sub(r"[^a-z0-9]+", "_", page) + f"_{block.number}"


def wrapped(root, block):
    """The text to compile. Messages of the compiler name the page."""
    name = block.page.relative_to(root).as_posix()
    text = f'#line {block.line} "{name}"\n{block.text}'
    if is_program(block):
        return ADDRESS.sub(r'docsDevice("\1")', text)
    wrapper = root / "tests/docs/wrappers" / ((block.options or "declarations") + SUFFIX[block.language])
    return PLACE.sub(lambda _: text, wrapper.read_text())


def main(root, output):
    output.mkdir(parents=True, exist_ok=True)
    wanted = set()
    for page in pages_of(root):
        for block in page.blocks:
            if block.language not in SUFFIX or block.hint == "from":
                continue
            name = file_name(root, block)
            file = output / (name + SUFFIX[block.language])
            text = wrapped(root, block)
            if not file.exists() or file.read_text() != text:
                file.write_text(text)
            wanted.add(file)
            print("program" if is_program(block) else "fragment", name, file)
    for old in set(output.iterdir()) - wanted:
        if old.suffix in SUFFIX.values():
            old.unlink()


if __name__ == "__main__":
    main(Path(sys.argv[1]).resolve(), Path(sys.argv[2]))
