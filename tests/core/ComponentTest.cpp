#include "platform/core/Component.h"
#include "platform/core/ClassBuilder.h"
#include "platform/core/ClassRegistry.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace qv;

namespace {

// Records the notifications it receives and holds a reference that it clears when the
// referenced component goes away.
class TWatcher : public TComponent {
public:
    using TComponent::TComponent;
    std::vector<std::pair<std::string, TOperation>> seen;
    TComponent* target{nullptr};

    void SetTarget(TComponent* c) {
        target = c;
        if (c) c->FreeNotification(this);
    }
    void Notification(TComponent* AComponent, TOperation Operation) override {
        TComponent::Notification(AComponent, Operation);
        seen.emplace_back(AComponent->Name(), Operation);
        if (Operation == opRemove && AComponent == target) target = nullptr;
    }
};

// Counts destructions so tests can see that owners free what they own.
int g_destroyed = 0;
class TCounted : public TComponent {
public:
    using TComponent::TComponent;
    ~TCounted() override { ++g_destroyed; }
};

} // namespace

TEST(ComponentOwnership, OwnerFreesOwnedComponentsAndChildrenLeaveTheirOwner) {
    g_destroyed = 0;
    {
        TComponent owner(nullptr);
        auto* a = Make<TCounted>(&owner);
        auto* b = Make<TCounted>(&owner);
        Make<TCounted>(a); // grandchild
        EXPECT_EQ(owner.ComponentCount(), 2);
        EXPECT_EQ(owner.Components(1), b);
        delete b;
        EXPECT_EQ(owner.ComponentCount(), 1);
        EXPECT_EQ(g_destroyed, 1);
        EXPECT_THROW(owner.Components(5), ERangeError);
    }
    EXPECT_EQ(g_destroyed, 3);
}

TEST(ComponentNames, MustBeIdentifiersAndUniqueAmongTheOwnersComponents) {
    TComponent owner(nullptr);
    auto* a = Make<TComponent>(&owner);
    auto* b = Make<TComponent>(&owner);
    a->SetName("Led1");
    EXPECT_EQ(owner.FindComponent("LED1"), a);
    try {
        b->SetName("led1");
        FAIL() << "duplicate name accepted";
    } catch (const EComponentError& e) {
        EXPECT_NE(std::string(e.what()).find("led1"), std::string::npos) << e.what();
    }
    EXPECT_THROW(b->SetName("1abc"), EComponentError);
    EXPECT_THROW(b->SetName("a b"), EComponentError);
    EXPECT_EQ(b->Name(), "");
    b->SetName("_ok2");
    b->SetName("");     // unnamed is allowed
    a->SetName("Led1"); // renaming to its own name is fine
    // A second owner has its own namespace.
    TComponent other(nullptr);
    Make<TComponent>(&other)->SetName("Led1");
}

TEST(ComponentNotification, InsertAndRemoveReachTheOwnersComponents) {
    TComponent owner(nullptr);
    auto* watcher = Make<TWatcher>(&owner);
    watcher->SetName("W");
    auto* c = Make<TComponent>(&owner);
    c->SetName("C");
    delete c;
    ASSERT_GE(watcher->seen.size(), 2u);
    EXPECT_EQ(watcher->seen[watcher->seen.size() - 1].second, opRemove);
    EXPECT_EQ(watcher->seen[watcher->seen.size() - 1].first, "C");
}

TEST(ComponentNotification, FreeNotificationCrossesOwnersAndCanBeRemoved) {
    TComponent formA(nullptr), formB(nullptr);
    auto* watcher = Make<TWatcher>(&formA);
    auto* menu = Make<TComponent>(&formB);
    watcher->SetTarget(menu);
    delete menu;
    EXPECT_EQ(watcher->target, nullptr);

    auto* menu2 = Make<TComponent>(&formB);
    watcher->SetTarget(menu2);
    menu2->RemoveFreeNotification(watcher);
    watcher->seen.clear();
    delete menu2;
    EXPECT_TRUE(watcher->seen.empty());
}

TEST(ComponentNotification, DestroyingTheWatcherFirstLeavesNoDanglingLink) {
    TComponent formB(nullptr);
    auto* menu = Make<TComponent>(&formB);
    {
        TWatcher watcher(nullptr);
        watcher.SetTarget(menu);
    }
    delete menu; // must not notify the watcher that is gone (ASan would catch it)
}

TEST(ComponentState, DesigningSpreadsToOwnedComponentsAndDestroyingIsMarked) {
    TComponent owner(nullptr);
    auto* child = Make<TComponent>(&owner);
    owner.SetDesigning(true);
    EXPECT_TRUE(child->IsDesigning());
    EXPECT_TRUE(Make<TComponent>(&owner)->IsDesigning()); // inserted later
    owner.Destroying();
    EXPECT_TRUE(child->ComponentState().Contains(csDestroying));
}

TEST(ClassRegistry, FindsCreatesAndNamesMissingClasses) {
    RegisterClass(TComponent::StaticClassInfo());
    EXPECT_EQ(&FindClass("tcomponent"), &TComponent::StaticClassInfo());
    TComponent owner(nullptr);
    TComponent* made = CreateComponent("TComponent", &owner);
    EXPECT_EQ(made->Owner(), &owner);
    try {
        FindClass("TNoSuchThing");
        FAIL();
    } catch (const EClassNotFound& e) {
        EXPECT_STREQ(e.what(), "Class TNoSuchThing not found");
    }
    EXPECT_EQ(GetClass("TNoSuchThing"), nullptr);
}
