#pragma once
// Types and painting helpers shared by the standard controls: the border style of a
// windowed control, the vertical text layout, owner-draw item states and events, the
// sunken client edge and the classic way of painting one list item.

#include "Form.h"

#include "platform/core/Set.h"
#include "platform/graphics/Canvas.h"

#include <functional>
#include <string>

namespace qv {

// Controls use the first two form border styles: bsNone and bsSingle.
using TBorderStyle = TFormBorderStyle;
const TTypeInfo& BorderStyleType();

enum TTextLayout { tlTop, tlCenter, tlBottom };
QV_ENUM_TYPE(TTextLayout, "tlTop", "tlCenter", "tlBottom")

enum TOwnerDrawStateFlag {
    odSelected,
    odGrayed,
    odDisabled,
    odChecked,
    odFocused,
    odDefault,
    odHotLight,
    odInactive,
    odNoAccel,
    odNoFocusRect,
    odReserved1,
    odReserved2,
    odComboBoxEdit
};
using TOwnerDrawState = TSet<TOwnerDrawStateFlag>;
QV_ENUM_TYPE(TOwnerDrawStateFlag, "odSelected", "odGrayed", "odDisabled", "odChecked", "odFocused",
             "odDefault", "odHotLight", "odInactive", "odNoAccel", "odNoFocusRect", "odReserved1",
             "odReserved2", "odComboBoxEdit")
QV_SET_TYPE(TOwnerDrawState, TOwnerDrawStateFlag)

// Draws one item of an owner-drawn list or combo box on the control's canvas.
using TDrawItemEvent =
    std::function<void(TWinControl* Control, int Index, TRect Rect, TOwnerDrawState State)>;
QV_EVENT_TYPE(TDrawItemEvent)

// The sunken edge around edits, list and combo boxes and single-border panels.
constexpr int ClientEdgeWidth = 2;
// Draws the sunken edge on the border of `rect` and shrinks it by ClientEdgeWidth.
void DrawClientEdge(TCanvas& canvas, TRect& rect);

// The DrawText flag for a horizontal alignment.
unsigned AlignmentFlags(TAlignment alignment);

// The extent of `text` in `font`, measured outside painting.
TSize TextExtentOf(const TFont& font, const std::string& text);
// The height of a line of text in `font`.
inline int TextLineHeight(const TFont& font) {
    return TextExtentOf(font, "W").cy;
}

// Paints one list item as the classic owner-draw path does: the canvas gets the control's
// font and colour (the highlight colours for a selected item), then `drawItem` paints the
// item (only for index >= 0; otherwise the rectangle is filled), and a focused item gets a
// focus rectangle.
void PaintListItem(TCanvas& canvas, const TFont& font, TColor color, int index, const TRect& rect,
                   TOwnerDrawState state, const std::function<void()>& drawItem);
// The default item picture: the background filled and the text, single line, vertically
// centred, two pixels from the left.
void DrawItemText(TCanvas& canvas, const TRect& rect, const std::string& text);

} // namespace qv
