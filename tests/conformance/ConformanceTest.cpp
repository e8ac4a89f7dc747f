// Every class of the registration table that exists, against the conventions every component
// keeps: defaults as declared, form files that read back as they were written, any value of
// any published property survived (set, painted at any size, written and read back), and no
// event raised while a form is read. The list grows by itself as classes arrive.

#include "backgrounds/Blend.h"
#include "indicators/Qled.h"
#include "instruments/Qpanel.h"
#include "package/PackageScope.h"
#include "package/Registration.h"
#include "platform/backend/HeadlessBackend.h"
#include "platform/controls/Application.h"
#include "platform/controls/Control.h"
#include "platform/controls/Form.h"
#include "platform/core/ClassRegistry.h"
#include "platform/core/Exceptions.h"
#include "platform/core/PropertyAccess.h"
#include "platform/streaming/Reader.h"
#include "platform/streaming/Writer.h"
#include "slidebar/Slidebar.h"
#include "timing/Std2.h"
#include "utility/Mystd.h"
#include "utility/TqCalc.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cstdlib>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

using namespace qv;

namespace {

// Loads the package once for the whole program: class registry and unit initializations.
class TPackageEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        Application().SetBackend(std::make_unique<THeadlessBackend>());
        m_package = std::make_unique<TPackageScope>();
    }
    void TearDown() override { m_package.reset(); }

private:
    std::unique_ptr<TPackageScope> m_package;
};
const auto* const environment = ::testing::AddGlobalTestEnvironment(new TPackageEnvironment);

// Events a class raises on purpose while a form is read, from Loaded or from a setter whose
// work needs them.
const std::map<std::string, std::set<std::string>> EventsRaisedWhileReading = {
    // Writing CalcLine evaluates, and the evaluation asks the application for user functions
    // (OnFindUserFunc, OnUserFunc precede CalcLine; OnOK and OnError follow it and are not
    // bound yet).
    {"TqCalc", {"OnFindUserFunc", "OnUserFunc"}},
    // Splitters announce that they have been read.
    {"TqVerSplit", {"OnBeforeShow"}},
    {"TqHorSplit", {"OnBeforeShow"}},
};

std::vector<std::string> ExistingClasses() {
    std::vector<std::string> names;
    for (const TRegistrationEntry& entry : RegistrationTable())
        if (entry.classInfo) names.emplace_back(entry.className);
    return names;
}

bool IsEdgeTestedKind(const TPropInfo& p) {
    if (p.displayOnly || p.IsReadOnly()) return false;
    switch (p.type->kind) {
    case TTypeKind::Integer:
    case TTypeKind::Char:
    case TTypeKind::Enumeration:
    case TTypeKind::Float:
    case TTypeKind::String:
        return true;
    default:
        return false;
    }
}

// The values a property is tried with: the ends of its type or subrange, 0 and -1 for numbers,
// every identifier of an enumeration, an empty and a 1000-character string.
struct TEdgeValue {
    std::int64_t ordinal{0};
    long double real{0};
    std::string text;
    std::string Describe(const TPropInfo& p) const {
        switch (p.type->kind) {
        case TTypeKind::Float:
            return std::to_string(static_cast<double>(real));
        case TTypeKind::String:
            return "a string of " + std::to_string(text.size());
        default:
            return std::to_string(ordinal);
        }
    }
};

std::vector<TEdgeValue> EdgeValues(const TPropInfo& p) {
    std::vector<TEdgeValue> values;
    const TTypeInfo& t = *p.type;
    switch (t.kind) {
    case TTypeKind::Enumeration:
        for (std::int64_t v = t.minValue; v <= t.maxValue; ++v)
            values.push_back({v, 0, {}});
        break;
    case TTypeKind::Integer:
    case TTypeKind::Char:
        for (std::int64_t v : {t.minValue, t.maxValue, std::int64_t{0}, std::int64_t{-1}})
            values.push_back({v, 0, {}});
        break;
    case TTypeKind::Float: {
        const long double limit = t.floatType == TFloatType::Double ? DBL_MAX : LDBL_MAX;
        for (long double v : {-limit, limit, 0.0L, -1.0L})
            values.push_back({0, v, {}});
        break;
    }
    case TTypeKind::String:
        values.push_back({0, 0, ""});
        values.push_back({0, 0, std::string(1000, 'W')});
        break;
    default:
        break;
    }
    return values;
}

TEdgeValue Read(const TObject& o, const TPropInfo& p) {
    switch (p.type->kind) {
    case TTypeKind::Float:
        return {0, p.getFloat(o), {}};
    case TTypeKind::String:
        return {0, 0, p.getString(o)};
    default:
        return {p.getOrd(o), 0, {}};
    }
}

void Apply(TObject& o, const TPropInfo& p, const TEdgeValue& v) {
    switch (p.type->kind) {
    case TTypeKind::Float:
        p.setFloat(o, v.real);
        break;
    case TTypeKind::String:
        p.setString(o, v.text);
        break;
    default:
        p.setOrd(o, v.ordinal);
        break;
    }
}

// A handler of event type F that counts its calls.
template <class F> std::any Recorder(int& calls) {
    using R = typename F::result_type;
    return F([&calls](auto&&...) -> R {
        ++calls;
        if constexpr (!std::is_void_v<R>) return R{};
    });
}

std::any RecorderFor(const std::string& typeName, int& calls) {
    static const std::map<std::string, std::any (*)(int&)> makers = {
        {"TNotifyEvent", &Recorder<TNotifyEvent>},
        {"TMouseEvent", &Recorder<TMouseEvent>},
        {"TMouseMoveEvent", &Recorder<TMouseMoveEvent>},
        {"TKeyEvent", &Recorder<TKeyEvent>},
        {"TKeyPressEvent", &Recorder<TKeyPressEvent>},
        {"TDragDropEvent", &Recorder<TDragDropEvent>},
        {"TDragOverEvent", &Recorder<TDragOverEvent>},
        {"qxGetColor", &Recorder<qxGetColor>},
        {"tPushEvent", &Recorder<tPushEvent>},
        {"TCalcErrorEvent", &Recorder<TCalcErrorEvent>},
        {"TFindUserFunc", &Recorder<TFindUserFunc>},
        {"TUserFunc", &Recorder<TUserFunc>},
        {"TqBackPaintEvent", &Recorder<TqBackPaintEvent>},
        {"TsSlideTickOwnerDraw", &Recorder<TsSlideTickOwnerDraw>},
        {"TqxError", &Recorder<TqxError>},
        {"TStartDragEvent", &Recorder<TStartDragEvent>},
        {"TAskSize", &Recorder<TAskSize>},
        {"TAskEndSession", &Recorder<TAskEndSession>},
        {"TCloseQueryEvent", &Recorder<TCloseQueryEvent>},
    };
    const auto maker = makers.find(typeName);
    if (maker == makers.end())
        throw EComponentError("no recording handler for event type " + typeName +
                              ": add it to RecorderFor");
    return maker->second(calls);
}

// Writes the form, reads it back and writes it again; the two texts must be equal.
void ExpectStableRoundTrip(const TForm& form, const std::string& what) {
    const std::string written = WriteComponentText(form);
    std::unique_ptr<TComponent> read;
    try {
        read = ReadComponentText(written);
    } catch (const Exception& e) {
        ADD_FAILURE() << what << ": the written form does not read back: " << e.what() << "\n"
                      << written;
        return;
    }
    EXPECT_EQ(WriteComponentText(*read), written) << what;
}

// Moves every ordinal and float property one step off its value and sets every string, so that
// each setter runs when a form file is read.
void MoveOffDefaults(TComponent& c) {
    for (const TPropInfo* p : GetPropList(c)) {
        if (!IsEdgeTestedKind(*p)) continue;
        if (p->type->kind == TTypeKind::String) {
            p->setString(c, "Conf");
        } else if (p->type->kind == TTypeKind::Float) {
            p->setFloat(c, p->getFloat(c) + 1.5L);
        } else {
            const std::int64_t now = p->getOrd(c);
            p->setOrd(c, now < p->type->maxValue ? now + 1 : now - 1);
        }
    }
}

class Conformance : public ::testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        form = std::make_unique<TForm>(nullptr);
        form->SetBounds(0, 0, 400, 300);
        form->Show();
    }
    void TearDown() override { form.reset(); }

    // A new instance on the shown form (controls are placed in it).
    TComponent* Create() {
        TComponent* c = CreateComponent(GetParam(), form.get());
        if (auto* control = dynamic_cast<TControl*>(c)) control->SetParent(form.get());
        return c;
    }

    std::vector<const TPropInfo*> EdgeTestedProperties() const {
        std::vector<const TPropInfo*> tested;
        for (const TPropInfo* p : FindClass(GetParam()).Properties())
            if (IsEdgeTestedKind(*p)) tested.push_back(p);
        return tested;
    }

    std::unique_ptr<TForm> form;
};

TEST_P(Conformance, NewInstanceHoldsEveryDeclaredDefault) {
    TComponent* c = Create();
    for (const TPropInfo* p : GetPropList(*c)) {
        if (!p->defaultOrd || !p->getOrd) continue;
        EXPECT_EQ(p->getOrd(*c), *p->defaultOrd) << p->name;
    }
}

TEST_P(Conformance, FormFilesReadBackAsWrittenWithDefaultsAndWithOtherValues) {
    TComponent* c = Create();
    ExpectStableRoundTrip(*form, "new instance");
    MoveOffDefaults(*c);
    ExpectStableRoundTrip(*form, "configured instance");
}

// Each edge value on a new instance: kept inside its type, read back as written, painted at
// the size it leaves.
TEST_P(Conformance, EdgeValuesAreKeptInRangeReadBackAndPaint) {
    for (const TPropInfo* p : EdgeTestedProperties()) {
        for (const TEdgeValue& v : EdgeValues(*p)) {
            SCOPED_TRACE(p->name + " = " + v.Describe(*p));
            TComponent* c = Create();
            Apply(*c, *p, v);
            const TTypeKind kind = p->type->kind;
            if (kind == TTypeKind::Integer || kind == TTypeKind::Char) {
                const std::int64_t held = p->getOrd(*c);
                EXPECT_TRUE(held >= p->type->minValue && held <= p->type->maxValue)
                    << "the setter keeps " << held << ", outside " << p->type->name;
            }
            ExpectStableRoundTrip(*form, "after the edge value");
            if (auto* control = dynamic_cast<TControl*>(c)) control->Repaint();
            delete c;
        }
    }
}

// The sizes every edge value is painted at. The thread-sanitizer run, there to watch the
// components' threads, leaves out the largest (QV_CONFORMANCE_SMALL_SIZES): painting it is
// mostly filling and copying 48 MB frames, which that sanitizer slows down a hundredfold, and
// the other builds paint it.
std::vector<std::pair<int, int>> PaintedSizes() {
    if (std::getenv("QV_CONFORMANCE_SMALL_SIZES")) return {{0, 0}, {1, 1}};
    return {{0, 0}, {1, 1}, {4000, 3000}};
}

// Each edge value painted at every size: one instance per size, the value set, painted and set
// back, so that the kept pictures need not be made again for each value.
TEST_P(Conformance, EdgeValuesPaintAtAnySize) {
    auto* probe = dynamic_cast<TControl*>(Create());
    if (!probe) return;
    delete probe;
    form->SetBounds(0, 0, 4000, 3000); // the largest size must show whole
    for (const auto& [w, h] : PaintedSizes()) {
        auto* control = dynamic_cast<TControl*>(Create());
        for (const TPropInfo* p : EdgeTestedProperties()) {
            const TEdgeValue before = Read(*control, *p);
            for (const TEdgeValue& v : EdgeValues(*p)) {
                SCOPED_TRACE(p->name + " = " + v.Describe(*p) + " at " + std::to_string(w) + " x " +
                             std::to_string(h));
                Apply(*control, *p, v);
                control->SetBounds(0, 0, w, h);
                control->Repaint();
            }
            Apply(*control, *p, before);
        }
        delete control;
    }
}

TEST_P(Conformance, ReadingAFormRaisesNoEventTheClassDoesNotRaiseOnPurpose) {
    TComponent* c = Create();
    MoveOffDefaults(*c);
    const std::string written = WriteComponentText(*form);
    // Every event bound to a handler of its own that counts its calls.
    std::map<std::string, int> calls;
    TEventTable events;
    std::string handlers;
    for (const TPropInfo* p : GetPropList(*c)) {
        if (p->type->kind != TTypeKind::Method) continue;
        const std::string handler = "Handle" + p->name;
        std::any recorder = RecorderFor(p->type->name, calls[p->name]);
        events.Add(handler, std::move(recorder));
        handlers += "    " + p->name + " = " + handler + "\n";
    }
    // Read once without the table, which keeps the handler names, and written again: the
    // events then stand where a form file has them, in the published order.
    const std::size_t header = written.find('\n', written.find("\n  object ") + 1) + 1;
    const std::string named = WriteComponentText(
        *ReadComponentText(written.substr(0, header) + handlers + written.substr(header)));
    TReadOptions options;
    options.events = &events;
    const auto read = ReadComponentText(named, options);
    const auto allowed = EventsRaisedWhileReading.find(GetParam());
    for (const auto& [event, count] : calls) {
        const bool onPurpose =
            allowed != EventsRaisedWhileReading.end() && allowed->second.count(event) > 0;
        if (!onPurpose) {
            EXPECT_EQ(count, 0) << event << " was raised while the form was read";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(RegisteredClasses, Conformance, ::testing::ValuesIn(ExistingClasses()),
                         [](const auto& info) { return info.param; });

} // namespace
