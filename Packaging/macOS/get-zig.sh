#!/usr/bin/env bash
# Puts the cross compiler for the Mac app into build/zig, in the version and with the checksums that
# package-lock.json names. Does nothing when it is there already.
set -eu
cd "$(dirname "$0")/../.."
lock=Packaging/macOS/package-lock.json
cmp -s $lock build/zig/package-lock.json && [ -f build/zig/complete ] && exit 0
command -v npm >/dev/null || {
  echo "The cross compiler comes through npm. Run this, then try again:" >&2
  echo "  sudo apt-get install -y --no-install-recommends npm" >&2
  exit 1
}
echo "Getting the cross compiler (120 MB, 400 MB unpacked) …" >&2
mkdir -p build/zig
rm -f build/zig/complete
cp Packaging/macOS/package.json $lock build/zig/
if ! npm ci --prefix build/zig --ignore-scripts --no-audit --no-fund >build/zig/npm.log 2>&1; then
  tail -n 5 build/zig/npm.log >&2
  echo "Getting it failed; the whole output is in build/zig/npm.log." >&2
  exit 1
fi
touch build/zig/complete
