#!/usr/bin/env bash
# check-sources.sh: fails on any finding of shellcheck, flake8, clang-format or cppcheck, on lines
# of more than 100 columns, and on strings in the DLL that can't outlive it. The presets linux-tidy
# and mingw-tidy run clang-tidy.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# list PATTERN...: prints the names of the repository's files, including those not yet added.
list() {
    comm -23 <(git ls-files --cached --others --exclude-standard -- "$@" | LC_ALL=C sort) \
        <(git ls-files --deleted | LC_ALL=C sort)
}
mapfile -t sources < <(list '*.cpp' '*.h')
mapfile -t c_tests < <(list 'tests/plugin/*.c')
mapfile -t scripts < <(list '*.sh' .ci/run)
mapfile -t python < <(list '*.py')
# All but test data, generated lists and translation sources
mapfile -t lines < <(list . ':!tests/data' ':!tests/stress/fuzz/seeds' ':!*.ts' \
    ':!docs/imports.txt')
mapfile -t dll < <(list lang plugin ui)

status=0
fail() {
    echo "${0##*/}: $*" >&2
    status=1
}

echo "shellcheck: ${#scripts[@]} scripts"
shellcheck "${scripts[@]}" || fail "shellcheck has findings"

echo "flake8: ${#python[@]} Python files"
flake8 "${python[@]}" || fail "flake8 has findings"

echo "Line length: ${#lines[@]} files"
# -I skips images and UTF-16. Markdown can't wrap the rows of tables.
if LC_ALL=C.UTF-8 grep -InE '^.{101}' "${lines[@]}" | grep -vE '^[^:]+:[0-9]+: *\|' |
    cut -c 1-120 | grep .; then
    fail "these lines have more than 100 columns"
fi

echo "Strings in the DLL: ${#dll[@]} files"
if grep -nE 'Q(String|ByteArray)Literal *\(|QStatic(String|ByteArray)Data *<' "${dll[@]}"; then
    fail "these strings refer to data in the DLL. Qt or the host may keep such a string after the" \
        "DLL has been unloaded, and crash. Use QLatin1String, whose characters are copied."
fi

echo "clang-format: ${#sources[@]} C++ files and the C tests"
clang-format --dry-run --Werror "${sources[@]}" "${c_tests[@]}" || fail "clang-format has findings"

# Suppresses false positives for lambdas that capture a test's variables and for members of
# aggregates, and the advice to replace loops with algorithms.
echo "cppcheck"
cppcheck --quiet --error-exitcode=1 --std=c++17 --language=c++ --library=qt --inline-suppr \
    --enable=warning,style,performance,portability --suppress=missingInclude \
    --suppress='danglingLifetime:tests/*' --suppress=unusedStructMember \
    --suppress=useStlAlgorithm -j "$(nproc)" -I . -I tests "${sources[@]}" ||
    fail "cppcheck has findings"
exit "$status"
