#pragma once
// The package's designer registration: palette pages with their classes, property editors,
// component editors and library experts, in the order the registration table gives.

#include "platform/core/TypeInfo.h"

#include <string>
#include <vector>

namespace qv {

struct TRegistrationEntry {
    int call; // the RegisterComponents call the class is in
    const char* className;
    const char* page;
    const TClassInfo& (*classInfo)(); // null while the class is not built yet
};

// The 68 classes in registration order.
const std::vector<TRegistrationEntry>& RegistrationTable();

// Registers every class that exists, in table order (one RegisterComponents call per table
// call that has any), then the property editors, one component editor per registered class
// and the library experts.
void Register();

} // namespace qv
