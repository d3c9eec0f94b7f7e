#!/usr/bin/env bash
# Makes the Debian package, and says where it is.
set -u
with_frame=yes
. "$(dirname "$0")/../../cmake/setup.sh"
need_packages "${program_packages[@]}" "${frame_packages[@]}" "${package_packages[@]}"
build default brivane-package
package=$(ls -t build/brivane_*.deb | head -n 1)
say "Made $package; to install it: sudo apt install ./$package"
