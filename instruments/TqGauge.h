#pragma once
// TqGauge: a horizontal progress gauge. A bevelled frame surrounds a bar that fills from the
// left in proportion to Value between Min and Max, as one solid bar or as a row of LED blocks,
// in BarColor or cut from a picture (Glyph, stretched to the control). An optional caption is a
// format string that receives the percentage, the value or both, and reads inverted where the
// bar has passed.
//
// The gauge paints straight onto its canvas. A caption whose format does not fit its arguments
// raises EConvertError from the paint, which the application's loop reports (OnException).

#include "componentbase/EnterLeaveEvents.h"
#include "platform/controls/CustomPanel.h"
#include "platform/controls/WinControl.h"
#include "platform/graphics/Bitmap.h"

#include <cstdint>
#include <memory>
#include <string>

namespace qv {

enum gaCaptionStyle { gaPctBar, gaTotalBar, gaTotPct, gaPctTot };
QV_ENUM_TYPE(gaCaptionStyle, "gaPctBar", "gaTotalBar", "gaTotPct", "gaPctTot")

class TqGauge : public TEnterLeaveEvents<TGraphicControl> {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr bool DrawOnlyWhenPCTChange = false;
        static constexpr TColor Color = clBtnFace;
        static constexpr int Height = 30;
        static constexpr int Width = 75;
        static constexpr gaCaptionStyle CaptionStyle = gaPctBar;
        static constexpr TColor BarColor = 0xFF00FF;
        static constexpr TBevelCut BevelInner = bvNone;
        static constexpr TBevelCut BevelOuter = bvRaised;
        static constexpr int BevelWidth = 1;
        static constexpr int Min = 0;
        static constexpr int Max = 100;
        static constexpr int Value = 0;
        static constexpr std::uint8_t Margin = 1;
        static constexpr std::uint8_t SpaceBetweenLed = 1;
        static constexpr int NumberOfLed = 0;
        static constexpr std::uint8_t FrameWidth = 0;
    };

    explicit TqGauge(TComponent* AOwner);

    TBitmap* Glyph() const { return m_glyph.get(); }
    // Takes a copy of `value`.
    void SetBitmap(const TBitmap& value) { m_glyph->Assign(value); }
    // (Value - Min) * 100 div (Max - Min) in 64 bits, read as 0..100 (Value may lie outside
    // Min..Max after SetMin or SetMax).
    std::uint8_t GetPercent() const;
    // Sets Value to (Max - Min) * p div 100 + Min (p at most 100), exactly.
    void SetPercent(std::uint8_t value);
    bool DrawOnlyWhenPCTChange() const { return m_drawOnlyWhenPCTChange; }
    void SetDrawOnlyWhenPCTChange(bool value) { m_drawOnlyWhenPCTChange = value; }
    gaCaptionStyle CaptionStyle() const { return m_captionStyle; }
    void SetCaptionStyle(gaCaptionStyle value);
    TColor BarColor() const { return m_barColor; }
    void SetBarColor(TColor value);
    TBevelCut BevelInner() const { return m_bevelInner; }
    void SetBevelInner(TBevelCut value);
    TBevelCut BevelOuter() const { return m_bevelOuter; }
    void SetBevelOuter(TBevelCut value);
    int BevelWidth() const { return m_bevelWidth; }
    void SetBevelWidth(int value);
    int Min() const { return m_min; }
    // Min = value; then Max is set again, so that it stays above Min. Value is kept as it is.
    void SetMin(int value);
    int Max() const { return m_max; }
    // Max = value when above Min, else Min + 1 (saturating). Value is kept as it is.
    void SetMax(int value);
    int Value() const { return m_value; }
    // An equal value does nothing. Otherwise the value is clamped into Min..Max, OnMinimum or
    // OnMaximum is raised at a bound, and the gauge repaints at once (with DrawOnlyWhenPCTChange
    // or while designing, only when the whole percentage changed).
    void SetValue(int value);
    void AddValue(int delta);
    std::uint8_t Margin() const { return m_margin; }
    void SetMargin(std::uint8_t value);
    std::uint8_t SpaceBetweenLed() const { return m_spaceBetweenLed; }
    void SetLedThick(std::uint8_t value);
    int NumberOfLed() const { return m_numberOfLed; }
    // 0 or less: a solid bar.
    void SetledSpace(int value);
    std::uint8_t FrameWidth() const { return m_frameWidth; }
    void SetfWidth(std::uint8_t value);

    // The caption as drawn: Caption formatted with the arguments of CaptionStyle.
    std::string CaptionText() const;
    // The rectangle inside the bevels, margin and frame, where the bar and caption go.
    TRect InnerRect() const;

    void Loaded() override;

    TNotifyEvent OnMinimum;
    TNotifyEvent OnMaximum;
    TNotifyEvent OnPaint;

protected:
    void Paint() override;
    void CMTextChanged(TMessage& Message) override;
    virtual void CallMinimum();
    virtual void CallMaximum();
    // Rebuilds the glyph's copy at the control's size.
    void DoTheBitmap();

private:
    // The right end of the filled part, within the inner rectangle.
    int FillEdge(const TRect& inner) const;
    void DrawFrame(TCanvas& canvas, TRect& rect) const;
    void DrawFill(TCanvas& canvas, const TRect& part);
    void DrawSolid(TCanvas& canvas, const TRect& inner, int fill);
    void DrawLeds(TCanvas& canvas, const TRect& inner, int fill);
    void DrawCaption(TCanvas& canvas, const TRect& inner, int fill, const std::string& text);

    std::unique_ptr<TBitmap> m_glyph{std::make_unique<TBitmap>()}; // as assigned
    TBitmap m_sized;         // the glyph stretched to the control
    TSize m_sizedFor;        // the control's size when m_sized was made
    bool m_glyphDirty{true}; // the glyph changed since m_sized was made
    bool m_drawOnlyWhenPCTChange{Defaults::DrawOnlyWhenPCTChange};
    gaCaptionStyle m_captionStyle{Defaults::CaptionStyle};
    TColor m_barColor{Defaults::BarColor};
    TBevelCut m_bevelInner{Defaults::BevelInner};
    TBevelCut m_bevelOuter{Defaults::BevelOuter};
    int m_bevelWidth{Defaults::BevelWidth};
    int m_min{Defaults::Min};
    int m_max{Defaults::Max};
    int m_value{Defaults::Value};
    std::uint8_t m_margin{Defaults::Margin};
    std::uint8_t m_spaceBetweenLed{Defaults::SpaceBetweenLed};
    int m_numberOfLed{Defaults::NumberOfLed};
    std::uint8_t m_frameWidth{Defaults::FrameWidth};
};

} // namespace qv
