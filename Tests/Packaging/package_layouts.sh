#!/usr/bin/env bash
# Tests/Packaging/package_layouts.sh: configures with libraries arranged as other distributions have them. To be
# run by Tests/Packaging/in-own-root.sh, in the tree.
set -u
. Tests/Packaging/check.sh

# Neither has XCB's archives, nor Fedora that of the C++ library.
debian=/usr/lib/x86_64-linux-gnu
rm -f /etc/debian_version $debian/libxcb*.a
export PKG_CONFIG_PATH=/usr/lib64/pkgconfig
mkdir -p $PKG_CONFIG_PATH
mv $debian/libxcb* /usr/lib64
mv $debian/pkgconfig/xcb*.pc $PKG_CONFIG_PATH
sed -i 's|^libdir=.*|libdir=/usr/lib64|' $PKG_CONFIG_PATH/xcb*.pc

# configures FOLDER: as their packagers do.
configures() {
  cmake -S . -B "$1" -G Ninja -DCMAKE_BUILD_TYPE=None -DCMAKE_INSTALL_PREFIX=/usr -DBRIVANE_FRAME=ON \
    --compile-no-warning-as-error
}
# links_and_starts FOLDER: the program of the objects that there are already.
links_and_starts() {
  cp build/lib*.a "$1" && cp -r build/CMakeFiles/Brivane.dir "$1/CMakeFiles" &&
    (cd "$1" && mkdir -p bin && eval "$(ninja -t commands Brivane | tail -n 1)") &&
    env -u DISPLAY LD_LIBRARY_PATH=/usr/lib64 "$1/bin/Brivane" --probe | grep -x 'Brivane probe'
}
# has FOLDER PATTERN: whether the build of that folder has it.
has() { grep -qE -e "$2" "$1/build.ninja" || { echo "no $2"; return 1; }; }
has_not() { ! grep -E -e "$2" "$1/build.ninja"; }

touch /etc/arch-release
check "it configures as on Arch" configures /tmp/arch
check "the module lies in Arch's lib" has /tmp/arch '[^0-9]lib/brivane/brivane-qt.so'
check "the program is linked and starts there" links_and_starts /tmp/arch
check "with the archive of the C++ library" has /tmp/arch ' -static-libstdc\+\+'

rm -f /etc/arch-release "$(g++ -print-file-name=libstdc++.a)"
check "it configures as on Fedora" configures /tmp/fedora
check "the module lies in Fedora's lib64" has /tmp/fedora 'lib64/brivane/brivane-qt.so'
check "the program looks for it there" has /tmp/fedora 'BRIVANE_QT_MODULE=.*"\.\./lib64/brivane/brivane-qt.so'
check "the program is linked and starts there, too" links_and_starts /tmp/fedora
for distribution in arch fedora; do
  check "$distribution's XCB is linked" has /tmp/$distribution '/usr/lib64/libxcb-xinput\.so'
  check "no warning is an error on $distribution" has_not /tmp/$distribution ' -Werror'
done
