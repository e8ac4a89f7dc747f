// instrument-panel [--png OUT.png]: a boiler's pressure on a 16-segment readout, a lamp
// that blinks while the pressure is above its limit and a segment clock, laid out in a text
// form file (panel.form); beside it a form built in code whose calculator evaluates what is
// typed into its edit. A timer drives the pressure. With --png (or without a display) the
// program runs six timer steps (enough to pass the limit), types an expression and writes both
// forms to OUT.png.

#include "indicators/Qled.h"
#include "indicators/Qseg.h"
#include "package/PackageScope.h"
#include "platform/backend/Backend.h"
#include "platform/controls/Application.h"
#include "platform/controls/Edit.h"
#include "platform/controls/Label.h"
#include "platform/controls/Timer.h"
#include "platform/graphics/Bitmap.h"
#include "platform/streaming/Reader.h"
#include "utility/TqCalc.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <string>

using namespace qv;

namespace {

constexpr double pressureLimit = 180.0;

// Finds a component of the form file by name, with the type the program expects.
template <class T> T& Find(TComponent& form, const char* name) {
    auto* component = dynamic_cast<T*>(form.FindComponent(name));
    if (!component) throw EComponentError(std::string("panel.form has no ") + name);
    return *component;
}

// The panel read from the form file, driven by a timer: every step moves the pressure on.
class TBoilerPanel {
public:
    TBoilerPanel()
        : m_form(ReadForm()), m_pressure(Find<TqSegmentLabel>(*m_form, "Pressure")),
          m_alert(Find<TqLed>(*m_form, "Alert")), m_timer(new TTimer(m_form.get())) {
        m_timer->SetInterval(200);
        m_timer->SetOnTimer([this](TObject*) { Step(); });
        Show(0.0);
    }

    TForm& Form() const { return *m_form; }

    void Step() { Show(150.0 + 40.0 * std::sin(++m_steps / 4.0)); }

private:
    static std::unique_ptr<TForm> ReadForm() {
        std::unique_ptr<TComponent> root = ReadComponentFile(PANEL_FORM);
        auto* form = dynamic_cast<TForm*>(root.get());
        if (!form) throw EReadError("panel.form does not hold a form");
        root.release();
        return std::unique_ptr<TForm>(form);
    }

    void Show(double pressure) {
        char text[16];
        std::snprintf(text, sizeof text, "%6.1f", pressure);
        m_pressure.SetCaption(text);
        const bool alert = pressure > pressureLimit;
        if (alert == m_alert.Blink()) return;
        m_alert.SetBlink(alert);
        m_alert.writeLedOn(alert);
    }

    std::unique_ptr<TForm> m_form;
    TqSegmentLabel& m_pressure;
    TqLed& m_alert;
    TTimer* m_timer; // owned by the form
    int m_steps{0};
};

// A form built in code: the calculator evaluates the edit's text on every change.
class TCalculatorForm : public TForm {
public:
    TCalculatorForm() : TForm(nullptr) {
        SetCaption("Calculator");
        SetBounds(0, 0, 260, 150);
        m_input->SetParent(this);
        m_input->SetBounds(12, 12, 236, 0);
        m_result->SetParent(this);
        m_result->SetBounds(12, 48, 236, 0);
        m_input->OnChange = [this](TObject*) { Evaluate(); };
        Evaluate();
    }

    TEdit& Input() const { return *m_input; }

private:
    void Evaluate() {
        m_calc->SetCalcLine(m_input->Text());
        const auto& codes = TypeInfoOf<TqCalcResult>().names;
        char value[64];
        std::snprintf(value, sizeof value, "%.10Lg", m_calc->NumberNum());
        m_result->SetCaption(codes.at(static_cast<std::size_t>(m_calc->CalcResult())) + " = " +
                             value);
    }

    TEdit* m_input{new TEdit(this)};
    TLabel* m_result{new TLabel(this)};
    TqCalc* m_calc{new TqCalc(this)};
};

// Both forms side by side in one picture.
void WritePicture(TForm& left, TForm& right, const char* path) {
    left.Show();
    right.Show();
    Application().ProcessMessages();
    TBitmap leftShot, rightShot, picture;
    left.Screenshot(leftShot);
    right.Screenshot(rightShot);
    picture.SetSize(leftShot.Width() + rightShot.Width(),
                    std::max(leftShot.Height(), rightShot.Height()));
    picture.Canvas().Draw(0, 0, leftShot);
    picture.Canvas().Draw(leftShot.Width(), 0, rightShot);
    picture.SaveToFile(path);
}

void Run(TForm& panel, TForm& calculator) {
    Application().SetBackend(CreateDefaultBackend());
    if (std::strcmp(Application().Backend().Name(), "headless") == 0)
        throw EInvalidOperation("no display answers; --png OUT.png writes a picture instead");
    calculator.SetLeft(panel.Width() + 20);
    calculator.Show();
    Application().SetMainForm(&panel);
    Application().Run();
}

} // namespace

int main(int argc, char** argv) {
    const bool picture = argc == 3 && std::strcmp(argv[1], "--png") == 0;
    if (argc != 1 && !picture) {
        std::fprintf(stderr, "usage: %s [--png OUT.png]\n", argv[0]);
        return 2;
    }
    TPackageScope package; // registers every class, so that the form file can create them
    try {
        TBoilerPanel panel;
        TCalculatorForm calculator;
        if (!picture) {
            Run(panel.Form(), calculator);
            return 0;
        }
        for (int step = 0; step < 6; ++step)
            panel.Step();
        calculator.Input().SetText("2*(PI+1)");
        WritePicture(panel.Form(), calculator, argv[2]);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "instrument-panel: %s\n", e.what());
        return 1;
    }
    return 0;
}
