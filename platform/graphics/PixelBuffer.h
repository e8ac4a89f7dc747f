#pragma once
// TPixelBuffer: a top-down 32-bit pixel array, one uint32_t per pixel holding 0x00RRGGBB
// (blue in the lowest byte in memory, as a 32-bit device-independent bitmap stores it).
// A buffer owns its pixels, or is a view of pixels that live elsewhere (a part of another
// buffer, a window's shared-memory image) with rows `Stride()` pixels apart.

#include "Color.h"
#include "Types.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

namespace qv {

// Allocates on cache-line (64-byte) boundaries. A buffer's rows then start on a cache line
// whenever the width is a multiple of 16 pixels, so that a row loop's widest vectors each
// load and store one line, not two.
template <class T> struct TCacheLineAllocator {
    using value_type = T;
    static constexpr std::align_val_t alignment{64};
    TCacheLineAllocator() = default;
    template <class U> TCacheLineAllocator(const TCacheLineAllocator<U>&) noexcept {}
    T* allocate(std::size_t n) { return static_cast<T*>(::operator new(n * sizeof(T), alignment)); }
    void deallocate(T* p, std::size_t) noexcept { ::operator delete(p, alignment); }
    template <class U> bool operator==(const TCacheLineAllocator<U>&) const noexcept {
        return true;
    }
};

// The pixels a buffer owns, row after row.
using TPixelStorage = std::vector<std::uint32_t, TCacheLineAllocator<std::uint32_t>>;

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
    // A view of `width` x `height` pixels at `pixels`, rows `stride` pixels apart. The memory
    // stays the caller's and must outlive the view.
    static TPixelBuffer View(std::uint32_t* pixels, int width, int height, int stride);
    // A view of the part `r` of this buffer (`r` must lie inside Bounds()).
    TPixelBuffer SubView(const TRect& r);

    // Copies own their pixels, also copies of a view; moving a view moves the view.
    TPixelBuffer(const TPixelBuffer& other);
    TPixelBuffer& operator=(const TPixelBuffer& other);
    TPixelBuffer(TPixelBuffer&& other) noexcept;
    TPixelBuffer& operator=(TPixelBuffer&& other) noexcept;
    ~TPixelBuffer() = default;

    int Width() const { return m_width; }
    int Height() const { return m_height; }
    bool IsEmpty() const { return m_width == 0 || m_height == 0; }
    TRect Bounds() const { return {0, 0, m_width, m_height}; }
    bool IsView() const { return m_data != nullptr && m_pixels.empty(); }
    // Pixels from one row to the next.
    int Stride() const { return m_stride; }

    // Resizes keeping the overlapping top-left part; new pixels take `fill`. A view that
    // changes size becomes a buffer of its own.
    void Resize(int width, int height, std::uint32_t fill = 0x00FFFFFF);
    void Fill(std::uint32_t pixel);

    std::uint32_t* Row(int y) { return m_data + static_cast<std::size_t>(y) * m_stride; }
    const std::uint32_t* Row(int y) const {
        return m_data + static_cast<std::size_t>(y) * m_stride;
    }
    std::uint32_t At(int x, int y) const { return Row(y)[x]; }
    std::uint32_t& At(int x, int y) { return Row(y)[x]; }
    bool Contains(int x, int y) const { return x >= 0 && y >= 0 && x < m_width && y < m_height; }
    // The owned pixels row after row (empty for a view).
    const TPixelStorage& Pixels() const { return m_pixels; }

    // Same size and pixels.
    bool operator==(const TPixelBuffer& other) const;

private:
    int m_width{0};
    int m_height{0};
    int m_stride{0};
    std::uint32_t* m_data{nullptr}; // m_pixels.data() unless a view
    TPixelStorage m_pixels;
};

// Copies `area` of `from` (placed at `fromOrigin` in a shared coordinate space) into `to`
// (placed at `toOrigin`); `area` must lie inside both.
void CopyPixels(const TPixelBuffer& from, TPoint fromOrigin, TPixelBuffer& to, TPoint toOrigin,
                const TRect& area);

// Fast span writers used by every filling primitive.
void FillPixels(std::uint32_t* dst, int count, std::uint32_t pixel);
// dst = (dst & andMask) ^ xorMask over a span.
void RopPixels(std::uint32_t* dst, int count, std::uint32_t andMask, std::uint32_t xorMask);

} // namespace qv
