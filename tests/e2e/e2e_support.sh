# Shared by the end-to-end scripts (source it): each runs itself again inside a virtual X
# display, and counts its checks.

# e2e_under_xvfb PREFIX SCRATCH COMMAND... (the screenshot folder last, "" for the default)
# Outside the display: exits 77 (skipped) when xvfb-run, xdotool or ImageMagick's import is
# missing; otherwise runs COMMAND inside xvfb-run with KOVA_E2E_INNER=1 and KOVA_E2E_WORK (a
# new folder /tmp/PREFIX.XXXXXX, whose shots/ holds the screenshots unless a folder is
# given), removes the work folder's SCRATCH when it passed, and exits with its status.
# Inside the display: returns.
e2e_under_xvfb() {
    local prefix=$1 scratch=$2
    shift 2
    [ "${KOVA_E2E_INNER:-}" = 1 ] && return 0
    local tool
    for tool in xvfb-run xdotool import; do
        if ! command -v "$tool" >/dev/null 2>&1; then
            echo "SKIPPED: this test needs $tool (packages xvfb, xdotool, imagemagick)"
            exit 77
        fi
    done
    local work args=("$@")
    work=$(mktemp -d "/tmp/$prefix.XXXXXX")
    local last=$((${#args[@]} - 1))
    [ -n "${args[$last]}" ] || args[$last]="$work/shots"
    mkdir -p "${args[$last]}"
    KOVA_E2E_INNER=1 KOVA_E2E_WORK="$work" xvfb-run -a -s "-screen 0 1280x900x24" "${args[@]}"
    local rc=$?
    echo "screenshots in ${args[$last]}"
    [ $rc -eq 0 ] && rm -rf "${work:?}/$scratch"
    exit $rc
}

failures=0
fail() {
    echo "FAIL: $*"
    failures=$((failures + 1))
}
pass() { echo "ok: $*"; }

# The newest visible window whose caption is exactly $1 (a regular expression), within $2
# seconds.
find_window() {
    timeout "${2:-10}" xdotool search --sync --onlyvisible --name "^$1\$" 2>/dev/null | tail -1
}

# Answers every message box whose caption is $1 (a regular expression, "KOVA" unless told)
# with Return; echoes how many there were.
dismiss_messages() {
    local n=0 w
    while w=$(find_window "${1:-KOVA}" 1) && [ -n "$w" ]; do
        xdotool windowfocus --sync "$w" key Return
        sleep 0.3
        n=$((n + 1))
        [ $n -lt 5 ] || break
    done
    echo $n
}
