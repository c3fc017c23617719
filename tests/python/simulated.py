"""A simulated device, as a process of the koine command."""

import json
import os
import subprocess
import tempfile

PASSWORD = "can4ry-s3cret"


class Simulated:
    """Serves until the end of the with statement; `counters` are known then."""

    def __init__(self, *arguments, auth="none"):
        self._file = tempfile.NamedTemporaryFile("w", suffix=".txt")
        self._file.write(PASSWORD + "\n")
        self._file.flush()
        self._process = subprocess.Popen(
            [os.environ["KOINE_TOOL"], "simulate", "--json", "--auth", auth, "--password-file", self._file.name, *arguments],
            stdout=subprocess.PIPE,
            text=True,
        )
        self.url = json.loads(self._process.stdout.readline())["url"]
        self.counters = {}

    def with_password(self, password=PASSWORD):
        return self.url.replace("http://", f"http://admin:{password}@")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._process.terminate()
        text, _ = self._process.communicate(timeout=30)
        self._file.close()
        self.counters = json.loads(text)
