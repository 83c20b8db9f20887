#!/usr/bin/env bash
# Builds the engine and a static kova-cli.exe with the MinGW-w64 cross-compiler, to keep
# both portable to Windows; with --with-tests also the engine's test suites for wine.
# Installs the cross-compiler when it is missing.
# The header-only libraries kova-cli uses are copied into a folder of their own, so that
# the cross build never sees the host's /usr/include.
set -euo pipefail
cd "$(dirname "$0")/.."
if ! command -v x86_64-w64-mingw32-g++-posix >/dev/null; then
    sudo_cmd=(); [ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
    "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends g++-mingw-w64-x86-64-posix
fi
out=build/windows
headers="$out/header-only"
rm -rf "$headers"
mkdir -p "$headers"
for lib in nlohmann CLI; do
    [ -d "/usr/include/$lib" ] && cp -r "/usr/include/$lib" "$headers/"
done
cmake -S . -B "$out" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-mingw64.cmake \
    -DKOVA_HEADER_ONLY_DIR="$(pwd)/$headers" \
    -DKOVA_BUILD_UI=OFF -DKOVA_BUILD_TESTS=ON -DKOVA_BUILD_CLI=ON -DKOVA_BUILD_BENCH=OFF
targets=(kova_engine kova-cli)
# The engine's test suites too, for the checks under wine (not for `make windows`).
[ "${1:-}" = "--with-tests" ] && targets+=(windows_tests)
cmake --build "$out" -j "$(nproc)" --target "${targets[@]}"
echo "windows build: ${targets[*]} built; kova-cli.exe is $out/tools/kova-cli/kova-cli.exe"
