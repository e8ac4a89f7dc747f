#include "CustomListBox.h"

#include "platform/core/ClassBuilder.h"

#include <algorithm>
#include <cctype>

namespace qv {

namespace {
constexpr int WheelDelta = 120;
constexpr int WheelScrollLines = 3;
} // namespace

const TClassInfo& TCustomListBox::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TCustomListBox>("TCustomListBox", &TWinControl::StaticClassInfo()).Build();
    return info;
}

TCustomListBox::TCustomListBox(TComponent* AOwner)
    : TWinControl(AOwner), m_items(std::make_unique<TStringList>()) {
    SetControlStyle({csSetCaption, csDoubleClicks});
    SetBounds(Left(), Top(), 121, 97);
    SetTabStop(true);
    SetColor(clWindow);
    m_items->OnChange = [this](TObject*) { ItemsChanged(); };
}

TCustomListBox::~TCustomListBox() {
    m_items->OnChange = nullptr;
}

// Properties.

int TCustomListBox::ItemHeight() const {
    return m_style == lbStandard ? TextLineHeight(*Font()) : m_itemHeight;
}

void TCustomListBox::SetItemHeight(int v) {
    if (v <= 0 || v == m_itemHeight) return;
    m_itemHeight = v;
    SetTopIndex(m_topIndex);
    Invalidate();
}

void TCustomListBox::SetStyle(TListBoxStyle v) {
    if (v == m_style) return;
    m_style = v;
    SetTopIndex(m_topIndex);
    Invalidate();
}

void TCustomListBox::SetBorderStyle(TBorderStyle v) {
    if (v == m_borderStyle) return;
    m_borderStyle = v;
    Invalidate();
}

void TCustomListBox::SetItemIndex(int v) {
    if (v < -1 || v >= m_items->Count()) v = -1;
    if (v != m_itemIndex) {
        m_itemIndex = v;
        Invalidate();
    }
    if (v >= 0) ScrollIntoView(v);
}

void TCustomListBox::SetTopIndex(int v) {
    const int last = std::max(m_items->Count() - VisibleRowCount(), 0);
    v = std::clamp(v, 0, last);
    if (v == m_topIndex) return;
    m_topIndex = v;
    Invalidate();
}

void TCustomListBox::ItemsChanged() {
    if (m_itemIndex >= m_items->Count()) m_itemIndex = -1;
    SetTopIndex(m_topIndex);
    Invalidate();
}

void TCustomListBox::CMFontChanged(TMessage& Message) {
    TWinControl::CMFontChanged(Message);
    SetTopIndex(m_topIndex);
}

// Geometry.

namespace {
TRect InsideEdge(const TRect& client, TBorderStyle border) {
    TRect area = client;
    if (border == bsSingle) InflateRect(area, -ClientEdgeWidth, -ClientEdgeWidth);
    return area;
}
} // namespace

TRect TCustomListBox::ItemsArea() const {
    TRect area = InsideEdge(ClientRect(), m_borderStyle);
    if (HasScrollBar()) area.right = std::max(area.right - ScrollBarSize, area.left);
    return area;
}

int TCustomListBox::VisibleRowCount() const {
    return std::max(InsideEdge(ClientRect(), m_borderStyle).Height() / ItemHeight(), 1);
}

bool TCustomListBox::HasScrollBar() const {
    return m_items->Count() > VisibleRowCount();
}

TVScrollBar TCustomListBox::ScrollBar() const {
    const TRect inside = InsideEdge(ClientRect(), m_borderStyle);
    return TVScrollBar({inside.right - ScrollBarSize, inside.top, inside.right, inside.bottom},
                       m_items->Count(), VisibleRowCount(), m_topIndex);
}

// Presses on the bar scroll; a press beside the items but not on a part does nothing.
bool TCustomListBox::ScrollBarPressed(TPoint p) {
    if (!HasScrollBar() || p.x < ItemsArea().right) return false;
    const TVScrollBar bar = ScrollBar();
    m_barPart = bar.PartAt(p);
    switch (m_barPart) {
    case TVScrollBar::TPart::None:
        return true;
    case TVScrollBar::TPart::LineUp:
        SetTopIndex(m_topIndex - 1);
        break;
    case TVScrollBar::TPart::LineDown:
        SetTopIndex(m_topIndex + 1);
        break;
    case TVScrollBar::TPart::PageUp:
        SetTopIndex(m_topIndex - VisibleRowCount());
        break;
    case TVScrollBar::TPart::PageDown:
        SetTopIndex(m_topIndex + VisibleRowCount());
        break;
    case TVScrollBar::TPart::Thumb:
        m_thumbGrip = p.y - bar.Thumb().top;
        break;
    }
    SetMouseCapture(true);
    Invalidate();
    return true;
}

TRect TCustomListBox::ItemRect(int index) const {
    const TRect area = ItemsArea();
    const int top = area.top + (index - m_topIndex) * ItemHeight();
    return {area.left, top, area.right, top + ItemHeight()};
}

int TCustomListBox::ItemAtPos(TPoint pos, bool existing) const {
    const TRect area = ItemsArea();
    if (!area.Contains(pos)) return -1;
    const int index = m_topIndex + (pos.y - area.top) / ItemHeight();
    const int limit = existing ? m_items->Count() : m_items->Count() + 1;
    return index < limit ? index : -1;
}

void TCustomListBox::ScrollIntoView(int index) {
    if (index < m_topIndex)
        SetTopIndex(index);
    else if (index >= m_topIndex + VisibleRowCount())
        SetTopIndex(index - VisibleRowCount() + 1);
}

// User selection.

void TCustomListBox::SelectByUser(int index, bool notify) {
    if (m_items->Count() == 0) return;
    index = std::clamp(index, 0, m_items->Count() - 1);
    const bool changed = index != m_itemIndex;
    SetItemIndex(index);
    if (changed && notify) Click();
}

// Keyboard.

void TCustomListBox::WMGetDlgCode(TMessage& Message) {
    Message.Result = DLGC_WANTARROWS | DLGC_WANTCHARS;
}

std::optional<int> TCustomListBox::TargetOfKey(unsigned key) const {
    const int current = std::max(m_itemIndex, 0);
    const int page = std::max(VisibleRowCount() - 1, 1);
    switch (key) {
    case VK_UP:
        return m_itemIndex < 0 ? 0 : current - 1;
    case VK_DOWN:
        return m_itemIndex < 0 ? 0 : current + 1;
    case VK_PRIOR:
        return current - page;
    case VK_NEXT:
        return current + page;
    case VK_HOME:
        return 0;
    case VK_END:
        return m_items->Count() - 1;
    default:
        return std::nullopt;
    }
}

void TCustomListBox::KeyDown(unsigned& Key, TShiftState Shift) {
    TWinControl::KeyDown(Key, Shift);
    const std::optional<int> target = TargetOfKey(Key);
    if (!target) return;
    SelectByUser(*target, true);
    Key = 0;
}

void TCustomListBox::KeyPress(char& Key) {
    TWinControl::KeyPress(Key);
    const auto ch = static_cast<unsigned char>(Key);
    const int count = m_items->Count();
    if (ch < 0x20 || count == 0) return;
    for (int step = 1; step <= count; ++step) {
        const int index = (std::max(m_itemIndex, -1) + step) % count;
        const std::string item = m_items->Get(index);
        if (!item.empty() &&
            std::toupper(static_cast<unsigned char>(item[0])) == std::toupper(ch)) {
            SelectByUser(index, true);
            return;
        }
    }
}

// Mouse.

void TCustomListBox::MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    if (Button == mbLeft && !Focused() && CanFocus()) SetFocus();
    if (Button == mbLeft && !ScrollBarPressed({X, Y})) {
        SetMouseCapture(true);
        m_tracking = true;
        const int index = ItemAtPos({X, Y}, true);
        if (index >= 0) SetItemIndex(index);
    }
    TWinControl::MouseDown(Button, Shift, X, Y);
}

// While the button is down the selection follows the pointer, scrolling at the edges.
void TCustomListBox::MouseMove(TShiftState Shift, int X, int Y) {
    if (m_barPart == TVScrollBar::TPart::Thumb)
        SetTopIndex(ScrollBar().PositionForThumbTop(Y - m_thumbGrip));
    if (m_tracking && m_items->Count() > 0) {
        const TRect area = ItemsArea();
        const int row = Y < area.top ? -1 : (Y - area.top) / ItemHeight();
        SelectByUser(m_topIndex + std::min(row, VisibleRowCount()), false);
    }
    TWinControl::MouseMove(Shift, X, Y);
}

void TCustomListBox::MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    if (Button == mbLeft && m_barPart != TVScrollBar::TPart::None) {
        m_barPart = TVScrollBar::TPart::None;
        SetMouseCapture(false);
        Invalidate();
    }
    const bool clicked = Button == mbLeft && m_tracking;
    if (clicked) {
        m_tracking = false;
        SetMouseCapture(false);
    }
    if (clicked && m_items->Count() > 0) Click();
    TWinControl::MouseUp(Button, Shift, X, Y);
}

void TCustomListBox::MouseWheel(int delta) {
    SetTopIndex(m_topIndex - delta / WheelDelta * WheelScrollLines);
}

void TCustomListBox::WndProc(TMessage& Message) {
    if (Message.Msg == WM_MOUSEWHEEL) {
        MouseWheel(static_cast<std::int16_t>((Message.WParam >> 16) & 0xFFFF));
        Message.Result = 1;
        return;
    }
    TWinControl::WndProc(Message);
}

// Focus.

void TCustomListBox::WMSetFocus(TMessage& Message) {
    TWinControl::WMSetFocus(Message);
    Invalidate();
}

void TCustomListBox::WMKillFocus(TMessage& Message) {
    TWinControl::WMKillFocus(Message);
    m_tracking = false;
    Invalidate();
}

// Painting.

void TCustomListBox::DrawItem(int Index, TRect Rect, TOwnerDrawState State) {
    if (OnDrawItem)
        OnDrawItem(this, Index, Rect, State);
    else
        DrawItemText(Canvas(), Rect,
                     Index < m_items->Count() ? m_items->Get(Index) : std::string());
}

void TCustomListBox::PaintItem(TCanvas& canvas, int index, const TRect& rect) {
    TOwnerDrawState state;
    if (index == m_itemIndex) state.Include(odSelected);
    if (Focused() && index == std::max(m_itemIndex, 0)) state.Include(odFocused);
    if (!Enabled()) state.Include(odDisabled);
    if (m_style != lbStandard) {
        PaintListItem(canvas, *Font(), Color(), index < m_items->Count() ? index : -1, rect, state,
                      [&] { DrawItem(index, rect, state); });
        return;
    }
    PaintListItem(canvas, *Font(), Color(), index < m_items->Count() ? index : -1, rect, state,
                  [&] {
                      if (!Enabled()) canvas.Font().SetColor(clGrayText);
                      canvas.TextRect(rect, rect.left + 1, rect.top, m_items->Get(index));
                  });
}

// Rows first, then the edge over whatever a partly visible last row left under it.
void TCustomListBox::WMPaint(TMessage&) {
    TCanvas& canvas = Canvas();
    canvas.Brush().SetStyle(bsSolid);
    canvas.Brush().SetColor(Color());
    canvas.FillRect(ClientRect());
    const TRect area = ItemsArea();
    const int last = std::max(m_items->Count(), 1);
    for (int index = m_topIndex; index < last; ++index) {
        const TRect rect = ItemRect(index);
        if (rect.top >= area.bottom) break;
        PaintItem(canvas, index, rect);
    }
    if (HasScrollBar()) {
        const bool thumb = m_barPart == TVScrollBar::TPart::Thumb;
        ScrollBar().Paint(canvas, thumb ? TVScrollBar::TPart::None : m_barPart);
    }
    if (m_borderStyle == bsSingle) {
        TRect edge = ClientRect();
        DrawClientEdge(canvas, edge);
    }
}

} // namespace qv
