#include "CustomComboBox.h"

#include "Application.h"
#include "ComboEdit.h"
#include "ComboListWindow.h"
#include "ScrollBar.h"

#include "platform/core/ClassBuilder.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace qv {

namespace {
constexpr unsigned VkF4 = VK_F1 + 3;
} // namespace

const TClassInfo& TCustomComboBox::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TCustomComboBox>("TCustomComboBox", &TWinControl::StaticClassInfo()).Build();
    return info;
}

TCustomComboBox::TCustomComboBox(TComponent* AOwner)
    : TWinControl(AOwner), m_items(std::make_unique<TStringList>()) {
    SetControlStyle({csCaptureMouse, csSetCaption, csDoubleClicks, csFixedHeight});
    SetTabStop(true);
    SetColor(clWindow);
    SetBounds(Left(), Top(), 145, 0);
    m_items->OnChange = [this](TObject*) { ItemsChanged(); };
    UpdateEditField();
}

TCustomComboBox::~TCustomComboBox() {
    m_items->OnChange = nullptr;
    CloseList(false);
    if (m_edit) RemoveEditField(false);
}

// Properties.

int TCustomComboBox::ItemHeight() const {
    return OwnerDrawn() ? m_itemHeight : TextLineHeight(*Font());
}

void TCustomComboBox::SetItemHeight(int v) {
    if (v <= 0 || v == m_itemHeight) return;
    m_itemHeight = v;
    SetHeight(0);
    Invalidate();
}

void TCustomComboBox::SetStyle(TComboBoxStyle v) {
    if (v == m_style) return;
    m_style = v;
    SetHeight(0);
    UpdateEditField();
    Invalidate();
}

TCustomEdit* TCustomComboBox::EditField() const {
    return m_edit;
}

// The focus moves with the field: into a new edit, back to the box from a removed one.
void TCustomComboBox::UpdateEditField() {
    if (Editable() && !m_edit) {
        m_edit = new TComboEdit(*this);
        m_edit->SetParent(this);
        m_edit->SetBoundsRect(FieldRect());
        PushTextToEdit();
        if (Focused() && m_edit->CanFocus()) m_edit->SetFocus();
    } else if (!Editable() && m_edit) {
        RemoveEditField(true);
    }
    if (m_edit) m_edit->SetBoundsRect(FieldRect());
}

// The focus leaves the edit and the edit leaves its parent (focus and tab lists) while both
// are whole; only then is it freed.
void TCustomComboBox::RemoveEditField(bool refocus) {
    TComboEdit* edit = std::exchange(m_edit, nullptr);
    if (edit->Focused()) {
        if (refocus && CanFocus())
            SetFocus();
        else if (TCustomForm* form = ParentForm())
            form->SetFocusedControl(nullptr);
    }
    edit->SetParent(nullptr);
    delete edit;
}

void TCustomComboBox::Resize() {
    TWinControl::Resize();
    if (m_edit) m_edit->SetBoundsRect(FieldRect());
}

void TCustomComboBox::PushTextToEdit() {
    if (!m_edit || m_edit->Text() == Text()) return;
    m_syncingText = true;
    m_edit->SetText(Text());
    if (m_edit->Focused()) m_edit->SelectAll();
    m_syncingText = false;
}

void TCustomComboBox::EditChanged() {
    if (m_syncingText) return;
    m_syncingText = true;
    SetText(m_edit->Text());
    m_syncingText = false;
    m_itemIndex = m_items->IndexOf(Text());
    Change();
}

void TCustomComboBox::EditKeyDown(unsigned& Key, TShiftState Shift) {
    const bool listKey = m_list || Key == VK_UP || Key == VK_DOWN || Key == VK_PRIOR ||
                         Key == VK_NEXT || Key == VkF4;
    if (listKey && (m_list ? HandleListKey(Key, Shift) : HandleClosedKey(Key, Shift))) Key = 0;
}

void TCustomComboBox::SetDropDownCount(int v) {
    m_dropDownCount = std::max(v, 1);
}

// The field shows one row and a line above and below it; the height follows from that.
int TCustomComboBox::FieldHeight() const {
    return OwnerDrawn() ? ItemHeight() : ItemHeight() + 2;
}

void TCustomComboBox::SetBounds(int ALeft, int ATop, int AWidth, int) {
    TWinControl::SetBounds(ALeft, ATop, AWidth, FieldHeight() + 2 * ClientEdgeWidth + 2);
}

void TCustomComboBox::SetItemIndex(int v) {
    if (v < -1 || v >= m_items->Count()) v = -1;
    if (v == m_itemIndex) return;
    m_itemIndex = v;
    SyncText();
    Invalidate();
}

void TCustomComboBox::SyncText() {
    m_syncingText = true;
    SetText(m_itemIndex >= 0 ? m_items->Get(m_itemIndex) : std::string());
    m_syncingText = false;
    PushTextToEdit();
}

// Setting Text selects the item with that text. A form file holds the text before the
// items: the text waits for Loaded.
void TCustomComboBox::CMTextChanged(TMessage& Message) {
    TWinControl::CMTextChanged(Message);
    if (m_syncingText || IsLoading()) return;
    SelectText();
}

// An editable combo box keeps any text; the others show the item's text or none.
void TCustomComboBox::SelectText() {
    m_itemIndex = m_items->IndexOf(Text());
    if (Editable())
        PushTextToEdit();
    else
        SyncText();
    Invalidate();
}

void TCustomComboBox::Loaded() {
    TWinControl::Loaded();
    SelectText();
}

void TCustomComboBox::ItemsChanged() {
    if (IsLoading()) return; // Loaded selects the text read
    if (m_itemIndex >= m_items->Count()) m_itemIndex = -1;
    if (Editable())
        m_itemIndex = m_items->IndexOf(Text());
    else
        SyncText();
    Invalidate();
    if (m_list) CloseList(false);
}

void TCustomComboBox::CMFontChanged(TMessage& Message) {
    TWinControl::CMFontChanged(Message);
    SetHeight(0);
}

void TCustomComboBox::Change() {
    if (OnChange) OnChange(this);
}

void TCustomComboBox::DropDown() {
    if (OnDropDown) OnDropDown(this);
}

void TCustomComboBox::SelectByUser(int index) {
    if (m_items->Count() == 0) return;
    index = std::clamp(index, 0, m_items->Count() - 1);
    if (index == m_itemIndex) return;
    SetItemIndex(index);
    Click();
    Change();
}

// The list.

void TCustomComboBox::SetDroppedDown(bool v) {
    if (v == DroppedDown()) return;
    if (v)
        OpenList();
    else
        CloseList(false);
}

TCustomForm* TCustomComboBox::ListWindow() const {
    return m_list;
}

void TCustomComboBox::OpenList() {
    if (m_list) return;
    DropDown();
    const int rows = std::min(std::max(m_items->Count(), 1), m_dropDownCount);
    m_list = new TComboListWindow(*this, ItemHeight(), rows);
    m_list->SetHotIndex(m_itemIndex);
    m_list->Show();
    Invalidate();
}

void TCustomComboBox::CloseList(bool choose) {
    if (!m_list) return;
    TComboListWindow* list = m_list;
    m_list = nullptr;
    const int chosen = list->HotIndex();
    list->Release();
    m_buttonDown = false;
    Invalidate();
    if (choose && chosen >= 0) SelectByUser(chosen);
}

void TCustomComboBox::ListCancelled(bool pressOnSelf) {
    m_ignoreNextPress = pressOnSelf;
    CloseList(false);
}

int TCustomComboBox::ListRowAt(int x, int y) const {
    if (!m_list) return -1;
    return m_list->RowAt(m_list->ScreenToClient(ClientToScreen({x, y})));
}

// Keyboard.

void TCustomComboBox::WMGetDlgCode(TMessage& Message) {
    Message.Result = DLGC_WANTARROWS | DLGC_WANTCHARS | (m_list ? DLGC_WANTALLKEYS : 0);
}

void TCustomComboBox::KeyDown(unsigned& Key, TShiftState Shift) {
    TWinControl::KeyDown(Key, Shift);
    if (Key == 0) return;
    if (m_list ? HandleListKey(Key, Shift) : HandleClosedKey(Key, Shift)) Key = 0;
}

bool TCustomComboBox::HandleListKey(unsigned key, TShiftState shift) {
    const int hot = m_list->HotIndex();
    const int page = std::max(m_list->VisibleRows() - 1, 1);
    switch (key) {
    case VK_ESCAPE:
        CloseList(false);
        return true;
    case VK_RETURN:
    case VkF4:
        CloseList(true);
        return true;
    case VK_UP:
    case VK_DOWN:
        if (shift.Contains(ssAlt))
            CloseList(true);
        else
            m_list->SetHotIndex(hot < 0 ? 0 : hot + (key == VK_DOWN ? 1 : -1));
        return true;
    case VK_PRIOR:
        m_list->SetHotIndex(hot - page);
        return true;
    case VK_NEXT:
        m_list->SetHotIndex(hot + page);
        return true;
    case VK_HOME:
        m_list->SetHotIndex(0);
        return true;
    case VK_END:
        m_list->SetHotIndex(m_items->Count() - 1);
        return true;
    default:
        return false;
    }
}

bool TCustomComboBox::HandleClosedKey(unsigned key, TShiftState shift) {
    if (key == VkF4 || (key == VK_DOWN && shift.Contains(ssAlt))) {
        OpenList();
        return true;
    }
    switch (key) {
    case VK_UP:
    case VK_LEFT:
        SelectByUser(m_itemIndex < 0 ? 0 : m_itemIndex - 1);
        return true;
    case VK_DOWN:
    case VK_RIGHT:
        SelectByUser(m_itemIndex + 1);
        return true;
    case VK_PRIOR:
        SelectByUser(m_itemIndex - (m_dropDownCount - 1));
        return true;
    case VK_NEXT:
        SelectByUser(m_itemIndex + (m_dropDownCount - 1));
        return true;
    case VK_HOME:
        SelectByUser(0);
        return true;
    case VK_END:
        SelectByUser(m_items->Count() - 1);
        return true;
    default:
        return false;
    }
}

int TCustomComboBox::IndexStartingWith(char ch, int after) const {
    const int count = m_items->Count();
    for (int step = 1; step <= count; ++step) {
        const int index = (std::max(after, -1) + step) % count;
        const std::string item = m_items->Get(index);
        if (!item.empty() && std::toupper(static_cast<unsigned char>(item[0])) ==
                                 std::toupper(static_cast<unsigned char>(ch)))
            return index;
    }
    return -1;
}

void TCustomComboBox::KeyPress(char& Key) {
    TWinControl::KeyPress(Key);
    if (static_cast<unsigned char>(Key) < 0x20 || m_items->Count() == 0) return;
    if (m_list) {
        const int index = IndexStartingWith(Key, m_list->HotIndex());
        if (index >= 0) m_list->SetHotIndex(index);
    } else if (const int index = IndexStartingWith(Key, m_itemIndex); index >= 0) {
        SelectByUser(index);
    }
}

// Mouse: a press toggles the list; dragging into the open list and releasing chooses.

void TCustomComboBox::MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    if (Button == mbLeft) {
        if (!Focused() && CanFocus()) SetFocus();
        if (m_ignoreNextPress)
            m_ignoreNextPress = false;
        else if (m_list)
            CloseList(false);
        else {
            m_buttonDown = true;
            OpenList();
        }
    }
    TWinControl::MouseDown(Button, Shift, X, Y);
}

void TCustomComboBox::MouseMove(TShiftState Shift, int X, int Y) {
    if (MouseCapture() && m_list) {
        if (const int row = ListRowAt(X, Y); row >= 0) m_list->SetHotIndex(row);
    }
    TWinControl::MouseMove(Shift, X, Y);
}

void TCustomComboBox::MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    if (Button == mbLeft) {
        if (m_buttonDown) {
            m_buttonDown = false;
            Invalidate();
        }
        if (const int row = ListRowAt(X, Y); row >= 0) {
            m_list->SetHotIndex(row);
            CloseList(true);
        }
    }
    TWinControl::MouseUp(Button, Shift, X, Y);
}

// Focus.

// An editable combo box hands the focus to its edit; reached from that edit by Shift+Tab
// it passes the focus on backwards.
void TCustomComboBox::WMSetFocus(TMessage& Message) {
    TWinControl::WMSetFocus(Message);
    Invalidate();
    if (!m_edit || !m_edit->CanFocus()) return;
    const bool backFromEdit = m_edit->HandleAllocated() && Message.WParam == m_edit->Handle();
    if (backFromEdit && GetKeyState(VK_TAB) < 0) {
        if (TCustomForm* form = ParentForm()) form->SelectNext(this, false, true);
        return;
    }
    m_edit->SetFocus();
}

void TCustomComboBox::WMKillFocus(TMessage& Message) {
    TWinControl::WMKillFocus(Message);
    CloseList(false);
    Invalidate();
}

// Painting.

TRect TCustomComboBox::ButtonRect() const {
    TRect inner = ClientRect();
    InflateRect(inner, -ClientEdgeWidth, -ClientEdgeWidth);
    return {std::max(inner.right - ScrollBarSize, inner.left), inner.top, inner.right,
            inner.bottom};
}

// The field lies left of the button, a pixel inside the edge.
TRect TCustomComboBox::FieldRect() const {
    TRect field = ClientRect();
    InflateRect(field, -ClientEdgeWidth - 1, -ClientEdgeWidth - 1);
    field.right = ButtonRect().left - 1;
    return field;
}

void TCustomComboBox::DrawItem(int Index, TRect Rect, TOwnerDrawState State) {
    if (OnDrawItem)
        OnDrawItem(this, Index, Rect, State);
    else
        DrawItemText(Canvas(), Rect,
                     Index < m_items->Count() ? m_items->Get(Index) : std::string());
}

void TCustomComboBox::PaintItem(TCanvas& canvas, int index, const TRect& rect,
                                TOwnerDrawState state) {
    if (!Enabled()) state.Include(odDisabled);
    PaintListItem(canvas, *Font(), Color(), index, rect, state, [&] {
        if (OwnerDrawn()) {
            DrawItem(index, rect, state);
            return;
        }
        if (!Enabled()) canvas.Font().SetColor(clGrayText);
        DrawItemText(canvas, rect, m_items->Get(index));
    });
}

void TCustomComboBox::PaintField(TCanvas& canvas) {
    TOwnerDrawState state{odComboBoxEdit};
    if (Focused() && !m_list) state = state + TOwnerDrawState{odSelected, odFocused};
    const TRect field = FieldRect();
    if (m_itemIndex < 0 && state.Contains(odFocused)) {
        canvas.Brush().SetColor(clHighlight);
        canvas.FillRect(field);
        canvas.DrawFocusRect(field);
        return;
    }
    PaintItem(canvas, m_itemIndex, field, state);
}

// A raised push button with a down arrow; pushed in while pressed.
void TCustomComboBox::PaintButton(TCanvas& canvas, TRect rect) const {
    const TRect whole = rect;
    DrawButtonFace(canvas, rect, m_buttonDown);
    DrawArrowGlyph(canvas, whole, false, m_buttonDown, Enabled());
}

void TCustomComboBox::WMPaint(TMessage&) {
    // An editable field is the edit's to paint.
    TCanvas& canvas = Canvas();
    TRect rect = ClientRect();
    canvas.Brush().SetStyle(bsSolid);
    canvas.Brush().SetColor(Color());
    canvas.FillRect(rect);
    DrawClientEdge(canvas, rect);
    PaintButton(canvas, ButtonRect());
    if (!m_edit) PaintField(canvas);
}

} // namespace qv
