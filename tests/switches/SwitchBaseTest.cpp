// The switch base through a small subclass that keeps the base's halves and marks each paint
// hook: regions, the pressed look while dragging, the order of events from the mouse, the
// space bar and the accelerator, and the pixels of background, focus frame and caption.

#include "SwitchFixture.h"

#include "package/Registration.h"
#include "platform/core/ClassRegistry.h"
#include "platform/core/DesignerRegistry.h"
#include "platform/core/Exceptions.h"
#include "platform/streaming/Reader.h"

using namespace qv;

namespace {

constexpr TColor kOffMark = 0x0000FF, kOnMark = 0x00FF00, kDisabledMark = 0xFF0000;
constexpr TColor kText = 0x000080;

// A switch whose hooks fill a 4 x 4 mark at the top right in their own colour and draw the
// caption over the whole client.
class TMarkedSwitch : public TqxCustomOnOff {
public:
    using TqxCustomOnOff::TqxCustomOnOff;

protected:
    void PaintDisabled(TCanvas& c) override { Mark(c, kDisabledMark); }
    void PaintOn(TCanvas& c) override { Mark(c, kOnMark); }
    void PaintOff(TCanvas& c) override { Mark(c, kOffMark); }

private:
    void Mark(TCanvas& c, TColor color) {
        c.Brush().SetColor(color);
        c.FillRect({Width() - 4, 0, Width(), 4});
        PaintText(ClientRect(), c);
    }
};

// The bounding box of the pixels of `color`.
TRect BoxOf(const TPixelBuffer& p, TColor color) {
    TRect box{p.Width(), p.Height(), 0, 0};
    for (int y = 0; y < p.Height(); ++y)
        for (int x = 0; x < p.Width(); ++x)
            if (p.At(x, y) == ColorToPixel(color))
                box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
                       std::max(box.bottom, y + 1)};
    return box;
}

class SwitchBaseTest : public SwitchTest {
protected:
    // A loaded switch at (20, 20), 80 x 40, with every event recorded.
    TMarkedSwitch* LoadedSwitch() {
        auto* s = Place<TMarkedSwitch>(20, 20, 80, 40);
        s->Loaded();
        Record(*s);
        return s;
    }
    void Record(TMarkedSwitch& s) {
        auto note = [this](const char* name) {
            return [this, name](TObject*) { log.push_back(name); };
        };
        s.OnOn = note("on");
        s.OnOff = note("off");
        s.OnClick = note("click");
        s.OnEnter = note("enter");
        s.OnMouseEnter = note("mouse-enter");
        s.OnMouseDown = [this](TObject*, TMouseButtonKind, TShiftState, int, int) {
            log.push_back("mouse-down");
        };
        s.OnMouseUp = [this](TObject*, TMouseButtonKind, TShiftState, int, int) {
            log.push_back("mouse-up");
        };
        s.OnKeyDown = [this](TObject*, unsigned&, TShiftState) { log.push_back("key-down"); };
        s.OnKeyUp = [this](TObject*, unsigned&, TShiftState) { log.push_back("key-up"); };
        s.OnKeyPress = [this](TObject*, char&) { log.push_back("key-press"); };
    }
    std::vector<std::string> log;
};

using Log = std::vector<std::string>;

} // namespace

TEST_F(SwitchBaseTest, RegionsExistFromLoadedAndFollowTheState) {
    auto* s = Place<TMarkedSwitch>(20, 20, 80, 40);
    EXPECT_FALSE(s->OnRegion());
    EXPECT_FALSE(s->OffRegion());
    Press(*s, 10, 5);
    EXPECT_FALSE(s->Pressed()); // no regions before Loaded
    Release(*s, 10, 5);
    s->Loaded();
    ASSERT_TRUE(s->OnRegion() && s->OffRegion());

    Press(*s, 10, 30); // the lower half of an off switch
    EXPECT_FALSE(s->Pressed());
    EXPECT_FALSE(s->Focused());
    Release(*s, 10, 30);
    EXPECT_FALSE(s->SwitchOn());
    Press(*s, 10, 19); // the last row of the upper half
    EXPECT_TRUE(s->Pressed());
    EXPECT_TRUE(s->Focused());
    Release(*s, 10, 19);
    EXPECT_TRUE(s->SwitchOn());

    Click(*s, 10, 5); // on: the upper half does nothing
    EXPECT_TRUE(s->SwitchOn());
    Click(*s, 10, 20);
    EXPECT_FALSE(s->SwitchOn());
}

TEST_F(SwitchBaseTest, DragFlipsThePressedLookAndOnlyAReleaseInsideToggles) {
    auto* s = LoadedSwitch();
    Press(*s, 10, 5);
    Move(*s, 80, 5); // the right edge is outside
    EXPECT_FALSE(s->Pressed());
    Move(*s, 10, 5);
    EXPECT_TRUE(s->Pressed());
    Move(*s, 10, 40); // the bottom edge is inside
    EXPECT_TRUE(s->Pressed());
    log.clear();
    Release(*s, 10, 40); // ... but the platform clicks only inside the client rectangle
    EXPECT_FALSE(s->Pressed());
    EXPECT_FALSE(s->SwitchOn());
    EXPECT_EQ(log, (Log{"mouse-up"}));

    Press(*s, 10, 5);
    Move(*s, 120, 70);
    log.clear();
    Release(*s, 120, 70);
    EXPECT_FALSE(s->SwitchOn());
    EXPECT_EQ(log, (Log{"mouse-up"}));
}

TEST_F(SwitchBaseTest, MouseSpaceAndAcceleratorRaiseTheirEventsInOrder) {
    auto* s = LoadedSwitch();
    Move(*s, 10, 5);
    log.clear();
    Click(*s, 10, 5);
    EXPECT_EQ(log, (Log{"mouse-down", "enter", "on", "click", "mouse-up"}));

    log.clear();
    SpaceDown();
    EXPECT_TRUE(s->Pressed());
    SpaceUp();
    EXPECT_EQ(log, (Log{"key-press", "off", "click"})); // no OnKeyDown or OnKeyUp for space

    log.clear();
    s->SetCaption("&Go");
    Headless().Char(form->NativeWindow(), 'g');
    Pump();
    EXPECT_EQ(log, (Log{"on", "click"}));

    log.clear();
    s->SetSwitchOn(true);
    EXPECT_TRUE(log.empty());
    s->SetSwitchOn(false);
    EXPECT_EQ(log, (Log{"off"}));
}

TEST_F(SwitchBaseTest, SpaceHeldThroughAMouseClickTogglesOnce) {
    auto* s = LoadedSwitch();
    s->SetFocus();
    SpaceDown();
    Click(*s, 10, 5);
    SpaceUp();
    EXPECT_TRUE(s->SwitchOn());
    EXPECT_EQ(std::count(log.begin(), log.end(), "click"), 1);
}

TEST_F(SwitchBaseTest, ASecondFastClickTogglesAgainAndLosingTheFocusEndsAPress) {
    auto* s = LoadedSwitch();
    Click(*s, 10, 5);
    Press(*s, 10, 25, true); // arrives as a double click
    Release(*s, 10, 25);
    EXPECT_FALSE(s->SwitchOn());
    EXPECT_EQ(std::count(log.begin(), log.end(), "click"), 2);

    auto* other = Place<TMarkedSwitch>(200, 20);
    SpaceDown();
    EXPECT_TRUE(s->Pressed());
    other->SetFocus();
    EXPECT_FALSE(s->Pressed());
}

TEST_F(SwitchBaseTest, AutofocusTakesTheFocusBeforeOnMouseEnter) {
    auto* s = LoadedSwitch();
    s->SetAutoFocus(true);
    Move(*s, 10, 10);
    EXPECT_TRUE(s->Focused());
    EXPECT_EQ(log, (Log{"enter", "mouse-enter"}));
}

TEST_F(SwitchBaseTest, BackgroundHookAndFocusFramePixels) {
    auto* s = LoadedSwitch();
    s->SetBackColor(0x00FFFF);
    TPixelBuffer p = Picture(*s);
    EXPECT_EQ(p.At(0, 0), ColorToPixel(0x00FFFF));
    EXPECT_EQ(p.At(79, 0), ColorToPixel(kOffMark));
    s->SetSwitchOn(true);
    EXPECT_EQ(Picture(*s).At(79, 0), ColorToPixel(kOnMark));
    s->SetSteelLook(true);
    p = Picture(*s);
    EXPECT_EQ(p.At(0, 0), ColorToPixel(0xC0C0C0));
    EXPECT_EQ(p.At(1, 1), ColorToPixel(0xFFFFFF));
    s->SetEnabled(false);
    EXPECT_EQ(Picture(*s).At(79, 0), ColorToPixel(kDisabledMark));

    // The focus frame: only focused, enabled and with UseFocusFrame.
    s->SetSteelLook(false);
    s->SetEnabled(true);
    const TPixelBuffer plain = Picture(*s);
    s->SetUseFocusFrame(true);
    EXPECT_TRUE(SamePixels(Picture(*s), plain, "frame-unfocused"));
    s->SetFocus();
    const TPixelBuffer framed = Picture(*s);
    EXPECT_NE(framed.At(0, 10), plain.At(0, 10));
    EXPECT_EQ(framed.At(40, 20), plain.At(40, 20));
    s->SetUseFocusFrame(false);
    EXPECT_TRUE(SamePixels(Picture(*s), plain, "frame-off"));
}

TEST_F(SwitchBaseTest, CaptionMovesWhilePressedAndIsEmbossedWhenDisabled) {
    auto* s = LoadedSwitch();
    s->SetCaption("Ab");
    s->SetUseFocusBold(false);
    s->Font()->SetColor(kText);
    const TRect up = BoxOf(Picture(*s), kText);
    Press(*s, 10, 5);
    TRect down = BoxOf(Picture(*s), kText);
    OffsetRect(down, -1, -1);
    EXPECT_EQ(down, up);
    Release(*s, 70, 5);
    s->SetShowTextPress(false);
    Press(*s, 10, 25);
    EXPECT_EQ(BoxOf(Picture(*s), kText), up);
    Release(*s, 10, 25);

    s->SetEnabled(false);
    const TPixelBuffer disabled = Picture(*s);
    EXPECT_FALSE(Has(disabled, kText));
    EXPECT_TRUE(Has(disabled, 0xFFFFFF));
    const TRect grey = BoxOf(disabled, 0x808080);
    EXPECT_EQ(grey.left, up.left); // grey in place, white one pixel down and right
    EXPECT_EQ(BoxOf(disabled, 0xFFFFFF).right, grey.right + 1);
}

TEST_F(SwitchBaseTest, AnUnknownPlacementInAFormFileNamesItsLine) {
    ClearDesignerRegistry();
    RegisterPackage();
    const std::string text = "object S: TqxLightOnOff\n"
                             "  Caption = 'Fan'\n"
                             "  HorzAlign = qbha_Middle\n"
                             "end\n";
    try {
        ReadComponentText(text);
        FAIL() << "read without an error";
    } catch (const EReadError& e) {
        EXPECT_NE(std::string(e.what()).find("line 3"), std::string::npos) << e.what();
        EXPECT_NE(std::string(e.what()).find("qbha_Middle"), std::string::npos) << e.what();
    }
    ClearDesignerRegistry();
}
