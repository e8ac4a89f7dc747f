#include "LiveSettings.h"

#include "platform/core/Exceptions.h"
#include "platform/core/PropertyAccess.h"
#include "platform/core/SysUtils.h"

#include <cstring>
#include <string>

namespace qv::gallery {

namespace {

struct TSetting {
    const char* className;
    const char* property;
    const char* value; // as a form file writes it
};

// A few settings per class that show what the component is for.
constexpr TSetting showcase[] = {
    {"TqLed", "LEDColor", "lctGreen"},
    {"TqLed", "Enabled", "True"},
    {"TqSegment", "Char", "'8'"},
    {"TqSegment", "Punktur", "spDot"},
    {"TqSegmentLabel", "Caption", "'QUELVAR'"},
    {"TqSegmentLabel", "String", "'QUELVAR'"},
    {"TqGauge", "Value", "65"},
    {"TqGauge", "Caption", "'%d%%'"},
    {"TqKnob", "Value", "40"},
    {"TqPanelMeter", "Value", "70"},
    {"TqSlideBar", "Value", "4"},
    {"TqxDinMeter", "Value", "55"},
    {"TqxSpectrum", "NumberOfChannels", "16"},
    {"TqColorBtn", "Caption", "'Colour'"},
    {"TqGradBtn", "Caption", "'Gradient'"},
    {"TqxURLLabel", "Caption", "'www.example.org'"},
    {"TqBigLabel", "Caption", "'Big'"},
    {"Tq3DLabel", "Caption", "'3-D label'"},
    {"TqAngleLabel", "Caption", "'Angle'"},
    {"TqxCreditScroll", "Lines.Strings", "('Quelvar' 'components' 'gallery')"},
    {"TqxTimer", "Interval", "250"},
    {"TqxTimer", "Enabled", "True"},
};

bool HasProperty(const TComponent& component, const std::string& name) {
    for (const TPropInfo* prop : GetPropList(component))
        if (prop->name == name) return true;
    return false;
}

bool TrySet(TComponent& component, const std::string& property, const std::string& value) {
    if (!HasProperty(component, property)) return false;
    try {
        SetPropText(component, property, value);
        return true;
    } catch (const Exception&) {
        return false; // a value the class refuses: the component keeps its default
    }
}

bool TryGetInt(const TComponent& component, const std::string& property, int& value) {
    if (!HasProperty(component, property)) return false;
    try {
        value = StrToInt(GetPropText(component, property));
        return true;
    } catch (const Exception&) {
        return false;
    }
}

constexpr int sweepPeriod = 80;  // eight seconds up and down
constexpr int switchPeriod = 20; // a switch flips every two seconds
constexpr int blinkPeriod = 5;   // an LED blinks twice a second

void Sweep(TComponent& component, int tick) {
    int low = 0, high = 0;
    if (!TryGetInt(component, "Min", low) || !TryGetInt(component, "Max", high) || high <= low)
        return;
    TrySet(component, "Value", std::to_string(SweepValue(low, high, tick, sweepPeriod)));
}

const char* Boolean(bool on) {
    return on ? "True" : "False";
}

} // namespace

int SweepValue(int low, int high, int tick, int period) {
    if (high <= low || period < 2) return low;
    const int half = period / 2;
    const int phase = ((tick % period) + period) % period;
    const int step = phase <= half ? phase : period - phase;
    const long long span = static_cast<long long>(high) - low; // may exceed int
    return static_cast<int>(low + span * step / half);
}

void ApplyShowcaseSettings(TComponent& component) {
    const std::string className = component.ClassName();
    for (const TSetting& s : showcase)
        if (className == s.className) TrySet(component, s.property, s.value);
}

void AnimateStep(TComponent& component, int tick) {
    const std::string className = component.ClassName();
    if (className == "TqLed") {
        if (tick % blinkPeriod == 0)
            TrySet(component, "Enabled", Boolean(tick / blinkPeriod % 2 == 0));
        return;
    }
    if (className == "TqSegment") {
        if (tick % switchPeriod == 0)
            TrySet(component, "Char",
                   std::string{'\'', static_cast<char>('0' + tick / switchPeriod % 10), '\''});
        return;
    }
    if (tick % switchPeriod == 0)
        TrySet(component, "SwitchOn", Boolean(tick / switchPeriod % 2 != 0));
    Sweep(component, tick);
}

} // namespace qv::gallery
