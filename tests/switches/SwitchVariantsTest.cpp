// The five switches: their pictures in each state, where a press counts, GlyphAlign, and
// captions and sizes that leave no room.

#include "SwitchFixture.h"

#include <functional>
#include <memory>

using namespace qv;

namespace {

using TMaker = std::function<TqxCustomOnOff*(TComponent*)>;

template <class S> TMaker Maker() {
    return [](TComponent* owner) -> TqxCustomOnOff* { return new S(owner); };
}

const std::vector<std::pair<std::string, TMaker>>& Variants() {
    static const std::vector<std::pair<std::string, TMaker>> all = {
        {"light", Maker<TqxLightOnOff>()}, {"push", Maker<TqxPushOnOff>()},
        {"double", Maker<TqxDblOnOff>()},  {"single", Maker<TqxSingleOnOff>()},
        {"slide", Maker<TqxSlideOnOff>()},
    };
    return all;
}

class SwitchVariantsTest : public SwitchTest {
protected:
    // A variant made in code, at (20, 20), with no further setting.
    TqxCustomOnOff* Make(const TMaker& make, int width = 89, int height = 33) {
        TqxCustomOnOff* s = make(form);
        s->SetParent(form);
        s->SetBounds(20, 20, width, height);
        return s;
    }
    struct TStates {
        TPixelBuffer off, on, disabled;
    };
    TStates States(TqxCustomOnOff& s) {
        TStates states;
        states.off = Picture(s);
        s.SetSwitchOn(true);
        states.on = Picture(s);
        s.SetEnabled(false);
        states.disabled = Picture(s);
        s.SetEnabled(true);
        s.SetSwitchOn(false);
        return states;
    }
    // Whether a click at (x, y) of an off switch turns it on, and then whether a click at
    // (x2, y2) turns it off again.
    std::pair<bool, bool> Toggles(TqxCustomOnOff& s, TPoint on, TPoint off) {
        Click(s, on.x, on.y);
        const bool turnedOn = s.SwitchOn();
        Click(s, off.x, off.y);
        return {turnedOn, turnedOn && !s.SwitchOn()};
    }
};

} // namespace

TEST_F(SwitchVariantsTest, StatesDifferVariantsDifferAndColorShowsOnlyWhenOn) {
    std::vector<TStates> all;
    for (const auto& [name, make] : Variants()) {
        SCOPED_TRACE(name);
        TqxCustomOnOff* s = Make(make);
        s->SetCaption("Power");
        const TStates states = States(*s);
        EXPECT_GT(Differing(states.off, states.on), 0);
        EXPECT_GT(Differing(states.off, states.disabled), 0);
        EXPECT_GT(Differing(states.on, states.disabled), 0);
        EXPECT_TRUE(Has(states.on, kLit));
        EXPECT_FALSE(Has(states.off, kLit));
        EXPECT_FALSE(Has(states.disabled, kLit));
        EXPECT_FALSE(Has(states.disabled, SwitchTest::kLit & 0x7F7F7F)); // never lit, not dimmed
        all.push_back(states);
        delete s;
    }
    for (std::size_t a = 0; a < all.size(); ++a)
        for (std::size_t b = a + 1; b < all.size(); ++b) {
            EXPECT_GT(Differing(all[a].off, all[b].off), 0) << a << " " << b;
            EXPECT_GT(Differing(all[a].on, all[b].on), 0) << a << " " << b;
        }
}

TEST_F(SwitchVariantsTest, LightAndPushToggleFromAnywhereSingleKeepsTheHalves) {
    for (int i : {0, 1}) {
        TqxCustomOnOff* s = Make(Variants()[static_cast<std::size_t>(i)].second);
        EXPECT_EQ(Toggles(*s, {5, 30}, {80, 2}), std::make_pair(true, true)) << i;
        delete s;
    }
    TqxCustomOnOff* single = Make(Maker<TqxSingleOnOff>());
    Click(*single, 40, 30);
    EXPECT_FALSE(single->SwitchOn());
    EXPECT_EQ(Toggles(*single, {40, 5}, {40, 20}), std::make_pair(true, true));
}

TEST_F(SwitchVariantsTest, DoubleAnswersOnItsKeysOnly) {
    auto* s = static_cast<TqxDblOnOff*>(Make(Maker<TqxDblOnOff>(), 120, 60));
    const auto keys = s->KeyRects();
    ASSERT_LT(keys.offKey.right, keys.onKey.right); // side by side, "O" on the left
    const TPoint o{(keys.offKey.left + keys.offKey.right) / 2, keys.offKey.top + 3};
    const TPoint i{(keys.onKey.left + keys.onKey.right) / 2, keys.onKey.top + 3};
    Click(*s, o.x, o.y); // the "O" key of an off switch does nothing
    EXPECT_FALSE(s->SwitchOn());
    Click(*s, 1, 1); // outside both keys
    EXPECT_FALSE(s->SwitchOn());
    EXPECT_EQ(Toggles(*s, i, o), std::make_pair(true, true));

    s->SetBounds(20, 20, 40, 90); // taller than wide: stacked, "I" on top
    const auto stacked = s->KeyRects();
    EXPECT_LT(stacked.onKey.bottom, stacked.offKey.bottom);
    EXPECT_EQ(Toggles(*s, {20, stacked.onKey.top + 3}, {20, stacked.offKey.bottom - 3}),
              std::make_pair(true, true));
}

TEST_F(SwitchVariantsTest, SlideAnswersOnTheHalvesAlongItsSlot) {
    TqxCustomOnOff* s = Make(Maker<TqxSlideOnOff>());
    Click(*s, 10, 16); // the left half of an off switch does nothing
    EXPECT_FALSE(s->SwitchOn());
    EXPECT_EQ(Toggles(*s, {80, 16}, {10, 16}), std::make_pair(true, true));
    s->SetBounds(20, 20, 30, 100); // upright: the upper half turns it on
    EXPECT_EQ(Toggles(*s, {15, 10}, {15, 90}), std::make_pair(true, true));
}

TEST_F(SwitchVariantsTest, GlyphAlignMovesThePictureAndTheRegions) {
    TqxCustomOnOff* s = Make(Maker<TqxSlideOnOff>(), 160, 40);
    s->SetCaption("Fan");
    const TPixelBuffer top = Picture(*s);
    Click(*s, 30, 10); // the off half of the slot along the top
    EXPECT_FALSE(s->SwitchOn());
    s->SetGlyphAlign(qxgp_Left); // the slide now fills the left 40 x 40
    EXPECT_GT(Differing(Picture(*s), top), 0);
    Click(*s, 100, 5); // on the caption: outside both halves
    EXPECT_FALSE(s->SwitchOn());
    EXPECT_EQ(Toggles(*s, {30, 10}, {5, 10}), std::make_pair(true, true));
    for (TqxOnOffGraphPlacement placement : {qxgp_Top, qxgp_Bottom, qxgp_Left, qxgp_Right}) {
        s->SetGlyphAlign(placement);
        const TPixelBuffer p = Picture(*s);
        s->SetCaption("");
        EXPECT_GT(Differing(Picture(*s), p), 0) << placement; // the picture takes everything
        s->SetCaption("Fan");
    }
}

TEST_F(SwitchVariantsTest, TightSizesAndLongCaptionsPaintWithinBounds) {
    const std::string huge(10000, 'W');
    for (const auto& [name, make] : Variants()) {
        SCOPED_TRACE(name);
        TqxCustomOnOff* s = Make(make);
        s->SetMultipleLines(true);
        s->SetWordWrap(true);
        for (const std::string& caption : {std::string(), huge})
            for (TqxOnOffGraphPlacement placement : {qxgp_Top, qxgp_Bottom, qxgp_Left, qxgp_Right})
                for (const TSize size : {TSize{0, 0}, TSize{1, 1}, TSize{9, 5}, TSize{30, 8}}) {
                    s->SetCaption(caption);
                    s->SetGlyphAlign(placement);
                    s->SetBounds(20, 20, size.cx, size.cy);
                    Picture(*s);
                    for (const HRGN* region : {&s->OnRegion(), &s->OffRegion()}) {
                        ASSERT_TRUE(*region);
                        TRect box;
                        GetRgnBox(*region, box);
                        EXPECT_TRUE(box.left >= 0 && box.top >= 0 && box.right <= size.cx &&
                                    box.bottom <= size.cy);
                    }
                }
        delete s;
    }
}
