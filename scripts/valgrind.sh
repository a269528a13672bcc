#!/usr/bin/env bash
# valgrind.sh [TEST...]: runs tests under Memcheck, by default the three listed below. Fails if one
# fails or has an error or definite leak that tests/valgrind.supp doesn't suppress. Takes minutes.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-packages.sh linux
cmake --preset linux
cmake --build --preset linux

(($#)) || set -- tst_Zendel tst_random_walk tst_damaged_translations

# Fewer steps, and neither OpenGL nor compiled regular expressions, which Memcheck doesn't support.
export ZENDEL_STEPS=300 QTEST_FUNCTION_TIMEOUT=3600000
export QT_XCB_GL_INTEGRATION=none QT_ENABLE_REGEXP_JIT=0
export QT_NO_GLIB=1 # GLib leaks memory for each thread that still runs at exit.
export LC_ALL=C.UTF-8 QT_QPA_PLATFORM=xcb

status=0
for test in "$@"; do
    printf '\n== %s\n' "$test"
    # Keeps the plug-in's function names after it has been unloaded.
    scripts/with-xvfb.sh valgrind --quiet --error-exitcode=1 --num-callers=40 --keep-debuginfo=yes \
        --leak-check=full --show-leak-kinds=definite --errors-for-leak-kinds=definite \
        --suppressions=tests/valgrind.supp "build/linux/tests/$test/$test" || status=1
done
exit "$status"
