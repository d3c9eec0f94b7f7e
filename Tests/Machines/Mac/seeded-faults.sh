#!/usr/bin/env bash
# Makes each mistake of the lists seeded-faults.txt in a copy of its file, builds the Mac's tests with it
# and runs the test that is to find it, which has to pass without the mistake. Prints one line for each;
# fails when one is not found.
#   Tests/Machines/Mac/seeded-faults.sh [WORDS]   all, or those whose line has the words
#   Tests/Machines/Mac/seeded-faults.sh --check   builds and runs nothing: prints the lines whose mistake
#                                                 can't be made any more or whose test isn't there
set -u
. "$(dirname "$0")/../../../cmake/setup.sh"
with_tests=yes

folder=build/asan
programs=(brivane-mac-tests brivane-mac-appkit-tests brivane-mac-program-tests)
lists=(Tests/Machines/Mac/seeded-faults.txt Tests/Machines/Mac/AppKit/seeded-faults.txt)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export ASAN_OPTIONS=detect_stack_use_after_return=1

# lines [WORDS]: the mistakes' own.
lines() { cat "${lists[@]}" | grep -vE '^(#.*)?$' | grep -F -- "${1:-}"; }

# take_apart LINE: sets what, file, mistake and test.
take_apart() {
  IFS=$'\x01' read -r what file mistake test <<<"$(sed 's/ *| */\x01/; s/ *| */\x01/; s/\(.*\) | */\1\x01/' <<<"$1")"
}

# make_mistake TARGET: whether the copy differs from the file.
make_mistake() {
  sed "$mistake" "Machines/Mac/$file" >"$1"
  ! cmp -s "$1" "Machines/Mac/$file"
}

# check_substitutions: makes those of the mistake one after the other, and says which change nothing.
check_substitutions() {
  local address= all=$mistake each
  if [[ $mistake =~ ^(/.*/)\{(.*)\}$ ]]; then
    address=${BASH_REMATCH[1]} all=${BASH_REMATCH[2]}
  fi
  cp "Machines/Mac/$file" "$work/copy"
  while IFS= read -r each; do
    sed "$address$each" "$work/copy" >"$work/changed"
    cmp -s "$work/copy" "$work/changed" && echo "$file: the mistake can't be made any more: $what: $each"
    mv "$work/changed" "$work/copy"
  done < <(sed 's|;s/|\ns/|g' <<<"$all")
}

check_lists() {
  local sources line
  [ -n "$(lines)" ] || echo "there is no mistake to make"
  sources=$(cat Tests/Machines/Mac/*.cpp Tests/Machines/Mac/*/*.mm Tests/*Conformance/*.cpp | tr -s ' \n' ' ')
  while IFS= read -r line; do
    take_apart "$line"
    check_substitutions
    case $sources in
      *"(${test%%.*}, ${test#*.})"*) ;;
      *) echo "$test: there is no such test" ;;
    esac
  done < <(lines)
}

if [ "${1:-}" = --check ]; then
  check_lists
  exit
fi

# command_for OUTPUT: how ninja makes it, seen from the build folder.
command_for() { ninja -C $folder -t commands -s "$1" | tail -n 1; }

# Which program each test is of, and whether it passes without a mistake: a line "PROGRAM TEST" for each
# that does.
run_unfaulted() {
  local program line tests=
  while IFS= read -r line; do
    take_apart "$line"
    tests+=":$test"
  done < <(lines "$1")
  for program in "${programs[@]}"; do
    $folder/bin/$program --gtest_filter="${tests#:}" 2>&1 |
      sed -n "s/^\[       OK \] \([^ ]*\) .*/$program \1/p"
  done >"$work/passing"
}

# is_found PLACE: whether the test fails with the mistake, which is built in that folder.
is_found() {
  local place=$1 program object compile link
  program=$(grep -m 1 -F -x -f <(printf "%s $test\n" "${programs[@]}") "$work/passing" | cut -d' ' -f1)
  [ -n "$program" ] || { echo "there is no such test, or it fails without the mistake"; return 1; }
  make_mistake "$place/$file" || { echo "the mistake can't be made any more"; return 1; }
  object=$(grep -oE "^[^ ]*/Machines/Mac/$file\.o" "$work/targets" | head -n 1)
  compile=$(command_for "$object" |
    sed -E "s|-o [^ ]+|-o $place/object.o|; s|-c [^ ]+|-c $place/$file|; s|-MF [^ ]+|-MF $place/d|")
  (cd $folder && eval "$compile -Wno-unused -Wno-error") >"$place/log" 2>&1 || {
    echo "it doesn't compile"
    return 1
  }
  # Objects of a library stay there when the program has what they define already.
  link=$(command_for bin/$program)
  link=${link/ $object / }
  (cd $folder && eval "${link/ -o bin\/$program / $place/object.o -o $place/bin/tests }") >"$place/log" 2>&1 || {
    echo "it doesn't link"
    return 1
  }
  timeout 60 "$place/bin/tests" --gtest_filter="$test" >"$place/log" 2>&1
  if [ $? -eq 124 ] && [[ $what != *" (it hangs)" ]]; then
    echo "the test was still running after a minute"
    return 1
  fi
  # A test that ends its process early has not passed, whatever the process's status.
  grep -q "^\[ RUN " "$place/log" && ! grep -q "^\[       OK \] $test " "$place/log"
}

try_line() {
  local place reason
  place=$(mktemp -d "$work/XXXXXX")
  # The whole program looks for its resources beside its own folder.
  mkdir "$place/bin" && ln -s "$PWD/$folder/share" "$place/share"
  take_apart "$1"
  if reason=$(is_found "$place"); then
    echo "found   $what"
  else
    echo "MISSED  $what ${reason:+($reason)}"
  fi
  rm -rf "$place"
}

build asan "${programs[@]}"
run_unfaulted "${1:-}"
ninja -C $folder -t targets all >"$work/targets"
while IFS= read -r line; do
  while [ "$(jobs -rp | wc -l)" -ge "$(nproc)" ]; do wait -n; done
  try_line "$line" | tee -a "$work/results" &
done < <(lines "${1:-}")
wait
found=$(grep -c '^found' "$work/results")
missed=$(grep -c '^MISSED' "$work/results")
echo "$found of $((found + missed)) mistakes found"
[ "$found" -gt 0 ] && [ "$missed" -eq 0 ]
