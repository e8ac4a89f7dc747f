#include "PackageLoader.h"

#include "platform/core/Exceptions.h"

#include <dlfcn.h>

namespace qv {

TLoadedPackage::TLoadedPackage(const std::string& path) : m_path(path) {
    m_handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_handle) throw EPackageError("Cannot load package " + path + ": " + ::dlerror());
    try {
        auto units = reinterpret_cast<QvPackageUnitsFn>(Symbol("qv_package_units"));
        auto initialize = reinterpret_cast<QvPackageCountFn>(Symbol("qv_package_initialize"));
        m_units = units(&m_count);
        initialize();
        for (int i = 0; i < m_count; ++i)
            m_units[i].initialization();
    } catch (...) {
        ::dlclose(m_handle);
        throw;
    }
}

TLoadedPackage::~TLoadedPackage() {
    for (int i = m_count; i-- > 0;)
        m_units[i].finalization();
    reinterpret_cast<QvPackageCountFn>(Symbol("qv_package_finalize"))();
    ::dlclose(m_handle);
}

void* TLoadedPackage::Symbol(const char* name) const {
    void* symbol = ::dlsym(m_handle, name);
    if (!symbol) throw EPackageError("Package " + m_path + " does not export " + name);
    return symbol;
}

void TLoadedPackage::Register() {
    reinterpret_cast<QvPackageRegisterFn>(Symbol("qv_package_register"))();
}

int TLoadedPackage::UnitCounter(const std::string& unit) const {
    return reinterpret_cast<QvPackageUnitCounterFn>(Symbol("qv_package_unit_counter"))(
        unit.c_str());
}

} // namespace qv
