#pragma once
// GetDC and ReleaseDC: drawing on a windowed control's client area from outside its painting
// (a canvas lent to the application, a drag indicator). The context's surface starts as what
// the control's visible part shows in its form's frame (read once the backend has finished
// presenting the frame) and covers the client area from its origin to the far corner of that
// visible part; drawing is clipped to the visible part (the client area inside its parents and
// the form). ReleaseDC puts what was drawn into the form's frame where the control then is and
// presents it; the next repaint of that part paints over it, as with any window. A control
// that is hidden or on no shown form gets a context without a surface, on which drawing does
// nothing.

#include "WinControl.h"

#include "platform/graphics/Canvas.h"
#include "platform/graphics/Region.h"

#include <memory>

namespace qv {

class TCustomForm;

class TWindowDC {
public:
    explicit TWindowDC(TWinControl& control);
    TWindowDC(const TWindowDC&) = delete;
    TWindowDC& operator=(const TWindowDC&) = delete;

    TWinControl& Control() const { return m_control; }
    // The pixels drawn on, in the control's client coordinates; null when nothing shows.
    TPixelBuffer* Surface() { return m_surface.IsEmpty() ? nullptr : &m_surface; }
    // The visible part, in the control's client coordinates.
    const TRect& Visible() const { return m_visible; }
    // Points `canvas` at the surface, clipped to the visible part; Detach undoes it.
    void Attach(TCanvas& canvas);
    static void Detach(TCanvas& canvas);
    // Copies what was drawn into the form's frame and presents it.
    void Flush();

private:
    // The visible part of the control's client area in its form's client coordinates, and
    // the client origin there; empty when it does not show.
    struct TPlacement {
        TCustomForm* form{nullptr};
        TPoint origin;
        TRect visible;
    };
    TPlacement Place() const;

    TWinControl& m_control;
    TRect m_visible;
    TPixelBuffer m_surface;
    TRegion m_clip;
};

// A device context on `control`'s client area; give it back with ReleaseDC.
std::unique_ptr<TWindowDC> GetDC(TWinControl& control);
// Presents what was drawn and frees the context. With `controlGone` the control is being
// destroyed: the context is freed without touching it.
void ReleaseDC(std::unique_ptr<TWindowDC> dc, bool controlGone = false);

} // namespace qv
