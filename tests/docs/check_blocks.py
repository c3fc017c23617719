#!/usr/bin/env python3
"""Checks every block and every link of the documents.

usage: check_blocks.py --root DIR --tool KOINE --programs DIR [PAGE...]

    cpp, c      compiled by the build (extract.py); programs are run here
    sh          run; every command must succeed
    console     run; the output must be what the document shows
    python      run
    cmake       run by CMake as a project of its own
    json        read
    text        needs no check
    anything else, and a block without a language, is a mistake
"""

import argparse
import json
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

from extract import file_name, is_program
from markdown import pages_of
from transcripts import DOCUMENTED_HOST, Mismatch, Shell, run_block


def unindented(lines):
    return [line.strip() for line in lines if line.strip()]


def check_from(block, settings):
    """The block stands in a file that is compiled or run anyway."""
    file = settings.root / block.options
    if not file.is_file():
        raise Mismatch(f"there is no file {block.options}")
    wanted, there = unindented(block.lines), unindented(file.read_text().splitlines())
    if not any(there[i:i + len(wanted)] == wanted for i in range(len(there) - len(wanted) + 1)):
        raise Mismatch(f"{block.options} does not hold these lines one after the other")


def finish(command, environment, directory, input_text=None):
    result = subprocess.run(command, env=environment, cwd=directory, text=True, timeout=60, input=input_text,
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    if result.returncode != 0:
        raise Mismatch(f"{result.stdout}exit code {result.returncode}")


def check_program(block, settings):
    """Compiled by the build; run here, with a simulated device where the document has a real one."""
    if not is_program(block):
        return
    program = settings.programs / f"docs_{file_name(settings.root, block)}"
    if not program.is_file():
        raise Mismatch(f"{program} was not built; configure the build again")
    run_with_device(block, settings, [str(program)])


def check_python(block, settings):
    run_with_device(block, settings, [sys.executable, "-"], block.text)


def run_with_device(block, settings, command, input_text=None):
    with tempfile.TemporaryDirectory() as name:
        shell = Shell(Path(name), settings)
        try:
            shell.prepare(block.option("device"))
            place = shell.places.real(DOCUMENTED_HOST)
            arguments = [shell.places.real(word) for word in block.option("args") or []]
            environment = {**os.environ, "KOINE_DOCS_DEVICE": place,
                           "PYTHONPATH": str(settings.root / "python"), "PYTHONDONTWRITEBYTECODE": "1"}
            finish(command + arguments, environment, name,
                   input_text and shell.places.real(input_text))
        finally:
            shell.stop()


def check_cmake(block, settings):
    """A project of its own in which koine/ is this tree."""
    with tempfile.TemporaryDirectory() as name:
        project = Path(name) / "project"
        project.mkdir()
        (project / "CMakeLists.txt").write_text(block.text)
        (project / "koine").symlink_to(settings.root)
        for source in re.findall(r"\b\w+\.cpp\b", block.text):
            (project / source).write_text("int main() {}\n")
        finish(["cmake", "-S", str(project), "-B", str(Path(name) / "build")], dict(os.environ), name)


def check_json(block, _settings):
    try:
        json.loads(block.text)
    except ValueError as error:
        raise Mismatch(str(error)) from error


CHECKS = {"cpp": check_program, "c": check_program, "sh": run_block, "console": run_block,
          "python": check_python, "cmake": check_cmake, "json": check_json, "text": lambda *_: None}


def check_block(block, settings):
    if block.hint == "from":
        return check_from(block, settings)
    if block.language not in CHECKS:
        language = f"'{block.language}'" if block.language else "none"
        raise Mismatch(f"the language is {language}; there are: {', '.join(CHECKS)}")
    return CHECKS[block.language](block, settings)


def link_mistakes(page, pages):
    sections = {other.path.resolve(): other.sections for other in pages}
    for line, target in page.links:
        if "://" in target or target.startswith("mailto:"):
            continue
        file, _, section = target.partition("#")
        place = (page.path.parent / file).resolve() if file else page.path.resolve()
        if not place.exists():
            yield line, f"the link {target} leads nowhere"
        elif section and section not in sections.get(place, {section}):
            yield line, f"the link {target} names no section"


def check_page(page, pages, settings):
    """@return the number of blocks checked, and what is wrong"""
    mistakes = page.mistakes + list(link_mistakes(page, pages))
    for block in page.blocks:
        try:
            check_block(block, settings)
        except (Mismatch, OSError, subprocess.SubprocessError) as error:
            mistakes.append((block.line, str(error).rstrip()))
    return len(page.blocks), mistakes


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--root", type=Path, required=True)
    parser.add_argument("--tool", required=True)
    parser.add_argument("--programs", type=Path, required=True)
    parser.add_argument("pages", nargs="*")
    settings = parser.parse_args()
    settings.root = settings.root.resolve()
    settings.tool = str(Path(settings.tool).resolve())
    settings.programs = settings.programs.resolve()
    settings.stand_ins = Path(__file__).resolve().parent / "stand_ins"
    pages = pages_of(settings.root)
    chosen = [p for p in pages
              if not settings.pages or p.path.relative_to(settings.root).as_posix() in settings.pages]

    blocks, wrong = 0, 0
    for page in chosen:
        count, mistakes = check_page(page, pages, settings)
        blocks += count
        wrong += len(mistakes)
        for line, what in mistakes:
            print(f"{page.path.relative_to(settings.root)}:{line}: {what}\n")
    print(f"{len(chosen)} pages, {blocks} blocks, {wrong} mistakes")
    return 1 if wrong or not blocks else 0


if __name__ == "__main__":
    sys.exit(main())
