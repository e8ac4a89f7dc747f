#include "switches/TqxSlideOnOff.h"

#include "switches/SwitchPictures.h"

#include <algorithm>

namespace qv {

namespace {
constexpr int MinThickness = 6; // a thinner picture leaves the slide out

// Where the thumb stands along the slot: at the off end, half way, at the on end.
enum class TThumbAt { OffEnd, Middle, OnEnd };

// The slot and the thumb in `area`, along its longer side.
struct TSlide {
    bool horizontal;
    TRect slot, thumb;
};

TSlide SlideIn(const TRect& area, TThumbAt at) {
    TSlide s;
    s.horizontal = area.Width() >= area.Height();
    const int along = s.horizontal ? area.Width() : area.Height();
    const int across = s.horizontal ? area.Height() : area.Width();
    const int slotAcross = std::max(4, across / 2);
    const int thumbAlong = std::max(4, along * 2 / 5);
    const int travel = along - thumbAlong;
    const int offset = at == TThumbAt::OffEnd ? 0 : at == TThumbAt::Middle ? travel / 2 : travel;
    if (s.horizontal) {
        s.slot = CentredIn(area, along, slotAcross);
        s.thumb = {area.left + offset, area.top, area.left + offset + thumbAlong, area.bottom};
    } else {
        s.slot = CentredIn(area, slotAcross, along);
        // Upright, the on end is the top.
        s.thumb = {area.left, area.bottom - offset - thumbAlong, area.right, area.bottom - offset};
    }
    return s;
}

// Three ridges across the thumb's face: a shadow line beside a highlight line each.
void PaintRidges(TCanvas& canvas, const TRect& face, bool horizontal, const TBevelColors& colors) {
    const int along = horizontal ? face.Width() : face.Height();
    const int gap = std::max(2, along / 6);
    const int middle = horizontal ? face.left + face.Width() / 2 : face.top + face.Height() / 2;
    canvas.Pen().SetWidth(1);
    for (int i = -1; i <= 1; ++i) {
        const int at = middle + i * gap;
        for (int line = 0; line < 2; ++line) {
            canvas.Pen().SetColor(line == 0 ? colors.shadow : colors.highlight);
            if (horizontal) {
                canvas.MoveTo(at + line, face.top + 1);
                canvas.LineTo(at + line, face.bottom - 1);
            } else {
                canvas.MoveTo(face.left + 1, at + line);
                canvas.LineTo(face.right - 1, at + line);
            }
        }
    }
}
} // namespace

const TClassInfo& TqxSlideOnOff::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqxSlideOnOff> b("TqxSlideOnOff", &TqxCustomOnOff::StaticClassInfo());
        PublishGlyphAlign(b);
        return b.Build();
    }();
    return info;
}

TqxSlideOnOff::TqxSlideOnOff(TComponent* AOwner) : TqxCustomOnOff(AOwner) {
    FollowGeometry();
}

TRect TqxSlideOnOff::PictureHalf(bool onEnd) const {
    const TRect p = PictureLayout().picture;
    TRect half = p;
    if (p.Width() >= p.Height()) {
        const int middle = p.left + p.Width() / 2;
        (onEnd ? half.left : half.right) = middle;
    } else {
        const int middle = p.top + p.Height() / 2;
        (onEnd ? half.bottom : half.top) = middle;
    }
    return half;
}

void TqxSlideOnOff::GetOnReg(HRGN& region) {
    region = CreateRectRgnIndirect(PictureHalf(true));
}

void TqxSlideOnOff::GetOffReg(HRGN& region) {
    region = CreateRectRgnIndirect(PictureHalf(false));
}

void TqxSlideOnOff::PaintSwitch(TCanvas& canvas, TLook look) {
    const TOnOffLayout layout = PictureLayout();
    const TRect area = Shrunk(layout.picture, 1);
    if (std::min(area.Width(), area.Height()) >= MinThickness) {
        const bool on = look == TLook::On || (look == TLook::Disabled && SwitchOn());
        const TThumbAt at = look != TLook::Disabled && Pressed() ? TThumbAt::Middle
                            : on                                 ? TThumbAt::OnEnd
                                                                 : TThumbAt::OffEnd;
        const TSlide slide = SlideIn(area, at);
        if (look == TLook::Disabled) {
            OutlineRect(canvas, slide.slot, ShadowColor());
            canvas.Brush().SetStyle(bsSolid);
            canvas.Brush().SetColor(BackColor());
            canvas.Rectangle(slide.thumb);
        } else {
            TRect slot = slide.slot;
            PaintBevel(canvas, slot, TBevelKind::Lowered, 1, BevelColors());
            canvas.Brush().SetStyle(bsSolid);
            canvas.Brush().SetColor(LampColor(on));
            canvas.FillRect(slot);
            const TRect face =
                PaintButtonFace(canvas, slide.thumb, false, clBtnFace, BevelColors(), clBlack);
            PaintRidges(canvas, face, slide.horizontal, BevelColors());
        }
    }
    PaintText(layout.text, canvas);
}

} // namespace qv
