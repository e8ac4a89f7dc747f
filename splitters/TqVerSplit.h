#pragma once
// TqVerSplit: a two-pane container with a draggable bar (TqSplit) between a left and a right
// pane; TqHorSplit (TqHorSplit.h) puts the bar across, panes above and below. WhereSplit is the bar's left
// (top) edge; setting it clamps it into the container, moves the bar, shifts the child
// controls by the distance (those at or beyond the old position as the right/bottom pane,
// the others as the left/top pane, each side only while its MoveOnChange switch is on) and
// always fires OnSplitChange. SplitterWidth is the bar's thickness: at least 6, even with
// NewLook, at most half the container; changing it first puts the split at 0.
//
// While a form file is read SplitterWidth and WhereSplit come before the size they are
// clamped against, so they are kept as read and applied in Loaded (without events and
// without moving the children, which the file places itself); OnBeforeShow then fires.
// The width and height are at least 10. PassMouseOn hands a left press on the container
// (not on the bar) to its parent, in the parent's coordinates.

#include "TqSplit.h"

#include "platform/controls/CustomPanel.h"

#include <optional>

namespace qv {

class TqVerSplit : public TCustomPanel {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr bool PassMouseOn = false;
        static constexpr bool MoveOnChange = true;
        static constexpr TBorderStyle SplitterStyle = TqSplit::Defaults::BorderStyle;
        static constexpr int SplitterWidth = TqSplit::Defaults::Thickness;
        static constexpr TBevelCut SplitterInner = bvNone;
        static constexpr TBevelCut SplitterOuter = bvRaised;
        static constexpr int Size = 200;
        static constexpr int MinSize = 10;
        static constexpr int WhereSplit = 0;
        static constexpr bool NewLook = false;
    };

    explicit TqVerSplit(TComponent* AOwner);

    bool PassMouseOn() const { return m_passMouseOn; }
    void SetPassMouseOn(bool value) { m_passMouseOn = value; }
    bool MoveOnChangeLeft() const { return m_moveLeft; }
    void SetMoveOnChangeLeft(bool value) { m_moveLeft = value; }
    bool MoveOnChangeRight() const { return m_moveRight; }
    void SetMoveOnChangeRight(bool value) { m_moveRight = value; }
    TBorderStyle SplitterStyle() const { return m_bar->BorderStyle(); }
    void SetSplitterStyle(TBorderStyle value);
    int SplitterWidth() const { return GetSplitterWidth(); }
    void SetSplitterWidth(int value);
    TBevelCut SplitterInner() const { return m_bar->BevelInner(); }
    void SetSplitterInner(TBevelCut value);
    TBevelCut SplitterOuter() const { return m_bar->BevelOuter(); }
    void SetSplitterOuter(TBevelCut value);
    int WhereSplit() const { return m_whereSplit; }
    void SetWhere(int value);
    bool NewLook() const { return m_newLook; }
    void SetNewLook(bool value);

    void SetBounds(int ALeft, int ATop, int AWidth, int AHeight) override;

    void GoMaximum();
    void GoMinimum();
    void GoMedium();
    void SetLeftTop(TControl& control) const;
    void SetRightBottom(TControl& control) const;
    int GetSplitterWidth() const { return m_bar->Thickness(); }
    TqSplit& Bar() const { return *m_bar; }
    bool Vertical() const { return m_bar->Vertical(); }

    TNotifyEvent OnSplitChange;
    TNotifyEvent OnBeforeShow;

protected:
    TqVerSplit(TComponent* AOwner, bool vertical);
    virtual void DoSplitChange();
    virtual void DoSize();
    void Loaded() override;
    void Resize() override;
    void Paint() override;
    void WMLButtonDown(TMessage& Message) override;

private:
    // The container's size along the bar's axis (width for a vertical bar).
    int AxisSize() const { return Vertical() ? Width() : Height(); }
    int ThicknessFor(int value) const;
    int ClampedPosition(int value) const;
    void MovePanes(int oldPosition, int delta);

    TqSplit* m_bar{nullptr}; // owned by this container, made in the constructor
    bool m_passMouseOn{Defaults::PassMouseOn};
    bool m_moveLeft{Defaults::MoveOnChange};
    bool m_moveRight{Defaults::MoveOnChange};
    int m_whereSplit{Defaults::WhereSplit};
    bool m_newLook{Defaults::NewLook};
    // Read from a form file, applied in Loaded.
    std::optional<int> m_readSplitterWidth;
    std::optional<int> m_readWhereSplit;
};

} // namespace qv
