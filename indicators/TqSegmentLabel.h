#pragma once
// TqSegmentLabel: a segment label that shows its Caption (11 cells by default).

#include "indicators/TqCustomSegmentLabel.h"

namespace qv {

class TqSegmentLabel : public TqCustomSegmentLabel {
    QV_OBJECT
public:
    explicit TqSegmentLabel(TComponent* AOwner);
};

} // namespace qv
