#!/usr/bin/env bash
# fuzz.sh [SECONDS]: builds both fuzzers and runs them at the same time, by default for one minute,
# starting from the seeds and the results of earlier runs. One compares the catalogue reader with
# its model, the other checks catalogues and translations with langcheck. If one finds an error, it
# saves the input in build/linux-fuzz/artifacts; fuzz_catalogue FILE or fuzz_langcheck FILE repeats
# it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
seconds=${1-60}

scripts/build.sh linux-fuzz

build=build/linux-fuzz
mkdir -p "$build/artifacts" "$build/corpus" "$build/corpus-langcheck"

# The fuzzers write a deployment for each input, in memory if possible.
memory=/dev/shm
[[ -w $memory ]] || memory=${TMPDIR-/tmp}
folder=$(mktemp -d -p "$memory" zendel-fuzz.XXXXXX)
trap 'rm -rf "$folder"' EXIT

fuzz() {
    local name=$1
    shift
    # Hides the messages about each new input and the recommended dictionary.
    local hidden='^#[0-9]+\s+(NEW|REDUCE|RELOAD)|^".*# Uses|ecommended dictionary'
    TMPDIR=$folder "$build/bin/$name" -dict=tests/stress/fuzz/catalogue.dict \
        -max_total_time="$seconds" -artifact_prefix="$build/artifacts/" -print_final_stats=1 "$@" \
        2>&1 | grep --line-buffered -vE "$hidden"
}

echo "Fuzzing the catalogue reader and langcheck for $seconds seconds"
# Doesn't report leaks, because fontconfig's memory is still in use when the fuzzer exits.
ASAN_OPTIONS=detect_leaks=0 fuzz fuzz_langcheck -max_len=8192 "$build/corpus-langcheck" \
    tests/stress/fuzz/seeds tests/data/damaged "$build/bin/Lang" > "$folder/langcheck.log" &
langcheck=$!
status=0
fuzz fuzz_catalogue -max_len=2048 "$build/corpus" tests/stress/fuzz/seeds || status=1
wait "$langcheck" || status=1
echo "langcheck:"
cat "$folder/langcheck.log"
exit "$status"
