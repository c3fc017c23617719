"""What the regression gate lets pass and what not, with figures of our own in place of a measurement."""
import contextlib
import io
import json
import pathlib
import sys
import tempfile
import unittest
from unittest import mock

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "bench" / "gate"))
import gate  # noqa: E402

HERE = "GCC 12, here"
KEPT = {"instructions": 1000, "allocations": 20, "requests": 0}


def counted(calls=gate.CALLS, **changed):
    """An operation costs the same each time, so one call more costs its share more."""
    return {kind: value * calls // gate.CALLS for kind, value in {**KEPT, **changed}.items()}


class Gate(unittest.TestCase):
    def check(self, toolchain=HERE, grows=True, calls=gate.CALLS, **changed):
        """Gives the exit code and what was printed."""
        baseline = {"toolchain": HERE, "calls": calls, "operations": {gate.PROOF: KEPT}}
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder) / "baseline.json"
            file.write_text(json.dumps(baseline))
            def count(_, calls=gate.CALLS):
                return counted(calls if grows else gate.CALLS, **changed)

            output = io.StringIO()
            with mock.patch.object(gate, "BASELINE", file), mock.patch.object(gate, "count", count), \
                    contextlib.redirect_stdout(output), contextlib.redirect_stderr(output):
                code = gate.check(toolchain, [gate.PROOF])
            return code, output.getvalue()

    def test_the_same_passes(self):
        self.assertEqual(self.check()[0], 0)

    def test_less_passes(self):
        self.assertEqual(self.check(instructions=500, allocations=10)[0], 0)

    def test_a_little_more_passes(self):
        self.assertEqual(self.check(instructions=1049)[0], 0)

    def test_five_percent_more_fails(self):
        code, output = self.check(instructions=1050)
        self.assertEqual(code, 1)
        self.assertIn("instructions 1000 -> 1050", output)
        self.assertIn("./run gate --update", output)

    def test_an_allocation_more_of_twenty_fails(self):
        self.assertEqual(self.check(allocations=21)[0], 1)

    def test_a_request_where_there_was_none_fails(self):
        self.assertEqual(self.check(requests=1)[0], 1)

    def test_another_toolchain_is_told_and_its_instructions_do_not_count(self):
        code, output = self.check(toolchain="Clang 14, there", instructions=5000)
        self.assertEqual(code, 0)
        self.assertIn("NOT compared", output)
        self.assertIn("Clang 14, there", output)

    def test_another_toolchain_must_not_allocate_more(self):
        self.assertEqual(self.check(toolchain="Clang 14, there", allocations=40)[0], 1)

    def test_a_baseline_of_another_number_of_calls_is_refused(self):
        with self.assertRaises(SystemExit) as ended:
            self.check(calls=gate.CALLS + 1)
        self.assertIn(f"the baseline is of {gate.CALLS + 1} calls", str(ended.exception))

    def test_a_gate_that_notices_nothing_says_so(self):
        with self.assertRaises(SystemExit) as ended:
            self.check(grows=False)
        self.assertIn("the gate itself is broken", str(ended.exception))


if __name__ == "__main__":
    unittest.main()
