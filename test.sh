#!/usr/bin/env bash
# ./test.sh [CTEST-OPTION...]
# Installs what is missing, builds, checks the sources and runs all tests. With options, which go
# to CTest, it runs the tests alone: "./test.sh -R tst_Zendel" runs one.
set -euo pipefail
cd "$(dirname "$0")"

tools/install-packages.sh
cmake --preset linux
cmake --build --preset linux
if (($# == 0)); then
    tools/check-sources.sh build/linux
fi
ctest --preset linux --no-tests=error "$@"
