#include "platform/core/Exceptions.h"
#include "platform/core/PropertyAccess.h"
#include "tests/support/TestComponents.h"

#include <gtest/gtest.h>

using namespace qv;

TEST(PublishedProperties, ListedInDeclarationOrderAfterTheBaseClass) {
    TTestWidget w(nullptr);
    std::vector<std::string> names;
    for (const TPropInfo* p : GetPropList(w))
        names.push_back(p->name);
    const std::vector<std::string> expected = {
        "Name",   "Tag",     "Count", "Active",  "Style",   "Options",
        "Shade",  "Percent", "Ratio", "Precise", "Caption", "ShortLabel",
        "Status", "Font",    "Lines", "Buddy",   "OnClick"};
    EXPECT_EQ(names, expected);
}

TEST(PublishedProperties, ReadAsAFormFileHoldsThem) {
    TTestWidget w(nullptr);
    w.SetCaption("it's\r\nok");
    w.SetOptions({goBlink, goLatch});
    w.SetShade(0xFFFFFF);
    w.SetRatio(0.1);
    EXPECT_EQ(GetPropText(w, "Caption"), "'it''s'#13#10'ok'");
    EXPECT_EQ(GetPropText(w, "Options"), "[goBlink, goLatch]");
    EXPECT_EQ(GetPropText(w, "Shade"), "shLight");
    EXPECT_EQ(GetPropText(w, "Active"), "True");
    EXPECT_EQ(GetPropText(w, "Style"), "gsFlat");
    EXPECT_EQ(GetPropText(w, "Ratio"), "0.1");
    EXPECT_EQ(GetPropText(w, "Font.Name"), "'Sans'");
    w.SetShade(0x123456);
    EXPECT_EQ(GetPropText(w, "Shade"), "1193046");
}

TEST(PublishedProperties, WrittenFromTextWithIdentifiersHexAndRanges) {
    TTestWidget w(nullptr);
    SetPropText(w, "style", "GSSUNKN"); // case-insensitive, misspelling as declared
    EXPECT_EQ(w.Style(), gsSunkn);
    SetPropText(w, "Shade", "$FF00");
    EXPECT_EQ(w.Shade(), 0xFF00);
    SetPropText(w, "Shade", "shLight");
    EXPECT_EQ(w.Shade(), 0xFFFFFF);
    SetPropText(w, "Options", "[]");
    EXPECT_TRUE(w.Options().Empty());
    SetPropText(w, "Precise", "-1.25");
    EXPECT_EQ(w.Precise(), -1.25L);
    SetPropText(w, "Font.Size", "12");
    EXPECT_EQ(w.Font()->Size(), 12);
    SetPropText(w, "ShortLabel", "'abcdefghijk'"); // a short string keeps its maximum
    EXPECT_EQ(w.ShortLabel(), "abcdefgh");
    SetPropText(w, "Lines.Strings", "('a' 'b')");
    EXPECT_EQ(w.Lines()->Text(), "a\nb\n");

    EXPECT_THROW(SetPropText(w, "Percent", "0"), ERangeError);
    EXPECT_THROW(SetPropText(w, "Percent", "101"), ERangeError);
    EXPECT_THROW(SetPropText(w, "Style", "gsSunken"), EConvertError);
    EXPECT_THROW(SetPropText(w, "Options", "[goBlink, goNever]"), EConvertError);
    EXPECT_THROW(SetPropText(w, "Count", "'x'"), EConvertError);
    EXPECT_THROW(SetPropText(w, "Count", "1 2"), EConvertError);
    EXPECT_THROW(SetPropText(w, "NoSuch", "1"), EConvertError);
    EXPECT_EQ(w.Percent(), 50);
}

TEST(PublishedProperties, DisplayOnlyAcceptsWritesAndDiscardsThem) {
    TTestWidget w(nullptr);
    const TPropInfo& status = GetPropInfo(w, "Status");
    EXPECT_TRUE(status.displayOnly);
    SetPropText(w, "Status", "'busy'");
    EXPECT_EQ(GetPropText(w, "Status"), "'ready'");
}

TEST(PublishedProperties, ReferencesAndEventsByName) {
    TComponent form(nullptr);
    auto* a = Make<TTestWidget>(&form);
    auto* b = Make<TTestWidget>(&form);
    a->SetName("A");
    b->SetName("B");
    SetPropText(*a, "Buddy", "B");
    EXPECT_EQ(a->Buddy(), b);
    EXPECT_EQ(GetPropText(*a, "Buddy"), "B");
    EXPECT_THROW(SetPropText(*a, "Buddy", "Nobody"), EConvertError);

    TEventTable events;
    int clicks = 0;
    events.Add("AClick", TNotifyEvent([&](TObject*) { ++clicks; }));
    events.Add("Wrong", std::function<int()>([] { return 1; }));
    SetPropText(*a, "OnClick", "AClick", {&events, {}});
    a->OnClick(a);
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(GetPropText(*a, "OnClick"), "AClick");
    EXPECT_THROW(SetPropText(*a, "OnClick", "Wrong", {&events, {}}), EConvertError);
    EXPECT_THROW(SetPropText(*a, "OnClick", "Missing", {&events, {}}), EConvertError);
}
