"""Which code the tests of the preset coverage executed. Run it after them (./test coverage does).

Writes build/coverage/counts/table.txt, lines and branches by folder; compares what of BrivaneCore they left out with
Tests/BrivaneCore/unexecuted.txt. Prints "ok ..." or "FAILED ..." for each check.
"""

import sys

from executed_code import TREE, compare, read_counts, report

FLOORS = {"lines": 99, "branches": 95}
BUILT = TREE / "build/coverage"


def folders(path):
    """The folders of the table that the file counts for."""
    parts = path.split("/")
    inner = [] if parts[0] in ("BrivaneUI", "BrivaneApp") else ["/".join(parts[:min(2, len(parts) - 1)])]
    return {parts[0], *inner}


def tallied(sources):
    """Executed and all, of lines and branches, by folder."""
    tallies = {}
    for path, source in sources.items():
        branches = [count for both in source.branches.values() for count in both]
        for folder in folders(path):
            tally = tallies.setdefault(folder, {"lines": [0, 0], "branches": [0, 0]})
            for kind, counts in (("lines", source.lines.values()), ("branches", branches)):
                tally[kind][0] += sum(1 for count in counts if count)
                tally[kind][1] += len(counts)
    return tallies


def percent(tally):
    executed, total = tally
    return 100 * executed / total if total else 100


def row(folder, tally):
    cells = [f"{percent(tally[kind]):6.1f} % of {tally[kind][1]:5}" for kind in FLOORS]
    return f"{folder:24}" + "   ".join(cells)


programs = [path for path in sorted((BUILT / "bin").iterdir()) + sorted((BUILT / "lib").rglob("*.so"))
            if path.is_file()]
sources = {path: source for path, source in read_counts(BUILT / "counts", programs).items()
           if (TREE / path).exists() and "/" in path}
tallies = tallied(sources)
table = [f"{'':24}{'lines':>17}   {'branches':>17}"] + [row(*item) for item in sorted(tallies.items())]
(BUILT / "counts/table.txt").write_text("\n".join(table) + "\n")
core = tallies["BrivaneCore"]
passed = [report(f"the tests execute at least {floor} % of the {kind} of BrivaneCore",
                 [] if percent(core[kind]) >= floor else [f"{percent(core[kind]):.2f} %"])
          for kind, floor in FLOORS.items()]
passed.append(compare("BrivaneCore", sources, TREE / "Tests/BrivaneCore/unexecuted.txt", with_branches=True))
sys.exit(0 if all(passed) else 1)
