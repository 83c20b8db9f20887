#!/usr/bin/env bash
# The desktop entry and the AppStream metainfo as a desktop and a software centre read
# them: desktop-file-validate must say nothing at all (it prints hints and warnings even
# when it passes), appstreamcli validate must pass without network (it cannot fetch the
# screenshot here) and report no warning.
# usage: validate_desktop_files.sh FILE.desktop FILE.metainfo.xml
set -uo pipefail
desktop=${1:?usage: validate_desktop_files.sh FILE.desktop FILE.metainfo.xml}
metainfo=${2:?usage: validate_desktop_files.sh FILE.desktop FILE.metainfo.xml}
failures=0
if ! out=$(desktop-file-validate "$desktop" 2>&1) || [ -n "$out" ]; then
    echo "FAIL: desktop-file-validate $desktop: $out"
    failures=$((failures + 1))
fi
if ! out=$(appstreamcli validate --no-net --pedantic "$metainfo" 2>&1) ||
    ! grep -q "Validation was successful" <<<"$out" || grep -qE "^[WEIP]:" <<<"$out"; then
    echo "FAIL: appstreamcli validate $metainfo: $out"
    failures=$((failures + 1))
fi
[ $failures -eq 0 ] && echo "the desktop entry and the metainfo validate cleanly"
exit $((failures > 0))
