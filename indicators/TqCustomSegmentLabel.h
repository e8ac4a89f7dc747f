#pragma once
// TqCustomSegmentLabel: a text shown on a row of 16-segment cells. Each cell is a TqSegment
// child that the label creates and owns. A point or colon in the text lights the dots of the
// cell before it instead of taking a cell of its own. The label is always exactly as large
// as its cells: Size x 19 x NumberOfChars wide, Size x 29 high.

#include "indicators/TqSegment.h"

#include <array>
#include <cstdint>
#include <string>

namespace qv {

class TqCustomSegmentLabel : public TCustomControl {
    QV_OBJECT
public:
    explicit TqCustomSegmentLabel(TComponent* AOwner);
    ~TqCustomSegmentLabel() override;

    std::uint8_t NumberOfChars() const { return m_numberOfChars; }
    void SetNumberOfChars(std::uint8_t value);
    int Size() const { return m_size; }
    void SetSize(int value);
    TColor LitColor() const { return m_litColor; }
    void SetLitColor(TColor value);
    TColor UnLitColor() const { return m_unLitColor; }
    void SetUnLitColor(TColor value);
    const std::string& Caption() const { return m_caption; }
    void SetCaption(const std::string& value);
    void SetColor(TColor value);
    void SetParentColor(bool value);
    void SetVisible(bool value);

    // The cell at `index` (null beyond NumberOfChars).
    TqSegment* Cell(int index) const;
    void SetBounds(int ALeft, int ATop, int AWidth, int AHeight) override;

protected:
    virtual void DoCaption();
    virtual void DoUpdate();
    void SetCount(std::uint8_t count);
    void WMEraseBkgnd(TMessage& Message) override;
    void WMSize(TMessage& Message) override;

private:
    void FreeCells();
    TqSegment* MakeCell(int index);
    void ApplyGridSize();

    std::array<TqSegment*, 256> m_cells{}; // owned through the owner tree
    std::uint8_t m_numberOfChars{0};
    int m_size{TSegmentDefaults::Size};
    TColor m_litColor{TSegmentDefaults::LitColor};
    TColor m_unLitColor{TSegmentDefaults::UnLitColor};
    std::string m_caption;
    bool m_building{false};
};

} // namespace qv
