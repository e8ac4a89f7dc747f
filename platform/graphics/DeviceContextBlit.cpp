// Block transfers: BitBlt and StretchBlt with ternary raster operations (pattern = the
// selected brush), stretching by the classic pixel rules in the three stretch modes,
// mirroring through negative extents, monochrome sources, and TransparentBlt.

#include "DeviceContext.h"
#include "PixelRows.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <type_traits>

namespace qv {

namespace {

// Whether a ternary operation reads the pattern: its result differs between P = 0 and P = 1.
constexpr bool RopUsesPattern(std::uint8_t code) {
    return ((code >> 4) & 0x0F) != (code & 0x0F);
}

// (a * b + add) div divisor for non-negative results whose product may need more than 64 bits.
std::int64_t ScaledDiv(std::int64_t a, std::int64_t b, std::int64_t add, std::int64_t divisor) {
    return static_cast<std::int64_t>((static_cast<__int128>(a) * b + add) / divisor);
}

int ClampToInt(std::int64_t v) {
    constexpr std::int64_t limit = std::int64_t{1} << 30;
    return static_cast<int>(std::clamp(v, -limit, limit));
}

// The source pixels that one destination pixel reads along one axis: the source coordinates
// first .. last (ascending, all inside the source) and the one a shrink keeps when it keeps
// only one.
struct TSourceRun {
    int first{0};
    int last{-1};
    int kept{0};
    bool IsEmpty() const { return last < first; }
};

// One axis of a stretch. Destination pixels d = 0 .. dd - 1 count from destPos along the
// destination extent (backwards when it is negative), source pixels s = 0 .. ds - 1 likewise
// from srcPos. Growing, d reads the source pixel under its centre,
// s = ((2d + 1) * ds - 1) div (2 * dd); shrinking, source pixel s lands on
// d = ((2s + 1) * dd - 1) div (2 * ds), so d collects the run of s from
// (2 * ds * d + dd) div (2 * dd) up to the start of the next run. A shrink to one pixel
// without mirroring leaves the last source pixel out of the run.
class TStretchAxis {
public:
    // `keepLast`: whether a shrink that keeps one pixel keeps the last of its run, in source
    // order, or the first.
    TStretchAxis(int destPos, int destExtent, int srcPos, int srcExtent, int srcSize, bool keepLast)
        : m_destPos(destPos), m_srcPos(srcPos), m_dd(std::abs(std::int64_t{destExtent})),
          m_ds(std::abs(std::int64_t{srcExtent})), m_srcSize(srcSize),
          m_destBackwards(destExtent < 0), m_srcBackwards(srcExtent < 0), m_keepLast(keepLast),
          m_dropLast(m_dd == 1 && m_ds > 1 && destExtent > 0 && srcExtent > 0) {}

    // The destination coordinates covered: [DestLow(), DestHigh()), clamped to +-2^30.
    int DestLow() const { return ClampToInt(m_destBackwards ? m_destPos - m_dd + 1 : m_destPos); }
    int DestHigh() const { return ClampToInt(m_destBackwards ? m_destPos + 1 : m_destPos + m_dd); }

    TSourceRun RunAt(int destCoord) const {
        const std::int64_t d = m_destBackwards ? m_destPos - destCoord : destCoord - m_destPos;
        std::int64_t s0 = 0;
        std::int64_t s1 = 0;
        if (m_dd >= m_ds) {
            s0 = ScaledDiv(2 * d + 1, m_ds, -1, 2 * m_dd);
            s1 = s0 + 1;
        } else if (m_dropLast) {
            s1 = m_ds - 1;
        } else {
            s0 = FirstOfRun(d);
            s1 = FirstOfRun(d + 1);
        }
        const std::int64_t keptS = m_keepLast ? s1 - 1 : s0;
        const std::int64_t first =
            std::max<std::int64_t>(SourceCoord(m_srcBackwards ? s1 - 1 : s0), 0);
        const std::int64_t last =
            std::min<std::int64_t>(SourceCoord(m_srcBackwards ? s0 : s1 - 1), m_srcSize - 1);
        if (first > last) return {};
        return {static_cast<int>(first), static_cast<int>(last),
                static_cast<int>(std::clamp(SourceCoord(keptS), first, last))};
    }

private:
    std::int64_t FirstOfRun(std::int64_t d) const { return ScaledDiv(2 * d, m_ds, m_dd, 2 * m_dd); }
    std::int64_t SourceCoord(std::int64_t s) const {
        return m_srcBackwards ? m_srcPos - s : m_srcPos + s;
    }

    std::int64_t m_destPos;
    std::int64_t m_srcPos;
    std::int64_t m_dd;
    std::int64_t m_ds;
    std::int64_t m_srcSize;
    bool m_destBackwards;
    bool m_srcBackwards;
    bool m_keepLast;
    bool m_dropLast;
};

// How the pixels of a shrink's run become one.
enum class TMerge { Keep, And, Or };

TMerge MergeOf(int stretchMode) {
    switch (stretchMode) {
    case BLACKONWHITE:
        return TMerge::And;
    case WHITEONBLACK:
        return TMerge::Or;
    default:
        return TMerge::Keep;
    }
}

std::uint32_t MergeRun(const std::uint32_t* line, const TSourceRun& run, TMerge merge) {
    if (merge == TMerge::Keep || run.first == run.last) return line[run.kept];
    std::uint32_t value = line[run.first];
    for (int i = run.first + 1; i <= run.last; ++i)
        value = merge == TMerge::And ? value & line[i] : value | line[i];
    return value;
}

// The source row a destination row reads: the source row itself when the run is one row or
// one is kept, otherwise columns [from, to] of the run's rows merged into `merged`.
const std::uint32_t* SourceLine(const TPixelBuffer& src, const TSourceRun& rowRun, TMerge merge,
                                int from, int to, std::vector<std::uint32_t>& merged) {
    if (merge == TMerge::Keep) return src.Row(rowRun.kept);
    if (rowRun.first == rowRun.last) return src.Row(rowRun.first);
    std::copy(src.Row(rowRun.first) + from, src.Row(rowRun.first) + to + 1, merged.begin() + from);
    for (int y = rowRun.first + 1; y <= rowRun.last; ++y) {
        const std::uint32_t* row = src.Row(y);
        for (int x = from; x <= to; ++x)
            merged[static_cast<std::size_t>(x)] =
                merge == TMerge::And ? merged[static_cast<std::size_t>(x)] & row[x]
                                     : merged[static_cast<std::size_t>(x)] | row[x];
    }
    return merged.data();
}

// The bits of a pixel that an operation writes: a copy moves the whole pixel, as a copy
// between two 32-bit bitmaps does; every other operation leaves the unused top byte clear.
constexpr std::uint32_t WrittenBits(std::uint8_t code) {
    return code == 0xCC ? 0xFFFFFFFFu : 0x00FFFFFFu;
}

// A function of a source bit S and a destination bit D, given as a nibble whose bit 2S + D is
// the result, in its algebraic normal form a ^ (S & b) ^ (D & c) ^ (S & D & e). Each mask is
// all of `bits` where its coefficient is 1 and zero where it is 0, so the result has no bit
// outside `bits`. It works alike on single pixels and on vectors of them.
using TSourceDestForm = pixel_rows::TFormMasks<std::uint32_t>;

TSourceDestForm FormOfNibble(unsigned nibble, std::uint32_t bits) {
    const auto at = [nibble](unsigned s, unsigned d) { return (nibble >> (2 * s + d)) & 1u; };
    const auto mask = [bits](unsigned coefficient) { return coefficient ? bits : 0u; };
    return {mask(at(0, 0)), mask(at(1, 0) ^ at(0, 0)), mask(at(0, 1) ^ at(0, 0)),
            mask(at(1, 1) ^ at(1, 0) ^ at(0, 1) ^ at(0, 0))};
}

// A ternary raster operation (the rop's index byte `code`, whose bit 4P + 2S + D is the result
// for pattern bit P, source bit S and destination bit D), limited to `bits`. Where P is 0 the
// result is the function of the code's low nibble, where P is 1 that of its high nibble. The
// normal form is linear in the function, so the result is low(S, D) ^ (P & change(S, D)),
// `change` being the function of the two nibbles' difference; under one pattern pixel
// everywhere the pattern folds into a single form.
struct TRopForm {
    TSourceDestForm low;
    TSourceDestForm change;

    TRopForm(std::uint8_t code, std::uint32_t bits)
        : low(FormOfNibble(code & 0x0Fu, bits)),
          change(FormOfNibble((code ^ (code >> 4u)) & 0x0Fu, bits)) {}
    TSourceDestForm Under(std::uint32_t pattern) const {
        return {low.a ^ (pattern & change.a), low.b ^ (pattern & change.b),
                low.c ^ (pattern & change.c), low.e ^ (pattern & change.e)};
    }
    template <class T> void operator()(T& result, const T& p, const T& s, const T& d) const {
        T unchanged, changed;
        low(unchanged, s, d);
        change(changed, s, d);
        result = unchanged ^ (p & changed);
    }
};

// The function of source and destination that an operation is on every bit, when it is one:
// when it does not read the pattern, or the pattern is one pixel everywhere, black or white.
std::optional<unsigned> SourceDestNibble(std::uint8_t code, const std::uint32_t* solidPattern) {
    if (!RopUsesPattern(code)) return code & 0x0Fu;
    if (!solidPattern) return std::nullopt;
    switch (*solidPattern & 0x00FFFFFFu) {
    case 0:
        return code & 0x0Fu;
    case 0x00FFFFFFu:
        return code >> 4u;
    default:
        return std::nullopt;
    }
}

// `run(op)` with the row operation of one of the sixteen functions of source and destination
// (nibble bit 2S + D is the result), each written out so that it becomes one or two vector
// instructions. The named two-input operations are among them.
template <class Run> void WithSourceDestOp(unsigned nibble, const Run& run) {
    switch (nibble) {
    case 0x0: // BLACKNESS
        return run([](auto& r, const auto&, const auto& s, const auto&) { r = s ^ s; });
    case 0x1: // NOTSRCERASE
        return run([](auto& r, const auto&, const auto& s, const auto& d) { r = ~(s | d); });
    case 0x2: // DSna
        return run([](auto& r, const auto&, const auto& s, const auto& d) { r = d & ~s; });
    case 0x3: // NOTSRCCOPY
        return run([](auto& r, const auto&, const auto& s, const auto&) { r = ~s; });
    case 0x4: // SRCERASE
        return run([](auto& r, const auto&, const auto& s, const auto& d) { r = s & ~d; });
    case 0x5: // DSTINVERT
        return run([](auto& r, const auto&, const auto&, const auto& d) { r = ~d; });
    case 0x6: // SRCINVERT
        return run([](auto& r, const auto&, const auto& s, const auto& d) { r = s ^ d; });
    case 0x7: // DSan
        return run([](auto& r, const auto&, const auto& s, const auto& d) { r = ~(s & d); });
    case 0x8: // SRCAND
        return run([](auto& r, const auto&, const auto& s, const auto& d) { r = s & d; });
    case 0x9: // DSxn
        return run([](auto& r, const auto&, const auto& s, const auto& d) { r = ~(s ^ d); });
    case 0xA: // the destination unchanged
        return run([](auto& r, const auto&, const auto&, const auto& d) { r = d; });
    case 0xB: // MERGEPAINT
        return run([](auto& r, const auto&, const auto& s, const auto& d) { r = ~s | d; });
    case 0xC: // SRCCOPY
        return run([](auto& r, const auto&, const auto& s, const auto&) { r = s; });
    case 0xD: // SDno
        return run([](auto& r, const auto&, const auto& s, const auto& d) { r = s | ~d; });
    case 0xE: // SRCPAINT
        return run([](auto& r, const auto&, const auto& s, const auto& d) { r = s | d; });
    default: // WHITENESS
        return run([](auto& r, const auto&, const auto& s, const auto&) { r = ~(s ^ s); });
    }
}

// The pattern pixels of row y from column x on, `count` of them, into `line`: the tile's row
// read once, then repeated by doubling copies.
template <class BrushMasks>
void LayOutTileRow(const BrushMasks& pattern, int x, int y, std::uint32_t* line, int count) {
    const TPoint cell = pattern.TileCellOf(x, y);
    const TRopMask* row = pattern.Row(cell.y);
    int done = std::min(pattern.width, count);
    for (int i = 0, column = cell.x; i < done; ++i) {
        line[i] = row[column].xorMask;
        if (++column == pattern.width) column = 0;
    }
    for (; done < count; done *= 2)
        std::memcpy(line + done, line,
                    sizeof(std::uint32_t) * static_cast<std::size_t>(std::min(done, count - done)));
}

// A pattern laid out for the rows of an area. Each tile row is laid out once; the rows of a
// piece of the area take the tile rows in turn from TileRowOf(its top) on, which is the one
// division per piece, and At(x, tile row) is the row operation's pattern from column x on.

// One pattern pixel under every row.
struct TSolidPatternRows {
    pixel_rows::TSolidPattern solid;
    int TileRows() const { return 1; }
    int TileRowOf(int) const { return 0; }
    pixel_rows::TSolidPattern At(int, int) const { return solid; }
};

// A tiled pattern laid out over `area`: a row of the area's width for each row of the tile
// (or of the area, when that is lower), the tile repeated along it.
class TTiledPatternRows {
public:
    template <class BrushMasks>
    TTiledPatternRows(const BrushMasks& pattern, const TRect& area)
        : m_area(area), m_rows(area.Width(), std::min(pattern.height, area.Height())) {
        for (int j = 0; j < m_rows.Height(); ++j)
            LayOutTileRow(pattern, area.left, area.top + j, m_rows.Row(j), area.Width());
    }
    int TileRows() const { return m_rows.Height(); }
    int TileRowOf(int y) const { return (y - m_area.top) % m_rows.Height(); }
    pixel_rows::TPatternRow At(int x, int tileRow) const {
        return {m_rows.Row(tileRow) + (x - m_area.left)};
    }

private:
    TRect m_area;
    TPixelBuffer m_rows;
};

// A solid pattern, or a tiled one of at most kMaxTileRows rows whose width divides the folded
// period, folded into an operation's normal form: for each row of the tile, the four masks
// of the form under each pixel from the area's left edge on, far enough that a row starting
// at any column of the area finds its masks from an offset below the period on. The row
// loop then runs the form with its masks in registers.
class TFoldedPatternRows {
public:
    static constexpr int kMaxTileRows = 8;
    template <class BrushMasks> static bool Folds(const BrushMasks& pattern) {
        return pixel_rows::kFoldedPeriod % pattern.width == 0 && pattern.height <= kMaxTileRows;
    }
    template <class BrushMasks>
    TFoldedPatternRows(const BrushMasks& pattern, const TRect& area, const TRopForm& form)
        : m_area(area), m_rows(std::min(pattern.height, area.Height())) {
        std::array<std::uint32_t, kLength> pixels;
        for (int j = 0; j < m_rows; ++j) {
            LayOutTileRow(pattern, area.left, area.top + j, pixels.data(), kLength);
            std::uint32_t* masks = Masks(j);
            for (int i = 0; i < kLength; ++i) {
                const TSourceDestForm under = form.Under(pixels[static_cast<std::size_t>(i)]);
                masks[i] = under.a;
                masks[kLength + i] = under.b;
                masks[2 * kLength + i] = under.c;
                masks[3 * kLength + i] = under.e;
                m_product = m_product || under.e != 0;
                m_readsDestination = m_readsDestination || under.c != 0 || under.e != 0;
            }
        }
    }
    // Whether the form has its product term, or reads the destination, under any pixel.
    bool HasProduct() const { return m_product; }
    bool ReadsDestination() const { return m_readsDestination; }
    int TileRows() const { return m_rows; }
    int TileRowOf(int y) const { return (y - m_area.top) % m_rows; }
    pixel_rows::TFoldedRow At(int x, int tileRow) const {
        const std::uint32_t* masks =
            m_masks.data() + static_cast<std::size_t>(tileRow) * kRowMasks +
            static_cast<unsigned>(x - m_area.left) % pixel_rows::kFoldedPeriod;
        return {masks, masks + kLength, masks + 2 * kLength, masks + 3 * kLength};
    }

private:
    static constexpr int kLength = pixel_rows::kFoldedPeriod - 1 + pixel_rows::kFoldedLength;
    static constexpr std::size_t kRowMasks = 4 * kLength;
    std::uint32_t* Masks(int tileRow) {
        return m_masks.data() + static_cast<std::size_t>(tileRow) * kRowMasks;
    }
    TRect m_area;
    int m_rows;
    // Per tile row: the a, b, c and e masks, kLength pixels each.
    std::array<std::uint32_t, kMaxTileRows * kRowMasks> m_masks;
    bool m_product{false};
    bool m_readsDestination{false};
};

// The bits a row operation keeps of its result: what every operation writes, or all of them
// for an operation whose result has the top byte clear already.
using TKeepWritten = std::integral_constant<std::uint32_t, 0x00FFFFFFu>;
using TKeepAll = std::integral_constant<std::uint32_t, 0xFFFFFFFFu>;

// The rows of an unstretched blit with the ternary operation `code` over `area` under
// `pattern`: `rows(rowOp, under)` is called once with the row operation for the code and the
// pattern laid out for it (see above). Functions of source and destination alone are written
// out, and the common three-input operations under a solid pattern or a wide tile, so that
// each becomes a loop of a few vector instructions; the others run as their normal form, with
// a solid or narrow tiled pattern folded into it.
template <class BrushMasks, class Rows>
void WithRopRun(std::uint8_t code, const BrushMasks& pattern, const TRect& area, Rows&& rows) {
    const auto over = [&](const auto& under, auto op, auto keep) {
        rows([op](std::uint32_t* dst, const std::uint32_t* src, const auto& p,
                  int count) { pixel_rows::MixRow<decltype(keep)::value>(dst, src, p, count, op); },
             under);
    };
    const bool tiled = RopUsesPattern(code) && !pattern.null && !pattern.IsSolid();
    const TSolidPatternRows solid{{pattern.null ? 0u : pattern.solid.xorMask}};
    // A function of source and destination ignores the pattern it is given.
    if (const auto nibble = SourceDestNibble(code, tiled ? nullptr : &solid.solid.pixel))
        return WithSourceDestOp(*nibble, [&](auto op) { over(solid, op, TKeepWritten{}); });
    const auto run = [&](auto op) {
        if (tiled) return over(TTiledPatternRows(pattern, area), op, TKeepWritten{});
        over(solid, op, TKeepWritten{});
    };
    // A narrow tile folds into the operation's form, which then reads no pattern at all; the
    // written-out operations are for a solid pattern and wide tiles.
    const bool folds = TFoldedPatternRows::Folds(pattern);
    if (!tiled || !folds) {
        switch (code) {
        case 0xC0: // MERGECOPY
            return run([](auto& r, const auto& p, const auto& s, const auto&) { r = p & s; });
        case 0xFB: // PATPAINT
            return run(
                [](auto& r, const auto& p, const auto& s, const auto& d) { r = d | p | ~s; });
        case 0xB8: // PSDPxax: the pattern where the source is black, the destination elsewhere
            return run([](auto& r, const auto& p, const auto& s, const auto& d) {
                r = ((d ^ p) & s) ^ p;
            });
        case 0xE2: // DSPDxax: the pattern where the source is white, the destination elsewhere
            return run([](auto& r, const auto& p, const auto& s, const auto& d) {
                r = ((p ^ d) & s) ^ d;
            });
        default:
            break;
        }
    }
    const TRopForm form(code, 0x00FFFFFFu);
    if (!folds) return over(TTiledPatternRows(pattern, area), form, TKeepAll{});
    const TFoldedPatternRows folded(pattern, area, form);
    // Without the terms of the destination it is not read; without the product term (the
    // operation is a sum of its inputs bit by bit) one step less.
    if (!folded.ReadsDestination())
        return over(
            folded,
            [](auto& r, const auto& masks, const auto& s, const auto&) {
                r = masks.a ^ (s & masks.b);
            },
            TKeepAll{});
    if (!folded.HasProduct())
        return over(
            folded,
            [](auto& r, const auto& masks, const auto& s, const auto& d) {
                r = masks.a ^ (s & masks.b) ^ (d & masks.c);
            },
            TKeepAll{});
    over(
        folded, [](auto& r, const auto& masks, const auto& s, const auto& d) { masks(r, s, d); },
        TKeepAll{});
}

// The unstretched blit with ternary operation `code` of the visible part of `area` of `dc`'s
// target, whose pixels read the source at (x + dx, y + dy), inside `src`. `pattern` is the
// brush prepared for copying.
template <class BrushMasks>
void RopRows(const TDeviceContext& dc, TPixelBuffer& target, const TRect& area,
             const TPixelBuffer& src, int dx, int dy, std::uint8_t code,
             const BrushMasks& pattern) {
    const TRect inside = Intersect(area, target.Bounds());
    if (inside.IsEmpty()) return;
    WithRopRun(code, pattern, inside, [&](auto rowOp, const auto& under) {
        dc.ForEachVisibleRect(inside, [&](const TRect& r) {
            // Everything the rows need in locals: across the call for each row, whatever is
            // read through a reference would be read again.
            std::uint32_t* to = target.Row(r.top) + r.left;
            const std::uint32_t* from = src.Row(r.top + dy) + r.left + dx;
            const std::ptrdiff_t toStride = target.Stride(), fromStride = src.Stride();
            const int left = r.left, width = r.Width(), tileRows = under.TileRows();
            for (int rows = r.Height(), tileRow = under.TileRowOf(r.top); rows > 0; --rows) {
                rowOp(to, from, under.At(left, tileRow), width);
                if (++tileRow == tileRows) tileRow = 0;
                to += toStride;
                from += fromStride;
            }
        });
    });
}

} // namespace

int TDeviceContext::SetStretchBltMode(int mode) {
    const int old = m_stretchMode;
    if (mode >= BLACKONWHITE && mode <= HALFTONE) m_stretchMode = mode;
    return old;
}

void TDeviceContext::BitBlt(int x, int y, int width, int height, TBlitSource source, int sx, int sy,
                            std::uint32_t rop) {
    StretchBlt(x, y, width, height, source, sx, sy, width, height, rop);
}

void TDeviceContext::StretchBlt(int x, int y, int width, int height, TBlitSource source, int sx,
                                int sy, int sw, int sh, std::uint32_t rop) {
    if (!m_target || width == 0 || height == 0) return;
    const auto code = static_cast<std::uint8_t>(rop >> 16);
    if (!RopUsesSource(rop)) return PatBlt(x, y, width, height, rop);
    if (!source.pixels || source.pixels->IsEmpty() || sw == 0 || sh == 0) return;
    // A blit onto itself reads from a snapshot so that overlapping areas come out right.
    TPixelBuffer snapshot;
    if (source.pixels == m_target) {
        snapshot = *m_target;
        source.pixels = &snapshot;
    }
    const TPixelBuffer& src = *source.pixels;
    // An unstretched, unmirrored colour blit works on whole rows of the part over the source:
    // a copy moves them, the other operations run a vector loop along them.
    if (!source.monochrome && width == sw && height == sh && width > 0 && height > 0) {
        const TRect overSource{ClampToInt(std::max<std::int64_t>(x, std::int64_t{x} - sx)),
                               ClampToInt(std::max<std::int64_t>(y, std::int64_t{y} - sy)),
                               ClampToInt(std::min<std::int64_t>(
                                   std::int64_t{x} + width, std::int64_t{x} - sx + src.Width())),
                               ClampToInt(std::min<std::int64_t>(
                                   std::int64_t{y} + height, std::int64_t{y} - sy + src.Height()))};
        if (code == 0xCC)
            ForEachVisibleRect(overSource, [&](const TRect& r) {
                CopyRows(r, src, r.left - x + sx, r.top - y + sy);
            });
        else
            RopRows(*this, *m_target, overSource, src, sx - x, sy - y, code,
                    MakeBrushMasks(m_logBrush, R2_COPYPEN));
        return;
    }
    const TStretchAxis columns(x, width, sx, sw, src.Width(), true);
    const TStretchAxis rows(y, height, sy, sh, src.Height(), false);
    const TRect area = Intersect(
        {columns.DestLow(), rows.DestLow(), columns.DestHigh(), rows.DestHigh()}, GetClipBox());
    if (area.IsEmpty()) return;
    // The source columns of every visible destination column, and the span they read.
    std::vector<TSourceRun> columnRuns(static_cast<std::size_t>(area.Width()));
    int readFrom = src.Width();
    int readTo = -1;
    for (int px = area.left; px < area.right; ++px) {
        const TSourceRun run = columns.RunAt(px);
        columnRuns[static_cast<std::size_t>(px - area.left)] = run;
        if (run.IsEmpty()) continue;
        readFrom = std::min(readFrom, run.first);
        readTo = std::max(readTo, run.last);
    }
    if (readTo < readFrom) return;
    const TMerge merge = MergeOf(m_stretchMode);
    std::vector<std::uint32_t> merged(
        merge == TMerge::Keep ? 0 : static_cast<std::size_t>(src.Width()));
    const std::uint32_t textPixel = PixelOf(m_textColor);
    const std::uint32_t backPixel = PixelOf(m_bkColor);
    const TBrushMasks pattern = MakeBrushMasks(m_logBrush, R2_COPYPEN);
    const TRopForm form(code, WrittenBits(code));
    // Under one pattern pixel everywhere (or none) the pattern folds into the form.
    const bool tiled = !pattern.null && !pattern.IsSolid();
    const TSourceDestForm solidForm = form.Under(pattern.null ? 0 : pattern.solid.xorMask);
    ForEachVisibleRect(area, [&](const TRect& r) {
        for (int py = r.top; py < r.bottom; ++py) {
            const TSourceRun rowRun = rows.RunAt(py);
            if (rowRun.IsEmpty()) continue;
            const std::uint32_t* line = SourceLine(src, rowRun, merge, readFrom, readTo, merged);
            std::uint32_t* dst = m_target->Row(py);
            for (int px = r.left; px < r.right; ++px) {
                const TSourceRun& run = columnRuns[static_cast<std::size_t>(px - area.left)];
                if (run.IsEmpty()) continue;
                std::uint32_t s = MergeRun(line, run, merge);
                if (source.monochrome) s = (s & 0xFFFFFFu) == 0xFFFFFFu ? backPixel : textPixel;
                if (tiled)
                    form(dst[px], pattern.At(px, py).xorMask, s, dst[px]);
                else
                    solidForm(dst[px], s, dst[px]);
            }
        }
    });
}

void TDeviceContext::CopyRows(const TRect& r, const TPixelBuffer& src, int sx, int sy) {
    // Whole rows of two buffers without gaps between their rows are one run of pixels.
    const int width = r.Width();
    const std::size_t rowBytes = static_cast<std::size_t>(width) * sizeof(std::uint32_t);
    if (width == m_target->Width() && width == src.Width() && m_target->Stride() == width &&
        src.Stride() == width)
        return (void)std::memcpy(m_target->Row(r.top), src.Row(sy), rowBytes * r.Height());
    for (int py = r.top; py < r.bottom; ++py)
        std::memcpy(m_target->Row(py) + r.left, src.Row(py - r.top + sy) + sx, rowBytes);
}

void TDeviceContext::TransparentBlt(int x, int y, int width, int height, const TPixelBuffer& source,
                                    int sx, int sy, int sw, int sh,
                                    std::uint32_t transparentPixel) {
    if (!m_target || width <= 0 || height <= 0 || sw <= 0 || sh <= 0 || source.IsEmpty()) return;
    const TStretchAxis columns(x, width, sx, sw, source.Width(), true);
    const TStretchAxis rows(y, height, sy, sh, source.Height(), false);
    const std::uint32_t key = transparentPixel & 0xFFFFFFu;
    ForEachVisibleRect({columns.DestLow(), rows.DestLow(), columns.DestHigh(), rows.DestHigh()},
                       [&](const TRect& r) {
                           for (int py = r.top; py < r.bottom; ++py) {
                               const TSourceRun rowRun = rows.RunAt(py);
                               if (rowRun.IsEmpty()) continue;
                               const std::uint32_t* line = source.Row(rowRun.kept);
                               std::uint32_t* dst = m_target->Row(py);
                               for (int px = r.left; px < r.right; ++px) {
                                   const TSourceRun run = columns.RunAt(px);
                                   if (run.IsEmpty()) continue;
                                   const std::uint32_t s = line[run.kept] & 0xFFFFFFu;
                                   if (s != key) dst[px] = s;
                               }
                           }
                       });
}

} // namespace qv
