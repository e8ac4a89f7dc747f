#include "timing/Std2.h"

#include "componentbase/Steel.h"
#include "componentbase/UnitGuard.h"

namespace qv {

namespace {
TUnitGuard g_std2Unit;
} // namespace

void Std2Initialization() {
    if (g_std2Unit.Enter()) CreateSteelTexture();
}

void Std2Finalization() {
    if (g_std2Unit.Leave()) FreeSteelTexture();
}

} // namespace qv
