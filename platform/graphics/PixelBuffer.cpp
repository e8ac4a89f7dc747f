#include "PixelBuffer.h"
#include "PixelRows.h"

#include "platform/core/Exceptions.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
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

TPixelBuffer TPixelBuffer::View(std::uint32_t* pixels, int width, int height, int stride) {
    TPixelBuffer view;
    if (!pixels || width <= 0 || height <= 0) return view;
    view.m_width = width;
    view.m_height = height;
    view.m_stride = stride;
    view.m_data = pixels;
    return view;
}

TPixelBuffer TPixelBuffer::SubView(const TRect& r) {
    if (r.IsEmpty()) return {};
    return View(Row(r.top) + r.left, r.Width(), r.Height(), m_stride);
}

TPixelBuffer::TPixelBuffer(const TPixelBuffer& other)
    : m_width(other.m_width), m_height(other.m_height), m_stride(other.m_width) {
    if (other.IsView()) {
        m_pixels.resize(static_cast<std::size_t>(m_width) * m_height);
        m_data = m_pixels.data();
        CopyPixels(other, {0, 0}, *this, {0, 0}, Bounds());
    } else {
        m_pixels = other.m_pixels;
        m_data = m_pixels.empty() ? nullptr : m_pixels.data();
    }
}

TPixelBuffer& TPixelBuffer::operator=(const TPixelBuffer& other) {
    if (this != &other) *this = TPixelBuffer(other);
    return *this;
}

TPixelBuffer::TPixelBuffer(TPixelBuffer&& other) noexcept
    : m_width(other.m_width), m_height(other.m_height), m_stride(other.m_stride),
      m_data(other.m_data), m_pixels(std::move(other.m_pixels)) {
    other.m_width = other.m_height = other.m_stride = 0;
    other.m_data = nullptr;
}

TPixelBuffer& TPixelBuffer::operator=(TPixelBuffer&& other) noexcept {
    if (this == &other) return *this;
    m_width = other.m_width;
    m_height = other.m_height;
    m_stride = other.m_stride;
    m_data = other.m_data; // a moved vector keeps its storage
    m_pixels = std::move(other.m_pixels);
    other.m_width = other.m_height = other.m_stride = 0;
    other.m_data = nullptr;
    return *this;
}

bool TPixelBuffer::operator==(const TPixelBuffer& other) const {
    if (m_width != other.m_width || m_height != other.m_height) return false;
    const auto rowBytes = static_cast<std::size_t>(m_width) * sizeof(std::uint32_t);
    for (int y = 0; y < m_height; ++y)
        if (std::memcmp(Row(y), other.Row(y), rowBytes) != 0) return false;
    return true;
}

void TPixelBuffer::Resize(int width, int height, std::uint32_t fill) {
    width = std::max(width, 0);
    height = std::max(height, 0);
    if (width == m_width && height == m_height) return;
    CheckSize(width, height);
    TPixelStorage pixels(static_cast<std::size_t>(width) * height);
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
    m_data = m_pixels.empty() ? nullptr : m_pixels.data();
    m_width = width;
    m_height = height;
    m_stride = width;
}

void TPixelBuffer::Fill(std::uint32_t pixel) {
    if (m_stride == m_width) {
        FillPixels(m_data, m_width * m_height, pixel);
        return;
    }
    for (int y = 0; y < m_height; ++y)
        FillPixels(Row(y), m_width, pixel);
}

void CopyPixels(const TPixelBuffer& from, TPoint fromOrigin, TPixelBuffer& to, TPoint toOrigin,
                const TRect& area) {
    if (area.IsEmpty()) return;
    const auto rowBytes = static_cast<std::size_t>(area.Width()) * sizeof(std::uint32_t);
    for (int y = area.top; y < area.bottom; ++y)
        std::memcpy(to.Row(y - toOrigin.y) + (area.left - toOrigin.x),
                    from.Row(y - fromOrigin.y) + (area.left - fromOrigin.x), rowBytes);
}

void FillPixels(std::uint32_t* dst, int count, std::uint32_t pixel) {
    if (count <= 0) return;
    // A plain loop over 32-bit pixels stays scalar at -O2, several times slower than memset;
    // wmemset fills 32-bit units with the C library's vector code (wchar_t is 32 bits here).
    if constexpr (sizeof(wchar_t) == sizeof(std::uint32_t)) {
        if (count >= 16) {
            std::wmemset(reinterpret_cast<wchar_t*>(dst), static_cast<wchar_t>(pixel),
                         static_cast<std::size_t>(count));
            return;
        }
    }
    for (int i = 0; i < count; ++i)
        dst[i] = pixel;
}

void RopPixels(std::uint32_t* dst, int count, std::uint32_t andMask, std::uint32_t xorMask) {
    if (andMask == 0) return FillPixels(dst, count, xorMask);
    if (andMask == 0xFFFFFFFFu && xorMask == 0) return;
    // The destination is also the source here; the top byte stays as it was.
    pixel_rows::MixRow<0xFFFFFFFFu>(
        dst, dst, pixel_rows::TSolidPattern{0}, count,
        [andMask, xorMask](auto& r, const auto&, const auto&, const auto& d) {
            r = (d & andMask) ^ xorMask;
        });
}

} // namespace qv
