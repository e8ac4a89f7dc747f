#include "LiveSettings.h"

#include "backgrounds/Blend.h"
#include "buttons/Qanimate.h"
#include "controls/Qbtn2.h"
#include "indicators/Qled.h"
#include "indicators/Qseg.h"
#include "instruments/Qgauge.h"
#include "instruments/Qpanel.h"
#include "instruments/Qpanel2.h"
#include "platform/controls/Application.h"
#include "platform/controls/Menus.h"
#include "platform/core/Exceptions.h"
#include "platform/core/PropertyAccess.h"
#include "platform/core/SysUtils.h"
#include "slidebar/Slidebar.h"
#include "splitters/Qsplit.h"
#include "switches/Qonzoff.h"
#include "timing/Std2.h"
#include "utility/Mystd.h"

#include <cmath>
#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace qv::gallery {

namespace {

template <class V> std::string ValueText(const V& value) {
    if constexpr (std::is_convertible_v<V, std::string>)
        return std::string(1, '\'').append(value).append(1, '\'');
    else
        return std::to_string(static_cast<long long>(value));
}

// A setting of class C: `set` is applied with `value`; it holds while `get` returns it.
template <class C, class V, class Get, class Set>
TShowcaseSetting Setting(std::string property, Get get, Set set, V value) {
    return {std::move(property), ValueText(value),
            [set, value](TComponent& c) { std::invoke(set, static_cast<C&>(c), value); },
            [get, value](const TComponent& c) {
                return std::invoke(get, static_cast<const C&>(c)) == value;
            }};
}

constexpr int sweepPeriod = 80;  // eight seconds up and down
constexpr int switchPeriod = 20; // a switch flips every two seconds
constexpr int blinkPeriod = 5;   // an LED blinks twice a second

bool HasProperty(const TComponent& component, const std::string& name) {
    for (const TPropInfo* prop : GetPropList(component))
        if (prop->name == name) return true;
    return false;
}

// The generic animation of instruments and switches, through their published properties.
void SweepAndSwitch(TComponent& component, int tick) {
    if (HasProperty(component, "SwitchOn") && tick % switchPeriod == 0)
        SetPropText(component, "SwitchOn", tick / switchPeriod % 2 != 0 ? "True" : "False");
    if (!HasProperty(component, "Min") || !HasProperty(component, "Max") ||
        !HasProperty(component, "Value"))
        return;
    const int low = StrToInt(GetPropText(component, "Min"));
    const int high = StrToInt(GetPropText(component, "Max"));
    if (high > low)
        SetPropText(component, "Value", std::to_string(SweepValue(low, high, tick, sweepPeriod)));
}

// Knobs sweep their rings a third of a period apart, until the user takes one over: a knob
// that holds the focus (a press focuses it) stays where the user turned it.
void SweepKnob(TComponent& component, int tick) {
    auto& knob = static_cast<TqKnob&>(component);
    if (knob.Focused()) return;
    const auto sweep = [&](int ring) {
        return SweepValue(knob.Min(), knob.Max(), tick + ring * sweepPeriod / 3, sweepPeriod);
    };
    knob.SetKnobValue(sweep(0));
    if (auto* dbl = dynamic_cast<TqDblKnob*>(&knob)) dbl->SetKnobValue2(sweep(1));
    if (auto* trip = dynamic_cast<TqTripKnob*>(&knob)) trip->SetKnobValue3(sweep(2));
}

template <class Blend> void CycleFillType(TComponent& component, int tick) {
    if (tick % switchPeriod == 0)
        static_cast<Blend&>(component).SetFillType(static_cast<gradType>(tick / switchPeriod % 3));
}

// A 12 x 12 tile of two colours: a diamond on a ground, for the tile maps.
template <class Map> TShowcaseSetting TilePattern(TColor ground, TColor diamond) {
    return {"Bitmap", "diamond pattern",
            [ground, diamond](TComponent& c) {
                TBitmap tile(12, 12);
                for (int y = 0; y < 12; ++y)
                    for (int x = 0; x < 12; ++x)
                        tile.Canvas().SetPixel(
                            x, y, std::abs(x - 6) + std::abs(y - 6) < 5 ? diamond : ground);
                static_cast<Map&>(c).SetBitmap(&tile);
            },
            [](const TComponent& c) { return !static_cast<const Map&>(c).Bitmap()->Empty(); }};
}

// The tray icon's menu: the default item (a double click on the icon runs it) counts its runs
// in the icon's tip; the other shows the gallery again.
TShowcaseSetting TrayMenu() {
    return {"PopupMenu", "a menu",
            [](TComponent& c) {
                auto& icon = static_cast<TqTrayIcon&>(c);
                auto* menu = new TPopupMenu(icon.Owner());
                auto* count = new TMenuItem(menu);
                count->SetCaption("Count");
                count->SetDefault(true);
                auto runs = std::make_shared<int>(0);
                count->OnClick = [&icon, runs](TObject*) {
                    icon.SetToolTip("Quelvar gallery: " + std::to_string(++*runs));
                };
                auto* show = new TMenuItem(menu);
                show->SetCaption("Show the gallery");
                show->OnClick = [](TObject*) {
                    if (TCustomForm* main = Application().MainForm()) main->Show();
                };
                menu->Items()->Add(count);
                menu->Items()->Add(show);
                icon.SetPopupMenu(menu);
                icon.SetDoDefaultMenu(true);
            },
            [](const TComponent& c) { return static_cast<const TqTrayIcon&>(c).PopupMenu(); }};
}

// A button without a click handler gets a click counter in its caption.
void CountClicks(TComponent& component, int) {
    auto& control = static_cast<TControl&>(component);
    if (control.OnClick) return;
    control.OnClick = [&control, clicks = 0](TObject*) mutable {
        control.SetCaption("Clicked " + std::to_string(++clicks));
    };
}

// A switch flips every two seconds until the user touches it: it holds the focus (a press or
// the space bar focuses it) or has been toggled by the user (OnClick, which SwitchOn set from
// code does not raise).
struct TTouchMark {
    bool touched{false};
    void operator()(TObject*) { touched = true; }
};
void SwitchUntilTouched(TComponent& component, int tick) {
    auto& onOff = static_cast<TqxCustomOnOff&>(component);
    if (!onOff.OnClick) onOff.OnClick = TTouchMark{};
    const TTouchMark* mark = onOff.OnClick.target<TTouchMark>();
    if (onOff.Focused() || (mark && mark->touched)) return;
    if (tick % switchPeriod == 0) onOff.SetSwitchOn(tick / switchPeriod % 2 != 0);
}

// Slide bars sweep until the user focuses one. Owner-drawn ticks are longer and red at the
// ends.
void DrawBarTick(TObject* sender, TCanvas* canvas, int X, int Y, bool Left, int TickNum) {
    const auto& bar = static_cast<const TqSlideBar&>(*sender);
    const bool end = TickNum == 0 || bar.Min() + static_cast<long long>(TickNum) == bar.Max();
    const int length = end ? 5 : 3;
    const int from = Left ? Y + 4 - length : Y;
    canvas->Pen().SetColor(end ? TColor(0x0000C0) : TColor(0x800000));
    canvas->MoveTo(X, from);
    canvas->LineTo(X, from + length);
}

TShowcaseSetting BarLabels() {
    return {"Labels", "(zero .. ten)",
            [](TComponent& c) {
                TStringList words;
                for (const char* w : {"zero", "one", "two", "three", "four", "five", "six", "seven",
                                      "eight", "nine", "ten"})
                    words.Add(w);
                static_cast<TqSlideBar&>(c).SetLabels(words);
            },
            [](const TComponent& c) {
                return static_cast<const TqSlideBar&>(c).Labels()->Count() == 11;
            }};
}

TShowcaseSetting BarOwnerDraw() {
    return {"OnOwnerDraw", "coloured ticks",
            [](TComponent& c) { static_cast<TqSlideBar&>(c).OnOwnerDraw = DrawBarTick; },
            [](const TComponent& c) {
                return static_cast<bool>(static_cast<const TqSlideBar&>(c).OnOwnerDraw);
            }};
}

void SweepBar(TComponent& component, int tick) {
    auto& bar = static_cast<TqSlideBar&>(component);
    if (bar.Focused()) return;
    bar.SetPosition(SweepValue(bar.Min(), bar.Max(), tick, sweepPeriod));
    if (TControl* cell = bar.Parent()) cell->Invalidate();
}

// Spin buttons step a number in their Tag, which the cell shows.
TShowcaseSetting SpinStepsANumber() {
    return {"OnUpClick", "Tag + 1",
            [](TComponent& c) {
                auto& spin = static_cast<TqxSpinBtn&>(c);
                const auto step = [&spin](int by) {
                    return [&spin, by](TObject*) {
                        spin.SetTag(spin.Tag() + by);
                        if (TControl* cell = spin.Parent()) cell->Invalidate();
                    };
                };
                spin.OnUpClick = step(1);
                spin.OnDownClick = step(-1);
                if (auto* centre = dynamic_cast<TqxCenterSpinBtn*>(&spin))
                    centre->OnCenterClick = [&spin](TObject*) {
                        spin.SetTag(0);
                        if (TControl* cell = spin.Parent()) cell->Invalidate();
                    };
            },
            [](const TComponent& c) {
                return static_cast<bool>(static_cast<const TqxSpinBtn&>(c).OnUpClick);
            }};
}

// The live word after a cell's class name, for the classes that have one.
std::string StatusOf(const TComponent& c) {
    if (const auto* bar = dynamic_cast<const TqSlideBar*>(&c)) return bar->CurrentLabel();
    if (c.ClassName() == "TqxSpinBtn")
        return std::to_string(c.Tag()); // the centre form's name fills its cell
    return {};
}

// The mouse spot shows nothing itself: the gallery draws its count of enters through it.
void CountEnters(TComponent& component, int) {
    auto& spot = static_cast<TqMouseSpot&>(component);
    if (spot.OnMouseEnter) return;
    auto enters = std::make_shared<int>(0);
    spot.OnMouseEnter = [&spot, enters](TObject*) {
        ++*enters;
        spot.Invalidate();
    };
    spot.OnParentPaint = [&spot, enters](TObject*) {
        TCanvas& canvas = spot.Canvas();
        canvas.Brush().SetStyle(bsClear);
        canvas.Font().SetColor(clBlue);
        canvas.TextOut(2, 3, std::to_string(*enters));
    };
}

// A dot runs along the panel the composite canvas draws on.
void DrawOnControl(TComponent& component, int tick) {
    auto& lender = static_cast<TqCompCanvas&>(component);
    TWinControl* target = lender.ControlComponent();
    if (!target || lender.Drawing() || target->Width() < 12) return;
    lender.StartPaint();
    TCanvas& canvas = lender.Canvas();
    canvas.Brush().SetColor(clBtnFace);
    canvas.FillRect(Rect(2, 2, target->Width() - 2, target->Height() - 2)); // inside the bevel
    canvas.Brush().SetColor(clRed);
    const int x = tick * 3 % (target->Width() - 10);
    canvas.Ellipse(x, target->Height() / 2 - 5, x + 10, target->Height() / 2 + 5);
    lender.EndPaint();
}

// Live data displays: the scope takes four samples a tick, a sine on beam 1 and noise on
// beam 2; the spectrum's bars bounce, each at its own pace.
constexpr int scopeSamplesPerTick = 4;

int NoiseSample(int n) {
    std::uint32_t h = static_cast<std::uint32_t>(n) * 2654435761u;
    h ^= h >> 15;
    return static_cast<int>(h % 21) - 10;
}

int SineSample(int n) {
    return 50 + static_cast<int>(std::lround(35 * std::sin(n * 2 * M_PI / 60)));
}

void FeedScope(TComponent& component, int tick) {
    auto& scope = static_cast<TqScope&>(component);
    for (int k = 0; k < scopeSamplesPerTick; ++k) {
        const int n = tick * scopeSamplesPerTick + k;
        scope.SetIn1(SineSample(n));
        scope.SetIn2(25 + NoiseSample(n));
        scope.Push();
    }
}

// The traces as they stand before the first tick: sample i is the one taken i pushes ago.
TShowcaseSetting ScopeHistory() {
    return {"SetAllChannel1/2", "sine and noise",
            [](TComponent& c) {
                std::vector<int> sine(1000), noise(1000);
                for (int i = 0; i < 1000; ++i) {
                    sine[static_cast<std::size_t>(i)] = SineSample(-i);
                    noise[static_cast<std::size_t>(i)] = 25 + NoiseSample(-i);
                }
                static_cast<TqScope&>(c).SetAllChannel1(sine.data());
                static_cast<TqScope&>(c).SetAllChannel2(noise.data());
            },
            [](const TComponent& c) {
                const auto& scope = static_cast<const TqScope&>(c);
                return scope.Sample(1, 15) == SineSample(-15) &&
                       scope.Sample(2, 7) == 25 + NoiseSample(-7);
            }};
}

int BarLevel(int tick, int i, int bars) {
    const double wave = std::sin(tick * (0.25 + 0.03 * i) + i * 0.9);
    const double fall = 1.0 - 0.6 * i / bars;
    return static_cast<int>(std::lround(100 * fall * (0.5 + 0.5 * wave)));
}

void BounceBars(TComponent& component, int tick) {
    auto& spectrum = static_cast<TqxSpectrum&>(component);
    for (int i = 0; i < spectrum.NumberOfChannels(); ++i)
        spectrum.SetChannel(i, BarLevel(tick, i, spectrum.NumberOfChannels()));
}

// The bars as they stand before the first tick.
TShowcaseSetting SpectrumLevels() {
    return {"SetChannel", "bouncing levels", [](TComponent& c) { BounceBars(c, 0); },
            [](const TComponent& c) {
                const auto& spectrum = static_cast<const TqxSpectrum&>(c);
                const int n = spectrum.NumberOfChannels();
                for (int i = 0; i < n; ++i)
                    if (spectrum.GetChannel(i) != BarLevel(0, i, n)) return false;
                return true;
            }};
}

std::vector<TShowcase> MakeShowcases() {
    std::vector<TShowcase> all;
    all.push_back({"TqLed",
                   {Setting<TqLed>("LEDColor", &TqLed::LEDColor, &TqLed::SetLEDColor, lctGreen),
                    Setting<TqLed>("Enabled", &TqLed::LedOn, &TqLed::writeLedOn, true)},
                   [](TComponent& c, int tick) {
                       if (tick % blinkPeriod == 0)
                           static_cast<TqLed&>(c).writeLedOn(tick / blinkPeriod % 2 == 0);
                   }});
    all.push_back(
        {"TqSegment",
         {Setting<TqSegment>("Char", &TqSegment::Char, &TqSegment::SetChar,
                             static_cast<unsigned char>('8')),
          Setting<TqSegment>("Punktur", &TqSegment::Punktur, &TqSegment::SetPunktur, spPunktum)},
         [](TComponent& c, int tick) {
             if (tick % switchPeriod == 0)
                 static_cast<TqSegment&>(c).SetChar(
                     static_cast<unsigned char>('0' + tick / switchPeriod % 10));
         }});
    all.push_back({"TqSegmentLabel",
                   {Setting<TqSegmentLabel>("Caption", &TqSegmentLabel::Caption,
                                            &TqSegmentLabel::SetCaption, std::string("QUELVAR"))},
                   {}});
    all.push_back({"TqSegmentClock",
                   {Setting<TqSegmentClock>("ShowSeconds", &TqSegmentClock::ShowSeconds,
                                            &TqSegmentClock::SetShowSeconds, true)},
                   {}});
    // A flat knob as it is made, and a blue one on steel.
    all.push_back({"TqKnob", {}, SweepKnob});
    all.push_back({"TqKnob",
                   {Setting<TqKnob>("KnobColor", &TqKnob::KnobColor, &TqKnob::SetKnobCol, kcBlue),
                    Setting<TqKnob>("SteelLook", &TqKnob::SteelLook, &TqKnob::SetSteel, true)},
                   SweepKnob,
                   "steel"});
    all.push_back({"TqDblKnob",
                   {Setting<TqDblKnob>("PointColor2", &TqDblKnob::PointColor2,
                                       &TqDblKnob::SetPoint2, TColor(0x800000))},
                   SweepKnob});
    all.push_back({"TqTripKnob",
                   {Setting<TqTripKnob>("KnobColor", &TqTripKnob::KnobColor,
                                        &TqTripKnob::SetKnobCol, kcWhite),
                    Setting<TqTripKnob>("PointColor2", &TqTripKnob::PointColor2,
                                        &TqTripKnob::SetPoint2, TColor(0x008000)),
                    Setting<TqTripKnob>("PointColor3", &TqTripKnob::PointColor3,
                                        &TqTripKnob::SetPoint3, TColor(0x800000))},
                   SweepKnob});
    // The meters sweep through their alert zone (the generic sweep of Value); the clock ticks.
    all.push_back({"TqPanelMeter",
                   {Setting<TqPanelMeter>("Caption", &TqPanelMeter::Caption,
                                          &TqPanelMeter::SetCaption, std::string("Load")),
                    Setting<TqPanelMeter>("ScaleWidth", &TqPanelMeter::ScaleWidth,
                                          &TqPanelMeter::SetScaleWidth, 4)},
                   {}});
    all.push_back({"TqxAnalogClock",
                   {Setting<TqxAnalogClock>("ClockStyle", &TqxAnalogClock::ClockStyle,
                                            &TqxAnalogClock::SetClockStyle, csNumberDot),
                    Setting<TqxAnalogClock>("Use3D", &TqxAnalogClock::Use3D,
                                            &TqxAnalogClock::SetUse3D, true)},
                   {}});
    all.push_back({"TqxDinMeter",
                   {Setting<TqxDinMeter>("Caption1", &TqxDinMeter::Caption1,
                                         &TqxDinMeter::SetCaption1, std::string("bar")),
                    Setting<TqxDinMeter>("ScaleType", &TqxDinMeter::ScaleType,
                                         &TqxDinMeter::SetScaleType, st6)},
                   {}});
    all.push_back(
        {"TqxTimer",
         {Setting<TqxTimer>("Interval", &TqxTimer::Interval, &TqxTimer::SetInterval, 250u)},
         {}});
    // A short period, so that the lateness over the last second rests on many ticks.
    all.push_back(
        {"TqxMMTimer",
         {Setting<TqxMMTimer>("Interval", &TqxMMTimer::Interval, &TqxMMTimer::SetInterval, 10u)},
         {}});
    // Blend paints cycle their fill types.
    all.push_back({"TqBlendPaint",
                   {Setting<TqBlendPaint>("EndColor", &TqBlendPaint::EndColor,
                                          &TqBlendPaint::SetEndColor, TColor(0xFFFF00))},
                   CycleFillType<TqBlendPaint>});
    all.push_back(
        {"TqNWBlendPaint",
         {Setting<TqNWBlendPaint>("Bands", &TqNWBlendPaint::Bands, &TqNWBlendPaint::SetBands, 8)},
         CycleFillType<TqNWBlendPaint>});
    // Buttons press when clicked and count their clicks in the caption.
    all.push_back({"TqColorBtn",
                   {Setting<TqColorBtn>("Caption", &TqColorBtn::Caption, &TqColorBtn::SetCaption,
                                        std::string("&Press me")),
                    Setting<TqColorBtn>("Color", &TqColorBtn::Color, &TqColorBtn::SetColor,
                                        TColor(0x80C0FF))},
                   CountClicks});
    all.push_back(
        {"TqNWColorBtn",
         {Setting<TqNWColorBtn>("Caption", &TqNWColorBtn::Caption, &TqNWColorBtn::SetCaption,
                                std::string("Flat")),
          Setting<TqNWColorBtn>("Flat", &TqNWColorBtn::Flat, &TqNWColorBtn::SetFlat, true)},
         CountClicks});
    // Switches: captions (one with an accelerator), steel, the picture on the left, disabled.
    all.push_back({"TqxLightOnOff",
                   {Setting<TqxLightOnOff>("Caption", &TqxLightOnOff::Caption,
                                           &TqxLightOnOff::SetCaption, std::string("&Lamp")),
                    Setting<TqxLightOnOff>("Color", &TqxLightOnOff::Color, &TqxLightOnOff::SetColor,
                                           TColor(0x00FFFF))},
                   SwitchUntilTouched});
    all.push_back({"TqxPushOnOff",
                   {Setting<TqxPushOnOff>("Caption", &TqxPushOnOff::Caption,
                                          &TqxPushOnOff::SetCaption, std::string("Power")),
                    Setting<TqxPushOnOff>("Color", &TqxPushOnOff::Color, &TqxPushOnOff::SetColor,
                                          TColor(0x00FF00)),
                    Setting<TqxPushOnOff>("SteelLook", &TqxPushOnOff::SteelLook,
                                          &TqxPushOnOff::SetSteelLook, true)},
                   SwitchUntilTouched});
    all.push_back({"TqxDblOnOff",
                   {Setting<TqxDblOnOff>("Caption", &TqxDblOnOff::Caption, &TqxDblOnOff::SetCaption,
                                         std::string("Mains")),
                    Setting<TqxDblOnOff>("Color", &TqxDblOnOff::Color, &TqxDblOnOff::SetColor,
                                         TColor(0x00C000))},
                   SwitchUntilTouched});
    all.push_back({"TqxSingleOnOff",
                   {Setting<TqxSingleOnOff>("Caption", &TqxSingleOnOff::Caption,
                                            &TqxSingleOnOff::SetCaption, std::string("Pump")),
                    Setting<TqxSingleOnOff>("Color", &TqxSingleOnOff::Color,
                                            &TqxSingleOnOff::SetColor, TColor(0x0000FF)),
                    Setting<TqxSingleOnOff>("GlyphAlign", &TqxSingleOnOff::GlyphAlign,
                                            &TqxSingleOnOff::SetGlyphAlign, qxgp_Left)},
                   SwitchUntilTouched});
    all.push_back({"TqxSlideOnOff",
                   {Setting<TqxSlideOnOff>("Caption", &TqxSlideOnOff::Caption,
                                           &TqxSlideOnOff::SetCaption, std::string("Locked")),
                    Setting<TqxSlideOnOff>("Enabled", &TqxSlideOnOff::Enabled,
                                           &TqxSlideOnOff::SetEnabled, false)},
                   SwitchUntilTouched});
    // Tile maps show a pattern; the background's cell opens a demo form with its settings.
    all.push_back({"TqTileMap", {TilePattern<TqTileMap>(RGB(0, 64, 128), RGB(255, 200, 0))}, {}});
    all.push_back(
        {"TqNWTileMap", {TilePattern<TqNWTileMap>(RGB(128, 0, 0), RGB(240, 240, 240))}, {}});
    all.push_back({"TqBackground",
                   {Setting<TqBackground>("BackType", &TqBackground::BackType,
                                          &TqBackground::SetBackType, btBlend),
                    Setting<TqBackground>("EndColor", &TqBackground::EndColor,
                                          &TqBackground::SetEndColor, TColor(0x400000))},
                   CycleFillType<TqBackground>});
    // The gradient button counts its clicks and cycles its fill type.
    all.push_back(
        {"TqGradBtn",
         {Setting<TqGradBtn>("Caption", &TqGradBtn::Caption, &TqGradBtn::SetCaption,
                             std::string("&Gradient")),
          Setting<TqGradBtn>("Color", &TqGradBtn::Color, &TqGradBtn::SetColor, TColor(0xFFF0E0)),
          Setting<TqGradBtn>("EndColor", &TqGradBtn::EndColor, &TqGradBtn::SetEndColor,
                             TColor(0x804000))},
         [](TComponent& c, int tick) {
             CountClicks(c, tick);
             CycleFillType<TqGradBtn>(c, tick);
         }});
    // Slide bars: ticks on both sides with the number words as labels (the current one in the
    // cell), a vertical steel bar, and owner-drawn ticks.
    all.push_back({"TqSlideBar", {BarLabels()}, SweepBar});
    all.push_back(
        {"TqSlideBar",
         {Setting<TqSlideBar>("SteelLook", &TqSlideBar::SteelLook, &TqSlideBar::SetSteel, true),
          Setting<TqSlideBar>("Orientation", &TqSlideBar::Orientation, &TqSlideBar::SetOrientation,
                              orVertical)},
         SweepBar,
         "steel-vertical"});
    all.push_back({"TqSlideBar",
                   {BarOwnerDraw(), Setting<TqSlideBar>("TickStyle", &TqSlideBar::TickStyle,
                                                        &TqSlideBar::SetTickStyle, tsOwnerDraw)},
                   SweepBar,
                   "owner-drawn"});
    all.push_back({"TqxSpinBtn", {SpinStepsANumber()}, {}});
    all.push_back({"TqxCenterSpinBtn", {SpinStepsANumber()}, {}});
    // Process, splitter, canvas and hot-spot components. Splitters are dragged by the user.
    all.push_back({"TqxRunProg",
                   {Setting<TqxRunProg>("CmdLine", &TqxRunProg::CmdLine, &TqxRunProg::SetCmdLine,
                                        std::string("sh -c \"sleep 1; exit 3\""))},
                   {}});
    all.push_back(
        {"TqVerSplit",
         {Setting<TqVerSplit>("WhereSplit", &TqVerSplit::WhereSplit, &TqVerSplit::SetWhere, 60),
          Setting<TqVerSplit>("Color", &TqVerSplit::Color, &TqVerSplit::SetColor,
                              TColor(0xE0E0FF))},
         {}});
    all.push_back(
        {"TqHorSplit",
         {Setting<TqHorSplit>("SplitterWidth", &TqHorSplit::SplitterWidth,
                              &TqHorSplit::SetSplitterWidth, 10),
          Setting<TqHorSplit>("NewLook", &TqHorSplit::NewLook, &TqHorSplit::SetNewLook, true),
          Setting<TqHorSplit>("WhereSplit", &TqHorSplit::WhereSplit, &TqHorSplit::SetWhere, 80)},
         {}});
    all.push_back({"TqCompCanvas", {}, DrawOnControl});
    // A tray icon beside the clock, with a menu.
    all.push_back(
        {"TqTrayIcon",
         {Setting<TqTrayIcon>("ToolTip", &TqTrayIcon::ToolTip, &TqTrayIcon::SetToolTip,
                              std::string("Quelvar gallery")),
          TrayMenu(),
          Setting<TqTrayIcon>("Active", &TqTrayIcon::Active, &TqTrayIcon::SetActive, true)},
         {}});
    // Size limits: the cell's button opens a demo form that stops at them.
    all.push_back({"TqMinMax",
                   {Setting<TqMinMax>("MinDragWidth", &TqMinMax::MinDragWidth,
                                      &TqMinMax::SetMinDragWidth, 240),
                    Setting<TqMinMax>("MinDragHeight", &TqMinMax::MinDragHeight,
                                      &TqMinMax::SetMinDragHeight, 150),
                    Setting<TqMinMax>("MaxWidth", &TqMinMax::MaxWidth, &TqMinMax::SetMaxWidth, 480),
                    Setting<TqMinMax>("MaxDragWidth", &TqMinMax::MaxDragWidth,
                                      &TqMinMax::SetMaxDragWidth, 480)},
                   {}});
    all.push_back({"TqMouseSpot",
                   {Setting<TqMouseSpot>("Hint", &TqMouseSpot::Hint, &TqMouseSpot::SetHint,
                                         std::string("A hot spot"))},
                   CountEnters});
    all.push_back({"TqScope",
                   {Setting<TqScope>("ShowBeam2", &TqScope::ShowBeam2, &TqScope::SetUse2, true),
                    Setting<TqScope>("GridYstep", &TqScope::GridYstep, &TqScope::SetStepY, 25),
                    ScopeHistory()},
                   FeedScope});
    all.push_back({"TqxSpectrum",
                   {Setting<TqxSpectrum>("NumberOfChannels", &TqxSpectrum::NumberOfChannels,
                                         &TqxSpectrum::SetNum, 16),
                    Setting<TqxSpectrum>("TopSize", &TqxSpectrum::TopSize, &TqxSpectrum::SetTop, 3),
                    SpectrumLevels()},
                   BounceBars});
    // The credits roll on their own timer.
    all.push_back({"TqxCreditScroll",
                   {Setting<TqxCreditScroll>("Interval", &TqxCreditScroll::GetInterval,
                                             &TqxCreditScroll::SetInterval, 40)},
                   {}});
    // The gauge sweeps through the generic Value sweep, in LED blocks with its percentage.
    all.push_back(
        {"TqGauge",
         {Setting<TqGauge>("Caption", &TqGauge::Caption, &TqGauge::SetCaption, std::string("%d%%")),
          Setting<TqGauge>("NumberOfLed", &TqGauge::NumberOfLed, &TqGauge::SetledSpace, 10),
          Setting<TqGauge>("Value", &TqGauge::Value, &TqGauge::SetValue, 65)},
         {}});
    return all;
}

} // namespace

bool ActsOnItsForm(const std::string& className) {
    return className == "TqMinMax";
}

const std::vector<TShowcase>& Showcases() {
    static const std::vector<TShowcase> all = MakeShowcases();
    return all;
}

std::vector<const TShowcase*> ShowcasesOf(const std::string& className) {
    std::vector<const TShowcase*> found;
    for (const TShowcase& showcase : Showcases())
        if (showcase.className == className) found.push_back(&showcase);
    return found;
}

int SweepValue(int low, int high, int tick, int period) {
    if (high <= low || period < 2) return low;
    const int half = period / 2;
    const int phase = ((tick % period) + period) % period;
    const int step = phase <= half ? phase : period - phase;
    const long long span = static_cast<long long>(high) - low; // may exceed int
    return static_cast<int>(low + span * step / half);
}

std::string CellCaption(const TComponent& component) {
    const std::string status = StatusOf(component);
    std::string caption = component.ClassName();
    if (!status.empty()) caption.append(" ").append(status);
    return caption;
}

void ApplyShowcase(const TShowcase& showcase, TComponent& component) {
    for (const TShowcaseSetting& s : showcase.settings) {
        s.apply(component);
        if (!s.holds(component))
            throw EComponentError("Showcase setting " + showcase.className + "." + s.property +
                                  " = " + s.value + " did not take effect");
    }
}

void AnimateStep(const TShowcase* showcase, TComponent& component, int tick) {
    if (showcase && showcase->animate)
        showcase->animate(component, tick);
    else
        SweepAndSwitch(component, tick);
}

} // namespace qv::gallery
