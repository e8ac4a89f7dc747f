#include "Strings.h"

#include "ClassBuilder.h"
#include "Exceptions.h"
#include "Filer.h"
#include "SysUtils.h"

#include <algorithm>

namespace qv {

const TClassInfo& TStrings::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TStrings>("TStrings", &TPersistent::StaticClassInfo()).Build();
    return info;
}

const TClassInfo& TStringList::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TStringList>("TStringList", &TStrings::StaticClassInfo()).Build();
    return info;
}

int TStrings::Add(const std::string& s) {
    const int index = Count();
    Insert(index, s);
    return index;
}

int TStrings::AddObject(const std::string& s, TObject* object) {
    const int index = Add(s);
    PutObject(index, object);
    return index;
}

void TStrings::AddStrings(const TStrings& other) {
    BeginUpdate();
    for (int i = 0; i < other.Count(); ++i)
        AddObject(other.Get(i), other.GetObject(i));
    EndUpdate();
}

int TStrings::IndexOf(const std::string& s) const {
    for (int i = 0; i < Count(); ++i)
        if (SameText(Get(i), s)) return i;
    return -1;
}

void TStrings::Move(int from, int to) {
    if (from == to) return;
    BeginUpdate();
    const std::string s = Get(from);
    TObject* object = GetObject(from);
    Delete(from);
    Insert(to, s);
    PutObject(to, object);
    EndUpdate();
}

void TStrings::Exchange(int a, int b) {
    BeginUpdate();
    const std::string sa = Get(a);
    TObject* oa = GetObject(a);
    Put(a, Get(b));
    PutObject(a, GetObject(b));
    Put(b, sa);
    PutObject(b, oa);
    EndUpdate();
}

std::string TStrings::Text() const {
    std::string out;
    for (int i = 0; i < Count(); ++i)
        out += Get(i) + "\n";
    return out;
}

void TStrings::SetText(const std::string& text) {
    BeginUpdate();
    Clear();
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find_first_of("\r\n", start);
        if (end == std::string::npos) end = text.size();
        Add(text.substr(start, end - start));
        if (end < text.size() && text[end] == '\r' && end + 1 < text.size() &&
            text[end + 1] == '\n')
            ++end;
        start = end + 1;
    }
    EndUpdate();
}

std::string TStrings::CommaText() const {
    std::string out;
    for (int i = 0; i < Count(); ++i) {
        if (i) out += ',';
        const std::string s = Get(i);
        if (s.empty() || s.find_first_of(" ,\"") != std::string::npos) {
            out += '"';
            for (char c : s) {
                if (c == '"') out += '"';
                out += c;
            }
            out += '"';
        } else {
            out += s;
        }
    }
    return out;
}

void TStrings::BeginUpdate() {
    if (m_updateCount++ == 0) SetUpdateState(true);
}

void TStrings::EndUpdate() {
    if (m_updateCount == 0) return;
    if (--m_updateCount == 0) SetUpdateState(false);
}

void TStrings::Assign(const TPersistent& Source) {
    const auto* other = dynamic_cast<const TStrings*>(&Source);
    if (!other) {
        TPersistent::Assign(Source);
        return;
    }
    if (other == this) return;
    BeginUpdate();
    Clear();
    AddStrings(*other);
    EndUpdate();
}

void TStrings::DefineProperties(TFiler& Filer) {
    Filer.DefineProperty(
        "Strings",
        [this](const TFormValue& value) {
            if (value.kind != TFormValue::Kind::List)
                throw EConvertError(std::string("Strings expects a list of strings but got ") +
                                    value.KindName());
            BeginUpdate();
            Clear();
            for (const TFormValue& item : value.list) {
                if (item.kind != TFormValue::Kind::String)
                    throw EConvertError(std::string("Strings expects strings but got ") +
                                        item.KindName());
                Add(item.text);
            }
            EndUpdate();
        },
        [this] {
            std::vector<TFormValue> items;
            for (int i = 0; i < Count(); ++i)
                items.push_back(TFormValue::Str(Get(i)));
            return TFormValue::ListOf(std::move(items));
        },
        Count() > 0);
}

TStringList::TStringList(std::initializer_list<std::string> lines) {
    for (const auto& line : lines)
        m_items.push_back({line, nullptr});
}

void TStringList::CheckIndex(int index, bool allowEnd) const {
    if (index < 0 || index > Count() || (index == Count() && !allowEnd))
        throw EStringListError("List index out of bounds (" + std::to_string(index) + ")");
}

void TStringList::Changing() {
    if (UpdateCount() == 0 && OnChanging) OnChanging(this);
}

void TStringList::Changed() {
    if (UpdateCount() > 0) {
        m_changedWhileUpdating = true;
        return;
    }
    if (OnChange) OnChange(this);
}

void TStringList::SetUpdateState(bool Updating) {
    if (Updating) {
        m_changedWhileUpdating = false;
        return;
    }
    if (m_changedWhileUpdating) {
        m_changedWhileUpdating = false;
        Changed();
    }
}

std::string TStringList::Get(int index) const {
    CheckIndex(index);
    return m_items[static_cast<std::size_t>(index)].text;
}

void TStringList::Put(int index, const std::string& s) {
    CheckIndex(index);
    Changing();
    m_items[static_cast<std::size_t>(index)].text = s;
    Changed();
}

void TStringList::Insert(int index, const std::string& s) {
    CheckIndex(index, true);
    Changing();
    if (m_sorted) {
        auto pos = std::lower_bound(m_items.begin(), m_items.end(), s,
                                    [](const TItem& item, const std::string& v) {
                                        return UpperCase(item.text) < UpperCase(v);
                                    });
        m_items.insert(pos, {s, nullptr});
    } else {
        m_items.insert(m_items.begin() + index, {s, nullptr});
    }
    Changed();
}

void TStringList::Delete(int index) {
    CheckIndex(index);
    Changing();
    m_items.erase(m_items.begin() + index);
    Changed();
}

void TStringList::Clear() {
    if (m_items.empty()) return;
    Changing();
    m_items.clear();
    Changed();
}

TObject* TStringList::GetObject(int index) const {
    CheckIndex(index);
    return m_items[static_cast<std::size_t>(index)].object;
}

void TStringList::PutObject(int index, TObject* object) {
    CheckIndex(index);
    m_items[static_cast<std::size_t>(index)].object = object;
}

void TStringList::SetSorted(bool value) {
    if (value == m_sorted) return;
    if (value) Sort();
    m_sorted = value;
}

void TStringList::Sort() {
    Changing();
    std::stable_sort(m_items.begin(), m_items.end(), [](const TItem& a, const TItem& b) {
        return UpperCase(a.text) < UpperCase(b.text);
    });
    Changed();
}

} // namespace qv
