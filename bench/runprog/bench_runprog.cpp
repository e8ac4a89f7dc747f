// bench_runprog: starting /bin/true and waiting for it through TqxRunProg's soft wait (the
// loop sleeping on the process's pidfd), beside a bare posix_spawn and waitpid of the same
// program, rounds interleaved in the same run. Prints "<name>: <value>" lines: the medians
// in microseconds and their ratio.

#include "platform/controls/Application.h"
#include "timing/Std2.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <spawn.h>
#include <sys/wait.h>
#include <vector>

extern char** environ;

using namespace qv;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int rounds = 400;
constexpr int warmup = 20;

double Microseconds(Clock::duration d) {
    return std::chrono::duration<double, std::micro>(d).count();
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double TimeRunThis(TqxRunProg& run) {
    const auto start = Clock::now();
    run.RunThis("/bin/true");
    return Microseconds(Clock::now() - start);
}

double TimeBareSpawn() {
    char program[] = "/bin/true";
    char* argv[] = {program, nullptr};
    const auto start = Clock::now();
    pid_t pid = 0;
    if (posix_spawn(&pid, program, nullptr, nullptr, argv, environ) == 0) {
        int status = 0;
        waitpid(pid, &status, 0);
    }
    return Microseconds(Clock::now() - start);
}

} // namespace

int main() {
    TqxRunProg run(nullptr);
    std::vector<double> ours, bare;
    for (int i = 0; i < warmup; ++i) {
        TimeRunThis(run);
        TimeBareSpawn();
    }
    for (int i = 0; i < rounds; ++i) {
        ours.push_back(TimeRunThis(run));
        bare.push_back(TimeBareSpawn());
    }
    if (run.ReturnCode() != 0) {
        std::fprintf(stderr, "bench_runprog: /bin/true returned %u\n", run.ReturnCode());
        return 1;
    }
    const double oursMedian = Median(ours);
    const double bareMedian = Median(bare);
    std::printf("rounds: %d\n", rounds);
    std::printf("runthis soft wait us: %.1f\n", oursMedian);
    std::printf("posix_spawn waitpid us: %.1f\n", bareMedian);
    std::printf("ratio: %.3f\n", oursMedian / bareMedian);
    return 0;
}
