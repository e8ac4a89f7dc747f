#include "WinControl.h"

#include "Application.h"
#include "Form.h"
#include "WindowTable.h"

#include "platform/core/ClassBuilder.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace qv {

const TClassInfo& TWinControl::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TWinControl>("TWinControl", &TControl::StaticClassInfo()).Build();
    return info;
}

TWinControl::TWinControl(TComponent* AOwner) : TControl(AOwner) {
    m_brush.SetColor(Color());
}

TWinControl::~TWinControl() {
    Destroying();
    // Leave the parent while this is still a windowed control, so that the parent's tab list
    // and the form's focus let go of it.
    if (Parent()) Parent()->RemoveControl(this);
    // Child controls go with their parent, also when another component owns them.
    while (!m_controls.empty()) {
        TControl* child = m_controls.back();
        RemoveControl(child);
        delete child;
    }
    if (m_handle) UnregisterWindowProc(m_handle);
}

HWND TWinControl::Handle() {
    if (!m_handle) m_handle = RegisterWindowProc([this](TMessage& m) { WndProc(m); });
    return m_handle;
}

void TWinControl::InsertControl(TControl* control) {
    control->m_parent = this;
    m_controls.push_back(control);
    if (auto* win = dynamic_cast<TWinControl*>(control)) m_tabList.push_back(win);
    if (IsDesigning()) control->SetDesigning(true);
    if (control->ParentColor()) control->ParentColorChanged();
    if (control->ParentFont()) control->ParentFontChanged();
    control->Perform(CM_PARENTSHOWHINTCHANGED);
    if (control->Align() != alNone) Realign();
    control->Invalidate();
}

void TWinControl::RemoveControl(TControl* control) {
    auto it = std::find(m_controls.begin(), m_controls.end(), control);
    if (it == m_controls.end()) return;
    control->Invalidate();
    if (auto* win = dynamic_cast<TWinControl*>(control)) {
        if (TCustomForm* form = ParentForm();
            form && form->ActiveControl() &&
            (form->ActiveControl() == win || GetParentForm(form->ActiveControl()) == form)) {
            for (TControl* c = form->ActiveControl(); c; c = c->Parent())
                if (c == win) {
                    form->SetFocusedControl(nullptr);
                    break;
                }
        }
    }
    m_controls.erase(std::find(m_controls.begin(), m_controls.end(), control));
    if (auto* win = dynamic_cast<TWinControl*>(control)) std::erase(m_tabList, win);
    control->m_parent = nullptr;
    if (control->Align() != alNone) Realign();
}

void TWinControl::MoveToBack(TControl* control) {
    auto it = std::find(m_controls.begin(), m_controls.end(), control);
    if (it == m_controls.end()) return;
    m_controls.erase(it);
    m_controls.insert(m_controls.begin(), control);
    control->Invalidate();
}

TRect TWinControl::ClientRect() const {
    return {0, 0, Width(), Height()};
}

TControl* TWinControl::ControlAtPos(TPoint pos, bool allowDisabled, bool allowWinControls) const {
    for (auto it = m_controls.rbegin(); it != m_controls.rend(); ++it) {
        TControl* c = *it;
        const bool windowed = dynamic_cast<TWinControl*>(c) != nullptr;
        if (windowed && !allowWinControls) continue;
        if (!c->Visible() || (!c->Enabled() && !allowDisabled)) continue;
        if (!c->BoundsRect().Contains(pos)) continue;
        const LPARAM local = MAKELPARAM(pos.x - c->Left(), pos.y - c->Top());
        // Windowed controls answer the window hit test; graphic ones the control hit test.
        if (windowed ? c->Perform(WM_NCHITTEST, 0, local) == HTTRANSPARENT
                     : c->Perform(CM_HITTEST, 0, local) == 0)
            continue;
        return c;
    }
    return nullptr;
}

void TWinControl::Broadcast(TMessage& Message) {
    const std::vector<TControl*> controls = m_controls;
    for (TControl* c : controls) {
        c->WndProc(Message);
        if (Message.Result != 0) return;
    }
}

void TWinControl::GetChildren(const std::function<void(TComponent*)>& Proc,
                              TComponent* Root) const {
    TControl::GetChildren(Proc, Root);
    for (TControl* c : m_controls)
        if (c->Owner() == Root) Proc(c);
}

void TWinControl::SetBounds(int ALeft, int ATop, int AWidth, int AHeight) {
    const bool resized = AWidth != Width() || AHeight != Height();
    TControl::SetBounds(ALeft, ATop, AWidth, AHeight);
    if (resized) Realign();
}

// Layout of aligned children: top and bottom bands first, then left and right, and the
// client one takes what is left, each in z-order.
void TWinControl::Realign() {
    if (m_realigning) return;
    m_realigning = true;
    TRect rect = ClientRect();
    AlignControls(rect);
    m_realigning = false;
}

void TWinControl::AlignControls(TRect& rect) {
    const auto place = [&](TAlign which) {
        for (TControl* c : m_controls) {
            if (c->Align() != which || !c->Visible()) continue;
            switch (which) {
            case alTop:
                c->SetBounds(rect.left, rect.top, rect.Width(), c->Height());
                rect.top += c->Height();
                break;
            case alBottom:
                c->SetBounds(rect.left, rect.bottom - c->Height(), rect.Width(), c->Height());
                rect.bottom -= c->Height();
                break;
            case alLeft:
                c->SetBounds(rect.left, rect.top, c->Width(), rect.Height());
                rect.left += c->Width();
                break;
            case alRight:
                c->SetBounds(rect.right - c->Width(), rect.top, c->Width(), rect.Height());
                rect.right -= c->Width();
                break;
            case alClient:
                c->SetBounds(rect.left, rect.top, rect.Width(), rect.Height());
                break;
            case alNone:
                break;
            }
        }
    };
    for (TAlign a : {alTop, alBottom, alLeft, alRight, alClient})
        place(a);
}

// Focus.

int TWinControl::TabOrder() const {
    if (!Parent()) return 0;
    const auto& list = Parent()->m_tabList;
    const auto it = std::find(list.begin(), list.end(), this);
    return it == list.end() ? -1 : static_cast<int>(it - list.begin());
}

// The tab order is a list of its own: changing it leaves the z-order alone. While a form
// file is read, the value waits until the siblings exist (Loaded).
void TWinControl::SetTabOrder(int value) {
    if (IsLoading()) {
        m_pendingTabOrder = value;
        return;
    }
    TWinControl* parent = Parent();
    if (!parent) return;
    auto& list = parent->m_tabList;
    std::erase(list, this);
    const auto index =
        static_cast<std::size_t>(std::clamp(value, 0, static_cast<int>(list.size())));
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(index), this);
}

void TWinControl::Loaded() {
    TControl::Loaded();
    // Children read with a tab order take their places, lowest first.
    std::vector<TWinControl*> ordered;
    for (TWinControl* w : m_tabList)
        if (w->m_pendingTabOrder >= 0) ordered.push_back(w);
    std::stable_sort(ordered.begin(), ordered.end(),
                     [](const TWinControl* a, const TWinControl* b) {
                         return a->m_pendingTabOrder < b->m_pendingTabOrder;
                     });
    for (TWinControl* w : ordered) {
        const int order = std::exchange(w->m_pendingTabOrder, -1);
        w->SetTabOrder(order);
    }
}

void TWinControl::GetTabOrderList(std::vector<TWinControl*>& list) const {
    for (TWinControl* w : m_tabList) {
        list.push_back(w);
        w->GetTabOrderList(list);
    }
}

bool TWinControl::CanFocus() const {
    const TCustomForm* form = ParentForm();
    if (!form) form = dynamic_cast<const TCustomForm*>(this);
    if (!form || !form->Visible() || !form->Enabled()) return false;
    for (const TControl* c = this; c && c != form; c = c->Parent())
        if (!c->Visible() || !c->Enabled()) return false;
    return true;
}

bool TWinControl::Focused() const {
    const TCustomForm* form = ParentForm();
    return form && form->ActiveControl() == this;
}

void TWinControl::SetFocus() {
    TCustomForm* form = ParentForm();
    if (!form) return;
    if (!CanFocus()) throw EInvalidOperation("Cannot focus a disabled or invisible window");
    form->SetFocusedControl(this);
}

TWinControl* TWinControl::FindNextControl(TWinControl* current, bool goForward, bool checkTabStop,
                                          bool checkParent) const {
    std::vector<TWinControl*> list;
    GetTabOrderList(list);
    if (list.empty()) return nullptr;
    const int count = static_cast<int>(list.size());
    int start = static_cast<int>(std::find(list.begin(), list.end(), current) - list.begin());
    if (start == count) start = goForward ? count - 1 : 0;
    int i = start;
    for (int n = 0; n < count; ++n) {
        i = goForward ? (i + 1) % count : (i + count - 1) % count;
        TWinControl* c = list[static_cast<std::size_t>(i)];
        if (c == current && n < count - 1) continue;
        if ((!checkTabStop || c->TabStop()) && (!checkParent || c->Parent() == this) &&
            c->CanFocus())
            return c;
    }
    return nullptr;
}

void TWinControl::SelectNext(TWinControl* current, bool goForward, bool checkTabStop) {
    if (TWinControl* next = FindNextControl(current, goForward, checkTabStop, !checkTabStop))
        next->SetFocus();
}

// Keyboard.

bool TWinControl::DoDialogKey(unsigned key, LPARAM keyData) {
    LRESULT mask = 0;
    switch (key) {
    case VK_TAB:
        mask = DLGC_WANTTAB;
        break;
    case VK_LEFT:
    case VK_RIGHT:
    case VK_UP:
    case VK_DOWN:
        mask = DLGC_WANTARROWS;
        break;
    case VK_RETURN:
    case VK_ESCAPE:
    case VK_CANCEL:
        mask = DLGC_WANTALLKEYS;
        break;
    default:
        return false;
    }
    if (Perform(WM_GETDLGCODE) & mask) return false;
    TCustomForm* form = ParentForm();
    if (!form) form = dynamic_cast<TCustomForm*>(this);
    return form && form->Perform(CM_DIALOGKEY, key, keyData) != 0;
}

void TWinControl::WMKeyDown(TMessage& Message) {
    TCustomForm* form = ParentForm();
    auto key = static_cast<unsigned>(Message.WParam);
    const TShiftState shift = KeyboardShiftState();
    if (form && form->KeyPreview() && form != this) {
        form->KeyDown(key, shift);
        if (key == 0) return;
    }
    if (DoDialogKey(key, Message.LParam)) return;
    KeyDown(key, shift);
    Message.WParam = key;
}

void TWinControl::WMKeyUp(TMessage& Message) {
    TCustomForm* form = ParentForm();
    auto key = static_cast<unsigned>(Message.WParam);
    const TShiftState shift = KeyboardShiftState();
    if (form && form->KeyPreview() && form != this) {
        form->KeyUp(key, shift);
        if (key == 0) return;
    }
    KeyUp(key, shift);
}

void TWinControl::WMChar(TMessage& Message) {
    TCustomForm* form = ParentForm();
    char ch = static_cast<char>(Message.WParam);
    if (form && form->KeyPreview() && form != this) {
        form->KeyPress(ch);
        if (ch == 0) return;
    }
    // Controls that do not take characters let them act as accelerators.
    if (!(Perform(WM_GETDLGCODE) & DLGC_WANTCHARS) && form &&
        form->Perform(CM_DIALOGCHAR, static_cast<unsigned char>(ch), Message.LParam) != 0)
        return;
    KeyPress(ch);
}

void TWinControl::WMSysChar(TMessage& Message) {
    TCustomForm* form = ParentForm();
    if (!form) form = dynamic_cast<TCustomForm*>(this);
    if (form &&
        form->Perform(CM_DIALOGCHAR, Message.WParam, Message.LParam | KF_ALTDOWN_LPARAM) != 0)
        Message.Result = 1;
}

void TWinControl::KeyDown(unsigned& Key, TShiftState Shift) {
    if (OnKeyDown) OnKeyDown(this, Key, Shift);
}

void TWinControl::KeyPress(char& Key) {
    if (OnKeyPress) OnKeyPress(this, Key);
}

void TWinControl::KeyUp(unsigned& Key, TShiftState Shift) {
    if (OnKeyUp) OnKeyUp(this, Key, Shift);
}

void TWinControl::DoEnter() {
    if (OnEnter) OnEnter(this);
}

void TWinControl::DoExit() {
    if (OnExit) OnExit(this);
}

void TWinControl::WMSetFocus(TMessage& Message) {
    DefaultHandler(Message);
}
void TWinControl::WMKillFocus(TMessage& Message) {
    DefaultHandler(Message);
}
void TWinControl::WMGetDlgCode(TMessage& Message) {
    DefaultHandler(Message);
}
void TWinControl::CMEnter(TMessage&) {
    DoEnter();
}
void TWinControl::CMExit(TMessage&) {
    DoExit();
}

void TWinControl::CMDialogKey(TMessage& Message) {
    Broadcast(Message);
}
void TWinControl::CMDialogChar(TMessage& Message) {
    Broadcast(Message);
}
void TWinControl::CMFocusChanged(TMessage& Message) {
    Broadcast(Message);
}

void TWinControl::CMColorChanged(TMessage& Message) {
    m_brush.SetColor(Color());
    TControl::CMColorChanged(Message);
    TMessage m{CM_PARENTCOLORCHANGED, 0, 0, 0};
    for (TControl* c : std::vector<TControl*>(m_controls))
        c->WndProc(m);
}

void TWinControl::CMFontChanged(TMessage& Message) {
    TControl::CMFontChanged(Message);
    TMessage m{CM_PARENTFONTCHANGED, 0, 0, 0};
    for (TControl* c : std::vector<TControl*>(m_controls))
        c->WndProc(m);
}

void TWinControl::CMEnabledChanged(TMessage& Message) {
    if (!Enabled() && Focused()) {
        if (TCustomForm* form = ParentForm()) form->SetFocusedControl(nullptr);
    }
    TControl::CMEnabledChanged(Message);
}

void TWinControl::CMVisibleChanged(TMessage& Message) {
    if (!Visible() && Focused()) {
        if (TCustomForm* form = ParentForm()) form->SetFocusedControl(nullptr);
    }
    TControl::CMVisibleChanged(Message);
}

void TWinControl::CMSysColorChange(TMessage& Message) {
    TControl::CMSysColorChange(Message);
    for (TControl* c : std::vector<TControl*>(m_controls))
        c->Perform(CM_SYSCOLORCHANGE);
    Invalidate();
}

void TWinControl::CMParentShowHintChanged(TMessage& Message) {
    TControl::CMParentShowHintChanged(Message);
    for (TControl* c : std::vector<TControl*>(m_controls))
        c->Perform(CM_PARENTSHOWHINTCHANGED);
}

void TWinControl::WndProc(TMessage& Message) {
    switch (Message.Msg) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
        WMKeyDown(Message);
        return;
    case WM_KEYUP:
    case WM_SYSKEYUP:
        WMKeyUp(Message);
        return;
    case WM_CHAR:
        WMChar(Message);
        return;
    case WM_SYSCHAR:
        WMSysChar(Message);
        return;
    case WM_SETFOCUS:
        WMSetFocus(Message);
        return;
    case WM_KILLFOCUS:
        WMKillFocus(Message);
        return;
    case WM_GETDLGCODE:
        WMGetDlgCode(Message);
        return;
    case CM_ENTER:
        CMEnter(Message);
        return;
    case CM_EXIT:
        CMExit(Message);
        return;
    default:
        TControl::WndProc(Message);
    }
}

// Painting.

// The background is the control's brush unless a handler answered the erase message. An
// opaque control (csOpaque) paints every pixel of its client area itself: erasing first
// would only be overwritten.
void TWinControl::WMEraseBkgnd(TMessage& Message) {
    auto* canvas = reinterpret_cast<TCanvas*>(Message.WParam);
    if (canvas && !ControlStyle().Contains(csOpaque)) {
        canvas->Brush().Assign(m_brush);
        canvas->FillRect(ClientRect());
    }
    Message.Result = 1;
}

void TWinControl::PaintWindow(TCanvas& canvas) {
    SendSystemMessage(WM_ERASEBKGND, reinterpret_cast<WPARAM>(&canvas));
    SendSystemMessage(WM_PAINT, reinterpret_cast<WPARAM>(&canvas));
}

// Without a handle nothing can hook the window, and none is made for the message.
LRESULT TWinControl::SendSystemMessage(UINT Msg, WPARAM WParam, LPARAM LParam) {
    if (!m_handle) return Perform(Msg, WParam, LParam);
    return SendMessage(m_handle, Msg, WParam, LParam);
}

// A small damaged part of a large control costs little: the paint is clipped to it. No clip
// (nullopt) paints the whole surface.
void TWinControl::PaintInto(TControl& control, TPixelBuffer& surface, std::optional<TRegion> clip) {
    TCanvas& canvas = control.Canvas();
    canvas.SetTarget(&surface);
    HDC dc = canvas.Handle();
    if (clip)
        dc->SelectClipRgn(std::move(*clip));
    else
        dc->SelectClipRgn(nullptr);
    struct TDetach {
        TCanvas& canvas;
        HDC dc;
        ~TDetach() {
            dc->SelectClipRgn(nullptr);
            canvas.SetTarget(nullptr);
        }
    } detach{canvas, dc};
    control.PaintWindow(canvas);
}

// A clip that covers the whole surface is no clip: drawing stops at the surface's edges
// anyway, and no region is built.
void TWinControl::PaintInto(TControl& control, TPixelBuffer& surface, const TRect& clip) {
    if (Intersect(clip, surface.Bounds()) == surface.Bounds())
        return PaintInto(control, surface, std::nullopt);
    PaintInto(control, surface, TRegion::FromRect(clip));
}

// The pixels of a control whose client area lies at `origin` of `surface`, for painting
// `visible` (surface coordinates, inside the surface and the control): `paint` gets them
// and the visible part in control coordinates. When the control lies inside the surface
// they are that part of the surface itself, so what lies beneath is already there and
// nothing is copied. A control reaching beyond the surface paints into a buffer of its own
// that starts with what lies beneath, copied back afterwards; the buffer reaches from the
// control's origin to the far corner of the visible part only, as drawing is clipped to it
// anyway. A control whose visible part lies further from its origin than any buffer can
// reach (TPixelBuffer::MaxPixels) is not painted: what lies beneath stays.
void TWinControl::PaintPixelsOf(TControl& control, TPixelBuffer& surface, TPoint origin,
                                const TRect& visible, const TPaintPixels& paint) {
    const TRect client = control.ClientRect();
    const TRect bounds = Bounds(origin.x, origin.y, client.Width(), client.Height());
    TRect local = visible;
    OffsetRect(local, -origin.x, -origin.y);
    if (Intersect(bounds, surface.Bounds()) == bounds) {
        TPixelBuffer pixels = surface.SubView(bounds);
        paint(pixels, local);
        return;
    }
    if (static_cast<std::int64_t>(local.right) * local.bottom > TPixelBuffer::MaxPixels) return;
    TPixelBuffer& own = control.PaintBuffer(local.right, local.bottom);
    CopyPixels(surface, {0, 0}, own, origin, visible);
    paint(own, local);
    CopyPixels(own, origin, surface, {0, 0}, visible);
}

// The part of `area` (this control's coordinates) its own painting needs: children with
// csOpaque paint every pixel of theirs afterwards, so what they cover is left out. Nullopt
// when they cover none of it: then all of `area` is needed.
std::optional<TRegion> TWinControl::OwnPaintClip(const TRect& area) const {
    std::vector<TRect> covered;
    for (const TControl* c : m_controls)
        if (c->Visible() && c->ControlStyle().Contains(csOpaque)) {
            const TRect part = Intersect(c->BoundsRect(), area);
            if (!part.IsEmpty()) covered.push_back(part);
        }
    if (covered.empty()) return std::nullopt;
    return TRegion::FromRect(area).Combine(TRegion::FromRects(covered), RGN_DIFF);
}

void TWinControl::PaintControls(TPixelBuffer& surface, const TRect& area) {
    for (TControl* c : std::vector<TControl*>(m_controls)) {
        if (dynamic_cast<TWinControl*>(c) || !c->Visible()) continue;
        const TRect part = Intersect(c->BoundsRect(), area);
        if (part.IsEmpty()) continue;
        PaintPixelsOf(
            *c, surface, {c->Left(), c->Top()}, part,
            [c](TPixelBuffer& pixels, const TRect& local) { PaintInto(*c, pixels, local); });
    }
}

void TWinControl::PaintTree(TPixelBuffer& frame, TPoint origin, const TRect& clip) {
    const TRect client = ClientRect();
    const TRect visible =
        Intersect(Intersect(clip, Bounds(origin.x, origin.y, client.Width(), client.Height())),
                  frame.Bounds());
    if (visible.IsEmpty()) return;
    PaintPixelsOf(*this, frame, origin, visible, [this](TPixelBuffer& pixels, const TRect& local) {
        std::optional<TRegion> own = OwnPaintClip(local);
        if (!own)
            PaintInto(*this, pixels, local);
        else if (!own->IsEmpty())
            PaintInto(*this, pixels, std::move(own));
        PaintControls(pixels, local);
    });
    for (TControl* c : std::vector<TControl*>(m_controls)) {
        auto* w = dynamic_cast<TWinControl*>(c);
        if (!w || !w->Visible()) continue;
        w->PaintTree(frame, {origin.x + w->Left(), origin.y + w->Top()}, visible);
    }
}

// TGraphicControl and TCustomControl.

const TClassInfo& TGraphicControl::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TGraphicControl>("TGraphicControl", &TControl::StaticClassInfo()).Build();
    return info;
}

TGraphicControl::TGraphicControl(TComponent* AOwner) : TControl(AOwner) {}

void TGraphicControl::WMPaint(TMessage&) {
    Paint();
}

const TClassInfo& TCustomControl::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TCustomControl>("TCustomControl", &TWinControl::StaticClassInfo()).Build();
    return info;
}

TCustomControl::TCustomControl(TComponent* AOwner) : TWinControl(AOwner) {}

void TCustomControl::WMPaint(TMessage&) {
    Paint();
}

} // namespace qv
