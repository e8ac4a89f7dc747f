#include "platform/controls/WindowTable.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

using namespace qv;

TEST(WindowTable, SendMessageRunsTheProcedureAndReturnsItsResult) {
    std::vector<UINT> seen;
    HWND w = AllocateHWnd([&](TMessage& m) {
        seen.push_back(m.Msg);
        m.Result = static_cast<LRESULT>(m.WParam + static_cast<WPARAM>(m.LParam));
    });
    EXPECT_EQ(SendMessage(w, WM_USER, 2, 3), 5);
    DeallocateHWnd(w);
    EXPECT_FALSE(IsWindow(w));
    EXPECT_EQ(SendMessage(w, WM_USER, 2, 3), 0);
    EXPECT_EQ(seen.size(), 1u);
}

TEST(WindowTable, HookChainsRunNewestFirstAndCanBeRemovedInAnyOrder) {
    std::string trace;
    HWND w = AllocateHWnd([&](TMessage&) { trace += "base;"; });
    auto hook = [&](std::string name, bool passOn) {
        return TWindowHook(w, [&trace, name, passOn](TMessage& m, const TWndMethod& next) {
            trace += name + ";";
            if (passOn) next(m);
        });
    };
    TWindowHook a = hook("a", true);
    TWindowHook b = hook("b", true);
    TWindowHook c = hook("c", true);
    SendMessage(w, WM_USER);
    EXPECT_EQ(trace, "c;b;a;base;");

    trace.clear();
    b.Remove(); // the middle one first
    SendMessage(w, WM_USER);
    EXPECT_EQ(trace, "c;a;base;");

    trace.clear();
    a.Remove();
    SendMessage(w, WM_USER);
    EXPECT_EQ(trace, "c;base;");

    trace.clear();
    {
        TWindowHook swallow = hook("s", false);
        SendMessage(w, WM_USER);
    } // removed when it goes out of scope
    SendMessage(w, WM_USER);
    EXPECT_EQ(trace, "s;c;base;");
    DeallocateHWnd(w);
    c.Remove(); // after the window went: harmless
}

TEST(WindowTable, PostedMessagesArriveInOrderAndSkipWindowsThatAreGone) {
    std::vector<WPARAM> got;
    HWND w = AllocateHWnd([&](TMessage& m) { got.push_back(m.WParam); });
    HWND gone = AllocateHWnd([&](TMessage&) { got.push_back(999); });
    PostMessage(w, WM_USER, 1);
    PostMessage(gone, WM_USER, 2);
    std::thread other([&] {
        for (WPARAM i = 3; i <= 5; ++i)
            PostMessage(w, WM_USER, i);
    });
    other.join();
    QueueCall([&] { got.push_back(6); });
    DeallocateHWnd(gone);
    EXPECT_TRUE(got.empty()); // nothing runs before the loop delivers it
    while (DispatchOnePosted()) {
    }
    EXPECT_EQ(got, (std::vector<WPARAM>{1, 3, 4, 5, 6}));
    EXPECT_FALSE(PostMessage(0, WM_USER));
    DeallocateHWnd(w);
}
