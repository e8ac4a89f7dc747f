#pragma once
// TComboEdit: the edit field of a combo box whose style lets the user type (csDropDown,
// csSimple). It sits over the combo box's field without a border; the keys that work the
// list (Up, Down, PageUp, PageDown, F4, and everything while the list is open) go to the
// combo box, and every change of its text becomes the combo box's text.

#include "CustomEdit.h"

namespace qv {

class TCustomComboBox;

class TComboEdit : public TCustomEdit {
public:
    explicit TComboEdit(TCustomComboBox& combo);

protected:
    void Change() override;
    void KeyDown(unsigned& Key, TShiftState Shift) override;
    void WMGetDlgCode(TMessage& Message) override;
    void WMKillFocus(TMessage& Message) override;

private:
    TCustomComboBox& m_combo;
};

} // namespace qv
