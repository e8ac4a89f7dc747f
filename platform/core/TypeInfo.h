#pragma once
// Run-time type information for published properties: what kind of value a property holds,
// how to read and write it on an object, and its storage default. Each class lists its own
// published properties in declaration order; its base class's come first.

#include "Object.h"

#include <any>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace qv {

class TComponent;

enum class TTypeKind { Integer, Char, Enumeration, Float, String, Set, Class, Method };
enum class TFloatType { Double, Extended };

struct TTypeInfo {
    TTypeKind kind{TTypeKind::Integer};
    std::string name;
    // Integer, Char, Enumeration: the range of ordinals.
    std::int64_t minValue{0};
    std::int64_t maxValue{0};
    // Enumeration: the identifiers of the values, in ordinal order, exactly as declared.
    std::vector<std::string> names;
    // Set: the type of its elements (an enumeration).
    const TTypeInfo* element{nullptr};
    // Float: double or 80-bit extended.
    TFloatType floatType{TFloatType::Double};
    // String: the maximum length of a short string (0 when unbounded).
    std::size_t maxLength{0};
    // Class: the class of the object the property holds, asked for when needed so that a
    // class may publish references to its own kind.
    const TClassInfo& (*classOf)(){nullptr};
    // Integer types that have identifiers for some values (colours, cursors).
    std::function<std::optional<std::string>(std::int64_t)> intToIdent;
    std::function<std::optional<std::int64_t>(const std::string&)> identToInt;
    // Integer types written in hexadecimal with this many digits when they have no
    // identifier (colours: $00202020); 0 writes decimal.
    int hexDigits{0};

    static TTypeInfo Integer(std::string name, std::int64_t min, std::int64_t max);
    static TTypeInfo Enumeration(std::string name, std::vector<std::string> names);
    static TTypeInfo Set(std::string name, const TTypeInfo& element);
    static TTypeInfo Float(std::string name, TFloatType type);
    static TTypeInfo String(std::string name, std::size_t maxLength = 0);
    static TTypeInfo Method(std::string name);

    bool IsBoolean() const { return kind == TTypeKind::Enumeration && name == "Boolean"; }
    // The ordinal of an enumeration identifier (case-insensitive), if it names a value.
    std::optional<std::int64_t> OrdinalOf(const std::string& ident) const;
};

// The type information of the C++ types used by published properties. Enumerations and
// sets get theirs through QV_ENUM_TYPE and QV_SET_TYPE.
template <class T> const TTypeInfo& TypeInfoOf();

template <> const TTypeInfo& TypeInfoOf<bool>();
template <> const TTypeInfo& TypeInfoOf<int>();
template <> const TTypeInfo& TypeInfoOf<unsigned>();
template <> const TTypeInfo& TypeInfoOf<std::int64_t>();
template <> const TTypeInfo& TypeInfoOf<std::uint8_t>();
template <> const TTypeInfo& TypeInfoOf<std::uint16_t>();
template <> const TTypeInfo& TypeInfoOf<std::int16_t>();
template <> const TTypeInfo& TypeInfoOf<char>();
template <> const TTypeInfo& TypeInfoOf<double>();
template <> const TTypeInfo& TypeInfoOf<long double>();
template <> const TTypeInfo& TypeInfoOf<std::string>();
template <> const TTypeInfo& TypeInfoOf<TNotifyEvent>();

#define QV_ENUM_TYPE(Type, ...)                                                                    \
    template <> inline const ::qv::TTypeInfo& TypeInfoOf<Type>() {                                 \
        static const ::qv::TTypeInfo info = ::qv::TTypeInfo::Enumeration(#Type, {__VA_ARGS__});    \
        return info;                                                                               \
    }
#define QV_SET_TYPE(Type, Element)                                                                 \
    template <> inline const ::qv::TTypeInfo& TypeInfoOf<Type>() {                                 \
        static const ::qv::TTypeInfo info = ::qv::TTypeInfo::Set(#Type, TypeInfoOf<Element>());    \
        return info;                                                                               \
    }
// Event types other than TNotifyEvent: QV_EVENT_TYPE(TCalcErrorEvent).
#define QV_EVENT_TYPE(Type)                                                                        \
    template <> inline const ::qv::TTypeInfo& TypeInfoOf<Type>() {                                 \
        static const ::qv::TTypeInfo info = ::qv::TTypeInfo::Method(#Type);                        \
        return info;                                                                               \
    }

// One published property: name, type, accessors and the rules for storing it. Only the
// accessors that belong to the type's kind are set.
struct TPropInfo {
    std::string name;
    const TTypeInfo* type{nullptr};

    std::function<std::int64_t(const TObject&)> getOrd;
    std::function<void(TObject&, std::int64_t)> setOrd;
    std::function<long double(const TObject&)> getFloat;
    std::function<void(TObject&, long double)> setFloat;
    std::function<std::string(const TObject&)> getString;
    std::function<void(TObject&, const std::string&)> setString;
    // Class: the object held. For objects assigned by copy (fonts, bitmaps, string lists)
    // the setter assigns; for references to components it stores the pointer.
    std::function<TObject*(const TObject&)> getObject;
    std::function<void(TObject&, TObject*)> setObject;
    bool isReference{false};
    // Method: the handler as a std::any holding the event's std::function type.
    std::function<std::any(const TObject&)> getMethod;
    std::function<void(TObject&, const std::any&)> setMethod;
    std::function<bool(const TObject&)> hasMethod;

    // Ordinal properties: the value that is not written to form files.
    std::optional<std::int64_t> defaultOrd;
    // When set, decides whether the property is written at all.
    std::function<bool(const TObject&)> stored;
    // Display-only: writes are accepted and discarded; designers show the value read-only.
    bool displayOnly{false};

    bool IsReadOnly() const;
    bool IsStored(const TObject& obj) const;
    // True when the property holds its storage default and is therefore not written.
    bool IsDefault(const TObject& obj) const;
};

// What the framework knows about a class: its name, base, published properties and, for
// components that can be created by name, a factory taking the owner.
struct TClassInfo {
    std::string name;
    const TClassInfo* parent{nullptr};
    std::function<TComponent*(TComponent* owner)> create;
    std::vector<std::shared_ptr<const TPropInfo>> ownProperties;

    bool InheritsFrom(const TClassInfo& other) const;
    // All published properties, the base class's first, in declaration order.
    std::vector<const TPropInfo*> Properties() const;
    // The property named `name` (case-insensitive), or null.
    const TPropInfo* FindProperty(const std::string& name) const;
};

} // namespace qv
