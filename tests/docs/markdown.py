"""The blocks and links of the documents.

A block is text between fences. The comment in the line before it can say how it is checked:

    <!-- run: device http://192.168.0.10 dome; status 1 -->
    <!-- compile: statements -->
    <!-- from: examples/smallest_host.cpp -->
"""

import re
from dataclasses import dataclass, field
from pathlib import Path

FENCE = re.compile(r"^(\s*)(```+)\s*([^`\s]*)\s*$")
HINT = re.compile(r"^\s*<!-- (run|compile|from): (.*?) -->\s*$")
LINK = re.compile(r"\]\(([^)\s]+)\)")
HEADING = re.compile(r"^#{1,6}\s+(.*?)\s*$")
LIST_ITEM = re.compile(r"^\s*([-*]|\d+\.)\s")
SKIPPED = {"build", ".git", ".cache"}


@dataclass
class Block:
    page: Path
    line: int  # of its first line, counted from 1
    language: str
    lines: list
    number: int  # among the blocks of its language on its page, counted from 1
    hint: str = ""  # "run", "compile", "from" or nothing
    options: str = ""

    @property
    def text(self):
        return "\n".join(self.lines) + "\n"

    def option(self, name):
        """What stands behind a word of the hint; None without it."""
        for part in self.options.split(";"):
            words = part.split()
            if words and words[0] == name:
                return words[1:]
        return None


@dataclass
class Page:
    path: Path
    blocks: list = field(default_factory=list)
    links: list = field(default_factory=list)  # (line, target)
    sections: set = field(default_factory=set)
    mistakes: list = field(default_factory=list)  # (line, what)


def pages_of(root):
    paths = sorted(p for p in root.rglob("*.md") if not SKIPPED & set(p.relative_to(root).parts))
    return [read_page(path) for path in paths]


def section_name(heading):
    """The name that Git hosts give a section."""
    text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading).lower()
    return re.sub(r"[^\w\- ]", "", text).replace(" ", "-")


def read_page(path):
    page = Page(path)
    block, indent, fence = None, "", ""
    hint = ("", "")
    before = [""]  # the last line that is not empty, and the one before this line
    previous = ""
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        opening = FENCE.match(line)
        if block:
            if line.strip() == fence:
                page.blocks.append(block)
                block = None
            else:
                block.lines.append(line.removeprefix(indent))
        elif opening:
            indent, fence, language = opening.groups()
            block = Block(path, number + 1, language, [], 1 + sum(b.language == language for b in page.blocks), *hint)
        else:
            read_prose(page, number, line, previous, before[0])
        found = HINT.match(line)
        hint = found.groups() if found else ("", "")
        if line.strip():
            before[0] = line
        previous = line
    if block:
        page.mistakes.append((block.line, "the block has no end"))
    return page


def read_prose(page, number, line, previous, paragraph):
    if heading := HEADING.match(line):
        page.sections.add(section_name(heading.group(1)))
    in_list = LIST_ITEM.match(paragraph) or paragraph.startswith("  ")
    if line.startswith("    ") and not previous.strip() and not in_list:
        page.mistakes.append((number, "an indented block; put it between fences and name its language"))
    page.links += [(number, target) for target in LINK.findall(re.sub(r"`[^`]*`", "", line))]
