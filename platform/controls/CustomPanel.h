#pragma once
// TCustomPanel: a windowed container painted as the classic panel: an outer bevel, a border
// of BorderWidth pixels in the panel's colour, an inner bevel, the face and the caption on
// one line in the middle. Aligned children are laid out inside the bevels.
//
// BorderStyle bsSingle adds the sunken client edge around everything; it is painted inside
// the panel's bounds (controls have no non-client area), and aligned children stay inside it.

#include "ControlTypes.h"
#include "WinControl.h"

namespace qv {

enum TBevelCut { bvNone, bvLowered, bvRaised, bvSpace };
QV_ENUM_TYPE(TBevelCut, "bvNone", "bvLowered", "bvRaised", "bvSpace")
using TPanelBevel = TBevelCut;

class TCustomPanel : public TCustomControl {
    QV_OBJECT
public:
    explicit TCustomPanel(TComponent* AOwner);

    TAlignment Alignment() const { return m_alignment; }
    void SetAlignment(TAlignment v);
    TPanelBevel BevelInner() const { return m_bevelInner; }
    void SetBevelInner(TPanelBevel v);
    TPanelBevel BevelOuter() const { return m_bevelOuter; }
    void SetBevelOuter(TPanelBevel v);
    // At least 1.
    int BevelWidth() const { return m_bevelWidth; }
    void SetBevelWidth(int v);
    // At least 0.
    int BorderWidth() const { return m_borderWidth; }
    void SetBorderWidth(int v);
    TBorderStyle BorderStyle() const { return m_borderStyle; }
    void SetBorderStyle(TBorderStyle v);
    bool FullRepaint() const { return m_fullRepaint; }
    void SetFullRepaint(bool v) { m_fullRepaint = v; }

    // The client area less the border edge, the border width and the bevels.
    TRect InnerRect() const;

protected:
    void Paint() override;
    void AlignControls(TRect& rect) override;
    void CMTextChanged(TMessage& Message) override;

private:
    void FrameChanged();
    void PaintBevel(TCanvas& canvas, TRect& rect, TPanelBevel bevel) const;
    void PaintCaption(TCanvas& canvas, TRect rect);

    TAlignment m_alignment{taCenter};
    TPanelBevel m_bevelInner{bvNone};
    TPanelBevel m_bevelOuter{bvRaised};
    int m_bevelWidth{1};
    int m_borderWidth{0};
    TBorderStyle m_borderStyle{bsNone};
    bool m_fullRepaint{true};
};

} // namespace qv
