// The meters and the clock in form files: read as written, ranges applied after reading, no
// events while reading.
#include "KnobFixture.h"

#include "instruments/Qpanel2.h"
#include "package/Registration.h"
#include "platform/core/ClassRegistry.h"
#include "platform/core/DesignerRegistry.h"
#include "platform/streaming/Reader.h"
#include "platform/streaming/Writer.h"

using namespace qv;

namespace {
const char* const kForm = R"(object Panel: TForm
  Left = 0
  Top = 0
  Width = 400
  Height = 240
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  object Load: TqPanelMeter
    Left = 8
    Top = 8
    Caption = 'kW'
    Min = 200
    Max = 500
    PanelType = qpEdgeHorz
    HouseStyle = bsSolid
    Alert = 450
    Value = 300
    ScaleWidth = 4
    OnAlert = Alerted
    OnChange = Changed
  end
  object Wall: TqxAnalogClock
    Height = 90
    ShowSeconds = False
    BevelWidth = -3
    BevelInner = bvSpace
    Color = clBtnFace
    Use3D = True
    ClockStyle = csRomanDot
    OffSetTime = -90
    HandTypeHour = htNeedle
    Width = 90
    Font.Color = clLime
    Font.Height = -11
    Font.Name = 'MS Sans Serif'
    Left = 120
    Top = 8
  end
  object Pressure: TqxDinMeter
    Height = 120
    DigitsAfterPoint = 1
    ScaleType = st11
    Min = 200
    Max = 500
    Value = 250
    Color = clWhite
    Width = 120
    Caption1 = 'bar'
    Caption1Font.Height = -11
    Caption1Font.Name = 'MS Sans Serif'
    Caption2Font.Height = -11
    Caption2Font.Name = 'MS Sans Serif'
    Left = 220
    Top = 8
  end
end
)";

class MeterFormFile : public KnobTest {
protected:
    void SetUp() override {
        KnobTest::SetUp();
        ClearDesignerRegistry();
        RegisterPackage();
        RegisterClass(TForm::StaticClassInfo());
    }
    void TearDown() override {
        ClearDesignerRegistry();
        KnobTest::TearDown();
    }
};
} // namespace

TEST_F(MeterFormFile, AllThreeReadAndWriteAsTheFormHasThemWithoutEvents) {
    int events = 0;
    TEventTable table;
    table.Add("Alerted", std::any(TNotifyEvent([&](TObject*) { ++events; })));
    table.Add("Changed", std::any(TNotifyEvent([&](TObject*) { ++events; })));
    TReadOptions options;
    options.events = &table;
    auto root = ReadComponentText(kForm, options);
    EXPECT_EQ(events, 0);
    auto* load = dynamic_cast<TqPanelMeter*>(root->FindComponent("Load"));
    auto* wall = dynamic_cast<TqxAnalogClock*>(root->FindComponent("Wall"));
    auto* pressure = dynamic_cast<TqxDinMeter*>(root->FindComponent("Pressure"));
    ASSERT_TRUE(load && wall && pressure);
    // Min 200 is read while Max is still 100: the range is applied after reading.
    EXPECT_EQ(load->Min(), 200);
    EXPECT_EQ(load->Max(), 500);
    EXPECT_EQ(load->Alert(), 450);
    EXPECT_EQ(load->Value(), 300);
    EXPECT_EQ(pressure->Min(), 200);
    EXPECT_EQ(pressure->Max(), 500);
    EXPECT_EQ(pressure->Value(), 250);
    EXPECT_EQ(wall->Height(), 90);
    EXPECT_EQ(WriteComponentText(*root), kForm);
}

TEST_F(MeterFormFile, RangesReadCrossedSettleAsTheSettersWould) {
    auto root = ReadComponentText(
        "object F: TForm\n"
        "  object P: TqPanelMeter\n    Min = 10\n    Max = 5\n    Alert = 99\n    Value = -4\n"
        "  end\n"
        "  object D: TqxDinMeter\n    Min = 2147483647\n    Max = 3\n    Value = 0\n  end\n"
        "end\n");
    auto* p = dynamic_cast<TqPanelMeter*>(root->FindComponent("P"));
    auto* d = dynamic_cast<TqxDinMeter*>(root->FindComponent("D"));
    ASSERT_TRUE(p && d);
    EXPECT_EQ(p->Max(), 10);
    EXPECT_EQ(p->Alert(), 10);
    EXPECT_EQ(p->Value(), 10);
    EXPECT_EQ(d->Max(), 2147483647);
    EXPECT_EQ(d->Value(), 2147483647);
}
