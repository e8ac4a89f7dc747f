#include "Bitmap.h"

#include "Canvas.h"
#include "ImageIO.h"

#include "platform/core/ClassBuilder.h"
#include "platform/core/Exceptions.h"
#include "platform/core/Filer.h"

#include <algorithm>
#include <cstring>

namespace qv {

namespace {

bool EndsWithPng(const std::string& path) {
    if (path.size() < 4) return false;
    std::string ext = path.substr(path.size() - 4);
    std::transform(ext.begin(), ext.end(), ext.begin(),
                   [](unsigned char c) { return std::tolower(c); });
    return ext == ".png";
}

// Form-file data: a little-endian length followed by the picture file, or a bare file.
std::vector<std::uint8_t> WithLength(std::vector<std::uint8_t> file) {
    const auto n = static_cast<std::uint32_t>(file.size());
    std::vector<std::uint8_t> out;
    out.reserve(file.size() + 4);
    for (int i = 0; i < 4; ++i)
        out.push_back(static_cast<std::uint8_t>(n >> (8 * i)));
    for (std::uint8_t b : file)
        out.push_back(b);
    return out;
}

std::span<const std::uint8_t> WithoutLength(const std::vector<std::uint8_t>& data) {
    if (data.size() >= 4) {
        const std::uint32_t n = data[0] | (data[1] << 8) | (data[2] << 16) |
                                (static_cast<std::uint32_t>(data[3]) << 24);
        if (n == data.size() - 4) return std::span<const std::uint8_t>(data).subspan(4);
    }
    return data;
}

} // namespace

// ---- TBitmap ----------------------------------------------------------------------------

const TClassInfo& TBitmap::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TBitmap>("TBitmap", &TPersistent::StaticClassInfo()).Build();
    return info;
}

TBitmap::TBitmap() = default;
TBitmap::TBitmap(int width, int height) {
    SetSize(width, height);
}
TBitmap::~TBitmap() = default;

void TBitmap::SetSize(int width, int height) {
    width = std::max(width, 0);
    height = std::max(height, 0);
    if (width == Width() && height == Height()) return;
    m_pixels.Resize(width, height, 0x00FFFFFF);
    Changed();
}

void TBitmap::SetMonochrome(bool value) {
    if (value == m_monochrome) return;
    m_monochrome = value;
    if (value)
        for (int y = 0; y < Height(); ++y)
            for (std::uint32_t* p = m_pixels.Row(y); p != m_pixels.Row(y) + Width(); ++p)
                *p = (*p & 0xFFFFFF) == 0xFFFFFF ? 0x00FFFFFF : 0;
    Changed();
}

TCanvas& TBitmap::Canvas() {
    if (!m_canvas) {
        m_canvas = std::make_unique<TCanvas>(&m_pixels);
        m_canvas->OnChange = [this](TObject*) { Changed(); };
    }
    m_canvas->SetMonochrome(m_monochrome);
    return *m_canvas;
}

std::uint32_t* TBitmap::ScanLine(int y) {
    if (y < 0 || y >= Height()) throw ERangeError("Scan line index out of range");
    return m_pixels.Row(y);
}

const std::uint32_t* TBitmap::ScanLine(int y) const {
    if (y < 0 || y >= Height()) throw ERangeError("Scan line index out of range");
    return m_pixels.Row(y);
}

void TBitmap::Changed() {
    if (OnChange) OnChange(this);
}

void TBitmap::Assign(const TPersistent& Source) {
    if (const auto* bitmap = dynamic_cast<const TBitmap*>(&Source)) {
        if (bitmap == this) return;
        m_pixels = bitmap->m_pixels;
        m_monochrome = bitmap->m_monochrome;
        Changed();
        return;
    }
    if (const auto* icon = dynamic_cast<const TIcon*>(&Source)) {
        m_pixels = icon->Image();
        for (int y = 0; y < Height(); ++y)
            for (std::uint32_t* p = m_pixels.Row(y); p != m_pixels.Row(y) + Width(); ++p) {
                // Transparent icon pixels become white; the rest are blended onto white.
                const std::uint32_t a = *p >> 24;
                std::uint32_t out = 0;
                for (int shift = 0; shift < 24; shift += 8) {
                    const std::uint32_t c = (*p >> shift) & 0xFF;
                    out |= ((c * a + 255 * (255 - a)) / 255) << shift;
                }
                *p = out;
            }
        m_monochrome = false;
        Changed();
        return;
    }
    TPersistent::Assign(Source);
}

void TBitmap::DefineProperties(TFiler& Filer) {
    Filer.DefineBinaryProperty(
        "Data", [this](const std::vector<std::uint8_t>& data) { LoadFromBytes(data, "Data"); },
        [this] { return SaveToBytes(); }, !Empty());
}

void TBitmap::LoadFromBytes(const std::vector<std::uint8_t>& data, const std::string& source) {
    TDecodedImage image = DecodeImage(WithoutLength(data), source);
    m_pixels = std::move(image.pixels);
    for (int y = 0; y < Height(); ++y)
        for (std::uint32_t* p = m_pixels.Row(y); p != m_pixels.Row(y) + Width(); ++p)
            *p &= 0xFFFFFF;
    m_monochrome = false;
    Changed();
}

std::vector<std::uint8_t> TBitmap::SaveToBytes() const {
    if (Empty()) return {};
    return WithLength(EncodeBmp(m_pixels));
}

void TBitmap::LoadFromFile(const std::string& path) {
    LoadFromBytes(ReadFileBytes(path), path);
}

void TBitmap::SaveToFile(const std::string& path) const {
    if (Empty()) throw EInvalidGraphic("Cannot save an empty bitmap to " + path);
    WriteFileBytes(path, EndsWithPng(path) ? EncodePng(m_pixels, false) : EncodeBmp(m_pixels));
}

// ---- TIcon ------------------------------------------------------------------------------

const TClassInfo& TIcon::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TIcon>("TIcon", &TPersistent::StaticClassInfo()).Build();
    return info;
}

TIcon::TIcon() = default;

const TPixelBuffer& TIcon::DefaultIcon() {
    // A small window: blue title bar, white client area, dark frame, transparent outside.
    static const TPixelBuffer icon = [] {
        TPixelBuffer p(32, 32, 0);
        for (int y = 4; y < 28; ++y)
            for (int x = 2; x < 30; ++x) {
                const bool frame = x == 2 || x == 29 || y == 4 || y == 27;
                const bool title = y < 10;
                p.At(x, y) = 0xFF000000u | (frame ? 0x202020u : title ? 0x000080u : 0xFFFFFFu);
            }
        return p;
    }();
    return icon;
}

const TPixelBuffer& TIcon::Image() const {
    return Empty() ? DefaultIcon() : m_pixels;
}

void TIcon::SetImage(const TPixelBuffer& pixels) {
    m_pixels = pixels;
    if (OnChange) OnChange(this);
}

void TIcon::Assign(const TPersistent& Source) {
    if (const auto* icon = dynamic_cast<const TIcon*>(&Source)) {
        if (icon != this) SetImage(icon->m_pixels);
        return;
    }
    if (const auto* bitmap = dynamic_cast<const TBitmap*>(&Source)) {
        TPixelBuffer opaque = bitmap->Pixels();
        for (int y = 0; y < opaque.Height(); ++y)
            for (std::uint32_t* p = opaque.Row(y); p != opaque.Row(y) + opaque.Width(); ++p)
                *p |= 0xFF000000u;
        SetImage(opaque);
        return;
    }
    TPersistent::Assign(Source);
}

void TIcon::DefineProperties(TFiler& Filer) {
    Filer.DefineBinaryProperty(
        "Data", [this](const std::vector<std::uint8_t>& data) { LoadFromBytes(data, "Data"); },
        [this] { return SaveToBytes(); }, !Empty());
}

void TIcon::LoadFromBytes(const std::vector<std::uint8_t>& data, const std::string& source) {
    TDecodedImage image = DecodeImage(WithoutLength(data), source);
    if (!image.hasAlpha)
        for (int y = 0; y < image.pixels.Height(); ++y)
            for (std::uint32_t* p = image.pixels.Row(y);
                 p != image.pixels.Row(y) + image.pixels.Width(); ++p)
                *p |= 0xFF000000u;
    SetImage(image.pixels);
}

std::vector<std::uint8_t> TIcon::SaveToBytes() const {
    if (Empty()) return {};
    return WithLength(EncodeIco(m_pixels));
}

void TIcon::LoadFromFile(const std::string& path) {
    LoadFromBytes(ReadFileBytes(path), path);
}

void TIcon::SaveToFile(const std::string& path) const {
    WriteFileBytes(path, EncodeIco(Image()));
}

} // namespace qv
