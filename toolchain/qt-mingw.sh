#!/bin/bash
# qt-mingw.sh: builds Qt 5 (Core, Gui, Widgets, Test) for 64-bit Windows with MinGW's GCC and prints
# its folder as the only line on stdout; everything else goes to stderr.
#
# Debian has the compiler but no Qt for it, so this script builds Qt once, from Debian's source
# package with Debian's patches. The result is kept in ${ZENDEL_CACHE:-~/.cache/zendel}, in a folder
# named after a hash of this recipe and the source version: a changed recipe or a newer Qt is built
# again, next to the old one. The folders there can be deleted at any time.

set -euo pipefail
export LC_ALL=C
exec 3>&1 4>&2 >&2

source_package=qtbase-opensource-src
# A binary package built from it; apt knows its current version without source lists.
version_package=qtbase5-dev

packages=(
    dpkg-dev
    g++                             # moc, uic and rcc run on the build machine
    g++-mingw-w64-x86-64-posix
    make
    perl
    xz-utils
)

configure_options=(
    -opensource
    -confirm-license
    -release
    -shared
    -silent
    -pch                            # most of the build time is spent parsing headers
    -nomake examples
    -nomake tests

    # Third-party libraries: Qt's own copies or none, whatever is installed here.
    -no-dbus
    -no-icu                         # Qt's own tables convert GB2312 and the like
    -no-libjpeg
    -no-opengl
    -no-openssl
    -qt-freetype
    -qt-harfbuzz
    -qt-libpng
    -qt-pcre
    -qt-zlib

    # Modules
    -no-feature-concurrent
    -no-feature-network
    -no-feature-printer
    -no-feature-sql
    -no-feature-xml

    # Features of the remaining modules that no program here needs: calendars and time zones, file
    # formats, views and dialogs.  To use one, delete its line.  Some have to stay: the windowsvista
    # style needs dockwidget, inputdialog, tableview and treeview; loading a plug-in needs
    # binaryjson.  So do features that add a member or a virtual function to a public class
    # (tabletevent does, to QWidget), because the DLL runs on its host's Qt, which was built with
    # other options.  The test qt_layout compares the classes.
    -no-direct2d
    -no-feature-calendarwidget
    -no-feature-colordialog
    -no-feature-columnview
    -no-feature-concatenatetablesproxymodel
    -no-feature-datawidgetmapper
    -no-feature-datetimeedit
    -no-feature-dial
    -no-feature-dirmodel
    -no-feature-effects
    -no-feature-errormessage
    -no-feature-etw
    -no-feature-filedialog
    -no-feature-filesystemmodel
    -no-feature-fontcombobox
    -no-feature-fontdialog
    -no-feature-fscompleter
    -no-feature-gestures
    -no-feature-gif
    -no-feature-graphicseffect
    -no-feature-graphicsview
    -no-feature-hijricalendar
    -no-feature-islamiccivilcalendar
    -no-feature-jalalicalendar
    -no-feature-keysequenceedit
    -no-feature-lcdnumber
    -no-feature-mdiarea
    -no-feature-movie
    -no-feature-pdf
    -no-feature-progressdialog
    -no-feature-scroller
    -no-feature-sessionmanager
    -no-feature-sharedmemory
    -no-feature-splashscreen
    -no-feature-statemachine
    -no-feature-systemsemaphore
    -no-feature-systemtrayicon
    -no-feature-tablewidget
    -no-feature-textmarkdownreader
    -no-feature-textmarkdownwriter
    -no-feature-textodfwriter
    -no-feature-timezone
    -no-feature-toolbox
    -no-feature-topleveldomain
    -no-feature-transposeproxymodel
    -no-feature-treewidget
    -no-feature-tuiotouch
    -no-feature-undocommand
    -no-feature-undogroup
    -no-feature-undostack
    -no-feature-undoview
    -no-feature-vulkan
    -no-feature-wizard
)

fail() {
    echo "${0##*/}: $*"
    exit 1
}

# Daemons that a package starts must not inherit the lock (descriptor 9).
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@" 9>&-
    elif command -v sudo > /dev/null; then
        sudo "$@" 9>&-
    else
        fail "needs root or sudo for: $*" >&4
    fi
}

# Sets version to the one that apt would install now or, without package lists, to the installed
# one, and prefix accordingly.  Needs no network.
find_prefix() {
    version=$(apt-cache policy "$version_package" | awk '$1 == "Candidate:" { print $2 }')
    # Debian appends +bN when it rebuilds a package from the same source.
    version=$(sed 's/+b[0-9]*$//; s/^(none)$//' <<< "$version")
    local key
    key=$({ echo "$version"; cat "$here"/{qt-mingw,fetch-source}.sh; } | sha256sum | cut -c1-16)
    prefix=$cache/qt-mingw-$key
}

print_if_built() {
    if [ -n "$version" ] && [ -d "$prefix" ]; then
        echo "$prefix" >&3
        exit 0
    fi
}

install_packages() {
    # Even if nothing is missing: only the current version of a source package can be downloaded,
    # so the lists must be fresh.  Without a network the build fails later and says why.
    as_root apt-get update || echo "The package lists could not be refreshed."
    local package missing=()
    for package in "${packages[@]}"; do
        dpkg-query -W -f '${Status}\n' "$package" 2>/dev/null |
            grep -q ' installed$' || missing+=("$package")
    done
    if [ ${#missing[@]} -gt 0 ]; then
        as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y \
            --no-install-recommends -o DPkg::Lock::Timeout=600 "${missing[@]}"
    fi
}

fetch_source() {
    "$here/fetch-source.sh" "$source_package=$version"
    # apt has already checked the files against the signed index.
    dpkg-source --no-check -x "${source_package}_${version#*:}.dsc" source
}

patch_source() {
    # Debian's source lacks the header of the tablet drivers, so the platform plug-in is built
    # without them; in the libraries the feature stays on (see above).
    local folder=source/src/plugins/platforms/windows
    sed -i 's/^#if QT_CONFIG(tabletevent)/#if 0/' "$folder"/*.cpp
    sed -i 's/^qtConfig(tabletevent)/false/' "$folder"/windows.pri
}

# Makes the build reproducible, independent of its folder and time.  -MMD lists the included files
# for copy_notices.
set_compiler_options() {
    local options="-ffile-prefix-map=$work/= -ffile-prefix-map=$work/root$prefix=qt -MMD"
    printf '%s\n' "QMAKE_CFLAGS += $options" "QMAKE_CXXFLAGS += $options" \
        >> source/mkspecs/common/g++-win32.conf
    echo 'QMAKE_LFLAGS += -Wl,--no-insert-timestamp' >> source/mkspecs/win32-g++/qmake.conf
    export QT_RCC_SOURCE_DATE_OVERRIDE=1
}

# Reads make's output and reports progress now and then.
follow() {
    # About 1000 files with the options above.
    awk '/^compiling / && ++n % 50 == 0 {
        printf "Qt: compiled %d of about 1000 files\n", n
        fflush()
    }'
}

# Debian has two MinGW compilers, one for each thread model, behind one name.  This binds the name
# to the right one for this build only and leaves the choice of update-alternatives alone.
set_up_mingw() {
    local tool
    mkdir bin
    for tool in gcc g++; do
        ln -s "/usr/bin/x86_64-w64-mingw32-$tool-posix" "bin/x86_64-w64-mingw32-$tool"
    done
    export PATH=$PWD/bin:$PATH
    configure_options+=(
        -xplatform win32-g++
        -device-option CROSS_COMPILE=x86_64-w64-mingw32-
    )
}

build() {
    # The caller's flags would reach only some of the compilers.
    unset CFLAGS CXXFLAGS CPPFLAGS LDFLAGS
    unset QMAKESPEC XQMAKESPEC QMAKEPATH QMAKEFEATURES QTDIR
    MAKEFLAGS=-j$(nproc)
    export MAKEFLAGS

    set_compiler_options
    set_up_mingw
    mkdir build
    cd build
    echo "configuring"
    # The prefix is Qt's final folder; the rename at the end puts it there.
    ../source/configure -prefix "$prefix" "${configure_options[@]}" >> "$log" 2>&1
    make 2>&1 | tee -a "$log" | follow
    echo "installing"
    make -j1 install INSTALL_ROOT="$work/root" >> "$log" 2>&1
    cd "$work"
}

# Copies what THIRD-PARTY-NOTICES is made from: licences, Qt's descriptions of third-party code, the
# files that each folder of Qt compiles, includes or stores as a resource, and the name of the
# source package.
copy_notices() {
    local folder=$1
    mkdir -p "$folder"
    cp source/LICENSE.LGPL3 source/LICENSE.GPL3 source/debian/copyright "$folder"
    (cd source && find src \( -name qt_attribution.json -o -iname '*licen[cs]e*' \
        -o -name COPYING -o -name FTL.TXT -o -name GPLv2.TXT \) -type f \
        -exec cp --parents -t "$folder" {} +)
    # Most headers are included through source/include, as include/QtCore/../../src/...
    (cd build/src
        grep -roE --include='*.d' '[^ ]*source/(src|include)/[^ \]+' .
        grep -roE --include=Makefile.Release '[^ ]*source/src/[^ \]+\.(binaryjson|icc)' .) |
        sed -E 's!^\./([^:]*)/(\.[^:]*|Makefile\.Release):.*source/!\1 !' |
        sort -u > "$folder/compiled"
    echo "$source_package $version" > "$folder/source"
}

here=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
cache=$(realpath -m "${ZENDEL_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/zendel}")

find_prefix
print_if_built

# One build at a time: a second caller waits and then finds the result.
mkdir -p "$cache"
exec 9> "$cache/qt-mingw.lock"
if ! flock -n 9; then
    echo "Waiting for another build of Qt for MinGW."
    flock 9
fi
print_if_built
# Leftovers of killed builds.
rm -rf "$cache/build-mingw".*

echo "Building Qt for MinGW, once: about 15 minutes on 2 cores."
log=$cache/qt-mingw.log
work=$(mktemp -d "$cache/build-mingw.XXXXXX")
finish() {
    rm -rf "$work" || true          # the next build removes any leftovers
    if [ -d "$prefix" ]; then
        rm -f "$log"
    else
        tail -n 20 "$log"
        echo "${0##*/}: Qt for MinGW was not built; the complete log is $log"
    fi
}
trap finish EXIT
: > "$log"

cd "$work"
echo "installing packages"
install_packages >> "$log" 2>&1
find_prefix
print_if_built
[ -n "$version" ] || fail "apt does not know the package $version_package"
echo "fetching $source_package $version"
fetch_source >> "$log" 2>&1
patch_source
build
copy_notices "$work/root$prefix/share/doc"
mv -T "$work/root$prefix" "$prefix"
echo "$prefix" >&3
