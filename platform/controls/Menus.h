#pragma once
// Popup menus: TPopupMenu holds a tree of TMenuItem. Popup(X, Y) shows the items in a
// popup window of their own at a screen point; a click on an item (or Enter) runs its
// OnClick, Escape or a click elsewhere closes the menu.

#include "Form.h"

#include "platform/core/Component.h"

#include <string>
#include <vector>

namespace qv {

class TMenuItem : public TComponent {
    QV_OBJECT
public:
    explicit TMenuItem(TComponent* AOwner);
    ~TMenuItem() override;

    const std::string& Caption() const { return m_caption; }
    void SetCaption(const std::string& v) { m_caption = v; }
    bool Checked() const { return m_checked; }
    void SetChecked(bool v) { m_checked = v; }
    bool Enabled() const { return m_enabled; }
    void SetEnabled(bool v) { m_enabled = v; }
    bool Visible() const { return m_visible; }
    void SetVisible(bool v) { m_visible = v; }
    bool Default() const { return m_default; }
    void SetDefault(bool v) { m_default = v; }
    bool IsLine() const { return m_caption == "-"; }

    int Count() const { return static_cast<int>(m_items.size()); }
    TMenuItem* Items(int index) const { return m_items.at(static_cast<std::size_t>(index)); }
    void Add(TMenuItem* item);
    void Remove(TMenuItem* item);
    TMenuItem* Parent() const { return m_parent; }

    virtual void Click();
    TNotifyEvent OnClick;

    bool HasParent() const override { return m_parent != nullptr; }
    TComponent* GetParentComponent() const override { return m_parent; }
    void SetParentComponent(TComponent* Value) override;
    void GetChildren(const std::function<void(TComponent*)>& Proc, TComponent* Root) const override;

private:
    std::string m_caption;
    bool m_checked{false};
    bool m_enabled{true};
    bool m_visible{true};
    bool m_default{false};
    TMenuItem* m_parent{nullptr};
    std::vector<TMenuItem*> m_items; // not owned: the owner frees them
};

class TPopupMenu : public TComponent {
    QV_OBJECT
public:
    explicit TPopupMenu(TComponent* AOwner);
    ~TPopupMenu() override;

    TMenuItem* Items() const { return m_items.get(); }
    bool AutoPopup() const { return m_autoPopup; }
    void SetAutoPopup(bool v) { m_autoPopup = v; }
    TComponent* PopupComponent() const { return m_popupComponent; }
    void SetPopupComponent(TComponent* v);
    // The item that runs on a double click where a control asks for it, or null.
    TMenuItem* DefaultItem() const;

    // Shows the menu at a screen point and returns at once; the menu's window closes
    // itself. Also closes a menu still open.
    virtual void Popup(int X, int Y);
    void CloseMenu();
    bool IsOpen() const { return m_window != nullptr; }
    // The window of the open menu (null when closed), for tests and the backend.
    TCustomForm* MenuWindow() const;

    TNotifyEvent OnPopup;

    void GetChildren(const std::function<void(TComponent*)>& Proc, TComponent* Root) const override;
    void Notification(TComponent* AComponent, TOperation Operation) override;

private:
    friend class TMenuWindow;
    std::unique_ptr<TMenuItem> m_items;
    bool m_autoPopup{true};
    TComponent* m_popupComponent{nullptr};
    TCustomForm* m_window{nullptr};
};

} // namespace qv
