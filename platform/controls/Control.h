#pragma once
// TControl: a visual component with bounds inside a parent, colour, font, caption, mouse
// handling and painting. Messages reach it through WndProc, which dispatches them to the
// virtual handlers below (WMLButtonDown, CMMouseEnter, ...); a control overrides the
// handlers it cares about and calls the inherited one, as the classic framework does.

#include "Messages.h"

#include "platform/core/Component.h"
#include "platform/core/Set.h"
#include "platform/graphics/Canvas.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/GraphicsObjects.h"
#include "platform/graphics/Types.h"

#include <functional>
#include <memory>
#include <string>

namespace qv {

class TWinControl;
class TPopupMenu;
class TCustomForm;

enum class TControlStyleFlag {
    csAcceptsControls,
    csCaptureMouse,
    csDesignInteractive,
    csClickEvents,
    csFramed,
    csSetCaption,
    csOpaque,
    csDoubleClicks,
    csFixedWidth,
    csFixedHeight,
    csNoDesignVisible,
    csReplicatable,
    csNoStdEvents,
    csDisplayDragImage,
    csReflector,
    csActionClient,
    csMenuEvents
};
using TControlStyle = TSet<TControlStyleFlag>;
using enum TControlStyleFlag;

enum class TControlStateFlag {
    csLButtonDown,
    csClicked,
    csPalette,
    csReadingState,
    csAlignmentNeeded,
    csFocusing,
    csCreating,
    csPaintCopy,
    csCustomPaint,
    csDestroyingHandle,
    csDocking
};
using TControlState = TSet<TControlStateFlag>;
using enum TControlStateFlag;

enum TMouseButtonKind { mbLeft, mbRight, mbMiddle };
enum TShiftStateFlag { ssShift, ssAlt, ssCtrl, ssLeft, ssRight, ssMiddle, ssDouble };
using TShiftState = TSet<TShiftStateFlag>;
enum TAlign { alNone, alTop, alBottom, alLeft, alRight, alClient };
enum TAlignment { taLeftJustify, taRightJustify, taCenter };
enum TDragMode { dmManual, dmAutomatic };
using TCursor = int;
using TModalResult = int;

QV_ENUM_TYPE(TMouseButtonKind, "mbLeft", "mbRight", "mbMiddle")
QV_ENUM_TYPE(TShiftStateFlag, "ssShift", "ssAlt", "ssCtrl", "ssLeft", "ssRight", "ssMiddle",
             "ssDouble")
QV_SET_TYPE(TShiftState, TShiftStateFlag)
QV_ENUM_TYPE(TAlign, "alNone", "alTop", "alBottom", "alLeft", "alRight", "alClient")
QV_ENUM_TYPE(TAlignment, "taLeftJustify", "taRightJustify", "taCenter")
QV_ENUM_TYPE(TDragMode, "dmManual", "dmAutomatic")

using TMouseEvent =
    std::function<void(TObject* Sender, TMouseButtonKind Button, TShiftState Shift, int X, int Y)>;
using TMouseMoveEvent = std::function<void(TObject* Sender, TShiftState Shift, int X, int Y)>;
using TKeyEvent = std::function<void(TObject* Sender, unsigned& Key, TShiftState Shift)>;
using TKeyPressEvent = std::function<void(TObject* Sender, char& Key)>;
using TDragDropEvent = std::function<void(TObject* Sender, TObject* Source, int X, int Y)>;
using TDragOverEvent =
    std::function<void(TObject* Sender, TObject* Source, int X, int Y, int State, bool& Accept)>;
using TEndDragEvent = std::function<void(TObject* Sender, TObject* Target, int X, int Y)>;
QV_EVENT_TYPE(TMouseEvent)
QV_EVENT_TYPE(TMouseMoveEvent)
QV_EVENT_TYPE(TKeyEvent)
QV_EVENT_TYPE(TKeyPressEvent)
QV_EVENT_TYPE(TDragDropEvent)
QV_EVENT_TYPE(TDragOverEvent)

// Cursor shapes.
constexpr TCursor crDefault = 0;
constexpr TCursor crNone = -1;
constexpr TCursor crArrow = -2;
constexpr TCursor crCross = -3;
constexpr TCursor crIBeam = -4;
constexpr TCursor crSize = -22;
constexpr TCursor crSizeNESW = -6;
constexpr TCursor crSizeNS = -7;
constexpr TCursor crSizeNWSE = -8;
constexpr TCursor crSizeWE = -9;
constexpr TCursor crUpArrow = -10;
constexpr TCursor crHourGlass = -11;
constexpr TCursor crDrag = -12;
constexpr TCursor crNoDrop = -13;
constexpr TCursor crHSplit = -14;
constexpr TCursor crVSplit = -15;
constexpr TCursor crMultiDrag = -16;
constexpr TCursor crSQLWait = -17;
constexpr TCursor crNo = -18;
constexpr TCursor crAppStart = -19;
constexpr TCursor crHelp = -20;
constexpr TCursor crHandPoint = -21;
const TTypeInfo& CursorType();

// Modal results.
constexpr TModalResult mrNone = 0;
constexpr TModalResult mrOk = 1;
constexpr TModalResult mrCancel = 2;
constexpr TModalResult mrAbort = 3;
constexpr TModalResult mrRetry = 4;
constexpr TModalResult mrIgnore = 5;
constexpr TModalResult mrYes = 6;
constexpr TModalResult mrNo = 7;
constexpr TModalResult mrAll = 8;

// The shift state of a mouse message's WParam, or of key flags.
TShiftState ShiftStateFromMouse(WPARAM keys);
TShiftState KeyboardShiftState();

class TControl : public TComponent {
    QV_OBJECT
public:
    explicit TControl(TComponent* AOwner);
    ~TControl() override;

    // Parent and position.
    TWinControl* Parent() const { return m_parent; }
    virtual void SetParent(TWinControl* AParent);
    int Left() const { return m_left; }
    int Top() const { return m_top; }
    int Width() const { return m_width; }
    int Height() const { return m_height; }
    void SetLeft(int v) { SetBounds(v, m_top, m_width, m_height); }
    void SetTop(int v) { SetBounds(m_left, v, m_width, m_height); }
    void SetWidth(int v) { SetBounds(m_left, m_top, v, m_height); }
    void SetHeight(int v) { SetBounds(m_left, m_top, m_width, v); }
    // Positions are kept within +-MaxCoordinate and sizes within 0..MaxCoordinate, so that
    // edges, parent offsets and damaged rectangles never overflow an int.
    static constexpr int MaxCoordinate = 1 << 28;
    virtual void SetBounds(int ALeft, int ATop, int AWidth, int AHeight);
    TRect BoundsRect() const { return Bounds(m_left, m_top, m_width, m_height); }
    void SetBoundsRect(const TRect& r) { SetBounds(r.left, r.top, r.Width(), r.Height()); }
    virtual TRect ClientRect() const { return {0, 0, m_width, m_height}; }
    int ClientWidth() const { return ClientRect().Width(); }
    int ClientHeight() const { return ClientRect().Height(); }
    void SetClientWidth(int v) { SetWidth(m_width - ClientWidth() + v); }
    void SetClientHeight(int v) { SetHeight(m_height - ClientHeight() + v); }
    // The screen position of the client area's top-left corner.
    virtual TPoint ClientOrigin() const;
    TPoint ClientToScreen(TPoint p) const;
    TPoint ScreenToClient(TPoint p) const;
    TAlign Align() const { return m_align; }
    void SetAlign(TAlign v);

    // State.
    bool Visible() const { return m_visible; }
    void SetVisible(bool v);
    void Show() { SetVisible(true); }
    void Hide() { SetVisible(false); }
    // Visible, and so are all its parents (and the form is shown).
    virtual bool Showing() const;
    bool Enabled() const { return m_enabled; }
    virtual void SetEnabled(bool v);
    TControlStyle ControlStyle() const { return m_controlStyle; }
    void SetControlStyle(TControlStyle v) { m_controlStyle = v; }
    TControlState ControlState() const { return m_controlState; }
    void SetControlState(TControlState v) { m_controlState = v; }

    // Look.
    TColor Color() const { return m_color; }
    void SetColor(TColor v);
    bool ParentColor() const { return m_parentColor; }
    void SetParentColor(bool v);
    TFont* Font() const { return m_font.get(); }
    void SetFont(const TFont& v) { m_font->Assign(v); }
    bool ParentFont() const { return m_parentFont; }
    void SetParentFont(bool v);
    const std::string& Caption() const { return m_text; }
    void SetCaption(const std::string& v) { SetText(v); }
    const std::string& Text() const { return m_text; }
    void SetText(const std::string& v);
    const std::string& Hint() const { return m_hint; }
    void SetHint(const std::string& v) { m_hint = v; }
    bool ShowHint() const { return m_showHint; }
    void SetShowHint(bool v);
    bool ParentShowHint() const { return m_parentShowHint; }
    void SetParentShowHint(bool v);
    TCursor Cursor() const { return m_cursor; }
    void SetCursor(TCursor v);
    TPopupMenu* PopupMenu() const { return m_popupMenu; }
    void SetPopupMenu(TPopupMenu* v);
    int HelpContext() const { return m_helpContext; }
    void SetHelpContext(int v) { m_helpContext = v; }
    TDragMode DragMode() const { return m_dragMode; }
    void SetDragMode(TDragMode v) { m_dragMode = v; }
    TCursor DragCursor() const { return m_dragCursor; }
    void SetDragCursor(TCursor v) { m_dragCursor = v; }

    // Messages.
    LRESULT Perform(UINT Msg, WPARAM WParam = 0, LPARAM LParam = 0);
    virtual void WndProc(TMessage& Message);
    // Messages no handler took.
    virtual void DefaultHandler(TMessage& Message);

    // Painting: Invalidate defers, Update paints what is pending, Refresh/Repaint at once.
    virtual void Invalidate();
    void InvalidateRect(const TRect& r);
    virtual void Update();
    void Refresh() { Repaint(); }
    virtual void Repaint();
    void BringToFront();
    void SendToBack();
    // The control's picture as it is on screen now (a full repaint first).
    void PaintTo(TBitmap& bitmap);
    // The canvas the control paints on. It draws on the control's client area while the
    // control paints (Paint, WM_ERASEBKGND, WM_PAINT); outside painting it draws nowhere.
    TCanvas& Canvas();

    virtual void Click();
    virtual void DblClick();
    bool MouseCapture() const;
    void SetMouseCapture(bool v);

    // Dragging is not supported beyond the published events.
    TNotifyEvent OnClick;
    TNotifyEvent OnDblClick;
    TMouseEvent OnMouseDown;
    TMouseMoveEvent OnMouseMove;
    TMouseEvent OnMouseUp;
    TDragDropEvent OnDragDrop;
    TDragOverEvent OnDragOver;
    TEndDragEvent OnEndDrag;
    TNotifyEvent OnResize;

    // The form (top-level parent) this control is on, or null.
    TCustomForm* ParentForm() const;

    // Form files place controls in their parent.
    bool HasParent() const override { return true; }
    TComponent* GetParentComponent() const override;
    void SetParentComponent(TComponent* Value) override;
    void Notification(TComponent* AComponent, TOperation Operation) override;
    void Loaded() override;

protected:
    friend class TWinControl;
    virtual void Changed() {}
    virtual void Resize();
    virtual void MouseDown(TMouseButtonKind Button, TShiftState Shift, int X, int Y);
    virtual void MouseMove(TShiftState Shift, int X, int Y);
    virtual void MouseUp(TMouseButtonKind Button, TShiftState Shift, int X, int Y);
    // The colour and font of the parent were changed; follow them if so asked.
    void ParentColorChanged();
    void ParentFontChanged();
    // Sends a message to every child (windowed controls broadcast to their controls).
    void SendCancelMode();

    // Message handlers.
    virtual void WMLButtonDown(TMessage& Message);
    virtual void WMLButtonDblClk(TMessage& Message);
    virtual void WMLButtonUp(TMessage& Message);
    virtual void WMRButtonDown(TMessage& Message);
    virtual void WMRButtonDblClk(TMessage& Message);
    virtual void WMRButtonUp(TMessage& Message);
    virtual void WMMButtonDown(TMessage& Message);
    virtual void WMMButtonUp(TMessage& Message);
    virtual void WMMouseMove(TMessage& Message);
    virtual void WMNCHitTest(TMessage& Message);
    virtual void WMEraseBkgnd(TMessage& Message);
    virtual void WMPaint(TMessage& Message);
    virtual void WMSize(TMessage& Message);
    virtual void CMMouseEnter(TMessage& Message);
    virtual void CMMouseLeave(TMessage& Message);
    virtual void CMHitTest(TMessage& Message);
    virtual void CMEnabledChanged(TMessage& Message);
    virtual void CMVisibleChanged(TMessage& Message);
    virtual void CMColorChanged(TMessage& Message);
    virtual void CMFontChanged(TMessage& Message);
    virtual void CMTextChanged(TMessage& Message);
    virtual void CMParentColorChanged(TMessage& Message);
    virtual void CMParentFontChanged(TMessage& Message);
    virtual void CMParentShowHintChanged(TMessage& Message);
    virtual void CMSysColorChange(TMessage& Message);
    virtual void CMDialogKey(TMessage& Message);
    virtual void CMDialogChar(TMessage& Message);
    virtual void CMButtonPressed(TMessage& Message);
    virtual void CMFocusChanged(TMessage& Message);
    virtual void CMCancelMode(TMessage& Message);

    // Runs the control's paint (WM_ERASEBKGND then WM_PAINT) into `canvas`, which shows the
    // control's client area with what lies beneath already in it.
    virtual void PaintWindow(TCanvas& canvas);
    // Sends a message the system raises (erase, paint, size): straight to WndProc here; a
    // windowed control with a handle sends it through its window procedure, so that hooks on
    // the window see it.
    virtual LRESULT SendSystemMessage(UINT Msg, WPARAM WParam = 0, LPARAM LParam = 0);
    // The surface of a control that reaches beyond the surface it is painted on (controls
    // inside it are painted in place): kept between paints so that repainting allocates
    // nothing; `width` x `height` from the control's origin, enough for its visible part.
    TPixelBuffer& PaintBuffer(int width, int height);

private:
    void DoMouseDown(TMessage& Message, TMouseButtonKind Button, TShiftState Shift);
    void DoMouseUp(TMessage& Message, TMouseButtonKind Button);
    void FontChanged(TObject* Sender);

    TWinControl* m_parent{nullptr};
    int m_left{0}, m_top{0}, m_width{0}, m_height{0};
    TAlign m_align{alNone};
    bool m_visible{true};
    bool m_enabled{true};
    TControlStyle m_controlStyle{csCaptureMouse, csClickEvents, csSetCaption, csDoubleClicks};
    TControlState m_controlState;
    TColor m_color{clWindow};
    bool m_parentColor{true};
    std::unique_ptr<TFont> m_font;
    bool m_parentFont{true};
    bool m_followingParentFont{false};
    std::string m_text;
    std::string m_hint;
    bool m_showHint{false};
    bool m_parentShowHint{true};
    TCursor m_cursor{crDefault};
    TPopupMenu* m_popupMenu{nullptr};
    int m_helpContext{0};
    TDragMode m_dragMode{dmManual};
    TCursor m_dragCursor{crDrag};
    std::unique_ptr<TCanvas> m_canvas;
    TPixelBuffer m_paintBuffer;
};

// True when `ch` is the accelerator of `caption` (the character after a single '&').
bool IsAccel(unsigned ch, const std::string& caption);

} // namespace qv
