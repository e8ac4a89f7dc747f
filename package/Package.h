#pragma once
// The component package. A host loads it by running the unit initializations in table order
// (InitializePackage), asks designers' registration (RegisterPackage, which fills the
// designer registry), and unloads it by running the finalizations in reverse order
// (FinalizePackage). Each unit guards its pair with a counter, so a package initialized by
// two hosts initializes its units once and finalizes them when the last host leaves.
//
// The same table is exported with C linkage from the shared build of the package
// (libquelvar-module.so, and the shared library libquelvar.so) for hosts that load it with
// dlopen; see package/module/PackageModule.cpp.

#include <functional>
#include <span>
#include <string>

namespace qv {

struct TPackageUnit {
    const char* name;
    void (*initialization)();
    void (*finalization)();
};

// The 23 units in load order.
std::span<const TPackageUnit> PackageUnits();

void InitializePackage();
void RegisterPackage();
void FinalizePackage();

// The package's own load counter (the package entry points only count).
int PackageLoadCount();

// The net number of initializations of a unit through the table (its counter); 0 when the
// unit is not loaded, -1 for an unknown unit.
int UnitCounter(const std::string& unit);
// Called for every unit pair the table runs, in order (for hosts that log loading).
using TUnitTrace = std::function<void(const char* unit, bool initialization)>;
void SetUnitTrace(TUnitTrace trace);

} // namespace qv
