#include "Form.h"

#include "Application.h"
#include "WindowTable.h"

#include "platform/core/ClassBuilder.h"

namespace qv {

TCustomForm* GetParentForm(const TControl* control) {
    const TControl* c = control;
    while (c && c->Parent())
        c = c->Parent();
    return dynamic_cast<TCustomForm*>(const_cast<TControl*>(c));
}

const TClassInfo& TCustomForm::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TCustomForm>("TCustomForm", &TWinControl::StaticClassInfo()).Build();
    return info;
}

TCustomForm::TCustomForm(TComponent* AOwner) : TWinControl(AOwner) {
    SetVisible(false);
    SetColor(clBtnFace);
    SetParentFont(false);
    SetBounds(0, 0, 320, 240);
    Application().RegisterForm(this);
}

TCustomForm::~TCustomForm() {
    Destroying();
    if (OnDestroy) OnDestroy(this);
    DestroyNativeWindow();
    if (auto* app = ApplicationIfAlive()) app->FormDestroyed(this);
    // Free owned components while this form is still a form: their notifications reach it.
    DestroyComponents();
}

void TCustomForm::Loaded() {
    TWinControl::Loaded();
    if (!m_createCalled) {
        m_createCalled = true;
        if (OnCreate) OnCreate(this);
    }
}

void TCustomForm::SetWindowState(TWindowState v) {
    if (v == m_windowState) return;
    m_windowState = v;
    if (m_native) {
        static constexpr TNativeWindowState states[] = {TNativeWindowState::Normal,
                                                        TNativeWindowState::Minimized,
                                                        TNativeWindowState::Maximized};
        Application().Backend().SetWindowState(m_native, states[v]);
        if (v == wsMaximized) UpdateSizeLimits();
    }
}

void TCustomForm::SetActiveControl(TWinControl* control) {
    if (control && (GetParentForm(control) != this || !control->CanFocus()))
        throw EInvalidOperation("Cannot focus a disabled or invisible window");
    SetFocusedControl(control);
}

bool TCustomForm::SetFocusedControl(TWinControl* control) {
    if (control == m_activeControl) return true;
    TWinControl* old = m_activeControl;
    if (old && old->HandleAllocated())
        SendMessage(old->Handle(), WM_KILLFOCUS, control ? control->Handle() : 0);
    m_activeControl = control;
    // CM_EXIT from the old control up to the common parent, CM_ENTER down to the new one.
    const auto isAncestorOf = [](const TControl* a, const TControl* c) {
        for (; c; c = c->Parent())
            if (c == a) return true;
        return false;
    };
    for (TWinControl* c = old; c && c != this && !isAncestorOf(c, control); c = c->Parent())
        c->Perform(CM_EXIT);
    std::vector<TWinControl*> entering;
    for (TWinControl* c = control; c && c != this && !isAncestorOf(c, old); c = c->Parent())
        entering.push_back(c);
    for (auto it = entering.rbegin(); it != entering.rend(); ++it)
        (*it)->Perform(CM_ENTER);
    FocusChanged();
    if (control) {
        SendMessage(control->Handle(), WM_SETFOCUS, old ? old->Handle() : 0);
        if (m_native) Application().Backend().SetFocus(m_native);
    }
    return true;
}

void TCustomForm::FocusChanged() {
    Perform(CM_FOCUSCHANGED, 0, reinterpret_cast<LPARAM>(m_activeControl));
}

void TCustomForm::WndProc(TMessage& Message) {
    if (Message.Msg == WM_GETMINMAXINFO) {
        WMGetMinMaxInfo(Message);
        return;
    }
    TWinControl::WndProc(Message);
}

void TCustomForm::WMGetMinMaxInfo(TMessage& Message) {
    DefaultHandler(Message);
}

void TCustomForm::UpdateSizeLimits() {
    if (!m_native) return;
    TBackend& backend = Application().Backend();
    const TRect screen = backend.ScreenBounds();
    const TRect work = backend.WorkArea();
    TMinMaxInfo info;
    info.ptMaxSize = {work.Width(), work.Height()};
    info.ptMaxPosition = {work.left, work.top};
    info.ptMaxTrackSize = {screen.Width(), screen.Height()};
    SendMessage(Handle(), WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
    backend.SetSizeLimits(m_native, {info.ptMinTrackSize.x, info.ptMinTrackSize.y},
                          {info.ptMaxTrackSize.x, info.ptMaxTrackSize.y});
    m_maximizedBounds =
        Bounds(info.ptMaxPosition.x, info.ptMaxPosition.y, info.ptMaxSize.x, info.ptMaxSize.y);
    // The window manager maximises to the work area by itself; other bounds the form sets.
    if (m_windowState == wsMaximized && m_maximizedBounds != work && !m_maximizedBounds.IsEmpty() &&
        BoundsRect() != m_maximizedBounds)
        SetBounds(m_maximizedBounds.left, m_maximizedBounds.top, m_maximizedBounds.Width(),
                  m_maximizedBounds.Height());
}

void TCustomForm::SetSkipTaskbar(bool skip) {
    if (skip == m_skipTaskbar) return;
    m_skipTaskbar = skip;
    if (m_native) Application().Backend().SetSkipTaskbar(m_native, skip);
}

// Tab moves the focus through the form; arrows move it among the focused control's siblings.
void TCustomForm::CMDialogKey(TMessage& Message) {
    const auto key = static_cast<unsigned>(Message.WParam);
    if (!KeyboardShiftState().Contains(ssAlt) && !KeyboardShiftState().Contains(ssCtrl)) {
        if (key == VK_TAB) {
            SelectNext(m_activeControl, !KeyboardShiftState().Contains(ssShift), true);
            Message.Result = 1;
            return;
        }
        if ((key == VK_LEFT || key == VK_RIGHT || key == VK_UP || key == VK_DOWN) &&
            m_activeControl && m_activeControl->Parent()) {
            m_activeControl->Parent()->SelectNext(m_activeControl,
                                                  key == VK_RIGHT || key == VK_DOWN, false);
            Message.Result = 1;
            return;
        }
    }
    TWinControl::CMDialogKey(Message);
}

void TCustomForm::CMTextChanged(TMessage& Message) {
    TWinControl::CMTextChanged(Message);
    if (m_native) Application().Backend().SetWindowTitle(m_native, Caption());
}

void TCustomForm::CMVisibleChanged(TMessage& Message) {
    TWinControl::CMVisibleChanged(Message);
    TBackend& backend = Application().Backend();
    if (Visible()) {
        if (!m_createCalled) {
            m_createCalled = true;
            if (OnCreate) OnCreate(this);
        }
        CreateNativeWindow();
        if (OnShow) OnShow(this);
        UpdateSizeLimits();
        backend.SetWindowVisible(m_native, true);
        InvalidateFormRect(ClientRect());
        if (!IsPopupWindow()) Application().SetActiveForm(this); // menus and hints leave it alone
        if (!m_activeControl)
            if (TWinControl* first = FindNextControl(nullptr, true, true, false))
                SetFocusedControl(first);
    } else if (m_native) {
        if (OnHide) OnHide(this);
        backend.SetWindowVisible(m_native, false);
        if (Application().ActiveForm() == this) Application().SetActiveForm(nullptr);
    }
}

void TCustomForm::PlaceOnScreen() {
    if (m_position != poScreenCenter && m_position != poDesktopCenter &&
        m_position != poMainFormCenter && m_position != poOwnerFormCenter)
        return;
    const TRect area = Application().Backend().WorkArea();
    SetBounds(area.left + (area.Width() - Width()) / 2, area.top + (area.Height() - Height()) / 2,
              Width(), Height());
}

void TCustomForm::CreateNativeWindow() {
    if (m_native) return;
    PlaceOnScreen();
    TNativeWindowParams params;
    params.title = Caption();
    params.bounds = BoundsRect();
    params.popup = IsPopupWindow();
    params.skipTaskbar = m_skipTaskbar;
    m_native = Application().Backend().CreateNativeWindow(params);
    AttachFrameStorage();
    if (m_windowState != wsNormal) {
        const TWindowState state = m_windowState;
        m_windowState = wsNormal;
        SetWindowState(state);
    }
}

void TCustomForm::DestroyNativeWindow() {
    if (!m_native) return;
    if (auto* app = ApplicationIfAlive()) {
        DetachFrameStorage(); // the storage goes with the window
        app->Backend().DestroyNativeWindow(m_native);
    } else {
        m_frame = {}; // the storage went with the backend
    }
    m_native = 0;
}

void TCustomForm::SetBounds(int ALeft, int ATop, int AWidth, int AHeight) {
    TWinControl::SetBounds(ALeft, ATop, AWidth, AHeight);
    ResizeFrame();
    if (m_native) Application().Backend().SetWindowBounds(m_native, BoundsRect());
}

void TCustomForm::ResizeFrame() {
    if (m_frame.Width() == Width() && m_frame.Height() == Height()) return;
    m_frame.Resize(Width(), Height()); // a view of the old storage becomes a copy
    AttachFrameStorage();
    m_damage.clear();
    InvalidateFormRect(ClientRect());
}

// While the form has a native window, the frame buffer lives in memory the backend hands
// out (a shared-memory image on X11), so presenting sends it without copying it first.
void TCustomForm::AttachFrameStorage() {
    if (!m_native || m_frame.IsEmpty()) return;
    TBackend& backend = Application().Backend();
    TPixelBuffer storage = backend.FrameStorage(m_native, {m_frame.Width(), m_frame.Height()});
    if (storage.IsEmpty() || storage.Row(0) == m_frame.Row(0)) return;
    backend.AwaitFrameIdle(m_native);
    CopyPixels(m_frame, {0, 0}, storage, {0, 0}, m_frame.Bounds());
    m_frame = std::move(storage);
}

// Moves the frame buffer back into memory of the form's own.
void TCustomForm::DetachFrameStorage() {
    if (m_frame.IsView()) m_frame = TPixelBuffer(m_frame);
}

void TCustomForm::InvalidateFormRect(const TRect& r) {
    MergeDamage(Intersect(r, ClientRect()));
}

// Keeps a short list of damaged rectangles; overlapping ones merge, and a long list
// collapses into its bounding box.
void TCustomForm::MergeDamage(TRect r) {
    if (r.IsEmpty()) return;
    for (auto it = m_damage.begin(); it != m_damage.end();) {
        if (!Intersect(*it, r).IsEmpty()) {
            r = {std::min(r.left, it->left), std::min(r.top, it->top), std::max(r.right, it->right),
                 std::max(r.bottom, it->bottom)};
            m_damage.erase(it);
            it = m_damage.begin();
        } else {
            ++it;
        }
    }
    m_damage.push_back(r);
    constexpr std::size_t maxRects = 16;
    if (m_damage.size() > maxRects) {
        TRect all = m_damage.front();
        for (const TRect& d : m_damage)
            all = {std::min(all.left, d.left), std::min(all.top, d.top),
                   std::max(all.right, d.right), std::max(all.bottom, d.bottom)};
        m_damage = {all};
    }
}

bool TCustomForm::PaintPending() {
    if (m_damage.empty()) return false;
    const std::vector<TRect> damage = std::move(m_damage);
    m_damage.clear();
    const bool present = m_native && Visible();
    TBackend& backend = Application().Backend();
    if (m_native) backend.AwaitFrameIdle(m_native); // the last present has been read
    for (const TRect& r : damage)
        PaintTree(m_frame, {0, 0}, r);
    if (present)
        for (const TRect& r : damage)
            backend.Present(m_native, m_frame, r);
    return true;
}

void TCustomForm::Screenshot(TBitmap& bitmap) {
    InvalidateFormRect(ClientRect());
    PaintPending();
    bitmap.SetSize(m_frame.Width(), m_frame.Height());
    bitmap.Pixels() = m_frame;
}

void TCustomForm::Paint() {
    if (OnPaint) OnPaint(this);
}

void TCustomForm::WMPaint(TMessage&) {
    Paint();
}

TModalResult TCustomForm::ShowModal() {
    if (Visible()) throw EInvalidOperation("Cannot make a visible window modal");
    TApplication& app = Application();
    m_modalResult = mrNone;
    ++m_modalLevel;
    Show();
    while (m_modalResult == mrNone && !app.Terminated())
        app.HandleMessage();
    --m_modalLevel;
    const TModalResult result = m_modalResult;
    Hide();
    return result;
}

void TCustomForm::Close() {
    bool canClose = true;
    if (OnCloseQuery) OnCloseQuery(this, canClose);
    if (!canClose) return;
    TCloseAction action = m_formStyle == fsMDIChild ? caMinimize : caHide;
    if (OnClose) OnClose(this, action);
    if (action == caNone) return;
    if (Modal()) {
        if (m_modalResult == mrNone) m_modalResult = mrCancel;
        return;
    }
    if (auto* app = ApplicationIfAlive(); app && app->MainForm() == this) {
        app->Terminate();
        Hide();
        return;
    }
    switch (action) {
    case caHide:
        Hide();
        break;
    case caMinimize:
        SetWindowState(wsMinimized);
        break;
    case caFree:
        Release();
        break;
    case caNone:
        break;
    }
}

void TCustomForm::Release() {
    Hide();
    TCustomForm* self = this;
    QueueCall([self] {
        auto* app = ApplicationIfAlive();
        if (app && app->IsForm(self)) delete self;
    });
}

const TClassInfo& TForm::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TForm>("TForm", &TCustomForm::StaticClassInfo())
            .Property("Caption", &TForm::Caption, &TForm::SetCaption)
            .Property("Color", ColorType(), &TForm::Color, &TForm::SetColor)
            .Default(clBtnFace)
            .Object("Font", &TForm::Font)
            .Property("BorderStyle", &TForm::BorderStyle, &TForm::SetBorderStyle)
            .Default(bsSizeable)
            .Property("Position", &TForm::Position, &TForm::SetPosition)
            .Default(poDesigned)
            .Property("WindowState", &TForm::WindowState, &TForm::SetWindowState)
            .Default(wsNormal)
            .Property("FormStyle", &TForm::FormStyle, &TForm::SetFormStyle)
            .Default(fsNormal)
            .Property("KeyPreview", &TForm::KeyPreview, &TForm::SetKeyPreview)
            .Default(false)
            .Property("ClientWidth", &TForm::ClientWidth, &TForm::SetClientWidth)
            .NotStored()
            .Property("ClientHeight", &TForm::ClientHeight, &TForm::SetClientHeight)
            .NotStored()
            .Event("OnCreate", &TForm::OnCreate)
            .Event("OnShow", &TForm::OnShow)
            .Event("OnHide", &TForm::OnHide)
            .Event("OnClose", &TForm::OnClose)
            .Event("OnCloseQuery", &TForm::OnCloseQuery)
            .Event("OnDestroy", &TForm::OnDestroy)
            .Event("OnPaint", &TForm::OnPaint)
            .Event("OnClick", &TForm::OnClick)
            .Event("OnKeyDown", &TForm::OnKeyDown)
            .Event("OnKeyPress", &TForm::OnKeyPress)
            .Event("OnKeyUp", &TForm::OnKeyUp)
            .Event("OnResize", &TForm::OnResize)
            .Build();
    return info;
}

TForm::TForm(TComponent* AOwner) : TCustomForm(AOwner) {}

} // namespace qv
