#include "DesignerRegistry.h"

#include "ClassRegistry.h"

#include <algorithm>
#include <mutex>

namespace qv {

namespace {

struct TPage {
    std::string name;
    std::vector<const TClassInfo*> classes;
};

// The process-wide designer registry.
struct TDesignerRegistry {
    std::mutex lock;
    std::vector<TPage> pages;
    std::vector<TPropertyEditorEntry> propertyEditors;
    std::vector<TComponentEditorEntry> componentEditors;
    std::vector<std::string> experts;
    std::vector<const TClassInfo*> classesAdded; // to the class registry, by us
    int componentCalls{0};
};

TDesignerRegistry& Registry() {
    static TDesignerRegistry registry;
    return registry;
}

} // namespace

void RegisterComponents(const std::string& page, const std::vector<const TClassInfo*>& classes) {
    for (const TClassInfo* cls : classes) {
        if (GetClass(cls->name) != cls) {
            RegisterClass(*cls);
            auto& r = Registry();
            std::lock_guard guard(r.lock);
            r.classesAdded.push_back(cls);
        }
    }
    auto& r = Registry();
    std::lock_guard guard(r.lock);
    ++r.componentCalls;
    auto it = std::find_if(r.pages.begin(), r.pages.end(),
                           [&](const TPage& p) { return p.name == page; });
    if (it == r.pages.end()) it = r.pages.insert(r.pages.end(), TPage{page, {}});
    for (const TClassInfo* cls : classes)
        if (std::find(it->classes.begin(), it->classes.end(), cls) == it->classes.end())
            it->classes.push_back(cls);
}

void RegisterPropertyEditor(const std::string& propertyType, const TClassInfo& componentClass,
                            const std::string& propertyName, const std::string& editor) {
    auto& r = Registry();
    std::lock_guard guard(r.lock);
    r.propertyEditors.push_back({propertyType, &componentClass, propertyName, editor});
}

void RegisterComponentEditor(const TClassInfo& componentClass, const std::string& editor) {
    auto& r = Registry();
    std::lock_guard guard(r.lock);
    r.componentEditors.push_back({&componentClass, editor});
}

void RegisterLibraryExpert(const std::string& expert) {
    auto& r = Registry();
    std::lock_guard guard(r.lock);
    r.experts.push_back(expert);
}

std::vector<std::string> PalettePages() {
    auto& r = Registry();
    std::lock_guard guard(r.lock);
    std::vector<std::string> names;
    for (const TPage& p : r.pages)
        names.push_back(p.name);
    return names;
}

std::vector<const TClassInfo*> PaletteClasses(const std::string& page) {
    auto& r = Registry();
    std::lock_guard guard(r.lock);
    for (const TPage& p : r.pages)
        if (p.name == page) return p.classes;
    return {};
}

std::vector<TPropertyEditorEntry> PropertyEditors() {
    auto& r = Registry();
    std::lock_guard guard(r.lock);
    return r.propertyEditors;
}

std::vector<TComponentEditorEntry> ComponentEditors() {
    auto& r = Registry();
    std::lock_guard guard(r.lock);
    return r.componentEditors;
}

std::vector<std::string> LibraryExperts() {
    auto& r = Registry();
    std::lock_guard guard(r.lock);
    return r.experts;
}

int RegisterComponentsCalls() {
    auto& r = Registry();
    std::lock_guard guard(r.lock);
    return r.componentCalls;
}

void ClearDesignerRegistry() {
    std::vector<const TClassInfo*> added;
    {
        auto& r = Registry();
        std::lock_guard guard(r.lock);
        added.swap(r.classesAdded);
        r.pages.clear();
        r.propertyEditors.clear();
        r.componentEditors.clear();
        r.experts.clear();
        r.componentCalls = 0;
    }
    for (const TClassInfo* cls : added)
        UnRegisterClass(*cls);
}

} // namespace qv
