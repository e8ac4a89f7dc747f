#pragma once
// TTileMapBase<Base>: a control covered with copies of one bitmap laid side by side from its
// top-left corner, columns outer, on a windowed base (TqTileMap, which holds child controls)
// or a graphic one (TqNWTileMap). Nothing else is painted: where no tile lies, what is beneath
// the control shows.

#include "componentbase/PaintFrame.h"
#include "componentbase/PassMouseOn.h"
#include "platform/controls/WinControl.h"
#include "platform/graphics/Bitmap.h"

namespace qv {

struct TTileMapDefaults {
    static constexpr int Size = 30; // width and height
};

template <class Base> class TTileMapBase : public Base {
public:
    using Defaults = TTileMapDefaults;
    explicit TTileMapBase(TComponent* AOwner);

    // The owned bitmap; SetBitmap copies the given one into it (a null one is ignored).
    TBitmap* Bitmap() const { return m_bitmap.get(); }
    void SetBitmap(const TBitmap* value);

    TNotifyEvent OnPaint;

protected:
    void Paint() override;
    // The erase leaves what lies beneath.
    void WMEraseBkgnd(TMessage& Message) override { Message.Result = 1; }
    // After every change of the bitmap (copied in, loaded, drawn on).
    virtual void BitmapChanged() { this->Invalidate(); }

private:
    std::unique_ptr<TBitmap> m_bitmap{std::make_unique<TBitmap>()};
    TPaintFrame m_frame{TPaintFrame::TOutline::WhileDesigning};
};

extern template class TTileMapBase<TCustomControl>;
extern template class TTileMapBase<TPassMouseOn<TGraphicControl>>;

} // namespace qv
