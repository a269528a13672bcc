#!/usr/bin/env bash
# test.sh [linux|windows|msvc|coverage] [CTEST-OPTION...]: installs missing packages, builds, checks
# the sources and runs all tests: on Linux and through Wine on Windows, or on the given platform.
# "windows" is the build with MinGW, "msvc" that with Microsoft's C++ ABI, which runs only if given.
# With CTest options it skips the source checks: "./test.sh linux -R tst_Zendel" runs one test.
# "coverage" runs scripts/coverage.sh.
set -euo pipefail
cd "$(dirname "$0")"

if [[ ${1-} == coverage ]]; then
    shift
    exec scripts/coverage.sh "$@"
fi

platforms=(linux windows)
case ${1-} in
linux | windows | msvc)
    platforms=("$1")
    shift
    ;;
esac

step() {
    printf '\n== %s\n' "$*"
}

run_tests() {
    local platform=$1 preset=$1
    shift
    step "$platform: packages and build"
    scripts/install-packages.sh "$platform"
    local emulator=() fresh_qt=() docs=ON
    if [[ $platform != linux ]]; then
        if [[ $platform == msvc ]]; then
            preset=windows-msvc
            ZENDEL_QT_MSVC=$(scripts/qt-windows.sh msvc)
            export ZENDEL_QT_MSVC
        else
            ZENDEL_QT_WINDOWS=$(scripts/qt-windows.sh)
            export ZENDEL_QT_WINDOWS
        fi
        emulator=(scripts/wine.sh --session)
        fresh_qt=(-U 'Qt5*_DIR') # The cache may refer to an earlier build of Qt.
        docs=OFF                 # They are the same on both platforms.
    fi
    cmake --preset "$preset" -D ZENDEL_BUILD_DOCS="$docs" "${fresh_qt[@]}"
    cmake --build --preset "$preset"
    if (($# == 0)) && [[ $platform != msvc ]]; then
        step "$platform: source checks"
        if [[ $platform == linux ]]; then
            scripts/check-sources.sh
        fi
        cmake --preset "$platform-tidy" "${fresh_qt[@]}"
        cmake --build --preset "$platform-tidy"
    fi
    step "$platform: tests"
    # Options may select tests that only one platform has.
    local options=("${@---no-tests=error}")
    "${emulator[@]}" ctest --preset "$preset" "${options[@]}"
    if (($# == 0)) && [[ $platform == linux ]]; then
        step "$platform: catalogue fuzzer"
        scripts/fuzz.sh 60
    fi
}

# Tests the second platform even if the first fails
set +e
status=0
for platform in "${platforms[@]}"; do
    (set -e; run_tests "$platform" "$@")
    (($? == 0)) || status=1
done
exit "$status"
