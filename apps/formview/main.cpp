// formview FILE [--png OUT] [--design]: reads a text form file and runs the form in a
// window (X11 when a display answers, headless otherwise), or writes a screenshot of it to
// OUT as PNG. --design reads the form in design mode. Errors in the file are reported as
// "FILE: line L, column C: ..." with exit status 2.

#include "package/PackageScope.h"
#include "platform/backend/Backend.h"
#include "platform/controls/Application.h"
#include "platform/controls/StandardClasses.h"
#include "platform/graphics/Bitmap.h"
#include "platform/streaming/Reader.h"

#include <cstring>
#include <iostream>
#include <memory>
#include <string>

using namespace qv;

namespace {

struct TOptions {
    std::string file;
    std::string png; // empty: run the form
    bool design{false};
};

constexpr int exitUsage = 1;
constexpr int exitBadForm = 2;

bool ParseArguments(int argc, char** argv, TOptions& options) {
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--design") {
            options.design = true;
        } else if (arg == "--png" && i + 1 < argc) {
            options.png = argv[++i];
        } else if (arg.starts_with("--") || !options.file.empty()) {
            return false;
        } else {
            options.file = arg;
        }
    }
    return !options.file.empty();
}

std::unique_ptr<TCustomForm> ReadForm(const TOptions& options) {
    TReadOptions read;
    read.designing = options.design;
    std::unique_ptr<TComponent> root = ReadComponentFile(options.file, read);
    auto* form = dynamic_cast<TCustomForm*>(root.get());
    if (!form)
        throw EReadError(options.file + ": the root object is a " + root->ClassName() +
                         ", not a form");
    root.release();
    return std::unique_ptr<TCustomForm>(form);
}

void WriteScreenshot(TCustomForm& form, const std::string& path) {
    form.Show();
    Application().ProcessMessages();
    TBitmap shot;
    form.Screenshot(shot);
    shot.SaveToFile(path);
}

void RunForm(TCustomForm& form) {
    Application().SetBackend(CreateDefaultBackend());
    if (std::strcmp(Application().Backend().Name(), "headless") == 0)
        throw EInvalidOperation("no display answers; --png OUT writes a screenshot instead");
    Application().SetMainForm(&form);
    Application().Run();
}

} // namespace

int main(int argc, char** argv) {
    TOptions options;
    if (!ParseArguments(argc, argv, options)) {
        std::cerr << "usage: formview FILE [--png OUT] [--design]\n";
        return exitUsage;
    }
    TPackageScope package;
    std::unique_ptr<TCustomForm> form;
    try {
        form = ReadForm(options);
    } catch (const Exception& e) {
        std::cerr << e.Message() << '\n';
        return exitBadForm;
    }
    try {
        if (options.png.empty())
            RunForm(*form);
        else
            WriteScreenshot(*form, options.png);
    } catch (const Exception& e) {
        std::cerr << "formview: " << e.Message() << '\n';
        return exitUsage;
    }
    return 0;
}
