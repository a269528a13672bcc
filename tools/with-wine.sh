#!/usr/bin/env bash
# with-wine.sh COMMAND [ARGUMENT...]
# Runs the command with a Wine of its own, on a virtual display, and exits with the command's code.
# Windows programs are started below it by tools/wine.sh.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

if [[ -z ${ZENDEL_WINE_DISPLAY-} ]]; then
    ZENDEL_WINE_DISPLAY=1 exec "$here/with-xvfb.sh" "${BASH_SOURCE[0]}" "$@"
fi

export WINEPREFIX WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=' LC_ALL=C.UTF-8
WINEPREFIX=$(mktemp -d "${TMPDIR:-/tmp}/zendel-wine.XXXXXX")
server=$(command -v wineserver || echo /usr/lib/wine/wineserver64)
finish() {
    "$server" -k || true
    rm -rf "$WINEPREFIX"
}
trap finish EXIT

# One server for the whole run; it would end, and have to start again, between any two programs.
"$server" -p
"$here/wine.sh" wineboot --init >/dev/null 2>&1
# No window manager runs here: Wine is to place and focus the windows by itself, at once.
"$here/wine.sh" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null
# Qt Test writes to the debugger on Windows unless told otherwise. Wine keeps variables named QT_
# from the programs, but not those of its registry.
"$here/wine.sh" reg add 'HKCU\Environment' /v QT_FORCE_STDERR_LOGGING /d 1 /f >/dev/null
# The signs in title bars are letters of Marlett, which this Wine does not find by itself. All else
# is drawn in Tahoma, for which it has no Chinese; a font that has takes its place.
ln -s /usr/share/wine/fonts/marlett.ttf "$WINEPREFIX/drive_c/windows/Fonts/"
"$here/wine.sh" reg add 'HKCU\Software\Wine\Fonts\Replacements' \
    /v Tahoma /d 'Noto Sans CJK SC' /f >/dev/null

status=0
"$@" || status=$?
exit "$status"
