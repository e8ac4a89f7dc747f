#pragma once
// Shell_NotifyIcon and its icon record, as the classic shell API has them, over the backend's
// notification-area seam (platform/backend/TrayShell.h). The shell's mouse notifications are
// posted to the record's window as its callback message (WParam: the icon id, LParam: the
// mouse message, 512-521). A tip the shell leaves to the framework shows in the application's
// hint window.

#include "Messages.h"

#include "platform/graphics/PixelBuffer.h"

#include <cstdint>

namespace qv {

constexpr std::uint32_t NIM_ADD = 0;
constexpr std::uint32_t NIM_MODIFY = 1;
constexpr std::uint32_t NIM_DELETE = 2;
constexpr std::uint32_t NIF_MESSAGE = 1;
constexpr std::uint32_t NIF_ICON = 2;
constexpr std::uint32_t NIF_TIP = 4;

// The shell's icon record. cbSize holds the classic record's size (88 bytes: eight 32-bit
// fields and a 64-character tip); the icon handle is the picture itself here.
struct TNotifyIconData {
    static constexpr std::uint32_t ClassicSize = 88;
    static constexpr std::size_t TipLength = 64;

    std::uint32_t cbSize{0};
    HWND hWnd{0};
    std::uint32_t uID{0};
    std::uint32_t uFlags{0};
    std::uint32_t uCallbackMessage{0};
    const TPixelBuffer* hIcon{nullptr};
    char szTip[TipLength]{};
};

// Sends the record to the notification area; true when the shell did it.
bool Shell_NotifyIcon(std::uint32_t message, const TNotifyIconData& data);

} // namespace qv
