"""What clang's counters say of the tree: which lines and branches the tests executed."""

import collections
import json
import re
import subprocess
from pathlib import Path

TREE = Path(__file__).resolve().parent.parent
ROOMS = "BrivaneCore|BrivaneUI|BrivaneApp|Machines|Tools|Tests"


class Source:
    """One file: how often each line ran, and each condition was true and false."""

    def __init__(self):
        self.lines = {}
        self.branches = collections.defaultdict(lambda: [0, 0])


def in_tree(path):
    """The path from the top of the tree. Compilers are told to leave that folder out, and tools put another in front."""
    found = re.search(rf"(?:^|/)((?:{ROOMS})/.*)", path.removeprefix(f"{TREE}/"))
    return found[1] if found else path


def read_counts(counters, programs):
    """The sources by their path, but for tests, from a folder of counters and the programs that counted."""
    merged = counters / "all.profdata"
    subprocess.run(["llvm-profdata-16", "merge", "-o", merged, *counters.glob("*.profraw")], check=True)
    objects = [word for program in programs for word in ("-object", program)][1:]

    def export(form):
        command = ["llvm-cov-16", "export", f"-format={form}", f"-instr-profile={merged}",
                   r"-ignore-filename-regex=(^|/)(Tests|usr)/", *objects]
        return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout

    sources = collections.defaultdict(Source)
    for line in export("lcov").splitlines():
        kind, _, rest = line.partition(":")
        if kind == "SF":
            source = sources[in_tree(rest)]
        elif kind == "DA":
            number, count = rest.split(",")[:2]
            source.lines[int(number)] = int(count)
    for file in json.loads(export("text"))["data"][0]["files"]:
        branches = sources[in_tree(file["filename"])].branches
        # A template counts for each of its types, a header for each that includes it.
        for *place, true_count, false_count in (branch[:6] for branch in file["branches"]):
            branches[tuple(place)][0] += true_count
            branches[tuple(place)][1] += false_count
    return sources


def condition(text, place):
    first, start, last, end = place
    if first != last:
        return text[first - 1][start - 1:].strip() + " …"
    return text[first - 1][start - 1:end - 1]


def unexecuted(room, sources, with_branches):
    """ "FILE | CODE" for each line of the room that didn't run, and for each condition that was never so."""
    found = set()
    for path, source in sources.items():
        if not path.startswith(room + "/"):
            continue
        name = path[len(room) + 1:]
        text = (TREE / path).read_text().splitlines()
        found |= {f"{name} | {text[line - 1].strip()}" for line, count in source.lines.items() if count == 0}
        if not with_branches:
            continue
        for place, (true_count, false_count) in source.branches.items():
            if source.lines.get(place[0]) == 0 or (true_count and false_count):
                continue
            lack = "evaluated" if not true_count and not false_count else "false" if true_count else "true"
            found.add(f"{name} | {condition(text, place)} is never {lack}")
    return found


def listed(table):
    """The entries of a table with lines "FILE | CODE | why"."""
    rows = [line for line in table.read_text().splitlines() if line and not line.startswith("#")]
    return {row.rpartition(" | ")[0] for row in rows}


def report(name, findings):
    """Prints how a check has ended; returns whether it found nothing."""
    print(f"FAILED {name}" if findings else f"ok {name}")
    for finding in sorted(findings):
        print(f"    {finding}")
    return not findings


def compare(room, sources, table, with_branches=False):
    """Compares what of the room didn't run with the table; returns whether they agree."""
    compiled = [path for suffix in ("cpp", "mm") for path in (TREE / room).rglob(f"*.{suffix}")]
    missing = [str(path.relative_to(TREE)) for path in compiled if str(path.relative_to(TREE)) not in sources]
    left, reasons = unexecuted(room, sources, with_branches), listed(table)
    name = table.relative_to(TREE)
    return all([report(f"every source of {room} was compiled for the tests", missing),
                report(f"what no test executes of {room} has its reason in {name}", left - reasons),
                report(f"what {name} lists is there and isn't executed", reasons - left)])
