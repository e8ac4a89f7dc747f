#pragma once
// The gallery's main form: the palette pages of the designer registry on the left, the
// current page's components live in a grid in the middle (each with its class name under
// it), and the published properties of the selected component on the right.

#include "GalleryControls.h"
#include "GalleryLayout.h"

#include "platform/controls/Form.h"

#include <memory>
#include <string>
#include <vector>

namespace qv {
class TTimer;
}

namespace qv::gallery {

class TGalleryForm : public TForm {
public:
    explicit TGalleryForm(TComponent* owner);

    // Creates every registered component, page by page, from the designer registry.
    void Build();

    const std::vector<std::string>& Pages() const { return m_pageNames; }
    int CurrentPage() const { return m_current; }
    void SelectPage(int index);
    // The components of a page, in palette order (those whose creation failed are left out).
    std::vector<TComponent*> PageComponents(int index) const;
    std::vector<TComponentCell*> PageCells(int index) const;

    void Select(TComponentCell* cell);
    TComponent* SelectedComponent() const;
    TPropertyView& Properties() const { return *m_properties; }
    TPageList& PageList() const { return *m_pageList; }

    // Shows a new instance of the cell's component at four times its default size over the
    // page (visual components; a non-visual one's cell already shows it working).
    void OpenLarge(const TComponentCell& cell);
    TLargeView& Large() const { return *m_large; }

    // Starts the animation (ten steps a second); PNG rendering leaves it off.
    void StartAnimation();
    // One animation step of the current page, and fresh values in the property list.
    void Step();

    static constexpr int PageListWidth = 150;
    static constexpr int PageWidth = 640;
    static constexpr int PropertyWidth = 270;
    static constexpr int MinHeight = 560;

private:
    struct TPage {
        TCustomControl* surface{nullptr};
        std::vector<TComponentCell*> cells;
    };

    TPage BuildPage(const std::vector<const TClassInfo*>& classes);
    TComponentCell* BuildCell(TCustomControl& surface, const TClassInfo& cls,
                              const TShowcase* showcase);
    TControl& Present(TComponentCell& cell, TComponent& component);
    std::string UniqueName(const std::string& className) const;
    void ArrangeSurfaces(int height);

    TPageList* m_pageList;
    TPropertyView* m_properties;
    TLargeView* m_large;
    const TShowcase* m_largeShowcase{nullptr};
    TTimer* m_timer{nullptr};
    std::vector<std::string> m_pageNames;
    std::vector<TPage> m_pages;
    int m_current{-1};
    TComponentCell* m_selected{nullptr};
    int m_tick{0};
    // The owner of components that act on the form they belong to (size limits): a form
    // never shown, so that they leave the gallery's own form alone.
    std::unique_ptr<TForm> m_formLevelOwner;
};

} // namespace qv::gallery
