#pragma once
// TqxSpinBtn: an up and a down button stacked in one graphic control. A press fires the
// button's event once on release and, while the button is held, again every SpinSpeed
// milliseconds after waiting WaitRepeat + 1 periods (with the defaults: one second, then every
// 250 ms). Moving off the pressed button pops it out (no repeats, no click on release) until
// the pointer returns. Not focusable; it paints every pixel: a flat face, bevel lines and
// triangular arrows.
//
// Zones, inclusive: the up button holds rows 0..U (U = Height div 2), the down button the rows
// below. Every line is a polyline without its last pixel, so the one-pixel tip row of each
// arrow draws nothing; a pressed button shows its arrow one pixel right and down and its bevel
// inverted. Controls 10 pixels wide or less draw no arrows.

#include "componentbase/PaintFrame.h"
#include "platform/controls/Timer.h"
#include "platform/controls/WinControl.h"

namespace qv {

// The repeat period in milliseconds (50..2500) and the periods waited before repeating (0..10).
const TTypeInfo& TqxSpinSpeedType();
const TTypeInfo& TqxSpinWaitRepeatType();

class TqxSpinBtn : public TGraphicControl {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr int Width = 16;
        static constexpr int Height = 21;
        static constexpr TColor Color = clBtnFace;
        static constexpr TColor GlyphColor = clBtnText;
        static constexpr TColor GlyphDisableColor = clGrayText;
        static constexpr TColor HighLightColor = clBtnHighlight;
        static constexpr TColor ShadowColor = clBtnShadow;
        static constexpr int SpinSpeed = 250;
        static constexpr int WaitRepeat = 2;
        static constexpr bool UseRepeat = true;
    };

    explicit TqxSpinBtn(TComponent* AOwner);

    // Hides the framework's setter: stores and repaints.
    void SetColor(TColor value);
    TColor GlyphColor() const { return m_glyphColor; }
    void SetGlyphColor(TColor value);
    TColor GlyphDisableColor() const { return m_glyphDisableColor; }
    void SetGlyphDisableColor(TColor value);
    TColor HighLightColor() const { return m_highLightColor; }
    void SetHighLightColor(TColor value);
    TColor ShadowColor() const { return m_shadowColor; }
    void SetShadowColor(TColor value);
    int SpinSpeed() const { return m_spinSpeed; }
    // Clamped into 50..2500; also the repeat timer's interval.
    void SetSpinSpeed(int value);
    int WaitRepeat() const { return m_waitRepeat; }
    // Clamped into 0..10; restarts the wait.
    void SetWaitRepeat(int value);
    bool UseRepeat() const { return m_useRepeat; }
    void SetUseRepeat(bool value) { m_useRepeat = value; }

    // Applies the bounds, then lays the buttons out again.
    void SetBounds(int ALeft, int ATop, int AWidth, int AHeight) override;
    void Loaded() override;
    // OnClick, then the pressed button's event.
    void Click() override;

    // The layout (see the class comment).
    int UpperHeight() const { return m_upperHeight; }
    int LowerTop() const { return m_lowerTop; }
    int ArrowSize() const { return m_arrowSize; }
    int ArrowTop() const { return m_arrowTop; }
    bool UpPressed() const { return m_pressed == TButton::Up; }
    bool DownPressed() const { return m_pressed == TButton::Down; }
    // The repeat timer (its state and interval), for tests.
    const TTimer& RepeatTimer() const { return *m_timer; }

    TNotifyEvent OnUpClick;
    TNotifyEvent OnDownClick;
    TNotifyEvent OnPaint;

protected:
    enum class TButton { None, Up, Down, Centre };

    void Paint() override;
    void MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;
    void MouseMove(TShiftState Shift, int X, int Y) override;
    void MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;
    void WMEraseBkgnd(TMessage& Message) override;

    // The layout step: upper height, lower top and the arrow from the height and width.
    virtual void Layout();
    // The button whose zone holds (X, Y), or None.
    virtual TButton ButtonAt(int X, int Y) const;
    // The centre button's face and bevel, drawn by the centre form.
    virtual void DrawCentre(TCanvas&) const {}
    // Raises the event of `button`.
    virtual void ButtonClicked(TButton button);

    // The bevel of the button between rows top and bottom (exclusive): shadow outside above and
    // left and inside below and right; the inner top-left and outer bottom-right lines swap
    // black and highlight when pressed.
    void DrawBevel(TCanvas& c, int top, int bottom, bool pressed) const;
    bool IsPressed(TButton button) const { return m_pressed == button; }
    void SetArrowFromUpperHeight();

    int m_upperHeight{0};
    int m_lowerTop{0};

private:
    void DrawUpArrow(TCanvas& c) const;
    void DrawDownArrow(TCanvas& c) const;
    TColor GlyphPen() const { return Enabled() ? m_glyphColor : m_glyphDisableColor; }
    void TimerStep();
    void Release();

    TColor m_glyphColor{Defaults::GlyphColor};
    TColor m_glyphDisableColor{Defaults::GlyphDisableColor};
    TColor m_highLightColor{Defaults::HighLightColor};
    TColor m_shadowColor{Defaults::ShadowColor};
    int m_spinSpeed{Defaults::SpinSpeed};
    int m_waitRepeat{Defaults::WaitRepeat};
    bool m_useRepeat{Defaults::UseRepeat};
    int m_counter{0};
    int m_arrowSize{0};
    int m_arrowTop{0};
    TButton m_pressed{TButton::None};  // drawn pressed and eligible for the click
    TButton m_captured{TButton::None}; // the button the press began on
    bool m_capturing{false};           // a press began on a button
    TTimer* m_timer{nullptr};          // owned through the component tree
    TPaintFrame m_frame;
};

} // namespace qv
