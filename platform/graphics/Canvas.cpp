#include "Canvas.h"

#include "platform/core/ClassBuilder.h"

#include <algorithm>
#include <utility>

namespace qv {

const TClassInfo& TCanvas::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TCanvas>("TCanvas", &TPersistent::StaticClassInfo()).Build();
    return info;
}

TCanvas::TCanvas(TPixelBuffer* target)
    : m_dc(target), m_pen(std::make_unique<TPen>()), m_brush(std::make_unique<TBrush>()),
      m_font(std::make_unique<TFont>()) {}

TCanvas::~TCanvas() = default;

void TCanvas::SelectPen() {
    static constexpr int styles[] = {PS_SOLID,      PS_DASH, PS_DOT,        PS_DASHDOT,
                                     PS_DASHDOTDOT, PS_NULL, PS_INSIDEFRAME};
    m_dc.SelectPen({styles[std::clamp(static_cast<int>(m_pen->Style()), 0, 6)], m_pen->Width(),
                    ColorToRGB(m_pen->Color())});
    m_dc.SetROP2(PenModeToRop2(m_pen->Mode()));
}

void TCanvas::SelectBrush() {
    const TColor color = ColorToRGB(m_brush->Color());
    const TBrushStyle style = m_brush->Style();
    const bool pattern = m_brush->Pattern() != nullptr;
    // Solid and pattern brushes paint the background (pen gaps, text cells) in their colour;
    // the others leave it as it is. These are set when the brush has changed since, so that a
    // background set through the handle lasts until then.
    if (m_brushColorsSelectedAt != m_brush->ChangeCount()) {
        const bool opaque = pattern || style == bsSolid;
        m_dc.SetBkColor(opaque ? color : MakeColor(~static_cast<std::uint32_t>(color) & 0xFFFFFF));
        m_dc.SetBkMode(opaque ? OPAQUE : TRANSPARENT);
        m_brushColorsSelectedAt = m_brush->ChangeCount();
    }
    if (!pattern && style == bsSolid) return m_dc.SelectSolidBrush(color); // the usual brush
    TLogBrush brush;
    brush.color = color;
    if (pattern) {
        brush.style = BS_PATTERN;
        brush.pattern = m_brush->Pattern();
        brush.monochrome = m_brush->PatternIsMonochrome();
    } else if (style == bsClear) {
        brush.style = BS_NULL;
    } else {
        brush.style = BS_HATCHED;
        brush.hatch = static_cast<int>(style) - static_cast<int>(bsHorizontal);
    }
    m_dc.SelectBrush(std::move(brush));
}

void TCanvas::SelectFontColor() {
    if (m_fontColorSelectedAt == m_font->ChangeCount()) return;
    m_dc.SetTextColor(ColorToRGB(m_font->Color()));
    m_fontColorSelectedAt = m_font->ChangeCount();
}

void TCanvas::SelectAll() {
    SelectPen();
    SelectBrush();
    SelectFontColor();
}

HDC TCanvas::Handle() {
    SelectAll();
    return &m_dc;
}

TFontSpec TCanvas::FontSpec() const {
    TFontSpec request;
    request.name = m_font->Name();
    request.height = m_font->Height();
    request.bold = m_font->Style().Contains(fsBold);
    request.italic = m_font->Style().Contains(fsItalic);
    request.underline = m_font->Style().Contains(fsUnderline);
    request.strikeOut = m_font->Style().Contains(fsStrikeOut);
    request.antialiased = m_font->Quality() != fqNonAntialiased && m_font->Quality() != fqDraft;
    return request;
}

void TCanvas::Changing() {
    if (OnChanging) OnChanging(this);
}
void TCanvas::Changed() {
    if (OnChange) OnChange(this);
}

void TCanvas::MoveTo(int x, int y) {
    m_dc.MoveTo(x, y);
}

void TCanvas::LineTo(int x, int y) {
    Changing();
    SelectAll();
    m_dc.LineTo(x, y);
    Changed();
}

void TCanvas::Rectangle(int left, int top, int right, int bottom) {
    Changing();
    SelectAll();
    m_dc.Rectangle(left, top, right, bottom);
    Changed();
}

void TCanvas::FillRect(const TRect& r) {
    Changing();
    // Only the brush takes part (and the text colour, for monochrome patterns).
    SelectBrush();
    SelectFontColor();
    m_dc.FillRect(r, m_dc.Brush());
    Changed();
}

void TCanvas::FrameRect(const TRect& r) {
    Changing();
    SelectAll();
    m_dc.FrameRect(r, m_dc.Brush());
    Changed();
}

void TCanvas::DrawFocusRect(const TRect& r) {
    Changing();
    SelectAll();
    m_dc.DrawFocusRect(r);
    Changed();
}

void TCanvas::Ellipse(int left, int top, int right, int bottom) {
    Changing();
    SelectAll();
    m_dc.Ellipse(left, top, right, bottom);
    Changed();
}

void TCanvas::Arc(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    Changing();
    SelectAll();
    m_dc.Arc(x1, y1, x2, y2, x3, y3, x4, y4);
    Changed();
}

void TCanvas::Pie(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    Changing();
    SelectAll();
    m_dc.Pie(x1, y1, x2, y2, x3, y3, x4, y4);
    Changed();
}

void TCanvas::Chord(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    Changing();
    SelectAll();
    m_dc.Chord(x1, y1, x2, y2, x3, y3, x4, y4);
    Changed();
}

void TCanvas::RoundRect(int x1, int y1, int x2, int y2, int x3, int y3) {
    Changing();
    SelectAll();
    m_dc.RoundRect(x1, y1, x2, y2, x3, y3);
    Changed();
}

void TCanvas::Polygon(std::span<const TPoint> points) {
    Changing();
    SelectAll();
    m_dc.Polygon(points);
    Changed();
}

void TCanvas::Polyline(std::span<const TPoint> points) {
    Changing();
    SelectAll();
    m_dc.Polyline(points);
    Changed();
}

TColor TCanvas::Pixel(int x, int y) {
    return m_dc.GetPixel(x, y);
}

void TCanvas::SetPixel(int x, int y, TColor color) {
    Changing();
    SelectPen();
    m_dc.SetPixel(x, y, ColorToRGB(color));
    Changed();
}

void TCanvas::CopyRect(const TRect& dest, TCanvas& source, const TRect& sourceRect) {
    Changing();
    SelectBrush();
    SelectFontColor();
    m_dc.StretchBlt(dest.left, dest.top, dest.Width(), dest.Height(), source.m_dc.AsBlitSource(),
                    sourceRect.left, sourceRect.top, sourceRect.Width(), sourceRect.Height(),
                    m_copyMode);
    Changed();
}

void TCanvas::DrawBitmap(const TRect& dest, TBitmap& bitmap) {
    if (!bitmap.Monochrome()) m_dc.SetStretchBltMode(COLORONCOLOR);
    m_dc.StretchBlt(dest.left, dest.top, dest.Width(), dest.Height(),
                    {&bitmap.Pixels(), bitmap.Monochrome()}, 0, 0, bitmap.Width(), bitmap.Height(),
                    m_copyMode);
}

void TCanvas::Draw(int x, int y, TBitmap& bitmap) {
    if (bitmap.Empty()) return;
    Changing();
    SelectAll();
    // Draw sets the colours a monochrome bitmap is drawn in itself: black takes the font
    // colour and white the brush colour, whatever the brush style.
    m_dc.SetTextColor(ColorToRGB(m_font->Color()));
    m_dc.SetBkColor(ColorToRGB(m_brush->Color()));
    DrawBitmap({x, y, x + bitmap.Width(), y + bitmap.Height()}, bitmap);
    Changed();
}

void TCanvas::StretchDraw(const TRect& dest, TBitmap& bitmap) {
    if (bitmap.Empty()) return;
    Changing();
    SelectAll();
    DrawBitmap(dest, bitmap);
    Changed();
}

void TCanvas::BrushCopy(const TRect& dest, TBitmap& bitmap, const TRect& source, TColor color) {
    if (bitmap.Empty()) return;
    Changing();
    SelectAll();
    // A mask, white where the bitmap has `color`.
    const std::uint32_t key = ColorToPixel(ColorToDrawRGB(color));
    TPixelBuffer mask(bitmap.Width(), bitmap.Height(), 0);
    for (int y = 0; y < mask.Height(); ++y)
        for (int x = 0; x < mask.Width(); ++x)
            if ((bitmap.Pixels().At(x, y) & 0xFFFFFF) == key) mask.At(x, y) = 0xFFFFFF;
    auto blit = [&](const TPixelBuffer& pixels, std::uint32_t rop) {
        m_dc.StretchBlt(dest.left, dest.top, dest.Width(), dest.Height(), &pixels, source.left,
                        source.top, source.Width(), source.Height(), rop);
    };
    if (m_brush->Style() == bsClear && !m_brush->Pattern()) {
        // (D xor B) and mask, xor B: the destination under the mask, the bitmap elsewhere.
        blit(bitmap.Pixels(), SRCINVERT);
        blit(mask, SRCAND);
        blit(bitmap.Pixels(), SRCINVERT);
    } else {
        constexpr std::uint32_t brushWhereSourceIsWhite = 0x00E20746; // DSPDxax
        blit(bitmap.Pixels(), SRCCOPY);
        blit(mask, brushWhereSourceIsWhite);
    }
    Changed();
}

void TCanvas::MaskedDraw(int x, int y, TBitmap& picture, TBitmap& mask) {
    if (picture.Empty() || mask.Empty()) return;
    Changing();
    SelectAll();
    const TColor text = m_dc.GetTextColor(), background = m_dc.GetBkColor();
    m_dc.SetTextColor(0x000000);
    m_dc.SetBkColor(0xFFFFFF);
    m_dc.BitBlt(x, y, mask.Width(), mask.Height(), {&mask.Pixels(), mask.Monochrome()}, 0, 0,
                SRCAND);
    m_dc.BitBlt(x, y, picture.Width(), picture.Height(), {&picture.Pixels(), picture.Monochrome()},
                0, 0, SRCPAINT);
    m_dc.SetTextColor(text);
    m_dc.SetBkColor(background);
    Changed();
}

void TCanvas::TextOut(int x, int y, const std::string& text) {
    Changing();
    SelectAll();
    TextOutOnDc(m_dc, FontSpec(), x, y, text);
    m_dc.MoveTo(x + TextWidth(text), y);
    Changed();
}

void TCanvas::TextRect(const TRect& r, int x, int y, const std::string& text) {
    Changing();
    SelectAll();
    if (m_dc.GetBkMode() == OPAQUE) m_dc.FillRect(r, m_dc.Brush());
    TextOutOnDc(m_dc, FontSpec(), x, y, text, &r);
    Changed();
}

TSize TCanvas::TextExtent(const std::string& text) {
    auto face = AcquireFontFace(FontSpec());
    return MeasureText(*face, DecodeUtf8(text));
}

int TCanvas::DrawText(const std::string& text, TRect& r, unsigned flags) {
    Changing();
    SelectAll();
    const int height = DrawTextOnDc(m_dc, FontSpec(), text, r, flags);
    Changed();
    return height;
}

void Frame3D(TCanvas& canvas, TRect& rect, TColor topColor, TColor bottomColor, int width) {
    canvas.Pen().SetWidth(1);
    --rect.bottom;
    --rect.right;
    while (width-- > 0) {
        const TPoint topLeft{rect.left, rect.top};
        const TPoint topRight{rect.right, rect.top};
        const TPoint bottomRight{rect.right, rect.bottom};
        const TPoint bottomLeft{rect.left, rect.bottom};
        canvas.Pen().SetColor(topColor);
        const TPoint upper[] = {bottomLeft, topLeft, topRight};
        canvas.Polyline(upper);
        canvas.Pen().SetColor(bottomColor);
        const TPoint lower[] = {topRight, bottomRight, {bottomLeft.x - 1, bottomLeft.y}};
        canvas.Polyline(lower);
        InflateRect(rect, -1, -1);
    }
    ++rect.bottom;
    ++rect.right;
}

int DrawText(TCanvas& canvas, const std::string& text, TRect& rect, unsigned flags) {
    return canvas.DrawText(text, rect, flags);
}

} // namespace qv
