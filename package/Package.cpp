#include "package/Package.h"

#include "componentbase/UnitGuard.h"
#include "controls/Qbtn2.h"
#include "package/Registration.h"
#include "timing/Std2.h"
#include "utility/Mystd.h"
#include "utility/Qhelper.h"

#include <array>
#include <utility>

namespace qv {

namespace {

// Units that only keep their counter; their bodies have nothing to do at run time.
template <int N> struct TCounterUnit {
    static inline TUnitGuard guard;
    static void Initialization() { guard.Enter(); }
    static void Finalization() { guard.Leave(); }
    static int Count() { return guard.Count(); }
};

// The bitmap editor remembers the last file it opened; loading and unloading forget it.
struct TQbitedit {
    static inline TUnitGuard guard;
    static inline std::string rememberedFile;
    static void Initialization() {
        if (guard.Enter()) rememberedFile.clear();
    }
    static void Finalization() {
        if (guard.Leave()) rememberedFile.clear();
    }
};

// The package unit's counter, the entry points' load counter, the units' counters as the
// table ran them, and the host's trace.
TUnitGuard g_packageUnit;
int g_loadCount = 0;
std::array<int, 23> g_unitCounters{};
TUnitTrace g_trace;

// What each unit does at load and unload.
constexpr std::array<TPackageUnit, 23> kUnitBodies = {{
    {"Qbitedit", &TQbitedit::Initialization, &TQbitedit::Finalization},
    {"Qbtnedit", &TCounterUnit<2>::Initialization, &TCounterUnit<2>::Finalization},
    {"Qhelper", &QhelperInitialization, &QhelperFinalization},
    {"Std2", &Std2Initialization, &Std2Finalization},
    {"Qanimate", &TCounterUnit<5>::Initialization, &TCounterUnit<5>::Finalization},
    {"Qangedit", &TCounterUnit<6>::Initialization, &TCounterUnit<6>::Finalization},
    {"Mystd", &MystdInitialization, &MystdFinalization},
    {"Qsplit", &TCounterUnit<8>::Initialization, &TCounterUnit<8>::Finalization},
    {"Qbtn2", &Qbtn2Initialization, &Qbtn2Finalization},
    {"Qpanel2", &TCounterUnit<10>::Initialization, &TCounterUnit<10>::Finalization},
    {"Qpanel", &TCounterUnit<11>::Initialization, &TCounterUnit<11>::Finalization},
    {"Qonzoff", &TCounterUnit<12>::Initialization, &TCounterUnit<12>::Finalization},
    {"Qhntedit", &TCounterUnit<13>::Initialization, &TCounterUnit<13>::Finalization},
    {"Qseg", &TCounterUnit<14>::Initialization, &TCounterUnit<14>::Finalization},
    {"Blend", &TCounterUnit<15>::Initialization, &TCounterUnit<15>::Finalization},
    {"Qbaredit", &TCounterUnit<16>::Initialization, &TCounterUnit<16>::Finalization},
    {"Qgauge", &TCounterUnit<17>::Initialization, &TCounterUnit<17>::Finalization},
    {"Slidebar", &TCounterUnit<18>::Initialization, &TCounterUnit<18>::Finalization},
    {"Qled", &TCounterUnit<19>::Initialization, &TCounterUnit<19>::Finalization},
    {"Qxinit01", &TCounterUnit<20>::Initialization, &TCounterUnit<20>::Finalization},
    {"Qexp1", &TCounterUnit<21>::Initialization, &TCounterUnit<21>::Finalization},
    {"Qs_vcl32", &TCounterUnit<22>::Initialization, &TCounterUnit<22>::Finalization},
    {"Quelvar", [] { g_packageUnit.Enter(); }, [] { g_packageUnit.Leave(); }},
}};

// The table as hosts see it: each entry counts the calls (and reports them to the trace)
// before running the unit's own counter-guarded pair.
template <std::size_t I> void InitializeUnit() {
    if (g_trace) g_trace(kUnitBodies[I].name, true);
    ++g_unitCounters[I];
    kUnitBodies[I].initialization();
}
template <std::size_t I> void FinalizeUnit() {
    if (g_trace) g_trace(kUnitBodies[I].name, false);
    if (g_unitCounters[I] > 0) --g_unitCounters[I];
    kUnitBodies[I].finalization();
}
template <std::size_t... I>
constexpr std::array<TPackageUnit, sizeof...(I)> MakeUnits(std::index_sequence<I...>) {
    return {{{kUnitBodies[I].name, &InitializeUnit<I>, &FinalizeUnit<I>}...}};
}
constexpr std::array<TPackageUnit, 23> kUnits = MakeUnits(std::make_index_sequence<23>{});

} // namespace

std::span<const TPackageUnit> PackageUnits() {
    return kUnits;
}

void InitializePackage() {
    ++g_loadCount;
    for (const TPackageUnit& unit : kUnits)
        unit.initialization();
}

void FinalizePackage() {
    if (g_loadCount == 0) return;
    --g_loadCount;
    for (auto it = kUnits.rbegin(); it != kUnits.rend(); ++it)
        it->finalization();
}

void RegisterPackage() {
    Register();
}

int PackageLoadCount() {
    return g_loadCount;
}

int UnitCounter(const std::string& unit) {
    for (std::size_t i = 0; i < kUnits.size(); ++i)
        if (unit == kUnits[i].name) return g_unitCounters[i];
    return -1;
}

void SetUnitTrace(TUnitTrace trace) {
    g_trace = std::move(trace);
}

} // namespace qv
