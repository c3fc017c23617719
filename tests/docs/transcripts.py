"""Runs what the documents tell people to type, and compares what comes out.

Each block runs in a directory of its own, where commands that would build, install or play something are
replaced by stand-ins that check their arguments (stand_ins/). The address 192.168.0.10 in a document is a device
that is simulated for the block; `koine simulate` in a block runs in the background until the block ends.
"""

import os
import pty
import re
import select
import shlex
import subprocess
import tempfile
import time
from pathlib import Path

SECONDS = 60  # for one command
DOCUMENTED_HOST = "192.168.0.10"


class Mismatch(Exception):
    pass


class Device:
    """A simulated device in a process of its own."""

    def __init__(self, tool, arguments, directory):
        self.process = subprocess.Popen([tool, "simulate", *arguments], stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, cwd=directory, text=True)
        self.first_line = self.process.stdout.readline()
        port = re.search(r"://[^\s/]*:(\d+)", self.first_line)
        if not port:
            self.stop()
            raise Mismatch(f"koine simulate {' '.join(arguments)}: {self.first_line.strip()}")
        self.port = port.group(1)

    def stop(self):
        self.process.terminate()
        try:
            self.process.wait(10)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        self.process.stdout.close()


class Places:
    """What the documents call a device, and where it really is."""

    def __init__(self):
        self.pairs = []

    def add(self, documented, real):
        self.pairs.append((documented, real))

    def real(self, text):
        for documented, real in self.pairs:
            text = text.replace(documented, real)
        return text

    def documented(self, text):
        for documented, real in self.pairs:
            text = text.replace(real, documented)
            if documented == DOCUMENTED_HOST:  # addresses of streams have ports of their own
                text = text.replace("127.0.0.1", documented)
        return text


def run_block(block, settings):
    """@throws Mismatch, with what the reader of the document would see"""
    with tempfile.TemporaryDirectory() as name:
        shell = Shell(Path(name), settings)
        try:
            shell.prepare(block.option("device"))
            steps = list(steps_of(block))
            wanted = int((block.option("status") or ["0"])[0])
            for index, (command, expected) in enumerate(steps):
                last = index == len(steps) - 1
                shell.step(command, expected, wanted if last else 0)
        finally:
            shell.stop()


def steps_of(block):
    """Commands with the lines they shall print; None where nothing is said about the output."""
    if block.language == "sh":
        yield from ((command, None) for command in joined(block.lines) if command.split("#")[0].strip())
        return
    command, expected = None, []
    for line in joined(block.lines, prompt="$ "):
        if line.startswith("$ "):
            if command is not None:
                yield command, expected
            command, expected = line[2:], []
        elif command is None:
            raise Mismatch("a console block begins with a command: '$ ...'")
        else:
            expected.append(line)
    if command is not None:
        yield command, expected


def joined(lines, prompt=""):
    """Commands that go on in the next line become one line."""
    pending = ""
    for line in lines:
        is_command = pending or line.startswith(prompt)
        if is_command and line.endswith("\\"):
            pending += line[:-1] + " "
            continue
        yield pending + line.strip() if pending else line
        pending = ""


class Shell:
    def __init__(self, directory, settings):
        self.directory = directory
        self.settings = settings
        self.places = Places()
        self.devices = []

    def prepare(self, device):
        (self.directory / "run").symlink_to(self.settings.stand_ins / "run")
        if device is None:
            return
        url, model, *credentials = device
        documented = url.partition("://")[2]
        if model == "none":
            self.places.add(documented, "127.0.0.1:1")  # nobody listens there
            return
        arguments = ["--model", model, "--port", "0"]
        if credentials:
            (self.directory / ".password").write_text(credentials[1])
            arguments += ["--auth", "digest", "--user", credentials[0],
                          "--password-file", str(self.directory / ".password")]
        self.places.add(documented, f"127.0.0.1:{self.start(arguments).port}")

    def start(self, arguments):
        self.devices.append(Device(self.settings.tool, arguments, self.directory))
        return self.devices[-1]

    def stop(self):
        for device in self.devices:
            device.stop()

    def step(self, command, expected, wanted):
        if command.startswith("koine simulate ") and "--help" not in command and "--list" not in command:
            return self.simulate(shlex.split(command, comments=True), expected)
        for program in re.findall(r"(?<!\S)build/\w+/\S+", command):
            self.stand_in_for(program)
        status, output = self.run(self.places.real(command))
        shown = self.places.documented(output)
        if status != wanted:
            raise Mismatch(f"$ {command}\n{shown}exit code {status}, not {wanted}")
        if expected is not None and not agrees(expected, shown.splitlines()):
            raise Mismatch(f"$ {command}\n{shown}is not what the document shows:\n" + "\n".join(expected))
        return None

    def stand_in_for(self, program):
        """A program of the build tree: it is seen that there is a target of its name."""
        path = self.directory / program
        path.parent.mkdir(parents=True, exist_ok=True)
        name = {"koine": "koine_tool"}.get(path.name, path.name)
        path.write_text(f'#!/bin/sh\nexec ninja {name}\n')
        path.chmod(0o755)

    def simulate(self, words, expected):
        documented = "8080"
        if "--port" in words:
            documented = words[words.index("--port") + 1]
            words[words.index("--port") + 1] = "0"
        device = self.start(words[2:])
        self.places.add(f":{documented}", f":{device.port}")
        if expected and not agrees(expected, [self.places.documented(device.first_line).rstrip("\n")]):
            raise Mismatch(f"$ {' '.join(words)}\n{device.first_line}is not what the document shows")

    def run(self, command):
        """On a terminal, as a reader has it; without colours."""
        environment = {"HOME": str(self.directory), "LANG": "C.UTF-8", "TERM": "dumb", "NO_COLOR": "1",
                       "COLUMNS": "100", "KOINE_ROOT": str(self.settings.root),
                       "PATH": ":".join([str(self.settings.stand_ins), str(Path(self.settings.tool).parent), os.environ["PATH"]])}
        leader, follower = pty.openpty()
        process = subprocess.Popen(["bash", "-c", command], stdin=follower, stdout=follower, stderr=follower,
                                   cwd=self.directory, env=environment, start_new_session=True)
        os.close(follower)
        try:
            output = read_all(leader, process, time.monotonic() + SECONDS)
        finally:
            os.close(leader)
            if process.poll() is None:
                process.kill()
            process.wait()
        return process.returncode, output


def read_all(terminal, process, deadline):
    output = b""
    while time.monotonic() < deadline:
        if not select.select([terminal], [], [], 0.1)[0]:
            if process.poll() is not None:
                break
            continue
        try:
            part = os.read(terminal, 65536)
        except OSError:  # the terminal's other end is closed
            break
        if not part:
            break
        output += part
    else:
        process.kill()
        raise Mismatch(f"no end after {SECONDS} seconds; so far:\n{output.decode(errors='replace')}")
    process.wait()
    return output.decode(errors="replace").replace("\r\n", "\n")


def plain(line):
    """Times, free ports, what was asked ahead and the widths that follow differ from run to run."""
    line = re.sub(r"\b\d+(\.\d+)? (ms|µs|s)(?!\w)|came ahead", "TIME", line)
    line = re.sub(r"\b\d+ connections?, \d+ requests, of which \d+", "COUNTS", line)
    line = re.sub(r"127\.0\.0\.1:\d{4,5}\b", "127.0.0.1:PORT", line)
    return " ".join(line.split())


def agrees(expected, actual):
    """A line "..." or "[...]" stands for any lines, "..." within a line for any text."""
    wanted = [plain(line) for line in expected]
    shown = [plain(line) for line in actual]
    while wanted and not wanted[-1]:
        wanted.pop()
    while shown and not shown[-1]:
        shown.pop()
    return fits(wanted, shown)


def fits(wanted, shown):
    """Line by line; after a gap the next line is looked for."""
    reach = {0}  # how many of the shown lines may be used up so far
    for line in wanted:
        if line in ("...", "[...]"):
            reach = set(range(min(reach), len(shown) + 1)) if reach else reach
            continue
        pattern = ".*".join(re.escape(part) for part in line.split("..."))
        reach = {i + 1 for i in reach if i < len(shown) and re.fullmatch(pattern, shown[i])}
    return len(shown) in reach
