#pragma once
// TFiler: collects the properties an object defines for form files beyond its published
// ones (string lists, binary image data). The reader and the writer both ask an object's
// DefineProperties and then read or write what it declared.

#include "FormValue.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace qv {

struct TDefinedProperty {
    std::string name;
    std::function<void(const TFormValue&)> read;
    std::function<TFormValue()> write;
    bool hasData{false};
};

class TFiler {
public:
    // A property whose value is any form-file value (for example a list of strings).
    void DefineProperty(std::string name, std::function<void(const TFormValue&)> read,
                        std::function<TFormValue()> write, bool hasData);
    // A property holding raw bytes, written as { hex } in a form file.
    void DefineBinaryProperty(std::string name,
                              std::function<void(const std::vector<std::uint8_t>&)> read,
                              std::function<std::vector<std::uint8_t>()> write, bool hasData);

    const std::vector<TDefinedProperty>& Properties() const { return m_properties; }
    const TDefinedProperty* Find(const std::string& name) const;

private:
    std::vector<TDefinedProperty> m_properties;
};

} // namespace qv
