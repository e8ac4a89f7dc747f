// The C entry points of the package's dlopen module (libquelvar-module.so) and of the shared
// library (libquelvar.so); hosts load either with qv::TLoadedPackage.
#include "package/Package.h"
#include "platform/system/PackageLoader.h"

#include <vector>

namespace {
int g_moduleLoads = 0; // the entry points' load counter

const std::vector<QvPackageUnit>& Units() {
    static const std::vector<QvPackageUnit> units = [] {
        std::vector<QvPackageUnit> list;
        for (const qv::TPackageUnit& u : qv::PackageUnits())
            list.push_back({u.name, u.initialization, u.finalization});
        return list;
    }();
    return units;
}
} // namespace

#define QV_EXPORT extern "C" __attribute__((visibility("default")))

QV_EXPORT const QvPackageUnit* qv_package_units(int* count) {
    if (count) *count = static_cast<int>(Units().size());
    return Units().data();
}

QV_EXPORT int qv_package_initialize() {
    return ++g_moduleLoads;
}

QV_EXPORT int qv_package_finalize() {
    if (g_moduleLoads > 0) --g_moduleLoads;
    return g_moduleLoads;
}

QV_EXPORT void qv_package_register() {
    qv::RegisterPackage();
}

QV_EXPORT int qv_package_unit_counter(const char* unit) {
    return qv::UnitCounter(unit ? unit : "");
}
