#!/usr/bin/env bash
# CI: builds the packages kova and kova-cli (make deb: dpkg-buildpackage + lintian),
# installs them with apt as a user would, and checks the installed result: both programs
# report the project's version, the installed kova-cli checks, rebuilds and runs the
# installed demonstration, the system user of the station exists in group lp, the man pages
# render, the desktop entry, the metainfo and the station's unit validate, and the installed
# desktop program makes ~/Documents/KOVA on first start and opens the installed help
# (under a virtual display, when xvfb-run is there).
# Needs root or sudo (apt-get install).
# usage: check-packages.sh [--no-build]   (--no-build: the packages already in build/deb)
set -euo pipefail
cd "$(dirname "$0")/.."
top=$(pwd)
start=$SECONDS
source tests/e2e/e2e_support.sh  # pass, fail and their count

sudo_cmd=()
[ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)

[ "${1:-}" = "--no-build" ] || make deb
version=$(dpkg-parsechangelog -S Version)
built=$SECONDS

export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends \
    "$top"/build/deb/kova_"$version"_*.deb "$top"/build/deb/kova-cli_"$version"_*.deb
pass "kova and kova-cli $version installed"

[ "$(/usr/bin/kova --version)" = "kova $version" ] && pass "kova --version" || fail "kova --version"
[ "$(/usr/bin/kova-cli --version)" = "kova-cli $version" ] && pass "kova-cli --version" ||
    fail "kova-cli --version"

# The installed kova-cli on the installed demonstration.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
examples=/usr/share/doc/kova-cli/examples
/usr/bin/kova-cli check "$examples/Default.Suf" && pass "kova-cli check on the installed example" ||
    fail "kova-cli check $examples/Default.Suf"
/usr/bin/kova-cli build "$examples/demo.json" -o "$work/Demo.Suf" &&
    cmp -s "$work/Demo.Suf" "$examples/Default.Suf" &&
    cmp -s "$examples/Default.Suf" /usr/share/kova/examples/Default.Suf &&
    pass "the installed demo.json builds the installed Default.Suf" ||
    fail "kova-cli build of the installed demo.json differs from the installed Default.Suf"
if (cd "$work" && /usr/bin/kova-cli run "$examples/Default.Suf" --poll --ticks 5 \
    --start "2026-01-05 08:00:00.000" --state "$work/state.json" >"$work/run.out"); then
    grep -q '"ScanTime"' "$work/state.json" && pass "kova-cli run on the installed example" ||
        fail "kova-cli run wrote no state"
else
    fail "kova-cli run on the installed example: $(cat "$work/run.out")"
fi

# HTTPS of the station's web page, which needs the installed /usr/lib/kova library.
openssl req -x509 -newkey rsa:2048 -nodes -keyout "$work/key.pem" -out "$work/cert.pem" \
    -days 1 -subj /CN=localhost 2>/dev/null
port=$(python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')
(cd "$work" && exec /usr/bin/kova-cli run "$examples/Default.Suf" --poll --http "127.0.0.1:$port" \
    --http-cert "$work/cert.pem" --http-key "$work/key.pem" >"$work/web.out" 2>&1) &
web=$!
if python3 - "$port" <<'PY'; then
import ssl, sys, time, urllib.request
context = ssl._create_unverified_context()
for _ in range(100):
    try:
        with urllib.request.urlopen(f"https://127.0.0.1:{sys.argv[1]}/", context=context, timeout=2) as r:
            sys.exit(0 if r.status == 200 and b"<html" in r.read().lower() else 1)
    except OSError:
        time.sleep(0.1)
sys.exit(1)
PY
    pass "the installed kova-cli serves its web page over HTTPS"
else
    fail "no web page over HTTPS from the installed kova-cli: $(cat "$work/web.out")"
fi
kill "$web" 2>/dev/null
wait "$web" 2>/dev/null || true

# The station's system user, made by sysusers at installation.
if getent passwd kova >/dev/null && id -nG kova | tr ' ' '\n' | grep -qx lp; then
    pass "system user kova, in group lp"
else
    fail "no system user kova in group lp"
fi
[ -d /etc/kova ] && pass "/etc/kova is there" || fail "no /etc/kova"
[ "$(cat /usr/lib/modules-load.d/kova-cli.conf 2>/dev/null | grep -v '^#')" = ppdev ] &&
    pass "ppdev is loaded at boot" || fail "no modules-load.d entry for ppdev"

# Man pages, found and rendered by man.
for page in kova kova-cli; do
    if out=$(MANWIDTH=80 man "$page" 2>&1) && grep -q "KOVA $version" <<<"$out"; then
        pass "man $page"
    else
        fail "man $page: $out"
    fi
done

# Desktop entry, metainfo and the station's unit, installed.
app_id=$(basename "$(dpkg -L kova | grep '^/usr/share/metainfo/.*\.metainfo\.xml$')" .metainfo.xml)
bash tests/tools/validate_desktop_files.sh "/usr/share/applications/$app_id.desktop" \
    "/usr/share/metainfo/$app_id.metainfo.xml" && pass "desktop entry and metainfo validate" ||
    fail "desktop entry or metainfo"
for size in 16x16 22x22 24x24 32x32 48x48 64x64 128x128 256x256 scalable; do
    ls /usr/share/icons/hicolor/$size/apps/"$app_id".* >/dev/null 2>&1 || fail "no $size icon"
done
if out=$(systemd-analyze verify kova-station@demo.service 2>&1) && [ -z "$out" ]; then
    pass "systemd-analyze verify kova-station@demo.service"
else
    fail "systemd-analyze verify: $out"
fi

# The help the installed program's Help menu reads (share/kova beside its bin folder).
grep -q "version $version\." /usr/share/kova/help/kova.html && pass "the installed help names $version" ||
    fail "/usr/share/kova/help/kova.html missing or without the version"

# The installed desktop program as a user starts it from the menu.
if command -v xvfb-run >/dev/null && command -v xdotool >/dev/null; then
    bash tests/e2e/first_start_e2e.sh /usr/bin/kova "$top/build/deb/first-start-shots" &&
        pass "the installed kova makes ~/Documents/KOVA and opens its help" ||
        fail "the installed kova on first start"
fi

echo "packages: built in $((built - start)) s, installed and checked in $((SECONDS - built)) s"
exit $((failures > 0))
