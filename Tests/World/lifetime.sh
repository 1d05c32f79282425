# A desktop and a home for one monitor, sourced with the build folder as argument. The test starts what it needs of
# bus, display and panel, in its order. Exits with the first expectation that does not hold.
set -euo pipefail

# A leak found by a sanitizer is known by its whole stack only, and the quick way to take one stops inside libraries.
export ASAN_OPTIONS=${ASAN_OPTIONS:+$ASAN_OPTIONS:}fast_unwind_on_malloc=0

root=$(readlink -f "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../..")
monitor=$(readlink -f "$1")/bin/corvane-monitor
source "$root/Tools/demo/desktop.sh"
unset DISPLAY DBUS_SESSION_BUS_ADDRESS LC_ALL QT_QPA_PLATFORM SESSION_MANAGER

home=$(mktemp -d)
export HOME=$home XDG_CONFIG_HOME=$home/.config XDG_RUNTIME_DIR=$home/runtime NO_AT_BRIDGE=1 XDG_CURRENT_DESKTOP=XFCE
export DBUS_SESSION_BUS_ADDRESS=unix:path=$home/runtime/bus
mkdir -m 700 "$XDG_RUNTIME_DIR"
cleanup() {
    [[ -n ${bus-} ]] && kill -CONT "$bus" 2>/dev/null || true
    monitors | xargs -r kill -KILL 2>/dev/null || true
    stop_desktop
    rm -rf "$home"
}
trap cleanup EXIT

# The processes of this home's monitor; one that starts itself anew is another process.
monitors() {
    local process
    for process in /proc/[0-9]*; do
        [[ $(readlink "$process/exe" 2>/dev/null) == "$monitor" ]] || continue
        tr '\0' '\n' 2>/dev/null <"$process/environ" | grep -qxF "HOME=$home" && echo "${process#/proc/}"
    done || true
}
# only_monitor PROCESS, monitor_after PROCESS: whether one monitor runs, that one, or another than that. To be waited for:
# a program that the monitor is about to start looks like a second one for a moment.
only_monitor() { [[ $(monitors) == "$1" ]]; }
monitor_after() {
    local now
    now=$(monitors)
    [[ $now =~ ^[0-9]+$ && $now != "$1" ]]
}
one_item() {
    [[ $(dbus-send --session --print-reply --dest=org.kde.StatusNotifierWatcher /StatusNotifierWatcher \
        org.freedesktop.DBus.Properties.Get string:org.kde.StatusNotifierWatcher \
        string:RegisteredStatusNotifierItems 2>/dev/null | grep -c '/StatusNotifierItem"') == 1 ]]
}
# Whether an icon of the monitor stands in a tray of the older kind: a window within one of the tray's.
embedded() {
    local window
    for window in $(xwininfo -root -tree | awk '/"corvane-monitor"/ {print $1}'); do
        xwininfo -id "$window" -tree 2>/dev/null | grep -q 'Parent window id' || continue
        xwininfo -id "$window" -tree 2>/dev/null | grep -q 'Parent window id.*(the root window)' || return 0
    done
    return 1
}
start_bus() {
    rm -f "$home/runtime/bus"
    dbus-daemon --session --nofork --address="$DBUS_SESSION_BUS_ADDRESS" >"$home/bus.log" 2>&1 &
    bus=$!
    desktop_pids+=("$bus")
    until_true 10 test -S "$home/runtime/bus"
}
on_the_bus() {
    dbus-send --session --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.NameHasOwner \
        string:com.halvernet.CorvaneMonitor | grep -q 'boolean true'
}
fail() { echo "FAILED: $1" >&2; exit 1; }
gone() { [[ -z $(monitors) ]]; }

# milliseconds COMMAND...: puts into `took` how long the command takes; its status is the command's.
milliseconds() {
    local begun=${EPOCHREALTIME/./} status=0
    "$@" || status=$?
    took=$(((${EPOCHREALTIME/./} - begun) / 1000))
    return $status
}

# ends_in_time PROCESS WHAT: SIGTERM ends the child with status 0, within two seconds and a little.
ends_in_time() {
    local guard
    (sleep 10 && kill -KILL "$1") &
    guard=$!
    kill -TERM "$1"
    milliseconds wait "$1" || fail "$2: SIGTERM gave status $?"
    kill "$guard"
    wait "$guard" 2>/dev/null || true
    ((took < 2500)) || fail "$2: it took $took ms to go"
    echo "ok: $2: gone after $took ms"
}
