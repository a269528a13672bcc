#!/usr/bin/env bash
# coverage.sh [CTEST-OPTION...]: runs the tests on Linux and prints the plug-in's line and branch
# coverage. Fails if a test fails or the coverage isn't complete.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/build.sh linux-coverage
# Whenever the plug-in is unloaded, it adds its counts to these files.
find build/linux-coverage -name '*.gcda' -delete
ctest --preset linux-coverage "$@"

# gcovr prints either lines or branches.
gcovr --config build/linux-coverage/gcovr.cfg
gcovr --config build/linux-coverage/gcovr.cfg --branches
