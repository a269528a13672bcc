#!/usr/bin/env bash
# demo.sh [windows] [HOST OPTION...]
# Builds the plug-in and starts the example host with it and the sample deployment; with "windows"
# the Windows build, under Wine. Where there is no display and no option, the host shows itself on a
# virtual one and leaves pictures below build/.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

platform=linux
if [[ ${1-} == windows ]]; then
    platform=windows
    shift
fi

scripts/install-packages.sh "$platform"
fresh_qt=()
if [[ $platform == windows ]]; then
    fresh_qt=(-U 'Qt5*_DIR') # Where an earlier recipe's Qt may still be noted.
    ZENDEL_QT_WINDOWS=$(scripts/qt-windows.sh)
    export ZENDEL_QT_WINDOWS
fi
cmake --preset "$platform" "${fresh_qt[@]}"
cmake --build --preset "$platform"

has_display=${DISPLAY-}
if [[ $platform == linux ]]; then
    has_display+=${WAYLAND_DISPLAY-} # Wine needs X11.
fi
host=(build/linux/bin/zendel-host)
launcher=(scripts/with-xvfb.sh --openbox)
if [[ $platform == windows ]]; then
    # Installed, so that it runs with its own DLLs alone.
    cmake --install build/windows --component demo --prefix build/demo-windows >/dev/null
    host=(scripts/wine.sh build/demo-windows/zendel-host.exe)
    launcher=()
    if [[ -n $has_display ]]; then
        host=(scripts/wine.sh --visible build/demo-windows/zendel-host.exe)
    fi
fi

if [[ -n $has_display ]]; then
    exec "${host[@]}" "$@"
fi
if (($#)); then
    exec "${launcher[@]}" "${host[@]}" "$@"
fi
# The tour begins in the sample's own language, whatever an earlier run has switched to.
if [[ $platform == linux ]]; then
    cp translations/Lang.ini build/linux/bin/Lang/
fi
pictures=build/pictures-$platform
echo "There is no display: the host takes the operator's path by itself."
"${launcher[@]}" "${host[@]}" --tour "$pictures"
echo "The pictures lie in $PWD/$pictures"
