#!/usr/bin/env bash
# bare-debian.sh [--cache FOLDER] [--keep] COMMAND [ARGUMENT...]: runs a command of this repository,
# as of the last commit, in a new Debian 12 that has only the essential packages and apt. It fails
# if the command doesn't install everything that it needs, and exits with its code. Needs root.
#   --cache FOLDER  gives the command this folder as ZENDEL_CACHE; without it there is no cache
#   --keep          keeps the system at the end
set -euo pipefail

shared_cache='' keep=''
while [[ ${1-} == --* ]]; do
    case $1 in
    --cache) shift; mkdir -p "$1"; shared_cache=$(realpath "$1") ;;
    --keep) keep=1 ;;
    *)
        echo "${0##*/}: unknown option: $1" >&2
        exit 1
        ;;
    esac
    shift
done
: "${1:?Usage: bare-debian.sh [--cache FOLDER] [--keep] COMMAND [ARGUMENT...]}"
if ((EUID != 0)); then
    echo "${0##*/}: this needs root, for chroot and mount" >&2
    exit 1
fi
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/install-packages.sh --only git mmdebstrap

folder=$(mktemp -d "${TMPDIR:-/var/tmp}/zendel-bare.XXXXXX")
root=$folder/root part='' namespaces=''
finish() {
    if [[ -n $namespaces ]]; then
        # When the first process in the namespaces ends, all others end.
        kill -KILL "$(< "/proc/$namespaces/task/$namespaces/children")" ||
            kill -KILL "$namespaces" || true
        wait "$namespaces" || true
    fi 2> /dev/null
    if [[ -n $keep ]]; then
        echo "The system is in $root"
    else
        rm -rf "$folder" "$part"
    fi
}
trap finish EXIT

# Prints only Debian's entries in this machine's configuration, because other vendors' packages
# could hide what is missing.
print_sources() {
    local options='[signed-by=/usr/share/keyrings/debian-archive-keyring.gpg]'
    apt-get indextargets 'Created-By: Packages' 'Origin: Debian' \
        --format "deb $options \$(REPO_URI) \$(RELEASE) \$(COMPONENT)" | sort -u | grep .
}
sources=$(print_sources) || sources=$(apt-get update -qq && print_sources)
apt-config dump Acquire | grep -v ::IndexTargets > "$folder/apt.conf"
packages=()
[[ $sources != *https://* ]] || packages=(--include=ca-certificates)

cache=$(realpath -m "${ZENDEL_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/zendel}")
key=$(cat scripts/bare-debian.sh "$folder/apt.conf" - <<< "$sources" | sha256sum | cut -c 1-16)
base=$cache/bare-debian-$key.tar
if [[ ! -e $base ]]; then
    echo "Building the base system, once: about a minute"
    mkdir -p "$cache"
    part=$(mktemp "$base.XXXXXX")
    # Without this hook, the system would contain usrmerge and therefore all of Perl.
    mmdebstrap --quiet --variant=apt --hook-dir=/usr/share/mmdebstrap/hooks/merged-usr \
        "${packages[@]}" --aptopt="$folder/apt.conf" --format=tar bookworm "$part" - <<< "$sources"
    rm -f "$cache"/bare-debian-*.tar # Outdated: they have other keys.
    mv "$part" "$base"
fi

echo "Setting up a system with commit $(git rev-parse --short HEAD)"
mkdir "$root"
tar -xf "$base" -C "$root"
git clone --quiet --no-local . "$root/root/zendel"
cp -L /etc/resolv.conf /etc/hosts "$root/etc/"
[[ ! -e /etc/pip.conf ]] || cp /etc/pip.conf "$root/etc/"
[[ ! -e ~/.config/pip/pip.conf ]] ||
    install -D ~/.config/pip/pip.conf "$root/root/.config/pip/pip.conf"
# The package ca-certificates adds this machine's own certificates to Debian's.
[[ ! -d /usr/local/share/ca-certificates ]] ||
    cp -rL /usr/local/share/ca-certificates "$root/usr/local/share/"
((${#packages[@]} == 0)) || chroot "$root" update-ca-certificates > /dev/null

mapfile -t environment < <(env | grep -E '^((PIP|SSL)_[A-Z_]+|[A-Za-z]+_(proxy|PROXY)|TERM)=')
environment+=(HOME=/root PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin)
[[ -z $shared_cache ]] || environment+=("ZENDEL_CACHE=$shared_cache")

enter() {
    set -e
    mount -t proc proc "$root/proc"
    mount --rbind /sys "$root/sys"
    mount --rbind /dev "$root/dev"
    mount -t tmpfs -o mode=1777 tmpfs "$root/dev/shm"
    if [[ -n $shared_cache ]]; then
        mkdir -p "$root$shared_cache" # Qt's files contain this path.
        mount --bind "$shared_cache" "$root$shared_cache"
    fi
    # bash makes background processes ignore these signals.
    chroot "$root" env -i --chdir=/root/zendel --default-signal=INT,QUIT "$@"
}
export -f enter
export root shared_cache
# In the background, because bash handles signals only after a foreground process has ended
unshare --mount --pid --ipc --fork --kill-child bash -c 'enter "$@"' - \
    "${environment[@]}" "$@" <&0 &
namespaces=$! status=0
wait "$namespaces" || status=$?
namespaces=''
echo "${0##*/}: exit code $status after $SECONDS seconds: $*"
((status == 0)) || exit "$status"
