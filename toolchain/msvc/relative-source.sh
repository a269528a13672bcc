#!/bin/bash
# relative-source.sh COMMAND [ARGUMENT...] SOURCE: runs the command with the source's path relative to
# the current folder. Clang makes names of anonymous namespaces of it.
source=${!#}
[ ! -f "$source" ] || source=$(realpath --relative-to=. "$source")
exec "${@:1:$#-1}" "$source"
