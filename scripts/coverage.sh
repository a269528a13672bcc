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

# Twice, because gcovr prints one table at a time, of lines or of branches.
gcovr --config build/linux-coverage/gcovr.cfg
gcovr --config build/linux-coverage/gcovr.cfg --branches
