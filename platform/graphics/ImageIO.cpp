// BMP and ICO readers and writers, signature sniffing and file helpers.

#include "ImageIO.h"

#include "platform/core/Exceptions.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <limits>

namespace qv {

namespace {

// Bounds-checked little-endian reader over a byte span.
class TByteReader {
public:
    TByteReader(std::span<const std::uint8_t> data, const std::string& source)
        : m_data(data), m_source(source) {}

    std::uint32_t U8(std::size_t at) const { return Need(at, 1), m_data[at]; }
    std::uint32_t U16(std::size_t at) const {
        Need(at, 2);
        return m_data[at] | (m_data[at + 1] << 8);
    }
    std::uint32_t U32(std::size_t at) const {
        Need(at, 4);
        return m_data[at] | (m_data[at + 1] << 8) | (m_data[at + 2] << 16) |
               (static_cast<std::uint32_t>(m_data[at + 3]) << 24);
    }
    std::int32_t I32(std::size_t at) const { return static_cast<std::int32_t>(U32(at)); }
    void Need(std::size_t at, std::size_t count) const {
        if (at > m_data.size() || count > m_data.size() - at) Fail("truncated data");
    }
    std::span<const std::uint8_t> Slice(std::size_t at, std::size_t count) const {
        Need(at, count);
        return m_data.subspan(at, count);
    }
    std::size_t Size() const { return m_data.size(); }
    [[noreturn]] void Fail(const std::string& why) const {
        throw EInvalidGraphic(m_source + ": " + why);
    }

private:
    std::span<const std::uint8_t> m_data;
    const std::string& m_source;
};

void Put16(std::vector<std::uint8_t>& out, std::uint32_t v) {
    out.push_back(static_cast<std::uint8_t>(v));
    out.push_back(static_cast<std::uint8_t>(v >> 8));
}
void Put32(std::vector<std::uint8_t>& out, std::uint32_t v) {
    Put16(out, v & 0xFFFF);
    Put16(out, v >> 16);
}

int LowestBit(std::uint32_t mask) {
    int shift = 0;
    while (mask && !(mask & 1)) {
        mask >>= 1;
        ++shift;
    }
    return shift;
}

// Expands a channel stored under `mask` to 8 bits.
std::uint32_t Channel(std::uint32_t value, std::uint32_t mask) {
    if (!mask) return 0;
    const int shift = LowestBit(mask);
    const std::uint32_t max = mask >> shift;
    return ((value & mask) >> shift) * 255 / max;
}

struct TDibLayout {
    int width{0};
    int height{0}; // rows of colour data
    bool topDown{false};
    int bitCount{0};
    std::uint32_t compression{0};
    std::uint32_t masks[4]{0, 0, 0, 0};
    std::vector<std::uint32_t> palette;
    std::size_t bitsOffset{0};
};

constexpr std::uint32_t BI_RGB = 0;
constexpr std::uint32_t BI_BITFIELDS = 3;
constexpr int MaxDibSide = 1 << 15;

// Reads a DIB header at `at`. For icons the stored height counts colour and mask rows.
TDibLayout ReadDibHeader(const TByteReader& r, std::size_t at, bool icon) {
    TDibLayout d;
    const std::uint32_t headerSize = r.U32(at);
    std::size_t paletteEntry = 4;
    if (headerSize == 12) {
        d.width = static_cast<int>(r.U16(at + 4));
        d.height = static_cast<int>(static_cast<std::int16_t>(r.U16(at + 6)));
        d.bitCount = static_cast<int>(r.U16(at + 10));
        paletteEntry = 3;
    } else if (headerSize >= 40 && headerSize <= 1024) {
        d.width = r.I32(at + 4);
        d.height = r.I32(at + 8);
        d.bitCount = static_cast<int>(r.U16(at + 14));
        d.compression = r.U32(at + 16);
        if (d.compression == BI_BITFIELDS) {
            const bool inHeader = headerSize >= 52;
            const std::size_t m = inHeader ? at + 40 : at + headerSize;
            for (int i = 0; i < 3; ++i)
                d.masks[i] = r.U32(m + 4 * static_cast<std::size_t>(i));
            if (headerSize >= 56) d.masks[3] = r.U32(at + 52);
            if (!inHeader) at += 12;
        }
    } else {
        r.Fail("unsupported bitmap header");
    }
    if (icon) d.height /= 2;
    d.topDown = d.height < 0;
    if (d.height == std::numeric_limits<std::int32_t>::min()) r.Fail("invalid bitmap size");
    d.height = std::abs(d.height);
    if (d.width <= 0 || d.height <= 0 || d.width > MaxDibSide || d.height > MaxDibSide)
        r.Fail("invalid bitmap size");
    if (d.compression != BI_RGB && d.compression != BI_BITFIELDS) r.Fail("unsupported compression");
    const int bc = d.bitCount;
    if (bc != 1 && bc != 4 && bc != 8 && bc != 16 && bc != 24 && bc != 32)
        r.Fail("unsupported bit depth");
    if (d.compression == BI_RGB && bc == 16) {
        d.masks[0] = 0x7C00;
        d.masks[1] = 0x03E0;
        d.masks[2] = 0x001F;
    }
    std::size_t colors = 0;
    if (bc <= 8) {
        colors = headerSize >= 40 ? r.U32(at + 32) : 0;
        if (colors == 0 || colors > (1u << bc)) colors = std::size_t{1} << bc;
    }
    const std::size_t paletteAt = at + headerSize;
    for (std::size_t i = 0; i < colors; ++i) {
        const std::size_t e = paletteAt + i * paletteEntry;
        d.palette.push_back(r.U8(e) | (r.U8(e + 1) << 8) | (r.U8(e + 2) << 16) | 0xFF000000u);
    }
    d.bitsOffset = paletteAt + colors * paletteEntry;
    return d;
}

std::size_t RowBytes(int width, int bitCount) {
    return ((static_cast<std::size_t>(width) * bitCount + 31) / 32) * 4;
}

std::uint32_t DibPixel(const TDibLayout& d, const std::uint8_t* row, int x) {
    switch (d.bitCount) {
    case 1:
    case 4:
    case 8: {
        const int perByte = 8 / d.bitCount;
        const int byte = row[x / perByte];
        const int shift = (perByte - 1 - x % perByte) * d.bitCount;
        const std::size_t index =
            static_cast<std::size_t>((byte >> shift) & ((1 << d.bitCount) - 1));
        return index < d.palette.size() ? d.palette[index] : 0xFF000000u;
    }
    case 16: {
        const std::uint32_t v = row[2 * x] | (row[2 * x + 1] << 8);
        return 0xFF000000u | (Channel(v, d.masks[0]) << 16) | (Channel(v, d.masks[1]) << 8) |
               Channel(v, d.masks[2]);
    }
    case 24:
        return 0xFF000000u | row[3 * x] | (row[3 * x + 1] << 8) | (row[3 * x + 2] << 16);
    default: {
        const std::uint32_t v = row[4 * x] | (row[4 * x + 1] << 8) | (row[4 * x + 2] << 16) |
                                (static_cast<std::uint32_t>(row[4 * x + 3]) << 24);
        if (d.compression != BI_BITFIELDS) return v;
        const std::uint32_t alpha = d.masks[3] ? Channel(v, d.masks[3]) : 0xFF;
        return (alpha << 24) | (Channel(v, d.masks[0]) << 16) | (Channel(v, d.masks[1]) << 8) |
               Channel(v, d.masks[2]);
    }
    }
}

// Decodes the colour rows (and, for icons, the AND mask after them).
TDecodedImage DecodeDibPixels(const TByteReader& r, const TDibLayout& d, std::size_t bitsAt,
                              bool icon) {
    const std::size_t stride = RowBytes(d.width, d.bitCount);
    const auto bits = r.Slice(bitsAt, stride * static_cast<std::size_t>(d.height));
    TDecodedImage image;
    image.pixels.Resize(d.width, d.height, 0);
    bool anyAlpha = false;
    for (int y = 0; y < d.height; ++y) {
        const int srcRow = d.topDown ? y : d.height - 1 - y;
        const std::uint8_t* row = bits.data() + static_cast<std::size_t>(srcRow) * stride;
        std::uint32_t* dst = image.pixels.Row(y);
        for (int x = 0; x < d.width; ++x) {
            dst[x] = DibPixel(d, row, x);
            anyAlpha = anyAlpha || (dst[x] >> 24) != 0;
        }
    }
    const bool alphaChannel = d.bitCount == 32 && (d.compression != BI_BITFIELDS || d.masks[3]);
    if (d.bitCount == 32 && d.compression == BI_RGB && !anyAlpha)
        for (auto* p = image.pixels.Row(0); p != image.pixels.Row(0) + d.width * d.height; ++p)
            *p |= 0xFF000000u;
    image.hasAlpha = alphaChannel && anyAlpha;
    if (icon) {
        const std::size_t maskStride = RowBytes(d.width, 1);
        const std::size_t maskAt = bitsAt + stride * static_cast<std::size_t>(d.height);
        if (maskAt + maskStride * static_cast<std::size_t>(d.height) <= r.Size() &&
            !image.hasAlpha) {
            const auto mask = r.Slice(maskAt, maskStride * static_cast<std::size_t>(d.height));
            for (int y = 0; y < d.height; ++y) {
                const int srcRow = d.topDown ? y : d.height - 1 - y;
                const std::uint8_t* row =
                    mask.data() + static_cast<std::size_t>(srcRow) * maskStride;
                for (int x = 0; x < d.width; ++x)
                    if (row[x / 8] & (0x80 >> (x % 8))) image.pixels.At(x, y) &= 0x00FFFFFF;
            }
            image.hasAlpha = true;
        }
    }
    return image;
}

bool IsPng(std::span<const std::uint8_t> data) {
    return data.size() >= 8 && data[0] == 0x89 && data[1] == 'P' && data[2] == 'N' &&
           data[3] == 'G';
}

} // namespace

TDecodedImage DecodeBmp(std::span<const std::uint8_t> data, const std::string& source) {
    const TByteReader r(data, source);
    if (data.size() < 14 || data[0] != 'B' || data[1] != 'M') r.Fail("not a BMP image");
    const TDibLayout d = ReadDibHeader(r, 14, false);
    std::size_t bitsAt = r.U32(10);
    if (bitsAt < 14 || bitsAt >= data.size()) bitsAt = d.bitsOffset;
    return DecodeDibPixels(r, d, bitsAt, false);
}

std::vector<std::uint8_t> EncodeBmp(const TPixelBuffer& pixels, bool withAlpha) {
    const int bitCount = withAlpha ? 32 : 24;
    const std::size_t stride = RowBytes(pixels.Width(), bitCount);
    const std::size_t imageSize = stride * static_cast<std::size_t>(pixels.Height());
    std::vector<std::uint8_t> out;
    out.reserve(54 + imageSize);
    out.push_back('B');
    out.push_back('M');
    Put32(out, static_cast<std::uint32_t>(54 + imageSize));
    Put32(out, 0);
    Put32(out, 54);
    Put32(out, 40);
    Put32(out, static_cast<std::uint32_t>(pixels.Width()));
    Put32(out, static_cast<std::uint32_t>(withAlpha ? -pixels.Height() : pixels.Height()));
    Put16(out, 1);
    Put16(out, static_cast<std::uint32_t>(bitCount));
    Put32(out, 0);
    Put32(out, static_cast<std::uint32_t>(imageSize));
    Put32(out, 3780); // 96 dots per inch
    Put32(out, 3780);
    Put32(out, 0);
    Put32(out, 0);
    for (int i = 0; i < pixels.Height(); ++i) {
        const int y = withAlpha ? i : pixels.Height() - 1 - i;
        const std::uint32_t* row = pixels.Row(y);
        const std::size_t start = out.size();
        for (int x = 0; x < pixels.Width(); ++x) {
            out.push_back(static_cast<std::uint8_t>(row[x]));
            out.push_back(static_cast<std::uint8_t>(row[x] >> 8));
            out.push_back(static_cast<std::uint8_t>(row[x] >> 16));
            if (withAlpha) out.push_back(static_cast<std::uint8_t>(row[x] >> 24));
        }
        out.resize(start + stride, 0);
    }
    return out;
}

std::vector<TDecodedImage> DecodeIco(std::span<const std::uint8_t> data,
                                     const std::string& source) {
    const TByteReader r(data, source);
    if (r.U16(0) != 0 || (r.U16(2) != 1 && r.U16(2) != 2)) r.Fail("not an icon");
    const std::uint32_t count = r.U16(4);
    if (count == 0) r.Fail("icon holds no image");
    std::vector<TDecodedImage> images;
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::size_t entry = 6 + 16 * static_cast<std::size_t>(i);
        const std::uint32_t size = r.U32(entry + 8);
        const std::uint32_t offset = r.U32(entry + 12);
        const auto image = r.Slice(offset, size);
        if (IsPng(image)) {
            images.push_back(DecodePng(image, source));
            continue;
        }
        const TByteReader sub(image, source);
        const TDibLayout d = ReadDibHeader(sub, 0, true);
        images.push_back(DecodeDibPixels(sub, d, d.bitsOffset, true));
    }
    std::stable_sort(images.begin(), images.end(), [](const auto& a, const auto& b) {
        return a.pixels.Width() * a.pixels.Height() > b.pixels.Width() * b.pixels.Height();
    });
    return images;
}

std::vector<std::uint8_t> EncodeIco(const TPixelBuffer& pixels) {
    const std::vector<std::uint8_t> png = EncodePng(pixels, true);
    std::vector<std::uint8_t> out;
    Put16(out, 0);
    Put16(out, 1);
    Put16(out, 1);
    out.push_back(static_cast<std::uint8_t>(pixels.Width() >= 256 ? 0 : pixels.Width()));
    out.push_back(static_cast<std::uint8_t>(pixels.Height() >= 256 ? 0 : pixels.Height()));
    out.push_back(0);
    out.push_back(0);
    Put16(out, 1);
    Put16(out, 32);
    Put32(out, static_cast<std::uint32_t>(png.size()));
    Put32(out, 22);
    out.insert(out.end(), png.begin(), png.end());
    return out;
}

TDecodedImage DecodeImage(std::span<const std::uint8_t> data, const std::string& source) {
    if (IsPng(data)) return DecodePng(data, source);
    if (data.size() >= 2 && data[0] == 'B' && data[1] == 'M') return DecodeBmp(data, source);
    if (data.size() >= 4 && data[0] == 0 && data[1] == 0 && (data[2] == 1 || data[2] == 2) &&
        data[3] == 0)
        return DecodeIco(data, source).front();
    throw EInvalidGraphic(source + ": unknown picture format");
}

std::vector<std::uint8_t> ReadFileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw EInvalidGraphic("Cannot open " + path);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void WriteFileBytes(const std::string& path, std::span<const std::uint8_t> data) {
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(data.data()),
              static_cast<std::streamsize>(data.size()));
    if (!out) throw EInvalidGraphic("Cannot write " + path);
}

} // namespace qv
