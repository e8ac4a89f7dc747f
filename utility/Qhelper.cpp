#include "Qhelper.h"

#include "componentbase/UnitGuard.h"

#include <sys/utsname.h>

#include <algorithm>
#include <cctype>

namespace qv {

namespace {

// The unit's state: fixed by its initialization.
TUnitGuard g_qhelperUnit;
TOsVersion g_version;

// Reads a decimal field at `pos` (0 when there is none) and moves past it and one dot.
int NextField(std::string_view text, std::size_t& pos) {
    long value = 0;
    for (; pos < text.size() && std::isdigit(static_cast<unsigned char>(text[pos])); ++pos)
        value = std::min(value * 10 + (text[pos] - '0'), 1L << 30);
    if (pos < text.size() && text[pos] == '.')
        ++pos;
    else
        pos = text.size();
    return static_cast<int>(value);
}

TOsVersion ReadOsVersion() {
    utsname names{};
    if (uname(&names) != 0) return {};
    return ParseKernelRelease(names.release);
}

} // namespace

TOsVersion ParseKernelRelease(std::string_view release) {
    std::size_t pos = 0;
    TOsVersion version;
    version.major = NextField(release, pos);
    version.minor = NextField(release, pos);
    version.build = NextField(release, pos) & 0xFFFF;
    return version;
}

void QhelperInitialization() {
    if (g_qhelperUnit.Enter()) g_version = ReadOsVersion();
}

void QhelperFinalization() {
    g_qhelperUnit.Leave();
}

WTypes WindowsType() {
    return g_version.type;
}
int MajorVersion() {
    return g_version.major;
}
int MinorVersion() {
    return g_version.minor;
}
int BuildVersion() {
    return g_version.build;
}
bool IsWorkgroup() {
    return false;
}
bool Is311() {
    return false;
}

} // namespace qv
