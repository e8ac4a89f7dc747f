#pragma once
// A shown form on the headless backend, with the package loaded, for the button tests.

#include "package/Package.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/controls/Form.h"
#include "support/PixelEvidence.h"

#include <gtest/gtest.h>

namespace qv {

class ButtonTest : public ::testing::Test {
protected:
    static constexpr TColor kFormColor = 0x00C800; // green

    void SetUp() override {
        InitializePackage();
        form = new TForm(nullptr);
        form->SetBounds(0, 0, 300, 200);
        form->SetColor(kFormColor);
        form->Show();
        MouseMove({290, 190}); // away from every button, whatever the last test left
    }
    void TearDown() override {
        delete form;
        FinalizePackage();
    }
    THeadlessBackend& Headless() { return static_cast<THeadlessBackend&>(Application().Backend()); }
    void Pump() { Application().ProcessMessages(); }
    void MouseDown(TPoint p) {
        Headless().MouseDown(form->NativeWindow(), p);
        Pump();
    }
    void MouseUp(TPoint p) {
        Headless().MouseUp(form->NativeWindow(), p);
        Pump();
    }
    void MouseMove(TPoint p) {
        Headless().MouseMove(form->NativeWindow(), p);
        Pump();
    }
    void Click(TPoint p) {
        MouseDown(p);
        MouseUp(p);
    }
    void Key(unsigned key, bool down) {
        if (down)
            Headless().KeyDown(form->NativeWindow(), key);
        else
            Headless().KeyUp(form->NativeWindow(), key);
        Pump();
    }
    // The control's picture as the form shows it.
    TPixelBuffer Picture(TControl& control) {
        Pump();
        TBitmap shot;
        control.PaintTo(shot);
        return shot.Pixels();
    }
    // True when `actual` equals `expected`; otherwise the pictures go to the build folder
    // under `name` and the failure names them.
    ::testing::AssertionResult SamePixels(const TPixelBuffer& actual, const TPixelBuffer& expected,
                                          const std::string& name) {
        const long differing = test::CountDifferentPixels(actual, expected);
        if (differing == 0) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure()
               << differing << " pixels differ; pictures written: "
               << test::WritePixelEvidence(std::string(QV_TEST_OUT) + "/buttons", name, actual,
                                           expected);
    }
    TForm* form{nullptr};
};

} // namespace qv
