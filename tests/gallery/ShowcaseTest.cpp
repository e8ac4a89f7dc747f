// The gallery's showcase settings: every setting of every class takes effect on a new
// instance, and every showcase names a class the package registers.

#include "GalleryForm.h"
#include "LiveSettings.h"

#include "instruments/Qpanel.h"

#include "package/PackageScope.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/controls/Form.h"
#include "platform/core/ClassRegistry.h"
#include "platform/core/Exceptions.h"
#include "platform/core/PropertyAccess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

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
        EXPECT_NO_THROW(ApplyShowcase(showcase, *component));
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

TEST(GalleryShowcase, EachLookOfAClassGetsACellAndAPictureOfItsOwn) {
    Application().SetBackend(std::make_unique<THeadlessBackend>());
    TPackageScope package;
    TGalleryForm form(nullptr);
    form.Build();
    std::vector<std::string> knobPictures;
    bool steelKnobShown = false;
    for (int page = 0; page < static_cast<int>(form.Pages().size()); ++page)
        for (const TComponentCell* cell : form.PageCells(page))
            if (auto* knob = dynamic_cast<const TqKnob*>(&cell->Shown());
                knob && std::string(knob->ClassName()) == "TqKnob") {
                knobPictures.push_back(cell->PictureName());
                steelKnobShown |= cell->PictureName() == "TqKnob-steel" && knob->SteelLook();
            }
    EXPECT_EQ(knobPictures, (std::vector<std::string>{"TqKnob", "TqKnob-steel"}));
    EXPECT_TRUE(steelKnobShown);
}

TEST(GalleryShowcase, SwitchesFlipEveryTwoSecondsUntilTheUserTogglesOne) {
    Application().SetBackend(std::make_unique<THeadlessBackend>());
    TPackageScope package;
    TForm form(nullptr);
    auto* onOff = static_cast<TControl*>(CreateComponent("TqxPushOnOff", &form));
    const auto switchOn = [&] { return GetPropText(*onOff, "SwitchOn"); };
    const TShowcase* pushShowcase = ShowcasesOf("TqxPushOnOff").at(0);
    AnimateStep(pushShowcase, *onOff, 20);
    EXPECT_EQ(switchOn(), "True");
    AnimateStep(pushShowcase, *onOff, 25); // between flips
    EXPECT_EQ(switchOn(), "True");
    AnimateStep(pushShowcase, *onOff, 40);
    EXPECT_EQ(switchOn(), "False");
    ASSERT_TRUE(onOff->OnClick);
    onOff->OnClick(onOff); // the user's toggle raises OnClick
    AnimateStep(pushShowcase, *onOff, 60);
    EXPECT_EQ(switchOn(), "False");
}

TEST(GalleryShowcase, SwitchesToggleByMouseSpaceAndAcceleratorInTheGallery) {
    Application().SetBackend(std::make_unique<THeadlessBackend>());
    TPackageScope package;
    TGalleryForm form(nullptr);
    form.Build();
    form.Show();
    const auto& pages = form.Pages();
    const int page =
        static_cast<int>(std::find(pages.begin(), pages.end(), "QuelvarSoft III") - pages.begin());
    ASSERT_LT(page, static_cast<int>(pages.size()));
    form.SelectPage(page);
    Application().ProcessMessages();
    const auto find = [&](const std::string& className) -> TControl* {
        for (TComponent* c : form.PageComponents(page))
            if (c->ClassName() == className) return static_cast<TControl*>(c);
        return nullptr;
    };
    TControl* push = find("TqxPushOnOff");
    TControl* lamp = find("TqxLightOnOff");
    ASSERT_TRUE(push && lamp);
    auto& headless = static_cast<THeadlessBackend&>(Application().Backend());
    const auto on = [](TControl* c) { return GetPropText(*c, "SwitchOn") == "True"; };

    const TPoint inForm = form.ScreenToClient(push->ClientToScreen({5, 5}));
    headless.MouseDown(form.NativeWindow(), inForm);
    headless.MouseUp(form.NativeWindow(), inForm);
    Application().ProcessMessages();
    EXPECT_TRUE(on(push));
    headless.KeyDown(form.NativeWindow(), VK_SPACE);
    headless.Char(form.NativeWindow(), ' ');
    headless.KeyUp(form.NativeWindow(), VK_SPACE);
    Application().ProcessMessages();
    EXPECT_FALSE(on(push));
    const bool lampWasOn = on(lamp);
    headless.Char(form.NativeWindow(), 'l'); // the lamp's caption is "&Lamp"
    Application().ProcessMessages();
    EXPECT_NE(on(lamp), lampWasOn);
}

// The gallery leaves each component's control style alone: fast clicks on a spin button each
// step (it takes no double clicks) instead of opening the larger view.
TEST(GalleryShowcase, FastClicksOnASpinButtonEachStepInTheGallery) {
    Application().SetBackend(std::make_unique<THeadlessBackend>());
    TPackageScope package;
    TGalleryForm form(nullptr);
    form.Build();
    form.Show();
    const auto& pages = form.Pages();
    for (int page = 0; page < static_cast<int>(pages.size()); ++page)
        for (TComponent* c : form.PageComponents(page)) {
            if (c->ClassName() != "TqxSpinBtn") continue;
            form.SelectPage(page);
            Application().ProcessMessages();
            auto& spin = static_cast<TControl&>(*c);
            auto& headless = static_cast<THeadlessBackend&>(Application().Backend());
            const TPoint up = form.ScreenToClient(spin.ClientToScreen({8, 4}));
            for (const bool second : {false, true}) { // the second press comes as a double click
                headless.MouseDown(form.NativeWindow(), up, TMouseButton::Left, 0, second);
                headless.MouseUp(form.NativeWindow(), up);
            }
            Application().ProcessMessages();
            EXPECT_EQ(spin.Tag(), 2);
            EXPECT_EQ(form.Large().Shown(), nullptr);
            return;
        }
    FAIL() << "no TqxSpinBtn in the gallery";
}
