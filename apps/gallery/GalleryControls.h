#pragma once
// The gallery's own controls, drawn with the framework: the list of palette pages, the cell
// that shows one component with its name, the view of a non-visual component, and the list
// of the selected component's published properties.

#include "LiveSettings.h"

#include "platform/controls/WinControl.h"

#include <functional>
#include <string>
#include <vector>

namespace qv::gallery {

// A vertical list of page names; a click or the arrow keys select one.
class TPageList : public TCustomControl {
public:
    explicit TPageList(TComponent* owner);

    void SetPages(std::vector<std::string> pages);
    int Selected() const { return m_selected; }
    void SetSelected(int index);
    std::function<void(int index)> OnSelect;

    static constexpr int ItemHeight = 28;

protected:
    void Paint() override;
    void MouseDown(TMouseButtonKind button, TShiftState shift, int x, int y) override;
    void KeyDown(unsigned& key, TShiftState shift) override;
    void WMGetDlgCode(TMessage& message) override;

private:
    std::vector<std::string> m_pages;
    int m_selected{-1};
};

// One component on a page: the component sits at the top of the cell (or a view of it, for
// non-visual components) and its class name is written underneath. A click on the cell or
// on the component selects it; a double click opens it larger. `showcase` (may be null) is
// what the component was dressed in and how it moves.
class TComponentCell : public TCustomControl {
public:
    TComponentCell(TComponent* owner, TComponent& shown, const TShowcase* showcase);

    TComponent& Shown() const { return m_shown; }
    const TShowcase* Showcase() const { return m_showcase; }
    // The picture's file name without extension: the class, and the look after a dash.
    std::string PictureName() const;
    void SetHighlighted(bool on);
    std::function<void(TComponentCell& cell)> OnSelect;
    std::function<void(TComponentCell& cell)> OnOpen;
    // What a press on the cell or its component does: select, and open on a double click.
    void Pressed(TShiftState shift);

protected:
    void Paint() override;
    void MouseDown(TMouseButtonKind button, TShiftState shift, int x, int y) override;

private:
    TComponent& m_shown;
    const TShowcase* m_showcase;
    bool m_highlighted{false};
};

// Stands in for a non-visual component: its name and, under it, lines read again on every
// paint so that they stay live (by default a few of its published values).
class TNonVisualView : public TCustomControl {
public:
    TNonVisualView(TComponent* owner, TComponent& shown);

    virtual std::vector<std::string> Lines() const;

    static constexpr int ValueLines = 3;
    static constexpr TSize DefaultSize{150, 80};

protected:
    void Paint() override;
    // Where the lines start, below the name.
    virtual int LinesTop(int lineHeight) const;

private:
    TComponent& m_shown;
};

// A component at four times its default size, over the page; a click or Escape closes it.
class TLargeView : public TCustomControl {
public:
    explicit TLargeView(TComponent* owner);

    // Shows `component` (owned by this view) in place of the previous one.
    void Open(TControl& component);
    void Close();
    // The component shown, or null when the view is closed.
    TControl* Shown() const { return Visible() ? m_shown : nullptr; }

    static constexpr int Scale = 4;

protected:
    void Paint() override;
    void MouseDown(TMouseButtonKind button, TShiftState shift, int x, int y) override;
    void KeyDown(unsigned& key, TShiftState shift) override;
    void WMGetDlgCode(TMessage& message) override;

private:
    TControl* m_shown{nullptr};
};

// Lets `control` tell a double click from a press.
void AcceptDoubleClicks(TControl& control);

// "Name = value" for every published property of the selected component.
class TPropertyView : public TCustomControl {
public:
    explicit TPropertyView(TComponent* owner);

    // Shows `object`'s properties (null: nothing); call again to read the values anew.
    void Show(const TComponent* object);
    const std::vector<std::string>& Lines() const { return m_lines; }

protected:
    void Paint() override;

private:
    std::string m_title;
    std::vector<std::string> m_lines;
};

} // namespace qv::gallery
