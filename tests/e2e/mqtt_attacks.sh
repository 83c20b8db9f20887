#!/usr/bin/env bash
# The station's MQTT link attacked through a real broker: huge payloads, payloads that try
# to forge output lines, a retained write, a client that takes the station's ID, brokers
# that are not there, and a burst of bad writes. Prints what the station printed and the
# figures (memory before and after, lines), and checks them.
#
# usage: mqtt_attacks.sh KOVA-CLI DEMO-JSON
# Exits 77 (skipped) when mosquitto or its clients are missing.
set -uo pipefail

cli=$(realpath "${1:?usage: mqtt_attacks.sh KOVA-CLI DEMO-JSON}")
demo=$(realpath "${2:?usage: mqtt_attacks.sh KOVA-CLI DEMO-JSON}")
for tool in mosquitto mosquitto_pub mosquitto_sub python3; do
    if ! command -v "$tool" >/dev/null 2>&1; then
        echo "SKIPPED: this test needs $tool (packages mosquitto, mosquitto-clients)"
        exit 77
    fi
done

failures=0
fail() {
    echo "FAIL: $*"
    failures=$((failures + 1))
}
pass() { echo "ok: $*"; }

work=$(mktemp -d /tmp/kova-mqtt-attacks.XXXXXX)
cd "$work" || exit 1
"$cli" build "$demo" -o Plant.SUF >build.out 2>&1 || {
    cat build.out
    exit 1
}
prefix=kova/Plant

free_port() { python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1",0)); print(s.getsockname()[1])'; }
port=$(free_port)
printf 'listener %s 127.0.0.1\nallow_anonymous true\npersistence false\n' "$port" >broker.conf
broker=
start_broker() {
    mosquitto -c broker.conf >broker.log 2>&1 &
    broker=$!
    for _ in $(seq 1 50); do
        python3 -c "import socket; socket.create_connection(('127.0.0.1',$port),0.2)" 2>/dev/null && return
        sleep 0.1
    done
}
station=
start_station() { # OUT, extra arguments
    local out=$1
    shift
    "$cli" run Plant.SUF --poll --port sim --mqtt "127.0.0.1:$port" --mqtt-writes "$@" >"$out.stdout" 2>"$out" &
    station=$!
    sleep 1.5
}
stop_station() {
    kill -INT "$station" 2>/dev/null
    wait "$station" 2>/dev/null
    echo "exit $?" >>"$1"
}
rss() { awk '/VmRSS/ {print $2}' "/proc/$station/status"; }
cleanup() {
    [ -n "$station" ] && kill "$station" 2>/dev/null
    # KILL: mosquitto can miss a TERM that comes just after it opened its port.
    [ -n "$broker" ] && kill -KILL "$broker" 2>/dev/null
    wait 2>/dev/null
}
trap cleanup EXIT
pub() { mosquitto_pub -h 127.0.0.1 -p "$port" "$@"; }

start_broker

# 1. Payloads of 4 MB: refused before they are copied, one short line each.
head -c 4194304 /dev/zero | tr '\0' '7' >big.bin
start_station big.err
before=$(rss)
for _ in $(seq 1 40); do pub -t "$prefix/set/PUMP" -f big.bin; done
sleep 1.5
after=$(rss)
stop_station big.err
echo "4 MB payloads: RSS ${before} kB before, ${after} kB after 40 of them"
refused=$(grep -c "refused: a payload of 4194304 bytes is no number (64 bytes at most)" big.err)
[ "$refused" -eq 40 ] && pass "40 refusals, one line each: $(grep -m1 refused big.err)" ||
    fail "expected 40 refusals, saw $refused"
longest=$(awk '{ if (length($0) > m) m = length($0) } END { print m + 0 }' big.err)
[ "$longest" -le 200 ] && pass "the longest line is $longest characters" ||
    fail "a line of $longest characters"
# One payload at a time is read in whole by the MQTT library, then let go: the memory
# holds one or two of them, not all. (A sanitizer build keeps freed memory on purpose.)
if grep -q -a __asan_init "$cli"; then
    echo "note: a sanitizer build, memory not checked"
elif [ $((after - before)) -lt 20000 ]; then
    pass "memory grew by $((after - before)) kB"
else
    fail "memory grew by $((after - before)) kB"
fi

# 2. A payload with line breaks and an escape sequence: one escaped line.
start_station forge.err
pub -t "$prefix/set/PUMP" -m "$(printf '1\nkova-cli: mqtt: forged line\r\033[2J\033[31mred')"
sleep 1
stop_station forge.err
grep -q "forged" forge.err && {
    lines=$(grep -c "forged" forge.err)
    [ "$lines" -eq 1 ] && pass "forged payload on one line: $(grep forged forge.err)" ||
        fail "the payload made $lines lines"
} || fail "the forged payload was not told"
grep -q $'\033' forge.err && fail "an escape byte reached the output" || pass "no escape byte in the output"
grep -q "^kova-cli: mqtt: forged line" forge.err && fail "a line was forged" || pass "no forged line"

# 3. A retained write is not applied at the start, and is told once; the same write sent
#    live is applied. (SPARE13, a variable the demonstration's control lines leave alone.)
spare13() { python3 -c "import json,sys; print([t['Value'] for t in json.load(open(sys.argv[1]))['tags'] if t['TagName'] == 'SPARE13'][0])" "$1"; }
pub -r -t "$prefix/set/SPARE13" -m 42.5
start_station retained.err --state retained.json
sleep 1
stop_station retained.err
pub -r -n -t "$prefix/set/SPARE13"
told=$(grep -ci "retained" retained.err)
[ "$told" -eq 1 ] && pass "retained write told once: $(grep -i retained retained.err)" ||
    fail "retained write told $told times"
[ "$(spare13 retained.json)" = 0.0 ] && pass "the retained SPARE13=42.5 was not applied" ||
    fail "the retained write was applied: SPARE13 = $(spare13 retained.json)"
start_station live.err --state live.json
pub -t "$prefix/set/SPARE13" -m 42.5
sleep 1
stop_station live.err
[ "$(spare13 live.json)" = 42.5 ] && pass "the same write sent live was applied" ||
    fail "the live write was not applied: SPARE13 = $(spare13 live.json)"

# 4. A second client with the station's client ID: the takeover is told.
start_station takeover.err
id="$prefix@$(hostname)-$(cat KOVA_MQTT.ID 2>/dev/null)"
echo "the station's client ID: $id"
for _ in 1 2 3; do
    timeout 2 mosquitto_sub -h 127.0.0.1 -p "$port" -i "$id" -t nothing >/dev/null 2>&1
done
sleep 2
stop_station takeover.err
grep -qi "client ID\|took its session over" takeover.err &&
    pass "takeover told: $(grep -i -m1 'client ID\|took its session' takeover.err)" ||
    fail "takeover not told"
grep -v '^exit' takeover.err | sed 's/^/    /'

# 5. Brokers that are not there: the cause once each, the run goes on and ends with 0.
"$cli" run Plant.SUF --poll --port sim --mqtt 127.0.0.1:1 >down.out 2>down.err &
station=$!
sleep 4
stop_station down.err
n=$(grep -c "connection refused" down.err)
[ "$n" -eq 1 ] && pass "127.0.0.1:1 told once: $(grep 'connection refused' down.err)" ||
    fail "127.0.0.1:1 told $n times"
grep -q "exit 0" down.err && pass "exit 0" || fail "exit: $(tail -1 down.err)"
"$cli" run Plant.SUF --poll --port sim --mqtt nosuchhost.invalid >dns.out 2>dns.err &
station=$!
sleep 4
stop_station dns.err
n=$(grep -c "cannot be looked up" dns.err)
[ "$n" -eq 1 ] && pass "nosuchhost.invalid told once: $(grep 'looked up' dns.err)" ||
    fail "nosuchhost.invalid told $n times"
station=

# 6. A burst of 50,000 bad writes: how many were dropped is told.
start_station burst.err
before=$(rss)
seq 1 50000 | sed 's/.*/x/' | pub -t "$prefix/set/PUMP" -l
sleep 3
after=$(rss)
stop_station burst.err
refused=$(grep -c "refused" burst.err)
dropped=$(grep "writes were dropped" burst.err | sed 's/.*mqtt: \([0-9]*\) writes.*/\1/' | paste -sd+ | bc)
echo "burst: $refused refusal lines, dropped lines: $(grep -c 'were dropped' burst.err), RSS ${before} -> ${after} kB"
grep "were dropped" burst.err | head -3 | sed 's/^/    /'
[ $((refused + ${dropped:-0})) -eq 50000 ] && pass "every write told or counted ($refused + ${dropped:-0})" ||
    fail "refused $refused + dropped ${dropped:-0} is not 50000"

echo "station output in $work"
if [ $failures -gt 0 ]; then
    echo "$failures check(s) failed"
    exit 1
fi
echo "all MQTT attack checks passed"
rm -rf "$work"
exit 0
