#!/usr/bin/env bash
# Runs a command in a desktop session of its own: home, bus and whatever of display, sound and keyring it asks for.
# Several may run side by side. Everything ends with the command, and its exit status is returned.
#
#   desktop-session.sh [options] [--] command [arguments]
#     --display [WxHxDEPTH]  an X server without a screen (1280x800x24)
#     --sound                a sound server; what it plays can be recorded from "out.monitor", and what is played
#                            into the sink "mic" is the microphone
#     --keyring              an unlocked secret service
#     --accessibility        the accessibility bus switched on
#     --bare-bus             a message bus that starts no service by itself
#
# The command finds SESSION_DIR (gone afterwards), HOME, XDG_*, DBUS_SESSION_BUS_ADDRESS and, if asked for, DISPLAY,
# PULSE_SERVER, SESSION_PULSE_PID and SESSION_X_PID. Needs dbus-daemon; and xvfb, pulseaudio with pulseaudio-utils or
# gnome-keyring for the options.
set -u

fail() {
    echo "desktop-session.sh: $*" >&2
    exit 69
}

await() { # await WHAT COMMAND...: until it succeeds, at most 10 s
    local what=$1 tries=0
    shift
    until "$@" >/dev/null 2>&1; do
        tries=$((tries + 1))
        [ $tries -lt 200 ] || fail "$what did not come up"
        sleep 0.05
    done
}

start() { # start LOG COMMAND...: a server that dies with this session, even if the session is killed
    local log=$session/$1.log
    shift
    setpriv --pdeathsig KILL "$@" <&0 >"$log" 2>&1 &
    servers+=($!)
}

start_bus() {
    local kind=--session
    if [ -n "$bare_bus" ]; then
        write_bare_bus "$session/bus.conf"
        kind=--config-file=$session/bus.conf
    fi
    start bus dbus-daemon "$kind" --nofork --nopidfile --address="unix:path=$XDG_RUNTIME_DIR/bus"
    export DBUS_SESSION_BUS_ADDRESS=unix:path=$XDG_RUNTIME_DIR/bus
    await "the message bus" test -S "$XDG_RUNTIME_DIR/bus"
}

write_bare_bus() {
    cat >"$1" <<'XML'
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
XML
}

start_display() {
    exec {number}<> <(:)
    start xvfb Xvfb -displayfd $number -screen 0 "$display" -nolisten tcp -noreset
    export SESSION_X_PID=${servers[-1]}
    read -r -t 10 -u $number display || fail "the X server did not come up: $(cat "$session/xvfb.log")"
    exec {number}>&-
    export DISPLAY=:$display
    # Persian text can only be typed by a keymap that has it.
    setxkbmap -layout us,ir 2>/dev/null
}

start_sound() {
    export PULSE_SERVER=unix:$XDG_RUNTIME_DIR/pulse.socket
    # Without norewinds a null sink's monitor lags and drops whole seconds.
    start pulse pulseaudio -n --daemonize=no --exit-idle-time=-1 --use-pid-file=no --disable-shm=yes \
        --realtime=no --high-priority=no \
        -L "module-native-protocol-unix socket=$XDG_RUNTIME_DIR/pulse.socket auth-anonymous=1" \
        -L "module-null-sink sink_name=out rate=48000 norewinds=1" \
        -L "module-null-sink sink_name=mic rate=48000 norewinds=1"
    export SESSION_PULSE_PID=${servers[-1]}
    await "the sound server" pactl info
    pactl set-default-sink out
    pactl set-default-source mic.monitor
}

start_keyring() {
    # An empty line is the password; without it there is no default collection.
    echo >"$session/password"
    start keyring gnome-keyring-daemon --foreground --unlock --components=secrets \
        --control-directory="$session/keyring" <"$session/password"
    await "the secret service" gdbus call --session --dest org.freedesktop.DBus \
        --object-path /org/freedesktop/DBus --method org.freedesktop.DBus.GetNameOwner org.freedesktop.secrets
}

end_session() {
    [ ${#servers[@]} -eq 0 ] || kill "${servers[@]}" 2>/dev/null
    wait
    rm -rf "$session"
}

display= sound= keyring= accessibility= bare_bus=
while [ $# -gt 0 ]; do
    case $1 in
    --display)
        display=1280x800x24
        case ${2:-} in [0-9]*x[0-9]*x[0-9]*) display=$2 && shift ;; esac
        ;;
    --sound) sound=yes ;;
    --keyring) keyring=yes ;;
    --accessibility) accessibility=yes ;;
    --bare-bus) bare_bus=yes ;;
    --) shift && break ;;
    -*) fail "what is $1?" ;;
    *) break ;;
    esac
    shift
done
[ $# -gt 0 ] || fail "no command"

session=$(mktemp -d "${TMPDIR:-/tmp}/desktop-session.XXXXXX") || fail "no folder"
servers=()
trap end_session EXIT
mkdir -m 700 "$session"/{home,runtime}
export SESSION_DIR=$session HOME=$session/home XDG_RUNTIME_DIR=$session/runtime
export XDG_CONFIG_HOME=$HOME/.config XDG_DATA_HOME=$HOME/.local/share XDG_CACHE_HOME=$HOME/.cache
# Scanning all plugins takes a second; what the scan found holds for every session.
export GST_REGISTRY=${GST_REGISTRY:-${TMPDIR:-/tmp}/desktop-session-gst-registry.bin}
export LANG=C.UTF-8
unset DISPLAY WAYLAND_DISPLAY XAUTHORITY SESSION_MANAGER PULSE_SERVER
unset http_proxy https_proxy all_proxy HTTP_PROXY HTTPS_PROXY ALL_PROXY

start_bus
[ -z "$display" ] || start_display
[ -z "$sound" ] || start_sound
[ -z "$keyring" ] || start_keyring
[ -z "$accessibility" ] || export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1

# In the background and waited for, so that a signal is passed on at once.
setpriv --pdeathsig TERM "$@" <&0 &
command=$!
trap 'kill $command 2>/dev/null' TERM INT HUP
wait $command
status=$?
# A signal ends the wait early; the command may still be tidying up.
if kill -0 $command 2>/dev/null; then
    wait $command
    status=$?
fi
exit $status
