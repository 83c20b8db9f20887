#!/usr/bin/env bash
# The Windows station under wine: the engine's test suites built for Windows pass;
# kova-cli.exe (scripts/check-windows-build.sh --with-tests) passes the
# command-line tests of the Linux build (build/default, `make test`), and every file it
# writes in the station scenarios equals the Linux build's byte for byte.
# Installs wine when it is missing.
set -euo pipefail
cd "$(dirname "$0")/.."
top=$(pwd)
exe="$top/build/windows/tools/kova-cli/kova-cli.exe"
linux_cli="$top/build/default/tools/kova-cli/kova-cli"
cli_tests="$top/build/default/tests/cli_tests"
for f in "$exe" "$linux_cli" "$cli_tests"; do
    [ -x "$f" ] || { echo "check-windows-station: $f is missing (run make test and scripts/check-windows-build.sh first)" >&2; exit 2; }
done
if ! command -v wine >/dev/null || [ ! -x /usr/lib/wine/wine64 ]; then
    sudo_cmd=(); [ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
    "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends wine wine64
fi

work="$top/build/windows/station-check"
mkdir -p "$work"
export WINEDEBUG=-all
export WINEPREFIX="$top/build/windows/wineprefix"
# The first start makes the prefix; its chatter stays out of the checks.
wine cmd /c exit >/dev/null 2>&1 || true

echo "== the engine's test suites, built for Windows, under wine"
suites=("$top"/build/windows/tests/*_tests.exe)
if [ ! -x "${suites[0]}" ]; then
    echo "check-windows-station: no Windows test suites (scripts/check-windows-build.sh --with-tests)" >&2
    exit 2
fi
for suite in "${suites[@]}"; do
    echo "-- $(basename "$suite")"
    (cd "$top/build/windows/tests" && KOVA_SOURCE_DIR="$top" wine "$suite" --gtest_brief=1) | tr -d '\r'
    [ "${PIPESTATUS[0]}" -eq 0 ] || { echo "FAIL: $(basename "$suite") under wine"; exit 1; }
done

echo "== the command-line tests with kova-cli.exe under wine"
# Left out, as they test what only Linux has:
# - runs ended by SIGKILL, SIGTERM or SIGINT: a signal sent from Linux reaches wine's loader,
#   not the Windows program (on Windows a run ends on Ctrl+C);
# - /dev/full, /dev/zero and FIFOs: Windows has no such files;
# - the calibration file named by its Linux path: on Windows it is named by its Windows path
#   ("Z:\tmp\...\KOVA_P.CAL" under wine);
# - the systemd notify protocol of the service: the Windows build has no systemd;
# - a log file renamed or deleted while logging: Windows refuses to rename or delete a file
#   that is open for writing, and the test does it from Linux, past wine's sharing rules
#   (it also ends the run with SIGTERM).
linux_only='CliRun.KilledMidRun*:CliRun.Terminated*:CliRunModules.*Sig*'
linux_only+=':CliHostile.*DevZeroOrAFifo*:CliHostile.*FullDisk*'
linux_only+=':CliHostile.RunReportsABadCalibrationFileAsTheProgramDoesAndGoesOn'
linux_only+=':CliRunNotify.*'
linux_only+=':CliRun.ALogFileRenamedOrDeletedMidRun*'
(cd "$top/build/default/tests" &&
    KOVA_CLI="$top/tests/windows/wine_cli.sh" KOVA_WINDOWS_CLI="$exe" KOVA_SOURCE_DIR="$top" \
        "$cli_tests" --gtest_brief=1 --gtest_filter="-$linux_only")

echo "== every file kova-cli.exe writes equals the Linux build's"
bash "$top/tests/windows/compare_with_linux.sh" "$linux_cli" "$exe" "$work"

echo "== a real module with no port DLL says so clearly and goes on"
no_dll="$work/no-dll"
rm -rf "$no_dll"
mkdir -p "$no_dll"
cp "$work/inputs/T1.SUF" "$no_dll/"
set +e
(cd "$no_dll" && wine "$exe" run T1.SUF --start "2026-03-14 10:00:00" --ticks 3 --poll \
    >stdout.txt 2>stderr.txt)
rc=$?
set -e
if [ $rc -eq 0 ] && grep -q "inpoutx64.dll could not be loaded" "$no_dll/stderr.txt" &&
    [ "$(grep -c . "$no_dll/stderr.txt")" -eq 1 ]; then
    echo "ok: without inpoutx64.dll: $(tr -d '\r' <"$no_dll/stderr.txt")"
else
    echo "FAIL: without inpoutx64.dll the run said (exit $rc):"
    cat "$no_dll/stderr.txt"
    exit 1
fi
echo "windows station: all checks passed"
