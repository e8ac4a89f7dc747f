#include "CustomEdit.h"

#include "Clipboard.h"

#include "platform/core/ClassBuilder.h"

#include <algorithm>
#include <cctype>

namespace qv {

namespace {

bool IsContinuationByte(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

bool IsWordChar(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_' ||
           (static_cast<unsigned char>(c) & 0x80);
}

} // namespace

const TClassInfo& TCustomEdit::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TCustomEdit>("TCustomEdit", &TWinControl::StaticClassInfo()).Build();
    return info;
}

TCustomEdit::TCustomEdit(TComponent* AOwner) : TWinControl(AOwner) {
    SetControlStyle({csClickEvents, csSetCaption, csDoubleClicks, csFixedHeight});
    SetBounds(Left(), Top(), 121, 25);
    SetTabStop(true);
    SetColor(clWindow);
    m_measure.Canvas().Font().Assign(*Font());
    AdjustHeight();
}

TCustomEdit::~TCustomEdit() = default;

// Properties.

void TCustomEdit::SetAutoSize(bool v) {
    if (v == m_autoSize) return;
    m_autoSize = v;
    AdjustHeight();
}

void TCustomEdit::SetBorderStyle(TBorderStyle v) {
    if (v == m_borderStyle) return;
    m_borderStyle = v;
    AdjustHeight();
    Invalidate();
}

void TCustomEdit::SetHideSelection(bool v) {
    if (v == m_hideSelection) return;
    m_hideSelection = v;
    Invalidate();
}

void TCustomEdit::SetMaxLength(int v) {
    m_maxLength = std::max(v, 0);
}

void TCustomEdit::SetPasswordChar(char v) {
    if (v == m_passwordChar) return;
    m_passwordChar = v;
    ScrollToCaret();
    Invalidate();
}

void TCustomEdit::AdjustHeight() {
    if (FixedHeight()) SetHeight(0);
}

void TCustomEdit::SetBounds(int ALeft, int ATop, int AWidth, int AHeight) {
    if (FixedHeight()) AHeight = TextLineHeight(*Font()) + 8;
    TWinControl::SetBounds(ALeft, ATop, AWidth, AHeight);
}

// Selection.

int TCustomEdit::SelStart() const {
    return std::min(m_anchor, m_caret);
}
int TCustomEdit::SelLength() const {
    return std::abs(m_caret - m_anchor);
}

std::string TCustomEdit::SelText() const {
    return Text().substr(static_cast<std::size_t>(SelStart()),
                         static_cast<std::size_t>(SelLength()));
}

void TCustomEdit::SetSelStart(int v) {
    SetSelection(v, v);
}

void TCustomEdit::SetSelLength(int v) {
    const int start = SelStart();
    SetSelection(start, start + std::max(v, 0));
}

void TCustomEdit::SetSelText(const std::string& v) {
    ReplaceSelection(v, false);
}

void TCustomEdit::SelectAll() {
    SetSelection(0, static_cast<int>(Text().size()));
}

void TCustomEdit::ClearSelection() {
    if (SelLength() > 0) ReplaceSelection("", false);
}

void TCustomEdit::SetSelection(int anchor, int caret) {
    const int length = static_cast<int>(Text().size());
    anchor = std::clamp(anchor, 0, length);
    caret = std::clamp(caret, 0, length);
    if (anchor == m_anchor && caret == m_caret) return;
    m_anchor = anchor;
    m_caret = caret;
    ScrollToCaret();
    RestartCaretBlink();
    Invalidate();
}

// A caret put where it already is still shows at once.
void TCustomEdit::MoveCaret(int pos, bool extend) {
    SetSelection(extend ? m_anchor : pos, pos);
    if (!m_caretShown) Invalidate();
    RestartCaretBlink();
}

// Clipboard.

void TCustomEdit::CopyToClipboard() const {
    if (SelLength() > 0 && m_passwordChar == '\0') Clipboard().SetAsText(SelText());
}

void TCustomEdit::CutToClipboard() {
    if (m_readOnly || m_passwordChar != '\0') return;
    CopyToClipboard();
    ReplaceSelection("", true);
}

void TCustomEdit::PasteFromClipboard() {
    if (Clipboard().HasText()) ReplaceSelection(Clipboard().AsText(), true);
}

// Editing.

void TCustomEdit::ReplaceSelection(std::string text, bool byUser) {
    if (byUser && m_readOnly) return;
    text = text.substr(0, text.find_first_of("\r\n"));
    const std::string& old = Text();
    const auto start = static_cast<std::size_t>(SelStart());
    const auto length = static_cast<std::size_t>(SelLength());
    if (byUser && m_maxLength > 0) {
        const std::size_t room =
            static_cast<std::size_t>(m_maxLength) -
            std::min<std::size_t>(old.size() - length, static_cast<std::size_t>(m_maxLength));
        std::size_t cut = std::min(room, text.size());
        while (cut > 0 && cut < text.size() && IsContinuationByte(text[cut]))
            --cut;
        text.resize(cut);
    }
    if (text.empty() && length == 0) return;
    const std::string updated = old.substr(0, start) + text + old.substr(start + length);
    m_anchor = m_caret = static_cast<int>(start + text.size());
    m_editing = true;
    if (byUser) m_modified = true;
    SetText(updated);
    m_editing = false;
}

void TCustomEdit::DeleteBackward() {
    if (SelLength() == 0) SetSelection(PreviousPosition(m_caret), m_caret);
    ReplaceSelection("", true);
}

void TCustomEdit::DeleteForward() {
    if (SelLength() == 0) SetSelection(m_caret, NextPosition(m_caret));
    ReplaceSelection("", true);
}

void TCustomEdit::Change() {
    if (OnChange) OnChange(this);
}

void TCustomEdit::CMTextChanged(TMessage& Message) {
    TWinControl::CMTextChanged(Message);
    if (!m_editing) {
        m_anchor = m_caret = 0;
        m_scroll = 0;
    }
    ScrollToCaret();
    RestartCaretBlink();
    Invalidate();
    if (!IsLoading()) Change();
}

void TCustomEdit::CMFontChanged(TMessage& Message) {
    TWinControl::CMFontChanged(Message);
    m_measure.Canvas().Font().Assign(*Font());
    AdjustHeight();
    ScrollToCaret();
}

// Character positions.

int TCustomEdit::NextPosition(int pos) const {
    const std::string& text = Text();
    auto p = static_cast<std::size_t>(std::clamp(pos, 0, static_cast<int>(text.size())));
    if (p < text.size()) ++p;
    while (p < text.size() && IsContinuationByte(text[p]))
        ++p;
    return static_cast<int>(p);
}

int TCustomEdit::PreviousPosition(int pos) const {
    const std::string& text = Text();
    auto p = static_cast<std::size_t>(std::clamp(pos, 0, static_cast<int>(text.size())));
    if (p > 0) --p;
    while (p > 0 && IsContinuationByte(text[p]))
        --p;
    return static_cast<int>(p);
}

// The end of the word at `pos` and the blanks after it.
int TCustomEdit::WordEndAfter(int pos) const {
    const std::string& text = Text();
    auto p = static_cast<std::size_t>(pos);
    while (p < text.size() && IsWordChar(text[p]))
        ++p;
    while (p < text.size() && !IsWordChar(text[p]))
        ++p;
    return static_cast<int>(p);
}

int TCustomEdit::WordStartBefore(int pos) const {
    const std::string& text = Text();
    auto p = static_cast<std::size_t>(pos);
    while (p > 0 && !IsWordChar(text[p - 1]))
        --p;
    while (p > 0 && IsWordChar(text[p - 1]))
        --p;
    return static_cast<int>(p);
}

std::string TCustomEdit::DisplayText(const std::string& text) const {
    if (m_passwordChar == '\0') return text;
    std::string shown;
    for (char c : text)
        if (!IsContinuationByte(c)) shown += m_passwordChar;
    return shown;
}

int TCustomEdit::PrefixWidth(int pos) const {
    return m_measure.Canvas().TextWidth(
        DisplayText(Text().substr(0, static_cast<std::size_t>(pos))));
}

TRect TCustomEdit::TextArea() const {
    TRect area = ClientRect();
    if (m_borderStyle == bsSingle) InflateRect(area, -ClientEdgeWidth, -ClientEdgeWidth);
    InflateRect(area, -1, -1);
    return area;
}

int TCustomEdit::PositionAt(int x) const {
    const int wanted = x - TextArea().left + m_scroll;
    int best = 0;
    int bestDistance = std::abs(wanted);
    for (int pos = NextPosition(0); pos > best; best = pos, pos = NextPosition(pos)) {
        const int distance = std::abs(PrefixWidth(pos) - wanted);
        if (distance >= bestDistance) return best;
        bestDistance = distance;
    }
    return best;
}

void TCustomEdit::ScrollToCaret() {
    const int visible = std::max(TextArea().Width() - 1, 0);
    const int caretX = PrefixWidth(m_caret);
    if (caretX - m_scroll > visible) m_scroll = caretX - visible;
    if (caretX < m_scroll) m_scroll = caretX;
    m_scroll = std::clamp(m_scroll, 0,
                          std::max(PrefixWidth(static_cast<int>(Text().size())) - visible, 0));
}

// Keyboard.

void TCustomEdit::WMGetDlgCode(TMessage& Message) {
    Message.Result = DLGC_WANTCHARS | DLGC_WANTARROWS | DLGC_HASSETSEL;
}

void TCustomEdit::KeyDown(unsigned& Key, TShiftState Shift) {
    TWinControl::KeyDown(Key, Shift);
    if (Key == 0) return;
    if (HandleMovementKey(Key, Shift) || HandleEditingKey(Key, Shift)) Key = 0;
}

bool TCustomEdit::HandleMovementKey(unsigned key, TShiftState shift) {
    const bool extend = shift.Contains(ssShift);
    const bool byWord = shift.Contains(ssCtrl);
    switch (key) {
    case VK_LEFT:
        if (!extend && SelLength() > 0 && !byWord)
            MoveCaret(SelStart(), false);
        else
            MoveCaret(byWord ? WordStartBefore(m_caret) : PreviousPosition(m_caret), extend);
        return true;
    case VK_RIGHT:
        if (!extend && SelLength() > 0 && !byWord)
            MoveCaret(SelStart() + SelLength(), false);
        else
            MoveCaret(byWord ? WordEndAfter(m_caret) : NextPosition(m_caret), extend);
        return true;
    case VK_HOME:
        MoveCaret(0, extend);
        return true;
    case VK_END:
        MoveCaret(static_cast<int>(Text().size()), extend);
        return true;
    default:
        return false;
    }
}

bool TCustomEdit::HandleEditingKey(unsigned key, TShiftState shift) {
    const bool ctrl = shift.Contains(ssCtrl);
    const bool withShift = shift.Contains(ssShift);
    if (key == VK_DELETE) {
        if (withShift)
            CutToClipboard();
        else
            DeleteForward();
        return true;
    }
    if (key == VK_INSERT && ctrl)
        CopyToClipboard();
    else if (key == VK_INSERT && withShift)
        PasteFromClipboard();
    else if (ctrl && key == 'C')
        CopyToClipboard();
    else if (ctrl && key == 'X')
        CutToClipboard();
    else if (ctrl && key == 'V')
        PasteFromClipboard();
    else
        return false;
    return true;
}

void TCustomEdit::KeyPress(char& Key) {
    TWinControl::KeyPress(Key);
    const auto ch = static_cast<unsigned char>(Key);
    if (ch == VK_BACK)
        DeleteBackward();
    else if (ch >= 0x20 && ch != 0x7F)
        ReplaceSelection(std::string(1, Key), true);
}

// Mouse.

void TCustomEdit::MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    if (Button == mbLeft) {
        if (!Focused() && CanFocus()) {
            m_pressing = true;
            SetFocus();
            m_pressing = false;
        }
        const int pos = PositionAt(X);
        if (Shift.Contains(ssDouble)) {
            const int start = pos > 0 && IsWordChar(Text()[static_cast<std::size_t>(pos) - 1])
                                  ? WordStartBefore(pos)
                                  : pos;
            SetSelection(start, WordEndAfter(start));
        } else {
            MoveCaret(pos, Shift.Contains(ssShift));
            m_selecting = true;
        }
    }
    TWinControl::MouseDown(Button, Shift, X, Y);
}

void TCustomEdit::MouseMove(TShiftState Shift, int X, int Y) {
    if (m_selecting) MoveCaret(PositionAt(X), true);
    TWinControl::MouseMove(Shift, X, Y);
}

void TCustomEdit::MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    if (Button == mbLeft) m_selecting = false;
    TWinControl::MouseUp(Button, Shift, X, Y);
}

// Focus.

void TCustomEdit::WMSetFocus(TMessage& Message) {
    TWinControl::WMSetFocus(Message);
    RestartCaretBlink();
    Invalidate();
}

void TCustomEdit::WMKillFocus(TMessage& Message) {
    TWinControl::WMKillFocus(Message);
    m_selecting = false;
    if (m_caretTimer) m_caretTimer->SetEnabled(false);
    Invalidate();
}

void TCustomEdit::RestartCaretBlink() {
    m_caretShown = true;
    if (IsDesigning() || !Focused()) return;
    if (!m_caretTimer) {
        m_caretTimer = std::make_unique<TTimer>(nullptr);
        m_caretTimer->SetInterval(CaretBlinkTime);
        m_caretTimer->SetOnTimer([this](TObject*) {
            m_caretShown = !m_caretShown;
            Invalidate();
        });
    }
    m_caretTimer->SetEnabled(false);
    m_caretTimer->SetEnabled(true);
}

// Entering by keyboard selects everything when AutoSelect is on.
void TCustomEdit::CMEnter(TMessage& Message) {
    if (m_autoSelect && !m_pressing) SelectAll();
    TWinControl::CMEnter(Message);
}

// The I-beam is the edit's own cursor when its Cursor is crDefault.
void TCustomEdit::DefaultHandler(TMessage& Message) {
    if (Message.Msg == WM_SETCURSOR) {
        Message.Result = crIBeam;
        return;
    }
    TWinControl::DefaultHandler(Message);
}

// Painting.

bool TCustomEdit::SelectionVisible() const {
    return SelLength() > 0 && (Focused() || !m_hideSelection);
}

void TCustomEdit::WMPaint(TMessage&) {
    TCanvas& canvas = Canvas();
    TRect rect = ClientRect();
    canvas.Brush().SetStyle(bsSolid);
    canvas.Brush().SetColor(Color());
    canvas.FillRect(rect);
    if (m_borderStyle == bsSingle) DrawClientEdge(canvas, rect);
    PaintText(canvas);
    if (Focused() && m_caretShown) PaintCaret(canvas);
}

void TCustomEdit::PaintText(TCanvas& canvas) const {
    const TRect area = TextArea();
    const int x = area.left - m_scroll;
    const std::string shown = DisplayText(Text());
    canvas.Font().Assign(*Font());
    if (!Enabled()) canvas.Font().SetColor(clGrayText);
    canvas.Brush().SetColor(Color());
    canvas.TextRect(area, x, area.top, shown);
    if (!SelectionVisible()) return;
    const int lineHeight = canvas.TextHeight("W");
    const TRect selection =
        Intersect({x + PrefixWidth(SelStart()), area.top, x + PrefixWidth(SelStart() + SelLength()),
                   area.top + lineHeight},
                  area);
    canvas.Brush().SetColor(clHighlight);
    canvas.Font().SetColor(clHighlightText);
    canvas.TextRect(selection, x, area.top, shown);
}

// The caret inverts a one-pixel column of one text line.
void TCustomEdit::PaintCaret(TCanvas& canvas) const {
    const TRect area = TextArea();
    const int x = area.left - m_scroll + PrefixWidth(m_caret);
    if (x < area.left || x >= area.right) return;
    canvas.Pen().SetMode(pmNot);
    canvas.MoveTo(x, area.top);
    canvas.LineTo(x, std::min(area.top + canvas.TextHeight("W"), area.bottom));
    canvas.Pen().SetMode(pmCopy);
}

} // namespace qv
