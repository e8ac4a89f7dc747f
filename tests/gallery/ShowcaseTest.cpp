// The gallery's showcase settings: every setting of every class takes effect on a new
// instance, and every showcase names a class the package registers.

#include "LiveSettings.h"

#include "package/PackageScope.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/controls/Form.h"
#include "platform/core/ClassRegistry.h"
#include "platform/core/Exceptions.h"
#include "platform/core/PropertyAccess.h"

#include <gtest/gtest.h>

#include <memory>

using namespace qv;
using namespace qv::gallery;

TEST(GalleryShowcase, EverySettingOfEveryClassTakesEffect) {
    Application().SetBackend(std::make_unique<THeadlessBackend>());
    TPackageScope package;
    TForm form(nullptr);
    ASSERT_FALSE(Showcases().empty());
    for (const TShowcase& showcase : Showcases()) {
        SCOPED_TRACE(showcase.className);
        TComponent* component = CreateComponent(showcase.className, &form);
        ASSERT_NE(component, nullptr);
        for (const TShowcaseSetting& s : showcase.settings) {
            EXPECT_FALSE(s.holds(*component))
                << s.property << " = " << s.value << " is the default: it shows nothing";
            s.apply(*component);
            EXPECT_TRUE(s.holds(*component)) << s.property << " = " << s.value;
        }
        EXPECT_NO_THROW(ApplyShowcaseSettings(*component));
    }
}

TEST(GalleryShowcase, ASettingThatDoesNotTakeEffectFailsNamingIt) {
    TComponent probe(nullptr);
    const TShowcase broken{
        "TComponent",
        {{"Tag", "5", [](TComponent&) {}, [](const TComponent&) { return false; }}},
        {}};
    try {
        ApplyShowcase(broken, probe);
        FAIL() << "no error";
    } catch (const EComponentError& e) {
        EXPECT_STREQ(e.what(), "Showcase setting TComponent.Tag = 5 did not take effect");
    }
}

TEST(GalleryShowcase, SwitchesFlipEveryTwoSecondsUntilTheUserTogglesOne) {
    Application().SetBackend(std::make_unique<THeadlessBackend>());
    TPackageScope package;
    TForm form(nullptr);
    auto* onOff = static_cast<TControl*>(CreateComponent("TqxPushOnOff", &form));
    const auto switchOn = [&] { return GetPropText(*onOff, "SwitchOn"); };
    AnimateStep(*onOff, 20);
    EXPECT_EQ(switchOn(), "True");
    AnimateStep(*onOff, 25); // between flips
    EXPECT_EQ(switchOn(), "True");
    AnimateStep(*onOff, 40);
    EXPECT_EQ(switchOn(), "False");
    ASSERT_TRUE(onOff->OnClick);
    onOff->OnClick(onOff); // the user's toggle raises OnClick
    AnimateStep(*onOff, 60);
    EXPECT_EQ(switchOn(), "False");
}
