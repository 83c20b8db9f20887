#!/usr/bin/env bash
# Builds every libFuzzer target with clang and runs each one.
#   scripts/run-fuzzers.sh                 each target for FUZZ_SECONDS (20 s), as CI does
#   scripts/run-fuzzers.sh --runs N        each target for N executions (the long run:
#                                          10000000 takes hours on a shared machine)
#   scripts/run-fuzzers.sh --runs N NAME   only fuzz_NAME
#   scripts/run-fuzzers.sh --ubsan ...     the targets built with UBSan alone (build/fuzz-ubsan):
#                                          about twice the executions per second of the
#                                          ASan + UBSan build, for the longest runs
# FUZZ_FLAGS adds libFuzzer flags (for example "-max_len=1024").
# A crash stops the script with the fuzzer's exit code; its input is kept in the build folder.
# Undefined behaviour counts as a crash. The long run prints each target's figures:
# executions, seconds, executions per second, peak memory, and the crash count.
set -euo pipefail
cd "$(dirname "$0")/.."
secs=${FUZZ_SECONDS:-20}
preset=fuzz
if [ "${1:-}" = "--ubsan" ]; then
    preset=fuzz-ubsan
    shift
fi
bdir="build/$preset"
runs=""
if [ "${1:-}" = "--runs" ]; then
    runs=${2:?--runs needs a number of executions}
    shift 2
fi
only=${1:-}
cmake --preset "$preset" >/dev/null
shopt -s nullglob
targets=()
for src in fuzz/fuzz_*.cpp; do
    name=$(basename "${src%.cpp}")
    [ -z "$only" ] || [ "$name" = "fuzz_$only" ] || continue
    targets+=("$name")
done
[ ${#targets[@]} -gt 0 ] || { echo "no fuzz target ${only:+named fuzz_$only}" >&2; exit 2; }
cmake --build --preset "$preset" -j "$(nproc)" --target "${targets[@]}"
ran=0
for name in "${targets[@]}"; do
    f="$bdir/fuzz/$name"
    [ -x "$f" ] || continue
    corpus="fuzz/corpus/${name#fuzz_}"
    work="$bdir/corpus-$name"
    mkdir -p "$work"
    seeds=()
    [ -d "$corpus" ] && seeds=("$corpus")
    common=(-rss_limit_mb=2048 -timeout=5 -artifact_prefix="$bdir/$name-")
    # shellcheck disable=SC2206
    common+=(${FUZZ_FLAGS:-})
    if [ -z "$runs" ]; then
        echo "== $name for ${secs}s"
        "$f" -max_total_time="$secs" "${common[@]}" "$work" "${seeds[@]}" 2>&1 | tail -n 3
    else
        log="$bdir/$name-long.log"
        echo "== $name ($preset) for $runs executions (log: $log)"
        start=$(date +%s)
        rc=0
        "$f" -runs="$runs" -print_final_stats=1 "${common[@]}" "$work" "${seeds[@]}" >"$log" 2>&1 || rc=$?
        end=$(date +%s)
        execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)
        speed=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log" | tail -n 1)
        rss=$(sed -n 's/^stat::peak_rss_mb: *//p' "$log" | tail -n 1)
        crashes=$(find "$bdir" -maxdepth 1 \( -name "$name-crash-*" -o -name "$name-timeout-*" -o -name "$name-oom-*" \) | wc -l)
        echo "$name: ${execs:-?} executions in $((end - start)) s (${speed:-?}/s), peak ${rss:-?} MB, crashes: $crashes, exit $rc"
        [ "$rc" -eq 0 ] || exit "$rc"
    fi
    ran=$((ran + 1))
done
echo "fuzzers run: $ran"
