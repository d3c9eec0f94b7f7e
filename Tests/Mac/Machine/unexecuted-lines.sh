#!/usr/bin/env bash
# Compares the lines of Machines/Mac that no test of the Mac executed with unexecuted-lines.txt.
# Run it after those tests (./test mac does). Prints "ok ..." or "FAILED ..." for each check.
set -u -o pipefail
cd "$(dirname "$0")/../../.." || exit 1
folder=build/asan
table=Tests/Mac/Machine/unexecuted-lines.txt
programs=$folder/bin/brivane-mac

# What ran, as lcov: "SF:file", then "DA:line,count" for each of its lines.
coverage() {
  llvm-profdata-16 merge -o $folder/mac-coverage/all.profdata $folder/mac-coverage/*.profraw &&
    llvm-cov-16 export -format=lcov -instr-profile=$folder/mac-coverage/all.profdata \
      $programs-tests -object $programs-appkit-tests -object $programs-program-tests
}

# FILE | CODE for each line that didn't run.
unexecuted() {
  awk -F '[:,]' '/^SF/ { file = $2; sub(/.*Machines\/Mac\//, "", file); ours = $2 ~ /\/Machines\/Mac\// && $2 !~ /Tests/ }
                 /^DA/ && ours && $3 == 0 { print file, $2 }' $folder/mac-coverage/all.lcov |
    while read -r file line; do
      echo "$file | $(sed -n "${line}s/^ *//p" "Machines/Mac/$file")"
    done | sort -u
}

listed() {
  sed -n 's/^\([^#|]* | .*\) | .*/\1/p' "$table" | sort -u
}

report() { # report NAME FINDINGS
  [ -z "$2" ] && echo "ok $1" && return
  echo "FAILED $1"
  sed 's/^/    /' <<<"$2"
  status=1
}

status=0
coverage >$folder/mac-coverage/all.lcov 2>$folder/mac-coverage/log || {
  echo "FAILED the tests' notes of what ran can be read"
  sed 's/^/    /' $folder/mac-coverage/log
  exit 1
}
report "every source of Machines/Mac was compiled for the tests" "$(
  find Machines/Mac -name "*.cpp" -o -name "*.mm" | while read -r file; do
    grep -q "^SF:.*/$file\$" $folder/mac-coverage/all.lcov || echo "$file"
  done)"
report "each line that no test executes has its reason in $table" "$(
  comm -23 <(unexecuted) <(listed))"
report "each line of that table is there and isn't executed" "$(comm -13 <(unexecuted) <(listed))"
exit $status
