// The calculator against muparser, in the same run, on the same fresh strings: every
// iteration hands the next text of a pool of distinct texts to be parsed and evaluated, so
// neither side can reuse the previous parse. The two pools differ only in the spelling of
// names (SIN/sin, PI/_pi); muparser gives "^" a higher precedence, which does not change
// what is timed.
//
//   bench_calc              the usual Google Benchmark table
//   bench_calc --ratio      the table, then one line per expression:
//                           "<expression>: ours <ns> ns, muparser <ns> ns, ratio <ours/muparser>"

#include "bench/RatioReporter.h"
#include "utility/TqCalc.h"

#include <benchmark/benchmark.h>
#include <muParser.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

struct TCase {
    std::string label;
    std::vector<std::string> ours;
    std::vector<std::string> muparser;
};

// "2*(3+4)^2-SIN(PI/4)/LN(10)" and 63 variants with other logarithm arguments.
TCase MixedExpression() {
    TCase c{"2*(3+4)^2-SIN(PI/4)/LN(10)", {}, {}};
    for (int i = 10; i < 74; ++i) {
        const std::string n = std::to_string(i);
        c.ours.push_back("2*(3+4)^2-SIN(PI/4)/LN(" + n + ")");
        c.muparser.push_back("2*(3+4)^2-sin(_pi/4)/ln(" + n + ")");
    }
    return c;
}

// 1.d+2.d+...+50.d for the ten decimals d: 240 characters, below the 254 the calculator reads.
TCase SumOfFiftyNumbers() {
    TCase c{"sum of 50 numbers 1.0+2.0+...+50.0", {}, {}};
    for (int d = 0; d < 10; ++d) {
        std::string text;
        for (int j = 1; j <= 50; ++j)
            text += (j > 1 ? "+" : "") + std::to_string(j) + "." + std::to_string(d);
        c.ours.push_back(text);
        c.muparser.push_back(text);
    }
    return c;
}

void Ours(benchmark::State& state, const std::vector<std::string>& texts) {
    qv::TqCalc calc(nullptr);
    std::size_t next = 0;
    for (auto _ : state) {
        calc.SetCalcLine(texts[next]);
        next = (next + 1) % texts.size();
        benchmark::DoNotOptimize(calc.NumberNum());
    }
    if (calc.CalcResult() != qv::TqxOK)
        state.SkipWithError("the calculator did not accept the text");
}

void Muparser(benchmark::State& state, const std::vector<std::string>& texts) {
    mu::Parser parser;
    std::size_t next = 0;
    for (auto _ : state) {
        parser.SetExpr(texts[next]);
        next = (next + 1) % texts.size();
        benchmark::DoNotOptimize(parser.Eval());
    }
}

} // namespace

int main(int argc, char** argv) {
    const bool ratio = qv::bench::TakeRatioFlag(argc, argv);
    static const std::vector<TCase> cases = {MixedExpression(), SumOfFiftyNumbers()};
    for (const TCase& c : cases) {
        benchmark::RegisterBenchmark(("ours/" + c.label).c_str(), Ours, c.ours)
            ->Unit(benchmark::kNanosecond);
        benchmark::RegisterBenchmark(("muparser/" + c.label).c_str(), Muparser, c.muparser)
            ->Unit(benchmark::kNanosecond);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    qv::bench::TRatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    if (!ratio) return 0;
    for (const TCase& c : cases) {
        const auto ours = reporter.times.find("ours/" + c.label);
        const auto theirs = reporter.times.find("muparser/" + c.label);
        if (ours == reporter.times.end() || theirs == reporter.times.end()) continue;
        std::printf("%s: ours %.0f ns, muparser %.0f ns, ratio %.4f\n", c.label.c_str(),
                    ours->second, theirs->second, ours->second / theirs->second);
    }
    return 0;
}
