#!/usr/bin/env bash
# test.sh [linux|windows|msvc [all-qt]|coverage] [CTEST-OPTION...]: installs missing packages, builds, checks
# the sources and runs all tests: on Linux and, through Wine, on Windows with the builds for MinGW
# ("windows") and for Microsoft's C++ ABI ("msvc"); or on the given platform only.
# With CTest options it skips the source checks: "./test.sh linux -R tst_Zendel" runs one test.
# With "all-qt", the DLL for Microsoft's C++ ABI is tested on every official version of Qt, otherwise on
# four. "coverage" runs scripts/coverage.sh.
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
configuration=()
if [[ ${1-} == all-qt ]]; then
    configuration=(-C all-qt)
    shift
fi

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
    if [[ $platform == msvc ]]; then
        local runtime=${ZENDEL_QT_MSVC:-$(scripts/qt-msvc.sh)}/runtime
        if [[ -d $runtime ]]; then
            emulator=(scripts/wine.sh --runtime "$runtime" --session)
        else
            echo "$runtime, Microsoft's run-time library, is missing; the tests use Wine's."
        fi
    fi
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
    "${emulator[@]}" ctest --preset "$preset" -j "$(nproc)" \
        "${configuration[@]}" "${options[@]}"
    if (($# == 0)) && [[ $platform == linux ]]; then
        step "$platform: tests of the plug-in, built with Clang and its sanitizers"
        scripts/build.sh linux-asan
        ctest --preset linux-asan -j "$(nproc)" -L 'classes|plugin'
        step "$platform: fuzzers"
        scripts/fuzz.sh 60
    fi
}

status=0
# Tests the next platform even if one fails
set +e
for platform in "${platforms[@]}"; do
    (set -e; run_tests "$platform" "$@")
    (($? == 0)) || status=1
done
exit "$status"
