#include "ControlsFixture.h"

#include "platform/controls/Panel.h"
#include "platform/core/PropertyAccess.h"

using namespace qv;
using namespace qvtest;

namespace {

class PanelTest : public ControlsFixture {
protected:
    void SetUp() override {
        ControlsFixture::SetUp();
        form->SetColor(clBlue);
        panel = Add<TPanel>({10, 10, 110, 60});
    }
    TColor At(int x, int y) { return ShotPixel(10 + x, 10 + y); }
    TPanel* panel{nullptr};
};

const TColor Highlight = ColorToRGB(clBtnHighlight);
const TColor Shadow = ColorToRGB(clBtnShadow);
const TColor Face = ColorToRGB(clBtnFace);

} // namespace

TEST_F(PanelTest, RaisedOuterBevelIsHighlightAboveAndShadowBelowWithShadowCorners) {
    Show();
    EXPECT_EQ(At(0, 0), Highlight);
    EXPECT_EQ(At(50, 0), Highlight);
    EXPECT_EQ(At(0, 25), Highlight);
    EXPECT_EQ(At(99, 0), Shadow); // the top-right corner belongs to the lower edge
    EXPECT_EQ(At(0, 49), Shadow); // so does the bottom-left one
    EXPECT_EQ(At(99, 25), Shadow);
    EXPECT_EQ(At(50, 49), Shadow);
    EXPECT_EQ(At(1, 1), Face);
}

TEST_F(PanelTest, OuterBorderAndInnerBevelsNestWithTheirWidths) {
    panel->SetBevelWidth(2);
    panel->SetBorderWidth(3);
    panel->SetBevelInner(bvLowered);
    panel->SetColor(clYellow);
    Show();
    EXPECT_EQ(At(1, 1), Highlight); // second line of the raised outer bevel
    EXPECT_EQ(At(98, 48), Shadow);
    EXPECT_EQ(At(2, 2), clYellow); // the border in the panel's colour
    EXPECT_EQ(At(4, 20), clYellow);
    EXPECT_EQ(At(5, 5), Shadow); // the lowered inner bevel
    EXPECT_EQ(At(6, 20), Shadow);
    EXPECT_EQ(At(93, 43), Highlight);
    EXPECT_EQ(At(7, 7), clYellow); // the face
    EXPECT_EQ(panel->InnerRect(), (TRect{7, 7, 93, 43}));
}

TEST_F(PanelTest, SingleBorderAddsTheSunkenEdgeOutsideTheBevels) {
    panel->SetBorderStyle(bsSingle);
    panel->SetBevelOuter(bvLowered);
    Show();
    EXPECT_EQ(At(0, 0), Shadow);
    EXPECT_EQ(At(99, 49), Highlight);
    EXPECT_EQ(At(1, 1), ColorToRGB(cl3DDkShadow));
    EXPECT_EQ(At(98, 48), ColorToRGB(cl3DLight));
    EXPECT_EQ(At(2, 2), Shadow); // the lowered bevel inside the edge
    EXPECT_EQ(At(97, 47), Highlight);
}

TEST_F(PanelTest, NoBevelsLeaveOnlyTheFace) {
    panel->SetBevelOuter(bvNone);
    Show();
    EXPECT_EQ(At(0, 0), Face);
    EXPECT_EQ(At(99, 49), Face);
}

TEST_F(PanelTest, CaptionIsCentredOrAlignedOnOneLineInTheMiddle) {
    panel->SetColor(clWhite);
    panel->Font()->SetColor(clBlack);
    panel->SetCaption("Wide caption");
    const TRect face{11, 11, 109, 59};
    const TRect centred = InkBounds(face, clWhite);
    ASSERT_FALSE(centred.IsEmpty());
    EXPECT_LE(std::abs((centred.left - face.left) - (face.right - centred.right)), 2);
    EXPECT_LE(std::abs((centred.top - face.top) - (face.bottom - centred.bottom)), 3);

    panel->SetAlignment(taLeftJustify);
    EXPECT_LE(InkBounds(face, clWhite).left, face.left + 1);
    panel->SetAlignment(taRightJustify);
    EXPECT_GE(InkBounds(face, clWhite).right, face.right - 1);

    panel->SetCaption("first\r\nsecond"); // one line only
    const TRect oneLine = InkBounds(face, clWhite);
    EXPECT_LT(oneLine.Height(), TextLineHeight(*panel->Font()) + 1);
}

TEST_F(PanelTest, AlignedChildrenStayInsideBorderAndBevels) {
    panel->SetBevelInner(bvRaised);
    panel->SetBorderWidth(3);
    auto* child = Add<TPanel>({0, 0, 10, 10}, panel);
    child->SetAlign(alClient);
    EXPECT_EQ(child->BoundsRect(), (TRect{5, 5, 95, 45}));
    panel->SetBorderStyle(bsSingle);
    EXPECT_EQ(child->BoundsRect(), (TRect{7, 7, 93, 43}));
}

TEST_F(PanelTest, PublishedPropertiesKeepTheClassicOrderAndDefaults) {
    std::vector<std::string> names;
    for (const TPropInfo* p : TPanel::StaticClassInfo().Properties())
        names.push_back(p->name);
    const auto at = [&](const std::string& n) {
        return std::find(names.begin(), names.end(), n) - names.begin();
    };
    EXPECT_LT(at("Align"), at("Alignment"));
    EXPECT_LT(at("BevelWidth"), at("BorderWidth"));
    EXPECT_LT(at("BorderWidth"), at("BorderStyle"));
    EXPECT_LT(at("BorderStyle"), at("Caption"));
    EXPECT_LT(at("Caption"), at("Color"));
    EXPECT_LT(at("TabStop"), at("Visible"));

    TPanel fresh(nullptr);
    EXPECT_TRUE(TPanel::StaticClassInfo().FindProperty("BevelOuter")->IsDefault(fresh));
    EXPECT_TRUE(TPanel::StaticClassInfo().FindProperty("Color")->IsDefault(fresh));
    SetPropText(fresh, "BevelInner", "bvSpace");
    EXPECT_EQ(fresh.BevelInner(), bvSpace);
    SetPropText(fresh, "BorderStyle", "bsSingle");
    EXPECT_EQ(fresh.BorderStyle(), bsSingle);
    EXPECT_EQ(GetPropText(fresh, "BevelOuter"), "bvRaised");
}
