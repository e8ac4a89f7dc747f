#include "TqSplit.h"

#include "TqVerSplit.h"

#include "platform/core/ClassBuilder.h"

#include <algorithm>

namespace qv {

namespace {

// The drag indicator: a grey band over the panes. It is a control of its own, so moving or
// hiding it repaints what it uncovered and nothing is left behind.
class TSplitIndicator : public TCustomControl {
public:
    explicit TSplitIndicator(TComponent* owner) : TCustomControl(owner) {
        SetControlStyle(ControlStyle() + TControlStyle{csOpaque});
        SetVisible(false);
    }

protected:
    void Paint() override {
        TCanvas& canvas = Canvas();
        canvas.Brush().SetStyle(bsSolid);
        canvas.Brush().SetColor(clGray);
        canvas.FillRect(ClientRect());
    }
};

} // namespace

const TClassInfo& TqSplit::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TqSplit>("TqSplit", &TCustomPanel::StaticClassInfo()).Build();
    return info;
}

TqSplit::TqSplit(TqVerSplit& container, bool vertical)
    : TCustomPanel(&container), m_container(container), m_vertical(vertical) {
    SetCaption("");
    SetBorderStyle(Defaults::BorderStyle);
    SetBounds(0, 0, vertical ? Defaults::Thickness : container.Width(),
              vertical ? container.Height() : Defaults::Thickness);
    ApplyLook(false);
}

TqSplit::~TqSplit() = default;

void TqSplit::SetThickness(int value) {
    if (m_vertical)
        SetWidth(value);
    else
        SetHeight(value);
}

void TqSplit::SetPosition(int position) {
    if (m_vertical)
        SetLeft(position);
    else
        SetTop(position);
}

void TqSplit::ApplyLook(bool newLook) {
    if (newLook) {
        SetCursor(m_vertical ? crSizeWE : crSizeNS);
        SetBorderStyle(bsNone);
        SetBevelInner(bvNone);
        SetBevelOuter(bvNone);
    } else {
        SetCursor(m_vertical ? crHSplit : crVSplit);
        SetBorderStyle(bsSingle);
    }
}

// Painting.

void TqSplit::Paint() {
    if (m_container.NewLook())
        PaintNewLook(Canvas());
    else
        TCustomPanel::Paint();
}

// Two raised ridges side by side; each line leaves out its end point (LineTo).
void TqSplit::PaintNewLook(TCanvas& canvas) {
    const int w = Width();
    const int h = Height();
    canvas.Brush().SetStyle(bsSolid);
    canvas.Brush().SetColor(m_container.Color());
    canvas.FillRect(ClientRect());
    canvas.Pen().SetWidth(1);
    canvas.Pen().SetStyle(psSolid);
    const auto polyline = [&canvas](TColor color, std::initializer_list<TPoint> points) {
        canvas.Pen().SetColor(color);
        auto p = points.begin();
        canvas.MoveTo(p->x, p->y);
        for (++p; p != points.end(); ++p)
            canvas.LineTo(p->x, p->y);
    };
    if (m_vertical) {
        const int m = w / 2;
        polyline(clBtnHighlight, {{m - 1, 0}, {0, 0}, {0, h - 1}});
        polyline(clBtnHighlight, {{w - 1, 0}, {m, 0}, {m, h - 1}});
        polyline(clBtnShadow, {{m - 1, 0}, {m - 1, h - 1}, {0, h - 1}});
        polyline(clBtnShadow, {{w - 1, 0}, {w - 1, h - 1}, {m, h - 1}});
    } else {
        const int m = h / 2;
        polyline(clBtnHighlight, {{w - 1, 0}, {0, 0}, {0, m - 1}});
        polyline(clBtnHighlight, {{w - 1, m}, {0, m}, {0, h - 1}});
        polyline(clBtnShadow, {{w - 1, 0}, {w - 1, m - 1}, {0, m - 1}});
        polyline(clBtnShadow, {{w - 1, m}, {w - 1, h - 1}, {0, h - 1}});
    }
}

// Dragging.

void TqSplit::MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    TCustomPanel::MouseDown(Button, Shift, X, Y);
    if (Button != mbLeft) return;
    SetMouseCapture(true);
    m_dragRect = BoundsRect();
    m_dragging = true;
    m_startLeft = Left();
    m_startTop = Top();
    m_grab = {X, Y};
    m_last = m_grab;
    ShowIndicator(m_dragRect);
}

// Across the axis the pointer is pinned to the grab point; along it, it is limited to the
// range that keeps the bar inside the container when the grab point is taken as 0, so the
// indicator may overshoot an end by the grab offset.
TPoint TqSplit::ClampedPointer(int X, int Y) const {
    if (m_vertical) {
        const int high = m_container.Width() - Left() - Width();
        return {std::max(-Left(), std::min(X, high)), m_grab.y};
    }
    const int high = m_container.Height() - Top() - Height();
    return {m_grab.x, std::max(-Top(), std::min(Y, high))};
}

void TqSplit::MouseMove(TShiftState Shift, int X, int Y) {
    TCustomPanel::MouseMove(Shift, X, Y);
    if (!m_dragging) return;
    m_last = ClampedPointer(X, Y);
    m_dragRect = BoundsRect();
    OffsetRect(m_dragRect, m_last.x - m_grab.x, m_last.y - m_grab.y);
    ShowIndicator(m_dragRect);
}

void TqSplit::MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) {
    TCustomPanel::MouseUp(Button, Shift, X, Y);
    if (Button == mbLeft && m_dragging) EndDrag(X, Y);
}

// The release takes the unclamped pointer, then keeps the bar inside the container.
void TqSplit::EndDrag(int X, int Y) {
    SetMouseCapture(false);
    HideIndicator();
    const int left = m_startLeft + X - m_grab.x;
    const int top = m_startTop + Y - m_grab.y;
    if (m_vertical && left != m_startLeft) SetLeft(left);
    if (!m_vertical && top != m_startTop) SetTop(top);
    const int maxLeft = m_container.Width() - Width();
    const int maxTop = m_container.Height() - Height();
    SetBounds(std::max(0, std::min(Left(), maxLeft)), std::max(0, std::min(Top(), maxTop)),
              Width(), Height());
    m_dragging = false;
    const int moved = m_vertical ? Left() - m_startLeft : Top() - m_startTop;
    m_container.SetWhere(m_container.WhereSplit() + moved);
}

void TqSplit::ShowIndicator(const TRect& rect) {
    if (!m_indicator) {
        m_indicator = new TSplitIndicator(&m_container);
        m_indicator->SetParent(&m_container);
    }
    m_indicator->SetBoundsRect(rect);
    m_indicator->BringToFront();
    m_indicator->SetVisible(true);
}

void TqSplit::HideIndicator() {
    if (m_indicator) m_indicator->SetVisible(false);
}

} // namespace qv
