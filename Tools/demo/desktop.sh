# A desktop for programs that look for one: sourced by the demo and by the tests that need a real panel.
# Each start_* puts the id of what it starts in desktop_pids; stop_desktop ends those, newest first.

desktop_pids=()

stop_desktop() {
    local i
    for ((i = ${#desktop_pids[@]} - 1; i >= 0; i--)); do
        kill "${desktop_pids[i]}" 2>/dev/null || true
        wait "${desktop_pids[i]}" 2>/dev/null || true
    done
    desktop_pids=()
}

# until_true SECONDS COMMAND...: polls; fails when the time is over.
until_true() {
    local deadline=$((SECONDS + $1))
    shift
    until "$@" >/dev/null 2>&1; do
        ((SECONDS < deadline)) || return 1
        sleep 0.05
    done
}

# start_session_bus LOG: a bus of our own, so that nothing of the user's session is touched.
start_session_bus() {
    local address_file=$1.address
    : >"$address_file"
    dbus-daemon --session --nofork --print-address=3 3>"$address_file" >"$1" 2>&1 &
    desktop_pids+=($!)
    until_true 10 test -s "$address_file" || { echo "no session bus; see $1" >&2; return 1; }
    DBUS_SESSION_BUS_ADDRESS=$(<"$address_file")
    export DBUS_SESSION_BUS_ADDRESS
}

# start_display LOG: an X server on a free number, and a window manager.
start_display() {
    local number_file=$1.number
    : >"$number_file"
    Xvfb -displayfd 3 -screen 0 1600x1200x24 -nolisten tcp -noreset 3>"$number_file" >"$1" 2>&1 &
    desktop_pids+=($!)
    until_true 10 test -s "$number_file" || { echo "no display; see $1" >&2; return 1; }
    DISPLAY=:$(<"$number_file")
    export DISPLAY
    unset WAYLAND_DISPLAY
    openbox >"$1.openbox" 2>&1 &
    desktop_pids+=($!)
}

# paint_root COLOUR: the bare X server shows black, which hides a dark tool tip.
paint_root() { display -window root -size 32x32 "xc:$1" 2>/dev/null || true; }

# write_panel_settings HOME light|dark: one panel on top with the host of status items at its right end.
write_panel_settings() {
    local folder=$1/.config/xfce4/xfconf/xfce-perchannel-xml dark=false
    [[ $2 == dark ]] && dark=true
    mkdir -p "$folder" "$1/.config/gtk-3.0"
    cat >"$folder/xfce4-panel.xml" <<END
<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="dark-mode" type="bool" value="$dark"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="28"/>
      <property name="icon-size" type="uint" value="16"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
        <value type="int" value="2"/>
        <value type="int" value="3"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="separator">
      <property name="expand" type="bool" value="true"/>
      <property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-2" type="string" value="systray">
      <property name="square-icons" type="bool" value="true"/>
    </property>
    <property name="plugin-3" type="string" value="clock"/>
  </property>
</channel>
END
    cat >"$1/.config/gtk-3.0/settings.ini" <<END
[Settings]
gtk-theme-name=Adwaita
gtk-icon-theme-name=Adwaita
gtk-application-prefer-dark-theme=$dark
gtk-font-name=Sans 10
END
}

has_status_item_host() {
    dbus-send --session --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.NameHasOwner \
        string:org.kde.StatusNotifierWatcher | grep -q 'boolean true'
}

# start_panel LOG: the panel that write_panel_settings has described; returns when it takes status items.
start_panel() {
    GDK_SCALE=2 xfce4-panel --disable-wm-check >"$1" 2>&1 &
    desktop_pids+=($!)
    until_true 20 has_status_item_host || { echo "the panel does not come up; see $1" >&2; return 1; }
}

# start_trayer LOG light|dark: a host of the older kind, for embedded icons.
start_trayer() {
    local tint=0xf6f5f4
    [[ $2 == dark ]] && tint=0x353535
    trayer --edge top --align right --widthtype request --height 24 --transparent true --alpha 0 \
        --tint "$tint" --SetDockType true >"$1" 2>&1 &
    desktop_pids+=($!)
    # Its panel shows itself with the first icon; the hidden window is there as soon as it takes icons.
    until_true 10 xdotool search --class trayer || { echo "the tray does not come up; see $1" >&2; return 1; }
}
