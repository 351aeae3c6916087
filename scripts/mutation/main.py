"""Changes the library's sources one thing at a time and looks whether the tests notice: see
scripts/mutate. Works in a copy of the project under build/mutation, with a build of a preset."""

import argparse
import collections
import hashlib
import json
import os
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from mutants import mutants, tokenize

ROOT = Path(__file__).resolve().parents[2]
WORK = ROOT / "build/mutation"
TREE = WORK / "tree"
ACCEPTED = ROOT / "tests/mutation_survivors.txt"
IMPORT = "kssubtitle/import"
# These look at what is installed, exported or documented, not at what the library does.
OTHER_TESTS = ["-E", "^(binary|consumers|readme)"]


def all_mutants():
    """(mutant, its name in the list of survivors, a key that changes with its file's code)."""
    for path in sorted((ROOT / "kssubtitle").rglob("*")):
        if path.suffix in (".cpp", ".h"):
            source = path.read_text()
            code = " ".join(token.text for token in tokenize(source))
            version = hashlib.sha256(code.encode()).hexdigest()[:12]
            for mutant in mutants(str(path.relative_to(ROOT)), source):
                name = f"{mutant.file}: {mutant.name}"
                yield mutant, name, f"{version} {name}"


def in_sample(name, every):
    """Whether a change is one of the sample, whatever else changes in the sources."""
    return int(hashlib.sha256(name.encode()).hexdigest()[:8], 16) % every == 0


def copy_project():
    """Makes TREE a copy of the project; files that are equal keep their times."""
    names = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, text=True,
                           capture_output=True, check=True).stdout.splitlines()
    wanted = [name for name in names if (ROOT / name).is_file()]
    for path in TREE.rglob("*"):
        name = path.relative_to(TREE)
        if path.is_file() and name.parts[0] != "build" and str(name) not in wanted:
            path.unlink()
    for name in wanted:
        to, content = TREE / name, (ROOT / name).read_bytes()
        if not to.is_file() or to.read_bytes() != content:
            to.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(ROOT / name, to)


class Suite:
    """How the changes in a directory are built and tested, and how many must be noticed."""

    def __init__(self, where, preset):
        # The import library has a test program of its own, which takes seconds.
        is_import = Path(IMPORT) in (Path(where), *Path(where).parents)
        self.preset = preset or ("dev" if is_import else "asan")
        self.targets = ["--target", "import_tests", "import_digest"] if is_import else []
        self.tests = ["-R", "^(import|answers.import)$"] if is_import else OTHER_TESTS
        self.least_percentage = 97 if is_import else 95
        self.state = WORK / f"{self.preset}{'.import' if is_import else ''}.jsonl"


def build(suite):
    return subprocess.run(["cmake", "--build", "--preset", suite.preset, *suite.targets], cwd=TREE,
                          text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)


def test(suite, seconds):
    """What CTest prints if a test fails or takes longer than that; nothing if all pass."""
    def limit():
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        if "san" not in suite.preset:  # sanitizers reserve much more than they use
            resource.setrlimit(resource.RLIMIT_AS, (4 << 30, 4 << 30))

    with tempfile.TemporaryDirectory(dir="/dev/shm", ignore_cleanup_errors=True) as directory:
        process = subprocess.Popen(
            ["ctest", "--preset", suite.preset, *suite.tests, "--stop-on-failure", "--timeout",
             str(seconds)], cwd=TREE, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
            env=os.environ | {"TMPDIR": directory, "GTEST_FAIL_FAST": "1",
                              "ASAN_OPTIONS": "hard_rss_limit_mb=4096"},
            start_new_session=True, preexec_fn=limit, errors="replace")
        output = process.communicate()[0]
        try:
            os.killpg(process.pid, signal.SIGKILL)  # what a test has left running
        except ProcessLookupError:
            pass
    return output if process.returncode != 0 else ""


def judge(mutant, suite, seconds):
    path = TREE / mutant.file
    original = path.read_text()
    path.write_text(original[:mutant.begin] + mutant.after + original[mutant.end:])
    try:
        if build(suite).returncode != 0:
            return "invalid"
        return "caught" if test(suite, seconds) else "survived"
    finally:
        path.write_text(original)


def prepare(suite):
    """Builds and tests the sources as they are; returns the seconds to allow for a test."""
    copy_project()
    subprocess.run(["cmake", "--preset", suite.preset, "-DKSSUBTITLE_WARNINGS_AS_ERRORS=OFF"],
                   cwd=TREE, check=True, stdout=subprocess.DEVNULL)
    built, begin = build(suite), time.monotonic()
    failure = built.stdout if built.returncode != 0 else test(suite, 600)
    if failure:
        sys.exit(f"{failure[-4000:]}\nmutate: this fails without any change")
    return int(20 + 3 * (time.monotonic() - begin))


def run(chosen, suite):
    """Judges what is not judged yet, or had survived; returns the numbers of each outcome."""
    seconds, state = prepare(suite), suite.state
    results = dict(map(json.loads, state.open())) if state.is_file() else {}
    with state.open("a") as log:
        for number, (mutant, name, key) in enumerate(chosen, 1):
            if results.get(key, "survived") == "survived":
                results[key] = judge(mutant, suite, seconds)
                log.write(json.dumps([key, results[key]]) + "\n")
                log.flush()
                print(f"[{number}/{len(chosen)}] {results[key]}: {name} (line {mutant.line})",
                      flush=True)
    return collections.Counter(results[key] for _, _, key in chosen)


def main():
    parser = argparse.ArgumentParser(prog="scripts/mutate")
    parser.add_argument("--every", type=int, default=1)
    parser.add_argument("--in", dest="where", default="kssubtitle")
    parser.add_argument("--preset")
    parser.add_argument("--check", action="store_true")
    options = parser.parse_args()
    everything = list(all_mutants())
    accepted = {line for line in ACCEPTED.read_text().splitlines()
                if line and not line.startswith("#")}
    unknown = accepted - {name for _, name, _ in everything}
    for name in sorted(unknown):
        print(f"{ACCEPTED.relative_to(ROOT)}: no such change: {name}")
    if unknown or options.check:
        return 1 if unknown else 0
    WORK.mkdir(parents=True, exist_ok=True)
    chosen = [m for m in everything
              if m[0].file.startswith(options.where) and in_sample(m[1], options.every)]
    suite = Suite(options.where, options.preset)
    counts = run([m for m in chosen if m[1] not in accepted], suite)
    judged = counts["caught"] + counts["survived"]
    percentage = 100 * counts["caught"] / judged if judged else 100
    print(f"{judged} changes that compile; {counts['caught']} noticed, {counts['survived']} not: "
          f"{percentage:.1f} % noticed")
    return 1 if percentage < suite.least_percentage else 0


if __name__ == "__main__":
    sys.exit(main())
