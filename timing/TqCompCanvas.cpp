#include "TqCompCanvas.h"

#include "componentbase/PaintFrame.h"
#include "platform/core/ClassBuilder.h"

namespace qv {

const TClassInfo& TqCompCanvas::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TqCompCanvas>("TqCompCanvas", &TComponent::StaticClassInfo())
            .Reference("ControlComponent", &TqCompCanvas::ControlComponent,
                       &TqCompCanvas::SetControlComponent)
            .Build();
    return info;
}

TqCompCanvas::TqCompCanvas(TComponent* AOwner)
    : TComponent(AOwner), m_canvas(std::make_unique<TCanvas>()) {}

TqCompCanvas::~TqCompCanvas() {
    if (m_drawing) StopDrawing(false);
    if (m_control) m_control->RemoveFreeNotification(this);
}

void TqCompCanvas::SetControlComponent(TWinControl* value) {
    if (value == m_control) return;
    if (m_control && m_drawing) StopDrawing(false);
    if (m_control) m_control->RemoveFreeNotification(this);
    m_control = value;
    if (m_control) m_control->FreeNotification(this);
}

void TqCompCanvas::StartPaint() {
    if (m_drawing) throw EqCompCanvasException("We are allready drawing");
    if (!m_control) throw EqCompCanvasException("No component to draw on");
    m_drawing = true;
    m_dc = GetDC(*m_control);
    m_dc->Attach(*m_canvas);
}

void TqCompCanvas::EndPaint() {
    if (!m_drawing) throw EqCompCanvasException("We are not drawing");
    StopDrawing(false);
}

void TqCompCanvas::StopDrawing(bool controlGone) {
    m_drawing = false;
    TWindowDC::Detach(*m_canvas);
    ReleaseDC(std::move(m_dc), controlGone);
    ResetCanvasTools(*m_canvas); // the same object: the application's pointer stays valid
}

void TqCompCanvas::Notification(TComponent* AComponent, TOperation Operation) {
    TComponent::Notification(AComponent, Operation);
    if (Operation != opRemove || AComponent != m_control) return;
    if (m_drawing) StopDrawing(true);
    m_control = nullptr;
}

} // namespace qv
