#include "TqTrayIcon.h"

#include "FormHelpers.h"

#include "platform/backend/TrayShell.h"
#include "platform/controls/Application.h"
#include "platform/controls/Form.h"
#include "platform/core/ClassBuilder.h"

#include <algorithm>
#include <cstring>

namespace qv {

const TClassInfo& TqTrayIcon::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TqTrayIcon>("TqTrayIcon", &TComponent::StaticClassInfo())
            .Reference("PopupMenu", &TqTrayIcon::PopupMenu, &TqTrayIcon::SetPopupMenu)
            .Reference("LeftPopupMenu", &TqTrayIcon::LeftPopupMenu, &TqTrayIcon::SetLeftPopupMenu)
            .Property("HideParentForm", &TqTrayIcon::HideParentForm, &TqTrayIcon::SetHideParentForm)
            .Default(Defaults::HideParentForm)
            .Property("ShowDesigning", &TqTrayIcon::ShowDesigning, &TqTrayIcon::SetShowDesigning)
            .Default(Defaults::ShowDesigning)
            .Property("Active", &TqTrayIcon::Active, &TqTrayIcon::SetActive)
            .Default(Defaults::Active)
            .Object("Icon", &TqTrayIcon::Icon)
            .Property("ToolTip", &TqTrayIcon::ToolTip, &TqTrayIcon::SetToolTip)
            .Event("OnClick", &TqTrayIcon::OnClick)
            .Event("OnDblClick", &TqTrayIcon::OnDblClick)
            .Event("OnRightClick", &TqTrayIcon::OnRightClick)
            .Event("OnRightDblClick", &TqTrayIcon::OnRightDblClick)
            .Event("OnMidClick", &TqTrayIcon::OnMidClick)
            .Event("OnMidDblClick", &TqTrayIcon::OnMidDblClick)
            .Event("OnMouseMove", &TqTrayIcon::OnMouseMove)
            .Event("OnMouseDown", &TqTrayIcon::OnMouseDown)
            .Event("OnMouseUp", &TqTrayIcon::OnMouseUp)
            .Event("OnleftMenu", &TqTrayIcon::OnleftMenu)
            .Event("OnRightMenu", &TqTrayIcon::OnRightMenu)
            .Event("OnDefaultMenu", &TqTrayIcon::OnDefaultMenu)
            .Property("DoDefaultMenu", &TqTrayIcon::DoDefaultMenu, &TqTrayIcon::SetDoDefaultMenu)
            .Default(Defaults::DoDefaultMenu)
            .Event("OnAskEndSession", &TqTrayIcon::OnAskEndSession)
            .Build();
    return info;
}

// The window exists before FindForm can fail; a failing constructor frees it with the member.
TqTrayIcon::TqTrayIcon(TComponent* AOwner)
    : TComponent(AOwner), m_icon(std::make_unique<TIcon>()),
      m_window(AllocateHWnd([this](TMessage& Message) { WindowProc(Message); })) {
    const TCustomForm& form = FindForm(*this);
    if (&form != Application().MainForm()) SetHideParentForm(m_hideParentForm);
}

TqTrayIcon::~TqTrayIcon() {
    if (Shown()) DeleteIcon();
    if (m_rightMenu) m_rightMenu->RemoveFreeNotification(this);
    if (m_leftMenu) m_leftMenu->RemoveFreeNotification(this);
}

bool TqTrayIcon::Shown() const {
    return IsDesigning() ? m_showDesigning : m_active;
}

void TqTrayIcon::SetMenu(TPopupMenu*& field, TPopupMenu* value) {
    if (field == value) return;
    TPopupMenu* old = field;
    field = value;
    if (old && old != m_rightMenu && old != m_leftMenu) old->RemoveFreeNotification(this);
    if (field) field->FreeNotification(this);
}

void TqTrayIcon::Notification(TComponent* AComponent, TOperation Operation) {
    TComponent::Notification(AComponent, Operation);
    if (Operation != opRemove) return;
    if (AComponent == m_rightMenu) m_rightMenu = nullptr;
    if (AComponent == m_leftMenu) m_leftMenu = nullptr;
}

void TqTrayIcon::SetHideParentForm(bool value) {
    m_hideParentForm = value;
    if (!IsDesigning()) PostMessage(m_window.handle, ShowFormMessage);
}

void TqTrayIcon::SetShowDesigning(bool value) {
    if (!IsDesigning() || value == m_showDesigning) return;
    m_showDesigning = value;
    if (value)
        AddIcon();
    else
        DeleteIcon();
}

// A refused add leaves Active true: the shell's answer is for the add step's caller only.
void TqTrayIcon::SetActive(bool value) {
    if (value == m_active) return;
    m_active = value;
    if (IsDesigning()) return;
    if (value)
        AddIcon();
    else
        DeleteIcon();
}

void TqTrayIcon::SetIcon(const TIcon* value) {
    if (value)
        m_icon->Assign(*value);
    else
        m_icon->SetImage({});
    ModifyIcon();
    PostMessage(m_window.handle, UpdateMessage);
}

void TqTrayIcon::SetToolTip(const std::string& value) {
    m_toolTip = value.substr(0, std::min(value.size(), Defaults::ToolTipLength));
    ModifyIcon();
    PostMessage(m_window.handle, UpdateMessage);
}

void TqTrayIcon::FillData() {
    m_data = {};
    m_data.cbSize = TNotifyIconData::ClassicSize;
    m_data.hWnd = m_window.handle;
    m_data.uID = static_cast<std::uint32_t>(Tag());
    m_data.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
    m_data.uCallbackMessage = CallbackMessage;
    m_data.hIcon = &m_icon->Image();
    std::memcpy(m_data.szTip, m_toolTip.data(), m_toolTip.size()); // at most 62 + the zero
}

bool TqTrayIcon::AddIcon() {
    FillData();
    const bool done = Shell_NotifyIcon(NIM_ADD, m_data);
    PostMessage(m_window.handle, UpdateMessage);
    return done;
}

void TqTrayIcon::ModifyIcon() {
    FillData();
    if (m_active) Shell_NotifyIcon(NIM_MODIFY, m_data);
}

void TqTrayIcon::DeleteIcon() {
    Shell_NotifyIcon(NIM_DELETE, m_data);
}

TShiftState TqTrayIcon::GetShift() const {
    TShiftState shift;
    if (GetKeyState(VK_SHIFT) < 0) shift.Include(ssShift);
    if (GetKeyState(VK_CONTROL) < 0) shift.Include(ssCtrl);
    if (GetKeyState(VK_MENU) < 0) shift.Include(ssAlt);
    return shift;
}

// Every message but the four below is left unanswered (0), without default processing.
void TqTrayIcon::WindowProc(TMessage& Message) {
    Message.Result = 0;
    switch (Message.Msg) {
    case ShowFormMessage:
        ShowFormStep();
        break;
    case UpdateMessage:
        ModifyIcon();
        break;
    case CallbackMessage:
        MouseStep(static_cast<UINT>(Message.LParam));
        break;
    case WM_QUERYENDSESSION:
        QueryEndSession(Message);
        break;
    default:
        break;
    }
}

// The main form is never shown or hidden this way.
void TqTrayIcon::ShowFormStep() {
    TCustomForm* form = nullptr;
    try {
        form = &FindForm(*this);
    } catch (const EComponentError&) {
        return;
    }
    if (form != Application().MainForm()) form->SetVisible(!m_hideParentForm);
}

void TqTrayIcon::QueryEndSession(TMessage& Message) {
    TCustomForm* main = Application().MainForm();
    TCustomForm* form = nullptr;
    try {
        form = &FindForm(*this);
    } catch (const EComponentError&) {
        return;
    }
    if (!main || form->Handle() != main->Handle()) return;
    bool doEnd = true;
    if (OnAskEndSession) OnAskEndSession(doEnd);
    Message.Result = doEnd ? 1 : 0;
}

void TqTrayIcon::MouseStep(UINT mouseMessage) {
    const TPoint at = Application().Backend().CursorPos(); // the pointer itself, over the icon
    const TShiftState keys = GetShift();
    const auto with = [&keys](TShiftStateFlag flag) {
        TShiftState shift = keys;
        shift.Include(flag);
        return shift;
    };
    const auto fire = [&](const TMouseEvent& event, TMouseButtonKind button, TShiftStateFlag flag) {
        if (event) event(this, button, with(flag), at.x, at.y);
    };
    switch (mouseMessage) {
    case WM_MOUSEMOVE:
        if (OnMouseMove) OnMouseMove(this, keys, at.x, at.y);
        break;
    case WM_LBUTTONDOWN:
        m_leftDown = true;
        fire(OnMouseDown, mbLeft, ssLeft);
        break;
    case WM_LBUTTONUP:
        if (m_leftDown) {
            m_leftDown = false;
            if (OnClick) OnClick(this);
            CheckMenuPopup(at, true);
        }
        fire(OnMouseUp, mbLeft, ssLeft);
        break;
    case WM_LBUTTONDBLCLK:
        if (!CheckMenu() && OnDblClick) OnDblClick(this);
        break;
    case WM_RBUTTONDOWN:
        m_rightDown = true;
        fire(OnMouseDown, mbRight, ssRight);
        break;
    case WM_RBUTTONUP:
        if (m_rightDown) {
            m_rightDown = false;
            fire(OnRightClick, mbRight, ssRight);
            CheckMenuPopup(at, false);
        }
        fire(OnMouseUp, mbRight, ssRight);
        break;
    case WM_RBUTTONDBLCLK:
        fire(OnRightDblClick, mbRight, ssRight);
        break;
    case WM_MBUTTONDOWN:
        m_middleDown = true;
        fire(OnMouseDown, mbMiddle, ssMiddle);
        break;
    case WM_MBUTTONUP:
        if (m_middleDown) {
            m_middleDown = false;
            fire(OnMidClick, mbMiddle, ssMiddle);
        }
        fire(OnMouseUp, mbMiddle, ssMiddle);
        break;
    case WM_MBUTTONDBLCLK:
        fire(OnMidDblClick, mbMiddle, ssMiddle);
        break;
    default:
        break;
    }
}

// The menu closes on a press anywhere else on the screen: its window grabs the pointer; the empty
// message to the main form follows the classic recipe for menus of hidden windows.
void TqTrayIcon::CheckMenuPopup(TPoint point, bool left) {
    if (IsDesigning()) return;
    TPopupMenu* menu = left ? m_leftMenu : m_rightMenu;
    if (!menu || !menu->AutoPopup()) return;
    menu->SetPopupComponent(this);
    const TNotifyEvent& event = left ? OnleftMenu : OnRightMenu;
    if (event) event(this);
    menu->Popup(point.x, point.y);
    if (TCustomForm* window = menu->MenuWindow(); window && window->NativeWindow())
        Application().Backend().GrabPointer(window->NativeWindow());
    if (TCustomForm* main = Application().MainForm()) PostMessage(main->Handle(), WM_NULL);
}

bool TqTrayIcon::ShowBalloon(const std::string& text, int timeoutMs) {
    if (!Shown()) return false;
    FillData();
    TTrayIconRecord record;
    record.window = m_data.hWnd;
    record.id = m_data.uID;
    return Application().Backend().TrayShell().ShowMessage(record, text, timeoutMs);
}

bool TqTrayIcon::CheckMenu() {
    if (!m_doDefaultMenu || IsDesigning() || !m_active || !m_rightMenu || !m_rightMenu->Items())
        return false;
    const TMenuItem& items = *m_rightMenu->Items();
    TMenuItem* item = nullptr;
    for (int i = 0; i < items.Count() && !item; ++i)
        if (items.Items(i)->Default()) item = items.Items(i);
    if (!item) return false;
    bool doDefault = true;
    if (OnDefaultMenu) OnDefaultMenu(this, doDefault);
    if (!doDefault) return false;
    item->Click();
    return true;
}

} // namespace qv
