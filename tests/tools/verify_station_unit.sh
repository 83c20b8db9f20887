#!/usr/bin/env bash
# systemd-analyze verify on the station's unit template, instantiated, with ExecStart on the
# kova-cli of this build (verify wants the program to exist). Anything verify says fails
# the test: it only warns about unknown keys. The man page named in Documentation= is
# checked after the package is installed (.ci/run), not here.
# usage: verify_station_unit.sh UNIT-TEMPLATE KOVA-CLI
set -euo pipefail
unit=${1:?usage: verify_station_unit.sh UNIT-TEMPLATE KOVA-CLI}
cli=${2:?usage: verify_station_unit.sh UNIT-TEMPLATE KOVA-CLI}
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
sed "s|/usr/bin/kova-cli|$cli|" "$unit" >"$dir/kova-station@.service"
cd "$dir"
if ! out=$(systemd-analyze verify --man=no ./kova-station@demo.service 2>&1) || [ -n "$out" ]; then
    echo "FAIL: systemd-analyze verify: $out"
    exit 1
fi
echo "systemd-analyze verify: kova-station@demo.service is clean"
