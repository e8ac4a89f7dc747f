#pragma once
// TComboListWindow: the drop-down list of a combo box, a popup window below (or, without
// room, above) the combo box. Its rows are painted by the combo box; the highlighted row
// follows the pointer, the wheel and the combo box's keys, and a release on a row chooses it.
// A press elsewhere cancels it. With more items than rows a scroll bar shows at the right.

#include "Form.h"
#include "ScrollBar.h"

namespace qv {

class TCustomComboBox;

class TComboListWindow : public TCustomForm {
public:
    TComboListWindow(TCustomComboBox& combo, int rowHeight, int rowCount);

    bool IsPopupWindow() const override { return true; }

    int HotIndex() const { return m_hot; }
    // Highlights a row (clamped to the items) and scrolls it into view.
    void SetHotIndex(int index);
    int TopIndex() const { return m_top; }
    int VisibleRows() const { return m_rows; }
    // The item at a client point, or -1.
    int RowAt(TPoint pos) const;

protected:
    void Paint() override;
    void WndProc(TMessage& Message) override;
    void CMCancelMode(TMessage& Message) override;
    void WMMouseMove(TMessage& Message) override;
    void WMLButtonUp(TMessage& Message) override;
    void MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;
    void MouseMove(TShiftState Shift, int X, int Y) override;
    void MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;

private:
    int ItemCount() const;
    bool HasScrollBar() const { return ItemCount() > m_rows; }
    TVScrollBar ScrollBar() const;
    int RowsWidth() const;
    void SetTopIndex(int index);
    void PlaceUnder(const TCustomComboBox& combo);

    TCustomComboBox& m_combo;
    int m_rowHeight;
    int m_rows;
    int m_hot{-1};
    int m_top{0};
    TVScrollBar::TPart m_barPart{TVScrollBar::TPart::None}; // pressed part
    int m_thumbGrip{0};
};

} // namespace qv
