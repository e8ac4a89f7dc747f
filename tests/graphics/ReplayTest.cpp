// The reference corpus replayed through TCanvas: line and rect pictures must match pixel for
// pixel, every other category in at least 95% of its cases, and no case may fail to run.

#include "platform/graphics/GdiReplay.h"
#include "platform/graphics/ImageIO.h"
#include "support/PixelEvidence.h"

#include "platform/core/Exceptions.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace qv;

namespace {

const std::string CorpusDir = std::string(QV_TEST_DATA) + "/gdi-reference";
const std::string OutDir = std::string(QV_TEST_OUT) + "/gdi-reference";

} // namespace

TEST(GdiReference, CorpusMatchesPixelForPixel) {
    std::vector<std::string> evidence;
    const auto results = RunReplay(
        CorpusDir, [&](const TReplayCase& c, const TPixelBuffer& a, const TPixelBuffer& e) {
            evidence.push_back(test::WritePixelEvidence(OutDir, c.name, a, e));
        });
    ASSERT_EQ(results.size(), 1200u);
    for (const auto& r : results) {
        EXPECT_GE(r.mismatches, 0) << r.name << " failed: " << r.error;
        if (r.category == "line" || r.category == "rect") {
            EXPECT_EQ(r.mismatches, 0) << r.name << " differs in " << r.mismatches << " pixels";
        }
    }
    for (const auto& [category, counts] : SummarizeReplay(results)) {
        const auto [exact, total] = counts;
        EXPECT_GE(exact * 100, total * 95) << category << ": " << exact << "/" << total << " exact";
    }
    for (const auto& file : evidence)
        ADD_FAILURE() << "pictures written: " << file;
}

TEST(GdiReference, ParserNamesTheBadLine) {
    try {
        ParseReplayCases("case a 4 4 FFFFFF\nlineto 1\nend\n");
        RenderReplayCase(ParseReplayCases("case a 4 4 FFFFFF\nlineto 1\nend\n").front());
        FAIL() << "a short operation must be rejected";
    } catch (const EConvertError& e) {
        EXPECT_NE(std::string(e.what()).find("lineto"), std::string::npos);
    }
    EXPECT_THROW(ParseReplayCases("lineto 1 2\n"), EConvertError);
    EXPECT_EQ(ReplayCategory("scene_0042"), "scene");
}
