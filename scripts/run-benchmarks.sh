#!/usr/bin/env bash
set -euo pipefail
cd "$(dirname "$0")/.."
for b in build/default/bench/bench_*; do
    [ -x "$b" ] && "$b" --benchmark_min_time=0.2
done
