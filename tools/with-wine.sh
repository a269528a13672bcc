#!/usr/bin/env bash
# with-wine.sh COMMAND [ARGUMENT...]
# Runs the command with a Wine of its own, on a virtual display unless ZENDEL_WINE_DISPLAY is set,
# and exits with the command's code. Windows programs are started below it by tools/wine.sh.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

if [[ -z ${ZENDEL_WINE_DISPLAY-} ]]; then
    ZENDEL_WINE_DISPLAY=virtual exec "$here/with-xvfb.sh" "${BASH_SOURCE[0]}" "$@"
fi

export WINEPREFIX WINEDEBUG=-all LC_ALL=C.UTF-8
# Neither its own .NET and browser, which it would offer to download, nor entries in the menus.
export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
WINEPREFIX=$(mktemp -d "${TMPDIR:-/tmp}/zendel-wine.XXXXXX")
server=$(command -v wineserver || echo /usr/lib/wine/wineserver64)
finish() {
    "$server" -k || true
    rm -rf "$WINEPREFIX" || true # A program that is just ending may still write there.
}
trap finish EXIT

# One server for the whole run; it would end, and have to start again, between any two programs.
if ! { "$server" -p && "$here/wine.sh" wineboot --init; } >"$WINEPREFIX.log" 2>&1; then
    cat "$WINEPREFIX.log" >&2
    echo "with-wine.sh: Wine did not start" >&2
    exit 1
fi
rm "$WINEPREFIX.log"

set_value() {
    "$here/wine.sh" reg add "$1" /v "$2" /d "$3" /f >/dev/null
}
if [[ $ZENDEL_WINE_DISPLAY == virtual ]]; then
    # No window manager runs there: Wine is to place and focus the windows by itself, at once.
    set_value 'HKCU\Software\Wine\X11 Driver' Managed N
fi
# Qt Test writes to the debugger on Windows unless told otherwise. Wine keeps variables named QT_
# from the programs, but not those of its registry.
set_value 'HKCU\Environment' QT_FORCE_STDERR_LOGGING 1
# The signs in title bars are letters of Marlett, which this Wine does not find by itself. All else
# is drawn in Tahoma, for which it has no Chinese; a font that has takes its place.
ln -s /usr/share/wine/fonts/marlett.ttf "$WINEPREFIX/drive_c/windows/Fonts/"
set_value 'HKCU\Software\Wine\Fonts\Replacements' Tahoma 'Noto Sans CJK SC'

status=0
"$@" || status=$?
exit "$status"
