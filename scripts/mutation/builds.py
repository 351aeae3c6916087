"""Builds of the project in which a change of the library's sources can be tried."""

import collections
import json
import os
import re
import resource
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
OBJECTS = "kssubtitle/CMakeFiles/kssubtitle_objects.dir/"
DEFAULTED = [  # the classes whose constructors the compiler makes from the headers
    "SUBTITLE_ST", "SUBTITLE_ST_U", "SRC_SESSION_ST", "SRC_SESSION_ST_U", "ASS_SESSION_ST",
    "ASS_SESSION_ST_U", "SUB_SESSION_ST", "SUB_SESSION_ST_U", "ksSrtParser", "ksSrtParserU",
    "ksAssParser", "ksAssParserU", "ksIdxParser", "ksIdxParserU"]


def run(command, directory):
    return subprocess.run(command, cwd=directory, shell=isinstance(command, str), text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)


class Failure(Exception):
    """A command or a test that must not fail has failed."""


def must(command, directory):
    done = run(command, directory)
    if done.returncode != 0:
        raise Failure(f"{command} failed:\n{done.stdout[-4000:]}")
    return done.stdout


def copy_project(to):
    """Makes `to` a copy of the project; files that are equal keep their times."""
    names = must(["git", "ls-files", "-co", "--exclude-standard"], ROOT).splitlines()
    wanted = {to / name for name in names if (ROOT / name).is_file()}
    for path in [path for path in to.rglob("*") if path.is_file() and path not in wanted]:
        path.unlink()
    for path in wanted:
        source = ROOT / path.relative_to(to)
        if not path.is_file() or path.read_bytes() != source.read_bytes():
            path.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, path)


class Test:
    """One test that CTest knows, run without it."""

    def __init__(self, described, memory):
        properties = {p["name"]: p["value"] for p in described["properties"]}
        self.name, self.command, self.memory = described["name"], described["command"], memory
        self.directory = properties["WORKING_DIRECTORY"]
        self.expected = properties.get("PASS_REGULAR_EXPRESSION", [])
        self.environment = dict(e.split("=", 1) for e in properties.get("ENVIRONMENT", []))
        self.environment |= {"GTEST_FAIL_FAST": "1", "ASAN_OPTIONS": "hard_rss_limit_mb=4096"}
        self.seconds = 60.0

    def passes(self):
        """Whether the test ends well, in time and with so much memory (0: any)."""
        with tempfile.TemporaryDirectory(dir="/dev/shm", ignore_cleanup_errors=True) as directory:
            process = subprocess.Popen(
                self.command, cwd=self.directory, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                env=os.environ | self.environment | {"TMPDIR": directory},
                start_new_session=True, preexec_fn=self.limit)
            try:
                output = process.communicate(timeout=3 * self.most_seconds())[0]
            except subprocess.TimeoutExpired:
                return False
            finally:  # ends what the test has left running, too
                try:
                    os.killpg(process.pid, signal.SIGKILL)
                except ProcessLookupError:
                    pass
                process.wait()
        if self.expected:
            return any(re.search(e, output.decode(errors="replace")) for e in self.expected)
        return process.returncode == 0

    def most_seconds(self):
        return int(5 + 4 * self.seconds)

    def limit(self):
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        resource.setrlimit(resource.RLIMIT_CPU, (self.most_seconds(), self.most_seconds()))
        if self.memory:
            resource.setrlimit(resource.RLIMIT_AS, (self.memory, self.memory))


class Build:
    """A copy of the project with a build directory and its tests."""

    def __init__(self, directory, memory, *options):
        self.tree, self.directory = directory / "tree", directory / "build"
        self.tree.mkdir(parents=True, exist_ok=True)
        copy_project(self.tree)
        must(["cmake", "-G", "Ninja", "-S", self.tree, "-B", self.directory, "-DCMAKE_BUILD_TYPE=",
              "-DCMAKE_CXX_FLAGS=-w", "-DKSSUBTITLE_WARNINGS_AS_ERRORS=OFF",
              "-DKSSUBTITLE_INSTALL=OFF", *options], ROOT)
        must(["ninja", "-j1"], self.directory)
        described = json.loads(must(["ctest", "--show-only=json-v1"], self.directory))["tests"]
        programs = f"{self.directory}/"  # the others look at what is installed, not at what it does
        self.tests = [Test(test, memory) for test in described
                      if test["command"][0].startswith(programs)]
        self.counts = collections.defaultdict(lambda: [1, 1])  # of file and test: caught, run

    def measure(self):
        """Runs all tests on the sources as they are."""
        for test in self.tests:
            begin = time.monotonic()
            self.prepare(test)
            if not test.passes():
                raise Failure(f"{test.name} fails without any change in {self.directory}")
            test.seconds = time.monotonic() - begin

    def judge(self, mutant):
        """(what becomes of a change, the test that fails)."""
        path = self.tree / mutant.file
        original = path.read_text()
        path.write_text(original[:mutant.begin] + mutant.after + original[mutant.end:])
        try:
            result = self.compile(path)
            if result:
                return result, ""
            test = self.first_failure(mutant.file)
            return ("caught", test) if test else ("survived", "")
        except Failure:  # it cannot be linked
            return "invalid", ""
        finally:
            path.write_text(original)

    def first_failure(self, file):
        """The name of a test that fails."""
        def rank(test):
            return -self.worth(test, *self.counts[file, test.name])

        for test in sorted(self.tests, key=rank):
            self.prepare(test)
            self.counts[file, test.name][1] += 1
            if not test.passes():
                self.counts[file, test.name][0] += 1
                return test.name
        return None

    @staticmethod
    def worth(test, caught, tried):
        """Tests that catch most in least time go first."""
        return caught / tried / test.seconds


class PlainBuild(Build):
    """Optimises the library's objects beside the build's own and links the tests, which are not
    compiled again, with them. The library's objects stand first, and in front of them an object
    with the constructors that are inlined elsewhere: the linker takes the functions that a header
    defines from them."""

    name = "plain"

    def __init__(self, directory):
        super().__init__(directory, 4 << 30)
        self.objects = directory / "objects"
        shutil.rmtree(self.objects, ignore_errors=True)
        self.compilations = {}
        for entry in json.loads((self.directory / "compile_commands.json").read_text()):
            if OBJECTS in entry["command"]:
                source = Path(entry["file"])
                target = self.objects / (str(source.relative_to(self.tree / "kssubtitle")) + ".o")
                target.parent.mkdir(parents=True, exist_ok=True)
                command = re.sub(r" -o \S+", f" -O2 -o {target}", entry["command"])
                self.compilations[source] = command, target
        constructors = self.add_constructors(command, source, target)
        for command, _ in self.compilations.values():
            must(command, self.directory)
        self.originals = {o: o.read_bytes() for _, o in self.compilations.values()}
        self.dependants = self.read_dependencies()
        self.links = {}
        for command in must(["ninja", "-t", "commands"], self.directory).splitlines():
            if OBJECTS in command and " -c " not in command:
                target = self.directory / re.search(r" -o (\S+)", command)[1]
                self.links[str(target)] = command.replace(OBJECTS, f"{self.objects}/").replace(
                    "/c++ ", f"/c++ -fuse-ld=gold {constructors} ")
        self.linked = set()
        self.measure()

    def add_constructors(self, command, source, target):
        """Adds a source that calls every defaulted constructor, compiled like `source`; returns
        its object."""
        extra, extra_object = self.objects / "constructors.cpp", self.objects / "constructors.o"
        extra.write_text("#include <kssubtitle/kssubtitle.h>\n" + "".join(
            f"void use{name}() {{ {name} object; }}\n" for name in DEFAULTED))
        command = command.replace(" -O2 ", " -O0 ").replace(str(source), str(extra)).replace(
            str(target), str(extra_object))
        self.compilations[extra] = command, extra_object
        return extra_object

    def read_dependencies(self):
        """Which of the library's sources each file goes into."""
        dependants, source = collections.defaultdict(list), None
        for line in must(["ninja", "-t", "deps"], self.directory).splitlines():
            if line.startswith(" ") and source:
                path = os.path.normpath(self.directory / line.strip())
                dependants[Path(path)].append(source)
            elif line and not line.startswith(" "):
                object_name = re.match(re.escape(OBJECTS) + r"(\S+)\.o:", line)
                source = self.tree / "kssubtitle" / object_name[1] if object_name else None
        for path, sources in dependants.items():
            if path.suffix == ".h":
                sources.append(self.objects / "constructors.cpp")
        return dependants

    def prepare(self, test):
        """Links what a test needs: its program, the shared library, or both."""
        program = self.links.get(test.command[0], "")
        needed = [program] if program else []
        if not program or "libkssubtitle.so" in program:
            needed += [c for target, c in self.links.items() if "libkssubtitle.so" in target]
        for command in needed:
            if command not in self.linked:
                must(command, self.directory)
                self.linked.add(command)

    def compile(self, path):
        """What a change is if no test is needed to tell: "invalid" or "equivalent"."""
        self.linked.clear()
        same = True
        for source in self.dependants[path]:
            command, target = self.compilations[source]
            if run(command, self.directory).returncode != 0:
                return "invalid"
            same = same and target.read_bytes() == self.originals[target]
        return "equivalent" if same else ""

    def judge(self, mutant):
        try:
            return super().judge(mutant)
        finally:
            for path, content in self.originals.items():
                if not path.is_file() or path.read_bytes() != content:
                    path.write_bytes(content)


class SanitizedBuild(Build):
    """Compiles all that a change reaches anew, the tests included."""

    name = "sanitized"

    def __init__(self, directory):
        super().__init__(directory, 0, "-DKSSUBTITLE_SANITIZE=address,undefined")
        self.measure()

    def prepare(self, test):
        program = os.path.relpath(test.command[0], self.directory)
        must(["ninja", "-j1", program], self.directory)

    def compile(self, path):
        return ""

    @staticmethod
    def worth(test, caught, tried):
        """Compiling takes longest here, whatever the test: those that catch most go first."""
        return caught / tried
