#!/usr/bin/env bash
# check-sources.sh linux|windows: exits with 1 on any finding of clang-format, cppcheck and
# clang-tidy. "windows" is clang-tidy over the sources that are compiled for Windows alone, "linux"
# is all the rest. The preset of this name must have been built, for the generated headers.
set -euo pipefail
cd "$(dirname "$0")/.."
platform=$1

mapfile -t files < <(find plugin lang ui examples tests tools -name '*.h' -o -name '*.cpp' | sort)
if [[ $platform == linux ]]; then
    mapfile -t sources < <(printf '%s\n' "${files[@]}" | grep '\.cpp$' | grep -v '_win32\.cpp$')

    echo "clang-format: ${#files[@]} files"
    clang-format --dry-run --Werror "${files[@]}"

    echo "cppcheck"
    cppcheck --quiet --error-exitcode=1 --std=c++17 --language=c++ --library=qt --inline-suppr \
        --enable=warning,style,performance,portability --suppress=missingInclude \
        -j "$(nproc)" -I . -I tests "${files[@]}"
else
    mapfile -t sources < <(printf '%s\n' "${files[@]}" | grep '_win32\.cpp$')
fi

# Clang does not know every option that GCC for Windows is given.
commands=$(mktemp -d)
trap 'rm -rf "$commands"' EXIT
sed 's/-fno-keep-inline-dllexport//' "build/$platform/compile_commands.json" \
    > "$commands/compile_commands.json"

echo "clang-tidy: ${#sources[@]} files, this takes some minutes"
printf '%s\0' "${sources[@]}" \
    | xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p "$commands" \
    2> >(grep -vE '^[0-9]+ warnings? generated' >&2) # Of Qt, and suppressed
