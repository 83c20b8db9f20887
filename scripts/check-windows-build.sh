#!/usr/bin/env bash
# Builds the engine (standard C++ only) with the MinGW-w64 cross-compiler, to keep it
# portable to Windows. Installs the cross-compiler when it is missing.
set -euo pipefail
cd "$(dirname "$0")/.."
if ! command -v x86_64-w64-mingw32-g++-posix >/dev/null; then
    sudo_cmd=(); [ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
    "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends g++-mingw-w64-x86-64-posix
fi
cmake -S . -B build/windows -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-mingw64.cmake \
    -DKOVA_BUILD_UI=OFF -DKOVA_BUILD_TESTS=OFF -DKOVA_BUILD_CLI=OFF -DKOVA_BUILD_BENCH=OFF
cmake --build build/windows -j "$(nproc)" --target kova_engine
echo "windows build: kova_engine built"
