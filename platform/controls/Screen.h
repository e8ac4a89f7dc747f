#pragma once
// TScreen: what the application knows about the screen: its size and work area (from the
// backend), 96 pixels per inch, the installed font families, the forms and the active one,
// and a cursor that, when not crDefault, every form shows in place of its controls' cursors.

#include "Form.h"

#include "platform/core/Strings.h"

namespace qv {

class TScreen : public TComponent {
    QV_OBJECT
public:
    TScreen();

    int Width() const;
    int Height() const;
    TRect WorkAreaRect() const;
    int WorkAreaLeft() const { return WorkAreaRect().left; }
    int WorkAreaTop() const { return WorkAreaRect().top; }
    int WorkAreaWidth() const { return WorkAreaRect().Width(); }
    int WorkAreaHeight() const { return WorkAreaRect().Height(); }
    int PixelsPerInch() const { return TFont::PixelsPerInch; }

    TCursor Cursor() const { return m_cursor; }
    void SetCursor(TCursor v);

    // The font families installed, sorted, each once; read once on first use.
    const TStrings& Fonts();

    // The application's forms in creation order, popup windows left out.
    int FormCount() const;
    TCustomForm* Forms(int index) const;
    TCustomForm* ActiveForm() const;
    TWinControl* ActiveControl() const;

private:
    TCursor m_cursor{crDefault};
    std::unique_ptr<TStringList> m_fonts;
};

// The process-wide screen object (main thread only).
TScreen& Screen();

} // namespace qv
