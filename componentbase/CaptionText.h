#pragma once
// The caption of the package's buttons and switches: its vertical placement (qbHorzAlign),
// the DrawText flags its settings give, and the caption drawn enabled (once, in the canvas
// font's colour) or disabled (embossed: white one pixel down-right, then grey in place).

#include "platform/controls/Control.h"
#include "platform/graphics/Canvas.h"

#include <string>

namespace qv {

// The caption's vertical placement (named horizontal for historical reasons).
enum qbHorzAlign { qbha_Center, qbha_Top, qbha_Bottom };
QV_ENUM_TYPE(qbHorzAlign, "qbha_Center", "qbha_Top", "qbha_Bottom")

// qbha_Center gives DT_VCENTER, qbha_Top DT_TOP, qbha_Bottom DT_BOTTOM; DT_SINGLELINE unless
// `multipleLines`; DT_WORDBREAK with `wordWrap`; taRightJustify DT_RIGHT, taCenter DT_CENTER.
unsigned CaptionTextFlags(qbHorzAlign vertical, TAlignment horizontal, bool multipleLines,
                          bool wordWrap);

// Draws `caption` into `rect` with the canvas's font and brush. Disabled: white $FFFFFF at
// (+1, +1), then grey $808080 in place; the font colour is left grey.
void DrawCaptionText(TCanvas& canvas, const std::string& caption, const TRect& rect, unsigned flags,
                     bool enabled);

} // namespace qv
