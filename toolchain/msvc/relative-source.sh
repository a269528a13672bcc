#!/usr/bin/env bash
# relative-source.sh COMMAND [ARGUMENT...] SOURCE: runs the command with the source's path relative
# to the current folder, because Clang derives the names of anonymous namespaces from it.
set -euo pipefail

source=${!#}
[[ ! -f $source ]] || source=$(realpath --relative-to=. "$source")
exec "${@:1:$#-1}" "$source"
