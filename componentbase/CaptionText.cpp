#include "componentbase/CaptionText.h"

namespace qv {

unsigned CaptionTextFlags(qbHorzAlign vertical, TAlignment horizontal, bool multipleLines,
                          bool wordWrap) {
    static constexpr unsigned kVertical[] = {DT_VCENTER, DT_TOP, DT_BOTTOM};
    static constexpr unsigned kHorizontal[] = {DT_LEFT, DT_RIGHT, DT_CENTER};
    unsigned flags = kVertical[vertical] | kHorizontal[horizontal];
    if (!multipleLines) flags |= DT_SINGLELINE;
    if (wordWrap) flags |= DT_WORDBREAK;
    return flags;
}

void DrawCaptionText(TCanvas& canvas, const std::string& caption, const TRect& rect, unsigned flags,
                     bool enabled) {
    TRect r = rect;
    if (enabled) {
        canvas.DrawText(caption, r, flags);
        return;
    }
    TRect embossed = rect;
    OffsetRect(embossed, 1, 1);
    canvas.Font().SetColor(TColor(0xFFFFFF));
    canvas.DrawText(caption, embossed, flags);
    canvas.Font().SetColor(TColor(0x808080));
    canvas.DrawText(caption, r, flags);
}

} // namespace qv
