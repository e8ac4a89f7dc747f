#pragma once
// TPixelBuffer: a top-down 32-bit pixel array, one uint32_t per pixel holding 0x00RRGGBB
// (blue in the lowest byte in memory, as a 32-bit device-independent bitmap stores it).

#include "Color.h"
#include "Types.h"

#include <cstdint>
#include <vector>

namespace qv {

// Converts between TColor ($00BBGGRR) and the pixel layout (0x00RRGGBB).
constexpr std::uint32_t ColorToPixel(std::uint32_t bgr) {
    return ((bgr & 0xFF) << 16) | (bgr & 0xFF00) | ((bgr >> 16) & 0xFF);
}
constexpr TColor PixelToColor(std::uint32_t pixel) {
    return static_cast<TColor>(ColorToPixel(pixel & 0xFFFFFF));
}

class TPixelBuffer {
public:
    // The largest pixel count a buffer may hold (EOutOfResources beyond).
    static constexpr std::int64_t MaxPixels = std::int64_t{1} << 28;

    TPixelBuffer() = default;
    // Negative sizes count as zero; new pixels take `fill`.
    TPixelBuffer(int width, int height, std::uint32_t fill = 0x00FFFFFF);

    int Width() const { return m_width; }
    int Height() const { return m_height; }
    bool IsEmpty() const { return m_width == 0 || m_height == 0; }
    TRect Bounds() const { return {0, 0, m_width, m_height}; }

    // Resizes keeping the overlapping top-left part; new pixels take `fill`.
    void Resize(int width, int height, std::uint32_t fill = 0x00FFFFFF);
    void Fill(std::uint32_t pixel);

    std::uint32_t* Row(int y) { return m_pixels.data() + static_cast<std::size_t>(y) * m_width; }
    const std::uint32_t* Row(int y) const {
        return m_pixels.data() + static_cast<std::size_t>(y) * m_width;
    }
    std::uint32_t At(int x, int y) const { return Row(y)[x]; }
    std::uint32_t& At(int x, int y) { return Row(y)[x]; }
    bool Contains(int x, int y) const { return x >= 0 && y >= 0 && x < m_width && y < m_height; }
    const std::vector<std::uint32_t>& Pixels() const { return m_pixels; }

    bool operator==(const TPixelBuffer&) const = default;

private:
    int m_width{0};
    int m_height{0};
    std::vector<std::uint32_t> m_pixels;
};

// Fast span writers used by every filling primitive.
void FillPixels(std::uint32_t* dst, int count, std::uint32_t pixel);
// dst = (dst & andMask) ^ xorMask over a span.
void RopPixels(std::uint32_t* dst, int count, std::uint32_t andMask, std::uint32_t xorMask);

} // namespace qv
