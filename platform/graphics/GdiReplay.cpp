#include "GdiReplay.h"

#include "Canvas.h"
#include "ImageIO.h"

#include "platform/core/Exceptions.h"

#include <fstream>
#include <memory>
#include <sstream>

namespace qv {

namespace {

int ToInt(const std::string& s) {
    try {
        std::size_t used = 0;
        const int v = std::stoi(s, &used);
        if (used == s.size()) return v;
    } catch (const std::exception&) {
    }
    throw EConvertError("'" + s + "' is not a number");
}

TColor HexColor(const std::string& s) {
    try {
        std::size_t used = 0;
        const unsigned long v = std::stoul(s, &used, 16);
        if (used == s.size() && v <= 0xFFFFFF) return MakeColor(static_cast<std::uint32_t>(v));
    } catch (const std::exception&) {
    }
    throw EConvertError("'" + s + "' is not a colour");
}

TPenStyle PenStyleOf(const std::string& s) {
    static const std::map<std::string, TPenStyle> styles = {{"solid", psSolid},
                                                            {"dash", psDash},
                                                            {"dot", psDot},
                                                            {"dashdot", psDashDot},
                                                            {"dashdotdot", psDashDotDot},
                                                            {"clear", psClear},
                                                            {"insideframe", psInsideFrame}};
    auto it = styles.find(s);
    if (it == styles.end()) throw EConvertError("unknown pen style " + s);
    return it->second;
}

TPenMode PenModeOf(const std::string& s) {
    static const std::map<std::string, TPenMode> modes = {
        {"copy", pmCopy},   {"xor", pmXor},        {"not", pmNot},     {"notxor", pmNotXor},
        {"merge", pmMerge}, {"mask", pmMask},      {"black", pmBlack}, {"white", pmWhite},
        {"nop", pmNop},     {"notcopy", pmNotCopy}};
    auto it = modes.find(s);
    if (it == modes.end()) throw EConvertError("unknown pen mode " + s);
    return it->second;
}

TBrushStyle BrushStyleOf(const std::string& s) {
    static const std::map<std::string, TBrushStyle> styles = {
        {"solid", bsSolid},       {"clear", bsClear},         {"horizontal", bsHorizontal},
        {"vertical", bsVertical}, {"fdiagonal", bsFDiagonal}, {"bdiagonal", bsBDiagonal},
        {"cross", bsCross},       {"diagcross", bsDiagCross}};
    auto it = styles.find(s);
    if (it == styles.end()) throw EConvertError("unknown brush style " + s);
    return it->second;
}

// The 8 x 8 steel texture, made the way the package makes it: silver, white where x and y
// are both odd.
TBitmap& SteelBitmap() {
    static const std::unique_ptr<TBitmap> steel = [] {
        auto b = std::make_unique<TBitmap>(8, 8);
        b->Canvas().Brush().SetColor(MakeColor(0xC0C0C0));
        b->Canvas().FillRect({0, 0, 8, 8});
        for (int x = 1; x < 8; x += 2)
            for (int y = 1; y < 8; y += 2)
                b->Canvas().SetPixel(x, y, clWhite);
        return b;
    }();
    return *steel;
}

void Need(const std::vector<std::string>& op, std::size_t count) {
    if (op.size() < count) throw EConvertError("too few arguments for " + op[0]);
}

std::vector<TPoint> PointsOf(const std::vector<std::string>& op, std::size_t first) {
    Need(op, first + 1);
    const int n = ToInt(op[first]);
    if (n < 0 || op.size() < first + 1 + 2 * static_cast<std::size_t>(n))
        throw EConvertError("bad point count for " + op[0]);
    std::vector<TPoint> pts;
    for (int i = 0; i < n; ++i)
        pts.push_back({ToInt(op[first + 1 + 2 * i]), ToInt(op[first + 2 + 2 * i])});
    return pts;
}

std::uint32_t RopOf(const std::string& s) {
    static const std::map<std::string, std::uint32_t> rops = {
        {"SRCCOPY", SRCCOPY},         {"SRCPAINT", SRCPAINT},   {"SRCAND", SRCAND},
        {"SRCINVERT", SRCINVERT},     {"SRCERASE", SRCERASE},   {"NOTSRCCOPY", NOTSRCCOPY},
        {"NOTSRCERASE", NOTSRCERASE}, {"MERGECOPY", MERGECOPY}, {"MERGEPAINT", MERGEPAINT},
        {"PATCOPY", PATCOPY},         {"PATPAINT", PATPAINT},   {"PATINVERT", PATINVERT},
        {"DSTINVERT", DSTINVERT},     {"BLACKNESS", BLACKNESS}, {"WHITENESS", WHITENESS}};
    if (auto it = rops.find(s); it != rops.end()) return it->second;
    // 0xNN: the raw index, passed as NN shl 16.
    if (s.size() == 4 && s.starts_with("0x"))
        return static_cast<std::uint32_t>(HexColor(s.substr(2))) << 16;
    throw EConvertError("unknown raster operation " + s);
}

int StretchModeOf(const std::string& s) {
    static const std::map<std::string, int> modes = {{"blackonwhite", BLACKONWHITE},
                                                     {"whiteonblack", WHITEONBLACK},
                                                     {"coloroncolor", COLORONCOLOR},
                                                     {"halftone", HALFTONE}};
    auto it = modes.find(s);
    if (it == modes.end()) throw EConvertError("unknown stretch mode " + s);
    return it->second;
}

// The hash of a pixel position that the corpus's source bitmaps are made of.
std::uint32_t SourceHash(std::uint32_t x, std::uint32_t y, std::uint32_t seed) {
    std::uint32_t v = x * 37 + y * 101 + seed;
    v ^= v >> 16;
    v *= 0x7FEB352Du;
    v ^= v >> 15;
    v *= 0x846CA68Bu;
    v ^= v >> 16;
    return v;
}

// `source w h pattern seed`, `source w h twocolor c1 c2 seed` or `source w h mono seed`.
std::unique_ptr<TBitmap> SourceBitmapOf(const std::vector<std::string>& op) {
    const std::string& kind = op[3];
    const bool twoColor = kind == "twocolor";
    if (kind != "pattern" && kind != "mono" && !twoColor)
        throw EConvertError("unknown source kind " + kind);
    Need(op, twoColor ? 7 : 5);
    const auto seed = static_cast<std::uint32_t>(ToInt(op[twoColor ? 6 : 4]));
    std::uint32_t low = 0, high = 0xFFFFFF; // the pixels for bit 24 clear and set
    if (twoColor) {
        low = ColorToPixel(HexColor(op[4]));
        high = ColorToPixel(HexColor(op[5]));
    }
    auto bitmap = std::make_unique<TBitmap>(ToInt(op[1]), ToInt(op[2]));
    for (int y = 0; y < bitmap->Height(); ++y) {
        std::uint32_t* row = bitmap->ScanLine(y);
        for (int x = 0; x < bitmap->Width(); ++x) {
            const std::uint32_t v = SourceHash(x, y, seed);
            row[x] = kind == "pattern" ? v & 0xFFFFFF : ((v >> 24) & 1 ? high : low);
        }
    }
    bitmap->SetMonochrome(kind == "mono");
    return bitmap;
}

// A case being drawn: the canvas and the source bitmap of the blits.
struct TReplayState {
    TCanvas& canvas;
    std::unique_ptr<TBitmap> source;

    HDC SourceHandle() { return source ? source->Canvas().Handle() : nullptr; }
};

using TOpWords = std::vector<std::string>;
// An operation: how many words it needs at least (its name included) and what it does.
struct TOpKind {
    std::size_t words;
    void (*run)(TReplayState& state, const TOpWords& op);
};

int Arg(const TOpWords& op, std::size_t i) {
    return ToInt(op[i]);
}
TRect BoxOf(const TOpWords& op) {
    return {Arg(op, 1), Arg(op, 2), Arg(op, 3), Arg(op, 4)};
}

const std::map<std::string, TOpKind>& CaseOperations() {
    static const std::map<std::string, TOpKind> kinds = {
        {"pen",
         {4,
          [](TReplayState& st, const TOpWords& op) {
              st.canvas.Pen().SetStyle(PenStyleOf(op[1]));
              st.canvas.Pen().SetWidth(Arg(op, 2));
              st.canvas.Pen().SetColor(HexColor(op[3]));
          }}},
        {"penmode",
         {2,
          [](TReplayState& st, const TOpWords& op) { st.canvas.Pen().SetMode(PenModeOf(op[1])); }}},
        {"brush",
         {3,
          [](TReplayState& st, const TOpWords& op) {
              st.canvas.Brush().SetBitmap(nullptr);
              st.canvas.Brush().SetColor(HexColor(op[2]));
              st.canvas.Brush().SetStyle(BrushStyleOf(op[1]));
          }}},
        {"brushbitmap",
         {2,
          [](TReplayState& st, const TOpWords& op) {
              st.canvas.Brush().SetBitmap(op[1] == "steel" ? &SteelBitmap() : nullptr);
          }}},
        {"arcdir",
         {2,
          [](TReplayState& st, const TOpWords& op) {
              st.canvas.Handle()->SetArcDirection(op[1] == "cw" ? AD_CLOCKWISE
                                                                : AD_COUNTERCLOCKWISE);
          }}},
        {"moveto",
         {3,
          [](TReplayState& st, const TOpWords& op) { st.canvas.MoveTo(Arg(op, 1), Arg(op, 2)); }}},
        {"lineto",
         {3,
          [](TReplayState& st, const TOpWords& op) { st.canvas.LineTo(Arg(op, 1), Arg(op, 2)); }}},
        {"rectangle",
         {5, [](TReplayState& st, const TOpWords& op) { st.canvas.Rectangle(BoxOf(op)); }}},
        {"fillrect",
         {5, [](TReplayState& st, const TOpWords& op) { st.canvas.FillRect(BoxOf(op)); }}},
        {"framerect",
         {5, [](TReplayState& st, const TOpWords& op) { st.canvas.FrameRect(BoxOf(op)); }}},
        {"focusrect",
         {5, [](TReplayState& st, const TOpWords& op) { st.canvas.DrawFocusRect(BoxOf(op)); }}},
        {"ellipse",
         {5, [](TReplayState& st, const TOpWords& op) { st.canvas.Ellipse(BoxOf(op)); }}},
        {"arc",
         {9,
          [](TReplayState& st, const TOpWords& op) {
              st.canvas.Arc(Arg(op, 1), Arg(op, 2), Arg(op, 3), Arg(op, 4), Arg(op, 5), Arg(op, 6),
                            Arg(op, 7), Arg(op, 8));
          }}},
        {"pie",
         {9,
          [](TReplayState& st, const TOpWords& op) {
              st.canvas.Pie(Arg(op, 1), Arg(op, 2), Arg(op, 3), Arg(op, 4), Arg(op, 5), Arg(op, 6),
                            Arg(op, 7), Arg(op, 8));
          }}},
        {"chord",
         {9,
          [](TReplayState& st, const TOpWords& op) {
              st.canvas.Chord(Arg(op, 1), Arg(op, 2), Arg(op, 3), Arg(op, 4), Arg(op, 5),
                              Arg(op, 6), Arg(op, 7), Arg(op, 8));
          }}},
        {"roundrect",
         {7,
          [](TReplayState& st, const TOpWords& op) {
              st.canvas.RoundRect(Arg(op, 1), Arg(op, 2), Arg(op, 3), Arg(op, 4), Arg(op, 5),
                                  Arg(op, 6));
          }}},
        {"polygon",
         {2, [](TReplayState& st, const TOpWords& op) { st.canvas.Polygon(PointsOf(op, 1)); }}},
        {"polygonw",
         {2,
          [](TReplayState& st, const TOpWords& op) {
              st.canvas.Handle()->SetPolyFillMode(WINDING);
              st.canvas.Polygon(PointsOf(op, 1));
              st.canvas.Handle()->SetPolyFillMode(ALTERNATE);
          }}},
        {"polyline",
         {2, [](TReplayState& st, const TOpWords& op) { st.canvas.Polyline(PointsOf(op, 1)); }}},
        {"pixel",
         {4,
          [](TReplayState& st, const TOpWords& op) {
              st.canvas.SetPixel(Arg(op, 1), Arg(op, 2), HexColor(op[3]));
          }}},
        {"source",
         {5, [](TReplayState& st, const TOpWords& op) { st.source = SourceBitmapOf(op); }}},
        {"bitblt",
         {8,
          [](TReplayState& st, const TOpWords& op) {
              BitBlt(st.canvas.Handle(), Arg(op, 1), Arg(op, 2), Arg(op, 3), Arg(op, 4),
                     st.SourceHandle(), Arg(op, 5), Arg(op, 6), RopOf(op[7]));
          }}},
        {"stretchblt",
         {10,
          [](TReplayState& st, const TOpWords& op) {
              StretchBlt(st.canvas.Handle(), Arg(op, 1), Arg(op, 2), Arg(op, 3), Arg(op, 4),
                         st.SourceHandle(), Arg(op, 5), Arg(op, 6), Arg(op, 7), Arg(op, 8),
                         RopOf(op[9]));
          }}},
        {"patblt",
         {6,
          [](TReplayState& st, const TOpWords& op) {
              PatBlt(st.canvas.Handle(), Arg(op, 1), Arg(op, 2), Arg(op, 3), Arg(op, 4),
                     RopOf(op[5]));
          }}},
        {"transparentblt",
         {10,
          [](TReplayState& st, const TOpWords& op) {
              TransparentBlt(st.canvas.Handle(), Arg(op, 1), Arg(op, 2), Arg(op, 3), Arg(op, 4),
                             st.SourceHandle(), Arg(op, 5), Arg(op, 6), Arg(op, 7), Arg(op, 8),
                             HexColor(op[9]));
          }}},
        {"stretchmode",
         {2,
          [](TReplayState& st, const TOpWords& op) {
              SetStretchBltMode(st.canvas.Handle(), StretchModeOf(op[1]));
          }}},
        {"cliprect",
         {5,
          [](TReplayState& st, const TOpWords& op) {
              IntersectClipRect(st.canvas.Handle(), Arg(op, 1), Arg(op, 2), Arg(op, 3), Arg(op, 4));
          }}},
        {"textcolor",
         {2, [](TReplayState& st,
                const TOpWords& op) { st.canvas.Font().SetColor(HexColor(op[1])); }}},
        {"bkcolor",
         {2, [](TReplayState& st,
                const TOpWords& op) { SetBkColor(st.canvas.Handle(), HexColor(op[1])); }}},
    };
    return kinds;
}

TRegion RegionOf(const std::vector<std::string>& op) {
    Need(op, 2);
    auto arg = [&](std::size_t i) { return ToInt(op[i]); };
    const std::string& kind = op[1];
    if (kind == "ellipse") {
        Need(op, 6);
        return TRegion::FromEllipse(arg(2), arg(3), arg(4), arg(5));
    }
    if (kind == "rect") {
        Need(op, 6);
        return TRegion::FromRect({arg(2), arg(3), arg(4), arg(5)});
    }
    if (kind == "roundrect") {
        Need(op, 8);
        return TRegion::FromRoundRect(arg(2), arg(3), arg(4), arg(5), arg(6), arg(7));
    }
    if (kind == "polygon") {
        const auto pts = PointsOf(op, 2);
        const std::size_t modeAt = 3 + 2 * pts.size();
        Need(op, modeAt + 1);
        return TRegion::FromPolygon(pts, op[modeAt] == "winding" ? WINDING : ALTERNATE);
    }
    throw EConvertError("unknown region " + kind);
}

// Rejects an operation the case's kind does not know or that has too few words.
void CheckOperation(const TReplayCase& c, const TOpWords& op) {
    if (c.isRegion) {
        if (op[0] != "region") throw EConvertError("unknown region operation " + op[0]);
        return;
    }
    const auto kind = CaseOperations().find(op[0]);
    if (kind == CaseOperations().end()) throw EConvertError("unknown operation " + op[0]);
    Need(op, kind->second.words);
}

} // namespace

std::string ReplayCategory(const std::string& caseName) {
    const auto pos = caseName.rfind('_');
    return pos == std::string::npos ? caseName : caseName.substr(0, pos);
}

std::vector<TReplayCase> ParseReplayCases(const std::string& text) {
    std::vector<TReplayCase> cases;
    std::istringstream in(text);
    std::string line;
    int lineNo = 0;
    bool open = false;
    while (std::getline(in, line)) {
        ++lineNo;
        if (auto hash = line.find('#'); hash != std::string::npos) line.resize(hash);
        std::istringstream words(line);
        std::vector<std::string> op;
        for (std::string w; words >> w;)
            op.push_back(w);
        if (op.empty()) continue;
        try {
            if (op[0] == "case" || op[0] == "rcase") {
                const bool region = op[0] == "rcase";
                Need(op, region ? 4 : 5);
                TReplayCase c;
                c.name = op[1];
                c.width = ToInt(op[2]);
                c.height = ToInt(op[3]);
                c.isRegion = region;
                if (!region) c.background = static_cast<std::uint32_t>(HexColor(op[4]));
                cases.push_back(std::move(c));
                open = true;
            } else if (op[0] == "end") {
                open = false;
            } else if (!open) {
                throw EConvertError("operation outside a case");
            } else {
                CheckOperation(cases.back(), op);
                cases.back().ops.push_back({lineNo, std::move(op)});
            }
        } catch (const EConvertError& e) {
            const std::string where = open ? " (case " + cases.back().name + ")" : "";
            throw EConvertError("line " + std::to_string(lineNo) + where + ": " + e.Message());
        }
    }
    return cases;
}

TPixelBuffer RenderReplayCase(const TReplayCase& c) {
    TPixelBuffer pixels(c.width, c.height, c.isRegion ? 0xFFFFFF : ColorToPixel(c.background));
    TCanvas canvas(&pixels);
    TReplayState state{canvas, nullptr};
    for (const auto& op : c.ops) {
        try {
            if (c.isRegion) {
                const TRegion region = RegionOf(op.words);
                for (int y = 0; y < pixels.Height(); ++y)
                    for (int x = 0; x < pixels.Width(); ++x)
                        if (region.Contains(x, y)) pixels.At(x, y) = 0;
            } else {
                CaseOperations().at(op.words[0]).run(state, op.words);
            }
        } catch (const EConvertError& e) {
            throw EConvertError("line " + std::to_string(op.line) + " (case " + c.name +
                                "): " + e.Message());
        }
    }
    return pixels;
}

TPixelBuffer DiffImage(const TPixelBuffer& actual, const TPixelBuffer& expected) {
    const int w = std::max(actual.Width(), expected.Width());
    const int h = std::max(actual.Height(), expected.Height());
    TPixelBuffer diff(w, h, 0xFF0000);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            if (!actual.Contains(x, y) || !expected.Contains(x, y)) continue;
            const std::uint32_t a = actual.At(x, y) & 0xFFFFFF;
            if (a != (expected.At(x, y) & 0xFFFFFF)) continue;
            // Equal pixels: the picture faded towards white.
            const std::uint32_t faded = ((a >> 2) & 0x3F3F3F) + 0xC0C0C0;
            diff.At(x, y) = faded;
        }
    return diff;
}

std::vector<TReplayResult>
RunReplay(const std::string& dir,
          const std::function<void(const TReplayCase&, const TPixelBuffer&, const TPixelBuffer&)>&
              onMismatch) {
    const auto bytes = ReadFileBytes(dir + "/cases.txt");
    const auto cases = ParseReplayCases(std::string(bytes.begin(), bytes.end()));
    std::vector<TReplayResult> results;
    for (const auto& c : cases) {
        TReplayResult r{c.name, ReplayCategory(c.name), 0, {}};
        try {
            const std::string png = dir + "/" + c.name + ".png";
            const TPixelBuffer expected = DecodePng(ReadFileBytes(png), png).pixels;
            const TPixelBuffer actual = RenderReplayCase(c);
            if (actual.Width() != expected.Width() || actual.Height() != expected.Height()) {
                r.mismatches = std::max(1, expected.Width() * expected.Height());
            } else {
                for (int y = 0; y < actual.Height(); ++y)
                    for (int x = 0; x < actual.Width(); ++x)
                        if ((actual.At(x, y) ^ expected.At(x, y)) & 0xFFFFFF) ++r.mismatches;
            }
            if (r.mismatches && onMismatch) onMismatch(c, actual, expected);
        } catch (const std::exception& e) {
            r.mismatches = -1;
            r.error = e.what();
        }
        results.push_back(std::move(r));
    }
    return results;
}

std::map<std::string, std::pair<int, int>>
SummarizeReplay(const std::vector<TReplayResult>& results) {
    std::map<std::string, std::pair<int, int>> summary;
    for (const auto& r : results) {
        auto& [exact, total] = summary[r.category];
        ++total;
        if (r.mismatches == 0) ++exact;
    }
    return summary;
}

} // namespace qv
