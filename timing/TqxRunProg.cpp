#include "TqxRunProg.h"

#include "platform/controls/Application.h"
#include "platform/core/ClassBuilder.h"
#include "platform/system/ChildProcess.h"

namespace qv {

const TClassInfo& TqxRunProg::StaticClassInfo() {
    static const TClassInfo info =
        TClassBuilder<TqxRunProg>("TqxRunProg", &TComponent::StaticClassInfo())
            .Property("LastResultCode", &TqxRunProg::LastResultCode, DiscardWrites)
            .Default(Defaults::LastResultCode)
            .Property("CmdLine", &TqxRunProg::CmdLine, &TqxRunProg::SetCmdLine)
            .Property("Visiblility", &TqxRunProg::Visiblility, &TqxRunProg::SetVisiblility)
            .Default(Defaults::Visiblility)
            .Property("Wait", &TqxRunProg::Wait, &TqxRunProg::SetWait)
            .Default(Defaults::Wait)
            .Property("ReturnCode", &TqxRunProg::ReturnCode, DiscardWrites)
            .Default(Defaults::ReturnCode)
            .Property("HardWait", &TqxRunProg::HardWait, &TqxRunProg::SetHardWait)
            .Default(Defaults::HardWait)
            .Event("OnError", &TqxRunProg::OnError)
            .Event("OnBeforeRun", &TqxRunProg::OnBeforeRun)
            .Event("OnBeforeWait", &TqxRunProg::OnBeforeWait)
            .Event("OnFinish", &TqxRunProg::OnFinish)
            .Build();
    return info;
}

TqxRunError RunErrorOf(std::uint32_t e) {
    if (e == 0) return qre_OK;
    if (e <= 2) return qre_FileNotFound;
    if (e == 3) return qre_PathNotFound;
    if (e == 4) return qre_FileError;
    if (e == 5) return qre_networkerror;
    if (e <= 14) return qre_MemoryError;
    if (e <= 31) return qre_FileError;
    if (e <= 36) return qre_networkerror;
    if (e == 37) return qre_UnknownError;
    if (e <= 52) return qre_FileError;
    if (e <= 55) return qre_networkerror;
    return qre_UnknownError;
}

TqxRunProg::TqxRunProg(TComponent* AOwner) : TComponent(AOwner) {}

void TqxRunProg::Run() {
    RunThis(m_cmdLine);
}

void TqxRunProg::RunThis(const std::string& commandLine) {
    m_returnCode = 0;
    // The argument vector is our own copy; Visiblility has no counterpart for a process here.
    const std::vector<std::string> argv = SplitCommandLine(commandLine);
    if (OnBeforeRun) OnBeforeRun(this);
    if (argv.empty()) {
        Failed(ceFileNotFound);
        return;
    }
    TSpawnOptions options;
    options.newSession = true;
    options.onlyStandardDescriptors = true;
    int error = 0;
    std::optional<TChildProcess> child = TChildProcess::Spawn(argv, error, options);
    if (!child) {
        Failed(ClassicErrorOfSpawn(error, argv.front()));
        return;
    }
    if (m_wait) {
        if (OnBeforeWait) OnBeforeWait(this);
        WaitFor(*child);
        if (OnFinish) OnFinish(this);
    }
    if (!child->Ended()) Application().ReapWhenEnded(std::move(*child));
    m_lastResult = qre_OK;
    m_savedErrorCode = 0;
}

void TqxRunProg::WaitFor(TChildProcess& child) {
    if (m_hardWait) {
        child.Wait(); // the exit code is not read: ReturnCode stays 0
        return;
    }
    SoftWait(child);
}

// The loop runs until the program ends or the application terminates. The pidfd is watched
// by the backend's wait, so the loop sleeps until the program ends or anything else needs
// handling. The watch reaps the program itself: an outer wait's ended program then stops
// waking an inner one.
void TqxRunProg::SoftWait(TChildProcess& child) {
    TApplication& app = Application();
    m_returnCode = StillActive;
    const int pidfd = child.PidFd();
    // Once reaped, the descriptor number may be reused by a later watch: only a watch that is
    // still ours is removed.
    bool watched = true;
    app.Backend().WatchFd(pidfd, [&app, &child, &watched, pidfd] {
        if (!child.TryWait()) return;
        app.Backend().UnwatchFd(pidfd);
        watched = false;
    });
    while (m_returnCode == StillActive && !app.Terminated()) {
        if (const std::optional<int> status = child.TryWait()) {
            m_returnCode = static_cast<std::uint32_t>(*status);
            break;
        }
        app.HandleMessage();
    }
    if (watched) app.Backend().UnwatchFd(pidfd);
}

void TqxRunProg::Failed(std::uint32_t classicError) {
    m_savedErrorCode = classicError;
    m_lastResult = RunErrorOf(classicError);
    if (OnError) OnError(this, m_lastResult, static_cast<std::int32_t>(classicError));
}

} // namespace qv
