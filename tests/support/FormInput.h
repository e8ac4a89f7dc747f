#pragma once
// Mouse and keys for a shown form on the headless backend, sent as a windowing system
// delivers them and each followed by a run of the loop. Points are given in the coordinates
// of a control placed directly on the form. Fixtures derive from it and set `form`.

#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/controls/Form.h"

namespace qv::test {

class TFormInput {
protected:
    THeadlessBackend& Headless() { return static_cast<THeadlessBackend&>(Application().Backend()); }
    void Pump() { Application().ProcessMessages(); }
    static TPoint FormPoint(const TControl& c, int x, int y) { return {c.Left() + x, c.Top() + y}; }

    void Press(const TControl& c, int x, int y, bool doubleClick = false) {
        Press(c, x, y, TMouseButton::Left, doubleClick);
    }
    void Press(const TControl& c, int x, int y, TMouseButton button, bool doubleClick = false) {
        Headless().MouseDown(form->NativeWindow(), FormPoint(c, x, y), button, 0, doubleClick);
        Pump();
    }
    void Release(const TControl& c, int x, int y, TMouseButton button = TMouseButton::Left) {
        Headless().MouseUp(form->NativeWindow(), FormPoint(c, x, y), button);
        Pump();
    }
    // `shift` carries the buttons held during the move (isLeft for a drag).
    void Move(const TControl& c, int x, int y, unsigned shift = 0) {
        Headless().MouseMove(form->NativeWindow(), FormPoint(c, x, y), shift);
        Pump();
    }
    void Click(const TControl& c, int x, int y) {
        Press(c, x, y);
        Release(c, x, y);
    }
    void Key(unsigned key, unsigned shift = 0) {
        Headless().KeyDown(form->NativeWindow(), key, shift);
        Headless().KeyUp(form->NativeWindow(), key, shift);
        Pump();
    }

    TForm* form{nullptr};
};

} // namespace qv::test
