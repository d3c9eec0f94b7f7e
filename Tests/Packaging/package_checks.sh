#!/usr/bin/env bash
# Tests/Packaging/package_checks.sh PACKAGE: what the Debian package is, read without installing it.
set -u
package=$1
content=$(mktemp -d)
trap 'rm -rf "$content"' EXIT
dpkg-deb -x "$package" "$content"
. Tests/Packaging/check.sh

check "lintian finds nothing" finds_nothing lintian --allow-root --info "$package"
check "the metadata is valid" \
  appstreamcli validate --no-net "$content/usr/share/metainfo/com.quorrel.brivane.metainfo.xml"
for entry in usr/share/applications etc/xdg/autostart; do
  check "the entry in /$entry is valid" \
    finds_nothing desktop-file-validate "$content/$entry/com.quorrel.brivane.desktop"
done
