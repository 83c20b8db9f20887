#!/usr/bin/env bash
# Builds the Debian packages from this tree, the Debian way (dpkg-buildpackage, debhelper,
# CMake with Ninja), and checks them with lintian. The packages land in build/deb/:
#   build/deb/kova_VERSION_ARCH.deb       the desktop program
#   build/deb/kova-cli_VERSION_ARCH.deb   the command-line tool and the station service
# The tree (without build/, run/ and .git) is copied to build/deb/src first, so the package
# build leaves nothing behind in it. JOBS sets the parallel build (default: all cores);
# DEB_BUILD_OPTIONS is passed on (nocheck skips the package build's smoke test).
# usage: build-deb.sh [--no-lintian]
set -euo pipefail
cd "$(dirname "$0")/.."
top=$(pwd)
out="$top/build/deb"
lint=1
[ "${1:-}" = "--no-lintian" ] && lint=0

version=$(dpkg-parsechangelog -S Version)
arch=$(dpkg-architecture -qDEB_HOST_ARCH)
src="$out/src/kova-$version"
rm -rf "$out"
mkdir -p "$src"
tar --exclude=./build --exclude=./run --exclude=./.git --exclude=./.cache -cf - . |
    tar -xf - -C "$src"

DEB_BUILD_OPTIONS="${DEB_BUILD_OPTIONS:+$DEB_BUILD_OPTIONS }parallel=${JOBS:-$(nproc)}"
export DEB_BUILD_OPTIONS
(cd "$src" && dpkg-buildpackage -b --no-sign)
mv "$out/src"/*.deb "$out/src"/*.changes "$out/src"/*.buildinfo "$out/"
rm -rf "$out/src"
ls -l "$out"/*.deb

if [ $lint -eq 1 ]; then
    # Every error and warning fails; the ones that are justified are overridden, with the
    # reason, in debian/*.lintian-overrides.
    lintian --info --display-info --fail-on error,warning "$out/kova_${version}_${arch}.changes"
    echo "lintian: no error, no warning"
fi
