#!/bin/bash
# relative-source.sh COMMAND [ARGUMENT...] SOURCE: runs the command with the source's path relative to
# the current folder.
exec "${@:1:$#-1}" "$(realpath --relative-to=. "${!#}")"
