#pragma once
// The counter that guards a unit's initialization and finalization pair: the package's unit
// table may call a pair more than once (a package loaded by several hosts), but the bodies
// run only on the first initialization and on the finalization that balances it.

namespace qv {

class TUnitGuard {
public:
    // True on the first call: the caller runs the initialization body.
    bool Enter() { return m_count++ == 0; }
    // True when the counter returns to zero: the caller runs the finalization body. A
    // finalization without an initialization is ignored.
    bool Leave() { return m_count > 0 && --m_count == 0; }
    int Count() const { return m_count; }

private:
    int m_count{0};
};

} // namespace qv
