#!/usr/bin/env bash
# Makes each mistake of the lists seeded-faults.txt in a copy of its file, and runs the test that is to
# find it in a program with that copy, which has to pass without the mistake. Prints one line for each;
# fails when one is not found.
#   Tests/Mac/Machine/seeded-faults.sh [WORDS]   all, or those whose line has the words
#   Tests/Mac/Machine/seeded-faults.sh --check   builds and runs nothing: prints the lines whose mistake
#                                                 can't be made any more or whose test isn't there
set -u
. "$(dirname "$0")/../../../cmake/setup.sh"
with_tests=yes

[ "${1:-}" = --check ] ||
  build asan brivane-mac-tests brivane-mac-appkit-tests brivane-mac-program-tests
exec python3 -B Tests/Mac/Machine/seeded_faults.py "$@"
