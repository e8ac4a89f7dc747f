#include "indicators/TqCustomSegmentLabel.h"

#include "platform/core/ClassBuilder.h"

#include <algorithm>

namespace qv {

const TClassInfo& TqCustomSegmentLabel::StaticClassInfo() {
    static const TClassInfo info = TClassBuilder<TqCustomSegmentLabel>(
                                       "TqCustomSegmentLabel", &TCustomControl::StaticClassInfo())
                                       .Build();
    return info;
}

TqCustomSegmentLabel::TqCustomSegmentLabel(TComponent* AOwner) : TCustomControl(AOwner) {
    // The cells take the mouse; the label itself neither captures nor clicks.
    SetControlStyle(ControlStyle() - TControlStyle{csCaptureMouse, csClickEvents, csDoubleClicks});
    SetColor(TSegmentDefaults::Color);
    SetCount(0);
    SetVisible(true);
}

TqCustomSegmentLabel::~TqCustomSegmentLabel() {
    FreeCells();
}

TqSegment* TqCustomSegmentLabel::Cell(int index) const {
    if (index < 0 || index >= m_numberOfChars) return nullptr;
    return m_cells[static_cast<std::size_t>(index)];
}

void TqCustomSegmentLabel::FreeCells() {
    for (TqSegment*& cell : m_cells) {
        delete cell;
        cell = nullptr;
    }
}

TqSegment* TqCustomSegmentLabel::MakeCell(int index) {
    auto* cell = new TqSegment(this);
    cell->SetParent(this);
    cell->SetSize(m_size);
    cell->SetBounds(index * m_size * 19, 0, cell->Width(), cell->Height());
    cell->SetLitColor(m_litColor);
    cell->SetUnLitColor(m_unLitColor);
    cell->SetColor(Color());
    cell->SetVisible(true);
    cell->SetParentShowHint(true);
    // Mouse events reach the label's handlers with the label as Sender and the cell's
    // own coordinates.
    cell->OnMouseDown = [this](TObject*, TMouseButtonKind b, TShiftState s, int x, int y) {
        if (OnMouseDown) OnMouseDown(this, b, s, x, y);
    };
    cell->OnMouseUp = [this](TObject*, TMouseButtonKind b, TShiftState s, int x, int y) {
        if (OnMouseUp) OnMouseUp(this, b, s, x, y);
    };
    cell->OnMouseMove = [this](TObject*, TShiftState s, int x, int y) {
        if (OnMouseMove) OnMouseMove(this, s, x, y);
    };
    cell->OnClick = [this](TObject*) {
        if (OnClick) OnClick(this);
    };
    cell->OnDblClick = [this](TObject*) {
        if (OnDblClick) OnDblClick(this);
    };
    return cell;
}

void TqCustomSegmentLabel::ApplyGridSize() {
    TCustomControl::SetBounds(Left(), Top(), m_size * 19 * m_numberOfChars, m_size * 29);
}

void TqCustomSegmentLabel::SetCount(std::uint8_t count) {
    m_numberOfChars = count;
    FreeCells();
    m_building = true;
    ApplyGridSize();
    m_building = false;
    for (int i = 0; i < count; ++i)
        m_cells[static_cast<std::size_t>(i)] = MakeCell(i);
    if (count > 0) DoCaption();
}

void TqCustomSegmentLabel::SetNumberOfChars(std::uint8_t value) {
    if (value != m_numberOfChars) SetCount(value);
}

void TqCustomSegmentLabel::DoUpdate() {
    SetCount(m_numberOfChars);
}

// Size is the cells' subrange (qSegSize 1..15); values from code are clamped into it.
void TqCustomSegmentLabel::SetSize(int value) {
    value = std::clamp(value, static_cast<int>(QSegSizeType().minValue),
                       static_cast<int>(QSegSizeType().maxValue));
    if (value == m_size) return;
    m_size = value;
    DoUpdate();
}

void TqCustomSegmentLabel::SetLitColor(TColor value) {
    if (value == m_litColor) return;
    m_litColor = value;
    for (int i = 0; i < m_numberOfChars; ++i)
        Cell(i)->SetLitColor(value);
}

void TqCustomSegmentLabel::SetUnLitColor(TColor value) {
    if (value == m_unLitColor) return;
    m_unLitColor = value;
    for (int i = 0; i < m_numberOfChars; ++i)
        Cell(i)->SetUnLitColor(value);
}

void TqCustomSegmentLabel::SetColor(TColor value) {
    if (value == Color()) return;
    TCustomControl::SetColor(value);
    for (int i = 0; i < m_numberOfChars; ++i)
        Cell(i)->SetColor(value);
}

void TqCustomSegmentLabel::SetParentColor(bool value) {
    if (value == ParentColor()) return;
    TCustomControl::SetParentColor(value);
    for (int i = 0; i < m_numberOfChars; ++i)
        Cell(i)->SetParentColor(value);
}

void TqCustomSegmentLabel::SetVisible(bool value) {
    if (value == Visible()) return;
    TCustomControl::SetVisible(value);
    for (int i = 0; i < m_numberOfChars; ++i)
        Cell(i)->SetVisible(value);
}

void TqCustomSegmentLabel::SetCaption(const std::string& value) {
    m_caption = value.empty() ? " " : value;
    DoCaption();
}

// Points and colons light the dots of the previous cell; a cell whose character does not
// change keeps the dots it has.
void TqCustomSegmentLabel::DoCaption() {
    std::size_t i = 0;
    int k = 0;
    while (k < m_numberOfChars) {
        TqSegment* cell = Cell(k);
        if (i >= m_caption.size()) {
            cell->SetPunktur(spNone);
            cell->SetChar(' ');
            ++k;
        } else {
            const auto c = static_cast<unsigned char>(m_caption[i]);
            const bool point = c == ',' || c == '.';
            const bool colon = c == ':' || c == ';';
            if ((point || colon) && k > 0) {
                Cell(k - 1)->SetPunktur(point ? spPunktum : spColon);
            } else if (point || colon) {
                cell->SetChar(c);
                ++k;
            } else {
                if (c != cell->Char()) {
                    cell->SetPunktur(spNone);
                    cell->SetChar(c < 32 ? ' ' : c);
                }
                ++k;
            }
        }
        ++i;
    }
}

// Any other size snaps back to the cell grid.
void TqCustomSegmentLabel::SetBounds(int ALeft, int ATop, int, int) {
    TCustomControl::SetBounds(ALeft, ATop, m_size * 19 * m_numberOfChars, m_size * 29);
}

void TqCustomSegmentLabel::WMEraseBkgnd(TMessage& Message) {
    Message.Result = 1;
}

void TqCustomSegmentLabel::WMSize(TMessage& Message) {
    TCustomControl::WMSize(Message);
    if (!m_building) ApplyGridSize();
}

} // namespace qv
