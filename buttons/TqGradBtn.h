#pragma once
// TqGradBtn: the windowed colour button with a colour gradient for its face, from Color to
// EndColor in Bands + 1 bands (or frames towards the centre). It keeps the colour button's
// states, keys, bevel and caption; the gradient moves one pixel right and down with the
// caption while the button is down.

#include "buttons/TqColorBtn.h"
#include "componentbase/Gradient.h"

namespace qv {

class TqGradBtn : public TqColorBtn {
    QV_OBJECT
public:
    struct Defaults : TqColorBtn::Defaults {
        static constexpr gradType FillType = gVert;
        static constexpr TColor EndColor = clBtnFace;
        static constexpr int Bands = 75;
    };

    explicit TqGradBtn(TComponent* AOwner);

    gradType FillType() const { return m_fillType; }
    void SetFillType(gradType value);
    TColor EndColor() const { return m_endColor; }
    void SetEndColor(TColor value);
    int Bands() const { return m_bands; }
    void SetBands(int value);

    // Recomputes the band colours from the raw bytes of Color and EndColor.
    virtual void ColorSet();

    // The gradient button's own paint event; the colour button's OnPaint is not fired.
    TNotifyEvent OnPaint;

protected:
    bool PaintFace(TCanvas& canvas) override;
    const TNotifyEvent& PaintEvent() const override { return OnPaint; }
    // Every change of Color, also one that follows the parent's, recomputes the bands.
    void CMColorChanged(TMessage& Message) override;

private:
    gradType m_fillType{Defaults::FillType};
    TColor m_endColor{Defaults::EndColor};
    int m_bands{Defaults::Bands};
    TGradientColors m_colors;
};

} // namespace qv
