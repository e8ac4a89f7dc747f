#include "backgrounds/TileMapBase.h"

#include "componentbase/Tiles.h"

namespace qv {

template <class Base> TTileMapBase<Base>::TTileMapBase(TComponent* AOwner) : Base(AOwner) {
    this->SetBounds(this->Left(), this->Top(), Defaults::Size, Defaults::Size);
    m_bitmap->OnChange = [this](TObject*) { BitmapChanged(); };
}

template <class Base> void TTileMapBase<Base>::SetBitmap(const TBitmap* value) {
    if (value) m_bitmap->Assign(*value);
}

template <class Base> void TTileMapBase<Base>::Paint() {
    TCanvas& canvas = m_frame.Begin(*this, this->Canvas(), TFrameBackground::Beneath());
    TileBitmap(canvas, *m_bitmap, this->Width(), this->Height(), TTileOrder::ColumnsOuter);
    m_frame.End(*this, this->Canvas(), OnPaint);
}

template class TTileMapBase<TCustomControl>;
template class TTileMapBase<TPassMouseOn<TGraphicControl>>;

} // namespace qv
