#include "platform/core/ClassRegistry.h"
#include "platform/streaming/Reader.h"
#include "platform/streaming/Writer.h"
#include "tests/support/TestComponents.h"

#include <gtest/gtest.h>

using namespace qv;

namespace {

class FormFile : public ::testing::Test {
protected:
    void SetUp() override { RegisterTestComponents(); }
};

const char* const kNestedForm = R"(object Root: TTestBox
  Caption = 'Main'
  object Panel: TTestBox
    Count = -3
    Active = False
    Style = gsSunkn
    Options = [goPulse, goLatch]
    Shade = shLight
    Percent = 7
    Ratio = 0.1
    Precise = 1.0000000000000000001
    Caption = 'it''s'#13#10'two lines'
    ShortLabel = 'abc'
    Font.Name = 'Serif'
    Font.Size = 11
    Lines.Strings = (
      'first'
      ''
      'third')
    Buddy = Other
    OnClick = PanelClick
    object Inner: TTestBox
      Tag = 5
    end
  end
  object Other: TTestBox
    Caption = 
      '0123456789012345678901234567890123456789012345678901234567890123' +
      '456'
  end
end
)";

} // namespace

TEST_F(FormFile, NestedFormReadsAndWritesBackUnchanged) {
    auto root = ReadComponentText(kNestedForm);
    auto* panel = dynamic_cast<TTestBox*>(root->FindComponent("Panel"));
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->Caption(), "it's\r\ntwo lines");
    EXPECT_NE(panel->Precise(), 1.0L); // needs the 80-bit format
    EXPECT_EQ(panel->Lines()->Count(), 3);
    EXPECT_EQ(panel->Buddy(), root->FindComponent("Other"));
    EXPECT_EQ(root->FindComponent("Inner")->Owner(), root.get());
    EXPECT_EQ(WriteComponentText(*root), kNestedForm);
}

TEST_F(FormFile, PropertiesAtTheirStorageDefaultAreNotWritten) {
    TTestWidget w(nullptr);
    w.SetName("W");
    EXPECT_EQ(WriteComponentText(w), "object W: TTestWidget\nend\n");
    w.SetPercent(51);
    w.SetPercent(50);
    w.SetCount(0);
    w.SetActive(false);
    EXPECT_EQ(WriteComponentText(w), "object W: TTestWidget\n  Active = False\nend\n");
}

TEST_F(FormFile, LoadedRunsOnceForEachComponentAfterEverythingIsRead) {
    auto root = ReadComponentText("object R: TTestBox\n object A: TTestBox\n end\n"
                                  " object B: TTestBox\n  Caption = 'late'\n end\nend\n");
    auto* a = dynamic_cast<TTestWidget*>(root->FindComponent("A"));
    auto* b = dynamic_cast<TTestWidget*>(root->FindComponent("B"));
    EXPECT_EQ(a->loadedCalls, 1);
    EXPECT_EQ(b->loadedCalls, 1);
    EXPECT_EQ(dynamic_cast<TTestWidget*>(root.get())->loadedCalls, 1);
    // A, read first, already sees the caption of B, read last.
    EXPECT_EQ(a->seenAtLoaded, (std::vector<std::string>{"A=", "B=late"}));
    EXPECT_FALSE(a->IsLoading());
    EXPECT_FALSE(a->ComponentState().Contains(csReading));
}

TEST_F(FormFile, ReferencesResolveAfterLoadingAndClearWhenTheTargetGoes) {
    // The reference names a component that appears later in the file.
    auto root = ReadComponentText("object R: TTestBox\n object A: TTestBox\n  Buddy = B\n end\n"
                                  " object B: TTestBox\n end\nend\n");
    auto* a = dynamic_cast<TTestWidget*>(root->FindComponent("A"));
    ASSERT_EQ(a->Buddy(), root->FindComponent("B"));
    delete root->FindComponent("B");
    EXPECT_EQ(a->Buddy(), nullptr);
    EXPECT_EQ(WriteComponentText(*root), "object R: TTestBox\n  object A: TTestBox\n  end\nend\n");
}

TEST_F(FormFile, EventsBindThroughTheApplicationsTableOrKeepTheirNames) {
    const char* text = "object R: TTestWidget\n  OnClick = RClick\nend\n";
    TEventTable events;
    int clicks = 0;
    events.Add("RClick", TNotifyEvent([&](TObject*) { ++clicks; }));
    auto bound = ReadComponentText(text, {false, &events});
    dynamic_cast<TTestWidget*>(bound.get())->OnClick(bound.get());
    EXPECT_EQ(clicks, 1);

    auto unbound = ReadComponentText(text);
    EXPECT_FALSE(dynamic_cast<TTestWidget*>(unbound.get())->OnClick);
    EXPECT_NE(WriteComponentText(*unbound).find("OnClick = RClick"), std::string::npos);
}

TEST_F(FormFile, DesignModeMarksEveryComponent) {
    auto root =
        ReadComponentText("object R: TTestBox\n object A: TTestBox\n end\nend\n", {true, nullptr});
    EXPECT_TRUE(root->IsDesigning());
    EXPECT_TRUE(root->FindComponent("A")->IsDesigning());
}

TEST_F(FormFile, ReadIntoAnExistingRoot) {
    TTestBox box(nullptr);
    ReadRootText(box, "object Main: TTestBox\n Caption = 'x'\n object A: TTestWidget\n end\nend\n");
    EXPECT_EQ(box.Name(), "Main");
    EXPECT_EQ(box.Caption(), "x");
    EXPECT_EQ(box.ComponentCount(), 1);
    TTestWidget plain(nullptr);
    EXPECT_THROW(ReadRootText(plain, "object Main: TTestBox\nend\n"), EReadError);
}

namespace {
std::string ReadError(const std::string& text) {
    try {
        ReadComponentText(text);
    } catch (const EReadError& e) {
        return e.what();
    }
    return "no error";
}
} // namespace

TEST_F(FormFile, BadInputNamesLineColumnAndWhatWasExpected) {
    EXPECT_EQ(ReadError("object A: TNope\nend\n"), "line 1, column 11: unknown class TNope");
    EXPECT_EQ(ReadError("object A: TTestWidget\n  Bogus = 1\nend\n"),
              "line 2, column 3: unknown property Bogus of TTestWidget");
    EXPECT_EQ(ReadError("object A: TTestWidget\n  Count = 'x'\nend\n"),
              "line 2, column 11: Property Count expects an integer but got string");
    EXPECT_EQ(ReadError("object A: TTestWidget\n  Caption = 'open\nend\n"),
              "line 2, column 13: unterminated string");
    EXPECT_EQ(ReadError("object A: TTestWidget\n  Count = 1\n"),
              "line 3, column 1: missing 'end' of object A");
    EXPECT_EQ(ReadError("object A: TTestWidget\n  Percent = 500\nend\n"),
              "line 2, column 13: Value 500 out of range for property Percent (1..100)");
    EXPECT_EQ(ReadError("object A: TTestBox\n  Buddy = Ghost\nend\n"),
              "line 2, column 11: unknown component Ghost for property Buddy");
    EXPECT_EQ(ReadError("object A: TTestWidget\n  Lines.Strings = ('a' 1)\nend\n"),
              "line 2, column 19: Strings expects strings but got integer");
    EXPECT_EQ(ReadError("object A: TTestWidget\n  Count 1\nend\n"),
              "line 2, column 9: expected '=' but found number");
    EXPECT_EQ(ReadError("object A: TTestWidget\nend\nextra"),
              "line 3, column 1: expected end of file but found 'extra'");
    EXPECT_EQ(ReadError("object A: TTestWidget\n  Lines.Data = {0A0\nend\n"),
              "line 2, column 19: invalid binary data: expected pairs of hexadecimal digits");
    EXPECT_EQ(ReadError("object A: TTestWidget\n  Lines.Data = {0A0B"),
              "line 2, column 16: unterminated binary data: expected '}'");
    EXPECT_EQ(
        ReadError(
            "object R: TTestBox\n object A: TTestBox\n end\n object a: TTestBox\n end\nend\n"),
        "line 4, column 9: A component named a already exists");
}

TEST_F(FormFile, ComponentsCreatedBeforeAnErrorAreFreed) {
    // Under the address sanitizer a leak or a double free here fails the run.
    TTestBox existing(nullptr);
    EXPECT_THROW(ReadRootText(existing,
                              "object R: TTestBox\n object A: TTestBox\n  object B: TTestBox\n"
                              "  end\n end\n object C: TTestBox\n  Bogus = 1\n end\nend\n"),
                 EReadError);
    EXPECT_EQ(existing.ComponentCount(), 0);
    EXPECT_THROW(ReadComponentText("object R: TTestBox\n object A: TTestBox\n  object B: TTestBox\n"
                                   "   Count = x\n  end\n end\nend\n"),
                 EReadError);
}
