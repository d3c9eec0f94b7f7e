#!/usr/bin/env bash
# The laws of the tree, checked by reading it. Prints "ok NAME" or "FAILED NAME" and what it found.
# Expects the preset tidy to be configured.
set -u
cd "$(dirname "$0")/.." || exit 1

sources() { git ls-files --cached --others --exclude-standard -- "$@"; }
core=(BrivaneCore BrivaneUI BrivaneApp)
status=0

# A check that reads nothing finds nothing.
if [ -z "$(sources '*.cpp')" ] || [ ! -f build/tidy/compile_commands.json ]; then
  echo "FAILED the tree can be read (it needs git and the configured preset tidy)"
  exit 1
fi

# check NAME FINDINGS: a rule holds when nothing was found.
check() {
  if [ -z "$2" ]; then
    echo "ok $1"
  else
    echo "FAILED $1"
    printf '%s\n' "$2" | head -n 20 | sed 's/^/    /'
    status=1
  fi
}

includes_outside() { # includes_outside FOLDER ALLOWED-PATTERN: quoted includes that match neither
  sources "$1/*.h" "$1/*.cpp" "$1/*.mm" | xargs -r grep -nE '^#include "' | grep -vE "#include \"($2)/"
}

standard_headers() {
  printf '#include <%s>\n' algorithm any array atomic bit bitset cctype cerrno charconv chrono cmath \
    compare concepts condition_variable cstddef cstdint cstdio cstdlib cstring deque exception filesystem \
    forward_list fstream functional initializer_list iomanip ios iosfwd iostream istream iterator \
    limits list map memory memory_resource mutex new numbers numeric optional ostream queue random \
    ranges ratio regex set span sstream stack stdexcept string string_view system_error thread \
    tuple type_traits typeinfo unordered_map unordered_set utility variant vector
}

check "the portable rooms include the standard library alone" "$(
  sources "${core[@]/%//*.h}" "${core[@]/%//*.cpp}" | xargs -r grep -nE '^#include <' |
    grep -vFf <(standard_headers))"

check "the portable rooms have no platform conditions" "$(
  sources "${core[@]/%//*.h}" "${core[@]/%//*.cpp}" |
    xargs -r grep -nE '^ *# *(if|ifdef|ifndef|elif).*(__linux|__APPLE__|_WIN32|__unix)')"

check "no clock, sleep or thread outside a Runtime" "$(
  sources '*.h' '*.cpp' '*.mm' ':!Tests' ':!Machines/*Runtime.*' ':!Machines/*/Runtime.*' ':!Tools/Bench*' |
    xargs -r grep -nE '_clock::now|std::(jthread|this_thread|async\()|std::thread|\b(u|nano)?sleep\(|clock_gettime|clock_nanosleep|gettimeofday|\btime\((nullptr|NULL|0)\)|pthread_create' |
    grep -vE 'runtime(\(\))?(\.|->)sleep\(|^BrivaneCore/Seams/Runtime.h:|[^:]*:[0-9]+: *///?')"

check "BrivaneCore includes nothing above it" "$(includes_outside BrivaneCore 'BrivaneCore')"
check "BrivaneUI includes nothing above it" "$(includes_outside BrivaneUI 'BrivaneCore|BrivaneUI')"
check "BrivaneApp includes only what is below it" "$(
  includes_outside BrivaneApp 'BrivaneCore|BrivaneUI|BrivaneApp')"
check "no folder includes one that includes it, directly or through others" "$(
  sources '*.h' '*.cpp' '*.mm' ':!Tests' | xargs -r grep -HoE '^#(include|import) "[^"]+/' |
    sed -E 's|/[^/]*:#.* "(.*)/$| \1|' | awk '$1 != $2' | sort -u | tsort 2>&1 >/dev/null |
    grep -v 'input contains a loop')"
check "machines implement seams and know nothing of policy" "$(
  sources 'Machines/*.h' 'Machines/*.cpp' 'Machines/*.mm' ':!Machines/main.cpp' | xargs -r grep -nE '^#include "Brivane' |
    grep -vE '#include "(BrivaneCore/(Seams|Support)|BrivaneUI/Frame)/|#include "BrivaneUI/(Appearance|Color|DisplayList|Canvas).h')"
check "Qt is included by Machines/Qt, its tests, figures and pictures alone" "$(
  sources '*.h' '*.cpp' ':!Machines/Qt' ':!Tests/Machines/Qt' ':!Tests/Machines/QtOnX' \
    ':!Tests/Bench/*Program.cpp' ':!Tools/Pictures' | xargs -r grep -nE '^#include <(Q[A-Z]|Qt)')"
for machine in $(sources Machines | cut -d/ -f2 | grep -v '\.' | sort -u); do
  check "Machines/$machine includes no other machine" "$(
    includes_outside "Machines/$machine" "BrivaneCore|BrivaneUI|Machines/$machine|Machines/Common" |
      grep -v '^Machines/Mac/PickMachine.mm:.*Machines/PickMachine.h')"
done
check "only one file names the machines" "$(
  sources 'BrivaneCore' 'BrivaneUI' 'BrivaneApp' 'Machines/PickMachine.h' |
    xargs -r grep -nE '#include "Machines/(Mac|Linux|Desk|Qt)/')"

check "every source file is in the build" "$(
  comm -23 <(sources '*.cpp' '*.mm' ':!*.in' | sort -u) \
    <(grep -oE '"file": "[^"]+"' build/tidy/compile_commands.json | sed "s|.*\"$PWD/||; s|\"$||" |
      sort -u))"

check "every declaration made for the Mac is compared with the system's, on one, and no difference overlooked" "$(
  python3 -B Tests/Mac/AbiCheck/prove.py 2>&1)"

check "docs/scenarios.md names every form of a step" "$(
  grep -ohE '^      \{"[^"]+"' Tools/BrivaneDesk/Steps/*.cpp |
    sed 's/.*"\(.*\)"/\1/' | while read -r form; do
      grep -qF -- "\`$form\`" docs/scenarios.md || echo "$form"
    done)"

check "whatever a text shows, links to or names as a source is there" "$(
  sources '*.md' | while read -r file; do
    grep -ohE '\]\([^)# ]+|(src|srcset)="[^"]+' "$file" | sed -E 's/^(\]\(|[a-z]+=")//' | grep -v '^https\?:' |
      while read -r target; do
        [ -e "$(dirname "$file")/$target" ] || echo "$file: $target"
      done
    grep -ohE '`[A-Za-z0-9/_-]+\.(cpp|h|mm|sh|py|cmake)`' "$file" | tr -d '`' | while read -r name; do
      [ -n "$(sources "$name" "*/$name")" ] || echo "$file: $name"
    done
  done)"

# The linker merges two types of one name without a word, and one runs the other's destructor.
check "no two headers define a type of one name" "$(
  sources '*.h' | xargs -r grep -hoE '^(struct|class|enum class|union) [A-Za-z]+( final)?( :[^{;]*)? ?\{' |
    sed -E 's/^(struct|class|enum class|union) ([A-Za-z]+).*/\2/' | sort | uniq -d)"

check "every header has a guard" "$(sources '*.h' | xargs -r grep -L '^#pragma once')"

check "every file is formatted" "$(
  sources '*.h' '*.cpp' '*.mm' | xargs clang-format-16 --dry-run --Werror >build/tidy/format.log 2>&1 ||
    { grep 'error:' build/tidy/format.log || cat build/tidy/format.log; } | cut -d: -f1 | sort -u)"

check "scripts parse" "$(for script in run test bench .ci/run $(sources '*.sh'); do
  [ -f "$script" ] && bash -n "$script" 2>&1; done)"

check "each mistake that the Mac's tests are tried on can be made, and its test is there" "$(
  Tests/Mac/Machine/seeded-faults.sh --check 2>&1)"
check "each mistake that the engine's tests are tried on can be made, and its test is there" "$(
  Tests/Faults/engine-faults.sh --check 2>&1)"

check "no path of this machine is in the tree" "$(git grep -nIF -e "$PWD/" -e "$HOME/" -- .)"

# The files changed since the last commit, or by it when nothing is.
changed=$( (git diff --name-only HEAD; git ls-files --others --exclude-standard) | grep -E '\.(cpp|mm)$')
[ -n "$changed" ] ||
  changed=$(git diff --name-only --diff-filter=d HEAD~1 2>/dev/null | grep -E '\.(cpp|mm)$')
mapfile -t existing < <(for file in $changed; do [ -f "$file" ] && echo "$file"; done |
  grep -v -e ^Tests/Mac/Machine/ -e ^Tests/Mac/AbiCheck/)
seen=("${existing[@]:0:40}")
check "clang-tidy finds nothing in ${#seen[@]} of ${#existing[@]} changed files" "$(
  [ ${#seen[@]} -eq 0 ] || printf '%s\n' "${seen[@]}" |
    xargs -P "$(nproc)" -n 4 clang-tidy-16 -p build/tidy --quiet >build/tidy/log 2>build/tidy/errors ||
    { grep -E '(error|warning):' build/tidy/log || cat build/tidy/errors; } | sort -u)"

exit $status
