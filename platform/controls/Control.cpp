#include "Control.h"

#include "Application.h"
#include "Form.h"
#include "Menus.h"
#include "WinControl.h"

#include "platform/core/ClassBuilder.h"
#include "platform/core/SysUtils.h"

#include <cctype>
#include <cstring>

namespace qv {

const TTypeInfo& CursorType() {
    static const TTypeInfo info = [] {
        static const std::pair<TCursor, const char*> names[] = {{crDefault, "crDefault"},
                                                                {crNone, "crNone"},
                                                                {crArrow, "crArrow"},
                                                                {crCross, "crCross"},
                                                                {crIBeam, "crIBeam"},
                                                                {crSize, "crSize"},
                                                                {crSizeNESW, "crSizeNESW"},
                                                                {crSizeNS, "crSizeNS"},
                                                                {crSizeNWSE, "crSizeNWSE"},
                                                                {crSizeWE, "crSizeWE"},
                                                                {crUpArrow, "crUpArrow"},
                                                                {crHourGlass, "crHourGlass"},
                                                                {crDrag, "crDrag"},
                                                                {crNoDrop, "crNoDrop"},
                                                                {crHSplit, "crHSplit"},
                                                                {crVSplit, "crVSplit"},
                                                                {crMultiDrag, "crMultiDrag"},
                                                                {crSQLWait, "crSQLWait"},
                                                                {crNo, "crNo"},
                                                                {crAppStart, "crAppStart"},
                                                                {crHelp, "crHelp"},
                                                                {crHandPoint, "crHandPoint"}};
        TTypeInfo t = TTypeInfo::Integer("TCursor", -32768, 32767);
        t.intToIdent = [](std::int64_t v) -> std::optional<std::string> {
            for (const auto& [c, n] : names)
                if (c == v) return n;
            return std::nullopt;
        };
        t.identToInt = [](const std::string& s) -> std::optional<std::int64_t> {
            for (const auto& [c, n] : names)
                if (SameText(s, n)) return c;
            return std::nullopt;
        };
        return t;
    }();
    return info;
}

TShiftState ShiftStateFromMouse(WPARAM keys) {
    TShiftState s;
    if (keys & MK_SHIFT) s.Include(ssShift);
    if (keys & MK_CONTROL) s.Include(ssCtrl);
    if (keys & MK_LBUTTON) s.Include(ssLeft);
    if (keys & MK_RBUTTON) s.Include(ssRight);
    if (keys & MK_MBUTTON) s.Include(ssMiddle);
    if (GetKeyState(VK_MENU) < 0) s.Include(ssAlt);
    return s;
}

TShiftState KeyboardShiftState() {
    TShiftState s;
    if (GetKeyState(VK_SHIFT) < 0) s.Include(ssShift);
    if (GetKeyState(VK_CONTROL) < 0) s.Include(ssCtrl);
    if (GetKeyState(VK_MENU) < 0) s.Include(ssAlt);
    return s;
}

bool IsAccel(unsigned ch, const std::string& caption) {
    for (std::size_t i = 0; i + 1 < caption.size(); ++i) {
        if (caption[i] != '&') continue;
        if (caption[i + 1] == '&') {
            ++i; // "&&" is a literal ampersand
            continue;
        }
        return std::toupper(static_cast<unsigned char>(caption[i + 1])) ==
               std::toupper(static_cast<int>(ch & 0xFF));
    }
    return false;
}

const TClassInfo& TControl::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TControl>("TControl", &TComponent::StaticClassInfo())
            .Property("Left", &TControl::Left, &TControl::SetLeft)
            .Property("Top", &TControl::Top, &TControl::SetTop)
            .Property("Width", &TControl::Width, &TControl::SetWidth)
            .Property("Height", &TControl::Height, &TControl::SetHeight)
            .Build();
    return info;
}

TControl::TControl(TComponent* AOwner) : TComponent(AOwner), m_font(std::make_unique<TFont>()) {
    m_font->OnChange = [this](TObject* sender) { FontChanged(sender); };
}

TControl::~TControl() {
    Destroying();
    if (auto* app = ApplicationIfAlive()) app->ControlGone(this);
    if (m_parent) m_parent->RemoveControl(this);
}

TCanvas& TControl::Canvas() {
    if (!m_canvas) m_canvas = std::make_unique<TCanvas>(nullptr);
    return *m_canvas;
}

void TControl::SetParent(TWinControl* AParent) {
    if (AParent == m_parent) return;
    if (AParent == this) throw EInvalidOperation("A control cannot have itself as its parent");
    if (m_parent) m_parent->RemoveControl(this);
    if (AParent) AParent->InsertControl(this);
}

TComponent* TControl::GetParentComponent() const {
    return m_parent;
}

void TControl::SetParentComponent(TComponent* Value) {
    auto* parent = dynamic_cast<TWinControl*>(Value);
    if (Value && !parent)
        throw EComponentError(ClassName() + " cannot be placed in a " + Value->ClassName());
    SetParent(parent);
}

void TControl::SetBounds(int ALeft, int ATop, int AWidth, int AHeight) {
    ALeft = std::clamp(ALeft, -MaxCoordinate, MaxCoordinate);
    ATop = std::clamp(ATop, -MaxCoordinate, MaxCoordinate);
    AWidth = std::clamp(AWidth, 0, MaxCoordinate);
    AHeight = std::clamp(AHeight, 0, MaxCoordinate);
    if (ALeft == m_left && ATop == m_top && AWidth == m_width && AHeight == m_height) return;
    Invalidate(); // the old place
    const bool resized = AWidth != m_width || AHeight != m_height;
    m_left = ALeft;
    m_top = ATop;
    m_width = AWidth;
    m_height = AHeight;
    Invalidate(); // the new place
    if (resized) SendSystemMessage(WM_SIZE, 0, MAKELPARAM(AWidth, AHeight));
    if (m_parent && m_align != alNone) m_parent->Realign();
}

TPoint TControl::ClientOrigin() const {
    if (!m_parent) return {m_left, m_top};
    const TPoint p = m_parent->ClientOrigin();
    return {p.x + m_left, p.y + m_top};
}

TPoint TControl::ClientToScreen(TPoint p) const {
    const TPoint o = ClientOrigin();
    return {p.x + o.x, p.y + o.y};
}

TPoint TControl::ScreenToClient(TPoint p) const {
    const TPoint o = ClientOrigin();
    return {p.x - o.x, p.y - o.y};
}

void TControl::SetAlign(TAlign v) {
    if (v == m_align) return;
    m_align = v;
    if (m_parent) m_parent->Realign();
}

void TControl::SetVisible(bool v) {
    if (v == m_visible) return;
    if (!v) Invalidate();
    m_visible = v;
    Perform(CM_VISIBLECHANGED, v ? 1 : 0);
    if (v) Invalidate();
    if (m_parent && m_align != alNone) m_parent->Realign();
}

bool TControl::Showing() const {
    return m_visible && m_parent && m_parent->Showing();
}

void TControl::SetEnabled(bool v) {
    if (v == m_enabled) return;
    m_enabled = v;
    Perform(CM_ENABLEDCHANGED);
}

// Assigning a colour, even the current one, stops following the parent's.
void TControl::SetColor(TColor v) {
    if (v == m_color) {
        m_parentColor = false;
        return;
    }
    m_color = v;
    m_parentColor = false;
    Perform(CM_COLORCHANGED);
}

void TControl::SetParentColor(bool v) {
    if (v == m_parentColor) return;
    m_parentColor = v;
    if (v && m_parent) Perform(CM_PARENTCOLORCHANGED);
}

void TControl::SetParentFont(bool v) {
    if (v == m_parentFont) return;
    m_parentFont = v;
    if (v && m_parent) Perform(CM_PARENTFONTCHANGED);
}

void TControl::FontChanged(TObject*) {
    if (!m_followingParentFont) m_parentFont = false;
    Perform(CM_FONTCHANGED);
}

void TControl::SetText(const std::string& v) {
    if (v == m_text) return;
    m_text = v;
    Perform(CM_TEXTCHANGED);
}

void TControl::SetShowHint(bool v) {
    m_parentShowHint = false;
    m_showHint = v;
}

void TControl::SetParentShowHint(bool v) {
    if (v == m_parentShowHint) return;
    m_parentShowHint = v;
    if (v && m_parent) Perform(CM_PARENTSHOWHINTCHANGED);
}

void TControl::SetCursor(TCursor v) {
    if (v == m_cursor) return;
    m_cursor = v;
    Perform(CM_CURSORCHANGED);
}

void TControl::SetPopupMenu(TPopupMenu* v) {
    if (v == m_popupMenu) return;
    m_popupMenu = v;
    if (v) v->FreeNotification(this);
}

void TControl::Notification(TComponent* AComponent, TOperation Operation) {
    TComponent::Notification(AComponent, Operation);
    if (Operation == opRemove && AComponent == m_popupMenu) m_popupMenu = nullptr;
}

void TControl::Loaded() {
    TComponent::Loaded();
    if (m_parent) {
        if (m_parentColor) Perform(CM_PARENTCOLORCHANGED);
        if (m_parentFont) Perform(CM_PARENTFONTCHANGED);
    }
}

TCustomForm* TControl::ParentForm() const {
    return GetParentForm(this);
}

LRESULT TControl::SendSystemMessage(UINT Msg, WPARAM WParam, LPARAM LParam) {
    return Perform(Msg, WParam, LParam);
}

LRESULT TControl::Perform(UINT Msg, WPARAM WParam, LPARAM LParam) {
    TMessage message{Msg, WParam, LParam, 0};
    WndProc(message);
    return message.Result;
}

void TControl::WndProc(TMessage& Message) {
    // Controls without double clicks get a second press as a press.
    if (!m_controlStyle.Contains(csDoubleClicks)) {
        if (Message.Msg == WM_LBUTTONDBLCLK || Message.Msg == WM_RBUTTONDBLCLK ||
            Message.Msg == WM_MBUTTONDBLCLK)
            Message.Msg -= WM_LBUTTONDBLCLK - WM_LBUTTONDOWN;
    }
    switch (Message.Msg) {
    case WM_LBUTTONDOWN:
        WMLButtonDown(Message);
        break;
    case WM_LBUTTONDBLCLK:
        WMLButtonDblClk(Message);
        break;
    case WM_LBUTTONUP:
        WMLButtonUp(Message);
        break;
    case WM_RBUTTONDOWN:
        WMRButtonDown(Message);
        break;
    case WM_RBUTTONDBLCLK:
        WMRButtonDblClk(Message);
        break;
    case WM_RBUTTONUP:
        WMRButtonUp(Message);
        break;
    case WM_MBUTTONDOWN:
        WMMButtonDown(Message);
        break;
    case WM_MBUTTONUP:
        WMMButtonUp(Message);
        break;
    case WM_MOUSEMOVE:
        WMMouseMove(Message);
        break;
    case WM_NCHITTEST:
        WMNCHitTest(Message);
        break;
    case WM_ERASEBKGND:
        WMEraseBkgnd(Message);
        break;
    case WM_PAINT:
        WMPaint(Message);
        break;
    case WM_SIZE:
        WMSize(Message);
        break;
    case CM_MOUSEENTER:
        CMMouseEnter(Message);
        break;
    case CM_MOUSELEAVE:
        CMMouseLeave(Message);
        break;
    case CM_HITTEST:
        CMHitTest(Message);
        break;
    case CM_ENABLEDCHANGED:
        CMEnabledChanged(Message);
        break;
    case CM_VISIBLECHANGED:
        CMVisibleChanged(Message);
        break;
    case CM_COLORCHANGED:
        CMColorChanged(Message);
        break;
    case CM_FONTCHANGED:
        CMFontChanged(Message);
        break;
    case CM_TEXTCHANGED:
        CMTextChanged(Message);
        break;
    case CM_PARENTCOLORCHANGED:
        CMParentColorChanged(Message);
        break;
    case CM_PARENTFONTCHANGED:
        CMParentFontChanged(Message);
        break;
    case CM_PARENTSHOWHINTCHANGED:
        CMParentShowHintChanged(Message);
        break;
    case CM_SYSCOLORCHANGE:
        CMSysColorChange(Message);
        break;
    case CM_DIALOGKEY:
        CMDialogKey(Message);
        break;
    case CM_DIALOGCHAR:
        CMDialogChar(Message);
        break;
    case CM_BUTTONPRESSED:
        CMButtonPressed(Message);
        break;
    case CM_FOCUSCHANGED:
        CMFocusChanged(Message);
        break;
    case CM_CANCELMODE:
        CMCancelMode(Message);
        break;
    default:
        DefaultHandler(Message);
        break;
    }
}

void TControl::DefaultHandler(TMessage& Message) {
    switch (Message.Msg) {
    case WM_NCHITTEST:
        Message.Result = HTCLIENT;
        break;
    case CM_HITTEST:
        Message.Result = HTCLIENT;
        break;
    default:
        break;
    }
}

// Mouse.

void TControl::DoMouseDown(TMessage& Message, TMouseButtonKind Button, TShiftState Shift) {
    MouseDown(Button, Shift + ShiftStateFromMouse(Message.WParam), GET_X_LPARAM(Message.LParam),
              GET_Y_LPARAM(Message.LParam));
}

void TControl::DoMouseUp(TMessage& Message, TMouseButtonKind Button) {
    MouseUp(Button, ShiftStateFromMouse(Message.WParam), GET_X_LPARAM(Message.LParam),
            GET_Y_LPARAM(Message.LParam));
}

void TControl::WMLButtonDown(TMessage& Message) {
    SendCancelMode();
    if (m_controlStyle.Contains(csCaptureMouse)) SetMouseCapture(true);
    if (m_controlStyle.Contains(csClickEvents)) m_controlState.Include(csClicked);
    DoMouseDown(Message, mbLeft, {});
}

void TControl::WMLButtonDblClk(TMessage& Message) {
    SendCancelMode();
    if (m_controlStyle.Contains(csCaptureMouse)) SetMouseCapture(true);
    if (m_controlStyle.Contains(csClickEvents)) DblClick();
    DoMouseDown(Message, mbLeft, {ssDouble});
}

// The click rule: a left release inside the client area after a press inside clicks, and
// the click comes before OnMouseUp.
void TControl::WMLButtonUp(TMessage& Message) {
    if (m_controlStyle.Contains(csCaptureMouse)) SetMouseCapture(false);
    if (m_controlState.Contains(csClicked)) {
        m_controlState.Exclude(csClicked);
        if (ClientRect().Contains({GET_X_LPARAM(Message.LParam), GET_Y_LPARAM(Message.LParam)}))
            Click();
    }
    DoMouseUp(Message, mbLeft);
}

void TControl::WMRButtonDown(TMessage& Message) {
    DoMouseDown(Message, mbRight, {});
}
void TControl::WMRButtonDblClk(TMessage& Message) {
    DoMouseDown(Message, mbRight, {ssDouble});
}

void TControl::WMRButtonUp(TMessage& Message) {
    DoMouseUp(Message, mbRight);
    if (m_popupMenu && m_popupMenu->AutoPopup() && !IsDesigning()) {
        m_popupMenu->SetPopupComponent(this);
        const TPoint p =
            ClientToScreen({GET_X_LPARAM(Message.LParam), GET_Y_LPARAM(Message.LParam)});
        m_popupMenu->Popup(p.x, p.y);
        Message.Result = 1;
    }
}

void TControl::WMMButtonDown(TMessage& Message) {
    DoMouseDown(Message, mbMiddle, {});
}
void TControl::WMMButtonUp(TMessage& Message) {
    DoMouseUp(Message, mbMiddle);
}

void TControl::WMMouseMove(TMessage& Message) {
    MouseMove(ShiftStateFromMouse(Message.WParam), GET_X_LPARAM(Message.LParam),
              GET_Y_LPARAM(Message.LParam));
}

void TControl::MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    if (OnMouseDown) OnMouseDown(this, Button, Shift, X, Y);
}

void TControl::MouseMove(TShiftState Shift, int X, int Y) {
    if (OnMouseMove) OnMouseMove(this, Shift, X, Y);
}

void TControl::MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    if (OnMouseUp) OnMouseUp(this, Button, Shift, X, Y);
}

void TControl::Click() {
    if (OnClick) OnClick(this);
}

void TControl::DblClick() {
    if (OnDblClick) OnDblClick(this);
}

bool TControl::MouseCapture() const {
    auto* app = ApplicationIfAlive();
    return app && app->CaptureControl() == this;
}

void TControl::SetMouseCapture(bool v) {
    auto* app = ApplicationIfAlive();
    if (!app || MouseCapture() == v) return;
    app->SetCaptureControl(v ? this : nullptr);
}

// A press tells the form's focused control (a dropped-down list, for example) to cancel
// what it is in the middle of; LParam names the control that was pressed.
void TControl::SendCancelMode() {
    TCustomForm* form = ParentForm();
    if (!form || !form->ActiveControl() || form->ActiveControl() == this) return;
    form->ActiveControl()->Perform(CM_CANCELMODE, 0, reinterpret_cast<LPARAM>(this));
}

void TControl::WMNCHitTest(TMessage& Message) {
    DefaultHandler(Message);
}
void TControl::CMHitTest(TMessage& Message) {
    DefaultHandler(Message);
}
void TControl::WMEraseBkgnd(TMessage& Message) {
    DefaultHandler(Message);
}
void TControl::WMPaint(TMessage& Message) {
    DefaultHandler(Message);
}

void TControl::WMSize(TMessage&) {
    Resize();
}

void TControl::Resize() {
    if (OnResize) OnResize(this);
}

// A control tells its parent that the pointer entered or left it (LParam: the control).
void TControl::CMMouseEnter(TMessage& Message) {
    if (m_parent)
        m_parent->Perform(CM_MOUSEENTER, 0,
                          Message.LParam ? Message.LParam : reinterpret_cast<LPARAM>(this));
}

void TControl::CMMouseLeave(TMessage& Message) {
    if (m_parent)
        m_parent->Perform(CM_MOUSELEAVE, 0,
                          Message.LParam ? Message.LParam : reinterpret_cast<LPARAM>(this));
}

void TControl::CMEnabledChanged(TMessage&) {
    Invalidate();
}
void TControl::CMVisibleChanged(TMessage&) {}
void TControl::CMColorChanged(TMessage&) {
    Invalidate();
}
void TControl::CMFontChanged(TMessage&) {
    Invalidate();
}
void TControl::CMTextChanged(TMessage&) {}
void TControl::CMSysColorChange(TMessage&) {}
void TControl::CMDialogKey(TMessage& Message) {
    DefaultHandler(Message);
}
void TControl::CMDialogChar(TMessage& Message) {
    DefaultHandler(Message);
}
void TControl::CMButtonPressed(TMessage& Message) {
    DefaultHandler(Message);
}
void TControl::CMFocusChanged(TMessage& Message) {
    DefaultHandler(Message);
}
void TControl::CMCancelMode(TMessage& Message) {
    DefaultHandler(Message);
}

void TControl::CMParentColorChanged(TMessage&) {
    if (!m_parentColor || !m_parent) return;
    if (m_color != m_parent->Color()) {
        m_color = m_parent->Color();
        Perform(CM_COLORCHANGED);
    }
}

void TControl::CMParentFontChanged(TMessage&) {
    if (!m_parentFont || !m_parent) return;
    m_followingParentFont = true;
    m_font->Assign(*m_parent->Font());
    m_followingParentFont = false;
}

void TControl::CMParentShowHintChanged(TMessage&) {
    if (m_parentShowHint && m_parent) m_showHint = m_parent->ShowHint();
}

void TControl::ParentColorChanged() {
    Perform(CM_PARENTCOLORCHANGED);
}
void TControl::ParentFontChanged() {
    Perform(CM_PARENTFONTCHANGED);
}

// Painting.

void TControl::PaintWindow(TCanvas& canvas) {
    SendSystemMessage(WM_PAINT, reinterpret_cast<WPARAM>(&canvas));
}

TPixelBuffer& TControl::PaintBuffer(int width, int height) {
    m_paintBuffer.Resize(width, height);
    return m_paintBuffer;
}

void TControl::InvalidateRect(const TRect& r) {
    TCustomForm* form = ParentForm();
    if (!form || !Showing()) return;
    // Into form coordinates, clipped by each parent on the way.
    TRect area = r;
    const TControl* c = this;
    while (c && c != form) {
        area = Intersect(area, c->ClientRect());
        OffsetRect(area, c->Left(), c->Top());
        c = c->Parent();
    }
    if (!area.IsEmpty()) form->InvalidateFormRect(area);
}

void TControl::Invalidate() {
    InvalidateRect(ClientRect());
}

// Paints what is pending only on a form that shows: a form being read or built before it is
// shown paints nothing yet, so no component paints (or raises OnPaint) from its setters then.
void TControl::Update() {
    TCustomForm* form = ParentForm();
    if (form && form->Showing()) form->PaintPending();
}

void TControl::Repaint() {
    Invalidate();
    Update();
}

void TControl::BringToFront() {
    if (!m_parent) return;
    TWinControl* parent = m_parent;
    parent->RemoveControl(this);
    parent->InsertControl(this);
}

void TControl::SendToBack() {
    if (!m_parent) return;
    m_parent->MoveToBack(this);
}

void TControl::PaintTo(TBitmap& bitmap) {
    TCustomForm* form = ParentForm();
    bitmap.SetSize(m_width, m_height);
    if (!form) return;
    Repaint();
    const TPoint origin = form->ScreenToClient(ClientToScreen({0, 0}));
    const TPixelBuffer& frame = form->FrameBuffer();
    for (int y = 0; y < m_height; ++y)
        for (int x = 0; x < m_width; ++x)
            if (frame.Contains(origin.x + x, origin.y + y))
                bitmap.ScanLine(y)[x] = frame.At(origin.x + x, origin.y + y);
}

} // namespace qv
