#!/bin/bash
# fetch-source.sh PACKAGE[=VERSION] [APT-OPTION...]: downloads a Debian source package to the
# current folder.
#
# Few machines have source packages in their apt configuration. The source list is made from apt's
# own view of its Debian entries, whatever format they are written in, and apt runs with this list
# and folders of its own: the machine's configuration stays as it is, its mirrors and proxies are
# used, and signatures are checked as usual.
#
# Only entries whose signed index says "Origin: Debian" are used: others do not have the package,
# and some offer no sources.

set -euo pipefail
package=$1
shift

keyring=/usr/share/keyrings/debian-archive-keyring.gpg
mkdir -p apt/lists/partial apt/cache/archives/partial
apt-get indextargets 'Created-By: Packages' 'Origin: Debian' \
    --format "deb-src [signed-by=$keyring] \$(REPO_URI) \$(RELEASE) \$(COMPONENT)" |
    sort -u > apt/sources.list
if [ ! -s apt/sources.list ]; then
    echo "${0##*/}: apt has no package lists for Debian; run apt-get update" >&2
    exit 1
fi

options=(
    -o Dir::Etc::SourceList="$PWD/apt/sources.list"
    -o Dir::Etc::SourceParts=/dev/null
    -o Dir::State::Lists="$PWD/apt/lists"
    -o Dir::Cache="$PWD/apt/cache"
    # apt's download user may have no access to the current folder.
    -o APT::Sandbox::User=root
)
apt-get "${options[@]}" update
apt-get "${options[@]}" source --download-only "$@" "$package"
