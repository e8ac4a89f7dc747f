#include "GraphicsObjects.h"

#include "Bitmap.h"
#include "DeviceContext.h"

#include "platform/core/ClassBuilder.h"

#include <cstdlib>

namespace qv {

namespace {

// a * b / c rounded half away from zero, as the classic MulDiv.
int MulDivRound(int a, int b, int c) {
    const long long p = static_cast<long long>(a) * b;
    const long long q = (std::llabs(p) + c / 2) / c;
    return static_cast<int>(p < 0 ? -q : q);
}

template <class T> bool Store(T& field, const T& value) {
    if (field == value) return false;
    field = value;
    return true;
}

} // namespace

int PenModeToRop2(TPenMode mode) {
    static constexpr int rop2[] = {R2_BLACK,       R2_WHITE,      R2_NOP,         R2_NOT,
                                   R2_COPYPEN,     R2_NOTCOPYPEN, R2_MERGEPENNOT, R2_MASKPENNOT,
                                   R2_MERGENOTPEN, R2_MASKNOTPEN, R2_MERGEPEN,    R2_NOTMERGEPEN,
                                   R2_MASKPEN,     R2_NOTMASKPEN, R2_XORPEN,      R2_NOTXORPEN};
    const int index = static_cast<int>(mode);
    return index >= 0 && index < 16 ? rop2[index] : R2_COPYPEN;
}

// ---- TGraphicsObject --------------------------------------------------------------------

const TClassInfo& TGraphicsObject::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TGraphicsObject>("TGraphicsObject", &TPersistent::StaticClassInfo()).Build();
    return info;
}

void TGraphicsObject::Changed() {
    ++m_changeCount;
    if (OnChange) OnChange(this);
}

// ---- TPen -------------------------------------------------------------------------------

const TClassInfo& TPen::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TPen>("TPen", &TGraphicsObject::StaticClassInfo())
            .Property("Color", ColorType(), &TPen::Color, &TPen::SetColor)
            .Default(clBlack)
            .Property("Mode", &TPen::Mode, &TPen::SetMode)
            .Default(pmCopy)
            .Property("Style", &TPen::Style, &TPen::SetStyle)
            .Default(psSolid)
            .Property("Width", &TPen::Width, &TPen::SetWidth)
            .Default(1)
            .Build();
    return info;
}

void TPen::SetColor(TColor value) {
    if (Store(m_color, value)) Changed();
}
void TPen::SetMode(TPenMode value) {
    if (Store(m_mode, value)) Changed();
}
void TPen::SetStyle(TPenStyle value) {
    if (Store(m_style, value)) Changed();
}
void TPen::SetWidth(int value) {
    if (value < 0) value = 0;
    if (Store(m_width, value)) Changed();
}

void TPen::Assign(const TPersistent& Source) {
    const auto* pen = dynamic_cast<const TPen*>(&Source);
    if (!pen) return TPersistent::Assign(Source);
    m_color = pen->m_color;
    m_mode = pen->m_mode;
    m_style = pen->m_style;
    m_width = pen->m_width;
    Changed();
}

// ---- TBrush -----------------------------------------------------------------------------

const TClassInfo& TBrush::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TBrush>("TBrush", &TGraphicsObject::StaticClassInfo())
            .Property("Color", ColorType(), &TBrush::Color, &TBrush::SetColor)
            .Default(clWhite)
            .Property("Style", &TBrush::Style, &TBrush::SetStyle)
            .Default(bsSolid)
            .Build();
    return info;
}

void TBrush::SetColor(TColor value) {
    const bool styleChanges = m_style == bsClear;
    if (!Store(m_color, value) && !styleChanges) return;
    // Giving a clear brush a colour makes it solid, as the classic brush does.
    if (styleChanges) m_style = bsSolid;
    Changed();
}

void TBrush::SetStyle(TBrushStyle value) {
    if (Store(m_style, value)) Changed();
}

void TBrush::SetBitmap(TBitmap* value) {
    m_bitmap = value;
    m_pattern.reset();
    m_monochrome = false;
    if (value && !value->Empty()) {
        m_pattern = std::make_shared<const TPixelBuffer>(value->Pixels());
        m_monochrome = value->Monochrome();
    }
    Changed();
}

void TBrush::Assign(const TPersistent& Source) {
    const auto* brush = dynamic_cast<const TBrush*>(&Source);
    if (!brush) return TPersistent::Assign(Source);
    m_color = brush->m_color;
    m_style = brush->m_style;
    m_bitmap = brush->m_bitmap;
    m_pattern = brush->m_pattern;
    m_monochrome = brush->m_monochrome;
    Changed();
}

// ---- TFont ------------------------------------------------------------------------------

const TClassInfo& TFont::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TFont>("TFont", &TGraphicsObject::StaticClassInfo())
            .Property("Charset", &TFont::Charset, &TFont::SetCharset)
            .Default(DEFAULT_CHARSET)
            .Property("Color", ColorType(), &TFont::Color, &TFont::SetColor)
            .Default(clWindowText)
            .Property("Height", &TFont::Height, &TFont::SetHeight)
            .Property("Name", &TFont::Name, &TFont::SetName)
            .Property("Pitch", &TFont::Pitch, &TFont::SetPitch)
            .Default(fpDefault)
            .Property("Size", &TFont::Size, &TFont::SetSize)
            .NotStored()
            .Property("Style", &TFont::Style, &TFont::SetStyle)
            .Default(TFontStyles{})
            .Property("Quality", &TFont::Quality, &TFont::SetQuality)
            .Default(fqDefault)
            .Build();
    return info;
}

void TFont::SetCharset(TFontCharset value) {
    if (Store(m_charset, value)) Changed();
}
void TFont::SetColor(TColor value) {
    if (Store(m_color, value)) Changed();
}
void TFont::SetHeight(int value) {
    if (Store(m_height, value)) Changed();
}
void TFont::SetName(const std::string& value) {
    if (!value.empty() && Store(m_name, value)) Changed();
}
void TFont::SetPitch(TFontPitch value) {
    if (Store(m_pitch, value)) Changed();
}
int TFont::Size() const {
    return -MulDivRound(m_height, 72, PixelsPerInch);
}
void TFont::SetSize(int value) {
    SetHeight(-MulDivRound(value, PixelsPerInch, 72));
}
void TFont::SetStyle(TFontStyles value) {
    if (Store(m_style, value)) Changed();
}
void TFont::SetQuality(TFontQuality value) {
    if (Store(m_quality, value)) Changed();
}

void TFont::Assign(const TPersistent& Source) {
    const auto* font = dynamic_cast<const TFont*>(&Source);
    if (!font) return TPersistent::Assign(Source);
    m_charset = font->m_charset;
    m_color = font->m_color;
    m_height = font->m_height;
    m_name = font->m_name;
    m_pitch = font->m_pitch;
    m_style = font->m_style;
    m_quality = font->m_quality;
    Changed();
}

} // namespace qv
