#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/controls/Menus.h"
#include "platform/controls/Timer.h"
#include "platform/controls/WindowTable.h"
#include "platform/system/Thread.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace qv;

namespace {

THeadlessBackend& Headless() {
    return static_cast<THeadlessBackend&>(Application().Backend());
}

// A windowed control that logs what happens to it and paints its colour.
class TProbe : public TCustomControl {
public:
    explicit TProbe(TComponent* owner, std::vector<std::string>* log = nullptr)
        : TCustomControl(owner), m_log(log) {
        SetControlStyle(ControlStyle() + TControlStyle{csOpaque});
        SetTabStop(true);
    }
    LRESULT dlgCode{0};
    int paints{0};

protected:
    void Note(const std::string& what) {
        if (m_log) m_log->push_back(Name() + ":" + what);
    }
    void Paint() override {
        ++paints;
        Canvas().Brush().SetColor(Color());
        Canvas().FillRect(ClientRect());
    }
    void Click() override {
        Note("click");
        TCustomControl::Click();
    }
    void MouseDown(TMouseButtonKind b, TShiftState s, int x, int y) override {
        Note("down " + std::to_string(x) + "," + std::to_string(y));
        TCustomControl::MouseDown(b, s, x, y);
    }
    void MouseUp(TMouseButtonKind b, TShiftState s, int x, int y) override {
        Note("up " + std::to_string(x) + "," + std::to_string(y));
        TCustomControl::MouseUp(b, s, x, y);
    }
    void MouseMove(TShiftState s, int x, int y) override {
        Note("move " + std::to_string(x) + "," + std::to_string(y));
        TCustomControl::MouseMove(s, x, y);
    }
    void CMMouseEnter(TMessage& m) override {
        TCustomControl::CMMouseEnter(m);
        if (m.LParam == 0) Note("enter");
    }
    void CMMouseLeave(TMessage& m) override {
        TCustomControl::CMMouseLeave(m);
        if (m.LParam == 0) Note("leave");
    }
    void WMGetDlgCode(TMessage& m) override { m.Result = dlgCode; }
    void KeyDown(unsigned& key, TShiftState s) override {
        Note("key " + std::to_string(key));
        TCustomControl::KeyDown(key, s);
    }
    void DoEnter() override {
        Note("enter-focus");
        TCustomControl::DoEnter();
    }
    void DoExit() override {
        Note("exit-focus");
        TCustomControl::DoExit();
    }

private:
    std::vector<std::string>* m_log;
};

// A push button with the classic default, cancel and accelerator behaviour.
class TTestButton : public TProbe {
public:
    using TProbe::TProbe;
    bool isDefault{false}, isCancel{false};
    TModalResult modalResult{mrNone};

protected:
    void Click() override {
        if (TCustomForm* form = ParentForm()) form->SetModalResult(modalResult);
        TProbe::Click();
    }
    void CMDialogKey(TMessage& m) override {
        const auto key = static_cast<unsigned>(m.WParam);
        if ((key == VK_RETURN && isDefault) || (key == VK_ESCAPE && isCancel)) {
            Click();
            m.Result = 1;
            return;
        }
        TProbe::CMDialogKey(m);
    }
    void CMDialogChar(TMessage& m) override {
        if (IsAccel(static_cast<unsigned>(m.WParam), Caption()) && CanFocus()) {
            Click();
            m.Result = 1;
            return;
        }
        TProbe::CMDialogChar(m);
    }
};

// A graphic control that draws only a frame (transparent inside) and can let the mouse
// through to what lies beneath.
class TGlass : public TGraphicControl {
public:
    using TGraphicControl::TGraphicControl;
    bool passMouse{false};
    int clicks{0};

protected:
    void Paint() override {
        Canvas().Brush().SetColor(clRed);
        Canvas().FrameRect(ClientRect());
    }
    void CMHitTest(TMessage& m) override {
        if (passMouse)
            m.Result = 0;
        else
            TGraphicControl::CMHitTest(m);
    }
    void Click() override {
        ++clicks;
        TGraphicControl::Click();
    }
};

class Framework : public ::testing::Test {
protected:
    void SetUp() override {
        form = new TForm(nullptr);
        form->SetBounds(100, 50, 200, 150);
        form->SetColor(clBlue);
    }
    void TearDown() override { delete form; }
    TNativeWindowId Window() const { return form->NativeWindow(); }
    void Pump() { Application().ProcessMessages(); }
    // The log without the entries that contain any of `noise`.
    std::vector<std::string> Without(std::initializer_list<const char*> noise) const {
        std::vector<std::string> kept;
        for (const auto& e : log) {
            bool skip = false;
            for (const char* n : noise)
                skip = skip || e.find(n) != std::string::npos;
            if (!skip) kept.push_back(e);
        }
        return kept;
    }
    TProbe* AddProbe(const std::string& name, TRect r, TWinControl* parent = nullptr) {
        auto* p = new TProbe(form, &log);
        p->SetName(name);
        p->SetBoundsRect(r);
        p->SetParent(parent ? parent : form);
        return p;
    }
    TForm* form{nullptr};
    std::vector<std::string> log;
};

} // namespace

TEST_F(Framework, ClickComesBeforeMouseUpOnlyForAReleaseInside) {
    AddProbe("P", {10, 10, 60, 40});
    form->Show();
    Headless().MouseDown(Window(), {20, 20});
    Headless().MouseUp(Window(), {21, 22});
    Pump();
    EXPECT_EQ(Without({"enter", "leave"}),
              (std::vector<std::string>{"P:down 10,10", "P:click", "P:up 11,12"}));

    log.clear();
    Headless().MouseDown(Window(), {20, 20});
    Headless().MouseMove(Window(), {150, 100}); // captured: still reaches P, outside
    Headless().MouseUp(Window(), {150, 100});
    Pump();
    EXPECT_EQ(Without({"enter"}), (std::vector<std::string>{"P:down 10,10", "P:move 140,90",
                                                            "P:leave", "P:up 140,90"}));

    log.clear();
    Headless().MouseDown(Window(), {20, 20});
    Headless().MouseMove(Window(), {150, 100});
    Headless().MouseMove(Window(), {30, 30}); // back inside before the release
    Headless().MouseUp(Window(), {30, 30});
    Pump();
    ASSERT_GE(log.size(), 3u);
    EXPECT_EQ(log[log.size() - 2], "P:click");
    EXPECT_EQ(log.back(), "P:up 20,20");
}

TEST_F(Framework, MouseEnterAndLeaveFollowThePointer) {
    AddProbe("A", {0, 0, 50, 50});
    AddProbe("B", {60, 0, 110, 50});
    form->Show();
    Headless().MouseMove(Window(), {10, 10});
    Headless().MouseMove(Window(), {20, 10});
    Headless().MouseMove(Window(), {70, 10});
    Headless().MouseMove(Window(), {150, 100});
    Pump();
    EXPECT_EQ(Without({"move", "focus"}),
              (std::vector<std::string>{"A:enter", "A:leave", "B:enter", "B:leave"}));
}

TEST_F(Framework, TabOrderFocusAndArrowKeysOnlyForControlsThatAskForThem) {
    TProbe* a = AddProbe("A", {0, 0, 20, 20});
    TProbe* b = AddProbe("B", {30, 0, 50, 20});
    TProbe* c = AddProbe("C", {60, 0, 80, 20});
    c->SetTabOrder(0); // C, A, B
    b->SetTabStop(false);
    form->Show();
    EXPECT_TRUE(c->Focused()); // the first in tab order
    Headless().TypeKey(Window(), VK_TAB);
    Pump();
    EXPECT_TRUE(a->Focused()); // B has no tab stop
    Headless().TypeKey(Window(), VK_TAB, 0, isShift);
    Pump();
    EXPECT_TRUE(c->Focused());

    log.clear();
    Headless().TypeKey(Window(), VK_RIGHT); // C does not want arrows: the form moves the focus
    Pump();
    EXPECT_FALSE(c->Focused());
    EXPECT_EQ(std::count(log.begin(), log.end(), "C:key 39"), 0);
    a->SetFocus();
    a->dlgCode = DLGC_WANTARROWS;
    log.clear();
    Headless().TypeKey(Window(), VK_RIGHT);
    Pump();
    EXPECT_TRUE(a->Focused());
    EXPECT_EQ(log, (std::vector<std::string>{"A:key 39"}));

    b->SetEnabled(false);
    EXPECT_FALSE(b->CanFocus());
    EXPECT_THROW(b->SetFocus(), EInvalidOperation);
}

TEST_F(Framework, EnterAndExitFollowTheFocus) {
    TProbe* a = AddProbe("A", {0, 0, 20, 20});
    TProbe* b = AddProbe("B", {30, 0, 50, 20});
    form->Show();
    log.clear();
    b->SetFocus();
    a->SetFocus();
    EXPECT_EQ(log, (std::vector<std::string>{"A:exit-focus", "B:enter-focus", "B:exit-focus",
                                             "A:enter-focus"}));
}

TEST_F(Framework, EnterAndEscapeReachTheDefaultAndCancelButtonsAndModalResultEndsShowModal) {
    TProbe* edit = AddProbe("Edit", {0, 0, 50, 20});
    auto* ok = new TTestButton(form, &log);
    ok->SetName("Ok");
    ok->SetParent(form);
    ok->SetBounds(0, 30, 50, 20);
    ok->isDefault = true;
    ok->modalResult = mrOk;
    auto* cancel = new TTestButton(form, &log);
    cancel->SetName("Cancel");
    cancel->SetParent(form);
    cancel->SetBounds(60, 30, 50, 20);
    cancel->isCancel = true;
    cancel->modalResult = mrCancel;

    // A worker presses Enter while the modal loop runs.
    form->OnShow = [&](TObject*) { QueueCall([&] { Headless().TypeKey(Window(), VK_RETURN); }); };
    edit->SetTabOrder(0);
    EXPECT_EQ(form->ShowModal(), mrOk);
    EXPECT_FALSE(form->Visible());
    EXPECT_EQ(std::count(log.begin(), log.end(), "Ok:click"), 1);

    form->OnShow = [&](TObject*) { QueueCall([&] { Headless().TypeKey(Window(), VK_ESCAPE); }); };
    EXPECT_EQ(form->ShowModal(), mrCancel);
    EXPECT_EQ(std::count(log.begin(), log.end(), "Cancel:click"), 1);
}

TEST_F(Framework, AltLetterClicksTheControlWithThatAccelerator) {
    auto* ok = new TTestButton(form, &log);
    ok->SetName("Ok");
    ok->SetParent(form);
    ok->SetCaption("&Okay");
    auto* other = new TTestButton(form, &log);
    other->SetName("Other");
    other->SetParent(form);
    other->SetCaption("Sh&ow");
    form->Show();
    Headless().Char(Window(), 'w', isAlt);
    Headless().Char(Window(), 'O', isAlt);
    Pump();
    EXPECT_EQ(Without({"focus"}), (std::vector<std::string>{"Ok:click"}));
    EXPECT_TRUE(IsAccel('o', "&Okay"));
    EXPECT_FALSE(IsAccel('o', "&&Okay"));
    EXPECT_TRUE(IsAccel('W', "Sho&w"));
}

TEST_F(Framework, InvalidateDefersAndRefreshPaintsAtOnce) {
    TProbe* p = AddProbe("P", {0, 0, 20, 20});
    form->Show();
    Pump();
    const int before = p->paints;
    p->Invalidate();
    p->Invalidate();
    EXPECT_EQ(p->paints, before);
    Pump();
    EXPECT_EQ(p->paints, before + 1); // two requests, one paint
    p->Refresh();
    EXPECT_EQ(p->paints, before + 2);
}

TEST_F(Framework, TransparentGraphicControlShowsItsParentAndPassesTheMouseOn) {
    TProbe* under = AddProbe("Under", {0, 0, 100, 100});
    under->SetColor(clLime);
    auto* glass = new TGlass(form);
    glass->SetParent(under);
    glass->SetBounds(10, 10, 30, 30);
    form->Show();
    TBitmap shot;
    form->Screenshot(shot);
    EXPECT_EQ(shot.Canvas().Pixel(10, 10), clRed);    // the glass's frame
    EXPECT_EQ(shot.Canvas().Pixel(25, 25), clLime);   // its inside shows the parent
    EXPECT_EQ(shot.Canvas().Pixel(150, 120), clBlue); // the form

    Headless().MouseDown(Window(), {25, 25});
    Headless().MouseUp(Window(), {25, 25});
    Pump();
    EXPECT_EQ(glass->clicks, 1);
    glass->passMouse = true;
    log.clear();
    Headless().MouseDown(Window(), {25, 25});
    Headless().MouseUp(Window(), {25, 25});
    Pump();
    EXPECT_EQ(glass->clicks, 1);
    EXPECT_EQ(std::count(log.begin(), log.end(), "Under:click"), 1);
}

TEST_F(Framework, ControlsAreClippedToTheirParent) {
    TProbe* panel = AddProbe("Panel", {10, 10, 40, 40});
    panel->SetColor(clLime);
    TProbe* child = AddProbe("Child", {20, 20, 60, 60}, panel); // sticks out of the panel
    child->SetColor(clYellow);
    form->Show();
    TBitmap shot;
    form->Screenshot(shot);
    EXPECT_EQ(shot.Canvas().Pixel(35, 35), clYellow);
    EXPECT_EQ(shot.Canvas().Pixel(45, 45), clBlue); // outside the panel: the form
}

TEST_F(Framework, TimersTickOnTheFakeClock) {
    auto* timer = new TTimer(form);
    int ticks = 0;
    timer->SetInterval(100);
    timer->SetOnTimer([&](TObject*) { ++ticks; });
    Headless().AdvanceClock(99);
    Pump();
    EXPECT_EQ(ticks, 0);
    Headless().AdvanceClock(1);
    Pump();
    EXPECT_EQ(ticks, 1);
    Headless().AdvanceClock(250); // late: one tick, not two
    Pump();
    EXPECT_EQ(ticks, 2);
    timer->SetEnabled(false);
    Headless().AdvanceClock(1000);
    Pump();
    EXPECT_EQ(ticks, 2);
    timer->SetEnabled(true);
    timer->SetOnTimer(nullptr); // no handler: no timer
    Headless().AdvanceClock(1000);
    Pump();
    EXPECT_EQ(ticks, 2);
}

TEST_F(Framework, HandleMessageWaitsForTheNextTimerWithoutSleeping) {
    auto* timer = new TTimer(form);
    timer->SetInterval(5000);
    timer->SetOnTimer([&](TObject*) { form->SetModalResult(mrYes); });
    EXPECT_EQ(form->ShowModal(), mrYes); // the fake clock jumps to the timer
    EXPECT_GE(Headless().NowMs(), 5000);
}

namespace {
class TWorker : public TThread {
public:
    explicit TWorker(std::function<void(TWorker&)> body) : TThread(true), m_body(std::move(body)) {}
    ~TWorker() override { StopAndJoin(); }
    using TThread::Synchronize;

protected:
    void Execute() override { m_body(*this); }

private:
    std::function<void(TWorker&)> m_body;
};
} // namespace

TEST_F(Framework, SynchronizeRunsThroughTheMessageLoopAndReraisesInTheWorker) {
    std::vector<std::string> seen;
    bool workerCaught = false;
    TWorker worker([&](TWorker& self) {
        self.Synchronize([&] { seen.push_back(TThread::IsMainThread() ? "main" : "other"); });
        try {
            self.Synchronize([] { throw EConvertError("no"); });
        } catch (const EConvertError&) {
            workerCaught = true;
        }
        self.Synchronize([&] { form->SetModalResult(mrOk); });
    });
    form->OnShow = [&](TObject*) { worker.Start(); };
    EXPECT_EQ(form->ShowModal(), mrOk);
    worker.WaitFor();
    EXPECT_EQ(seen, (std::vector<std::string>{"main"}));
    EXPECT_TRUE(workerCaught);
}

TEST_F(Framework, HooksOnAFormSeeItsSystemMessages) {
    form->Show();
    int seen = 0;
    TWindowHook hook(form->Handle(), [&](TMessage& m, const TWndMethod& next) {
        if (m.Msg == WM_GETMINMAXINFO) {
            auto* info = reinterpret_cast<TMinMaxInfo*>(m.LParam);
            info->ptMinTrackSize = {120, 90};
            ++seen;
        }
        next(m);
    });
    form->UpdateSizeLimits();
    EXPECT_EQ(seen, 1);
    EXPECT_EQ(Headless().Window(Window()).minSize, (TSize{120, 90}));
    hook.Remove();
    form->UpdateSizeLimits();
    EXPECT_EQ(Headless().Window(Window()).minSize, (TSize{0, 0}));
}

// The erase, paint and size messages the framework raises go through the window procedure:
// a hook sees them, can answer the erase itself, and the window's own handling still runs
// when the hook passes them on.
TEST_F(Framework, HooksOnAFormSeeItsEraseAndSizeMessages) {
    form->SetColor(clWhite);
    form->Show();
    Pump();
    ASSERT_EQ(form->Width(), 200);
    std::vector<UINT> seen;
    bool answerErase = false;
    TWindowHook hook(form->Handle(), [&](TMessage& m, const TWndMethod& next) {
        seen.push_back(m.Msg);
        if (m.Msg == WM_ERASEBKGND && answerErase) {
            auto* canvas = reinterpret_cast<TCanvas*>(m.WParam);
            canvas->Brush().SetColor(clRed);
            canvas->FillRect(form->ClientRect());
            m.Result = 1;
            return;
        }
        next(m);
    });
    auto pixel = [&] {
        TBitmap shot;
        form->Screenshot(shot);
        return shot.Canvas().Pixel(10, 10);
    };
    int resizes = 0;
    form->OnResize = [&](TObject*) { ++resizes; };
    TBackendEvent resized;
    resized.kind = TBackendEvent::Kind::Resized;
    resized.window = Window();
    resized.size = {260, 150};
    Headless().Inject(resized);
    Pump();
    EXPECT_EQ(resizes, 1);
    EXPECT_EQ(std::count(seen.begin(), seen.end(), WM_SIZE), 1);
    EXPECT_GE(std::count(seen.begin(), seen.end(), WM_ERASEBKGND), 1);
    EXPECT_GE(std::count(seen.begin(), seen.end(), WM_PAINT), 1);
    EXPECT_EQ(pixel(), ColorToRGB(clWhite));

    answerErase = true;
    EXPECT_EQ(pixel(), ColorToRGB(clRed));
    hook.Remove();
    seen.clear();
    EXPECT_EQ(pixel(), ColorToRGB(clWhite));
    EXPECT_TRUE(seen.empty());
}

TEST_F(Framework, PopupMenuOpensOnRightClickAndRunsTheChosenItem) {
    TProbe* p = AddProbe("P", {0, 0, 100, 100});
    auto* menu = new TPopupMenu(form);
    auto* first = new TMenuItem(form);
    first->SetCaption("First");
    auto* second = new TMenuItem(form);
    second->SetCaption("Second");
    menu->Items()->Add(first);
    menu->Items()->Add(second);
    int chosen = 0;
    second->OnClick = [&](TObject*) { chosen = 2; };
    p->SetPopupMenu(menu);
    form->Show();
    Headless().MouseDown(Window(), {10, 10}, TMouseButton::Right);
    Headless().MouseUp(Window(), {10, 10}, TMouseButton::Right);
    Pump();
    ASSERT_TRUE(menu->IsOpen());
    EXPECT_EQ(menu->PopupComponent(), p);
    TCustomForm* window = menu->MenuWindow();
    EXPECT_EQ(window->Left(), 110); // at the pointer on the screen
    Headless().MouseMove(window->NativeWindow(), {10, 2 + 20 + 5});
    Headless().MouseUp(window->NativeWindow(), {10, 2 + 20 + 5});
    Pump();
    EXPECT_EQ(chosen, 2);
    EXPECT_FALSE(menu->IsOpen());
    delete menu;
    EXPECT_EQ(p->PopupMenu(), nullptr);
}

TEST_F(Framework, TabOrderIsIndependentOfTheZOrderAndIsRestoredFromFormFiles) {
    TProbe* a = AddProbe("A", {0, 0, 20, 20});
    TProbe* b = AddProbe("B", {10, 10, 30, 30});
    b->SetTabOrder(0);
    EXPECT_EQ(b->TabOrder(), 0);
    EXPECT_EQ(a->TabOrder(), 1);
    EXPECT_EQ(form->Controls(1), b); // still painted on top
    b->SetTabOrder(99);              // clamped to the end
    EXPECT_EQ(b->TabOrder(), 1);

    // Read in an order that differs from the tab order.
    TForm loaded(nullptr);
    loaded.BeginLoading();
    auto* x = new TProbe(&loaded);
    x->SetParent(&loaded);
    x->BeginLoading();
    x->SetTabOrder(1);
    auto* y = new TProbe(&loaded);
    y->SetParent(&loaded);
    y->BeginLoading();
    y->SetTabOrder(0);
    x->Loaded();
    y->Loaded();
    loaded.Loaded();
    EXPECT_EQ(y->TabOrder(), 0);
    EXPECT_EQ(x->TabOrder(), 1);
    EXPECT_EQ(loaded.Controls(0), x);
}

TEST_F(Framework, FreeingTheFocusedControlLeavesNoDanglingFocusOrTabEntry) {
    TProbe* panel = AddProbe("Panel", {0, 0, 100, 100});
    TProbe* inner = AddProbe("Inner", {10, 10, 50, 50}, panel);
    TProbe* other = AddProbe("Other", {110, 0, 150, 40});
    form->Show();
    inner->SetFocus();
    delete panel; // takes its child with it
    EXPECT_EQ(form->ActiveControl(), nullptr);
    std::vector<TWinControl*> tabs;
    form->GetTabOrderList(tabs);
    EXPECT_EQ(tabs, (std::vector<TWinControl*>{other}));
    Headless().TypeKey(Window(), VK_TAB);
    Pump();
    EXPECT_TRUE(other->Focused());
}
