#include "LiveSettings.h"

#include "backgrounds/Blend.h"
#include "buttons/Qanimate.h"
#include "indicators/Qled.h"
#include "indicators/Qseg.h"
#include "instruments/Qgauge.h"
#include "instruments/Qpanel.h"
#include "instruments/Qpanel2.h"
#include "platform/core/Exceptions.h"
#include "platform/core/PropertyAccess.h"
#include "platform/core/SysUtils.h"
#include "timing/Std2.h"

#include <cmath>
#include <concepts>
#include <cstdint>
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

// A button without a click handler gets a click counter in its caption.
void CountClicks(TComponent& component, int) {
    auto& control = static_cast<TControl&>(component);
    if (control.OnClick) return;
    control.OnClick = [&control, clicks = 0](TObject*) mutable {
        control.SetCaption("Clicked " + std::to_string(++clicks));
    };
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
    all.push_back({"TqKnob",
                   {Setting<TqKnob>("KnobColor", &TqKnob::KnobColor, &TqKnob::SetKnobCol, kcBlue),
                    Setting<TqKnob>("SteelLook", &TqKnob::SteelLook, &TqKnob::SetSteel, true)},
                   SweepKnob});
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

const TShowcase* ShowcaseOf(const TComponent& component) {
    const std::string className = component.ClassName();
    for (const TShowcase& showcase : Showcases())
        if (showcase.className == className) return &showcase;
    return nullptr;
}

} // namespace

const std::vector<TShowcase>& Showcases() {
    static const std::vector<TShowcase> all = MakeShowcases();
    return all;
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

void ApplyShowcaseSettings(TComponent& component) {
    if (const TShowcase* showcase = ShowcaseOf(component)) ApplyShowcase(*showcase, component);
}

void AnimateStep(TComponent& component, int tick) {
    const TShowcase* showcase = ShowcaseOf(component);
    if (showcase && showcase->animate)
        showcase->animate(component, tick);
    else
        SweepAndSwitch(component, tick);
}

} // namespace qv::gallery
