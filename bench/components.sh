#!/usr/bin/env bash
# Prints the components' speed as "<name>: <value>" lines: the paint cost of each component
# at its default size and at four times its size, the multimedia timer's lateness at 1 ms
# beside a bare timerfd loop, the thread timer's hand-over beside an eventfd hand-off, and the
# scope's 1000 x 100 repaint beside a plain rasterizer and Qt's raster engine.
# Build the bench_components target first.
set -euo pipefail
cd "$(dirname "$0")/.."
binary=${BUILD_DIR:-build/default}/bench/bench_components
[ -x "$binary" ] || { echo "components.sh: build the bench_components target first" >&2; exit 2; }
"$binary" --scope --timers --benchmark_format=csv "$@" 2>/dev/null | awk -F, '
    /^"BM_/ { name = $1; size = $8; gsub(/"/, "", name); gsub(/"/, "", size)
              printf "paint %s (%s): %.2f us\n", name, size, $3; next }
    /: / { print }'
