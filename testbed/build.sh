#!/bin/bash
# build.sh - builds what guest.sh starts, once, into $testbed_cache: Debian's kernel source as
# user-mode Linux with USB, UVC, vivid and the serial adapters built in (about 7 minutes on two
# cores), and usbdev, the USB devices made of software.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
cache=${testbed_cache:-${XDG_CACHE_HOME:-$HOME/.cache}/pictor-testbed}
mkdir -p "$cache"
cd "$cache"
gcc -O2 -Wall -Wextra -std=gnu11 -o usbdev "$here/usbdev.c" -lpthread
if [ -x linux ] && cmp -s "$here/guest.config" built.config; then exit 0; fi

source_package=linux-source-6.1
tree=$cache/$source_package
ls ${source_package}_*.deb >/dev/null 2>&1 || apt-get download $source_package
if [ ! -f "$tree/.unpacked" ]; then
    dpkg-deb --fsys-tarfile ${source_package}_*.deb |
        tar -xO ./usr/src/$source_package.tar.xz | tar -xJ
    touch "$tree/.unpacked"
fi
cd "$tree"
make -s ARCH=um defconfig
scripts/kconfig/merge_config.sh -m .config "$here/guest.config" >/dev/null
make -s ARCH=um olddefconfig
# An option whose dependencies changed would silently be left out.
while read -r line; do
    case $line in
    CONFIG_*=*) grep -qx "$line" .config || { echo "not settable: $line" >&2; exit 1; } ;;
    esac
done <"$here/guest.config"
nice -n 10 make -s ARCH=um -j"$(nproc)" linux
strip -o "$cache/linux" linux
cp "$here/guest.config" "$cache/built.config"
# 1.5 GB, needed again only when the configuration changes.
rm -rf "$tree"
