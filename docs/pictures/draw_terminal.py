#!/usr/bin/env python3
"""Runs a command on a terminal and draws what it shows as SVG.

usage: draw_terminal.py [--leave-out FROM TO]... [--text FILE] PICTURE COMMAND [ARGUMENT...]

The lines from the first that holds FROM up to the one before the first that holds TO are left out of the picture.
--text writes all lines to a file as well, without colours: what a document shows beside the picture is of the same run.
The picture of the first page: docs/pictures/draw_terminal.py --leave-out '2. Stream user 2' 'Summary' \\
    docs/pictures/demo.svg build/release/tools/koine demo
"""

import argparse
import os
import pty
import re
import subprocess
import sys
from xml.sax.saxutils import escape

COLUMNS, ROW, LEFT, TOP, WIDTH = 80, 18, 20, 52, 8.0
WORDS = re.compile(r"\S+(?: \S+)*")  # two blanks between them would become one
CODE = re.compile(r"\x1b\[([0-9;]*)m")
COLOURS = {"31": "#f47067", "32": "#6bc46d", "33": "#daaa3f", "36": "#57b6c2"}
INK, FAINT, GROUND, BAR = "#d5dbe1", "#7d8894", "#1b2128", "#2a323b"


def output_of(command):
    """What the command shows on a terminal that knows colours."""
    environment = {**os.environ, "TERM": "xterm-256color", "COLUMNS": str(COLUMNS)}
    environment.pop("NO_COLOR", None)
    leader, follower = pty.openpty()
    with subprocess.Popen(command, env=environment, stdin=follower, stdout=follower) as process:
        os.close(follower)
        output = b"".join(iter(lambda: part_of(leader), b""))
    if process.returncode != 0:
        sys.exit(f"{command[0]}: exit code {process.returncode}")
    return output.decode().replace("\r\n", "\n").strip("\n").split("\n")


def part_of(terminal):
    try:
        return os.read(terminal, 65536)
    except OSError:  # the command has closed its end
        return b""


def without(lines, first, last):
    begin = next(i for i, line in enumerate(lines) if first in line)
    end = next(i for i, line in enumerate(lines) if i > begin and last in line)
    return lines[:begin] + ["\x1b[2m[...]\x1b[0m", ""] + lines[end:]


def style_of(codes):
    colour = next((COLOURS[code] for code in codes if code in COLOURS), FAINT if "2" in codes else INK)
    return f'fill="{colour}"' + (' font-weight="bold"' if "1" in codes else "")


def spans(line):
    """The coloured pieces of a line; each is as wide as its characters, whatever font the reader has."""
    codes, column = [], 0
    for i, part in enumerate(CODE.split(line)):
        if i % 2:
            codes = [] if part in ("", "0") else codes + part.split(";")
        else:
            for word in WORDS.finditer(part):
                begin, text = column + word.start(), word.group()
                yield (f'<tspan x="{LEFT + begin * WIDTH:g}" textLength="{len(text) * WIDTH:g}" {style_of(codes)}>'
                       f"{escape(text)}</tspan>")
        column += 0 if i % 2 else len(part)


def picture(lines, title):
    columns = max(len(CODE.sub("", line)) for line in lines)
    width, height = 2 * LEFT + columns * WIDTH, TOP + ROW * len(lines) + 14
    yield (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width:g} {height}" width="{width:g}" '
           f'height="{height}" font-family="DejaVu Sans Mono, Menlo, Consolas, monospace" font-size="13">')
    yield f"<title>{escape(title)}</title>"
    yield f'<rect width="{width:g}" height="{height}" rx="8" fill="{GROUND}"/>'
    yield f'<path d="M0 30V8a8 8 0 0 1 8-8h{width - 16:g}a8 8 0 0 1 8 8v22z" fill="{BAR}"/>'
    yield from (f'<circle cx="{18 + 18 * i}" cy="15" r="5" fill="{FAINT}"/>' for i in range(3))
    yield f'<text x="{width / 2:g}" y="20" text-anchor="middle" fill="{INK}">{escape(title)}</text>'
    for i, line in enumerate(lines):
        if pieces := "".join(spans(line)):
            yield f'<text y="{TOP + ROW * i}">{pieces}</text>'
    yield "</svg>"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--leave-out", nargs=2, action="append", default=[], metavar=("FROM", "TO"))
    parser.add_argument("--text")
    parser.add_argument("picture")
    parser.add_argument("command", nargs=argparse.REMAINDER)
    arguments = parser.parse_args()
    lines = output_of(arguments.command)
    if arguments.text:
        with open(arguments.text, "w", encoding="utf-8") as file:
            file.write("\n".join(CODE.sub("", line) for line in lines) + "\n")
    for first, last in arguments.leave_out:
        lines = without(lines, first, last)
    title = " ".join([os.path.basename(arguments.command[0]), *arguments.command[1:]])
    with open(arguments.picture, "w", encoding="utf-8") as file:
        file.write("\n".join(picture(lines, title)) + "\n")


if __name__ == "__main__":
    main()
