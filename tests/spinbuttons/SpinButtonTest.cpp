// The spin buttons: layout, zones, the paint steps pixel by pixel, clicks and the repeat on
// the fake clock of the headless backend.
#include "controls/Qbtn2.h"
#include "package/Package.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "support/FormInput.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace qv;

namespace {

constexpr TColor kFace = 0xC0C0C0, kGlyph = 0x0000FF, kLight = 0xFFFFFF, kShade = 0x808080,
                 kBlack = 0;

class Spin : public ::testing::Test, protected test::TFormInput {
protected:
    void SetUp() override {
        InitializePackage();
        form = new TForm(nullptr);
        form->SetBounds(0, 0, 300, 200);
        form->Show();
    }
    void TearDown() override {
        delete form;
        FinalizePackage();
    }
    template <class S> S* Place(int left, int top) {
        auto* spin = new S(form);
        spin->SetParent(form);
        spin->SetLeft(left);
        spin->SetTop(top);
        spin->SetColor(kFace);
        spin->SetGlyphColor(kGlyph);
        spin->SetHighLightColor(kLight);
        spin->SetShadowColor(kShade);
        Watch(*spin);
        return spin;
    }
    void Watch(TqxSpinBtn& spin) {
        const auto note = [this](const char* name) {
            return [this, name](TObject*) { events.emplace_back(name); };
        };
        spin.OnClick = note("OnClick");
        spin.OnUpClick = note("OnUpClick");
        spin.OnDownClick = note("OnDownClick");
        if (auto* centre = dynamic_cast<TqxCenterSpinBtn*>(&spin))
            centre->OnCenterClick = note("OnCenterClick");
    }
    // Lets `ms` pass in steps of 50 ms, the loop running after each.
    void Wait(int ms) {
        for (int t = 0; t < ms; t += 50) {
            Headless().AdvanceClock(50);
            Pump();
        }
    }
    TColor PixelOf(const TControl& c, int x, int y) {
        Pump();
        TBitmap shot;
        form->Screenshot(shot);
        return shot.Canvas().Pixel(c.Left() + x, c.Top() + y);
    }
    std::vector<std::string> Take() { return std::exchange(events, {}); }
    using Events = std::vector<std::string>;

    std::vector<std::string> events;
};

} // namespace

TEST_F(Spin, TheDefaultLayoutShrinksTheArrowToFitTheWidth) {
    auto* spin = Place<TqxSpinBtn>(10, 10);
    EXPECT_EQ(spin->Width(), 16);
    EXPECT_EQ(spin->Height(), 21);
    EXPECT_EQ(spin->UpperHeight(), 10);
    EXPECT_EQ(spin->LowerTop(), 10);
    EXPECT_EQ(spin->ArrowSize(), 3); // 4 * 2 + 8 = 16 is not below 16
    EXPECT_EQ(spin->ArrowTop(), 3);
    spin->SetBounds(10, 10, 10, 21);
    EXPECT_EQ(spin->ArrowSize(), 0);
    spin->SetBounds(10, 10, 64, 84);
    EXPECT_EQ(spin->ArrowSize(), 4);
    EXPECT_EQ(spin->ArrowTop(), 19);

    auto* centre = Place<TqxCenterSpinBtn>(50, 10);
    EXPECT_EQ(centre->UpperHeight(), 8); // 21 div 3 + 1
    EXPECT_EQ(centre->CenterHeight(), 5);
    EXPECT_EQ(centre->LowerTop(), 13);
    EXPECT_EQ(centre->ArrowSize(), 3);
}

// C = 8, arrow 3 from row 3: rows 2 (the tip, empty), 3 (7..8), 4 (6..9), 5 (5..10).
TEST_F(Spin, ArrowsLeaveTheirTipRowEmptyAndMoveRightAndDownWhenPressed) {
    auto* spin = Place<TqxSpinBtn>(10, 10);
    EXPECT_EQ(PixelOf(*spin, 8, 2), kFace);
    EXPECT_EQ(PixelOf(*spin, 7, 3), kGlyph);
    EXPECT_EQ(PixelOf(*spin, 8, 3), kGlyph);
    EXPECT_EQ(PixelOf(*spin, 9, 3), kFace); // the polyline's last pixel
    EXPECT_EQ(PixelOf(*spin, 5, 5), kGlyph);
    EXPECT_EQ(PixelOf(*spin, 10, 5), kGlyph);
    EXPECT_EQ(PixelOf(*spin, 11, 5), kFace);
    // The down arrow: rows 17 (the tip, empty), 16 (7..8), 15 (6..9), 14 (5..10).
    EXPECT_EQ(PixelOf(*spin, 7, 16), kGlyph);
    EXPECT_EQ(PixelOf(*spin, 8, 17), kFace);
    EXPECT_EQ(PixelOf(*spin, 5, 14), kGlyph);

    Press(*spin, 8, 5);
    EXPECT_TRUE(spin->UpPressed());
    EXPECT_EQ(PixelOf(*spin, 7, 3), kFace);
    EXPECT_EQ(PixelOf(*spin, 8, 4), kGlyph);
    EXPECT_EQ(PixelOf(*spin, 9, 4), kGlyph);
    EXPECT_EQ(PixelOf(*spin, 11, 6), kGlyph);
    EXPECT_EQ(PixelOf(*spin, 5, 14), kGlyph); // the down arrow stays
    Release(*spin, 8, 5);
    spin->SetEnabled(false);
    EXPECT_EQ(PixelOf(*spin, 7, 3), ColorToRGB(clGrayText));
}

TEST_F(Spin, APressedButtonInvertsItsBevel) {
    auto* spin = Place<TqxSpinBtn>(10, 10);
    const auto bevel = [&](int y0) {
        return std::vector<TColor>{PixelOf(*spin, 0, y0), PixelOf(*spin, 1, y0 + 1),
                                   PixelOf(*spin, 15, y0 + 3), PixelOf(*spin, 14, y0 + 3)};
    };
    // Shadow outside above and left, highlight inside, black outside below and right, shadow
    // inside it.
    EXPECT_EQ(bevel(0), (std::vector<TColor>{kShade, kLight, kBlack, kShade}));
    EXPECT_EQ(PixelOf(*spin, 5, 9), kBlack);  // the up button's bottom row
    EXPECT_EQ(PixelOf(*spin, 5, 10), kShade); // the down button's top row
    Press(*spin, 8, 15);
    EXPECT_EQ(bevel(10), (std::vector<TColor>{kShade, kBlack, kLight, kShade}));
    EXPECT_EQ(bevel(0), (std::vector<TColor>{kShade, kLight, kBlack, kShade}));
    Release(*spin, 8, 15);
}

TEST_F(Spin, TheMiddleRowBelongsToTheUpButtonAndEachReleaseInsideClicksOnce) {
    auto* spin = Place<TqxSpinBtn>(10, 10);
    Press(*spin, 8, 10);
    Release(*spin, 8, 10);
    EXPECT_EQ(Take(), (Events{"OnClick", "OnUpClick"}));
    Press(*spin, 8, 11);
    Release(*spin, 8, 11);
    Press(*spin, 8, 11, true); // fast clicks each step
    Release(*spin, 8, 11);
    EXPECT_EQ(Take(), (Events{"OnClick", "OnDownClick", "OnClick", "OnDownClick"}));
}

TEST_F(Spin, MovingOffPopsTheButtonOutAndReleasingElsewhereClicksNoButton) {
    auto* spin = Place<TqxSpinBtn>(10, 10);
    Press(*spin, 8, 5);
    Move(*spin, 8, 15, isLeft); // over the down button
    EXPECT_FALSE(spin->UpPressed());
    EXPECT_FALSE(spin->DownPressed());
    Release(*spin, 8, 15);
    EXPECT_EQ(Take(), Events{"OnClick"});

    Press(*spin, 8, 5);
    Move(*spin, 40, 5, isLeft);
    Move(*spin, 8, 6, isLeft); // back again
    EXPECT_TRUE(spin->UpPressed());
    Release(*spin, 40, 5); // outside the control
    EXPECT_EQ(Take(), Events{});
    EXPECT_FALSE(spin->UpPressed());
    EXPECT_FALSE(spin->RepeatTimer().Enabled());
}

TEST_F(Spin, AHeldButtonRepeatsAfterWaitRepeatPlusOneTicks) {
    auto* spin = Place<TqxSpinBtn>(10, 10);
    Press(*spin, 8, 5);
    Wait(950);
    EXPECT_EQ(Take(), Events{});
    Wait(50); // the fourth tick
    EXPECT_EQ(Take(), (Events{"OnClick", "OnUpClick"}));
    Wait(500);
    EXPECT_EQ(Take().size(), 4u);
    Release(*spin, 8, 5);
    EXPECT_EQ(Take(), (Events{"OnClick", "OnUpClick"}));
    Wait(1000);
    EXPECT_EQ(Take(), Events{});

    spin->SetWaitRepeat(0);
    spin->SetSpinSpeed(100);
    Press(*spin, 8, 15);
    Wait(200); // the second tick repeats
    EXPECT_EQ(Take(), (Events{"OnClick", "OnDownClick"}));
    Move(*spin, 8, 5, isLeft); // popped out: no repeats
    Wait(500);
    EXPECT_EQ(Take(), Events{});
    Release(*spin, 8, 5); // inside, with no button pressed
    EXPECT_EQ(Take(), Events{"OnClick"});

    spin->SetUseRepeat(false);
    Press(*spin, 8, 5);
    Wait(3000);
    Release(*spin, 8, 5);
    EXPECT_EQ(Take(), (Events{"OnClick", "OnUpClick"}));
}

TEST_F(Spin, SpeedAndWaitAreClampedIntoTheirSubranges) {
    auto* spin = Place<TqxSpinBtn>(10, 10);
    spin->SetSpinSpeed(10);
    EXPECT_EQ(spin->SpinSpeed(), 50);
    EXPECT_EQ(spin->RepeatTimer().Interval(), 50u);
    spin->SetSpinSpeed(100000);
    EXPECT_EQ(spin->SpinSpeed(), 2500);
    spin->SetWaitRepeat(-1);
    EXPECT_EQ(spin->WaitRepeat(), 0);
    spin->SetWaitRepeat(11);
    EXPECT_EQ(spin->WaitRepeat(), 10);
}

TEST_F(Spin, TheCentreButtonHasItsOwnZoneBevelAndEvent) {
    auto* spin = Place<TqxCenterSpinBtn>(10, 10); // up 0..8, centre 9..13, down 14..21
    Press(*spin, 8, 8);
    Release(*spin, 8, 8);
    Press(*spin, 8, 9);
    EXPECT_TRUE(spin->CenterPressed());
    EXPECT_EQ(PixelOf(*spin, 1, 9), kBlack); // pressed: black inner top-left
    EXPECT_EQ(PixelOf(*spin, 8, 10), kFace); // no glyph
    Release(*spin, 8, 9);
    EXPECT_EQ(PixelOf(*spin, 1, 9), kLight);
    Press(*spin, 8, 13);
    Release(*spin, 8, 13);
    Press(*spin, 8, 14);
    Release(*spin, 8, 14);
    EXPECT_EQ(Take(), (Events{"OnClick", "OnUpClick", "OnClick", "OnCenterClick", "OnClick",
                              "OnCenterClick", "OnClick", "OnDownClick"}));
}
