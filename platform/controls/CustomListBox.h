#pragma once
// TCustomListBox: a list of strings with one selected item (ItemIndex, -1 for none). Items
// are rows of ItemHeight pixels (the font's line height for lbStandard) from TopIndex down.
// A press selects the item under the pointer and dragging follows it; the release raises
// OnClick. Up/Down, PageUp/PageDown and Home/End move the selection (raising OnClick) and
// scroll it into view; the wheel scrolls three rows a notch; typing a character selects the
// next item that starts with it. With more items than rows a scroll bar shows at the right:
// its arrows scroll a row, the track a page, and the thumb follows the pointer.
// lbOwnerDrawFixed paints every row through DrawItem, that
// is OnDrawItem on the list box's canvas.

#include "ControlTypes.h"
#include "ScrollBar.h"
#include "WinControl.h"

#include "platform/core/Strings.h"

#include <memory>
#include <optional>

namespace qv {

enum TListBoxStyle { lbStandard, lbOwnerDrawFixed, lbOwnerDrawVariable };
QV_ENUM_TYPE(TListBoxStyle, "lbStandard", "lbOwnerDrawFixed", "lbOwnerDrawVariable")

class TCustomListBox : public TWinControl {
    QV_OBJECT
public:
    explicit TCustomListBox(TComponent* AOwner);
    ~TCustomListBox() override;

    TStrings* Items() const { return m_items.get(); }
    void SetItems(const TStrings& v) { m_items->Assign(v); }
    int ItemIndex() const { return m_itemIndex; }
    // Selects an item (-1 for none) and scrolls it into view; no OnClick.
    void SetItemIndex(int v);
    // The row height: the font's line height for lbStandard, else the stored height.
    int ItemHeight() const;
    void SetItemHeight(int v);
    int TopIndex() const { return m_topIndex; }
    void SetTopIndex(int v);
    TListBoxStyle Style() const { return m_style; }
    void SetStyle(TListBoxStyle v);
    bool Sorted() const { return m_items->Sorted(); }
    void SetSorted(bool v) { m_items->SetSorted(v); }
    TBorderStyle BorderStyle() const { return m_borderStyle; }
    void SetBorderStyle(TBorderStyle v);
    bool IntegralHeight() const { return m_integralHeight; }
    void SetIntegralHeight(bool v) { m_integralHeight = v; }

    void Clear() { m_items->Clear(); }
    // The item at a client point; with `existing` only real items, else also the row after
    // the last one. -1 when there is none.
    int ItemAtPos(TPoint pos, bool existing) const;
    TRect ItemRect(int index) const;
    // Rows that fit entirely.
    int VisibleRowCount() const;

    TDrawItemEvent OnDrawItem;

protected:
    virtual void DrawItem(int Index, TRect Rect, TOwnerDrawState State);
    void KeyDown(unsigned& Key, TShiftState Shift) override;
    void KeyPress(char& Key) override;
    void MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;
    void MouseMove(TShiftState Shift, int X, int Y) override;
    void MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;

    void WndProc(TMessage& Message) override;
    void WMPaint(TMessage& Message) override;
    void WMGetDlgCode(TMessage& Message) override;
    void WMSetFocus(TMessage& Message) override;
    void WMKillFocus(TMessage& Message) override;
    void CMFontChanged(TMessage& Message) override;

private:
    // Inside the edge, less the scroll bar when there is one.
    TRect ItemsArea() const;
    bool HasScrollBar() const;
    TVScrollBar ScrollBar() const;
    // Acts on a press on the scroll bar; false when the point is not on it.
    bool ScrollBarPressed(TPoint p);
    void ItemsChanged();
    void ScrollIntoView(int index);
    // Selects `index` for the user: OnClick when `notify`.
    void SelectByUser(int index, bool notify);
    // The item a navigation key selects, if it is one.
    std::optional<int> TargetOfKey(unsigned key) const;
    void MouseWheel(int delta);
    void PaintItem(TCanvas& canvas, int index, const TRect& rect);

    std::unique_ptr<TStringList> m_items;
    int m_itemIndex{-1};
    int m_itemHeight{16};
    int m_topIndex{0};
    TListBoxStyle m_style{lbStandard};
    TBorderStyle m_borderStyle{bsSingle};
    bool m_integralHeight{false};
    bool m_tracking{false};
    TVScrollBar::TPart m_barPart{TVScrollBar::TPart::None}; // pressed part
    int m_thumbGrip{0}; // the pointer's offset from the thumb's top while dragging it
};

} // namespace qv
