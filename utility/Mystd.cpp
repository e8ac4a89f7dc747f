#include "Mystd.h"

#include "UnitGuard.h"

namespace qv {

namespace {
TUnitGuard g_mystdUnit;
} // namespace

void MystdInitialization() {
    if (g_mystdUnit.Enter()) DetectProcessorFeatures();
}

void MystdFinalization() {
    // Nothing to free until the unit owns the hint-appearance record.
    g_mystdUnit.Leave();
}

} // namespace qv
