#pragma once
// TComboBox: the combo box with its properties published for form files.

#include "CustomComboBox.h"

namespace qv {

class TComboBox : public TCustomComboBox {
    QV_OBJECT
public:
    explicit TComboBox(TComponent* AOwner);
};

} // namespace qv
