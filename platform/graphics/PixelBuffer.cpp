#include "PixelBuffer.h"

#include "platform/core/Exceptions.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace qv {

namespace {

void CheckSize(int width, int height) {
    if (static_cast<std::int64_t>(width) * height > TPixelBuffer::MaxPixels)
        throw EOutOfResources("Bitmap of " + std::to_string(width) + " x " +
                              std::to_string(height) + " pixels is too large");
}

} // namespace

TPixelBuffer::TPixelBuffer(int width, int height, std::uint32_t fill) {
    Resize(width, height, fill);
}

void TPixelBuffer::Resize(int width, int height, std::uint32_t fill) {
    width = std::max(width, 0);
    height = std::max(height, 0);
    if (width == m_width && height == m_height) return;
    CheckSize(width, height);
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * height);
    const int keepW = std::min(width, m_width);
    const int keepH = std::min(height, m_height);
    for (int y = 0; y < height; ++y) {
        std::uint32_t* dst = pixels.data() + static_cast<std::size_t>(y) * width;
        int from = 0;
        if (y < keepH && keepW > 0) {
            std::memcpy(dst, Row(y), sizeof(std::uint32_t) * static_cast<std::size_t>(keepW));
            from = keepW;
        }
        FillPixels(dst + from, width - from, fill);
    }
    m_pixels = std::move(pixels);
    m_width = width;
    m_height = height;
}

void TPixelBuffer::Fill(std::uint32_t pixel) {
    FillPixels(m_pixels.data(), static_cast<int>(m_pixels.size()), pixel);
}

void FillPixels(std::uint32_t* dst, int count, std::uint32_t pixel) {
    if (count <= 0) return;
    // Two pixels per 64-bit store: GCC vectorizes this loop, unlike std::fill on uint32_t.
    int i = 0;
    if (reinterpret_cast<std::uintptr_t>(dst) & 7) {
        dst[0] = pixel;
        i = 1;
    }
    const std::uint64_t pair = (static_cast<std::uint64_t>(pixel) << 32) | pixel;
    const int pairs = (count - i) / 2;
    std::uint32_t* out = dst + i;
    for (int k = 0; k < pairs; ++k)
        std::memcpy(out + 2 * k, &pair, sizeof pair);
    i += pairs * 2;
    if (i < count) dst[i] = pixel;
}

void RopPixels(std::uint32_t* dst, int count, std::uint32_t andMask, std::uint32_t xorMask) {
    if (andMask == 0) return FillPixels(dst, count, xorMask);
    if (andMask == 0xFFFFFFFFu && xorMask == 0) return;
    for (int i = 0; i < count; ++i)
        dst[i] = (dst[i] & andMask) ^ xorMask;
}

} // namespace qv
