#!/usr/bin/env bash
# Tests/as-ordinary-user.sh PROGRAM COMMAND...: runs the command, a program of the tests with what it runs
# in, as an ordinary user, and only those of its tests that Tests/as-ordinary-user.txt lists. That user can't
# reach a clone in root's folders, and so gets a copy of what the tests touch.
set -u
cd "$(dirname "$0")/.." || exit 1
program=$1
shift
filter=$(sed -n "s/^$program *| *\([^ |]*\) *|.*/\1/p" Tests/as-ordinary-user.txt | paste -sd:)
[ -n "$filter" ] || { echo "Tests/as-ordinary-user.txt lists no test of $program."; exit 1; }

copy=$(mktemp -d /tmp/brivane-test-XXXXXX)
trap 'rm -rf "$copy"' EXIT
mkdir -p "$copy/build/bin" "$copy/home" "$copy/Machines/Desk" "$copy/Tests"
for tool in "$program" Brivane brivane-desk brivane-hidutil ddc-bus-host; do
  [ ! -f build/bin/$tool ] || cp build/bin/$tool "$copy/build/bin/"
done
for folder in build/share build/lib; do [ ! -d $folder ] || cp -r $folder "$copy/build/"; done
cp -r BrivaneUI BrivaneApp cmake "$copy/"
cp Machines/Desk/*.json "$copy/Machines/Desk/"
cp -r Tests/Support Tests/Golden Tests/in-linux-world.sh "$copy/Tests/"
chown -R 65534:65534 "$copy"
env -C "$copy" -u XDG_RUNTIME_DIR -u XDG_CONFIG_HOME HOME="$copy/home" TMPDIR="$copy" \
  GTEST_FILTER="$filter" setpriv --reuid=65534 --regid=65534 --clear-groups --inh-caps=-all "$@"
