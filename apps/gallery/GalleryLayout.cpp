#include "GalleryLayout.h"

#include "platform/core/Exceptions.h"
#include "platform/core/PropertyAccess.h"
#include "platform/core/TypeInfo.h"

#include <algorithm>

namespace qv::gallery {

std::vector<TRect> LayoutGrid(const std::vector<TSize>& items, const TGridMetrics& metrics) {
    std::vector<TRect> cells;
    cells.reserve(items.size());
    int x = metrics.gap, y = metrics.gap, rowHeight = 0;
    for (const TSize& item : items) {
        const int cellWidth = std::max(item.cx, metrics.minCellWidth);
        const int cellHeight = item.cy + metrics.labelHeight;
        if (x > metrics.gap && x + cellWidth > metrics.width - metrics.gap) {
            x = metrics.gap;
            y += rowHeight + metrics.gap;
            rowHeight = 0;
        }
        cells.push_back(Bounds(x, y, cellWidth, cellHeight));
        x += cellWidth + metrics.gap;
        rowHeight = std::max(rowHeight, cellHeight);
    }
    return cells;
}

int GridHeight(const std::vector<TRect>& cells, const TGridMetrics& metrics) {
    int bottom = 0;
    for (const TRect& cell : cells)
        bottom = std::max(bottom, cell.bottom + metrics.gap);
    return bottom;
}

namespace {

std::string PropertyValue(const TObject& object, const TPropInfo& prop) {
    if (prop.type->kind == TTypeKind::Class && !prop.isReference) {
        const TObject* held = prop.getObject ? prop.getObject(object) : nullptr;
        return held ? "(" + held->ClassName() + ")" : "(nil)";
    }
    try {
        return GetPropText(object, prop.name);
    } catch (const Exception&) {
        return "?";
    }
}

} // namespace

std::vector<std::string> PropertyLines(const TObject& object) {
    std::vector<std::string> lines;
    for (const TPropInfo* prop : GetPropList(object))
        lines.push_back(prop->name + " = " + PropertyValue(object, *prop));
    return lines;
}

std::string PageListing(const std::string& page, const std::vector<std::string>& classes) {
    std::string line = page + ":";
    for (const std::string& name : classes)
        line += " " + name;
    return line;
}

std::string PageFileName(const std::string& page) {
    std::string name = page;
    for (char& c : name)
        if (c == '/' || c == '\\' || c == ':' || static_cast<unsigned char>(c) < 0x20) c = '_';
    return name.empty() ? "_" : name;
}

} // namespace qv::gallery
