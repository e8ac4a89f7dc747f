// The tray icon in a real notification area: Debian's trayer on the test's Xvfb server. The
// icon docks (reparented into the host, mapped, sized by it), XTest clicks give the events,
// and when trayer is killed the icon is withdrawn and docks again in a new trayer. Skipped
// when trayer is not installed.

// GoogleTest comes before Xlib, whose macros (None, Bool) clash with its names.
#include <gtest/gtest.h>

#include "platform/graphics/ImageIO.h"
#include "utility/Mystd.h"

#include "X11Fixture.h"

#include "platform/backend/X11Tray.h"

#include <csignal>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

using namespace qv;
using qv::test::TX11Fixture;

namespace {

class TrayInX11 : public TX11Fixture {
protected:
    void TearDown() override {
        Application().SetMainForm(nullptr);
        m_form.reset();
        StopTrayer();
        TX11Fixture::TearDown();
    }
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
    TqTrayIcon* m_icon{nullptr};
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
