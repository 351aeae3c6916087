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
LEAST_PERCENTAGE = 95
# These look at what is installed, exported or documented, not at what the library does.
OTHER_TESTS = "^(binary|consumers|readme)"


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


def build(preset):
    return subprocess.run(["cmake", "--build", "--preset", preset], cwd=TREE, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)


def test(preset, seconds):
    """What CTest prints if a test fails or takes longer than that; nothing if all pass."""
    def limit():
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        if "san" not in preset:  # sanitizers reserve much more than they use
            resource.setrlimit(resource.RLIMIT_AS, (4 << 30, 4 << 30))

    with tempfile.TemporaryDirectory(dir="/dev/shm", ignore_cleanup_errors=True) as directory:
        process = subprocess.Popen(
            ["ctest", "--preset", preset, "-E", OTHER_TESTS, "--stop-on-failure", "--timeout",
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


def judge(mutant, preset, seconds):
    path = TREE / mutant.file
    original = path.read_text()
    path.write_text(original[:mutant.begin] + mutant.after + original[mutant.end:])
    try:
        if build(preset).returncode != 0:
            return "invalid"
        return "caught" if test(preset, seconds) else "survived"
    finally:
        path.write_text(original)


def prepare(preset):
    """Builds and tests the sources as they are; returns the seconds to allow for a test."""
    copy_project()
    subprocess.run(["cmake", "--preset", preset, "-DKSSUBTITLE_WARNINGS_AS_ERRORS=OFF"], cwd=TREE,
                   check=True, stdout=subprocess.DEVNULL)
    built, begin = build(preset), time.monotonic()
    failure = built.stdout if built.returncode != 0 else test(preset, 600)
    if failure:
        sys.exit(f"{failure[-4000:]}\nmutate: this fails without any change")
    return int(20 + 3 * (time.monotonic() - begin))


def run(chosen, preset):
    """Judges what is not judged yet, or had survived; returns the numbers of each outcome."""
    seconds, state = prepare(preset), WORK / f"{preset}.jsonl"
    results = dict(map(json.loads, state.open())) if state.is_file() else {}
    with state.open("a") as log:
        for number, (mutant, name, key) in enumerate(chosen, 1):
            if results.get(key, "survived") == "survived":
                results[key] = judge(mutant, preset, seconds)
                log.write(json.dumps([key, results[key]]) + "\n")
                log.flush()
                print(f"[{number}/{len(chosen)}] {results[key]}: {name} (line {mutant.line})",
                      flush=True)
    return collections.Counter(results[key] for _, _, key in chosen)


def main():
    parser = argparse.ArgumentParser(prog="scripts/mutate")
    parser.add_argument("--every", type=int, default=1)
    parser.add_argument("--in", dest="where", default="kssubtitle")
    parser.add_argument("--preset", default="asan")
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
    chosen = [m for m in everything if m[0].file.startswith(options.where)][::options.every]
    counts = run([m for m in chosen if m[1] not in accepted], options.preset)
    judged = counts["caught"] + counts["survived"]
    percentage = 100 * counts["caught"] / judged if judged else 100
    print(f"{judged} changes that compile; {counts['caught']} noticed, {counts['survived']} not: "
          f"{percentage:.1f} % noticed")
    return 1 if percentage < LEAST_PERCENTAGE else 0


if __name__ == "__main__":
    sys.exit(main())
