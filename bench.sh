#!/usr/bin/env bash
# bench.sh [OPTION...]
# Installs what is missing, builds, runs the benchmarks and prints what came out, as ratios against
# peers of the same run. What it all means stands in docs/performance.md. Options go to Google
# Benchmark: with --benchmark_repetitions=3 it takes less time and tells less.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

scripts/install-packages.sh linux
cmake --preset linux-bench
cmake --build --preset linux-bench

# All repetitions of all benchmarks of a program are run in a random order, so that a spell of other
# work on the machine hits them alike. Offscreen: a display's time would come on top of everything,
# and a program does not get to know how much it was.
export QT_QPA_PLATFORM=offscreen
results=build/linux-bench/results
mkdir -p "$results"
for program in catalogue translation dialog load; do
    echo "Running bench_$program"
    "build/linux-bench/bin/bench_$program" --benchmark_enable_random_interleaving=true \
        --benchmark_repetitions=21 --benchmark_min_time=0.05 \
        --benchmark_out="$results/$program.json" "$@" >"$results/$program.log" 2>&1 \
        || { cat "$results/$program.log" && exit 1; }
done
bench/ratios.py "$results"/{catalogue,translation,dialog,load}.json

# stripped_size STRIP FILE
stripped_size() {
    local copy
    copy=$(mktemp)
    "$1" -o "$copy" "$2"
    printf '%-12s %6d KiB\n' "$(basename "$2")" $(($(stat -c %s "$copy") / 1024))
    rm "$copy"
}
printf '\nSize, stripped\n'
stripped_size strip build/linux-bench/bin/Zendel.so
if [[ -e build/windows/bin/Zendel.dll ]]; then
    stripped_size x86_64-w64-mingw32-strip build/windows/bin/Zendel.dll
fi
