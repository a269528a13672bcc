#!/usr/bin/env bash
# check-sources.sh: fails on any finding of clang-format or cppcheck. The presets linux-tidy and
# mingw-tidy run clang-tidy.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t files < <(find . -path ./build -prune -o \( -name '*.cpp' -o -name '*.h' \) -print | sort)

echo "clang-format: ${#files[@]} files in C++ and the tests in C"
clang-format --dry-run --Werror "${files[@]}" tests/plugin/*.c

# Suppresses false positives for lambdas that capture a test's variables and for members of
# aggregates, and the advice to replace loops with algorithms.
echo "cppcheck"
cppcheck --quiet --error-exitcode=1 --std=c++17 --language=c++ --library=qt --inline-suppr \
    --enable=warning,style,performance,portability --suppress=missingInclude \
    --suppress='danglingLifetime:tests/*' --suppress=unusedStructMember \
    --suppress=useStlAlgorithm -j "$(nproc)" -I . -I tests "${files[@]}"
