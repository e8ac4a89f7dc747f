#include "Filer.h"

#include "Exceptions.h"

#include <strings.h>

namespace qv {

void TFiler::DefineProperty(std::string name, std::function<void(const TFormValue&)> read,
                            std::function<TFormValue()> write, bool hasData) {
    m_properties.push_back({std::move(name), std::move(read), std::move(write), hasData});
}

void TFiler::DefineBinaryProperty(std::string name,
                                  std::function<void(const std::vector<std::uint8_t>&)> read,
                                  std::function<std::vector<std::uint8_t>()> write, bool hasData) {
    const std::string label = name;
    auto readValue = [read = std::move(read), label](const TFormValue& v) {
        if (v.kind != TFormValue::Kind::Binary)
            throw EConvertError("binary data expected for " + label + " but found " + v.KindName());
        read(v.bytes);
    };
    auto writeValue = [write = std::move(write)] { return TFormValue::Data(write()); };
    m_properties.push_back({std::move(name), std::move(readValue), std::move(writeValue), hasData});
}

const TDefinedProperty* TFiler::Find(const std::string& name) const {
    for (const auto& p : m_properties)
        if (strcasecmp(p.name.c_str(), name.c_str()) == 0) return &p;
    return nullptr;
}

} // namespace qv
