#pragma once
// TColorButtonBase<Base>: what the colour-button family shares, on a windowed or a graphic
// base: the hover, down and held states and the mouse rules that move them, SetMouseIn
// (re-synchronising the hover state), the caption and bevel settings and the paint (face,
// bevel, caption). A button of the family replaces PaintFace for its own face and states its
// differences through the small virtuals below.

#include "componentbase/CaptionText.h"
#include "componentbase/EnterLeaveEvents.h"
#include "componentbase/PaintFrame.h"
#include "platform/controls/WinControl.h"

#include <cstdint>

namespace qv {

struct TColorButtonDefaults {
    static constexpr int Width = 89;
    static constexpr int Height = 33;
    static constexpr bool Flat = false;
    static constexpr qbHorzAlign HorzAlign = qbha_Center;
    static constexpr bool MultipleLines = false;
    static constexpr bool WordWrap = false;
    static constexpr TAlignment Alignment = taCenter;
    static constexpr bool Cancel = false;
    static constexpr TColor HighLightColor = clBtnHighlight;
    static constexpr TColor ShadowColor = clBtnShadow;
    static constexpr std::size_t MaxCaption = 255; // longer captions are cut
};

// The bevel: four one-pixel polylines round (0, 0, R, B), each without its last point; black
// and the highlight swap places when `down`.
void PaintColorButtonBevel(TCanvas& canvas, int R, int B, bool down, TColor highlight,
                           TColor shadow);

template <class Base> class TColorButtonBase : public TEnterLeaveEvents<Base> {
public:
    using Defaults = TColorButtonDefaults;
    explicit TColorButtonBase(TComponent* AOwner);

    bool Flat() const { return m_flat; }
    void SetFlat(bool value);
    qbHorzAlign HorzAlign() const { return m_horzAlign; }
    void SetHorzAlign(qbHorzAlign value);
    bool MultipleLines() const { return m_multipleLines; }
    void SetMultipleLines(bool value);
    bool WordWrap() const { return m_wordWrap; }
    void SetWordWrap(bool value);
    TAlignment Alignment() const { return m_alignment; }
    void SetAlignment(TAlignment value);
    bool Cancel() const { return m_cancel; }
    void SetCancel(bool value) { m_cancel = value; }
    TColor HighLightColor() const { return m_highLightColor; }
    void SetHighLightColor(TColor value);
    TColor ShadowColor() const { return m_shadowColor; }
    void SetShadowColor(TColor value);

    // The states: the mouse is over the button (kept only while hover is tracked), the face
    // is drawn pressed, the left button went down inside and is not released yet.
    bool Hovered() const { return m_hover; }
    bool Down() const { return m_down; }
    bool Held() const { return m_held; }

    TNotifyEvent OnPaint;

protected:
    // Re-synchronises the hover state: sets it to the opposite of the truth and sends the
    // notification that sets it right, so OnMouseEnter or OnMouseLeave fires every time.
    void SetMouseIn();
    // Whether SetMouseIn runs at all.
    virtual bool TracksHover() const { return this->Enabled(); }
    // A left press inside a button that is not down yet.
    virtual void PressByMouse() = 0;
    // The repaint after a release that ends holding.
    virtual void RepaintAfterRelease() { this->Invalidate(); }
    // Whether the bevel is drawn now.
    virtual bool BevelShown() const;
    // Whether a pressed caption moves one pixel right and down.
    virtual bool CaptionMoves() const { return this->Enabled() && m_down; }
    // What lies under the face: the face colour.
    virtual TFrameBackground Background() const { return TFrameBackground::Flat(this->Color()); }
    // The face on top of the background; the plain colour button has nothing to add. False
    // abandons the paint: nothing more is drawn, copied or announced.
    virtual bool PaintFace(TCanvas&) { return true; }
    // The event fired after painting (a subclass with a paint event of its own fires that).
    virtual const TNotifyEvent& PaintEvent() const { return OnPaint; }
    // The caption's font style and what is drawn after the caption (the focus rectangle).
    virtual void AdjustCaptionFont(TFont&) {}
    virtual void PaintAfterCaption(TCanvas&) {}
    // Inside for the mouse: 0 <= X < ClientWidth and 0 <= Y <= ClientHeight.
    bool Inside(int X, int Y) const;
    void ClearHover() { m_hover = false; }
    void SetHover(bool value) { m_hover = value; }
    void SetDown(bool value) { m_down = value; }
    void EndHolding() { m_down = m_held = false; }

    void Paint() override;
    void MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;
    void MouseMove(TShiftState Shift, int X, int Y) override;
    void MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;
    void WMRButtonUp(TMessage& Message) override;
    void CMEnabledChanged(TMessage& Message) override;
    void CMFontChanged(TMessage& Message) override;
    void CMTextChanged(TMessage& Message) override;
    void CMSysColorChange(TMessage& Message) override;
    // The hover part of the enter and leave notifications; the events fire after them.
    void CMMouseEnter(TMessage& Message) override;
    void CMMouseLeave(TMessage& Message) override;
    virtual void EnterHover();
    virtual bool LeavesHover() const { return m_flat && !m_held; }

private:
    void PaintCaption(TCanvas& canvas);

    bool m_flat{Defaults::Flat};
    qbHorzAlign m_horzAlign{Defaults::HorzAlign};
    bool m_multipleLines{Defaults::MultipleLines};
    bool m_wordWrap{Defaults::WordWrap};
    TAlignment m_alignment{Defaults::Alignment};
    bool m_cancel{Defaults::Cancel};
    TColor m_highLightColor{Defaults::HighLightColor};
    TColor m_shadowColor{Defaults::ShadowColor};
    bool m_hover{false};
    bool m_down{false};
    bool m_held{false};
    TPaintFrame m_frame;
};

extern template class TColorButtonBase<TCustomControl>;
extern template class TColorButtonBase<TGraphicControl>;

} // namespace qv
