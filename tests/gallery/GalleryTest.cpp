// The gallery headless: grid layout, property lines, the animation's sweep, and the main
// form built from a palette registered by the test.

#include "GalleryForm.h"
#include "GalleryLayout.h"
#include "LiveSettings.h"

#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/core/ClassBuilder.h"
#include "platform/core/DesignerRegistry.h"
#include "platform/core/PropertyAccess.h"
#include "tests/support/TestComponents.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace qv;
using namespace qv::gallery;

namespace {

// A visual component with a ranged value, like the package's instruments.
class TDialProbe : public TCustomControl {
    QV_OBJECT
public:
    explicit TDialProbe(TComponent* owner) : TCustomControl(owner) { SetBounds(0, 0, 80, 50); }
    int Min() const { return m_min; }
    void SetMin(int v) { m_min = v; }
    int Max() const { return m_max; }
    void SetMax(int v) { m_max = v; }
    int Value() const { return m_value; }
    void SetValue(int v) { m_value = std::clamp(v, m_min, m_max); }
    bool SwitchOn() const { return m_on; }
    void SetSwitchOn(bool v) { m_on = v; }

private:
    int m_min{10}, m_max{30}, m_value{10};
    bool m_on{false};
};

// A second visual class, for a page with two components.
class TWideDialProbe : public TDialProbe {
    QV_OBJECT
public:
    explicit TWideDialProbe(TComponent* owner) : TDialProbe(owner) { SetBounds(0, 0, 160, 40); }
};

// A non-visual component.
class TCounterProbe : public TComponent {
    QV_OBJECT
public:
    using TComponent::TComponent;
    int Count() const { return m_count; }
    void SetCount(int v) { m_count = v; }

private:
    int m_count{7};
};

} // namespace

const TClassInfo& TDialProbe::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TDialProbe>("TDialProbe", &TCustomControl::StaticClassInfo())
            .Property("Min", &TDialProbe::Min, &TDialProbe::SetMin)
            .Property("Max", &TDialProbe::Max, &TDialProbe::SetMax)
            .Property("Value", &TDialProbe::Value, &TDialProbe::SetValue)
            .Property("SwitchOn", &TDialProbe::SwitchOn, &TDialProbe::SetSwitchOn)
            .Build();
    return info;
}

const TClassInfo& TWideDialProbe::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TWideDialProbe>("TWideDialProbe", &TDialProbe::StaticClassInfo()).Build();
    return info;
}

const TClassInfo& TCounterProbe::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TCounterProbe>("TCounterProbe", &TComponent::StaticClassInfo())
            .Property("Count", &TCounterProbe::Count, &TCounterProbe::SetCount)
            .Build();
    return info;
}

TEST(GalleryLayout, CellsWrapIntoRowsWithoutOverlapInsideTheWidth) {
    TGridMetrics m;
    m.width = 300;
    m.gap = 10;
    m.labelHeight = 20;
    m.minCellWidth = 50;
    const std::vector<TSize> items = {{100, 40}, {120, 80}, {20, 10}, {200, 30}, {400, 30}};
    const std::vector<TRect> cells = LayoutGrid(items, m);
    ASSERT_EQ(cells.size(), items.size());
    EXPECT_EQ(cells[0], Bounds(10, 10, 100, 60));
    EXPECT_EQ(cells[1], Bounds(120, 10, 120, 100));
    // The third does not fit after the second (240 + 10 + 50 > 290): next row, below the
    // tallest cell of the first; narrow items get the minimum width.
    EXPECT_EQ(cells[2], Bounds(10, 120, 50, 30));
    EXPECT_EQ(cells[3], Bounds(70, 120, 200, 50));
    // Wider than the page: a row of its own, never an empty row before it.
    EXPECT_EQ(cells[4], Bounds(10, 180, 400, 50));
    for (std::size_t i = 0; i < cells.size(); ++i)
        for (std::size_t j = i + 1; j < cells.size(); ++j)
            EXPECT_TRUE(Intersect(cells[i], cells[j]).IsEmpty()) << i << " overlaps " << j;
    EXPECT_EQ(GridHeight(cells, m), 240);
    EXPECT_EQ(GridHeight({}, m), 0);
}

TEST(GalleryLayout, PropertyLinesListingAndFileNames) {
    TDialProbe dial(nullptr);
    dial.SetName("Dial1");
    dial.SetValue(25);
    const std::vector<std::string> lines = PropertyLines(dial);
    const auto at = [&](const std::string& line) {
        return std::find(lines.begin(), lines.end(), line) - lines.begin();
    };
    ASSERT_LT(at("Value = 25"), static_cast<long>(lines.size()));
    EXPECT_LT(at("Name = 'Dial1'"), at("Min = 10"));
    EXPECT_LT(at("Min = 10"), at("Max = 30"));
    EXPECT_LT(at("Max = 30"), at("Value = 25"));
    // Objects held by copy show their class rather than their contents.
    TTestWidget widget(nullptr);
    const std::vector<std::string> widgetLines = PropertyLines(widget);
    EXPECT_NE(std::find(widgetLines.begin(), widgetLines.end(), "Font = (TTestFont)"),
              widgetLines.end());

    EXPECT_EQ(PageListing("QuelvarSoft II", {"TqCalc", "TqMinMax"}),
              "QuelvarSoft II: TqCalc TqMinMax");
    EXPECT_EQ(PageListing("Empty", {}), "Empty:");
    EXPECT_EQ(PageFileName("QuelvarSoft III"), "QuelvarSoft III");
    EXPECT_EQ(PageFileName("a/b:c"), "a_b_c");
    EXPECT_EQ(PageFileName(""), "_");
}

TEST(GalleryLive, SweepGoesUpAndBackDownWithinTheRange) {
    EXPECT_EQ(SweepValue(10, 30, 0, 8), 10);
    EXPECT_EQ(SweepValue(10, 30, 2, 8), 20);
    EXPECT_EQ(SweepValue(10, 30, 4, 8), 30);
    EXPECT_EQ(SweepValue(10, 30, 6, 8), 20);
    EXPECT_EQ(SweepValue(10, 30, 8, 8), 10);
    EXPECT_EQ(SweepValue(-2147483647, 2147483647, 4, 8), 2147483647); // no overflow
    EXPECT_EQ(SweepValue(5, 5, 3, 8), 5);
    for (int tick = 0; tick < 100; ++tick) {
        const int v = SweepValue(0, 100, tick, 80);
        EXPECT_TRUE(v >= 0 && v <= 100) << tick;
    }
}

TEST(GalleryLive, AnimationSweepsValuesAndSwitchesSwitches) {
    TDialProbe dial(nullptr);
    AnimateStep(nullptr, dial, 40); // half way through the sweep: the top of the range
    EXPECT_EQ(dial.Value(), 30);
    AnimateStep(nullptr, dial, 20);
    EXPECT_EQ(dial.Value(), 20);
    EXPECT_TRUE(dial.SwitchOn());
    AnimateStep(nullptr, dial, 0);
    EXPECT_FALSE(dial.SwitchOn());
    TCounterProbe counter(nullptr);
    AnimateStep(nullptr, counter, 40); // nothing to animate: nothing happens
    EXPECT_EQ(counter.Count(), 7);
}

class GalleryFormTest : public ::testing::Test {
protected:
    void SetUp() override {
        Application().SetBackend(std::make_unique<THeadlessBackend>());
        ClearDesignerRegistry();
        RegisterComponents("Dials",
                           {&TDialProbe::StaticClassInfo(), &TWideDialProbe::StaticClassInfo()});
        RegisterComponents("Counters", {&TCounterProbe::StaticClassInfo()});
    }
    void TearDown() override { ClearDesignerRegistry(); }
};

TEST_F(GalleryFormTest, OnePagePerPaletteWithEveryClassLive) {
    TGalleryForm form(nullptr);
    form.Build();
    ASSERT_EQ(form.Pages(), (std::vector<std::string>{"Dials", "Counters"}));
    const std::vector<TComponent*> dials = form.PageComponents(0);
    ASSERT_EQ(dials.size(), 2u);
    EXPECT_EQ(dials[0]->ClassName(), "TDialProbe");
    EXPECT_EQ(dials[1]->ClassName(), "TWideDialProbe");
    // Visual components sit in their cell, with room for the name underneath.
    auto* dial = dynamic_cast<TControl*>(dials[0]);
    ASSERT_NE(dial, nullptr);
    TComponentCell* cell = form.PageCells(0)[0];
    EXPECT_EQ(dial->Parent(), cell);
    EXPECT_EQ(cell->Height(), dial->Height() + TGridMetrics{}.labelHeight);
    // Non-visual ones are shown through a view of their values.
    TComponentCell* counterCell = form.PageCells(1)[0];
    ASSERT_EQ(counterCell->ControlCount(), 1);
    EXPECT_NE(dynamic_cast<TNonVisualView*>(counterCell->Controls(0)), nullptr);

    EXPECT_EQ(form.CurrentPage(), 0);
    EXPECT_TRUE(cell->Parent()->Visible());
    EXPECT_FALSE(counterCell->Parent()->Visible());
    EXPECT_EQ(form.SelectedComponent(), dials[0]);
}

TEST_F(GalleryFormTest, ClickingAComponentShowsItsProperties) {
    TGalleryForm form(nullptr);
    form.Build();
    form.Show();
    Application().ProcessMessages();
    auto& headless = static_cast<THeadlessBackend&>(Application().Backend());
    auto* second = static_cast<TControl*>(form.PageComponents(0)[1]);
    const TPoint inForm = form.ScreenToClient(second->ClientToScreen({5, 5}));
    headless.MouseDown(form.NativeWindow(), inForm);
    headless.MouseUp(form.NativeWindow(), inForm);
    Application().ProcessMessages();
    EXPECT_EQ(form.SelectedComponent(), second);
    const auto& lines = form.Properties().Lines();
    EXPECT_NE(std::find(lines.begin(), lines.end(), "Name = '" + second->Name() + "'"),
              lines.end());

    // Choosing the second page in the list shows its component and selects it.
    const TPoint listItem =
        form.ScreenToClient(form.PageList().ClientToScreen({10, TPageList::ItemHeight + 5}));
    headless.MouseDown(form.NativeWindow(), listItem);
    headless.MouseUp(form.NativeWindow(), listItem);
    Application().ProcessMessages();
    EXPECT_EQ(form.CurrentPage(), 1);
    EXPECT_EQ(form.SelectedComponent(), form.PageComponents(1)[0]);
    EXPECT_NE(
        std::find(form.Properties().Lines().begin(), form.Properties().Lines().end(), "Count = 7"),
        form.Properties().Lines().end());
}

TEST_F(GalleryFormTest, StepsAnimateTheCurrentPageAndRefreshTheProperties) {
    TGalleryForm form(nullptr);
    form.Build();
    auto* dial = static_cast<TDialProbe*>(form.PageComponents(0)[0]);
    for (int tick = 0; tick <= 40; ++tick)
        form.Step(); // tick 40: the top of the sweep
    EXPECT_EQ(dial->Value(), 30);
    const auto& lines = form.Properties().Lines();
    EXPECT_NE(std::find(lines.begin(), lines.end(), "Value = 30"), lines.end());
}

TEST_F(GalleryFormTest, AnEmptyRegistryGivesAnEmptyGallery) {
    ClearDesignerRegistry();
    TGalleryForm form(nullptr);
    form.Build();
    EXPECT_TRUE(form.Pages().empty());
    EXPECT_EQ(form.SelectedComponent(), nullptr);
    TBitmap shot;
    form.Screenshot(shot); // paints without pages
    EXPECT_EQ(shot.Width(), form.Width());
}
