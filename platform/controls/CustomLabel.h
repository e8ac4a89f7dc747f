#pragma once
// TCustomLabel: a graphic control that shows its caption with DrawText. AutoSize (on by
// default) fits the bounds to the text, keeping the right edge of a right-aligned label;
// WordWrap breaks the text at the label's width; Layout places it vertically. An '&' marks
// an accelerator (underlined) unless ShowAccelChar is off; the accelerator focuses
// FocusControl. A disabled label draws its text embossed; a transparent one leaves what
// lies beneath it visible.

#include "ControlTypes.h"
#include "WinControl.h"

namespace qv {

class TCustomLabel : public TGraphicControl {
    QV_OBJECT
public:
    explicit TCustomLabel(TComponent* AOwner);

    TAlignment Alignment() const { return m_alignment; }
    void SetAlignment(TAlignment v);
    bool AutoSize() const { return m_autoSize; }
    void SetAutoSize(bool v);
    TWinControl* FocusControl() const { return m_focusControl; }
    void SetFocusControl(TWinControl* v);
    TTextLayout Layout() const { return m_layout; }
    void SetLayout(TTextLayout v);
    bool ShowAccelChar() const { return m_showAccelChar; }
    void SetShowAccelChar(bool v);
    bool Transparent() const { return m_transparent; }
    void SetTransparent(bool v);
    bool WordWrap() const { return m_wordWrap; }
    void SetWordWrap(bool v);

    void Notification(TComponent* AComponent, TOperation Operation) override;
    void Loaded() override;

protected:
    // The text to show; the caption unless a descendant says otherwise.
    virtual std::string GetLabelText() const { return Caption(); }
    // Draws (or with DT_CALCRECT measures) the label text in `rect` on `canvas`.
    virtual void DoDrawText(TCanvas& canvas, TRect& rect, unsigned flags);
    void Paint() override;
    // Fits the bounds to the text when AutoSize is on.
    virtual void AdjustBounds();

    void CMTextChanged(TMessage& Message) override;
    void CMFontChanged(TMessage& Message) override;
    void CMDialogChar(TMessage& Message) override;

private:
    unsigned DrawFlags() const;

    TAlignment m_alignment{taLeftJustify};
    bool m_autoSize{true};
    TWinControl* m_focusControl{nullptr};
    TTextLayout m_layout{tlTop};
    bool m_showAccelChar{true};
    bool m_transparent{false};
    bool m_wordWrap{false};
};

} // namespace qv
