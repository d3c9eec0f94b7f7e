"""Compares the lines of Machines/Mac that no test of the Mac executed with unexecuted-lines.txt.

Run it after those tests (./test mac does). Prints "ok ..." or "FAILED ..." for each check.
"""

import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent.parent))
import executed_code

built = executed_code.TREE / "build/asan"
programs = [built / "bin" / f"brivane-{part}tests" for part in ("mac-", "mac-appkit-", "mac-program-")]
sources = executed_code.read_counts(built / "mac-coverage", programs)
sys.exit(0 if executed_code.compare("Machines/Mac", sources, HERE / "unexecuted-lines.txt") else 1)
