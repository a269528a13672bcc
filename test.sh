#!/usr/bin/env bash
# test.sh [linux|windows|msvc|coverage] [CTEST-OPTION...]: installs missing packages, builds, checks
# the sources and runs all tests: on Linux and, through Wine, on Windows with the builds for MinGW
# ("windows") and for Microsoft's C++ ABI ("msvc"); or on the given platform only.
# With CTest options it skips the source checks: "./test.sh linux -R tst_Zendel" runs one test.
# "coverage" runs scripts/coverage.sh.
set -euo pipefail
cd "$(dirname "$0")"

if [[ ${1-} == coverage ]]; then
    shift
    exec scripts/coverage.sh "$@"
fi

platforms=(linux windows msvc)
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
    local platform=$1 preset=$1 emulator=(scripts/wine.sh --session) docs=OFF
    shift
    case $platform in
    linux)
        emulator=()
        docs=ON # They are the same on all platforms.
        ;;
    msvc)
        preset=windows-msvc
        ;;
    esac

    step "$platform: packages and build"
    scripts/build.sh "$preset" -D ZENDEL_BUILD_DOCS="$docs"
    if (($# == 0)) && [[ $platform != msvc ]]; then
        step "$platform: source checks"
        if [[ $platform == linux ]]; then
            scripts/check-sources.sh
        fi
        scripts/build.sh "$platform-tidy"
    fi
    step "$platform: tests"
    # Options may select tests that only one platform has.
    local options=("${@---no-tests=error}")
    "${emulator[@]}" ctest --preset "$preset" -j "$(nproc)" "${options[@]}"
    if (($# == 0)) && [[ $platform == linux ]]; then
        step "$platform: fuzzers"
        scripts/fuzz.sh 60
    fi
}

status=0
if ((${#platforms[@]} > 1)); then
    # Both at once, because parts of each build keep only one processor busy.
    step "Qt for Windows"
    scripts/install-packages.sh windows
    scripts/install-packages.sh msvc
    builds=()
    for flavour in mingw msvc; do
        scripts/qt-windows.sh "$flavour" >/dev/null &
        builds+=($!)
    done
    for build in "${builds[@]}"; do
        wait "$build" || { status=1 && platforms=(linux); }
    done
fi

# Tests the next platform even if one fails
set +e
for platform in "${platforms[@]}"; do
    (set -e; run_tests "$platform" "$@")
    (($? == 0)) || status=1
done
exit "$status"
