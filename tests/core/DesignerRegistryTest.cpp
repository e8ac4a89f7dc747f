#include "platform/core/DesignerRegistry.h"
#include "platform/core/ClassRegistry.h"
#include "tests/support/TestComponents.h"

#include <gtest/gtest.h>

using namespace qv;

TEST(DesignerRegistry, PagesKeepFirstRegistrationOrderAndLaterCallsAppend) {
    ClearDesignerRegistry();
    const TClassInfo& widget = TTestWidget::StaticClassInfo();
    const TClassInfo& box = TTestBox::StaticClassInfo();
    const TClassInfo& component = TComponent::StaticClassInfo();
    RegisterComponents("First", {&widget, &box});
    RegisterComponents("Second", {&component});
    RegisterComponents("First", {&component}); // a later call ends an earlier page
    EXPECT_EQ(PalettePages(), (std::vector<std::string>{"First", "Second"}));
    EXPECT_EQ(PaletteClasses("First"), (std::vector<const TClassInfo*>{&widget, &box, &component}));
    EXPECT_EQ(RegisterComponentsCalls(), 3);
    // Registered components can be created by name, as form files do.
    EXPECT_EQ(GetClass("TTestBox"), &box);

    RegisterPropertyEditor("String", component, "Hint", "THintEditor");
    RegisterComponentEditor(widget, "TTestWidgetEditor");
    RegisterLibraryExpert("Line count");
    ASSERT_EQ(PropertyEditors().size(), 1u);
    EXPECT_EQ(PropertyEditors()[0].propertyName, "Hint");
    EXPECT_EQ(ComponentEditors()[0].componentClass, &widget);
    EXPECT_EQ(LibraryExperts(), (std::vector<std::string>{"Line count"}));

    ClearDesignerRegistry();
    EXPECT_TRUE(PalettePages().empty());
    EXPECT_EQ(GetClass("TTestBox"), nullptr); // it was registered by the palette call only
}
