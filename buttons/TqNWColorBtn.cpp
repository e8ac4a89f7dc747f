#include "buttons/TqNWColorBtn.h"

#include "componentbase/PaintFrame.h"

#include "platform/controls/ControlProperties.h"

namespace qv {

const TClassInfo& TqNWColorBtn::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqNWColorBtn> b("TqNWColorBtn", &TGraphicControl::StaticClassInfo());
        b.Property("Frame", &TqNWColorBtn::Frame, &TqNWColorBtn::SetFrame).Default(Defaults::Frame);
        b.Property("Movement", &TqNWColorBtn::Movement, &TqNWColorBtn::SetMovement)
            .Default(Defaults::Movement);
        b.Property("Flat", &TqNWColorBtn::Flat, &TqNWColorBtn::SetFlat).Default(Defaults::Flat);
        b.Property("HorzAlign", &TqNWColorBtn::HorzAlign, &TqNWColorBtn::SetHorzAlign)
            .Default(Defaults::HorzAlign);
        b.Property("MultipleLines", &TqNWColorBtn::MultipleLines, &TqNWColorBtn::SetMultipleLines)
            .Default(Defaults::MultipleLines);
        b.Property("WordWrap", &TqNWColorBtn::WordWrap, &TqNWColorBtn::SetWordWrap)
            .Default(Defaults::WordWrap);
        b.Property("Alignment", &TqNWColorBtn::Alignment, &TqNWColorBtn::SetAlignment)
            .Default(Defaults::Alignment);
        b.Event("OnPaint", &TqNWColorBtn::OnPaint);
        b.Property("Cancel", &TqNWColorBtn::Cancel, &TqNWColorBtn::SetCancel)
            .Default(Defaults::Cancel);
        PublishControlProperties(b, {"PopupMenu", "OnDragDrop", "OnDragOver", "OnEndDrag",
                                     "OnMouseDown", "OnMouseMove", "OnMouseUp", "DragCursor",
                                     "DragMode", "Font", "ParentFont", "Caption", "Color",
                                     "ParentColor"});
        b.Property("HighLightColor", ColorType(), &TqNWColorBtn::HighLightColor,
                   &TqNWColorBtn::SetHighLightColor)
            .Default(Defaults::HighLightColor);
        b.Property("ShadowColor", ColorType(), &TqNWColorBtn::ShadowColor,
                   &TqNWColorBtn::SetShadowColor)
            .Default(Defaults::ShadowColor);
        PublishControlProperties(b, {"Width"});
        b.Default(Defaults::Width);
        PublishControlProperties(b, {"Height"});
        b.Default(Defaults::Height);
        PublishControlProperties(b,
                                 {"Enabled", "ParentShowHint", "ShowHint", "Visible", "OnClick"});
        b.Event("OnMouseEnter", &TqNWColorBtn::OnMouseEnter);
        b.Event("OnMouseLeave", &TqNWColorBtn::OnMouseLeave);
        b.Property("Transparent", &TqNWColorBtn::Transparent, &TqNWColorBtn::SetTransparent)
            .Default(Defaults::Transparent);
        b.Property("GlassValue", &TqNWColorBtn::GlassValue, &TqNWColorBtn::SetGlassValue)
            .Default(Defaults::GlassValue);
        return b.Build();
    }();
    return info;
}

TqNWColorBtn::TqNWColorBtn(TComponent* AOwner) : TColorButtonBase<TGraphicControl>(AOwner) {
    SetControlStyle({csCaptureMouse, csClickEvents, csSetCaption, csOpaque});
}

void TqNWColorBtn::SetFrame(bool value) {
    if (value == m_frame) return;
    m_frame = value;
    SetMouseIn();
    Invalidate();
}

void TqNWColorBtn::SetMovement(bool value) {
    if (value == m_movement) return;
    m_movement = value;
    SetMouseIn();
    Invalidate();
}

void TqNWColorBtn::SetTransparent(bool value) {
    if (value == m_transparent) return;
    m_transparent = value;
    SetOpaqueStyle(*this, !value);
    ClearHover();
    SetMouseIn();
    Invalidate();
}

void TqNWColorBtn::SetGlassValue(std::uint8_t value) {
    m_glassValue = value;
    Invalidate();
}

void TqNWColorBtn::SetBounds(int ALeft, int ATop, int AWidth, int AHeight) {
    TColorButtonBase<TGraphicControl>::SetBounds(ALeft, ATop, AWidth, AHeight);
    Invalidate();
}

void TqNWColorBtn::RepaintForTransparency(bool atOnce) {
    if (atOnce)
        Repaint();
    else
        Invalidate();
}

void TqNWColorBtn::Click() {
    SetMouseIn();
    EndHolding();
    RepaintForTransparency(!m_transparent);
    TColorButtonBase<TGraphicControl>::Click();
}

void TqNWColorBtn::PressByMouse() {
    SetHover(true);
    SetDown(true);
    Invalidate();
}

void TqNWColorBtn::RepaintAfterRelease() {
    RepaintForTransparency(m_transparent);
}

bool TqNWColorBtn::BevelShown() const {
    return m_frame && TColorButtonBase<TGraphicControl>::BevelShown();
}

bool TqNWColorBtn::CaptionMoves() const {
    return m_movement && TColorButtonBase<TGraphicControl>::CaptionMoves();
}

TFrameBackground TqNWColorBtn::Background() const {
    return m_transparent ? TFrameBackground::Beneath() : TFrameBackground::Flat(Color());
}

// Glass: every channel of what lies beneath ORed with GlassValue (DPo with a grey brush).
bool TqNWColorBtn::PaintFace(TCanvas& canvas) {
    if (!m_transparent || m_glassValue == 0) return true;
    const TColor brush = canvas.Brush().Color();
    canvas.Brush().SetColor(RGB(m_glassValue, m_glassValue, m_glassValue));
    constexpr std::uint32_t kBrushOrDest = 0x00FA0089;
    PatBlt(canvas.Handle(), 0, 0, Width(), Height(), kBrushOrDest);
    canvas.Brush().SetColor(brush);
    return true;
}

void TqNWColorBtn::CMDialogChar(TMessage& Message) {
    if (IsAccel(static_cast<unsigned>(Message.WParam), Caption())) {
        Click();
        Message.Result = 1;
        return;
    }
    TColorButtonBase<TGraphicControl>::CMDialogChar(Message);
}

} // namespace qv
