#pragma once
// TqCompCanvas: lends the application a canvas on another windowed control's client area
// between StartPaint and EndPaint (GetDC/ReleaseDC of platform/controls/WindowDC.h). What is
// drawn shows at EndPaint; the next repaint of the control paints over it. EndPaint resets the
// canvas's pen, brush and font to a fresh canvas's (the same canvas object, so a pointer the
// application keeps stays valid). When the control goes away while drawing, the drawing ends
// without touching it.

#include "platform/controls/WindowDC.h"
#include "platform/core/Component.h"
#include "platform/core/Exceptions.h"
#include "platform/graphics/Canvas.h"

#include <memory>

namespace qv {

class EqCompCanvasException : public Exception {
public:
    using Exception::Exception;
};

class TqCompCanvas : public TComponent {
    QV_OBJECT
public:
    explicit TqCompCanvas(TComponent* AOwner);
    ~TqCompCanvas() override;

    TCanvas& Canvas() { return *m_canvas; }
    TWinControl* ControlComponent() const { return m_control; }
    void SetControlComponent(TWinControl* value);
    bool Drawing() const { return m_drawing; }

    void StartPaint();
    void EndPaint();

    void Notification(TComponent* AComponent, TOperation Operation) override;

private:
    // Ends drawing without raising; `controlGone` when the control is being destroyed.
    void StopDrawing(bool controlGone);

    std::unique_ptr<TCanvas> m_canvas;
    TWinControl* m_control{nullptr};
    std::unique_ptr<TWindowDC> m_dc;
    bool m_drawing{false};
};

} // namespace qv
