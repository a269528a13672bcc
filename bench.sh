#!/usr/bin/env bash
# bench.sh [OPTION...]: builds and runs the benchmarks and prints the results, which
# bench/README.md explains. Options go to Google Benchmark: --benchmark_repetitions=3 is faster.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

scripts/build.sh linux-bench

# Offscreen, because a program can't measure the X server's processor time. Repetitions run in
# random order, so that other load on the machine affects all benchmarks alike.
export QT_QPA_PLATFORM=offscreen
results=build/linux-bench/results
mkdir -p "$results"
for program in catalogue translation dialog load; do
    echo "Running bench_$program"
    "build/linux-bench/bin/bench_$program" --benchmark_enable_random_interleaving=true \
        --benchmark_repetitions=21 --benchmark_min_time=0.05 \
        --benchmark_out="$results/$program.json" "$@" > "$results/$program.log" 2>&1 \
        || { cat "$results/$program.log"; exit 1; }
done
bench/ratios.py "$results"/{catalogue,translation,dialog,load}.json

# stripped_size STRIP FILE: prints the size of the file without symbols.
stripped_size() {
    local copy
    copy=$(mktemp)
    "$1" -o "$copy" "$2"
    printf '%-12s %6d KiB\n' "$(basename "$2")" $(($(stat -c %s "$copy") / 1024))
    rm "$copy"
}
printf '\nSize without symbols\n'
stripped_size strip build/linux-bench/bin/Zendel.so
if [[ -e build/mingw/bin/Zendel.dll ]]; then
    stripped_size x86_64-w64-mingw32-strip build/mingw/bin/Zendel.dll
fi
