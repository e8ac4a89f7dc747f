#pragma once
// TCustomEdit: a single-line text editor. It keeps a caret and a selection (an anchor and
// the caret; SelStart and SelLength describe the range between them), edits with the
// keyboard (characters, Backspace, Delete, Left/Right/Home/End with Shift extending the
// selection and Ctrl moving by words, Ctrl+C/X/V and Ctrl/Shift+Insert, Shift+Delete),
// places the caret with the mouse (dragging selects, a double click selects a word), and
// scrolls the text sideways to keep the caret visible. Positions are byte offsets into the
// text; the caret never stops inside a UTF-8 sequence.
//
// It paints a sunken edge (BorderStyle bsSingle), the text, the selection in the highlight
// colours while focused (always when HideSelection is off) and, while focused, a caret that
// blinks every CaretBlinkTime ms and shows again at once whenever it moves.

#include "ControlTypes.h"
#include "Timer.h"
#include "WinControl.h"

#include <memory>

namespace qv {

class TCustomEdit : public TWinControl {
    QV_OBJECT
public:
    static constexpr unsigned CaretBlinkTime = 530;

    explicit TCustomEdit(TComponent* AOwner);
    ~TCustomEdit() override;

    bool AutoSelect() const { return m_autoSelect; }
    void SetAutoSelect(bool v) { m_autoSelect = v; }
    // With a single border, the height follows the font.
    bool AutoSize() const { return m_autoSize; }
    void SetAutoSize(bool v);
    TBorderStyle BorderStyle() const { return m_borderStyle; }
    void SetBorderStyle(TBorderStyle v);
    bool HideSelection() const { return m_hideSelection; }
    void SetHideSelection(bool v);
    // The most bytes the user can type or paste; 0 for no limit.
    int MaxLength() const { return m_maxLength; }
    void SetMaxLength(int v);
    bool Modified() const { return m_modified; }
    void SetModified(bool v) { m_modified = v; }
    // Shown in place of every character when not #0.
    char PasswordChar() const { return m_passwordChar; }
    void SetPasswordChar(char v);
    bool ReadOnly() const { return m_readOnly; }
    void SetReadOnly(bool v) { m_readOnly = v; }

    int SelStart() const;
    void SetSelStart(int v);
    int SelLength() const;
    void SetSelLength(int v);
    std::string SelText() const;
    // Replaces the selection (also in a read-only edit) and puts the caret after it.
    void SetSelText(const std::string& v);
    int CaretPos() const { return m_caret; }
    void SelectAll();
    void ClearSelection();
    void Clear() { SetText(""); }
    void CopyToClipboard() const;
    void CutToClipboard();
    void PasteFromClipboard();

    TNotifyEvent OnChange;

    // With AutoSize and a single border the height is the font's line height plus 8.
    void SetBounds(int ALeft, int ATop, int AWidth, int AHeight) override;

protected:
    virtual void Change();
    void KeyDown(unsigned& Key, TShiftState Shift) override;
    void KeyPress(char& Key) override;
    void MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;
    void MouseMove(TShiftState Shift, int X, int Y) override;
    void MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y) override;

    void WMPaint(TMessage& Message) override;
    void WMGetDlgCode(TMessage& Message) override;
    void WMSetFocus(TMessage& Message) override;
    void WMKillFocus(TMessage& Message) override;
    void CMEnter(TMessage& Message) override;
    void CMTextChanged(TMessage& Message) override;
    void CMFontChanged(TMessage& Message) override;
    void DefaultHandler(TMessage& Message) override;

private:
    // Where the text is drawn: inside the edge, less a pixel of margin.
    TRect TextArea() const;
    std::string DisplayText(const std::string& text) const;
    // The width of the text before byte position `pos`, as shown.
    int PrefixWidth(int pos) const;
    // The character boundary nearest to client x.
    int PositionAt(int x) const;
    int NextPosition(int pos) const;
    int PreviousPosition(int pos) const;
    int WordEndAfter(int pos) const;
    int WordStartBefore(int pos) const;
    bool HandleEditingKey(unsigned key, TShiftState shift);
    bool HandleMovementKey(unsigned key, TShiftState shift);
    void MoveCaret(int pos, bool extend);
    void SetSelection(int anchor, int caret);
    // Replaces the selection with `text`, within MaxLength when the user types it.
    void ReplaceSelection(std::string text, bool byUser);
    void DeleteBackward();
    void DeleteForward();
    void ScrollToCaret();
    bool FixedHeight() const { return m_autoSize && m_borderStyle == bsSingle; }
    void AdjustHeight();
    bool SelectionVisible() const;
    void PaintText(TCanvas& canvas) const;
    void PaintCaret(TCanvas& canvas) const;
    // Shows the caret and starts its blinking over (stops it without the focus).
    void RestartCaretBlink();

    bool m_autoSelect{true};
    bool m_autoSize{true};
    TBorderStyle m_borderStyle{bsSingle};
    bool m_hideSelection{true};
    int m_maxLength{0};
    bool m_modified{false};
    char m_passwordChar{'\0'};
    bool m_readOnly{false};
    int m_anchor{0};
    int m_caret{0};
    int m_scroll{0};         // pixels of text scrolled out on the left
    bool m_editing{false};   // a text change made by the edit itself
    bool m_selecting{false}; // the left button is down and drags the selection
    bool m_pressing{false};  // focus arrives from a mouse press
    mutable TBitmap m_measure{1, 1};
    std::unique_ptr<TTimer> m_caretTimer;
    bool m_caretShown{true};
};

} // namespace qv
