#!/usr/bin/env bash
# Tests/Packaging/package_again.sh PACKAGE: makes the package a second time, from a copy of the tree in another
# folder, by somebody with other habits, and compares.
set -u
package=$1
copy=$(mktemp -d)
trap 'rm -rf "$copy"' EXIT
. Tests/Packaging/check.sh
umask 077
export TZ=JST-9

git ls-files -z --cached --others --exclude-standard | while IFS= read -r -d '' file; do
  [ ! -e "$file" ] || printf '%s\0' "$file"
done | xargs -0 cp -P --parents -t "$copy"
check "it is made in another folder" "$copy/Packaging/Linux/make-package.sh"

same_bytes() {
  cmp "$package" "$copy/$package" && return
  diff <(dpkg-deb -c "$package") <(dpkg-deb -c "$copy/$package")
  for one in "$package" "$copy/$package"; do dpkg-deb -R "$one" "$(mktemp -d "$copy/content-XXXXXX")"; done
  diff -rq "$copy"/content-*
  return 1
}
check "which gives the same bytes" same_bytes
