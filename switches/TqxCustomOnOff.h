#pragma once
// TqxCustomOnOff: the common base of the on/off switches. It owns the on/off state and its
// events, the pressed look while the left button or the space bar is held, toggling by mouse,
// space bar and the caption's accelerator, the two hit regions that decide where a press
// counts, the paint (background, picture, focus frame, copy, OnPaint) and the caption.
//
// A switch toggles on a press in the region it would move to (the on region while off, the
// off region while on) followed by a release inside; dragging out springs the look back and a
// release outside does not toggle. The base's regions are the upper (on) and lower (off)
// halves of the control; they exist from Loaded or the first GlyphAlign change on. A variant
// draws its picture in the three paint hooks, may give its own regions, and rebuilds them
// whenever its geometry changes (FollowGeometry), so that a switch made in code answers the
// mouse at once.
//
// For the pictures the base offers PictureLayout (where the picture and the caption go for
// GlyphAlign), LampColor (Color when lit, half of each channel when not) and BevelColors.

#include "componentbase/Bevels.h"
#include "componentbase/CaptionText.h"
#include "componentbase/FocusableInput.h"
#include "componentbase/PaintFrame.h"
#include "platform/controls/WinControl.h"
#include "platform/core/ClassBuilder.h"
#include "platform/graphics/Region.h"

namespace qv {

// Where a variant puts its picture relative to the caption.
enum TqxOnOffGraphPlacement { qxgp_Top, qxgp_Bottom, qxgp_Left, qxgp_Right };
QV_ENUM_TYPE(TqxOnOffGraphPlacement, "qxgp_Top", "qxgp_Bottom", "qxgp_Left", "qxgp_Right")

// The picture's and the caption's rectangles of a switch.
struct TOnOffLayout {
    TRect picture;
    TRect text;
};

// Splits `client` by `placement`: for Top/Bottom the caption gets one line of `lineHeight`,
// for Left/Right a square of the client's height (at most the whole width) goes to the
// picture. Without a caption the picture is the whole client. No rectangle is negative.
TOnOffLayout SplitOnOffClient(const TRect& client, TqxOnOffGraphPlacement placement,
                              bool hasCaption, int lineHeight);

class TqxCustomOnOff : public TFocusableInput<TCustomControl> {
    QV_OBJECT
public:
    struct Defaults : TFocusableDefaults {
        static constexpr bool UseFocusBold = true;
        static constexpr bool UseFocusFrame = false;
        static constexpr bool ShowTextPress = true;
        static constexpr TColor BackColor = clBtnFace;
        static constexpr bool SwitchOn = false;
        static constexpr qbHorzAlign HorzAlign = qbha_Center;
        static constexpr bool MultipleLines = false;
        static constexpr bool WordWrap = false;
        static constexpr TAlignment Alignment = taCenter;
        static constexpr TColor Color = 0xFF00FF;
        static constexpr bool ParentColor = false; // setting Color in the constructor clears it
        static constexpr TColor HighLightColor = clBtnHighlight;
        static constexpr TColor ShadowColor = clBtnShadow;
        static constexpr bool SteelLook = false;
        static constexpr TqxOnOffGraphPlacement GlyphAlign = qxgp_Top;
        static constexpr int Width = 89;
        static constexpr int Height = 33;
    };

    explicit TqxCustomOnOff(TComponent* AOwner);

    bool UseFocusBold() const { return m_useFocusBold; }
    void SetUseFocusBold(bool value);
    bool UseFocusFrame() const { return m_useFocusFrame; }
    void SetUseFocusFrame(bool value);
    bool ShowTextPress() const { return m_showTextPress; }
    void SetShowTextPress(bool value);
    TColor BackColor() const { return m_backColor; }
    void SetBackColor(TColor value);
    bool SwitchOn() const { return m_switchOn; }
    // Stores a changed value, invalidates and raises OnOn or OnOff (from code too).
    void SetSwitchOn(bool value);
    qbHorzAlign HorzAlign() const { return m_horzAlign; }
    void SetHorzAlign(qbHorzAlign value);
    bool MultipleLines() const { return m_multipleLines; }
    void SetMultipleLines(bool value);
    bool WordWrap() const { return m_wordWrap; }
    void SetWordWrap(bool value);
    TAlignment Alignment() const { return m_alignment; }
    void SetAlignment(TAlignment value);
    TColor HighLightColor() const { return m_highLightColor; }
    void SetHighLightColor(TColor value);
    TColor ShadowColor() const { return m_shadowColor; }
    void SetShadowColor(TColor value);
    bool SteelLook() const { return m_steelLook; }
    void SetSteelLook(bool value);
    // Published by the variants; a change rebuilds the regions.
    TqxOnOffGraphPlacement GlyphAlign() const { return m_glyphAlign; }
    void SetGlyphAlign(TqxOnOffGraphPlacement value);

    // Drawn pressed: the left button or the space bar is held and the pointer is inside.
    bool Pressed() const { return m_pressed; }
    // The hit regions; null until first built.
    const HRGN& OnRegion() const { return m_onRegion; }
    const HRGN& OffRegion() const { return m_offRegion; }

    void Loaded() override;
    void SetBounds(int ALeft, int ATop, int AWidth, int AHeight) override;
    // Toggles only after a press or a key click; then OnOn/OnOff, then OnClick.
    void Click() override;

    TNotifyEvent OnPaint;
    TNotifyEvent OnOn;
    TNotifyEvent OnOff;

protected:
    // The variants publish GlyphAlign last, after the base's list.
    template <class C> static void PublishGlyphAlign(TClassBuilder<C>& b) {
        b.Property("GlyphAlign", &C::GlyphAlign, &C::SetGlyphAlign).Default(Defaults::GlyphAlign);
    }
    // What a variant's picture shows.
    enum class TLook { Off, On, Disabled };

    // The picture of each state, drawn on the off-screen canvas after the background.
    virtual void PaintDisabled(TCanvas&) {}
    virtual void PaintOn(TCanvas&) {}
    virtual void PaintOff(TCanvas&) {}
    // Frees both regions and asks GetOnReg and GetOffReg for new ones.
    virtual void GetRegs();
    // The upper half (0, 0, Width, Height div 2).
    virtual void GetOnReg(HRGN& region);
    // The lower half (0, Height div 2, Width, Height).
    virtual void GetOffReg(HRGN& region);
    // Draws the caption into `rect` (see CaptionTextFlags); the variants call it from their
    // paint hooks with the rectangle their layout leaves for the text.
    void PaintText(TRect rect, TCanvas& canvas);

    // From now on, a new size or font rebuilds the regions; rebuilds them now.
    void FollowGeometry();
    // The picture's and the caption's rectangles for GlyphAlign, the caption and the font.
    TOnOffLayout PictureLayout() const;
    // Color when lit; each channel halved when not.
    TColor LampColor(bool lit) const;
    TBevelColors BevelColors() const { return {m_highLightColor, m_shadowColor}; }
    // Inside for the mouse: 0 <= X < ClientWidth and 0 <= Y <= ClientHeight.
    bool Inside(int X, int Y) const;

    void Paint() override;
    void MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;
    void MouseMove(TShiftState Shift, int X, int Y) override;
    void MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;
    void KeyDown(unsigned& Key, TShiftState Shift) override;
    void KeyUp(unsigned& Key, TShiftState Shift) override;
    // The switch leaves the arrow keys to the form.
    void WMGetDlgCode(TMessage& Message) override;
    void CMDialogChar(TMessage& Message) override;
    void CMFocusChanged(TMessage& Message) override;
    void CMTextChanged(TMessage& Message) override;
    void CMEnabledChanged(TMessage& Message) override;
    void CMFontChanged(TMessage& Message) override;
    void CMSysColorChange(TMessage& Message) override;

private:
    // The line height of Font, for the caption's share of the client.
    int FontLineHeight() const;
    // The region the switch moves to holds (X, Y).
    bool InTargetRegion(int X, int Y) const;

    bool m_useFocusBold{Defaults::UseFocusBold};
    bool m_useFocusFrame{Defaults::UseFocusFrame};
    bool m_showTextPress{Defaults::ShowTextPress};
    TColor m_backColor{Defaults::BackColor};
    bool m_switchOn{Defaults::SwitchOn};
    qbHorzAlign m_horzAlign{Defaults::HorzAlign};
    bool m_multipleLines{Defaults::MultipleLines};
    bool m_wordWrap{Defaults::WordWrap};
    TAlignment m_alignment{Defaults::Alignment};
    TColor m_highLightColor{Defaults::HighLightColor};
    TColor m_shadowColor{Defaults::ShadowColor};
    bool m_steelLook{Defaults::SteelLook};
    TqxOnOffGraphPlacement m_glyphAlign{Defaults::GlyphAlign};
    HRGN m_onRegion;
    HRGN m_offRegion;
    bool m_pressed{false};        // drawn pressed
    bool m_mousePress{false};     // the current press was started by the mouse
    bool m_keyClick{false};       // the next Click comes from the keyboard or an accelerator
    bool m_followGeometry{false}; // size and font changes rebuild the regions
    TPaintFrame m_frame;
};

} // namespace qv
