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

void RunOp(TCanvas& canvas, const std::vector<std::string>& op) {
    const std::string& name = op[0];
    auto arg = [&](std::size_t i) { return ToInt(op[i]); };
    auto box = [&] { return TRect{arg(1), arg(2), arg(3), arg(4)}; };
    if (name == "pen") {
        Need(op, 4);
        canvas.Pen().SetStyle(PenStyleOf(op[1]));
        canvas.Pen().SetWidth(arg(2));
        canvas.Pen().SetColor(HexColor(op[3]));
    } else if (name == "penmode") {
        Need(op, 2);
        canvas.Pen().SetMode(PenModeOf(op[1]));
    } else if (name == "brush") {
        Need(op, 3);
        canvas.Brush().SetBitmap(nullptr);
        canvas.Brush().SetColor(HexColor(op[2]));
        canvas.Brush().SetStyle(BrushStyleOf(op[1]));
    } else if (name == "brushbitmap") {
        Need(op, 2);
        canvas.Brush().SetBitmap(op[1] == "steel" ? &SteelBitmap() : nullptr);
    } else if (name == "arcdir") {
        Need(op, 2);
        canvas.Handle()->SetArcDirection(op[1] == "cw" ? AD_CLOCKWISE : AD_COUNTERCLOCKWISE);
    } else if (name == "moveto") {
        Need(op, 3);
        canvas.MoveTo(arg(1), arg(2));
    } else if (name == "lineto") {
        Need(op, 3);
        canvas.LineTo(arg(1), arg(2));
    } else if (name == "rectangle") {
        Need(op, 5);
        canvas.Rectangle(box());
    } else if (name == "fillrect") {
        Need(op, 5);
        canvas.FillRect(box());
    } else if (name == "framerect") {
        Need(op, 5);
        canvas.FrameRect(box());
    } else if (name == "focusrect") {
        Need(op, 5);
        canvas.DrawFocusRect(box());
    } else if (name == "ellipse") {
        Need(op, 5);
        canvas.Ellipse(box());
    } else if (name == "arc" || name == "pie" || name == "chord") {
        Need(op, 9);
        auto fn = name == "arc" ? &TCanvas::Arc : (name == "pie" ? &TCanvas::Pie : &TCanvas::Chord);
        (canvas.*fn)(arg(1), arg(2), arg(3), arg(4), arg(5), arg(6), arg(7), arg(8));
    } else if (name == "roundrect") {
        Need(op, 7);
        canvas.RoundRect(arg(1), arg(2), arg(3), arg(4), arg(5), arg(6));
    } else if (name == "polygon" || name == "polygonw") {
        const auto pts = PointsOf(op, 1);
        canvas.Handle()->SetPolyFillMode(name == "polygonw" ? WINDING : ALTERNATE);
        canvas.Polygon(pts);
        canvas.Handle()->SetPolyFillMode(ALTERNATE);
    } else if (name == "polyline") {
        canvas.Polyline(PointsOf(op, 1));
    } else if (name == "pixel") {
        Need(op, 4);
        canvas.SetPixel(arg(1), arg(2), HexColor(op[3]));
    } else {
        throw EConvertError("unknown operation " + name);
    }
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
                cases.back().ops.push_back(std::move(op));
            }
        } catch (const EConvertError& e) {
            throw EConvertError("line " + std::to_string(lineNo) + ": " + e.Message());
        }
    }
    return cases;
}

TPixelBuffer RenderReplayCase(const TReplayCase& c) {
    if (c.isRegion) {
        TPixelBuffer mask(c.width, c.height, 0xFFFFFF);
        for (const auto& op : c.ops) {
            const TRegion region = RegionOf(op);
            for (int y = 0; y < mask.Height(); ++y)
                for (int x = 0; x < mask.Width(); ++x)
                    if (region.Contains(x, y)) mask.At(x, y) = 0;
        }
        return mask;
    }
    TPixelBuffer pixels(c.width, c.height, ColorToPixel(c.background));
    TCanvas canvas(&pixels);
    for (const auto& op : c.ops)
        RunOp(canvas, op);
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
