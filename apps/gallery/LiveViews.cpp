#include "LiveViews.h"

#include "backgrounds/TqBackground.h"
#include "buttons/TqColorBtn.h"
#include "buttons/TqGradBtn.h"
#include "platform/backend/TrayShell.h"
#include "platform/controls/Application.h"
#include "platform/controls/Menus.h"
#include "platform/controls/Messages.h"
#include "platform/controls/Panel.h"
#include "platform/core/TypeInfo.h"
#include "platform/streaming/Reader.h"
#include "platform/streaming/Writer.h"
#include "timing/TqCompCanvas.h"
#include "timing/TqMinMax.h"
#include "timing/TqxMMTimer.h"
#include "timing/TqxRunProg.h"
#include "timing/TqxTimer.h"
#include "utility/TqCalc.h"
#include "utility/TqTrayIcon.h"

#include <cstdio>

namespace qv::gallery {

namespace {

constexpr int registersPerLine = 3;

std::string FormatValue(long double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.10Lg", value);
    return text;
}

std::string ResultName(TqCalcResult result) {
    return TypeInfoOf<TqCalcResult>().names.at(static_cast<std::size_t>(result));
}

} // namespace

// TBackgroundView

namespace {

// `text` with every line indented by two spaces, to nest one object in another.
std::string Indented(const std::string& text) {
    std::string out;
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = text.find('\n', start);
        const std::size_t next = end == std::string::npos ? text.size() : end + 1;
        out.append("  ").append(text, start, next - start);
        start = next;
    }
    return out;
}

// The demo form: the background, a gradient button and a colour button that closes it.
std::string DemoFormText(const TqBackground& background) {
    return std::string("object BackgroundDemo: TForm\n"
                       "  Caption = 'TqBackground'\n"
                       "  Width = 280\n"
                       "  Height = 180\n")
        .append(Indented(WriteComponentText(background)))
        .append("  object DemoGradient: TqGradBtn\n"
                "    Left = 24\n"
                "    Top = 124\n"
                "    Caption = 'Gradient'\n"
                "  end\n"
                "  object DemoClose: TqColorBtn\n"
                "    Left = 166\n"
                "    Top = 124\n"
                "    Caption = 'Close'\n"
                "  end\n"
                "end\n");
}

} // namespace

TBackgroundView::TBackgroundView(TComponent* owner, TqBackground& background)
    : TNonVisualView(owner, background), m_background(background), m_open(new TqColorBtn(owner)) {
    SetBounds(0, 0, DefaultSize.cx, DefaultSize.cy);
    m_open->SetParent(this);
    m_open->SetCaption("Open demo");
    m_open->SetBounds(3, DefaultSize.cy - 27, DefaultSize.cx - 6, 24);
    m_open->OnClick = [this](TObject*) { OpenDemo(); };
}

TBackgroundView::~TBackgroundView() = default;

std::vector<std::string> TBackgroundView::Lines() const {
    return {};
}

void TBackgroundView::Paint() {
    TNonVisualView::Paint();
    const TRect preview{3, 20, Width() - 3, m_open->Top() - 3};
    if (preview.IsEmpty()) return;
    TBitmap wallpaper(preview.Width(), preview.Height());
    wallpaper.Canvas().Brush().SetColor(clBtnFace); // what a form shows where it is left
    wallpaper.Canvas().FillRect({0, 0, preview.Width(), preview.Height()});
    m_background.PaintWallpaper(wallpaper.Canvas(), preview.Width(), preview.Height());
    Canvas().Draw(preview.left, preview.top, wallpaper);
}

void TBackgroundView::OpenDemo() {
    m_demo.reset();
    std::unique_ptr<TComponent> read = ReadComponentText(DemoFormText(m_background));
    m_demo.reset(static_cast<TForm*>(read.release()));
    TForm* demo = m_demo.get();
    if (auto* close = dynamic_cast<TControl*>(demo->FindComponent("DemoClose")))
        close->OnClick = [demo](TObject*) { demo->Close(); };
    demo->Show();
}

// TMinMaxView

namespace {

// The demo form: the size limits and a colour button that closes it.
std::string MinMaxDemoText(const TqMinMax& limits) {
    return std::string("object MinMaxDemo: TForm\n"
                       "  Caption = 'TqMinMax: drag my edges'\n"
                       "  Width = 320\n"
                       "  Height = 200\n")
        .append(Indented(WriteComponentText(limits)))
        .append("  object DemoClose: TqColorBtn\n"
                "    Left = 12\n"
                "    Top = 12\n"
                "    Caption = 'Close'\n"
                "  end\n"
                "end\n");
}

} // namespace

TMinMaxView::TMinMaxView(TComponent* owner, TqMinMax& limits)
    : TNonVisualView(owner, limits), m_limits(limits), m_open(new TqColorBtn(owner)) {
    SetBounds(0, 0, DefaultSize.cx, DefaultSize.cy);
    m_open->SetParent(this);
    m_open->SetCaption("Open demo");
    m_open->SetBounds(3, DefaultSize.cy - 27, DefaultSize.cx - 6, 24);
    m_open->OnClick = [this](TObject*) { OpenDemo(); };
}

TMinMaxView::~TMinMaxView() = default;

std::vector<std::string> TMinMaxView::Lines() const {
    return {"drag " + std::to_string(m_limits.MinDragWidth()) + " x " +
                std::to_string(m_limits.MinDragHeight()) + " .. " +
                std::to_string(m_limits.MaxDragWidth()) + " x " +
                std::to_string(m_limits.MaxDragHeight()),
            "maximised " + std::to_string(m_limits.MaxWidth()) + " x " +
                std::to_string(m_limits.MaxHeight())};
}

void TMinMaxView::OpenDemo() {
    m_demo.reset();
    std::unique_ptr<TComponent> read = ReadComponentText(MinMaxDemoText(m_limits));
    m_demo.reset(static_cast<TForm*>(read.release()));
    TForm* demo = m_demo.get();
    if (auto* close = dynamic_cast<TControl*>(demo->FindComponent("DemoClose")))
        close->OnClick = [demo](TObject*) { demo->Close(); };
    demo->Show();
}

// TTrayIconView

TTrayIconView::TTrayIconView(TComponent* owner, TqTrayIcon& icon)
    : TNonVisualView(owner, icon), m_icon(icon) {
    SetBounds(0, 0, DefaultSize.cx, DefaultSize.cy);
}

std::vector<std::string> TTrayIconView::Lines() const {
    std::string menu;
    if (const TPopupMenu* popup = m_icon.PopupMenu())
        for (int i = 0; i < popup->Items()->Count(); ++i)
            menu.append(i ? ", " : "").append(popup->Items()->Items(i)->Caption());
    return {"tip: " + m_icon.ToolTip(),
            std::string(m_icon.Active() ? "shown by " : "hidden, shell ") +
                Application().Backend().TrayShell().Name(),
            "menu: " + (menu.empty() ? std::string("none") : menu)};
}

std::string FormatMilliseconds(TTickDuration duration) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f ms", duration.count());
    return text;
}

TNonVisualView* MakeNonVisualView(TComponent* owner, TComponent& shown) {
    if (auto* calc = dynamic_cast<TqCalc*>(&shown)) return new TCalcView(owner, *calc);
    if (auto* back = dynamic_cast<TqBackground*>(&shown)) return new TBackgroundView(owner, *back);
    if (auto* timer = dynamic_cast<TqxTimer*>(&shown)) return new TTimerTickView(owner, *timer);
    if (auto* timer = dynamic_cast<TqxMMTimer*>(&shown)) return new TLatenessView(owner, *timer);
    if (auto* run = dynamic_cast<TqxRunProg*>(&shown)) return new TRunProgView(owner, *run);
    if (auto* lender = dynamic_cast<TqCompCanvas*>(&shown))
        return new TCompCanvasView(owner, *lender);
    if (auto* limits = dynamic_cast<TqMinMax*>(&shown)) return new TMinMaxView(owner, *limits);
    if (auto* icon = dynamic_cast<TqTrayIcon*>(&shown)) return new TTrayIconView(owner, *icon);
    return new TNonVisualView(owner, shown);
}

// TEnterEdit

void TEnterEdit::KeyDown(unsigned& key, TShiftState shift) {
    TEdit::KeyDown(key, shift);
    if (key == VK_RETURN && OnEnterKey) OnEnterKey();
}

void TEnterEdit::WMGetDlgCode(TMessage& message) {
    TEdit::WMGetDlgCode(message);
    message.Result |= DLGC_WANTALLKEYS;
}

// TCalcView

TCalcView::TCalcView(TComponent* owner, TqCalc& calc)
    : TNonVisualView(owner, calc), m_calc(calc), m_input(new TEnterEdit(owner)) {
    SetBounds(0, 0, DefaultSize.cx, DefaultSize.cy);
    m_input->SetParent(this);
    m_input->SetBounds(3, 20, DefaultSize.cx - 6, 0);
    m_input->OnEnterKey = [this] { Evaluate(); };
}

void TCalcView::Evaluate() {
    m_calc.SetCalcLine(m_input->Text());
    m_evaluated = true;
    Invalidate();
}

int TCalcView::LinesTop(int) const {
    return m_input->Top() + m_input->Height() + 2;
}

std::vector<std::string> TCalcView::Lines() const {
    std::vector<std::string> lines;
    if (m_evaluated)
        lines.push_back(ResultName(m_calc.CalcResult()) + " at " +
                        std::to_string(m_calc.WhereIsLastError()) + " = " +
                        FormatValue(m_calc.NumberNum()));
    else
        lines.push_back("Type an expression, then Enter");
    std::string registers;
    for (int i = 1; i <= TqCalc::RegisterCount; ++i) {
        registers += std::string(1, TqCalc::RegisterNames[static_cast<std::size_t>(i - 1)]) + " " +
                     FormatValue(m_calc.RegisterNum(i));
        if (i % registersPerLine == 0) {
            lines.push_back(registers);
            registers.clear();
        } else {
            registers += "  ";
        }
    }
    return lines;
}

// TTimerTickView

TTimerTickView::TTimerTickView(TComponent* owner, TqxTimer& timer)
    : TNonVisualView(owner, timer), m_timer(timer), m_ticks(std::make_shared<TTickCounter>()) {
    // The thread timer hands its ticks to the main thread, where the view reads them.
    timer.SetOnTimer([ticks = m_ticks](TObject*) { ticks->Tick(TTickClock::now()); });
}

std::vector<std::string> TTimerTickView::Lines() const {
    const auto interval = m_ticks->LastInterval();
    return {"Ticks " + std::to_string(m_ticks->Count()),
            "Interval " + std::to_string(m_timer.Interval()) + " ms",
            "Measured " + (interval ? FormatMilliseconds(*interval) : std::string("-"))};
}

// TLatenessView

TLatenessView::TLatenessView(TComponent* owner, TqxMMTimer& timer)
    : TNonVisualView(owner, timer), m_timer(timer), m_shared(std::make_shared<TShared>()) {
    m_shared->window.Restart(std::chrono::milliseconds(timer.Interval()));
    timer.SetOnTimer([shared = m_shared](TObject*) {
        const auto now = TTickClock::now();
        const std::lock_guard lock(shared->mutex);
        shared->window.Tick(now);
    });
}

std::vector<std::string> TLatenessView::Lines() const {
    const std::lock_guard lock(m_shared->mutex);
    const TTickDuration period = std::chrono::milliseconds(m_timer.Interval());
    if (m_shared->window.Period() != period) m_shared->window.Restart(period);
    const auto figures = m_shared->window.Figures(TTickClock::now());
    std::vector<std::string> lines{"Interval " + std::to_string(m_timer.Interval()) + " ms"};
    if (!figures) {
        lines.push_back("Lateness: no ticks in the last second");
        return lines;
    }
    lines.push_back("Late p50 " + FormatMilliseconds(figures->p50));
    lines.push_back("Late p99 " + FormatMilliseconds(figures->p99) + " (" +
                    std::to_string(figures->ticks) + " ticks)");
    return lines;
}

// TCompCanvasView

TCompCanvasView::TCompCanvasView(TComponent* owner, TqCompCanvas& lender)
    : TNonVisualView(owner, lender), m_panel(new TPanel(owner)) {
    SetBounds(0, 0, DefaultSize.cx, DefaultSize.cy);
    m_panel->SetParent(this);
    m_panel->SetBounds(4, 22, DefaultSize.cx - 8, DefaultSize.cy - 26);
    m_panel->SetBevelOuter(bvLowered);
    lender.SetControlComponent(m_panel);
}

// TRunProgView

TRunProgView::TRunProgView(TComponent* owner, TqxRunProg& run)
    : TNonVisualView(owner, run), m_run(run), m_button(new TqColorBtn(owner)) {
    SetBounds(0, 0, DefaultSize.cx, DefaultSize.cy);
    m_button->SetParent(this);
    m_button->SetBounds(3, 20, 60, 22);
    m_button->SetCaption("Run");
    m_button->OnClick = [this](TObject*) {
        if (m_running) return; // one run at a time from this button
        m_running = true;
        m_run.OnBeforeWait = [this](TObject*) { Invalidate(); };
        m_run.Run(); // the loop runs inside, so the view repaints while the program runs
        m_running = false;
        Invalidate();
    };
}

int TRunProgView::LinesTop(int) const {
    return m_button->Top() + m_button->Height() + 2;
}

std::vector<std::string> TRunProgView::Lines() const {
    return {m_run.CmdLine(),
            (m_running ? "Running, ReturnCode " : "ReturnCode ") +
                std::to_string(m_run.ReturnCode()),
            TypeInfoOf<TqxRunError>().names.at(static_cast<std::size_t>(m_run.LastResultCode()))};
}

} // namespace qv::gallery
