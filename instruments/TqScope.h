#pragma once
// TqScope: a two-channel strip chart. It keeps the last 1001 samples of two integer inputs and
// draws them as traces scrolling from right to left (the newest sample at the right edge) over
// an optional grid; each Push takes a new sample of both channels.
//
// The samples live in a ring, so a push moves no memory; index 0 is always the newest. The width
// is kept within 20..1000 (one pixel per stored sample) and the height at 35 or more, whichever
// path sets the bounds.

#include "componentbase/EnterLeaveEvents.h"
#include "componentbase/PaintFrame.h"
#include "componentbase/Scale.h"
#include "platform/controls/WinControl.h"

#include <array>
#include <cstdint>
#include <vector>

namespace qv {

// Asks the application whether a push may go ahead; DoPush is True on entry. A type of its own,
// as the same signature is already published as TCloseQueryEvent.
struct tPushEvent : std::function<void(TObject* Sender, bool& DoPush)> {
    using std::function<void(TObject* Sender, bool& DoPush)>::function;
};
QV_EVENT_TYPE(tPushEvent)

class TqScope : public TEnterLeaveEvents<TGraphicControl> {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr bool AutoPush = false;
        static constexpr int Min = 0;
        static constexpr int Max = 100;
        static constexpr int GridXstep = 10;
        static constexpr int GridYstep = 10;
        static constexpr bool ShowGrid = true;
        static constexpr TColor GridColor = 0x008000;
        static constexpr TColor Beam1Color = 0x00FF00;
        static constexpr TColor Beam2Color = 0x00FFFF;
        static constexpr bool ShowBeam1 = true;
        static constexpr bool ShowBeam2 = false;
        static constexpr int Channel = 0;
        static constexpr int Ajust = 0;
        static constexpr TColor FaceColor = 0x000000;
        static constexpr int Width = 122;
        static constexpr int Height = 100;
    };
    static constexpr int SampleCount = 1001;
    static constexpr int MinWidth = 20;
    static constexpr int MaxWidth = SampleCount - 1;
    static constexpr int MinHeight = 35;

    explicit TqScope(TComponent* AOwner);

    bool AutoPush() const { return m_autoPush; }
    void SetPush(bool value) { m_autoPush = value; }
    int Min() const { return m_range.Min(); }
    // Above Max, Min becomes Max - 1; Min = Max can be reached.
    void SetMin(int value);
    int Max() const { return m_range.Max(); }
    // Below Min, Max becomes Min + 1.
    void SetMax(int value);
    int GridXstep() const { return m_gridXstep; }
    // Limited to 0..Width (0: no vertical lines).
    void SetStepX(int value);
    int GridYstep() const { return m_gridYstep; }
    void SetStepY(int value);
    bool ShowGrid() const { return m_showGrid; }
    void Setgrid(bool value);
    TColor GridColor() const { return m_gridColor; }
    void SetgridColor(TColor value);
    TColor Beam1Color() const { return m_beamColor[0]; }
    void SetBeam1Color(TColor value);
    TColor Beam2Color() const { return m_beamColor[1]; }
    void SetBeam2Color(TColor value);
    bool ShowBeam1() const { return m_showBeam[0]; }
    void SetUse1(bool value);
    bool ShowBeam2() const { return m_showBeam[1]; }
    void SetUse2(bool value);
    int Channel1() const { return m_channel[0]; }
    void SetIn1(int value);
    int Channel2() const { return m_channel[1]; }
    void SetIn2(int value);
    int Ajust1() const { return m_ajust[0]; }
    void SetAjust1(int value);
    int Ajust2() const { return m_ajust[1]; }
    void SetAjust2(int value);
    TColor FaceColor() const { return m_faceColor; }
    void SetFaceColor(TColor value);

    // Asks OnBeforePush; unless vetoed, both channels take their current input as sample 0 and
    // the scope repaints at once.
    void Push();
    // Replace samples 0..999 of a trace (sample 1000 stays); null data is ignored.
    void SetAllChannel1(const int* data) { SetAllChannel(0, data); }
    void SetAllChannel2(const int* data) { SetAllChannel(1, data); }
    // Sample `index` (0 = newest .. 1000) of channel 1 or 2.
    int Sample(int channel, int index) const;

    void SetBounds(int ALeft, int ATop, int AWidth, int AHeight) override;
    void Loaded() override;

    TNotifyEvent OnPaint;
    tPushEvent OnBeforePush;

protected:
    void Paint() override;

private:
    void SetAllChannel(int channel, const int* data);
    void SetAjust(int channel, int value);
    // The row a value is drawn at: B - (v + ajust - Min) * height / range - 1, exact and kept
    // within +-2^30 of the origin.
    int TraceY(int channel, int sample) const;
    // The columns of the vertical grid lines and the rows of the horizontal ones.
    void CollectGrid();
    // The grid as spans on a canvas, or written straight into the scope's own picture.
    void DrawGrid(TCanvas& canvas) const;
    void DrawGridInto(TPixelBuffer& pixels) const;
    void DrawBeam(TCanvas& canvas, int channel);

    bool m_autoPush{Defaults::AutoPush};
    TLoadingRange m_range{Defaults::Min, Defaults::Max, 1};
    int m_gridXstep{Defaults::GridXstep};
    int m_gridYstep{Defaults::GridYstep};
    bool m_showGrid{Defaults::ShowGrid};
    TColor m_gridColor{Defaults::GridColor};
    std::array<TColor, 2> m_beamColor{Defaults::Beam1Color, Defaults::Beam2Color};
    std::array<bool, 2> m_showBeam{Defaults::ShowBeam1, Defaults::ShowBeam2};
    std::array<int, 2> m_channel{Defaults::Channel, Defaults::Channel};
    std::array<int, 2> m_ajust{Defaults::Ajust, Defaults::Ajust};
    TColor m_faceColor{Defaults::FaceColor};
    // Ring buffers: sample i of a channel is at (m_newest + i) % SampleCount.
    std::array<std::array<int, SampleCount>, 2> m_samples{};
    int m_newest{0};
    // Kept between paints, so that a paint allocates nothing once the size has settled.
    std::vector<TPoint> m_trace; // the polyline of one beam
    std::vector<int> m_gridColumns;
    std::vector<int> m_gridRows;
    TPaintFrame m_frame;
};

} // namespace qv
