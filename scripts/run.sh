#!/usr/bin/env bash
# Starts KOVA in the working folder run/, which holds the demonstration configuration.
set -euo pipefail
cd "$(dirname "$0")/.."
top=$(pwd)
mkdir -p run
if [ ! -f run/Default.Suf ] && [ -f examples/demo.json ]; then
    build/default/tools/kova-cli/kova-cli build examples/demo.json -o run/Default.Suf
fi
cd run
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
    echo "No display found: starting KOVA under xvfb-run (nothing will be visible)." >&2
    exec xvfb-run -a "$top/build/default/src/kova"
fi
exec "$top/build/default/src/kova"
