#!/usr/bin/env bash
# build.sh PRESET [CMAKE-OPTION...]: installs missing packages and, for a Windows preset, builds or
# fetches Qt if it is missing; then configures and builds the preset.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
shift

platform=linux options=("$@")
case $preset in
windows-msvc) platform=msvc ;;
windows*) platform=windows ;;
esac
scripts/install-packages.sh "$platform"

case $platform in
msvc)
    : "${ZENDEL_QT_MSVC:=$(scripts/qt-msvc.sh)}"
    export ZENDEL_QT_MSVC
    scripts/msvc-sysroot.sh >/dev/null
    ;;
windows)
    ZENDEL_QT_WINDOWS=$(scripts/qt-mingw.sh)
    export ZENDEL_QT_WINDOWS
    ;;
esac
if [[ $platform != linux ]]; then
    options+=(-U 'Qt5*_DIR') # The cache may refer to an earlier build of Qt.
fi
cmake --preset "$preset" "${options[@]}"
cmake --build --preset "$preset"
