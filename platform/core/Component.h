#pragma once
// TComponent: a persistent object with an owner, a name and a tag. An owner frees the
// components it owns when it is destroyed and tells them about insertions and removals.

#include "Exceptions.h"
#include "Persistent.h"
#include "Set.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace qv {

enum class TComponentStateFlag {
    csLoading,
    csReading,
    csWriting,
    csDestroying,
    csDesigning,
    csAncestor,
    csUpdating,
    csFixups,
    csFreeNotification,
    csInline,
    csDesignInstance
};
using TComponentState = TSet<TComponentStateFlag>;
using enum TComponentStateFlag;

enum class TOperation { opInsert, opRemove };
using enum TOperation;

class TComponent : public TPersistent {
    QV_OBJECT
public:
    explicit TComponent(TComponent* AOwner);
    ~TComponent() override;

    TComponent* Owner() const { return m_owner; }
    int ComponentCount() const { return static_cast<int>(m_components.size()); }
    TComponent* Components(int index) const;
    // The owned component named `name` (case-insensitive), or null.
    TComponent* FindComponent(const std::string& name) const;
    // Frees every owned component, last first.
    void DestroyComponents();
    void InsertComponent(TComponent* component);
    void RemoveComponent(TComponent* component);

    const std::string& Name() const { return m_name; }
    // A valid identifier (or empty) that no other component of the owner carries;
    // otherwise EComponentError.
    virtual void SetName(const std::string& NewName);

    std::intptr_t Tag() const { return m_tag; }
    void SetTag(std::intptr_t value) { m_tag = value; }

    TComponentState ComponentState() const { return m_state; }
    bool IsDesigning() const { return m_state.Contains(csDesigning); }
    bool IsLoading() const { return m_state.Contains(csLoading); }
    bool IsDestroying() const { return m_state.Contains(csDestroying); }
    // Design mode for this component and everything it owns.
    void SetDesigning(bool value, bool setChildren = true);
    // Marks the component as being read from a form file (csLoading and csReading).
    void BeginLoading();
    void EndReading() { m_state.Exclude(csReading); }

    // Asks `component` to tell this one (through Notification with opRemove) when it is
    // destroyed, also across owners.
    void FreeNotification(TComponent* component);
    void RemoveFreeNotification(TComponent* component);
    virtual void Notification(TComponent* AComponent, TOperation Operation);

    // Called once for each component after a form file has been read completely.
    virtual void Loaded();
    // Marks the component as going away; owned components are marked too.
    void Destroying();

    // Form-file structure: components with a parent (controls) are written inside it.
    virtual bool HasParent() const { return false; }
    virtual TComponent* GetParentComponent() const { return nullptr; }
    virtual void SetParentComponent(TComponent* /*Value*/) {}
    // The components written as children of this one in a form file whose root is Root.
    virtual void GetChildren(const std::function<void(TComponent*)>& Proc, TComponent* Root) const;

    // The names of the handlers bound to events through form files, by event name.
    const std::map<std::string, std::string>& EventHandlerNames() const { return m_handlerNames; }
    void SetEventHandlerName(const std::string& event, const std::string& handler);

    static bool IsValidIdent(const std::string& name);

private:
    void ValidateRename(const TComponent* component, const std::string& newName) const;
    void RemoveFreeNotifications();

    TComponent* m_owner{nullptr};
    std::vector<TComponent*> m_components; // owned, freed in the destructor
    std::vector<TComponent*> m_freeNotifies;
    std::string m_name;
    std::intptr_t m_tag{0};
    TComponentState m_state;
    std::map<std::string, std::string> m_handlerNames;
};

// Creates a component of class T owned by `owner` (which frees it).
template <class T, class... Args> T* Make(TComponent* owner, Args&&... args) {
    return new T(owner, std::forward<Args>(args)...);
}

} // namespace qv
