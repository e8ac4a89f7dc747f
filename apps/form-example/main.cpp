// form-example OUT.png: builds a small form in code (a panel with a caption, a label, an
// edit and a list box) on the headless backend and writes its picture to OUT.png.

#include "platform/controls/Application.h"
#include "platform/controls/Edit.h"
#include "platform/controls/Label.h"
#include "platform/controls/ListBox.h"
#include "platform/controls/Panel.h"

#include <cstdio>
#include <exception>

using namespace qv;

namespace {

void BuildForm(TForm& form) {
    form.SetCaption("Form example");
    form.SetBounds(0, 0, 320, 220);

    auto* panel = new TPanel(&form);
    panel->SetParent(&form);
    panel->SetAlign(alTop);
    panel->SetHeight(36);
    panel->SetBevelInner(bvLowered);
    panel->SetCaption("Controls drawn by the framework");

    auto* label = new TLabel(&form);
    label->SetParent(&form);
    label->SetBounds(12, 52, 0, 0);
    label->SetCaption("&Name:");

    auto* edit = new TEdit(&form);
    edit->SetParent(&form);
    edit->SetBounds(60, 48, 150, 0);
    edit->SetText("Ada Lovelace");
    label->SetFocusControl(edit);

    auto* list = new TListBox(&form);
    list->SetParent(&form);
    list->SetBounds(12, 84, 198, 120);
    for (const char* item : {"Panel", "Label", "Edit", "List box", "Combo box", "Hint window"})
        list->Items()->Add(item);
    list->SetItemIndex(2);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s OUT.png\n", argv[0]);
        return 2;
    }
    try {
        TForm form(nullptr);
        BuildForm(form);
        form.Show();
        Application().ProcessMessages();
        TBitmap shot;
        form.Screenshot(shot);
        shot.SaveToFile(argv[1]);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "form-example: %s\n", e.what());
        return 1;
    }
    return 0;
}
