#!/usr/bin/env bash
# with-xvfb.sh [--openbox] COMMAND [ARGUMENT...]: runs a command on a new virtual display, with
# --openbox under this window manager, and exits with the command's code.
set -euo pipefail

window_manager=
if [[ ${1-} == --openbox ]]; then
    window_manager=openbox
    shift
fi

# Xvfb selects a free display and writes its number as soon as it accepts connections.
exec {display_number}< <(exec Xvfb -displayfd 1 -screen 0 1280x960x24 -noreset -nolisten tcp \
    2> /dev/null)
xvfb=$!
trap 'kill "$xvfb" 2> /dev/null || true' EXIT
if ! read -r number <&"$display_number"; then
    echo "${0##*/}: Xvfb didn't start; is the package xvfb installed?" >&2
    exit 1
fi
export DISPLAY=":$number" ZENDEL_VIRTUAL_DISPLAY=1
unset WAYLAND_DISPLAY XDG_SESSION_TYPE

if [[ -n $window_manager ]]; then
    ready=$(mktemp -u)
    "$window_manager" --sm-disable --startup "touch '$ready'" > /dev/null 2>&1 &
    deadline=$((SECONDS + 30))
    until [[ -e $ready ]]; do
        if ! kill -0 $! 2> /dev/null || ((SECONDS > deadline)); then
            echo "${0##*/}: $window_manager didn't start; is its package installed?" >&2
            exit 1
        fi
        sleep 0.05
    done
    rm "$ready"
fi

"$@"
