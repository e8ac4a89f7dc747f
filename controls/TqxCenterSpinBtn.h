#pragma once
// TqxCenterSpinBtn: the spin buttons with a third, centre button between the up and the down
// button. The upper and lower buttons are Height div 3 high (one more from a height of 13 on),
// the centre button takes the rest; it has no glyph, its bevel is the same as the others' and
// it raises OnCenterClick (repeating like them while held).

#include "controls/TqxSpinBtn.h"

namespace qv {

class TqxCenterSpinBtn : public TqxSpinBtn {
    QV_OBJECT
public:
    explicit TqxCenterSpinBtn(TComponent* AOwner);

    int CenterHeight() const { return m_centerHeight; }
    bool CenterPressed() const { return IsPressed(TButton::Centre); }

    TNotifyEvent OnCenterClick;

protected:
    void Layout() override;
    TButton ButtonAt(int X, int Y) const override;
    void DrawCentre(TCanvas& c) const override;
    void ButtonClicked(TButton button) override;

private:
    int m_centerHeight{0};
};

} // namespace qv
