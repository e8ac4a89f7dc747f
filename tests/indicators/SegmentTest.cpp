#include "IndicatorFixture.h"

#include "indicators/Qseg.h"

#include "platform/core/DateTime.h"

using namespace qv;

namespace {
constexpr TColor kLit = 0x00FF00, kUnlit = 0x002000, kBlack = 0;
} // namespace

TEST_F(IndicatorTest, NewCellIsBlackWithEverySegmentUnlit) {
    auto* cell = new TqSegment(form);
    cell->SetParent(form);
    EXPECT_EQ(cell->Width(), 19);
    EXPECT_EQ(cell->Height(), 29);
    EXPECT_EQ(PixelOf(*cell, 0, 0), kBlack);
    EXPECT_EQ(PixelOf(*cell, 9, 3), kUnlit);   // top bar
    EXPECT_EQ(PixelOf(*cell, 18, 27), kUnlit); // the point: a line at Size 1
}

TEST_F(IndicatorTest, CellGeometryScalesWithSizeAndSnapsHeights) {
    auto* cell = new TqSegment(form);
    cell->SetParent(form);
    cell->SetHeight(100);
    EXPECT_EQ(cell->Size(), 3);
    EXPECT_EQ(cell->Height(), 87);
    EXPECT_EQ(cell->Width(), 57);
    cell->SetChar('0');                        // crossed by the rising diagonal (segment 12)
    EXPECT_EQ(PixelOf(*cell, 27, 9), kLit);    // top bar at Size 3: y from 6 to 12
    EXPECT_EQ(PixelOf(*cell, 36, 24), kLit);   // on the upper right diagonal
    EXPECT_EQ(PixelOf(*cell, 20, 45), kUnlit); // middle bar (left half): not part of "0"
    EXPECT_EQ(PixelOf(*cell, 52, 81), kUnlit); // the point, with d = 1 at Size 3
    cell->SetHeight(20);
    EXPECT_EQ(cell->Size(), 1);
    EXPECT_EQ(cell->Height(), 29);
}

TEST_F(IndicatorTest, DotsFollowPunkturAndTheCharacterTable) {
    auto* cell = new TqSegment(form);
    cell->SetPunktur(spColon);
    EXPECT_EQ(cell->LitSegments(), Segments({15, 16}));
    cell->SetChar('A'); // the table entry replaces the dots
    EXPECT_EQ(cell->LitSegments(), Segments({1, 2, 4, 5, 6, 7, 9}));
    cell->SetPunktur(spColon); // the same value: nothing is re-applied
    EXPECT_EQ(cell->LitSegments(), Segments({1, 2, 4, 5, 6, 7, 9}));
    cell->SetPunktur(spPunktum);
    EXPECT_EQ(cell->LitSegments(), Segments({1, 2, 4, 5, 6, 7, 9, 16}));
    cell->SetChar(':');
    EXPECT_EQ(cell->LitSegments(), Segments({15, 16}));

    EXPECT_EQ(CharLook('7'), Segments({1, 2, 4, 9}));
    EXPECT_EQ(CharLook('x'), CharLook('X'));
    EXPECT_EQ(CharLook(160), 0u);
    EXPECT_EQ(CharLook(197), CharLook('A'));
    const qSegSet old = CharLook('Q');
    ChangeACharLook('Q', Segments({3, 8}));
    auto* q = new TqSegment(form);
    q->SetChar('Q');
    EXPECT_EQ(q->LitSegments(), Segments({3, 8}));
    ChangeACharLook('Q', old);
    EXPECT_EQ(q->LitSegments(), Segments({3, 8})); // until its Char is set again
}

TEST_F(IndicatorTest, TransparentCellShowsItsParentBetweenSegments) {
    auto* cell = new TqSegment(form);
    cell->SetParent(form);
    cell->SetTransparent(true);
    EXPECT_EQ(PixelOf(*cell, 0, 0), TColor(0xFF00FF));
    EXPECT_EQ(PixelOf(*cell, 9, 3), kUnlit);
}

// An opaque cell copies a picture it keeps; it must still show every change, exactly as a
// transparent cell draws the same segments straight onto the same background.
TEST_F(IndicatorTest, OpaqueCellFollowsEveryChangeOfItsLook) {
    auto* opaque = new TqSegment(form);
    opaque->SetParent(form);
    opaque->SetParentColor(true);
    auto* direct = new TqSegment(form);
    direct->SetParent(form);
    direct->SetTransparent(true);
    direct->SetLeft(100);
    const auto same = [&](const char* step) {
        return SamePicture(*opaque, *direct, std::string("segment-cache-") + step);
    };
    const auto both = [&](auto change) { change(*opaque), change(*direct); };
    ASSERT_TRUE(same("new"));
    both([](TqSegment& c) { c.SetChar('K'); });
    EXPECT_TRUE(same("char"));
    both([](TqSegment& c) { c.SetPunktur(spColon); });
    EXPECT_TRUE(same("punktur"));
    both([](TqSegment& c) { c.SetLitColor(TColor(0x0000FF)), c.SetUnLitColor(TColor(0x202020)); });
    EXPECT_TRUE(same("colours"));
    form->SetColor(TColor(0x804000)); // reaches the opaque cell through ParentColor
    EXPECT_TRUE(same("parent-colour"));
    both([](TqSegment& c) { c.SetSize(2); });
    EXPECT_TRUE(same("size"));
}

TEST_F(IndicatorTest, LabelFoldsPointsIntoThePreviousCell) {
    auto* label = new TqSegmentLabel(form);
    label->SetParent(form);
    EXPECT_EQ(label->NumberOfChars(), 11);
    EXPECT_EQ(label->Width(), 209);
    EXPECT_EQ(label->Height(), 29);
    label->SetNumberOfChars(4);
    label->SetCaption("12.5");
    const auto chars = [&] {
        std::string s;
        for (int i = 0; i < label->NumberOfChars(); ++i)
            s += static_cast<char>(label->Cell(i)->Char());
        return s;
    };
    EXPECT_EQ(chars(), "125 ");
    EXPECT_EQ(label->Cell(1)->Punktur(), spPunktum);
    label->SetCaption(".5");
    EXPECT_EQ(chars(), ".5  ");
    label->SetCaption("1.2");
    label->SetCaption("12");
    EXPECT_EQ(label->Cell(0)->Punktur(), spPunktum); // "1" did not change: it keeps its point
    label->SetCaption("");
    EXPECT_EQ(label->Caption(), " ");
    label->SetWidth(500);
    label->SetHeight(7);
    EXPECT_EQ(label->Width(), 76);
    EXPECT_EQ(label->Height(), 29);
}

TEST_F(IndicatorTest, LabelForwardsCellMouseEventsWithCellCoordinates) {
    auto* label = new TqSegmentLabel(form);
    label->SetParent(form);
    label->SetBounds(20, 30, 0, 0);
    TObject* sender = nullptr;
    int x = -1, clicks = 0;
    label->OnMouseDown = [&](TObject* s, TMouseButtonKind, TShiftState, int X, int) {
        sender = s;
        x = X;
    };
    label->OnClick = [&](TObject*) { ++clicks; };
    Headless().MouseDown(form->NativeWindow(), {20 + 38 + 5, 40});
    Headless().MouseUp(form->NativeWindow(), {20 + 38 + 5, 40});
    Pump();
    EXPECT_EQ(sender, label);
    EXPECT_EQ(x, 5);
    EXPECT_EQ(clicks, 1);
}

TEST_F(IndicatorTest, ClockShowsTheTimeOnItsCells) {
    TScopedClock clock([] { return EncodeDate(2024, 5, 6) + EncodeTime(9, 30, 0, 0); });
    auto* c = new TqSegmentClock(form);
    c->SetParent(form);
    ASSERT_EQ(c->NumberOfChars(), 4);
    std::string shown;
    for (int i = 0; i < 4; ++i)
        shown += static_cast<char>(c->Cell(i)->Char());
    EXPECT_EQ(shown, "0930");
    EXPECT_EQ(c->Cell(1)->Punktur(), spColon);

    const std::pair<qxClockFormat, int> counts[] = {{qxc12Hour, 4},    {qxc12Hour_AMPM, 7},
                                                    {qxc12Hour_AP, 6}, {qxc12HourAMPM, 6},
                                                    {qxc12HourAP, 5},  {qxc24Hour, 4}};
    for (auto [format, cells] : counts) {
        c->SetClockFormat(format);
        EXPECT_EQ(c->NumberOfChars(), cells) << format;
    }
    c->SetShowSeconds(true);
    c->SetClockFormat(qxc12Hour_AMPM);
    EXPECT_EQ(c->NumberOfChars(), 9);
    std::string ampm;
    for (int i = 0; i < 9; ++i)
        ampm += static_cast<char>(c->Cell(i)->Char());
    EXPECT_EQ(ampm, "093000 am");

    int changes = 0;
    c->OnTimeChange = [&](TObject*) { ++changes; };
    c->SetShowSeconds(false);
    c->SetClockFormat(qxc24Hour);
    c->SetOffSetTime(-90); // 08:00
    std::string offset;
    for (int i = 0; i < 4; ++i)
        offset += static_cast<char>(c->Cell(i)->Char());
    EXPECT_EQ(offset, "0800");
    EXPECT_GE(changes, 1);
}
