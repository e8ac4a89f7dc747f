#include "ComboEdit.h"

#include "CustomComboBox.h"

namespace qv {

TComboEdit::TComboEdit(TCustomComboBox& combo) : TCustomEdit(nullptr), m_combo(combo) {
    SetBorderStyle(bsNone);
    SetAutoSize(false);
    SetTabStop(false);
    SetParentColor(true);
}

void TComboEdit::Change() {
    TCustomEdit::Change();
    m_combo.EditChanged();
}

void TComboEdit::KeyDown(unsigned& Key, TShiftState Shift) {
    m_combo.EditKeyDown(Key, Shift);
    if (Key != 0) TCustomEdit::KeyDown(Key, Shift);
}

// While the list is open, Enter and Escape belong to it, not to the form.
void TComboEdit::WMGetDlgCode(TMessage& Message) {
    TCustomEdit::WMGetDlgCode(Message);
    if (m_combo.DroppedDown()) Message.Result |= DLGC_WANTALLKEYS;
}

void TComboEdit::WMKillFocus(TMessage& Message) {
    TCustomEdit::WMKillFocus(Message);
    m_combo.SetDroppedDown(false);
}

} // namespace qv
