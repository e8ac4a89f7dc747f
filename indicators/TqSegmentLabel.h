#pragma once
// TqSegmentLabel: a segment label that shows its Caption (11 cells by default).

#include "indicators/TqCustomSegmentLabel.h"

namespace qv {

class TqSegmentLabel : public TqCustomSegmentLabel {
    QV_OBJECT
public:
    static constexpr std::uint8_t DefaultNumberOfChars = 11;

    explicit TqSegmentLabel(TComponent* AOwner);
};

} // namespace qv
