#pragma once
// TqxRunProg: starts another program from a command line and, when asked, waits for it. The
// line is split into arguments without a shell (platform/system/ChildProcess.h: double quotes
// group, \" is a quote, nothing is expanded; run "sh -c '...'" for a shell); a name without a
// slash is searched in PATH. The program gets our environment and directory, a session of
// its own and descriptors 0-2 only.
//
// A soft wait keeps the application running: ReturnCode is 259 ("still active") while the
// program runs and the loop handles messages, timers and painting, sleeping in the backend's
// wait on the process's pidfd; the program's exit code (128 + N when signal N ended it) ends
// the wait, and so does the application terminating (the program runs on). A hard wait
// blocks and leaves ReturnCode 0. Without a wait the application reaps the program once it
// ends. A failed start sets LastResultCode and SavedErrorCode by the classic error number and
// raises OnError; it never throws. Visiblility is kept for form files and has no effect here.

#include "platform/core/Component.h"
#include "platform/core/TypeInfo.h"

#include <cstdint>
#include <functional>
#include <string>

namespace qv {

class TChildProcess;

enum class TqxRunShow : std::uint8_t {
    qrs_HIDE,
    qrs_SHOWNORMAL,
    qrs_SHOWMINIMIZED,
    qrs_SHOWMAXIMIZED,
    qrs_SHOWNOACTIVATE,
    qrs_SHOW,
    qrs_MINIMIZE,
    qrs_SHOWMINNOACTIVE,
    qrs_SHOWNA,
    qrs_RESTORE,
    qrs_SHOWDEFAULT
};
using enum TqxRunShow;
QV_ENUM_TYPE(TqxRunShow, "qrs_HIDE", "qrs_SHOWNORMAL", "qrs_SHOWMINIMIZED", "qrs_SHOWMAXIMIZED",
             "qrs_SHOWNOACTIVATE", "qrs_SHOW", "qrs_MINIMIZE", "qrs_SHOWMINNOACTIVE", "qrs_SHOWNA",
             "qrs_RESTORE", "qrs_SHOWDEFAULT")

enum class TqxRunError : std::uint8_t {
    qre_OK,
    qre_MemoryError,
    qre_FileNotFound,
    qre_PathNotFound,
    qre_TaskError,
    qre_WrongOpSystem,
    qre_WrongFileFormat,
    qre_networkerror,
    qre_FileError,
    qre_UnknownError
};
using enum TqxRunError;
QV_ENUM_TYPE(TqxRunError, "qre_OK", "qre_MemoryError", "qre_FileNotFound", "qre_PathNotFound",
             "qre_TaskError", "qre_WrongOpSystem", "qre_WrongFileFormat", "qre_networkerror",
             "qre_FileError", "qre_UnknownError")

using TqxError = std::function<void(TObject* Sender, TqxRunError Error, std::int32_t RealErrorCode)>;
QV_EVENT_TYPE(TqxError)

// The result a classic error number reports.
TqxRunError RunErrorOf(std::uint32_t classicError);

class TqxRunProg : public TComponent {
    QV_OBJECT
public:
    struct Defaults {
        static constexpr TqxRunError LastResultCode = qre_OK;
        static constexpr TqxRunShow Visiblility = qrs_SHOWNORMAL;
        static constexpr bool Wait = true;
        static constexpr std::uint32_t ReturnCode = 0;
        static constexpr bool HardWait = false;
    };
    // The return code while a soft wait runs.
    static constexpr std::uint32_t StillActive = 259;

    explicit TqxRunProg(TComponent* AOwner);

    TqxRunError LastResultCode() const { return m_lastResult; }
    const std::string& CmdLine() const { return m_cmdLine; }
    void SetCmdLine(const std::string& value) { m_cmdLine = value; }
    TqxRunShow Visiblility() const { return m_visibility; }
    void SetVisiblility(TqxRunShow value) { m_visibility = value; }
    bool Wait() const { return m_wait; }
    void SetWait(bool value) { m_wait = value; }
    std::uint32_t ReturnCode() const { return m_returnCode; }
    bool HardWait() const { return m_hardWait; }
    void SetHardWait(bool value) { m_hardWait = value; }
    std::uint32_t SavedErrorCode() const { return m_savedErrorCode; }

    void Run();
    virtual void RunThis(const std::string& commandLine);

    TqxError OnError;
    TNotifyEvent OnBeforeRun;
    TNotifyEvent OnBeforeWait;
    TNotifyEvent OnFinish;

private:
    void Failed(std::uint32_t classicError);
    void WaitFor(TChildProcess& child);
    void SoftWait(TChildProcess& child);

    TqxRunError m_lastResult{Defaults::LastResultCode};
    std::string m_cmdLine;
    std::uint32_t m_returnCode{Defaults::ReturnCode};
    TqxRunShow m_visibility{Defaults::Visiblility};
    bool m_wait{Defaults::Wait};
    std::uint32_t m_savedErrorCode{0};
    bool m_hardWait{Defaults::HardWait};
};

} // namespace qv
