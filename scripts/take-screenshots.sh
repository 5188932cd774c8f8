#!/usr/bin/env bash
# Takes the pictures of docs/screenshots from the real program with the demo backend, on a desktop of its own.
# Needs imagemagick and xdotool, and a release build.
#   scripts/take-screenshots.sh [NAME...]    only these
set -euo pipefail
cd "$(dirname "$0")/.."
target=docs/screenshots

# take NAME WxH "ARGUMENTS" "ACTIONS": starts the app, acts on it with xdotool, keeps what is seen
take() {
    local name=$1 size=$2
    [ ${#wanted[@]} -eq 0 ] || [[ " ${wanted[*]} " == *" $name "* ]] || return 0
    echo "$name"
    ARGUMENTS=$3 ACTIONS=$4 SIZE=$size PICTURE=$target/$name.png \
        tests/Support/desktop-session.sh --display "${size}x24" --sound --keyring -- bash -c '
            build/release/bin/navorin --demo $ARGUMENTS >"$SESSION_DIR/app.log" 2>&1 &
            app=$!
            until window=$(xdotool search --onlyvisible --name . 2>/dev/null | tail -1) && [ -n "$window" ]; do
                kill -0 $app || { cat "$SESSION_DIR/app.log"; exit 1; }
                sleep 0.2
            done
            xdotool windowmove "$window" 0 0 windowsize "$window" ${SIZE%x*} ${SIZE#*x} windowfocus "$window"
            sleep 14 # a cold shader cache, the catalogue, the covers
            eval "$ACTIONS"
            import -window root -depth 8 -define png:compression-level=9 "$PICTURE"
            kill $app
            wait $app || true'
}
at() { echo "xdotool mousemove $1 $2 click ${3:-1}; sleep 3;"; }
aside="xdotool mousemove 5 5; sleep 1;"

wanted=("$@")
take home-1000x700 1000x700 "--debug-sync" "xdotool key Escape; sleep 2; $aside"
take home-420x800 420x800 "--debug-sync" "xdotool key Escape; sleep 2; $aside"
take player-1000x700 1000x700 "--debug-sync" "$aside"
take player-420x800 420x800 "--debug-sync" "$aside"
take player-1920x1080 1920x1080 "--debug-sync" "$aside"
take player-track-1000x700 1000x700 "" "$(at 634 229) $(at 458 270) sleep 3; $aside"
take station-1000x700 1000x700 "--debug-sync" "xdotool key Escape; sleep 2; $(at 634 229) $aside"
take equaliser-420x800 420x800 "--debug-player" "$(at 128 32) $(at 50 386) $(at 210 448) $(at 210 600) $aside"
take library-1000x700 1000x700 "" "$(at 958 120) $aside"
take sign-up-1000x700 1000x700 "--debug-telegram --debug-login" "$aside"
