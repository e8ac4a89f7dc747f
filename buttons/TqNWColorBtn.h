#pragma once
// TqNWColorBtn: the non-windowed colour button. It takes no focus and has no dialog keys
// (Cancel is only stored); it can be transparent, brightening what lies beneath by ORing
// every channel with GlassValue, and can leave out the bevel (Frame) and the caption's press
// movement (Movement).

#include "buttons/ColorButtonBase.h"

namespace qv {

class TqNWColorBtn : public TColorButtonBase<TGraphicControl> {
    QV_OBJECT
public:
    struct Defaults : TColorButtonDefaults {
        static constexpr bool Frame = true;
        static constexpr bool Movement = true;
        static constexpr bool Transparent = false;
        static constexpr std::uint8_t GlassValue = 0;
    };

    explicit TqNWColorBtn(TComponent* AOwner);

    bool Frame() const { return m_frame; }
    void SetFrame(bool value);
    bool Movement() const { return m_movement; }
    void SetMovement(bool value);
    bool Transparent() const { return m_transparent; }
    void SetTransparent(bool value);
    std::uint8_t GlassValue() const { return m_glassValue; }
    void SetGlassValue(std::uint8_t value);

    // Re-synchronises the hover state, lifts the face and fires OnClick.
    void Click() override;
    void SetBounds(int ALeft, int ATop, int AWidth, int AHeight) override;

protected:
    void PressByMouse() override;
    void RepaintAfterRelease() override;
    bool BevelShown() const override;
    bool CaptionMoves() const override;
    TFrameBackground Background() const override;
    bool PaintFace(TCanvas& canvas) override;
    void CMDialogChar(TMessage& Message) override;

private:
    // At once when transparent (what lies beneath is read while painting), else deferred.
    void RepaintForTransparency(bool atOnce);

    bool m_frame{Defaults::Frame};
    bool m_movement{Defaults::Movement};
    bool m_transparent{Defaults::Transparent};
    std::uint8_t m_glassValue{Defaults::GlassValue};
};

} // namespace qv
