#pragma once
// TPanel: the panel with its properties published for form files.

#include "CustomPanel.h"

namespace qv {

class TPanel : public TCustomPanel {
    QV_OBJECT
public:
    explicit TPanel(TComponent* AOwner);
};

} // namespace qv
