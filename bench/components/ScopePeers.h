#pragma once
// The scope's repaint at 1000 x 100 with its full history beside two peers drawing the same
// grid and the same two 1001-point traces: a plain rasterizer written here (a fill, straight
// spans and Bresenham lines into a 32-bit buffer) and, when built with Qt 5, Qt's raster engine
// with antialiasing off. Prints
//   scope 1000x100: ours N ns, plain P ns, qt M ns, ratio-plain R1, ratio-qt R2
// (qt 0 and ratio-qt 0 without Qt). Each figure is the fastest of five repetitions.

namespace qv::bench {

void ReportScopePeers();

} // namespace qv::bench
