#pragma once
// A shown form on the headless backend with helpers to drive it, shared by the tests of the
// standard controls.

#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"

#include <gtest/gtest.h>

#include <string>

namespace qvtest {

inline qv::THeadlessBackend& Headless() {
    return static_cast<qv::THeadlessBackend&>(qv::Application().Backend());
}

class ControlsFixture : public ::testing::Test {
protected:
    void SetUp() override {
        form = new qv::TForm(nullptr);
        form->SetBounds(100, 50, 300, 200);
    }
    void TearDown() override {
        delete form;
        Pump(); // frees released popups
    }
    template <class T> T* Add(qv::TRect bounds, qv::TWinControl* parent = nullptr) {
        auto* control = new T(form);
        control->SetParent(parent ? parent : form);
        control->SetBoundsRect(bounds);
        return control;
    }
    qv::TNativeWindowId Window() const { return form->NativeWindow(); }
    void Pump() { qv::Application().ProcessMessages(); }
    void Show() {
        form->Show();
        Pump();
    }
    // A left click at a client point of the form.
    void Click(qv::TPoint at, unsigned shift = 0) { ClickIn(Window(), at, shift); }
    void ClickIn(qv::TNativeWindowId window, qv::TPoint at, unsigned shift = 0) {
        Headless().MouseMove(window, at, shift);
        Headless().MouseDown(window, at, qv::TMouseButton::Left, shift);
        Headless().MouseUp(window, at, qv::TMouseButton::Left, shift);
        Pump();
    }
    void Key(unsigned key, unsigned shift = 0) {
        Headless().TypeKey(Window(), key, 0, shift);
        Pump();
    }
    void Type(const std::string& text) {
        for (char c : text)
            Headless().Char(Window(), static_cast<unsigned char>(c));
        Pump();
    }
    qv::TColor ShotPixel(int x, int y) {
        form->Screenshot(shot);
        return shot.Canvas().Pixel(x, y);
    }
    // The bounding box of pixels in `area` of the last screenshot that differ from `background`.
    qv::TRect InkBounds(const qv::TRect& area, qv::TColor background) {
        form->Screenshot(shot);
        qv::TRect ink{area.right, area.bottom, area.left, area.top};
        const qv::TColor bg = qv::ColorToRGB(background);
        for (int y = area.top; y < area.bottom; ++y)
            for (int x = area.left; x < area.right; ++x)
                if (shot.Canvas().Pixel(x, y) != bg) {
                    ink.left = std::min(ink.left, x);
                    ink.top = std::min(ink.top, y);
                    ink.right = std::max(ink.right, x + 1);
                    ink.bottom = std::max(ink.bottom, y + 1);
                }
        return ink;
    }

    qv::TForm* form{nullptr};
    qv::TBitmap shot;
};

} // namespace qvtest
