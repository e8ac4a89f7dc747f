#pragma once
// Pure layout and text helpers of the gallery, kept apart from the controls so that they are
// tested on their own.

#include "platform/core/Object.h"
#include "platform/graphics/Types.h"

#include <string>
#include <vector>

namespace qv::gallery {

struct TGridMetrics {
    int width{600};       // the width available for cells
    int gap{12};          // between cells and around the grid
    int labelHeight{18};  // the name under each component
    int minCellWidth{96}; // narrow components still get room for their name
};

// Places items of the given sizes row by row, left to right, wrapping when a row is full.
// Each cell holds its item with the name label underneath; a row is as tall as its tallest
// cell. The result holds the cells (item plus label) in item order.
std::vector<TRect> LayoutGrid(const std::vector<TSize>& items, const TGridMetrics& metrics);

// The bottom edge of the lowest cell plus the gap (0 for no cells).
int GridHeight(const std::vector<TRect>& cells, const TGridMetrics& metrics);

// One line per published property, "Name = value", in the class's declaration order. Values
// read as a form file writes them; objects held by copy show as "(TFont)", unbound events
// stay empty, and a value that cannot be read shows as "?".
std::vector<std::string> PropertyLines(const TObject& object);

// The --list line of a palette page: "<page>: <class> <class> ...".
std::string PageListing(const std::string& page, const std::vector<std::string>& classes);

// A file name for a page's picture: the page name with characters that do not belong in a
// file name replaced by '_'.
std::string PageFileName(const std::string& page);

} // namespace qv::gallery
