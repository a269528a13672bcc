#!/usr/bin/env bash
# demo.sh [HOST OPTION...]
# Builds the plug-in and starts the example host with it and the sample deployment. Where there is
# no display, the host shows itself on a virtual one and leaves pictures in build/demo.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

(
    cd "$root"
    tools/install-packages.sh
    cmake --preset linux
    cmake --build --preset linux
)

host=$root/build/linux/bin/zendel-host
if [[ -n ${DISPLAY-} || -n ${WAYLAND_DISPLAY-} ]]; then
    exec "$host" "$@"
fi
echo "There is no display. Pictures of the host and its settings dialog:"
exec "$root/tools/with-xvfb.sh" --openbox "$host" --tour "$root/build/demo" "$@"
