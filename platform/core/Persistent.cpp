#include "Persistent.h"

#include "Exceptions.h"
#include "TypeInfo.h"

namespace qv {

const TClassInfo& TPersistent::StaticClassInfo() {
    static const TClassInfo info{"TPersistent", &TObject::StaticClassInfo(), {}, {}};
    return info;
}

void TPersistent::Assign(const TPersistent& Source) {
    Source.AssignTo(*this);
}

void TPersistent::AssignTo(TPersistent& Dest) const {
    throw EConvertError("Cannot assign a " + ClassName() + " to a " + Dest.ClassName());
}

void TPersistent::DefineProperties(TFiler& /*Filer*/) {}

} // namespace qv
