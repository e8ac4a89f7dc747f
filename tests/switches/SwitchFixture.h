#pragma once
// A shown form on the headless backend, with the package loaded, for the switch tests: mouse
// and keys go through the backend as a windowing system delivers them, in the switch's own
// coordinates.

#include "package/Package.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/controls/Form.h"
#include "support/FormInput.h"
#include "support/PixelEvidence.h"
#include "switches/Qonzoff.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qv {

class SwitchTest : public ::testing::Test, protected test::TFormInput {
protected:
    static constexpr TColor kLit = 0xFF00FF; // the switches' default Color

    void SetUp() override {
        InitializePackage();
        form = new TForm(nullptr);
        form->SetBounds(0, 0, 400, 300);
        form->Show();
        Move(*form, 390, 290);
    }
    void TearDown() override {
        delete form;
        FinalizePackage();
    }
    template <class S> S* Place(int left, int top, int width = 89, int height = 33) {
        auto* s = new S(form);
        s->SetParent(form);
        s->SetBounds(left, top, width, height);
        return s;
    }
    void SpaceDown() {
        Headless().KeyDown(form->NativeWindow(), VK_SPACE);
        Headless().Char(form->NativeWindow(), ' ');
        Pump();
    }
    void SpaceUp() {
        Headless().KeyUp(form->NativeWindow(), VK_SPACE);
        Pump();
    }
    TPixelBuffer Picture(TControl& control) {
        Pump();
        TBitmap shot;
        control.PaintTo(shot);
        return shot.Pixels();
    }
    static bool Has(const TPixelBuffer& p, TColor c) {
        for (int y = 0; y < p.Height(); ++y)
            for (int x = 0; x < p.Width(); ++x)
                if (p.At(x, y) == ColorToPixel(c)) return true;
        return false;
    }
    static long Differing(const TPixelBuffer& a, const TPixelBuffer& b) {
        return test::CountDifferentPixels(a, b);
    }
    ::testing::AssertionResult SamePixels(const TPixelBuffer& actual, const TPixelBuffer& expected,
                                          const std::string& name) {
        const long differing = Differing(actual, expected);
        if (differing == 0) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure()
               << differing << " pixels differ; pictures written: "
               << test::WritePixelEvidence(std::string(QV_TEST_OUT) + "/switches", name, actual,
                                           expected);
    }
};

} // namespace qv
