#!/bin/sh
# Installs Brivane for the user who runs it: the app, and a launch agent that starts it at login.
set -eu

label=com.quorrel.brivane
agent=$HOME/Library/LaunchAgents/$label.plist

help() {
  cat <<'TEXT'
./install.sh [FOLDER]   installs Brivane and has it start at login, now and from now on

Brivane.app is taken from beside this script, or from build/mac, and goes into
FOLDER: /Applications without one, or Applications in your home folder where
you may not write that. Run it again to update; ./uninstall.sh undoes it all.
TEXT
}

fail() {
  printf '%s\n' "$@" >&2
  exit 1
}

case ${1:-} in
  --help | -h) help; exit 0 ;;
  -*) help >&2; exit 2 ;;
esac

# What this Mac has to be.
[ "$(id -u)" -ne 0 ] || fail "Run it as yourself, without sudo: the launch agent is yours."
# In a terminal that is translated from Intel's processors uname names one of those.
[ "$(uname -s)" = Darwin ] && [ "$(sysctl -n hw.optional.arm64 2>/dev/null)" = 1 ] ||
  fail "Brivane needs a Mac with Apple silicon."
system=$(sw_vers -productVersion)
[ "${system%%.*}" -ge 13 ] || fail "Brivane needs macOS 13 or later; this is macOS $system."

here=$(CDPATH='' cd -- "$(dirname -- "$0")" && pwd)
source=$here/Brivane.app
[ -d "$source" ] || source=$here/build/mac/Brivane.app
[ -d "$source" ] || fail "There is no Brivane.app beside install.sh. docs/macos.md says how to build it."
codesign --verify --strict "$source" 2>/dev/null ||
  fail "$source isn't whole. Unpack or build it again."

folder=${1:-/Applications}
if [ $# -eq 0 ] && [ ! -w "$folder" ]; then folder=$HOME/Applications; fi
mkdir -p "$folder" || fail "The folder $folder can't be made."
[ -w "$folder" ] || fail "You may not write into $folder."
folder=$(CDPATH='' cd -- "$folder" && pwd)
app=$folder/Brivane.app

domain=gui/$(id -u)
program=Contents/MacOS/Brivane

is_running() { pgrep -u "$(id -u)" -x Brivane >/dev/null; }

# It is told to end and given the time to put the displays back.
stop_running() {
  launchctl bootout "$domain/$label" 2>/dev/null || true
  ! is_running || pkill -u "$(id -u)" -x Brivane || true
  for _ in 1 2 3 4 5 6 7 8 9 10; do
    is_running || return 0
    sleep 0.5
  done
  fail "Brivane is still running and doesn't end. Quit it from its menu, then try again."
}

# What moved elsewhere since the last time is not left behind.
installed_before() {
  [ -f "$agent" ] || return 0
  sed -n "s|.*<string>\(.*/Brivane\.app\)/$program</string>.*|\1|p" "$agent" |
    sed 's/&lt;/</g; s/&gt;/>/g; s/&amp;/\&/g'
}

copy_app() {
  rm -rf "$folder/.Brivane.app.new"
  ditto "$source" "$folder/.Brivane.app.new"
  # Without it the system would not open an app that was downloaded and has no certificate.
  xattr -dr com.apple.quarantine "$folder/.Brivane.app.new" 2>/dev/null || true
  rm -rf "$app"
  mv "$folder/.Brivane.app.new" "$app"
}

# Started at login and when it has crashed, but not when it was quit from its menu.
write_agent() {
  mkdir -p "$(dirname "$agent")"
  escaped=$(printf '%s' "$app/$program" | sed 's/&/\&amp;/g; s/</\&lt;/g; s/>/\&gt;/g')
  cat >"$agent.new" <<PLIST
<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
  <key>Label</key>
  <string>$label</string>
  <key>AssociatedBundleIdentifiers</key>
  <string>$label</string>
  <key>ProgramArguments</key>
  <array>
    <string>$escaped</string>
  </array>
  <key>RunAtLoad</key>
  <true/>
  <key>KeepAlive</key>
  <dict>
    <key>SuccessfulExit</key>
    <false/>
  </dict>
  <key>LimitLoadToSessionType</key>
  <string>Aqua</string>
  <key>ProcessType</key>
  <string>Interactive</string>
</dict>
</plist>
PLIST
  plutil -lint -s "$agent.new" || fail "The launch agent could not be written."
  mv "$agent.new" "$agent"
}

# An agent that is still on its way out can't be loaded yet.
load_agent() {
  launchctl enable "$domain/$label"
  for _ in 1 2 3 4 5; do
    launchctl bootstrap "$domain" "$agent" 2>/dev/null && return
    sleep 1
  done
  fail "Brivane is installed, but could not be started: log in anew, or open $app."
}

before=$(installed_before)
stop_running
copy_app
case $before in
  '' | "$app" | "$source") ;;
  *) rm -rf "$before" ;;
esac
write_agent
load_agent

cat <<TEXT
Brivane is installed as $app, runs, and starts at login.

One thing is yours to do: for the keyboard's own brightness keys it needs a grant.
  System Settings > Privacy & Security > Accessibility: switch on Brivane.
After an update the grant is void though its switch is on: take Brivane out of
that list with the minus button, and let it ask again. Sliders and the hotkeys
(control-option-up and -down) work without any grant.

./uninstall.sh takes everything away again.
TEXT
