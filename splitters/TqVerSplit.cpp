#include "TqVerSplit.h"

#include "componentbase/PaintFrame.h"
#include "platform/controls/ControlProperties.h"
#include "platform/controls/Messages.h"

#include <algorithm>
#include <cstdint>

namespace qv {

namespace {

// The published list of both containers, in order.
template <class C> TClassInfo SplitterClassInfo(const char* name, const TClassInfo* parent) {
    using D = TqVerSplit::Defaults;
    TClassBuilder<C> b(name, parent);
    b.Property("PassMouseOn", &C::PassMouseOn, &C::SetPassMouseOn).Default(D::PassMouseOn);
    b.Property("MoveOnChangeLeft", &C::MoveOnChangeLeft, &C::SetMoveOnChangeLeft)
        .Default(D::MoveOnChange);
    b.Property("MoveOnChangeRight", &C::MoveOnChangeRight, &C::SetMoveOnChangeRight)
        .Default(D::MoveOnChange);
    b.Property("SplitterStyle", BorderStyleType(), &C::SplitterStyle, &C::SetSplitterStyle)
        .Default(D::SplitterStyle);
    b.Property("SplitterWidth", &C::SplitterWidth, &C::SetSplitterWidth).Default(D::SplitterWidth);
    b.Property("SplitterInner", &C::SplitterInner, &C::SetSplitterInner).Default(D::SplitterInner);
    b.Property("SplitterOuter", &C::SplitterOuter, &C::SetSplitterOuter).Default(D::SplitterOuter);
    b.Property("Width", &C::Width, &C::SetWidth).Default(D::Size);
    b.Property("Height", &C::Height, &C::SetHeight).Default(D::Size);
    b.Property("WhereSplit", &C::WhereSplit, &C::SetWhere).Default(D::WhereSplit);
    b.Property("NewLook", &C::NewLook, &C::SetNewLook).Default(D::NewLook);
    PublishControlProperties(b, {"Align"});
    b.Property("Alignment", &C::Alignment, &C::SetAlignment).Default(taCenter);
    b.Property("BorderStyle", BorderStyleType(), &C::BorderStyle, &C::SetBorderStyle)
        .Default(bsNone);
    PublishControlProperties(b, {"DragCursor", "DragMode", "Enabled", "Caption"});
    b.Property("Color", ColorType(), &C::Color, &C::SetColor)
        .Default(clBtnFace)
        .Stored([](const C& c) { return !c.ParentColor(); });
    PublishControlProperties(b, {"Font"});
    b.Property("ParentColor", &C::ParentColor, &C::SetParentColor).Default(false);
    PublishControlProperties(b, {"ParentFont", "ParentShowHint", "PopupMenu", "ShowHint",
                                 "Visible"});
    b.Event("OnSplitChange", &C::OnSplitChange);
    b.Event("OnBeforeShow", &C::OnBeforeShow);
    PublishControlProperties(b, {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDrag",
                                 "OnEnter", "OnExit", "OnMouseDown", "OnMouseMove", "OnMouseUp",
                                 "OnResize"});
    return b.Build();
}

// Thickness rounded to an even number for the new look's two ridges.
int EvenThickness(int w) {
    if (w % 2 == 0) return w;
    return w < 7 ? w + 1 : w - 1;
}

} // namespace

const TClassInfo& TqVerSplit::StaticClassInfo() {
    static const TClassInfo info =
        SplitterClassInfo<TqVerSplit>("TqVerSplit", &TCustomPanel::StaticClassInfo());
    return info;
}

TqVerSplit::TqVerSplit(TComponent* AOwner) : TqVerSplit(AOwner, true) {}

TqVerSplit::TqVerSplit(TComponent* AOwner, bool vertical) : TCustomPanel(AOwner) {
    SetBevelInner(bvNone);
    SetBevelOuter(bvNone);
    SetBounds(Left(), Top(), Defaults::Size, Defaults::Size);
    m_bar = new TqSplit(*this, vertical);
    m_bar->SetParent(this);
    DoSize();
}

// Size.

void TqVerSplit::SetBounds(int ALeft, int ATop, int AWidth, int AHeight) {
    TCustomPanel::SetBounds(ALeft, ATop, std::max(AWidth, Defaults::MinSize),
                            std::max(AHeight, Defaults::MinSize));
}

void TqVerSplit::Resize() {
    TCustomPanel::Resize();
    DoSize();
}

void TqVerSplit::DoSize() {
    if (!m_bar) return; // resized while the bar is made
    if (Vertical())
        m_bar->SetBounds(m_bar->Left(), 0, m_bar->Width(), Height());
    else
        m_bar->SetBounds(0, m_bar->Top(), Width(), m_bar->Height());
}

// The split position.

int TqVerSplit::ClampedPosition(int value) const {
    return std::max(0, std::min(value, AxisSize() - GetSplitterWidth()));
}

void TqVerSplit::SetWhere(int value) {
    if (IsLoading()) {
        m_readWhereSplit = value;
        return;
    }
    if (value != m_whereSplit) {
        const int position = ClampedPosition(value);
        const int delta = position - m_whereSplit;
        m_bar->SetPosition(position);
        MovePanes(m_whereSplit, delta);
        m_whereSplit = position;
    }
    DoSplitChange();
}

// Children at or beyond the old position are the right (bottom) pane; the others the left
// (top) one. The container's own parts (the bar, the drag indicator) are not panes.
void TqVerSplit::MovePanes(int oldPosition, int delta) {
    if (delta == 0) return;
    for (int i = 0; i < ControlCount(); ++i) {
        TControl* c = Controls(i);
        if (c->Owner() == this) continue;
        const bool rightPane = (Vertical() ? c->Left() : c->Top()) >= oldPosition;
        if (!(rightPane ? m_moveRight : m_moveLeft)) continue;
        if (Vertical())
            c->SetLeft(c->Left() + delta);
        else
            c->SetTop(c->Top() + delta);
    }
}

void TqVerSplit::DoSplitChange() {
    if (OnSplitChange) OnSplitChange(this);
}

void TqVerSplit::GoMaximum() {
    SetWhere(AxisSize() - GetSplitterWidth());
}

void TqVerSplit::GoMinimum() {
    SetWhere(0);
}

void TqVerSplit::GoMedium() {
    SetWhere((AxisSize() - GetSplitterWidth()) / 2);
}

void TqVerSplit::SetLeftTop(TControl& control) const {
    if (Vertical())
        control.SetBounds(0, 0, m_whereSplit, Height());
    else
        control.SetBounds(0, 0, Width(), m_whereSplit);
}

void TqVerSplit::SetRightBottom(TControl& control) const {
    const int bar = GetSplitterWidth();
    if (Vertical())
        control.SetBounds(bar + m_whereSplit, 0, Width() - bar - m_whereSplit, Height());
    else
        control.SetBounds(0, bar + m_whereSplit, Width(), Height() - bar - m_whereSplit);
}

// The bar's thickness.

int TqVerSplit::ThicknessFor(int value) const {
    int w = std::max(value, TqSplit::Defaults::Thickness);
    if (m_newLook) w = EvenThickness(w);
    // Twice the thickness in 64 bits: the largest integer would wrap.
    return AxisSize() < 2 * static_cast<std::int64_t>(w) ? AxisSize() / 2 : w;
}

void TqVerSplit::SetSplitterWidth(int value) {
    if (IsLoading()) {
        m_readSplitterWidth = value;
        return;
    }
    if (value == GetSplitterWidth()) return;
    SetWhere(0);
    m_bar->SetThickness(ThicknessFor(value));
}

// Look.

void TqVerSplit::SetNewLook(bool value) {
    if (value == m_newLook) return;
    m_newLook = value;
    m_bar->ApplyLook(value);
    m_bar->SetThickness(EvenThickness(GetSplitterWidth()));
    m_bar->Invalidate();
}

// The bar's style and bevels leave the new look (the flag only; the look's setter is not run).
void TqVerSplit::SetSplitterStyle(TBorderStyle value) {
    m_newLook = false;
    m_bar->SetBorderStyle(value);
    m_bar->Invalidate();
}

void TqVerSplit::SetSplitterInner(TBevelCut value) {
    m_newLook = false;
    m_bar->SetBevelInner(value);
    m_bar->Invalidate();
}

void TqVerSplit::SetSplitterOuter(TBevelCut value) {
    m_newLook = false;
    m_bar->SetBevelOuter(value);
    m_bar->Invalidate();
}

// Reading: the thickness and the position settle against the size read before them; the
// children are where the file put them.
void TqVerSplit::Loaded() {
    TCustomPanel::Loaded();
    if (m_readSplitterWidth && *m_readSplitterWidth != GetSplitterWidth())
        m_bar->SetThickness(ThicknessFor(*m_readSplitterWidth));
    if (m_readWhereSplit) {
        m_whereSplit = ClampedPosition(*m_readWhereSplit);
        m_bar->SetPosition(m_whereSplit);
    }
    m_readSplitterWidth.reset();
    m_readWhereSplit.reset();
    if (OnBeforeShow) OnBeforeShow(this);
}

// Painting and the mouse.

void TqVerSplit::Paint() {
    TCanvas& canvas = Canvas();
    TRect rect = ClientRect();
    if (BorderStyle() == bsSingle) DrawClientEdge(canvas, rect);
    canvas.Brush().SetStyle(bsSolid);
    canvas.Brush().SetColor(Color());
    canvas.FillRect(rect);
    canvas.Brush().SetStyle(bsClear);
    canvas.Font().Assign(*Font());
    const int textHeight = canvas.TextHeight("W");
    rect.top = (rect.top + rect.bottom - textHeight) / 2;
    rect.bottom = rect.top + textHeight;
    canvas.DrawText(Caption(), rect, DT_EXPANDTABS | DT_VCENTER | AlignmentFlags(Alignment()));
    canvas.Brush().SetStyle(bsSolid);
    if (IsDesigning()) DrawDesignOutline(canvas, Width(), Height());
}

// With PassMouseOn a left press goes to the parent instead, in the parent's coordinates.
void TqVerSplit::WMLButtonDown(TMessage& Message) {
    if (!m_passMouseOn || !Parent()) {
        TCustomPanel::WMLButtonDown(Message);
        return;
    }
    const TPoint at{GET_X_LPARAM(Message.LParam) + Left(), GET_Y_LPARAM(Message.LParam) + Top()};
    Parent()->Perform(WM_LBUTTONDOWN, Message.WParam, MAKELPARAM(at.x, at.y));
}

} // namespace qv
