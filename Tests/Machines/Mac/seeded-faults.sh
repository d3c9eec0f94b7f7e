#!/usr/bin/env bash
# Makes each mistake of the lists seeded-faults.txt in a copy of its file, builds the Mac's tests with it
# and runs the test that is to find it. Prints one line for each; fails when one is not found.
#   Tests/Machines/Mac/seeded-faults.sh [WORDS]   all, or those whose line has the words
set -u
. "$(dirname "$0")/../../../cmake/setup.sh"
with_tests=yes
build asan brivane-mac-tests brivane-mac-appkit-tests

folder=build/asan
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
found=0 missed=0

# command_for OUTPUT: how ninja makes it, seen from the build folder.
command_for() { ninja -C $folder -t commands -s "$1"; }

# is_found FILE SED TEST: whether the test fails with the mistake.
is_found() {
  local file=$1 name=${1%.*} object
  sed "$2" "Machines/Mac/$file" >"$work/$file"
  if cmp -s "$work/$file" "Machines/Mac/$file"; then
    echo "the mistake can't be made any more"
    return 1
  fi
  object=$(ninja -C $folder -t targets all | grep -oE "[^ ]*brivane-machine-mac[^ ]*/Machines/Mac/$name\.[a-z]+\.o" | head -n 1)
  local compile
  compile=$(command_for "$object" | sed -E "s|-o [^ ]+|-o $work/$name.o|; s|-c [^ ]+|-c $work/$file|; s|-MF [^ ]+|-MF $work/d|")
  (cd $folder && eval "$compile -Wno-unused -Wno-error") >"$work/log" 2>&1 || {
    echo "it doesn't compile"
    return 1
  }
  (cd $folder && eval "${link/ -o bin\/$program / $work/$name.o -o $work/tests }") >"$work/log" 2>&1 || {
    echo "it doesn't link"
    return 1
  }
  ASAN_OPTIONS=detect_stack_use_after_return=1 timeout 30 "$work/tests" --gtest_filter="$3" >"$work/log" 2>&1
  local status=$?
  grep -q "^\[ RUN " "$work/log" || echo "there is no such test"
  [ $status -ne 0 ] && grep -q "^\[ RUN " "$work/log"
}

trim() { sed 's/^ *//; s/ *$//' <<<"$1"; }

# try LIST PROGRAM [WORDS]
try() {
  program=$2
  link=$(command_for bin/$program | tail -n 1)
  while IFS= read -r line; do
    try_line "$line" "${3:-}"
  done <"$1"
}

try_line() {
  local line=$1 what file mistake test reason
  case $line in '#'* | '') return ;; *"$2"*) ;; *) return ;; esac
  IFS=$'\x01' read -r what file mistake test <<<"$(sed 's/ | /\x01/g' <<<"$line")"
  if reason=$(is_found "$(trim "$file")" "$mistake" "$(trim "$test")"); then
    found=$((found + 1))
    echo "found   $what"
  else
    missed=$((missed + 1))
    echo "MISSED  $what ${reason:+($reason)}"
  fi
}

try Tests/Machines/Mac/seeded-faults.txt brivane-mac-tests "${1:-}"
try Tests/Machines/Mac/AppKit/seeded-faults.txt brivane-mac-appkit-tests "${1:-}"
echo "$found mistakes found, $missed missed"
[ $missed -eq 0 ]
