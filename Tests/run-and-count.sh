#!/usr/bin/env bash
# Tests/run-and-count.sh KIND NAME COMMAND...: runs one program of the tests from the top of the tree. What it
# says is kept in build/test-logs/NAME.log, and "PASSED FAILED SECONDS" of processor time, three numbers, in
# NAME.count beside it. What failed is printed. KIND is how the program counts:
#   tests    as GoogleTest does
#   totals   a line "3 of 4 ..." at its end
#   checks   a line "ok ..." or "FAILED ..." for each of its checks
# A program that ends badly without a failure of its own, or that counts nothing, is one failure.
set -u
kind=$1 name=$2
shift 2
cd "$(dirname "$0")/.." || exit 1
logs=build/test-logs log=build/test-logs/$name.log
mkdir -p $logs
rm -f "$logs/$name.count" "$logs/$name.failed"
# Whoever ran ./test may have had signals ignored that the tests send.
TIMEFORMAT='%U %S'
{ time env --default-signal=HUP,INT,QUIT,TERM "$@" >"$log" 2>&1 </dev/null; } 2>"$logs/$name.time"
status=$?

last() { sed -n -E "s/$1/\\1/p" "$log" | tail -n 1; }
case $kind in
  tests)
    good=$(last '^\[  PASSED  \] ([0-9]+) tests?\.$')
    bad=$(last '^\[  FAILED  \] ([0-9]+) tests?, listed below:$')
    ;;
  totals)
    good=$(last '^([0-9]+) of [0-9]+ .*')
    bad=$(($(last '^[0-9]+ of ([0-9]+) .*') - ${good:-0}))
    ;;
  checks) good=$(grep -c '^ok ' "$log") bad=$(grep -c '^FAILED ' "$log") ;;
esac
good=${good:-0} bad=${bad:-0}
[ $((good + bad)) -eq 0 ] && status=1
[ $status -ne 0 ] && [ "$bad" -eq 0 ] && bad=1
echo "$good $bad $(awk '{ print $1 + $2 }' "$logs/$name.time")" >"$logs/$name.count"
echo "$good passed, $bad failed"
[ "$bad" -eq 0 ] && exit

{
  case $kind in
    tests) sed -n '/^\[ RUN /h; /^\[ RUN /!H; /^\[  FAILED  \] .*ms)$/{x;p}' "$log" | head -n 150 ;;
    checks) sed -n '/^ok /!p' "$log" | head -n 150 ;;
    totals) grep -vE '^(found|missed) |: passed, |: well$' "$log" | head -n 150 ;;
  esac
  tail -n 15 "$log"
  echo "The whole output is in $log."
} | tee "$logs/$name.failed"
exit 1
