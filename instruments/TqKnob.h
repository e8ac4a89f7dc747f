#pragma once
// TqKnob: a rotary knob turned by the mouse (press on the knob's face and drag round its
// centre) and by the keys (arrows by 1, Page Up/Down by a tenth of the range, Home/End to the
// ends). Its integer Value lies between Min and Max; the knob paints a ring of ticks, a shaded
// face with a stack of outlines for depth, four reflex wedges that glint as the value steps,
// and a pointer line. It is the base of the concentric TqDblKnob and TqTripKnob, which add
// inner rings through the protected ring interface below.
//
// The knob is always square, 45 to 120 pixels. It answers the mouse through a hit region (the
// face, inset by 8 pixels) that is built when bounds are set while the knob has a parent and
// when a form file has been read: a knob made in code answers the mouse only once its bounds
// are set after SetParent.

#include "componentbase/CachedFace.h"
#include "componentbase/FocusableInput.h"
#include "componentbase/PaintFrame.h"
#include "componentbase/Scale.h"
#include "platform/controls/WinControl.h"
#include "platform/graphics/Region.h"

#include <array>
#include <vector>

namespace qv {

enum KnobColorType { kcRed, kcBlue, kcGreen, kcYellow, kcMagenta, kcSilver, kcCyan, kcWhite };
QV_ENUM_TYPE(KnobColorType, "kcRed", "kcBlue", "kcGreen", "kcYellow", "kcMagenta", "kcSilver",
             "kcCyan", "kcWhite")

// The three shades of a knob colour: the reflex wedges are light and dark, the face is face.
// kcYellow's dark shade is lighter than its face on purpose.
struct TKnobShades {
    TColor light, face, dark;
};
extern const std::array<TKnobShades, 8> KnobShadeTable;

// The type of PointWidth, the pointer's pen width: 1..5.
const TTypeInfo& KnobPointWidthType();

// The angle of (X, Y) about (cx, cy) in whole degrees, counter-clockwise from the positive x
// axis with y up the screen; about -90..360 (points below the centre on the right are counted
// past 270, those on the left past 90).
int PointAngle(int cx, int cy, int X, int Y);

class TqKnob : public TFocusableInput<TCustomControl> {
    QV_OBJECT
public:
    struct Defaults : TFocusableDefaults {
        static constexpr bool HideReflex = false;
        static constexpr int Min = 0;
        static constexpr int Max = 100;
        static constexpr bool Ticks = true;
        static constexpr TColor TickColor = 0x000000;
        static constexpr int StepPerTick = 10;
        static constexpr TColor PointColor = 0x0000FF;
        static constexpr int PointWidth = 1;
        static constexpr int Size = 57; // width and height
        static constexpr KnobColorType KnobColor = kcSilver;
        static constexpr int Value = 0;
        static constexpr bool SteelLook = false;
    };
    // The sides a knob is kept within.
    static constexpr int MinSize = 45;
    static constexpr int MaxSize = 120;

    explicit TqKnob(TComponent* AOwner);

    bool HideReflex() const { return m_hideReflex; }
    void SetNoReflex(bool value);
    int Min() const { return m_range.Min(); }
    virtual void SetScaledMin(int value);
    int Max() const { return m_range.Max(); }
    virtual void SetScaledMax(int value);
    bool Ticks() const { return m_ticks; }
    void SetTicks(bool value);
    TColor TickColor() const { return m_tickColor; }
    void SetTickColor(TColor value);
    int StepPerTick() const { return m_stepPerTick; }
    void SetStep(int value);
    TColor PointColor() const { return m_pointColor; }
    void SetPoint(TColor value);
    int PointWidth() const { return m_pointWidth; }
    void SetPointW(int value);
    // Width and Height both set a square of that side.
    void SetheightWidth(int value);
    KnobColorType KnobColor() const { return m_knobColor; }
    void SetKnobCol(KnobColorType value);
    int Value() const { return m_value; }
    // Clamps into Min..Max, raises OnChange every time and OnMinimum/OnMaximum when the
    // argument (not the clamped value) equals Min/Max, then repaints at once.
    void SetKnobValue(int value);
    bool SteelLook() const { return m_steelLook; }
    void SetSteel(bool value);

    // Clamped to 45..120 each; the knob becomes a square of the side that changed (the height
    // when the width did not).
    void SetBounds(int ALeft, int ATop, int AWidth, int AHeight) override;
    void Loaded() override;

    // The value the point (X, Y) selects: its angle about the centre over a 290-degree sweep
    // from 145 degrees left of straight up, clockwise, in whole percent of the range. Of the
    // dead zone at the bottom, the part from 290 to 329 degrees gives Max, the rest Min.
    int Where(int X, int Y) const;

    TNotifyEvent OnPaint;
    TNotifyEvent OnChange;
    TNotifyEvent OnMinimum;
    TNotifyEvent OnMaximum;

protected:
    void Paint() override;
    void KeyDown(unsigned& Key, TShiftState Shift) override;
    void MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;
    void MouseMove(TShiftState Shift, int X, int Y) override;
    void MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;

    // One ring of the knob: its value, its limit events and its pointer colour. Ring 0 is the
    // outer knob (Value); the concentric knobs add inner ones, innermost last.
    struct TRing {
        int* value;
        const TNotifyEvent* onMinimum;
        const TNotifyEvent* onMaximum;
        TColor pointColor;
    };
    virtual int RingCount() const { return 1; }
    virtual TRing Ring(int index);
    // The ring the keys turn with this shift state.
    virtual int KeyRing(TShiftState) const { return 0; }
    // The work of every value setter: while a form file is read the value is stored as read
    // (Loaded brings it into the range, without events); otherwise it is clamped, OnChange is
    // raised, then the ring's OnMinimum/OnMaximum when the argument equals Min/Max, and the
    // knob repaints at once.
    void SetRingValue(const TRing& ring, int value);
    void SetRingValue(int index, int value) { SetRingValue(Ring(index), value); }

    // The tick ring about (c, c) with radius c: a line from the centre at every value divisible
    // by StepPerTick, each distinct angle drawn once. No ticks when Min = Max or StepPerTick is 0.
    void DrawTick(TCanvas& canvas, int c) const;
    // The four reflex wedges of a face of diameter d, moved by `shift` (the value's parity).
    void DrawReflex(TCanvas& canvas, int d, const TRect& face, int shift) const;
    // The side of a ring's knob: `depth` + 1 outlined ellipses of the face shade, shifted down and
    // right from `depth` pixels to 0; the last one is the face's top.
    void DrawStack(TCanvas& canvas, const TRect& face, int depth) const;
    // One ring's face over its stack: the reflex, the outline and the pointer for `value` with
    // radius `radius` - (PointWidth + 8).
    void DrawFace(TCanvas& canvas, const TRect& face, int value, TColor pointColor,
                  int radius) const;

    const TKnobShades& Shades() const { return KnobShadeTable[m_knobColor]; }

private:
    // What the part under the outer ring's face depends on: background, ticks, clearing disc
    // and the outer stack are drawn once per look and copied while it holds.
    struct TUnderlayLook {
        int width, height;
        TColor color;
        bool steel, ticks;
        TColor tickColor;
        int step, min, max;
        KnobColorType knobColor;
        bool operator==(const TUnderlayLook&) const = default;
    };

    TRect OuterFace() const;
    TBitmap& Underlay();
    void DrawKnob(TCanvas& canvas);
    void DrawClearingDisc(TCanvas& canvas, const TRect& face) const;
    void DrawPointer(TCanvas& canvas, int value, TColor color, int radius) const;
    void BuildHitRegions();
    // The innermost ring whose hit region holds (X, Y), or -1.
    int RingAt(int X, int Y) const;
    // Re-applies every ring's value through its setter after the range changed.
    void ReapplyValues();
    // Moves the dragged ring to the pointer's position and repaints.
    void DragTo(int X, int Y);

    bool m_hideReflex{Defaults::HideReflex};
    TLoadingRange m_range{Defaults::Min, Defaults::Max};
    bool m_ticks{Defaults::Ticks};
    TColor m_tickColor{Defaults::TickColor};
    int m_stepPerTick{Defaults::StepPerTick};
    TColor m_pointColor{Defaults::PointColor};
    int m_pointWidth{Defaults::PointWidth};
    KnobColorType m_knobColor{Defaults::KnobColor};
    int m_value{Defaults::Value};
    bool m_steelLook{Defaults::SteelLook};
    std::vector<TRegion> m_hitRegions; // one per ring, outermost first; empty until built
    int m_dragRing{-1};                // the ring being dragged, -1 when none
    TPaintFrame m_frame;
    TCachedFace<TUnderlayLook> m_underlay;
};

} // namespace qv
