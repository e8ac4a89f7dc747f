#pragma once
// Writing text form files: the root component, its stored properties and its children,
// recursively. A property is written only when it is stored and differs from its storage
// default; nested objects (Font.Name) and defined properties (Items.Strings, Picture.Data)
// are written under their owner's name.

#include "platform/core/Component.h"

#include <string>

namespace qv {

std::string WriteComponentText(const TComponent& root);
void WriteComponentFile(const TComponent& root, const std::string& path);

} // namespace qv
