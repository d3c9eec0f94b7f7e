#!/usr/bin/env bash
# Tests/as-ordinary-user.sh PROGRAM COMMAND...: runs the command, a program of the tests with what it runs
# in, as an ordinary user, and only those of its tests that Tests/as-ordinary-user.txt lists. That user can't
# reach a clone in root's folders, and so gets a copy of what the tests touch.
# Tests/as-ordinary-user.sh --filter PROGRAM: prints which tests those are, as GoogleTest's filter.
set -eu
cd "$(dirname "$0")/.."

# The patterns of a program's tests, a line each.
patterns() { sed -n "s/^$1 *| *\([^ |]*\) *|.*/\1/p" Tests/as-ordinary-user.txt | tr : '\n'; }

if [ "$1" = --filter ]; then
  patterns "$2" | paste -sd:
  exit
fi
program=$1
shift
[ -n "$(patterns "$program")" ] || { echo "Tests/as-ordinary-user.txt lists no test of $program."; exit 1; }
for pattern in $(patterns "$program"); do
  [ -n "$(build/bin/"$program" --gtest_list_tests --gtest_filter="$pattern")" ] ||
    { echo "Tests/as-ordinary-user.txt: $program has no test $pattern."; exit 1; }
done

copy=$(mktemp -d /tmp/brivane-test-XXXXXX)
trap 'rm -rf "$copy"' EXIT
mkdir -p "$copy/build/bin" "$copy/build/share/brivane" "$copy/home" "$copy/Machines/Desk" "$copy/Tests"
for tool in "$program" Brivane brivane-defaults brivane-desk brivane-hidutil ddc-bus-host; do
  [ ! -f build/bin/"$tool" ] || cp build/bin/"$tool" "$copy/build/bin/"
done
[ ! -d build/lib ] || cp -r build/lib "$copy/build/"
cp -r build/share/brivane/Brivane_*.bundle "$copy/build/share/brivane/"
cp -r BrivaneUI BrivaneApp cmake "$copy/"
cp Machines/Desk/*.json "$copy/Machines/Desk/"
cp -r Tests/Support Tests/Golden Tests/in-linux-world.sh "$copy/Tests/"
chown -R 65534:65534 "$copy"
env -C "$copy" -u XDG_RUNTIME_DIR -u XDG_CONFIG_HOME HOME="$copy/home" TMPDIR="$copy" \
  GTEST_FILTER="$(patterns "$program" | paste -sd:)" \
  setpriv --reuid=65534 --regid=65534 --clear-groups --inh-caps=-all "$@"
