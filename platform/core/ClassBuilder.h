#pragma once
// TClassBuilder: writes a class's TClassInfo in its source file, one published property per
// call, in declaration order:
//
//   const TClassInfo& TqLed::StaticClassInfo() {
//       static const TClassInfo info = TClassBuilder<TqLed>("TqLed",
//       &TGraphicControl::StaticClassInfo())
//           .Property("LedStyle", &TqLed::LedStyle, &TqLed::SetLedStyle).Default(lstRound)
//           .Event("OnMouseEnter", &TqLed::OnMouseEnter)
//           .Build();
//       return info;
//   }

#include "Component.h"
#include "Set.h"
#include "TypeInfo.h"

#include <concepts>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>

namespace qv {

// Setter placeholder for display-only properties: writes are accepted and discarded.
struct TDiscardWrites {};
inline constexpr TDiscardWrites DiscardWrites{};

namespace detail {
template <class T> struct IsSet : std::false_type {};
template <class E> struct IsSet<TSet<E>> : std::true_type {};

template <class V>
constexpr bool IsOrdinal = std::is_integral_v<V> || std::is_enum_v<V> || IsSet<V>::value;

template <class V> std::int64_t ToOrd(const V& v) {
    if constexpr (IsSet<V>::value)
        return static_cast<std::int64_t>(v.Bits());
    else
        return static_cast<std::int64_t>(v);
}
template <class V> V FromOrd(std::int64_t n) {
    if constexpr (IsSet<V>::value)
        return V::FromBits(static_cast<std::uint64_t>(n));
    else
        return static_cast<V>(n);
}
} // namespace detail

template <class C> class TClassBuilder {
public:
    TClassBuilder(std::string name, const TClassInfo* parent) {
        m_info.name = std::move(name);
        m_info.parent = parent;
        if constexpr (std::is_base_of_v<TComponent, C> && !std::is_abstract_v<C> &&
                      std::is_constructible_v<C, TComponent*>) {
            m_info.create = [](TComponent* owner) -> TComponent* { return new C(owner); };
        }
    }

    // A published property whose type is deduced from the getter.
    template <class G, class S> TClassBuilder& Property(std::string name, G get, S set) {
        using V = std::decay_t<std::invoke_result_t<G, const C&>>;
        return Property(std::move(name), TypeInfoOf<V>(), get, set);
    }

    // A published property of an explicitly named type (subranges, colours, short strings).
    template <class G, class S>
    TClassBuilder& Property(std::string name, const TTypeInfo& type, G get, S set) {
        using V = std::decay_t<std::invoke_result_t<G, const C&>>;
        auto p = NewProperty(std::move(name), type);
        if constexpr (detail::IsOrdinal<V>) {
            p->getOrd = [get](const TObject& o) {
                return detail::ToOrd(std::invoke(get, Self(o)));
            };
            if constexpr (!std::is_same_v<S, TDiscardWrites>)
                p->setOrd = [set](TObject& o, std::int64_t v) {
                    std::invoke(set, Self(o), detail::FromOrd<V>(v));
                };
        } else if constexpr (std::is_floating_point_v<V>) {
            p->getFloat = [get](const TObject& o) {
                return static_cast<long double>(std::invoke(get, Self(o)));
            };
            if constexpr (!std::is_same_v<S, TDiscardWrites>)
                p->setFloat = [set](TObject& o, long double v) {
                    std::invoke(set, Self(o), static_cast<V>(v));
                };
        } else if constexpr (std::is_convertible_v<V, std::string>) {
            p->getString = [get](const TObject& o) {
                return std::string(std::invoke(get, Self(o)));
            };
            if constexpr (!std::is_same_v<S, TDiscardWrites>)
                p->setString = [set](TObject& o, const std::string& v) {
                    std::invoke(set, Self(o), v);
                };
        } else {
            static_assert(detail::IsOrdinal<V>, "unsupported published property type");
        }
        if constexpr (std::is_same_v<S, TDiscardWrites>) {
            p->displayOnly = true;
            if (p->getOrd) p->setOrd = [](TObject&, std::int64_t) {};
            if (p->getFloat) p->setFloat = [](TObject&, long double) {};
            if (p->getString) p->setString = [](TObject&, const std::string&) {};
        }
        return *this;
    }

    // A property holding an object that is assigned by copy (TFont, TBitmap, TStrings).
    template <class G> TClassBuilder& Object(std::string name, G get) {
        using P = std::remove_pointer_t<std::decay_t<std::invoke_result_t<G, const C&>>>;
        auto p = NewProperty(std::move(name), ClassType<P>());
        p->getObject = [get](const TObject& o) -> TObject* { return std::invoke(get, Self(o)); };
        p->setObject = [get](TObject& o, TObject* v) {
            auto* source = dynamic_cast<TPersistent*>(v);
            if (source) std::invoke(get, Self(o))->Assign(*source);
        };
        return *this;
    }

    // A property referring to another component; cleared when that component goes away.
    template <class G, class S> TClassBuilder& Reference(std::string name, G get, S set) {
        using P = std::remove_pointer_t<std::decay_t<std::invoke_result_t<G, const C&>>>;
        auto p = NewProperty(std::move(name), ClassType<P>());
        p->isReference = true;
        p->getObject = [get](const TObject& o) -> TObject* { return std::invoke(get, Self(o)); };
        p->setObject = [set, name = p->name](TObject& o, TObject* v) {
            auto* target = dynamic_cast<P*>(v);
            if (v && !target)
                throw EConvertError("Cannot assign a " + v->ClassName() + " to property " + name);
            std::invoke(set, Self(o), target);
        };
        return *this;
    }

    // An event: a std::function member named OnXxx (of this class or a base class).
    template <class F, class B> TClassBuilder& Event(std::string name, F B::*field) {
        static_assert(std::is_base_of_v<B, C>, "the event must be a member of the class or a base");
        auto p = NewProperty(std::move(name), TypeInfoOf<F>());
        p->getMethod = [field](const TObject& o) { return std::any(Self(o).*field); };
        p->hasMethod = [field](const TObject& o) { return static_cast<bool>(Self(o).*field); };
        p->setMethod = [field, name = p->name](TObject& o, const std::any& v) {
            if (!v.has_value()) {
                Self(o).*field = nullptr;
                return;
            }
            const F* handler = std::any_cast<F>(&v);
            if (!handler) throw EConvertError("Handler of the wrong type for event " + name);
            Self(o).*field = *handler;
        };
        return *this;
    }

    // An event read and written through accessors (a setter that does more than store).
    template <class G, class S> TClassBuilder& Event(std::string name, G get, S set) {
        using F = std::decay_t<std::invoke_result_t<G, const C&>>;
        auto p = NewProperty(std::move(name), TypeInfoOf<F>());
        p->getMethod = [get](const TObject& o) { return std::any(std::invoke(get, Self(o))); };
        p->hasMethod = [get](const TObject& o) {
            return static_cast<bool>(std::invoke(get, Self(o)));
        };
        p->setMethod = [set, name = p->name](TObject& o, const std::any& v) {
            if (!v.has_value()) {
                std::invoke(set, Self(o), F{});
                return;
            }
            const F* handler = std::any_cast<F>(&v);
            if (!handler) throw EConvertError("Handler of the wrong type for event " + name);
            std::invoke(set, Self(o), *handler);
        };
        return *this;
    }

    // Modifiers of the property declared last.
    template <class V> TClassBuilder& Default(V value) {
        Last().defaultOrd = detail::ToOrd(value);
        return *this;
    }
    TClassBuilder& Stored(std::function<bool(const C&)> rule) {
        Last().stored = [rule = std::move(rule)](const TObject& o) { return rule(Self(o)); };
        return *this;
    }
    TClassBuilder& NotStored() {
        Last().stored = [](const TObject&) { return false; };
        return *this;
    }

    TClassInfo Build() { return std::move(m_info); }

private:
    static const C& Self(const TObject& o) { return static_cast<const C&>(o); }
    static C& Self(TObject& o) { return static_cast<C&>(o); }

    template <class P> static const TTypeInfo& ClassType() {
        static const TTypeInfo info = [] {
            TTypeInfo t;
            t.kind = TTypeKind::Class;
            t.classOf = &P::StaticClassInfo;
            return t;
        }();
        return info;
    }

    std::shared_ptr<TPropInfo> NewProperty(std::string name, const TTypeInfo& type) {
        auto p = std::make_shared<TPropInfo>();
        p->name = std::move(name);
        p->type = &type;
        m_info.ownProperties.push_back(p);
        m_last = p;
        return p;
    }
    TPropInfo& Last() { return *m_last; }

    TClassInfo m_info;
    std::shared_ptr<TPropInfo> m_last;
};

} // namespace qv
