# A demo world: the monitor among its companions, in a home of its own. Sourced by the demo and by the tests of the whole
# program, which set: root (the tree), build (a build folder), own_display (non-empty to bring a desktop), host (panel
# or trayer). What the console reads comes from descriptor 3.

# shellcheck source=Tools/demo/desktop.sh
source "$root/Tools/demo/desktop.sh"

# demo LANGUAGE LOOK ARGUMENTS...: one world from its first file to its end; the arguments go to the console.
demo() (
    set -euo pipefail
    local lang=$1 look=$2
    shift 2
    home=$(mktemp -d "${TMPDIR:-/tmp}/corvane-demo.XXXXXX")
    console=
    # The console ends its programs by itself; it must have done so before their display goes.
    cleanup() {
        trap - EXIT INT TERM HUP
        if [[ -n $console ]] && kill -TERM "$console" 2>/dev/null; then
            wait "$console" || true
        fi
        stop_desktop
        rm -rf "$home"
    }
    trap cleanup EXIT
    trap 'exit 130' INT TERM HUP

    export HOME=$home XDG_CONFIG_HOME=$home/.config XDG_CACHE_HOME=$home/.cache XDG_DATA_HOME=$home/.local/share
    mkdir -p "$home/logs"
    if [[ $own_display ]]; then
        export XDG_RUNTIME_DIR=$home/runtime NO_AT_BRIDGE=1
        unset SESSION_MANAGER XDG_CURRENT_DESKTOP
        [[ $host == panel ]] && export XDG_CURRENT_DESKTOP=XFCE
        mkdir -m 700 "$XDG_RUNTIME_DIR"
        write_panel_settings "$home" "$look"
        start_session_bus "$home/logs/bus"
        start_display "$home/logs/display"
        if [[ $look == dark ]]; then paint_root '#23272e'; else paint_root '#c9d3df'; fi
        if [[ $host == trayer ]]; then
            start_trayer "$home/logs/trayer" "$look"
        else
            start_panel "$home/logs/panel"
        fi
    elif [[ -z ${DBUS_SESSION_BUS_ADDRESS:-} ]]; then
        start_session_bus "$home/logs/bus"
    fi

    local companions=$build/bin/companions
    # A link and no copy: the program that runs has its table beside it, and the name that it is looked for by.
    mkdir -p "$XDG_DATA_HOME/Corvane/bin"
    ln -s "$companions/Corvane" "$XDG_DATA_HOME/Corvane/bin/Corvane"
    "$companions/corvane-main-application" language "$lang" >/dev/null
    "$companions/corvane-main-application" appearance "$look" >/dev/null
    "$companions/corvane-console" --screenshot-tool "$root/Tools/demo/screenshot" --out "$root/out" \
        --first "$root/Tools/demo/start.commands" "$@" <&3 &
    console=$!
    local status=0
    wait "$console" || status=$?
    console=
    return "$status"
)
