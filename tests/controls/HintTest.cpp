#include "ControlsFixture.h"

#include "platform/controls/HintWindow.h"
#include "platform/controls/Label.h"
#include "platform/controls/Panel.h"

using namespace qv;
using namespace qvtest;

namespace {

class HintTest : public ControlsFixture {
protected:
    void SetUp() override {
        ControlsFixture::SetUp();
        tipped = Add<TPanel>({10, 10, 110, 60});
        tipped->SetHint("Short tip|The long help text");
        tipped->SetShowHint(true);
        other = Add<TPanel>({150, 10, 250, 60});
        other->SetHint("Other tip");
        other->SetShowHint(true);
        plain = Add<TPanel>({10, 100, 110, 150});
        Show();
    }
    void TearDown() override {
        Application().CancelHint();
        Application().SetShowHint(true);
        ControlsFixture::TearDown();
    }
    void MoveTo(TPoint p) {
        Headless().MouseMove(Window(), p);
        Pump();
    }
    void Wait(int ms) {
        Headless().AdvanceClock(ms);
        Pump();
    }
    bool HintShown() const {
        const THintWindow* w = Application().HintWindow();
        return w && w->Visible();
    }
    TPanel* tipped{nullptr};
    TPanel* other{nullptr};
    TPanel* plain{nullptr};
};

} // namespace

TEST_F(HintTest, HintShowsAfterThePauseBelowThePointerInTheInfoColours) {
    MoveTo({40, 30});
    Wait(Application().HintPause() - 1);
    EXPECT_FALSE(HintShown());
    Wait(1);
    ASSERT_TRUE(HintShown());
    THintWindow* window = Application().HintWindow();
    EXPECT_EQ(window->Caption(), "Short tip");
    EXPECT_EQ(window->Left(), 100 + 40);
    EXPECT_EQ(window->Top(), 50 + 30 + 20);
    const TRect needed = window->CalcHintRect(1000, "Short tip");
    EXPECT_EQ(window->Width(), needed.Width());
    EXPECT_EQ(window->Height(), needed.Height() + 4);
    TBitmap hintShot;
    window->Screenshot(hintShot);
    EXPECT_EQ(hintShot.Canvas().Pixel(0, 0), ColorToRGB(clWindowFrame));
    EXPECT_EQ(hintShot.Canvas().Pixel(1, 1), ColorToRGB(clInfoBk));
    EXPECT_TRUE(Headless().Window(window->NativeWindow()).visible);
    EXPECT_EQ(Application().ActiveForm(), form); // the hint does not take activation
}

TEST_F(HintTest, LeavingTheControlOrPressingHidesTheHint) {
    MoveTo({40, 30});
    Wait(600);
    ASSERT_TRUE(HintShown());
    MoveTo({40, 120}); // a panel without a hint
    EXPECT_FALSE(HintShown());
    Wait(1000);
    EXPECT_FALSE(HintShown());

    MoveTo({40, 30});
    Wait(600);
    ASSERT_TRUE(HintShown());
    Headless().MouseDown(Window(), {40, 30});
    Headless().MouseUp(Window(), {40, 30});
    Pump();
    EXPECT_FALSE(HintShown());
    Wait(1000);
    EXPECT_FALSE(HintShown()); // no move: no new hint
    MoveTo({41, 30});
    Wait(600);
    EXPECT_TRUE(HintShown());
    Key(VK_SPACE);
    EXPECT_FALSE(HintShown());
}

TEST_F(HintTest, NextControlsHintFollowsAfterTheShortPause) {
    MoveTo({40, 30});
    Wait(600);
    ASSERT_TRUE(HintShown());
    MoveTo({200, 30});
    EXPECT_FALSE(HintShown());
    Wait(Application().HintShortPause());
    ASSERT_TRUE(HintShown());
    EXPECT_EQ(Application().HintWindow()->Caption(), "Other tip");
}

TEST_F(HintTest, HintHidesAfterTheHidePauseAndStaysHiddenOverTheSameControl) {
    MoveTo({40, 30});
    Wait(600);
    ASSERT_TRUE(HintShown());
    Wait(Application().HintHidePause());
    EXPECT_FALSE(HintShown());
    MoveTo({45, 35});
    Wait(2000);
    EXPECT_FALSE(HintShown());
}

TEST_F(HintTest, ChildrenShowTheHintOfTheNearestControlWithShowHint) {
    auto* label = Add<TLabel>({5, 5, 50, 20}, tipped);
    label->SetCaption("inner");
    EXPECT_TRUE(label->ShowHint()); // from its parent
    MoveTo({20, 20});
    Wait(600);
    ASSERT_TRUE(HintShown());
    EXPECT_EQ(Application().HintWindow()->Caption(), "Short tip");

    label->SetHint("Label tip");
    MoveTo({40, 120});
    MoveTo({20, 20});
    Wait(600);
    EXPECT_EQ(Application().HintWindow()->Caption(), "Label tip");

    label->SetShowHint(false); // the panel's hint then
    MoveTo({40, 120});
    MoveTo({20, 20});
    Wait(600);
    ASSERT_TRUE(HintShown());
    EXPECT_EQ(Application().HintWindow()->Caption(), "Short tip");
}

TEST_F(HintTest, NoHintsWhenTheApplicationOrTheControlSaysSo) {
    Application().SetShowHint(false);
    MoveTo({40, 30});
    Wait(600);
    EXPECT_FALSE(HintShown());
    Application().SetShowHint(true);
    tipped->SetHint("");
    MoveTo({40, 120});
    MoveTo({40, 30});
    Wait(600);
    EXPECT_FALSE(HintShown());
}

TEST_F(HintTest, HintNearTheScreenEdgeStaysOnTheScreen) {
    form->SetBounds(1200, 950, 300, 200);
    MoveTo({40, 30});
    Wait(600);
    ASSERT_TRUE(HintShown());
    const TRect r = Application().HintWindow()->BoundsRect();
    EXPECT_LE(r.right, 1280);
    EXPECT_LE(r.bottom, 1024);
}
