#!/usr/bin/env bash
# Tests/Packaging/in-own-root.sh COMMAND...: runs the command in a root of its own, which begins as this
# machine's and is forgotten at the end. The tree is the folder /mnt there, and /media has what differs from
# this machine. Nothing of the machine's kernel can be changed from there, and its udev isn't reached.
set -eu
if [ "$(id -u)" -ne 0 ]; then
  echo "FAILED a package is installed by root alone; run ./test package as root"
  exit 1
fi
if ! unshare --mount true; then
  echo "FAILED a root of its own takes a mount namespace; a container may forbid it"
  exit 1
fi
# Everything that is mounted and started here goes with its namespaces.
if [ "${1:-}" != --inside ]; then
  exec unshare --mount --pid --fork --kill-child "$0" --inside "$@"
fi
shift
cd "$(dirname "$0")/../.."

changes=$(mktemp -d)
mount -t tmpfs changes "$changes"
mkdir "$changes/upper" "$changes/work" "$changes/root"
root=$changes/root
mount -t overlay root -o "lowerdir=/,upperdir=$changes/upper,workdir=$changes/work" "$root" ||
  { echo "FAILED a root of its own takes a kernel that mounts an overlay here; a container may forbid it"; exit 1; }
mount --bind "$PWD" "$root/mnt"
mount --bind "$changes/upper" "$root/media"
mount -t proc proc "$root/proc"
mount --rbind /dev "$root/dev"
mount -t sysfs -o ro sysfs "$root/sys"
mount -t tmpfs tmp "$root/tmp"
mount -t tmpfs run "$root/run"
chmod 1777 "$root/tmp"
exec chroot "$root" env -C /mnt HOME=/root TMPDIR=/tmp "$@"
