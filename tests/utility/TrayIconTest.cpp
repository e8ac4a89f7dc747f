// The tray icon against the recording shell of the headless backend: the shell calls each
// setter makes, the events of the shell's mouse messages in order, the menu step (with its
// pointer grab) and the default item, the shell's tip in the hint window, the parent form
// shown and hidden, the end of the session asked.

#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/controls/Form.h"
#include "platform/controls/HintWindow.h"
#include "platform/controls/Menus.h"
#include "utility/Mystd.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using namespace qv;

namespace {

class TrayIcon : public ::testing::Test {
protected:
    void SetUp() override {
        Application().SetBackend(std::make_unique<THeadlessBackend>());
        main = std::make_unique<TForm>(nullptr);
        Application().SetMainForm(main.get());
        second = std::make_unique<TForm>(nullptr);
    }
    void TearDown() override {
        second.reset();
        Application().SetMainForm(nullptr);
        main.reset();
    }
    THeadlessTrayShell& Shell() {
        return static_cast<THeadlessBackend&>(Application().Backend()).FakeTray();
    }
    std::vector<TTrayOperation> Operations() {
        std::vector<TTrayOperation> ops;
        for (const auto& call : Shell().Calls())
            ops.push_back(call.operation);
        return ops;
    }
    void Send(const TqTrayIcon& icon, UINT mouseMessage) {
        ASSERT_TRUE(Shell().Inject(icon.WindowHandle(), icon.NotifyData().uID, mouseMessage));
        Application().ProcessMessages();
    }
    // An icon on the main form that logs its events.
    TqTrayIcon& LoggedIcon() {
        auto* icon = new TqTrayIcon(main.get());
        icon->OnClick = [this](TObject*) { log.push_back("click"); };
        icon->OnDblClick = [this](TObject*) { log.push_back("dblclick"); };
        const auto mouse = [this](const char* name) {
            return [this, name](TObject*, TMouseButtonKind button, TShiftState shift, int, int) {
                log.push_back(
                    std::string(name) + std::to_string(button) +
                    (shift.Contains(ssLeft) || shift.Contains(ssRight) || shift.Contains(ssMiddle)
                         ? "+"
                         : ""));
            };
        };
        icon->OnMouseDown = mouse("down");
        icon->OnMouseUp = mouse("up");
        icon->OnRightClick = mouse("rclick");
        icon->OnMidClick = mouse("mclick");
        icon->OnRightDblClick = mouse("rdbl");
        icon->SetActive(true);
        Application().ProcessMessages();
        return *icon;
    }

    std::unique_ptr<TForm> main;
    std::unique_ptr<TForm> second;
    std::vector<std::string> log;
};

} // namespace

TEST_F(TrayIcon, EveryChangeGoesToTheShellAtOnceAndAgainFromTheQueue) {
    auto* icon = new TqTrayIcon(main.get());
    icon->SetTag(7);
    icon->SetToolTip(std::string(70, 'x'));
    EXPECT_EQ(icon->ToolTip().size(), 62u);
    Application().ProcessMessages();
    EXPECT_TRUE(Shell().Calls().empty()); // not active: no shell call at all

    icon->SetActive(true);
    EXPECT_EQ(Operations(), (std::vector{TTrayOperation::Add}));
    const TTrayIconRecord& added = Shell().Calls().back().record;
    EXPECT_EQ(added.window, icon->WindowHandle());
    EXPECT_EQ(added.id, 7u);
    EXPECT_EQ(added.flags, 7u);
    EXPECT_EQ(added.callbackMessage, 1026u);
    EXPECT_EQ(added.tip, std::string(62, 'x'));
    EXPECT_EQ(icon->NotifyData().cbSize, 88u);
    Application().ProcessMessages();
    EXPECT_EQ(Operations(), (std::vector{TTrayOperation::Add, TTrayOperation::Modify}));

    Shell().ClearCalls();
    icon->SetToolTip("Tip");
    EXPECT_EQ(Operations(), (std::vector{TTrayOperation::Modify}));
    Application().ProcessMessages();
    EXPECT_EQ(Operations(), (std::vector{TTrayOperation::Modify, TTrayOperation::Modify}));
    EXPECT_EQ(Shell().Icons().begin()->second.tip, "Tip");

    Shell().ClearCalls();
    icon->SetActive(false);
    EXPECT_EQ(Operations(), (std::vector{TTrayOperation::Delete}));
    EXPECT_TRUE(Shell().Icons().empty());
    delete icon; // inactive: nothing more to delete
    EXPECT_EQ(Operations(), (std::vector{TTrayOperation::Delete}));
}

TEST_F(TrayIcon, ARefusedAddLeavesActiveTrueAndTwoIconsMayShareATag) {
    Shell().SetHostPresent(false);
    TqTrayIcon refused(main.get());
    refused.SetActive(true);
    EXPECT_TRUE(refused.Active());
    EXPECT_TRUE(Shell().Icons().empty());

    Shell().SetHostPresent(true);
    TqTrayIcon first(main.get()), second(main.get());
    first.SetTag(1);
    second.SetTag(1);
    first.SetActive(true);
    second.SetActive(true);
    EXPECT_EQ(Shell().Icons().size(), 2u); // told apart by their windows
}

TEST_F(TrayIcon, ClicksNeedADownAndADoubleClickIsReportedOnce) {
    TqTrayIcon& icon = LoggedIcon();
    Send(icon, WM_LBUTTONDOWN);
    Send(icon, WM_LBUTTONUP);
    Send(icon, WM_LBUTTONDBLCLK);
    Send(icon, WM_LBUTTONUP);
    EXPECT_EQ(log, (std::vector<std::string>{"down0+", "click", "up0+", "dblclick", "up0+"}));

    log.clear();
    Send(icon, WM_RBUTTONUP); // pressed elsewhere: only the up
    Send(icon, WM_RBUTTONDOWN);
    Send(icon, WM_RBUTTONUP);
    Send(icon, WM_RBUTTONDBLCLK);
    Send(icon, WM_MBUTTONDOWN);
    Send(icon, WM_MBUTTONUP);
    EXPECT_EQ(log, (std::vector<std::string>{"up1+", "down1+", "rclick1+", "up1+", "rdbl1+",
                                             "down2+", "mclick2+", "up2+"}));
}

TEST_F(TrayIcon, ThePointIsTheCursorOnTheScreen) {
    TqTrayIcon& icon = LoggedIcon();
    main->SetBounds(100, 50, 200, 100);
    main->Show();
    static_cast<THeadlessBackend&>(Application().Backend())
        .MouseMove(main->NativeWindow(), {10, 20});
    Application().ProcessMessages();
    TPoint seen{-1, -1};
    icon.OnMouseMove = [&](TObject*, TShiftState, int x, int y) { seen = {x, y}; };
    Send(icon, WM_MOUSEMOVE);
    EXPECT_EQ(seen, (TPoint{110, 70}));
}

TEST_F(TrayIcon, TheDefaultItemRunsOnADoubleClickUnlessVetoed) {
    TqTrayIcon& icon = LoggedIcon();
    auto* menu = new TPopupMenu(main.get());
    int ran = 0;
    for (int i = 0; i < 2; ++i) {
        auto* item = new TMenuItem(menu);
        item->SetCaption("Item " + std::to_string(i));
        item->SetDefault(i == 1);
        item->OnClick = [&ran, i](TObject*) { ran += i; };
        menu->Items()->Add(item);
    }
    icon.SetPopupMenu(menu);
    Send(icon, WM_LBUTTONDBLCLK);
    EXPECT_EQ(ran, 0); // DoDefaultMenu is off
    EXPECT_EQ(log, (std::vector<std::string>{"dblclick"}));

    log.clear();
    icon.SetDoDefaultMenu(true);
    Send(icon, WM_LBUTTONDBLCLK);
    EXPECT_EQ(ran, 1);
    EXPECT_TRUE(log.empty());

    icon.OnDefaultMenu = [](TObject*, bool& doDefault) { doDefault = false; };
    Send(icon, WM_LBUTTONDBLCLK);
    EXPECT_EQ(ran, 1);
    EXPECT_EQ(log, (std::vector<std::string>{"dblclick"}));

    delete menu; // the removal notification clears the reference
    EXPECT_EQ(icon.PopupMenu(), nullptr);
    Send(icon, WM_LBUTTONDBLCLK);
}

TEST_F(TrayIcon, TheMenuStepPopsTheMenuOfTheButtonAtTheCursor) {
    TqTrayIcon& icon = LoggedIcon();
    main->Show();
    auto* left = new TPopupMenu(main.get());
    auto* right = new TPopupMenu(main.get());
    for (TPopupMenu* m : {left, right}) {
        auto* item = new TMenuItem(m);
        item->SetCaption("Quit");
        m->Items()->Add(item);
    }
    icon.SetLeftPopupMenu(left);
    icon.SetPopupMenu(right);
    std::vector<std::string> menus;
    icon.OnleftMenu = [&](TObject*) { menus.push_back("left"); };
    icon.OnRightMenu = [&](TObject*) { menus.push_back("right"); };
    Send(icon, WM_LBUTTONDOWN);
    Send(icon, WM_LBUTTONUP);
    EXPECT_TRUE(left->IsOpen());
    EXPECT_EQ(left->PopupComponent(), &icon);
    Send(icon, WM_RBUTTONDOWN);
    Send(icon, WM_RBUTTONUP);
    EXPECT_TRUE(right->IsOpen());
    EXPECT_EQ(menus, (std::vector<std::string>{"left", "right"}));
    right->CloseMenu();
    left->CloseMenu();

    right->SetAutoPopup(false);
    Send(icon, WM_RBUTTONDOWN);
    Send(icon, WM_RBUTTONUP);
    EXPECT_FALSE(right->IsOpen());
    EXPECT_EQ(menus.size(), 2u);
}

TEST_F(TrayIcon, TheMenuGrabsThePointerAndAPressOutsideClosesItWithoutChoosing) {
    TqTrayIcon& icon = LoggedIcon();
    auto* menu = new TPopupMenu(main.get());
    auto* item = new TMenuItem(menu);
    item->SetCaption("Quit");
    int chosen = 0;
    item->OnClick = [&](TObject*) { ++chosen; };
    menu->Items()->Add(item);
    icon.SetPopupMenu(menu);
    Send(icon, WM_RBUTTONDOWN);
    Send(icon, WM_RBUTTONUP);
    ASSERT_TRUE(menu->IsOpen());
    auto& headless = static_cast<THeadlessBackend&>(Application().Backend());
    const TNativeWindowId window = menu->MenuWindow()->NativeWindow();
    EXPECT_TRUE(headless.Window(window).grabbing);
    // Left of the menu at the height of its item: only the grab brings this press.
    headless.MouseDown(window, {-50, 10});
    headless.MouseUp(window, {-50, 10});
    Application().ProcessMessages();
    EXPECT_FALSE(menu->IsOpen());
    EXPECT_EQ(chosen, 0);
}

TEST_F(TrayIcon, TheShellsTipShowsInTheHintWindowAfterThePause) {
    TqTrayIcon& icon = LoggedIcon();
    icon.SetToolTip("Tray tip");
    Application().ProcessMessages();
    auto& headless = static_cast<THeadlessBackend&>(Application().Backend());
    const auto hintShown = [] {
        return Application().HintWindow() && Application().HintWindow()->Visible();
    };
    ASSERT_TRUE(Shell().InjectHover(icon.WindowHandle(), icon.NotifyData().uID, true, {300, 5}));
    Application().ProcessMessages();
    EXPECT_FALSE(hintShown());
    headless.AdvanceClock(Application().HintPause());
    Application().ProcessMessages();
    ASSERT_TRUE(hintShown());
    EXPECT_EQ(Application().HintWindow()->Caption(), "Tray tip");
    EXPECT_EQ(Application().HintWindow()->Left(), 300);
    EXPECT_GT(Application().HintWindow()->Top(), 5); // below the pointer
    // Moves over the application's forms do not take the shell's tip away; leaving does.
    main->Show();
    headless.MouseMove(main->NativeWindow(), {5, 5});
    Application().ProcessMessages();
    EXPECT_TRUE(hintShown());
    Shell().InjectHover(icon.WindowHandle(), icon.NotifyData().uID, false, {});
    EXPECT_FALSE(hintShown());
    headless.AdvanceClock(Application().HintPause());
    Application().ProcessMessages();
    EXPECT_FALSE(hintShown());
}

TEST_F(TrayIcon, HideParentFormActsOnSecondaryFormsOnlyAndFromTheQueue) {
    second->Show();
    main->Show();
    auto* onSecond = new TqTrayIcon(second.get());
    onSecond->SetHideParentForm(true);
    EXPECT_TRUE(second->Visible()); // the posted message has not run yet
    Application().ProcessMessages();
    EXPECT_FALSE(second->Visible());
    onSecond->SetHideParentForm(false);
    Application().ProcessMessages();
    EXPECT_TRUE(second->Visible());

    auto* onMain = new TqTrayIcon(main.get());
    onMain->SetHideParentForm(true);
    Application().ProcessMessages();
    EXPECT_TRUE(main->Visible());

    // The constructor on a hidden secondary form shows it (HideParentForm is false).
    second->Hide();
    new TqTrayIcon(second.get());
    Application().ProcessMessages();
    EXPECT_TRUE(second->Visible());
}

TEST_F(TrayIcon, ABalloonNeedsAShownIcon) {
    auto* icon = new TqTrayIcon(main.get());
    EXPECT_FALSE(icon->ShowBalloon("Hidden"));
    icon->SetActive(true);
    EXPECT_TRUE(icon->ShowBalloon("Backup done"));
    EXPECT_EQ(Shell().Messages(), (std::vector<std::string>{"Backup done"}));
}

TEST_F(TrayIcon, TheEndOfTheSessionIsAskedForTheMainFormOnly) {
    auto* onMain = new TqTrayIcon(main.get());
    auto* onSecond = new TqTrayIcon(second.get());
    EXPECT_EQ(SendMessage(onMain->WindowHandle(), WM_QUERYENDSESSION), 1);
    onMain->OnAskEndSession = [](bool& doEnd) { doEnd = false; };
    EXPECT_EQ(SendMessage(onMain->WindowHandle(), WM_QUERYENDSESSION), 0);
    int asked = 0;
    onSecond->OnAskEndSession = [&](bool&) { ++asked; };
    EXPECT_EQ(SendMessage(onSecond->WindowHandle(), WM_QUERYENDSESSION), 0);
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(SendMessage(onMain->WindowHandle(), WM_ENDSESSION), 0);
}

TEST_F(TrayIcon, WithoutAFormTheConstructorFailsAndFreesItsWindow) {
    TComponent holder(nullptr);
    HWND probe = AllocateHWnd([](TMessage&) {});
    DeallocateHWnd(probe);
    EXPECT_THROW(TqTrayIcon icon(&holder), EComponentError);
    // Handles are handed out in order: the failed constructor's window came next, and is gone.
    EXPECT_FALSE(IsWindow(probe + 1));
}
