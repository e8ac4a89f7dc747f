#include "PropertyAccess.h"

#include "Component.h"
#include "Exceptions.h"
#include "Filer.h"

#include <strings.h>

#include <cmath>

namespace qv {

const std::any* TEventTable::Find(const std::string& name) const {
    for (const auto& [key, handler] : m_handlers)
        if (strcasecmp(key.c_str(), name.c_str()) == 0) return &handler;
    return nullptr;
}

std::vector<const TPropInfo*> GetPropList(const TObject& obj) {
    return obj.ClassInfo().Properties();
}

const TPropInfo& GetPropInfo(const TObject& obj, const std::string& name) {
    const TPropInfo* p = obj.ClassInfo().FindProperty(name);
    if (!p) throw EConvertError(obj.ClassName() + " has no property " + name);
    return *p;
}

namespace {

[[noreturn]] void WrongKind(const TPropInfo& prop, const TFormValue& value, const char* expected) {
    throw EConvertError("Property " + prop.name + " expects " + expected + " but got " +
                        value.KindName());
}

TFormValue OrdinalValue(const TObject& obj, const TPropInfo& prop) {
    const std::int64_t v = prop.getOrd(obj);
    const TTypeInfo& t = *prop.type;
    switch (t.kind) {
    case TTypeKind::Enumeration:
        if (v >= 0 && v < static_cast<std::int64_t>(t.names.size()))
            return TFormValue::Identifier(t.names[static_cast<std::size_t>(v)]);
        return TFormValue::Int(v);
    case TTypeKind::Set: {
        std::vector<std::string> items;
        for (std::size_t i = 0; i < t.element->names.size() && i < 64; ++i)
            if ((static_cast<std::uint64_t>(v) >> i) & 1u) items.push_back(t.element->names[i]);
        return TFormValue::SetOf(std::move(items));
    }
    case TTypeKind::Char:
        return TFormValue::Str(std::string(1, static_cast<char>(v)));
    default: {
        if (t.intToIdent)
            if (auto ident = t.intToIdent(v)) return TFormValue::Identifier(*ident);
        TFormValue value = TFormValue::Int(v);
        value.hexDigits = t.hexDigits;
        return value;
    }
    }
}

std::int64_t IdentifierOrdinal(const TPropInfo& prop, const std::string& ident) {
    const TTypeInfo& t = *prop.type;
    if (t.kind == TTypeKind::Enumeration) {
        if (auto n = t.OrdinalOf(ident)) return *n;
        throw EConvertError("'" + ident + "' is not a value of " + t.name + " (property " +
                            prop.name + ")");
    }
    if (t.identToInt)
        if (auto n = t.identToInt(ident)) return *n;
    throw EConvertError("'" + ident + "' is not a valid value for property " + prop.name);
}

std::int64_t SetBits(const TPropInfo& prop, const TFormValue& value) {
    if (value.kind != TFormValue::Kind::Set) WrongKind(prop, value, "a set");
    std::uint64_t bits = 0;
    for (const auto& item : value.items) {
        auto n = prop.type->element->OrdinalOf(item);
        if (!n)
            throw EConvertError("'" + item + "' is not a value of " + prop.type->element->name +
                                " (property " + prop.name + ")");
        bits |= std::uint64_t{1} << *n;
    }
    return static_cast<std::int64_t>(bits);
}

void SetOrdinal(TObject& obj, const TPropInfo& prop, const TFormValue& value) {
    const TTypeInfo& t = *prop.type;
    std::int64_t n = 0;
    if (t.kind == TTypeKind::Set) {
        n = SetBits(prop, value);
    } else if (t.kind == TTypeKind::Char) {
        if (value.kind == TFormValue::Kind::String && value.text.size() == 1)
            n = static_cast<unsigned char>(value.text[0]);
        else if (value.kind == TFormValue::Kind::Integer)
            n = value.integer;
        else
            WrongKind(prop, value, "a character");
    } else if (value.kind == TFormValue::Kind::Ident) {
        n = IdentifierOrdinal(prop, value.text);
    } else if (value.kind == TFormValue::Kind::Integer && t.kind == TTypeKind::Integer) {
        n = value.integer;
        // Hexadecimal types (colours) are written as their 32-bit pattern: $FFFFFFFF is -1.
        if (t.hexDigits == 8 && t.minValue < 0 && n > t.maxValue && n <= UINT32_MAX)
            n = static_cast<std::int32_t>(static_cast<std::uint32_t>(n));
    } else {
        WrongKind(prop, value, t.kind == TTypeKind::Enumeration ? "an identifier" : "an integer");
    }
    if (t.kind != TTypeKind::Set && (n < t.minValue || n > t.maxValue))
        throw ERangeError("Value " + std::to_string(n) + " out of range for property " + prop.name +
                          " (" + std::to_string(t.minValue) + ".." + std::to_string(t.maxValue) +
                          ")");
    prop.setOrd(obj, n);
}

void SetFloat(TObject& obj, const TPropInfo& prop, const TFormValue& value) {
    long double v = 0;
    if (value.kind == TFormValue::Kind::Float)
        v = value.real;
    else if (value.kind == TFormValue::Kind::Integer)
        v = static_cast<long double>(value.integer);
    else
        WrongKind(prop, value, "a number");
    if (prop.type->floatType == TFloatType::Double && std::isfinite(v) &&
        std::fabs(v) > static_cast<long double>(std::numeric_limits<double>::max()))
        throw ERangeError("Value out of range for property " + prop.name);
    prop.setFloat(obj, v);
}

void SetString(TObject& obj, const TPropInfo& prop, const TFormValue& value) {
    if (value.kind != TFormValue::Kind::String) WrongKind(prop, value, "a string");
    std::string s = value.text;
    if (prop.type->maxLength && s.size() > prop.type->maxLength) s.resize(prop.type->maxLength);
    prop.setString(obj, s);
}

void SetMethod(TObject& obj, const TPropInfo& prop, const TFormValue& value,
               const TPropertyContext& context) {
    if (value.kind != TFormValue::Kind::Ident) WrongKind(prop, value, "a handler name");
    auto* component = dynamic_cast<TComponent*>(&obj);
    if (strcasecmp(value.text.c_str(), "nil") == 0) {
        prop.setMethod(obj, std::any{});
        if (component) component->SetEventHandlerName(prop.name, "");
        return;
    }
    const std::any* handler = context.events ? context.events->Find(value.text) : nullptr;
    if (!handler) throw EConvertError("No handler named " + value.text + " for event " + prop.name);
    prop.setMethod(obj, *handler);
    if (component) component->SetEventHandlerName(prop.name, value.text);
}

void SetReference(TObject& obj, const TPropInfo& prop, const TFormValue& value,
                  const TPropertyContext& context) {
    if (value.kind != TFormValue::Kind::Ident) WrongKind(prop, value, "a component name");
    if (strcasecmp(value.text.c_str(), "nil") == 0) {
        prop.setObject(obj, nullptr);
        return;
    }
    TComponent* target = nullptr;
    if (context.resolve)
        target = context.resolve(value.text);
    else if (auto* c = dynamic_cast<const TComponent*>(&obj))
        target = FindComponentByPath(c, value.text);
    if (!target)
        throw EConvertError("No component named " + value.text + " for property " + prop.name);
    if (!target->InheritsFrom(prop.type->classOf()))
        throw EConvertError(value.text + " is a " + target->ClassName() + ", not a " +
                            prop.type->classOf().name + " (property " + prop.name + ")");
    prop.setObject(obj, target);
}

} // namespace

TFormValue GetPropValue(const TObject& obj, const TPropInfo& prop) {
    switch (prop.type->kind) {
    case TTypeKind::Integer:
    case TTypeKind::Char:
    case TTypeKind::Enumeration:
    case TTypeKind::Set:
        return OrdinalValue(obj, prop);
    case TTypeKind::Float:
        if (prop.type->floatType == TFloatType::Double)
            return TFormValue::RealDouble(static_cast<double>(prop.getFloat(obj)));
        return TFormValue::Real(prop.getFloat(obj));
    case TTypeKind::String:
        return TFormValue::Str(prop.getString(obj));
    case TTypeKind::Class: {
        if (!prop.isReference)
            throw EConvertError("Property " + prop.name + " holds an object; read its properties");
        auto* target = dynamic_cast<TComponent*>(prop.getObject(obj));
        if (!target) return TFormValue::Identifier("nil");
        auto* self = dynamic_cast<const TComponent*>(&obj);
        const TComponent* root = self ? self->Owner() : nullptr;
        if (target->Owner() && root && target->Owner() != root && !target->Owner()->Name().empty())
            return TFormValue::Identifier(target->Owner()->Name() + "." + target->Name());
        return TFormValue::Identifier(target->Name());
    }
    case TTypeKind::Method: {
        auto* c = dynamic_cast<const TComponent*>(&obj);
        if (c) {
            auto it = c->EventHandlerNames().find(prop.name);
            if (it != c->EventHandlerNames().end()) return TFormValue::Identifier(it->second);
        }
        return TFormValue::Identifier("nil");
    }
    }
    throw EConvertError("Property " + prop.name + " has an unknown kind");
}

void SetPropValue(TObject& obj, const TPropInfo& prop, const TFormValue& value,
                  const TPropertyContext& context) {
    if (prop.IsReadOnly()) throw EConvertError("Property " + prop.name + " is read-only");
    switch (prop.type->kind) {
    case TTypeKind::Integer:
    case TTypeKind::Char:
    case TTypeKind::Enumeration:
    case TTypeKind::Set:
        SetOrdinal(obj, prop, value);
        return;
    case TTypeKind::Float:
        SetFloat(obj, prop, value);
        return;
    case TTypeKind::String:
        SetString(obj, prop, value);
        return;
    case TTypeKind::Method:
        SetMethod(obj, prop, value, context);
        return;
    case TTypeKind::Class:
        if (prop.isReference) {
            SetReference(obj, prop, value, context);
            return;
        }
        throw EConvertError("Property " + prop.name + " holds an object; set its properties");
    }
}

std::pair<TObject*, const TPropInfo*> ResolvePropPath(TObject& obj, const std::string& path) {
    TObject* current = &obj;
    std::size_t start = 0;
    for (;;) {
        const std::size_t dot = path.find('.', start);
        const std::string name =
            path.substr(start, dot == std::string::npos ? std::string::npos : dot - start);
        const TPropInfo& prop = GetPropInfo(*current, name);
        if (dot == std::string::npos) return {current, &prop};
        if (prop.type->kind != TTypeKind::Class || prop.isReference || !prop.getObject(*current))
            throw EConvertError("Property " + name + " of " + current->ClassName() +
                                " has no properties");
        current = prop.getObject(*current);
        start = dot + 1;
    }
}

namespace {
// A defined property (Items.Strings) at the end of a path.
const TDefinedProperty* FindDefined(TObject& owner, const std::string& path, TFiler& filer,
                                    TObject*& target) {
    const std::size_t dot = path.rfind('.');
    target = &owner;
    std::string last = path;
    if (dot != std::string::npos) {
        auto [parent, prop] = ResolvePropPath(owner, path.substr(0, dot));
        if (prop->type->kind != TTypeKind::Class || prop->isReference) return nullptr;
        target = prop->getObject(*parent);
        last = path.substr(dot + 1);
    }
    auto* persistent = dynamic_cast<TPersistent*>(target);
    if (!persistent) return nullptr;
    persistent->DefineProperties(filer);
    return filer.Find(last);
}
} // namespace

std::string GetPropText(const TObject& obj, const std::string& path) {
    TObject& self = const_cast<TObject&>(obj);
    TFiler filer;
    TObject* target = nullptr;
    try {
        auto [owner, prop] = ResolvePropPath(self, path);
        return FormatFormValue(GetPropValue(*owner, *prop));
    } catch (const EConvertError&) {
        if (const TDefinedProperty* defined = FindDefined(self, path, filer, target))
            return FormatFormValue(defined->write());
        throw;
    }
}

void SetPropText(TObject& obj, const std::string& path, const std::string& text,
                 const TPropertyContext& context) {
    const TFormValue value = ParseFormValue(text);
    TFiler filer;
    TObject* target = nullptr;
    try {
        auto [owner, prop] = ResolvePropPath(obj, path);
        SetPropValue(*owner, *prop, value, context);
    } catch (const EConvertError&) {
        if (const TDefinedProperty* defined = FindDefined(obj, path, filer, target)) {
            defined->read(value);
            return;
        }
        throw;
    }
}

TComponent* FindComponentByPath(const TComponent* from, const std::string& name) {
    const std::size_t dot = name.find('.');
    for (const TComponent* scope = from; scope; scope = scope->Owner()) {
        if (dot == std::string::npos) {
            if (TComponent* found = scope->FindComponent(name)) return found;
            if (strcasecmp(scope->Name().c_str(), name.c_str()) == 0)
                return const_cast<TComponent*>(scope);
        } else if (TComponent* outer = scope->FindComponent(name.substr(0, dot))) {
            return outer->FindComponent(name.substr(dot + 1));
        }
    }
    return nullptr;
}

} // namespace qv
