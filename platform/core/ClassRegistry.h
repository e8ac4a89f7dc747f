#pragma once
// The class registry: classes registered here can be found and created by name, which is
// how form files create their components.

#include "TypeInfo.h"

#include <string>
#include <vector>

namespace qv {

class TComponent;

void RegisterClass(const TClassInfo& cls);
void RegisterClasses(std::initializer_list<const TClassInfo*> classes);
void UnRegisterClass(const TClassInfo& cls);
// The registered class named `name` (case-insensitive), or null.
const TClassInfo* GetClass(const std::string& name);
// Like GetClass, but raises EClassNotFound naming the class.
const TClassInfo& FindClass(const std::string& name);
// Creates a component of the named registered class, owned by `owner`.
TComponent* CreateComponent(const std::string& className, TComponent* owner);
std::vector<const TClassInfo*> RegisteredClasses();

} // namespace qv
