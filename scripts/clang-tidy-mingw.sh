#!/usr/bin/env bash
# clang-tidy-mingw.sh ARGUMENT...: clang-tidy for a source that GCC compiles for Windows. Adds the
# target and the folders of that GCC's C++ library, which Clang does not find by itself, and leaves
# out an option that Clang does not know. CMake calls it in the preset windows-tidy.
set -euo pipefail

arguments=()
for argument in "$@"; do
    [[ $argument == -fno-keep-inline-dllexport ]] || arguments+=("$argument")
done
while read -r folder; do
    arguments+=("-isystem$folder")
done < <(x86_64-w64-mingw32-g++-posix -E -v -x c++ /dev/null 2>&1 | sed -n 's/^ \(.*c++.*\)/\1/p')
exec clang-tidy --extra-arg-before=--target=x86_64-w64-windows-gnu "${arguments[@]}"
