"""Changes the library's sources one thing at a time and looks whether the tests notice: see
scripts/mutate. Each worker has copies of the project, with a build each, under build/mutation."""

import argparse
import collections
import hashlib
import json
import os
import queue
import sys
import threading
import time

from builds import ROOT, PlainBuild, SanitizedBuild
from mutants import mutants, tokenize

WORK = ROOT / "build/mutation"
STATE = WORK / "results.jsonl"
ACCEPTED = ROOT / "tests/mutation_survivors.txt"
LEAST_PERCENTAGE = 95


class Worker(threading.Thread):
    """Judges changes with a build of its own."""

    def __init__(self, build, directory, todo, record):
        super().__init__(daemon=True)
        self.build, self.directory, self.todo, self.record = build, directory, todo, record

    def run(self):
        try:
            build = self.build(self.directory)
            while True:
                mutant, key = self.todo.get_nowait()
                self.record(mutant, key, *build.judge(mutant))
        except queue.Empty:
            pass
        except BaseException as error:
            print(f"mutate: {error}", file=sys.stderr, flush=True)
            os._exit(1)


def all_mutants():
    """Every mutant with a key that tells it from the others and from those of older sources."""
    for path in sorted((ROOT / "kssubtitle").rglob("*")):
        if path.suffix not in (".cpp", ".h"):
            continue
        source = path.read_text()
        code = " ".join(token.text for token in tokenize(source))
        version = hashlib.sha256(code.encode()).hexdigest()[:12]
        for mutant in mutants(str(path.relative_to(ROOT)), source):
            yield mutant, f"{version} {mutant.file} {mutant.name}"


def accepted_names():
    lines = ACCEPTED.read_text().splitlines() if ACCEPTED.is_file() else []
    return {line for line in map(str.strip, lines) if line and not line.startswith("#")}


def report(chosen, results):
    counts = collections.Counter(results[key][0] for _, key in chosen)
    for mutant, key in chosen:
        if results[key][0] == "survived":
            print(f"{mutant.file}:{mutant.line}: {mutant.name}")
    judged = counts["caught"] + counts["survived"]
    percentage = 100 * counts["caught"] / judged if judged else 100
    print(f"{judged + counts['equivalent']} changes that compile, {counts['equivalent']} of them "
          f"without effect on the code; {counts['caught']} noticed, {counts['survived']} not: "
          f"{percentage:.1f} % noticed")
    return percentage


def work_off(entries, build, jobs, results, state):
    """Judges changes with this kind of build, `jobs` at a time."""
    todo, lock, begin = queue.Queue(), threading.Lock(), time.monotonic()
    for entry in entries:
        todo.put(entry)
    total = todo.qsize()

    def record(mutant, key, what, by):
        with lock:
            results[key] = what, by
            state.write(json.dumps([key, what, by]) + "\n")
            state.flush()
            done = total - todo.qsize()
            if what == "survived" or done % 50 == 0:
                print(f"[{build.name} {done}/{total}, {time.monotonic() - begin:.0f} s] {what}: "
                      f"{mutant.file}:{mutant.line}: {mutant.name}", flush=True)

    workers = [Worker(build, WORK / str(number) / build.name, todo, record)
               for number in range(min(jobs, total))]
    for worker in workers:
        worker.start()
    for worker in workers:
        worker.join()


def main():
    parser = argparse.ArgumentParser(prog="scripts/mutate")
    parser.add_argument("--every", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=2)
    options = parser.parse_args()
    WORK.mkdir(parents=True, exist_ok=True)
    results = {}
    if STATE.is_file():
        results = {key: (what, by) for key, what, by in map(json.loads, STATE.open())}
    everything = list(all_mutants())
    accepted = accepted_names()
    unknown = accepted - {f"{m.file}: {m.name}" for m, _ in everything}
    chosen = [(m, key) for m, key in everything[::options.every]
              if f"{m.file}: {m.name}" not in accepted]

    def survivors():
        return [(m, key) for m, key in chosen if results.get(key, ["survived"])[0] == "survived"]

    with STATE.open("a") as state:
        work_off(survivors(), PlainBuild, options.jobs, results, state)
        work_off(survivors(), SanitizedBuild, options.jobs, results, state)
    percentage = report(chosen, results)
    for name in sorted(unknown):
        print(f"{ACCEPTED.relative_to(ROOT)}: no such change: {name}")
    return 1 if percentage < LEAST_PERCENTAGE or unknown else 0


if __name__ == "__main__":
    sys.exit(main())
