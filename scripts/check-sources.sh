#!/usr/bin/env bash
# check-sources.sh linux|windows: exits with 1 on any finding of clang-format, cppcheck and
# clang-tidy. "windows" is clang-tidy over the sources that are compiled for Windows alone, "linux"
# is all the rest, but for what other presets
# alone compile, the benchmarks and the fuzzer: clang-tidy leaves those out. The preset of this name must have been built, for the generated headers.
set -euo pipefail
cd "$(dirname "$0")/.."
platform=$1

mapfile -t files < <(find plugin lang ui langcheck examples tests bench -name '*.h' -o -name '*.cpp' | sort)

# Clang does not know every option that GCC for Windows is given.
commands=$(mktemp -d)
trap 'rm -rf "$commands"' EXIT
sed 's/-fno-keep-inline-dllexport//' "build/$platform/compile_commands.json" \
    > "$commands/compile_commands.json"

# Nor does it find the C++ library of that GCC by itself.
library=()
if [[ $platform == windows ]]; then
    while read -r folder; do
        library+=("--extra-arg=-isystem$folder")
    done < <(x86_64-w64-mingw32-g++-posix -E -v -x c++ /dev/null 2>&1 | grep '^ /.*c++' | sed 's/^ //')
fi

sources=()
for file in "${files[@]}"; do
    if [[ $platform == windows && $file != *_win32.cpp ]]; then
        continue
    fi
    if grep -qF "\"file\": \"$PWD/$file\"" "$commands/compile_commands.json"; then
        sources+=("$file")
    fi
done

if [[ $platform == linux ]]; then
    echo "clang-format: ${#files[@]} files"
    clang-format --dry-run --Werror "${files[@]}"

    # Suppressed: in the tests, functions that are set for one test and capture its variables; members
    # that are used through an aggregate; loops that it would rather see as algorithms.
    echo "cppcheck"
    cppcheck --quiet --error-exitcode=1 --std=c++17 --language=c++ --library=qt --inline-suppr \
        --enable=warning,style,performance,portability --suppress=missingInclude \
        --suppress='danglingLifetime:tests/*' --suppress=unusedStructMember \
        --suppress=useStlAlgorithm \
        -j "$(nproc)" -I . -I tests "${files[@]}"
fi

# A file that was clean is looked at again when it, a header, a form, the way it is compiled or the
# checks have changed.
clean=build/$platform/clang-tidy
mkdir -p "$clean"
common=$({ clang-tidy --version; cat .clang-tidy ui/*.ui; printf '%s\0' "${files[@]}" \
    | grep -z '\.h$' | xargs -0 cat; } | sha256sum)
changed=()
for source in "${sources[@]}"; do
    key=$({ echo "$common"; cat "$source"; grep -F "$PWD/$source" "$commands/compile_commands.json"; } \
        | sha256sum | cut -c1-32)
    [[ -e $clean/$key ]] || changed+=("$source" "$clean/$key")
done
if ((${#changed[@]} == 0)); then
    echo "clang-tidy: all ${#sources[@]} files are as they were when they were clean"
    exit 0
fi

echo "clang-tidy: $((${#changed[@]} / 2)) of ${#sources[@]} files, each takes some seconds"
# shellcheck disable=SC2016 # Expanded by the shell that xargs starts, which gets FILE KEY at the end.
printf '%s\0' "${changed[@]}" | xargs -0 -n 2 -P "$(nproc)" bash -c \
    'clang-tidy --quiet "${@:1:$#-1}" && touch "${@: -1}"' tidy -p "$commands" "${library[@]}" \
    2> >(grep -vE '^[0-9]+ warnings? generated' >&2) # Of Qt, and suppressed
