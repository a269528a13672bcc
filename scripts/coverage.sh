#!/usr/bin/env bash
# coverage.sh [CTEST-OPTION...]: runs the tests with counters in the plug-in and prints which of
# its lines and branches ran. Exits with another code than 0 if a test fails or one of them did not.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-packages.sh linux
cmake --preset linux-coverage
cmake --build --preset linux-coverage
# Each load of the plug-in adds its counts at the unload.
find build/linux-coverage -name '*.gcda' -delete
ctest --preset linux-coverage "$@"

# Branches that no test can reach: the second test of "show", a translation that vanishes between two
# openings, a dialog without its page, a window that vanishes between two requests to X11, and "new"
# that gives null.
unreachable='.*(if \(lang\.show\)|if \(file\.open|m_pageSetLang && |xcb_map_window_checked|return new ).*'

# Counted twice as lines and as branches, for gcovr prints one table of them at a time.
report=(gcovr --root . --object-directory build/linux-coverage
    --filter plugin/ --filter lang/ --filter ui/
    --exclude-throw-branches --exclude-unreachable-branches
    --exclude-branches-by-pattern "$unreachable")
"${report[@]}" --fail-under-line 100
"${report[@]}" --branches --fail-under-branch 100
