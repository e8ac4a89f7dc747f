#pragma once
// TqBackground: a non-visual component that paints the background of the form it sits on: a
// tiled bitmap, a colour gradient, the steel texture or the form's own colour. Once its form
// has been read (Loaded, outside the designer) it hooks the form's window procedure and
// answers the erase message itself; on a size change it raises OnResize and repaints the whole
// form. It unhooks when it is destroyed.

#include "componentbase/Gradient.h"
#include "platform/controls/Form.h"
#include "platform/controls/WindowTable.h"
#include "platform/graphics/Bitmap.h"

#include <memory>

namespace qv {

enum TqBackType { btBitmap, btBlend, btNormal, btSteel };
QV_ENUM_TYPE(TqBackType, "btBitmap", "btBlend", "btNormal", "btSteel")

// The wallpaper's paint event: the canvas it was painted on, then the component.
using TqBackPaintEvent = std::function<void(TCanvas* Canvas, TObject* Sender)>;
QV_EVENT_TYPE(TqBackPaintEvent)

class TqBackground : public TComponent {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr gradType FillType = gVert;
        static constexpr TqBackType BackType = btBitmap;
        static constexpr TColor Color = 0xFF00FF;
        static constexpr TColor EndColor = 0x000000;
        static constexpr int Bands = 255;
    };

    explicit TqBackground(TComponent* AOwner);
    ~TqBackground() override;

    gradType FillType() const { return m_fillType; }
    void SetFillType(gradType value);
    // The owned bitmap; SetBitMap copies another bitmap into it.
    TBitmap* BitMap() const { return m_bitmap.get(); }
    void SetBitMap(const TBitmap* value);
    TqBackType BackType() const { return m_backType; }
    void SetBackType(TqBackType value);
    TColor Color() const { return m_color; }
    void SetColor(TColor value);
    TColor EndColor() const { return m_endColor; }
    void SetEndColor(TColor value);
    int Bands() const { return m_bands; }
    void SetBands(int value);

    // Whether the form's window procedure is hooked.
    bool Hooked() const { return m_hook.Installed(); }

    // What painting the wallpaper did: painted it, left the area to the form (btNormal, an
    // empty bitmap), or abandoned it (a centre gradient with no frame to divide by).
    enum class TWallpaper { Painted, LeftToForm, Abandoned };
    // Paints the wallpaper of a width x height client area onto `canvas` from its origin, as
    // the erase does, without OnPaint.
    TWallpaper PaintWallpaper(TCanvas& canvas, int width, int height);

    void Loaded() override;

    TqBackPaintEvent OnPaint;
    TNotifyEvent OnResize;

protected:
    // Fires OnPaint with the canvas the wallpaper was painted on.
    virtual void DoPaint(TCanvas& canvas);
    // Fires OnResize.
    virtual void DoResize();

private:
    void WindowProc(TMessage& Message, const TWndMethod& Previous);
    void EraseBackground(TMessage& Message, const TWndMethod& Previous);
    // Stores a new value: recomputes the band colours and repaints the hooked form.
    void Changed();

    gradType m_fillType{Defaults::FillType};
    TqBackType m_backType{Defaults::BackType};
    TColor m_color{Defaults::Color};
    TColor m_endColor{Defaults::EndColor};
    int m_bands{Defaults::Bands};
    TGradientColors m_colors;
    std::unique_ptr<TBitmap> m_bitmap{std::make_unique<TBitmap>()};
    TCustomForm* m_form{nullptr};
    TWindowHook m_hook;
};

} // namespace qv
