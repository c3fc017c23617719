#!/usr/bin/env python3
"""Changes the core in small ways and sees whether the unit tests notice.

Each mutant is one change of one line (mutants.py): a comparison turned, a constant moved, a separator
replaced, a condition removed, two statements swapped, a statement dropped. It is compiled, in a copy of the
tree (builder.py), and the unit tests run on it. A mutant that does not compile says nothing and is not counted; one on
which the tests do not come to an end is noticed. A mutant that no test notices is printed with its change,
unless it stands in survivors.txt with the reason why no test can notice it.

The sample is drawn by a seed, the first few of each kind in turns: the same sources and the same seed give the
same mutants.

The exit code is 0 when at least 90 % of the counted mutants that can be noticed were noticed and, in a sample of at
least 100, also 90 % of all counted ones. In a smaller one chance decides how many change nothing at all: three of 25
make 88 %.
"""

import argparse
import collections
import concurrent.futures
import pathlib
import queue
import random
import shutil
import signal
import sys
import tempfile
import time

sys.dont_write_bytecode = True  # these modules lie in a folder of sources

from builder import Build, Worker  # noqa: E402
from mutants import mutants_of  # noqa: E402

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[1]
CORE = ("request", "cache", "media", "stream", "text")
NOTICED_AT_LEAST = 0.90
ENOUGH_FOR_ALL = 100  # mutants; fewer say too little about the share of all
OF_EACH_KIND = 8
VERDICTS = ("noticed", "hung", "survived", "explained", "invalid")


def all_mutants(folders, only):
    for folder in folders:
        for file in sorted((ROOT / folder).glob("*.cpp")) + sorted((ROOT / folder).glob("*.h")):
            path = str(file.relative_to(ROOT))
            if only in path:
                yield from mutants_of(path, file.read_text())


def drawn(mutants, seed):
    """All of them in an order of chance, but first in turns a few of each kind: some kinds are rare."""
    random.Random(seed).shuffle(mutants)
    kinds = {}
    for mutant in mutants:
        kinds.setdefault(mutant.kind, []).append(mutant)
    first = [few[turn] for turn in range(OF_EACH_KIND) for _, few in sorted(kinds.items()) if turn < len(few)]
    chosen = set(map(id, first))
    return first + [mutant for mutant in mutants if id(mutant) not in chosen]


def explained():
    """Changes that no test can notice; in the file each stands below its reason, a comment."""
    lines = (HERE / "survivors.txt").read_text().splitlines()
    return {line.strip() for line in lines if line.strip() and not line.startswith("#")}


def judged(mutants, workers):
    """Each mutant with its verdict, in order; as many at a time as there are workers."""
    free = queue.Queue()
    for worker in workers:
        free.put(worker)

    def judge(mutant):
        worker = free.get()
        try:
            return mutant, worker.judge(mutant)
        finally:
            free.put(worker)

    with concurrent.futures.ThreadPoolExecutor(len(workers)) as pool:
        waiting = collections.deque()
        try:
            for mutant in mutants:
                waiting.append(pool.submit(judge, mutant))
                if len(waiting) > 2 * len(workers):
                    yield waiting.popleft().result()
            while waiting:
                yield waiting.popleft().result()
        finally:
            for future in waiting:
                future.cancel()


def sample(mutants, workers, count):
    """Verdicts of the first `count` mutants that compile, by kind."""
    reasons, kinds, counted = explained(), {}, 0
    for mutant, verdict in judged(mutants, workers):
        if verdict == "survived" and mutant.name() in reasons:
            verdict = "explained"
        kinds.setdefault(mutant.kind, dict.fromkeys(VERDICTS, 0))[verdict] += 1
        counted += verdict != "invalid"
        if verdict == "survived":
            print(f"survived  line {mutant.line + 1}  {mutant.name()}", flush=True)
        if counted % 10 == 0 and verdict != "invalid":
            print(f"... {counted} of {count}", flush=True)
        if counted == count:
            break
    return kinds


def report(kinds, possible, seed, seconds):
    print(f"\n{'kind':<18}" + "".join(f"{verdict:>11}" for verdict in VERDICTS))
    for kind, row in sorted(kinds.items()):
        print(f"{kind:<18}" + "".join(f"{row[verdict]:>11}" for verdict in VERDICTS))
    total = {verdict: sum(row[verdict] for row in kinds.values()) for verdict in VERDICTS}
    noticed = total["noticed"] + total["hung"]
    can_be_noticed = noticed + total["survived"]
    counted = can_be_noticed + total["explained"]
    if not can_be_noticed:
        sys.exit("mutate: no mutant could be judged")
    judges_all = counted >= ENOUGH_FOR_ALL
    of_all, of_possible = noticed / counted, noticed / can_be_noticed
    print(f"\n{counted} mutants of {possible} possible ones, drawn with seed {seed}, in {seconds:.0f} s: {noticed} "
          f"noticed ({of_all:.1%}), {total['survived']} survived, {total['explained']} cannot be noticed.\n"
          f"Of those that can be noticed {of_possible:.1%} were; at least {NOTICED_AT_LEAST:.0%} is asked for"
          f"{' of both' if judges_all else ' of that'}.")
    return of_possible >= NOTICED_AT_LEAST and (of_all >= NOTICED_AT_LEAST or not judges_all)


def read_options():
    parser = argparse.ArgumentParser(description="Changes the core in small ways and sees whether a test notices.")
    parser.add_argument("--count", type=int, default=400, help="mutants to judge (default: 400; 0: all)")
    parser.add_argument("--seed", type=int, default=1, help="another sample (default: 1)")
    parser.add_argument("--jobs", type=int, default=2, help="mutants judged at a time (default: 2)")
    parser.add_argument("--build", default="build/dev", help="folder of an ordinary build (default: build/dev)")
    parser.add_argument("--folders", default=",".join(CORE), help="where to look (default: the core)")
    parser.add_argument("--kind", default="", help="only changes whose kind contains this, like 'separator'")
    parser.add_argument("--only", default="", help="only files whose path contains this")
    return parser.parse_args()


def main():
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("mutate: ended from outside"))  # copies are removed
    options = read_options()
    mutants = list(all_mutants(options.folders.split(","), options.only))
    mutants = drawn([mutant for mutant in mutants if options.kind in mutant.kind], options.seed)
    if len(mutants) == len(list(all_mutants(CORE, ""))):  # not when only a part was asked for
        for name in explained() - {mutant.name() for mutant in mutants}:
            print(f"survivors.txt explains a change that cannot be made any more: {name}")
    started = time.monotonic()
    folder = pathlib.Path(tempfile.mkdtemp(prefix="koine-mutation-"))
    try:
        build = Build(ROOT, ROOT / options.build)
        workers = [Worker(build, folder / str(number)) for number in range(options.jobs)]
        print(f"The unit tests take {build.test_seconds:.1f} s of processor time. Judging mutants ...", flush=True)
        kinds = sample(mutants, workers, options.count or len(mutants))
    finally:
        shutil.rmtree(folder, ignore_errors=True)
    return 0 if report(kinds, len(mutants), options.seed, time.monotonic() - started) else 1


if __name__ == "__main__":
    sys.exit(main())
