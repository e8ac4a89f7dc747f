// The tray icon in a real notification area: Debian's trayer on the test's Xvfb server. The
// icon docks (reparented into the host, mapped, sized by it), XTest clicks give the events,
// the tip shows in the hint window, the menu grabs the pointer and closes on a press
// elsewhere, and when trayer is killed (also with the menu open, also ten times over) the
// icon is withdrawn and docks again in a new trayer. Skipped when trayer is not installed. A
// host of the test's own asks for a 32-bit visual.

// GoogleTest comes before Xlib, whose macros (None, Bool) clash with its names.
#include <gtest/gtest.h>

#include "platform/graphics/ImageIO.h"
#include "utility/Mystd.h"

#include "X11Fixture.h"

#include "platform/backend/X11Tray.h"
#include "platform/controls/HintWindow.h"
#include "platform/controls/Menus.h"

#include <X11/Xatom.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

using namespace qv;
using qv::test::TX11Fixture;

namespace {

class TrayInX11 : public TX11Fixture {
protected:
    void SetUp() override {
        // XEmbed even on a desktop whose session bus has a StatusNotifierItem watcher.
        if (const char* tray = std::getenv("QV_TRAY")) m_savedTray = tray;
        setenv("QV_TRAY", "xembed", 1);
        TX11Fixture::SetUp();
        if (m_probe) FakeMotion(Away); // no tip from an earlier test's pointer
    }
    void TearDown() override {
        Application().SetMainForm(nullptr);
        m_form.reset();
        StopTrayer();
        TX11Fixture::TearDown();
        m_savedTray ? setenv("QV_TRAY", m_savedTray->c_str(), 1) : unsetenv("QV_TRAY");
    }
    std::optional<std::string> m_savedTray;
    static constexpr TPoint Away{700, 600}; // nothing of the tests' there
    bool StartTrayer() {
        int error = 0;
        m_trayer = TChildProcess::Spawn({"env", "DISPLAY=" + s_server->DisplayName(), "trayer",
                                         "--edge", "top", "--align", "left", "--height", "32",
                                         "--widthtype", "request", "--SetDockType", "false"},
                                        error, {.newSession = true, .stderrPath = "/dev/null"});
        if (!m_trayer) return false;
        Display* d = m_probe.get();
        const Atom selection = XInternAtom(d, "_NET_SYSTEM_TRAY_S0", False);
        return PumpUntil([&] {
                   return XGetSelectionOwner(d, selection) != None || m_trayer->TryWait();
               }) &&
               !m_trayer->Ended();
    }
    void StopTrayer() {
        if (!m_trayer) return;
        kill(m_trayer->Pid(), SIGTERM);
        m_trayer->Wait();
        m_trayer.reset();
    }
    Window IconWindow() const {
        return m_x11->XEmbedTray()->IconWindow(m_icon->WindowHandle(), m_icon->NotifyData().uID);
    }
    bool Docked() {
        Display* d = m_probe.get();
        Window root = 0, parent = 0, *children = nullptr;
        unsigned count = 0;
        if (!XQueryTree(d, IconWindow(), &root, &parent, &children, &count)) return false;
        if (children) XFree(children);
        XWindowAttributes attributes{};
        XGetWindowAttributes(d, IconWindow(), &attributes);
        return parent != root && attributes.map_state == IsViewable;
    }
    bool Withdrawn() {
        XWindowAttributes attributes{};
        XGetWindowAttributes(m_probe.get(), IconWindow(), &attributes);
        return attributes.map_state != IsViewable;
    }
    TPoint IconCentre() {
        Display* d = m_probe.get();
        XWindowAttributes attributes{};
        XGetWindowAttributes(d, IconWindow(), &attributes);
        int x = 0, y = 0;
        Window child = 0;
        XTranslateCoordinates(d, IconWindow(), DefaultRootWindow(d), attributes.width / 2,
                              attributes.height / 2, &x, &y, &child);
        return {x, y};
    }
    // The host's top-level window as the screen shows it, written to the test output
    // (tray-docked.png), for the documentation.
    void WriteHostPicture() {
        Display* d = m_probe.get();
        Window window = IconWindow(), root = 0, parent = 0, *children = nullptr;
        unsigned count = 0;
        while (XQueryTree(d, window, &root, &parent, &children, &count) && parent != root) {
            if (children) XFree(children);
            children = nullptr;
            window = parent;
        }
        if (children) XFree(children);
        XWindowAttributes host{};
        XGetWindowAttributes(d, window, &host);
        XImage* image = XGetImage(d, root, host.x, host.y, static_cast<unsigned>(host.width),
                                  static_cast<unsigned>(host.height), AllPlanes, ZPixmap);
        if (!image) return;
        TPixelBuffer pixels(host.width, host.height, 0);
        for (int y = 0; y < host.height; ++y)
            for (int x = 0; x < host.width; ++x)
                pixels.At(x, y) = static_cast<std::uint32_t>(XGetPixel(image, x, y)) & 0xFFFFFF;
        XDestroyImage(image);
        const std::filesystem::path out = QV_TEST_OUT;
        std::filesystem::create_directories(out);
        WriteFileBytes((out / "tray-docked.png").string(), EncodePng(pixels, false));
    }
    void MakeIcon() {
        m_form = std::make_unique<TForm>(nullptr);
        Application().SetMainForm(m_form.get()); // so that the icon leaves it hidden
        m_icon = new TqTrayIcon(m_form.get());
        m_icon->SetToolTip("Test icon");
        m_icon->OnClick = [this](TObject*) { ++m_clicks; };
        m_icon->OnDblClick = [this](TObject*) { ++m_doubleClicks; };
        m_icon->SetActive(true);
    }

    std::optional<TChildProcess> m_trayer;
    std::unique_ptr<TForm> m_form;
    // A menu of one item for the right button; its clicks are counted.
    TPopupMenu& AddMenu() {
        auto* menu = new TPopupMenu(m_form.get());
        auto* item = new TMenuItem(menu);
        item->SetCaption("Quit");
        item->OnClick = [this](TObject*) { ++m_chosen; };
        menu->Items()->Add(item);
        m_icon->SetPopupMenu(menu);
        return *menu;
    }
    bool MenuShown(const TPopupMenu& menu) const {
        return menu.IsOpen() && m_x11->IsMapped(menu.MenuWindow()->NativeWindow());
    }
    // An icon with a menu docked in trayer, its menu opened by a right click.
    TPopupMenu& OpenMenuOfDockedIcon() {
        MakeIcon();
        TPopupMenu& menu = AddMenu();
        EXPECT_TRUE(PumpUntil([&] { return Docked(); }));
        FakeClick(IconCentre(), 3);
        EXPECT_TRUE(PumpUntil([&] { return MenuShown(menu); }));
        return menu;
    }
    // The windows on the server that carry _XEMBED_INFO under `window`: icon windows, ours
    // (docked or withdrawn) and any left behind.
    unsigned EmbeddableWindows(Window window) {
        Display* d = m_probe.get();
        Atom type = 0;
        int format = 0;
        unsigned long items = 0, after = 0;
        unsigned char* data = nullptr;
        XGetWindowProperty(d, window, XInternAtom(d, "_XEMBED_INFO", False), 0, 2, False,
                           AnyPropertyType, &type, &format, &items, &after, &data);
        if (data) XFree(data);
        unsigned count = type != 0 ? 1 : 0;
        Window root = 0, parent = 0, *children = nullptr;
        unsigned n = 0;
        if (!XQueryTree(d, window, &root, &parent, &children, &n)) return count;
        for (unsigned i = 0; i < n; ++i)
            count += EmbeddableWindows(children[i]);
        if (children) XFree(children);
        return count;
    }
    bool HintShown() {
        const THintWindow* hint = Application().HintWindow();
        return hint && hint->Visible() && m_x11->IsMapped(hint->NativeWindow());
    }

    TqTrayIcon* m_icon{nullptr};
    int m_chosen{0};
    int m_clicks{0};
    int m_doubleClicks{0};
};

} // namespace

TEST_F(TrayInX11, TheIconDocksClicksAndDocksAgainInANewHost) {
    if (!StartTrayer()) GTEST_SKIP() << "trayer is not installed or did not start";
    MakeIcon();
    ASSERT_NE(m_x11->XEmbedTray(), nullptr);
    ASSERT_TRUE(PumpUntil([&] { return Docked(); }));
    XWindowAttributes attributes{};
    XGetWindowAttributes(m_probe.get(), IconWindow(), &attributes);
    EXPECT_GT(attributes.width, 1); // sized by the host
    EXPECT_GT(attributes.height, 1);
    PumpUntil([] { return false; }, 200); // painted
    WriteHostPicture();

    EXPECT_TRUE(m_icon->ShowBalloon("Hello from the test")); // sent to the host
    FakeClick(IconCentre());
    EXPECT_TRUE(PumpUntil([&] { return m_clicks == 1; }));
    FakeClick(IconCentre()); // the second press is a double click
    EXPECT_TRUE(PumpUntil([&] { return m_doubleClicks == 1; }));

    StopTrayer();
    EXPECT_TRUE(PumpUntil([&] { return Withdrawn(); }));
    ASSERT_TRUE(StartTrayer());
    EXPECT_TRUE(PumpUntil([&] { return Docked(); }));
}

TEST_F(TrayInX11, AnIconAddedWithoutAHostDocksWhenOneStarts) {
    MakeIcon();
    ASSERT_NE(m_x11->XEmbedTray(), nullptr);
    PumpUntil([] { return false; }, 100);
    EXPECT_FALSE(Docked());
    if (!StartTrayer()) GTEST_SKIP() << "trayer is not installed or did not start";
    EXPECT_TRUE(PumpUntil([&] { return Docked(); }));
}

TEST_F(TrayInX11, TheTipShowsOnTheIconAndGoesWhenThePointerLeaves) {
    if (!StartTrayer()) GTEST_SKIP() << "trayer is not installed or did not start";
    MakeIcon();
    ASSERT_TRUE(PumpUntil([&] { return Docked(); }));
    FakeMotion(IconCentre());
    ASSERT_TRUE(PumpUntil([&] { return HintShown(); }));
    const THintWindow& hint = *Application().HintWindow();
    EXPECT_EQ(hint.Caption(), "Test icon");
    EXPECT_GT(hint.Top(), IconCentre().y); // below the pointer
    PumpUntil([] { return false; }, 100);  // painted
    m_x11->Sync();
    const TPixelBuffer shown = Capture(hint);
    int text = 0; // pixels of the text, darker than the info colour around it
    for (int y = 3; y < shown.Height() - 3; ++y)
        for (int x = 3; x < shown.Width() - 3; ++x)
            text += (shown.At(x, y) & 0xFF) < 0x80;
    EXPECT_GT(text, 10);
    FakeMotion(Away);
    EXPECT_TRUE(PumpUntil([&] { return !HintShown(); }));
}

TEST_F(TrayInX11, TheMenuClosesOnAPressElsewhereOnTheScreen) {
    if (!StartTrayer()) GTEST_SKIP() << "trayer is not installed or did not start";
    TPopupMenu& menu = OpenMenuOfDockedIcon();
    ASSERT_TRUE(MenuShown(menu));
    // The root is no window of the application's: only the grab brings the press here.
    FakeClick(Away);
    EXPECT_TRUE(PumpUntil([&] { return !menu.IsOpen(); }));
    EXPECT_EQ(m_chosen, 0);
    // Open again (by the left button: a second right press so soon would be a double click),
    // the menu still works: its item closes it.
    m_icon->SetLeftPopupMenu(&menu);
    FakeClick(IconCentre());
    ASSERT_TRUE(PumpUntil([&] { return MenuShown(menu); }));
    const TCustomForm& window = *menu.MenuWindow();
    FakeClick(OnScreen(window, {window.ClientWidth() / 2, 12}));
    EXPECT_TRUE(PumpUntil([&] { return m_chosen == 1 && !menu.IsOpen(); }));
}

TEST_F(TrayInX11, AHostKilledWithTheMenuOpenAndRestartedTenTimes) {
    if (!StartTrayer()) GTEST_SKIP() << "trayer is not installed or did not start";
    TPopupMenu& menu = OpenMenuOfDockedIcon();
    ASSERT_TRUE(MenuShown(menu));
    StopTrayer();
    ASSERT_TRUE(PumpUntil([&] { return Withdrawn(); }));
    // The menu is the application's: it stays and still closes on a press elsewhere.
    FakeClick(Away);
    EXPECT_TRUE(PumpUntil([&] { return !menu.IsOpen(); }));
    for (int round = 0; round < 10; ++round) {
        ASSERT_TRUE(StartTrayer());
        ASSERT_TRUE(PumpUntil([&] { return Docked(); })) << "round " << round;
        EXPECT_EQ(EmbeddableWindows(DefaultRootWindow(m_probe.get())), 1u) << "round " << round;
        StopTrayer();
        ASSERT_TRUE(PumpUntil([&] { return Withdrawn(); })) << "round " << round;
    }
    ASSERT_TRUE(StartTrayer());
    EXPECT_TRUE(PumpUntil([&] { return Docked(); }));
    FakeClick(IconCentre());
    EXPECT_TRUE(PumpUntil([&] { return m_clicks == 1; }));
}

// A host of the test's own on the probe connection: it owns the tray selection, asks for a
// 32-bit visual and takes the icon into a window of its own when asked to dock it.
TEST_F(TrayInX11, AHostWithA32BitVisualGetsAnIconWithAlpha) {
    Display* d = m_probe.get();
    XVisualInfo wanted{};
    wanted.screen = DefaultScreen(d);
    wanted.depth = 32;
    wanted.c_class = TrueColor;
    int matches = 0;
    XVisualInfo* found =
        XGetVisualInfo(d, VisualScreenMask | VisualDepthMask | VisualClassMask, &wanted, &matches);
    if (!found || matches == 0) GTEST_SKIP() << "the server has no 32-bit TrueColor visual";
    const VisualID visual = found->visualid;
    XFree(found);
    const Window root = DefaultRootWindow(d);
    const Window host = XCreateSimpleWindow(d, root, 500, 500, 48, 48, 0, 0, 0x808080);
    XSelectInput(d, host, SubstructureNotifyMask);
    XMapWindow(d, host);
    const long visualId = static_cast<long>(visual);
    XChangeProperty(d, host, XInternAtom(d, "_NET_SYSTEM_TRAY_VISUAL", False), XA_VISUALID, 32,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(&visualId), 1);
    XSetSelectionOwner(d, XInternAtom(d, "_NET_SYSTEM_TRAY_S0", False), host, CurrentTime);
    XSync(d, False);

    m_form = std::make_unique<TForm>(nullptr);
    Application().SetMainForm(m_form.get());
    m_icon = new TqTrayIcon(m_form.get());
    TPixelBuffer picture(16, 16, 0xFFFF0000); // opaque red left half, transparent right half
    for (int y = 0; y < 16; ++y)
        for (int x = 8; x < 16; ++x)
            picture.At(x, y) = 0;
    TIcon icon;
    icon.SetImage(picture);
    m_icon->SetIcon(&icon);
    m_icon->SetActive(true);
    m_x11->Sync(); // the window exists on the server before the probe asks
    const Window xid = IconWindow();
    ASSERT_NE(xid, 0u);
    XWindowAttributes attributes{};
    ASSERT_TRUE(XGetWindowAttributes(d, xid, &attributes));
    EXPECT_EQ(attributes.depth, 32);
    EXPECT_EQ(XVisualIDFromVisual(attributes.visual), visual);

    XReparentWindow(d, xid, host, 12, 12); // what a host does with the dock request
    XMapWindow(d, xid);
    XSync(d, False);
    ASSERT_TRUE(PumpUntil([&] { return Docked(); }));
    PumpUntil([] { return false; }, 100); // painted
    m_x11->Sync();
    XImage* image = XGetImage(d, xid, 0, 0, 24, 24, AllPlanes, ZPixmap);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(XGetPixel(image, 2, 12), 0xFFFF0000ul);
    EXPECT_EQ(XGetPixel(image, 21, 12), 0ul);
    XDestroyImage(image);

    m_icon->SetActive(false); // before its window goes with the host's
    XDestroyWindow(d, host);
    XSync(d, False);
}
