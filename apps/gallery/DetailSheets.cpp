#include "DetailSheets.h"

#include "controls/Qbtn2.h"
#include "platform/controls/Application.h"
#include "platform/controls/Form.h"
#include "platform/controls/Messages.h"
#include "platform/graphics/Text.h"
#include "slidebar/Slidebar.h"

#include <filesystem>
#include <iostream>
#include <memory>
#include <vector>

namespace qv::gallery {

namespace {

// One control of a sheet and the name written under it.
struct TTile {
    TControl* control;
    std::string name;
};

// Photographs `form`, enlarges it `scale` times into tiles of `tile` pixels (at 1x) laid out in
// a row of `columns`, and writes each tile's name under it.
void SaveSheet(TForm& form, const std::vector<TTile>& tiles, int tile, int columns, int scale,
               const std::string& path) {
    Application().ProcessMessages();
    TBitmap shot;
    form.Screenshot(shot);
    const int rows = (static_cast<int>(tiles.size()) + columns - 1) / columns;
    const int textHeight = 18;
    TBitmap sheet(columns * tile * scale, rows * (tile * scale + textHeight));
    TCanvas& c = sheet.Canvas();
    c.Brush().SetColor(clWhite);
    c.FillRect({0, 0, sheet.Width(), sheet.Height()});
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        const int column = static_cast<int>(i) % columns, row = static_cast<int>(i) / columns;
        const int left = column * tile * scale, top = row * (tile * scale + textHeight);
        c.CopyRect({left, top, left + tile * scale, top + tile * scale}, shot.Canvas(),
                   Bounds(column * tile, row * tile, tile, tile));
        TRect label{left, top + tile * scale, left + tile * scale, top + tile * scale + textHeight};
        c.Brush().SetStyle(bsClear);
        c.DrawText(tiles[i].name, label, DT_SINGLELINE | DT_CENTER | DT_VCENTER | DT_NOPREFIX);
        c.Brush().SetStyle(bsSolid);
    }
    sheet.SaveToFile(path);
}

std::unique_ptr<TForm> SheetForm(int width, int height) {
    auto form = std::make_unique<TForm>(nullptr);
    form->SetBounds(0, 0, width, height);
    form->Show();
    return form;
}

// Every thumb style on a bar that suits it: horizontal forms on a vertical bar.
void RenderThumbs(const std::string& path) {
    constexpr int tile = 50, columns = 8, scale = 3, styles = 16;
    auto form = SheetForm(tile * columns, tile * 2);
    std::vector<TTile> tiles;
    for (int s = 0; s < styles; ++s) {
        const auto style = static_cast<TThumbStyle>(s);
        auto* bar = new TqSlideBar(form.get());
        bar->SetParent(form.get());
        bar->SetThumbStyle(style);
        const TRect thumb = bar->WhereIsBar();
        const bool upright = thumb.Width() <= thumb.Height();
        const int left = s % columns * tile, top = s / columns * tile;
        if (upright)
            bar->SetBounds(left + 5, top + 14, 40, 22);
        else
            bar->SetBounds(left + 14, top + 5, 22, 40);
        bar->SetMax(4);
        bar->SetPosition(2);
        tiles.push_back({bar, TypeInfoOf<TThumbStyle>().names[static_cast<std::size_t>(s)]});
    }
    SaveSheet(*form, tiles, tile, columns, scale, path);
}

// The spin buttons released, then each button pressed (the press is never released, so it
// clicks nothing).
void RenderSpinStates(const std::string& path) {
    constexpr int tile = 30, columns = 6, scale = 5;
    auto form = SheetForm(tile * columns, tile);
    std::vector<TTile> tiles;
    const auto add = [&](TqxSpinBtn* spin, const char* name, int pressY) {
        const int index = static_cast<int>(tiles.size());
        spin->SetParent(form.get());
        spin->SetBounds(index * tile + 7, 4, 16, 21);
        if (pressY >= 0) spin->Perform(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(8, pressY));
        tiles.push_back({spin, name});
    };
    add(new TqxSpinBtn(form.get()), "released", -1);
    add(new TqxSpinBtn(form.get()), "up pressed", 5);
    add(new TqxSpinBtn(form.get()), "down pressed", 15);
    add(new TqxCenterSpinBtn(form.get()), "centre form", -1);
    add(new TqxCenterSpinBtn(form.get()), "centre pressed", 10);
    add(new TqxCenterSpinBtn(form.get()), "down pressed", 17);
    SaveSheet(*form, tiles, tile, columns, scale, path);
    Application().SetCaptureControl(nullptr);
}

} // namespace

void RenderDetailSheets(const std::string& dir, std::ostream& index) {
    const std::filesystem::path folder(dir);
    const std::string thumbs = (folder / "TqSlideBar-thumbs.png").string();
    const std::string spins = (folder / "TqxSpinBtn-states.png").string();
    RenderThumbs(thumbs);
    RenderSpinStates(spins);
    index << "\n## Details\n\n![The sixteen thumbs of TqSlideBar](TqSlideBar-thumbs.png)\n\n"
             "![TqxSpinBtn and TqxCenterSpinBtn released and pressed](TqxSpinBtn-states.png)\n";
    std::cout << thumbs << '\n' << spins << '\n';
}

} // namespace qv::gallery
