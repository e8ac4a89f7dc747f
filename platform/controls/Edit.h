#pragma once
// TEdit: the single-line edit with its properties published for form files.

#include "CustomEdit.h"

namespace qv {

class TEdit : public TCustomEdit {
    QV_OBJECT
public:
    explicit TEdit(TComponent* AOwner);
};

} // namespace qv
