#!/usr/bin/env bash
# install-packages.sh [linux|mingw|msvc]: installs missing Debian packages for building, tests and
# the demo, as root or with sudo; with a flavour, also those that only it needs.
# install-packages.sh --only PACKAGE...: installs those of the given packages that are missing.
# toolchain/qt-mingw.sh installs the packages for building Qt.
set -euo pipefail

packages=(
    # Building
    cmake g++ ninja-build pkg-config
    libqt5x11extras5-dev qtbase5-dev qttools5-dev-tools
    libxcb1-dev help2man
    # A virtual display, its window manager, and fonts for all languages of the sample
    openbox xvfb
    fonts-dejavu-core fonts-noto-cjk fonts-tlwg-loma-ttf
    # Tests and source checks
    binutils flake8 gcovr git libbenchmark-dev libxcb-xtest0-dev mandoc
    python3 python3-jsonschema shellcheck valgrind
    clang clang-format clang-tidy cppcheck
    doxygen gettext libclang-rt-dev qttranslations5-l10n tidy
)
case ${1-} in
linux)
    packages+=(chromium poppler-utils python3-pip) # For the test of langcheck's pages in a browser
    ;;
mingw)
    packages+=(g++-mingw-w64-x86-64-posix llvm-19)
    packages+=(fonts-wine python3-license-expression python3-pefile wine wine64)
    ;;
msvc)
    packages+=(binutils-mingw-w64-x86-64 clang-19 dpkg-dev lld-19 llvm-19 xz-utils)
    packages+=(libwine libwine-dev mingw-w64-x86-64-dev osslsigncode python3-clang-19 python3-pip)
    packages+=(fonts-wine python3-license-expression python3-pefile wine wine64)
    ;;
--only)
    packages=("${@:2}")
    ;;
esac

missing=()
for package in "${packages[@]}"; do
    if [[ $(dpkg-query -W -f '${Status}' "$package" 2> /dev/null) != *" ok installed" ]]; then
        missing+=("$package")
    fi
done
((${#missing[@]})) || exit 0

as_root=()
if ((EUID != 0)); then
    if ! command -v sudo > /dev/null; then
        echo "${0##*/}: these packages are missing: ${missing[*]}" >&2
        echo "Install them as root, or install sudo." >&2
        exit 1
    fi
    as_root=(sudo)
fi

echo "Installing ${missing[*]}"
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}"
