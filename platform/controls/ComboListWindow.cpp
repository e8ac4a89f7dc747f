#include "ComboListWindow.h"

#include "Application.h"
#include "CustomComboBox.h"

#include <algorithm>

namespace qv {

namespace {
constexpr int WheelDelta = 120;
constexpr int WheelScrollLines = 3;
} // namespace

TComboListWindow::TComboListWindow(TCustomComboBox& combo, int rowHeight, int rowCount)
    : TCustomForm(nullptr), m_combo(combo), m_rowHeight(rowHeight), m_rows(std::max(rowCount, 1)) {
    SetBorderStyle(bsNone);
    SetColor(combo.Color());
    PlaceUnder(combo);
}

void TComboListWindow::PlaceUnder(const TCustomComboBox& combo) {
    const int height = m_rows * m_rowHeight + 2;
    const TPoint below = combo.ClientToScreen({0, combo.Height()});
    const TRect work = Application().Backend().WorkArea();
    const int top = below.y + height > work.bottom ? below.y - combo.Height() - height : below.y;
    SetBounds(below.x, top, combo.Width(), height);
}

int TComboListWindow::ItemCount() const {
    return m_combo.Items()->Count();
}

void TComboListWindow::SetTopIndex(int index) {
    index = std::clamp(index, 0, std::max(ItemCount() - m_rows, 0));
    if (index == m_top) return;
    m_top = index;
    Invalidate();
}

void TComboListWindow::SetHotIndex(int index) {
    if (ItemCount() == 0) return;
    index = std::clamp(index, 0, ItemCount() - 1);
    if (index < m_top)
        SetTopIndex(index);
    else if (index >= m_top + m_rows)
        SetTopIndex(index - m_rows + 1);
    if (index == m_hot) return;
    m_hot = index;
    Invalidate();
}

int TComboListWindow::RowsWidth() const {
    return Width() - 2 - (HasScrollBar() ? ScrollBarSize : 0);
}

TVScrollBar TComboListWindow::ScrollBar() const {
    return TVScrollBar({Width() - 1 - ScrollBarSize, 1, Width() - 1, Height() - 1}, ItemCount(),
                       m_rows, m_top);
}

int TComboListWindow::RowAt(TPoint pos) const {
    if (pos.x < 1 || pos.x >= 1 + RowsWidth() || pos.y < 1) return -1;
    const int index = m_top + (pos.y - 1) / m_rowHeight;
    return (pos.y - 1) / m_rowHeight < m_rows && index < ItemCount() ? index : -1;
}

// The rows are painted by the combo box on its own canvas, pointed at an off-screen
// picture of the rows, so that owner drawing sees the combo box's canvas.
void TComboListWindow::Paint() {
    TCanvas& canvas = Canvas();
    canvas.Brush().SetColor(clWindowFrame);
    canvas.FrameRect(ClientRect());
    const int width = RowsWidth();
    TBitmap rows(width, m_rows * m_rowHeight);
    TCanvas& comboCanvas = m_combo.Canvas();
    comboCanvas.SetTarget(&rows.Pixels());
    for (int row = 0; row < m_rows; ++row) {
        const int index = m_top + row < ItemCount() ? m_top + row : -1;
        TOwnerDrawState state;
        if (index >= 0 && index == m_hot) state = {odSelected, odFocused};
        m_combo.PaintItem(comboCanvas, index,
                          {0, row * m_rowHeight, width, (row + 1) * m_rowHeight}, state);
    }
    comboCanvas.SetTarget(nullptr);
    canvas.Draw(1, 1, rows);
    if (HasScrollBar()) {
        const bool thumb = m_barPart == TVScrollBar::TPart::Thumb;
        ScrollBar().Paint(canvas, thumb ? TVScrollBar::TPart::None : m_barPart);
    }
}

void TComboListWindow::WndProc(TMessage& Message) {
    if (Message.Msg == WM_MOUSEWHEEL) {
        const int delta = static_cast<std::int16_t>((Message.WParam >> 16) & 0xFFFF);
        SetTopIndex(m_top - delta / WheelDelta * WheelScrollLines);
        Message.Result = 1;
        return;
    }
    TCustomForm::WndProc(Message);
}

// A press in another window closes the list; a press in the list itself does not.
void TComboListWindow::CMCancelMode(TMessage& Message) {
    if (Message.LParam == reinterpret_cast<LPARAM>(this)) return;
    const TControl* pressed = Application().FindControlAtScreen(Application().CursorPos(), true);
    m_combo.ListCancelled(pressed == &m_combo);
}

void TComboListWindow::WMMouseMove(TMessage& Message) {
    const int row = RowAt({GET_X_LPARAM(Message.LParam), GET_Y_LPARAM(Message.LParam)});
    if (row >= 0 && m_barPart == TVScrollBar::TPart::None) SetHotIndex(row);
    TCustomForm::WMMouseMove(Message);
}

void TComboListWindow::WMLButtonUp(TMessage& Message) {
    const bool onBar = m_barPart != TVScrollBar::TPart::None;
    TCustomForm::WMLButtonUp(Message);
    if (onBar) return;
    const int row = RowAt({GET_X_LPARAM(Message.LParam), GET_Y_LPARAM(Message.LParam)});
    if (row < 0) return;
    SetHotIndex(row);
    m_combo.CloseList(true);
}

// The scroll bar: arrows scroll a row, the track a page, the thumb follows the pointer.
void TComboListWindow::MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    if (Button == mbLeft && HasScrollBar()) {
        const TVScrollBar bar = ScrollBar();
        m_barPart = bar.PartAt({X, Y});
        switch (m_barPart) {
        case TVScrollBar::TPart::None:
            break;
        case TVScrollBar::TPart::LineUp:
            SetTopIndex(m_top - 1);
            break;
        case TVScrollBar::TPart::LineDown:
            SetTopIndex(m_top + 1);
            break;
        case TVScrollBar::TPart::PageUp:
            SetTopIndex(m_top - m_rows);
            break;
        case TVScrollBar::TPart::PageDown:
            SetTopIndex(m_top + m_rows);
            break;
        case TVScrollBar::TPart::Thumb:
            m_thumbGrip = Y - bar.Thumb().top;
            break;
        }
        Invalidate();
    }
    TCustomForm::MouseDown(Button, Shift, X, Y);
}

void TComboListWindow::MouseMove(TShiftState Shift, int X, int Y) {
    if (m_barPart == TVScrollBar::TPart::Thumb)
        SetTopIndex(ScrollBar().PositionForThumbTop(Y - m_thumbGrip));
    TCustomForm::MouseMove(Shift, X, Y);
}

void TComboListWindow::MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    if (Button == mbLeft && m_barPart != TVScrollBar::TPart::None) {
        m_barPart = TVScrollBar::TPart::None;
        Invalidate();
    }
    TCustomForm::MouseUp(Button, Shift, X, Y);
}

} // namespace qv
