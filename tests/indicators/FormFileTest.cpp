#include "IndicatorFixture.h"

#include "indicators/Qled.h"
#include "indicators/Qseg.h"
#include "package/Registration.h"
#include "platform/core/ClassRegistry.h"
#include "platform/core/DesignerRegistry.h"
#include "platform/streaming/Reader.h"
#include "platform/streaming/Writer.h"
#include "timing/Std2.h"

using namespace qv;

namespace {
const char* const kForm = R"(object Panel: TForm
  Left = 0
  Top = 0
  Width = 320
  Height = 240
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  object Ticker: TqxTimer
    Interval = 40
  end
  object Fast: TqxMMTimer
    Interval = 20
    Resolution = 1
  end
  object Lamp: TqLed
    Left = 8
    Top = 8
    SteelLook = True
    LedStyle = lstSquare
    Width = 34
    LEDColor = lctMangenta
    Enabled = True
    BlinkInterval = 250
  end
  object Digit: TqSegment
    Left = 50
    Top = 8
    Char = 'A'
    Height = 58
    LitColor = clRed
    Punktur = spColon
    Width = 38
    UnLitColor = $00202020
    Size = 2
  end
  object Readout: TqSegmentLabel
    Left = 8
    Top = 80
    Width = 114
    Height = 29
    Caption = '12.5V'
    LitColor = clYellow
    NumberOfChars = 6
  end
  object Clock: TqSegmentClock
    Left = 8
    Top = 120
    Width = 152
    Height = 29
    Format = qxc12HourAMPM
    ShowSeconds = True
  end
end
)";
} // namespace

TEST_F(IndicatorTest, ComponentsReadAndWriteThroughFormFiles) {
    ClearDesignerRegistry();
    RegisterPackage();
    RegisterClass(TForm::StaticClassInfo());
    auto root = ReadComponentText(kForm);
    auto* lamp = dynamic_cast<TqLed*>(root->FindComponent("Lamp"));
    auto* digit = dynamic_cast<TqSegment*>(root->FindComponent("Digit"));
    auto* readout = dynamic_cast<TqSegmentLabel*>(root->FindComponent("Readout"));
    auto* clock = dynamic_cast<TqSegmentClock*>(root->FindComponent("Clock"));
    ASSERT_TRUE(lamp && digit && readout && clock);
    EXPECT_TRUE(lamp->LedOn());
    EXPECT_EQ(digit->Size(), 2);
    EXPECT_EQ(digit->LitSegments(), CharLook('A') | Segments({15, 16}));
    EXPECT_EQ(readout->Cell(1)->Punktur(), spPunktum);
    EXPECT_EQ(clock->NumberOfChars(), 8);
    EXPECT_EQ(readout->ComponentCount(), 6); // the cells belong to the label, not to the form file
    EXPECT_EQ(WriteComponentText(*root), kForm);
    ClearDesignerRegistry();
}
