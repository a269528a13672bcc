#!/usr/bin/env bash
# wine.sh [--visible | --plain] [--runtime FOLDER] PROGRAM [ARGUMENT...]
# wine.sh [--visible | --plain] [--runtime FOLDER] --session COMMAND [ARGUMENT...]
# Runs a Windows program in a new Wine and exits with the program's code. With --session, runs a
# Linux command, and all Windows programs that it starts with wine.sh share one Wine.
#   --visible         shows the windows on the real display instead of a virtual one
#   --plain           gives the virtual display a window manager, and Wine the fonts and settings of
#                     a new installation, even inside a session
#   --runtime FOLDER  copies the folder's DLLs over Wine's in system32, as an installer would
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

visible=
if [[ ${1-} == --visible ]]; then
    visible=1
    shift
elif [[ ${1-} == --plain ]]; then
    export ZENDEL_WINE_PLAIN=1
    unset ZENDEL_WINE_SESSION
    shift
fi
if [[ ${1-} == --runtime ]]; then
    export ZENDEL_WINE_RUNTIME=$2
    shift 2
fi

# The binary itself, because Debian's wrapper complains if 32-bit Wine is missing.
wine=/usr/lib/wine/wine64
[[ -x $wine ]] || wine=$(command -v wine64 || command -v wine) || {
    echo "${0##*/}: Wine isn't installed; install the package wine64" >&2
    exit 1
}

# Wine is silent about a missing DLL, and exits with the low byte of STATUS_DLL_NOT_FOUND.
explain() {
    if (($1 == 53)); then
        echo "${0##*/}: exit code 53: if the program printed nothing, Wine didn't find a DLL that" \
            "it needs. For the WINEPATH of a test, see \"ctest --preset PRESET -N -V -R TEST\"." >&2
    fi
}

if [[ ${1-} != --session ]]; then
    if [[ -n ${ZENDEL_WINE_SESSION-} ]]; then
        # Rarely, Wine exits at once, without a message and before it has started the program. Both
        # outputs pass through tee, whose files show whether there was a message.
        folder=$(mktemp -d "$WINEPREFIX/run.XXXXXX")
        started=${EPOCHREALTIME//[.,]/} status=0
        { "$wine" "$@" 2>&1 >&3 3>&- | tee "$folder/err" >&2 3>&-; } 3>&1 | tee "$folder/out" ||
            status=$?
        silent=
        [[ -s $folder/out || -s $folder/err ]] || silent=1
        rm -r "$folder"
        if [[ -n $silent ]] && ((status != 0 && ${EPOCHREALTIME//[.,]/} - started < 100000)); then
            echo "$1: exit code $status" >> "$WINEPREFIX.again"
            status=0
            "$wine" "$@" || status=$?
        fi
        [[ -z $silent ]] || explain "$status"
        exit "$status"
    fi
    set -- --session "$wine" "$@"
fi
if [[ -z $visible ]]; then
    exec "$here/with-xvfb.sh" ${ZENDEL_WINE_PLAIN:+--openbox} "${BASH_SOURCE[0]}" --visible "$@"
fi
shift

export ZENDEL_WINE_SESSION=1 WINEDEBUG=${WINEDEBUG:--all} LC_ALL=C.UTF-8
# Disables menu entries, and .NET and the browser, which Wine would offer to download.
WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
if [[ -n ${ZENDEL_WINE_RUNTIME-} ]]; then
    for dll in "$ZENDEL_WINE_RUNTIME"/*.dll; do
        WINEDLLOVERRIDES+=";$(basename "$dll" .dll)=n"
    done
fi
export WINEDLLOVERRIDES
WINEPREFIX=$(mktemp -d "${TMPDIR:-/tmp}/zendel-wine.XXXXXX")
export WINEPREFIX
server=$(command -v wineserver || echo /usr/lib/wine/wineserver64)
finish() {
    "$server" -k || true
    rm -rf "$WINEPREFIX" || true # A program may still be writing there.
    if [[ -e $WINEPREFIX.again ]]; then
        echo "${0##*/}: Wine exited at once and was restarted for these programs:"
        cat "$WINEPREFIX.again"
        rm "$WINEPREFIX.again"
    fi >&2
}
trap finish EXIT

# One server for the whole run; otherwise it would be restarted for each program.
if ! { "$server" -p && "$wine" wineboot --init; } > "$WINEPREFIX.log" 2>&1; then
    cat "$WINEPREFIX.log" >&2
    echo "${0##*/}: Wine didn't start" >&2
    exit 1
fi
rm "$WINEPREFIX.log"
if [[ -n ${ZENDEL_WINE_RUNTIME-} ]]; then
    cp "$ZENDEL_WINE_RUNTIME"/*.dll "$WINEPREFIX/drive_c/windows/system32/"
fi

set_value() {
    "$wine" reg add "$1" /v "$2" /d "$3" /f > /dev/null
}
if [[ -n ${ZENDEL_VIRTUAL_DISPLAY-} && -z ${ZENDEL_WINE_PLAIN-} ]]; then
    # There is no window manager, so Wine has to place and focus the windows itself.
    set_value 'HKCU\Software\Wine\X11 Driver' Managed N
fi
# By default, Qt Test writes to the debugger on Windows. The variable is set in the registry because
# Wine doesn't pass QT_ variables from the environment.
set_value 'HKCU\Environment' QT_FORCE_STDERR_LOGGING 1
if [[ -z ${ZENDEL_WINE_PLAIN-} ]]; then
    # The symbols in title bars are in Marlett, which this Wine doesn't find by itself. Everything
    # else is in Tahoma, which lacks Chinese and is therefore replaced.
    ln -s /usr/share/wine/fonts/marlett.ttf "$WINEPREFIX/drive_c/windows/Fonts/"
    set_value 'HKCU\Software\Wine\Fonts\Replacements' Tahoma 'Noto Sans CJK SC'
fi

status=0
"$@" || status=$?
[[ $1 != "$wine" ]] || explain "$status"
((status == 0)) || exit "$status"
