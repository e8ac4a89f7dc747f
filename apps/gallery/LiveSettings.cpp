#include "LiveSettings.h"

#include "backgrounds/Blend.h"
#include "buttons/Qanimate.h"
#include "indicators/Qled.h"
#include "indicators/Qseg.h"
#include "instruments/Qpanel.h"
#include "platform/controls/Application.h"
#include "platform/controls/Menus.h"
#include "platform/core/Exceptions.h"
#include "platform/core/PropertyAccess.h"
#include "platform/core/SysUtils.h"
#include "splitters/Qsplit.h"
#include "switches/Qonzoff.h"
#include "timing/Std2.h"
#include "utility/Mystd.h"

#include <cmath>
#include <concepts>
#include <memory>
#include <string>
#include <type_traits>

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
