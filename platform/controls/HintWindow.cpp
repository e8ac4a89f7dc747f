#include "HintWindow.h"

#include "Application.h"

#include "platform/core/ClassBuilder.h"

#include <algorithm>

namespace qv {

namespace {
constexpr unsigned HintTextFlags = DT_LEFT | DT_NOPREFIX | DT_WORDBREAK;
} // namespace

std::string GetShortHint(const std::string& hint) {
    return hint.substr(0, hint.find('|'));
}

std::string GetLongHint(const std::string& hint) {
    const auto bar = hint.find('|');
    return bar == std::string::npos ? hint : hint.substr(bar + 1);
}

const TClassInfo& THintWindow::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<THintWindow>("THintWindow", &TCustomForm::StaticClassInfo()).Build();
    return info;
}

THintWindow::THintWindow(TComponent* AOwner) : TCustomForm(AOwner) {
    SetBorderStyle(bsNone);
    SetColor(clInfoBk);
    Font()->SetColor(clInfoText);
}

TRect THintWindow::CalcHintRect(int maxWidth, const std::string& hint) const {
    TBitmap measure(1, 1);
    measure.Canvas().Font().Assign(*Font());
    TRect rect{0, 0, maxWidth, 0};
    measure.Canvas().DrawText(hint, rect, HintTextFlags | DT_CALCRECT);
    rect.right += 6;
    rect.bottom += 2;
    return rect;
}

void THintWindow::ActivateHint(TRect rect, const std::string& hint) {
    SetCaption(hint);
    rect.bottom += 4;
    const TRect screen = Application().Backend().ScreenBounds();
    OffsetRect(rect, std::min(screen.right - rect.right, 0),
               std::min(screen.bottom - rect.bottom, 0));
    OffsetRect(rect, std::max(screen.left - rect.left, 0), std::max(screen.top - rect.top, 0));
    SetBoundsRect(rect);
    Invalidate();
    Show();
}

// A frame in the window-frame colour; the text two pixels inside it.
void THintWindow::Paint() {
    TCanvas& canvas = Canvas();
    canvas.Brush().SetColor(clWindowFrame);
    canvas.FrameRect(ClientRect());
    canvas.Brush().SetStyle(bsClear);
    canvas.Font().Assign(*Font());
    TRect text{3, 3, Width() - 1, Height() - 1};
    canvas.DrawText(Caption(), text, HintTextFlags);
    canvas.Brush().SetStyle(bsSolid);
}

} // namespace qv
