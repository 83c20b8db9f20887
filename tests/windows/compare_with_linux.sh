#!/usr/bin/env bash
# Runs the same kova-cli scenarios with the Linux build and with kova-cli.exe under wine,
# each in a folder of its own, and compares every file they write byte for byte, and what
# they print (line ends aside: a Windows console writes CR LF).
#
# usage: compare_with_linux.sh LINUX-KOVA-CLI KOVA-CLI.EXE WORK-FOLDER
# Needs wine (WINEPREFIX and WINEDEBUG are set by the caller or here).
set -uo pipefail

linux_cli=${1:?usage: compare_with_linux.sh LINUX-KOVA-CLI KOVA-CLI.EXE WORK-FOLDER}
windows_cli=${2:?usage: compare_with_linux.sh LINUX-KOVA-CLI KOVA-CLI.EXE WORK-FOLDER}
work=${3:?usage: compare_with_linux.sh LINUX-KOVA-CLI KOVA-CLI.EXE WORK-FOLDER}
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
export WINEDEBUG=${WINEDEBUG:--all}
export WINEPREFIX=${WINEPREFIX:-$work/wineprefix}
wine cmd /c exit >/dev/null 2>&1 || true  # the first start makes the prefix

rm -rf "$work/linux" "$work/windows" "$work/inputs"
mkdir -p "$work/linux" "$work/windows" "$work/inputs"
failures=0
checks=0

# The demonstration configuration on every module type (0 TEST .. 5 QRTU).
for type in 0 1 2 3 4 5; do
    python3 - "$source_dir/examples/demo.json" "$work/inputs/type$type.json" "$type" <<'PY'
import json, sys
d = json.load(open(sys.argv[1]))
d["DaqType"] = int(sys.argv[3])
json.dump(d, open(sys.argv[2], "w"), indent=1)
PY
done

# scenario NAME ARGS...: runs kova-cli with ARGS in linux/NAME and windows/NAME.
scenario() {
    local name=$1
    shift
    local side cli
    for side in linux windows; do
        mkdir -p "$work/$side/$name"
        cp "$work"/inputs/* "$work/$side/$name/"
        (
            cd "$work/$side/$name" || exit 1
            if [ "$side" = linux ]; then
                "$linux_cli" "$@" >stdout.txt 2>stderr.txt
            else
                wine "$windows_cli" "$@" >stdout.txt 2>stderr.txt
            fi
            echo $? >exit-code.txt
        )
        # The measured PC speed is the one line that depends on the machine.
        for f in stdout.txt stderr.txt; do
            tr -d '\r' <"$work/$side/$name/$f" | grep -v '^PC SPEED=' >"$work/$side/$name/$f.tmp"
            mv "$work/$side/$name/$f.tmp" "$work/$side/$name/$f"
        done
        # So is the measured scan time.
        if [ -f "$work/$side/$name/state.json" ]; then
            python3 - "$work/$side/$name/state.json" <<'PY'
import json, sys
p = sys.argv[1]
d = json.load(open(p))
d.pop("ScanTime", None)
json.dump(d, open(p, "w"), indent=1, sort_keys=True)
PY
        fi
    done
    checks=$((checks + 1))
    if diff -r "$work/linux/$name" "$work/windows/$name" >"$work/$name.diff"; then
        echo "ok: $name ($(find "$work/linux/$name" -type f | wc -l) files equal)"
        rm -f "$work/$name.diff"
    else
        echo "FAIL: $name differs:"
        head -20 "$work/$name.diff"
        failures=$((failures + 1))
    fi
}

start="2026-03-14 23:59:50.000"
scenario build build type0.json -o DEMO.SUF
for type in 0 1 2 3 4 5; do
    scenario "build-type$type" build "type$type.json" -o "T$type.SUF"
done
# What the later scenarios read is what the Linux build wrote: the files agree already.
cp "$work/linux/build/DEMO.SUF" "$work/inputs/"
for type in 1 2 3 4 5; do cp "$work/linux/build-type$type/T$type.SUF" "$work/inputs/"; done

scenario dump dump DEMO.SUF
scenario check check DEMO.SUF
scenario run-logging run DEMO.SUF --start "$start" --ticks 40 --poll --log --save OUT.SUF \
    --state state.json
for type in 1 2 3 4 5; do
    scenario "run-sim-type$type" run "T$type.SUF" --start "$start" --ticks 12 --poll --log \
        --port sim --save OUT.SUF --state state.json
done

echo "$((checks - failures)) passed, $failures failed"
[ $failures -eq 0 ]
