// Block transfers: BitBlt and StretchBlt with ternary raster operations (pattern = the
// selected brush), stretching by the classic pixel rules in the three stretch modes,
// mirroring through negative extents, monochrome sources, and TransparentBlt.

#include "DeviceContext.h"
#include "PixelRows.h"

#include <algorithm>
#include <cstring>

namespace qv {

namespace {

// The ternary operation `code` (the rop's index byte) on whole 32-bit words or on vectors of
// them, written into `result`: bit (4P + 2S + D) of the code is the result bit for pattern
// bit P, source bit S and destination bit D.
template <class T> void Rop3(T& result, std::uint8_t code, const T& p, const T& s, const T& d) {
    switch (code) {
    case 0xCC:
        result = s;
        return;
    case 0x33:
        result = ~s;
        return;
    case 0x88:
        result = s & d;
        return;
    case 0xEE:
        result = s | d;
        return;
    case 0x66:
        result = s ^ d;
        return;
    case 0x44:
        result = s & ~d;
        return;
    case 0xBB:
        result = ~s | d;
        return;
    case 0x11:
        result = ~(s | d);
        return;
    case 0xC0:
        result = p & s;
        return;
    default:
        break;
    }
    result = p ^ p;
    for (int i = 0; i < 8; ++i) {
        if (!((code >> i) & 1)) continue;
        result |= ((i & 4) ? p : ~p) & ((i & 2) ? s : ~s) & ((i & 1) ? d : ~d);
    }
}

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

// Any ternary operation under a solid pattern as four masks: result = a ^ (s & b) ^ (d & c) ^
// (s & d & e). Bit by bit the pattern bit picks the code's high or low nibble, a function of
// S and D whose coefficients of 1, S, D and SD these are. The masks leave out the unused top
// byte, so the result has it clear already.
struct TSolidRopMasks {
    std::uint32_t a, b, c, e;
    TSolidRopMasks(std::uint8_t code, std::uint32_t pattern) {
        // Each coefficient, all ones or zero, for P = 1 and for P = 0.
        const auto coefficient = [code, pattern](auto of) {
            const auto mask = [](unsigned nibble, auto f) { return f(nibble) ? 0x00FFFFFFu : 0u; };
            return (pattern & mask(code >> 4u, of)) | (~pattern & mask(code & 0x0Fu, of));
        };
        // Nibble bit 2S + D is the result for source bit S and destination bit D.
        const auto at = [](unsigned n, unsigned s, unsigned d) { return (n >> (2 * s + d)) & 1u; };
        a = coefficient([&](unsigned n) { return at(n, 0, 0); });
        b = coefficient([&](unsigned n) { return at(n, 1, 0) ^ at(n, 0, 0); });
        c = coefficient([&](unsigned n) { return at(n, 0, 1) ^ at(n, 0, 0); });
        e = coefficient(
            [&](unsigned n) { return at(n, 1, 1) ^ at(n, 1, 0) ^ at(n, 0, 1) ^ at(n, 0, 0); });
    }
};

// The rows of an unstretched blit with the ternary operation `code`: `rows(run)` is called
// once with the row operation for the code, the common ones written out so that each
// becomes a loop of a few vector instructions. `solidPattern` points to the pattern pixel
// when the pattern is one colour everywhere (null otherwise); the other operations then run
// as their four masks.
template <class Rows>
void WithRopRun(std::uint8_t code, const std::uint32_t* solidPattern, Rows&& rows) {
    const auto run = [&](auto op) {
        rows([op](std::uint32_t* dst, const std::uint32_t* src, const auto& pattern, int count) {
            pixel_rows::MixRow(dst, src, pattern, count, op);
        });
    };
    // For operations whose result has the top byte clear already.
    const auto runClear = [&](auto op) {
        rows([op](std::uint32_t* dst, const std::uint32_t* src, const auto& pattern, int count) {
            pixel_rows::MixRow<0xFFFFFFFFu>(dst, src, pattern, count, op);
        });
    };
    switch (code) {
    case 0x33: // NOTSRCCOPY
        return run([](auto& r, const auto&, const auto& s, const auto&) { r = ~s; });
    case 0x88: // SRCAND
        return run([](auto& r, const auto&, const auto& s, const auto& d) { r = s & d; });
    case 0xEE: // SRCPAINT
        return run([](auto& r, const auto&, const auto& s, const auto& d) { r = s | d; });
    case 0x66: // SRCINVERT
        return run([](auto& r, const auto&, const auto& s, const auto& d) { r = s ^ d; });
    case 0x44: // SRCERASE
        return run([](auto& r, const auto&, const auto& s, const auto& d) { r = s & ~d; });
    case 0xBB: // MERGEPAINT
        return run([](auto& r, const auto&, const auto& s, const auto& d) { r = ~s | d; });
    case 0x11: // NOTSRCERASE
        return run([](auto& r, const auto&, const auto& s, const auto& d) { r = ~(s | d); });
    case 0xC0: // MERGECOPY
        return run([](auto& r, const auto& p, const auto& s, const auto&) { r = p & s; });
    case 0xFB: // PATPAINT
        return run([](auto& r, const auto& p, const auto& s, const auto& d) { r = d | p | ~s; });
    case 0xB8: // PSDPxax: the pattern where the source is black, the destination elsewhere
        return run(
            [](auto& r, const auto& p, const auto& s, const auto& d) { r = ((d ^ p) & s) ^ p; });
    case 0xE2: // DSPDxax: the pattern where the source is white, the destination elsewhere
        return run(
            [](auto& r, const auto& p, const auto& s, const auto& d) { r = ((p ^ d) & s) ^ d; });
    default:
        break;
    }
    if (!solidPattern)
        return run([code](auto& r, const auto& p, const auto& s, const auto& d) {
            Rop3(r, code, p, s, d);
        });
    const TSolidRopMasks m(code, *solidPattern);
    // Without the product term (the operation is a sum of its inputs bit by bit) one step less.
    if (m.e == 0)
        return runClear([m](auto& r, const auto&, const auto& s, const auto& d) {
            r = m.a ^ (s & m.b) ^ (d & m.c);
        });
    runClear([m](auto& r, const auto&, const auto& s, const auto& d) {
        r = m.a ^ (s & m.b) ^ (d & m.c) ^ (s & d & m.e);
    });
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
    // A solid or no brush is one pixel everywhere; a tiled one is filled in per row.
    const bool tiled = RopUsesPattern(code) && !pattern.null && !pattern.IsSolid();
    const pixel_rows::TSolidPattern solid{pattern.null ? 0u : pattern.solid.xorMask};
    std::vector<std::uint32_t> patternLine(tiled ? static_cast<std::size_t>(inside.Width()) : 0);
    WithRopRun(code, tiled ? nullptr : &solid.pixel, [&](auto rowOp) {
        dc.ForEachVisibleRect(inside, [&](const TRect& r) {
            for (int py = r.top; py < r.bottom; ++py) {
                std::uint32_t* to = target.Row(py) + r.left;
                const std::uint32_t* from = src.Row(py + dy) + r.left + dx;
                if (!tiled) {
                    rowOp(to, from, solid, r.Width());
                    continue;
                }
                for (int px = r.left; px < r.right; ++px)
                    patternLine[static_cast<std::size_t>(px - r.left)] = pattern.At(px, py).xorMask;
                rowOp(to, from, pixel_rows::TPatternRow{patternLine.data()}, r.Width());
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
    const std::uint32_t written = WrittenBits(code);
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
                const std::uint32_t p = pattern.null ? 0 : pattern.At(px, py).xorMask;
                std::uint32_t mixed;
                Rop3(mixed, code, p, s, dst[px]);
                dst[px] = mixed & written;
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
