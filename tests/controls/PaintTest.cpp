// Painting into the form's frame buffer: controls paint in place over what lies beneath,
// opaque children are left out of their parent's painting, controls that reach beyond the
// form paint their visible part, and the frame lives in the backend's storage while the form
// has a native window.

#include "ControlsFixture.h"

#include "platform/controls/Panel.h"

using namespace qv;
using namespace qvtest;

namespace {

// Paints each column x in RGB(x, 40, 80), so a pixel tells which column of the control
// landed there.
template <class Base> class TColumns : public Base {
public:
    using Base::Base;

protected:
    void Paint() override {
        TCanvas& c = this->Canvas();
        for (int x = 0; x < this->Width(); ++x) {
            c.Brush().SetColor(RGB(x, 40, 80));
            c.FillRect(Rect(x, 0, x + 1, this->Height()));
        }
    }
};

// Claims to be opaque but paints nothing at all, so whatever is seen in its bounds is
// what was there before: neither its parent's painting nor an erase of its background
// reached it.
template <class Base> class TClaimsOpaque : public Base {
public:
    explicit TClaimsOpaque(TComponent* owner) : Base(owner) {
        this->SetControlStyle(this->ControlStyle() + TControlStyle{csOpaque});
    }

protected:
    void Paint() override {}
};

// Leaves its background alone and draws one dot: transparent apart from that.
class TDot : public TCustomControl {
public:
    using TCustomControl::TCustomControl;

protected:
    void WMEraseBkgnd(TMessage& m) override { m.Result = 1; }
    void Paint() override { Canvas().SetPixel(2, 2, clYellow); }
};

class PaintTest : public ControlsFixture {
protected:
    void SetUp() override {
        ControlsFixture::SetUp();
        form->SetColor(clRed);
    }
};

} // namespace

TEST_F(PaintTest, OpaqueChildrenAreLeftOutOfTheirParentsPainting) {
    auto* windowed = Add<TClaimsOpaque<TCustomControl>>({10, 10, 40, 40});
    auto* graphic = new TClaimsOpaque<TGraphicControl>(form);
    graphic->SetParent(form);
    graphic->SetBoundsRect({60, 10, 90, 40});
    const auto setOpaque = [&](bool opaque) {
        for (TControl* c : {static_cast<TControl*>(windowed), static_cast<TControl*>(graphic)})
            c->SetControlStyle(opaque ? c->ControlStyle() + TControlStyle{csOpaque}
                                      : c->ControlStyle() - TControlStyle{csOpaque});
    };
    setOpaque(false); // first the form paints beneath them
    Show();
    EXPECT_EQ(ShotPixel(20, 20), clRed);
    EXPECT_EQ(ShotPixel(70, 20), clRed);

    setOpaque(true);
    form->SetColor(clBlue);
    EXPECT_EQ(ShotPixel(5, 5), clBlue);
    EXPECT_EQ(ShotPixel(20, 20), clRed); // left as it was
    EXPECT_EQ(ShotPixel(70, 20), clRed);

    setOpaque(false);
    EXPECT_EQ(ShotPixel(20, 20), clBlue);
    EXPECT_EQ(ShotPixel(70, 20), clBlue);

    // Hidden opaque children cover nothing.
    setOpaque(true);
    windowed->SetVisible(false);
    form->SetColor(clLime);
    EXPECT_EQ(ShotPixel(20, 20), clLime);
    EXPECT_EQ(ShotPixel(70, 20), clBlue);
}

TEST_F(PaintTest, TransparentWindowedControlsPaintOverTheirParentsNewPixels) {
    auto* panel = Add<TPanel>({10, 10, 110, 60});
    panel->SetBevelOuter(bvNone);
    panel->SetColor(clLime);
    Add<TDot>({20, 15, 60, 45}, panel);
    Show();
    EXPECT_EQ(ShotPixel(10 + 22, 10 + 17), clYellow);
    EXPECT_EQ(ShotPixel(10 + 25, 10 + 25), clLime);
    panel->SetColor(clAqua);
    Pump();
    EXPECT_EQ(ShotPixel(10 + 25, 10 + 25), clAqua);
    EXPECT_EQ(ShotPixel(10 + 22, 10 + 17), clYellow);
}

TEST_F(PaintTest, ControlsPaintAtTheirPlaceInsideAndBeyondTheForm) {
    // Inside the form, nested in a panel: windowed and graphic.
    auto* panel = Add<TPanel>({20, 30, 220, 130});
    panel->SetBevelOuter(bvNone);
    Add<TColumns<TCustomControl>>({5, 5, 45, 25}, panel);
    auto* graphic = new TColumns<TGraphicControl>(form);
    graphic->SetParent(panel);
    graphic->SetBoundsRect({50, 5, 90, 25});
    // Reaching beyond the left and the right edge of the form (300 wide).
    Add<TColumns<TCustomControl>>({-10, 150, 30, 170});
    Add<TColumns<TCustomControl>>({280, 150, 320, 170});
    // A graphic control reaching beyond its panel and the form.
    auto* edge = Add<TPanel>({250, 100, 300, 140});
    edge->SetBevelOuter(bvNone);
    auto* beyond = new TColumns<TGraphicControl>(form);
    beyond->SetParent(edge);
    beyond->SetBoundsRect({30, 10, 70, 30});
    Show();

    EXPECT_EQ(ShotPixel(25, 35), RGB(0, 40, 80));
    EXPECT_EQ(ShotPixel(64, 54), RGB(39, 40, 80));
    EXPECT_EQ(ShotPixel(65, 35), ColorToRGB(clBtnFace)); // the gap in the panel
    EXPECT_EQ(ShotPixel(70, 35), RGB(0, 40, 80));
    EXPECT_EQ(ShotPixel(109, 54), RGB(39, 40, 80));
    EXPECT_EQ(ShotPixel(0, 150), RGB(10, 40, 80));
    EXPECT_EQ(ShotPixel(29, 169), RGB(39, 40, 80));
    EXPECT_EQ(ShotPixel(280, 150), RGB(0, 40, 80));
    EXPECT_EQ(ShotPixel(299, 169), RGB(19, 40, 80));
    EXPECT_EQ(ShotPixel(280, 110), RGB(0, 40, 80));
    EXPECT_EQ(ShotPixel(299, 129), RGB(19, 40, 80));
    EXPECT_EQ(ShotPixel(279, 110), ColorToRGB(clBtnFace));
    EXPECT_EQ(ShotPixel(280, 131), ColorToRGB(clBtnFace));
}

TEST_F(PaintTest, TheFrameLivesInTheBackendsStorageWhileTheFormHasAWindow) {
    Add<TColumns<TCustomControl>>({10, 10, 50, 30});
    EXPECT_FALSE(form->FrameBuffer().IsView());
    Show();
    EXPECT_TRUE(form->FrameBuffer().IsView());
    EXPECT_EQ(Headless().Window(Window()).presented, form->FrameBuffer());

    form->SetBounds(100, 50, 320, 210); // new storage of the new size
    Pump();
    EXPECT_TRUE(form->FrameBuffer().IsView());
    EXPECT_EQ(form->FrameBuffer().Bounds(), Rect(0, 0, 320, 210));
    EXPECT_EQ(Headless().Window(Window()).presented, form->FrameBuffer());
    EXPECT_EQ(ShotPixel(11, 10), RGB(1, 40, 80));
}

TEST_F(PaintTest, ReplacingTheBackendGivesTheFrameBackToTheForm) {
    Add<TColumns<TCustomControl>>({10, 10, 50, 30});
    Show();
    const TPixelBuffer before = form->FrameBuffer();
    Application().SetBackend(std::make_unique<THeadlessBackend>());
    EXPECT_FALSE(form->FrameBuffer().IsView());
    EXPECT_EQ(form->FrameBuffer(), before);
}
