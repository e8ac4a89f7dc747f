#include "TqHorSplit.h"

#include "platform/core/ClassBuilder.h"

namespace qv {

// The same published list as TqVerSplit, inherited.
const TClassInfo& TqHorSplit::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TqHorSplit>("TqHorSplit", &TqVerSplit::StaticClassInfo()).Build();
    return info;
}

TqHorSplit::TqHorSplit(TComponent* AOwner) : TqVerSplit(AOwner, false) {}

} // namespace qv
