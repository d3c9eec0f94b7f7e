#!/usr/bin/env bash
# Tests/Packaging/package_life.sh PACKAGE: installs, uses, upgrades, removes and purges the package. To be run by
# Tests/Packaging/in-own-root.sh, in the tree.
set -u
package=$1
entry=/etc/xdg/autostart/com.quorrel.brivane.desktop
. Tests/Packaging/check.sh

quietly() { "$@" >/dev/null; }
export DEBIAN_FRONTEND=noninteractive

# Whoever develops Brivane may have it installed.
dpkg --purge brivane >/dev/null 2>&1
useradd --create-home somebody
settings=/home/somebody/.config/brivane/com.quorrel.brivane.json
install -D /dev/stdin $settings <<<'{"SubZeroDimming": false}'
# What dpkg writes down, and caches of what is installed, are the system's own. A path of this machine that
# is gone has a device in its place.
new_files() {
  find /media -type f,l -not -path '/media/var/lib/dpkg/*' -not -path '/media/var/log/*' -not -path '/media/var/cache/*' \
    -not -name '*.cache' | sort
}
new_files >/tmp/before

# What the machine's udev would be asked.
for tool in udevadm modprobe; do
  printf '#!/bin/sh\necho %s "$@" >>/tmp/asked\n' $tool >/usr/local/sbin/$tool
  chmod 755 /usr/local/sbin/$tool
done
touch /tmp/asked

check "it is installed beside what it depends on" dpkg --install "$package"
check "where there is no udev, nobody is asked to use the rule" finds_nothing cat /tmp/asked

mkdir /run/udev
python3 -c 'import socket; socket.socket(socket.AF_UNIX).bind("/run/udev/control")'
quietly dpkg --install "$package"
check "the rule and the module are used at once" diff /tmp/asked - <<'TEXT'
udevadm control --reload
modprobe --quiet i2c-dev
udevadm trigger --subsystem-match=i2c-dev
TEXT

# as_user COMMAND...: as somebody who has just logged in.
as_user() { env -C /home/somebody -u DISPLAY HOME=/home/somebody setpriv --reuid=somebody --regid=somebody --clear-groups "$@"; }

reports() { as_user "$1" --probe 2>/tmp/errors | head -n 1 | grep -qx 'Brivane probe' && [ "$(wc -l </tmp/errors)" -eq 1 ]; }
check "Brivane reports without a display, and says what is missing" reports Brivane
check "so does brivane" reports brivane
cp Machines/Desk/default-desk.json Tests/Scenarios/first-start.* /home/somebody
chown -R somebody: /home/somebody
sets() { as_user env BRIVANE_DESK=default-desk.json Brivane --set 40 | grep -qx 'Set Halden H27 to 40%'; }
check "Brivane sets a monitor of a desk" sets
plays() { as_user brivane-desk run first-start.scenario | grep -q '^1 of 1'; }
check "brivane-desk plays a scenario" plays
follows() {
  as_user brivane-defaults read | grep -qx 'SubZeroDimming false' && as_user brivane-defaults write SubZeroDimming false
}
check "brivane-defaults knows the user's settings" follows
check "brivane-hidutil prints the keys' mapping" quietly brivane-hidutil property --get UserKeyMapping

# The tests' desktop, with the program that lies beside them: the package's.
cp build/bin/brivane-desktop-tests /usr/bin
passes() {
  Tests/in-linux-world.sh build/bin /usr/bin/brivane-desktop-tests --gtest_filter="MenuOnDesktopTest.$1" | tee /tmp/said |
    grep -qx '\[  PASSED  \] 1 test.' || { cat /tmp/said; return 1; }
}
check "its hotkeys, tray and menu work on a desktop" passes HotkeysActWhileItIsOpenAndMoveItsSlider
check "its autostart entry is the one that is off" cmp $entry Packaging/Linux/autostart/com.quorrel.brivane.desktop
check "the menu switches that entry" passes TheAutostartEntryOfThePackageIsOffUntilTheMenuSwitchesIt
rm /usr/bin/brivane-desktop-tests

activatable() {
  dbus-run-session -- dbus-send --session --print-reply --dest=org.freedesktop.DBus / \
    org.freedesktop.DBus.ListActivatableNames | grep -qF '"com.quorrel.brivane"'
}
check "the session bus knows how to start it" activatable

says_how_it_ended() {
  env -u DISPLAY dbus-run-session -- brivane-ctl menu --start 2>&1 | tee /tmp/said |
    grep -qx 'brivane-ctl: /usr/bin/Brivane ended with status 1; run it in a terminal to see why\.' ||
    { cat /tmp/said; return 1; }
}
check "brivane-ctl starts it where the session bus can't, and says how it ended without a display" says_how_it_ended

# The next version of the package.
dpkg-deb -R "$package" /tmp/next
sed -i 's/^Version: .*/&.1/' /tmp/next/DEBIAN/control
dpkg-deb -b /tmp/next /tmp/next.deb >/dev/null
sed -i 's/Hidden=true/Hidden=false/' $entry
check "it is upgraded" dpkg --install /tmp/next.deb
check "an upgrade keeps what the administrator has changed" grep -qx 'Hidden=false' $entry
check "it is removed" dpkg --remove brivane
check "what the administrator has changed stays until it is purged" test -f $entry
check "it is purged" dpkg --purge brivane
new_files >/tmp/after
left() { comm -13 /tmp/before /tmp/after | grep -v -e '^/media/home/' -e '^/media/usr/local/sbin/'; }
check "nothing is left of it" finds_nothing eval 'left || true'
check "the user's settings stay" grep -q SubZeroDimming $settings
