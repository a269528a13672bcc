#!/usr/bin/env bash
# ./test.sh [linux|windows] [CTEST-OPTION...]
# Installs what is missing, builds, checks the sources and runs all tests: on Linux and, through
# Wine, on Windows, or on one of them. With options, which go to CTest, it runs the tests alone:
# "./test.sh linux -R tst_Zendel" runs one.
set -euo pipefail
cd "$(dirname "$0")"

platforms=(linux windows)
case ${1-} in
linux | windows)
    platforms=("$1")
    shift
    ;;
esac

step() {
    printf '\n== %s\n' "$*"
}

for platform in "${platforms[@]}"; do
    step "$platform: packages and build"
    tools/install-packages.sh "$platform"
    emulator=()
    if [[ $platform == windows ]]; then
        ZENDEL_QT_WINDOWS=$(tools/qt-windows.sh)
        export ZENDEL_QT_WINDOWS
        emulator=(tools/with-wine.sh)
    fi
    cmake --preset "$platform"
    cmake --build --preset "$platform"
    if (($# == 0)); then
        step "$platform: checks of the sources"
        tools/check-sources.sh "$platform"
    fi
    step "$platform: tests"
    "${emulator[@]}" ctest --preset "$platform" --no-tests=error "$@"
done
