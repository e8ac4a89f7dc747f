#!/usr/bin/env bash
# Prints BitBlt of a 400 x 300 bitmap with each raster operation beside a memcpy of the same
# pixels as "<name>: <value>" lines: the memcpy (the floor), each operation and its time per
# memcpy. Each figure is the fastest of three repetitions, all benchmarks' repetitions interleaved
# in random order (see bench/run). Build the bench_blit target first;
# extra arguments go to Google Benchmark.
set -euo pipefail
cd "$(dirname "$0")/.."
binary=${BUILD_DIR:-build/default}/bench/bench_blit
[ -x "$binary" ] || { echo "blit.sh: build the bench_blit target first" >&2; exit 2; }
"$binary" --ratio --benchmark_color=false --benchmark_repetitions=3 \
    --benchmark_enable_random_interleaving=true "$@" 2>/dev/null |
    sed 's/\x1b\[[0-9;]*m//g' | grep -E '^[A-Za-z][A-Za-z0-9 ]*: [0-9.]+( ns)?$'
