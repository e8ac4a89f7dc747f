#include "Screen.h"

#include "Application.h"

#include "platform/core/ClassBuilder.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <memory>
#include <set>
#include <vector>

namespace qv {

namespace {

struct TFcConfigDeleter {
    void operator()(FcConfig* c) const { FcConfigDestroy(c); }
};
struct TFcPatternDeleter {
    void operator()(FcPattern* p) const { FcPatternDestroy(p); }
};
struct TFcObjectSetDeleter {
    void operator()(FcObjectSet* o) const { FcObjectSetDestroy(o); }
};
struct TFcFontSetDeleter {
    void operator()(FcFontSet* s) const { FcFontSetDestroy(s); }
};

// The family names fontconfig lists, sorted case-insensitively, each once.
std::vector<std::string> InstalledFamilies() {
    std::unique_ptr<FcConfig, TFcConfigDeleter> config(FcInitLoadConfigAndFonts());
    if (!config) return {};
    std::unique_ptr<FcPattern, TFcPatternDeleter> pattern(FcPatternCreate());
    std::unique_ptr<FcObjectSet, TFcObjectSetDeleter> objects(FcObjectSetBuild(FC_FAMILY, nullptr));
    std::unique_ptr<FcFontSet, TFcFontSetDeleter> fonts(
        FcFontList(config.get(), pattern.get(), objects.get()));
    const auto lessNoCase = [](const std::string& a, const std::string& b) {
        return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                            [](char x, char y) {
                                                return std::tolower(static_cast<unsigned char>(x)) <
                                                       std::tolower(static_cast<unsigned char>(y));
                                            });
    };
    std::set<std::string, decltype(lessNoCase)> names(lessNoCase);
    for (int i = 0; fonts && i < fonts->nfont; ++i) {
        FcChar8* family = nullptr;
        if (FcPatternGetString(fonts->fonts[i], FC_FAMILY, 0, &family) == FcResultMatch && family)
            names.insert(reinterpret_cast<const char*>(family));
    }
    return {names.begin(), names.end()};
}

bool IsListedForm(const TCustomForm* form) {
    return !form->IsPopupWindow();
}

} // namespace

const TClassInfo& TScreen::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TScreen>("TScreen", &TComponent::StaticClassInfo()).Build();
    return info;
}

TScreen::TScreen() : TComponent(nullptr) {}

TScreen& Screen() {
    static TScreen screen;
    return screen;
}

int TScreen::Width() const {
    return Application().Backend().ScreenBounds().Width();
}
int TScreen::Height() const {
    return Application().Backend().ScreenBounds().Height();
}
TRect TScreen::WorkAreaRect() const {
    return Application().Backend().WorkArea();
}

void TScreen::SetCursor(TCursor v) {
    if (v == m_cursor) return;
    m_cursor = v;
    Application().ScreenCursorChanged();
}

const TStrings& TScreen::Fonts() {
    if (!m_fonts) {
        m_fonts = std::make_unique<TStringList>();
        for (const std::string& family : InstalledFamilies())
            m_fonts->Add(family);
    }
    return *m_fonts;
}

int TScreen::FormCount() const {
    const auto& forms = Application().Forms();
    return static_cast<int>(std::count_if(forms.begin(), forms.end(), IsListedForm));
}

TCustomForm* TScreen::Forms(int index) const {
    int position = 0;
    for (TCustomForm* form : Application().Forms())
        if (IsListedForm(form) && position++ == index) return form;
    throw ERangeError("Form index out of bounds (" + std::to_string(index) + ")");
}

TCustomForm* TScreen::ActiveForm() const {
    return Application().ActiveForm();
}

TWinControl* TScreen::ActiveControl() const {
    const TCustomForm* form = ActiveForm();
    return form ? form->ActiveControl() : nullptr;
}

} // namespace qv
