#!/usr/bin/env bash
# End-to-end test of the real program while it polls and logs: Chart History is asked to
# open files that are no log file (a FIFO, a link to /dev/zero, a folder, a 5 GB sparse
# file, a file whose header is a megabyte of NULs) and then a good log. Each bad one is
# answered by a message box naming the file and what is wrong, within two seconds, and the
# log file keeps growing all the while. Then the log file is deleted under the logger: it
# comes back with its header and the program says so once.
#
# usage: hostile_history_e2e.sh KOVA KOVA-CLI DEMO-JSON [SHOT-FOLDER]
# Exits 77 (skipped) when xvfb-run, xdotool or ImageMagick's import is missing.
set -uo pipefail

kova=${1:?usage: hostile_history_e2e.sh KOVA KOVA-CLI DEMO-JSON [SHOT-FOLDER]}
cli=${2:?usage: hostile_history_e2e.sh KOVA KOVA-CLI DEMO-JSON [SHOT-FOLDER]}
demo=${3:?usage: hostile_history_e2e.sh KOVA KOVA-CLI DEMO-JSON [SHOT-FOLDER]}
shots=${4:-}

source "$(dirname "$0")/e2e_support.sh"
e2e_under_xvfb kova-hostile run bash "$0" "$kova" "$cli" "$demo" "$shots"

# ---- inside the virtual display ---------------------------------------------------------
work=$KOVA_E2E_WORK
run="$work/run"
bad="$work/bad"
mkdir -p "$run" "$bad"
cd "$run" || exit 1

# The demonstration configuration, logging every second to live.CSV in the working folder;
# its alarms off, so that no alarm line takes the status field from the log's news.
sed -e 's/"LogPeriod": *[0-9]*/"LogPeriod": 1/' -e 's/"AlarmsEnabled": *1/"AlarmsEnabled": 0/' \
    -e 's/"LogFileName": *"[^"]*"/"LogFileName": "live.CSV"/' "$demo" >"$work/demo.json"
if ! "$cli" build "$work/demo.json" -o Default.Suf >"$work/build.out" 2>&1; then
    fail "the demonstration configuration did not build"
    cat "$work/build.out"
    exit 1
fi

# The hostile files, each named *.CSV so that the open dialog lists it.
mkfifo "$bad/fifo.CSV"
ln -s /dev/zero "$bad/zero.CSV"
mkdir "$bad/folder.CSV"
truncate -s 5G "$bad/sparse.CSV"
head -c 1048576 /dev/zero >"$bad/nul.CSV"
printf '\r\n1,2\r\n' >>"$bad/nul.CSV"

QT_QPA_PLATFORM=xcb "$kova" "$run" >"$work/kova.out" 2>&1 &
pid=$!
trap 'kill $pid 2>/dev/null; wait $pid 2>/dev/null' EXIT

alive() { kill -0 "$pid" 2>/dev/null; }
shot() { import -window root "$shots/$1.png"; }
# Message boxes are captioned KOVA (a notice) or ERROR.
message_box() { find_window "(KOVA|ERROR)" "${1:-1}"; }
records() { [ -f live.CSV ] && wc -l <live.CSV || echo 0; }

main=$(find_window "KOVA - Default.Suf - $run" 30)
if [ -z "$main" ]; then
    fail "the main window did not appear"
    cat "$work/kova.out"
    exit 1
fi
pass "main window"
sleep 0.5
dismiss_messages "(KOVA|ERROR)" >/dev/null

# Poll I/O has the focus first; Tab moves to Log Data.
xdotool windowfocus --sync "$main"
sleep 0.2
xdotool key space
sleep 0.3
xdotool key Tab space
sleep 3
dismiss_messages "(KOVA|ERROR)" >/dev/null
shot 01-logging
n=$(records)
if [ "$n" -ge 2 ]; then pass "logging to live.CSV ($n lines)"; else
    fail "live.CSV is not being written ($n lines)"
    cat "$work/kova.out"
    exit 1
fi
header=$(head -1 live.CSV)
cp live.CSV "$bad/good.CSV"

# Chart History from its menu.
xdotool windowfocus --sync "$main"
xdotool key --delay 150 alt+v h
history=$(find_window "Chart History" 10)
[ -n "$history" ] && pass "\"Chart History\" opened" || {
    fail "\"Chart History\" did not open"
    exit 1
}

# choose FILE [WAIT]: Select File, the path typed into the dialog's name field, Return.
# Echoes the milliseconds until the program told why the file cannot be read (the line it
# writes to its error output as its message box goes up), or "none" after WAIT seconds.
told_count() { grep -c "cannot be read" "$work/kova.out"; }
choose() {
    local file=$1 wait=${2:-3}
    xdotool windowfocus --sync "$history" key alt+s
    local dialog
    dialog=$(find_window "Open SetUp File" 10)
    if [ -z "$dialog" ]; then
        echo "no-dialog"
        return
    fi
    xdotool windowfocus --sync "$dialog" key ctrl+a
    xdotool type --delay 10 "$file"
    local start told
    told=$(told_count)
    start=$(date +%s%N)
    xdotool key Return
    local end=$((start + wait * 1000000000))
    while [ "$(date +%s%N)" -lt $end ]; do
        if [ "$(told_count)" -gt "$told" ]; then
            echo $((($(date +%s%N) - start) / 1000000))
            return
        fi
        sleep 0.02
    done
    echo none
}

# check_hostile NAME SHOT: the file is refused with a message, within 2 s, the program
# answers and the log grew meanwhile.
check_hostile() {
    local name=$1 shotname=$2
    local before after ms
    before=$(records)
    ms=$(choose "$bad/$name" 8)
    if [ "$ms" = none ] || [ "$ms" = no-dialog ]; then
        fail "$name: no message ($ms)"
        shot "$shotname"
        # Whatever was left open is closed so that the next file can be tried.
        local d
        d=$(find_window "Open SetUp File" 1)
        [ -n "$d" ] && xdotool windowfocus --sync "$d" key Escape
        dismiss_messages "(KOVA|ERROR)" >/dev/null
        return
    fi
    [ "$ms" -le 2000 ] && pass "$name: told after $ms ms" || fail "$name: told only after $ms ms"
    grep "cannot be read" "$work/kova.out" | tail -1 | grep -qF "$bad/$name" &&
        pass "$name: the message names the file" || fail "$name: the message does not name the file"
    local box
    box=$(message_box 10)
    [ -n "$box" ] && pass "$name: message box shown" || fail "$name: no message box"
    sleep 0.3
    shot "$shotname"
    dismiss_messages "(KOVA|ERROR)" >/dev/null
    sleep 1.5
    after=$(records)
    [ "$after" -gt "$before" ] && pass "$name: the log kept growing ($before -> $after lines)" ||
        fail "$name: the log stopped ($before -> $after lines)"
    alive && pass "$name: the program is running" || fail "$name: the program ended"
}

check_hostile fifo.CSV 10-fifo
check_hostile zero.CSV 11-dev-zero
check_hostile sparse.CSV 12-sparse-5G
check_hostile nul.CSV 13-nul-header

# A folder cannot be chosen in the open dialog: Return there opens the folder. The
# dialog stays, nothing is read and the scan goes on.
before=$(records)
ms=$(choose "$bad/folder.CSV" 2)
d=$(find_window "Open SetUp File" 2)
shot 14-folder
if [ -n "$d" ] && [ "$ms" = none ] && [ -z "$(message_box 1)" ]; then
    pass "folder.CSV: the dialog opened the folder instead of choosing it"
    xdotool windowfocus --sync "$d" key Escape
else
    fail "folder.CSV: expected the dialog to stay open (message: $ms)"
    dismiss_messages "(KOVA|ERROR)" >/dev/null
fi
sleep 1.5
[ "$(records)" -gt "$before" ] && pass "folder.CSV: the log kept growing" ||
    fail "folder.CSV: the log stopped"

# A good log opens without a word and lists its columns.
before=$(records)
ms=$(choose "$bad/good.CSV" 2)
[ "$ms" = none ] && [ -z "$(message_box 1)" ] && pass "good.CSV opened without a message" ||
    fail "good.CSV: unexpected message ($ms)"
shot 15-good
dismiss_messages "(KOVA|ERROR)" >/dev/null
sleep 1
[ "$(records)" -gt "$before" ] && pass "good.CSV: the log kept growing" ||
    fail "good.CSV: the log stopped"
xdotool windowfocus --sync "$history" key alt+x
sleep 0.5

# The log file deleted under the logger comes back with its header, told once.
rm -f live.CSV
sleep 3.5
if [ -f live.CSV ]; then
    pass "live.CSV came back ($(records) lines)"
    [ "$(head -1 live.CSV)" = "$header" ] && pass "live.CSV starts with its header again" ||
        fail "live.CSV came back without its header: $(head -1 live.CSV)"
else
    fail "live.CSV did not come back"
fi
told=$(grep -c "was renamed or deleted while logging" "$work/kova.out")
[ "$told" -eq 1 ] && pass "told once: $(grep "was renamed or deleted" "$work/kova.out")" ||
    fail "the restart was told $told times"
xdotool windowfocus --sync "$main"
sleep 0.5
shot 20-log-restarted
sleep 2
told=$(grep -c "was renamed or deleted while logging" "$work/kova.out")
[ "$told" -eq 1 ] && pass "still told once" || fail "the restart was told $told times"

alive && pass "the program is running" || fail "the program ended"
xdotool windowfocus --sync "$main" key --delay 150 alt+f x
# The switches changed the configuration: "Save changes to ...?" is answered Discard.
w=$(message_box 3)
if [ -n "$w" ]; then
    shot 30-save-changes
    xdotool windowfocus --sync "$w" key alt+d
fi
for _ in $(seq 1 50); do alive || break; sleep 0.1; done
if alive; then
    shot 31-exit
    fail "File Exit did not end the program"
fi
trap - EXIT
rm -rf "${bad:?}"

echo "---- program output"
cat "$work/kova.out"
if [ $failures -gt 0 ]; then
    echo "$failures check(s) failed"
    exit 1
fi
echo "all hostile-history checks passed"
exit 0
