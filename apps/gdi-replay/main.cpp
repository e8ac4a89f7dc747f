// gdi-replay DIR: replays every case of a gdi-reference corpus through the canvas and reports
// how many pictures match exactly, per category, then each mismatching case.

#include "platform/graphics/GdiReplay.h"

#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: gdi-replay DIR\n");
        return 2;
    }
    try {
        const auto results = qv::RunReplay(argv[1]);
        for (const auto& [category, counts] : qv::SummarizeReplay(results))
            std::printf("gdi-reference %s: %d/%d exact\n", category.c_str(), counts.first,
                        counts.second);
        for (const auto& r : results) {
            if (r.mismatches > 0)
                std::printf("mismatch %s: %d pixels\n", r.name.c_str(), r.mismatches);
            else if (r.mismatches < 0)
                std::printf("mismatch %s: failed (%s)\n", r.name.c_str(), r.error.c_str());
        }
    } catch (const std::exception& e) {
        std::fprintf(stderr, "gdi-replay: %s\n", e.what());
        return 1;
    }
    return 0;
}
