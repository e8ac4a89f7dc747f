// gallery [--png DIR] [--pictures DIR] [--list]: every component of the designer registry,
// palette page by palette page, live in a window. --png DIR renders each page headless to
// DIR/<page>.png and prints the paths; --pictures DIR renders each component's cell (the
// component with its showcase settings and its class name) to DIR/<class>.png; --list prints
// "<page>: <class> <class> ..." per page. Without a display the pages are rendered to
// gallery-pages/.

#include "GalleryForm.h"
#include "GalleryLayout.h"

#include "package/PackageScope.h"
#include "platform/backend/Backend.h"
#include "platform/controls/Application.h"
#include "platform/core/DesignerRegistry.h"
#include "platform/core/Exceptions.h"
#include "platform/core/PropertyAccess.h"
#include "platform/graphics/Bitmap.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

using namespace qv;
using namespace qv::gallery;

namespace {

struct TOptions {
    std::string pngDir;      // empty: a window
    std::string picturesDir; // one picture per component
    bool list{false};
};

const char* const headlessFolder = "gallery-pages";

bool ParseArguments(int argc, char** argv, TOptions& options) {
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--list")
            options.list = true;
        else if (arg == "--png" && i + 1 < argc)
            options.pngDir = argv[++i];
        else if (arg == "--pictures" && i + 1 < argc)
            options.picturesDir = argv[++i];
        else
            return false;
    }
    return true;
}

void ListPages() {
    for (const std::string& page : PalettePages()) {
        std::vector<std::string> names;
        for (const TClassInfo* cls : PaletteClasses(page))
            names.push_back(cls->name);
        std::cout << PageListing(page, names) << '\n';
    }
}

void RenderPages(TGalleryForm& form, const std::string& dir) {
    std::filesystem::create_directories(dir);
    form.Show();
    if (form.Pages().empty()) std::cerr << "gallery: no palette pages are registered\n";
    for (int i = 0; i < static_cast<int>(form.Pages().size()); ++i) {
        form.SelectPage(i);
        Application().ProcessMessages();
        TBitmap shot;
        form.Screenshot(shot);
        const std::string path =
            (std::filesystem::path(dir) /
             (PageFileName(form.Pages()[static_cast<std::size_t>(i)]) + ".png"))
                .string();
        shot.SaveToFile(path);
        std::cout << path << '\n';
    }
}

// Switches (components publishing SwitchOn) also get DIR/<class>-states.png: the control
// off, on and disabled side by side, a few pixels apart on the form's colour.
void RenderSwitchStates(TControl& control, const std::string& dir, std::ostream& index) {
    const std::string enabled = GetPropText(control, "Enabled");
    const std::string on = GetPropText(control, "SwitchOn");
    const int W = control.Width(), H = control.Height(), gap = 6;
    TBitmap strip(3 * W + 2 * gap, H);
    strip.Canvas().Brush().SetColor(clBtnFace);
    strip.Canvas().FillRect({0, 0, strip.Width(), strip.Height()});
    const std::pair<const char*, const char*> states[] = {
        {"True", "False"}, {"True", "True"}, {"False", on.c_str()}};
    for (int i = 0; i < 3; ++i) {
        SetPropText(control, "Enabled", states[i].first);
        SetPropText(control, "SwitchOn", states[i].second);
        TBitmap shot;
        control.PaintTo(shot);
        strip.Canvas().Draw(i * (W + gap), 0, shot);
    }
    SetPropText(control, "Enabled", enabled);
    SetPropText(control, "SwitchOn", on);
    const std::string name = control.ClassName() + "-states.png";
    strip.SaveToFile((std::filesystem::path(dir) / name).string());
    index << "![" << control.ClassName() << " off, on, disabled](" << name << ") ";
}

bool Publishes(const TComponent& component, const std::string& property) {
    for (const TPropInfo* p : GetPropList(component))
        if (p->name == property) return true;
    return false;
}

// Writes DIR/<class>.png for every component and DIR/README.md, which shows them page by page.
void RenderComponentPictures(TGalleryForm& form, const std::string& dir) {
    std::filesystem::create_directories(dir);
    std::ofstream index(std::filesystem::path(dir) / "README.md");
    index << "# The components\n\nEach component as the gallery shows it, palette page by "
             "palette page.\nRegenerate with `scripts/dev pictures`.\n";
    form.Show();
    for (int i = 0; i < static_cast<int>(form.Pages().size()); ++i) {
        index << "\n## " << form.Pages()[static_cast<std::size_t>(i)] << "\n\n";
        form.SelectPage(i);
        Application().ProcessMessages();
        TBitmap shot;
        form.Screenshot(shot);
        for (TComponentCell* cell : form.PageCells(i)) {
            const TPoint at = form.ScreenToClient(cell->ClientToScreen({0, 0}));
            TBitmap picture(cell->Width(), cell->Height());
            picture.Canvas().CopyRect({0, 0, cell->Width(), cell->Height()}, shot.Canvas(),
                                      Bounds(at.x, at.y, cell->Width(), cell->Height()));
            const std::string name = cell->PictureName();
            const std::string path = (std::filesystem::path(dir) / (name + ".png")).string();
            picture.SaveToFile(path);
            index << "![" << name << "](" << name << ".png) ";
            std::cout << path << '\n';
        }
        index << '\n';
        std::ostringstream states;
        for (TComponentCell* cell : form.PageCells(i))
            if (auto* control = dynamic_cast<TControl*>(&cell->Shown());
                control && Publishes(*control, "SwitchOn"))
                RenderSwitchStates(*control, dir, states);
        if (!states.str().empty()) index << "\n" << states.str() << '\n';
    }
}

void RunWindow(TGalleryForm& form) {
    form.SetPosition(poScreenCenter);
    form.StartAnimation();
    Application().SetMainForm(&form);
    Application().Run();
}

} // namespace

int main(int argc, char** argv) {
    TOptions options;
    if (!ParseArguments(argc, argv, options)) {
        std::cerr << "usage: gallery [--png DIR] [--pictures DIR] [--list]\n";
        return 1;
    }
    TPackageScope package;
    if (options.list) {
        ListPages();
        return 0;
    }
    try {
        if (options.pngDir.empty() && options.picturesDir.empty()) {
            Application().SetBackend(CreateDefaultBackend());
            if (std::strcmp(Application().Backend().Name(), "headless") == 0) {
                std::cerr << "gallery: no display; rendering the pages to " << headlessFolder
                          << "/\n";
                options.pngDir = headlessFolder;
            }
        }
        auto form = std::make_unique<TGalleryForm>(nullptr);
        form->Build();
        if (!options.picturesDir.empty())
            RenderComponentPictures(*form, options.picturesDir);
        else if (options.pngDir.empty())
            RunWindow(*form);
        else
            RenderPages(*form, options.pngDir);
    } catch (const Exception& e) {
        std::cerr << "gallery: " << e.Message() << '\n';
        return 1;
    }
    return 0;
}
