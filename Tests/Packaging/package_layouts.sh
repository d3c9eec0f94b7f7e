#!/usr/bin/env bash
# Tests/Packaging/package_layouts.sh: configures with libraries arranged as other distributions have them. To be
# run by Tests/Packaging/in-own-root.sh, in the tree.
set -u
. Tests/Packaging/check.sh

# Neither has XCB's archives; nor has one of them, until it is asked for, the C++ library's.
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
# installs FOLDER PATTERN: whether that is what a file is built as.
has() { grep -qE -e "$2" "$1/build.ninja" || { echo "no $2"; return 1; }; }
has_not() { ! grep -E -e "$2" "$1/build.ninja"; }

check "it configures as on Arch" eval 'touch /etc/arch-release && configures /tmp/arch'
rm -f /etc/arch-release "$(g++ -print-file-name=libstdc++.a)"
check "it configures as on Fedora" configures /tmp/fedora
check "the module lies in Fedora's lib64" has /tmp/fedora 'lib64/brivane/brivane-qt.so'
check "the program looks for it there" has /tmp/fedora 'BRIVANE_QT_MODULE=.*"\.\./lib64/brivane/brivane-qt.so'
check "it lies in Arch's lib" has /tmp/arch '[^0-9]lib/brivane/brivane-qt.so'
check "Arch's archive of the C++ library is linked in" has /tmp/arch ' -static-libstdc\+\+'
check "Fedora's shared one is not" has_not /tmp/fedora ' -static-libstdc\+\+'
for distribution in arch fedora; do
  check "$distribution's XCB is linked" has /tmp/$distribution '/usr/lib64/libxcb-xinput\.so'
  check "no warning is an error on $distribution" has_not /tmp/$distribution ' -Werror'
done
