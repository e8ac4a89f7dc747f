// The gallery's cells that show non-visual components working (the calculator's input
// line, the timers' figures), the figures behind the timer cells, and opening a cell larger.

#include "LiveViews.h"
#include "GalleryForm.h"
#include "TickStatistics.h"

#include "indicators/Qled.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/controls/Clipboard.h"
#include "platform/controls/Timer.h"
#include "platform/core/DesignerRegistry.h"
#include "buttons/TqColorBtn.h"
#include "timing/Std2.h"
#include "utility/TqCalc.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <thread>

using namespace qv;
using namespace qv::gallery;
using namespace std::chrono_literals;

namespace {

const TTickClock::time_point t0{};

TEST(TickStatistics, TheCounterCountsAndKeepsTheLastInterval) {
    TTickCounter counter;
    EXPECT_EQ(counter.Count(), 0);
    counter.Tick(t0);
    EXPECT_FALSE(counter.LastInterval());
    counter.Tick(t0 + 250ms);
    counter.Tick(t0 + 510ms);
    EXPECT_EQ(counter.Count(), 3);
    EXPECT_DOUBLE_EQ(counter.LastInterval()->count(), 260.0);
}

TEST(TickStatistics, LatenessIsMeasuredAgainstTheScheduleOfThePeriod) {
    TLatenessWindow window;
    window.Restart(10ms);
    EXPECT_FALSE(window.Figures(t0));
    // Due at 0, 10, 20, ...: every tick but one is 1 ms late, one is 5 ms late.
    window.Tick(t0);
    for (int i = 1; i < 100; ++i)
        window.Tick(t0 + i * 10ms + (i == 50 ? 5ms : 1ms));
    const auto figures = window.Figures(t0 + 995ms);
    ASSERT_TRUE(figures);
    EXPECT_EQ(figures->ticks, 100u);
    EXPECT_DOUBLE_EQ(figures->p50.count(), 1.0);
    EXPECT_DOUBLE_EQ(figures->p99.count(), 1.0);
    window.Tick(t0 + 1000ms + 5ms); // the second 5 ms: now above the 99th percentile
    EXPECT_DOUBLE_EQ(window.Figures(t0 + 1005ms)->p99.count(), 5.0);
}

TEST(TickStatistics, AnEarlierTickMovesTheScheduleAndOldTicksLeaveTheWindow) {
    TLatenessWindow window;
    window.Restart(10ms);
    window.Tick(t0 + 3ms);  // the first tick came late, which nothing can tell yet
    window.Tick(t0 + 10ms); // due at 13: early, so the schedule moves here
    window.Tick(t0 + 22ms); // due at 20
    EXPECT_DOUBLE_EQ(window.Figures(t0 + 22ms)->p99.count(), 2.0);
    // A second later only the last tick is in the window.
    const auto later = window.Figures(t0 + 1015ms);
    ASSERT_TRUE(later);
    EXPECT_EQ(later->ticks, 1u);
    EXPECT_FALSE(window.Figures(t0 + 1030ms));
    window.Restart(20ms);
    EXPECT_FALSE(window.Figures(t0 + 22ms));
    EXPECT_EQ(window.Period(), 20ms);
}

// Waits up to ten seconds for `done`, running the loop meanwhile.
bool WaitFor(const std::function<bool()>& done) {
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        Application().ProcessMessages();
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

class LiveViewsTest : public ::testing::Test {
protected:
    void SetUp() override {
        Application().SetBackend(std::make_unique<THeadlessBackend>());
        ClearDesignerRegistry();
        RegisterComponents("Working", {&TqCalc::StaticClassInfo(), &TqxTimer::StaticClassInfo(),
                                       &TqxMMTimer::StaticClassInfo(), &TqLed::StaticClassInfo(),
                                       &TqxRunProg::StaticClassInfo()});
        m_form.Build();
        m_form.Show();
        Application().ProcessMessages();
    }
    void TearDown() override { ClearDesignerRegistry(); }

    THeadlessBackend& Headless() { return static_cast<THeadlessBackend&>(Application().Backend()); }
    template <class View> View& ViewOf(int cell) {
        auto* view = dynamic_cast<View*>(m_form.PageCells(0).at(cell)->Controls(0));
        if (!view) throw EComponentError("cell without the expected view");
        return *view;
    }
    TPoint InForm(const TControl& control, TPoint at) {
        return m_form.ScreenToClient(control.ClientToScreen(at));
    }
    void Click(const TControl& control, bool doubleClick = false) {
        const TPoint at = InForm(control, {5, 5});
        Headless().MouseDown(m_form.NativeWindow(), at, TMouseButton::Left, 0, doubleClick);
        Headless().MouseUp(m_form.NativeWindow(), at);
        Application().ProcessMessages();
    }
    // Types `text` into the calculator's line character by character, then Enter.
    TCalcView& TypeIntoCalculator(const std::string& text) {
        TCalcView& view = ViewOf<TCalcView>(0);
        Click(view.Input());
        for (const char c : text)
            Headless().Char(m_form.NativeWindow(), static_cast<unsigned char>(c));
        return PressEnter(view);
    }
    // Long lines arrive as a user would bring them: pasted with Ctrl+V (typing 10,000 keys
    // would measure the growing line 10,000 times).
    TCalcView& PasteIntoCalculator(const std::string& text) {
        TCalcView& view = ViewOf<TCalcView>(0);
        Click(view.Input());
        Clipboard().SetAsText(text);
        Headless().KeyDown(m_form.NativeWindow(), 'V', isCtrl);
        return PressEnter(view);
    }
    TCalcView& PressEnter(TCalcView& view) {
        Headless().TypeKey(m_form.NativeWindow(), VK_RETURN, '\r');
        Application().ProcessMessages();
        return view;
    }

    TGalleryForm m_form{nullptr};
};

TEST_F(LiveViewsTest, TheCalculatorEvaluatesTheLineOnEnterAndShowsTheRegisters) {
    TCalcView& view = ViewOf<TCalcView>(0);
    EXPECT_EQ(view.Lines().at(0), "Type an expression, then Enter");
    TypeIntoCalculator("1+2");
    EXPECT_EQ(view.Input().Text(), "1+2");
    const std::vector<std::string> lines = view.Lines();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0], "TqxOK at 4 = 3");
    EXPECT_EQ(lines[1], "A 3  B 0  C 0");
    EXPECT_EQ(lines[2], "D 0  F 0  G 0");
    EXPECT_EQ(lines[3], "H 0  I 0  J 0");
    // A second line pushes the registers on; a fault shows its code and position.
    view.Input().SetText("A*2+(1");
    Headless().TypeKey(m_form.NativeWindow(), VK_RETURN, '\r');
    Application().ProcessMessages();
    EXPECT_EQ(view.Lines().at(0), "TqxRightPar at 8 = 7"); // as the calc tool reports it
    EXPECT_EQ(view.Lines().at(1), "A 7  B 3  C 0");
}

TEST_F(LiveViewsTest, ALongLineShowsItsResultCode) {
    TCalcView& view = PasteIntoCalculator(std::string(10'000, '9'));
    EXPECT_EQ(view.Input().Text().size(), 10'000u);
    const auto& calc = static_cast<const TqCalc&>(m_form.PageCells(0).at(0)->Shown());
    EXPECT_EQ(calc.CalcLine(), std::string(TqCalc::MaxLineLength, '9'));
    EXPECT_EQ(view.Lines().at(0).substr(0, 9), "TqxOK at ");
}

TEST_F(LiveViewsTest, BinaryJunkShowsItsResultCode) {
    std::string junk;
    for (int i = 0; i < 2'000; ++i)
        junk += static_cast<char>(i * 37 % 256);
    TCalcView& view = TypeIntoCalculator(junk);
    const auto& calc = static_cast<const TqCalc&>(m_form.PageCells(0).at(0)->Shown());
    EXPECT_NE(calc.CalcResult(), TqxOK);
    const std::string& code =
        TypeInfoOf<TqCalcResult>().names.at(static_cast<std::size_t>(calc.CalcResult()));
    EXPECT_EQ(view.Lines().at(0).substr(0, code.size() + 4), code + " at ");
}

TEST_F(LiveViewsTest, TheThreadTimerCellCountsTicksAndMeasuresTheInterval) {
    auto& timer = static_cast<TqxTimer&>(m_form.PageCells(0).at(1)->Shown());
    TTimerTickView& view = ViewOf<TTimerTickView>(1);
    EXPECT_EQ(view.Lines(), (std::vector<std::string>{"Ticks 0", "Interval 250 ms", "Measured -"}));
    timer.SetInterval(1);
    // The view shows the count when it refreshes, which may skip numbers on a busy machine.
    const auto ticksShown = [&] { return std::stoi(view.Lines().at(0).substr(6)); };
    ASSERT_EQ(view.Lines().at(0).substr(0, 6), "Ticks ");
    ASSERT_TRUE(WaitFor([&] { return ticksShown() >= 3; }));
    EXPECT_EQ(view.Lines().at(1), "Interval 1 ms");
    EXPECT_EQ(view.Lines().at(2).find("Measured "), 0u);
    EXPECT_NE(view.Lines().at(2), "Measured -");
    timer.SetEnabled(false);
}

TEST_F(LiveViewsTest, TheMultimediaTimerCellShowsItsLateness) {
    auto& timer = static_cast<TqxMMTimer&>(m_form.PageCells(0).at(2)->Shown());
    TLatenessView& view = ViewOf<TLatenessView>(2);
    EXPECT_EQ(view.Lines().at(0), "Interval 10 ms");
    timer.SetInterval(1);
    ASSERT_TRUE(WaitFor([&] { return view.Lines().size() == 3; }));
    EXPECT_EQ(view.Lines().at(0), "Interval 1 ms");
    EXPECT_EQ(view.Lines().at(1).find("Late p50 "), 0u);
    EXPECT_EQ(view.Lines().at(2).find("Late p99 "), 0u);
}

TEST_F(LiveViewsTest, TheRunButtonRunsTheCommandLineAndShowsTheReturnCode) {
    TRunProgView& view = ViewOf<TRunProgView>(4);
    auto& run = static_cast<TqxRunProg&>(m_form.PageCells(0).at(4)->Shown());
    EXPECT_EQ(view.Lines().at(1), "ReturnCode 0");
    std::vector<std::string> during;
    run.OnBeforeWait = nullptr;
    TTimer peek(nullptr);
    peek.SetInterval(50);
    peek.SetOnTimer([&](TObject*) {
        peek.SetEnabled(false);
        during = view.Lines();
    });
    Click(view.RunButton()); // the soft wait runs the loop until the program has ended
    ASSERT_EQ(during.size(), 3u);
    EXPECT_EQ(during.at(1), "Running, ReturnCode 259");
    EXPECT_EQ(view.Lines(),
              (std::vector<std::string>{"sh -c \"sleep 1; exit 3\"", "ReturnCode 3", "qre_OK"}));
}

TEST_F(LiveViewsTest, ADoubleClickOpensTheComponentAtFourTimesItsSize) {
    auto& lamp = static_cast<TqLed&>(m_form.PageCells(0).at(3)->Shown());
    Click(lamp);
    EXPECT_EQ(m_form.Large().Shown(), nullptr); // a single click only selects
    EXPECT_EQ(m_form.SelectedComponent(), &lamp);
    Click(lamp, true);
    TControl* large = m_form.Large().Shown();
    ASSERT_NE(large, nullptr);
    EXPECT_NE(large, &lamp); // a new instance
    EXPECT_EQ(large->ClassName(), "TqLed");
    EXPECT_EQ(large->Width(), TqLed::Defaults::Size * 4);
    EXPECT_EQ(large->Height(), TqLed::Defaults::Size * 4);
    Headless().TypeKey(m_form.NativeWindow(), VK_ESCAPE);
    Application().ProcessMessages();
    EXPECT_EQ(m_form.Large().Shown(), nullptr);
    // Opening again replaces the closed one; a click on it closes it.
    Click(*m_form.PageCells(0).at(3), true);
    ASSERT_NE(m_form.Large().Shown(), nullptr);
    Click(*m_form.Large().Shown());
    EXPECT_EQ(m_form.Large().Shown(), nullptr);
}

} // namespace
