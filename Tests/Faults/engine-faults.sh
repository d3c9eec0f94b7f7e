#!/usr/bin/env bash
# Makes the mistakes of engine-faults.txt in copies of BrivaneCore and BrivaneApp, and looks whether a
# unit test and, where they show in behaviour, a random day finds each. Prints one line for each; fails
# when one is not found.
#   Tests/Faults/engine-faults.sh [WORDS]   all, or those whose name has the words
#   Tests/Faults/engine-faults.sh --due     those that no random day finds yet: which are found now
#   Tests/Faults/engine-faults.sh --check   builds and runs nothing: prints the mistakes that can't be
#                                           made any more or whose test isn't there
set -u
. "$(dirname "$0")/../../cmake/setup.sh"
with_tests=yes

[ "${1:-}" = --check ] || build default brivane-tests brivane-first-failing-day
exec python3 -B Tests/Faults/engine_faults.py "$@"
