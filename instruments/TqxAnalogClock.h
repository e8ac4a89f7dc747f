#pragma once
// TqxAnalogClock: a round wall clock with hour, minute and second hands. It shows the system
// time shifted by OffSetTime minutes and repaints once a second (once a minute without the
// second hand) when the shown time changed. The dial carries dots, Arabic or Roman numerals,
// optionally shaded in 3-D, round bevels and an optional picture inside the dial whose white
// pixels are transparent. The clock is always square.
//
// Its owned thread timer looks at the clock every 1000 ms. A change is what differs from the
// last second (or minute) seen, both 0 at creation and after OffSetTime changes; so a tick can
// find a time one second old and show it a second late, as the polling period allows.
//
// Angles start at 3 o'clock and run clockwise (y downwards); every coordinate is truncated.

#include "componentbase/CachedFace.h"
#include "componentbase/EnterLeaveEvents.h"
#include "componentbase/PaintFrame.h"
#include "instruments/DialTypes.h"
#include "platform/controls/CustomPanel.h"
#include "platform/graphics/Bitmap.h"
#include "timing/TqxTimer.h"

#include <cstdint>
#include <memory>

namespace qv {

enum qxClockStyle {
    csNone,
    csSmallDot,
    csDot,
    csSimpleDot,
    csNumber,
    csNumberSmallDot,
    csNumberDot,
    csNumberSimpleDot,
    csRoman,
    csRomanSmallDot,
    csRomanDot,
    csRomanSimpleDot
};
QV_ENUM_TYPE(qxClockStyle, "csNone", "csSmallDot", "csDot", "csSimpleDot", "csNumber",
             "csNumberSmallDot", "csNumberDot", "csNumberSimpleDot", "csRoman", "csRomanSmallDot",
             "csRomanDot", "csRomanSimpleDot")
enum qxClockDotType { dtRound, dtRect };
QV_ENUM_TYPE(qxClockDotType, "dtRound", "dtRect")
enum qxHandType { htNeedle, htHand0, htHand1, htHand2, htHand3, htHand4, htHand5 };
QV_ENUM_TYPE(qxHandType, "htNeedle", "htHand0", "htHand1", "htHand2", "htHand3", "htHand4",
             "htHand5")

// The subrange types of the clock: DotSize 1..10, OffSetTime -1440..1440 minutes.
const TTypeInfo& QxClockDotType();
const TTypeInfo& QxOffSetTimeType();

// The numeral of hour n (1..12) on a dial, "" where the dial shows none.
const char* ClockNumeral(int n, bool roman, bool numStyle4);

class TqxAnalogClock : public TEnterLeaveEvents<TCustomPanel> {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr bool NumStyle4 = false;
        static constexpr bool ShowSeconds = true;
        static constexpr int BevelWidth = 2;
        static constexpr TBevelCut BevelInner = bvNone;
        static constexpr TBevelCut BevelOuter = bvLowered;
        static constexpr bool Raised = true;
        static constexpr TColor Color = clBtnFace;
        static constexpr qxClockDotType DotType = dtRect;
        static constexpr TColor FaceColor = 0x000000;
        static constexpr bool Use3D = false;
        static constexpr bool UseFont3D = false;
        static constexpr qxClockStyle ClockStyle = csDot;
        static constexpr TColor DotColor = 0xFF00FF;
        static constexpr TColor ShadowColor = clBtnShadow;
        static constexpr TColor HighLightColor = clBtnHighlight;
        static constexpr int DotSize = 2;
        static constexpr int OffSetNumbers = 2;
        static constexpr int OffSetDots = 2;
        static constexpr std::int16_t OffSetTime = 0;
        static constexpr std::uint16_t HandLengthMin = 45;
        static constexpr std::uint16_t HandLengthHour = 32;
        static constexpr std::uint16_t HandLengthSec = 45;
        static constexpr TColor HandIColHour = 0x008000;
        static constexpr TColor HandOColHour = 0x00FF00;
        static constexpr TColor HandIColMin = 0x008000;
        static constexpr TColor HandOColMin = 0x00FF00;
        static constexpr TColor HandColSec = 0x0000FF;
        static constexpr std::uint16_t HandDotSec = 0;
        static constexpr std::uint16_t HandDotMin = 0;
        static constexpr std::uint16_t HandDotHour = 0;
        static constexpr std::uint16_t HandWidthHour = 3;
        static constexpr std::uint16_t HandWidthMin = 2;
        static constexpr qxHandType HandTypeHour = htHand1;
        static constexpr qxHandType HandTypeMin = htHand1;
        static constexpr int Size = 100; // width and height
        static constexpr TColor FontColor = 0x00FF00;
        static constexpr unsigned TimerInterval = 1000;
    };

    explicit TqxAnalogClock(TComponent* AOwner);
    ~TqxAnalogClock() override;

    TThreadPriority Priority() const { return m_timer->Priority(); }
    void Setpriority(TThreadPriority value) { m_timer->SetPriority(value); }
    bool NumStyle4() const { return m_numStyle4; }
    void SetNumS(bool value);
    bool ShowSeconds() const { return m_showSeconds; }
    void SetSek(bool value);
    // Assigned by copy; shown inside the dial when larger than 1 x 1.
    TBitmap* FaceBitmap() const { return m_faceBitmap.get(); }
    void SetBitmap(const TBitmap& value);
    int BevelWidth() const { return m_bevelWidth; }
    void SetBevel(int value);
    TBevelCut BevelInner() const { return m_bevelInner; }
    void SetInner(TBevelCut value);
    TBevelCut BevelOuter() const { return m_bevelOuter; }
    void SetOuter(TBevelCut value);
    bool Raised() const { return m_raised; }
    void SetRaised(bool value);
    qxClockDotType DotType() const { return m_dotType; }
    void SetDotType(qxClockDotType value);
    TColor FaceColor() const { return m_faceColor; }
    void SetFace(TColor value);
    bool Use3D() const { return m_use3D; }
    void SetUse3D(bool value);
    bool UseFont3D() const { return m_useFont3D; }
    void SetFont3D(bool value);
    qxClockStyle ClockStyle() const { return m_clockStyle; }
    void SetClockStyle(qxClockStyle value);
    TColor DotColor() const { return m_dotColor; }
    void SetDotCol(TColor value);
    TColor ShadowColor() const { return m_shadowColor; }
    void SetShadow(TColor value);
    TColor HighLightColor() const { return m_highLightColor; }
    void SetHigh(TColor value);
    int DotSize() const { return m_dotSize; }
    void SetDotSize(int value);
    int OffSetNumbers() const { return m_offSetNumbers; }
    void SetMoveNum(int value);
    int OffSetDots() const { return m_offSetDots; }
    void SetMoveTal(int value);
    std::int16_t OffSetTime() const { return m_offSetTime; }
    // A change stores the offset, forgets the last second and minute seen and reads the time.
    void SetOffSetTime(std::int16_t value);
    std::uint16_t HandLengthMin() const { return m_handLengthMin; }
    void SetMHand(std::uint16_t value);
    std::uint16_t HandLengthHour() const { return m_handLengthHour; }
    void SetHHand(std::uint16_t value);
    std::uint16_t HandLengthSec() const { return m_handLengthSec; }
    void SetSHand(std::uint16_t value);
    TColor HandIColHour() const { return m_handIColHour; }
    void SetHICol(TColor value);
    TColor HandOColHour() const { return m_handOColHour; }
    void SetHOCol(TColor value);
    TColor HandIColMin() const { return m_handIColMin; }
    void SetMICol(TColor value);
    TColor HandOColMin() const { return m_handOColMin; }
    void SetMOCol(TColor value);
    TColor HandColSec() const { return m_handColSec; }
    void SetSCol(TColor value);
    std::uint16_t HandDotSec() const { return m_handDotSec; }
    void SetCDot(std::uint16_t value);
    std::uint16_t HandDotMin() const { return m_handDotMin; }
    void SetCMDot(std::uint16_t value);
    std::uint16_t HandDotHour() const { return m_handDotHour; }
    void SetCHDot(std::uint16_t value);
    std::uint16_t HandWidthHour() const { return m_handWidthHour; }
    void SethHandWidth(std::uint16_t value);
    std::uint16_t HandWidthMin() const { return m_handWidthMin; }
    void SetmHandWidth(std::uint16_t value);
    qxHandType HandTypeHour() const { return m_handTypeHour; }
    void SetHHT(qxHandType value);
    qxHandType HandTypeMin() const { return m_handTypeMin; }
    void SetMHT(qxHandType value);

    // The time the hands show: hour 0..12, minute, second.
    int ShownHour() const { return m_hour; }
    int ShownMinute() const { return m_minute; }
    int ShownSecond() const { return m_second; }
    TqxTimer* ClockTimer() const { return m_timer; }

    // Reads the clock; on a change of the second (or, without the second hand, the minute)
    // stores it, raises OnTimeChange and then works out the shown time. Returns the change.
    bool IsNew();
    // The timer's handler: reads the clock while the control can paint and repaints on a change.
    void DoTimer(TObject* Sender);

    // Always square: the height given is ignored.
    void SetBounds(int ALeft, int ATop, int AWidth, int AHeight) override;

    TNotifyEvent OnPaint;
    TNotifyEvent OnTimeChange;

protected:
    void Paint() override;
    void CMFontChanged(TMessage& Message) override;
    void WMEraseBkgnd(TMessage& Message) override;

    void DrawSmallDot(TCanvas& canvas) const;
    void DrawDot(TCanvas& canvas) const;
    void DrawSimpleDot(TCanvas& canvas) const;
    void DrawNumber(TCanvas& canvas, bool roman, int dotStyle) const;
    void DrawHour(TCanvas& canvas) const;
    void DrawMinut(TCanvas& canvas) const;
    void DrawSec(TCanvas& canvas) const;

private:
    struct THand;
    // Everything the dial under the hands depends on; the font and the face bitmap forget the
    // kept dial when they change.
    struct TDialLook {
        int width;
        TColor color, face, dot, shadow, high;
        bool numStyle4, raised, use3D, useFont3D;
        int bevelWidth;
        TBevelCut inner, outer;
        qxClockDotType dotType;
        qxClockStyle style;
        int dotSize, offSetNumbers, offSetDots;
        bool operator==(const TDialLook&) const = default;
    };
    TDialLook DialLook() const;
    // The background, the dial, its picture, bevels and marks, on a canvas with fresh tools.
    void DrawDial(TCanvas& canvas);
    void DrawFaceBitmap(TCanvas& canvas);
    void DrawBevels(TCanvas& canvas) const;
    void DrawMarks(TCanvas& canvas) const;
    void DrawHand(TCanvas& canvas, const THand& hand) const;
    void DrawMinutePixel(TCanvas& canvas, int i) const;
    void DrawHourMark(TCanvas& canvas, int i) const;
    // The 3-D pair: the light colour first for a raised look, the dark one for a sunken one.
    TColor FirstColor() const { return m_raised ? m_highLightColor : m_shadowColor; }
    TColor SecondColor() const { return m_raised ? m_shadowColor : m_highLightColor; }

    bool m_numStyle4{Defaults::NumStyle4};
    bool m_showSeconds{Defaults::ShowSeconds};
    int m_bevelWidth{Defaults::BevelWidth};
    TBevelCut m_bevelInner{Defaults::BevelInner};
    TBevelCut m_bevelOuter{Defaults::BevelOuter};
    bool m_raised{Defaults::Raised};
    qxClockDotType m_dotType{Defaults::DotType};
    TColor m_faceColor{Defaults::FaceColor};
    bool m_use3D{Defaults::Use3D};
    bool m_useFont3D{Defaults::UseFont3D};
    qxClockStyle m_clockStyle{Defaults::ClockStyle};
    TColor m_dotColor{Defaults::DotColor};
    TColor m_shadowColor{Defaults::ShadowColor};
    TColor m_highLightColor{Defaults::HighLightColor};
    int m_dotSize{Defaults::DotSize};
    int m_offSetNumbers{Defaults::OffSetNumbers};
    int m_offSetDots{Defaults::OffSetDots};
    std::int16_t m_offSetTime{Defaults::OffSetTime};
    std::uint16_t m_handLengthMin{Defaults::HandLengthMin};
    std::uint16_t m_handLengthHour{Defaults::HandLengthHour};
    std::uint16_t m_handLengthSec{Defaults::HandLengthSec};
    TColor m_handIColHour{Defaults::HandIColHour};
    TColor m_handOColHour{Defaults::HandOColHour};
    TColor m_handIColMin{Defaults::HandIColMin};
    TColor m_handOColMin{Defaults::HandOColMin};
    TColor m_handColSec{Defaults::HandColSec};
    std::uint16_t m_handDotSec{Defaults::HandDotSec};
    std::uint16_t m_handDotMin{Defaults::HandDotMin};
    std::uint16_t m_handDotHour{Defaults::HandDotHour};
    std::uint16_t m_handWidthHour{Defaults::HandWidthHour};
    std::uint16_t m_handWidthMin{Defaults::HandWidthMin};
    qxHandType m_handTypeHour{Defaults::HandTypeHour};
    qxHandType m_handTypeMin{Defaults::HandTypeMin};

    std::uint16_t m_hour{0}, m_minute{0}, m_second{0};
    std::uint16_t m_lastSecond{0}, m_lastMinute{0};
    std::unique_ptr<TBitmap> m_faceBitmap;
    TBitmap m_mask;             // the dial, for the face bitmap
    TBitmap m_work;             // the face bitmap tiled and cut to the dial
    TqxTimer* m_timer{nullptr}; // owned through the owner tree
    TPaintFrame m_frame;
    TCachedFace<TDialLook> m_dial;
};

} // namespace qv
