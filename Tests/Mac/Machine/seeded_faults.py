#!/usr/bin/env python3
"""Makes each mistake of the lists seeded-faults.txt in a copy of its file, and runs the test that is to
find it in a program with that copy. Copies are compiled in a way of their own, which is quick; so the
test has to pass with a copy that has no mistake. Changes that no test finds are made as well, to see
that they are missed.

    seeded_faults.py [WORDS]   all, or the mistakes whose line has the words
    seeded_faults.py --check   builds and runs nothing: prints the lines whose mistake can't be made any
                               more or whose test isn't there

Runs at the root of the tree, with the test programs built. Prints a line for each mistake; ends with
status 1 when one is not found.
"""

import collections
import concurrent.futures
import glob
import json
import os
import pathlib
import re
import shlex
import signal
import subprocess
import sys
import tempfile
import threading
import typing

SOURCES = pathlib.Path("Machines/Mac")
FOLDER = pathlib.Path("build/asan")
# Those that wait for time to pass first.
PROGRAMS = ["brivane-mac-program-tests", "brivane-mac-appkit-tests", "brivane-mac-tests"]
LISTS = ["Tests/Mac/Machine/seeded-faults.txt", "Tests/Mac/Machine/AppKit/seeded-faults.txt"]
TO_BE_MISSED = "Tests/Mac/Machine/to-be-missed.txt"

QUICKLY_COMPILED = "-O0 -g0 -w -fno-profile-instr-generate -fno-coverage-mapping".split()
QUICKLY_LINKED = ["-Wl,-s,-O0,--build-id=none", "-no-pie"]
# All that matters of a run is whether the test passes.
ENVIRONMENT = os.environ | {
    "ASAN_OPTIONS": "detect_stack_use_after_return=1:detect_leaks=0:symbolize=0",
    "UBSAN_OPTIONS": "symbolize=0",
    "LLVM_PROFILE_FILE": "/dev/null",
}

# In seconds: what no test takes, however busy the machine is.
LIMIT = 120
HANGING_LIMIT = 20

PROCESSORS = len(os.sched_getaffinity(0))
building = threading.Semaphore(PROCESSORS)


class Missed(Exception):
    """Why a mistake is not found."""


class Mistake(typing.NamedTuple):
    what: str
    file: str
    how: str
    test: str

    @property
    def hangs(self):
        return self.what.endswith("(it hangs)")

    @property
    def text(self):
        return (SOURCES / self.file).read_text()


def sed(script, text):
    return subprocess.run(["sed", script], input=text, capture_output=True, text=True).stdout


def read_mistakes(paths):
    for path in paths:
        for number, line in enumerate(pathlib.Path(path).read_text().splitlines(), 1):
            if line and not line.startswith("#"):
                parts = re.fullmatch(r"(.*?) *\| *(.*?) *\| *(.*) \| *(.*)", line)
                if parts is None:
                    sys.exit(f"{path}:{number}: expected WHAT | FILE | HOW | TEST")
                yield line, Mistake(*parts.groups())


def idle_substitutions(mistake):
    """Those that change nothing when they are made one after the other."""
    grouped = re.fullmatch(r"(/.*/)\{(.*)\}", mistake.how)
    address, substitutions = grouped.groups() if grouped else ("", mistake.how)
    text = mistake.text
    for substitution in substitutions.replace(";s/", "\ns/").split("\n"):
        changed = sed(address + substitution, text)
        if changed == text:
            yield substitution
        text = changed


def check_lists():
    mistakes = [mistake for _, mistake in read_mistakes(LISTS)]
    if not mistakes:
        print("there is no mistake to make")
    folders = ["Tests/Mac/Machine/*.cpp", "Tests/Mac/Machine/**/*.mm", "Tests/*Conformance/*.cpp"]
    texts = [pathlib.Path(path).read_text() for folder in folders for path in glob.glob(folder, recursive=True)]
    tests = " ".join(" ".join(texts).split())
    for mistake in mistakes:
        for idle in idle_substitutions(mistake):
            print(f"{mistake.file}: the mistake can't be made any more: {mistake.what}: {idle}")
        if "({}, {})".format(*mistake.test.split(".", 1)) not in tests:
            print(f"{mistake.test}: there is no such test")


def build(command, failure=None):
    """The command is as seen from the build folder."""
    with building:
        built = subprocess.run(command, cwd=FOLDER, capture_output=True, text=True)
    if built.returncode == 0:
        return
    if failure is None:
        sys.exit(built.stderr)
    raise Missed(failure)


def without_option(words, name):
    """An option whose value is the next word."""
    at = words.index(name)
    return words[:at] + words[at + 2 :]


class Compiler:
    """Compiles copies of the sources, as they are compiled but quickly."""

    def __init__(self, work, files):
        """How often each file is going to be compiled is how often it is among them."""
        self.work = work
        self.commands = {}
        self.outputs = {}
        for entry in json.loads((FOLDER / "compile_commands.json").read_text()):
            path = pathlib.Path(entry["file"])
            if path.is_relative_to(SOURCES.resolve()):
                file = str(path.relative_to(SOURCES.resolve()))
                words = shlex.split(entry["command"])
                self.outputs[file] = words[words.index("-o") + 1]
                words = without_option(without_option(words, "-o"), "-c")
                self.commands[file] = words + QUICKLY_COMPILED
        self.read_headers(collections.Counter(files))

    def read_headers(self, counts):
        """Once for all files that are compiled alike, when that is worth it."""
        alike = collections.defaultdict(list)
        for file in counts:
            alike[tuple(self.commands[file])].append(file)
        with concurrent.futures.ThreadPoolExecutor() as pool:
            often = [files for files in alike.values() if sum(counts[file] for file in files) > 4]
            list(pool.map(self.precompile, often))

    def precompile(self, files):
        command = self.commands[files[0]]
        header = self.work / f"{pathlib.Path(files[0]).name}.h"
        text = "".join((SOURCES / file).read_text() for file in files)
        header.write_text("\n".join(re.findall("^#(?:include|import) .*", text, re.M)) + "\n")
        language = "objective-c++-header" if files[0].endswith(".mm") else "c++-header"
        build([*command, "-fpch-instantiate-templates", "-x", language, header, "-o", f"{header}.pch"])
        for file in files:
            self.commands[file] = [*command, "-include-pch", f"{header}.pch"]

    def compile(self, file, text, number="", failure=None):
        copy = self.work / f"{number}{pathlib.Path(file).name}"
        copy.write_text(text)
        build([*self.commands[file], "-c", copy, "-o", f"{copy}.o"], failure)
        return f"{copy}.o"

    def compile_unchanged(self, file):
        return self.compile(file, (SOURCES / file).read_text())


class Program:
    """How a test program is linked, but quickly and with copies."""

    def __init__(self, name, replaced, copies):
        asked = ["ninja", "-C", FOLDER, "-t", "commands", "-s", f"bin/{name}"]
        told = subprocess.run(asked, capture_output=True, text=True, check=True).stdout
        words = [word for word in shlex.split(told) if word not in (":", "&&", *replaced)]
        self.copies = copies
        self.words = []
        for word in without_option(words, "-o"):
            # What several archives define is taken from the first.
            self.words += [copies, word] if word.endswith(".a") else [word]

    def link(self, output, objects=(), failure=None):
        """What the objects don't define is taken from copies without a mistake."""
        at = self.words.index(self.copies)
        words = [*self.words[:at], *objects, *self.words[at:]]
        build([*words, *QUICKLY_LINKED, "-o", output], failure)
        return output


class Run:
    def __init__(self, program, tests, limit):
        with tempfile.TemporaryFile("w+", errors="replace") as output:
            # It ends with us, however we end.
            process = subprocess.Popen(
                ["setpriv", "--pdeathsig", "KILL", program, "--gtest_filter=" + ":".join(tests)],
                env=ENVIRONMENT, process_group=0, stdin=subprocess.DEVNULL, stdout=output, stderr=output)  # fmt: skip
            self.has_ended = self.wait(process, limit)
            output.seek(0)
            log = output.read()
        self.has_begun = re.search(r"^\[ RUN  ", log, re.M) is not None
        # A test that ends its process early has not passed, whatever the process's status.
        passed = re.findall(r"^\[       OK \] (\S+) \((\d+) ms\)", log, re.M)
        self.seconds = {test: int(milliseconds) / 1000 for test, milliseconds in passed}

    def wait(self, process, limit):
        try:
            process.wait(limit)
            return True
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()
            return False


def tests_of(program):
    command = [FOLDER / "bin" / program, "--gtest_list_tests"]
    listed = subprocess.run(command, capture_output=True, text=True, check=True, env=ENVIRONMENT)
    tests, suite = set(), ""
    for line in listed.stdout.splitlines():
        name = line.split("#")[0].strip()
        if line.startswith(" "):
            tests.add(suite + name)
        else:
            suite = name
    return tests


class Trial:
    """What is built and run once for all mistakes, and how one is looked for."""

    def __init__(self, work, mistakes, pool):
        self.work = work
        tests = {mistake.test for mistake in mistakes}
        self.program_of = {test: name for name in PROGRAMS for test in tests_of(name) & tests}
        files = sorted({mistake.file for mistake in mistakes})
        self.compiler = Compiler(work, files + [mistake.file for mistake in mistakes])
        copies = work / "copies.a"
        build(["ar", "rcs", copies, *pool.map(self.compiler.compile_unchanged, files)])
        replaced = {self.compiler.outputs[file] for file in files}
        needed = [name for name in PROGRAMS if name in self.program_of.values()]
        self.programs = {name: Program(name, replaced, copies) for name in needed}
        self.unfaulted = {name: pool.submit(self.run_unfaulted, name) for name in needed}

    def turn(self, mistake):
        """Tests that wait for time to pass come first."""
        return PROGRAMS.index(self.program_of.get(mistake.test, PROGRAMS[-1]))

    def run_unfaulted(self, name):
        program = self.programs[name].link(self.work / "bin" / name)
        tests = [test for test, own in self.program_of.items() if own == name]
        return Run(program, tests, 5 * LIMIT)

    def find(self, mistake, number):
        """Fails when the mistake is not found."""
        name = self.program_of.get(mistake.test)
        if name is None:
            raise Missed("there is no such test")
        text = sed(mistake.how, mistake.text)
        if text in ("", mistake.text):
            raise Missed("the mistake can't be made any more")
        faulted = self.compiler.compile(mistake.file, text, number, "it doesn't compile")
        output = self.work / "bin" / str(number)
        program = self.programs[name].link(output, [faulted], "it doesn't link")
        seconds = self.unfaulted[name].result().seconds.get(mistake.test)
        if seconds is None:
            raise Missed("the test fails without the mistake, too")
        self.see_that_it_fails(program, mistake, seconds)
        program.unlink()

    def see_that_it_fails(self, program, mistake, usual_seconds):
        limit = max(HANGING_LIMIT, 10 * usual_seconds) if mistake.hangs else LIMIT
        run = Run(program, [mistake.test], limit)
        if not run.has_ended and not mistake.hangs:
            raise Missed(f"the test was still running after {limit} seconds")
        if not run.has_begun:
            raise Missed("the program ends before the test")
        if mistake.test in run.seconds:
            raise Missed("the test passes")


def reason(trial, mistake, number):
    """Empty when the mistake is found."""
    try:
        trial.find(mistake, number)
        return ""
    except Missed as missed:
        return str(missed)


def tried(mistakes):
    """Each with the reason why it is missed, in the order in which they are known."""
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        # The whole program looks for its resources beside its own folder.
        (work / "bin").mkdir()
        (work / "share").symlink_to((FOLDER / "share").resolve())
        # Of a program that crashes files are left.
        ENVIRONMENT["TMPDIR"] = folder
        # Some tests wait for time to pass, so more of them run than there are processors.
        with concurrent.futures.ThreadPoolExecutor(PROCESSORS + 4) as pool:
            trial = Trial(work, mistakes, pool)
            mistakes.sort(key=trial.turn)
            futures = {
                pool.submit(reason, trial, mistake, number): mistake
                for number, mistake in enumerate(mistakes)
            }
            for future in concurrent.futures.as_completed(futures):
                yield futures[future], future.result()


def make_mistakes(words):
    mistakes = [mistake for line, mistake in read_mistakes(LISTS) if words in line]
    to_be_missed = [] if words else [mistake for _, mistake in read_mistakes([TO_BE_MISSED])]
    found = wrong = 0
    for mistake, reason in tried(mistakes + to_be_missed):
        if mistake in mistakes:
            found += not reason
            line = f"MISSED  {mistake.what} ({reason})" if reason else f"found   {mistake.what}"
        elif reason == mistake.what:
            line = f"missed  as it has to be: {reason}"
        else:
            wrong += 1
            line = f"WRONG   {mistake.what}: {reason or 'it was found'}"
        print(line, flush=True)
    print(f"{found} of {len(mistakes)} mistakes found")
    return 0 < found == len(mistakes) and not wrong


if __name__ == "__main__":
    words = sys.argv[1] if len(sys.argv) > 1 else ""
    if words == "--check":
        check_lists()
    elif not make_mistakes(words):
        sys.exit(1)
