#include "indicators/TqSegmentClock.h"

#include "platform/controls/ControlProperties.h"
#include "platform/core/DateTime.h"

namespace qv {

namespace {
// How often the timer looks at the clock; the display needs at least one look a second.
constexpr unsigned kClockPollMs = 200;
} // namespace

const TClassInfo& TqSegmentClock::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqSegmentClock> b("TqSegmentClock", &TqCustomSegmentLabel::StaticClassInfo());
        b.Property("Priority", &TqSegmentClock::Priority, &TqSegmentClock::SetPriority)
            .Default(TqxTimer::Defaults::Priority);
        b.Property("OffSetTime", &TqSegmentClock::OffSetTime, &TqSegmentClock::SetOffSetTime)
            .Default(Defaults::OffSetTime);
        b.Property("Format", &TqSegmentClock::ClockFormat, &TqSegmentClock::SetClockFormat)
            .Default(Defaults::Format);
        b.Property("Color", ColorType(), &TqSegmentClock::Color, &TqSegmentClock::SetColor)
            .Default(TSegmentDefaults::Color);
        PublishControlProperties(b, {"Cursor", "Hint"});
        b.Property("ShowSeconds", &TqSegmentClock::ShowSeconds, &TqSegmentClock::SetShowSeconds)
            .Default(Defaults::ShowSeconds);
        PublishControlProperties(
            b, {"OnMouseDown", "OnMouseUp", "OnMouseMove", "OnClick", "OnDblClick"});
        b.Event("OnTimeChange", &TqSegmentClock::OnTimeChange);
        PublishControlProperties(b, {"ShowHint", "ParentShowHint"});
        b.Property("Visible", &TqSegmentClock::Visible, &TqSegmentClock::SetVisible).Default(true);
        b.Property("ParentColor", &TqSegmentClock::ParentColor, &TqSegmentClock::SetParentColor)
            .Default(false);
        b.Property("LitColor", ColorType(), &TqSegmentClock::LitColor, &TqSegmentClock::SetLitColor)
            .Default(TSegmentDefaults::LitColor);
        b.Property("UnLitColor", ColorType(), &TqSegmentClock::UnLitColor,
                   &TqSegmentClock::SetUnLitColor)
            .Default(TSegmentDefaults::UnLitColor);
        b.Property("Size", QSegSizeType(), &TqSegmentClock::Size, &TqSegmentClock::SetSize)
            .Default(TSegmentDefaults::Size);
        return b.Build();
    }();
    return info;
}

TqSegmentClock::TqSegmentClock(TComponent* AOwner) : TqCustomSegmentLabel(AOwner) {
    SetnChar();
    Setnow();
    m_timer = new TqxTimer(this);
    m_timer->SetInterval(kClockPollMs);
    m_timer->SetOnTimer([this](TObject* sender) { TimerNu(sender); });
}

TqSegmentClock::~TqSegmentClock() {
    delete m_timer;
    m_timer = nullptr;
}

void TqSegmentClock::DoChange() {
    if (OnTimeChange) OnTimeChange(this);
}

TDateTime TqSegmentClock::ShownTime() const {
    return Now() + m_offSetTime / 1440.0;
}

std::string TqSegmentClock::FormatText() const {
    static constexpr const char* suffixes[] = {" a/p", " am/pm", " a/p", "am/pm", "a/p", ""};
    return std::string("hh:nn") + (m_showSeconds ? ":ss" : "") + suffixes[m_format];
}

int TqSegmentClock::CellCount() const {
    static constexpr int extra[] = {0, 3, 2, 2, 1, 0};
    return 4 + (m_showSeconds ? 2 : 0) + extra[m_format];
}

void TqSegmentClock::Setnow() {
    const TDateTime shown = ShownTime();
    const TTimeParts parts = DecodeTime(shown);
    m_minute = parts.minute;
    m_second = parts.second;
    SetCaption(FormatDateTime(FormatText(), shown));
    DoChange();
}

void TqSegmentClock::SetnChar() {
    SetNumberOfChars(static_cast<std::uint8_t>(CellCount()));
    Setnow();
}

bool TqSegmentClock::IsNew() {
    const TTimeParts parts = DecodeTime(ShownTime());
    return m_showSeconds ? parts.second != m_second : parts.minute != m_minute;
}

void TqSegmentClock::TimerNu(TObject*) {
    if (IsNew()) Setnow();
}

void TqSegmentClock::SetOffSetTime(std::int16_t value) {
    if (value == m_offSetTime) return;
    m_offSetTime = value;
    m_minute = 0;
    m_second = 0;
    IsNew();
    Setnow();
}

void TqSegmentClock::SetClockFormat(qxClockFormat value) {
    if (value == m_format) return;
    m_format = value;
    SetnChar();
}

void TqSegmentClock::SetShowSeconds(bool value) {
    if (value == m_showSeconds) return;
    m_showSeconds = value;
    SetnChar();
}

} // namespace qv
