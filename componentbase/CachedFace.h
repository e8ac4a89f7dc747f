#pragma once
// TCachedFace: a picture drawn once per look and reused while the look holds. A component
// whose static part changes rarely describes everything that part depends on in a look value
// (sizes, colours, state; it needs ==); asking for the picture with the same look returns the
// kept bitmap, any other look draws it again. A row of cells or a dial repaints at the cost of
// a block copy.
//
//   struct TLook { int width, height; TColor lit; bool operator==(const TLook&) const = default; };
//   TCachedFace<TLook> m_face;
//   const TBitmap& face = m_face.Picture(look, look.width, look.height,
//                                        [&](TCanvas& c) { DrawSegments(c); });

#include "componentbase/PaintFrame.h"
#include "platform/graphics/Bitmap.h"

#include <optional>

namespace qv {

template <class Look> class TCachedFace {
public:
    // The picture for `look`, `width` x `height`; `draw(canvas)` runs only when the look
    // differs from the kept one, on a canvas with a fresh canvas's tools.
    template <class Draw> TBitmap& Picture(const Look& look, int width, int height, Draw&& draw) {
        if (m_look == look) return m_picture;
        m_look.reset(); // a throwing draw leaves no stale look behind
        if (m_picture.Width() != width || m_picture.Height() != height)
            m_picture.SetSize(width, height);
        ResetCanvasTools(m_picture.Canvas());
        draw(m_picture.Canvas());
        m_look = look;
        return m_picture;
    }

    // Forgets the kept picture: the next request draws.
    void Invalidate() { m_look.reset(); }

private:
    TBitmap m_picture;
    std::optional<Look> m_look;
};

} // namespace qv
