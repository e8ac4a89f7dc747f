#pragma once
// TSet<E>: a set of values of an enumeration with at most 64 members, the counterpart of
// the classic `set of` types. Published set properties are stored through its bit mask.

#include <cstdint>
#include <initializer_list>

namespace qv {

template <class E> class TSet {
public:
    constexpr TSet() = default;
    constexpr TSet(std::initializer_list<E> items) {
        for (E e : items)
            Include(e);
    }
    static constexpr TSet FromBits(std::uint64_t bits) {
        TSet s;
        s.m_bits = bits;
        return s;
    }

    constexpr std::uint64_t Bits() const { return m_bits; }
    constexpr bool Contains(E e) const { return (m_bits & Bit(e)) != 0; }
    constexpr bool Empty() const { return m_bits == 0; }
    constexpr TSet& Include(E e) {
        m_bits |= Bit(e);
        return *this;
    }
    constexpr TSet& Exclude(E e) {
        m_bits &= ~Bit(e);
        return *this;
    }
    constexpr TSet operator+(TSet o) const { return FromBits(m_bits | o.m_bits); }
    constexpr TSet operator-(TSet o) const { return FromBits(m_bits & ~o.m_bits); }
    constexpr TSet operator*(TSet o) const { return FromBits(m_bits & o.m_bits); }
    constexpr bool operator==(const TSet&) const = default;

private:
    static constexpr std::uint64_t Bit(E e) { return std::uint64_t{1} << static_cast<unsigned>(e); }
    std::uint64_t m_bits{0};
};

} // namespace qv
