#pragma once
// TqxDinMeter: a square quarter-circle instrument. A raised frame (or steel) holds a sunken
// face, eleven marks on a 90-degree scale from straight left (Min) to straight up (Max), labels
// at the long marks, two free captions, and a needle pivoted near the lower right corner.
//
// Geometry: c = Width - Width div 5 is both coordinates of the centre; a point at radius r and
// angle a is (Trunc(c + r cos a) - 1, Trunc(c + r sin a) - 1), y downwards, so the needle turns
// about (c - 1, c - 1). Max always exceeds Min: SetMin applies SetMax(Max), which raises a Max
// at or below Min to Min + 1, except where Min is the largest Integer and Max stays equal to it
// (the scale then counts the range as 1). Setting a value raises no event.

#include "componentbase/CachedFace.h"
#include "componentbase/EnterLeaveEvents.h"
#include "componentbase/PaintFrame.h"
#include "instruments/DialTypes.h"
#include "platform/controls/WinControl.h"
#include "platform/graphics/Bitmap.h"

#include <cstdint>
#include <memory>

namespace qv {

enum qxScaleType { st0, st2, st3, st6, st11 };
QV_ENUM_TYPE(qxScaleType, "st0", "st2", "st3", "st6", "st11")

// The subrange types of the DIN meter's properties.
const TTypeInfo& QxDecNumType();     // DigitsAfterPoint: 0..5
const TTypeInfo& QxFrameWidthType(); // 4..25

class TqxDinMeter : public TEnterLeaveEvents<TGraphicControl> {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr bool DrawScale = true;
        static constexpr bool SteelLook = false;
        static constexpr TColor NeedleColor = 0x0000FF;
        static constexpr std::uint16_t NeedleLength = 72;
        static constexpr int DigitsAfterPoint = 0;
        static constexpr qxScaleType ScaleType = st3;
        static constexpr TColor ScaleColor = 0xFF0000;
        static constexpr int OffSetNumbers = 15;
        static constexpr int OffSetDots = 9;
        static constexpr int DotLength = 4;
        static constexpr int Min = 0;
        static constexpr int Max = 100;
        static constexpr int Value = 0;
        static constexpr TColor ShadowColor = clBtnShadow;
        static constexpr TColor HighLightColor = clBtnHighlight;
        static constexpr TColor Color = 0xFFFFFF;
        static constexpr TColor FrameColor = clBtnFace;
        static constexpr int FrameWidth = 6;
        static constexpr int Size = 100; // width and height
        static constexpr std::uint16_t Caption2X = 10;
        static constexpr std::uint16_t Caption2Y = 80;
    };

    explicit TqxDinMeter(TComponent* AOwner);
    ~TqxDinMeter() override;

    bool DrawScale() const { return m_drawScale; }
    void SetDrawScale(bool value);
    bool SteelLook() const { return m_steelLook; }
    void SetSteelLook(bool value);
    TColor NeedleColor() const { return m_needleColor; }
    void SetNeedleColor(TColor value);
    std::uint16_t NeedleLength() const { return m_needleLength; }
    void SetNeedleLength(std::uint16_t value);
    int DigitsAfterPoint() const { return m_digits; }
    void SetDigitsAfterPoint(int value);
    qxScaleType ScaleType() const { return m_scaleType; }
    void SetScaleType(qxScaleType value);
    TColor ScaleColor() const { return m_scaleColor; }
    void SetScaleColor(TColor value);
    int OffSetNumbers() const { return m_offSetNumbers; }
    void SetOffSetNumbers(int value);
    int OffSetDots() const { return m_offSetDots; }
    void SetOffSetDots(int value);
    int DotLength() const { return m_dotLength; }
    void SetDotLength(int value);
    int Min() const { return m_min; }
    void SetMin(int value);
    int Max() const { return m_max; }
    void SetMax(int value);
    int Value() const { return m_value; }
    void SetValue(int value);
    TColor ShadowColor() const { return m_shadowColor; }
    void SetShadowColor(TColor value);
    TColor HighLightColor() const { return m_highLightColor; }
    void SetHighLightColor(TColor value);
    TColor FrameColor() const { return m_frameColor; }
    void SetFrameColor(TColor value);
    int FrameWidth() const { return m_frameWidth; }
    void SetFrameWidth(int value);
    // Assigned by copy; drawn once at the face's top left, clipped to the face.
    TBitmap* FaceBitmap() const { return m_faceBitmap.get(); }
    void SetFaceBitmap(const TBitmap& value);
    std::uint16_t Caption2X() const { return m_caption2X; }
    void SetCaption2X(std::uint16_t value);
    std::uint16_t Caption2Y() const { return m_caption2Y; }
    void SetCaption2Y(std::uint16_t value);
    const std::string& Caption1() const { return m_caption1; }
    void SetCaption1(const std::string& value);
    const std::string& Caption2() const { return m_caption2; }
    void SetCaption2(const std::string& value);
    TFont* Caption1Font() const { return m_caption1Font.get(); }
    TFont* Caption2Font() const { return m_caption2Font.get(); }

    // (Value - Min) * 100 div (Max - Min).
    int GetPercent() const;
    // The text of mark i (0..10): Min + i (Max - Min) / 10 with DigitsAfterPoint decimals.
    std::string MarkLabel(int i) const;
    // Whether ScaleType makes mark i long and labelled.
    bool IsLongMark(int i) const;

    // The width sets both sides; the height given is ignored.
    void SetBounds(int ALeft, int ATop, int AWidth, int AHeight) override;
    void Loaded() override;

    TNotifyEvent OnPaint;

protected:
    void Paint() override;
    void CMFontChanged(TMessage& Message) override;
    void PaintFrame(TCanvas& canvas) const;
    void PaintFace(TCanvas& canvas) const;
    void PaintNeedle(TCanvas& canvas) const;

private:
    // Everything the picture under the needle depends on; the fonts and the face bitmap forget
    // the kept picture when they change.
    struct TDialLook {
        int width;
        bool drawScale, steel;
        int digits;
        qxScaleType scaleType;
        TColor scaleColor;
        int offSetNumbers, offSetDots, dotLength, min, max;
        TColor shadow, high, color, frameColor;
        int frameWidth, caption2X, caption2Y;
        std::string caption1, caption2;
        bool operator==(const TDialLook&) const = default;
    };
    TDialLook DialLook() const;
    void PaintDial(TCanvas& canvas) const;
    int Centre() const { return Width() - Width() / 5; }
    TRect FaceRect() const;
    void PaintFaceFill(TCanvas& canvas) const;
    void PaintCaptions(TCanvas& canvas) const;
    // Max for `value` as SetMax takes it: above Min.
    int MaxAboveMin(int value) const;

    bool m_drawScale{Defaults::DrawScale};
    bool m_steelLook{Defaults::SteelLook};
    TColor m_needleColor{Defaults::NeedleColor};
    std::uint16_t m_needleLength{Defaults::NeedleLength};
    int m_digits{Defaults::DigitsAfterPoint};
    qxScaleType m_scaleType{Defaults::ScaleType};
    TColor m_scaleColor{Defaults::ScaleColor};
    int m_offSetNumbers{Defaults::OffSetNumbers};
    int m_offSetDots{Defaults::OffSetDots};
    int m_dotLength{Defaults::DotLength};
    int m_min{Defaults::Min};
    int m_max{Defaults::Max};
    int m_value{Defaults::Value};
    TColor m_shadowColor{Defaults::ShadowColor};
    TColor m_highLightColor{Defaults::HighLightColor};
    TColor m_frameColor{Defaults::FrameColor};
    int m_frameWidth{Defaults::FrameWidth};
    std::unique_ptr<TBitmap> m_faceBitmap;
    std::uint16_t m_caption2X{Defaults::Caption2X};
    std::uint16_t m_caption2Y{Defaults::Caption2Y};
    std::string m_caption1;
    std::string m_caption2;
    std::unique_ptr<TFont> m_caption1Font;
    std::unique_ptr<TFont> m_caption2Font;
    TPaintFrame m_frame;
    TCachedFace<TDialLook> m_dial;
};

} // namespace qv
