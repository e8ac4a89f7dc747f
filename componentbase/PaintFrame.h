#pragma once
// TPaintFrame: the flicker-free paint of a component. The component draws its whole picture
// into an off-screen bitmap of its size, which the frame keeps while the size holds; the
// frame fills the background first (a flat colour, the parent's colour or steel), copies the
// finished picture to the control's canvas in one step and then raises OnPaint. Borderless
// components ask for the design-time outline: a dashed rectangle round the picture, drawn only
// while designing, so that they can be found on the form.
//
//   void TqLed::Paint() {
//       m_frame.Paint(*this, Canvas(), TFrameBackground::ParentOrSteel(*this, m_steelLook),
//                     [&](TCanvas& c) { DrawLamp(c); }, OnPaint);
//   }
//
// The picture covers the control as far as the surface it is painted on reaches, so a huge
// control costs what is visible of it; a surface larger than a bitmap may be
// (TPixelBuffer::MaxPixels) is drawn on straight, background first, instead of failing.

#include "platform/controls/Control.h"
#include "platform/graphics/Bitmap.h"
#include "platform/graphics/Canvas.h"

namespace qv {

// What lies under a component's picture.
struct TFrameBackground {
    // Beneath: the picture starts as what the control's canvas shows under it.
    enum class TKind { Flat, Steel, Beneath };
    TKind kind{TKind::Flat};
    TColor color{clBtnFace};
    // Set when the paint first draws a picture over the whole control itself (a cached face):
    // the canvas is left with this background's tools, but nothing is filled or copied, which
    // the face would cover at once.
    bool paintedOver{false};

    static TFrameBackground Flat(TColor color) { return {TKind::Flat, color}; }
    static TFrameBackground Steel() { return {TKind::Steel, clBtnFace}; }
    static TFrameBackground Beneath() { return {TKind::Beneath, clBtnFace}; }
    // The parent's brush colour (clBtnFace without a parent), or steel when `steel` is set.
    static TFrameBackground ParentOrSteel(const TControl& control, bool steel);
    // `color`, or steel when `steel` is set.
    static TFrameBackground FlatOrSteel(TColor color, bool steel) {
        return steel ? Steel() : Flat(color);
    }
    // This background, painted over when `paintedOver` is set.
    TFrameBackground PaintedOver(bool over) const {
        TFrameBackground b = *this;
        b.paintedOver = over;
        return b;
    }
};

// Fills `rect` of `canvas` with `background` (Beneath, or a background painted over, leaves
// the pixels as they are); the brush is left with the background's colour.
void FillBackground(TCanvas& canvas, const TRect& rect, const TFrameBackground& background);

// Draws the dashed design-time outline (0, 0, width, height): black dashed pen, no fill. The
// canvas's pen and brush are left as they were.
void DrawDesignOutline(TCanvas& canvas, int width, int height);

class TPaintFrame {
public:
    enum class TOutline { None, WhileDesigning };

    // `grow` makes the picture that many pixels wider and taller than the control (the credit
    // scroll draws on a picture one pixel larger each way); the copy shows the control's part.
    explicit TPaintFrame(TOutline outline = TOutline::None, int grow = 0)
        : m_outline(outline), m_grow(grow) {}

    // Paints `control` on `target`: background, `draw(canvas)`, the outline while designing,
    // the copy, then `onPaint` with the control as Sender.
    template <class Draw>
    void Paint(TControl& control, TCanvas& target, const TFrameBackground& background, Draw&& draw,
               const TNotifyEvent& onPaint) {
        TCanvas& canvas = Begin(control, target, background);
        draw(canvas);
        End(control, target, onPaint);
    }

    // The two halves of Paint, for components whose drawing is not one call. Begin returns
    // the canvas to draw on, with a fresh canvas's tools and the background filled.
    TCanvas& Begin(const TControl& control, TCanvas& target, const TFrameBackground& background);
    void End(TControl& control, TCanvas& target, const TNotifyEvent& onPaint);

    // The off-screen picture as last painted.
    const TBitmap& Picture() const { return m_picture; }

private:
    TBitmap m_picture;
    TOutline m_outline;
    int m_grow;
    bool m_direct{false}; // this paint draws straight onto the target
};

// Includes or excludes csOpaque: a component that turns transparent no longer paints every
// pixel of its bounds, so what lies beneath must be painted first.
void SetOpaqueStyle(TControl& control, bool opaque);

// Gives a canvas the tools of a fresh one: default pen, brush (no pattern) and font, copy mode
// cmSrcCopy, pen position (0, 0).
void ResetCanvasTools(TCanvas& canvas);

} // namespace qv
