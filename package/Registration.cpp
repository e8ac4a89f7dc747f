#include "package/Registration.h"

#include "backgrounds/Blend.h"
#include "buttons/Qanimate.h"
#include "controls/Qbtn2.h"
#include "indicators/Qled.h"
#include "indicators/Qseg.h"
#include "instruments/Qgauge.h"
#include "instruments/Qpanel.h"
#include "instruments/Qpanel2.h"
#include "platform/core/Component.h"
#include "platform/core/DesignerRegistry.h"
#include "slidebar/Slidebar.h"
#include "splitters/Qsplit.h"
#include "switches/Qonzoff.h"
#include "timing/Std2.h"
#include "utility/Mystd.h"

#include <map>

namespace qv {

namespace {
constexpr const char* kPage1 = "QuelvarSoft";
constexpr const char* kPage2 = "QuelvarSoft II";
constexpr const char* kPage3 = "QuelvarSoft III";
constexpr const char* kPage4 = "QuelvarSoft IIII";
} // namespace

const std::vector<TRegistrationEntry>& RegistrationTable() {
    static const std::vector<TRegistrationEntry> table = {
        {1, "TqTabListbox", kPage1, nullptr},
        {1, "TqBitmap", kPage1, nullptr},
        {1, "TqAnimated", kPage1, nullptr},
        {2, "TqBackground", kPage1, &TqBackground::StaticClassInfo},
        {2, "TqBlendPaint", kPage1, &TqBlendPaint::StaticClassInfo},
        {2, "TqNWBlendPaint", kPage1, &TqNWBlendPaint::StaticClassInfo},
        {3, "TqTileMap", kPage1, &TqTileMap::StaticClassInfo},
        {3, "TqNWTileMap", kPage1, &TqNWTileMap::StaticClassInfo},
        {3, "TqLed", kPage1, &TqLed::StaticClassInfo},
        {3, "TqSegment", kPage1, &TqSegment::StaticClassInfo},
        {4, "TqSegmentLabel", kPage1, &TqSegmentLabel::StaticClassInfo},
        {4, "TqSegmentClock", kPage1, &TqSegmentClock::StaticClassInfo},
        {4, "TqxPeakOmeter", kPage1, nullptr},
        {5, "TqxDotSegment", kPage1, nullptr},
        {5, "TqxDotLabel", kPage1, nullptr},
        {5, "TqxDotClock", kPage1, nullptr},
        {6, "TqxRunningDot", kPage1, nullptr},
        {6, "TqGauge", kPage1, &TqGauge::StaticClassInfo},
        {6, "TqFrame", kPage1, nullptr},
        {7, "TqDivider", kPage1, nullptr},
        {7, "TqMovePanel", kPage1, nullptr},
        {7, "TqScope", kPage1, &TqScope::StaticClassInfo},
        {7, "TqVerSplit", kPage1, &TqVerSplit::StaticClassInfo},
        {8, "TqHorSplit", kPage1, &TqHorSplit::StaticClassInfo},
        {8, "TqPanelMeter", kPage1, &TqPanelMeter::StaticClassInfo},
        {9, "TqCalc", kPage2, &TqCalc::StaticClassInfo},
        {9, "TqMinMax", kPage2, &TqMinMax::StaticClassInfo},
        {9, "TqHint", kPage2, nullptr},
        {9, "TqShowApp", kPage2, nullptr},
        {10, "TqSplashForm", kPage2, nullptr},
        {10, "TqTitleBar", kPage2, nullptr},
        {11, "TqCompCanvas", kPage2, &TqCompCanvas::StaticClassInfo},
        {11, "TqxTimer", kPage2, &TqxTimer::StaticClassInfo},
        {12, "TqxMMTimer", kPage2, &TqxMMTimer::StaticClassInfo},
        {12, "TqxRunProg", kPage2, &TqxRunProg::StaticClassInfo},
        {13, "TqBigLabel", kPage3, nullptr},
        {13, "Tq3DLabel", kPage3, nullptr},
        {14, "TqAngleLabel", kPage3, nullptr},
        {15, "TqShapeBtn", kPage3, nullptr},
        {15, "TqColorBtn", kPage3, &TqColorBtn::StaticClassInfo},
        {15, "TqGradBtn", kPage3, &TqGradBtn::StaticClassInfo},
        {16, "TqBitColBtn", kPage3, nullptr},
        {16, "TqIconColBtn", kPage3, nullptr},
        {16, "TqMouseSpot", kPage3, &TqMouseSpot::StaticClassInfo},
        {17, "TqKnob", kPage3, &TqKnob::StaticClassInfo},
        {17, "TqDblKnob", kPage3, &TqDblKnob::StaticClassInfo},
        {17, "TqTripKnob", kPage3, &TqTripKnob::StaticClassInfo},
        {17, "TqSlideBar", kPage3, &TqSlideBar::StaticClassInfo},
        {18, "TqNWColorBtn", kPage3, &TqNWColorBtn::StaticClassInfo},
        {18, "TqNWBitColBtn", kPage3, nullptr},
        {18, "TqNWIconColBtn", kPage3, nullptr},
        {19, "TqxLightOnOff", kPage3, &TqxLightOnOff::StaticClassInfo},
        {19, "TqxPushOnOff", kPage3, &TqxPushOnOff::StaticClassInfo},
        {20, "TqxDblOnOff", kPage3, &TqxDblOnOff::StaticClassInfo},
        {20, "TqxSingleOnOff", kPage3, &TqxSingleOnOff::StaticClassInfo},
        {21, "TqxSlideOnOff", kPage3, &TqxSlideOnOff::StaticClassInfo},
        {22, "TqxSpinBtn", kPage4, &TqxSpinBtn::StaticClassInfo},
        {22, "TqxCenterSpinBtn", kPage4, &TqxCenterSpinBtn::StaticClassInfo},
        {23, "TqxHairLine", kPage4, nullptr},
        {23, "TqxArrowHead", kPage4, nullptr},
        {24, "TqxCreditScroll", kPage4, &TqxCreditScroll::StaticClassInfo},
        {24, "TqxAnalogClock", kPage4, &TqxAnalogClock::StaticClassInfo},
        {25, "TqxDinMeter", kPage4, &TqxDinMeter::StaticClassInfo},
        {25, "TqxSpectrum", kPage4, &TqxSpectrum::StaticClassInfo},
        {26, "TqxColorComboBox", kPage4, nullptr},
        {26, "TqxFontComboBox", kPage4, nullptr},
        {27, "TqTrayIcon", kPage2, &TqTrayIcon::StaticClassInfo},
        {28, "TqxURLLabel", kPage3, nullptr},
    };
    return table;
}

namespace {

void RegisterPalette() {
    std::map<int, std::vector<const TClassInfo*>> calls;
    std::map<int, const char*> pages;
    for (const TRegistrationEntry& e : RegistrationTable()) {
        pages[e.call] = e.page;
        if (e.classInfo) calls[e.call].push_back(&e.classInfo());
    }
    // One call per table call, with the classes of that call that exist.
    for (const auto& [call, classes] : calls)
        RegisterComponents(pages[call], classes);
}

const TClassInfo* Existing(const char* className) {
    for (const TRegistrationEntry& e : RegistrationTable())
        if (std::string(e.className) == className) return e.classInfo ? &e.classInfo() : nullptr;
    return nullptr;
}

// The 17 design-time property editors, for the classes that exist.
void RegisterPropertyEditors() {
    for (const char* cls :
         {"TqBitmap", "TqBackground", "TqTileMap", "TqNWTileMap", "TqBitColBtn", "TqNWBitColBtn",
          "TqGauge", "TqSplashForm", "TqxAnalogClock", "TqxDinMeter"})
        if (const TClassInfo* c = Existing(cls))
            RegisterPropertyEditor("TBitmap", *c, "", "TqBitmapEditor");
    if (const TClassInfo* c = Existing("TqShapeBtn"))
        RegisterPropertyEditor("sbType", *c, "", "TqShapeBtnEditor");
    if (const TClassInfo* c = Existing("TqAngleLabel"))
        RegisterPropertyEditor("TqAngle", *c, "Angle", "TqAngleEditor");
    if (const TClassInfo* c = Existing("TqGauge"))
        RegisterPropertyEditor("gaCaptionStyle", *c, "CaptionStyle", "TqGaugeEditor");
    RegisterPropertyEditor("String", TComponent::StaticClassInfo(), "Hint", "TqHintEditor");
    if (const TClassInfo* calc = Existing("TqCalc")) {
        RegisterPropertyEditor("Extended", *calc, "NumberNum", "TqReadOnlyFloatProperty");
        for (const char* prop : {"Number", "RegisterA", "RegisterB", "RegisterC", "RegisterD"})
            RegisterPropertyEditor("String", *calc, prop, "TqReadOnlyStringProperty");
        RegisterPropertyEditor("TqCalcResult", *calc, "", "TqReadOnlyEnumProperty");
        RegisterPropertyEditor("Byte", *calc, "", "TqReadOnlyIntegerProperty");
    }
}

} // namespace

void Register() {
    RegisterPalette();
    RegisterPropertyEditors();
    for (const TRegistrationEntry& e : RegistrationTable())
        if (e.classInfo) RegisterComponentEditor(e.classInfo(), std::string(e.className) + "Edit");
    for (const char* expert : {"Path search", "Help", "FAQ", "Line count"})
        RegisterLibraryExpert(expert);
}

} // namespace qv
