#include "TqMinMax.h"

#include "platform/controls/Application.h"
#include "platform/core/ClassBuilder.h"
#include "utility/FormHelpers.h"

#include <algorithm>

namespace qv {

const TClassInfo& TqMinMax::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TqMinMax>("TqMinMax", &TComponent::StaticClassInfo())
            .Property("ShowOnStatusBar", &TqMinMax::ShowOnStatusBar, &TqMinMax::SetShowOnStatusBar)
            .Default(Defaults::ShowOnStatusBar)
            .Property("AutoTaskBarAjust", &TqMinMax::AutoTaskBarAjust,
                      &TqMinMax::SetAutoTaskBarAjust)
            .Default(Defaults::AutoTaskBarAjust)
            .Property("UseDefaultSize", &TqMinMax::UseDefaultSize, &TqMinMax::SetUseDefaultSize)
            .Default(Defaults::UseDefaultSize)
            .Event("OnSizeChange", &TqMinMax::OnSizeChange)
            .Property("MaxLeft", &TqMinMax::MaxLeft, &TqMinMax::SetMaxLeft)
            .Default(Defaults::MaxLeft)
            .Property("MaxTop", &TqMinMax::MaxTop, &TqMinMax::SetMaxTop)
            .Default(Defaults::MaxTop)
            .Property("MaxWidth", &TqMinMax::MaxWidth, &TqMinMax::SetMaxWidth)
            .Default(Defaults::MaxWidth)
            .Property("MaxHeight", &TqMinMax::MaxHeight, &TqMinMax::SetMaxHeight)
            .Default(Defaults::MaxHeight)
            .Property("MaxDragWidth", &TqMinMax::MaxDragWidth, &TqMinMax::SetMaxDragWidth)
            .Default(Defaults::MaxDragWidth)
            .Property("MaxDragHeight", &TqMinMax::MaxDragHeight, &TqMinMax::SetMaxDragHeight)
            .Default(Defaults::MaxDragHeight)
            .Property("MinDragWidth", &TqMinMax::MinDragWidth, &TqMinMax::SetMinDragWidth)
            .Default(Defaults::MinDragWidth)
            .Property("MinDragHeight", &TqMinMax::MinDragHeight, &TqMinMax::SetMinDragHeight)
            .Default(Defaults::MinDragHeight)
            .Build();
    return info;
}

TqMinMax::TqMinMax(TComponent* AOwner) : TComponent(AOwner) {
    TqMinMax::SizeStep();
}

// The hook goes first, so that the form asks its own limits again without this component.
TqMinMax::~TqMinMax() {
    if (!Hooked()) return;
    m_hook.Remove();
    if (m_form && !m_form->IsDestroying()) m_form->UpdateSizeLimits();
}

TCustomForm* TqMinMax::OwningForm() const {
    if (m_form) return m_form;
    try {
        return &FindForm(*this);
    } catch (const EComponentError&) {
        return nullptr;
    }
}

void TqMinMax::SetLimit(int& field, int value) {
    field = value;
    LimitsChanged();
}

void TqMinMax::SetUseDefaultSize(bool value) {
    m_useDefaultSize = value;
    LimitsChanged();
}

void TqMinMax::LimitsChanged() {
    if (IsLoading()) return; // Loaded runs the size step once every limit is read
    SizeStep();
    if (TCustomForm* form = OwningForm()) form->UpdateSizeLimits();
}

void TqMinMax::SetAutoTaskBarAjust(bool value) {
    m_autoTaskBar = value;
    TCustomForm* form = OwningForm();
    if (!form) return;
    if (form->WindowState() == wsMaximized) {
        // Restored and maximised again, so that the new limits apply at once.
        form->SetWindowState(wsNormal);
        form->SetWindowState(wsMaximized);
    }
    form->UpdateSizeLimits();
}

void TqMinMax::SetShowOnStatusBar(bool value) {
    m_showOnStatusBar = value;
    if (IsDesigning()) return;
    if (TCustomForm* form = OwningForm()) form->SetSkipTaskbar(!value);
}

void TqMinMax::SizeStep() {
    if (m_useDefaultSize) return;
    TLimits& l = m_limits;
    if (l.maxWidth < l.minDragWidth) l.maxWidth = l.minDragWidth;
    if (l.maxHeight < l.minDragHeight) l.maxHeight = l.minDragHeight;
    if (l.maxDragWidth < l.maxWidth) l.maxDragWidth = l.maxWidth;
    if (l.maxDragHeight < l.maxHeight) l.maxDragHeight = l.maxHeight;
    // A form being read is clamped once it is read (Loaded), not by values half read.
    if (TCustomForm* form = OwningForm(); form && !form->IsLoading()) ClampForm(*form);
}

void TqMinMax::ClampForm(TCustomForm& form) const {
    const TLimits& l = m_limits;
    int left = form.Left(), top = form.Top(), width = form.Width(), height = form.Height();
    if (form.WindowState() != wsMaximized) {
        width = std::min(width, l.maxDragWidth);
        height = std::min(height, l.maxDragHeight);
    } else {
        left = l.maxLeft;
        top = l.maxTop;
        width = std::min(width, l.maxWidth);
        height = std::min(height, l.maxHeight);
    }
    // The minimum raises the form at most to the screen's size: a frame buffer for a huge
    // minimum could not be made.
    const TRect screen = Application().Backend().ScreenBounds();
    width = std::max(width, std::min(l.minDragWidth, screen.Width()));
    height = std::max(height, std::min(l.minDragHeight, screen.Height()));
    if (left != form.Left() || top != form.Top() || width != form.Width() ||
        height != form.Height())
        form.SetBounds(left, top, width, height);
}

void TqMinMax::Loaded() {
    TComponent::Loaded();
    SizeStep();
    if (IsDesigning() || Hooked()) return;
    m_form = OwningForm();
    if (!m_form) return;
    m_hook = TWindowHook(m_form->Handle(), [this](TMessage& Message, const TWndMethod& Previous) {
        WindowProc(Message, Previous);
    });
    m_form->UpdateSizeLimits();
}

// The previous procedure answers first; this component's limits then replace its answer.
void TqMinMax::WindowProc(TMessage& Message, const TWndMethod& Previous) {
    Previous(Message);
    if (Message.Msg != WM_GETMINMAXINFO || Message.LParam == 0) return;
    AnswerMinMaxInfo(*reinterpret_cast<TMinMaxInfo*>(Message.LParam));
}

void TqMinMax::AnswerMinMaxInfo(TMinMaxInfo& info) {
    if (m_useDefaultSize) {
        m_limits = {info.ptMinTrackSize.x, info.ptMinTrackSize.y, info.ptMaxSize.x,
                    info.ptMaxSize.y,      info.ptMaxTrackSize.x, info.ptMaxTrackSize.y,
                    info.ptMaxPosition.x,  info.ptMaxPosition.y};
    }
    TBackend& backend = Application().Backend();
    TLimits w = AdjustedLimits(backend.ScreenBounds(), backend.WorkArea());
    if (OnSizeChange)
        OnSizeChange(this, w.minDragWidth, w.minDragHeight, w.maxWidth, w.maxHeight, w.maxDragWidth,
                     w.maxDragHeight, w.maxLeft, w.maxTop);
    info.ptMaxSize = {w.maxWidth, w.maxHeight};
    info.ptMaxPosition = {w.maxLeft, w.maxTop};
    info.ptMaxTrackSize = {w.maxDragWidth, w.maxDragHeight};
    info.ptMinTrackSize = {w.minDragWidth, w.minDragHeight};
}

namespace {

// The taskbar: the strip of the screen outside the work area, looked for at the bottom, the
// top, the left and the right. Empty when the work area is the whole screen.
TRect TaskbarRect(const TRect& screen, const TRect& work) {
    if (work.bottom < screen.bottom) return {screen.left, work.bottom, screen.right, screen.bottom};
    if (work.top > screen.top) return {screen.left, screen.top, screen.right, work.top};
    if (work.left > screen.left) return {screen.left, screen.top, work.left, screen.bottom};
    if (work.right < screen.right) return {work.right, screen.top, screen.right, screen.bottom};
    return {};
}

} // namespace

// The classic arithmetic on a screen one pixel larger each way; the maximised size itself is
// left alone.
TqMinMax::TLimits TqMinMax::AdjustedLimits(const TRect& screen, const TRect& work) const {
    TLimits w = m_limits;
    if (!m_autoTaskBar) return w;
    const TRect r = TaskbarRect(screen, work);
    if (r.IsEmpty()) return w;
    const int sw = screen.Width() + 1;
    const int sh = screen.Height() + 1;
    w.maxLeft = 0;
    w.maxTop = 0;
    w.maxDragWidth = sw - 1;
    w.maxDragHeight = sh - 1;
    if (r.left >= 2) { // at the right
        w.maxDragWidth = sw - (r.right - r.left - 1);
    } else if (r.top < 2) {
        if (sw - 2 > r.right) { // at the left
            w.maxLeft = r.right;
            w.maxDragWidth = sw - r.right;
        } else { // at the top
            w.maxTop = r.bottom;
            w.maxDragHeight = sh - r.bottom;
        }
    } else { // at the bottom
        w.maxDragHeight = sh - (r.bottom - r.top - 1);
    }
    return w;
}

} // namespace qv
