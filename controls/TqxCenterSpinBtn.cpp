#include "controls/TqxCenterSpinBtn.h"

#include "platform/controls/ControlProperties.h"

namespace qv {

// The inherited list with OnCenterClick after OnDownClick: the events after it are published
// again, which places them after it.
const TClassInfo& TqxCenterSpinBtn::StaticClassInfo() {
    static const TClassInfo info = [] {
        using C = TqxCenterSpinBtn;
        TClassBuilder<C> b("TqxCenterSpinBtn", &TqxSpinBtn::StaticClassInfo());
        b.Event("OnCenterClick", &C::OnCenterClick);
        b.Event("OnPaint", &C::OnPaint);
        PublishControlProperties(b, {"OnDragDrop", "OnDragOver", "OnEndDrag", "OnMouseDown",
                                     "OnMouseMove", "OnMouseUp"});
        return b.Build();
    }();
    return info;
}

TqxCenterSpinBtn::TqxCenterSpinBtn(TComponent* AOwner) : TqxSpinBtn(AOwner) {
    Layout(); // the base constructor laid out the two-button form
}

void TqxCenterSpinBtn::Layout() {
    const int H = Height();
    m_upperHeight = H / 3 + (H >= 13 ? 1 : 0);
    m_centerHeight = H - 2 * m_upperHeight;
    m_lowerTop = m_upperHeight + m_centerHeight;
    SetArrowFromUpperHeight();
}

TqxCenterSpinBtn::TButton TqxCenterSpinBtn::ButtonAt(int X, int Y) const {
    if (X < 0 || X >= ClientWidth()) return TButton::None;
    if (Y >= 0 && Y <= m_upperHeight) return TButton::Up;
    if (Y > m_upperHeight && Y <= m_lowerTop) return TButton::Centre;
    if (Y > m_lowerTop && Y <= Height()) return TButton::Down;
    return TButton::None;
}

void TqxCenterSpinBtn::DrawCentre(TCanvas& c) const {
    DrawBevel(c, m_upperHeight, m_lowerTop, CenterPressed());
}

void TqxCenterSpinBtn::ButtonClicked(TButton button) {
    TqxSpinBtn::ButtonClicked(button);
    if (button == TButton::Centre && OnCenterClick) OnCenterClick(this);
}

} // namespace qv
