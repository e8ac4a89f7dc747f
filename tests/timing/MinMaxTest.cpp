#include "package/PackageScope.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/streaming/Reader.h"
#include "platform/streaming/Writer.h"
#include "timing/Std2.h"

#include <gtest/gtest.h>

#include <memory>

using namespace qv;

namespace {

class MinMax : public ::testing::Test {
protected:
    void SetUp() override {
        Application().SetBackend(std::make_unique<THeadlessBackend>());
        Headless().SetScreen({0, 0, 1024, 768}, {0, 0, 1024, 738});
        form = std::make_unique<TForm>(nullptr);
        form->SetBounds(50, 40, 500, 300);
        form->Show();
    }
    void TearDown() override { form.reset(); }
    THeadlessBackend& Headless() { return static_cast<THeadlessBackend&>(Application().Backend()); }
    const THeadlessBackend::TWindowRecord& Window() {
        return Headless().Window(form->NativeWindow());
    }
    // A component on the form, hooked as after reading the form.
    TqMinMax& Hooked() {
        auto* limits = new TqMinMax(form.get());
        limits->Loaded();
        return *limits;
    }
    TMinMaxInfo Ask() {
        TMinMaxInfo info;
        info.ptMaxSize = {1, 2};
        info.ptMaxPosition = {3, 4};
        info.ptMinTrackSize = {5, 6};
        info.ptMaxTrackSize = {7, 8};
        SendMessage(form->Handle(), WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
        return info;
    }

    std::unique_ptr<TForm> form;
};

} // namespace

TEST_F(MinMax, TheSizeStepMakesTheLimitsConsistentAndClampsTheFormAtOnce) {
    TqMinMax limits(form.get());
    EXPECT_EQ(form->Width(), 500); // within 600 x 400
    limits.SetMaxWidth(300);
    limits.SetMinDragWidth(400);
    EXPECT_EQ(limits.MaxWidth(), 400);
    EXPECT_EQ(limits.MaxDragWidth(), 600);
    EXPECT_EQ(form->Width(), 500);
    limits.SetMaxDragWidth(100);
    EXPECT_EQ(limits.MaxDragWidth(), 400); // raised to MaxWidth again
    EXPECT_EQ(form->Width(), 400);
    limits.SetMaxHeight(200);
    limits.SetMaxDragHeight(250);
    EXPECT_EQ(form->Height(), 250);
    limits.SetMinDragHeight(280);
    EXPECT_EQ(form->Height(), 280);
    // Negative and huge limits: no crash, the form follows.
    limits.SetMinDragWidth(-5);
    limits.SetMaxDragWidth(100000);
    EXPECT_EQ(form->Width(), 400);

    // With UseDefaultSize the size step does nothing.
    limits.SetUseDefaultSize(true);
    limits.SetMinDragWidth(700);
    EXPECT_EQ(limits.MaxWidth(), 400);
    EXPECT_EQ(form->Width(), 400);
}

TEST_F(MinMax, AMaximisedFormTakesTheMaximisedBoundsFromTheSizeStepAndItsAnswer) {
    auto& limits = Hooked();
    limits.SetMaxLeft(10);
    limits.SetMaxTop(20);
    form->SetWindowState(wsMaximized);
    EXPECT_EQ(form->BoundsRect(), Bounds(10, 20, 600, 400));
    limits.SetMaxWidth(450);
    EXPECT_EQ(form->BoundsRect(), Bounds(10, 20, 450, 400));
    EXPECT_EQ(form->MaximizedBounds(), Bounds(10, 20, 450, 400));
}

TEST_F(MinMax, HookedFromLoadedTheAnswerAndTheHintsFollowEverySetter) {
    TqMinMax unhooked(form.get());
    EXPECT_FALSE(unhooked.Hooked());
    EXPECT_EQ(Ask().ptMaxTrackSize.x, 7); // nobody answers yet

    auto& limits = Hooked();
    EXPECT_TRUE(limits.Hooked());
    EXPECT_EQ(Window().maxSize, (TSize{600, 400}));
    EXPECT_EQ(Window().minSize, (TSize{0, 0}));
    limits.SetMinDragWidth(120);
    EXPECT_EQ(Window().minSize, (TSize{120, 0}));
    limits.SetMaxDragHeight(500);
    EXPECT_EQ(Window().maxSize, (TSize{600, 500}));
    limits.SetMaxLeft(7);
    const TMinMaxInfo info = Ask();
    EXPECT_EQ(info.ptMaxSize, (TPoint{600, 400}));
    EXPECT_EQ(info.ptMaxPosition, (TPoint{7, 0}));
    EXPECT_EQ(info.ptMinTrackSize, (TPoint{120, 0}));
    EXPECT_EQ(info.ptMaxTrackSize, (TPoint{600, 500}));
    delete &limits;
    EXPECT_EQ(Window().maxSize, (TSize{1024, 768})); // the framework's own proposal again
}

TEST_F(MinMax, UseDefaultSizeShowsTheFrameworksProposal) {
    auto& limits = Hooked();
    limits.SetUseDefaultSize(true);
    EXPECT_EQ(limits.MaxWidth(), 1024); // the work area
    EXPECT_EQ(limits.MaxHeight(), 738);
    EXPECT_EQ(limits.MaxDragWidth(), 1024); // the screen
    EXPECT_EQ(limits.MaxDragHeight(), 768);
    EXPECT_EQ(limits.MinDragWidth(), 0);
    EXPECT_EQ(form->Width(), 500);
}

TEST_F(MinMax, TheTaskbarIsTheStripOutsideTheWorkArea) {
    auto& limits = Hooked();
    limits.SetMaxLeft(30);
    limits.SetAutoTaskBarAjust(true);
    TMinMaxInfo info = Ask();
    EXPECT_EQ(info.ptMaxTrackSize, (TPoint{1024, 740})); // 769 - 29
    EXPECT_EQ(info.ptMaxPosition, (TPoint{0, 0}));
    EXPECT_EQ(info.ptMaxSize, (TPoint{600, 400})); // not adjusted
    EXPECT_EQ(limits.MaxLeft(), 30);               // nor are the properties

    const TRect screen{0, 0, 1024, 768};
    const auto at = [&](TRect work) { return limits.AdjustedLimits(screen, work); };
    const TqMinMax::TLimits top = at({0, 30, 1024, 768});
    EXPECT_EQ(top.maxTop, 30);
    EXPECT_EQ(top.maxDragHeight, 739);
    const TqMinMax::TLimits left = at({40, 0, 1024, 768});
    EXPECT_EQ(left.maxLeft, 40);
    EXPECT_EQ(left.maxDragWidth, 985);
    EXPECT_EQ(at({0, 0, 984, 768}).maxDragWidth, 1025 - 39); // at the right
    EXPECT_EQ(at(screen).maxLeft, 30);                       // no taskbar: nothing changes
}

TEST_F(MinMax, OnSizeChangeSeesWorkingCopiesOnly) {
    auto& limits = Hooked();
    int calls = 0;
    limits.OnSizeChange = [&](TObject* sender, int& minW, int&, int&, int&, int& maxDragW, int&,
                              int&, int& top) {
        EXPECT_EQ(sender, &limits);
        ++calls;
        minW = 111;
        maxDragW = 777;
        top = 5;
    };
    const TMinMaxInfo info = Ask();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(info.ptMinTrackSize.x, 111);
    EXPECT_EQ(info.ptMaxTrackSize.x, 777);
    EXPECT_EQ(info.ptMaxPosition.y, 5);
    EXPECT_EQ(limits.MinDragWidth(), 0);
    EXPECT_EQ(limits.MaxDragWidth(), 600);
}

TEST_F(MinMax, TwoComponentsChainAndGoInAnyOrder) {
    auto& first = Hooked();
    auto& second = Hooked();
    first.SetMinDragWidth(100);
    second.SetMinDragWidth(200);
    std::vector<int> order;
    first.OnSizeChange = [&](TObject*, int&, int&, int&, int&, int&, int&, int&, int&) {
        order.push_back(1);
    };
    second.OnSizeChange = [&](TObject*, int&, int&, int&, int&, int&, int&, int&, int&) {
        order.push_back(2);
    };
    EXPECT_EQ(Ask().ptMinTrackSize.x, 200); // the newest answers last
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
    delete &first;
    EXPECT_EQ(Ask().ptMinTrackSize.x, 200);
    EXPECT_EQ(Window().minSize.cx, 200);
    delete &second;
    EXPECT_EQ(Ask().ptMinTrackSize.x, 5);
}

TEST_F(MinMax, ShowOnStatusBarFalseTakesTheFormsTaskbarButton) {
    auto* limits = new TqMinMax(form.get());
    limits->SetShowOnStatusBar(false);
    EXPECT_TRUE(Window().params.skipTaskbar);
    limits->SetShowOnStatusBar(true);
    EXPECT_FALSE(Window().params.skipTaskbar);
    // A form shown later gets the setting when its window is made.
    form = std::make_unique<TForm>(nullptr);
    (new TqMinMax(form.get()))->SetShowOnStatusBar(false);
    form->Show();
    EXPECT_TRUE(Window().params.skipTaskbar);
}

TEST_F(MinMax, AFormFileReadsBackAsWritten) {
    TPackageScope package;
    const std::string text = "object Big: TForm\n  Left = 0\n  Top = 0\n  Width = 800\n"
                             "  Height = 600\n  object Limits: TqMinMax\n    MaxWidth = 900\n"
                             "    MaxHeight = 700\n    MaxDragWidth = 1000\n"
                             "    MaxDragHeight = 800\n    MinDragWidth = 300\n  end\nend\n";
    const auto root = ReadComponentText(text);
    auto& read = static_cast<TForm&>(*root);
    EXPECT_EQ(read.Width(), 800); // not cut to the constructor's 600 x 400 while reading
    EXPECT_EQ(read.Height(), 600);
    auto* limits = static_cast<TqMinMax*>(read.FindComponent("Limits"));
    EXPECT_TRUE(limits->Hooked());
    const std::string written = WriteComponentText(read);
    EXPECT_EQ(WriteComponentText(*ReadComponentText(written)), written);
    EXPECT_NE(written.find("MaxDragWidth = 1000"), std::string::npos);
}
