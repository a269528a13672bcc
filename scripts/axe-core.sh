#!/usr/bin/env bash
# axe-core.sh: fetches axe-core, with which a test checks langcheck's pages, and prints its folder
# on stdout; everything else goes to stderr. The one file is part of a Python package.
#
# The result is kept in ${ZENDEL_CACHE:-~/.cache/zendel} and may be deleted there at any time.
set -euo pipefail

package=axe-playwright-python==0.1.8 # Contains axe-core 4.12.1
hash=fdd263c998388f1a8e67cad02677e612d946248bd44d163be5e8650ea31f95f8
cache=$(realpath -m "${ZENDEL_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/zendel}")
result=$cache/axe-core-${hash:0:16}

if [[ ! -d $result ]]; then
    mkdir -p "$cache"
    folder=$(mktemp -d "$cache/axe-core.XXXXXX")
    trap 'rm -rf "$folder"' EXIT
    echo "$package --hash=sha256:$hash" > "$folder/requirements"
    python3 -m pip download --quiet --disable-pip-version-check --require-hashes --no-deps \
        --only-binary=:all: --dest "$folder" --requirement "$folder/requirements" >&2
    mkdir "$folder/result"
    python3 -c 'import shutil, sys; shutil.unpack_archive(*sys.argv[1:])' \
        "$folder"/*.whl "$folder" zip
    mv "$folder/axe_playwright_python/axe.min.js" "$folder/result/"
    chmod 755 "$folder/result"
    # Another run may have been faster.
    mv -T "$folder/result" "$result" 2> /dev/null || [[ -d $result ]]
fi
echo "$result"
