#include "TestComponents.h"

#include "platform/core/ClassRegistry.h"

#include <algorithm>

namespace qv {

const TTypeInfo& ShadeType() {
    static const TTypeInfo info = [] {
        TTypeInfo t = TTypeInfo::Integer("TShade", INT32_MIN, INT32_MAX);
        t.intToIdent = [](std::int64_t v) -> std::optional<std::string> {
            if (v == 0) return "shDark";
            if (v == 0xFFFFFF) return "shLight";
            return std::nullopt;
        };
        t.identToInt = [](const std::string& s) -> std::optional<std::int64_t> {
            if (s == "shDark") return 0;
            if (s == "shLight") return 0xFFFFFF;
            return std::nullopt;
        };
        return t;
    }();
    return info;
}

const TTypeInfo& PercentType() {
    static const TTypeInfo info = TTypeInfo::Integer("TPercent", 1, 100);
    return info;
}

const TTypeInfo& ShortLabelType() {
    static const TTypeInfo info = TTypeInfo::String("TShortLabel", 8);
    return info;
}

const TClassInfo& TTestFont::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TTestFont>("TTestFont", &TPersistent::StaticClassInfo())
            .Property("Name", &TTestFont::Name, &TTestFont::SetName)
            .Stored([](const TTestFont& f) { return f.Name() != "Sans"; })
            .Property("Size", &TTestFont::Size, &TTestFont::SetSize)
            .Default(8)
            .Build();
    return info;
}

void TTestFont::Assign(const TPersistent& Source) {
    if (const auto* f = dynamic_cast<const TTestFont*>(&Source)) {
        m_name = f->m_name;
        m_size = f->m_size;
        return;
    }
    TPersistent::Assign(Source);
}

const TClassInfo& TTestWidget::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TTestWidget>("TTestWidget", &TComponent::StaticClassInfo())
            .Property("Count", &TTestWidget::Count, &TTestWidget::SetCount)
            .Default(0)
            .Property("Active", &TTestWidget::Active, &TTestWidget::SetActive)
            .Default(true)
            .Property("Style", &TTestWidget::Style, &TTestWidget::SetStyle)
            .Default(gsFlat)
            .Property("Options", &TTestWidget::Options, &TTestWidget::SetOptions)
            .Default(TGlowOptions{goBlink})
            .Property("Shade", ShadeType(), &TTestWidget::Shade, &TTestWidget::SetShade)
            .Default(0)
            .Property("Percent", PercentType(), &TTestWidget::Percent, &TTestWidget::SetPercent)
            .Default(50)
            .Property("Ratio", &TTestWidget::Ratio, &TTestWidget::SetRatio)
            .Property("Precise", &TTestWidget::Precise, &TTestWidget::SetPrecise)
            .Property("Caption", &TTestWidget::Caption, &TTestWidget::SetCaption)
            .Property("ShortLabel", ShortLabelType(), &TTestWidget::ShortLabel,
                      &TTestWidget::SetShortLabel)
            .Property("Status", &TTestWidget::Status, DiscardWrites)
            .Object("Font", &TTestWidget::Font)
            .Object("Lines", &TTestWidget::Lines)
            .Reference("Buddy", &TTestWidget::Buddy, &TTestWidget::SetBuddy)
            .Event("OnClick", &TTestWidget::OnClick)
            .Build();
    return info;
}

TTestWidget::TTestWidget(TComponent* AOwner) : TComponent(AOwner) {}

void TTestWidget::SetBuddy(TTestWidget* v) {
    m_buddy = v;
    if (v) v->FreeNotification(this);
}

void TTestWidget::Notification(TComponent* AComponent, TOperation Operation) {
    TComponent::Notification(AComponent, Operation);
    if (Operation == opRemove && AComponent == m_buddy) m_buddy = nullptr;
}

void TTestWidget::Loaded() {
    TComponent::Loaded();
    ++loadedCalls;
    if (!Owner()) return;
    for (int i = 0; i < Owner()->ComponentCount(); ++i)
        if (auto* w = dynamic_cast<TTestWidget*>(Owner()->Components(i)))
            seenAtLoaded.push_back(w->Name() + "=" + w->Caption());
}

const TClassInfo& TTestBox::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TTestBox>("TTestBox", &TTestWidget::StaticClassInfo()).Build();
    return info;
}

TTestBox::~TTestBox() {
    // Children go with their parent, as controls do.
    while (!m_children.empty())
        delete m_children.back();
    if (m_parent) std::erase(m_parent->m_children, this);
}

void TTestBox::SetParentComponent(TComponent* Value) {
    auto* box = dynamic_cast<TTestBox*>(Value);
    if (!box) throw EComponentError(ClassName() + " can only be placed in a TTestBox");
    m_parent = box;
    box->m_children.push_back(this);
}

void TTestBox::GetChildren(const std::function<void(TComponent*)>& Proc, TComponent* Root) const {
    TTestWidget::GetChildren(Proc, Root);
    for (TTestBox* child : m_children)
        if (child->Owner() == Root) Proc(child);
}

void RegisterTestComponents() {
    RegisterClass(TTestWidget::StaticClassInfo());
    RegisterClass(TTestBox::StaticClassInfo());
}

} // namespace qv
