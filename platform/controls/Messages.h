#pragma once
// Window messages with their classic numbers, the control notifications (CM_*), and the
// codes they carry. Every control receives its messages through WndProc as a TMessage.

#include <cstdint>

namespace qv {

using HWND = std::uintptr_t;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
using UINT = unsigned;

struct TMessage {
    UINT Msg{0};
    WPARAM WParam{0};
    LPARAM LParam{0};
    LRESULT Result{0};
};

constexpr LPARAM MAKELPARAM(int low, int high) {
    return static_cast<LPARAM>(
        (static_cast<std::uint32_t>(static_cast<std::uint16_t>(low))) |
        (static_cast<std::uint32_t>(static_cast<std::uint16_t>(high)) << 16));
}
// The signed x and y packed into a mouse message's LParam.
constexpr int GET_X_LPARAM(LPARAM l) {
    return static_cast<std::int16_t>(l & 0xFFFF);
}
constexpr int GET_Y_LPARAM(LPARAM l) {
    return static_cast<std::int16_t>((l >> 16) & 0xFFFF);
}

// Window messages.
constexpr UINT WM_NULL = 0x0000;
constexpr UINT WM_CREATE = 0x0001;
constexpr UINT WM_DESTROY = 0x0002;
constexpr UINT WM_MOVE = 0x0003;
constexpr UINT WM_SIZE = 0x0005;
constexpr UINT WM_ACTIVATE = 0x0006;
constexpr UINT WM_SETFOCUS = 0x0007;
constexpr UINT WM_KILLFOCUS = 0x0008;
constexpr UINT WM_ENABLE = 0x000A;
constexpr UINT WM_SETTEXT = 0x000C;
constexpr UINT WM_PAINT = 0x000F;
constexpr UINT WM_CLOSE = 0x0010;
constexpr UINT WM_QUERYENDSESSION = 0x0011;
constexpr UINT WM_QUIT = 0x0012;
constexpr UINT WM_ERASEBKGND = 0x0014;
constexpr UINT WM_SYSCOLORCHANGE = 0x0015;
constexpr UINT WM_ENDSESSION = 0x0016;
constexpr UINT WM_SHOWWINDOW = 0x0018;
constexpr UINT WM_SETCURSOR = 0x0020;
constexpr UINT WM_GETMINMAXINFO = 0x0024;
constexpr UINT WM_WINDOWPOSCHANGED = 0x0047;
constexpr UINT WM_NCHITTEST = 0x0084;
constexpr UINT WM_GETDLGCODE = 0x0087;
constexpr UINT WM_KEYDOWN = 0x0100;
constexpr UINT WM_KEYUP = 0x0101;
constexpr UINT WM_CHAR = 0x0102;
constexpr UINT WM_SYSKEYDOWN = 0x0104;
constexpr UINT WM_SYSKEYUP = 0x0105;
constexpr UINT WM_SYSCHAR = 0x0106;
constexpr UINT WM_COMMAND = 0x0111;
constexpr UINT WM_SYSCOMMAND = 0x0112;
constexpr UINT WM_TIMER = 0x0113;
constexpr UINT WM_MOUSEMOVE = 0x0200;
constexpr UINT WM_LBUTTONDOWN = 0x0201;
constexpr UINT WM_LBUTTONUP = 0x0202;
constexpr UINT WM_LBUTTONDBLCLK = 0x0203;
constexpr UINT WM_RBUTTONDOWN = 0x0204;
constexpr UINT WM_RBUTTONUP = 0x0205;
constexpr UINT WM_RBUTTONDBLCLK = 0x0206;
constexpr UINT WM_MBUTTONDOWN = 0x0207;
constexpr UINT WM_MBUTTONUP = 0x0208;
constexpr UINT WM_MBUTTONDBLCLK = 0x0209;
constexpr UINT WM_MOUSEWHEEL = 0x020A;
constexpr UINT WM_CAPTURECHANGED = 0x0215;
constexpr UINT WM_MOUSEHOVER = 0x02A1;
constexpr UINT WM_MOUSELEAVE = 0x02A3;
constexpr UINT WM_USER = 0x0400;
constexpr UINT WM_APP = 0x8000;

// Control notifications.
constexpr UINT CM_BASE = 0xB000;
constexpr UINT CM_ACTIVATE = CM_BASE + 0;
constexpr UINT CM_DEACTIVATE = CM_BASE + 1;
constexpr UINT CM_GOTFOCUS = CM_BASE + 2;
constexpr UINT CM_LOSTFOCUS = CM_BASE + 3;
constexpr UINT CM_CANCELMODE = CM_BASE + 4;
constexpr UINT CM_DIALOGKEY = CM_BASE + 5;
constexpr UINT CM_DIALOGCHAR = CM_BASE + 6;
constexpr UINT CM_FOCUSCHANGED = CM_BASE + 7;
constexpr UINT CM_PARENTFONTCHANGED = CM_BASE + 8;
constexpr UINT CM_PARENTCOLORCHANGED = CM_BASE + 9;
constexpr UINT CM_HITTEST = CM_BASE + 10;
constexpr UINT CM_VISIBLECHANGED = CM_BASE + 11;
constexpr UINT CM_ENABLEDCHANGED = CM_BASE + 12;
constexpr UINT CM_COLORCHANGED = CM_BASE + 13;
constexpr UINT CM_FONTCHANGED = CM_BASE + 14;
constexpr UINT CM_CURSORCHANGED = CM_BASE + 15;
constexpr UINT CM_CTL3DCHANGED = CM_BASE + 16;
constexpr UINT CM_PARENTCTL3DCHANGED = CM_BASE + 17;
constexpr UINT CM_TEXTCHANGED = CM_BASE + 18;
constexpr UINT CM_MOUSEENTER = CM_BASE + 19;
constexpr UINT CM_MOUSELEAVE = CM_BASE + 20;
constexpr UINT CM_MENUCHANGED = CM_BASE + 21;
constexpr UINT CM_APPKEYDOWN = CM_BASE + 22;
constexpr UINT CM_APPSYSCOMMAND = CM_BASE + 23;
constexpr UINT CM_BUTTONPRESSED = CM_BASE + 24;
constexpr UINT CM_SHOWINGCHANGED = CM_BASE + 25;
constexpr UINT CM_ENTER = CM_BASE + 26;
constexpr UINT CM_EXIT = CM_BASE + 27;
constexpr UINT CM_DESIGNHITTEST = CM_BASE + 28;
constexpr UINT CM_ICONCHANGED = CM_BASE + 29;
constexpr UINT CM_WANTSPECIALKEY = CM_BASE + 30;
constexpr UINT CM_INVOKEHELP = CM_BASE + 31;
constexpr UINT CM_WINDOWHOOK = CM_BASE + 32;
constexpr UINT CM_RELEASE = CM_BASE + 33;
constexpr UINT CM_SHOWHINTCHANGED = CM_BASE + 34;
constexpr UINT CM_PARENTSHOWHINTCHANGED = CM_BASE + 35;
constexpr UINT CM_SYSCOLORCHANGE = CM_BASE + 36;
constexpr UINT CM_WININICHANGE = CM_BASE + 37;
constexpr UINT CM_FONTCHANGE = CM_BASE + 38;
constexpr UINT CM_TIMECHANGE = CM_BASE + 39;
constexpr UINT CM_TABSTOPCHANGED = CM_BASE + 40;
constexpr UINT CM_UIACTIVATE = CM_BASE + 41;
constexpr UINT CM_UIDEACTIVATE = CM_BASE + 42;
constexpr UINT CM_DOCWINDOWACTIVATE = CM_BASE + 43;
constexpr UINT CM_CONTROLLISTCHANGE = CM_BASE + 44;
constexpr UINT CM_GETDATALINK = CM_BASE + 45;
constexpr UINT CM_CHILDKEY = CM_BASE + 46;
constexpr UINT CM_DRAG = CM_BASE + 47;
constexpr UINT CM_HINTSHOW = CM_BASE + 48;
constexpr UINT CM_DIALOGHANDLE = CM_BASE + 49;
constexpr UINT CM_ISTOOLCONTROL = CM_BASE + 50;
constexpr UINT CM_RECREATEWND = CM_BASE + 51;
constexpr UINT CM_INVALIDATE = CM_BASE + 52;

// WM_GETDLGCODE answers.
constexpr LRESULT DLGC_WANTARROWS = 0x0001;
constexpr LRESULT DLGC_WANTTAB = 0x0002;
constexpr LRESULT DLGC_WANTALLKEYS = 0x0004;
constexpr LRESULT DLGC_WANTMESSAGE = 0x0004;
constexpr LRESULT DLGC_HASSETSEL = 0x0008;
constexpr LRESULT DLGC_DEFPUSHBUTTON = 0x0010;
constexpr LRESULT DLGC_UNDEFPUSHBUTTON = 0x0020;
constexpr LRESULT DLGC_RADIOBUTTON = 0x0040;
constexpr LRESULT DLGC_WANTCHARS = 0x0080;
constexpr LRESULT DLGC_STATIC = 0x0100;
constexpr LRESULT DLGC_BUTTON = 0x2000;

// WM_NCHITTEST answers.
constexpr LRESULT HTERROR = -2;
constexpr LRESULT HTTRANSPARENT = -1;
constexpr LRESULT HTNOWHERE = 0;
constexpr LRESULT HTCLIENT = 1;
constexpr LRESULT HTCAPTION = 2;

// Mouse key flags in WParam of mouse messages.
constexpr WPARAM MK_LBUTTON = 0x0001;
constexpr WPARAM MK_RBUTTON = 0x0002;
constexpr WPARAM MK_SHIFT = 0x0004;
constexpr WPARAM MK_CONTROL = 0x0008;
constexpr WPARAM MK_MBUTTON = 0x0010;

// Virtual-key codes.
constexpr unsigned VK_LBUTTON = 0x01;
constexpr unsigned VK_RBUTTON = 0x02;
constexpr unsigned VK_CANCEL = 0x03;
constexpr unsigned VK_MBUTTON = 0x04;
constexpr unsigned VK_BACK = 0x08;
constexpr unsigned VK_TAB = 0x09;
constexpr unsigned VK_CLEAR = 0x0C;
constexpr unsigned VK_RETURN = 0x0D;
constexpr unsigned VK_SHIFT = 0x10;
constexpr unsigned VK_CONTROL = 0x11;
constexpr unsigned VK_MENU = 0x12;
constexpr unsigned VK_PAUSE = 0x13;
constexpr unsigned VK_CAPITAL = 0x14;
constexpr unsigned VK_ESCAPE = 0x1B;
constexpr unsigned VK_SPACE = 0x20;
constexpr unsigned VK_PRIOR = 0x21;
constexpr unsigned VK_NEXT = 0x22;
constexpr unsigned VK_END = 0x23;
constexpr unsigned VK_HOME = 0x24;
constexpr unsigned VK_LEFT = 0x25;
constexpr unsigned VK_UP = 0x26;
constexpr unsigned VK_RIGHT = 0x27;
constexpr unsigned VK_DOWN = 0x28;
constexpr unsigned VK_INSERT = 0x2D;
constexpr unsigned VK_DELETE = 0x2E;
constexpr unsigned VK_F1 = 0x70;
constexpr unsigned VK_F10 = 0x79;
constexpr unsigned VK_F12 = 0x7B;
constexpr unsigned VK_NUMLOCK = 0x90;
constexpr unsigned VK_SCROLL = 0x91;

// Key-message LParam bit 29: the Alt key was down.
constexpr LPARAM KF_ALTDOWN_LPARAM = LPARAM{1} << 29;

} // namespace qv
