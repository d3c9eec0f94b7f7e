#!/bin/sh
# Undoes what install.sh did, for the user who runs it.
set -eu

label=com.quorrel.brivane
agent=$HOME/Library/LaunchAgents/$label.plist
program=Contents/MacOS/Brivane

help() {
  cat <<'TEXT'
./uninstall.sh [--settings]   takes Brivane away: the app, its launch agent, the
                              mapping of the brightness keys, and its grants

Its settings (hotkeys, the levels of each display) stay for the next time;
--settings deletes them as well.
TEXT
}

settings=no
case ${1:-} in
  '') ;;
  --settings) settings=yes ;;
  --help | -h) help; exit 0 ;;
  *) help >&2; exit 2 ;;
esac
if [ "$(id -u)" -eq 0 ]; then
  echo "Run it as yourself, without sudo: the launch agent is yours." >&2
  exit 1
fi

domain=gui/$(id -u)
is_running() { pgrep -u "$(id -u)" -x Brivane >/dev/null; }

# Ended before anything is taken away, so that it puts the displays back.
launchctl bootout "$domain/$label" 2>/dev/null || true
! is_running || pkill -u "$(id -u)" -x Brivane || true
for _ in 1 2 3 4 5 6 7 8 9 10; do
  is_running || break
  sleep 0.5
done
if is_running; then
  echo "Brivane is still running and doesn't end. Quit it from its menu, then try again." >&2
  exit 1
fi

# Where the agent says that it is, and where it would be without one.
apps() {
  if [ -f "$agent" ]; then
    sed -n "s|.*<string>\(.*/Brivane\.app\)/$program</string>.*|\1|p" "$agent" |
      sed 's/&lt;/</g; s/&gt;/>/g; s/&amp;/\&/g'
  fi
  printf '%s\n' /Applications/Brivane.app "$HOME/Applications/Brivane.app"
}

apps | while IFS= read -r app; do
  # Nobody else's app of that name.
  grep -qs "<string>$label</string>" "$app/Contents/Info.plist" || continue
  # The mapping of keys stays when a program ends.
  "$app/$program" --unmap >/dev/null || true
  rm -rf "$app"
  echo "Removed $app."
done

rm -f "$agent"
# Only what is switched off stays in the system's list.
launchctl enable "$domain/$label" 2>/dev/null || true
tccutil reset Accessibility "$label" >/dev/null 2>&1 || true
if [ $settings = yes ]; then
  defaults delete "$label" 2>/dev/null || true
  echo "Its settings are gone, too."
else
  echo "Its settings stay. To delete them: defaults delete $label"
fi
echo "Brivane is uninstalled."
