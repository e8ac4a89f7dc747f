#include "indicators/TqSegment.h"

#include "componentbase/PaintFrame.h"

#include "platform/controls/ControlProperties.h"

#include <algorithm>
#include <array>
#include <span>
#include <vector>

namespace qv {

namespace {

// The built-in looks of the codes 32..255.
std::array<qSegSet, 224> MakeCharTable() {
    // clang-format off
    const std::array<std::vector<int>, 224> looks = {{
        {}, {3, 8}, {2, 4}, {1, 2, 4, 7, 9, 10}, {1, 2, 3, 5, 6, 8, 9, 10}, {2, 9, 12, 13}, {}, {3},
        {1, 2, 7, 10}, {1, 4, 9, 10}, {3, 5, 6, 8, 11, 12, 13, 14}, {3, 5, 6, 8}, {16}, {5, 6}, {16}, {12, 13},
        {1, 2, 4, 7, 9, 10, 12, 13}, {4, 9}, {1, 4, 5, 6, 7, 10}, {1, 4, 5, 6, 9, 10}, {2, 4, 5, 6, 9},
        {1, 2, 5, 6, 9, 10}, {1, 2, 5, 6, 7, 9, 10}, {1, 2, 4, 9},
        {1, 2, 4, 5, 6, 7, 9, 10}, {1, 2, 4, 5, 6, 9, 10}, {15, 16}, {15, 16}, {12, 14}, {1, 5, 6}, {11, 13},
        {1, 2, 4, 6, 8},
        {}, {1, 2, 4, 5, 6, 7, 9}, {1, 3, 4, 6, 8, 9, 10}, {1, 2, 7, 10}, {1, 3, 4, 8, 9, 10}, {1, 2, 5, 7, 10},
        {1, 2, 5, 7}, {1, 2, 6, 7, 9, 10},
        {2, 4, 5, 6, 7, 9}, {1, 3, 8, 10}, {1, 4, 7, 9, 10}, {2, 5, 7, 12, 14}, {2, 7, 10}, {2, 4, 7, 9, 11, 12},
        {2, 4, 7, 9, 11, 14}, {1, 2, 4, 7, 9, 10},
        {1, 2, 4, 5, 6, 7}, {1, 2, 4, 7, 9, 10, 14}, {1, 2, 4, 5, 6, 7, 14}, {1, 2, 5, 6, 9, 10}, {1, 3, 8},
        {2, 4, 7, 9, 10}, {2, 4, 5, 9, 14}, {2, 4, 7, 9, 13, 14},
        {11, 12, 13, 14}, {8, 11, 12}, {1, 10, 12, 13}, {1, 2, 7, 10}, {11, 14}, {1, 4, 9, 10}, {13, 14}, {10},
        {11}, {1, 2, 4, 5, 6, 7, 9}, {1, 3, 4, 6, 8, 9, 10}, {1, 2, 7, 10}, {1, 3, 4, 8, 9, 10}, {1, 2, 5, 7, 10},
        {1, 2, 5, 7}, {1, 2, 6, 7, 9, 10},
        {2, 4, 5, 6, 7, 9}, {1, 3, 8, 10}, {1, 4, 7, 9, 10}, {2, 5, 7, 12, 14}, {2, 7, 10}, {2, 4, 7, 9, 11, 12},
        {2, 4, 7, 9, 11, 14}, {1, 2, 4, 7, 9, 10},
        {1, 2, 4, 5, 6, 7}, {1, 2, 4, 7, 9, 10, 14}, {1, 2, 4, 5, 6, 7, 14}, {1, 2, 5, 6, 9, 10}, {1, 3, 8},
        {2, 4, 7, 9, 10}, {2, 4, 5, 9, 14}, {2, 4, 7, 9, 13, 14},
        {11, 12, 13, 14}, {8, 11, 12}, {1, 10, 12, 13}, {1, 2, 5, 7, 10}, {2, 7}, {1, 4, 6, 9, 10}, {1},
        {1, 2, 4, 7, 9, 10},
        {1, 2, 4, 7, 9, 10}, {1, 2, 4, 7, 9, 10}, {16}, {6, 8, 12}, {7, 9}, {10}, {3, 5, 6, 8}, {1, 3, 5, 6, 8},
        {1}, {1, 2, 4, 7, 9, 10}, {1, 2, 5, 6, 9, 10}, {12, 14}, {1, 2, 3, 5, 6, 7, 8, 10}, {1, 2, 4, 7, 9, 10},
        {1, 2, 4, 7, 9, 10}, {1, 2, 4, 7, 9, 10},
        {1, 2, 4, 7, 9, 10}, {2}, {4}, {2, 4}, {2, 4}, {15}, {5}, {5, 6},
        {1}, {1, 2, 4, 7, 9, 10}, {1, 2, 5, 6, 9, 10}, {11, 13}, {1, 2, 3, 5, 6, 7, 8, 10}, {1, 2, 4, 7, 9, 10},
        {1, 2, 4, 7, 9, 10}, {1, 8, 11, 12},
        {}, {3, 8}, {1, 2, 3, 7, 8, 10}, {2, 5, 7, 10}, {5, 7, 8, 9, 10}, {5, 6, 8, 11, 12}, {2, 7},
        {1, 2, 4, 7, 9, 10},
        {1}, {1, 2, 4, 7, 9, 10, 12, 14}, {1, 2, 4, 7, 9, 10}, {12, 14}, {1, 4}, {5}, {1, 2, 4, 7, 9, 10}, {1},
        {1, 2, 4, 5, 6}, {3, 5, 6, 8, 10}, {1, 2, 4, 7, 9, 10}, {1, 2, 4, 7, 9, 10}, {4}, {2, 4, 5, 6, 7},
        {1, 2, 3, 4, 5, 8, 9}, {15},
        {16}, {2}, {1, 2, 4, 7, 9, 10}, {11, 13}, {1, 2, 4, 7, 9, 10}, {1, 2, 4, 7, 9, 10}, {1, 2, 4, 7, 9, 10},
        {3, 5, 7, 9, 10},
        {1, 2, 4, 5, 6, 7, 9}, {1, 2, 4, 5, 6, 7, 9}, {1, 2, 4, 5, 6, 7, 9}, {1, 2, 4, 5, 6, 7, 9},
        {1, 2, 4, 5, 6, 7, 9}, {1, 2, 4, 5, 6, 7, 9}, {1, 2, 3, 5, 6, 7, 10}, {1, 2, 7, 10},
        {1, 2, 5, 7, 10}, {1, 2, 5, 7, 10}, {1, 2, 5, 7, 10}, {1, 2, 5, 7, 10}, {3, 8}, {3, 8}, {3, 8}, {3, 8},
        {1, 3, 4, 5, 8, 9, 10}, {2, 4, 7, 9, 11, 14}, {1, 2, 4, 7, 9, 10}, {1, 2, 4, 7, 9, 10},
        {1, 2, 4, 7, 9, 10}, {1, 2, 4, 7, 9, 10}, {1, 2, 4, 7, 9, 10}, {11, 12, 13, 14},
        {1, 2, 4, 7, 9, 10, 12, 13}, {2, 4, 7, 9, 10}, {2, 4, 7, 9, 10}, {2, 4, 7, 9, 10}, {2, 4, 7, 9, 10},
        {8, 11, 12}, {2, 7, 11, 13}, {1, 3, 4, 6, 8, 9, 10},
        {1, 2, 4, 5, 6, 7, 9}, {1, 2, 4, 5, 6, 7, 9}, {1, 2, 4, 5, 6, 7, 9}, {1, 2, 4, 5, 6, 7, 9},
        {1, 2, 4, 5, 6, 7, 9}, {1, 2, 4, 5, 6, 7, 9}, {1, 2, 3, 5, 6, 7, 8, 10}, {1, 2, 5, 6, 8},
        {1, 2, 5, 7, 10}, {1, 2, 5, 7, 10}, {1, 2, 5, 7, 10}, {1, 2, 5, 7, 10}, {3, 8}, {3, 8}, {3, 8}, {3, 8},
        {5, 6, 7, 9, 10, 11}, {2, 4, 7, 9, 11, 14}, {1, 2, 4, 7, 9, 10}, {1, 2, 4, 7, 9, 10},
        {1, 2, 4, 7, 9, 10}, {1, 2, 4, 7, 9, 10}, {1, 2, 4, 7, 9, 10}, {5, 6},
        {1, 2, 4, 7, 9, 10, 12, 13}, {2, 4, 7, 9, 10}, {2, 4, 7, 9, 10}, {2, 4, 7, 9, 10}, {2, 4, 7, 9, 10},
        {8, 11, 12}, {2, 7, 11, 13}, {8, 11, 12},
    }};
    // clang-format on
    std::array<qSegSet, 224> table{};
    for (std::size_t i = 0; i < looks.size(); ++i)
        for (int n : looks[i])
            table[i] |= qSegSet{1} << n;
    return table;
}

// The shared character table (main thread only, like every cell that reads it).
std::array<qSegSet, 224>& CharTable() {
    static std::array<qSegSet, 224> table = MakeCharTable();
    return table;
}

} // namespace

qSegSet CharLook(unsigned char code) {
    return CharTable()[code < 32 ? 0 : code - 32u];
}

void ChangeACharLook(unsigned char qChar, qSegSet segments) {
    if (qChar >= 32)
        CharTable()[qChar - 32u] =
            segments & Segments({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16});
}

const TTypeInfo& QCharType() {
    static const TTypeInfo info = [] {
        TTypeInfo t = TTypeInfo::Integer("qChar", 32, 255);
        t.kind = TTypeKind::Char;
        return t;
    }();
    return info;
}

const TTypeInfo& QSegSizeType() {
    static const TTypeInfo info = TTypeInfo::Integer("qSegSize", 1, 15);
    return info;
}

const TClassInfo& TqSegment::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqSegment> b("TqSegment", &TGraphicControl::StaticClassInfo());
        PublishControlProperties(b, {"DragCursor", "DragMode"});
        b.Property("Char", QCharType(), &TqSegment::Char, &TqSegment::SetChar)
            .Default(TSegmentDefaults::Char);
        PublishControlProperties(b, {"Color"});
        b.Default(TSegmentDefaults::Color);
        b.Property("Height", &TqSegment::Height, &TqSegment::SetHeight);
        PublishControlProperties(b, {"Hint"});
        b.Property("LitColor", ColorType(), &TqSegment::LitColor, &TqSegment::SetLitColor)
            .Default(TSegmentDefaults::LitColor);
        b.Event("OnPaint", &TqSegment::OnPaint);
        PublishControlProperties(b, {"OnMouseDown", "OnMouseMove", "OnMouseUp", "OnClick",
                                     "OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDrag",
                                     "ParentColor"});
        // The constructor sets Color, which ends ParentColor: False is the cell's default, so
        // that a cell following its parent's colour is written as such and reads back so.
        b.Default(false);
        PublishControlProperties(b, {"ParentShowHint"});
        b.Property("Punktur", &TqSegment::Punktur, &TqSegment::SetPunktur)
            .Default(TSegmentDefaults::Punktur);
        PublishControlProperties(b, {"ShowHint"});
        b.Property("Transparent", &TqSegment::Transparent, &TqSegment::SetTransparent)
            .Default(TSegmentDefaults::Transparent);
        PublishControlProperties(b, {"Visible"});
        b.Property("Width", &TqSegment::Width, &TqSegment::SetWidth);
        b.Property("UnLitColor", ColorType(), &TqSegment::UnLitColor, &TqSegment::SetUnLitColor)
            .Default(TSegmentDefaults::UnLitColor);
        b.Property("Size", QSegSizeType(), &TqSegment::Size, &TqSegment::SetSize)
            .Default(TSegmentDefaults::Size);
        return b.Build();
    }();
    return info;
}

TqSegment::TqSegment(TComponent* AOwner) : TGraphicControl(AOwner) {
    SetControlStyle(ControlStyle() + TControlStyle{csOpaque});
    SetColor(TSegmentDefaults::Color);
    SetSize(TSegmentDefaults::Size);
}

void TqSegment::DoUpdate() {
    TGraphicControl::SetBounds(Left(), Top(), m_size * 19, m_size * 29);
    Invalidate();
}

void TqSegment::DoOnPaint() {
    if (OnPaint) OnPaint(this);
}

// Char and Size are subranges (qChar 32..255, qSegSize 1..15): values from code are clamped
// into them, so that whatever a cell holds is also what a form file can hold.
void TqSegment::SetChar(unsigned char value) {
    value = std::max(value, static_cast<unsigned char>(QCharType().minValue));
    if (value == m_char) return;
    m_char = value;
    m_segments = CharLook(value);
    DoUpdate();
}

void TqSegment::SetPunktur(qSegPunktur value) {
    if (value == m_punktur) return;
    m_punktur = value;
    const qSegSet dot = Segments({15}), point = Segments({16});
    switch (value) {
    case spPunktum:
        m_segments = (m_segments | point) & ~dot;
        break;
    case spColon:
        m_segments |= dot | point;
        break;
    case spNone:
        m_segments &= ~(dot | point);
        break;
    }
    DoUpdate();
}

void TqSegment::SetLitColor(TColor value) {
    if (value == m_litColor) return;
    m_litColor = value;
    DoUpdate();
}

void TqSegment::SetUnLitColor(TColor value) {
    if (value == m_unLitColor) return;
    m_unLitColor = value;
    DoUpdate();
}

void TqSegment::SetSize(int value) {
    value = std::clamp(value, static_cast<int>(QSegSizeType().minValue),
                       static_cast<int>(QSegSizeType().maxValue));
    if (value == m_size) return;
    m_size = value;
    DoUpdate();
}

void TqSegment::SetTransparent(bool value) {
    if (value == m_transparent) return;
    m_transparent = value;
    SetOpaqueStyle(*this, !value);
    Invalidate();
    Update();
}

void TqSegment::SetHeight(int value) {
    if (value == Height()) return;
    SetSize(std::max(value / 29, 1));
}

void TqSegment::SetWidth(int value) {
    if (value == Width()) return;
    SetSize(std::max(value / 19, 1));
}

void TqSegment::DrawSegments(TCanvas& c) const {
    const int d = m_size >= 2 ? 1 : 0;
    const auto g = [this](int i) { return G(i); };
    struct TPolygon {
        std::array<TPoint, 6> points;
        std::size_t count;
    };
    const auto poly = [](std::initializer_list<TPoint> pts) {
        TPolygon p{};
        p.count = pts.size();
        std::copy(pts.begin(), pts.end(), p.points.begin());
        return p;
    };
    const std::array<TPolygon, 16> polygons = {
        poly({{g(2), g(2)}, {g(16), g(2)}, {g(14), g(4)}, {g(4), g(4)}}),
        poly({{g(2), g(2) + 2}, {g(4), g(4) + 2}, {g(4), g(13) - 1}, {g(2), g(15) - 1}}),
        poly({{g(8), g(4) + 2}, {g(10), g(4) + 2}, {g(10), g(14) - 2}, {g(8), g(14) - 2}}),
        poly({{g(16), g(2) + 2}, {g(14), g(4) + 2}, {g(14), g(13) - 1}, {g(16), g(15) - 1}}),
        poly({{g(2) + 1, g(15)},
              {g(3) + 1, g(14)},
              {g(9) - 1, g(14)},
              {g(9) - 1, g(16)},
              {g(3) + 1, g(16)}}),
        poly({{g(9) + 1, g(14)},
              {g(15) - 1, g(14)},
              {g(16) - 1, g(15)},
              {g(15) - 1, g(16)},
              {g(9) + 1, g(16)}}),
        poly({{g(2), g(15) + 1}, {g(4), g(17) + 1}, {g(4), g(26) - 2}, {g(2), g(28) - 2}}),
        poly({{g(8), g(16) + 2}, {g(10), g(16) + 2}, {g(10), g(26) - 2}, {g(8), g(26) - 2}}),
        poly({{g(16), g(15) + 1}, {g(14), g(17) + 1}, {g(14), g(26) - 2}, {g(16), g(28) - 2}}),
        poly({{g(2), g(28)}, {g(4), g(26)}, {g(14), g(26)}, {g(16), g(28)}}),
        poly({{g(4) + 2, g(5 + d)},
              {g(4) + 2, g(4) + 2},
              {g(5 + d), g(4) + 2},
              {g(8) - 2, g(12 - d)},
              {g(8) - 2, g(14) - 2},
              {g(7 - d), g(14) - 2}}),
        poly({{g(14) - 2, g(5 + d)},
              {g(14) - 2, g(4) + 2},
              {g(13 - d), g(4) + 2},
              {g(10) + 2, g(12 - d)},
              {g(10) + 2, g(14) - 2},
              {g(11 + d), g(14) - 2}}),
        poly({{g(4) + 2, g(25 - d)},
              {g(4) + 2, g(26) - 2},
              {g(5 + d), g(26) - 2},
              {g(8) - 2, g(18 + d)},
              {g(8) - 2, g(16) + 2},
              {g(7 - d), g(16) + 2}}),
        poly({{g(14) - 2, g(25 - d)},
              {g(14) - 2, g(26) - 2},
              {g(13 - d), g(26) - 2},
              {g(10) + 2, g(18 + d)},
              {g(10) + 2, g(16) + 2},
              {g(11 + d), g(16) + 2}}),
        poly({{g(16) + 2 + d, g(14)}, {g(18), g(14)}, {g(18), g(16)}, {g(16) + 2 + d, g(16)}}),
        poly({{g(16) + 2 + d, g(26)}, {g(18), g(26)}, {g(18), g(28)}, {g(16) + 2 + d, g(28)}}),
    };
    for (std::size_t i = 0; i < polygons.size(); ++i) {
        const TColor color = SegmentColor(static_cast<int>(i) + 1);
        c.Pen().SetColor(color);
        c.Brush().SetColor(color);
        c.Polygon(std::span<const TPoint>(polygons[i].points.data(), polygons[i].count));
    }
}

TColor TqSegment::SegmentColor(int number) const {
    return (m_segments >> number) & 1u ? m_litColor : m_unLitColor;
}

TqSegment::TLook TqSegment::CurrentLook() const {
    const TRect r = ClientRect();
    return {r.Width(), r.Height(), m_size, m_segments, m_litColor, m_unLitColor, Color()};
}

TBitmap& TqSegment::Picture() {
    const TLook look = CurrentLook();
    return m_face.Picture(look, look.width, look.height, [&](TCanvas& c) {
        c.Brush().SetColor(look.back);
        c.FillRect({0, 0, look.width, look.height});
        DrawSegments(c);
    });
}

// A transparent cell draws its segments over what lies beneath; an opaque one copies its
// picture. Either way the canvas is left with the pen and brush of the last segment.
void TqSegment::Paint() {
    TCanvas& c = Canvas();
    c.Pen().SetWidth(1);
    c.Pen().SetStyle(psSolid);
    c.Brush().SetStyle(bsSolid);
    if (m_transparent) {
        DrawSegments(c);
    } else {
        const TCopyMode mode = c.CopyMode();
        c.SetCopyMode(cmSrcCopy);
        c.Draw(0, 0, Picture());
        c.SetCopyMode(mode);
        c.Pen().SetColor(SegmentColor(16));
        c.Brush().SetColor(SegmentColor(16));
    }
    DoOnPaint();
}

} // namespace qv
