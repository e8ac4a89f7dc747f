#include "Text.h"

#include "DeviceContext.h"

#include "platform/core/Exceptions.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include <map>
#include <mutex>

namespace qv {

namespace {

// Every FreeType call and the caches below run under this lock.
std::mutex& GlyphCacheMutex() {
    static std::mutex m;
    return m;
}

std::string Lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return std::tolower(c); });
    return s;
}

// Classic family names and the system family that stands in for them.
std::string SystemFamily(const std::string& name) {
    static const std::map<std::string, std::string> families = {
        {"ms sans serif", "DejaVu Sans"},
        {"arial", "DejaVu Sans"},
        {"tahoma", "DejaVu Sans"},
        {"verdana", "DejaVu Sans"},
        {"helvetica", "DejaVu Sans"},
        {"segoe ui", "DejaVu Sans"},
        {"small fonts", "DejaVu Sans"},
        {"system", "DejaVu Sans"},
        {"ms shell dlg", "DejaVu Sans"},
        {"ms shell dlg 2", "DejaVu Sans"},
        {"times new roman", "DejaVu Serif"},
        {"ms serif", "DejaVu Serif"},
        {"times", "DejaVu Serif"},
        {"georgia", "DejaVu Serif"},
        {"courier new", "DejaVu Sans Mono"},
        {"courier", "DejaVu Sans Mono"},
        {"lucida console", "DejaVu Sans Mono"},
        {"fixedsys", "DejaVu Sans Mono"},
        {"terminal", "DejaVu Sans Mono"},
        {"consolas", "DejaVu Sans Mono"}};
    auto it = families.find(Lower(name));
    return it == families.end() ? name : it->second;
}

FT_Library Library() {
    static FT_Library library = [] {
        FT_Library lib = nullptr;
        if (FT_Init_FreeType(&lib) != 0) throw EOutOfResources("FreeType is unavailable");
        return lib;
    }();
    return library;
}

class TFreeTypeFace final : public TFontFace {
public:
    TFreeTypeFace(const std::string& file, const TFontSpec& request)
        : m_antialiased(request.antialiased) {
        if (FT_New_Face(Library(), file.c_str(), 0, &m_face) != 0)
            throw EInvalidGraphic("Cannot open font " + file);
        const int units = std::max<int>(m_face->units_per_EM, 1);
        const int cell = std::max<int>(m_face->ascender - m_face->descender, 1);
        int em = request.height < 0 ? -request.height
                                    : (request.height == 0 ? 12 : request.height * units / cell);
        em = std::clamp(em, 1, 2048);
        FT_Set_Pixel_Sizes(m_face, 0, static_cast<FT_UInt>(em));
        const auto& m = m_face->size->metrics;
        m_ascent = static_cast<int>((m.ascender + 63) >> 6);
        m_descent = static_cast<int>((-m.descender + 63) >> 6);
        m_underline = std::max(
            1, static_cast<int>(std::lround(-m_face->underline_position * em / double(units))));
        m_thickness = std::max(
            1, static_cast<int>(std::lround(m_face->underline_thickness * em / double(units))));
    }
    ~TFreeTypeFace() override { FT_Done_Face(m_face); }
    TFreeTypeFace(const TFreeTypeFace&) = delete;
    TFreeTypeFace& operator=(const TFreeTypeFace&) = delete;

    int Ascent() const override { return m_ascent; }
    int Descent() const override { return m_descent; }
    int UnderlinePosition() const override { return m_underline; }
    int LineThickness() const override { return m_thickness; }

    const TGlyph& Glyph(char32_t codePoint) override {
        std::lock_guard lock(GlyphCacheMutex());
        auto it = m_glyphs.find(codePoint);
        if (it != m_glyphs.end()) return it->second;
        return m_glyphs.emplace(codePoint, Render(codePoint)).first->second;
    }

private:
    TGlyph Render(char32_t codePoint) {
        TGlyph g;
        const FT_Int32 flags =
            FT_LOAD_RENDER |
            (m_antialiased ? FT_LOAD_TARGET_NORMAL : (FT_LOAD_TARGET_MONO | FT_LOAD_MONOCHROME));
        if (FT_Load_Char(m_face, codePoint, flags) != 0) return g;
        const FT_GlyphSlot slot = m_face->glyph;
        const FT_Bitmap& bm = slot->bitmap;
        g.left = slot->bitmap_left;
        g.top = slot->bitmap_top;
        g.width = static_cast<int>(bm.width);
        g.height = static_cast<int>(bm.rows);
        g.advance = static_cast<int>((slot->advance.x + 32) >> 6);
        g.coverage.resize(static_cast<std::size_t>(g.width) * g.height);
        for (int y = 0; y < g.height; ++y) {
            const unsigned char* row = bm.buffer + static_cast<std::ptrdiff_t>(y) * bm.pitch;
            for (int x = 0; x < g.width; ++x) {
                const std::uint8_t v = bm.pixel_mode == FT_PIXEL_MODE_MONO
                                           ? ((row[x / 8] & (0x80 >> (x % 8))) ? 255 : 0)
                                           : row[x];
                g.coverage[static_cast<std::size_t>(y * g.width + x)] = v;
            }
        }
        return g;
    }

    FT_Face m_face{nullptr};
    bool m_antialiased;
    int m_ascent{0};
    int m_descent{0};
    int m_underline{1};
    int m_thickness{1};
    std::unordered_map<char32_t, TGlyph> m_glyphs;
};

struct TFaceKey {
    std::string file;
    TFontSpec request;
    bool operator<(const TFaceKey& o) const {
        return std::tie(file, request.height, request.antialiased) <
               std::tie(o.file, o.request.height, o.request.antialiased);
    }
};

std::uint32_t Blend(std::uint32_t dst, std::uint32_t color, unsigned alpha) {
    if (alpha >= 255) return color;
    std::uint32_t out = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        const unsigned d = (dst >> shift) & 0xFF;
        const unsigned c = (color >> shift) & 0xFF;
        out |= ((d * (255 - alpha) + c * alpha + 127) / 255) << shift;
    }
    return out;
}

// The fontconfig configuration this process uses, released at exit.
FcConfig* FontConfig() {
    struct TOwnedConfig {
        FcConfig* config{FcInitLoadConfigAndFonts()};
        ~TOwnedConfig() {
            if (config) FcConfigDestroy(config);
            FcFini();
        }
    };
    static TOwnedConfig owned;
    if (!owned.config) throw EInvalidGraphic("fontconfig is unavailable");
    return owned.config;
}

} // namespace

std::string FontFileFor(const std::string& family, bool bold, bool italic) {
    std::lock_guard lock(GlyphCacheMutex());
    static std::map<std::tuple<std::string, bool, bool>, std::string> files;
    const auto key = std::make_tuple(Lower(family), bold, italic);
    if (auto it = files.find(key); it != files.end()) return it->second;
    FcConfig* config = FontConfig();
    FcPattern* pattern = FcPatternCreate();
    const std::string mapped = SystemFamily(family);
    FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(mapped.c_str()));
    FcPatternAddInteger(pattern, FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(pattern, FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcConfigSubstitute(config, pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);
    FcResult result = FcResultNoMatch;
    FcPattern* match = FcFontMatch(config, pattern, &result);
    std::string file;
    FcChar8* path = nullptr;
    if (match && FcPatternGetString(match, FC_FILE, 0, &path) == FcResultMatch)
        file = reinterpret_cast<const char*>(path);
    if (match) FcPatternDestroy(match);
    FcPatternDestroy(pattern);
    if (file.empty()) throw EInvalidGraphic("No font found for " + family);
    files[key] = file;
    return file;
}

std::shared_ptr<TFontFace> AcquireFontFace(const TFontSpec& request) {
    const std::string file = FontFileFor(request.name, request.bold, request.italic);
    std::lock_guard lock(GlyphCacheMutex());
    static std::map<TFaceKey, std::shared_ptr<TFontFace>> faces;
    TFaceKey key{file, request};
    auto it = faces.find(key);
    if (it != faces.end()) return it->second;
    auto face = std::make_shared<TFreeTypeFace>(file, request);
    faces.emplace(std::move(key), face);
    return face;
}

std::u32string DecodeUtf8(const std::string& text) {
    std::u32string out;
    for (std::size_t i = 0; i < text.size();) {
        const auto c = static_cast<unsigned char>(text[i]);
        int extra = c < 0x80 ? 0 : (c >> 5) == 6 ? 1 : (c >> 4) == 14 ? 2 : (c >> 3) == 30 ? 3 : -1;
        if (extra < 0 || i + static_cast<std::size_t>(extra) >= text.size()) {
            out.push_back(c); // a stray byte stands for itself (Latin-1)
            ++i;
            continue;
        }
        char32_t cp = extra == 0 ? c : (c & (0x3F >> extra));
        bool valid = true;
        for (int k = 1; k <= extra; ++k) {
            const auto n = static_cast<unsigned char>(text[i + static_cast<std::size_t>(k)]);
            if ((n & 0xC0) != 0x80) valid = false;
            cp = (cp << 6) | (n & 0x3F);
        }
        if (!valid) {
            out.push_back(c);
            ++i;
            continue;
        }
        out.push_back(cp);
        i += static_cast<std::size_t>(extra) + 1;
    }
    return out;
}

TSize MeasureText(TFontFace& face, const std::u32string& text) {
    int width = 0;
    for (char32_t c : text)
        width += face.Glyph(c).advance;
    return {width, face.Height()};
}

namespace {

// Draws one line with its baseline at y + ascent; `underlineAt` marks a prefix underline.
void DrawLine(TDeviceContext& dc, TFontFace& face, const TFontSpec& font, int x, int y,
              const std::u32string& text, const std::vector<TRect>& clip, int underlineAt = -1) {
    TPixelBuffer& target = *dc.Target();
    const std::uint32_t color = ColorToPixel(ColorToDrawRGB(dc.GetTextColor()));
    const int baseline = y + face.Ascent();
    int penX = x;
    auto fill = [&](const TRect& r) {
        for (const TRect& c : clip) {
            const TRect piece = Intersect(r, c);
            for (int yy = piece.top; yy < piece.bottom; ++yy)
                FillPixels(target.Row(yy) + piece.left, piece.Width(), color);
        }
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        const TGlyph& g = face.Glyph(text[i]);
        const TRect box{penX + g.left, baseline - g.top, penX + g.left + g.width,
                        baseline - g.top + g.height};
        for (const TRect& c : clip) {
            const TRect piece = Intersect(box, c);
            for (int yy = piece.top; yy < piece.bottom; ++yy) {
                const std::uint8_t* cov =
                    g.coverage.data() + static_cast<std::size_t>(yy - box.top) * g.width;
                std::uint32_t* row = target.Row(yy);
                for (int xx = piece.left; xx < piece.right; ++xx)
                    if (const unsigned a = cov[xx - box.left]) row[xx] = Blend(row[xx], color, a);
            }
        }
        if (static_cast<int>(i) == underlineAt)
            fill({penX, baseline + face.UnderlinePosition(), penX + g.advance,
                  baseline + face.UnderlinePosition() + face.LineThickness()});
        penX += g.advance;
    }
    if (font.underline)
        fill({x, baseline + face.UnderlinePosition(), penX,
              baseline + face.UnderlinePosition() + face.LineThickness()});
    if (font.strikeOut) {
        const int strike = baseline - face.Ascent() / 3;
        fill({x, strike, penX, strike + face.LineThickness()});
    }
}

std::vector<TRect> ClipFor(const TDeviceContext& dc, const TRect* clip, const TRect& area) {
    return dc.VisibleRects(clip ? Intersect(*clip, area) : area);
}

} // namespace

void TextOutOnDc(TDeviceContext& dc, const TFontSpec& font, int x, int y, const std::string& text,
                 const TRect* clip) {
    if (!dc.Target() || text.empty()) return;
    auto face = AcquireFontFace(font);
    const std::u32string chars = DecodeUtf8(text);
    const TSize size = MeasureText(*face, chars);
    const TRect cell{x, y, x + size.cx, y + size.cy};
    if (dc.GetBkMode() == OPAQUE) {
        TLogBrush bk;
        bk.color = dc.GetBkColor();
        dc.FillRect(clip ? Intersect(*clip, cell) : cell, bk);
    }
    const TRect everything{INT32_MIN / 2, INT32_MIN / 2, INT32_MAX / 2, INT32_MAX / 2};
    DrawLine(dc, *face, font, x, y, chars, ClipFor(dc, clip, everything));
}

namespace {

struct TTextLine {
    std::u32string text;
    int underlineAt{-1};
};

// Removes & prefixes: "&&" becomes "&", "&x" underlines x.
TTextLine StripPrefix(const std::u32string& s) {
    TTextLine line;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] == U'&' && i + 1 < s.size()) {
            ++i;
            if (s[i] != U'&' && line.underlineAt < 0)
                line.underlineAt = static_cast<int>(line.text.size());
        } else if (s[i] == U'&') {
            continue;
        }
        line.text.push_back(s[i]);
    }
    return line;
}

std::u32string ExpandTabs(const std::u32string& s, TFontFace& face) {
    std::u32string out;
    const int tab = std::max(1, face.Glyph(U' ').advance) * 8;
    int x = 0;
    for (char32_t c : s) {
        if (c != U'\t') {
            out.push_back(c);
            x += face.Glyph(c).advance;
            continue;
        }
        const int next = (x / tab + 1) * tab;
        while (x < next) {
            out.push_back(U' ');
            x += std::max(1, face.Glyph(U' ').advance);
        }
    }
    return out;
}

std::vector<std::u32string> SplitLines(const std::u32string& s) {
    std::vector<std::u32string> lines(1);
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] == U'\r' && i + 1 < s.size() && s[i + 1] == U'\n') continue;
        if (s[i] == U'\n' || s[i] == U'\r')
            lines.emplace_back();
        else
            lines.back().push_back(s[i]);
    }
    return lines;
}

// Breaks a line at spaces so that each piece fits `width` (a single long word stays whole).
std::vector<std::u32string> WrapLine(const std::u32string& s, int width, TFontFace& face) {
    std::vector<std::u32string> out;
    std::u32string current;
    std::size_t i = 0;
    while (i < s.size()) {
        std::size_t end = i;
        while (end < s.size() && s[end] != U' ')
            ++end;
        const std::u32string word = s.substr(i, end - i);
        std::u32string candidate = current.empty() ? word : current + U" " + word;
        if (!current.empty() && MeasureText(face, StripPrefix(candidate).text).cx > width) {
            out.push_back(current);
            current = word;
        } else {
            current = std::move(candidate);
        }
        i = end + 1;
    }
    out.push_back(current);
    return out;
}

} // namespace

int DrawTextOnDc(TDeviceContext& dc, const TFontSpec& font, const std::string& text, TRect& rect,
                 unsigned flags) {
    auto face = AcquireFontFace(font);
    std::u32string chars = DecodeUtf8(text);
    if (flags & DT_EXPANDTABS) chars = ExpandTabs(chars, *face);
    std::vector<std::u32string> raw;
    if (flags & DT_SINGLELINE) {
        std::erase_if(chars, [](char32_t c) { return c == U'\r' || c == U'\n'; });
        raw.push_back(chars);
    } else {
        for (auto& line : SplitLines(chars)) {
            if (flags & DT_WORDBREAK)
                for (auto& piece : WrapLine(line, rect.Width(), *face))
                    raw.push_back(piece);
            else
                raw.push_back(line);
        }
    }
    std::vector<TTextLine> lines;
    int maxWidth = 0;
    for (const auto& r : raw) {
        TTextLine line = (flags & DT_NOPREFIX) ? TTextLine{r, -1} : StripPrefix(r);
        maxWidth = std::max(maxWidth, MeasureText(*face, line.text).cx);
        lines.push_back(std::move(line));
    }
    const int lineHeight = face->Height();
    const int total = lineHeight * static_cast<int>(lines.size());
    if (flags & DT_CALCRECT) {
        rect.right = rect.left + maxWidth;
        rect.bottom = rect.top + total;
        return total;
    }
    if (!dc.Target()) return total;
    int y = rect.top;
    if (flags & DT_SINGLELINE) {
        if (flags & DT_VCENTER)
            y = rect.top + (rect.Height() - lineHeight) / 2;
        else if (flags & DT_BOTTOM)
            y = rect.bottom - lineHeight;
    }
    const TRect everything{INT32_MIN / 2, INT32_MIN / 2, INT32_MAX / 2, INT32_MAX / 2};
    const std::vector<TRect> clip = ClipFor(dc, (flags & DT_NOCLIP) ? nullptr : &rect, everything);
    for (const auto& line : lines) {
        const int width = MeasureText(*face, line.text).cx;
        int x = rect.left;
        if (flags & DT_CENTER)
            x = rect.left + (rect.Width() - width) / 2;
        else if (flags & DT_RIGHT)
            x = rect.right - width;
        if (dc.GetBkMode() == OPAQUE) {
            TLogBrush bk;
            bk.color = dc.GetBkColor();
            const TRect cell{x, y, x + width, y + lineHeight};
            dc.FillRect((flags & DT_NOCLIP) ? cell : Intersect(cell, rect), bk);
        }
        DrawLine(dc, *face, font, x, y, line.text, clip, line.underlineAt);
        y += lineHeight;
    }
    return total;
}

} // namespace qv
