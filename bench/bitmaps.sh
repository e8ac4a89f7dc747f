#!/usr/bin/env bash
# Prints the bitmap routines' speed on a 1024 x 768 bitmap as "<name>: <value>" lines: a memcpy
# of the bitmap (the floor), each routine, the same routine through canvas pixel calls, and the
# routine's time per memcpy. Each figure is the fastest of three repetitions. Build the
# bench_bitmaps target first; extra arguments go to Google Benchmark.
set -euo pipefail
cd "$(dirname "$0")/.."
binary=${BUILD_DIR:-build/default}/bench/bench_bitmaps
[ -x "$binary" ] || { echo "bitmaps.sh: build the bench_bitmaps target first" >&2; exit 2; }
"$binary" --ratio --benchmark_color=false --benchmark_repetitions=3 "$@" 2>/dev/null |
    sed 's/\x1b\[[0-9;]*m//g' | grep -E '^[A-Za-z][A-Za-z0-9 ]*: [0-9.]+( us)?$'
