#!/usr/bin/env bash
# The program as a user starts it from the desktop menu, under a virtual X display: no
# folder given, a home folder without a KOVA folder. KOVA makes ~/Documents/KOVA with the
# demonstration as Default.Suf, works there and says so in its title; Help shows the
# installed manual. A second start keeps what the user changed there. Screenshots go to
# SHOT-FOLDER.
#
# usage: first_start_e2e.sh KOVA [SHOT-FOLDER]
# Exits 77 (skipped) when xvfb-run, xdotool or ImageMagick's import is missing.
set -uo pipefail

kova=${1:?usage: first_start_e2e.sh KOVA [SHOT-FOLDER]}
shots=${2:-}

source "$(dirname "$0")/e2e_support.sh"
e2e_under_xvfb kova-first home bash "$0" "$kova" "$shots"

# ---- inside the virtual display ---------------------------------------------------------
work=$KOVA_E2E_WORK

# A user of their own: the documents folder is ~/Documents (no user-dirs.dirs).
export HOME="$work/home"
unset XDG_CONFIG_HOME XDG_DOCUMENTS_DIR
mkdir -p "$HOME/somewhere"
cd "$HOME/somewhere" || exit 1
title="KOVA - Default.Suf - ~/Documents/KOVA"

start() {
    QT_QPA_PLATFORM=xcb "$kova" >>"$work/kova.out" 2>&1 &
    pid=$!
    main=$(timeout 30 xdotool search --sync --onlyvisible --name "^$title\$" 2>/dev/null | tail -1)
}
stop() {
    xdotool windowfocus --sync "$main" key alt+f x 2>/dev/null
    for _ in $(seq 50); do kill -0 "$pid" 2>/dev/null || break; sleep 0.1; done
    kill "$pid" 2>/dev/null
    wait "$pid" 2>/dev/null
}
trap 'kill $pid 2>/dev/null' EXIT

start
if [ -z "$main" ]; then
    fail "no main window titled \"$title\""
    cat "$work/kova.out"
    exit 1
fi
pass "main window titled \"$title\""
docs="$HOME/Documents/KOVA"
[ -f "$docs/Default.Suf" ] && pass "the demonstration was copied into ~/Documents/KOVA" ||
    fail "no ~/Documents/KOVA/Default.Suf"
[ -f "$docs/KOVA_P.CAL" ] && pass "KOVA_P.CAL made in the working folder, not where KOVA started" ||
    fail "no KOVA_P.CAL in ~/Documents/KOVA"
[ ! -e "$HOME/somewhere/KOVA_P.CAL" ] || fail "KOVA_P.CAL was made in the folder KOVA started in"
sleep 0.5
import -window root "$shots/first-start.png"

# Help, from the menu bar's Help command: the installed manual with the version.
xdotool windowfocus --sync "$main" key alt+h
help=$(timeout 10 xdotool search --sync --onlyvisible --name "^KOVA Help\$" 2>/dev/null | tail -1)
[ -n "$help" ] && pass "Help opens the manual" || fail "Help did not open"
sleep 0.5
import -window root "$shots/first-start-help.png"
[ -n "$help" ] && xdotool windowfocus --sync "$help" key alt+x
sleep 0.3
stop

# A second start: the folder is there, the user's own Default.Suf is not replaced.
echo "the user's own" >"$docs/marker"
start
[ -n "$main" ] && pass "a second start works in ~/Documents/KOVA again" || fail "no main window on the second start"
[ -f "$docs/marker" ] && pass "the folder was left as it was" || fail "the folder was made again"
stop

[ $failures -eq 0 ] && echo "PASSED" || echo "$failures failure(s)"
exit $((failures > 0))
