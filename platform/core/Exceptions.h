#pragma once
// The exception classes of the framework. Every framework error derives from Exception,
// which carries a message meant for the user of the application.

#include <stdexcept>
#include <string>

namespace qv {

class Exception : public std::runtime_error {
public:
    explicit Exception(const std::string& message) : std::runtime_error(message) {}
    std::string Message() const { return what(); }
};

#define QV_EXCEPTION(Name, Base)                                                                   \
    class Name : public Base {                                                                     \
    public:                                                                                        \
        using Base::Base;                                                                          \
    }

QV_EXCEPTION(EComponentError, Exception);
QV_EXCEPTION(EConvertError, Exception);
QV_EXCEPTION(ERangeError, Exception);
QV_EXCEPTION(EReadError, Exception);
QV_EXCEPTION(EWriteError, Exception);
QV_EXCEPTION(EClassNotFound, Exception);
QV_EXCEPTION(EInvalidOperation, Exception);
QV_EXCEPTION(EInvalidGraphic, Exception);
QV_EXCEPTION(EOutOfResources, Exception);
QV_EXCEPTION(EThread, Exception);
QV_EXCEPTION(EStringListError, Exception);
QV_EXCEPTION(EPackageError, Exception);
QV_EXCEPTION(EMathError, Exception);
QV_EXCEPTION(EInvalidOp, EMathError);
QV_EXCEPTION(EZeroDivide, EMathError);
QV_EXCEPTION(EOverflow, EMathError);

} // namespace qv
