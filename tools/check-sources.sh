#!/usr/bin/env bash
# check-sources.sh [BUILD_DIR]: formatting, clang-tidy and cppcheck over all sources of ours; exits
# with 1 on any finding. The build folder must have been built, for the generated headers.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/linux}

mapfile -t files < <(find plugin lang ui examples tests tools -name '*.h' -o -name '*.cpp' | sort)
mapfile -t sources < <(printf '%s\n' "${files[@]}" | grep '\.cpp$')

echo "clang-format: ${#files[@]} files"
clang-format --dry-run --Werror "${files[@]}"

echo "cppcheck"
cppcheck --quiet --error-exitcode=1 --std=c++17 --language=c++ --library=qt --inline-suppr \
    --enable=warning,style,performance,portability \
    --suppress=missingInclude \
    -j "$(nproc)" -I . -I tests \
    plugin lang ui examples tests tools

echo "clang-tidy: ${#sources[@]} files, this takes some minutes"
printf '%s\0' "${sources[@]}" \
    | xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p "$build" \
    2> >(grep -v "warnings\? generated" >&2) # Of Qt, and suppressed
