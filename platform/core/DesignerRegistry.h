#pragma once
// The designer registry: what a package registers for form designers. Palette pages with
// their component classes in registration order, property editors, component editors and
// library experts. Tools and tests read it back; registering a component class also makes
// it known to the class registry so form files can create it.

#include "TypeInfo.h"

#include <string>
#include <vector>

namespace qv {

struct TPropertyEditorEntry {
    std::string propertyType;         // the property's type name, e.g. "TBitmap"
    const TClassInfo* componentClass; // the class it applies to (and its descendants)
    std::string propertyName;         // empty: every property of that type
    std::string editor;               // the editor's name
};

struct TComponentEditorEntry {
    const TClassInfo* componentClass;
    std::string editor;
};

// Registration calls, in the order a package makes them.
void RegisterComponents(const std::string& page, const std::vector<const TClassInfo*>& classes);
inline void RegisterComponents(const std::string& page,
                               std::initializer_list<const TClassInfo*> classes) {
    RegisterComponents(page, std::vector<const TClassInfo*>(classes));
}
void RegisterPropertyEditor(const std::string& propertyType, const TClassInfo& componentClass,
                            const std::string& propertyName, const std::string& editor);
void RegisterComponentEditor(const TClassInfo& componentClass, const std::string& editor);
void RegisterLibraryExpert(const std::string& expert);

// Queries.
std::vector<std::string> PalettePages();
std::vector<const TClassInfo*> PaletteClasses(const std::string& page);
std::vector<TPropertyEditorEntry> PropertyEditors();
std::vector<TComponentEditorEntry> ComponentEditors();
std::vector<std::string> LibraryExperts();
// The number of RegisterComponents calls made so far.
int RegisterComponentsCalls();

// Forgets every registration (a package being unloaded). Classes stay in the class
// registry only if they were registered there independently.
void ClearDesignerRegistry();

} // namespace qv
