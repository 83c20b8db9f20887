#!/usr/bin/env bash
# Starts KOVA in the working folder run/, which holds the demonstration configuration
# ("Default.Suf", built from examples/demo.json when it is not there yet). Without the
# example, or when it cannot be built, KOVA starts on its defaults.
set -euo pipefail
cd "$(dirname "$0")/.."
top=$(pwd)
build="$top/build/default"
mkdir -p run
if [ ! -f run/Default.Suf ] && [ -f examples/demo.json ]; then
    if "$build/tools/kova-cli/kova-cli" build examples/demo.json -o run/Default.Suf.new; then
        mv run/Default.Suf.new run/Default.Suf
    else
        rm -f run/Default.Suf.new
        echo "run: the demonstration configuration could not be built; KOVA starts on its defaults." >&2
    fi
fi
cd run
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
    echo "No display found: starting KOVA under xvfb-run (nothing will be visible)." >&2
    exec xvfb-run -a "$build/src/kova" "$top/run"
fi
exec "$build/src/kova" "$top/run"
