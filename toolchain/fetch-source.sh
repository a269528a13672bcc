#!/bin/bash
# fetch-source.sh PACKAGE[=VERSION] [APT-OPTION...]: downloads a Debian source
# package to the current folder.
#
# Most machines have no source packages in their apt configuration.  The list
# for them is made from what apt itself knows of its Debian entries, whatever
# file format they are written in, and apt is run on that list alone, with
# folders of its own: the configuration of the machine stays as it is, its
# mirrors and proxies are used, and the signatures are checked as ever.
#
# Entries of other vendors are left out by the "Origin" of their signed index:
# they do not have the package, and not all of them offer sources.

set -euo pipefail
package=$1
shift

keyring=/usr/share/keyrings/debian-archive-keyring.gpg
mkdir -p apt/lists/partial apt/cache/archives/partial
apt-get indextargets 'Created-By: Packages' 'Origin: Debian' \
    --format "deb-src [signed-by=$keyring] \$(REPO_URI) \$(RELEASE) \$(COMPONENT)" |
    sort -u > apt/sources.list
if [ ! -s apt/sources.list ]; then
    echo "${0##*/}: apt has no package lists of Debian" >&2
    exit 1
fi

options=(
    -o Dir::Etc::SourceList="$PWD/apt/sources.list"
    -o Dir::Etc::SourceParts=/dev/null
    -o Dir::State::Lists="$PWD/apt/lists"
    -o Dir::Cache="$PWD/apt/cache"
    # The current folder may be closed to the user that apt downloads as.
    -o APT::Sandbox::User=root
)
apt-get "${options[@]}" update
apt-get "${options[@]}" source --download-only "$@" "$package"
