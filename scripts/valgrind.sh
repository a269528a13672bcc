#!/usr/bin/env bash
# valgrind.sh [TEST...]: runs the tests that load the plug-in, or the named ones, under memcheck.
# Exits with 1 on an error or a definite leak that tests/valgrind.supp does not name, or on a test
# that fails. Takes several minutes.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-packages.sh linux
cmake --preset linux
cmake --build --preset linux

(($#)) || set -- tst_Zendel tst_random_walk tst_damaged_translations

# Less of what is done by number. Pictures by OpenGL and regular expressions compiled to machine
# code are left out: memcheck understands neither, and the plug-in has no part in them.
export ZENDEL_STEPS=300 QTEST_FUNCTION_TIMEOUT=3600000
export QT_XCB_GL_INTEGRATION=none QT_ENABLE_REGEXP_JIT=0
export QT_NO_GLIB=1 # It keeps memory for each thread that still runs at exit.
export LC_ALL=C.UTF-8 QT_QPA_PLATFORM=xcb

status=0
for test in "$@"; do
    printf '\n== %s\n' "$test"
    # The names of functions are kept after the plug-in has been unloaded.
    scripts/with-xvfb.sh valgrind --quiet --error-exitcode=1 --num-callers=40 --keep-debuginfo=yes \
        --leak-check=full --show-leak-kinds=definite --errors-for-leak-kinds=definite \
        --suppressions=tests/valgrind.supp "build/linux/tests/$test/$test" || status=1
done
exit "$status"
