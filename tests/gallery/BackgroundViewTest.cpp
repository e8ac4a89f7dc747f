// The form background's cell: the gallery's own background stays unhooked, and the cell's
// button opens a demo form whose background is hooked and paints it.

#include "GalleryForm.h"
#include "LiveViews.h"

#include "backgrounds/Blend.h"
#include "buttons/Qanimate.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/controls/StandardClasses.h"
#include "platform/core/ClassRegistry.h"
#include "platform/core/DesignerRegistry.h"

#include <gtest/gtest.h>

using namespace qv;
using namespace qv::gallery;

namespace {

class BackgroundViewTest : public ::testing::Test {
protected:
    void SetUp() override {
        Application().SetBackend(std::make_unique<THeadlessBackend>());
        ClearDesignerRegistry();
        RegisterStandardClasses();
        RegisterClasses({&TqColorBtn::StaticClassInfo(), &TqGradBtn::StaticClassInfo()});
        RegisterComponents("Backgrounds", {&TqBackground::StaticClassInfo()});
        m_form.Build();
        m_form.Show();
        Application().ProcessMessages();
    }
    void TearDown() override { ClearDesignerRegistry(); }
    THeadlessBackend& Headless() { return static_cast<THeadlessBackend&>(Application().Backend()); }
    void ClickIn(TCustomForm& form, const TControl& control) {
        const TPoint at = form.ScreenToClient(control.ClientToScreen({5, 5}));
        Headless().MouseMove(form.NativeWindow(), at);
        Headless().MouseDown(form.NativeWindow(), at);
        Headless().MouseUp(form.NativeWindow(), at);
        Application().ProcessMessages();
    }

    TGalleryForm m_form{nullptr};
};

TEST_F(BackgroundViewTest, TheCellOpensADemoFormWhoseBackgroundPaintsIt) {
    auto& shown = static_cast<TqBackground&>(m_form.PageCells(0).at(0)->Shown());
    EXPECT_FALSE(shown.Hooked());
    auto* view = dynamic_cast<TBackgroundView*>(m_form.PageCells(0).at(0)->Controls(0));
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->Demo(), nullptr);

    ClickIn(m_form, view->OpenButton());
    TForm* demo = view->Demo();
    ASSERT_NE(demo, nullptr);
    EXPECT_TRUE(demo->Visible());
    auto* back = dynamic_cast<TqBackground*>(demo->FindComponent(shown.Name()));
    ASSERT_NE(back, nullptr);
    EXPECT_TRUE(back->Hooked());
    EXPECT_EQ(back->BackType(), shown.BackType());
    EXPECT_FALSE(shown.Hooked());
    TBitmap shot;
    demo->Screenshot(shot);
    EXPECT_EQ(shot.Canvas().Pixel(0, 0), shown.Color()); // band 0 lies at the top-left corner

    ClickIn(*demo, *static_cast<TControl*>(demo->FindComponent("DemoClose")));
    EXPECT_FALSE(demo->Visible());
}

} // namespace
