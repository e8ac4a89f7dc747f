// The tile walk and the tiled paint shared by the tile maps and the form background, and the
// tile maps on a form: what shows where no tile lies, and PassMouseOn.

#include "backgrounds/Blend.h"
#include "buttons/Qanimate.h"
#include "componentbase/Tiles.h"
#include "package/Package.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "support/PixelEvidence.h"

#include <gtest/gtest.h>

#include <random>
#include <utility>
#include <vector>

using namespace qv;

namespace {

using TCorners = std::vector<std::pair<int, int>>;

TCorners Walk(TSize area, TSize tile, TRect visible, TTileOrder order) {
    TCorners corners;
    ForEachTile(area, tile, visible, order, [&](int x, int y) { corners.emplace_back(x, y); });
    return corners;
}

void Randomize(TBitmap& b, unsigned seed) {
    std::mt19937 random(seed);
    for (int y = 0; y < b.Height(); ++y)
        for (int x = 0; x < b.Width(); ++x)
            b.Pixels().At(x, y) = random() & 0xFFFFFF;
}

// Every tile drawn whole through the canvas, as the definition lays them.
TPixelBuffer ReferenceTiles(TBitmap& tile, int w, int h, TColor font, TColor brush) {
    TBitmap out(w, h);
    out.Canvas().Font().SetColor(font);
    out.Canvas().Brush().SetColor(brush);
    for (int x = 0; x < w; x += tile.Width())
        for (int y = 0; y < h; y += tile.Height())
            out.Canvas().Draw(x, y, tile);
    return out.Pixels();
}

TPixelBuffer Tiled(TBitmap& tile, int w, int h, TColor font, TColor brush, TRect clip) {
    TBitmap out(w, h);
    const TPixelBuffer reference = ReferenceTiles(tile, w, h, font, brush);
    // Outside the clip the picture keeps what the reference has, so only the clip is compared.
    out.Pixels() = reference;
    for (int y = clip.top; y < clip.bottom; ++y)
        for (int x = clip.left; x < clip.right; ++x)
            out.Pixels().At(x, y) = 0;
    out.Canvas().Font().SetColor(font);
    out.Canvas().Brush().SetColor(brush);
    HRGN region = CreateRectRgn(clip.left, clip.top, clip.right, clip.bottom);
    out.Canvas().Handle()->SelectClipRgn(region.get());
    TileBitmap(out.Canvas(), tile, w, h, TTileOrder::ColumnsOuter);
    out.Canvas().Handle()->SelectClipRgn(nullptr);
    return out.Pixels();
}

} // namespace

TEST(Tiles, WalkColumnsOrRowsOuterAndOnlyWhatIsVisible) {
    const TRect all{0, 0, 40, 20};
    EXPECT_EQ(Walk({40, 20}, {16, 16}, all, TTileOrder::ColumnsOuter),
              (TCorners{{0, 0}, {0, 16}, {16, 0}, {16, 16}, {32, 0}, {32, 16}}));
    EXPECT_EQ(Walk({40, 20}, {16, 16}, all, TTileOrder::RowsOuter),
              (TCorners{{0, 0}, {16, 0}, {32, 0}, {0, 16}, {16, 16}, {32, 16}}));
    EXPECT_EQ(Walk({40, 20}, {16, 16}, {17, 3, 33, 15}, TTileOrder::ColumnsOuter),
              (TCorners{{16, 0}, {32, 0}}));
    EXPECT_TRUE(Walk({40, 20}, {16, 16}, {40, 0, 90, 20}, TTileOrder::RowsOuter).empty());
    EXPECT_TRUE(Walk({40, 20}, {0, 16}, all, TTileOrder::RowsOuter).empty());
    EXPECT_TRUE(Walk({0, 0}, {16, 16}, all, TTileOrder::RowsOuter).empty());
}

// Small tiles are drawn in blocks, large ones one by one: the pixels of drawing every tile,
// also of a monochrome bitmap in the canvas's colours and inside a clip.
TEST(Tiles, TiledPaintEqualsDrawingEveryTile) {
    for (auto [w, h] : {std::pair{1, 1}, std::pair{5, 3}, std::pair{63, 70}, std::pair{70, 65}}) {
        TBitmap tile(w, h);
    Randomize(tile, static_cast<unsigned>(w * 100 + h));
        for (bool mono : {false, true}) {
            tile.SetMonochrome(mono);
            for (TRect clip : {TRect{0, 0, 203, 151}, TRect{37, 11, 190, 140}}) {
                const TPixelBuffer actual = Tiled(tile, 203, 151, clRed, clBlue, clip);
                const TPixelBuffer expected = ReferenceTiles(tile, 203, 151, clRed, clBlue);
                const std::string name = "tiles-" + std::to_string(w) + "x" + std::to_string(h) +
                                         (mono ? "-mono" : "") + "-" + std::to_string(clip.left);
                EXPECT_EQ(test::CountDifferentPixels(actual, expected), 0)
                    << test::WritePixelEvidence(std::string(QV_TEST_OUT) + "/backgrounds", name,
                                                actual, expected);
            }
        }
    }
}

class TileMap : public ::testing::Test {
protected:
    void SetUp() override {
        InitializePackage();
        form = new TForm(nullptr);
        form->SetBounds(0, 0, 300, 200);
        form->SetColor(RGB(0, 200, 0));
        form->Show();
    }
    void TearDown() override {
        delete form;
        FinalizePackage();
    }
    TColor At(int x, int y) {
        Application().ProcessMessages();
        TBitmap shot;
        form->Screenshot(shot);
        return shot.Canvas().Pixel(x, y);
    }
    template <class T> T* Add(TRect r) {
        auto* t = new T(form);
        t->SetParent(form);
        t->SetBoundsRect(r);
        return t;
    }
    TForm* form{nullptr};
};

// Where no tile lies the form shows, for both twins; the bitmap is copied in.
TEST_F(TileMap, EmptyMapsShowTheirParentAndTilesCoverThemCut) {
    auto* windowed = Add<TqTileMap>({10, 10, 50, 30});
    auto* graphic = Add<TqNWTileMap>({100, 10, 140, 30});
    int paints = 0;
    windowed->OnPaint = [&](TObject*) { ++paints; };
    EXPECT_EQ(At(20, 20), RGB(0, 200, 0));
    EXPECT_EQ(At(120, 20), RGB(0, 200, 0));
    EXPECT_GT(paints, 0);
    TBitmap tile(16, 16);
    Randomize(tile, 3);
    windowed->SetBitmap(&tile);
    graphic->SetBitmap(&tile);
    tile.Canvas().SetPixel(0, 0, clBlack); // a copy: the maps keep what they were given
    for (auto [x, y] : {std::pair{0, 0}, std::pair{39, 19}, std::pair{17, 5}, std::pair{33, 18}}) {
        const TColor expected = PixelToColor(windowed->Bitmap()->Pixels().At(x % 16, y % 16));
        EXPECT_EQ(At(10 + x, 10 + y), expected);
        EXPECT_EQ(At(100 + x, 10 + y), expected);
    }
    EXPECT_EQ(At(50, 20), RGB(0, 200, 0)); // cut at the edge
}

TEST_F(TileMap, PassMouseOnLetsClicksReachTheControlBeneath) {
    auto* button = Add<TqColorBtn>({10, 10, 70, 40});
    auto* map = Add<TqNWTileMap>({10, 10, 70, 40});
    int buttonClicks = 0, mapClicks = 0;
    button->OnClick = [&](TObject*) { ++buttonClicks; };
    map->OnClick = [&](TObject*) { ++mapClicks; };
    auto click = [&] {
        auto& headless = static_cast<THeadlessBackend&>(Application().Backend());
        headless.MouseDown(form->NativeWindow(), {30, 20});
        headless.MouseUp(form->NativeWindow(), {30, 20});
        Application().ProcessMessages();
    };
    click();
    EXPECT_EQ(mapClicks, 1);
    EXPECT_EQ(buttonClicks, 0);
    map->SetPassMouseOn(true);
    click();
    EXPECT_EQ(mapClicks, 1);
    EXPECT_EQ(buttonClicks, 1);
}

// A 1 x 1 tile over 4000 x 3000: every visible pixel, drawn in blocks.
TEST_F(TileMap, OnePixelTileOverAHugeMap) {
    auto* map = Add<TqTileMap>({0, 0, 4000, 3000});
    TBitmap dot(1, 1);
    dot.Pixels().At(0, 0) = 0x123456;
    map->SetBitmap(&dot);
    EXPECT_EQ(At(0, 0), PixelToColor(0x123456));
    EXPECT_EQ(At(299, 199), PixelToColor(0x123456));
}
