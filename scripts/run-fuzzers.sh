#!/usr/bin/env bash
# Builds every libFuzzer target with clang and runs each briefly.
set -euo pipefail
cd "$(dirname "$0")/.."
secs=${FUZZ_SECONDS:-20}
cmake --preset fuzz >/dev/null
shopt -s nullglob
targets=()
for src in fuzz/fuzz_*.cpp; do targets+=("$(basename "${src%.cpp}")"); done
[ ${#targets[@]} -gt 0 ] && cmake --build --preset fuzz -j "$(nproc)" --target "${targets[@]}"
ran=0
for f in build/fuzz/fuzz/fuzz_*; do
    [ -x "$f" ] || continue
    name=$(basename "$f")
    corpus="fuzz/corpus/${name#fuzz_}"
    mkdir -p "build/fuzz/corpus-$name"
    echo "== $name for ${secs}s"
    if [ -d "$corpus" ]; then
        "$f" -max_total_time="$secs" -rss_limit_mb=2048 -timeout=5 "build/fuzz/corpus-$name" "$corpus" 2>&1 | tail -n 3
    else
        "$f" -max_total_time="$secs" -rss_limit_mb=2048 -timeout=5 "build/fuzz/corpus-$name" 2>&1 | tail -n 3
    fi
    ran=$((ran + 1))
done
echo "fuzzers run: $ran"
