#!/usr/bin/env python3
"""Turns a Markdown file of the repository into what Doxygen understands, on standard output.

The files are written for readers of the source tree: links are relative paths, sections are linked by the
names that Git hosts give them, blocks carry the usual language names. Doxygen wants labels instead.
"""

import html
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
HIGHLIGHTED = {"cpp": "cpp", "c": "c", "python": "py"}
LINK = re.compile(r"(!?)\[((?:[^\[\]]|\[[^\]]*\])*)\]\(([^)\s]+)\)")
FENCE = re.compile(r"^(\s*)(```+)\s*(\w*)\s*$")
HEADING = re.compile(r"^(#{1,4})\s+(.*?)\s*$")


def pages():
    """The Markdown files that are pages of the site: the input of the Doxyfile."""
    text = (ROOT / "docs/site/Doxyfile").read_text().replace("\\\n", " ")
    inputs = re.search(r"^INPUT\s*=(.*)$", text, re.M).group(1).split()
    found = set()
    for name in inputs:
        path = ROOT / name
        found.update(path.rglob("*.md") if path.is_dir() else {path})
    return {path for path in found if path.suffix == ".md"}


def label_of(path):
    """docs/traces.md -> traces, simulator/README.md -> simulator_readme"""
    name = path.relative_to(ROOT).with_suffix("").as_posix().lower()
    return re.sub(r"[^a-z0-9]+", "_", name.removeprefix("docs/"))


def slug(heading):
    """The name that Git hosts give a section."""
    text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading).lower()
    return re.sub(r"[^\w\- ]", "", text).replace(" ", "-")


class Page:
    def __init__(self, path):
        self.path = path.resolve()
        self.label = label_of(self.path)
        self.pages = pages()

    def link(self, match):
        picture, text, target = match.groups()
        if "://" in target:
            return match.group(0)
        if picture:
            return f'<img src="{Path(target).name}" alt="{text}" class="picture"/>'
        file, _, section = target.partition("#")
        page = (self.path.parent / file).resolve() if file else self.path
        if page in self.pages:
            return f"[{text}](@ref {label_of(page)}{'__' + section if section else ''})"
        if page.exists():
            return text  # a file or folder of the source tree
        return f"[{text}](@ref no_such_file_{slug(target)})"  # Doxygen warns

    def code(self, match):
        """Percent signs would be dropped, and addresses in examples would become links."""
        text = re.sub(r"%(?=\w)", "%%", match.group(1))
        if "://" not in text:
            return f"`{text}`"
        return f"<code>{html.escape(text, quote=False).replace('://', ':<span></span>//')}</code>"

    def prose(self, line):
        """Links outside of code spans."""
        line = re.sub(r"`([^`]+)`", self.code, line)
        parts = re.split(r"(`+[^`]*`+)", line)
        if "](" not in line:
            return line
        # A code span may be the text of a link: those are looked at with their surroundings.
        if LINK.search(line) and not any("](" in part for part in parts[1::2]):
            return LINK.sub(self.link, line)
        return "".join(LINK.sub(self.link, part) if i % 2 == 0 else part for i, part in enumerate(parts))

    def heading(self, match):
        marks, text = match.groups()
        label = self.label if marks == "#" else f"{self.label}__{slug(text)}"
        return f"{marks} {self.prose(text.replace('`', ''))} {{#{label}}}"

    def lines(self):
        fence = ""
        for line in self.path.read_text().splitlines():
            opening = FENCE.match(line)
            if fence:
                if line.strip() == fence:
                    fence = ""
                yield line
            elif opening:
                indent, fence, language = opening.groups()
                yield f"{indent}{fence}{{.{HIGHLIGHTED.get(language, 'unparsed')}}}"
            elif re.fullmatch(r"\s*<!--.*-->\s*", line):
                yield ""
            elif HEADING.match(line):
                yield self.heading(HEADING.match(line))
            else:
                yield self.prose(line)


if __name__ == "__main__":
    sys.stdout.write("\n".join(Page(Path(sys.argv[1])).lines()) + "\n")
