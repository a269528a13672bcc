#!/usr/bin/env bash
# wine.sh PROGRAM [ARGUMENT...]
# Starts a Windows program in the Wine of tools/with-wine.sh, or in one for itself alone.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

if [[ -z ${ZENDEL_WINE_DISPLAY-} ]]; then
    exec "$here/with-wine.sh" "${BASH_SOURCE[0]}" "$@"
fi

# The binary itself: Debian's wrapper complains where there is no 32-bit Wine.
for wine in /usr/lib/wine/wine64 wine64 wine; do
    if command -v "$wine" >/dev/null; then
        exec "$wine" "$@"
    fi
done
echo "wine.sh: there is no Wine; is the package wine64 installed?" >&2
exit 1
