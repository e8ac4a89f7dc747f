#include "instruments/TqxAnalogClock.h"

#include "componentbase/TurnPoint.h"
#include "platform/controls/ControlProperties.h"
#include "platform/core/DateTime.h"

#include <algorithm>
#include <array>

namespace qv {

namespace {
constexpr TAngleOrigin kFrom3 = TAngleOrigin::ThreeOClock;
constexpr TPixelRounding kTrunc = TPixelRounding::TruncateSum;

constexpr std::array<const char*, 12> kArabic = {"1", "2", "3", "4",  "5",  "6",
                                                 "7", "8", "9", "10", "11", "12"};
constexpr std::array<const char*, 12> kRoman = {"I",   "II",   "III", "IV", "V",  "VI",
                                                "VII", "VIII", "IX",  "X",  "XI", "XII"};

TPoint OnCircle(int cx, int cy, long double r, std::int64_t numerator, std::int64_t denominator) {
    return TurnPoint(cx, cy, r, r, numerator, denominator, kFrom3, kTrunc);
}

int Clamped(int value, const TTypeInfo& type) {
    return std::clamp(value, static_cast<int>(type.minValue), static_cast<int>(type.maxValue));
}
} // namespace

const TTypeInfo& QxClockDotType() {
    static const TTypeInfo info = TTypeInfo::Integer("qxClockDot", 1, 10);
    return info;
}

const TTypeInfo& QxOffSetTimeType() {
    static const TTypeInfo info = TTypeInfo::Integer("qxOffSetTime", -1440, 1440);
    return info;
}

const char* ClockNumeral(int n, bool roman, bool numStyle4) {
    if (n < 1 || n > 12 || (numStyle4 && n % 3 != 0)) return "";
    return (roman ? kRoman : kArabic)[static_cast<std::size_t>(n - 1)];
}

const TClassInfo& TqxAnalogClock::StaticClassInfo() {
    static const TClassInfo info = [] {
        using C = TqxAnalogClock;
        TClassBuilder<C> b("TqxAnalogClock", &TCustomPanel::StaticClassInfo());
        b.Property("Priority", &C::Priority, &C::Setpriority).Default(TqxTimer::Defaults::Priority);
        PublishControlProperties(b, {"DragMode", "DragCursor"});
        b.Property("NumStyle4", &C::NumStyle4, &C::SetNumS).Default(Defaults::NumStyle4);
        b.Property("ShowSeconds", &C::ShowSeconds, &C::SetSek).Default(Defaults::ShowSeconds);
        // The empty face is the 1 x 1 bitmap the clock starts with: it is not written.
        b.Object("FaceBitmap", &C::FaceBitmap).Stored([](const C& c) {
            return static_cast<long long>(c.FaceBitmap()->Width()) * c.FaceBitmap()->Height() > 1;
        });
        b.Property("BevelWidth", &C::BevelWidth, &C::SetBevel).Default(Defaults::BevelWidth);
        b.Property("BevelInner", &C::BevelInner, &C::SetInner).Default(Defaults::BevelInner);
        b.Property("BevelOuter", &C::BevelOuter, &C::SetOuter).Default(Defaults::BevelOuter);
        b.Property("Raised", &C::Raised, &C::SetRaised).Default(Defaults::Raised);
        PublishControlProperties(b, {"Color"});
        b.Property("DotType", &C::DotType, &C::SetDotType).Default(Defaults::DotType);
        b.Property("FaceColor", ColorType(), &C::FaceColor, &C::SetFace)
            .Default(Defaults::FaceColor);
        b.Property("Use3D", &C::Use3D, &C::SetUse3D).Default(Defaults::Use3D);
        b.Property("UseFont3D", &C::UseFont3D, &C::SetFont3D).Default(Defaults::UseFont3D);
        b.Property("ClockStyle", &C::ClockStyle, &C::SetClockStyle).Default(Defaults::ClockStyle);
        b.Property("DotColor", ColorType(), &C::DotColor, &C::SetDotCol)
            .Default(Defaults::DotColor);
        b.Property("ShadowColor", ColorType(), &C::ShadowColor, &C::SetShadow)
            .Default(Defaults::ShadowColor);
        b.Property("HighLightColor", ColorType(), &C::HighLightColor, &C::SetHigh)
            .Default(Defaults::HighLightColor);
        b.Property("DotSize", QxClockDotType(), &C::DotSize, &C::SetDotSize)
            .Default(Defaults::DotSize);
        b.Property("OffSetNumbers", QxOffSetNumberType(), &C::OffSetNumbers, &C::SetMoveNum)
            .Default(Defaults::OffSetNumbers);
        b.Property("OffSetDots", QxOffSetDotType(), &C::OffSetDots, &C::SetMoveTal)
            .Default(Defaults::OffSetDots);
        b.Property("OffSetTime", QxOffSetTimeType(), &C::OffSetTime, &C::SetOffSetTime)
            .Default(Defaults::OffSetTime);
        b.Property("HandLengthMin", &C::HandLengthMin, &C::SetMHand)
            .Default(Defaults::HandLengthMin);
        b.Property("HandLengthHour", &C::HandLengthHour, &C::SetHHand)
            .Default(Defaults::HandLengthHour);
        b.Property("HandLengthSec", &C::HandLengthSec, &C::SetSHand)
            .Default(Defaults::HandLengthSec);
        b.Property("HandIColHour", ColorType(), &C::HandIColHour, &C::SetHICol)
            .Default(Defaults::HandIColHour);
        b.Property("HandOColHour", ColorType(), &C::HandOColHour, &C::SetHOCol)
            .Default(Defaults::HandOColHour);
        b.Property("HandIColMin", ColorType(), &C::HandIColMin, &C::SetMICol)
            .Default(Defaults::HandIColMin);
        b.Property("HandOColMin", ColorType(), &C::HandOColMin, &C::SetMOCol)
            .Default(Defaults::HandOColMin);
        b.Property("HandColSec", ColorType(), &C::HandColSec, &C::SetSCol)
            .Default(Defaults::HandColSec);
        b.Property("HandDotSec", &C::HandDotSec, &C::SetCDot).Default(Defaults::HandDotSec);
        b.Property("HandDotMin", &C::HandDotMin, &C::SetCMDot).Default(Defaults::HandDotMin);
        b.Property("HandDotHour", &C::HandDotHour, &C::SetCHDot).Default(Defaults::HandDotHour);
        b.Property("HandWidthHour", &C::HandWidthHour, &C::SethHandWidth)
            .Default(Defaults::HandWidthHour);
        b.Property("HandWidthMin", &C::HandWidthMin, &C::SetmHandWidth)
            .Default(Defaults::HandWidthMin);
        b.Property("HandTypeHour", &C::HandTypeHour, &C::SetHHT).Default(Defaults::HandTypeHour);
        b.Property("HandTypeMin", &C::HandTypeMin, &C::SetMHT).Default(Defaults::HandTypeMin);
        PublishControlProperties(b, {"Width"});
        b.Default(Defaults::Size);
        PublishControlProperties(b, {"Cursor", "Enabled", "Font", "Hint", "Left"});
        // The constructor sets Color and the font's colour: neither follows the parent.
        b.Property("ParentColor", &C::ParentColor, &C::SetParentColor).Default(false);
        b.Property("ParentFont", &C::ParentFont, &C::SetParentFont).Default(false);
        PublishControlProperties(b, {"ParentShowHint", "PopupMenu", "ShowHint", "Top", "Visible"});
        b.Event("OnMouseEnter", &C::OnMouseEnter);
        b.Event("OnMouseLeave", &C::OnMouseLeave);
        b.Event("OnPaint", &C::OnPaint);
        b.Event("OnTimeChange", &C::OnTimeChange);
        PublishControlProperties(b,
                                 {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDrag",
                                  "OnMouseDown", "OnMouseMove", "OnMouseUp", "OnStartDrag"});
        return b.Build();
    }();
    return info;
}

TqxAnalogClock::TqxAnalogClock(TComponent* AOwner)
    : TEnterLeaveEvents<TCustomPanel>(AOwner), m_faceBitmap(std::make_unique<TBitmap>()) {
    SetOpaqueStyle(*this, true);
    SetColor(Defaults::Color);
    Font()->SetColor(Defaults::FontColor);
    m_faceBitmap->SetSize(1, 1);
    m_faceBitmap->OnChange = [this](TObject*) {
        m_dial.Invalidate();
        Invalidate();
    };
    SetBounds(Left(), Top(), Defaults::Size, Defaults::Size);
    IsNew();
    m_timer = new TqxTimer(this);
    m_timer->SetInterval(Defaults::TimerInterval);
    m_timer->SetOnTimer([this](TObject* sender) { DoTimer(sender); });
}

TqxAnalogClock::~TqxAnalogClock() {
    // The timer's worker stops before anything of the clock goes.
    delete m_timer;
    m_timer = nullptr;
    m_faceBitmap->OnChange = nullptr;
}

// Time.

bool TqxAnalogClock::IsNew() {
    const TTimeParts now = DecodeTime(Now());
    const bool changed = m_showSeconds ? now.second != m_lastSecond : now.minute != m_lastMinute;
    if (!changed) return false;
    m_lastSecond = static_cast<std::uint16_t>(now.second);
    m_lastMinute = static_cast<std::uint16_t>(now.minute);
    if (OnTimeChange) OnTimeChange(this);
    const TTimeParts shown = DecodeTime(Now() + m_offSetTime / 1440.0);
    m_hour = static_cast<std::uint16_t>(shown.hour > 12 ? shown.hour - 12 : shown.hour);
    m_minute = static_cast<std::uint16_t>(shown.minute);
    m_second = static_cast<std::uint16_t>(shown.second);
    return true;
}

void TqxAnalogClock::DoTimer(TObject*) {
    if (!Showing()) return;
    if (IsNew()) Invalidate();
}

void TqxAnalogClock::SetOffSetTime(std::int16_t value) {
    value = static_cast<std::int16_t>(Clamped(value, QxOffSetTimeType()));
    if (value == m_offSetTime) return;
    m_offSetTime = value;
    m_lastSecond = 0;
    m_lastMinute = 0;
    IsNew();
    Invalidate();
}

// The other properties.

namespace {
template <class T> void Store(TControl& control, T& member, T value) {
    member = value;
    control.Invalidate();
}
} // namespace

void TqxAnalogClock::SetNumS(bool value) {
    Store(*this, m_numStyle4, value);
}
void TqxAnalogClock::SetSek(bool value) {
    Store(*this, m_showSeconds, value);
}
void TqxAnalogClock::SetBitmap(const TBitmap& value) {
    m_faceBitmap->Assign(value);
    m_dial.Invalidate();
    Invalidate();
}
void TqxAnalogClock::SetBevel(int value) {
    Store(*this, m_bevelWidth, value);
}
void TqxAnalogClock::SetInner(TBevelCut value) {
    Store(*this, m_bevelInner, value);
}
void TqxAnalogClock::SetOuter(TBevelCut value) {
    Store(*this, m_bevelOuter, value);
}
void TqxAnalogClock::SetRaised(bool value) {
    Store(*this, m_raised, value);
}
void TqxAnalogClock::SetDotType(qxClockDotType value) {
    Store(*this, m_dotType, value);
}
void TqxAnalogClock::SetFace(TColor value) {
    Store(*this, m_faceColor, value);
}
void TqxAnalogClock::SetUse3D(bool value) {
    Store(*this, m_use3D, value);
}
void TqxAnalogClock::SetFont3D(bool value) {
    Store(*this, m_useFont3D, value);
}
void TqxAnalogClock::SetClockStyle(qxClockStyle value) {
    Store(*this, m_clockStyle, value);
}
void TqxAnalogClock::SetDotCol(TColor value) {
    Store(*this, m_dotColor, value);
}
void TqxAnalogClock::SetShadow(TColor value) {
    Store(*this, m_shadowColor, value);
}
void TqxAnalogClock::SetHigh(TColor value) {
    Store(*this, m_highLightColor, value);
}
void TqxAnalogClock::SetDotSize(int value) {
    Store(*this, m_dotSize, Clamped(value, QxClockDotType()));
}
void TqxAnalogClock::SetMoveNum(int value) {
    Store(*this, m_offSetNumbers, Clamped(value, QxOffSetNumberType()));
}
void TqxAnalogClock::SetMoveTal(int value) {
    Store(*this, m_offSetDots, Clamped(value, QxOffSetDotType()));
}
void TqxAnalogClock::SetMHand(std::uint16_t value) {
    Store(*this, m_handLengthMin, value);
}
void TqxAnalogClock::SetHHand(std::uint16_t value) {
    Store(*this, m_handLengthHour, value);
}
void TqxAnalogClock::SetSHand(std::uint16_t value) {
    Store(*this, m_handLengthSec, value);
}
void TqxAnalogClock::SetHICol(TColor value) {
    Store(*this, m_handIColHour, value);
}
void TqxAnalogClock::SetHOCol(TColor value) {
    Store(*this, m_handOColHour, value);
}
void TqxAnalogClock::SetMICol(TColor value) {
    Store(*this, m_handIColMin, value);
}
void TqxAnalogClock::SetMOCol(TColor value) {
    Store(*this, m_handOColMin, value);
}
void TqxAnalogClock::SetSCol(TColor value) {
    Store(*this, m_handColSec, value);
}
void TqxAnalogClock::SetCDot(std::uint16_t value) {
    Store(*this, m_handDotSec, value);
}
void TqxAnalogClock::SetCMDot(std::uint16_t value) {
    Store(*this, m_handDotMin, value);
}
void TqxAnalogClock::SetCHDot(std::uint16_t value) {
    Store(*this, m_handDotHour, value);
}
void TqxAnalogClock::SethHandWidth(std::uint16_t value) {
    Store(*this, m_handWidthHour, value);
}
void TqxAnalogClock::SetmHandWidth(std::uint16_t value) {
    Store(*this, m_handWidthMin, value);
}
void TqxAnalogClock::SetHHT(qxHandType value) {
    Store(*this, m_handTypeHour, value);
}
void TqxAnalogClock::SetMHT(qxHandType value) {
    Store(*this, m_handTypeMin, value);
}

void TqxAnalogClock::SetBounds(int ALeft, int ATop, int AWidth, int) {
    TEnterLeaveEvents<TCustomPanel>::SetBounds(ALeft, ATop, AWidth, AWidth);
}

void TqxAnalogClock::CMFontChanged(TMessage&) {
    m_dial.Invalidate();
    Invalidate();
}

// The picture covers every pixel: nothing is erased first.
void TqxAnalogClock::WMEraseBkgnd(TMessage& Message) {
    Message.Result = 1;
}

// Painting.

namespace {
// Larger dials are drawn straight into the picture on every paint instead of being kept.
constexpr long long kMaxCachedPixels = 1LL << 22;
} // namespace

TqxAnalogClock::TDialLook TqxAnalogClock::DialLook() const {
    return {Width(),      Color(),   m_faceColor,  m_dotColor,  m_shadowColor,   m_highLightColor,
            m_numStyle4,  m_raised,  m_use3D,      m_useFont3D, m_bevelWidth,    m_bevelInner,
            m_bevelOuter, m_dotType, m_clockStyle, m_dotSize,   m_offSetNumbers, m_offSetDots};
}

// The dial is kept between paints while its look holds; the hands are drawn over it.
void TqxAnalogClock::Paint() {
    const bool cached = static_cast<long long>(Width()) * Height() <= kMaxCachedPixels;
    TCanvas& c =
        m_frame.Begin(*this, Canvas(), TFrameBackground::Flat(Color()).PaintedOver(cached));
    if (cached)
        c.Draw(0, 0, m_dial.Picture(DialLook(), Width(), Height(), [this](TCanvas& dial) {
            DrawDial(dial);
        }));
    else
        DrawDial(c);
    c.SetFont(*Font());
    DrawHour(c);
    DrawMinut(c);
    if (m_showSeconds) DrawSec(c);
    m_frame.End(*this, Canvas(), OnPaint);
}

void TqxAnalogClock::DrawDial(TCanvas& c) {
    c.Brush().SetColor(Color());
    c.FillRect({0, 0, Width(), Height()});
    c.SetFont(*Font());
    c.Brush().SetColor(m_faceColor);
    c.Ellipse(0, 0, Width(), Height());
    if (static_cast<long long>(m_faceBitmap->Width()) * m_faceBitmap->Height() > 1)
        DrawFaceBitmap(c);
    DrawBevels(c);
    DrawMarks(c);
    c.Brush().SetStyle(bsSolid);
    c.Pen().SetColor(clBlack);
}

// The face bitmap tiled from (0, 0), whitened outside the dial, then copied with white
// transparent: only its non-white pixels inside the dial show.
void TqxAnalogClock::DrawFaceBitmap(TCanvas& c) {
    const int W = Width(), H = Height();
    const TRect all{0, 0, W, H};
    m_mask.SetSize(W, H);
    TCanvas& mask = m_mask.Canvas();
    ResetCanvasTools(mask);
    mask.Brush().SetColor(clWhite);
    mask.FillRect(all);
    mask.Brush().SetColor(clBlack);
    mask.Pen().SetColor(clBlack);
    mask.Ellipse(0, 0, W, H);

    m_work.SetSize(W, H);
    TCanvas& work = m_work.Canvas();
    ResetCanvasTools(work);
    work.Brush().SetBitmap(m_faceBitmap.get()); // tiled from the origin
    work.FillRect(all);
    work.Brush().SetBitmap(nullptr);
    work.SetCopyMode(cmSrcPaint);
    work.CopyRect(all, mask, all);
    work.SetCopyMode(cmSrcCopy);

    c.Brush().SetStyle(bsClear);
    c.BrushCopy(all, m_work, all, clWhite);
    c.Brush().SetStyle(bsSolid);
}

// Two half arcs of each bevelled circle: the light one upper left for a raised or spaced cut,
// lower right for a lowered one.
void TqxAnalogClock::DrawBevels(TCanvas& c) const {
    const auto arcs = [&](TBevelCut cut, int inset) {
        if (cut == bvNone) return;
        const int l = inset, t = inset, r = Width() - inset, b = Height() - inset;
        const TColor upperLeft = cut == bvLowered ? m_shadowColor : m_highLightColor;
        const TColor lowerRight = cut == bvLowered ? m_highLightColor : m_shadowColor;
        c.Pen().SetColor(upperLeft);
        c.Arc(l, t, r, b, r, t, l, b);
        c.Pen().SetColor(lowerRight);
        c.Arc(l, t, r, b, l, b, r, t);
    };
    arcs(m_bevelOuter, 0);
    arcs(m_bevelInner, m_bevelWidth);
    c.Pen().SetColor(clBlack);
}

void TqxAnalogClock::DrawMarks(TCanvas& c) const {
    switch (m_clockStyle) {
    case csNone:
        break;
    case csSmallDot:
        DrawSmallDot(c);
        break;
    case csDot:
        DrawDot(c);
        break;
    case csSimpleDot:
        DrawSimpleDot(c);
        break;
    case csNumber:
    case csNumberSmallDot:
    case csNumberDot:
    case csNumberSimpleDot:
        DrawNumber(c, false, m_clockStyle - csNumber);
        break;
    case csRoman:
    case csRomanSmallDot:
    case csRomanDot:
    case csRomanSimpleDot:
        DrawNumber(c, true, m_clockStyle - csRoman);
        break;
    }
}

void TqxAnalogClock::DrawMinutePixel(TCanvas& c, int i) const {
    const int centre = Width() / 2;
    const TPoint p = OnCircle(centre, centre, centre - m_offSetDots - 1, i, 60);
    if (!m_use3D) {
        c.SetPixel(p.x, p.y, m_dotColor);
        return;
    }
    c.SetPixel(p.x, p.y, FirstColor());
    c.SetPixel(p.x + 1, p.y + 1, SecondColor());
}

// The box reaches s further right and down than left and up.
void TqxAnalogClock::DrawHourMark(TCanvas& c, int i) const {
    const int W = Width(), centre = W / 2, s = m_dotSize, h = s / 2;
    const int r = (W - s - s - h) / 2 - m_offSetDots;
    const TPoint p = OnCircle(centre, centre, r, i, 60);
    const int x = p.x - 1, y = p.y - 1;
    const auto box = [&](int dx, int dy, TColor color) {
        c.Pen().SetColor(color);
        c.Brush().SetColor(color);
        if (m_dotType == dtRect)
            c.Rectangle(x - h + dx, y - h + dy, x + s + h + dx, y + s + h + dy);
        else
            c.Ellipse(x - h + dx, y - h + dy, x + s + h + dx, y + s + h + dy);
    };
    if (m_use3D) {
        box(-1, -1, FirstColor());
        box(1, 1, SecondColor());
    }
    box(0, 0, m_dotColor);
}

void TqxAnalogClock::DrawSmallDot(TCanvas& c) const {
    for (int i = 1; i <= 60; ++i)
        DrawMinutePixel(c, i);
}

void TqxAnalogClock::DrawSimpleDot(TCanvas& c) const {
    for (int i = 5; i <= 60; i += 5)
        DrawHourMark(c, i);
}

void TqxAnalogClock::DrawDot(TCanvas& c) const {
    for (int i = 1; i <= 60; ++i)
        if (i % 5 == 0)
            DrawHourMark(c, i);
        else
            DrawMinutePixel(c, i);
}

// The horizontal radius is reduced by the whole text width, the vertical one by half the
// text height. Arabic numerals are placed by the width of "0" ("12" for twelve).
void TqxAnalogClock::DrawNumber(TCanvas& c, bool roman, int dotStyle) const {
    switch (dotStyle) {
    case 1:
        DrawSmallDot(c);
        break;
    case 2:
        DrawDot(c);
        break;
    case 3:
        DrawSimpleDot(c);
        break;
    default:
        break;
    }
    const int centre = Width() / 2;
    const int hh = c.TextHeight("0") / 2;
    const TColor fontColor = c.Font().Color();
    c.Brush().SetStyle(bsClear);
    for (int n = 1; n <= 12; ++n) {
        const std::string text = ClockNumeral(n, roman, m_numStyle4);
        if (text.empty()) continue;
        const int tw = roman ? c.TextWidth(text) : c.TextWidth(n == 12 ? "12" : "0");
        const int hw = tw / 2;
        const TPoint p = TurnPoint(centre, centre, centre - tw - m_offSetNumbers,
                                   centre - hh - m_offSetNumbers, n + 9, 12, kFrom3, kTrunc);
        const int x = p.x - 1 - hw, y = p.y - 1 - hh;
        if (m_useFont3D) {
            c.Font().SetColor(FirstColor());
            c.TextOut(x - 1, y - 1, text);
            c.Font().SetColor(SecondColor());
            c.TextOut(x + 1, y + 1, text);
            c.Font().SetColor(fontColor);
        }
        c.TextOut(x, y, text);
    }
    c.Brush().SetStyle(bsSolid);
}

// One of the two kite-shaped hands: its axis is axis / turn of a turn from 3 o'clock, its
// shoulders `spread` / turn either side of it.
struct TqxAnalogClock::THand {
    std::uint16_t length;
    qxHandType type;
    TColor inner, outer;
    std::uint16_t dot;
    std::int64_t axis, spread, turn;
};

void TqxAnalogClock::DrawHand(TCanvas& c, const THand& hand) const {
    const int cx = Width() / 2, cy = Height() / 2;
    const TPoint centre{cx, cy};
    const TPoint tip = OnCircle(cx, cy, hand.length, hand.axis, hand.turn);
    // htNeedle L, htHand0 L div 2, ... htHand5 L div 7.
    const int shoulder = hand.length / (static_cast<int>(hand.type) + 1);
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(hand.inner);
    c.Pen().SetColor(hand.outer);
    if (hand.type == htNeedle) {
        const std::array<TPoint, 2> line = {centre, tip};
        c.Polyline(line);
    } else {
        const TPoint a = OnCircle(cx, cy, shoulder, hand.axis - hand.spread, hand.turn);
        const TPoint b = OnCircle(cx, cy, shoulder, hand.axis + hand.spread, hand.turn);
        const std::array<TPoint, 5> kite = {centre, a, tip, b, centre};
        c.Polygon(kite);
    }
    if (hand.dot > 0) c.Ellipse(cx - hand.dot, cy - hand.dot, cx + hand.dot, cy + hand.dot);
}

// ((hour + 9) * 60 + minute) / 720 of a turn; the shoulders 12 w / 720 (w * 6 degrees) off.
void TqxAnalogClock::DrawHour(TCanvas& c) const {
    DrawHand(c, {m_handLengthHour, m_handTypeHour, m_handIColHour, m_handOColHour, m_handDotHour,
                 (m_hour + 9) * 60 + m_minute, 12 * std::int64_t{m_handWidthHour}, 720});
}

// (minute + 45) / 60 of a turn; the shoulders w / 60 off. The seconds do not move it.
void TqxAnalogClock::DrawMinut(TCanvas& c) const {
    DrawHand(c, {m_handLengthMin, m_handTypeMin, m_handIColMin, m_handOColMin, m_handDotMin,
                 m_minute + 45, m_handWidthMin, 60});
}

void TqxAnalogClock::DrawSec(TCanvas& c) const {
    const int cx = Width() / 2, cy = Height() / 2;
    const TPoint tip = OnCircle(cx, cy, m_handLengthSec, m_second + 45, 60);
    c.Pen().SetColor(m_handColSec);
    const std::array<TPoint, 2> line = {TPoint{cx, cy}, tip};
    c.Polyline(line);
    if (m_handDotSec == 0) return;
    c.Brush().SetColor(m_handColSec);
    c.Ellipse(cx - m_handDotSec, cy - m_handDotSec, cx + m_handDotSec, cy + m_handDotSec);
}

} // namespace qv
