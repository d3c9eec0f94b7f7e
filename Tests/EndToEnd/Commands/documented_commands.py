"""Runs the commands in README.md, CONTRIBUTING.md, ARCHITECTURE.md, docs and the workflows. A command is a line of a code
block, or a span of code, that begins with a program of the tree or of the list below. Each has to stand in one of the
tables here: FIRST to ON_KERNEL are run as they stand, in a copy of the tree with the built programs, ELSEWHERE by
another test. LOOKED_AT says why the others aren't run; only what they name has to be there.
"""
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

TREE = pathlib.Path.cwd()
WORKFLOWS = sorted(TREE.glob(".github/workflows/*.yml"))
TEXTS = [TREE / name for name in ("README.md", "CONTRIBUTING.md", "ARCHITECTURE.md")] + sorted(TREE.glob("docs/*.md"))
OTHER_PROGRAMS = """BRIVANE_DESK BRIVANE_REGENERATE Brivane brew brivane-ctl brivane-defaults brivane-desk brivane-hidutil cmake codesign ctest ddc-bus-host
    defaults ditto dyld_info hidutil journalctl launchctl log modprobe npm open otool perf pkill python3 sh shasum strace sudo
    systemd-inhibit tccutil xcode-select xcrun""".split()


def example(file, beginning):
    """The first block of a text with that beginning."""
    blocks = re.findall(r"```\w*\n(.*?)```", (TREE / file).read_text(), re.S)
    return next(block for block in blocks if block.startswith(beginning))


DESK = "build/bin/brivane-desk "
KERNEL = "build/bin/ddc-bus-host "
REPORT = "Brivane probe\n"

# The commands, and what each prints.
FIRST = [
    ("./run --probe", example("README.md", "  [3] Halden H27")),
    ("./run --set 40", "Set Halden H27 to 40%"),
    ("./run --unmap", "No Brivane entries were in the HID mapping"),
]
# Commands that run meanwhile, what each prints at first, and by the end.
STAYING = [
    ("./run", "relayed through F19/F20", "a picture of the desk is kept in "),
    (DESK + "watch", "system: awake", "keyboard: 3 keys down\nsetting brightness.8334.10027.40812: \n"
     "gamma 3: boosted by \nsetting SubZeroDimming: false"),
]
MEANWHILE = [
    (DESK + "poke pointer 3", "pointer "),
    (DESK + "poke hold control+option+up for 2s", ""),
    (DESK + "poke key control+option+up", ""),
    (DESK + "poke mood 3 silent", "monitor 3 mood silent"),
    (DESK + "poke unplug 3", "display 3 unplugged"),
    ("brivane-desk poke unplug 2", "display 2 unplugged"),
    (DESK + 'poke "move 2 to {-1920,0}"', "display 2 frame -1920 0"),
    (DESK + "poke setting SubZeroDimming = false", ""),
    (DESK + "poke my-desk.json buttons 2 40", "monitor 2 buttons 40"),
]
LAST = [
    ("BRIVANE_DESK=my-desk.json ./run --probe", "current=40 max=100"),
    (DESK + "run --trace Tests/Scenarios/first-start.scenario", "1 of 1"),
    (DESK + "run --regenerate my.scenario", "1 of 1"),
    (DESK + "run --trace my.scenario", "1 of 1"),
    ("brivane-defaults write SubZeroDimming false", ""),
    ("brivane-defaults read", "SubZeroDimming false"),
    ("BRIVANE_DESK=build/desk/desk.json build/bin/brivane-defaults read", "SubZeroDimming false"),
    ("Brivane --probe", REPORT),
    ("Brivane --set 40", "Set Halden H27 to 40%"),
    ("Brivane --unmap", "No Brivane entries were in the HID mapping"),
    ("./test --help", "./test --list [GROUP...]"),
    (KERNEL + "build/bin/Brivane --probe", REPORT),
    (KERNEL + "--monitor HDMI-A-1,bus=5,vendor=BRV,model=0x1001,label=Alpha,level=30 "
     "--backlight intel_backlight,maximum=1000 --keyboard event3,c006f=225,c0070=224 -- build/bin/Brivane --probe", REPORT),
]
# On a mocked kernel, so that the user's own displays and keyboards aren't touched.
ON_KERNEL = [
    ("./run --real --probe", REPORT),
    ("brivane-hidutil property --get UserKeyMapping", "(null)"),
]
# Run before some of these, which need the result.
BEFORE = {
    "brivane-desk poke unplug 2": DESK + "poke plug 3",
    DESK + 'poke "move 2 to {-1920,0}"': DESK + "poke plug 2",
    "Brivane --set 40": DESK + "poke mood 3 answering",
}

# Run by another test: which, and in which words.
ELSEWHERE = {
    DESK + "run Tests/Scenarios/*.scenario": ("Tests/CMakeLists.txt", "brivane-desk run Tests/Scenarios/*.scenario"),
    DESK + "faults Tests/FaultsInTurn/*.scenario":
        ("Tests/CMakeLists.txt", "brivane-desk faults Tests/FaultsInTurn/*.scenario"),
    DESK + "swarm --seeds 1..100": ("Tests/CMakeLists.txt", "brivane-desk swarm --seeds 1..100"),
    "Tests/Mac/Machine/seeded-faults.sh WORDS": ("Tests/tidy.sh", "Tests/Mac/Machine/seeded-faults.sh"),
    "Tests/Faults/engine-faults.sh WORDS": ("Tests/tidy.sh", "Tests/Faults/engine-faults.sh"),
    "Tests/Faults/engine-faults.sh --due": ("Tests/tidy.sh", "Tests/Faults/engine-faults.sh"),
    "Packaging/macOS/get-zig.sh": ("test", "Packaging/macOS/get-zig.sh"),
    "Packaging/Linux/make-package.sh": ("Tests/Packaging/package_again.sh", "Packaging/Linux/make-package.sh"),
    "./install.sh": ("Tests/Mac/Install/InstallTest.cpp", '"install.sh"'),
    "./install.sh FOLDER": ("Tests/Mac/Install/InstallTest.cpp", '"install.sh"'),
    "sh install.sh": ("Tests/Mac/Install/InstallTest.cpp", '"install.sh"'),
    "./uninstall.sh": ("Tests/Mac/Install/UninstallTest.cpp", '"uninstall.sh"'),
    "Tools/mac-report.sh": ("Tests/Mac/Install/ReportTest.cpp", '"Tools/mac-report.sh"'),
    "Tools/mac-report.sh --archive Brivane-0.1.0.zip": ("Tests/Mac/Install/ReportTest.cpp", '"--unattended --archive "'),
    'Tools/mac-report.sh --unattended --archive "$(echo from-linux/Brivane-*.zip)"':
        ("Tests/Mac/Install/ReportTest.cpp", '"--unattended --archive "'),
    "./uninstall.sh --settings": ("Tests/Mac/Install/UninstallTest.cpp", '"--settings"'),
}

# PATTERN, WHY it is not run, and where each of the pattern's groups has to stand.
LOOKED_AT = [
    (r"\./test( \[?GROUP…\]?| --list( \[GROUP…\])?)?", "it is what runs this", []),
    (r"\./test (\w+)", "it is what runs this", [("test", "  {}  ")]),
    (r"ctest --test-dir build -L (\w+) -j 4", "it is what runs this", [("test", "  {}  ")]),
    (r"\./run( \[--real\] \[ARGUMENT…\]| --real)?", "a form of those that are", []),
    (r"\./bench( --json)?", "it takes four minutes", [("bench", "{}")]),
    (r"Tools/draw-pictures\.sh", "it writes into the tree", []),
    (r"BRIVANE_REGENERATE=1 build/bin/(brivane-\S+)", "it writes into the tree",
     [("Tests/CMakeLists.txt", "{}")]),
    (r"build/asan/bin/(brivane-fuzz) (\w+) -max_total_time=600", "it takes ten minutes",
     [("Tests/CMakeLists.txt", "{}"), ("Tests/Fuzzing/Parsers.cpp", '"{}"')]),
    (r"cmake --preset NAME", "a form of others", []),
    (r"cmake -B build/install -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_INSTALL_PREFIX=/usr -DBRIVANE_FRAME=ON"
     r"|cmake --build build/install|DESTDIR=/tmp/brivane cmake --install build/install",
     "the group package configures and installs so", []),
    (r"sudo apt (?:install|purge) .*", "Tests/Packaging/package_life.sh does it by dpkg", []),
    (r"cmake( --build)? --preset (\S+)", "it takes a Mac, or a compiler of 400 MB",
     [None, ("CMakePresets.json", '"name": "{}"')]),
    (r"cmake --preset mac-native -D(\w+)=.*", "it takes a Mac", [("Packaging/macOS/App.cmake", "set({} ")]),
    (r"cmake --preset (\S+) && cmake --build --preset (\S+)", "it takes a Mac",
     [("CMakePresets.json", '"name": "{}"')] * 2),
    (r"cmake --build --preset mac-native --target (\S+)", "it takes a Mac",
     [("Packaging/macOS/App.cmake", "compare_declarations({} ")]),
    (r"apt-get update && apt-get install .*|git config --global .*", "it takes a new machine", []),
    (r"cmake ninja-build llvm-16 python3 npm", "names of packages", []),
    (r"brivane-defaults delete NAME", "a form of one that a test of the tool runs", []),
    (r"brivane-desk run --trace|Brivane --set", "the beginning of others", []),
    (r"build/bin/brivane-desk run --seed N seed-N\.scenario", "a form of others", []),
    (r"(sudo )?(modprobe i2c-dev|udevadm trigger .*|adduser \$USER \w+)", "it takes root and hardware", []),
    (r"echo i2c-dev \| sudo tee /etc/modules-load.d/brivane.conf", "it takes root", []),
    (r"systemd-inhibit --list|journalctl -t (Brivane)", "it takes a system that systemd runs",
     [("Machines/Linux/System/Log.cpp", 'openlog("{}"')]),
    (r"defaults (?:write|delete|read) com\.quorrel\.brivane(?: NAME| (\w+) -(?:bool|int) \w+)?", "it takes a Mac",
     [("Tests/BrivaneCore", '"{}"')]),
    (r"launchctl (?:bootout|print|disable|kickstart|kill TERM) gui/\$\(id -u\)/(com\.quorrel\.brivane)", "it takes a Mac",
     [("install.sh", "label={}")]),
    (r"tccutil reset Accessibility (com\.quorrel\.brivane)", "it takes a Mac", [("install.sh", "label={}")]),
    (r"open (again|URL)|log (LINE|…)|(hidutil|launchctl) present\|.*", "lines of scenarios and transcripts", []),
    (r"brivane-ctl (up|down|set|get|list|menu)( .*)?", "another test runs it", [("Tests/EndToEnd/Desktop", '({{"{}"'), None]),
    (r"(?:cd build/mac && )?(brew|codesign|ditto|dyld_info|hidutil|log|open|otool|pkill|shasum|xcode-select|xcrun) .*", "it takes a Mac", []),
    (r"(perf|strace) .*", "how something was measured", []),
]


def is_program(word):
    path = word.removeprefix("./")
    if word.startswith(("./", "build/bin/")):
        return True
    if word.startswith(("Tools/", "Packaging/", "Tests/")):
        return os.access(TREE / path, os.X_OK) and (TREE / path).is_file()
    return word.split("=")[0] in OTHER_PROGRAMS


def commands(text):
    """Yields each command with its line. A block that begins with a command has nothing but commands."""
    lines = text.split("\n")
    block = None
    joined = ""
    for number, line in enumerate(lines, 1):
        if line.startswith("```"):
            block = [] if block is None else None
        elif block is not None:
            block.append(line)
            if joined or is_program(block[0].split(" ")[0]):
                joined += line.removesuffix("\\").strip() + " "
                if not line.endswith("\\"):
                    yield number, re.split(r" {2,}", joined.strip())[0]
                    joined = ""
        else:
            for span in re.findall(r"`([^`]+)`", line):
                words = span.replace("\\|", "|").split()
                if is_program(words[0]) and (len(words) > 1 or words[0].startswith("./") and "." not in words[0][2:]):
                    yield number, " ".join(words)


def steps(workflow):
    """Yields the command of each step with its line."""
    for number, line in enumerate(workflow.split("\n"), 1):
        found = re.fullmatch(r"\s+(?:- )?run: (.+)", line)
        if found:
            yield number, found[1]


def holds(place, text):
    files = [place] if place.is_file() else place.rglob("*.cpp")
    return any(text in file.read_text() for file in files)


def problem_of(command):
    """The problem of a command that isn't run here; empty without one."""
    if command in ELSEWHERE:
        file, words = ELSEWHERE[command]
        return "" if words in (TREE / file).read_text() else f"{file} doesn't run it"
    for pattern, _, places in LOOKED_AT:
        match = re.fullmatch(pattern, command)
        if not match:
            continue
        for found, place in zip(match.groups(), places):
            if found and place and not holds(TREE / place[0], place[1].format(found.strip())):
                return f"there is no {found} in {place[0]}"
        program = command.split()[0]
        return "" if not program.startswith("./") or os.access(TREE / program, os.X_OK) else "it isn't there"
    return "no test runs it: give it a line in " + os.path.relpath(__file__, TREE)


class Copy:
    """A copy of what the commands use of the tree, already built, so that Ninja has nothing to do."""

    def __init__(self, folder):
        self.folder = folder
        self.started = []
        for name in ("run", "test", "cmake", "CMakePresets.json", "Machines", "Tests"):
            (folder / name).symlink_to(TREE / name)
        for name in ("bin", "lib", "share"):
            (folder / "build" / name).mkdir(parents=True)
        for program in ("Brivane", "brivane-defaults", "brivane-desk", "brivane-hidutil", "ddc-bus-host"):
            shutil.copy(TREE / "build/bin" / program, folder / "build/bin")
        shutil.copytree(TREE / "build/lib", folder / "build/lib", dirs_exist_ok=True)
        shutil.copytree(TREE / "build/share", folder / "build/share", dirs_exist_ok=True)
        for stamp in ("build.ninja", "configured"):
            (folder / "build" / stamp).touch()
        (folder / "build/CMakeCache.txt").write_text("BRIVANE_FRAME:BOOL=ON\n")
        (folder / "tools").mkdir()
        (folder / "tools/ninja").write_text("#!/bin/sh\n")
        (folder / "tools/ninja").chmod(0o755)
        (folder / "my-desk.json").write_text('{"displays": [{"identifier": 1}, {"identifier": 2}]}')
        (folder / "my.scenario").write_text(example("docs/scenarios.md", "# One press"))
        self.environment = {name: value for name, value in os.environ.items()
                            if not name.startswith(("BRIVANE_", "DISPLAY", "QT_", "XDG_", "DBUS_", "WAYLAND_"))}
        self.environment.update(HOME=str(folder), PATH=f"{folder}/tools:{folder}/build/bin:" + os.environ["PATH"])

    def start(self, command, log):
        # The commands for a Mac's program run on the desk.
        variables = {"BRIVANE_DESK": "build/desk/desk.json"} if command.startswith("Brivane") else {}
        self.started.append(subprocess.Popen(["bash", "-c", command], cwd=self.folder, env=self.environment | variables,
                                             stdin=subprocess.DEVNULL, stdout=log, stderr=subprocess.STDOUT,
                                             start_new_session=True))
        return self.started[-1]

    def end(self):
        """Kills what still runs after a failure."""
        for process in self.started:
            if process.poll() is None:
                os.killpg(process.pid, signal.SIGKILL)

    def type(self, command, expected):
        if command in BEFORE:
            self.type(BEFORE[command], "")
        with open(self.folder / "said", "w+") as log:
            status = self.start(command, log).wait(120)
            log.seek(0)
            return judged(status, expected, log.read())


def judged(status, expected, said):
    missing = [line for line in expected.split("\n") if line.strip() != "…" and line not in said]
    return f"status {status}, without {missing} in:\n{said[-2000:]}" if status or missing else ""


class Staying:
    """A command that runs until it is asked to end."""

    def __init__(self, copy, command, at_first, by_the_end):
        self.file = copy.folder / ("said-by-" + command.split("/")[-1].replace(" ", "-"))
        self.expected = by_the_end
        with open(self.file, "w") as log:
            self.process = copy.start(command, log)
        deadline = time.monotonic() + 60
        while at_first not in self.file.read_text() and self.process.poll() is None and time.monotonic() < deadline:
            time.sleep(0.05)

    def end(self):
        os.killpg(self.process.pid, signal.SIGTERM)
        return judged(self.process.wait(60), self.expected, self.file.read_text())


def type_all(copy):
    """Yields each command with its problem."""
    for command, expected in FIRST:
        yield command, copy.type(command, expected)
    staying = [(command, Staying(copy, command, *expected)) for command, *expected in STAYING]
    for command, expected in MEANWHILE:
        yield command, copy.type(command, expected)
    for command, process in reversed(staying):
        yield command, process.end()
    for command, expected in LAST:
        yield command, copy.type(command, expected)
    for command, expected in ON_KERNEL:
        yield command, copy.type(KERNEL + command, expected)


def main():
    documented = {}
    for text in TEXTS:
        for line, command in commands(text.read_text()):
            documented.setdefault(command, f"{text.relative_to(TREE)}:{line}")
    for workflow in WORKFLOWS:
        for line, command in steps(workflow.read_text()):
            documented.setdefault(command, f"{workflow.relative_to(TREE)}:{line}")
    with tempfile.TemporaryDirectory(prefix="brivane-test-") as folder:
        copy = Copy(pathlib.Path(folder))
        try:
            problems = dict(type_all(copy))
        finally:
            copy.end()
    tables = {command for command, *_ in FIRST + STAYING + MEANWHILE + LAST + ON_KERNEL} | ELSEWHERE.keys()
    for command in tables - documented.keys():
        problems[command] = "no text has it any more"
    for command in documented.keys() - problems.keys():
        problems[command] = problem_of(command)
    for command, problem in problems.items():
        print("FAILED" if problem else "ok", documented.get(command, ""), command, *([problem] if problem else []))
    return any(problems.values())


if __name__ == "__main__":
    sys.exit(main())
