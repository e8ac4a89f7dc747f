#pragma once
// TListBox: the list box with its properties published for form files.

#include "CustomListBox.h"

namespace qv {

class TListBox : public TCustomListBox {
    QV_OBJECT
public:
    explicit TListBox(TComponent* AOwner);
};

} // namespace qv
