// Block transfers: BitBlt and StretchBlt with ternary raster operations (pattern = the
// selected brush), nearest-neighbour stretching and mirroring through negative extents.

#include "DeviceContext.h"

#include <algorithm>
#include <cstring>

namespace qv {

namespace {

// The ternary operation `code` (the rop's index byte) on 32 pixels' worth of bits at once:
// bit (4P + 2S + D) of the code is the result for pattern P, source S and destination D.
std::uint32_t Rop3(std::uint8_t code, std::uint32_t p, std::uint32_t s, std::uint32_t d) {
    switch (code) {
    case 0xCC:
        return s;
    case 0x33:
        return ~s;
    case 0x88:
        return s & d;
    case 0xEE:
        return s | d;
    case 0x66:
        return s ^ d;
    case 0x44:
        return s & ~d;
    case 0xBB:
        return ~s | d;
    case 0x11:
        return ~(s | d);
    case 0xC0:
        return p & s;
    case 0xF0:
        return p;
    case 0x5A:
        return p ^ d;
    case 0x55:
        return ~d;
    case 0x00:
        return 0;
    case 0xFF:
        return 0xFFFFFFFFu;
    default:
        break;
    }
    std::uint32_t result = 0;
    for (int i = 0; i < 8; ++i) {
        if (!((code >> i) & 1)) continue;
        result |= ((i & 4) ? p : ~p) & ((i & 2) ? s : ~s) & ((i & 1) ? d : ~d);
    }
    return result;
}

// One axis of a blit: `count` pixels starting at `start`, walked backwards when mirrored.
struct TAxis {
    int start{0};
    int count{0};
};

TAxis AxisOf(int pos, int extent) {
    if (extent >= 0) return {pos, extent};
    return {pos + extent + 1, -extent};
}

bool SourceUsed(std::uint8_t code) {
    return ((code >> 2) & 0x33) != (code & 0x33);
}

// dst = src without the top byte, four pixels at a time.
void CopyPixelsMasked(std::uint32_t* dst, const std::uint32_t* src, int count) {
    typedef std::uint32_t TQuad __attribute__((vector_size(16), may_alias, aligned(4)));
    constexpr TQuad mask = {0x00FFFFFFu, 0x00FFFFFFu, 0x00FFFFFFu, 0x00FFFFFFu};
    int i = 0;
    for (; i + 4 <= count; i += 4)
        *reinterpret_cast<TQuad*>(dst + i) = *reinterpret_cast<const TQuad*>(src + i) & mask;
    for (; i < count; ++i)
        dst[i] = src[i] & 0x00FFFFFFu;
}

} // namespace

void TDeviceContext::BitBlt(int x, int y, int width, int height, const TPixelBuffer* source, int sx,
                            int sy, std::uint32_t rop) {
    StretchBlt(x, y, width, height, source, sx, sy, width, height, rop);
}

void TDeviceContext::StretchBlt(int x, int y, int width, int height, const TPixelBuffer* source,
                                int sx, int sy, int sw, int sh, std::uint32_t rop) {
    if (!m_target || width == 0 || height == 0) return;
    const auto code = static_cast<std::uint8_t>(rop >> 16);
    if (!SourceUsed(code)) return PatBlt(x, y, width, height, rop);
    if (!source || source->IsEmpty() || sw == 0 || sh == 0) return;
    const TAxis dx = AxisOf(x, width);
    const TAxis dy = AxisOf(y, height);
    const TAxis srcX = AxisOf(sx, sw);
    const TAxis srcY = AxisOf(sy, sh);
    const bool mirrorX = (width < 0) != (sw < 0);
    const bool mirrorY = (height < 0) != (sh < 0);
    // A copy onto itself reads from a snapshot so overlapping areas come out right.
    TPixelBuffer snapshot;
    const TPixelBuffer* src = source;
    if (source == m_target) {
        snapshot = *source;
        src = &snapshot;
    }
    const TRect dest{dx.start, dy.start, dx.start + dx.count, dy.start + dy.count};
    // An unstretched, unmirrored copy moves whole rows.
    if (code == 0xCC && width == sw && height == sh && width > 0 && height > 0) {
        ForEachVisibleRect(dest, [&](const TRect& r) {
            CopyRows(r, *src, r.left - dx.start + srcX.start, r.top - dy.start + srcY.start);
        });
        return;
    }
    const TBrushMasks pattern = MakeBrushMasks(m_logBrush, R2_COPYPEN);
    ForEachVisibleRect(dest, [&](const TRect& r) {
        for (int py = r.top; py < r.bottom; ++py) {
            int i = py - dy.start;
            if (mirrorY) i = dy.count - 1 - i;
            const int syy =
                srcY.start + static_cast<int>(static_cast<std::int64_t>(i) * srcY.count / dy.count);
            const bool rowInside = syy >= 0 && syy < src->Height();
            std::uint32_t* dst = m_target->Row(py);
            const TRopMask* patRow = nullptr;
            int patY = 0;
            if (!pattern.null) {
                patY = ((py - pattern.origin.y) % pattern.height + pattern.height) % pattern.height;
                patRow = pattern.Row(patY);
            }
            for (int px = r.left; px < r.right; ++px) {
                int j = px - dx.start;
                if (mirrorX) j = dx.count - 1 - j;
                const int sxx = srcX.start + static_cast<int>(static_cast<std::int64_t>(j) *
                                                              srcX.count / dx.count);
                // Pixels outside the source read as black, as from an empty device area.
                const std::uint32_t s =
                    rowInside && sxx >= 0 && sxx < src->Width() ? src->At(sxx, syy) : 0;
                std::uint32_t p = 0;
                if (patRow) {
                    const int patX =
                        ((px - pattern.origin.x) % pattern.width + pattern.width) % pattern.width;
                    p = patRow[patX].xorMask;
                }
                dst[px] = Rop3(code, p, s, dst[px]) & 0x00FFFFFFu;
            }
        }
    });
}

void TDeviceContext::CopyRows(const TRect& r, const TPixelBuffer& src, int sx, int sy) {
    // Source pixels outside the source read as black; the rest are copied without their top
    // byte. Columns [inLeft, inRight) of the target lie over the source.
    const int inLeft = std::clamp(r.left - sx, r.left, r.right);
    const int inRight = std::clamp(r.left - sx + src.Width(), inLeft, r.right);
    for (int py = r.top; py < r.bottom; ++py) {
        std::uint32_t* dst = m_target->Row(py);
        const int syy = py - r.top + sy;
        if (syy < 0 || syy >= src.Height()) {
            FillPixels(dst + r.left, r.Width(), 0);
            continue;
        }
        FillPixels(dst + r.left, inLeft - r.left, 0);
        CopyPixelsMasked(dst + inLeft, src.Row(syy) + (inLeft - r.left + sx), inRight - inLeft);
        FillPixels(dst + inRight, r.right - inRight, 0);
    }
}

void TDeviceContext::TransparentBlt(int x, int y, int width, int height, const TPixelBuffer& source,
                                    int sx, int sy, int sw, int sh,
                                    std::uint32_t transparentPixel) {
    if (!m_target || width <= 0 || height <= 0 || sw <= 0 || sh <= 0 || source.IsEmpty()) return;
    ForEachVisibleRect({x, y, x + width, y + height}, [&](const TRect& r) {
        for (int py = r.top; py < r.bottom; ++py) {
            const int syy = sy + static_cast<int>(static_cast<std::int64_t>(py - y) * sh / height);
            if (syy < 0 || syy >= source.Height()) continue;
            for (int px = r.left; px < r.right; ++px) {
                const int sxx =
                    sx + static_cast<int>(static_cast<std::int64_t>(px - x) * sw / width);
                if (sxx < 0 || sxx >= source.Width()) continue;
                const std::uint32_t s = source.At(sxx, syy) & 0xFFFFFF;
                if (s != (transparentPixel & 0xFFFFFF)) m_target->At(px, py) = s;
            }
        }
    });
}

} // namespace qv
