#pragma once
// TqSlideBar: a focusable track bar. A groove with tick marks and a movable thumb whose integer
// Value lies between Min and Max; horizontal, or vertical growing upwards. The bar takes its
// orientation from its shape whenever it is resized (taller than wide: vertical). Focus shows
// in the groove colour (FocusColor or NonFocusColor), not as a focus rectangle.
//
// Mouse: a press on the thumb with JumpToMouse sets the value under the pointer and drags; a
// press beside the thumb steps the value by one towards the pointer on release. Keys: arrows,
// Page Up/Down, Home and End through the Value setter, then OnKeyDown.
//
// Picture: the groove runs across the middle of the bar over the travel of the thumb's centre,
// Thickness pixels of groove colour inside a one-pixel edge (sunken for bsLowered, raised for
// bsRaised); a tick every StepPerTick values from Min stands where the thumb's centre stands for
// that value, TickSpace pixels off the groove's edge and TickSize pixels long, on the TickWhere
// sides (left/top, right/bottom). Values that land on one pixel share a tick, so the full
// integer range costs at most one tick per pixel.

#include "componentbase/FocusableInput.h"
#include "componentbase/PaintFrame.h"
#include "componentbase/Scale.h"
#include "platform/controls/WinControl.h"
#include "platform/core/Strings.h"
#include "slidebar/SlideThumbs.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace qv {

enum TqTickStyle { tsNormal, tsOwnerDraw };
QV_ENUM_TYPE(TqTickStyle, "tsNormal", "tsOwnerDraw")
enum TBarTickStyle { ttsLeft, ttsRight, ttsBoth };
QV_ENUM_TYPE(TBarTickStyle, "ttsLeft", "ttsRight", "ttsBoth")
enum TOrientation { orVertical, orHorizontal };
QV_ENUM_TYPE(TOrientation, "orVertical", "orHorizontal")
enum TBarStyle { bsLowered, bsRaised };
QV_ENUM_TYPE(TBarStyle, "bsLowered", "bsRaised")

// Draws one tick: the canvas of the picture, the tick's first pixel (its end away from the
// groove on the left/top row, its end at the groove's side on the right/bottom row), whether
// it is the left/top row, and its number (0 at Min).
using TsSlideTickOwnerDraw =
    std::function<void(TObject* Sender, TCanvas* Canvas, int X, int Y, bool Left, int TickNum)>;
QV_EVENT_TYPE(TsSlideTickOwnerDraw)

// The type of StepPerTick: 1..2147483647.
const TTypeInfo& BarTickType();

class TqSlideBar : public TFocusableInput<TCustomControl> {
    QV_OBJECT
public:
    struct Defaults : TFocusableDefaults {
        static constexpr bool JumpToMouse = true;
        static constexpr TColor Color = clBtnFace;
        static constexpr bool SteelLook = false;
        static constexpr int TickSpace = 3;
        static constexpr int TickSize = 4;
        static constexpr TqTickStyle TickStyle = tsNormal;
        static constexpr TBarTickStyle TickWhere = ttsBoth;
        static constexpr int StepPerTick = 1;
        static constexpr TColor FocusColor = clActiveCaption;
        static constexpr TColor NonFocusColor = clBtnFace;
        static constexpr int Max = 10;
        static constexpr int Min = 0;
        static constexpr TOrientation Orientation = orHorizontal;
        static constexpr int Value = 0;
        static constexpr std::uint8_t Thickness = 2;
        static constexpr TThumbStyle ThumbStyle = tsVertHigh;
        static constexpr bool Ticks = true;
        static constexpr TBarStyle Style = bsLowered;
        static constexpr int Width = 150;
        static constexpr int Height = 20;
    };

    explicit TqSlideBar(TComponent* AOwner);

    bool JumpToMouse() const { return m_jumpToMouse; }
    void SetJumpToMouse(bool value) { m_jumpToMouse = value; }
    // Hides the framework's setter: equality test, then an immediate repaint.
    void SetColor(TColor value);
    bool SteelLook() const { return m_steelLook; }
    void SetSteel(bool value);
    int TickSpace() const { return m_tickSpace; }
    void SetTickSpace(int value);
    int TickSize() const { return m_tickSize; }
    void SetTickSize(int value);
    TqTickStyle TickStyle() const { return m_tickStyle; }
    void SetTickStyle(TqTickStyle value);
    TBarTickStyle TickWhere() const { return m_tickWhere; }
    void SetTickWhere(TBarTickStyle value);
    int StepPerTick() const { return m_stepPerTick; }
    // Clamped into 1..2147483647.
    void SetStepPerTick(int value);
    TColor FocusColor() const { return m_focusColor; }
    void SetFocusColor(TColor value);
    TColor NonFocusColor() const { return m_nonFocusColor; }
    void SetNonFocusColor(TColor value);
    TStringList* Labels() const { return m_labels.get(); }
    // Copies the lines.
    void SetLabels(const TStrings& value);
    int Max() const { return m_range.Max(); }
    // Only a value above Min is taken; Value is not brought into the new range.
    void SetMax(int value);
    int Min() const { return m_range.Min(); }
    // Only a value below Max is taken; Value is not brought into the new range.
    void SetMin(int value);
    TOrientation Orientation() const { return m_orientation; }
    // Outside loading, an orientation that contradicts the shape swaps Width and Height.
    void SetOrientation(TOrientation value);
    int Value() const { return m_value; }
    // Takes a value within Min..Max (another leaves Value as it is), repaints, then raises
    // OnChange, and OnMinimum/OnMaximum when the stored Value equals Min/Max; nothing when the
    // argument equals Value, and no events while designing. While a form file is read the value
    // is stored as read, without events.
    void SetPosition(int value);
    std::uint8_t Thickness() const { return m_thickness; }
    void SetThickness(std::uint8_t value);
    TThumbStyle ThumbStyle() const { return m_thumbStyle; }
    // Rebuilds the thumb and its mask.
    void SetThumbStyle(TThumbStyle value);
    bool Ticks() const { return m_ticks; }
    void SetTicks(bool value);
    TBarStyle Style() const { return m_style; }
    void SetStyle(TBarStyle value);

    bool IsVert() const { return m_orientation == orVertical; }
    // The value at (X, Y): X over the whole Width, or Y over the whole Height upwards, as a
    // share of Max - Min rounded half to even, within Min..Max. A bar of no extent gives Min.
    int NewPosition(int X, int Y) const;
    // Places the thumb for Value and returns its rectangle.
    TRect WhereIsBar();
    // The thumb's rectangle as last placed.
    TRect ThumbRect() const { return m_thumbRect; }
    // The label of Value: line Value - Min of Labels, or "" when there is none.
    std::string CurrentLabel() const;
    // The pen of the groove's top-left and bottom-right edges, by Style.
    void SetTLColor(TCanvas* canvas) const;
    void SetBRColor(TCanvas* canvas) const;

    void Loaded() override;

    TMouseEvent OnMouseUpTwo;
    TNotifyEvent OnChange;
    TNotifyEvent OnMinimum;
    TNotifyEvent OnMaximum;
    TsSlideTickOwnerDraw OnOwnerDraw;

protected:
    void Paint() override;
    void KeyDown(unsigned& Key, TShiftState Shift) override;
    void MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;
    void MouseMove(TShiftState Shift, int X, int Y) override;
    void MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;
    void WMSize(TMessage& Message) override;

private:
    // The thumb's offset along the bar for `value` (x, or y from the top), within
    // 0..length - thumb length.
    int ThumbOffset(std::int64_t value) const;
    // The thumb's free travel: Width (Height) less the thumb's.
    int Travel() const;
    int HalfLength() const { return IsVert() ? m_halfHeight : m_halfWidth; }
    // The groove with its edges, across the middle of the bar.
    TRect GrooveRect() const;
    void DrawGroove(TCanvas& c, const TRect& groove) const;
    void DrawTicks(TCanvas& c, const TRect& groove);
    // One tick at `along` pixels along the bar on each chosen side of `groove`.
    void DrawTick(TCanvas& c, const TRect& groove, int along, std::int64_t number);
    void DrawTickLine(TCanvas& c, int along, std::int64_t from, bool left, std::int64_t number);
    void BuildThumb();
    void SetFromPoint(int X, int Y) { SetPosition(NewPosition(X, Y)); }
    void StepTowards(int X, int Y);

    bool m_jumpToMouse{Defaults::JumpToMouse};
    bool m_steelLook{Defaults::SteelLook};
    int m_tickSpace{Defaults::TickSpace};
    int m_tickSize{Defaults::TickSize};
    TqTickStyle m_tickStyle{Defaults::TickStyle};
    TBarTickStyle m_tickWhere{Defaults::TickWhere};
    int m_stepPerTick{Defaults::StepPerTick};
    TColor m_focusColor{Defaults::FocusColor};
    TColor m_nonFocusColor{Defaults::NonFocusColor};
    std::unique_ptr<TStringList> m_labels;
    TLoadingRange m_range{Defaults::Min, Defaults::Max};
    TOrientation m_orientation{Defaults::Orientation};
    int m_value{Defaults::Value};
    std::uint8_t m_thickness{Defaults::Thickness};
    TThumbStyle m_thumbStyle{Defaults::ThumbStyle};
    bool m_ticks{Defaults::Ticks};
    TBarStyle m_style{Defaults::Style};

    TBitmap m_thumb;
    TBitmap m_mask;
    int m_halfHeight{0};
    int m_halfWidth{0};
    TRect m_thumbRect{};
    bool m_dragging{false};
    int m_dragStart{0};
    TPaintFrame m_frame;
};

} // namespace qv
