#!/usr/bin/env bash
# End-to-end test of the real program under a virtual X display: KOVA starts in an empty
# working folder, the main window appears, every menu item is opened and the window it
# opens is checked by its caption, the four run buttons are pressed, the configuration is
# saved and read back, and screenshots are taken.
#
# usage: run_e2e.sh KOVA KOVA-CLI [SHOT-FOLDER]
# Exits 77 (skipped) when xvfb-run, xdotool or ImageMagick's import is missing.
set -uo pipefail

kova=${1:?usage: run_e2e.sh KOVA KOVA-CLI [SHOT-FOLDER]}
cli=${2:?usage: run_e2e.sh KOVA KOVA-CLI [SHOT-FOLDER]}
shots=${3:-}

source "$(dirname "$0")/e2e_support.sh"
e2e_under_xvfb kova-e2e run bash "$0" "$kova" "$cli" "$shots"

# ---- inside the virtual display ---------------------------------------------------------
work=$KOVA_E2E_WORK
run="$work/run"
mkdir -p "$run"
cd "$run" || exit 1

# The working folder named on the command line (without it KOVA would work in
# ~/Documents/KOVA: first_start_e2e.sh tests that).
QT_QPA_PLATFORM=xcb "$kova" "$run" >"$work/kova.out" 2>&1 &
pid=$!
trap 'kill $pid 2>/dev/null; wait $pid 2>/dev/null' EXIT

alive() { kill -0 "$pid" 2>/dev/null; }
shot() { import -window root "$shots/$1.png"; }

# The splash measures the PC's speed first.
splash=$(find_window KOVA 10)
[ -n "$splash" ] && pass "splash shown" || fail "no splash window"
sleep 0.3
shot 01-splash

main=$(find_window "KOVA - Default.Suf - $run" 30)
if [ -z "$main" ]; then
    fail "the main window did not appear"
    cat "$work/kova.out"
    exit 1
fi
pass "main window \"KOVA - Default.Suf - $run\""
sleep 0.5
seen=$(dismiss_messages)
[ "$seen" -gt 0 ] && echo "note: $seen start-up message(s) answered (see $work/kova.out)"
[ -f KOVA_P.CAL ] && pass "KOVA_P.CAL made with the defaults" || fail "no KOVA_P.CAL"
shot 02-main

# Menu keys on the main window.
keys() {
    xdotool windowfocus --sync "$main"
    xdotool key --delay 150 "$@"
    sleep 0.4
}
# Opens a window through its menu keys, checks its caption, screenshots it, leaves it
# with Alt+X (every window has E&xit).
open_and_close() {
    local title=$1 name=$2
    shift 2
    keys "$@"
    local w
    w=$(find_window "$title" 10)
    if [ -z "$w" ]; then
        fail "\"$title\" did not open ($*)"
        return
    fi
    pass "\"$title\" opened"
    # A second click on the item brings the same window forward, no second copy.
    keys "$@"
    local count
    count=$(xdotool search --onlyvisible --name "^$title\$" | wc -l)
    [ "$count" -eq 1 ] && pass "\"$title\" opened once" || fail "\"$title\" opened $count times"
    shot "$name"
    xdotool windowfocus --sync "$w" key alt+x
    sleep 0.4
    # A window whose E&xit checks what it holds may say so first (the tag window names every
    # blank tag of an empty table, then asks whether to leave anyway). Alt+Y answers that
    # question Yes (its default is No); a message box ignores it and takes Return.
    local n=0 e
    while [ $n -lt 40 ] && e=$(find_window ERROR 1) && [ -n "$e" ]; do
        xdotool windowfocus --sync "$e" key alt+y
        sleep 0.2
        if [ -n "$(xdotool search --onlyvisible --name '^ERROR$' 2>/dev/null | grep -x "$e")" ]; then
            xdotool windowfocus --sync "$e" key Return
            sleep 0.2
        fi
        n=$((n + 1))
    done
    [ -z "$(find_window "$title" 1)" ] && pass "\"$title\" closed by E&xit" || fail "\"$title\" still open"
}

open_and_close "I/O And Logging Periods" 10-periods alt+s p
open_and_close "Calibrate QRT105 Analog To Digital Convertor" 11-calibration alt+s a a Return
open_and_close "Set Printer Port Address" 12-printer-port alt+p a
open_and_close "DAQ Type" 13-daq-type alt+p d
open_and_close "KOVA Help" 14-help alt+h
open_and_close "Set Up Screens" 40-setup-screens alt+s s
open_and_close "Screen 1     " 41-view-readings alt+v r
open_and_close "Chart History" 42-history alt+v h
open_and_close "Logging Parameters" 43-logging-parameters alt+s l p
open_and_close "Logging Start/Stop" 44-logging-start-stop alt+s l s
open_and_close "Tag Configuration" 45-tags alt+s t
open_and_close "Control Language" 46-control alt+s c
open_and_close "Alarm Set Up" 47-alarm-setup alt+s a Return
open_and_close "Alarms" 48-alarm-list alt+v a
open_and_close "Maximum And Minimum Readings" 49-min-max alt+v m
open_and_close "SetUp Trends" 50-trend-setup alt+s r
open_and_close "View Trends" 51-trends alt+v t
alive && pass "every menu item answered, the program is running" || fail "the program ended"
shot 59-after-menus

# File New says so.
keys alt+f n
w=$(find_window KOVA 5)
[ -n "$w" ] && pass "File New message" || fail "no \"Configuration Set to Default\" message"
shot 20-file-new
dismiss_messages >/dev/null

# File Load shows the open dialog.
keys alt+f l
w=$(find_window "Open SetUp File" 10)
[ -n "$w" ] && pass "\"Open SetUp File\" dialog" || fail "no \"Open SetUp File\" dialog"
shot 21-file-load
[ -n "$w" ] && xdotool windowfocus --sync "$w" key Escape
sleep 0.3

# The four run buttons, from the keyboard: Poll I/O has the focus first, Tab moves on.
xdotool windowfocus --sync "$main"
sleep 0.2
xdotool key space # Poll I/O on
sleep 0.3
xdotool key Tab space # Log Data: no log file name yet
sleep 0.5
w=$(find_window KOVA 5)
[ -n "$w" ] && pass "Log Data without a log file name is refused with a message" ||
    fail "no message from Log Data"
shot 30-log-data-message
dismiss_messages >/dev/null
xdotool windowfocus --sync "$main"
sleep 0.2
xdotool key Tab space # Alarms on
sleep 0.3
xdotool key Tab space # Control on
sleep 1.5             # a tick or two mirror the switches
shot 31-buttons-on

# Save As, then read the file back with the command line.
keys alt+f a
w=$(find_window "Save SetUp File" 10)
if [ -n "$w" ]; then
    pass "\"Save SetUp File\" dialog"
    shot 32-save-as
    xdotool windowfocus --sync "$w" key ctrl+a
    xdotool type --delay 30 "E2E.SUF"
    xdotool key Return
    sleep 1
else
    fail "no \"Save SetUp File\" dialog"
fi
if [ -f E2E.SUF ]; then
    pass "E2E.SUF saved"
    dump=$("$cli" dump E2E.SUF)
    grep -q '"AlarmsEnabled": 1' <<<"$dump" && pass "Alarms switched on" || fail "Alarms not on in the saved file"
    grep -q '"ControlsEnabled": 1' <<<"$dump" && pass "Control switched on" || fail "Control not on in the saved file"
    grep -q '"LoggingEnabled": {"type": 2, "value": 0}' <<<"$dump" && pass "logging left off" ||
        fail "logging is not off in the saved file"
else
    fail "E2E.SUF was not saved"
fi
[ -n "$(find_window "KOVA - E2E.SUF - $run" 5)" ] && pass "title names E2E.SUF" || fail "title does not name E2E.SUF"

# Everything off again.
xdotool windowfocus --sync "$main"
sleep 0.2
shot 33-before-exit

# File Exit ends the program.
keys alt+f x
for _ in $(seq 1 50); do alive || break; sleep 0.1; done
if alive; then fail "File Exit did not end the program"; else pass "File Exit ended the program"; fi
trap - EXIT

echo "---- program output"
cat "$work/kova.out"
if [ $failures -gt 0 ]; then
    echo "$failures check(s) failed"
    exit 1
fi
echo "all end-to-end checks passed"
exit 0
