#pragma once
// TBitmap: an off-screen picture of 32-bit pixels with its own canvas. New pixels are white.
// A monochrome bitmap holds only black and white and draws as a mask (black = text colour,
// white = background colour when used as a brush pattern). BMP and PNG files; form files
// store the pixels under the binary property "Data".
// TIcon: an icon picture with alpha, read from ICO or PNG files; a default icon when empty.

#include "PixelBuffer.h"

#include "platform/core/Persistent.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace qv {

class TCanvas;

class TBitmap : public TPersistent {
    QV_OBJECT
public:
    TBitmap();
    TBitmap(int width, int height);
    ~TBitmap() override;

    int Width() const { return m_pixels.Width(); }
    int Height() const { return m_pixels.Height(); }
    void SetWidth(int value) { SetSize(value, Height()); }
    void SetHeight(int value) { SetSize(Width(), value); }
    // Negative sizes count as zero; a zero extent empties the bitmap.
    void SetSize(int width, int height);
    bool Empty() const { return m_pixels.IsEmpty(); }

    bool Monochrome() const { return m_monochrome; }
    // Turning monochrome on maps white to white and every other colour to black.
    void SetMonochrome(bool value);

    TCanvas& Canvas();
    const TPixelBuffer& Pixels() const { return m_pixels; }
    TPixelBuffer& Pixels() { return m_pixels; }
    // Row y as 0x00RRGGBB pixels; ERangeError outside the bitmap.
    std::uint32_t* ScanLine(int y);
    const std::uint32_t* ScanLine(int y) const;

    void Assign(const TPersistent& Source) override;
    void DefineProperties(TFiler& Filer) override;

    // BMP or PNG, chosen by content on load and by extension (.png) on save.
    void LoadFromFile(const std::string& path);
    void SaveToFile(const std::string& path) const;
    void LoadFromBytes(const std::vector<std::uint8_t>& data, const std::string& source = "data");
    // The form-file representation: a 4-byte length and a BMP file.
    std::vector<std::uint8_t> SaveToBytes() const;

    TNotifyEvent OnChange;

    // Called by the canvas after drawing.
    void Changed();

private:
    TPixelBuffer m_pixels;
    bool m_monochrome{false};
    std::unique_ptr<TCanvas> m_canvas;
};

class TIcon : public TPersistent {
    QV_OBJECT
public:
    TIcon();

    int Width() const { return Image().Width(); }
    int Height() const { return Image().Height(); }
    bool Empty() const { return m_pixels.IsEmpty(); }
    // The picture with alpha in the top byte (0xAARRGGBB); the default icon when empty.
    const TPixelBuffer& Image() const;
    void SetImage(const TPixelBuffer& pixels);

    void Assign(const TPersistent& Source) override;
    void DefineProperties(TFiler& Filer) override;
    // ICO (the largest image) or PNG.
    void LoadFromFile(const std::string& path);
    void SaveToFile(const std::string& path) const;
    void LoadFromBytes(const std::vector<std::uint8_t>& data, const std::string& source = "data");
    std::vector<std::uint8_t> SaveToBytes() const;

    // The 32 x 32 application icon used when no picture is loaded.
    static const TPixelBuffer& DefaultIcon();

    TNotifyEvent OnChange;

private:
    TPixelBuffer m_pixels;
};

} // namespace qv
