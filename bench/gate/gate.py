#!/usr/bin/env python3
"""Compares what six operations cost with the kept baseline; 5 % more fails.

Instructions are counted by callgrind, so the load of the machine does not matter; allocations and requests to
the device are counted by the program. Started by `./run gate`, which builds first.
"""
import argparse
import json
import pathlib
import re
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
BASELINE = ROOT / "bench" / "gate" / "baseline.json"
PROGRAM_FOLDER = ROOT / "build" / "bench" / "bench"
COUNTED_FUNCTION = "koine_gate_counted"

LIMIT = 1.05
CALLS = 19  # one call more is 5.3 % more: with it the gate proves that it can fail
PROOF = "parse"
COUNTS = ("instructions", "allocations", "requests")

# The same everywhere: what stands in the environment moves the stack, and glibc chooses its text functions by
# the processor.
ENVIRONMENT = {
    "LC_ALL": "C",
    "PATH": "/usr/bin:/bin",
    "GLIBC_TUNABLES": "glibc.cpu.hwcaps=-AVX2,-AVX512F,-AVX512VL,-ERMS,-FSRM,-AVX_Fast_Unaligned_Load,-BMI2,-RTM",
}


def program(*words, prefix=()):
    command = [*prefix, "./koine_gate", *words]
    done = subprocess.run(command, cwd=PROGRAM_FOLDER, env=ENVIRONMENT, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        sys.exit(f"gate: {' '.join(command)} failed:\n{done.stderr}")
    return done.stdout


def instructions_in(file):
    match = re.search(r"^(?:summary|totals): (\d+)", file.read_text(), re.MULTILINE)
    if not match or int(match.group(1)) == 0:
        sys.exit(f"gate: callgrind counted nothing inside of {COUNTED_FUNCTION}")
    return int(match.group(1))


def count(operation, calls=CALLS):
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder) / "callgrind.out"
        valgrind = ["valgrind", "-q", "--tool=callgrind", f"--toggle-collect={COUNTED_FUNCTION}",
                    f"--callgrind-out-file={file}"]
        counted = json.loads(program(operation, str(calls), prefix=valgrind))
        return {"instructions": instructions_in(file), **counted}


def change(now, kept):
    if kept == 0:
        return 0.0 if now == 0 else float("inf")
    return now / kept - 1.0


def is_worse(now, kept):
    return now > kept and now >= kept * LIMIT


def compare(operation, now, kept, kinds):
    """Prints one operation and gives what got worse."""
    worse = []
    for kind in kinds:
        verdict = ""
        if is_worse(now[kind], kept[kind]):
            verdict = "  MORE THAN KEPT"
            worse.append(f"{operation}: {kind} {kept[kind]} -> {now[kind]}")
        print(f"  {operation:<15} {kind:<13} {kept[kind]:>11} {now[kind]:>11} {change(now[kind], kept[kind]):>+8.1%}"
              f"{verdict}")
    return worse


def load_baseline():
    if not BASELINE.exists():
        sys.exit("gate: there is no baseline yet; `./run gate --update` makes one")
    return json.loads(BASELINE.read_text())


def update(toolchain, operations):
    kept = {"toolchain": toolchain, "calls": CALLS,
            "operations": {operation: count(operation) for operation in operations}}
    BASELINE.write_text(json.dumps(kept, indent=2) + "\n")
    print(f"{BASELINE.relative_to(ROOT)} holds what the operations cost now")
    return 0


def prove(kept, kinds):
    """One call more must be found: a gate that cannot fail is none."""
    print(f"\nproof, {PROOF} with one call more:")
    if not compare(PROOF, count(PROOF, CALLS + 1), kept, kinds):
        sys.exit("gate: one call more was not noticed; the gate itself is broken")


def check(toolchain, operations):
    baseline = load_baseline()
    if baseline["calls"] != CALLS:
        sys.exit(f"gate: the baseline is of {baseline['calls']} calls, now {CALLS} are counted; "
                 "`./run gate --update` renews it")
    kinds = COUNTS
    if baseline["toolchain"] != toolchain:
        kinds = COUNTS[1:]
        print("gate: instructions are NOT compared, they depend on the toolchain:\n"
              f"  the baseline is for  {baseline['toolchain']}\n  here is              {toolchain}")
    if set(operations) != set(baseline["operations"]):
        sys.exit("gate: the baseline knows other operations; `./run gate --update` renews it")
    print(f"  {'operation':<15} {'of ' + str(CALLS) + ' calls':<13} {'kept':>11} {'now':>11} {'change':>8}")
    worse, now = [], {}
    for operation in operations:
        now[operation] = count(operation)
        worse += compare(operation, now[operation], baseline["operations"][operation], kinds)
    prove(now[PROOF], kinds)
    if worse:
        print("\ngate: at least 5 % more than kept:\n  " + "\n  ".join(worse), file=sys.stderr)
        print("gate: if that is meant, `./run gate --update` renews the baseline", file=sys.stderr)
        return 1
    print("\nnothing costs 5 % more than kept")
    return 0


def main():
    parser = argparse.ArgumentParser(prog="./run gate", description=__doc__)
    parser.add_argument("--update", action="store_true", help="keep what the operations cost now as the baseline")
    options = parser.parse_args()
    toolchain = program("toolchain").strip()
    operations = program("list").split()
    return update(toolchain, operations) if options.update else check(toolchain, operations)


if __name__ == "__main__":
    sys.exit(main())
