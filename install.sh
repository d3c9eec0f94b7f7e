#!/bin/sh
# Installs Brivane for the user who runs it: the app, and a launch agent that starts it at login.
# All of it is made ready beside what is there, which then changes in one go: whoever interrupts or
# refuses it is left with the old app or the new one.
set -eu

label=com.quorrel.brivane
program=Contents/MacOS/Brivane
agents=$HOME/Library/LaunchAgents
agent=$agents/$label.plist
# Tests have one of their own.
applications=${BRIVANE_APPLICATIONS:-/Applications}
again="then run install.sh again."
grant="Allow this terminal in System Settings > Privacy & Security > App Management"

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
user=$(id -u)
[ "$user" -ne 0 ] || fail "Run it as yourself, without sudo: the launch agent is yours."
# In a terminal that is translated from Intel's processors uname names one of those.
[ "$(uname -s) $(sysctl -n hw.optional.arm64 2>/dev/null)" = "Darwin 1" ] ||
  fail "Brivane needs a Mac with Apple silicon."
system=$(sw_vers -productVersion)
[ "${system%%.*}" -ge 13 ] || fail "Brivane needs macOS 13 or later; this is macOS $system."

here=$(CDPATH='' cd -- "$(dirname -- "$0")" && pwd)
source=$here/Brivane.app
[ -d "$source" ] || source=$here/build/mac/Brivane.app
[ -d "$source" ] || fail "There is no Brivane.app beside install.sh. docs/macos.md says how to build it."
codesign --verify --strict "$source" 2>/dev/null ||
  fail "$source isn't whole. Unpack or build it again."

domain=gui/$user
is_running() { pgrep -u "$user" -x Brivane >/dev/null; }
is_ours() { grep -qs "<string>$label</string>" "$1/Contents/Info.plist"; }

# Where the agent says that the app is.
installed() {
  [ -f "$agent" ] || return 0
  sed -n "\|/Brivane\.app/$program</string>|{
    s|.*<string>\(.*\)/$program</string>.*|\1|; s/&lt;/</g; s/&gt;/>/g; s/&amp;/\&/g; p
  }" "$agent"
}

# The agent also says which folders were made for it, so that they can go with it.
was_made() { grep -qs "folders made for it:.* $1 " "$agent"; }

# An agent that is still on its way out can't be loaded yet.
load_agent() {
  [ -f "$agent" ] || return 1
  for _ in 1 2 3 4 5; do
    launchctl bootstrap "$domain" "$agent" 2>/dev/null && return
    sleep 1
  done
  return 1
}

app='' staging='' new='' old='' ran=no made_folder='' made_agents=''

# What was only made ready goes; what was there is back, and runs if it ran.
tidy_up() {
  trap '' INT TERM HUP
  set +e
  rm -rf "$staging" "$agent.new"
  [ -e "$app" ] || [ ! -e "$old" ] || mv "$old" "$app" ||
    echo "The old app lies in $old: rename it to $app." >&2
  for made in "$made_folder" "$made_agents"; do [ -z "$made" ] || rmdir "$made" 2>/dev/null; done
  [ $ran = no ] || is_running || load_agent || open -g -b "$label"
}

may_be_interrupted() {
  trap 'echo "Interrupted, with nothing left half done. To go on, run install.sh again." >&2; exit 130' INT TERM HUP
}

trap tidy_up EXIT
may_be_interrupted

folder=${1:-$applications}
if [ $# -eq 0 ] && [ ! -w "$folder" ]; then folder=$HOME/Applications; fi
if [ ! -d "$folder" ]; then
  made_folder=$folder
  mkdir "$folder" 2>/dev/null ||
    fail "The folder $folder can't be made. Name one that is there: ./install.sh FOLDER"
fi
[ -w "$folder" ] || fail "You may not write into $folder. Name another: ./install.sh FOLDER"
folder=$(CDPATH='' cd -- "$folder" && pwd)
app=$folder/Brivane.app old=$folder/.Brivane.app.old
# To codesign only what is named like an app is one.
staging=$folder/.Brivane.new new=$staging/Brivane.app

if [ ! -d "$agents" ]; then
  made_agents=$agents
  mkdir "$agents" 2>/dev/null || fail "The folder $agents can't be made. Make it, $again"
fi
[ -w "$agents" ] || fail "You may not write into $agents. Make it yours (sudo chown \"\$USER\" \"$agents\"), $again"

# Left by an installation that was killed; the old app may be all that there is.
[ -e "$app" ] || [ ! -e "$old" ] || mv "$old" "$app"
rm -rf "$staging"
[ ! -e "$old" ] || rm -rf "$old" 2>/dev/null || fail "$old is of no use and can't be deleted. $grant, $again"
[ ! -e "$app" ] || is_ours "$app" ||
  fail "$app is somebody else's app. Name another folder: ./install.sh FOLDER"

copy_app() {
  said=$({ mkdir "$staging" && ditto "$source" "$new"; } 2>&1) ||
    fail "Brivane.app can't be copied into $folder (${said##*: }). Help that, $again"
  # Without it the system would not open an app that was downloaded and has no certificate.
  xattr -dr com.apple.quarantine "$new" 2>/dev/null || true
  codesign --verify --strict "$new" 2>/dev/null ||
    fail "The copy of Brivane.app in $folder isn't whole. See whether the disk is full, $again"
}

# Started at login and when it has crashed, but not when it was quit from its menu.
write_agent() {
  made=''
  if [ -n "$made_agents" ] || was_made agents; then made="$made agents"; fi
  if [ -n "$made_folder" ] || { [ "$before" = "$app" ] && was_made app; }; then made="$made app"; fi
  escaped=$(printf '%s' "$app/$program" | sed 's/&/\&amp;/g; s/</\&lt;/g; s/>/\&gt;/g')
  cat >"$agent.new" <<PLIST
<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
  <!-- folders made for it:${made:- none} -->
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
  plutil -lint -s "$agent.new" 2>/dev/null || fail "The launch agent can't be written into $agents. See whether the disk is full, $again"
}

# It is told to end and given the time to put the displays back.
stop_running() {
  ! is_running || ran=yes
  launchctl bootout "$domain/$label" 2>/dev/null || true
  ! is_running || pkill -u "$user" -x Brivane || true
  for _ in 1 2 3 4 5 6 7 8 9 10; do
    is_running || return 0
    sleep 0.5
  done
  fail "Brivane is still running and doesn't end. Quit it from its menu, $again"
}

move() {
  said=$(mv "$1" "$2" 2>&1) || fail "macOS doesn't let $app be replaced (${said##*: }). $grant, $again"
}

remove() {
  rm -rf "$1" 2>/dev/null || echo "$1 is of no use now and can't be deleted. $grant, and delete it." >&2
}

# What moved elsewhere since the last time is not left behind.
remove_before() {
  case $before in '' | "$app" | "$source") return ;; esac
  ! is_ours "$before" || remove "$before"
  [ "$before_was_made" = no ] || rmdir "${before%/*}" 2>/dev/null || true
}

# What macOS recognises an app by: its certificate, or without one the hash of its program.
requirement_of() { codesign -d -r- "$1" 2>/dev/null | sed -n 's/^#* *designated => //p'; }
fits() { [ -n "$2" ] && codesign --verify -R "=$2" "$1" 2>/dev/null; }

before=$(installed)
requirement=''
[ ! -e "$app" ] || requirement=$(requirement_of "$app")
before_was_made=no
! was_made app || before_was_made=yes

copy_app
write_agent
stop_running
# A moment that nobody interrupts.
trap '' INT TERM HUP
[ ! -e "$app" ] || move "$app" "$old"
move "$new" "$app"
# The grant was for what macOS recognised as the old app alone, but its switch would stay on and mislead.
[ ! -e "$old" ] || cmp -s "$old/$program" "$app/$program" || fits "$app" "$requirement" ||
  tccutil reset Accessibility "$label" >/dev/null 2>&1 || true
remove "$old"
mv -f "$agent.new" "$agent" 2>/dev/null || fail "$agent can't be replaced. Unlock it, $again"
remove_before
may_be_interrupted

launchctl enable "$domain/$label" 2>/dev/null || true
load_agent ||
  fail "Brivane is installed, but can't be started: switch it on in System Settings > General > Login Items, or open $app."
ran=no

cat <<TEXT
Brivane is installed as $app, runs, and starts at login.
macOS says that a background item was added: that is the launch agent.

One thing is yours to do: for the keyboard's own brightness keys it needs a grant.
  System Settings > Privacy & Security > Accessibility: switch on Brivane.
Without a certificate the grant is for one build alone: after an update Brivane asks
again. Sliders and the hotkeys (control-option-up and -down) work without it.

./uninstall.sh takes everything away again.
TEXT
