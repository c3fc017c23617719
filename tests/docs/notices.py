#!/usr/bin/env python3
"""Sees that check_blocks.py notices what is wrong with a document, and nothing else.

usage: notices.py KOINE
"""

import subprocess
import sys
import tempfile
from pathlib import Path

DEVICE = "<!-- run: device http://192.168.0.10 minimal -->\n"
GET = "$ koine get http://192.168.0.10 Video.NoSuchKey"

RIGHT = {
    "a text": "```text\nanything\n```\n",
    "an output": "```console\n$ printf 'one\\ntwo 3.5 ms\\n'\none\ntwo 4 ms\n```\n",
    "a gap": "```console\n$ seq 5\n1\n...\n5\n```\n",
    "an exit code": "<!-- run: status 3 -->\n```console\n$ exit 3\n```\n",
    "a command of the script": "```sh\n./run nothing-but-this\n```\n",
    "a section": "# One two\n\n[there](#one-two)\n",
}
WRONG = {
    "no language": "```\nanything\n```\n",
    "an unknown language": "```perl\n1;\n```\n",
    "an indented block": "Text\n\n    $ command\n",
    "a block without an end": "```text\nanything\n",
    "another output": "```console\n$ echo one\ntwo\n```\n",
    "output beyond what is shown": "```console\n$ seq 3\n1\n2\n```\n",
    "a line that a gap does not lead to": "```console\n$ seq 5\n1\n...\n6\n```\n",
    "an exit code": "```sh\nexit 3\n```\n",
    "a failing first command": "```sh\nfalse\ntrue\n```\n",
    "a refusing device": f"{DEVICE}```console\n{GET}\n```\n",
    "an unknown command of the script": "```sh\n./run no-such-thing\n```\n",
    "an unknown package": "```sh\nsudo apt-get install no-such-package\n```\n",
    "JSON that is none": "```json\n{\n```\n",
    "a program that was not built": "```cpp\nint main() {}\n```\n",
    "lines that a file does not hold": "<!-- from: run -->\n```sh\nno such line\n```\n",
    "a link to no file": "[there](nowhere.md)\n",
    "a link to no section": "# One\n\n[there](#two)\n",
}


def mistakes(tool, text):
    with tempfile.TemporaryDirectory() as name:
        root = Path(name)
        (root / "docs").mkdir()
        (root / "docs/dependencies.md").write_text("# None\n")
        (root / "run").write_text("#!/bin/sh\necho '  nothing-but-this  a command'\n")
        (root / "run").chmod(0o755)
        (root / "page.md").write_text(text)
        script = Path(__file__).resolve().parent / "check_blocks.py"
        result = subprocess.run([sys.executable, "-B", str(script), "--root", name, "--tool", tool,
                                 "--programs", name, "page.md"], capture_output=True, text=True, timeout=120)
        return result.stdout.count("page.md:"), result.stdout + result.stderr


def main(tool):
    failed = 0
    for texts, wanted in ((RIGHT, 0), (WRONG, 1)):
        for what, text in texts.items():
            found, output = mistakes(tool, text)
            if found != wanted:
                failed += 1
                print(f"{what}: {found} mistakes, not {wanted}\n{output}")
    print(f"{len(RIGHT) + len(WRONG)} documents, {failed} judged wrongly")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
