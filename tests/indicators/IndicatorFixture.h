#pragma once
// A shown form on the headless backend, with the package loaded, for the indicator tests.

#include "package/Package.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"

#include <gtest/gtest.h>

namespace qv {

class IndicatorTest : public ::testing::Test {
protected:
    void SetUp() override {
        InitializePackage();
        form = new TForm(nullptr);
        form->SetBounds(0, 0, 300, 200);
        form->SetColor(TColor(0x00FF00FF)); // fuchsia, distinct from every lamp colour used
        form->Show();
    }
    void TearDown() override {
        delete form;
        FinalizePackage();
    }
    THeadlessBackend& Headless() { return static_cast<THeadlessBackend&>(Application().Backend()); }
    void Pump() { Application().ProcessMessages(); }
    // The colour of a pixel of `control` as the form shows it.
    TColor PixelOf(const TControl& control, int x, int y) {
        TBitmap shot;
        form->Screenshot(shot);
        return shot.Canvas().Pixel(control.Left() + x, control.Top() + y);
    }
    TForm* form{nullptr};
};

} // namespace qv
