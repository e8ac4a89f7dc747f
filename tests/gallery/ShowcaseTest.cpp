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

#include <gtest/gtest.h>

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
