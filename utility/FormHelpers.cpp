#include "utility/FormHelpers.h"

#include <memory>

namespace qv {

namespace {
// The unit's hint appearance; made and freed by Mystd's initialization and finalization.
std::unique_ptr<THintAppearance> g_hintAppearance;
} // namespace

TCustomForm& FindForm(const TComponent& component) {
    for (TComponent* owner = component.Owner(); owner; owner = owner->Owner())
        if (auto* form = dynamic_cast<TCustomForm*>(owner)) return *form;
    throw EComponentError("NoForm");
}

const THintAppearance* HintAppearance() {
    return g_hintAppearance.get();
}

void CreateHintAppearance() {
    g_hintAppearance = std::make_unique<THintAppearance>();
    TFont& font = g_hintAppearance->font;
    font.SetName("MS Sans Serif");
    font.SetColor(clWindowText);
    font.SetHeight(-11);
}

void FreeHintAppearance() {
    g_hintAppearance.reset();
}

} // namespace qv
