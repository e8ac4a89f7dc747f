#include "GalleryForm.h"

#include "LiveSettings.h"
#include "LiveViews.h"

#include "platform/controls/Timer.h"
#include "platform/core/ClassRegistry.h"
#include "platform/core/DesignerRegistry.h"
#include "platform/core/Exceptions.h"

#include <algorithm>
#include <iostream>
#include <memory>

namespace qv::gallery {

namespace {

constexpr TSize maxShownSize{320, 240};
constexpr TSize emptyControlSize{64, 64};

// Visual components keep their default size within the cell limits.
TSize ShownSize(const TControl& control) {
    if (control.Width() <= 0 || control.Height() <= 0) return emptyControlSize;
    return {std::min(control.Width(), maxShownSize.cx),
            std::min(control.Height(), maxShownSize.cy)};
}

} // namespace

TGalleryForm::TGalleryForm(TComponent* owner)
    : TForm(owner), m_pageList(new TPageList(this)), m_properties(new TPropertyView(this)),
      m_large(new TLargeView(this)) {
    SetName("GalleryForm");
    SetCaption("Quelvar gallery");
    m_pageList->SetParent(this);
    m_properties->SetParent(this);
    m_large->SetParent(this);
    m_pageList->OnSelect = [this](int index) { SelectPage(index); };
}

std::string TGalleryForm::UniqueName(const std::string& className) const {
    const std::string stem =
        className.size() > 1 && className[0] == 'T' ? className.substr(1) : className;
    for (int n = 1;; ++n) {
        const std::string name = stem + std::to_string(n);
        if (!FindComponent(name)) return name;
    }
}

void TGalleryForm::Build() {
    m_pageNames = PalettePages();
    int height = MinHeight;
    for (const std::string& page : m_pageNames) {
        m_pages.push_back(BuildPage(PaletteClasses(page)));
        height = std::max(height, m_pages.back().surface->Height());
    }
    ArrangeSurfaces(height);
    m_pageList->SetPages(m_pageNames);
    SelectPage(0);
}

void TGalleryForm::ArrangeSurfaces(int height) {
    SetBounds(Left(), Top(), PageListWidth + PageWidth + PropertyWidth, height);
    m_pageList->SetBounds(0, 0, PageListWidth, height);
    m_properties->SetBounds(PageListWidth + PageWidth, 0, PropertyWidth, height);
    m_large->SetBounds(PageListWidth, 0, PageWidth, height);
    for (TPage& page : m_pages)
        page.surface->SetBounds(PageListWidth, 0, PageWidth, height);
}

TGalleryForm::TPage TGalleryForm::BuildPage(const std::vector<const TClassInfo*>& classes) {
    TPage page;
    page.surface = new TCustomControl(this);
    page.surface->SetParent(this);
    page.surface->SetVisible(false);
    std::vector<TSize> sizes;
    for (const TClassInfo* cls : classes) {
        std::vector<const TShowcase*> showcases = ShowcasesOf(cls->name);
        if (showcases.empty()) showcases.push_back(nullptr);
        for (const TShowcase* showcase : showcases) {
            if (TComponentCell* cell = BuildCell(*page.surface, *cls, showcase)) {
                page.cells.push_back(cell);
                sizes.push_back({cell->Width(), cell->Height() - TGridMetrics{}.labelHeight});
            }
        }
    }
    TGridMetrics metrics;
    metrics.width = PageWidth;
    const std::vector<TRect> placed = LayoutGrid(sizes, metrics);
    for (std::size_t i = 0; i < placed.size(); ++i)
        page.cells[i]->SetBoundsRect(placed[i]);
    page.surface->SetBounds(PageListWidth, 0, PageWidth, GridHeight(placed, metrics));
    return page;
}

// The cell is sized for what it shows; the grid positions it afterwards.
TComponentCell* TGalleryForm::BuildCell(TCustomControl& surface, const TClassInfo& cls,
                                        const TShowcase* showcase) {
    TComponent* component = nullptr;
    try {
        const bool formLevel = ActsOnItsForm(cls.name);
        if (formLevel && !m_formLevelOwner) m_formLevelOwner = std::make_unique<TForm>(nullptr);
        component = CreateComponent(cls.name, formLevel ? m_formLevelOwner.get() : this);
        component->SetName(UniqueName(cls.name));
        if (showcase) ApplyShowcase(*showcase, *component);
    } catch (const Exception& e) {
        std::cerr << "gallery: " << cls.name << " cannot be shown: " << e.Message() << '\n';
        delete component;
        return nullptr;
    }
    auto* cell = new TComponentCell(this, *component, showcase);
    cell->SetParent(&surface);
    cell->OnSelect = [this](TComponentCell& c) { Select(&c); };
    cell->OnOpen = [this](const TComponentCell& c) { OpenLarge(c); };
    TControl& shown = Present(*cell, *component);
    const int labelHeight = TGridMetrics{}.labelHeight;
    const int width = std::max(shown.Width(), TGridMetrics{}.minCellWidth);
    cell->SetBounds(0, 0, width, shown.Height() + labelHeight);
    shown.SetBounds((width - shown.Width()) / 2, 0, shown.Width(), shown.Height());
    return cell;
}

// Puts the component itself into the cell, or a live view of it when it is not a control
// (or is a form, which cannot sit inside another window).
TControl& TGalleryForm::Present(TComponentCell& cell, TComponent& component) {
    auto* control = dynamic_cast<TControl*>(&component);
    if (control && !dynamic_cast<TCustomForm*>(control)) {
        const TSize size = ShownSize(*control);
        control->SetBounds(0, 0, size.cx, size.cy);
        control->SetParent(&cell);
        // The component keeps its own control style: one that takes every press as a click
        // (spin buttons, switches) must still step on fast clicks, so it opens larger through
        // a double click on its name only.
        control->OnMouseDown = [&cell](TObject*, TMouseButtonKind, TShiftState shift, int, int) {
            cell.Pressed(shift);
        };
        return *control;
    }
    TNonVisualView* view = MakeNonVisualView(this, component);
    view->SetParent(&cell);
    return *view;
}

void TGalleryForm::OpenLarge(const TComponentCell& cell) {
    const auto* shown = dynamic_cast<const TControl*>(&cell.Shown());
    if (!shown || dynamic_cast<const TCustomForm*>(shown)) return;
    std::unique_ptr<TComponent> fresh(CreateComponent(shown->ClassName(), nullptr));
    auto* control = dynamic_cast<TControl*>(fresh.get());
    if (!control) return;
    if (cell.Showcase()) ApplyShowcase(*cell.Showcase(), *control);
    m_largeShowcase = cell.Showcase();
    control->SetBounds(0, 0, control->Width() * TLargeView::Scale,
                       control->Height() * TLargeView::Scale);
    m_large->InsertComponent(fresh.release());
    m_large->Open(*control);
}

void TGalleryForm::SelectPage(int index) {
    if (index < 0 || index >= static_cast<int>(m_pages.size()) || index == m_current) return;
    if (m_current >= 0) m_pages[static_cast<std::size_t>(m_current)].surface->SetVisible(false);
    m_current = index;
    m_large->Close();
    const TPage& page = m_pages[static_cast<std::size_t>(index)];
    page.surface->SetVisible(true);
    m_pageList->SetSelected(index);
    Select(page.cells.empty() ? nullptr : page.cells.front());
}

std::vector<TComponentCell*> TGalleryForm::PageCells(int index) const {
    return m_pages.at(static_cast<std::size_t>(index)).cells;
}

std::vector<TComponent*> TGalleryForm::PageComponents(int index) const {
    std::vector<TComponent*> components;
    for (TComponentCell* cell : PageCells(index))
        components.push_back(&cell->Shown());
    return components;
}

void TGalleryForm::Select(TComponentCell* cell) {
    if (m_selected) m_selected->SetHighlighted(false);
    m_selected = cell;
    if (cell) cell->SetHighlighted(true);
    m_properties->Show(SelectedComponent());
}

TComponent* TGalleryForm::SelectedComponent() const {
    return m_selected ? &m_selected->Shown() : nullptr;
}

void TGalleryForm::StartAnimation() {
    if (m_timer) return;
    m_timer = new TTimer(this);
    m_timer->SetInterval(100);
    m_timer->SetOnTimer([this](TObject*) { Step(); });
}

void TGalleryForm::Step() {
    if (m_current < 0) return;
    for (TComponentCell* cell : PageCells(m_current)) {
        AnimateStep(cell->Showcase(), cell->Shown(), m_tick);
        for (int i = 0; i < cell->ControlCount(); ++i)
            if (auto* view = dynamic_cast<TNonVisualView*>(cell->Controls(i))) view->Invalidate();
    }
    if (TControl* large = m_large->Shown()) AnimateStep(m_largeShowcase, *large, m_tick);
    ++m_tick;
    m_properties->Show(SelectedComponent());
}

} // namespace qv::gallery
