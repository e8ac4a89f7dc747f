#pragma once
// Unit Qhelper: the operating-system version, read once when the unit starts.
//
// The routines keep the classic names. This library runs on Linux, which is none of the
// platforms WTypes lists, so WindowsType is q_Windows; the version numbers come from the
// kernel release that uname reports ("6.1.0-13-amd64": major 6, minor 1, build 0).

#include <cstdint>
#include <string_view>

namespace qv {

enum class WTypes : std::uint8_t { q_Windows, q_WFW, q_Win32S, q_NT, q_95 };
using enum WTypes;

struct TOsVersion {
    WTypes type{q_Windows};
    int major{0};
    int minor{0};
    int build{0}; // low 16 bits of the build number
};

// The numbers of a kernel release text: the first three dot-separated decimal fields, each
// 0 when missing. The build keeps its low 16 bits.
TOsVersion ParseKernelRelease(std::string_view release);

// The unit's initialization and finalization, counter-guarded: the initialization reads the
// version on its first call only (all zero and q_Windows if uname fails); the finalization
// has nothing to free.
void QhelperInitialization();
void QhelperFinalization();

WTypes WindowsType();
int MajorVersion();
int MinorVersion();
int BuildVersion();
bool IsWorkgroup(); // always false
bool Is311();       // always false

} // namespace qv
