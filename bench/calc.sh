#!/usr/bin/env bash
# Times the calculator against muparser on the same fresh strings and prints, per expression:
#   <expression>: ours <ns> ns, muparser <ns> ns, ratio <ours/muparser>
# Build the bench_calc target first (it is built when Debian's libmuparser-dev is installed).
# Extra arguments go to Google Benchmark, e.g. --benchmark_min_time=2.
set -euo pipefail
cd "$(dirname "$0")/.."
binary=${BUILD_DIR:-build/default}/bench/bench_calc
if [ ! -x "$binary" ]; then
    echo "calc.sh: $binary not found: install libmuparser-dev, then build the bench_calc target" >&2
    exit 2
fi
"$binary" --ratio --benchmark_color=false "$@" 2>/dev/null | sed 's/\x1b\[[0-9;]*m//g' |
    grep -E ': ours [0-9]+ ns, muparser '
