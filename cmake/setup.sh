# What ./run, ./test and ./bench share: packages, configuring, building. Sourced, not run.
# Everything it says goes to standard error, so that a command's own output stays clean.

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

say() { printf '%s\n' "$*" >&2; }

# What it takes to build and run the program.
program_packages=(g++ cmake ninja-build pkg-config nlohmann-json3-dev libxcb1-dev libxcb-randr0-dev
  libxcb-xkb-dev libxcb-screensaver0-dev libxcb-xinput-dev
  libxkbcommon-dev libxkbcommon-x11-dev libsystemd-dev libudev-dev)

# What the visible side takes beside that; a command-line mode does without.
frame_packages=(qt6-base-dev qt6-qpa-plugins)

# What it takes beside both to make a Debian package.
package_packages=(dpkg-dev file)

# need_packages NAME...: installs what is missing, or prints the one line that does and ends.
need_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  local install="apt-get install -y --no-install-recommends ${missing[*]}"
  if [ "$(id -u)" -ne 0 ]; then
    say "Some packages are missing. Run this, then try again:"
    say "  sudo $install"
    exit 1
  fi
  say "Installing ${missing[*]} …"
  export DEBIAN_FRONTEND=noninteractive
  # A new machine's package lists are empty or old: on a failure, refresh them and try once more.
  $install >/dev/null 2>&1 && return
  if ! { apt-get update && $install; } >build-packages.log 2>&1; then
    tail -n 5 build-packages.log >&2
    say "Installing failed; the whole output is in build-packages.log."
    exit 1
  fi
  rm -f build-packages.log
}

# is_configured_for FOLDER PART...: whether a build folder has those optional parts of the tree.
is_configured_for() {
  local folder=$1 part
  shift
  for part in "$@"; do
    grep -qx "$part:BOOL=ON" "$folder/CMakeCache.txt" 2>/dev/null || return 1
  done
}

folder_of() { [ "$1" = default ] && echo build || echo "build/$1"; }

# configure PRESET: if need be, with the optional parts of the tree that the command takes. The stamp is its
# own: CMakeCache.txt is newer, too, after Ninja has run CMake, which applies no preset.
configure() {
  local preset=$1 folder parts=() options=() part
  folder=$(folder_of "$preset")
  [ "${with_frame:-no}" = yes ] && parts+=(BRIVANE_FRAME)
  [ "${with_tests:-no}" = yes ] && parts+=(BRIVANE_FRAME BRIVANE_TESTS)
  [ -f "$folder/build.ninja" ] && [ "$folder/configured" -nt CMakePresets.json ] &&
    is_configured_for "$folder" "${parts[@]}" && return
  for part in "${parts[@]}"; do options+=("-D$part=ON"); done
  mkdir -p "$folder"
  say "Configuring ($preset) …"
  cmake --preset "$preset" "${options[@]}" >"$folder/configure.log" 2>&1 &&
    touch "$folder/configured" && return
  tail -n 20 "$folder/configure.log" >&2
  say "Configuring failed; the whole output is in $folder/configure.log."
  exit 1
}

# build PRESET TARGET...: configures if need be and builds, saying so only if it takes a while. Two
# commands at once build one after the other. With nicely=nice it leaves whatever else runs the processor.
build() {
  local preset=$1 folder status
  shift
  folder=$(folder_of "$preset")
  mkdir -p build
  exec 9>build/.lock
  flock 9
  configure "$preset"
  ${nicely:-} ninja -C "$folder" "$@" >"$folder/build.log" 2>&1 9>&- &
  local ninja=$! tenths=0
  while kill -0 $ninja 2>/dev/null; do
    sleep 0.1
    tenths=$((tenths + 1))
    [ $tenths -eq 10 ] && say "Building $* ($preset) …"
    [ $((tenths % 200)) -eq 0 ] &&
      say "  $(grep -oE '^\[[0-9]+/[0-9]+\]' "$folder/build.log" | tail -n 1)"
  done
  wait $ninja
  status=$?
  exec 9>&-
  [ $status -eq 0 ] && return
  grep -A15 -m3 -E 'error:|FAILED:|undefined reference' "$folder/build.log" | head -n 60 >&2
  say "Building failed; the whole output is in $folder/build.log."
  exit 1
}
