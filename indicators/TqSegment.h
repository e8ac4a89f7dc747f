#pragma once
// TqSegment: one character cell of a 16-segment display, scaled by an integer Size. Lit
// segments are drawn in LitColor, the others in UnLitColor; an upper dot and a point sit to
// the right of the cell. The character-to-segments table is shared by every cell.

#include "componentbase/CachedFace.h"
#include "platform/controls/WinControl.h"

#include <cstdint>

namespace qv {

enum qSegPunktur { spPunktum, spColon, spNone };
QV_ENUM_TYPE(qSegPunktur, "spPunktum", "spColon", "spNone")

// A set of segment numbers 1..16: bit n stands for segment n.
using qSegSet = std::uint32_t;
constexpr qSegSet Segments(std::initializer_list<int> numbers) {
    qSegSet set = 0;
    for (int n : numbers)
        set |= qSegSet{1} << n;
    return set;
}

// The segments of a character code 32..255 in the shared table (codes below 32 read as 32).
qSegSet CharLook(unsigned char code);
// Replaces the table's entry for a character; cells showing it keep their old segments until
// their Char is set again.
void ChangeACharLook(unsigned char qChar, qSegSet segments);
// The type of the published Char property: a character #32..#255.
const TTypeInfo& QCharType();
// qSegSize: 1..15.
const TTypeInfo& QSegSizeType();

// The defaults of a cell, shared by the segment, the segment label and the segment clock.
struct TSegmentDefaults {
    static constexpr unsigned char Char = ' ';
    static constexpr TColor Color = TColor(0);
    static constexpr TColor LitColor = TColor(0x00FF00);
    static constexpr TColor UnLitColor = TColor(0x002000);
    static constexpr qSegPunktur Punktur = spNone;
    static constexpr bool Transparent = false;
    static constexpr int Size = 1;
};

class TqSegment : public TGraphicControl {
    QV_OBJECT
public:
    explicit TqSegment(TComponent* AOwner);

    unsigned char Char() const { return m_char; }
    void SetChar(unsigned char value);
    TColor LitColor() const { return m_litColor; }
    void SetLitColor(TColor value);
    TColor UnLitColor() const { return m_unLitColor; }
    void SetUnLitColor(TColor value);
    qSegPunktur Punktur() const { return m_punktur; }
    void SetPunktur(qSegPunktur value);
    bool Transparent() const { return m_transparent; }
    void SetTransparent(bool value);
    int Size() const { return m_size; }
    void SetSize(int value);
    // Width and height snap to whole cells: a height v gives Size v div 29 (at least 1).
    void SetWidth(int value);
    void SetHeight(int value);
    qSegSet LitSegments() const { return m_segments; }

    TNotifyEvent OnPaint;

protected:
    void Paint() override;
    virtual void DoUpdate();
    virtual void DoOnPaint();

private:
    // Everything an opaque cell's picture depends on.
    struct TLook {
        int width, height, size;
        qSegSet segments;
        TColor lit, unLit, back;
        bool operator==(const TLook&) const = default;
    };

    int G(int i) const { return i * m_size; }
    TColor SegmentColor(int number) const;
    void DrawSegments(TCanvas& canvas) const;
    TLook CurrentLook() const;
    TBitmap& Picture();

    unsigned char m_char{TSegmentDefaults::Char};
    TColor m_litColor{TSegmentDefaults::LitColor};
    TColor m_unLitColor{TSegmentDefaults::UnLitColor};
    qSegPunktur m_punktur{TSegmentDefaults::Punktur};
    bool m_transparent{TSegmentDefaults::Transparent};
    int m_size{0}; // the constructor sets the default Size, which sizes the cell
    qSegSet m_segments{0};
    // An opaque cell is drawn once per look and copied on each paint: a row of cells
    // repaints at the cost of a block copy instead of 16 polygons a cell.
    TCachedFace<TLook> m_face;
};

} // namespace qv
