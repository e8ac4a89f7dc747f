#include "Reader.h"

#include "platform/core/ClassRegistry.h"
#include "platform/core/Filer.h"
#include "platform/core/FormLexer.h"

#include <strings.h>

#include <fstream>
#include <sstream>

namespace qv {

namespace {

struct TFixup {
    TComponent* instance;
    TObject* target;
    const TPropInfo* prop;
    std::string name;
    int line;
    int column;
};

class TFormReader {
public:
    TFormReader(std::string_view text, const TReadOptions& options, TComponent* rootOwner = nullptr)
        : m_lexer(text), m_options(options), m_rootOwner(rootOwner) {}

    // Reads the file; `existingRoot` is filled instead of creating the root when given.
    TComponent* Read(TComponent* existingRoot) {
        try {
            TComponent* root = ReadObject(nullptr, existingRoot);
            if (m_lexer.Current().kind != TFormToken::Kind::End)
                m_lexer.Fail("expected end of file but found " +
                             m_lexer.Describe(m_lexer.Current()));
            ResolveFixups(root);
            for (TComponent* c : m_loaded)
                c->EndReading();
            for (TComponent* c : m_loaded)
                c->Loaded();
            return root;
        } catch (...) {
            FreeCreated();
            throw;
        }
    }

private:
    // object [Name:] ClassName  properties and child objects  end
    TComponent* ReadObject(TComponent* parent, TComponent* existingRoot) {
        if (!m_lexer.IsIdent("object") && !m_lexer.IsIdent("inherited"))
            m_lexer.Fail("expected 'object' but found " + m_lexer.Describe(m_lexer.Current()));
        m_lexer.Next();
        const TFormToken header = m_lexer.Current();
        TFormToken classToken = header;
        std::string name;
        std::string className = m_lexer.ExpectIdent("a component name or class name");
        if (m_lexer.IsSymbol(':')) {
            m_lexer.Next();
            name = className;
            classToken = m_lexer.Current();
            className = m_lexer.ExpectIdent("a class name");
        }
        TComponent* component = Instantiate(className, parent, existingRoot, classToken);
        if (!m_root) m_root = component;
        Check(header, [&] { component->SetName(name); });
        if (parent) Check(header, [&] { component->SetParentComponent(parent); });
        m_loaded.push_back(component);

        for (;;) {
            if (m_lexer.IsIdent("end")) {
                m_lexer.Next();
                return component;
            }
            if (m_lexer.IsIdent("object") || m_lexer.IsIdent("inherited")) {
                ReadObject(component, nullptr);
                continue;
            }
            if (m_lexer.Current().kind == TFormToken::Kind::End)
                m_lexer.Fail("missing 'end' of object " + (name.empty() ? className : name));
            ReadProperty(*component);
        }
    }

    TComponent* Instantiate(const std::string& className, TComponent* parent,
                            TComponent* existingRoot, const TFormToken& at) {
        if (existingRoot) {
            const TClassInfo* cls = GetClass(className);
            if (!existingRoot->ClassInfo().InheritsFrom(cls ? *cls : existingRoot->ClassInfo()) ||
                (!cls && strcasecmp(className.c_str(), existingRoot->ClassName().c_str()) != 0))
                m_lexer.FailAt(at.line, at.column,
                               "the file describes a " + className + ", not a " +
                                   existingRoot->ClassName());
            Prepare(existingRoot);
            return existingRoot;
        }
        const TClassInfo* cls = GetClass(className);
        if (!cls) m_lexer.FailAt(at.line, at.column, "unknown class " + className);
        if (!cls->create)
            m_lexer.FailAt(at.line, at.column, "class " + className + " cannot be created by name");
        TComponent* owner = parent ? m_root : m_rootOwner;
        TComponent* component = nullptr;
        Check(at, [&] { component = cls->create(owner); });
        m_created.push_back(component);
        Prepare(component);
        return component;
    }

    void Prepare(TComponent* component) {
        if (m_options.designing) component->SetDesigning(true, false);
        component->BeginLoading();
    }

    // Name[.Name...] = value
    void ReadProperty(TComponent& component) {
        const TFormToken at = m_lexer.Current();
        const std::string path = m_lexer.ExpectIdent("a property name, 'object' or 'end'");
        m_lexer.ExpectSymbol('=');
        const TFormToken valueAt = m_lexer.Current();
        const TFormValue value = m_lexer.ReadValue();

        TObject* target = &component;
        std::string last = path;
        const std::size_t dot = path.rfind('.');
        if (dot != std::string::npos) {
            Check(at, [&] { target = NestedObject(component, path.substr(0, dot)); });
            last = path.substr(dot + 1);
        }
        if (const TPropInfo* prop = target->ClassInfo().FindProperty(last)) {
            Check(valueAt, [&] { Apply(component, *target, *prop, value, valueAt); });
            return;
        }
        auto* persistent = dynamic_cast<TPersistent*>(target);
        TFiler filer;
        if (persistent) persistent->DefineProperties(filer);
        if (const TDefinedProperty* defined = filer.Find(last)) {
            Check(valueAt, [&] { defined->read(value); });
            return;
        }
        m_lexer.FailAt(at.line, at.column,
                       "unknown property " + path + " of " + component.ClassName());
    }

    static TObject* NestedObject(TComponent& component, const std::string& path) {
        auto [owner, prop] = ResolvePropPath(component, path);
        if (prop->type->kind != TTypeKind::Class || prop->isReference || !prop->getObject(*owner))
            throw EConvertError(path + " is not an object with properties");
        return prop->getObject(*owner);
    }

    void Apply(TComponent& component, TObject& target, const TPropInfo& prop,
               const TFormValue& value, const TFormToken& at) {
        if (prop.type->kind == TTypeKind::Class && prop.isReference) {
            if (value.kind != TFormValue::Kind::Ident)
                throw EConvertError("Property " + prop.name + " expects a component name but got " +
                                    value.KindName());
            m_fixups.push_back({&component, &target, &prop, value.text, at.line, at.column});
            return;
        }
        if (prop.type->kind == TTypeKind::Method && !m_options.events) {
            if (value.kind != TFormValue::Kind::Ident)
                throw EConvertError("Event " + prop.name + " expects a handler name but got " +
                                    value.KindName());
            component.SetEventHandlerName(prop.name, value.text);
            return;
        }
        SetPropValue(target, prop, value, {m_options.events, {}});
    }

    void ResolveFixups(TComponent* root) {
        for (const TFixup& f : m_fixups) {
            if (strcasecmp(f.name.c_str(), "nil") == 0) continue;
            TComponent* found = FindComponentByPath(f.instance, f.name);
            if (!found && root && strcasecmp(root->Name().c_str(), f.name.c_str()) == 0)
                found = root;
            if (!found)
                m_lexer.FailAt(f.line, f.column,
                               "unknown component " + f.name + " for property " + f.prop->name);
            const TPropInfo& prop = *f.prop;
            TObject& target = *f.target;
            TFormToken at;
            at.line = f.line;
            at.column = f.column;
            Check(at, [&] { prop.setObject(target, found); });
        }
    }

    // Runs `action` and turns a conversion or range error into EReadError at `at`.
    template <class F> void Check(const TFormToken& at, F&& action) {
        try {
            action();
        } catch (const EReadError&) {
            throw;
        } catch (const Exception& e) {
            m_lexer.FailAt(at.line, at.column, e.Message());
        }
    }

    // Children were created after their parents and are freed first, so a parent never
    // frees a child that is still on the list.
    void FreeCreated() {
        while (!m_created.empty()) {
            delete m_created.back();
            m_created.pop_back();
        }
    }

    TFormLexer m_lexer;
    TReadOptions m_options;
    TComponent* m_rootOwner;
    TComponent* m_root{nullptr};
    std::vector<TComponent*> m_created;
    std::vector<TComponent*> m_loaded;
    std::vector<TFixup> m_fixups;
};

} // namespace

std::unique_ptr<TComponent> ReadComponentText(std::string_view text, const TReadOptions& options) {
    return std::unique_ptr<TComponent>(TFormReader(text, options).Read(nullptr));
}

TComponent* ReadComponentText(std::string_view text, TComponent& owner,
                              const TReadOptions& options) {
    return TFormReader(text, options, &owner).Read(nullptr);
}

void ReadRootText(TComponent& root, std::string_view text, const TReadOptions& options) {
    TFormReader(text, options).Read(&root);
}

std::unique_ptr<TComponent> ReadComponentFile(const std::string& path,
                                              const TReadOptions& options) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw EReadError(path + ": cannot open the file");
    std::stringstream buffer;
    buffer << in.rdbuf();
    try {
        return ReadComponentText(buffer.str(), options);
    } catch (const EReadError& e) {
        throw EReadError(path + ": " + e.Message());
    }
}

} // namespace qv
