#include "indicators/TqSegmentLabel.h"

#include "platform/controls/ControlProperties.h"

namespace qv {

const TClassInfo& TqSegmentLabel::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqSegmentLabel> b("TqSegmentLabel", &TqCustomSegmentLabel::StaticClassInfo());
        PublishControlProperties(
            b, {"OnMouseDown", "OnMouseUp", "OnMouseMove", "OnClick", "OnDblClick"});
        b.Property("Caption", &TqSegmentLabel::Caption, &TqSegmentLabel::SetCaption);
        b.Property("Color", ColorType(), &TqSegmentLabel::Color, &TqSegmentLabel::SetColor)
            .Default(TSegmentDefaults::Color);
        PublishControlProperties(b, {"Cursor", "Hint"});
        b.Property("LitColor", ColorType(), &TqSegmentLabel::LitColor, &TqSegmentLabel::SetLitColor)
            .Default(TSegmentDefaults::LitColor);
        b.Property("NumberOfChars", &TqSegmentLabel::NumberOfChars,
                   &TqSegmentLabel::SetNumberOfChars)
            .Default(DefaultNumberOfChars);
        b.Property("ParentColor", &TqSegmentLabel::ParentColor, &TqSegmentLabel::SetParentColor)
            .Default(false);
        PublishControlProperties(b, {"ParentShowHint", "ShowHint"});
        b.Property("Size", QSegSizeType(), &TqSegmentLabel::Size, &TqSegmentLabel::SetSize)
            .Default(TSegmentDefaults::Size);
        b.Property("Visible", &TqSegmentLabel::Visible, &TqSegmentLabel::SetVisible).Default(true);
        b.Property("UnLitColor", ColorType(), &TqSegmentLabel::UnLitColor,
                   &TqSegmentLabel::SetUnLitColor)
            .Default(TSegmentDefaults::UnLitColor);
        return b.Build();
    }();
    return info;
}

TqSegmentLabel::TqSegmentLabel(TComponent* AOwner) : TqCustomSegmentLabel(AOwner) {
    SetNumberOfChars(DefaultNumberOfChars);
    if (IsDesigning()) SetCaption("QuelvarSoft");
    DoCaption();
}

} // namespace qv
