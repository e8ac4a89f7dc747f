#pragma once
// TqHorSplit: the splitter container with a horizontal bar, panes above and below it; the
// same properties as TqVerSplit, measured along the height.

#include "TqVerSplit.h"

namespace qv {

class TqHorSplit : public TqVerSplit {
    QV_OBJECT
public:
    explicit TqHorSplit(TComponent* AOwner);
};

} // namespace qv
