#!/usr/bin/env bash
# Times presenting on a private Xvfb server and prints, per scene:
#   <scene>: ours <us> us, bare <us> us, ratio <ours/bare> (paint <us> us, without it <r>,
#   floor <us> us, paint/floor <r>, ours/(bare+floor) <r>)
# "ours" runs from Invalidate (or a full repaint) through the paint and the MIT-SHM present
# to XSync; "bare" is XShmPutImage of the same rectangle with its completion event and
# XSync, same connection, rounds interleaved with ours; "paint" is the framework's painting
# of the same damage alone, nothing sent, and "without it" is (ours - paint) / bare; "floor"
# is each control's own drawing alone plus a fill of what no opaque control covers.
# Build the bench_present target first.
set -euo pipefail
cd "$(dirname "$0")/.."
binary=${BUILD_DIR:-build/default}/bench/bench_present
if [ ! -x "$binary" ]; then
    echo "present.sh: $binary not found: build the bench_present target" >&2
    exit 2
fi
xvfb-run -a -s "-screen 0 1280x1024x24 -nolisten tcp" "$binary"
