#include "TypeInfo.h"

#include <strings.h>

#include <cfloat>
#include <climits>

namespace qv {

TTypeInfo TTypeInfo::Integer(std::string name, std::int64_t min, std::int64_t max) {
    TTypeInfo t;
    t.kind = TTypeKind::Integer;
    t.name = std::move(name);
    t.minValue = min;
    t.maxValue = max;
    return t;
}

TTypeInfo TTypeInfo::Enumeration(std::string name, std::vector<std::string> names) {
    TTypeInfo t;
    t.kind = TTypeKind::Enumeration;
    t.name = std::move(name);
    t.minValue = 0;
    t.maxValue = static_cast<std::int64_t>(names.size()) - 1;
    t.names = std::move(names);
    return t;
}

TTypeInfo TTypeInfo::Set(std::string name, const TTypeInfo& element) {
    TTypeInfo t;
    t.kind = TTypeKind::Set;
    t.name = std::move(name);
    t.element = &element;
    return t;
}

TTypeInfo TTypeInfo::Float(std::string name, TFloatType type) {
    TTypeInfo t;
    t.kind = TTypeKind::Float;
    t.name = std::move(name);
    t.floatType = type;
    return t;
}

TTypeInfo TTypeInfo::String(std::string name, std::size_t maxLength) {
    TTypeInfo t;
    t.kind = TTypeKind::String;
    t.name = std::move(name);
    t.maxLength = maxLength;
    return t;
}

TTypeInfo TTypeInfo::Method(std::string name) {
    TTypeInfo t;
    t.kind = TTypeKind::Method;
    t.name = std::move(name);
    return t;
}

std::optional<std::int64_t> TTypeInfo::OrdinalOf(const std::string& ident) const {
    for (std::size_t i = 0; i < names.size(); ++i)
        if (strcasecmp(names[i].c_str(), ident.c_str()) == 0) return static_cast<std::int64_t>(i);
    return std::nullopt;
}

#define QV_BUILTIN_TYPE(Type, expr)                                                                \
    template <> const TTypeInfo& TypeInfoOf<Type>() {                                              \
        static const TTypeInfo info = expr;                                                        \
        return info;                                                                               \
    }

QV_BUILTIN_TYPE(bool, TTypeInfo::Enumeration("Boolean", {"False", "True"}))
QV_BUILTIN_TYPE(int, TTypeInfo::Integer("Integer", INT_MIN, INT_MAX))
QV_BUILTIN_TYPE(unsigned, TTypeInfo::Integer("Cardinal", 0, UINT_MAX))
QV_BUILTIN_TYPE(std::int64_t, TTypeInfo::Integer("Int64", INT64_MIN, INT64_MAX))
QV_BUILTIN_TYPE(std::uint8_t, TTypeInfo::Integer("Byte", 0, 255))
QV_BUILTIN_TYPE(std::uint16_t, TTypeInfo::Integer("Word", 0, 65535))
QV_BUILTIN_TYPE(std::int16_t, TTypeInfo::Integer("SmallInt", -32768, 32767))
QV_BUILTIN_TYPE(double, TTypeInfo::Float("Double", TFloatType::Double))
QV_BUILTIN_TYPE(long double, TTypeInfo::Float("Extended", TFloatType::Extended))
QV_BUILTIN_TYPE(std::string, TTypeInfo::String("String"))
QV_BUILTIN_TYPE(TNotifyEvent, TTypeInfo::Method("TNotifyEvent"))

template <> const TTypeInfo& TypeInfoOf<char>() {
    static const TTypeInfo info = [] {
        TTypeInfo t = TTypeInfo::Integer("Char", 0, 255);
        t.kind = TTypeKind::Char;
        return t;
    }();
    return info;
}

bool TPropInfo::IsReadOnly() const {
    return !(setOrd || setFloat || setString || setObject || setMethod);
}

bool TPropInfo::IsStored(const TObject& obj) const {
    // Read-only and display-only values are derived from others and are not written.
    if ((IsReadOnly() && type->kind != TTypeKind::Class) || displayOnly) return false;
    return !stored || stored(obj);
}

bool TPropInfo::IsDefault(const TObject& obj) const {
    switch (type->kind) {
    case TTypeKind::Integer:
    case TTypeKind::Char:
    case TTypeKind::Enumeration:
    case TTypeKind::Set:
        return defaultOrd && getOrd(obj) == *defaultOrd;
    case TTypeKind::Float:
        return getFloat(obj) == 0;
    case TTypeKind::String:
        return getString(obj).empty();
    case TTypeKind::Class:
        return getObject(obj) == nullptr;
    case TTypeKind::Method:
        return false; // written when a handler name is known
    }
    return false;
}

bool TClassInfo::InheritsFrom(const TClassInfo& other) const {
    for (const TClassInfo* c = this; c; c = c->parent)
        if (c == &other) return true;
    return false;
}

std::vector<const TPropInfo*> TClassInfo::Properties() const {
    std::vector<const TPropInfo*> result =
        parent ? parent->Properties() : std::vector<const TPropInfo*>{};
    for (const auto& p : ownProperties) {
        // A class may publish an inherited property again (to change its default or to
        // place it); the redeclaration replaces the inherited one at its own position.
        std::erase_if(result, [&](const TPropInfo* existing) {
            return strcasecmp(existing->name.c_str(), p->name.c_str()) == 0;
        });
        result.push_back(p.get());
    }
    return result;
}

const TPropInfo* TClassInfo::FindProperty(const std::string& name) const {
    for (const TClassInfo* c = this; c; c = c->parent)
        for (const auto& p : c->ownProperties)
            if (strcasecmp(p->name.c_str(), name.c_str()) == 0) return p.get();
    return nullptr;
}

} // namespace qv
