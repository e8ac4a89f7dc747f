#include "GalleryControls.h"

#include "GalleryLayout.h"

#include "platform/controls/Messages.h"
#include "platform/graphics/Canvas.h"
#include "platform/graphics/Text.h"

#include <algorithm>

namespace qv::gallery {

namespace {

constexpr int textMargin = 6;

void PrepareText(TCanvas& canvas, const TFont& font, TColor color) {
    canvas.Font().Assign(font);
    canvas.Font().SetColor(color);
    canvas.Brush().SetStyle(bsClear);
}

void FillBackground(TCanvas& canvas, const TRect& r, TColor color) {
    canvas.Brush().SetStyle(bsSolid);
    canvas.Brush().SetColor(color);
    canvas.FillRect(r);
}

} // namespace

// TPageList

TPageList::TPageList(TComponent* owner) : TCustomControl(owner) {
    SetTabStop(true);
    SetColor(clWindow);
    SetParentColor(false);
}

void TPageList::SetPages(std::vector<std::string> pages) {
    m_pages = std::move(pages);
    m_selected =
        m_pages.empty() ? -1 : std::clamp(m_selected, 0, static_cast<int>(m_pages.size()) - 1);
    Invalidate();
}

void TPageList::SetSelected(int index) {
    if (index < 0 || index >= static_cast<int>(m_pages.size()) || index == m_selected) return;
    m_selected = index;
    Invalidate();
    if (OnSelect) OnSelect(index);
}

void TPageList::Paint() {
    TCanvas& canvas = Canvas();
    FillBackground(canvas, ClientRect(), Color());
    for (int i = 0; i < static_cast<int>(m_pages.size()); ++i) {
        TRect item = Bounds(0, i * ItemHeight, Width(), ItemHeight);
        const bool selected = i == m_selected;
        if (selected) FillBackground(canvas, item, clHighlight);
        PrepareText(canvas, *Font(), selected ? clHighlightText : clWindowText);
        item.left += textMargin;
        canvas.DrawText(m_pages[static_cast<std::size_t>(i)], item,
                        DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    }
    if (Focused() && m_selected >= 0)
        canvas.DrawFocusRect(Bounds(0, m_selected * ItemHeight, Width(), ItemHeight));
}

void TPageList::MouseDown(TMouseButtonKind button, TShiftState shift, int x, int y) {
    TCustomControl::MouseDown(button, shift, x, y);
    if (CanFocus()) SetFocus();
    if (button == mbLeft) SetSelected(y / ItemHeight);
}

void TPageList::KeyDown(unsigned& key, TShiftState shift) {
    TCustomControl::KeyDown(key, shift);
    if (key == VK_DOWN)
        SetSelected(m_selected + 1);
    else if (key == VK_UP)
        SetSelected(m_selected - 1);
    else if (key == VK_HOME)
        SetSelected(0);
    else if (key == VK_END)
        SetSelected(static_cast<int>(m_pages.size()) - 1);
}

void TPageList::WMGetDlgCode(TMessage& message) {
    message.Result = DLGC_WANTARROWS;
}

// TComponentCell

TComponentCell::TComponentCell(TComponent* owner, TComponent& shown, const TShowcase* showcase)
    : TCustomControl(owner), m_shown(shown), m_showcase(showcase) {
    AcceptDoubleClicks(*this);
}

std::string TComponentCell::PictureName() const {
    std::string name = m_shown.ClassName();
    if (m_showcase && !m_showcase->look.empty()) name.append(1, '-').append(m_showcase->look);
    return name;
}

void TComponentCell::Pressed(TShiftState shift) {
    if (OnSelect) OnSelect(*this);
    if (shift.Contains(ssDouble) && OnOpen) OnOpen(*this);
}

void TComponentCell::SetHighlighted(bool on) {
    if (on == m_highlighted) return;
    m_highlighted = on;
    Invalidate();
}

void TComponentCell::Paint() {
    TCanvas& canvas = Canvas();
    const int labelHeight = TGridMetrics{}.labelHeight;
    FillBackground(canvas, ClientRect(), Color());
    TRect label = Rect(0, Height() - labelHeight, Width(), Height());
    if (m_highlighted) FillBackground(canvas, label, clHighlight);
    PrepareText(canvas, *Font(), m_highlighted ? clHighlightText : clWindowText);
    canvas.DrawText(m_shown.ClassName(), label,
                    DT_SINGLELINE | DT_CENTER | DT_VCENTER | DT_NOPREFIX);
}

void TComponentCell::MouseDown(TMouseButtonKind button, TShiftState shift, int x, int y) {
    TCustomControl::MouseDown(button, shift, x, y);
    Pressed(shift);
}

// TNonVisualView

TNonVisualView::TNonVisualView(TComponent* owner, TComponent& shown)
    : TCustomControl(owner), m_shown(shown) {
    SetBounds(0, 0, DefaultSize.cx, DefaultSize.cy);
    SetColor(clWindow);
    SetParentColor(false);
}

void TNonVisualView::Paint() {
    TCanvas& canvas = Canvas();
    FillBackground(canvas, ClientRect(), Color());
    canvas.Brush().SetColor(clBtnShadow);
    canvas.FrameRect(ClientRect());
    PrepareText(canvas, *Font(), clWindowText);
    const int lineHeight = std::max(canvas.TextHeight("Ag"), 1);
    const auto line = [&](int y, const std::string& text) {
        canvas.TextRect(Rect(3, y, Width() - 3, y + lineHeight), 4, y, text);
    };
    line(3, m_shown.Name().empty() ? m_shown.ClassName() : m_shown.Name());
    int y = LinesTop(lineHeight);
    for (const std::string& text : Lines()) {
        line(y, text);
        y += lineHeight;
    }
}

int TNonVisualView::LinesTop(int lineHeight) const {
    return 3 + lineHeight;
}

std::vector<std::string> TNonVisualView::Lines() const {
    std::vector<std::string> lines;
    for (const std::string& text : PropertyLines(m_shown)) {
        if (lines.size() == ValueLines) break;
        if (text.starts_with("Name =") || text.starts_with("Tag =")) continue;
        lines.push_back(text);
    }
    return lines;
}

void AcceptDoubleClicks(TControl& control) {
    TControlStyle style = control.ControlStyle();
    style.Include(csDoubleClicks);
    control.SetControlStyle(style);
}

// TLargeView

TLargeView::TLargeView(TComponent* owner) : TCustomControl(owner) {
    SetTabStop(true);
    SetVisible(false);
}

void TLargeView::Open(TControl& component) {
    if (m_shown != &component) delete m_shown; // closed earlier, so nothing of it is running
    m_shown = &component;
    component.SetParent(this);
    component.SetBounds(std::max((Width() - component.Width()) / 2, 0),
                        std::max((Height() - component.Height()) / 2, 0), component.Width(),
                        component.Height());
    component.OnMouseDown = [this](TObject*, TMouseButtonKind, TShiftState, int, int) { Close(); };
    SetVisible(true);
    BringToFront();
    if (CanFocus()) SetFocus();
}

// Only hides: the component may be the one whose press asked for it.
void TLargeView::Close() {
    SetVisible(false);
}

void TLargeView::Paint() {
    TCanvas& canvas = Canvas();
    FillBackground(canvas, ClientRect(), Color());
    PrepareText(canvas, *Font(), clWindowText);
    TRect caption = Rect(0, Height() - TGridMetrics{}.labelHeight, Width(), Height());
    canvas.DrawText("Four times the default size: a click or Escape closes", caption,
                    DT_SINGLELINE | DT_CENTER | DT_VCENTER | DT_NOPREFIX);
}

void TLargeView::MouseDown(TMouseButtonKind button, TShiftState shift, int x, int y) {
    TCustomControl::MouseDown(button, shift, x, y);
    Close();
}

void TLargeView::KeyDown(unsigned& key, TShiftState shift) {
    TCustomControl::KeyDown(key, shift);
    if (key == VK_ESCAPE) Close();
}

void TLargeView::WMGetDlgCode(TMessage& message) {
    message.Result = DLGC_WANTALLKEYS;
}

// TPropertyView

TPropertyView::TPropertyView(TComponent* owner) : TCustomControl(owner) {
    SetColor(clWindow);
    SetParentColor(false);
}

void TPropertyView::Show(const TComponent* object) {
    m_title = object ? object->Name() + ": " + object->ClassName() : std::string();
    std::vector<std::string> lines = object ? PropertyLines(*object) : std::vector<std::string>{};
    if (lines == m_lines && object) return; // nothing changed: no repaint
    m_lines = std::move(lines);
    Invalidate();
}

void TPropertyView::Paint() {
    TCanvas& canvas = Canvas();
    FillBackground(canvas, ClientRect(), Color());
    PrepareText(canvas, *Font(), clWindowText);
    const int lineHeight = std::max(canvas.TextHeight("Ag") + 1, 1);
    int y = textMargin;
    canvas.Font().SetStyle(TFontStyles{fsBold});
    canvas.TextRect(Rect(0, y, Width(), y + lineHeight), textMargin, y, m_title);
    canvas.Font().SetStyle(TFontStyles{});
    y += lineHeight + 4;
    for (const std::string& text : m_lines) {
        if (y >= Height()) break;
        canvas.TextRect(Rect(0, y, Width(), y + lineHeight), textMargin, y, text);
        y += lineHeight;
    }
}

} // namespace qv::gallery
