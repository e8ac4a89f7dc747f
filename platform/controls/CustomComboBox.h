#pragma once
// TCustomComboBox: a selection field with a button that drops down a list of Items in a
// popup window of its own. A press on the field or button, Alt+Down or F4 opens the list;
// in the list the pointer or Up/Down/PageUp/PageDown/Home/End move the highlight, a
// release or Enter chooses, Escape or a press anywhere else closes it unchanged. With the
// list closed, the arrow keys and typed characters change the selection at once. Every
// change of ItemIndex the user makes raises OnClick and then OnChange.
//
// csDropDown and csSimple put an edit (TComboEdit) over the field: the text is whatever is
// typed (ItemIndex follows an item with exactly that text) and each change raises OnChange;
// csSimple's list is not shown permanently, it drops down as csDropDown's does.
// csDropDownList shows the selected item, which cannot be typed in; csOwnerDrawFixed and
// csOwnerDrawVariable do the same and paint the field and the rows
// through DrawItem, that is OnDrawItem on the combo box's canvas (also while it paints the
// list window), with odComboBoxEdit for the field.

#include "ControlTypes.h"
#include "WinControl.h"

#include "platform/core/Strings.h"

#include <memory>

namespace qv {

enum TComboBoxStyle { csDropDown, csSimple, csDropDownList, csOwnerDrawFixed, csOwnerDrawVariable };
QV_ENUM_TYPE(TComboBoxStyle, "csDropDown", "csSimple", "csDropDownList", "csOwnerDrawFixed",
             "csOwnerDrawVariable")

class TComboEdit;
class TCustomEdit;
class TComboListWindow;

class TCustomComboBox : public TWinControl {
    QV_OBJECT
public:
    explicit TCustomComboBox(TComponent* AOwner);
    ~TCustomComboBox() override;

    TStrings* Items() const { return m_items.get(); }
    void SetItems(const TStrings& v) { m_items->Assign(v); }
    int ItemIndex() const { return m_itemIndex; }
    // Selects an item (-1 for none) and shows its text; no events.
    void SetItemIndex(int v);
    // The row height: the font's line height unless owner-drawn.
    int ItemHeight() const;
    void SetItemHeight(int v);
    TComboBoxStyle Style() const { return m_style; }
    void SetStyle(TComboBoxStyle v);
    // Rows the list shows before it scrolls.
    int DropDownCount() const { return m_dropDownCount; }
    void SetDropDownCount(int v);
    bool Sorted() const { return m_items->Sorted(); }
    void SetSorted(bool v) { m_items->SetSorted(v); }
    bool DroppedDown() const { return m_list != nullptr; }
    void SetDroppedDown(bool v);
    // The open list's window, or null.
    TCustomForm* ListWindow() const;
    // The edit over the field of csDropDown and csSimple, else null.
    TCustomEdit* EditField() const;

    TNotifyEvent OnChange;
    TNotifyEvent OnDropDown;
    TDrawItemEvent OnDrawItem;

    void SetBounds(int ALeft, int ATop, int AWidth, int AHeight) override;
    void Loaded() override;

protected:
    friend class TComboEdit;
    friend class TComboListWindow;
    virtual void Change();
    virtual void DropDown();
    virtual void DrawItem(int Index, TRect Rect, TOwnerDrawState State);
    void KeyDown(unsigned& Key, TShiftState Shift) override;
    void KeyPress(char& Key) override;
    void MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;
    void MouseMove(TShiftState Shift, int X, int Y) override;
    void MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;

    void WMPaint(TMessage& Message) override;
    void WMGetDlgCode(TMessage& Message) override;
    void WMSetFocus(TMessage& Message) override;
    void WMKillFocus(TMessage& Message) override;
    void CMTextChanged(TMessage& Message) override;
    void CMFontChanged(TMessage& Message) override;
    void Resize() override;

private:
    bool Editable() const { return m_style == csDropDown || m_style == csSimple; }
    // Creates or removes the edit as the style asks and puts it over the field.
    void UpdateEditField();
    void RemoveEditField(bool refocus);
    void PushTextToEdit();
    // The edit's text changed (typing or pasting).
    void EditChanged();
    // A key the edit got: the list's keys are taken here (Key becomes 0).
    void EditKeyDown(unsigned& Key, TShiftState Shift);
    bool OwnerDrawn() const {
        return m_style == csOwnerDrawFixed || m_style == csOwnerDrawVariable;
    }
    int FieldHeight() const;
    TRect ButtonRect() const;
    TRect FieldRect() const;
    void ItemsChanged();
    void SyncText();
    void SelectText();
    void OpenList();
    // Closes the list; chooses its highlighted item when `choose`.
    void CloseList(bool choose);
    // The list was cancelled by a press; a press on the combo box itself must not reopen it.
    void ListCancelled(bool pressOnSelf);
    void SelectByUser(int index);
    bool HandleListKey(unsigned key, TShiftState shift);
    bool HandleClosedKey(unsigned key, TShiftState shift);
    int IndexStartingWith(char ch, int after) const;
    // The list row under a point of this control while the list is open, or -1.
    int ListRowAt(int x, int y) const;
    void PaintButton(TCanvas& canvas, TRect rect) const;
    void PaintField(TCanvas& canvas);
    // Paints a row (or the field, with odComboBoxEdit) through the canvas of the combo box.
    void PaintItem(TCanvas& canvas, int index, const TRect& rect, TOwnerDrawState state);

    std::unique_ptr<TStringList> m_items;
    int m_itemIndex{-1};
    int m_itemHeight{16};
    TComboBoxStyle m_style{csDropDown};
    int m_dropDownCount{8};
    TComboListWindow* m_list{nullptr}; // released when closed
    TComboEdit* m_edit{nullptr};       // a child: freed with the children
    bool m_syncingText{false};
    bool m_buttonDown{false};
    bool m_ignoreNextPress{false};
};

} // namespace qv
