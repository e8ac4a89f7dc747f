#include "slidebar/SlideThumbs.h"

#include "platform/graphics/Canvas.h"

#include <array>
#include <optional>

namespace qv {

namespace {

constexpr int UprightWidth = 10;
constexpr int HighLength = 18;
constexpr int LowLength = 12;
constexpr int PointedLength = 16;
constexpr int SquareSide = 12;

// A line with both of its end points.
void Line(TCanvas& c, TPoint from, TPoint to, TColor color) {
    c.Pen().SetColor(color);
    c.MoveTo(from.x, from.y);
    c.LineTo(to.x, to.y);
    c.SetPixel(to.x, to.y, color);
}

void Start(TBitmap& thumb, int width, int height) {
    thumb.SetSize(width, height);
    TCanvas& c = thumb.Canvas();
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(ThumbKeyColor);
    c.FillRect({0, 0, width, height});
}

// A raised block: highlight above and left, black below and right with the shadow inside.
void RaisedBlock(TBitmap& thumb, int width, int height) {
    Start(thumb, width, height);
    TCanvas& c = thumb.Canvas();
    const int r = width - 1, b = height - 1;
    c.Brush().SetColor(clBtnFace);
    c.FillRect({0, 0, width, height});
    Line(c, {0, b - 1}, {0, 0}, clBtnHighlight);
    Line(c, {0, 0}, {r - 1, 0}, clBtnHighlight);
    Line(c, {r, 0}, {r, b}, clBlack);
    Line(c, {r, b}, {0, b}, clBlack);
    Line(c, {r - 1, 1}, {r - 1, b - 1}, clBtnShadow);
    Line(c, {r - 1, b - 1}, {1, b - 1}, clBtnShadow);
}

// A raised frame whose inside shows the groove, with a centre line along its length.
void HollowBlock(TBitmap& thumb, int width, int height, bool centreLine) {
    RaisedBlock(thumb, width, height);
    TCanvas& c = thumb.Canvas();
    c.Brush().SetColor(ThumbKeyColor);
    c.FillRect({2, 2, width - 2, height - 2});
    if (centreLine) Line(c, {width / 2, 2}, {width / 2, height - 3}, clBlack);
}

// Pointing up: a block whose top is a roof.
void PointedUp(TBitmap& thumb) {
    const int r = UprightWidth - 1, b = PointedLength - 1, roof = r / 2;
    Start(thumb, UprightWidth, PointedLength);
    TCanvas& c = thumb.Canvas();
    const std::array<TPoint, 6> outline{
        {{0, b}, {0, roof}, {roof, 0}, {roof + 1, 0}, {r, roof}, {r, b}}};
    c.Brush().SetColor(clBtnFace);
    c.Pen().SetColor(clBtnFace);
    c.Polygon(outline);
    Line(c, {0, b - 1}, {0, roof}, clBtnHighlight);
    Line(c, {0, roof}, {roof, 0}, clBtnHighlight);
    Line(c, {roof + 1, 0}, {r, roof}, clBlack);
    Line(c, {r, roof}, {r, b}, clBlack);
    Line(c, {r, b}, {0, b}, clBlack);
    Line(c, {roof + 1, 1}, {r - 1, roof}, clBtnShadow);
    Line(c, {r - 1, roof}, {r - 1, b - 1}, clBtnShadow);
    Line(c, {r - 1, b - 1}, {1, b - 1}, clBtnShadow);
}

// Pointing down: a block whose bottom is a keel.
void PointedDown(TBitmap& thumb) {
    const int r = UprightWidth - 1, b = PointedLength - 1, keel = b - r / 2;
    Start(thumb, UprightWidth, PointedLength);
    TCanvas& c = thumb.Canvas();
    const std::array<TPoint, 6> outline{
        {{0, 0}, {r, 0}, {r, keel}, {r / 2 + 1, b}, {r / 2, b}, {0, keel}}};
    c.Brush().SetColor(clBtnFace);
    c.Pen().SetColor(clBtnFace);
    c.Polygon(outline);
    Line(c, {0, keel}, {0, 0}, clBtnHighlight);
    Line(c, {0, 0}, {r - 1, 0}, clBtnHighlight);
    Line(c, {r, 0}, {r, keel}, clBlack);
    Line(c, {r, keel}, {r / 2 + 1, b}, clBlack);
    Line(c, {r / 2, b}, {0, keel}, clBlack);
    Line(c, {r - 1, 1}, {r - 1, keel}, clBtnShadow);
    Line(c, {r - 1, keel}, {r / 2 + 1, b - 1}, clBtnShadow);
}

// A disc lit from above left.
void Round(TBitmap& thumb) {
    Start(thumb, SquareSide, SquareSide);
    TCanvas& c = thumb.Canvas();
    c.Pen().SetColor(clBlack);
    c.Brush().SetColor(clBtnFace);
    c.Ellipse(0, 0, SquareSide, SquareSide);
    const int e = SquareSide - 1;
    c.Pen().SetColor(clBtnHighlight);
    c.Arc(1, 1, e, e, e, 0, 0, e);
    c.Pen().SetColor(clBtnShadow);
    c.Arc(1, 1, e, e, 0, e, e, 0);
}

// A bar with round ends, lit from the left.
void RoundEnded(TBitmap& thumb) {
    const int r = UprightWidth - 1, b = HighLength - 1;
    Start(thumb, UprightWidth, HighLength);
    TCanvas& c = thumb.Canvas();
    c.Pen().SetColor(clBlack);
    c.Brush().SetColor(clBtnFace);
    c.RoundRect(0, 0, UprightWidth, HighLength, UprightWidth, UprightWidth);
    Line(c, {1, UprightWidth / 2}, {1, b - UprightWidth / 2}, clBtnHighlight);
    Line(c, {r - 1, UprightWidth / 2}, {r - 1, b - UprightWidth / 2}, clBtnShadow);
}

// Turns the picture over its diagonal: (x, y) becomes (y, x).
void Transpose(TBitmap& thumb) {
    TBitmap turned(thumb.Height(), thumb.Width());
    for (int y = 0; y < thumb.Height(); ++y)
        for (int x = 0; x < thumb.Width(); ++x)
            turned.Pixels().At(y, x) = thumb.Pixels().At(x, y);
    thumb.Assign(turned);
}

// The upright form a style is drawn from, and whether it is turned afterwards.
struct TUpright {
    TThumbStyle form;
    bool turned;
};

TUpright UprightOf(TThumbStyle style) {
    switch (style) {
    case tsHorzHigh:
        return {tsVertHigh, true};
    case tsHorzLow:
        return {tsVertLow, true};
    case tsLeft:
        return {tsTop, true};
    case tsRight:
        return {tsBottom, true};
    case tsHorzRound:
        return {tsHorzRound, true}; // drawn upright, then turned
    case tsSquarehollowHorz:
        return {tsSquarehollowVert, true};
    case tsSquarehollowHLine:
        return {tsSquarehollowVLine, true};
    default:
        return {style, false};
    }
}

void DrawUpright(TThumbStyle form, TBitmap& thumb) {
    switch (form) {
    case tsVertLow:
        RaisedBlock(thumb, UprightWidth, LowLength);
        break;
    case tsSquare:
        RaisedBlock(thumb, SquareSide, SquareSide);
        break;
    case tsSquarehollow:
        HollowBlock(thumb, SquareSide, SquareSide, false);
        break;
    case tsSquarehollowVert:
        HollowBlock(thumb, UprightWidth, HighLength, false);
        break;
    case tsSquarehollowVLine:
        HollowBlock(thumb, UprightWidth, HighLength, true);
        break;
    case tsTop:
        PointedUp(thumb);
        break;
    case tsBottom:
        PointedDown(thumb);
        break;
    case tsRound:
        Round(thumb);
        break;
    case tsHorzRound:
        RoundEnded(thumb);
        break;
    default: // tsVertHigh
        RaisedBlock(thumb, UprightWidth, HighLength);
        break;
    }
}

} // namespace

void BuildThumb(TThumbStyle style, TBitmap& thumb) {
    const TUpright upright = UprightOf(style);
    DrawUpright(upright.form, thumb);
    if (upright.turned) Transpose(thumb);
}

void DoMask(TBitmap& thumb, TBitmap& mask) {
    const std::uint32_t key = ColorToPixel(ColorToRGB(ThumbKeyColor));
    mask.SetSize(thumb.Width(), thumb.Height());
    for (int y = 0; y < thumb.Height(); ++y) {
        std::uint32_t* picture = thumb.ScanLine(y);
        std::uint32_t* through = mask.ScanLine(y);
        for (int x = 0; x < thumb.Width(); ++x) {
            const bool hole = (picture[x] & 0xFFFFFF) == key;
            through[x] = hole ? 0xFFFFFF : 0x000000;
            if (hole) picture[x] = 0x000000;
        }
    }
}

} // namespace qv
