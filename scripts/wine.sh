#!/usr/bin/env bash
# wine.sh [--visible] PROGRAM [ARGUMENT...]
# wine.sh [--visible] --session COMMAND [ARGUMENT...]
# Runs a Windows program in a Wine of its own and exits with the program's code. With --session, runs
# a command of this system, and all Windows programs that wine.sh starts below it share one Wine.
# The windows are on a virtual display, or with --visible on the display that there is.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

visible=
if [[ ${1-} == --visible ]]; then
    visible=1
    shift
fi

# The binary itself, because Debian's wrapper complains where there is no 32-bit Wine.
wine=/usr/lib/wine/wine64
[[ -x $wine ]] || wine=$(command -v wine64 || command -v wine) || {
    echo "wine.sh: Wine is not installed; install the package wine64" >&2
    exit 1
}

if [[ ${1-} != --session ]]; then
    [[ -z ${ZENDEL_WINE_SESSION-} ]] || exec "$wine" "$@"
    set -- --session "$wine" "$@"
fi
if [[ -z $visible ]]; then
    exec "$here/with-xvfb.sh" "${BASH_SOURCE[0]}" --visible "$@"
fi
shift

export ZENDEL_WINE_SESSION=1 WINEDEBUG=-all LC_ALL=C.UTF-8
# Neither its own .NET and browser, which it would offer to download, nor entries in the menus.
export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
WINEPREFIX=$(mktemp -d "${TMPDIR:-/tmp}/zendel-wine.XXXXXX")
export WINEPREFIX
server=$(command -v wineserver || echo /usr/lib/wine/wineserver64)
finish() {
    "$server" -k || true
    rm -rf "$WINEPREFIX" || true # A program that is just ending may still write there.
}
trap finish EXIT

# One server for the whole run; it would end, and have to start again, between any two programs.
if ! { "$server" -p && "$wine" wineboot --init; } >"$WINEPREFIX.log" 2>&1; then
    cat "$WINEPREFIX.log" >&2
    echo "wine.sh: Wine did not start" >&2
    exit 1
fi
rm "$WINEPREFIX.log"

set_value() {
    "$wine" reg add "$1" /v "$2" /d "$3" /f >/dev/null
}
if [[ -n ${ZENDEL_VIRTUAL_DISPLAY-} ]]; then
    # No window manager runs there: Wine is to place and focus the windows by itself, at once.
    set_value 'HKCU\Software\Wine\X11 Driver' Managed N
fi
# Qt Test writes to the debugger on Windows unless told otherwise. Wine keeps variables named QT_
# from the programs, but not those of its registry.
set_value 'HKCU\Environment' QT_FORCE_STDERR_LOGGING 1
# The symbols in title bars are characters of Marlett, which this Wine does not find by itself.
# Everything else is drawn in Tahoma, which has no Chinese; a font that has replaces it.
ln -s /usr/share/wine/fonts/marlett.ttf "$WINEPREFIX/drive_c/windows/Fonts/"
set_value 'HKCU\Software\Wine\Fonts\Replacements' Tahoma 'Noto Sans CJK SC'

status=0
"$@" || status=$?
exit "$status"
