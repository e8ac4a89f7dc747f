// calc: evaluates expressions with the TqCalc component and prints one line per expression:
//
//   <CalcResult> <WhereIsLastError> <NumberNum>
//
// for example "TqxOK 4 3.00000000000000000000" for 1+2. The value is printed with printf's
// "%#.21Lg": 21 significant digits with trailing zeros kept, in exponent form below 1e-4 and
// from 1e21 up. With --format F each line also ends with the Number text formatted through F.
// All expressions run on one calculator, so the registers A..J carry over from line to line.
// Exit status: 0 when every expression gave TqxOK, 1 otherwise, 2 for a bad command line.

#include "platform/core/Exceptions.h"
#include "platform/core/SysUtils.h"
#include "utility/Mystd.h"

#include <cstdio>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr const char* kUsage =
    "usage: calc [--no-push] [--format F] [--] [EXPRESSION...]\n"
    "Evaluates each EXPRESSION, or each line of standard input when none is given, and\n"
    "prints: result code, position where reading stopped, value (21 significant digits).\n"
    "  --no-push    do not push results onto the registers A B C D F G H I J\n"
    "  --format F   also print each value formatted through F (e.g. %.2f); default %e\n"
    "  --           end of options: every following argument is an expression\n"
    "Arguments that begin with a single '-' (like -2^2) are expressions.\n";

struct TOptions {
    bool push{true};
    std::optional<std::string> format;
    std::vector<std::string> expressions;
    bool help{false};
};

struct TUsageError {
    std::string message;
};

bool IsOption(const std::string& arg) {
    return arg.size() > 2 && arg.rfind("--", 0) == 0;
}

TOptions ParseArguments(int argc, char** argv) {
    TOptions options;
    bool optionsEnded = false;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (optionsEnded || !(IsOption(arg) || arg == "--")) {
            options.expressions.push_back(arg);
        } else if (arg == "--") {
            optionsEnded = true;
        } else if (arg == "--no-push") {
            options.push = false;
        } else if (arg == "--help") {
            options.help = true;
        } else if (arg == "--format") {
            if (i + 1 >= argc) throw TUsageError{"--format needs a format text"};
            options.format = argv[++i];
        } else if (arg.rfind("--format=", 0) == 0) {
            options.format = arg.substr(9);
        } else {
            throw TUsageError{"unknown option '" + arg + "'"};
        }
    }
    return options;
}

// A format text must take one floating-point value; its rendering does not depend on the value.
void CheckFormat(const std::string& format) {
    try {
        qv::Format(format, {0.0L});
    } catch (const qv::Exception& e) {
        throw TUsageError{"--format: " + e.Message()};
    }
}

class TCalcRunner {
public:
    explicit TCalcRunner(const TOptions& options) : m_showNumber(options.format.has_value()) {
        m_calc.SetPushResult(options.push);
        if (options.format) m_calc.SetFormatLine(*options.format);
    }

    void Run(const std::string& expression) {
        m_calc.SetCalcLine(expression);
        const auto& names = qv::TypeInfoOf<qv::TqCalcResult>().names;
        char value[64];
        std::snprintf(value, sizeof value, "%#.21Lg", m_calc.NumberNum());
        std::cout << names.at(static_cast<std::size_t>(m_calc.CalcResult())) << ' '
                  << static_cast<int>(m_calc.WhereIsLastError()) << ' ' << value;
        if (m_showNumber) std::cout << ' ' << m_calc.Number();
        std::cout << '\n';
        if (m_calc.CalcResult() != qv::TqxOK) m_allOK = false;
    }

    bool AllOK() const { return m_allOK; }

private:
    qv::TqCalc m_calc{nullptr};
    bool m_showNumber;
    bool m_allOK{true};
};

void RunStandardInput(TCalcRunner& runner) {
    std::string line;
    while (std::getline(std::cin, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        runner.Run(line);
    }
}

} // namespace

int main(int argc, char** argv) {
    TOptions options;
    try {
        options = ParseArguments(argc, argv);
        if (options.format) CheckFormat(*options.format);
    } catch (const TUsageError& e) {
        std::cerr << "calc: " << e.message << '\n' << kUsage;
        return 2;
    }
    if (options.help) {
        std::cout << kUsage;
        return 0;
    }
    TCalcRunner runner(options);
    if (options.expressions.empty()) RunStandardInput(runner);
    for (const std::string& expression : options.expressions)
        runner.Run(expression);
    return runner.AllOK() ? 0 : 1;
}
