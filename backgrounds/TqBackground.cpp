#include "backgrounds/TqBackground.h"

#include "componentbase/Steel.h"
#include "componentbase/Tiles.h"
#include "platform/core/ClassBuilder.h"
#include "platform/core/Exceptions.h"
#include "utility/FormHelpers.h"

namespace qv {

const TClassInfo& TqBackground::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqBackground> b("TqBackground", &TComponent::StaticClassInfo());
        b.Property("FillType", &TqBackground::FillType, &TqBackground::SetFillType)
            .Default(Defaults::FillType);
        b.Event("OnPaint", &TqBackground::OnPaint);
        b.Event("OnResize", &TqBackground::OnResize);
        b.Object("BitMap", &TqBackground::BitMap);
        b.Property("BackType", &TqBackground::BackType, &TqBackground::SetBackType)
            .Default(Defaults::BackType);
        b.Property("Color", ColorType(), &TqBackground::Color, &TqBackground::SetColor)
            .Default(Defaults::Color);
        b.Property("EndColor", ColorType(), &TqBackground::EndColor, &TqBackground::SetEndColor)
            .Default(Defaults::EndColor);
        b.Property("Bands", &TqBackground::Bands, &TqBackground::SetBands)
            .Default(Defaults::Bands);
        return b.Build();
    }();
    return info;
}

TqBackground::TqBackground(TComponent* AOwner) : TComponent(AOwner) {
    m_colors = GradientColors(m_color, m_endColor);
    m_bitmap->OnChange = [this](TObject*) { Changed(); };
}

// The hook goes with the component (m_hook); the bitmap after it.
TqBackground::~TqBackground() {
    m_hook.Remove();
    m_bitmap->OnChange = nullptr;
}

void TqBackground::Changed() {
    m_colors = GradientColors(m_color, m_endColor);
    if (!IsDesigning() && m_form && Hooked()) m_form->Invalidate();
}

// Always repaints, also when the value is the same.
void TqBackground::SetFillType(gradType value) {
    m_fillType = value;
    Changed();
}

void TqBackground::SetBitMap(const TBitmap* value) {
    if (value) m_bitmap->Assign(*value); // announces itself through OnChange
}

void TqBackground::SetBackType(TqBackType value) {
    if (value == m_backType) return;
    m_backType = value;
    Changed();
}

void TqBackground::SetColor(TColor value) {
    if (value == m_color) return;
    m_color = value;
    Changed();
}

void TqBackground::SetEndColor(TColor value) {
    if (value == m_endColor) return;
    m_endColor = value;
    Changed();
}

void TqBackground::SetBands(int value) {
    if (value == m_bands) return;
    m_bands = value;
    Changed();
}

// A component whose owners include no form has nothing to paint and stays unhooked. There is
// no separate client window on a form of MDI style here: the form itself is hooked.
void TqBackground::Loaded() {
    TComponent::Loaded();
    if (IsDesigning() || Hooked()) return;
    try {
        m_form = &FindForm(*this);
    } catch (const EComponentError&) {
        return;
    }
    m_hook = TWindowHook(m_form->Handle(), [this](TMessage& Message, const TWndMethod& Previous) {
        WindowProc(Message, Previous);
    });
}

void TqBackground::WindowProc(TMessage& Message, const TWndMethod& Previous) {
    if (IsDesigning() || m_form->IsDestroying()) {
        Previous(Message);
        return;
    }
    switch (Message.Msg) {
    case WM_ERASEBKGND:
        EraseBackground(Message, Previous);
        Message.Result = 1;
        return;
    case WM_SIZE:
        // The form's own OnResize comes after this one, from the previous procedure; the
        // whole form is painted again, so the wallpaper is laid out for the new size.
        DoResize();
        Previous(Message);
        m_form->Invalidate();
        return;
    default:
        Previous(Message);
    }
}

// Minimised, the form erases as it would without the background, and OnPaint does not fire;
// otherwise OnPaint follows the wallpaper, also where the form's colour was left.
void TqBackground::EraseBackground(TMessage& Message, const TWndMethod& Previous) {
    if (m_form->WindowState() == wsMinimized) {
        Previous(Message);
        return;
    }
    auto& canvas = *reinterpret_cast<TCanvas*>(Message.WParam);
    const TWallpaper done = PaintWallpaper(canvas, m_form->ClientWidth(), m_form->ClientHeight());
    if (done != TWallpaper::Painted) Previous(Message);
    if (done != TWallpaper::Abandoned) DoPaint(canvas);
}

TqBackground::TWallpaper TqBackground::PaintWallpaper(TCanvas& canvas, int width, int height) {
    switch (m_backType) {
    case btBitmap:
        if (m_bitmap->Empty()) return TWallpaper::LeftToForm;
        TileBitmap(canvas, *m_bitmap, width, height, TTileOrder::RowsOuter);
        return TWallpaper::Painted;
    case btBlend:
        // A centre gradient with no frame to divide by paints nothing of its own.
        return PaintGradient(canvas, m_fillType, m_colors, m_bands,
                             TGradientLayout::Control(width, height))
                   ? TWallpaper::Painted
                   : TWallpaper::Abandoned;
    case btNormal:
        return TWallpaper::LeftToForm;
    case btSteel:
        PaintSteel(canvas, {0, 0, width, height});
        return TWallpaper::Painted;
    }
    return TWallpaper::LeftToForm;
}

void TqBackground::DoPaint(TCanvas& canvas) {
    if (OnPaint) OnPaint(&canvas, this);
}

void TqBackground::DoResize() {
    if (OnResize) OnResize(this);
}

} // namespace qv
