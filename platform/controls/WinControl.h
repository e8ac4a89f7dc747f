#pragma once
// TWinControl: a control that holds other controls, can take the keyboard focus and has a
// handle in the framework's window table. Windowed controls are not native windows: the
// form they sit on paints them into its frame buffer.
//
// TGraphicControl paints on its parent's surface and cannot take the focus;
// TCustomControl is a windowed control with a canvas and a Paint method.

#include "Control.h"

#include <optional>
#include <vector>

namespace qv {

class TWinControl : public TControl {
    QV_OBJECT
public:
    explicit TWinControl(TComponent* AOwner);
    ~TWinControl() override;

    // Children in z-order, bottom first.
    int ControlCount() const { return static_cast<int>(m_controls.size()); }
    TControl* Controls(int index) const { return m_controls.at(static_cast<std::size_t>(index)); }
    void InsertControl(TControl* control);
    void RemoveControl(TControl* control);
    // Moves a child to the bottom of the z-order.
    void MoveToBack(TControl* control);
    // The child at a client point, topmost first; disabled ones only if asked. Children that
    // answer the hit test with "nothing here" let the point through to what lies beneath.
    TControl* ControlAtPos(TPoint pos, bool allowDisabled, bool allowWinControls = true) const;
    // Sends the message to every child.
    void Broadcast(TMessage& Message);

    HWND Handle();
    bool HandleAllocated() const { return m_handle != 0; }

    // Focus and keyboard.
    int TabOrder() const;
    void SetTabOrder(int value);
    bool TabStop() const { return m_tabStop; }
    void SetTabStop(bool value) { m_tabStop = value; }
    virtual bool CanFocus() const;
    bool Focused() const;
    virtual void SetFocus();
    // The windowed controls under this one in tab order, depth first.
    void GetTabOrderList(std::vector<TWinControl*>& list) const;
    // The next (or previous) control after `current` in tab order that can take the focus.
    TWinControl* FindNextControl(TWinControl* current, bool goForward, bool checkTabStop,
                                 bool checkParent) const;
    void SelectNext(TWinControl* current, bool goForward, bool checkTabStop);

    TBrush& Brush() { return m_brush; }
    TRect ClientRect() const override;

    TKeyEvent OnKeyDown;
    TKeyPressEvent OnKeyPress;
    TKeyEvent OnKeyUp;
    TNotifyEvent OnEnter;
    TNotifyEvent OnExit;

    void GetChildren(const std::function<void(TComponent*)>& Proc, TComponent* Root) const override;
    void SetBounds(int ALeft, int ATop, int AWidth, int AHeight) override;
    void Loaded() override;

    // Paints this control and its children into `frame` (the form's frame buffer), within
    // `clip`; `origin` is where this control's client area lies in the frame.
    void PaintTree(TPixelBuffer& frame, TPoint origin, const TRect& clip);
    // Lays out aligned children (alTop, alBottom, alLeft, alRight, alClient).
    void Realign();

protected:
    friend class TApplication;
    friend class TCustomForm;
    virtual void KeyDown(unsigned& Key, TShiftState Shift);
    virtual void KeyPress(char& Key);
    virtual void KeyUp(unsigned& Key, TShiftState Shift);
    virtual void DoEnter();
    virtual void DoExit();
    // Lets the form handle Tab, arrows, Enter and Escape unless this control wants them.
    bool DoDialogKey(unsigned key, LPARAM keyData);
    virtual void AlignControls(TRect& rect);

    void WMKeyDown(TMessage& Message);
    void WMKeyUp(TMessage& Message);
    void WMChar(TMessage& Message);
    void WMSysChar(TMessage& Message);
    virtual void WMSetFocus(TMessage& Message);
    virtual void WMKillFocus(TMessage& Message);
    virtual void WMGetDlgCode(TMessage& Message);
    virtual void CMEnter(TMessage& Message);
    virtual void CMExit(TMessage& Message);
    void WMEraseBkgnd(TMessage& Message) override;
    void CMDialogKey(TMessage& Message) override;
    void CMDialogChar(TMessage& Message) override;
    void CMFocusChanged(TMessage& Message) override;
    void CMColorChanged(TMessage& Message) override;
    void CMFontChanged(TMessage& Message) override;
    void CMEnabledChanged(TMessage& Message) override;
    void CMVisibleChanged(TMessage& Message) override;
    void CMSysColorChange(TMessage& Message) override;
    void CMParentShowHintChanged(TMessage& Message) override;

    void WndProc(TMessage& Message) override;
    void PaintWindow(TCanvas& canvas) override;
    LRESULT SendSystemMessage(UINT Msg, WPARAM WParam = 0, LPARAM LParam = 0) override;
    // Paints the graphic children onto this control's surface, within `area`.
    void PaintControls(TPixelBuffer& surface, const TRect& area);
    // Runs a control's paint into `surface` (its client area), drawing only inside `clip`
    // (control coordinates).
    static void PaintInto(TControl& control, TPixelBuffer& surface, std::optional<TRegion> clip);
    static void PaintInto(TControl& control, TPixelBuffer& surface, const TRect& clip);

private:
    using TPaintPixels = std::function<void(TPixelBuffer& pixels, const TRect& local)>;
    static void PaintPixelsOf(TControl& control, TPixelBuffer& surface, TPoint origin,
                              const TRect& visible, const TPaintPixels& paint);
    std::optional<TRegion> OwnPaintClip(const TRect& area) const;
    std::vector<TControl*> m_controls;   // z-order, bottom first; not owned: the owner frees them
    std::vector<TWinControl*> m_tabList; // the windowed children in tab order
    int m_pendingTabOrder{-1};           // a tab order read from a form file, applied in Loaded
    HWND m_handle{0};
    bool m_tabStop{false};
    TBrush m_brush;
    bool m_realigning{false};
};

class TGraphicControl : public TControl {
    QV_OBJECT
public:
    explicit TGraphicControl(TComponent* AOwner);

protected:
    virtual void Paint() {}
    void WMPaint(TMessage& Message) override;
};

class TCustomControl : public TWinControl {
    QV_OBJECT
public:
    explicit TCustomControl(TComponent* AOwner);

protected:
    virtual void Paint() {}
    void WMPaint(TMessage& Message) override;
};

} // namespace qv
