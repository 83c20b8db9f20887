#!/usr/bin/env bash
# How steady the scan is with every window open, against none: the real program under a
# virtual X display, scanning and logging every 50 ms (the demonstration configuration on
# the TEST module), measured from outside (the time of every write to the log file, by
# inotify) and from inside (kova --tick-trace). Optionally with the cores loaded by busy
# loops. Prints, per run: median, p99, max and the count over 60 ms of the intervals between
# log writes and between ticks, the longest ticks, and the CPU time the program used.
#
# usage: scripts/measure-scan.sh [--seconds N] [--windows all|none|both] [--load N]
#                                [--kova PATH] [--kova-cli PATH] [--no-tick-trace] [--keep DIR]
#   --seconds N   length of each measurement (default 60)
#   --windows     which runs: every window open, none, or both (default both)
#   --load N      N busy loops run beside the program during the measurement (default 0)
#   --kova, --kova-cli   the programs (default: build/default's)
#   --no-tick-trace      for a program built before --tick-trace existed
#   --keep DIR    keep the traces in DIR
# Needs xvfb-run, xdotool and python3. Look at `uptime` first: other work on the machine
# shows in the figures.
set -uo pipefail

here=$(cd "$(dirname "$0")/.." && pwd)
seconds=60
which=both
load=0
kova="$here/build/default/src/kova"
cli="$here/build/default/tools/kova-cli/kova-cli"
trace=1
keep=""
while [ $# -gt 0 ]; do
    case $1 in
        --seconds) seconds=$2; shift 2 ;;
        --windows) which=$2; shift 2 ;;
        --load) load=$2; shift 2 ;;
        --kova) kova=$2; shift 2 ;;
        --kova-cli) cli=$2; shift 2 ;;
        --no-tick-trace) trace=0; shift ;;
        --keep) keep=$2; shift 2 ;;
        *) echo "unknown option $1" >&2; exit 2 ;;
    esac
done
kova=$(realpath "$kova")
cli=$(realpath "$cli")
for tool in xvfb-run xdotool python3; do
    command -v $tool >/dev/null || { echo "measure-scan: needs $tool" >&2; exit 2; }
done
[ -x "$kova" ] && [ -x "$cli" ] || { echo "measure-scan: build kova and kova-cli first" >&2; exit 2; }

if [ "${KOVA_MEASURE_INNER:-}" != 1 ]; then
    work=$(mktemp -d /tmp/kova-measure.XXXXXX)
    echo "machine: $(nproc) cores, $(uptime | sed 's/.*load/load/')"
    runs=$which
    [ "$which" = both ] && runs="all none"
    for w in $runs; do
        KOVA_MEASURE_INNER=1 KOVA_MEASURE_WORK="$work/$w" xvfb-run -a -s "-screen 0 1280x900x24" \
            bash "$0" --seconds "$seconds" --windows "$w" --load "$load" --kova "$kova" \
            --kova-cli "$cli" $([ $trace = 0 ] && echo --no-tick-trace)
    done
    echo "after: $(uptime | sed 's/.*load/load/')"
    if [ -n "$keep" ]; then
        mkdir -p "$keep" && cp -r "$work"/. "$keep"/ && echo "traces in $keep"
    fi
    rm -rf "$work"
    exit 0
fi

# ---- one run, inside the virtual display ------------------------------------------------
work=$KOVA_MEASURE_WORK
mkdir -p "$work"
cd "$work" || exit 1
log="$work/SCAN.CSV"
python3 - "$here/examples/demo.json" "$work/scan.json" "$log" <<'EOF'
import json, sys
d = json.load(open(sys.argv[1]))
# A scan and a log record every 50 ms, every logged tag in the record.
d.update(IOPeriod=50, IOUnits=1, LogPeriod=50, LogUnits=1, TrendAtLogPeriod=0,
         LogFileName=sys.argv[3], OverwriteFile=1, DailyFiles=0)
json.dump(d, open(sys.argv[2], "w"))
EOF
"$cli" build "$work/scan.json" -o "$work/Default.Suf" >/dev/null || exit 1

args=()
[ "$trace" = 1 ] && args=(--tick-trace "$work/ticks.txt")
QT_QPA_PLATFORM=xcb "$kova" "${args[@]}" >"$work/kova.out" 2>&1 &
pid=$!
busy=()
cleanup() {
    for b in "${busy[@]}"; do kill "$b" 2>/dev/null; done
    kill "$pid" 2>/dev/null
    wait "$pid" 2>/dev/null
}
trap cleanup EXIT

find_window() { timeout "${2:-10}" xdotool search --sync --onlyvisible --name "^$1\$" 2>/dev/null | tail -1; }
main=$(find_window "KOVA - Default\.Suf( - .*)?" 60)  # the title ends with the working folder
[ -n "$main" ] || { echo "the main window did not appear"; cat "$work/kova.out"; exit 1; }
sleep 0.5
keys() {
    xdotool windowfocus --sync "$main"
    xdotool key --delay 120 "$@"
    sleep 0.5
}
# Poll I/O has the focus first; Tab moves to Log Data.
xdotool windowfocus --sync "$main"
sleep 0.2
xdotool key space
sleep 0.3
xdotool key Tab space
sleep 1
[ -s "$log" ] || { echo "logging did not start"; cat "$work/kova.out"; exit 1; }

opened=0
if [ "$which" = all ]; then
    # Every window the menus open (Calibration opens nothing for the TEST module).
    for k in "alt+s t" "alt+s p" "alt+s s" "alt+s r" "alt+s l p" "alt+s l s" "alt+s a Return" \
             "alt+s c" "alt+p a" "alt+p d" "alt+v r" "alt+v m" "alt+v t" "alt+v a" "alt+v h"; do
        # shellcheck disable=SC2086
        keys $k
    done
    sleep 1
    opened=$(( $(xdotool search --onlyvisible --name '.' 2>/dev/null | wc -l) ))
fi
sleep 2  # the windows settle

for _ in $(seq 1 "$load"); do
    sh -c 'while :; do :; done' &
    busy+=($!)
done
cpu_before=$(awk '{print $14 + $15}' "/proc/$pid/stat")
: >"$work/ticks.mark"
[ "$trace" = 1 ] && lines_before=$(wc -l <"$work/ticks.txt")
python3 "$here/scripts/scan_trace.py" watch "$log" "$seconds" "$work/writes.txt"
cpu_after=$(awk '{print $14 + $15}' "/proc/$pid/stat")
[ "$trace" = 1 ] && tail -n +"$((lines_before + 1))" "$work/ticks.txt" >"$work/ticks-measured.txt"
for b in "${busy[@]}"; do kill "$b" 2>/dev/null; done
busy=()
kill -0 "$pid" 2>/dev/null || { echo "the program ended during the measurement"; exit 1; }

echo "== windows $which (visible top-level windows: $opened), $load busy loop(s), ${seconds}s"
python3 "$here/scripts/scan_trace.py" stats "$work/writes.txt" \
    "$([ "$trace" = 1 ] && echo "$work/ticks-measured.txt")"
tck=$(getconf CLK_TCK)
awk -v a="$cpu_before" -v b="$cpu_after" -v t="$tck" -v s="$seconds" \
    'BEGIN { printf "program CPU: %.2f s in %d s\n", (b - a) / t, s }'
exit 0
