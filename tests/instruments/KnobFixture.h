#pragma once
// A shown form on the headless backend, with the package loaded, for the knob tests: knobs
// placed on it, mouse and keys sent through the backend as a windowing system delivers them.

#include "instruments/Qpanel.h"
#include "package/Package.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "support/FormInput.h"
#include "support/PixelEvidence.h"

#include <gtest/gtest.h>

namespace qv {

class KnobTest : public ::testing::Test, protected test::TFormInput {
protected:
    void SetUp() override {
        InitializePackage();
        form = new TForm(nullptr);
        form->SetBounds(0, 0, 400, 200);
        form->SetColor(TColor(0x00FF00FF)); // fuchsia, distinct from every knob colour used
        form->Show();
    }
    void TearDown() override {
        delete form;
        FinalizePackage();
    }
    // A knob of class K placed at (left, top) with its bounds set while parented.
    template <class K> K* Place(int left, int top) {
        auto* knob = new K(form);
        knob->SetParent(form);
        knob->SetBounds(left, top, knob->Width(), knob->Height());
        return knob;
    }
    // The colour of a pixel of `control` as the form shows it.
    TColor PixelOf(const TControl& control, int x, int y) {
        Pump();
        TBitmap shot;
        form->Screenshot(shot);
        return shot.Canvas().Pixel(control.Left() + x, control.Top() + y);
    }
    // True when `a` and `b` show the same pixels (`same`), or differ (`!same`); otherwise the
    // pictures go to the build folder under `name` and the failure names them.
    ::testing::AssertionResult ComparePictures(TControl& a, TControl& b, bool same,
                                               const std::string& name) {
        TBitmap pa, pb;
        a.PaintTo(pa);
        b.PaintTo(pb);
        const long differing = test::CountDifferentPixels(pa.Pixels(), pb.Pixels());
        if ((differing == 0) == same) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure()
               << differing << " pixels differ; pictures written: "
               << test::WritePixelEvidence(std::string(QV_TEST_OUT) + "/instruments", name,
                                           pa.Pixels(), pb.Pixels());
    }
};

} // namespace qv
