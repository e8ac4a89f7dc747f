#pragma once
// The subrange types the dial instruments of unit Qpanel2 share.

#include "platform/core/TypeInfo.h"

namespace qv {

// Insets of numerals and of marks from a dial's rim: 0..50.
const TTypeInfo& QxOffSetNumberType();
const TTypeInfo& QxOffSetDotType();

} // namespace qv
