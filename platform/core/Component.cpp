#include "Component.h"

#include "ClassBuilder.h"

#include <strings.h>

#include <algorithm>
#include <cctype>

namespace qv {

const TClassInfo& TComponent::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TComponent>("TComponent", &TPersistent::StaticClassInfo())
            .Property("Name", &TComponent::Name, &TComponent::SetName)
            .NotStored() // the form file holds the name in the object's header line
            .Property("Tag", &TComponent::Tag, &TComponent::SetTag)
            .Default(0)
            .Build();
    return info;
}

TComponent::TComponent(TComponent* AOwner) {
    if (AOwner) AOwner->InsertComponent(this);
}

TComponent::~TComponent() {
    Destroying();
    RemoveFreeNotifications();
    DestroyComponents();
    if (m_owner) m_owner->RemoveComponent(this);
}

TComponent* TComponent::Components(int index) const {
    if (index < 0 || index >= ComponentCount())
        throw ERangeError("Component index out of bounds (" + std::to_string(index) + ")");
    return m_components[static_cast<std::size_t>(index)];
}

TComponent* TComponent::FindComponent(const std::string& name) const {
    if (name.empty()) return nullptr;
    for (TComponent* c : m_components)
        if (strcasecmp(c->m_name.c_str(), name.c_str()) == 0) return c;
    return nullptr;
}

void TComponent::DestroyComponents() {
    while (!m_components.empty()) {
        TComponent* last = m_components.back();
        // Detach first so the child's destructor does not notify this owner twice.
        RemoveComponent(last);
        delete last;
    }
}

void TComponent::InsertComponent(TComponent* component) {
    if (component->m_owner) component->m_owner->RemoveComponent(component);
    ValidateRename(component, component->m_name);
    m_components.push_back(component);
    component->m_owner = this;
    if (IsDesigning()) component->SetDesigning(true);
    Notification(component, opInsert);
}

void TComponent::RemoveComponent(TComponent* component) {
    auto it = std::find(m_components.begin(), m_components.end(), component);
    if (it == m_components.end()) return;
    Notification(component, opRemove);
    // Notification may have changed the list.
    it = std::find(m_components.begin(), m_components.end(), component);
    if (it != m_components.end()) m_components.erase(it);
    component->m_owner = nullptr;
}

bool TComponent::IsValidIdent(const std::string& name) {
    if (name.empty()) return false;
    const auto first = static_cast<unsigned char>(name[0]);
    if (!std::isalpha(first) && first != '_') return false;
    return std::all_of(name.begin(), name.end(), [](char ch) {
        const auto c = static_cast<unsigned char>(ch);
        return std::isalnum(c) || c == '_';
    });
}

void TComponent::ValidateRename(const TComponent* component, const std::string& newName) const {
    if (newName.empty()) return;
    const TComponent* existing = FindComponent(newName);
    if (existing && existing != component)
        throw EComponentError("A component named " + newName + " already exists");
}

void TComponent::SetName(const std::string& NewName) {
    if (NewName == m_name) return;
    if (!NewName.empty() && !IsValidIdent(NewName))
        throw EComponentError("'" + NewName + "' is not a valid component name");
    if (m_owner) m_owner->ValidateRename(this, NewName);
    m_name = NewName;
}

void TComponent::SetDesigning(bool value, bool setChildren) {
    if (value)
        m_state.Include(csDesigning);
    else
        m_state.Exclude(csDesigning);
    if (setChildren)
        for (TComponent* c : m_components)
            c->SetDesigning(value);
}

void TComponent::BeginLoading() {
    m_state.Include(csLoading).Include(csReading);
}

void TComponent::FreeNotification(TComponent* component) {
    if (!component || component == this) return;
    if (std::find(m_freeNotifies.begin(), m_freeNotifies.end(), component) == m_freeNotifies.end())
        m_freeNotifies.push_back(component);
    if (std::find(component->m_freeNotifies.begin(), component->m_freeNotifies.end(), this) ==
        component->m_freeNotifies.end())
        component->m_freeNotifies.push_back(this);
    m_state.Include(csFreeNotification);
}

void TComponent::RemoveFreeNotification(TComponent* component) {
    if (!component) return;
    std::erase(m_freeNotifies, component);
    std::erase(component->m_freeNotifies, this);
}

void TComponent::RemoveFreeNotifications() {
    while (!m_freeNotifies.empty()) {
        TComponent* other = m_freeNotifies.back();
        m_freeNotifies.pop_back();
        std::erase(other->m_freeNotifies, this);
        other->Notification(this, opRemove);
    }
}

void TComponent::Notification(TComponent* AComponent, TOperation Operation) {
    if (Operation == opRemove && AComponent) RemoveFreeNotification(AComponent);
    // Copy: a handler may free or insert components while the news spreads.
    const std::vector<TComponent*> owned = m_components;
    for (TComponent* c : owned)
        if (std::find(m_components.begin(), m_components.end(), c) != m_components.end())
            c->Notification(AComponent, Operation);
}

void TComponent::Loaded() {
    m_state.Exclude(csLoading);
}

void TComponent::Destroying() {
    if (m_state.Contains(csDestroying)) return;
    m_state.Include(csDestroying);
    for (TComponent* c : m_components)
        c->Destroying();
}

void TComponent::GetChildren(const std::function<void(TComponent*)>& Proc, TComponent* Root) const {
    if (Root != this) return;
    for (TComponent* c : m_components)
        if (!c->HasParent()) Proc(c);
}

void TComponent::SetEventHandlerName(const std::string& event, const std::string& handler) {
    if (handler.empty())
        m_handlerNames.erase(event);
    else
        m_handlerNames[event] = handler;
}

} // namespace qv
