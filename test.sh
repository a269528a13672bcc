#!/usr/bin/env bash
# ./test.sh [linux|windows|coverage] [CTEST-OPTION...]
# Installs what is missing, builds, checks the sources and runs all tests: on Linux and, through
# Wine, on Windows, or on one of them. With options, which go to CTest, it runs the tests alone:
# "./test.sh linux -R tst_Zendel" runs one. "./test.sh coverage" tells which lines and branches of
# the plug-in the tests run.
set -euo pipefail
cd "$(dirname "$0")"

if [[ ${1-} == coverage ]]; then
    shift
    exec scripts/coverage.sh "$@"
fi

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

run_tests() {
    local platform=$1
    shift
    step "$platform: packages and build"
    scripts/install-packages.sh "$platform"
    local emulator=() fresh_qt=() docs=ON
    if [[ $platform == windows ]]; then
        ZENDEL_QT_WINDOWS=$(scripts/qt-windows.sh)
        export ZENDEL_QT_WINDOWS
        emulator=(scripts/wine.sh --session)
        fresh_qt=(-U 'Qt5*_DIR') # Where an earlier recipe's Qt may still be noted.
        docs=OFF                 # They are the same for every platform.
    fi
    cmake --preset "$platform" -D ZENDEL_BUILD_DOCS="$docs" "${fresh_qt[@]}"
    cmake --build --preset "$platform"
    if (($# == 0)); then
        step "$platform: checks of the sources"
        if [[ $platform == linux ]]; then
            scripts/check-sources.sh
        fi
        cmake --preset "$platform-tidy" "${fresh_qt[@]}"
        cmake --build --preset "$platform-tidy"
    fi
    step "$platform: tests"
    # With options, it is for the user to say what there must be on which platform.
    local options=("${@---no-tests=error}")
    "${emulator[@]}" ctest --preset "$platform" "${options[@]}"
    if (($# == 0)) && [[ $platform == linux ]]; then
        step "$platform: the catalogue's reader against its model"
        scripts/fuzz.sh 60
    fi
}

# The second platform is tested even if the first fails.
status=0
for platform in "${platforms[@]}"; do
    set +e
    (set -e; run_tests "$platform" "$@")
    (($? == 0)) || status=1
    set -e
done
exit "$status"
