#include "ControlsFixture.h"

#include "platform/controls/Edit.h"
#include "platform/controls/Label.h"
#include "platform/controls/Panel.h"
#include "platform/controls/Screen.h"

#include <algorithm>
#include <cctype>

using namespace qv;
using namespace qvtest;

namespace {

class ScreenTest : public ControlsFixture {
protected:
    void TearDown() override {
        Screen().SetCursor(crDefault);
        Headless().SetScreen({0, 0, 1280, 1024}, {0, 0, 1280, 1000});
        ControlsFixture::TearDown();
    }
    int ShownCursor() const { return Headless().Window(Window()).cursor; }
    void MoveTo(TPoint p) {
        Headless().MouseMove(Window(), p);
        Pump();
    }
};

} // namespace

TEST_F(ScreenTest, SizeAndWorkAreaComeFromTheBackend) {
    Headless().SetScreen({0, 0, 1600, 1200}, {0, 30, 1600, 1160});
    EXPECT_EQ(Screen().Width(), 1600);
    EXPECT_EQ(Screen().Height(), 1200);
    EXPECT_EQ(Screen().WorkAreaRect(), (TRect{0, 30, 1600, 1160}));
    EXPECT_EQ(Screen().WorkAreaTop(), 30);
    EXPECT_EQ(Screen().WorkAreaHeight(), 1130);
    EXPECT_EQ(Screen().WorkAreaWidth(), 1600);
    EXPECT_EQ(Screen().PixelsPerInch(), 96);
}

TEST_F(ScreenTest, FontsAreSortedInstalledFamiliesEachOnce) {
    const TStrings& fonts = Screen().Fonts();
    ASSERT_GT(fonts.Count(), 0);
    const auto lower = [](std::string s) {
        for (char& c : s)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        return s;
    };
    for (int i = 1; i < fonts.Count(); ++i)
        EXPECT_LT(lower(fonts[i - 1]), lower(fonts[i])) << fonts[i];
    EXPECT_EQ(&Screen().Fonts(), &fonts);
}

TEST_F(ScreenTest, FormsListTheApplicationsFormsButNotPopups) {
    const int before = Screen().FormCount();
    TForm second(nullptr);
    EXPECT_EQ(Screen().FormCount(), before + 1);
    EXPECT_EQ(Screen().Forms(before), &second);
    EXPECT_THROW(Screen().Forms(before + 1), ERangeError);
    auto* edit = Add<TEdit>({10, 10, 100, 30});
    Show();
    EXPECT_EQ(Screen().ActiveForm(), form);
    EXPECT_EQ(Screen().ActiveControl(), edit);
}

TEST_F(ScreenTest, ThePointerShowsTheCursorOfTheControlUnderIt) {
    auto* panel = Add<TPanel>({10, 10, 110, 110});
    panel->SetCursor(crCross);
    auto* label = Add<TLabel>({10, 10, 40, 25}, panel);
    label->SetCaption("plain");
    auto* hand = Add<TPanel>({50, 50, 90, 90}, panel);
    hand->SetCursor(crHandPoint);
    auto* edit = Add<TEdit>({150, 10, 250, 30});
    Show();
    MoveTo({60, 20});
    EXPECT_EQ(ShownCursor(), crCross);
    MoveTo({25, 22}); // the label has crDefault: its parent's
    EXPECT_EQ(ShownCursor(), crCross);
    MoveTo({70, 70});
    EXPECT_EQ(ShownCursor(), crHandPoint);
    MoveTo({200, 20}); // the edit's own shape
    EXPECT_EQ(ShownCursor(), crIBeam);
    MoveTo({200, 150});
    EXPECT_EQ(ShownCursor(), crDefault);
    edit->SetCursor(crHelp);
    MoveTo({200, 20});
    EXPECT_EQ(ShownCursor(), crHelp);
    edit->SetCursor(crNo); // a change under the pointer shows at once
    Pump();
    EXPECT_EQ(ShownCursor(), crNo);
}

TEST_F(ScreenTest, ScreenCursorOverridesEveryControlUntilReset) {
    auto* panel = Add<TPanel>({10, 10, 110, 110});
    panel->SetCursor(crCross);
    Show();
    TForm second(nullptr);
    second.SetBounds(500, 500, 100, 100);
    second.Show();
    Pump();
    MoveTo({50, 50});
    EXPECT_EQ(ShownCursor(), crCross);
    Screen().SetCursor(crHourGlass);
    EXPECT_EQ(ShownCursor(), crHourGlass);
    EXPECT_EQ(Headless().Window(second.NativeWindow()).cursor, crHourGlass);
    MoveTo({200, 150});
    EXPECT_EQ(ShownCursor(), crHourGlass);
    MoveTo({50, 50});
    Screen().SetCursor(crDefault);
    EXPECT_EQ(ShownCursor(), crCross);
    EXPECT_EQ(Headless().Window(second.NativeWindow()).cursor, crDefault);
}
