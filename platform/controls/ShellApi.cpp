#include "ShellApi.h"

#include "Application.h"
#include "WindowTable.h"

#include "platform/backend/TrayShell.h"

#include <cstring>

namespace qv {

namespace {

TTrayIconRecord RecordOf(const TNotifyIconData& data) {
    TTrayIconRecord record;
    record.window = data.hWnd;
    record.id = data.uID;
    record.flags = data.uFlags;
    record.callbackMessage = data.uCallbackMessage;
    if ((data.uFlags & NIF_ICON) && data.hIcon) record.icon = *data.hIcon;
    if (data.uFlags & NIF_TIP)
        record.tip.assign(data.szTip, strnlen(data.szTip, sizeof data.szTip));
    return record;
}

TTrayOperation OperationOf(std::uint32_t message) {
    switch (message) {
    case NIM_ADD:
        return TTrayOperation::Add;
    case NIM_MODIFY:
        return TTrayOperation::Modify;
    default:
        return TTrayOperation::Delete;
    }
}

} // namespace

bool Shell_NotifyIcon(std::uint32_t message, const TNotifyIconData& data) {
    if (message > NIM_DELETE) return false;
    TTrayShell& shell = Application().Backend().TrayShell();
    if (!shell.HasNotify()) {
        shell.SetNotify([](std::uintptr_t window, std::uint32_t callback, std::uint32_t id,
                           std::uint32_t mouse) { PostMessage(window, callback, id, mouse); });
        // The tip shows in the application's hint window, after the hint pause.
        shell.SetTipNotify([](const std::string& tip, TPoint screen) {
            if (tip.empty())
                Application().CancelHint();
            else
                Application().ActivateHintAt(tip, screen);
        });
    }
    return shell.Apply(OperationOf(message), RecordOf(data));
}

} // namespace qv
