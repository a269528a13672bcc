#!/usr/bin/env bash
# demo.sh [mingw|msvc] [HOST-OPTION...]: builds the plug-in and starts the example host with the
# sample deployment; with "mingw" or "msvc", builds it for Windows with that compiler and starts it
# under Wine. With neither a display nor options, the host runs its scripted tour on a virtual
# display and saves screenshots in build/.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

flavour=linux
if [[ ${1-} == mingw || ${1-} == msvc ]]; then
    flavour=$1
    shift
fi
scripts/build.sh "$flavour"

if [[ $flavour == linux ]]; then
    display=${DISPLAY-}${WAYLAND_DISPLAY-}
    host=(build/linux/bin/zendel-host)
    hidden_host=(scripts/with-xvfb.sh --openbox "${host[@]}")
else
    display=${DISPLAY-} # Wine needs X11.
    # Installs the demo, so that it runs with its own DLLs only
    demo=build/demo-$flavour
    cmake --install "build/$flavour" --component demo --prefix "$demo" > /dev/null
    host=(scripts/wine.sh --visible "$demo/zendel-host.exe")
    hidden_host=(scripts/wine.sh "$demo/zendel-host.exe")
fi

if [[ -n $display ]]; then
    exec "${host[@]}" "$@"
fi
if (($#)); then
    exec "${hidden_host[@]}" "$@"
fi
# An earlier run may have changed the language.
if [[ $flavour == linux ]]; then
    cp translations/Lang.ini build/linux/bin/Lang/
fi
screenshots=build/screenshots-$flavour
echo "There is no display. The host runs its scripted tour."
"${hidden_host[@]}" --tour "$screenshots"
echo "The screenshots are in $PWD/$screenshots"
