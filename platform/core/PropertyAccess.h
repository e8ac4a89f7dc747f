#pragma once
// By-name access to published properties, with values as a text form file holds them:
//   SetPropText(led, "LedColor", "lcRed");  GetPropText(form, "Font.Name") == "'Arial'"

#include "FormValue.h"
#include "TypeInfo.h"

#include <any>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace qv {

class TComponent;

// Handlers that form files bind to events by name (OnClick = Button1Click). Each entry
// holds the std::function of the event's type, for example a TNotifyEvent.
class TEventTable {
public:
    template <class F> void Add(const std::string& name, F handler) {
        m_handlers[name] = std::any(std::move(handler));
    }
    // A handler already wrapped, holding the event's std::function type.
    void Add(const std::string& name, std::any handler) { m_handlers[name] = std::move(handler); }
    const std::any* Find(const std::string& name) const;

private:
    std::map<std::string, std::any> m_handlers;
};

// Finds the component a reference property names (Form1.PopupMenu1 or PopupMenu1).
using TComponentResolver = std::function<TComponent*(const std::string& name)>;

struct TPropertyContext {
    const TEventTable* events{nullptr};
    TComponentResolver resolve;
};

std::vector<const TPropInfo*> GetPropList(const TObject& obj);
const TPropInfo& GetPropInfo(const TObject& obj, const std::string& name);

// A property's value as a form value; EConvertError for objects assigned by copy, which
// have no single value.
TFormValue GetPropValue(const TObject& obj, const TPropInfo& prop);
// Sets a property from a form value, checking its kind, identifiers and range; raises
// EConvertError or ERangeError with a message naming the property.
void SetPropValue(TObject& obj, const TPropInfo& prop, const TFormValue& value,
                  const TPropertyContext& context = {});

// Dotted paths reach nested objects: "Font.Name", "Items.Strings".
std::string GetPropText(const TObject& obj, const std::string& path);
void SetPropText(TObject& obj, const std::string& path, const std::string& text,
                 const TPropertyContext& context = {});

// The object a dotted path leads to and the property at its end.
std::pair<TObject*, const TPropInfo*> ResolvePropPath(TObject& obj, const std::string& path);

// Looks a name up the owner chain of `from`: a component it owns, a sibling, or a
// dotted Owner.Component name among the root's components.
TComponent* FindComponentByPath(const TComponent* from, const std::string& name);

} // namespace qv
