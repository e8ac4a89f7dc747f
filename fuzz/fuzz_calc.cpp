// Feeds arbitrary bytes to TqCalc. The first byte chooses the set-up: bit 0 pushes results,
// bit 1 accepts some names as user functions, bit 2 computes them (bit 5: as infinity),
// bit 3 takes the first line as the format line, bit 4 reads Number and the registers as text.
// The other lines are evaluated one after another on the same calculator. Every evaluation
// must end with a result code of the evaluator (TqxOK..TqxOverFlow), keep its line as
// CalcLine, and leave a finite number; a formatting failure must show TqxFormatError only
// while OnError runs.
#include "utility/TqCalc.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace {

using namespace qv;

enum TFuzzSetup : std::uint8_t {
    fsPush = 1,
    fsFindUser = 2,
    fsUserValue = 4,
    fsFormatLine = 8,
    fsReadText = 16,
    fsInfiniteUser = 32
};

void Check(bool condition) {
    if (!condition) __builtin_trap();
}

void InstallHandlers(TqCalc& calc, std::uint8_t setup) {
    if (setup & fsFindUser)
        calc.OnFindUserFunc = [](TObject*, const std::string& name) {
            Check(!name.empty() && name.size() <= 10);
            return name[0] < 'N';
        };
    if (setup & fsUserValue)
        calc.OnUserFunc = [setup](TObject*, const std::string&, long double x) {
            if (setup & fsInfiniteUser) return std::numeric_limits<long double>::infinity();
            return x * 3 - 1;
        };
    calc.OnError = [&calc](TObject* sender, const std::string&, std::uint8_t) {
        Check(sender == &calc);
        Check(calc.CalcResult() != TqxOK);
    };
}

void ReadTexts(const TqCalc& calc) {
    const TqCalcResult before = calc.CalcResult();
    (void)calc.Number();
    for (int i = 1; i <= TqCalc::RegisterCount; ++i)
        (void)calc.RegisterText(i);
    Check(calc.CalcResult() == before);
}

void EvaluateLine(TqCalc& calc, std::string_view line, std::uint8_t setup) {
    calc.SetCalcLine(line);
    const auto code = static_cast<std::uint8_t>(calc.CalcResult());
    Check(code <= static_cast<std::uint8_t>(TqxOverFlow));
    const std::string_view stored = line.empty() ? "0" : line.substr(0, TqCalc::MaxLineLength);
    Check(calc.CalcLine() == stored);
    Check(std::isfinite(calc.NumberNum()));
    if (setup & fsReadText) ReadTexts(calc);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::uint8_t setup = data[0];
    std::string_view rest(reinterpret_cast<const char*>(data + 1), size - 1);
    TqCalc calc(nullptr);
    calc.SetPushResult(setup & fsPush);
    InstallHandlers(calc, setup);
    if (setup & fsFormatLine) {
        const std::size_t end = rest.find('\n');
        calc.SetFormatLine(std::string(rest.substr(0, end)));
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    }
    while (!rest.empty()) {
        const std::size_t end = rest.find('\n');
        EvaluateLine(calc, rest.substr(0, end), setup);
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    }
    return 0;
}
