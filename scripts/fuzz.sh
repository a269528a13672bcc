#!/usr/bin/env bash
# fuzz.sh [SECONDS]: builds the fuzzer of the catalogue's reader and runs it, for one minute unless
# told otherwise, from the seeds and from what earlier runs have found. An input that library and
# model read differently, or that a sanitizer stops at, ends it and is kept in
# build/linux-fuzz/artifacts: "build/linux-fuzz/bin/fuzz_catalogue FILE" reads it again.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1-60}

scripts/install-packages.sh linux
cmake --preset linux-fuzz
cmake --build --preset linux-fuzz

build=build/linux-fuzz
mkdir -p "$build/artifacts" "$build/corpus"

# The catalogue is written anew for every input, so in memory where there is a place for it.
memory=/dev/shm
[[ -w $memory ]] || memory=${TMPDIR-/tmp}
folder=$(mktemp -d -p "$memory" zendel-fuzz.XXXXXX)
trap 'rm -rf "$folder"' EXIT

echo "Fuzzing the catalogue's reader for $seconds seconds"
# Not shown: each single input that is worth keeping, and the words that the fuzzer has learned.
TMPDIR=$folder "$build/bin/fuzz_catalogue" -dict=tests/stress/fuzz/catalogue.dict -max_len=2048 \
    -max_total_time="$seconds" -artifact_prefix="$build/artifacts/" -print_final_stats=1 \
    "$build/corpus" tests/stress/fuzz/seeds \
    2>&1 | grep --line-buffered -vE '^#[0-9]+\s+(NEW|REDUCE|RELOAD)|^".*# Uses|ecommended dictionary'
