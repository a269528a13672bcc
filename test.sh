#!/usr/bin/env bash
# test.sh [linux|mingw|msvc [all-qt]|coverage] [CTEST-OPTION...]: installs missing packages, builds,
# checks the sources and runs all tests of the flavour, by default of all three. Those of mingw and
# msvc run under Wine.
# With CTest options, skips the source checks: "./test.sh linux -R '^tst_Zendel$'" runs one test.
# With "all-qt", tests the DLL for MSVC with every official version of Qt instead of four.
# "coverage" runs scripts/coverage.sh.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

if [[ ${1-} == coverage ]]; then
    shift
    exec scripts/coverage.sh "$@"
fi

flavours=(linux mingw msvc)
case ${1-} in
linux | mingw | msvc)
    flavours=("$1")
    shift
    ;;
esac
configuration=()
if [[ ${1-} == all-qt ]]; then
    configuration=(-C all-qt)
    shift
fi

step() {
    printf '\n== %s: %s\n' "$flavour" "$*"
}

run_ctest() {
    local preset=$1
    shift
    case $preset in
    linux*) ctest --preset "$preset" -j "$(nproc)" "$@" ;;
    mingw) scripts/wine.sh --session ctest --preset mingw -j "$(nproc)" "$@" ;;
    msvc)
        local runtime=${ZENDEL_QT_MSVC:-$(toolchain/qt-msvc.sh)}/runtime options=()
        if [[ -d $runtime ]]; then
            options=(--runtime "$runtime")
        else
            echo "Microsoft's run-time library is missing in $runtime; the tests use Wine's."
        fi
        scripts/wine.sh "${options[@]}" --session \
            ctest --preset msvc -j "$(nproc)" "${configuration[@]}" "$@"
        ;;
    esac
}

run_tests() {
    local flavour=$1 docs=OFF
    shift
    [[ $flavour != linux ]] || docs=ON # The API pages are the same for all flavours.

    step "packages and build"
    scripts/build.sh "$flavour" -D ZENDEL_BUILD_DOCS="$docs"
    if (($#)); then
        step "tests"
        run_ctest "$flavour" "$@" # Options may select tests that only one flavour has.
        return
    fi

    if [[ $flavour == linux ]]; then
        step "source checks"
        scripts/check-sources.sh
    fi
    if [[ $flavour != msvc ]]; then
        step "clang-tidy"
        scripts/build.sh "$flavour-tidy"
    fi
    step "tests"
    run_ctest "$flavour" --no-tests=error
    if [[ $flavour == linux ]]; then
        step "tests of the plug-in, built with Clang and its sanitizers"
        scripts/build.sh linux-asan
        run_ctest linux-asan --no-tests=error -L 'classes|plugin'
        step "fuzzers"
        scripts/fuzz.sh 60
    fi
}

status=0
# Tests the other flavours even if one fails
set +e
for flavour in "${flavours[@]}"; do
    (set -e; run_tests "$flavour" "$@")
    # shellcheck disable=SC2181 # In a condition, the commands would continue after a failure.
    (($? == 0)) || status=1
done
exit "$status"
