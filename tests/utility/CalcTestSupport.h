#pragma once
// Evaluating expressions on a TqCalc in the calculator tests.

#include "utility/TqCalc.h"

#include <ostream>
#include <string_view>

namespace qv {

struct TCalcOutcome {
    TqCalcResult code;
    int where;
    long double value;
};

inline TCalcOutcome Evaluate(TqCalc& calc, std::string_view line) {
    calc.SetCalcLine(line);
    return {calc.CalcResult(), calc.WhereIsLastError(), calc.NumberNum()};
}

inline std::ostream& operator<<(std::ostream& out, TqCalcResult code) {
    return out << TypeInfoOf<TqCalcResult>().names.at(static_cast<std::size_t>(code));
}

} // namespace qv
