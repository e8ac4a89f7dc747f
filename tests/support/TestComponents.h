#pragma once
// Components with one published property of each kind, for the property and form-file tests.

#include "platform/core/ClassBuilder.h"
#include "platform/core/Strings.h"

#include <string>
#include <vector>

namespace qv {

enum TGlowStyle { gsFlat, gsRaised, gsSunkn }; // misspelling kept on purpose
enum TGlowOption { goBlink, goPulse, goLatch };
using TGlowOptions = TSet<TGlowOption>;
QV_ENUM_TYPE(TGlowStyle, "gsFlat", "gsRaised", "gsSunkn")
QV_ENUM_TYPE(TGlowOption, "goBlink", "goPulse", "goLatch")
QV_SET_TYPE(TGlowOptions, TGlowOption)

// An integer type with identifiers for some values, like colours.
const TTypeInfo& ShadeType();
// A subrange 1..100.
const TTypeInfo& PercentType();
// A short string of at most 8 characters.
const TTypeInfo& ShortLabelType();

// A nested object assigned by copy.
class TTestFont : public TPersistent {
    QV_OBJECT
public:
    const std::string& Name() const { return m_name; }
    void SetName(const std::string& v) { m_name = v; }
    int Size() const { return m_size; }
    void SetSize(int v) { m_size = v; }
    void Assign(const TPersistent& Source) override;

private:
    std::string m_name{"Sans"};
    int m_size{8};
};

class TTestWidget : public TComponent {
    QV_OBJECT
public:
    explicit TTestWidget(TComponent* AOwner);

    int Count() const { return m_count; }
    void SetCount(int v) { m_count = v; }
    bool Active() const { return m_active; }
    void SetActive(bool v) { m_active = v; }
    TGlowStyle Style() const { return m_style; }
    void SetStyle(TGlowStyle v) { m_style = v; }
    TGlowOptions Options() const { return m_options; }
    void SetOptions(TGlowOptions v) { m_options = v; }
    int Shade() const { return m_shade; }
    void SetShade(int v) { m_shade = v; }
    int Percent() const { return m_percent; }
    void SetPercent(int v) { m_percent = v; }
    double Ratio() const { return m_ratio; }
    void SetRatio(double v) { m_ratio = v; }
    long double Precise() const { return m_precise; }
    void SetPrecise(long double v) { m_precise = v; }
    const std::string& Caption() const { return m_caption; }
    void SetCaption(const std::string& v) { m_caption = v; }
    const std::string& ShortLabel() const { return m_label; }
    void SetShortLabel(const std::string& v) { m_label = v; }
    std::string Status() const { return "ready"; }
    TTestFont* Font() const { return m_font.get(); }
    TStringList* Lines() const { return m_lines.get(); }
    TTestWidget* Buddy() const { return m_buddy; }
    void SetBuddy(TTestWidget* v);

    void Notification(TComponent* AComponent, TOperation Operation) override;
    void Loaded() override;

    TNotifyEvent OnClick;

    // What Loaded saw: its number of calls and the captions of its owner's components.
    int loadedCalls{0};
    std::vector<std::string> seenAtLoaded;

private:
    int m_count{0};
    bool m_active{true};
    TGlowStyle m_style{gsFlat};
    TGlowOptions m_options{goBlink};
    int m_shade{0};
    int m_percent{50};
    double m_ratio{0};
    long double m_precise{0};
    std::string m_caption;
    std::string m_label;
    std::unique_ptr<TTestFont> m_font = std::make_unique<TTestFont>();
    std::unique_ptr<TStringList> m_lines = std::make_unique<TStringList>();
    TTestWidget* m_buddy{nullptr};
};

// A container whose children are written inside it, like a panel's controls.
class TTestBox : public TTestWidget {
    QV_OBJECT
public:
    using TTestWidget::TTestWidget;
    ~TTestBox() override;
    bool HasParent() const override { return m_parent != nullptr; }
    TComponent* GetParentComponent() const override { return m_parent; }
    void SetParentComponent(TComponent* Value) override;
    void GetChildren(const std::function<void(TComponent*)>& Proc, TComponent* Root) const override;

private:
    TTestBox* m_parent{nullptr};
    std::vector<TTestBox*> m_children;
};

void RegisterTestComponents();

} // namespace qv
