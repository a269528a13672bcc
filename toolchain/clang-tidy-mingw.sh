#!/usr/bin/env bash
# clang-tidy-mingw.sh ARGUMENT...: runs clang-tidy on a source for MinGW-w64, in the preset
# mingw-tidy. Adds the target and the folders of GCC's C++ library, which Clang doesn't find, and
# removes an option that Clang doesn't know.
set -euo pipefail

arguments=()
for argument in "$@"; do
    [[ $argument == -fno-keep-inline-dllexport ]] || arguments+=("$argument")
done
while read -r folder; do
    arguments+=("-isystem$folder")
done < <(x86_64-w64-mingw32-g++-posix -E -v -x c++ /dev/null 2>&1 | sed -n 's/^ \(.*c++.*\)/\1/p')
exec clang-tidy --extra-arg-before=--target=x86_64-w64-windows-gnu "${arguments[@]}"
