#include "Mystd.h"

#include "componentbase/UnitGuard.h"

namespace qv {

namespace {
TUnitGuard g_mystdUnit;
} // namespace

void MystdInitialization() {
    if (!g_mystdUnit.Enter()) return;
    DetectProcessorFeatures();
    CreateHintAppearance();
}

void MystdFinalization() {
    if (g_mystdUnit.Leave()) FreeHintAppearance();
}

} // namespace qv
