#pragma once
// Text through FreeType with fonts found by fontconfig. The classic family names map to the
// system's sans, serif or monospaced family. Glyphs are rendered once per face and kept in a
// process-wide glyph cache guarded by a mutex.

#include "Types.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace qv {

class TDeviceContext;

struct TFontSpec {
    std::string name{"MS Sans Serif"};
    int height{-11}; // < 0: em height in pixels; > 0: cell height
    bool bold{false};
    bool italic{false};
    bool underline{false};
    bool strikeOut{false};
    bool antialiased{true};
    bool operator==(const TFontSpec&) const = default;
};

struct TGlyph {
    int left{0}; // from the pen position to the first column
    int top{0};  // from the baseline up to the first row
    int width{0};
    int height{0};
    int advance{0};
    std::vector<std::uint8_t> coverage; // width * height, 0..255
};

// A font at one size: metrics in pixels and its rendered glyphs.
class TFontFace {
public:
    virtual ~TFontFace() = default;
    virtual int Ascent() const = 0;
    virtual int Descent() const = 0;
    int Height() const { return Ascent() + Descent(); }
    // The glyph of a code point (a missing glyph renders as the font's fallback box).
    virtual const TGlyph& Glyph(char32_t codePoint) = 0;
    virtual int UnderlinePosition() const = 0; // below the baseline
    virtual int LineThickness() const = 0;
};

// The face for a font description, shared and cached.
std::shared_ptr<TFontFace> AcquireFontFace(const TFontSpec& request);
// The font file fontconfig picks for a family (after mapping the classic names).
std::string FontFileFor(const std::string& family, bool bold, bool italic);

std::u32string DecodeUtf8(const std::string& text);
TSize MeasureText(TFontFace& face, const std::u32string& text);

// Text output on a device context in the current text colour; the background of the text
// cell is filled with the background colour when the background mode is opaque.
void TextOutOnDc(TDeviceContext& dc, const TFontSpec& font, int x, int y, const std::string& text,
                 const TRect* clip = nullptr);

// DrawText flags.
enum : unsigned {
    DT_TOP = 0x0,
    DT_LEFT = 0x0,
    DT_CENTER = 0x1,
    DT_RIGHT = 0x2,
    DT_VCENTER = 0x4,
    DT_BOTTOM = 0x8,
    DT_WORDBREAK = 0x10,
    DT_SINGLELINE = 0x20,
    DT_EXPANDTABS = 0x40,
    DT_NOCLIP = 0x100,
    DT_CALCRECT = 0x400,
    DT_NOPREFIX = 0x800,
};

// Formats text in `rect`; returns the text height. With DT_CALCRECT only `rect` is adjusted
// to the text's extent.
int DrawTextOnDc(TDeviceContext& dc, const TFontSpec& font, const std::string& text, TRect& rect,
                 unsigned flags);

} // namespace qv
