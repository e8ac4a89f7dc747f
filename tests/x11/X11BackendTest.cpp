// The X11 backend on a private Xvfb server: windows appear with their title, bounds and
// hints; XTest input reaches controls; what the server shows equals the headless rendering
// of the same form, pixel for pixel. Skipped when no X server can be started, unless
// QV_REQUIRE_X11 is set (CI), which turns the skip into a failure.

// GoogleTest comes before Xlib, whose macros (None, Bool) clash with its names.
#include <gtest/gtest.h>

#include "backgrounds/Blend.h"
#include "buttons/Qanimate.h"
#include "package/Package.h"
#include "splitters/Qsplit.h"
#include "timing/Std2.h"

#include "X11Fixture.h"

#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/graphics/Bitmap.h"
#include "platform/graphics/Canvas.h"
#include "platform/graphics/ImageIO.h"
#include "splitters/Qsplit.h"
#include "timing/Std2.h"

#include "X11Fixture.h"

#include "platform/backend/X11Backend.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

// Xlib names an event type KeyPress; here it is the control's method.
#undef KeyPress

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

using namespace qv;
using qv::test::TX11Fixture;

namespace {

// A control that paints its colour with a line of text and records the input it gets.
class TInputProbe : public TCustomControl {
public:
    explicit TInputProbe(TComponent* owner) : TCustomControl(owner) {
        SetTabStop(true);
        SetParentColor(false);
    }
    int clicks{0};
    int doubleClicks{0};
    std::vector<unsigned> keys;
    std::string typed;
    std::vector<int> wheel;

protected:
    void Paint() override {
        Canvas().Brush().SetColor(Color());
        Canvas().FillRect(ClientRect());
        Canvas().Font().SetColor(clBlack);
        Canvas().TextOut(4, 4, Name());
    }
    void Click() override { ++clicks; }
    void DblClick() override { ++doubleClicks; }
    void KeyDown(unsigned& key, TShiftState shift) override {
        keys.push_back(key);
        TCustomControl::KeyDown(key, shift);
    }
    void KeyPress(char& key) override { typed += key; }
    void WndProc(TMessage& message) override {
        if (message.Msg == WM_MOUSEWHEEL)
            wheel.push_back(static_cast<std::int16_t>((message.WParam >> 16) & 0xFFFF));
        TCustomControl::WndProc(message);
    }
};

// A form whose WM_GETMINMAXINFO answer the test chooses.
class TLimitedForm : public TForm {
public:
    using TForm::TForm;
    TPoint minTrack{0, 0};
    TPoint maxTrack{0, 0};

protected:
    void WMGetMinMaxInfo(TMessage& message) override {
        auto* info = reinterpret_cast<TMinMaxInfo*>(message.LParam);
        info->ptMinTrackSize = minTrack;
        info->ptMaxTrackSize = maxTrack;
    }
};

std::unique_ptr<TForm> MakeProbeForm(TRect bounds) {
    auto form = std::make_unique<TForm>(nullptr);
    form->SetBounds(bounds.left, bounds.top, bounds.Width(), bounds.Height());
    form->SetCaption("Probe form");
    form->SetColor(clTeal);
    const TColor colors[] = {clYellow, clFuchsia};
    for (int i = 0; i < 2; ++i) {
        auto* probe = new TInputProbe(form.get());
        probe->SetName("Probe" + std::to_string(i + 1));
        probe->SetColor(colors[i]);
        probe->SetBounds(10 + i * 110, 10, 100, 60);
        probe->SetParent(form.get());
    }
    return form;
}

TInputProbe& Probe(TForm& form, int index) {
    return *static_cast<TInputProbe*>(form.FindComponent("Probe" + std::to_string(index)));
}

class X11BackendTest : public TX11Fixture {};

TEST_F(X11BackendTest, FormBecomesAMappedWindowWithItsTitleAndBounds) {
    auto form = MakeProbeForm(Bounds(40, 30, 240, 90));
    ShowAndSettle(*form);
    XWindowAttributes attributes{};
    ASSERT_TRUE(XGetWindowAttributes(m_probe.get(), form->NativeWindow(), &attributes));
    EXPECT_EQ(attributes.map_state, IsViewable);
    EXPECT_EQ(attributes.x, 40);
    EXPECT_EQ(attributes.y, 30);
    EXPECT_EQ(attributes.width, 240);
    EXPECT_EQ(attributes.height, 90);
    char* name = nullptr;
    ASSERT_TRUE(XFetchName(m_probe.get(), form->NativeWindow(), &name));
    EXPECT_STREQ(name, "Probe form");
    XFree(name);

    form->SetCaption("Renamed");
    form->SetBounds(60, 50, 200, 100);
    m_x11->Sync();
    ASSERT_TRUE(XFetchName(m_probe.get(), form->NativeWindow(), &name));
    EXPECT_STREQ(name, "Renamed");
    XFree(name);
    ASSERT_TRUE(XGetWindowAttributes(m_probe.get(), form->NativeWindow(), &attributes));
    EXPECT_EQ(attributes.x, 60);
    EXPECT_EQ(attributes.width, 200);
    EXPECT_EQ(attributes.height, 100);

    form->Hide();
    m_x11->Sync();
    ASSERT_TRUE(XGetWindowAttributes(m_probe.get(), form->NativeWindow(), &attributes));
    EXPECT_EQ(attributes.map_state, IsUnmapped);
}

TEST_F(X11BackendTest, ClickKeyAndWheelFromXTestReachTheControls) {
    auto form = MakeProbeForm(Bounds(100, 80, 240, 90));
    ShowAndSettle(*form);
    TInputProbe& second = Probe(*form, 2);

    FakeClick({100 + 120 + 50, 80 + 10 + 30});
    ASSERT_TRUE(PumpUntil([&] { return second.clicks == 1; }));
    EXPECT_EQ(Probe(*form, 1).clicks, 0);

    second.SetFocus();

    FakeKey(XK_a);
    ASSERT_TRUE(PumpUntil([&] { return second.typed == "a"; }));
    EXPECT_EQ(second.keys, std::vector<unsigned>{'A'});

    FakeClick({100 + 120 + 50, 80 + 10 + 30}, Button4);
    FakeClick({100 + 120 + 50, 80 + 10 + 30}, Button5);
    ASSERT_TRUE(PumpUntil([&] { return second.wheel.size() == 2; }));
    EXPECT_EQ(second.wheel, (std::vector<int>{120, -120}));
}

TEST_F(X11BackendTest, TwoQuickClicksMakeADoubleClick) {
    auto form = MakeProbeForm(Bounds(100, 80, 240, 90));
    ShowAndSettle(*form);
    TInputProbe& first = Probe(*form, 1);
    FakeClick({100 + 40, 80 + 40});
    FakeClick({100 + 42, 80 + 41});
    ASSERT_TRUE(PumpUntil([&] { return first.doubleClicks == 1; }));
    FakeClick({100 + 42, 80 + 41}); // the third press starts over
    PumpUntil([] { return false; }, 100);
    EXPECT_EQ(first.doubleClicks, 1);
}

TEST_F(X11BackendTest, ScreenShowsExactlyTheHeadlessRendering) {
    const TRect bounds = Bounds(20, 20, 240, 90);
    TPixelBuffer shown;
    {
        auto form = MakeProbeForm(bounds);
        ShowAndSettle(*form);
        shown = Capture(*form);
    }
    ExpectHeadlessRendering(*MakeProbeForm(bounds), shown, "x11");
}

// The frame buffer is the window's shared-memory image: frames painted back to back wait
// for the server to read the previous one, and a resized form gets a new image.
TEST_F(X11BackendTest, FramesBackToBackAndAfterAResizeReachTheScreen) {
    auto form = MakeProbeForm(Bounds(20, 20, 240, 90));
    ShowAndSettle(*form);
    EXPECT_EQ(form->FrameBuffer().IsView(), m_x11->UsesSharedMemory());
    const TColor colors[] = {clRed, clLime, clBlue, clNavy, clOlive};
    for (TColor color : colors) { // no round trip between the frames
        Probe(*form, 1).SetColor(color);
        Application().ProcessMessages();
    }
    m_x11->Sync();
    TPixelBuffer shown = Capture(*form);
    EXPECT_EQ(shown.At(50, 50), 0x808000u); // olive
    EXPECT_EQ(shown, form->FrameBuffer());

    form->SetBounds(20, 20, 300, 120);
    Probe(*form, 2).SetColor(clRed);
    ASSERT_TRUE(PumpUntil([&] {
        m_x11->Sync();
        return Capture(*form) == form->FrameBuffer();
    }));
    EXPECT_EQ(form->FrameBuffer().IsView(), m_x11->UsesSharedMemory());
    EXPECT_EQ(Capture(*form).At(150, 50), 0xFF0000u);
}

TEST_F(X11BackendTest, SizeLimitsArePublishedAndRepublished) {
    TLimitedForm form(nullptr);
    form.SetBounds(10, 10, 300, 200);
    form.minTrack = {200, 150};
    form.maxTrack = {640, 480};
    ShowAndSettle(form);
    XSizeHints hints{};
    long supplied = 0;
    ASSERT_TRUE(XGetWMNormalHints(m_probe.get(), form.NativeWindow(), &hints, &supplied));
    ASSERT_TRUE(hints.flags & PMinSize);
    ASSERT_TRUE(hints.flags & PMaxSize);
    EXPECT_EQ(hints.min_width, 200);
    EXPECT_EQ(hints.min_height, 150);
    EXPECT_EQ(hints.max_width, 640);
    EXPECT_EQ(hints.max_height, 480);

    form.minTrack = {0, 0};
    form.maxTrack = {800, 600};
    form.UpdateSizeLimits();
    m_x11->Sync();
    ASSERT_TRUE(XGetWMNormalHints(m_probe.get(), form.NativeWindow(), &hints, &supplied));
    EXPECT_FALSE(hints.flags & PMinSize);
    EXPECT_EQ(hints.max_width, 800);
    EXPECT_EQ(hints.max_height, 600);
}

TEST_F(X11BackendTest, CloseRequestFromTheWindowManagerClosesTheForm) {
    auto form = MakeProbeForm(Bounds(10, 10, 240, 90));
    bool closeAsked = false;
    form->OnClose = [&](TObject*, TCloseAction&) { closeAsked = true; };
    ShowAndSettle(*form);
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = form->NativeWindow();
    event.xclient.message_type = XInternAtom(m_probe.get(), "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] =
        static_cast<long>(XInternAtom(m_probe.get(), "WM_DELETE_WINDOW", False));
    XSendEvent(m_probe.get(), form->NativeWindow(), False, NoEventMask, &event);
    XSync(m_probe.get(), False);
    ASSERT_TRUE(PumpUntil([&] { return closeAsked; }));
    EXPECT_FALSE(form->Visible());
}

TEST_F(X11BackendTest, WorkAreaFollowsNetWorkAreaAndFallsBackToTheScreen) {
    EXPECT_EQ(m_x11->ScreenBounds(), Rect(0, 0, 1024, 768));
    Display* d = m_probe.get();
    const Atom workArea = XInternAtom(d, "_NET_WORKAREA", False);
    XDeleteProperty(d, DefaultRootWindow(d), workArea);
    XSync(d, False);
    EXPECT_EQ(m_x11->WorkArea(), Rect(0, 0, 1024, 768));
    const long area[4] = {0, 24, 1024, 720};
    XChangeProperty(d, DefaultRootWindow(d), workArea, XA_CARDINAL, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(area), 4);
    XSync(d, False);
    EXPECT_EQ(m_x11->WorkArea(), Rect(0, 24, 1024, 744));
    XDeleteProperty(d, DefaultRootWindow(d), workArea);
    XSync(d, False);
}

TEST_F(X11BackendTest, WakeFromAnotherThreadEndsAWait) {
    Application().ProcessMessages(); // nothing left that would end the wait at once
    std::atomic<bool> woke{false};
    std::thread waker([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        woke = true;
        m_x11->Wake();
    });
    const auto start = std::chrono::steady_clock::now();
    m_x11->WaitForEvents(10000);
    const auto waited = std::chrono::steady_clock::now() - start;
    waker.join();
    EXPECT_TRUE(woke);
    EXPECT_GE(waited, std::chrono::milliseconds(40));
    EXPECT_LT(waited, std::chrono::seconds(5));
}

// A form with a gradient background and colour buttons: pressed and clicked by XTest, Enter
// clicks the focused one, and the window shows what the headless backend renders.
std::unique_ptr<TForm> MakeButtonForm(TRect bounds) {
    auto form = std::make_unique<TForm>(nullptr);
    form->SetBounds(bounds.left, bounds.top, bounds.Width(), bounds.Height());
    form->SetCaption("Button form");
    auto* back = new TqBackground(form.get());
    back->SetBackType(btBlend);
    back->SetEndColor(RGB(0, 0, 160));
    back->Loaded(); // as after reading the form
    auto* plain = new TqColorBtn(form.get());
    plain->SetName("Plain");
    plain->SetCaption("&Plain");
    plain->SetBounds(20, 20, 89, 33);
    plain->SetParent(form.get());
    auto* gradient = new TqGradBtn(form.get());
    gradient->SetName("Gradient");
    gradient->SetCaption("Gradient");
    gradient->SetColor(clWhite);
    gradient->SetBounds(130, 20, 89, 33);
    gradient->SetParent(form.get());
    return form;
}

TEST_F(X11BackendTest, ColourButtonsPressAndClickAndTheFormShowsAsHeadless) {
    InitializePackage();
    const TRect bounds = Bounds(60, 50, 240, 90);
    TPixelBuffer shown;
    {
        auto form = MakeButtonForm(bounds);
        auto& plain = *static_cast<TqColorBtn*>(form->FindComponent("Plain"));
        int clicks = 0;
        plain.OnClick = [&](TObject*) { ++clicks; };
        ShowAndSettle(*form);
        shown = Capture(*form);

        Display* d = m_probe.get();
        XTestFakeMotionEvent(d, 0, 60 + 50, 50 + 35, CurrentTime);
        XTestFakeButtonEvent(d, 1, True, CurrentTime);
        XSync(d, False);
        ASSERT_TRUE(PumpUntil([&] { return plain.Down(); }));
        EXPECT_EQ(clicks, 0);
        XTestFakeButtonEvent(d, 1, False, CurrentTime);
        XSync(d, False);
        ASSERT_TRUE(PumpUntil([&] { return clicks == 1; }));
        EXPECT_FALSE(plain.Down());
        EXPECT_TRUE(plain.Focused());

        FakeKey(XK_Return);
        ASSERT_TRUE(PumpUntil([&] { return clicks == 2; }));
    }
    ExpectHeadlessRendering(*MakeButtonForm(bounds), shown, "x11-buttons");
    FinalizePackage();
}

TEST_F(X11BackendTest, AWatchedPidfdEndsTheWaitAndRunsItsCallback) {
    Application().ProcessMessages();
    int error = 0;
    std::optional<TChildProcess> child = TChildProcess::Spawn({"sh", "-c", "exit 9"}, error);
    ASSERT_TRUE(child);
    const int pidfd = child->PidFd();
    std::optional<int> status;
    m_x11->WatchFd(pidfd, [&] {
        status = child->TryWait();
        if (status) m_x11->UnwatchFd(pidfd);
    });
    // Without the watch these waits would only end after their ten seconds.
    for (int i = 0; i < 100 && !status; ++i)
        m_x11->WaitForEvents(10000);
    EXPECT_EQ(status, 9);
}

TEST_F(X11BackendTest, XTestDragsMoveTheSplitterBothWaysAndReleasedOutsideTheWindow) {
    auto form = std::make_unique<TForm>(nullptr);
    form->SetBounds(100, 80, 300, 220);
    auto* split = new TqVerSplit(form.get());
    split->SetParent(form.get());
    split->SetBounds(10, 10, 200, 200);
    split->SetWhere(50);
    ShowAndSettle(*form);
    const auto drag = [&](int fromX, int toX, int toY) {
        Display* d = m_probe.get();
        XTestFakeMotionEvent(d, 0, fromX, 80 + 10 + 100, CurrentTime);
        XTestFakeButtonEvent(d, 1, True, CurrentTime);
        XSync(d, False);
        PumpUntil([&] { return split->Bar().Dragging(); });
        XTestFakeMotionEvent(d, 0, toX, toY, CurrentTime);
        XTestFakeButtonEvent(d, 1, False, CurrentTime);
        XSync(d, False);
        return PumpUntil([&] { return !split->Bar().Dragging(); });
    };
    const int barX = 100 + 10 + 3; // the bar's middle column, split position 0
    ASSERT_TRUE(drag(barX + 50, barX + 110, 80 + 10 + 140));
    EXPECT_EQ(split->WhereSplit(), 110);
    ASSERT_TRUE(drag(barX + 110, barX + 900, 700)); // far outside the window
    EXPECT_EQ(split->WhereSplit(), 194);
    ASSERT_TRUE(drag(barX + 194, barX + 20, 80 + 10 + 20));
    EXPECT_EQ(split->WhereSplit(), 20);
}

TEST_F(X11BackendTest, TheCompositeCanvasDrawsOnTheWindow) {
    auto form = MakeProbeForm(Bounds(60, 60, 240, 90));
    ShowAndSettle(*form);
    TqCompCanvas lender(nullptr);
    lender.SetControlComponent(&Probe(*form, 1));
    lender.StartPaint();
    lender.Canvas().Brush().SetColor(TColor(0x0000FF));
    lender.Canvas().FillRect(Rect(20, 20, 40, 40));
    lender.EndPaint();
    m_x11->Sync();
    const TPixelBuffer shown = Capture(*form);
    EXPECT_EQ(shown.At(10 + 30, 10 + 30),
              ColorToPixel(0x0000FF)); // the probe starts at (10, 10)
    EXPECT_EQ(shown.At(10 + 50, 10 + 30), ColorToPixel(clYellow));
}

} // namespace
