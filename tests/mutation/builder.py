"""Builds the unit tests once, and then again and again with one source changed.

Everything happens in copies of the tree: the sources that a person works on are never touched, whatever
ends the run. A changed source is compiled by the command that CMake noted for it, and only what depends on
it is compiled and linked anew.
"""

import json
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import time

TARGET = "koine_unit_tests"
BUILD_TIME = 3600
COMPILE_TIME = 300
MEMORY = 4 << 30  # bytes; a mutant that allocates without end must not take the machine down
QUICK = "-O0 -g0"


def run(command, seconds, **options):
    """The exit code, or None when the time was up; then nothing of the command is left running."""
    process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, start_new_session=True,
                               env=dict(os.environ, CCACHE_DISABLE="1"), **options)
    try:
        return process.wait(timeout=seconds)
    except subprocess.TimeoutExpired:
        return None
    finally:
        if process.poll() is None:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()


def copy_tree(root, to):
    shutil.copytree(root, to, ignore=shutil.ignore_patterns(".git", "build", "__pycache__"))


class Build:
    """The unit tests of the unchanged tree, and how each of their objects was made."""

    def __init__(self, root, folder):
        self.folder, self.tree, self.build = folder, folder / "tree", folder / "build"
        copy_tree(root, self.tree)
        linker = ["-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld"] if shutil.which("ld.lld") else []
        self._must([
            "cmake", "-S", str(self.tree), "-B", str(self.build), "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
            f"-DCMAKE_CXX_FLAGS_DEBUG={QUICK}", "-DKOINE_WARNINGS_AS_ERRORS=OFF", "-DKOINE_BUILD_DEVICES=OFF",
            "-DKOINE_BUILD_SIMULATOR=OFF", "-DKOINE_BUILD_TOOLS=OFF", *linker])
        self._must(["ninja", "-C", str(self.build), TARGET])
        self._read_commands()
        self.program = self.build / self.link.split(" -o ")[1].split()[0]
        self.test_seconds = self._time_of_tests()

    def dependents(self, path):
        """The objects that are compiled from a source or include it."""
        return self._dependents.get(str(self.tree / path), [])

    def passes(self, program, seconds):
        """True, False, or None when the time was up."""
        code = run(["prlimit", f"--as={MEMORY}", str(program), "--gtest_brief=1", "--gtest_fail_fast"], seconds)
        return None if code is None else code == 0

    def _must(self, command):
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=BUILD_TIME,
                              text=True, check=False)
        if done.returncode != 0:
            sys.exit(f"mutate: the unchanged tree does not build:\n{done.stdout[-4000:]}")
        return done.stdout

    def _read_commands(self):
        entries = json.loads((self.build / "compile_commands.json").read_text())
        self.compile = {entry["output"]: entry["command"] for entry in entries}
        commands = self._must(["ninja", "-C", str(self.build), "-t", "commands", TARGET])
        self.link = commands.strip().split("\n")[-1]
        linked = set(self.link.split())
        self._dependents, output = {}, None
        for line in self._must(["ninja", "-C", str(self.build), "-t", "deps"]).split("\n"):
            if line.startswith("    ") and output in linked:
                source = os.path.normpath(self.build / line.strip())
                self._dependents.setdefault(source, []).append(output)
            elif line and not line.startswith(" "):
                output = line.split(":")[0]

    def _time_of_tests(self):
        started = time.monotonic()
        if not self.passes(self.program, 600):
            sys.exit("mutate: the unit tests must pass before anything is changed; run ./run test first")
        return time.monotonic() - started


class Worker:
    """A copy of the tree in which one source at a time is changed."""

    def __init__(self, build, folder):
        self.build, self.tree, self.objects = build, folder / "tree", folder / "objects"
        copy_tree(build.tree, self.tree)
        # A mutant that hangs must not hang the run; one that is merely slowed by a busy machine must pass.
        self.patience = 10 + 5 * build.test_seconds

    def judge(self, mutant):
        """'noticed', 'hung', 'survived' or 'invalid'."""
        file = self.tree / mutant.path
        unchanged = file.read_text()
        file.write_text(mutant.applied_to(unchanged))
        try:
            program = self._program(self.build.dependents(mutant.path))
            if program is None:
                return "invalid"
            return {True: "survived", False: "noticed", None: "hung"}[self.build.passes(program, self.patience)]
        finally:
            file.write_text(unchanged)
            shutil.rmtree(self.objects, ignore_errors=True)

    def _program(self, outputs):
        """The unit tests with these objects compiled anew; None when something does not compile."""
        link = self.build.link
        for output in outputs:
            fresh = self.objects / output
            fresh.parent.mkdir(parents=True, exist_ok=True)
            command = self.build.compile[output].replace(str(self.build.tree), str(self.tree))
            if not self._shell(command.replace(f"-o {output} ", f"-o {fresh} ")):
                return None
            link = link.replace(f" {output} ", f" {fresh} ")
        program = self.objects / TARGET
        old = self.build.program.relative_to(self.build.build)
        linked = outputs and self._shell(link.replace(f"-o {old} ", f"-o {program} "))
        return program if linked else None

    def _shell(self, command):
        return run(command, COMPILE_TIME, shell=True, cwd=self.build.build) == 0
