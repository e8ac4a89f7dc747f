// The size limits' cell: the gallery's own form keeps its size, and the cell's button opens a
// demo form whose limits hook it and stop its edges.

#include "GalleryForm.h"
#include "LiveSettings.h"
#include "LiveViews.h"

#include "buttons/Qanimate.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/controls/StandardClasses.h"
#include "platform/core/ClassRegistry.h"
#include "platform/core/DesignerRegistry.h"
#include "timing/Std2.h"

#include <gtest/gtest.h>

using namespace qv;
using namespace qv::gallery;

namespace {

TEST(MinMaxViewTest, TheGalleryKeepsItsSizeAndTheDemoFormStopsAtTheLimits) {
    Application().SetBackend(std::make_unique<THeadlessBackend>());
    ClearDesignerRegistry();
    RegisterStandardClasses();
    RegisterClasses({&TqColorBtn::StaticClassInfo()});
    RegisterComponents("Limits", {&TqMinMax::StaticClassInfo()});
    {
        TGalleryForm gallery(nullptr);
        gallery.Build();
        gallery.Show();
        auto& headless = static_cast<THeadlessBackend&>(Application().Backend());
        const int width = gallery.Width();
        EXPECT_GT(width, 480);
        EXPECT_EQ(headless.Window(gallery.NativeWindow()).maxSize, (TSize{1280, 1024}));
        auto& shown = static_cast<TqMinMax&>(gallery.PageCells(0).at(0)->Shown());
        EXPECT_EQ(shown.MinDragWidth(), 240); // the showcase's settings
        auto* view = dynamic_cast<TMinMaxView*>(gallery.PageCells(0).at(0)->Controls(0));
        ASSERT_NE(view, nullptr);
        view->OpenDemo();
        TForm* demo = view->Demo();
        ASSERT_NE(demo, nullptr);
        auto* limits = dynamic_cast<TqMinMax*>(demo->FindComponent(shown.Name()));
        ASSERT_NE(limits, nullptr);
        EXPECT_TRUE(limits->Hooked());
        const auto& window = headless.Window(demo->NativeWindow());
        EXPECT_EQ(window.minSize, (TSize{240, 150}));
        EXPECT_EQ(window.maxSize, (TSize{480, 400}));
        EXPECT_EQ(gallery.Width(), width);
    }
    ClearDesignerRegistry();
}

} // namespace
