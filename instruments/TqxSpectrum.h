#pragma once
// TqxSpectrum: a bar-graph spectrum display of up to 100 channels between Min and Max. Each bar
// has a coloured cap, an optional one-pixel gap at its right and, with UseLed, dark scan lines
// on the odd rows that cut the bars into LED rows over an unlit background. At design time the
// bars show a falling staircase, so the look can be judged without data.

#include "componentbase/EnterLeaveEvents.h"
#include "componentbase/PaintFrame.h"
#include "componentbase/Scale.h"
#include "platform/controls/WinControl.h"

#include <array>
#include <cstdint>
#include <vector>

namespace qv {

// The types of TopSize (2..10) and NumberOfChannels (1..100).
const TTypeInfo& SpectrumTopType();
const TTypeInfo& SpectrumNumberType();

class TqxSpectrum : public TEnterLeaveEvents<TGraphicControl> {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr bool UseSep = true;
        static constexpr bool UseLed = true;
        static constexpr TColor BarColor = 0x00FF00;
        static constexpr TColor BarOffColor = 0x008000;
        static constexpr TColor TopColor = 0x00FFFF;
        static constexpr int TopSize = 2;
        static constexpr int NumberOfChannels = 20;
        static constexpr TColor FaceColor = 0x000000;
        static constexpr int Min = 0;
        static constexpr int Max = 100;
        static constexpr int Width = 100;
        static constexpr int Height = 100;
    };
    static constexpr int ChannelCount = 100;
    static constexpr int MinWidth = 20;
    static constexpr int MinHeight = 35;

    explicit TqxSpectrum(TComponent* AOwner);

    bool UseSep() const { return m_useSep; }
    void SetSplit(bool value);
    bool UseLed() const { return m_useLed; }
    void SetLed(bool value);
    TColor BarColor() const { return m_barColor; }
    void SetBarColor(TColor value);
    TColor BarOffColor() const { return m_barOffColor; }
    void SetBarOff(TColor value);
    TColor TopColor() const { return m_topColor; }
    void SetTopColor(TColor value);
    int TopSize() const { return m_topSize; }
    // Limited to 2..10.
    void SetTop(int value);
    int NumberOfChannels() const { return m_numberOfChannels; }
    // Limited to 1..100.
    void SetNum(int value);
    TColor FaceColor() const { return m_faceColor; }
    void SetFaceColor(TColor value);
    int Min() const { return m_range.Min(); }
    // Above Max, Min becomes Max - 1; every channel is limited again.
    void SetMin(int value);
    int Max() const { return m_range.Max(); }
    // Below Min, Max becomes Min + 1; every channel is limited again.
    void SetMax(int value);

    // Stores `value` limited to Min..Max at channel `index` (0..99; other indices are ignored).
    void SetChannel(int index, int value);
    // The value of channel `index`, or 0 outside 0..99.
    int GetChannel(int index) const;
    // Copies 100 values as they are, without limiting them; null data is ignored.
    void SetAllChannel(const int* data);
    // (value - Min) * 100 div (Max - Min), in 64 bits.
    std::int64_t GetPercent(int value) const { return ScalePercent(value, Min(), Max()); }

    void SetBounds(int ALeft, int ATop, int AWidth, int AHeight) override;
    void Loaded() override;

    TNotifyEvent OnPaint;

protected:
    void Paint() override;

private:
    // One step of the bar drawing: the pixels [left, right) x [top, bottom) set to `pixel`.
    struct TBarStep {
        int left, top, right, bottom;
        std::uint32_t pixel;
    };

    void LimitChannels();
    // Bar i's x1, x2 and top row y.
    void BarGeometry(int i, int& x1, int& x2, int& y) const;
    // The drawing as canvas calls, for a canvas that is not a picture of its own.
    void DrawBars(TCanvas& canvas);
    void DrawScanLines(TCanvas& canvas) const;
    // The same pixels written row by row into the picture: each column's colour changes only
    // where a step begins or ends, so a row is the previous one with those columns redone.
    void DrawInto(TPixelBuffer& pixels, TColor background);
    void CollectSteps(const TPixelBuffer& pixels);
    std::uint32_t ColumnPixel(int column, int row, std::uint32_t background) const;

    bool m_useSep{Defaults::UseSep};
    bool m_useLed{Defaults::UseLed};
    TColor m_barColor{Defaults::BarColor};
    TColor m_barOffColor{Defaults::BarOffColor};
    TColor m_topColor{Defaults::TopColor};
    int m_topSize{Defaults::TopSize};
    int m_numberOfChannels{Defaults::NumberOfChannels};
    TColor m_faceColor{Defaults::FaceColor};
    TLoadingRange m_range{Defaults::Min, Defaults::Max, 1};
    std::array<int, ChannelCount> m_channels{};
    TPaintFrame m_frame;
    // Kept between paints so that a paint allocates nothing once sizes have settled.
    std::vector<TBarStep> m_steps;
    std::vector<std::vector<int>> m_columnSteps; // per column, the steps over it, in order
    std::vector<std::vector<int>> m_rowChanges;  // per row, the columns that change there
    std::vector<std::uint32_t> m_row;
};

} // namespace qv
