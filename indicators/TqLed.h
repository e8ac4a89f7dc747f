#pragma once
// TqLed: a round or square indicator lamp in one of nine colours, lit or dark, optionally on
// the steel background. It can blink on a timer or light for a while (Pulse, Flash). Its
// published Enabled is the lamp's lit state; the control's own enabled state is untouched.

#include "componentbase/EnterLeaveEvents.h"
#include "componentbase/PaintFrame.h"
#include "platform/controls/Timer.h"
#include "platform/controls/WinControl.h"

#include <array>

namespace qv {

enum LedStyleType { lstRound, lstSquare, lstSimpleRound };
enum LedColorType {
    lctRed,
    lctBlue,
    lctGreen,
    lctyellow,
    lctMangenta,
    lctGrey,
    lctCyan,
    lctWhite,
    lctUser
};
QV_ENUM_TYPE(LedStyleType, "lstRound", "lstSquare", "lstSimpleRound")
QV_ENUM_TYPE(LedColorType, "lctRed", "lctBlue", "lctGreen", "lctyellow", "lctMangenta", "lctGrey",
             "lctCyan", "lctWhite", "lctUser")

// Asks the application for a colour; TheColor holds the table's value on entry.
using qxGetColor = std::function<void(TObject* Sender, TColor& TheColor)>;
QV_EVENT_TYPE(qxGetColor)

// The lamp colours, lit and dark, by LedColorType.
extern const std::array<TColor, 9> LedLitColors;
extern const std::array<TColor, 9> LedDarkColors;

class TqLed : public TEnterLeaveEvents<TGraphicControl> {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr bool SteelLook = false;
        static constexpr LedStyleType LedStyle = lstRound;
        static constexpr bool LedOn = false;
        static constexpr bool Blink = false;
        static constexpr int BlinkInterval = 500;
        static constexpr int Size = 17; // width and height
    };

    explicit TqLed(TComponent* AOwner);
    ~TqLed() override;

    bool SteelLook() const { return m_steelLook; }
    void SetSteelLook(bool value);
    LedStyleType LedStyle() const { return m_ledStyle; }
    void SetLedStyle(LedStyleType value);
    LedColorType LEDColor() const { return m_ledColor; }
    void SetLEDColor(LedColorType value);
    // The lamp's lit state, published as Enabled.
    bool LedOn() const { return m_ledOn; }
    void writeLedOn(bool Value);
    bool Blink() const { return m_blink; }
    void SetBlink(bool value);
    int BlinkInterval() const { return m_blinkInterval; }
    void SetBlinkInterval(int value);

    // Lights the lamp for Value x 100 ms; Flash is Pulse(5).
    void Pulse(unsigned Value);
    void Flash() { Pulse(5); }

    // The timer that blinks or pulses the lamp, or null.
    TTimer* LedTimer() const { return m_timer; }

    TNotifyEvent OnChange;
    TNotifyEvent OnPaint;
    qxGetColor OnGetOnColor;
    qxGetColor OnGetOffColor;

protected:
    void Paint() override;
    virtual void DoTheBlink(TObject* Sender);
    virtual void DoThePulse(TObject* Sender);

private:
    TColor LampColor();
    void DrawLamp(TCanvas& canvas);
    void FreeTimer();
    void StartBlinkTimer();

    bool m_steelLook{Defaults::SteelLook};
    LedStyleType m_ledStyle{Defaults::LedStyle};
    LedColorType m_ledColor{lctRed};
    bool m_ledOn{Defaults::LedOn};
    bool m_blink{Defaults::Blink};
    int m_blinkInterval{Defaults::BlinkInterval};
    TTimer* m_timer{nullptr}; // owned through the owner tree, freed by FreeTimer
    TPaintFrame m_frame;
};

} // namespace qv
