#pragma once
// Shared by the benchmarks that print ratios against a peer measured in the same run: the
// --ratio switch, a reporter that keeps each benchmark's time, and the memcpy floor.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace qv::bench {

// Collects the real time per iteration, by benchmark name, in the benchmark's time unit:
// the fastest of the repetitions, the one least disturbed by other work on a shared machine.
class TRatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
            const auto [it, added] =
                times.try_emplace(run.benchmark_name(), run.GetAdjustedRealTime());
            if (!added) it->second = std::min(it->second, run.GetAdjustedRealTime());
        }
    }
    std::map<std::string, double> times;
};

// Removes --ratio from the arguments (Google Benchmark rejects flags it does not know) and
// tells whether it was there.
inline bool TakeRatioFlag(int& argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--ratio") == 0) {
            for (int j = i; j + 1 < argc; ++j)
                argv[j] = argv[j + 1];
            --argc;
            return true;
        }
    return false;
}

// The floor of an operation that moves every pixel: a memcpy of `count` pixels from `from` to
// `to` (pass the buffers the operation itself works on, so that where the system placed them
// does not enter the ratio).
inline void MemcpyFloor(benchmark::State& state, const std::uint32_t* from, std::uint32_t* to,
                        std::size_t count) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(from);
        std::memcpy(to, from, count * sizeof(std::uint32_t));
        benchmark::DoNotOptimize(to);
        benchmark::ClobberMemory();
    }
}

} // namespace qv::bench
