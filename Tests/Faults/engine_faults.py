#!/usr/bin/env python3
"""Makes all mistakes of engine-faults.txt in copies of BrivaneCore and BrivaneApp, each as a branch
that a number switches on; builds the unit tests and the random days with the copies once; and runs
them for each mistake: its test must fail, and a random day, where the mistake shows in behaviour.
With no mistake switched on all of them must pass.

    engine_faults.py [WORDS]   all, or the mistakes whose name has the words
    engine_faults.py --check   builds and runs nothing: prints the mistakes that can't be made any
                               more or whose test isn't there
    engine_faults.py --due     tries those that no random day finds yet, and says which are found now

Runs at the root of the tree, with the test programs built. Prints a line for each mistake; ends with
status 1 when one is not found.
"""

import collections
import concurrent.futures
import fnmatch
import glob
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile
import typing

LIST = pathlib.Path("Tests/Faults/engine-faults.txt")
FOLDER = pathlib.Path("build")
ROOMS = {"BrivaneCore": "brivane-core", "BrivaneApp": "brivane-app"}
UNITS = "brivane-tests"
DAYS = "brivane-first-failing-day"
SEEDS = "1..200"

QUICKLY_COMPILED = "-O1 -g0 -w".split()
QUICKLY_LINKED = "-g0 -Wl,-s".split()
# In seconds: what no test and no days take, however busy the machine is.
LIMIT = 300


class Mistake(typing.NamedTuple):
    number: int
    what: str
    file: str
    text: str
    mistaken: str
    test: str
    # "found", or why no random day finds it: "hidden: …" for good, "due: …" until the weather brings it.
    days: str

    @property
    def pattern(self):
        """Where the text has blanks, the file has any."""
        return r"\s+".join(map(re.escape, self.text.split()))


def read_mistakes():
    text = re.sub(r"^#.*\n", "", LIST.read_text(), flags=re.M)
    for number, block in enumerate(re.split(r"\n\n+", text.strip()), 1):
        parts = re.fullmatch(r"(.+)\nin (.+)\n- (.+)\n\+(.*)\ntest (.+)\ndays (found|hidden: .+|due: .+)", block)
        if parts is None:
            sys.exit(f"{LIST}: expected WHAT, in, -, +, test and days, found:\n{block}")
        yield Mistake(number, *(part.strip() for part in parts.groups()))


def switched(original, mistakes):
    """A statement or an expression with a branch for each mistake."""
    if original.endswith(";"):
        branches = [f"if (mistake == {each.number}) {{ {each.mistaken} }} else " for each in mistakes]
        return f"{{ {''.join(branches)}{{ {original} }} }}"
    branches = [f"mistake == {each.number} ? ({each.mistaken}) : " for each in mistakes]
    return f"({''.join(branches)}({original}))"


def places(text, mistakes):
    """The mistakes of a file by the place of their text, and those that can't be made."""
    found, wrong = collections.defaultdict(list), []
    for mistake in mistakes:
        spans = [match.span() for match in re.finditer(mistake.pattern, text)]
        if len(spans) == 1:
            found[spans[0]].append(mistake)
        else:
            wrong.append(f"{mistake.file}: {mistake.what}: the text is there {len(spans)} times: {mistake.text}")
    end = 0
    for start, stop in sorted(found):
        if start < end:
            wrong += [f"{each.file}: {each.what}: the text overlaps another's" for each in found[start, stop]]
        end = stop
    return found, wrong


def with_mistakes(text, mistakes):
    found, wrong = places(text, mistakes)
    if wrong:
        sys.exit("\n".join(wrong))
    for (start, stop), here in sorted(found.items(), reverse=True):
        text = text[:start] + switched(text[start:stop], here) + text[stop:]
    return text


def by_file(mistakes):
    files = collections.defaultdict(list)
    for mistake in mistakes:
        files[mistake.file].append(mistake)
    return files


def check_list():
    mistakes = list(read_mistakes())
    for file, own in by_file(mistakes).items():
        for wrong in places(pathlib.Path(file).read_text(), own)[1]:
            print(wrong)
    sources = [pathlib.Path(path).read_text() for path in glob.glob("Tests/**/*.cpp", recursive=True)]
    tests = " ".join(" ".join(sources).split())
    for mistake in mistakes:
        if "({}, {})".format(*mistake.test.split(".", 1)) not in tests:
            print(f"{mistake.test}: there is no such test")


def build(command):
    """The command is as seen from the build folder."""
    built = subprocess.run(command, cwd=FOLDER, capture_output=True, text=True)
    if built.returncode != 0:
        sys.exit(built.stderr)


def without_option(words, name):
    """An option whose value is the next word."""
    at = words.index(name)
    return words[:at] + words[at + 2 :]


def copy_room(work, room, mistakes):
    for path in pathlib.Path(room).rglob("*"):
        if path.suffix in (".h", ".cpp"):
            copy = work / path
            copy.parent.mkdir(parents=True, exist_ok=True)
            copy.write_text(with_mistakes(path.read_text(), mistakes.get(str(path), [])))


def compile_room(work, room, library):
    """As one batch: the sources' own names are different throughout a room."""
    entries = json.loads((FOLDER / "compile_commands.json").read_text())
    words = next(shlex.split(entry["command"]) for entry in entries if f"{library}.dir" in entry["command"])
    words = without_option(without_option(words, "-o"), "-c")
    batch = work / f"{room}.cpp"
    sources = sorted(pathlib.Path(room).rglob("*.cpp"))
    batch.write_text("".join(f'#include "{source}"\n' for source in sources))
    build([words[0], f"-I{work}", *words[1:], *QUICKLY_COMPILED, "-include", work / "mistake.h",
           "-c", batch, "-o", f"{batch}.o"])  # fmt: skip
    return f"{batch}.o"


def link(work, name, objects):
    """What the copies define is taken from them, because they come first."""
    command = ["ninja", "-C", FOLDER, "-t", "commands", f"bin/{name}"]
    told = subprocess.run(command, capture_output=True, text=True, check=True).stdout.splitlines()[-1]
    words = without_option([word for word in shlex.split(told) if word not in (":", "&&")], "-o")
    program = work / "bin" / name
    build([words[0], *objects, *words[1:], *QUICKLY_LINKED, "-o", program])
    return program


def build_programs(work, mistakes, pool):
    files = by_file(mistakes)
    for room in ROOMS:
        copy_room(work, room, files)
    (work / "mistake.h").write_text(
        "#pragma once\n#include <cstdlib>\n"
        'namespace brivane { inline const int mistake = std::atoi(getenv("BRIVANE_MISTAKE")); }\n'
    )
    objects = list(pool.map(lambda room: compile_room(work, *room), ROOMS.items()))
    # The programs look for their resources beside their own folder.
    (work / "bin").mkdir()
    (work / "share").symlink_to((FOLDER / "share").resolve())
    return list(pool.map(lambda name: link(work, name, objects), [UNITS, DAYS]))


def run(number, *command):
    """What the command prints, and its exit status; none when it doesn't end."""
    environment = os.environ | {"BRIVANE_MISTAKE": str(number)}
    with tempfile.TemporaryFile("w+", errors="replace") as output:
        # It ends with us, however we end.
        process = subprocess.Popen(["setpriv", "--pdeathsig", "KILL", *command], env=environment,
                                   stdin=subprocess.DEVNULL, stdout=output, stderr=output)  # fmt: skip
        try:
            status = process.wait(LIMIT)
        except subprocess.TimeoutExpired:
            process.kill()
            status = None
        output.seek(0)
        return output.read(), status


def run_units(units, number, tests):
    """The tests that began, and those that passed: one that ends the process early has not."""
    printed, _ = run(number, units, f"--gtest_filter={':'.join(tests)}")
    names = {sign: set(re.findall(rf"^\[ {sign} \] ([^ \n,]+)", printed, re.M)) for sign in ("RUN     ", "      OK")}
    return names["RUN     "], names["      OK"]


def find_by_days(days, mistake):
    """The first seed that fails and why, or nothing."""
    printed, status = run(mistake.number, days, SEEDS)
    if status == 0:
        return ""
    last = printed.strip().splitlines()[-1]
    if last.startswith("plays "):
        last = last.replace("plays", "seed") + (", it doesn't end" if status is None else ", it crashes")
    return last


class Trial:
    def __init__(self, work, mistakes, pool, seeks_due):
        self.units, self.days = build_programs(work, list(read_mistakes()), pool)
        self.seeks_due = seeks_due
        faultless_days = pool.submit(run, 0, self.days, SEEDS)
        tests = sorted({mistake.test for mistake in mistakes})
        self.good = run_units(self.units, 0, tests)[1]
        printed, status = faultless_days.result()
        if status != 0:
            sys.exit(f"FAILED without a mistake: {printed.splitlines()[-1]}")

    def reason(self, mistake):
        """Why it is missed, or nothing; and what found it."""
        if mistake.test not in self.good:
            return "the test isn't there or fails without the mistake", ""
        begun, passed = run_units(self.units, mistake.number, [mistake.test])
        if not begun:
            return "the program ends before the test", ""
        if mistake.test in passed:
            return "the test passes", ""
        if not self.seeks_due and mistake.days != "found":
            return "", mistake.days
        day = find_by_days(self.days, mistake)
        return ("", day) if day else (f"the days of all seeds {SEEDS} pass", "")


def make_mistakes(words, seeks_due):
    mistakes = [each for each in read_mistakes() if words in each.what]
    if seeks_due:
        mistakes = [each for each in mistakes if each.days != "found"]
    found = 0
    processors = len(os.sched_getaffinity(0))
    with tempfile.TemporaryDirectory() as folder, concurrent.futures.ThreadPoolExecutor(processors) as pool:
        os.environ["TMPDIR"] = folder
        trial = Trial(pathlib.Path(folder), mistakes, pool, seeks_due)
        futures = {pool.submit(trial.reason, each): each for each in mistakes}
        for future in concurrent.futures.as_completed(futures):
            mistake = futures[future]
            reason, by = future.result()
            found += not reason
            print(f"MISSED  {mistake.what} ({reason})" if reason else f"found   {mistake.what} ({by})", flush=True)
    print(f"{found} of {len(mistakes)} mistakes found")
    return 0 < found == len(mistakes)


if __name__ == "__main__":
    words = sys.argv[1] if len(sys.argv) > 1 else ""
    if words == "--check":
        check_list()
    elif not make_mistakes("" if words == "--due" else words, words == "--due"):
        sys.exit(1)
