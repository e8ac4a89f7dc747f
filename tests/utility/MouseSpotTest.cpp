#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/controls/Panel.h"
#include "utility/Mystd.h"

#include <gtest/gtest.h>

using namespace qv;

namespace {

class MouseSpot : public ::testing::Test {
protected:
    void SetUp() override {
        Application().SetBackend(std::make_unique<THeadlessBackend>());
        form = new TForm(nullptr);
        form->SetBounds(0, 0, 200, 150);
        form->Show();
        panel = new TPanel(form);
        panel->SetParent(form);
        panel->SetBounds(10, 10, 120, 100);
        panel->SetCaption("Under the spot");
        panel->SetColor(TColor(0x3366CC));
    }
    void TearDown() override { delete form; }
    THeadlessBackend& Headless() { return static_cast<THeadlessBackend&>(Application().Backend()); }
    TPixelBuffer Shot() {
        Application().ProcessMessages();
        TBitmap shot;
        form->Screenshot(shot);
        return shot.Pixels();
    }
    TqMouseSpot* AddSpot() {
        auto* spot = new TqMouseSpot(form);
        spot->SetParent(panel);
        spot->SetBounds(30, 30, 40, 40);
        return spot;
    }

    TForm* form{nullptr};
    TPanel* panel{nullptr};
};

} // namespace

TEST_F(MouseSpot, ANewSpotIsATransparentTwentyPixelSquareThatNeverSizesToItsText) {
    TqMouseSpot spot(nullptr);
    EXPECT_EQ(spot.Width(), 20);
    EXPECT_EQ(spot.Height(), 20);
    EXPECT_FALSE(spot.ControlStyle().Contains(csOpaque));
    EXPECT_TRUE(spot.Transparent());
    EXPECT_FALSE(spot.AutoSize());
    EXPECT_EQ(spot.Caption(), "");
    spot.SetCaption("a long caption that would widen a label");
    EXPECT_EQ(spot.Width(), 20);
}

TEST_F(MouseSpot, AtRunTimeThePixelsBelowStayAsTheyWereAndOnParentPaintRuns) {
    const TPixelBuffer before = Shot();
    TqMouseSpot* spot = AddSpot();
    int parentPaints = 0;
    spot->OnParentPaint = [&](TObject* sender) {
        EXPECT_EQ(sender, spot);
        ++parentPaints;
    };
    spot->SetCaption("Never painted");
    spot->Invalidate();
    EXPECT_TRUE(Shot() == before);
    EXPECT_GT(parentPaints, 0);
}

TEST_F(MouseSpot, WhileDesigningOnlyTheDashedOutlineIsDrawn) {
    TqMouseSpot* spot = AddSpot();
    spot->SetCaption("Never painted");
    const TPixelBuffer running = Shot();
    spot->SetDesigning(true);
    spot->Invalidate();
    const TPixelBuffer designing = Shot();
    const TPoint origin = form->ScreenToClient(spot->ClientToScreen({0, 0}));
    int changed = 0, inside = 0;
    for (int y = 0; y < designing.Height(); ++y)
        for (int x = 0; x < designing.Width(); ++x)
            if (designing.At(x, y) != running.At(x, y)) {
                ++changed;
                const int sx = x - origin.x, sy = y - origin.y;
                const bool onEdge = sx == 0 || sy == 0 || sx == 39 || sy == 39;
                if (!onEdge) ++inside;
                EXPECT_EQ(designing.At(x, y), 0u) << x << "," << y;
            }
    EXPECT_GT(changed, 40); // a dashed outline round 40 x 40
    EXPECT_EQ(inside, 0);
}

TEST_F(MouseSpot, EnteringAndLeavingRaiseOneEventEach) {
    TqMouseSpot* spot = AddSpot();
    std::vector<std::string> events;
    spot->OnMouseEnter = [&](TObject*) { events.push_back("enter"); };
    spot->OnMouseLeave = [&](TObject*) { events.push_back("leave"); };
    const auto moveTo = [&](TPoint at) {
        Headless().MouseMove(form->NativeWindow(), form->ScreenToClient(panel->ClientToScreen(at)));
        Application().ProcessMessages();
    };
    moveTo({5, 5});
    moveTo({40, 40});
    moveTo({45, 50});
    moveTo({100, 90});
    moveTo({110, 95});
    EXPECT_EQ(events, (std::vector<std::string>{"enter", "leave"}));
}
