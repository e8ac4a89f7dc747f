#include "backgrounds/BlendPaintBase.h"

namespace qv {

template <class Base> TBlendPaintBase<Base>::TBlendPaintBase(TComponent* AOwner) : Base(AOwner) {
    this->SetBounds(this->Left(), this->Top(), Defaults::Size, Defaults::Size);
    this->SetColor(Defaults::Color); // clears ParentColor and fills the cache
    m_colors = GradientColors(this->Color(), m_endColor);
}

template <class Base> void TBlendPaintBase<Base>::SetSteelLook(bool value) {
    if (value == m_steelLook) return;
    m_steelLook = value;
    this->Repaint();
}

// Always notifies, also when the value is the same.
template <class Base> void TBlendPaintBase<Base>::SetFillType(gradType value) {
    m_fillType = value;
    ColorsChanged();
}

template <class Base> void TBlendPaintBase<Base>::SetEndColor(TColor value) {
    if (value == m_endColor) return;
    m_endColor = value;
    ColorsChanged();
}

template <class Base> void TBlendPaintBase<Base>::SetBands(int value) {
    if (value == m_bands) return;
    m_bands = value;
    ColorsChanged();
}

template <class Base> void TBlendPaintBase<Base>::CMColorChanged(TMessage& Message) {
    m_colors = GradientColors(this->Color(), m_endColor);
    Base::CMColorChanged(Message);
    this->Invalidate();
}

// Without the steel look the gradient is drawn over what the control shows: a gradient that
// paints nothing (negative Bands) leaves it. A centre gradient with no frame to divide by
// abandons the paint: no outline, no OnPaint.
template <class Base> void TBlendPaintBase<Base>::Paint() {
    const TFrameBackground background =
        m_steelLook ? TFrameBackground::Steel() : TFrameBackground::Beneath();
    TCanvas& canvas = m_frame.Begin(*this, this->Canvas(), background);
    if (!m_steelLook && !PaintGradient(canvas, m_fillType, m_colors, m_bands,
                                       TGradientLayout::Control(this->Width(), this->Height())))
        return;
    m_frame.End(*this, this->Canvas(), OnPaint);
}

template class TBlendPaintBase<TCustomControl>;
template class TBlendPaintBase<TPassMouseOn<TGraphicControl>>;

} // namespace qv
