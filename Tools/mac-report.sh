#!/bin/sh
# What a first run on a Mac shows, in one command and one folder of files. A step that fails is written down, and
# the steps after it that don't need it are done all the same.
set -u
from=$PWD
cd "$(dirname "$0")/.." || exit 1
# What is for the person, whatever else is written to files.
exec 3>&2

label=com.quorrel.brivane
agent=$HOME/Library/LaunchAgents/$label.plist
built=build/mac/Brivane.app
program=Contents/MacOS/Brivane
packages="brew install cmake ninja nlohmann-json googletest"

help() {
  cat <<'TEXT'
Tools/mac-report.sh [--unattended] [--archive FILE]

Builds Brivane on this Mac, runs its tests, verifies its seal, installs and
starts it, opens menu, on-screen display and editor, takes a picture of each,
ends it, uninstalls it, and writes all that into the folder
build/mac-report-TIME. Read the folder before you send it: it names your
displays with their serial numbers, and the pictures show your screen.

  --unattended    leaves out what a person has to look at or to do
  --archive FILE  verifies an archive that was built on Linux, too

The terminal needs Screen & System Audio Recording (for the pictures) and
Accessibility (to press keys) in System Settings > Privacy & Security.
TEXT
}

refuse() {
  printf '%s\n' "$@" >&2
  exit 2
}

attended=yes archive=''
while [ $# -gt 0 ]; do
  case $1 in
    --unattended) attended=no ;;
    --archive) [ $# -gt 1 ] || refuse "--archive needs a file."; archive=$2; shift ;;
    --help | -h) help; exit 0 ;;
    *) help >&2; exit 2 ;;
  esac
  shift
done

user=$(id -u)
domain=gui/$user
is_running() { pgrep -u "$user" -x Brivane >/dev/null; }

[ "$(uname -s)" = Darwin ] || refuse "This is for a Mac; ./test and ./run are for Linux."
[ "$user" -ne 0 ] || refuse "Run it as yourself, without sudo: Brivane is installed for you."
for tool in cmake ninja; do command -v $tool >/dev/null || refuse "There is no $tool. Run: $packages"; done
case $archive in '' | /*) ;; *) archive=$from/$archive ;; esac
[ -z "$archive" ] || [ -f "$archive" ] || refuse "There is no archive $archive."
[ ! -e "$agent" ] || refuse "Brivane is installed here, and this would replace it. Run ./uninstall.sh first."
! is_running || refuse "Brivane is running. Quit it first."

report=build/mac-report-$(date +%Y-%m-%d-%H%M%S)
mkdir -p build && mkdir "$report" || refuse "The folder $report can't be made."
work=$report/work
mkdir "$work"
: >"$work/started"

count=0
result() { echo "$*" | tee -a "$report/summary.txt"; }
not_done() { result "NOT DONE $1: $2"; }

# step NAME COMMAND...: what it says is in a file of its own.
step() {
  name=$1
  shift
  count=$((count + 1))
  file=$(printf '%02d' $count)-$(printf '%s' "$name" | tr ' ' '-').log
  echo "… $name" >&2
  "$@" >"$report/$file" 2>&1 && { result "ok $name"; return 0; }
  result "FAILED $name: see $file"
  return 1
}

# look NAME SENTENCE: a person says whether it is so.
look() {
  [ $attended = yes ] || { not_done "$1" "needs a person: $2"; return; }
  printf 'Look: %s\nIs it so? Type y, or what is wrong: ' "$2" >&2
  read -r answer || answer='no answer'
  case $answer in y | yes) result "ok $1, seen by a person" ;; *) result "FAILED $1: $2 A person says: $answer" ;; esac
}

system() {
  sw_vers
  uname -a
  sysctl hw.model machdep.cpu.brand_string
  xcrun clang++ --version && cmake --version && system_profiler SPDisplaysDataType
}

build() { cmake --preset mac-native && cmake --build --preset mac-native --clean-first; }
no_warning() { ! grep 'warning:' "$report"/*-build.log; }
target() { cmake --build --preset mac-native --target "$1"; }
core() { target brivane-tests && build/mac/bin/brivane-tests; }
scenarios() {
  target brivane-desk && build/mac/bin/brivane-desk run Tests/Scenarios/*.scenario &&
    build/mac/bin/brivane-desk swarm --seeds 1..20 --keep "$report"
}

# has PATTERN COMMAND...: whether the command succeeds and says so, and everything that it says.
has() {
  pattern=$1
  shift
  said=$("$@" 2>&1)
  status=$?
  printf '%s\n' "$said"
  printf '%s\n' "$said" | grep -q "$pattern" && return $status
}

# lacks PATTERN COMMAND...
lacks() {
  pattern=$1
  shift
  said=$("$@" 2>&1)
  status=$?
  printf '%s\n' "$said"
  printf '%s\n' "$said" | grep -qiE "$pattern" && return 1
  return $status
}

seal() {
  codesign --verify --strict --verbose=2 "$1" && has 'flags=.*runtime' codesign -d --verbose=2 "$1" &&
    plutil -lint "$1/Contents/Info.plist" "$1/Contents/_CodeSignature/CodeResources"
}

# Without a certificate an app is rejected, which is no fault of its seal.
gatekeeper() {
  said=$(spctl --assess --type execute --verbose=2 "$1" 2>&1)
  printf '%s\n' "$said"
  printf '%s\n' "$said" | grep -qE 'accepted|rejected' &&
    ! printf '%s\n' "$said" | grep -qE 'invalid|modified|damaged|missing'
}

loads() { lacks 'error|invalid|malformed' xcrun dyld_info -validate_only "$1/$program"; }

unpack() {
  (cd "$(dirname "$archive")" && shasum -a 256 -c "$(basename "$archive").sha256") &&
    ditto -x -k "$archive" "$work" && mv "$work"/Brivane-*/Brivane.app "$work/Brivane.app" &&
    { xattr -dr com.apple.quarantine "$work/Brivane.app" || true; }
}

# Both write __LINKEDIT anew, and refuse one with bytes that no list owns.
written_anew() {
  complaints='__LINKEDIT|link edit|malformed|not in an order'
  cp "$work/Brivane.app/$program" "$work/copy" &&
    lacks "$complaints" codesign --force --sign - "$work/copy" && lacks "$complaints" strip -x "$work/copy"
}

probe() { has '^Brivane probe$' "$1/$program" --probe; }

from_linux() {
  [ -n "$archive" ] || { not_done "the app from Linux" "no --archive was given"; return; }
  step "the app from Linux is whole" unpack || return
  step "the app from Linux has its seal" seal "$work/Brivane.app"
  step "the app from Linux can be loaded" loads "$work/Brivane.app"
  step "codesign and strip take the app from Linux" written_anew
  step "the app from Linux probes" probe "$work/Brivane.app"
}

key_mapping() { hidutil property --get UserKeyMapping; }

install_app() {
  key_mapping >"$work/mapping"
  ./install.sh || return 1
  app=$(sed -n "s|.*<string>\(.*/Brivane\.app\)/$program</string>.*|\1|p" "$agent")
  [ -n "$app" ]
}

runs() {
  for _ in 1 2 3 4 5 6 7 8 9 10; do
    is_running && { launchctl print "$domain/$label"; return; }
    sleep 1
  done
  echo "No process has the name Brivane."
  return 1
}

# A line for each window of Brivane that is on the screen: its number, its level, where it lies.
windows() {
  osascript -l JavaScript -e '
    ObjC.import("CoreGraphics")
    const onScreenOnly = 1, aboveNone = 0
    const list = $.CGWindowListCopyWindowInfo(onScreenOnly, aboveNone)
    ObjC.deepUnwrap(ObjC.castRefToObject(list)).filter(one => one.kCGWindowOwnerName === "Brivane")
      .map(one => [one.kCGWindowNumber, one.kCGWindowLayer, JSON.stringify(one.kCGWindowBounds)].join(" ")).join("\n")'
}

# The first line keeps the list from being empty.
at_rest() { echo rest >"$work/rest" && windows >>"$work/rest"; }

# shows NAME LEVEL: whether Brivane has a window of that level that it had not at rest; and pictures of the displays.
shows() {
  windows >"$work/shown" || return 1
  screencapture -x "$report/$1.png" "$report/$1-2.png" "$report/$1-3.png" || return 1
  echo "Windows, number and level:"
  cat "$work/shown"
  [ -s "$report/$1.png" ] && grep -vxFf "$work/rest" "$work/shown" | grep -q "^[0-9]* $2 "
}

events() { osascript -e "tell application \"System Events\" to $1"; }

# by_person SENTENCE: what the person does instead when no key may be pressed for it.
by_person() {
  [ $attended = yes ] || return 1
  echo "$1" >&3
  sleep 5
}

menu() {
  at_rest && open -a "$app" && sleep 2 && shows menu 101
  shown=$?
  events 'key code 53' || by_person "Close Brivane's menu now."
  return $shown
}

hud() {
  at_rest || return 1
  events 'key code 126 using {control down, option down}' || by_person "Hold control-option-up for ten seconds, now."
  shows hud 25
  shown=$?
  events 'key code 125 using {control down, option down}'
  return $shown
}

# In every language it is opened by the first line of the menu that can be chosen.
editor() {
  at_rest || return 1
  open -a "$app" && sleep 2 &&
    events 'key code 125' && events 'key code 36' ||
    by_person "Choose Change Hotkeys… in Brivane's menu now."
  sleep 2
  shows editor 0
}

ends() {
  launchctl kill TERM "$domain/$label" || return 1
  for _ in 1 2 3 4 5 6 7 8 9 10; do is_running || break; sleep 0.5; done
  # launchd starts it again if its end was a failure, after ten seconds at most.
  sleep 12
  has 'last exit code = 0' launchctl print "$domain/$label" && ! is_running
}

log_is_readable() {
  # It also prints what it looks for.
  has 'Brivane\[.*\] Brivane: ' log show --last 1h --style compact --predicate 'eventMessage BEGINSWITH "Brivane: "'
}

no_crash() {
  find "$HOME/Library/Logs/DiagnosticReports" -name 'Brivane*' -newer "$work/started" >"$work/crashes" 2>/dev/null
  while read -r crash; do cp "$crash" "$report"; echo "$crash"; done <"$work/crashes"
  [ ! -s "$work/crashes" ]
}

uninstall() {
  ./uninstall.sh || return 1
  installed=no
  key_mapping | cmp - "$work/mapping" && [ ! -e "$app" ] && [ ! -e "$agent" ] && ! is_running
}

installed=no
clean_up() {
  trap '' INT TERM HUP
  [ $installed = no ] || ./uninstall.sh >&3 2>&3
  rm -rf "$work"
}
trap clean_up EXIT
trap 'echo "Interrupted." >&3; exit 130' INT TERM HUP

installed_app() {
  installed=yes
  step "the app is installed" install_app || return
  step "the program runs" runs
  step "the displays are probed" probe "$app"
  look "the displays" "$report/$file lists each of your displays, the built-in one as such, external ones with a DDC level."
  look "the mark" "there is one mark in the menu bar and none in the Dock; macOS announced a background item."
  step "the menu opens" menu
  look "the menu" "opened by a click on its mark, it has a slider for each display, and dragging one changes that display at once."
  step "the on-screen display is shown" hud
  look "the on-screen display" "control-option-up shows it on the display under the pointer, with a shadow, over a full-screen window, too."
  look "held keys" "control-option-down, held, goes on, finer with shift, and ends with the key."
  look "the grant" "with Accessibility granted to Brivane, its brightness keys work within two seconds, without the system's own display."
  look "displays that come and go" "a monitor that is unplugged leaves the menu, and comes back with its level; so do all after sleep."
  step "the editor opens" editor
  look "the editor" "it is in front, captures a combination, and Escape keeps the old one."
  step "it ends by SIGTERM" ends
  look "the end" "every display is as it was before Brivane dimmed or brightened it."
  step "its log is readable" log_is_readable
}

step "system" system
if step "build" build; then
  step "it builds without a warning" no_warning
  step "declarations agree with the system" target brivane-abi-check
  step "core" core
  step "scenarios" scenarios
  step "the seal is whole" seal $built
  step "Gatekeeper finds nothing damaged" gatekeeper $built
  step "it can be loaded" loads $built
  installed_app
  [ ! -e "$agent" ] || step "it is uninstalled" uninstall
fi
from_linux
step "nothing crashed" no_crash

failed=$(grep -c '^FAILED ' "$report/summary.txt")
result "$(grep -c '^ok ' "$report/summary.txt") ok, $failed failed, $(grep -c '^NOT DONE ' "$report/summary.txt") not done."
echo "The report is in $report. Read it before you send it: it names your displays, and its pictures show your screen." >&2
[ "$failed" -eq 0 ]
