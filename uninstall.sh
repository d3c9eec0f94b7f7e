#!/bin/sh
# Undoes what install.sh did, for the user who runs it. Whoever interrupts or refuses it is left with
# what was there.
set -eu

label=com.quorrel.brivane
program=Contents/MacOS/Brivane
agents=$HOME/Library/LaunchAgents
agent=$agents/$label.plist
# Tests have one of their own.
applications=${BRIVANE_APPLICATIONS:-/Applications}

help() {
  cat <<'TEXT'
./uninstall.sh [--settings]   takes Brivane away: the app, its launch agent, the
                              mapping of the brightness keys, and its grants

Its settings (hotkeys, the levels of each display) stay for the next time;
--settings deletes them as well.
TEXT
}

fail() {
  printf '%s\n' "$@" >&2
  exit 1
}

settings=no
case ${1:-} in
  '') ;;
  --settings) settings=yes ;;
  --help | -h) help; exit 0 ;;
  *) help >&2; exit 2 ;;
esac
user=$(id -u)
[ "$user" -ne 0 ] || fail "Run it as yourself, without sudo: the launch agent is yours."

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

# The agent also says which folders were made for it.
was_made() { grep -qs "folders made for it:.* $1 " "$agent"; }

ran=no
# What ran before runs again.
tidy_up() {
  trap '' INT TERM HUP
  [ $ran = no ] || is_running || launchctl bootstrap "$domain" "$agent" 2>/dev/null ||
    open -g -b "$label"
}
trap tidy_up EXIT
trap 'echo "Interrupted; Brivane is still installed." >&2; exit 130' INT TERM HUP

# Ended before anything is taken away, so that it puts the displays back.
stop_running() {
  ! is_running || ran=yes
  launchctl bootout "$domain/$label" 2>/dev/null || true
  ! is_running || pkill -u "$user" -x Brivane || true
  for _ in 1 2 3 4 5 6 7 8 9 10; do
    is_running || return 0
    sleep 0.5
  done
  fail "Brivane is still running and doesn't end. Quit it from its menu, then run uninstall.sh again."
}

# remove APP: unless somebody else's app has that name.
remove() {
  folder=${1%/*} hidden=${1%/*}/.Brivane
  if [ ! -w "$folder" ]; then
    ! is_ours "$1" || echo "$1 stays, because you may not write into $folder."
    return
  fi
  if is_ours "$1"; then
    # The mapping of keys stays when a program ends; a grant can be withdrawn while the app is there.
    "$1/$program" --unmap >/dev/null || true
    tccutil reset Accessibility "$label" >/dev/null 2>&1 || true
    rm -rf "$hidden.app.old" 2>/dev/null || refused "$hidden.app.old"
    mv "$1" "$hidden.app.old" 2>/dev/null || refused "$1"
    ran=no
    echo "Removed $1."
  fi
  # An installation that was killed leaves either.
  rm -rf "$hidden.new" "$hidden.app.old" 2>/dev/null || refused "$hidden.app.old"
}

refused() {
  fail "macOS doesn't let $1 be deleted. Allow this terminal in System Settings > Privacy & Security > App Management, then run uninstall.sh again."
}

stop_running
# From here on it takes a moment, which nobody interrupts.
trap '' INT TERM HUP
app=$(installed)
[ -z "$app" ] || remove "$app"
remove "$applications/Brivane.app"
remove "$HOME/Applications/Brivane.app"
ran=no
[ -z "$app" ] || ! was_made app || rmdir "${app%/*}" 2>/dev/null || true
made_agents=no
! was_made agents || made_agents=yes
rm -f "$agent" "$agent.new"
# AppKit's, of windows that were open.
rm -rf "$HOME/Library/Saved Application State/$label.savedState" 2>/dev/null || true
[ $made_agents = no ] || rmdir "$agents" 2>/dev/null || true

# What was ever switched stays in the system's list; on is what it is without an entry.
launchctl enable "$domain/$label" 2>/dev/null || true
if [ $settings = yes ]; then
  defaults delete "$label" 2>/dev/null || true
  echo "Its settings are gone, too."
else
  echo "Its settings stay. To delete them: defaults delete $label"
fi
echo "Brivane is uninstalled."
