#pragma once
// Replays a corpus of drawing cases (the gdi-reference format: `case NAME W H BG`, canvas
// operations, `end`; `rcase` for region masks) through TCanvas and compares each picture
// pixel for pixel with the expected PNG next to the case file.

#include "PixelBuffer.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace qv {

// One operation of a case: its words and the line of the case file it stands on.
struct TReplayOp {
    int line{0};
    std::vector<std::string> words;
};

struct TReplayCase {
    std::string name;
    int width{0};
    int height{0};
    std::uint32_t background{0}; // TColor $BBGGRR
    bool isRegion{false};
    std::vector<TReplayOp> ops;
};

struct TReplayResult {
    std::string name;
    std::string category; // the name without its trailing _NNNN
    int mismatches{0};    // pixels that differ; -1 when the case failed to run
    std::string error;
};

// Parses a case file; EConvertError names the line (and the case) of a malformed entry or
// of an operation the replay does not know.
std::vector<TReplayCase> ParseReplayCases(const std::string& text);
// Draws one case; EConvertError names the line and the case of an operation that fails.
TPixelBuffer RenderReplayCase(const TReplayCase& c);
// The category of a case name: "line_0001" -> "line".
std::string ReplayCategory(const std::string& caseName);

// Runs every case of `dir`/cases.txt against `dir`/<case>.png. `onMismatch` (optional) gets
// the actual and expected pictures of each differing case.
std::vector<TReplayResult>
RunReplay(const std::string& dir,
          const std::function<void(const TReplayCase&, const TPixelBuffer& actual,
                                   const TPixelBuffer& expected)>& onMismatch = {});

// Per category: {exact, total}, categories in name order.
std::map<std::string, std::pair<int, int>>
SummarizeReplay(const std::vector<TReplayResult>& results);

// Writes a picture that marks differing pixels red and equal pixels as a faded copy.
TPixelBuffer DiffImage(const TPixelBuffer& actual, const TPixelBuffer& expected);

} // namespace qv
