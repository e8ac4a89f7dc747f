#pragma once
// The fixture of the tests on a private Xvfb server: one server per test suite, the X11
// backend installed for each test, XTest input through a second connection, and the window's
// pixels as the server holds them. Tests skip themselves when no X server can be started,
// unless QV_REQUIRE_X11 is set (CI), which turns the skip into a failure.

// GoogleTest comes before Xlib, whose macros (None, Bool) clash with its names.
#include <gtest/gtest.h>

#include "XvfbServer.h"

#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/controls/Form.h"
#include "platform/graphics/Bitmap.h"
#include "platform/graphics/ImageIO.h"

#include "platform/backend/X11Backend.h"

#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

// Xlib names an event type KeyPress; in the framework it is a control's method.
#undef KeyPress

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace qv::test {

class TX11Fixture : public ::testing::Test {
protected:
    static void SetUpTestSuite() { s_server = TXvfbServer::Start(); }
    static void TearDownTestSuite() { s_server.reset(); }

    void SetUp() override {
        if (!s_server && std::getenv("QV_REQUIRE_X11"))
            FAIL() << "QV_REQUIRE_X11 is set but no Xvfb server could be started";
        if (!s_server) GTEST_SKIP() << "no X server could be started (is Xvfb installed?)";
        auto backend = TX11Backend::Open(s_server->DisplayName().c_str());
        m_probe = OpenDisplay(s_server->DisplayName().c_str());
        if (!backend || !m_probe) GTEST_SKIP() << "the X server does not answer";
        m_x11 = backend.get();
        Application().SetBackend(std::move(backend));
    }
    void TearDown() override {
        if (m_x11) Application().SetBackend(std::make_unique<THeadlessBackend>());
    }

    // Runs the application's loop until `done` holds or twenty seconds pass (a generous bound
    // for a loaded machine; the wait ends as soon as `done` holds).
    bool PumpUntil(const std::function<bool()>& done) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!done()) {
            if (std::chrono::steady_clock::now() > deadline) return false;
            m_x11->WaitForEvents(20);
            Application().ProcessMessages();
        }
        return true;
    }
    // Shows the form and waits until its window is mapped and painted on the server.
    void ShowAndSettle(TForm& form) {
        form.Show();
        ASSERT_TRUE(PumpUntil([&] { return m_x11->IsMapped(form.NativeWindow()); }));
        PumpUntil([&] { return false; }, 100);
        m_x11->Sync();
    }
    bool PumpUntil(const std::function<bool()>& done, int ms) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
        while (!done() && std::chrono::steady_clock::now() < deadline) {
            m_x11->WaitForEvents(10);
            Application().ProcessMessages();
        }
        return done();
    }

    void FakeMotion(TPoint screen) {
        XTestFakeMotionEvent(m_probe.get(), 0, screen.x, screen.y, CurrentTime);
        XSync(m_probe.get(), False);
    }
    void FakeButton(unsigned button, bool down) {
        XTestFakeButtonEvent(m_probe.get(), button, down ? True : False, CurrentTime);
        XSync(m_probe.get(), False);
    }
    void FakeClick(TPoint screen, unsigned button = 1) {
        FakeMotion(screen);
        FakeButton(button, true);
        FakeButton(button, false);
    }
    void FakeKeyEvent(KeySym keysym, bool down) {
        Display* d = m_probe.get();
        XTestFakeKeyEvent(d, XKeysymToKeycode(d, keysym), down ? True : False, CurrentTime);
        XSync(d, False);
    }
    void FakeKey(KeySym keysym) {
        FakeKeyEvent(keysym, true);
        FakeKeyEvent(keysym, false);
    }
    // The screen point of a control's client point.
    static TPoint OnScreen(const TControl& control, TPoint client) {
        return control.ClientToScreen(client);
    }
    // The window's pixels as the server holds them.
    TPixelBuffer Capture(const TCustomForm& form) {
        XImage* image =
            XGetImage(m_probe.get(), form.NativeWindow(), 0, 0, static_cast<unsigned>(form.Width()),
                      static_cast<unsigned>(form.Height()), AllPlanes, ZPixmap);
        TPixelBuffer pixels(form.Width(), form.Height(), 0);
        if (!image) return pixels;
        for (int y = 0; y < form.Height(); ++y)
            for (int x = 0; x < form.Width(); ++x)
                pixels.At(x, y) = static_cast<std::uint32_t>(XGetPixel(image, x, y)) & 0xFFFFFF;
        XDestroyImage(image);
        return pixels;
    }

    // Switches to the headless backend, shows `form` there and expects what the server
    // showed (`shown`) pixel for pixel; the two pictures go to the build folder otherwise.
    void ExpectHeadlessRendering(TForm& form, const TPixelBuffer& shown, const std::string& name) {
        Application().SetBackend(std::make_unique<THeadlessBackend>());
        m_x11 = nullptr;
        form.Show();
        Application().ProcessMessages();
        const auto& headless = static_cast<THeadlessBackend&>(Application().Backend());
        const TPixelBuffer& expected = headless.Window(form.NativeWindow()).presented;
        ASSERT_EQ(expected.Width(), shown.Width());
        int differing = 0;
        for (int y = 0; y < expected.Height(); ++y)
            for (int x = 0; x < expected.Width(); ++x)
                differing += expected.At(x, y) != shown.At(x, y);
        if (differing != 0) {
            const std::filesystem::path out = QV_TEST_OUT;
            std::filesystem::create_directories(out);
            WriteFileBytes((out / (name + "-shown.png")).string(), EncodePng(shown, false));
            WriteFileBytes((out / (name + "-expected.png")).string(), EncodePng(expected, false));
        }
        EXPECT_EQ(differing, 0) << "see " << name << "-shown.png and " << name
                                << "-expected.png in " << QV_TEST_OUT;
    }

    static inline std::unique_ptr<TXvfbServer> s_server;
    TX11Backend* m_x11{nullptr};
    TDisplayPtr m_probe;
};

} // namespace qv::test
