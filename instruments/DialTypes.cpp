#include "instruments/DialTypes.h"

namespace qv {

const TTypeInfo& QxOffSetNumberType() {
    static const TTypeInfo info = TTypeInfo::Integer("qxOffSetNumber", 0, 50);
    return info;
}

const TTypeInfo& QxOffSetDotType() {
    static const TTypeInfo info = TTypeInfo::Integer("qxOffSetDot", 0, 50);
    return info;
}

} // namespace qv
