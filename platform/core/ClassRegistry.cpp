#include "ClassRegistry.h"

#include "Component.h"

#include <strings.h>

#include <algorithm>
#include <mutex>

namespace qv {

namespace {
// The process-wide table of registered classes, in registration order.
struct TClassTable {
    std::mutex lock;
    std::vector<const TClassInfo*> classes;
};
TClassTable& Table() {
    static TClassTable table;
    return table;
}
const TClassInfo* FindLocked(const std::vector<const TClassInfo*>& classes,
                             const std::string& name) {
    for (const TClassInfo* c : classes)
        if (strcasecmp(c->name.c_str(), name.c_str()) == 0) return c;
    return nullptr;
}
} // namespace

void RegisterClass(const TClassInfo& cls) {
    auto& t = Table();
    std::lock_guard guard(t.lock);
    const TClassInfo* existing = FindLocked(t.classes, cls.name);
    if (existing == &cls) return;
    if (existing) throw EComponentError("A class named " + cls.name + " already exists");
    t.classes.push_back(&cls);
}

void RegisterClasses(std::initializer_list<const TClassInfo*> classes) {
    for (const TClassInfo* c : classes)
        RegisterClass(*c);
}

void UnRegisterClass(const TClassInfo& cls) {
    auto& t = Table();
    std::lock_guard guard(t.lock);
    std::erase(t.classes, &cls);
}

const TClassInfo* GetClass(const std::string& name) {
    auto& t = Table();
    std::lock_guard guard(t.lock);
    return FindLocked(t.classes, name);
}

const TClassInfo& FindClass(const std::string& name) {
    const TClassInfo* c = GetClass(name);
    if (!c) throw EClassNotFound("Class " + name + " not found");
    return *c;
}

TComponent* CreateComponent(const std::string& className, TComponent* owner) {
    const TClassInfo& cls = FindClass(className);
    if (!cls.create) throw EComponentError("Class " + className + " cannot be created by name");
    return cls.create(owner);
}

std::vector<const TClassInfo*> RegisteredClasses() {
    auto& t = Table();
    std::lock_guard guard(t.lock);
    return t.classes;
}

} // namespace qv
