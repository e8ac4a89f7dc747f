#pragma once
// FindForm and the shared hint appearance of unit Mystd.

#include "platform/controls/Form.h"
#include "platform/graphics/GraphicsObjects.h"

namespace qv {

// The nearest owner of `component` (its owner, the owner's owner, ...; not the component
// itself) that is a form; EComponentError "NoForm" when there is none.
TCustomForm& FindForm(const TComponent& component);

// How the package's hints look: a font of their own ("MS Sans Serif", clWindowText, height
// -11). It exists while unit Mystd is loaded.
struct THintAppearance {
    TFont font;
};
const THintAppearance* HintAppearance();

// Called by the unit's initialization and finalization.
void CreateHintAppearance();
void FreeHintAppearance();

} // namespace qv
