#pragma once
// TqPanelMeter: a moving-needle panel instrument. A housing (hatched or steel) holds a white
// face with the caption, a scale band over 100 degrees of an ellipse, black below Alert and red
// from it up, tick marks every StepPerTick values, and a needle from the hub to Value. Setting
// Value raises OnAlert when it enters the alert zone and OnNotAlert when it leaves it, once per
// crossing, and OnChange on every call.
//
// All three housings paint the same face, scale and needle; qpStandard bevels every outer edge,
// qpEdgeHorz only the top and bottom ones, qpEdgeVert only the left and right ones. The housing
// painters work in the extents Width - 1 and Height - 1 (W and H below): wx = W div 11,
// hy = H div 11, the hub at W div 2 above base = H - H div 4, the scale point of percent p at
// angle p + 310 degrees clockwise from the top, x = W div 2 + Round(sin * (W div 2)),
// y = H div 2 + 2 hy - Round(cos * (H div 2)).

#include "componentbase/CachedFace.h"
#include "componentbase/EnterLeaveEvents.h"
#include "componentbase/PaintFrame.h"
#include "componentbase/Scale.h"
#include "platform/controls/WinControl.h"

namespace qv {

enum qPanelType { qpStandard, qpEdgeHorz, qpEdgeVert };
QV_ENUM_TYPE(qPanelType, "qpStandard", "qpEdgeHorz", "qpEdgeVert")

// The type of ScaleWidth, the band's thickness: 0..5.
const TTypeInfo& QScaleWidthType();

class TqPanelMeter : public TEnterLeaveEvents<TGraphicControl> {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr int Min = 0;
        static constexpr int Max = 100;
        static constexpr bool ShowAll = true;
        static constexpr bool UseAlert = true;
        static constexpr qPanelType PanelType = qpStandard;
        static constexpr TColor HouseColor = clBtnFace;
        static constexpr TBrushStyle HouseStyle = bsDiagCross;
        static constexpr TColor ShadowColor = clBtnShadow;
        static constexpr TColor HighColor = clBtnHighlight;
        static constexpr TColor FaceColor = 0xFFFFFF;
        static constexpr TColor NormalColor = 0x000000;
        static constexpr TColor AlertColor = 0x0000FF;
        static constexpr int Width = 105;
        static constexpr int Height = 97;
        static constexpr bool Ticks = true;
        static constexpr int StepPerTick = 10;
        static constexpr int Alert = 75;
        static constexpr int Value = 0;
        static constexpr TColor Hand = 0x008000;
        static constexpr int ScaleWidth = 2;
        static constexpr bool SteelLook = false;
        // The bevel colours the steel look forces.
        static constexpr TColor SteelShadow = 0x808080;
        static constexpr TColor SteelHigh = 0xFFFFFF;
    };

    explicit TqPanelMeter(TComponent* AOwner);

    int Min() const { return m_range.Min(); }
    void SetScaledMin(int value);
    int Max() const { return m_range.Max(); }
    void SetScaledMax(int value);
    bool ShowAll() const { return m_showAll; }
    void SetShowAll(bool value);
    bool UseAlert() const { return m_useAlert; }
    void SetUseAlert(bool value);
    qPanelType PanelType() const { return m_panelType; }
    void SetPanelType(qPanelType value);
    TColor HouseColor() const { return m_houseColor; }
    void SetHouseColor(TColor value);
    TBrushStyle HouseStyle() const { return m_houseStyle; }
    void SetHouseStyle(TBrushStyle value);
    TColor ShadowColor() const { return m_shadowColor; }
    void SetShadowColor(TColor value);
    TColor HighColor() const { return m_highColor; }
    void SetHighColor(TColor value);
    TColor FaceColor() const { return m_faceColor; }
    void SetFaceColor(TColor value);
    TColor NormalColor() const { return m_normalColor; }
    void SetNormalColor(TColor value);
    TColor AlertColor() const { return m_alertColor; }
    void SetAlertColor(TColor value);
    bool Ticks() const { return m_ticks; }
    void SetTicks(bool value);
    int StepPerTick() const { return m_stepPerTick; }
    void SetStep(int value);
    int Alert() const { return m_alert; }
    // Clamps into Min..Max; the in-alert state stays as it is until the next SetValue.
    void SetAlert(int value);
    int Value() const { return m_value; }
    // No equality test: clamps into Min..Max, raises OnAlert/OnNotAlert when the value crossed
    // Alert (with UseAlert), OnChange every time, then repaints at once.
    void SetValue(int value);
    TColor Hand() const { return m_hand; }
    void SetHand(TColor value);
    int ScaleWidth() const { return m_scaleWidth; }
    void SetScaleWidth(int value);
    bool SteelLook() const { return m_steelLook; }
    void SetSteelLook(bool value);

    // Whether the value stood at or above Alert when SetValue last looked.
    bool InAlert() const { return m_inAlert; }

    void Loaded() override;

    TNotifyEvent OnPaint;
    TNotifyEvent OnAlert;
    TNotifyEvent OnNotAlert;
    TNotifyEvent OnChange;

protected:
    void Paint() override;
    void CMFontChanged(TMessage& Message) override;
    void CMTextChanged(TMessage& Message) override;
    void CMSysColorChange(TMessage& Message) override;
    // Forces the steel look's grey shadow and white highlight.
    void Steel();

private:
    enum class TOuterEdges { All, TopBottom, LeftRight };
    struct TGeometry;
    // Everything the picture under the needle depends on (the font through CMFontChanged).
    struct TDialLook {
        int width, height;
        TColor house;
        TBrushStyle houseStyle;
        bool steel;
        TColor shadow, high, face, normal, alert, hand;
        bool showAll, useAlert, ticks;
        qPanelType panelType;
        int step, alertValue, min, max, scaleWidth;
        std::string caption;
        bool operator==(const TDialLook&) const = default;
    };

    TDialLook DialLook() const;
    // Housing, face, caption and scale: all but the needle, on a canvas with fresh tools.
    void PaintDial(TCanvas& canvas) const;

    void PaintHousing(TCanvas& canvas, int W, int H, TOuterEdges edges) const;
    void PaintOuterBevel(TCanvas& canvas, int W, int H, TOuterEdges edges) const;
    void PaintFaceBevel(TCanvas& canvas, const TGeometry& g) const;
    void PaintHub(TCanvas& canvas, const TGeometry& g) const;
    void PaintFace(TCanvas& canvas, const TGeometry& g) const;
    void PaintBaseLines(TCanvas& canvas, const TGeometry& g) const;
    void PaintScale(TCanvas& canvas, const TGeometry& g) const;
    void PaintNeedle(TCanvas& canvas, const TGeometry& g) const;
    TColor ColorOf(std::int64_t value) const;
    // Value after clamping raises the alert events it crossed into.
    void UpdateAlert();

    TLoadingRange m_range{Defaults::Min, Defaults::Max};
    bool m_showAll{Defaults::ShowAll};
    bool m_useAlert{Defaults::UseAlert};
    qPanelType m_panelType{Defaults::PanelType};
    TColor m_houseColor{Defaults::HouseColor};
    TBrushStyle m_houseStyle{Defaults::HouseStyle};
    TColor m_shadowColor{Defaults::ShadowColor};
    TColor m_highColor{Defaults::HighColor};
    TColor m_faceColor{Defaults::FaceColor};
    TColor m_normalColor{Defaults::NormalColor};
    TColor m_alertColor{Defaults::AlertColor};
    bool m_ticks{Defaults::Ticks};
    int m_stepPerTick{Defaults::StepPerTick};
    int m_alert{Defaults::Alert};
    int m_value{Defaults::Value};
    TColor m_hand{Defaults::Hand};
    int m_scaleWidth{Defaults::ScaleWidth};
    bool m_steelLook{Defaults::SteelLook};
    bool m_inAlert{false};
    bool m_alertRead{false}; // Alert was read from a form file and waits for Loaded
    TPaintFrame m_frame;
    TCachedFace<TDialLook> m_dial;
};

} // namespace qv
