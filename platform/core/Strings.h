#pragma once
// TStrings / TStringList: an ordered list of strings, each with an optional object pointer,
// with change notification. Form files hold it as Strings = ( 'line' ... ).

#include "Persistent.h"

#include <string>
#include <vector>

namespace qv {

class TStrings : public TPersistent {
    QV_OBJECT
public:
    virtual int Count() const = 0;
    virtual std::string Get(int index) const = 0;
    virtual void Put(int index, const std::string& s) = 0;
    virtual void Insert(int index, const std::string& s) = 0;
    virtual void Delete(int index) = 0;
    virtual void Clear() = 0;
    virtual TObject* GetObject(int index) const = 0;
    virtual void PutObject(int index, TObject* object) = 0;

    std::string Strings(int index) const { return Get(index); }
    std::string operator[](int index) const { return Get(index); }
    int Add(const std::string& s);
    int AddObject(const std::string& s, TObject* object);
    void AddStrings(const TStrings& other);
    int IndexOf(const std::string& s) const; // case-insensitive, -1 when absent
    void Move(int from, int to);
    void Exchange(int a, int b);

    // The lines joined with line breaks (each line followed by one); setting splits at
    // CR, LF or CR LF.
    std::string Text() const;
    void SetText(const std::string& text);
    // The lines as one comma-separated text; items with spaces or commas are quoted.
    std::string CommaText() const;

    // Changes between BeginUpdate and the matching EndUpdate raise one OnChange.
    void BeginUpdate();
    void EndUpdate();
    int UpdateCount() const { return m_updateCount; }

    void Assign(const TPersistent& Source) override;
    void DefineProperties(TFiler& Filer) override;

protected:
    virtual void SetUpdateState(bool /*Updating*/) {}

private:
    int m_updateCount{0};
};

class TStringList : public TStrings {
    QV_OBJECT
public:
    TStringList() = default;
    explicit TStringList(std::initializer_list<std::string> lines);

    int Count() const override { return static_cast<int>(m_items.size()); }
    std::string Get(int index) const override;
    void Put(int index, const std::string& s) override;
    void Insert(int index, const std::string& s) override;
    void Delete(int index) override;
    void Clear() override;
    TObject* GetObject(int index) const override;
    void PutObject(int index, TObject* object) override;

    bool Sorted() const { return m_sorted; }
    void SetSorted(bool value);
    void Sort();

    TNotifyEvent OnChange;
    TNotifyEvent OnChanging;

protected:
    void SetUpdateState(bool Updating) override;

private:
    struct TItem {
        std::string text;
        TObject* object{nullptr}; // not owned
    };
    void CheckIndex(int index, bool allowEnd = false) const;
    void Changing();
    void Changed();

    std::vector<TItem> m_items;
    bool m_sorted{false};
    bool m_changedWhileUpdating{false};
};

} // namespace qv
