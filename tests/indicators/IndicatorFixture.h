#pragma once
// A shown form on the headless backend, with the package loaded, for the indicator tests.

#include "package/Package.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "support/PixelEvidence.h"

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
    // True when `a` and `b` show the same pixels; otherwise the pictures go to the build
    // folder under `name` and the failure names them.
    ::testing::AssertionResult SamePicture(TControl& a, TControl& b, const std::string& name) {
        TBitmap pa, pb;
        a.PaintTo(pa);
        b.PaintTo(pb);
        const long differing = test::CountDifferentPixels(pa.Pixels(), pb.Pixels());
        if (differing == 0) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure()
               << differing << " pixels differ; pictures written: "
               << test::WritePixelEvidence(std::string(QV_TEST_OUT) + "/indicators", name,
                                           pa.Pixels(), pb.Pixels());
    }
    TForm* form{nullptr};
};

} // namespace qv
