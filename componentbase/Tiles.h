#pragma once
// Copies of one bitmap laid side by side from the origin, as the tile maps and the tiled form
// background paint them. Tiles never overlap, so the order of the walk does not change a
// pixel; it is kept as each component defines it.

#include "platform/graphics/Bitmap.h"
#include "platform/graphics/Canvas.h"

#include <functional>

namespace qv {

// Columns outer (x, then every y of that column) or rows outer.
enum class TTileOrder { ColumnsOuter, RowsOuter };

// Visits the top-left corner of every tile of `tile` size whose corner lies in the area
// (0, 0, width, height) and which meets `visible`, in `order`. Tiles that lie wholly outside
// `visible` are never visited, so a 1 x 1 tile over a huge area costs what is visible.
void ForEachTile(TSize area, TSize tile, const TRect& visible, TTileOrder order,
                 const std::function<void(int x, int y)>& visit);

// Draws `bitmap` (through TCanvas::Draw, with its colours and copy mode) at every tile of the
// area (0, 0, width, height) that meets the canvas's clip box; the last column and row are cut
// by the clip. Small bitmaps are first laid out into a block of whole tiles of at least
// kTileBlock pixels a side (less when less can show), which is drawn instead: the same pixels
// in far fewer copies.
void TileBitmap(TCanvas& canvas, TBitmap& bitmap, int width, int height, TTileOrder order);

inline constexpr int kTileBlock = 64;

} // namespace qv
