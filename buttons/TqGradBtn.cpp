#include "buttons/TqGradBtn.h"

#include "platform/controls/ControlProperties.h"

namespace qv {

const TClassInfo& TqGradBtn::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqGradBtn> b("TqGradBtn", &TqColorBtn::StaticClassInfo());
        PublishControlProperties(b, {"Color"});
        b.Property("FillType", &TqGradBtn::FillType, &TqGradBtn::SetFillType)
            .Default(Defaults::FillType);
        b.Property("EndColor", ColorType(), &TqGradBtn::EndColor, &TqGradBtn::SetEndColor)
            .Default(Defaults::EndColor);
        b.Property("Bands", &TqGradBtn::Bands, &TqGradBtn::SetBands).Default(Defaults::Bands);
        b.Event("OnPaint", &TqGradBtn::OnPaint);
        return b.Build();
    }();
    return info;
}

TqGradBtn::TqGradBtn(TComponent* AOwner) : TqColorBtn(AOwner) {
    ColorSet();
}

void TqGradBtn::ColorSet() {
    m_colors = GradientColors(Color(), m_endColor);
}

// Always recomputes and repaints, also when the value is the same.
void TqGradBtn::SetFillType(gradType value) {
    m_fillType = value;
    ColorSet();
    Invalidate();
}

void TqGradBtn::SetEndColor(TColor value) {
    m_endColor = value;
    ColorSet();
    Invalidate();
}

void TqGradBtn::SetBands(int value) {
    m_bands = value;
    Invalidate();
}

void TqGradBtn::CMColorChanged(TMessage& Message) {
    ColorSet();
    TqColorBtn::CMColorChanged(Message);
    Invalidate();
}

// The face was cleared to Color; equal colours leave it plain. The bands span R x B
// (W - 1 by H - 1) and move by one pixel while the button is down.
bool TqGradBtn::PaintFace(TCanvas& canvas) {
    if (Color() == m_endColor) return true;
    const bool painted =
        PaintGradient(canvas, m_fillType, m_colors, m_bands,
                      TGradientLayout::ButtonFace(Width(), Height(), Down() ? 1 : 0));
    canvas.Brush().SetColor(Color());
    return painted;
}

} // namespace qv
