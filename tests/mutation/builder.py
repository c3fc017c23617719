"""Links the unit tests again and again, each time with one source changed.

The sources that a person works on are never touched: a change is made in a copy of the tree, compiled by the
command that CMake noted for the source, and linked with the objects of an ordinary build for everything
that does not depend on it.
"""

import json
import math
import os
import re
import resource
import shutil
import signal
import subprocess
import sys

TARGET = "koine_unit_tests"
COMPILE_TIME = 300  # seconds
TEST_TIME = 300  # seconds, for tests that wait for ever
MEMORY = 4 << 30  # bytes; a mutant that allocates without end must not take the machine down
# Most mutants are noticed without the tests that take their time, so those run only where the others pass.
SLOW = "HostileDevice.*:BadInput.*:EveryKindOfLine/*:*Death.*:MissingClient.*"
QUICK = "-O0 -g0 -w"  # no warnings: a mutant may well leave something unused


def run(command, seconds, **options):
    """The exit code, or None when the time was up; then nothing of the command is left running."""
    process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, start_new_session=True,
                               env=dict(os.environ, CCACHE_DISABLE="1"), **options)
    try:
        code = process.wait(timeout=seconds)
        return None if code == -signal.SIGXCPU else code
    except subprocess.TimeoutExpired:
        return None
    finally:
        if process.poll() is None:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()


def output_of(command):
    return re.search(r" -o (\S+)", command).group(1)


class Build:
    """The unit tests of the unchanged tree, and how each of their objects is made."""

    def __init__(self, root, folder):
        self.root, self.folder = root, folder
        self._ninja(TARGET)
        commands = [entry["command"] for entry in json.loads((folder / "compile_commands.json").read_text())]
        self.compile = {output_of(command): command for command in commands}
        self.link = self._ninja("-t", "commands", TARGET).strip().split("\n")[-1]
        self.program = output_of(self.link)
        self._read_dependents()
        self.test_seconds = self._time_of_tests()
        self.patience = math.ceil(5 + 4 * self.test_seconds)

    def dependents(self, path):
        """The objects that are compiled from a source or include it."""
        return self._dependents.get(str(self.root / path), [])

    def passes(self, program):
        """True, False, or None when the tests came to no end."""
        for tests in (f"-{SLOW}", SLOW):
            code = run(["prlimit", f"--as={MEMORY}", f"--cpu={self.patience}", str(program), "--gtest_brief=1",
                        "--gtest_fail_fast", f"--gtest_filter={tests}"], TEST_TIME)
            if code != 0:
                return None if code is None else False
        return True

    def _ninja(self, *arguments):
        done = subprocess.run(["ninja", "-C", str(self.folder), *arguments], stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, check=False)
        if done.returncode != 0:
            sys.exit(f"mutate: the unchanged tree does not build in {self.folder}:\n{done.stdout[-4000:]}")
        return done.stdout

    def _read_dependents(self):
        linked = set(self.link.split())
        self._dependents, output = {}, None
        for line in self._ninja("-t", "deps").split("\n"):
            if line.startswith("    ") and output in linked:
                source = os.path.normpath(self.folder / line.strip())
                self._dependents.setdefault(source, []).append(output)
            elif line and not line.startswith(" "):
                output = line.split(":")[0]

    def _time_of_tests(self):
        """Processor time: how busy the machine is decides nothing."""
        before = resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime
        self.patience = TEST_TIME
        if not self.passes(self.folder / self.program):
            sys.exit("mutate: the unit tests must pass before anything is changed; run ./run test first")
        return resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime - before


class Worker:
    """A copy of the tree in which one source at a time is changed."""

    def __init__(self, build, folder):
        self.build, self.tree, self.objects = build, folder / "tree", folder / "objects"
        shutil.copytree(build.root, self.tree, ignore=shutil.ignore_patterns(".git", "build", "__pycache__"))
        self.linker = " -fuse-ld=lld" if shutil.which("ld.lld") else ""

    def judge(self, mutant):
        """'noticed', 'hung', 'survived' or 'invalid'."""
        file = self.tree / mutant.path
        unchanged = file.read_text()
        file.write_text(mutant.applied_to(unchanged))
        try:
            program = self._program(self.build.dependents(mutant.path))
            if program is None:
                return "invalid"
            return {True: "survived", False: "noticed", None: "hung"}[self.build.passes(program)]
        finally:
            file.write_text(unchanged)
            shutil.rmtree(self.objects, ignore_errors=True)

    def _program(self, outputs):
        """The unit tests with these objects compiled anew; None when something does not compile."""
        link, program = self.build.link, self.objects / TARGET
        for output in outputs:
            fresh = self.objects / output
            fresh.parent.mkdir(parents=True, exist_ok=True)
            if not self._shell(self._of_copy(self.build.compile[output]).replace(f"-o {output} ", f"{QUICK} -o {fresh} ")):
                return None
            link = link.replace(f" {output} ", f" {fresh} ")
        linked = outputs and self._shell(link.replace(f"-o {self.build.program} ", f"{self.linker} -o {program} "))
        return program if linked else None

    def _of_copy(self, command):
        """The command, reading the copy instead of the tree; what was generated stays where it is."""
        root = re.escape(str(self.build.root))
        return re.sub(rf"{root}(?!/build/)(?=[/\s]|$)", str(self.tree), command)

    def _shell(self, command):
        return run(command, COMPILE_TIME, shell=True, cwd=self.build.folder) == 0
