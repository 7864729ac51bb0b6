# Sourced: checks.sh SOURCES BUILD. Sets up a folder of the test's own and what the tests say things with.
set -uo pipefail
sources=$1
build=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LC_ALL=C.UTF-8 HOME=$work
unset DISPLAY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS XDG_RUNTIME_DIR XDG_CONFIG_HOME XDG_DATA_HOME
failures=0

fail() {
    echo "FAILED: $*" >&2
    failures=$((failures + 1))
}

# succeeds WHAT COMMAND...: the command succeeds; its output is shown where it does not.
succeeds() {
    local what=$1
    shift
    "$@" >"$work/output" 2>&1 || { fail "$what"; cat "$work/output" >&2; }
}

# silent WHAT COMMAND...: the command succeeds and has nothing to say.
silent() {
    succeeds "$@"
    [ ! -s "$work/output" ] || { fail "$1"; cat "$work/output" >&2; }
}

# same WHAT EXPECTED ACTUAL: two texts are the same.
same() {
    [ "$2" = "$3" ] || { fail "$1"; diff <(echo "$2") <(echo "$3") >&2; }
}

finish() {
    [ "$failures" -eq 0 ]
}
