#include "Object.h"

#include "TypeInfo.h"

namespace qv {

const TClassInfo& TObject::StaticClassInfo() {
    static const TClassInfo info{"TObject", nullptr, {}, {}};
    return info;
}

const std::string& TObject::ClassName() const {
    return ClassInfo().name;
}

bool TObject::InheritsFrom(const TClassInfo& cls) const {
    return ClassInfo().InheritsFrom(cls);
}

} // namespace qv
