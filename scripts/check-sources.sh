#!/usr/bin/env bash
# check-sources.sh: exits with 1 on any finding of clang-format or cppcheck. clang-tidy is run by the
# presets linux-tidy and windows-tidy.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t files < <(find . -path ./build -prune -o \( -name '*.cpp' -o -name '*.h' \) -print | sort)

echo "clang-format: ${#files[@]} files"
clang-format --dry-run --Werror "${files[@]}"

# Suppressed: in the tests, functions that are set for one test and capture its variables; members
# that are used through an aggregate; loops that it would rather see as algorithms.
echo "cppcheck"
cppcheck --quiet --error-exitcode=1 --std=c++17 --language=c++ --library=qt --inline-suppr \
    --enable=warning,style,performance,portability --suppress=missingInclude \
    --suppress='danglingLifetime:tests/*' --suppress=unusedStructMember \
    --suppress=useStlAlgorithm -j "$(nproc)" -I . -I tests "${files[@]}"
