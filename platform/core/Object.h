#pragma once
// TObject: the root of the framework's classes. Every class that takes part in the class
// registry or has published properties describes itself through a TClassInfo.

#include <functional>
#include <string>

namespace qv {

struct TClassInfo;

class TObject {
public:
    TObject() = default;
    TObject(const TObject&) = delete;
    TObject& operator=(const TObject&) = delete;
    virtual ~TObject() = default;

    static const TClassInfo& StaticClassInfo();
    virtual const TClassInfo& ClassInfo() const { return StaticClassInfo(); }

    const std::string& ClassName() const;
    bool InheritsFrom(const TClassInfo& cls) const;
};

// Declares the class-info accessors of a class; the definition is written with TClassBuilder
// in the class's source file.
#define QV_OBJECT                                                                                  \
public:                                                                                            \
    static const ::qv::TClassInfo& StaticClassInfo();                                              \
    const ::qv::TClassInfo& ClassInfo() const override {                                           \
        return StaticClassInfo();                                                                  \
    }

using TNotifyEvent = std::function<void(TObject* Sender)>;

} // namespace qv
