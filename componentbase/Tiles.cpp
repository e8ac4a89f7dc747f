#include "componentbase/Tiles.h"

#include <algorithm>

namespace qv {

namespace {

// The tile indices [first, last) along one axis whose tiles meet [from, to).
struct TTileSpan {
    int first, last;
};
TTileSpan Span(int extent, int tile, int from, int to) {
    from = std::max(from, 0);
    to = std::min(to, extent);
    if (from >= to) return {0, 0};
    return {from / tile, (to - 1) / tile + 1};
}

// `bitmap` repeated into `block` as whole tiles until each side reaches kTileBlock pixels.
void FillBlock(const TBitmap& bitmap, TBitmap& block) {
    const int across = (kTileBlock + bitmap.Width() - 1) / bitmap.Width();
    const int down = (kTileBlock + bitmap.Height() - 1) / bitmap.Height();
    block.SetSize(bitmap.Width() * across, bitmap.Height() * down);
    const TPixelBuffer& from = bitmap.Pixels();
    TPixelBuffer& to = block.Pixels();
    for (int y = 0; y < to.Height(); ++y) {
        const std::uint32_t* source = from.Row(y % from.Height());
        std::uint32_t* row = to.Row(y);
        for (int x = 0; x < to.Width(); ++x)
            row[x] = source[x % from.Width()];
    }
    block.SetMonochrome(bitmap.Monochrome()); // black and white stay as they are
}

} // namespace

void ForEachTile(TSize area, TSize tile, const TRect& visible, TTileOrder order,
                 const std::function<void(int x, int y)>& visit) {
    if (tile.cx <= 0 || tile.cy <= 0) return;
    const TTileSpan columns = Span(area.cx, tile.cx, visible.left, visible.right);
    const TTileSpan rows = Span(area.cy, tile.cy, visible.top, visible.bottom);
    if (order == TTileOrder::ColumnsOuter) {
        for (int c = columns.first; c < columns.last; ++c)
            for (int r = rows.first; r < rows.last; ++r)
                visit(c * tile.cx, r * tile.cy);
    } else {
        for (int r = rows.first; r < rows.last; ++r)
            for (int c = columns.first; c < columns.last; ++c)
                visit(c * tile.cx, r * tile.cy);
    }
}

void TileBitmap(TCanvas& canvas, TBitmap& bitmap, int width, int height, TTileOrder order) {
    if (bitmap.Empty()) return;
    TBitmap block;
    TBitmap& tile =
        bitmap.Width() < kTileBlock || bitmap.Height() < kTileBlock ? block : bitmap;
    if (&tile == &block) FillBlock(bitmap, block);
    ForEachTile({width, height}, {tile.Width(), tile.Height()}, canvas.ClipRect(), order,
                [&](int x, int y) { canvas.Draw(x, y, tile); });
}

} // namespace qv
