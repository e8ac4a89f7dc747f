#pragma once
// A shown form on the headless backend, with the package loaded, for the slide bar tests: bars
// placed on it, mouse and keys sent through the backend as a windowing system delivers them.

#include "package/Package.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "slidebar/Slidebar.h"
#include "support/FormInput.h"
#include "support/PixelEvidence.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qv {

class SlideBarTest : public ::testing::Test, protected test::TFormInput {
protected:
    void SetUp() override {
        InitializePackage();
        form = new TForm(nullptr);
        form->SetBounds(0, 0, 400, 300);
        form->SetColor(TColor(0x00FF00FF)); // fuchsia: no bar colour
        form->Show();
    }
    void TearDown() override {
        delete form;
        FinalizePackage();
    }
    TqSlideBar* Place(int left, int top, int width, int height) {
        auto* bar = new TqSlideBar(form);
        bar->SetParent(form);
        bar->SetBounds(left, top, width, height);
        return bar;
    }
    TColor PixelOf(const TControl& c, int x, int y) {
        Pump();
        TBitmap shot;
        form->Screenshot(shot);
        return shot.Canvas().Pixel(c.Left() + x, c.Top() + y);
    }
};

// The events of a bar in order, by name.
struct TBarLog {
    std::vector<std::string> events;
    void Watch(TqSlideBar& bar) {
        const auto note = [this](const char* name) {
            return [this, name](TObject*) { events.emplace_back(name); };
        };
        const auto mouse = [this](const char* name) {
            return [this, name](TObject*, TMouseButtonKind, TShiftState, int, int) {
                events.emplace_back(name);
            };
        };
        bar.OnChange = note("OnChange");
        bar.OnMinimum = note("OnMinimum");
        bar.OnMaximum = note("OnMaximum");
        bar.OnMouseDown = mouse("OnMouseDown");
        bar.OnMouseUp = mouse("OnMouseUp");
        bar.OnMouseUpTwo = mouse("OnMouseUpTwo");
        bar.OnKeyDown = [this](TObject*, unsigned&, TShiftState) {
            events.emplace_back("OnKeyDown");
        };
    }
    std::vector<std::string> Take() { return std::exchange(events, {}); }
};

using Events = std::vector<std::string>;

} // namespace qv
