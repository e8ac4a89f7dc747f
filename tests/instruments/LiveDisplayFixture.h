#pragma once
// A shown form on the headless backend, with the package loaded, for the scope, spectrum,
// credit scroll and gauge tests: the displays placed on it, their pictures taken as painted.

#include "instruments/Qgauge.h"
#include "instruments/Qpanel.h"
#include "instruments/Qpanel2.h"
#include "package/Package.h"
#include "package/Registration.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/core/ClassRegistry.h"
#include "platform/core/DesignerRegistry.h"
#include "platform/streaming/Reader.h"
#include "platform/streaming/Writer.h"
#include "support/PixelEvidence.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

namespace qv {

class LiveDisplayTest : public ::testing::Test {
protected:
    void SetUp() override {
        InitializePackage();
        ClearDesignerRegistry();
        RegisterPackage();
        RegisterClass(TForm::StaticClassInfo());
        form = new TForm(nullptr);
        form->SetBounds(0, 0, 1200, 400);
        form->SetColor(TColor(0x00FF00FF)); // fuchsia, distinct from the colours tested
        form->Show();
    }
    void TearDown() override {
        delete form;
        ClearDesignerRegistry();
        FinalizePackage();
    }
    template <class C> C* Place(int left = 0, int top = 0) {
        auto* c = new C(form);
        c->SetParent(form);
        c->SetBounds(left, top, c->Width(), c->Height());
        return c;
    }
    void Pump() { Application().ProcessMessages(); }
    using TShot = std::unique_ptr<TBitmap>;
    // The control's pixels as the form shows them (as far as the form reaches).
    TShot Shot(const TControl& control) {
        Pump();
        TBitmap whole;
        form->Screenshot(whole);
        const int width = std::min(control.Width(), whole.Width() - control.Left());
        const int height = std::min(control.Height(), whole.Height() - control.Top());
        auto shot = std::make_unique<TBitmap>();
        shot->SetSize(width, height);
        shot->Canvas().CopyRect(
            {0, 0, width, height}, whole.Canvas(),
            {control.Left(), control.Top(), control.Left() + width, control.Top() + height});
        return shot;
    }
    static TColor At(const TShot& shot, int x, int y) { return shot->Canvas().Pixel(x, y); }
    // How many pixels of `rect` in `shot` have `color`.
    static int CountColor(const TShot& shot, const TRect& rect, TColor color) {
        int n = 0;
        for (int y = rect.top; y < rect.bottom; ++y)
            for (int x = rect.left; x < rect.right; ++x)
                n += At(shot, x, y) == ColorToRGB(color) ? 1 : 0;
        return n;
    }
    // Writes `root`, reads it back and writes it again: both texts must be equal.
    static void ExpectRoundTrip(TComponent& root) {
        const std::string text = WriteComponentText(root);
        auto again = ReadComponentText(text);
        EXPECT_EQ(WriteComponentText(*again), text);
    }
    TForm* form{nullptr};
};

} // namespace qv
