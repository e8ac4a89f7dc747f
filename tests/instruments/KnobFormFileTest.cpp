// The knobs in form files: a round trip of all three, the range read as written, and faults
// named with their line.
#include "KnobFixture.h"

#include "package/Registration.h"
#include "platform/core/ClassRegistry.h"
#include "platform/core/DesignerRegistry.h"
#include "platform/core/Exceptions.h"
#include "platform/core/PropertyAccess.h"
#include "platform/streaming/Reader.h"
#include "platform/streaming/Writer.h"

#include <memory>

using namespace qv;

namespace {
const char* const kForm = R"(object Panel: TForm
  Left = 0
  Top = 0
  Width = 320
  Height = 240
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  object Volume: TqKnob
    Left = 8
    Top = 8
    AutoFocus = True
    HideReflex = True
    Min = 200
    Max = 300
    TickColor = clNavy
    StepPerTick = 25
    PointColor = clLime
    PointWidth = 3
    Width = 80
    Height = 80
    KnobColor = kcYellow
    Value = 250
    SteelLook = True
    TabOrder = 0
  end
  object Balance: TqDblKnob
    Left = 100
    Top = 8
    Min = -10
    Max = 10
    Ticks = False
    Value = -10
    Color = clBlack
    ParentColor = False
    TabOrder = 1
    Value2 = 10
    PointColor2 = clBlue
  end
  object Tone: TqTripKnob
    Left = 200
    Top = 8
    KnobColor = kcCyan
    Value = 1
    TabOrder = 2
    TabStop = False
    Value2 = 2
    PointColor2 = clYellow
    Width = 120
    Height = 120
    Value3 = 3
    PointColor3 = clAqua
  end
end
)";

class KnobFormFile : public KnobTest {
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
    // The message of the EReadError that reading `text` raises.
    std::string ReadError(const std::string& text) {
        try {
            ReadComponentText(text);
        } catch (const EReadError& e) {
            return e.what();
        }
        return "no error";
    }
};

std::string KnobWith(const std::string& property) {
    return "object F: TForm\n  object K: TqKnob\n    " + property + "\n  end\nend\n";
}
} // namespace

TEST_F(KnobFormFile, AllThreeKnobsReadAndWriteAsTheFormHasThem) {
    auto root = ReadComponentText(kForm);
    auto* volume = dynamic_cast<TqKnob*>(root->FindComponent("Volume"));
    auto* balance = dynamic_cast<TqDblKnob*>(root->FindComponent("Balance"));
    auto* tone = dynamic_cast<TqTripKnob*>(root->FindComponent("Tone"));
    ASSERT_TRUE(volume && balance && tone);
    // Min 200 is read while Max is still 100: the range is applied after reading.
    EXPECT_EQ(volume->Min(), 200);
    EXPECT_EQ(volume->Max(), 300);
    EXPECT_EQ(volume->Value(), 250);
    EXPECT_EQ(balance->Value2(), 10);
    EXPECT_EQ(tone->Value3(), 3);
    EXPECT_EQ(WriteComponentText(*root), kForm);
}

TEST_F(KnobFormFile, ValuesReadOutsideTheRangeSettleWithoutEvents) {
    int changes = 0;
    TEventTable events;
    events.Add("Changed", std::any(TNotifyEvent([&](TObject*) { ++changes; })));
    TReadOptions options;
    options.events = &events;
    auto root = ReadComponentText(
        "object F: TForm\n  object K: TqTripKnob\n    Min = 10\n    Max = 5\n    Value = 50\n"
        "    OnChange = Changed\n    Value2 = -3\n    Value3 = 7\n  end\nend\n",
        options);
    EXPECT_EQ(changes, 0);
    auto* knob = dynamic_cast<TqTripKnob*>(root->FindComponent("K"));
    ASSERT_NE(knob, nullptr);
    EXPECT_EQ(knob->Min(), 10);
    EXPECT_EQ(knob->Max(), 10);
    EXPECT_EQ(knob->Value(), 10);
    EXPECT_EQ(knob->Value2(), 10);
    EXPECT_EQ(knob->Value3(), 10);
}

TEST_F(KnobFormFile, ABadPointWidthOrKnobColorIsAnErrorNamingTheLine) {
    EXPECT_EQ(ReadError(KnobWith("PointWidth = 6")),
              "line 3, column 18: Value 6 out of range for property PointWidth (1..5)");
    EXPECT_NE(ReadError(KnobWith("KnobColor = kcOrange")).find("line 3"), std::string::npos);
    EXPECT_NE(ReadError(KnobWith("KnobColor = kcOrange")).find("KnobColor"), std::string::npos);
}

TEST_F(KnobFormFile, AKnobReadFromAFormAnswersTheMouse) {
    auto root = ReadComponentText(kForm);
    auto* shown = dynamic_cast<TForm*>(root.get());
    shown->Show();
    auto* tone = dynamic_cast<TqTripKnob*>(root->FindComponent("Tone"));
    Headless().MouseDown(shown->NativeWindow(), {200 + 60, 8 + 55}); // the innermost ring
    Headless().MouseUp(shown->NativeWindow(), {200 + 60, 8 + 55});
    Pump();
    EXPECT_EQ(tone->Value3(), 50);
}
