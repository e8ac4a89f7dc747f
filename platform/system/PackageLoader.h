#pragma once
// Loading a component package built as a shared library. The package exports, with C
// linkage, its unit table and entry points (see QvPackageUnit below); the host runs the
// units' initializations in table order after dlopen and their finalizations in reverse
// order before dlclose. Units count their calls, so a package loaded twice initializes once
// and finalizes when the last load ends.

#include <string>

extern "C" {
struct QvPackageUnit {
    const char* name;
    void (*initialization)();
    void (*finalization)();
};
// The exports a package provides.
using QvPackageUnitsFn = const QvPackageUnit* (*)(int* count);
using QvPackageCountFn = int (*)();
using QvPackageRegisterFn = void (*)();
using QvPackageUnitCounterFn = int (*)(const char* unit);
}

namespace qv {

class TLoadedPackage {
public:
    // Loads the library and initializes its units; EPackageError names the file and the cause.
    explicit TLoadedPackage(const std::string& path);
    ~TLoadedPackage();
    TLoadedPackage(const TLoadedPackage&) = delete;
    TLoadedPackage& operator=(const TLoadedPackage&) = delete;

    // Calls the package's designer registration.
    void Register();
    // A unit's counter inside the package (-1 for unknown units).
    int UnitCounter(const std::string& unit) const;
    int UnitCount() const { return m_count; }
    const std::string& Path() const { return m_path; }

private:
    void* Symbol(const char* name) const;

    std::string m_path;
    void* m_handle{nullptr};
    const QvPackageUnit* m_units{nullptr};
    int m_count{0};
};

} // namespace qv
