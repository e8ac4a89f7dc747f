#include "componentbase/Tiles.h"

#include <algorithm>
#include <cstring>

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

// `bitmap` repeated into `block` as whole tiles until each side reaches kTileBlock pixels, or
// covers `reach` (the part of the area that can show) if that is less.
void FillBlock(const TBitmap& bitmap, TSize reach, TBitmap& block) {
    const int bw = bitmap.Width(), bh = bitmap.Height();
    const auto count = [](int tile, int wanted) {
        return std::max((std::min(kTileBlock, wanted) + tile - 1) / tile, 1);
    };
    block.SetSize(bw * count(bw, reach.cx), bh * count(bh, reach.cy));
    const TPixelBuffer& from = bitmap.Pixels();
    TPixelBuffer& to = block.Pixels();
    const auto rowBytes = static_cast<std::size_t>(bw) * sizeof(std::uint32_t);
    for (int y = 0; y < to.Height(); ++y) {
        std::uint32_t* row = to.Row(y);
        if (y >= bh) {
            std::memcpy(row, to.Row(y - bh), rowBytes * static_cast<std::size_t>(to.Width() / bw));
            continue;
        }
        for (int x = 0; x < to.Width(); x += bw)
            std::memcpy(row + x, from.Row(y), rowBytes);
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
    const TRect visible = Intersect(canvas.ClipRect(), {0, 0, width, height});
    if (visible.IsEmpty()) return;
    TBitmap block;
    TBitmap& tile =
        bitmap.Width() < kTileBlock || bitmap.Height() < kTileBlock ? block : bitmap;
    if (&tile == &block) FillBlock(bitmap, {visible.right, visible.bottom}, block);
    ForEachTile({width, height}, {tile.Width(), tile.Height()}, visible, order,
                [&](int x, int y) { canvas.Draw(x, y, tile); });
}

} // namespace qv
