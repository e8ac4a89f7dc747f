#include "instruments/TqxCreditScroll.h"

#include "platform/controls/ControlProperties.h"
#include "platform/graphics/Text.h"

#include <algorithm>

namespace qv {

namespace {
// Offsets further off than this put the text outside any surface.
constexpr std::int64_t kFarOffset = std::int64_t{1} << 30;
} // namespace

const TClassInfo& TqxCreditScroll::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqxCreditScroll> b("TqxCreditScroll", &TCustomPanel::StaticClassInfo());
        b.Property("Priority", &TqxCreditScroll::GetPriority, &TqxCreditScroll::Setpriority)
            .Default(TqxTimer::Defaults::Priority);
        PublishControlProperties(b, {"DragMode", "DragCursor"});
        b.Object("Lines", &TqxCreditScroll::Lines);
        b.Property("Interval", &TqxCreditScroll::GetInterval, &TqxCreditScroll::SetInterval)
            .Default(Defaults::Interval);
        b.Event("OnPaint", &TqxCreditScroll::OnPaint);
        b.Property("Step", &TqxCreditScroll::Step, &TqxCreditScroll::SetStep)
            .Default(Defaults::Step);
        b.Property("Alignment", &TqxCreditScroll::Alignment, &TqxCreditScroll::SetAlignment)
            .Default(Defaults::Alignment);
        PublishControlProperties(b, {"Color"});
        b.Default(Defaults::Color);
        PublishControlProperties(b, {"Width"});
        b.Default(Defaults::Width);
        PublishControlProperties(b, {"Height"});
        b.Default(Defaults::Height);
        PublishControlProperties(b, {"Align", "Cursor", "Enabled", "Font", "Hint", "Left"});
        b.Property("ParentColor", &TqxCreditScroll::ParentColor, &TqxCreditScroll::SetParentColor)
            .Default(Defaults::ParentColor);
        // The font is the scroll's own (magenta), so ParentFont starts False.
        b.Property("ParentFont", &TqxCreditScroll::ParentFont, &TqxCreditScroll::SetParentFont)
            .Default(false);
        PublishControlProperties(b, {"ParentShowHint", "PopupMenu", "ShowHint", "Top", "Visible"});
        b.Event("OnMouseEnter", &TqxCreditScroll::OnMouseEnter);
        b.Event("OnMouseLeave", &TqxCreditScroll::OnMouseLeave);
        PublishControlProperties(b, {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver",
                                     "OnEndDrag", "OnMouseDown", "OnMouseMove", "OnMouseUp",
                                     "OnResize", "OnStartDrag"});
        return b.Build();
    }();
    return info;
}

TqxCreditScroll::TqxCreditScroll(TComponent* AOwner)
    : TEnterLeaveEvents<TCustomPanel>(AOwner),
      m_lines(std::make_unique<TStringList>(
          std::initializer_list<std::string>{"QuelvarCollection", "By", "QuelvarSoft"})) {
    SetControlStyle(ControlStyle() + TControlStyle{csOpaque});
    SetParentColor(Defaults::ParentColor);
    SetColor(Defaults::Color);
    SetAlignment(Defaults::Alignment);
    Font()->SetColor(Defaults::FontColor);
    SetBounds(Left(), Top(), Defaults::Width, Defaults::Height);
    m_lines->OnChange = [this](TObject* sender) { DoChange(sender); };
    m_timer = new TqxTimer(this);
    m_timer->SetInterval(static_cast<unsigned>(Defaults::Interval));
    m_timer->SetOnTimer([this](TObject* sender) { DoTimer(sender); });
}

TqxCreditScroll::~TqxCreditScroll() {
    delete m_timer;
    m_timer = nullptr;
}

void TqxCreditScroll::SetInterval(int value) {
    m_interval = value;
    m_timer->SetInterval(static_cast<unsigned>(std::max(value, 0)));
}

void TqxCreditScroll::SetStep(int value) {
    if (value < 1 || value == m_step) return;
    m_step = value;
    Invalidate();
}

void TqxCreditScroll::Reset() {
    m_offset = 0;
    Invalidate();
}

void TqxCreditScroll::DoChange(TObject*) {
    Invalidate();
}

void TqxCreditScroll::DoTimer(TObject*) {
    if (!Showing()) return;
    m_offset = std::min(m_offset + m_step, kFarOffset + m_step);
    Invalidate();
}

// The text is drawn into Rect(0, Height - offset, Width - 1, Height - 1): it starts below the
// bottom edge and rises; once it has left the top the offset starts again at 0.
void TqxCreditScroll::Paint() {
    m_frame.Paint(
        *this, Canvas(), TFrameBackground::Flat(Color()),
        [&](TCanvas& canvas) {
            canvas.Brush().SetStyle(bsClear);
            canvas.SetFont(*Font());
            const std::int64_t textHeight = canvas.TextHeight("0");
            if (textHeight * m_lines->Count() + Height() < m_offset) m_offset = 0;
            const std::int64_t top = std::max<std::int64_t>(Height() - m_offset, -kFarOffset);
            TRect rect{0, static_cast<int>(top), Width() - 1, Height() - 1};
            canvas.DrawText(m_lines->Text(), rect, AlignmentFlags(Alignment()) | DT_EXPANDTABS);
        },
        OnPaint);
}

} // namespace qv
