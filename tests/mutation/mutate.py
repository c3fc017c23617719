#!/usr/bin/env python3
"""Changes the core in small ways and sees whether the unit tests notice.

Each mutant is one change of one line: a comparison turned, a constant moved, a separator replaced, a
condition removed, two statements swapped, a statement dropped. It is compiled and the unit tests run on it.
A mutant that does not compile says nothing and is not counted. A mutant that no test notices is printed with
its change, unless it stands in survivors.txt with the reason why no test can notice it.

    tests/mutation/mutate.py [--count N] [--seed S] [--jobs J] [--only TEXT] [--work FOLDER]

The exit code is 0 when at least 90 % of the counted mutants were noticed or are explained.
"""

import argparse
import concurrent.futures
import pathlib
import queue
import random
import re
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
CORE = ("request", "cache", "media", "stream")
TARGET = "koine_unit_tests"
NOTICED_AT_LEAST = 0.90
BUILD_TIME = 300
TEST_TIME = 120

SWAPS = [
    ("comparison", r"(?<![=!<>-])==(?!=)", "!="),
    ("comparison", r"!=(?!=)", "=="),
    ("comparison", r"(?<=\s)<(?=\s)", "<="),
    ("comparison", r"(?<=\s)<=(?=\s)", "<"),
    ("comparison", r"(?<=\s)>(?=\s)", ">="),
    ("comparison", r"(?<=\s)>=(?=\s)", ">"),
    ("condition", r"&&", "||"),
    ("condition", r"\|\|", "&&"),
    ("condition", r"(?<=\()!(?=[a-zA-Z_(])", ""),
    ("constant", r"\bkOk\b", "kRefused"),
    ("constant", r"\bkRefused\b", "kNoResource"),
    ("constant", r"\bkNoResource\b", "kRefused"),
    ("constant", r"\bnullptr\)\s*$", None),
    ("arithmetic", r"(?<=\s)\+(?=\s)", "-"),
    ("arithmetic", r"(?<=\s)-(?=\s)", "+"),
    ("arithmetic", r"(?<=\s)\*(?=\s)", "/"),
    ("separator", r'"&\\n"', '"&"'),
    ("separator", r'",;\\n"', '",\\\\n"'),
    ("separator", r'",\\n"', '","'),
    ("separator", r'"=,\\n"', '"=\\\\n"'),
    ("separator", r"','", "';'"),
    ("case", r"\bstartsWithIgnoreCase\(", "startsWith("),
]
NUMBER = re.compile(r"(?<![\w.\"%#x])(\d+)(?![\w.\"])")
STATEMENT = re.compile(r"^\s+(?!return\b|const\b|auto\b|static\b|using\b|if\b|for\b|else\b|case\b|break\b)[\w.>\-*()]+[(=+\[].*;\s*$")


class Mutant:
    def __init__(self, path, line, kind, new_lines):
        self.path, self.line, self.kind, self.new_lines = path, line, kind, new_lines

    def name(self, lines):
        old = lines[self.line].strip()
        new = " / ".join(text.strip() for text in self.new_lines) or "(dropped)"
        return f"{self.path}: {self.kind}: {old}  =>  {new}"


def code_lines(lines):
    """Numbers of the lines that are code, without comments and includes."""
    for number, text in enumerate(lines):
        stripped = text.strip()
        if stripped and not stripped.startswith(("//", "#", "*", "/*", "static_assert", "using ", "namespace")):
            yield number


def mutants_of(path, lines):
    numbers = list(code_lines(lines))
    for number in numbers:
        text = lines[number].split("//")[0] if '"' not in lines[number] else lines[number]
        for kind, pattern, replacement in SWAPS:
            if replacement is None:
                continue
            for match in re.finditer(pattern, text):
                changed = text[: match.start()] + match.expand(replacement) + text[match.end() :]
                yield Mutant(path, number, kind, [changed])
        for match in NUMBER.finditer(text):
            moved = str(int(match.group(1)) + 1)
            yield Mutant(path, number, "constant", [text[: match.start()] + moved + text[match.end() :]])
        match = re.match(r"^(\s*(?:\} else )?if \()([^;]*)(\)\s*\{?\s*(?:return.*)?)$", text)
        if match and text.count("(") == text.count(")"):
            yield Mutant(path, number, "condition removed", [f"{match.group(1)}true{match.group(3)}"])
            yield Mutant(path, number, "condition removed", [f"{match.group(1)}false{match.group(3)}"])
        if STATEMENT.match(text) and text.count("(") == text.count(")"):
            yield Mutant(path, number, "statement dropped", [])
            after = number + 1
            if after < len(lines) and STATEMENT.match(lines[after]) and lines[after].count("(") == lines[after].count(")"):
                yield Mutant(path, number, "order", [lines[after], lines[number]])


def all_mutants():
    found = []
    for folder in CORE:
        for file in sorted((ROOT / folder).glob("*.cpp")) + sorted((ROOT / folder).glob("*.h")):
            lines = file.read_text().split("\n")
            found += list(mutants_of(str(file.relative_to(ROOT)), lines))
    return found


class Worker:
    """A copy of the tree with a build of its own."""

    def __init__(self, folder):
        self.tree = folder / "tree"
        self.build = folder / "build"
        shutil.copytree(ROOT, self.tree, ignore=shutil.ignore_patterns(".git", "build"))
        run(["cmake", "-S", self.tree, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
             "-DKOINE_WARNINGS_AS_ERRORS=OFF", "-DKOINE_BUILD_SIMULATOR=OFF", "-DKOINE_BUILD_TOOLS=OFF"], BUILD_TIME)
        self.must_pass()

    def compiles(self):
        return run(["ninja", "-C", self.build, TARGET], BUILD_TIME * 4).returncode == 0

    def tests_pass(self):
        program = next(self.build.rglob(TARGET))
        return run([program, "--gtest_brief=1", "--gtest_fail_fast"], TEST_TIME).returncode == 0

    def must_pass(self):
        if not self.compiles() or not self.tests_pass():
            sys.exit("mutate: the unit tests must pass before anything is changed; run ./run test first")

    def judge(self, mutant):
        """'noticed', 'survived' or 'invalid'."""
        file = self.tree / mutant.path
        before = file.read_text()
        lines = before.split("\n")
        span = 2 if mutant.kind == "order" else 1
        lines[mutant.line : mutant.line + span] = mutant.new_lines
        file.write_text("\n".join(lines))
        try:
            if not self.compiles():
                return "invalid"
            return "survived" if self.tests_pass() else "noticed"
        finally:
            file.write_text(before)


def run(command, seconds):
    try:
        return subprocess.run([str(part) for part in command], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, timeout=seconds, check=False)
    except subprocess.TimeoutExpired:
        return subprocess.CompletedProcess(command, 124)


def explained():
    """Changes that no test can notice, each with its reason on the line before it."""
    file = ROOT / "tests" / "mutation" / "survivors.txt"
    if not file.exists():
        return set()
    return {line.strip() for line in file.read_text().splitlines() if line.strip() and not line.startswith("#")}


def main():
    parser = argparse.ArgumentParser(description="mutation run over the core")
    parser.add_argument("--count", type=int, default=300)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--only", default="", help="only files whose path contains this")
    parser.add_argument("--work", default="", help="folder for the copies (default: a temporary one)")
    options = parser.parse_args()

    found = [mutant for mutant in all_mutants() if options.only in mutant.path]
    random.Random(options.seed).shuffle(found)
    reasons = explained()
    sources = {path: (ROOT / path).read_text().split("\n") for path in {mutant.path for mutant in found}}
    work = pathlib.Path(options.work or tempfile.mkdtemp(prefix="koine-mutation-"))
    started = time.monotonic()
    workers = queue.Queue()
    for number in range(options.jobs):
        workers.put(Worker(work / str(number)))
    counts = {"noticed": 0, "survived": 0, "invalid": 0, "explained": 0}
    kinds = {}

    def judge(mutant):
        worker = workers.get()
        try:
            return mutant, worker.judge(mutant)
        finally:
            workers.put(worker)

    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        waiting = iter(found)
        pending = {pool.submit(judge, mutant) for mutant, _ in zip(waiting, range(options.jobs))}
        while pending:
            done, pending = concurrent.futures.wait(pending, return_when=concurrent.futures.FIRST_COMPLETED)
            for future in done:
                mutant, verdict = future.result()
                name = mutant.name(sources[mutant.path])
                if verdict == "survived" and name in reasons:
                    verdict = "explained"
                counts[verdict] += 1
                kinds.setdefault(mutant.kind, dict.fromkeys(counts, 0))[verdict] += 1
                if verdict == "survived":
                    print(f"survived  line {mutant.line + 1}  {name}", flush=True)
                counted = counts["noticed"] + counts["survived"] + counts["explained"]
                following = next(waiting, None) if counted + len(pending) < options.count else None
                if following is not None:
                    pending.add(pool.submit(judge, following))
    if not options.work:
        shutil.rmtree(work)

    counted = counts["noticed"] + counts["survived"] + counts["explained"]
    print(f"\n{'kind':<20}{'noticed':>9}{'explained':>11}{'survived':>10}{'invalid':>9}")
    for kind, row in sorted(kinds.items()):
        print(f"{kind:<20}{row['noticed']:>9}{row['explained']:>11}{row['survived']:>10}{row['invalid']:>9}")
    share = (counts["noticed"] + counts["explained"]) / counted if counted else 0.0
    print(f"\n{counted} mutants counted of {len(found)} possible, {counts['noticed']} noticed, "
          f"{counts['explained']} explained, {counts['survived']} survived: {share:.1%} "
          f"in {time.monotonic() - started:.0f} s")
    return 0 if counted and share >= NOTICED_AT_LEAST else 1


if __name__ == "__main__":
    sys.exit(main())
