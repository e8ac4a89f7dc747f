#pragma once
// Loads the component package for the lifetime of an application (or a test): unit
// initializations, the framework's own classes and the package's registration, so that form
// files can create every class; finalization at the end.

#include "package/Package.h"
#include "platform/controls/StandardClasses.h"

namespace qv {

class TPackageScope {
public:
    TPackageScope() {
        InitializePackage();
        RegisterStandardClasses();
        RegisterPackage();
    }
    ~TPackageScope() { FinalizePackage(); }
    TPackageScope(const TPackageScope&) = delete;
    TPackageScope& operator=(const TPackageScope&) = delete;
};

} // namespace qv
