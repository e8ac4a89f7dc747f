// Component speed: the paint cost of each component at its default size and at four times
// its size (Google Benchmark), then, with --timers, the lateness of the multimedia timer at
// 1 ms beside a bare timerfd loop, and the hand-over of a thread-timer tick to the main
// thread beside a raw eventfd hand-off. bench/components.sh prints the figures.
#include "backgrounds/Blend.h"
#include "buttons/Qanimate.h"
#include "controls/Qbtn2.h"
#include "indicators/Qled.h"
#include "indicators/Qseg.h"
#include "instruments/Qgauge.h"
#include "instruments/Qpanel.h"
#include "instruments/Qpanel2.h"
#include "package/Package.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/core/DateTime.h"
#include "slidebar/Slidebar.h"
#include "splitters/Qsplit.h"
#include "switches/Qonzoff.h"
#include "timing/Std2.h"
#include "utility/Mystd.h"

#include "ScopePeers.h"

#include <benchmark/benchmark.h>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <thread>
#include <vector>

using namespace qv;
using Clock = std::chrono::steady_clock;

namespace {

// A form with one component; each iteration repaints the component's area. Components that
// grow through their own Size property are scaled by `setup` and keep their bounds. The form
// holds every component whole at four times its size (the largest, 800 x 800): one reaching
// past the frame paints into a buffer of its own that is copied in and out, another path.
template <class C>
void PaintCost(benchmark::State& state, std::function<void(C&)> setup, bool scaleBounds = true) {
    TForm form(nullptr);
    form.SetBounds(0, 0, 1280, 1024);
    form.Show();
    auto* c = new C(&form);
    c->SetParent(&form);
    setup(*c);
    const int scale = static_cast<int>(state.range(0));
    if (scaleBounds && scale > 1) c->SetBounds(0, 0, c->Width() * scale, c->Height() * scale);
    form.PaintPending();
    for (auto _ : state) {
        c->Invalidate();
        form.PaintPending();
    }
    state.SetLabel(std::to_string(c->Width()) + "x" + std::to_string(c->Height()));
}

void BM_ColorBtn(benchmark::State& s) {
    PaintCost<TqColorBtn>(s, [](TqColorBtn& c) { c.SetCaption("Button"); });
}
void BM_NWColorBtnGlass(benchmark::State& s) {
    PaintCost<TqNWColorBtn>(s, [](TqNWColorBtn& c) {
        c.SetCaption("Button"), c.SetTransparent(true), c.SetGlassValue(64);
    });
}
void BM_BlendPaint(benchmark::State& s) {
    PaintCost<TqBlendPaint>(s, [](TqBlendPaint& c) { c.SetFillType(gCenter); });
}
void BM_NWBlendPaint(benchmark::State& s) {
    PaintCost<TqNWBlendPaint>(s, [](TqNWBlendPaint&) {});
}
void BM_LedRound(benchmark::State& s) {
    PaintCost<TqLed>(s, [](TqLed& c) { c.writeLedOn(true); });
}
void BM_LedSquare(benchmark::State& s) {
    PaintCost<TqLed>(s, [](TqLed& c) { c.SetLedStyle(lstSquare), c.SetSteelLook(true); });
}
void BM_Segment(benchmark::State& s) {
    PaintCost<TqSegment>(s, [](TqSegment& c) { c.SetChar('8'); });
}
void BM_SegmentTransparent(benchmark::State& s) {
    // Drawn straight onto what lies beneath: the 16 polygons on every paint.
    PaintCost<TqSegment>(s, [](TqSegment& c) { c.SetChar('8'), c.SetTransparent(true); });
}
void BM_SegmentScaled(benchmark::State& s) {
    // A segment cell grows through Size, not through its bounds.
    PaintCost<TqSegment>(
        s, [&](TqSegment& c) { c.SetChar('8'), c.SetSize(static_cast<int>(s.range(0))); }, false);
}
void BM_SegmentLabel(benchmark::State& s) {
    PaintCost<TqSegmentLabel>(
        s,
        [&](TqSegmentLabel& c) {
            c.SetCaption("12.5 VOLT"), c.SetSize(static_cast<int>(s.range(0)));
        },
        false);
}
void BM_SegmentClock(benchmark::State& s) {
    PaintCost<TqSegmentClock>(
        s,
        [&](TqSegmentClock& c) { c.SetShowSeconds(true), c.SetSize(static_cast<int>(s.range(0))); },
        false);
}

// Knobs grow through their bounds up to 120 x 120: four times the default is clamped there.
void BM_Knob(benchmark::State& s) {
    PaintCost<TqKnob>(s, [](TqKnob& c) { c.SetKnobValue(37); });
}
void BM_DblKnob(benchmark::State& s) {
    PaintCost<TqDblKnob>(s, [](TqDblKnob& c) { c.SetKnobValue(37), c.SetKnobValue2(71); });
}
void BM_TripKnob(benchmark::State& s) {
    PaintCost<TqTripKnob>(
        s, [](TqTripKnob& c) { c.SetKnobValue(37), c.SetKnobValue2(71), c.SetKnobValue3(12); });
}

// A drag on the outer ring: each iteration is one mouse move, from the message to the
// repainted pixels (the knob repaints at once, twice: from the value setter and after it).
template <class K> void DragCost(benchmark::State& state) {
    TForm form(nullptr);
    form.SetBounds(0, 0, 400, 300);
    form.Show();
    auto* knob = new K(&form);
    knob->SetParent(&form);
    knob->SetBounds(0, 0, knob->Width(), knob->Height());
    form.PaintPending();
    const int c = knob->Width() / 2;
    knob->Perform(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(c, 10));
    bool up = false;
    for (auto _ : state) {
        knob->Perform(WM_MOUSEMOVE, MK_LBUTTON, up ? MAKELPARAM(c, 10) : MAKELPARAM(10, c));
        up = !up;
    }
    knob->Perform(WM_LBUTTONUP, 0, MAKELPARAM(c, 10));
    state.SetLabel(std::to_string(knob->Width()) + "x" + std::to_string(knob->Height()));
}
void BM_KnobDrag(benchmark::State& s) {
    DragCost<TqKnob>(s);
}
void BM_DblKnobDrag(benchmark::State& s) {
    DragCost<TqDblKnob>(s);
}
void BM_TripKnobDrag(benchmark::State& s) {
    DragCost<TqTripKnob>(s);
}

// The meters and the analog clock; the clock on a fixed time, so that every paint draws the
// same hands and its own timer finds nothing to do.
void BM_PanelMeter(benchmark::State& s) {
    PaintCost<TqPanelMeter>(s, [](TqPanelMeter& c) { c.SetCaption("Load"), c.SetValue(80); });
}
void BM_DinMeter(benchmark::State& s) {
    PaintCost<TqxDinMeter>(s, [](TqxDinMeter& c) { c.SetCaption1("bar"), c.SetValue(60); });
}
TClockSource TenPastTen() {
    return [] { return EncodeDate(2024, 5, 6) + EncodeTime(10, 10, 30, 0); };
}
void BM_AnalogClock(benchmark::State& s) {
    TScopedClock clock(TenPastTen());
    PaintCost<TqxAnalogClock>(s, [](TqxAnalogClock&) {});
}
void BM_AnalogClockRoman3D(benchmark::State& s) {
    TScopedClock clock(TenPastTen());
    PaintCost<TqxAnalogClock>(s, [](TqxAnalogClock& c) {
        c.SetClockStyle(csRomanDot), c.SetUse3D(true), c.SetFont3D(true);
    });
}
// The 3-D Roman dial drawn afresh on every paint: the dot colour alternates, so the kept dial
// never holds.
void BM_AnalogClockRoman3DRedraw(benchmark::State& s) {
    TScopedClock clock(TenPastTen());
    TForm form(nullptr);
    form.SetBounds(0, 0, 200, 200);
    form.Show();
    auto* c = new TqxAnalogClock(&form);
    c->SetParent(&form);
    c->SetClockStyle(csRomanDot), c->SetUse3D(true), c->SetFont3D(true);
    form.PaintPending();
    bool odd = false;
    for (auto _ : s) {
        c->SetDotCol((odd = !odd) ? TColor(0xFF00FF) : TColor(0xFF00FE));
        form.PaintPending();
    }
}
// A tick of the clock's timer that finds the same second: no repaint.
void BM_AnalogClockIdleTick(benchmark::State& s) {
    TScopedClock clock(TenPastTen());
    TForm form(nullptr);
    form.SetBounds(0, 0, 200, 200);
    form.Show();
    auto* c = new TqxAnalogClock(&form);
    c->SetParent(&form);
    form.PaintPending();
    for (auto _ : s)
        c->DoTimer(c);
}
BENCHMARK(BM_PanelMeter)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DinMeter)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_AnalogClock)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_AnalogClockRoman3D)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_AnalogClockRoman3DRedraw)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_AnalogClockIdleTick)->Unit(benchmark::kMicrosecond);
// Switches, on and with a caption; a move that leaves a pressed switch springs it back and
// repaints at once (each iteration leaves or enters again).
template <class S> void SwitchCost(benchmark::State& s) {
    PaintCost<S>(s, [](S& c) { c.SetCaption("Power"), c.SetSwitchOn(true); });
}
template <class S> void SwitchLeaveCost(benchmark::State& state) {
    TForm form(nullptr);
    form.SetBounds(0, 0, 400, 300);
    form.Show();
    auto* s = new S(&form);
    s->SetParent(&form);
    s->SetCaption("Power");
    form.PaintPending();
    s->Perform(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 5));
    bool out = false;
    for (auto _ : state) {
        out = !out;
        s->Perform(WM_MOUSEMOVE, MK_LBUTTON, out ? MAKELPARAM(200, 5) : MAKELPARAM(10, 5));
    }
    s->Perform(WM_LBUTTONUP, 0, MAKELPARAM(200, 5));
    state.SetLabel(std::to_string(s->Width()) + "x" + std::to_string(s->Height()));
}
void BM_LightOnOff(benchmark::State& s) {
    SwitchCost<TqxLightOnOff>(s);
}
void BM_PushOnOff(benchmark::State& s) {
    SwitchCost<TqxPushOnOff>(s);
}
void BM_DblOnOff(benchmark::State& s) {
    SwitchCost<TqxDblOnOff>(s);
}
void BM_SingleOnOff(benchmark::State& s) {
    SwitchCost<TqxSingleOnOff>(s);
}
void BM_SlideOnOff(benchmark::State& s) {
    SwitchCost<TqxSlideOnOff>(s);
}
void BM_PushOnOffLeave(benchmark::State& s) {
    SwitchLeaveCost<TqxPushOnOff>(s);
}
BENCHMARK(BM_LightOnOff)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PushOnOff)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DblOnOff)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_SingleOnOff)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_SlideOnOff)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PushOnOffLeave)->Unit(benchmark::kMicrosecond);

// The slide bar and the spin buttons: paints, a drag step of the bar's thumb, and a spin
// press moving off its button and back (each move repaints the button popped out or in).
void BM_SlideBar(benchmark::State& s) {
    PaintCost<TqSlideBar>(s, [](TqSlideBar& c) { c.SetPosition(5); });
}
void BM_SpinBtn(benchmark::State& s) {
    PaintCost<TqxSpinBtn>(s, [](TqxSpinBtn&) {});
}
void BM_CenterSpinBtn(benchmark::State& s) {
    PaintCost<TqxCenterSpinBtn>(s, [](TqxCenterSpinBtn&) {});
}
template <class C> void MoveCost(benchmark::State& state, TPoint press, TPoint a, TPoint b) {
    TForm form(nullptr);
    form.SetBounds(0, 0, 400, 300);
    form.Show();
    auto* c = new C(&form);
    c->SetParent(&form);
    c->SetBounds(0, 0, c->Width(), c->Height());
    form.PaintPending();
    c->Perform(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(press.x, press.y));
    bool back = false;
    for (auto _ : state) {
        const TPoint p = back ? a : b;
        c->Perform(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(p.x, p.y));
        back = !back;
    }
    c->Perform(WM_LBUTTONUP, 0, MAKELPARAM(400, 400));
    state.SetLabel(std::to_string(c->Width()) + "x" + std::to_string(c->Height()));
}
void BM_SlideBarDrag(benchmark::State& s) {
    MoveCost<TqSlideBar>(s, {5, 10}, {40, 10}, {80, 10});
}
void BM_SpinPressLeave(benchmark::State& s) {
    MoveCost<TqxSpinBtn>(s, {8, 5}, {8, 5}, {8, 15});
}

BENCHMARK(BM_SlideBar)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_SpinBtn)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_CenterSpinBtn)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_SlideBarDrag)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_SpinPressLeave)->Unit(benchmark::kMicrosecond);
// Live data displays. The scope holds a full history of two traces; its push is Push and the
// Refresh it does on a shown form, at the default size and at 1000 x 100.
void FillScope(TqScope& c) {
    std::vector<int> sine(TqScope::SampleCount), noise(TqScope::SampleCount);
    for (int i = 0; i < TqScope::SampleCount; ++i) {
        sine[static_cast<std::size_t>(i)] = 50 + (i % 60 < 30 ? i % 30 : 30 - i % 30);
        noise[static_cast<std::size_t>(i)] = 20 + (i * 7919) % 23;
    }
    c.SetUse2(true), c.SetAllChannel1(sine.data()), c.SetAllChannel2(noise.data());
}
void BM_Scope(benchmark::State& s) {
    PaintCost<TqScope>(s, FillScope);
}
void BM_ScopePush(benchmark::State& state) {
    TForm form(nullptr);
    form.SetBounds(0, 0, 1200, 600);
    form.Show();
    auto* scope = new TqScope(&form);
    scope->SetParent(&form);
    FillScope(*scope);
    if (state.range(0) > 1) scope->SetBounds(0, 0, 1000, 100);
    form.PaintPending();
    int n = 0;
    for (auto _ : state) {
        scope->SetIn1(n % 100), scope->SetIn2(++n % 37);
        scope->Push();
    }
    state.SetLabel(std::to_string(scope->Width()) + "x" + std::to_string(scope->Height()));
}
void BM_Spectrum(benchmark::State& s) {
    PaintCost<TqxSpectrum>(s, [](TqxSpectrum& c) {
        for (int i = 0; i < TqxSpectrum::ChannelCount; ++i)
            c.SetChannel(i, (i * 37) % 100);
    });
}
// Its maximum of 100 bands on 400 x 300, with the LED look.
void BM_Spectrum100Led(benchmark::State& s) {
    PaintCost<TqxSpectrum>(
        s,
        [](TqxSpectrum& c) {
            c.SetNum(100), c.SetBounds(0, 0, 400, 300);
            for (int i = 0; i < TqxSpectrum::ChannelCount; ++i)
                c.SetChannel(i, (i * 37) % 100);
        },
        false);
}
void BM_CreditScroll(benchmark::State& s) {
    PaintCost<TqxCreditScroll>(s, [](TqxCreditScroll& c) {
        c.SetInterval(0);
        c.SetStep(c.Height());
        c.DoTimer(&c);
    });
}
void BM_Gauge(benchmark::State& s) {
    PaintCost<TqGauge>(s,
                       [](TqGauge& c) { c.SetCaption("%d%%"), c.SetledSpace(10), c.SetValue(65); });
}

BENCHMARK(BM_Scope)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ScopePush)->Arg(1)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Spectrum)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Spectrum100Led)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_CreditScroll)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Gauge)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);

BENCHMARK(BM_ColorBtn)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_NWColorBtnGlass)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BlendPaint)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_NWBlendPaint)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_LedRound)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_LedSquare)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Segment)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_SegmentTransparent)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_SegmentScaled)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_SegmentLabel)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_SegmentClock)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Knob)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DblKnob)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TripKnob)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_KnobDrag)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DblKnobDrag)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TripKnobDrag)->Unit(benchmark::kMicrosecond);

// Gradient button, tile maps and the form background.
void BM_GradBtn(benchmark::State& s) {
    PaintCost<TqGradBtn>(s, [](TqGradBtn& c) { c.SetCaption("Button"), c.SetColor(0xFF8000); });
}
BENCHMARK(BM_GradBtn)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
template <class Map> void SetTilePattern(Map& map) {
    TBitmap tile(12, 12);
    for (int y = 0; y < 12; ++y)
        for (int x = 0; x < 12; ++x)
            tile.Canvas().SetPixel(x, y, (x + y) % 5 == 0 ? clNavy : clSilver);
    map.SetBitmap(&tile);
}
void BM_TileMap(benchmark::State& s) {
    PaintCost<TqTileMap>(s, SetTilePattern<TqTileMap>);
}
void BM_NWTileMap(benchmark::State& s) {
    PaintCost<TqNWTileMap>(s, SetTilePattern<TqNWTileMap>);
}
BENCHMARK(BM_TileMap)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_NWTileMap)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
// A whole 320 x 240 form repainted over its hooked background (argument: the TqBackType).
void BM_BackgroundForm(benchmark::State& state) {
    TForm form(nullptr);
    form.SetBounds(0, 0, 320, 240);
    auto* back = new TqBackground(&form);
    back->SetBackType(static_cast<TqBackType>(state.range(0)));
    TBitmap tile(16, 16);
    tile.Canvas().Brush().SetColor(clTeal);
    tile.Canvas().Ellipse(2, 2, 14, 14);
    back->SetBitMap(&tile);
    back->Loaded();
    form.Show();
    form.PaintPending();
    for (auto _ : state) {
        form.Invalidate();
        form.PaintPending();
    }
    state.SetLabel(TypeInfoOf<TqBackType>().names.at(static_cast<std::size_t>(state.range(0))));
}
BENCHMARK(BM_BackgroundForm)
    ->Arg(btBitmap)
    ->Arg(btBlend)
    ->Arg(btNormal)
    ->Arg(btSteel)
    ->Unit(benchmark::kMicrosecond);
// Splitters (the container with its bar) and the mouse spot (nothing of its own: what lies
// beneath shows through).
void BM_VerSplit(benchmark::State& s) {
    PaintCost<TqVerSplit>(s, [](TqVerSplit& c) { c.GoMedium(); });
}
void BM_HorSplitNewLook(benchmark::State& s) {
    PaintCost<TqHorSplit>(s, [](TqHorSplit& c) { c.SetNewLook(true), c.GoMedium(); });
}
void BM_MouseSpot(benchmark::State& s) {
    PaintCost<TqMouseSpot>(s, [](TqMouseSpot&) {});
}
BENCHMARK(BM_VerSplit)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_HorSplitNewLook)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_MouseSpot)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);

struct TLateness {
    double p50, p99, max;
};

TLateness Summarize(std::vector<double> us) {
    std::sort(us.begin(), us.end());
    const auto at = [&](double q) {
        return us[static_cast<std::size_t>(q * static_cast<double>(us.size() - 1))];
    };
    return {at(0.5), at(0.99), us.back()};
}

double MicrosSince(Clock::time_point deadline) {
    return std::chrono::duration<double, std::micro>(Clock::now() - deadline).count();
}

// Lateness of each 1 ms tick of the multimedia timer past its absolute deadline.
TLateness MultimediaTimerLateness(std::chrono::seconds span) {
    std::vector<double> late;
    late.reserve(10000);
    std::atomic<bool> done{false};
    Clock::time_point start;
    std::atomic<long> tick{0};
    TqxMMTimer timer(nullptr);
    timer.SetEnabled(false);
    timer.SetOnTimer([&](TObject*) {
        if (done) return;
        const long k = ++tick;
        late.push_back(MicrosSince(start + std::chrono::milliseconds(k)));
        if (Clock::now() - start > span) done = true;
    });
    start = Clock::now();
    timer.SetInterval(1); // restarts the service timer: its first deadline is one period on
    start = Clock::now();
    timer.SetEnabled(true);
    while (!done)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    timer.SetEnabled(false);
    return Summarize(late);
}

// The same measured on a bare absolute timerfd loop with 1 ns timer slack.
TLateness BareTimerfdLateness(std::chrono::seconds span) {
    std::vector<double> late;
    std::thread worker([&] {
        ::prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
        const int fd = ::timerfd_create(CLOCK_MONOTONIC, 0);
        timespec now{};
        ::clock_gettime(CLOCK_MONOTONIC, &now);
        itimerspec schedule{};
        schedule.it_interval = {0, 1000000};
        schedule.it_value = now;
        schedule.it_value.tv_nsec += 1000000;
        if (schedule.it_value.tv_nsec >= 1000000000)
            schedule.it_value.tv_nsec -= 1000000000, ++schedule.it_value.tv_sec;
        const auto start = Clock::now();
        ::timerfd_settime(fd, TFD_TIMER_ABSTIME, &schedule, nullptr);
        for (long k = 1; Clock::now() - start < span; ++k) {
            std::uint64_t n;
            if (::read(fd, &n, sizeof n) != sizeof n) break;
            late.push_back(MicrosSince(start + std::chrono::milliseconds(k)));
            if (n > 1) k += static_cast<long>(n - 1);
        }
        ::close(fd);
    });
    worker.join();
    return Summarize(late);
}

// From the worker waking for a tick to the handler running on the main thread.
double ThreadTimerHandOverP50(int ticks) {
    Application().SetBackend(
        std::make_unique<THeadlessBackend>(THeadlessBackend::TClockMode::Real));
    std::vector<double> latency;
    TqxTimer timer(nullptr);
    // The worker wakes after each interval; its wake time is one interval after the last
    // tick's end, which the handler records.
    Clock::time_point lastEnd = Clock::now();
    timer.SetInterval(2);
    timer.SetOnTimer([&](TObject*) {
        latency.push_back(MicrosSince(lastEnd + std::chrono::milliseconds(2)));
        lastEnd = Clock::now();
    });
    lastEnd = Clock::now();
    while (static_cast<int>(latency.size()) < ticks)
        Application().HandleMessage();
    timer.SetEnabled(false);
    return Summarize(latency).p50;
}

double RawEventfdHandOverP50(int ticks) {
    const int fd = ::eventfd(0, 0);
    std::vector<double> latency;
    std::atomic<bool> stop{false};
    std::atomic<long long> sentAt{0};
    std::thread worker([&] {
        ::prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
        for (int i = 0; i < ticks && !stop; ++i) {
            // Measured like the timer: from the moment the sleep should end.
            const auto due = Clock::now() + std::chrono::milliseconds(2);
            std::this_thread::sleep_until(due);
            sentAt = due.time_since_epoch().count();
            const std::uint64_t one = 1;
            [[maybe_unused]] auto w = ::write(fd, &one, sizeof one);
        }
    });
    for (int i = 0; i < ticks; ++i) {
        pollfd p{fd, POLLIN, 0};
        ::poll(&p, 1, -1);
        std::uint64_t n;
        [[maybe_unused]] auto r = ::read(fd, &n, sizeof n);
        latency.push_back(MicrosSince(Clock::time_point(Clock::duration(sentAt.load()))));
    }
    stop = true;
    worker.join();
    ::close(fd);
    return Summarize(latency).p50;
}

void ReportTimers() {
    const auto ours = MultimediaTimerLateness(std::chrono::seconds(5));
    const auto bare = BareTimerfdLateness(std::chrono::seconds(5));
    std::printf("mmtimer lateness p50: ours %.1f us, timerfd %.1f us, ratio %.2f\n", ours.p50,
                bare.p50, ours.p50 / std::max(bare.p50, 0.1));
    std::printf("mmtimer lateness p99: ours %.1f us, timerfd %.1f us, ratio %.2f\n", ours.p99,
                bare.p99, ours.p99 / std::max(bare.p99, 0.1));
    std::printf("mmtimer lateness max: ours %.1f us, timerfd %.1f us\n", ours.max, bare.max);
    const double handOver = ThreadTimerHandOverP50(500);
    const double raw = RawEventfdHandOverP50(500);
    std::printf("thread timer hand-over p50: ours %.1f us, eventfd %.1f us, ratio %.2f\n", handOver,
                raw, handOver / std::max(raw, 0.1));
}

} // namespace

int main(int argc, char** argv) {
    bool timers = false;
    bool scope = false; // the scope beside its peers
    std::vector<char*> args;
    for (int i = 0; i < argc; ++i) {
        if (std::strcmp(argv[i], "--timers") == 0)
            timers = true;
        else if (std::strcmp(argv[i], "--scope") == 0)
            scope = true;
        else
            args.push_back(argv[i]);
    }
    int count = static_cast<int>(args.size());
    InitializePackage();
    benchmark::Initialize(&count, args.data());
    benchmark::RunSpecifiedBenchmarks();
    if (scope) qv::bench::ReportScopePeers();
    if (timers) ReportTimers();
    FinalizePackage();
    return 0;
}
