# Sourced by tests that print "ok NAME", or "FAILED NAME" and what the command said.

# check NAME COMMAND...: holds when the command succeeds.
check() {
  local name=$1 said
  shift
  if said=$("$@" 2>&1); then echo "ok $name"; else printf 'FAILED %s\n%s\n' "$name" "$said" | head -n 60; fi
}

# finds_nothing COMMAND...: the command succeeds, and prints nothing.
finds_nothing() {
  local said status
  said=$("$@" 2>&1)
  status=$?
  printf '%s' "$said"
  [ $status -eq 0 ] && [ -z "$said" ]
}
