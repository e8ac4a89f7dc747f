#include "Writer.h"

#include "platform/core/Filer.h"
#include "platform/core/PropertyAccess.h"

#include <fstream>

namespace qv {

namespace {

class TFormWriter {
public:
    std::string Write(const TComponent& root) {
        m_root = &root;
        WriteObject(root, "");
        return std::move(m_out);
    }

private:
    void WriteObject(const TComponent& component, const std::string& indent) {
        m_out += indent + "object ";
        if (!component.Name().empty()) m_out += component.Name() + ": ";
        m_out += component.ClassName() + "\n";
        WriteProperties(component, "", indent + "  ");
        component.GetChildren([&](TComponent* child) { WriteObject(*child, indent + "  "); },
                              const_cast<TComponent*>(m_root));
        m_out += indent + "end\n";
    }

    void WriteProperties(const TObject& obj, const std::string& prefix, const std::string& indent) {
        for (const TPropInfo* prop : GetPropList(obj)) {
            if (!prop->IsStored(obj)) continue;
            if (prop->type->kind == TTypeKind::Class && !prop->isReference) {
                if (const TObject* nested = prop->getObject(obj))
                    WriteProperties(*nested, prefix + prop->name + ".", indent);
                continue;
            }
            if (prop->IsDefault(obj)) continue;
            const TFormValue value = GetPropValue(obj, *prop);
            if (value.kind == TFormValue::Kind::Ident && value.text == "nil") continue;
            WriteLine(prefix + prop->name, value, indent);
        }
        WriteDefinedProperties(obj, prefix, indent);
    }

    void WriteDefinedProperties(const TObject& obj, const std::string& prefix,
                                const std::string& indent) {
        auto* persistent = dynamic_cast<TPersistent*>(const_cast<TObject*>(&obj));
        if (!persistent) return;
        TFiler filer;
        persistent->DefineProperties(filer);
        for (const TDefinedProperty& p : filer.Properties())
            if (p.hasData) WriteLine(prefix + p.name, p.write(), indent);
    }

    void WriteLine(const std::string& name, const TFormValue& value, const std::string& indent) {
        m_out += indent + name + " = " + FormatFormValue(value, indent) + "\n";
    }

    const TComponent* m_root{nullptr};
    std::string m_out;
};

} // namespace

std::string WriteComponentText(const TComponent& root) {
    return TFormWriter().Write(root);
}

void WriteComponentFile(const TComponent& root, const std::string& path) {
    const std::string text = WriteComponentText(root);
    std::ofstream out(path, std::ios::binary);
    if (!out || !out.write(text.data(), static_cast<std::streamsize>(text.size())))
        throw EWriteError(path + ": cannot write the file");
}

} // namespace qv
