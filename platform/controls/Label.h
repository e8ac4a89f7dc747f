#pragma once
// TLabel: the label with its properties published for form files.

#include "CustomLabel.h"

namespace qv {

class TLabel : public TCustomLabel {
    QV_OBJECT
public:
    explicit TLabel(TComponent* AOwner);
};

} // namespace qv
