// The credit scroll: the offset per tick and its restart, where the text is drawn, the settings
// passed to its timer, wild steps and intervals, and form files.
#include "LiveDisplayFixture.h"

#include "platform/system/Thread.h"

#include <chrono>
#include <climits>
#include <thread>

using namespace qv;

namespace {

using Clock = std::chrono::steady_clock;
using D = TqxCreditScroll::Defaults;

class CreditScrollTest : public LiveDisplayTest {
protected:
    // A scroll whose own timer is stopped (interval 0), for tests that tick by hand: a real
    // tick handled while a shot pumps the messages would move the text too.
    TqxCreditScroll* PlaceTickedByHand() {
        auto* scroll = Place<TqxCreditScroll>();
        scroll->SetInterval(0);
        return scroll;
    }
    // Ticks by hand, as the timer would.
    static void Tick(TqxCreditScroll& scroll, int times = 1) {
        for (int i = 0; i < times; ++i)
            scroll.DoTimer(&scroll);
    }
    static int TextHeight(TqxCreditScroll& scroll) { return TextExtentOf(*scroll.Font(), "0").cy; }
};

TEST_F(CreditScrollTest, TheOffsetAdvancesByStepPerTickOnlyWhileShowing) {
    auto* scroll = PlaceTickedByHand();
    Tick(*scroll, 3);
    EXPECT_EQ(scroll->Offset(), 3);
    scroll->SetStep(4);
    Tick(*scroll);
    EXPECT_EQ(scroll->Offset(), 7);
    scroll->SetVisible(false);
    Tick(*scroll);
    EXPECT_EQ(scroll->Offset(), 7);
    scroll->Reset();
    EXPECT_EQ(scroll->Offset(), 0);
    scroll->SetStep(0); // ignored
    scroll->SetStep(-3);
    EXPECT_EQ(scroll->Step(), 4);
}

TEST_F(CreditScrollTest, TheTextRisesFromBelowTheBottomAndStartsAgainOnceGone) {
    auto* scroll = PlaceTickedByHand();
    const TRect all{0, 0, scroll->Width(), scroll->Height()};
    auto start = Shot(*scroll);
    EXPECT_EQ(CountColor(start, all, D::FontColor), 0); // still below the bottom edge
    scroll->SetStep(scroll->Height());
    Tick(*scroll); // the first line's top reaches row 0
    auto risen = Shot(*scroll);
    EXPECT_GT(CountColor(risen, all, D::FontColor), 0);
    EXPECT_GT(CountColor(risen, {0, 0, scroll->Width(), TextHeight(*scroll)}, D::FontColor), 0);
    // Past three lines and the height, the next paint starts again at 0.
    const int gone = TextHeight(*scroll) * 3 + scroll->Height();
    scroll->SetStep(gone);
    Tick(*scroll);
    EXPECT_EQ(scroll->Offset(), scroll->Height() + gone);
    auto restarted = Shot(*scroll);
    EXPECT_EQ(scroll->Offset(), 0);
    EXPECT_EQ(CountColor(restarted, all, D::FontColor), 0);
}

TEST_F(CreditScrollTest, AHugeStepNeverOverflowsTheOffset) {
    auto* scroll = PlaceTickedByHand();
    scroll->SetStep(INT_MAX);
    Tick(*scroll, 5); // no paint in between
    EXPECT_GT(scroll->Offset(), 0);
    Shot(*scroll);
    EXPECT_EQ(scroll->Offset(), 0);
}

TEST_F(CreditScrollTest, LinesDefaultToThreeAndAChangeRepaints) {
    auto* scroll = Place<TqxCreditScroll>();
    ASSERT_EQ(scroll->Lines()->Count(), 3);
    EXPECT_EQ(scroll->Lines()->Strings(0), "QuelvarCollection");
    EXPECT_EQ(scroll->Lines()->Strings(2), "QuelvarSoft");
    Pump();
    int paints = 0;
    scroll->OnPaint = [&](TObject*) { ++paints; };
    scroll->Lines()->Add("and friends");
    Pump();
    EXPECT_EQ(paints, 1);
}

TEST_F(CreditScrollTest, IntervalAndPriorityPassToTheTimer) {
    TqxCreditScroll scroll(nullptr);
    EXPECT_EQ(scroll.ScrollTimer()->Interval(), 50u);
    scroll.SetInterval(20);
    EXPECT_EQ(scroll.ScrollTimer()->Interval(), 20u);
    scroll.Setpriority(TThreadPriority::tpLower);
    EXPECT_EQ(scroll.ScrollTimer()->Priority(), TThreadPriority::tpLower);
    scroll.SetInterval(-1); // stops the timer instead of waiting 2^32 - 1 ms
    EXPECT_EQ(scroll.GetInterval(), -1);
    EXPECT_EQ(scroll.ScrollTimer()->Interval(), 0u);
}

TEST_F(CreditScrollTest, TheTimerScrollsOnTheMainThread) {
    auto* scroll = Place<TqxCreditScroll>();
    scroll->SetInterval(5);
    const auto owner = std::this_thread::get_id();
    bool elsewhere = false;
    scroll->OnPaint = [&](TObject*) {
        elsewhere = elsewhere || std::this_thread::get_id() != owner;
    };
    const auto end = Clock::now() + std::chrono::seconds(10);
    while (scroll->Offset() < 3 && Clock::now() < end) {
        CheckSynchronize();
        Pump();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_GE(scroll->Offset(), 3);
    EXPECT_FALSE(elsewhere);
}

TEST_F(CreditScrollTest, FormFilesKeepTheLinesAndTheWildSettings) {
    auto root = ReadComponentText(
        "object F: TForm\n  object C: TqxCreditScroll\n    Lines.Strings = (\n      'one'\n"
        "      'two')\n    Interval = -1\n    Step = 2147483647\n    Alignment = taLeftJustify\n"
        "  end\nend\n");
    auto* scroll = dynamic_cast<TqxCreditScroll*>(root->FindComponent("C"));
    ASSERT_NE(scroll, nullptr);
    EXPECT_EQ(scroll->Lines()->Count(), 2);
    EXPECT_EQ(scroll->GetInterval(), -1);
    EXPECT_EQ(scroll->Step(), INT_MAX);
    ExpectRoundTrip(*root);
}

} // namespace
