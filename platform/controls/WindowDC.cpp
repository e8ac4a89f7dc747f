#include "WindowDC.h"

#include "Application.h"
#include "Form.h"

namespace qv {

TWindowDC::TWindowDC(TWinControl& control) : m_control(control) {
    const TPlacement place = Place();
    if (place.visible.IsEmpty()) return;
    TRect local = place.visible;
    OffsetRect(local, -place.origin.x, -place.origin.y);
    if (static_cast<std::int64_t>(local.right) * local.bottom > TPixelBuffer::MaxPixels) return;
    if (const TNativeWindowId native = place.form->NativeWindow())
        Application().Backend().AwaitFrameIdle(native);
    m_visible = local;
    m_clip = TRegion::FromRect(local);
    m_surface = TPixelBuffer(local.right, local.bottom);
    CopyPixels(place.form->FrameBuffer(), {0, 0}, m_surface, place.origin, place.visible);
}

TWindowDC::TPlacement TWindowDC::Place() const {
    TPlacement place;
    place.form = GetParentForm(&m_control);
    if (!place.form || !place.form->Visible() || place.form->FrameBuffer().IsEmpty())
        return place;
    const auto clientIn = [&](const TControl& c) {
        const TPoint o = place.form->ScreenToClient(c.ClientToScreen({0, 0}));
        const TRect client = c.ClientRect();
        return Bounds(o.x, o.y, client.Width(), client.Height());
    };
    place.origin = place.form->ScreenToClient(m_control.ClientToScreen({0, 0}));
    TRect visible = Intersect(clientIn(m_control), place.form->FrameBuffer().Bounds());
    for (const TControl* c = &m_control; c && c != place.form; c = c->Parent()) {
        if (!c->Visible()) return place;
        if (c != &m_control) visible = Intersect(visible, clientIn(*c));
    }
    place.visible = visible;
    return place;
}

void TWindowDC::Attach(TCanvas& canvas) {
    canvas.SetTarget(Surface());
    if (Surface()) canvas.Handle()->SelectClipRgn(&m_clip);
}

void TWindowDC::Detach(TCanvas& canvas) {
    canvas.Handle()->SelectClipRgn(nullptr);
    canvas.SetTarget(nullptr);
}

// Where the control is now: it may have moved, or its form may have been resized, since the
// context was made.
void TWindowDC::Flush() {
    if (m_surface.IsEmpty()) return;
    const TPlacement place = Place();
    if (place.visible.IsEmpty()) return;
    TRect target = place.visible;
    OffsetRect(target, -place.origin.x, -place.origin.y);
    target = Intersect(target, m_visible);
    if (target.IsEmpty()) return;
    TPixelBuffer& frame = place.form->FrameBuffer();
    const TNativeWindowId native = place.form->NativeWindow();
    TBackend& backend = Application().Backend();
    if (native) backend.AwaitFrameIdle(native);
    OffsetRect(target, place.origin.x, place.origin.y);
    CopyPixels(m_surface, place.origin, frame, {0, 0}, target);
    if (native) backend.Present(native, frame, target);
}

std::unique_ptr<TWindowDC> GetDC(TWinControl& control) {
    return std::make_unique<TWindowDC>(control);
}

void ReleaseDC(std::unique_ptr<TWindowDC> dc, bool controlGone) {
    if (dc && !controlGone) dc->Flush();
}

} // namespace qv
