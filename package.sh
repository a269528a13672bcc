#!/usr/bin/env bash
# package.sh [mingw|msvc]: builds the packages of both Windows flavours, or of the given one, with
# notices, SBOMs and hashes, into packages/ and prints what to give to whom.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

flavours=(mingw msvc)
case ${1-} in
'') ;;
mingw | msvc) flavours=("$1") ;;
*)
    echo "${0##*/}: unknown flavour: $1; use mingw or msvc, or no argument for both" >&2
    exit 1
    ;;
esac

step() {
    printf '\n== %s: %s\n' "$flavour" "$*"
}

pack() {
    cpack --config "build/$flavour/CPackConfig.cmake" -B packages "$@"
}

print_recipients() {
    local name compiler=MinGW-w64 redistributable=''
    name=$(basename packages/Zendel-*-"$flavour"-demo.zip -demo.zip)
    if [[ $flavour == msvc ]]; then
        compiler=MSVC
        redistributable="
      It needs Microsoft's Visual C++ redistributable for x64."
    fi
    cat <<END

For hosts built with $compiler:
  $name.zip
      For host developers, service engineers and translators: Zendel.dll, its headers, langcheck,
      a sample deployment and the documentation.
  $name-demo.zip
      For service engineers and operators: the example host. Unpack it on a Windows PC and
      double-click zendel-host.exe.$redistributable
  $name-selftest.zip
      For whoever tests on Windows: unpack it, double-click selftest.cmd, don't use the mouse or
      keyboard for some minutes, and send back report.txt.$redistributable
  $name-symbols.zip
      Not for customers. Keep it: debuggers need it for crashes of exactly this build.
END
}

for flavour in "${flavours[@]}"; do
    step "installing what is missing, and building"
    scripts/build.sh "$flavour"

    step "packing"
    rm -f packages/SHA256SUMS packages/Zendel-*-"$flavour"{.,-}*
    pack
    pack -D CPACK_COMPONENTS_ALL=selftest
    rm -r packages/_CPack_Packages
    if [[ ! -e packages/SHA256SUMS ]]; then
        echo "${0##*/}: the packages lack THIRD-PARTY-NOTICES and SBOMs, because CMake didn't" \
            "find what they are made from; see its message above" >&2
        exit 1
    fi
done

printf '\nThe packages are in %s\n' "$PWD/packages"
for flavour in "${flavours[@]}"; do
    print_recipients
done
cat <<'END'

Each archive contains THIRD-PARTY-NOTICES. Give its SBOM, the .spdx.json file of the same name, to
whoever asks for one. "sha256sum --check SHA256SUMS" checks all files.
END
if [[ -n $(git status --porcelain 2> /dev/null) ]]; then
    echo "These packages contain uncommitted changes."
fi
