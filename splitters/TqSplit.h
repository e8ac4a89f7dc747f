#pragma once
// TqSplit: the bar of a splitter container (TqVerSplit, TqHorSplit), a panel created and
// owned by the container as its child; it is never written to form files and is never one of
// the panes. The user drags it with the left button: while the button is held an indicator
// (a plain control over the panes, so that whatever it uncovers repaints) follows the
// pointer along the bar's axis, clamped as the classic outline was (it may overshoot an end
// by the grab offset); the release moves the bar to the unclamped position, keeps it inside
// the container and sets the container's split position from how far it moved.
//
// With the container's NewLook the bar paints two raised ridges side by side on the
// container's colour; otherwise it paints as a panel (border and bevels).

#include "platform/controls/CustomPanel.h"

namespace qv {

class TqVerSplit;

class TqSplit : public TCustomPanel {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr int Thickness = 6;
        static constexpr TBorderStyle BorderStyle = bsSingle;
    };

    TqSplit(TqVerSplit& container, bool vertical);
    ~TqSplit() override;

    bool Vertical() const { return m_vertical; }
    bool Dragging() const { return m_dragging; }
    // The width of a vertical bar, the height of a horizontal one.
    int Thickness() const { return m_vertical ? Width() : Height(); }
    void SetThickness(int value);
    // Places the bar at `position` along the container's axis.
    void SetPosition(int position);
    // The drag indicator's bounds in the container while dragging.
    TRect DragRect() const { return m_dragRect; }
    // Cursor, border and bevels of the new look or the classic one.
    void ApplyLook(bool newLook);

protected:
    void MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;
    void MouseMove(TShiftState Shift, int X, int Y) override;
    void MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;
    void Paint() override;

private:
    void PaintNewLook(TCanvas& canvas);
    // The pointer position limited along the axis and pinned across it.
    TPoint ClampedPointer(int X, int Y) const;
    void ShowIndicator(const TRect& rect);
    void HideIndicator();
    void EndDrag(int X, int Y);

    TqVerSplit& m_container;
    bool m_vertical;
    bool m_dragging{false};
    TRect m_dragRect;
    TPoint m_grab;
    TPoint m_last;
    int m_startLeft{0};
    int m_startTop{0};
    TCustomControl* m_indicator{nullptr}; // owned by the container, shown while dragging
};

} // namespace qv
