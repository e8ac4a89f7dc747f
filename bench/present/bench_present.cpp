// bench_present: how long pixels take from the framework to the X server, beside a bare
// XShmPutImage of the same rectangle on the same connection in the same run.
//
//   control: Invalidate of a 400 x 300 control, the loop's paint and present, XSync;
//   form:    a full repaint and present of a 1024 x 768 form with controls, XSync.
//
// The bare peer puts the same rectangle from a shared-memory image of the window's size,
// asking for the completion event as the backend does, then XSync and reads that event.
// "paint" is the framework's painting of the same damage alone (PaintTree into the form's
// frame buffer, nothing sent), to tell painting from presenting. "floor" is what painting
// cannot do without: each control's own drawing into a bitmap of its size, alone, plus a fill
// of the part of the damage that no opaque control covers (every pixel written once).
//
// Prints "<scene>: ours <us> us, bare <us> us, ratio <r> (paint <us> us, without it <r>,
// floor <us> us, paint/floor <r>, ours/(bare+floor) <r>)" with medians over the rounds. Needs a
// display (bench/present.sh runs it under xvfb-run).

#include "platform/controls/Application.h"
#include "platform/graphics/Bitmap.h"
#include "platform/graphics/Canvas.h"
#include "platform/graphics/Region.h"

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

// Four horizontal bands over width x height, their colours turned by `phase`.
void DrawBands(TCanvas& canvas, int width, int height, int phase) {
    const TColor bands[] = {clNavy, clTeal, clOlive, clMaroon};
    for (int i = 0; i < 4; ++i) {
        canvas.Brush().SetColor(bands[(i + phase) % 4]);
        canvas.FillRect(Rect(0, i * height / 4, width, (i + 1) * height / 4));
    }
}

// A control that paints a few bands, so painting has real work to do. The bands cover it,
// so it declares itself opaque and its parent does not paint beneath it.
class TBandsControl : public TCustomControl {
public:
    explicit TBandsControl(TComponent* owner) : TCustomControl(owner) {
        SetControlStyle(ControlStyle() + TControlStyle{csOpaque});
    }

protected:
    void Paint() override { DrawBands(Canvas(), Width(), Height(), m_phase++); }

private:
    int m_phase{0};
};

struct TMedians {
    double ours{0};
    double bare{0};
    double paint{0};
    double floor{0};
};

// Runs the four rounds in turn, `rounds` times after a warm-up, so that all peers see the
// same load on a busy machine; the median of each.
TMedians Measure(const std::function<void()>& ours, const std::function<void()>& bare,
                 const std::function<void()>& paint, const std::function<void()>& floor) {
    constexpr int steps = 4;
    std::vector<double> times[steps];
    const std::function<void()>* step[steps] = {&ours, &bare, &paint, &floor};
    for (int i = 0; i < warmup + rounds; ++i)
        for (int k = 0; k < steps; ++k) {
            const auto start = std::chrono::steady_clock::now();
            (*step[k])();
            const std::chrono::duration<double, std::micro> took =
                std::chrono::steady_clock::now() - start;
            if (i >= warmup) times[k].push_back(took.count());
        }
    double medians[steps];
    for (int k = 0; k < steps; ++k) {
        std::nth_element(times[k].begin(), times[k].begin() + rounds / 2, times[k].end());
        medians[k] = times[k][rounds / 2];
    }
    return {medians[0], medians[1], medians[2], medians[3]};
}

// The bare peer: XShmPutImage of `area` from an image of the window's size, asking for the
// completion event as the backend does, then XSync and reading that event.
class TBarePut {
public:
    TBarePut(TX11Backend& x11, Window window, TSize size, const TRect& area, TX11ErrorTrap& trap)
        : m_display(x11.XDisplay()), m_window(window), m_area(area) {
        const int screen = DefaultScreen(m_display);
        m_image = TShmImage::Create(m_display, DefaultVisual(m_display, screen),
                                    DefaultDepth(m_display, screen), size.cx, size.cy, trap);
        XGCValues values{};
        values.graphics_exposures = False;
        m_gc = XCreateGC(m_display, window, GCGraphicsExposures, &values);
        m_completion = XShmGetEventBase(m_display) + ShmCompletion;
    }
    ~TBarePut() { XFreeGC(m_display, m_gc); }
    TBarePut(const TBarePut&) = delete;
    TBarePut& operator=(const TBarePut&) = delete;

    bool Valid() const { return m_image != nullptr; }
    void operator()() {
        XShmPutImage(m_display, m_window, m_gc, m_image->Image(), m_area.left, m_area.top,
                     m_area.left, m_area.top, static_cast<unsigned>(m_area.Width()),
                     static_cast<unsigned>(m_area.Height()), True);
        XSync(m_display, False);
        XEvent event;
        while (XCheckIfEvent(m_display, &event, &TBarePut::IsOurCompletion,
                             reinterpret_cast<XPointer>(this))) {
        }
    }

private:
    // Only this peer's completions: the backend's own are left for the backend.
    static Bool IsOurCompletion(Display*, XEvent* event, XPointer self) {
        const auto* bare = reinterpret_cast<const TBarePut*>(self);
        return event->type == bare->m_completion &&
               reinterpret_cast<const XShmCompletionEvent*>(event)->shmseg ==
                   bare->m_image->Segment();
    }

    Display* m_display;
    Window m_window;
    TRect m_area;
    std::unique_ptr<TShmImage> m_image;
    GC m_gc;
    int m_completion;
};

// "without it" leaves the painting out: what presenting adds beyond the bare put.
void Report(const char* scene, const TMedians& m) {
    const auto ratio = [](double a, double b) { return b > 0 ? a / b : 0.0; };
    std::printf("%s: ours %.0f us, bare %.0f us, ratio %.2f (paint %.0f us, without it %.2f, "
                "floor %.0f us, paint/floor %.2f, ours/(bare+floor) %.2f)\n",
                scene, m.ours, m.bare, ratio(m.ours, m.bare), m.paint,
                ratio(m.ours - m.paint, m.bare), m.floor, ratio(m.paint, m.floor),
                ratio(m.ours, m.bare + m.floor));
}

// The painting floor of `area` of `form`: each opaque child's bands drawn alone, straight
// into its place in a buffer of the frame's size through a canvas of its own (the same pixels
// and the same memory as the frame, nothing of the framework), and a fill of what no opaque
// child covers. (Drawn into bitmaps of the controls' own sizes instead, the floor ran in the
// processor's second-level cache, where the 3 MB frame never is.)
class TPaintFloor {
public:
    TPaintFloor(const TForm& form, const TRect& area)
        : m_frame(form.Width(), form.Height()), m_uncovered(TRegion::FromRect(area)) {
        for (int i = 0; i < form.ControlCount(); ++i) {
            const TControl* c = form.Controls(i);
            const TRect part = Intersect(c->BoundsRect(), area);
            if (part.IsEmpty()) continue;
            m_views.push_back(m_frame.SubView(c->BoundsRect()));
            m_uncovered = m_uncovered.Combine(TRegion::FromRect(part), RGN_DIFF);
        }
        for (TPixelBuffer& view : m_views)
            m_canvases.push_back(std::make_unique<TCanvas>(&view));
    }
    void operator()() {
        for (std::size_t i = 0; i < m_views.size(); ++i)
            DrawBands(*m_canvases[i], m_views[i].Width(), m_views[i].Height(), m_phase);
        ++m_phase;
        for (const auto& band : m_uncovered.Bands())
            for (int y = band.top; y < band.bottom; ++y)
                for (const TSpan& span : band.spans)
                    FillPixels(m_frame.Row(y) + span.left, span.right - span.left, 0xC0C0C0);
    }

private:
    TPixelBuffer m_frame;
    TRegion m_uncovered;
    std::vector<TPixelBuffer> m_views;
    std::vector<std::unique_ptr<TCanvas>> m_canvases;
    int m_phase{0};
};

void ShowAndSettle(TForm& form, TX11Backend& x11) {
    form.Show();
    for (int i = 0; i < 200 && !x11.IsMapped(form.NativeWindow()); ++i) {
        x11.WaitForEvents(10);
        Application().ProcessMessages();
    }
    Application().ProcessMessages();
    x11.Sync();
}

// Measures presenting `area` of a shown form: `invalidate` then the loop, against the bare
// put; and the painting of `area` alone into a buffer of the frame's size.
void Run(const char* scene, TForm& form, const TRect& area, const std::function<void()>& invalidate,
         TX11Backend& x11, TX11ErrorTrap& trap) {
    TBarePut bare(x11, form.NativeWindow(), {form.Width(), form.Height()}, area, trap);
    if (!bare.Valid()) {
        std::fprintf(stderr, "bench_present: no shared-memory image for the bare peer\n");
        return;
    }
    TPixelBuffer scratch(form.Width(), form.Height());
    TPaintFloor floor(form, area);
    const TMedians m = Measure(
        [&] {
            invalidate();
            Application().ProcessMessages();
            x11.Sync();
        },
        [&] { bare(); },
        [&] {
            form.PaintTree(scratch, {0, 0}, area);
        },
        [&] { floor(); });
    Report(scene, m);
}

void ControlScene(TX11Backend& x11, TX11ErrorTrap& trap) {
    TForm form(nullptr);
    form.SetBounds(0, 0, 600, 400);
    auto* control = new TBandsControl(&form);
    control->SetBounds(100, 50, 400, 300);
    control->SetParent(&form);
    ShowAndSettle(form, x11);
    Run(
        "control 400x300", form, control->BoundsRect(), [&] { control->Invalidate(); }, x11, trap);
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
    Run(
        "form 1024x768", form, form.ClientRect(),
        [&] { form.InvalidateFormRect(form.ClientRect()); }, x11, trap);
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
