#pragma once
// Cells of the non-visual components that show them working: the calculator with an input
// line (Enter evaluates it and shows the result code, where reading stopped, the value and
// the registers), the thread timer's tick count and measured interval, and the multimedia
// timer's lateness over the last second.

#include "GalleryControls.h"
#include "TickStatistics.h"

#include "platform/controls/Edit.h"

#include <memory>
#include <mutex>

namespace qv {
class TqBackground;
class TqCalc;
class TqxTimer;
class TqxMMTimer;
class TqxRunProg;
class TqColorBtn;
class TqCompCanvas;
class TqMinMax;
class TqTrayIcon;
class TPanel;
} // namespace qv

namespace qv::gallery {

// The view for a non-visual component: one that shows it working where the gallery has one,
// otherwise its name and a few of its values.
TNonVisualView* MakeNonVisualView(TComponent* owner, TComponent& shown);

// An edit line that reports Enter instead of leaving it to the form.
class TEnterEdit : public TEdit {
public:
    using TEdit::TEdit;
    std::function<void()> OnEnterKey;

protected:
    void KeyDown(unsigned& key, TShiftState shift) override;
    void WMGetDlgCode(TMessage& message) override;
};

class TCalcView : public TNonVisualView {
public:
    TCalcView(TComponent* owner, TqCalc& calc);

    TEdit& Input() const { return *m_input; }
    // Sets the calculator's line to the input line's text.
    void Evaluate();
    std::vector<std::string> Lines() const override;

    static constexpr TSize DefaultSize{240, 120};

protected:
    int LinesTop(int lineHeight) const override;

private:
    TqCalc& m_calc;
    TEnterEdit* m_input;
    bool m_evaluated{false};
};

class TTimerTickView : public TNonVisualView {
public:
    TTimerTickView(TComponent* owner, TqxTimer& timer);
    std::vector<std::string> Lines() const override;

private:
    TqxTimer& m_timer;
    // Shared with the timer's handler, which may outlive the view.
    std::shared_ptr<TTickCounter> m_ticks;
};

class TLatenessView : public TNonVisualView {
public:
    TLatenessView(TComponent* owner, TqxMMTimer& timer);
    std::vector<std::string> Lines() const override;

private:
    // Ticks arrive on the timer service's thread; the view reads on the main thread.
    struct TShared {
        std::mutex mutex;
        TLatenessWindow window;
    };

    TqxMMTimer& m_timer;
    std::shared_ptr<TShared> m_shared;
};

// The form background's cell: its values and a button that opens a small demo form whose
// background has the same settings. The demo is read from a form file, as an application's
// form is, so the background hooks the demo form, never the gallery's.
class TBackgroundView : public TNonVisualView {
public:
    TBackgroundView(TComponent* owner, TqBackground& background);
    ~TBackgroundView() override;

    TControl& OpenButton() const { return *m_open; }
    // Reads and shows the demo form (again, with the current settings).
    void OpenDemo();
    TForm* Demo() const { return m_demo.get(); }

    std::vector<std::string> Lines() const override;

    static constexpr TSize DefaultSize{150, 96};

protected:
    // The name, the wallpaper as a demo form would show it, the button.
    void Paint() override;

private:
    TqBackground& m_background;
    TControl* m_open;
    std::unique_ptr<TForm> m_demo;
};

// The size limits' cell: the limits and a button that opens a demo form read from a form
// file with the same limits, hooked as an application's form is; its edges stop at them.
class TMinMaxView : public TNonVisualView {
public:
    TMinMaxView(TComponent* owner, TqMinMax& limits);
    ~TMinMaxView() override;

    TControl& OpenButton() const { return *m_open; }
    void OpenDemo();
    TForm* Demo() const { return m_demo.get(); }
    std::vector<std::string> Lines() const override;

    static constexpr TSize DefaultSize{200, 96};

private:
    TqMinMax& m_limits;
    TControl* m_open;
    std::unique_ptr<TForm> m_demo;
};

// The tray icon's cell: its tip, the shell that shows it and its menu.
class TTrayIconView : public TNonVisualView {
public:
    TTrayIconView(TComponent* owner, TqTrayIcon& icon);
    std::vector<std::string> Lines() const override;

    static constexpr TSize DefaultSize{200, 72};

private:
    TqTrayIcon& m_icon;
};

// The program launcher with a Run button: the click runs its command line with a soft wait
// (the gallery keeps running meanwhile) and the view shows the return code, 259 while the
// program runs.
class TRunProgView : public TNonVisualView {
public:
    TRunProgView(TComponent* owner, TqxRunProg& run);
    std::vector<std::string> Lines() const override;
    TqColorBtn& RunButton() const { return *m_button; }

    static constexpr TSize DefaultSize{200, 96};

protected:
    int LinesTop(int lineHeight) const override;

private:
    TqxRunProg& m_run;
    TqColorBtn* m_button;
    bool m_running{false};
};

// The composite canvas with the panel it draws on (its showcase's animation draws there).
class TCompCanvasView : public TNonVisualView {
public:
    TCompCanvasView(TComponent* owner, TqCompCanvas& lender);
    std::vector<std::string> Lines() const override { return {}; }
    TPanel& Target() const { return *m_panel; }

    static constexpr TSize DefaultSize{150, 80};

private:
    TPanel* m_panel;
};

// "1.23 ms": a duration in milliseconds for the views.
std::string FormatMilliseconds(TTickDuration duration);

} // namespace qv::gallery
