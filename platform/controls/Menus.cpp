#include "Menus.h"

#include "Application.h"

#include "platform/core/ClassBuilder.h"

#include <algorithm>

namespace qv {

const TClassInfo& TMenuItem::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TMenuItem>("TMenuItem", &TComponent::StaticClassInfo())
            .Property("Caption", &TMenuItem::Caption, &TMenuItem::SetCaption)
            .Property("Checked", &TMenuItem::Checked, &TMenuItem::SetChecked)
            .Default(false)
            .Property("Default", &TMenuItem::Default, &TMenuItem::SetDefault)
            .Default(false)
            .Property("Enabled", &TMenuItem::Enabled, &TMenuItem::SetEnabled)
            .Default(true)
            .Property("Visible", &TMenuItem::Visible, &TMenuItem::SetVisible)
            .Default(true)
            .Event("OnClick", &TMenuItem::OnClick)
            .Build();
    return info;
}

TMenuItem::TMenuItem(TComponent* AOwner) : TComponent(AOwner) {}

TMenuItem::~TMenuItem() {
    for (TMenuItem* child : m_items)
        child->m_parent = nullptr;
    if (m_parent) std::erase(m_parent->m_items, this);
}

void TMenuItem::Add(TMenuItem* item) {
    if (!item || item->m_parent == this) return;
    if (item->m_parent) item->m_parent->Remove(item);
    item->m_parent = this;
    m_items.push_back(item);
}

void TMenuItem::Remove(TMenuItem* item) {
    if (std::erase(m_items, item)) item->m_parent = nullptr;
}

void TMenuItem::Click() {
    if (m_enabled && OnClick) OnClick(this);
}

void TMenuItem::SetParentComponent(TComponent* Value) {
    if (auto* menu = dynamic_cast<TPopupMenu*>(Value))
        menu->Items()->Add(this);
    else if (auto* item = dynamic_cast<TMenuItem*>(Value))
        item->Add(this);
    else if (Value)
        throw EComponentError("A menu item can only be placed in a menu or another menu item");
}

void TMenuItem::GetChildren(const std::function<void(TComponent*)>& Proc, TComponent* Root) const {
    for (TMenuItem* item : m_items)
        if (item->Owner() == Root) Proc(item);
}

// The window of an open popup menu: one row per visible item.
class TMenuWindow : public TCustomForm {
public:
    static constexpr int RowHeight = 20;
    static constexpr int LineHeight = 8;

    TMenuWindow(TPopupMenu& menu, TPoint at) : TCustomForm(nullptr), m_menu(menu) {
        SetColor(clMenu);
        Font()->SetColor(clMenuText);
        for (int i = 0; i < menu.Items()->Count(); ++i)
            if (menu.Items()->Items(i)->Visible()) m_rows.push_back(menu.Items()->Items(i));
        int width = 80, height = 4;
        TBitmap measure(1, 1);
        measure.Canvas().Font().Assign(*Font());
        for (TMenuItem* item : m_rows) {
            width = std::max(width, measure.Canvas().TextWidth(item->Caption()) + 40);
            height += item->IsLine() ? LineHeight : RowHeight;
        }
        SetBounds(at.x, at.y, width, height);
    }

    void Choose(int row) {
        if (row < 0 || row >= static_cast<int>(m_rows.size())) return;
        TMenuItem* item = m_rows[static_cast<std::size_t>(row)];
        if (item->IsLine() || !item->Enabled()) return;
        m_menu.CloseMenu(); // frees this window later; the item outlives it
        item->Click();
    }

    // The row under a point of the window; -1 outside every row (a grab brings moves and
    // releases from anywhere on the screen).
    int RowAt(TPoint at) const {
        if (!ClientRect().Contains(at)) return -1;
        const int y = at.y;
        int top = 2;
        for (std::size_t i = 0; i < m_rows.size(); ++i) {
            const int h = m_rows[i]->IsLine() ? LineHeight : RowHeight;
            if (y >= top && y < top + h) return static_cast<int>(i);
            top += h;
        }
        return -1;
    }

    bool IsPopupWindow() const override { return true; }

protected:
    void CMCancelMode(TMessage&) override { m_menu.CloseMenu(); }

    void Paint() override {
        TCanvas& c = Canvas();
        c.Brush().SetColor(clMenu);
        c.Pen().SetColor(clBtnShadow);
        c.Rectangle(ClientRect());
        int top = 2;
        for (std::size_t i = 0; i < m_rows.size(); ++i) {
            TMenuItem* item = m_rows[i];
            if (item->IsLine()) {
                c.Pen().SetColor(clBtnShadow);
                c.MoveTo(4, top + LineHeight / 2);
                c.LineTo(Width() - 4, top + LineHeight / 2);
                top += LineHeight;
                continue;
            }
            const bool hot = static_cast<int>(i) == m_hot && item->Enabled();
            c.Brush().SetColor(hot ? clHighlight : clMenu);
            c.FillRect({2, top, Width() - 2, top + RowHeight});
            c.Brush().SetStyle(bsClear);
            TFontStyles style;
            if (item->Default()) style.Include(fsBold);
            c.Font().SetStyle(style);
            c.Font().SetColor(!item->Enabled() ? clGrayText : hot ? clHighlightText : clMenuText);
            TRect text{20, top, Width() - 4, top + RowHeight};
            c.DrawText(item->Caption(), text, DT_SINGLELINE | DT_VCENTER | DT_LEFT);
            if (item->Checked()) c.TextOut(6, top + 3, "x");
            c.Brush().SetStyle(bsSolid);
            top += RowHeight;
        }
    }

    void WMMouseMove(TMessage& Message) override {
        const int row = RowAt({GET_X_LPARAM(Message.LParam), GET_Y_LPARAM(Message.LParam)});
        if (row != m_hot) {
            m_hot = row;
            Invalidate();
        }
        TCustomForm::WMMouseMove(Message);
    }

    void WMLButtonUp(TMessage& Message) override {
        TCustomForm::WMLButtonUp(Message);
        Choose(RowAt({GET_X_LPARAM(Message.LParam), GET_Y_LPARAM(Message.LParam)}));
    }

    void KeyDown(unsigned& Key, TShiftState Shift) override {
        TCustomForm::KeyDown(Key, Shift);
        if (Key == VK_ESCAPE)
            m_menu.CloseMenu();
        else if (Key == VK_RETURN)
            Choose(m_hot);
        else if (Key == VK_DOWN || Key == VK_UP) {
            const int n = static_cast<int>(m_rows.size());
            for (int step = 0; step < n; ++step) {
                m_hot = ((Key == VK_DOWN ? m_hot + 1 : m_hot - 1) + n) % n;
                if (!m_rows[static_cast<std::size_t>(m_hot)]->IsLine()) break;
            }
            Invalidate();
        }
    }

private:
    TPopupMenu& m_menu;
    std::vector<TMenuItem*> m_rows;
    int m_hot{-1};
};

const TClassInfo& TPopupMenu::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TPopupMenu>("TPopupMenu", &TComponent::StaticClassInfo())
            .Property("AutoPopup", &TPopupMenu::AutoPopup, &TPopupMenu::SetAutoPopup)
            .Default(true)
            .Event("OnPopup", &TPopupMenu::OnPopup)
            .Build();
    return info;
}

TPopupMenu::TPopupMenu(TComponent* AOwner)
    : TComponent(AOwner), m_items(std::make_unique<TMenuItem>(nullptr)) {}

TPopupMenu::~TPopupMenu() {
    CloseMenu();
}

void TPopupMenu::SetPopupComponent(TComponent* v) {
    m_popupComponent = v;
    if (v) v->FreeNotification(this);
}

void TPopupMenu::Notification(TComponent* AComponent, TOperation Operation) {
    TComponent::Notification(AComponent, Operation);
    if (Operation == opRemove && AComponent == m_popupComponent) m_popupComponent = nullptr;
}

TMenuItem* TPopupMenu::DefaultItem() const {
    for (int i = 0; i < m_items->Count(); ++i)
        if (m_items->Items(i)->Default()) return m_items->Items(i);
    return nullptr;
}

void TPopupMenu::GetChildren(const std::function<void(TComponent*)>& Proc, TComponent* Root) const {
    m_items->GetChildren(Proc, Root);
}

void TPopupMenu::Popup(int X, int Y) {
    CloseMenu();
    if (OnPopup) OnPopup(this);
    auto* window = new TMenuWindow(*this, {X, Y});
    m_window = window;
    window->Show();
}

void TPopupMenu::CloseMenu() {
    if (!m_window) return;
    TCustomForm* window = m_window;
    m_window = nullptr;
    window->Release();
}

TCustomForm* TPopupMenu::MenuWindow() const {
    return m_window;
}

} // namespace qv
