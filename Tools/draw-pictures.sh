#!/usr/bin/env bash
# Draws every picture in docs/pictures and the icons of the Mac and of Linux anew, from the program as it is
# now. Needs no screen.
set -u
with_frame=yes
. "$(dirname "$0")/../cmake/setup.sh"
need_packages "${program_packages[@]}" "${frame_packages[@]}" fonts-inter fonts-dejavu-core
build default brivane-pictures
build/bin/brivane-pictures docs/pictures Packaging/macOS/Brivane.icns Packaging/Linux/icons/hicolor
