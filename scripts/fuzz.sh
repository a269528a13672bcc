#!/usr/bin/env bash
# fuzz.sh [SECONDS]: builds and runs the catalogue fuzzer, by default for one minute, starting from
# the seeds and the results of earlier runs. If the reader and its model differ or a sanitizer reports
# an error, saves the input in build/linux-fuzz/artifacts; fuzz_catalogue FILE repeats it.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1-60}

scripts/build.sh linux-fuzz

build=build/linux-fuzz
mkdir -p "$build/artifacts" "$build/corpus"

# The fuzzer writes a catalogue for each input, in memory if possible.
memory=/dev/shm
[[ -w $memory ]] || memory=${TMPDIR-/tmp}
folder=$(mktemp -d -p "$memory" zendel-fuzz.XXXXXX)
trap 'rm -rf "$folder"' EXIT

echo "Fuzzing the catalogue reader for $seconds seconds"
# Hides the messages about each new input and the recommended dictionary.
TMPDIR=$folder "$build/bin/fuzz_catalogue" -dict=tests/stress/fuzz/catalogue.dict -max_len=2048 \
    -max_total_time="$seconds" -artifact_prefix="$build/artifacts/" -print_final_stats=1 \
    "$build/corpus" tests/stress/fuzz/seeds \
    2>&1 | grep --line-buffered -vE '^#[0-9]+\s+(NEW|REDUCE|RELOAD)|^".*# Uses|ecommended dictionary'
