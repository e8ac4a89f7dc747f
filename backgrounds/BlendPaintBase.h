#pragma once
// TBlendPaintBase<Base>: a control that fills its area with a colour gradient or the steel
// texture, on a windowed base (TqBlendPaint, which holds child controls) or a graphic one
// (TqNWBlendPaint). Colour, EndColor and Bands feed the gradient cache through the
// colour-changed notification.

#include "componentbase/Gradient.h"
#include "componentbase/PaintFrame.h"
#include "componentbase/PassMouseOn.h"
#include "platform/controls/WinControl.h"

namespace qv {

struct TBlendPaintDefaults {
    static constexpr bool SteelLook = false;
    static constexpr gradType FillType = gVert;
    static constexpr TColor Color = 0xFF00FF;
    static constexpr bool ParentColor = false;
    static constexpr TColor EndColor = 0x000000;
    static constexpr int Bands = 255;
    static constexpr int Size = 30; // width and height
};

template <class Base> class TBlendPaintBase : public Base {
public:
    using Defaults = TBlendPaintDefaults;
    explicit TBlendPaintBase(TComponent* AOwner);

    bool SteelLook() const { return m_steelLook; }
    void SetSteelLook(bool value);
    gradType FillType() const { return m_fillType; }
    void SetFillType(gradType value);
    TColor EndColor() const { return m_endColor; }
    void SetEndColor(TColor value);
    int Bands() const { return m_bands; }
    void SetBands(int value);

    TNotifyEvent OnPaint;

protected:
    void Paint() override;
    void CMColorChanged(TMessage& Message) override;
    void WMEraseBkgnd(TMessage& Message) override { Message.Result = 1; }

private:
    void ColorsChanged() { this->Perform(CM_COLORCHANGED); }

    bool m_steelLook{Defaults::SteelLook};
    gradType m_fillType{Defaults::FillType};
    TColor m_endColor{Defaults::EndColor};
    int m_bands{Defaults::Bands};
    TGradientColors m_colors;
    TPaintFrame m_frame{TPaintFrame::TOutline::WhileDesigning};
};

extern template class TBlendPaintBase<TCustomControl>;
extern template class TBlendPaintBase<TPassMouseOn<TGraphicControl>>;

} // namespace qv
