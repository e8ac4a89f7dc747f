// bench_present: how long pixels take from the framework to the X server, beside a bare
// XShmPutImage of the same rectangle on the same connection in the same run.
//
//   control: Invalidate of a 400 x 300 control, the loop's paint and present, XSync;
//   form:    a full repaint and present of a 1024 x 768 form with controls, XSync.
//
// Prints "<scene>: ours <us> us, bare <us> us, ratio <r>" with medians over the rounds.
// Needs a display (bench/present.sh runs it under xvfb-run).

#include "platform/controls/Application.h"
#include "platform/graphics/Canvas.h"

#include "platform/backend/X11Backend.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

using namespace qv;

namespace {

constexpr int rounds = 400;
constexpr int warmup = 20;

// A control that paints a few bands, so painting has real work to do.
class TBandsControl : public TCustomControl {
public:
    using TCustomControl::TCustomControl;

protected:
    void Paint() override {
        TCanvas& canvas = Canvas();
        const TColor bands[] = {clNavy, clTeal, clOlive, clMaroon};
        for (int i = 0; i < 4; ++i) {
            canvas.Brush().SetColor(bands[(i + m_phase) % 4]);
            canvas.FillRect(Rect(0, i * Height() / 4, Width(), (i + 1) * Height() / 4));
        }
        ++m_phase;
    }

private:
    int m_phase{0};
};

double MedianUs(const std::function<void()>& round) {
    std::vector<double> times;
    for (int i = 0; i < warmup + rounds; ++i) {
        const auto start = std::chrono::steady_clock::now();
        round();
        const std::chrono::duration<double, std::micro> took =
            std::chrono::steady_clock::now() - start;
        if (i >= warmup) times.push_back(took.count());
    }
    std::nth_element(times.begin(), times.begin() + rounds / 2, times.end());
    return times[rounds / 2];
}

// XShmPutImage of `area` from an image of the window's size, then XSync.
double BareUs(TX11Backend& x11, Window window, TSize size, const TRect& area, TX11ErrorTrap& trap) {
    Display* d = x11.XDisplay();
    const int screen = DefaultScreen(d);
    auto image = TShmImage::Create(d, DefaultVisual(d, screen), DefaultDepth(d, screen), size.cx,
                                   size.cy, trap);
    if (!image) return 0;
    GC gc = XCreateGC(d, window, 0, nullptr);
    const double us = MedianUs([&] {
        XShmPutImage(d, window, gc, image->Image(), area.left, area.top, area.left, area.top,
                     static_cast<unsigned>(area.Width()), static_cast<unsigned>(area.Height()),
                     False);
        XSync(d, False);
    });
    XFreeGC(d, gc);
    return us;
}

void Report(const char* scene, double ours, double bare) {
    std::printf("%s: ours %.0f us, bare %.0f us, ratio %.2f\n", scene, ours, bare,
                bare > 0 ? ours / bare : 0.0);
}

void ShowAndSettle(TForm& form, TX11Backend& x11) {
    form.Show();
    for (int i = 0; i < 200 && !x11.IsMapped(form.NativeWindow()); ++i) {
        x11.WaitForEvents(10);
        Application().ProcessMessages();
    }
    Application().ProcessMessages();
    x11.Sync();
}

void ControlScene(TX11Backend& x11, TX11ErrorTrap& trap) {
    TForm form(nullptr);
    form.SetBounds(0, 0, 600, 400);
    auto* control = new TBandsControl(&form);
    control->SetBounds(100, 50, 400, 300);
    control->SetParent(&form);
    ShowAndSettle(form, x11);
    const double ours = MedianUs([&] {
        control->Invalidate();
        Application().ProcessMessages();
        x11.Sync();
    });
    const double bare =
        BareUs(x11, form.NativeWindow(), {600, 400}, Bounds(100, 50, 400, 300), trap);
    Report("control 400x300", ours, bare);
}

void FormScene(TX11Backend& x11, TX11ErrorTrap& trap) {
    TForm form(nullptr);
    form.SetBounds(0, 0, 1024, 768);
    for (int i = 0; i < 12; ++i) {
        auto* control = new TBandsControl(&form);
        control->SetBounds(8 + (i % 4) * 252, 8 + (i / 4) * 250, 244, 242);
        control->SetParent(&form);
    }
    ShowAndSettle(form, x11);
    const double ours = MedianUs([&] {
        form.InvalidateFormRect(form.ClientRect());
        Application().ProcessMessages();
        x11.Sync();
    });
    const double bare = BareUs(x11, form.NativeWindow(), {1024, 768}, Rect(0, 0, 1024, 768), trap);
    Report("form 1024x768", ours, bare);
}

} // namespace

int main() {
    auto backend = TX11Backend::Open();
    if (!backend) {
        std::fprintf(stderr, "bench_present: no X display answers (run bench/present.sh)\n");
        return 2;
    }
    if (!backend->UsesSharedMemory())
        std::fprintf(stderr, "bench_present: no MIT-SHM; plain XPutImage\n");
    TX11Backend& x11 = *backend;
    Application().SetBackend(std::move(backend));
    {
        TX11ErrorTrap trap;
        ControlScene(x11, trap);
        FormScene(x11, trap);
    }
    return 0;
}
