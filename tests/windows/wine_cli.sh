#!/usr/bin/env bash
# Stands in for kova-cli in the command-line tests: runs kova-cli.exe (the path in
# KOVA_WINDOWS_CLI) under wine. A Windows console ends lines with CR LF; the tests compare
# text, so the CRs are taken out of what it prints. The exit code is kova-cli.exe's.
set -u
exe=${KOVA_WINDOWS_CLI:?KOVA_WINDOWS_CLI names kova-cli.exe}
err=$(mktemp)
wine "$exe" "$@" 2>"$err" | tr -d '\r'
rc=${PIPESTATUS[0]}
tr -d '\r' <"$err" >&2
rm -f "$err"
exit "$rc"
