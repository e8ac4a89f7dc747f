#pragma once
// Pictures of what one gallery cell cannot show: every thumb of the slide bar, and the spin
// buttons released and pressed. Each sheet is a form of small controls photographed and
// enlarged, with the names written under them.

#include <ostream>
#include <string>

namespace qv::gallery {

// Writes DIR/TqSlideBar-thumbs.png and DIR/TqxSpinBtn-states.png, prints their paths and adds
// a line for each to `index` (the pictures' README).
void RenderDetailSheets(const std::string& dir, std::ostream& index);

} // namespace qv::gallery
