#include "SystemInfo.h"

#include "platform/core/SysUtils.h"

#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#endif

#include <cctype>
#include <fstream>
#include <memory>

namespace qv {

namespace {

// Set once by DetectProcessorFeatures (the unit's initialization), read by CpuID.
bool g_hasCpuIdInstruction = false;

int FamilyFromSignature() {
#if defined(__x86_64__) || defined(__i386__)
    unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
    if (__get_cpuid(1, &eax, &ebx, &ecx, &edx)) return static_cast<int>((eax >> 8) & 0xF);
#endif
    return 0;
}

// The first decimal digit of the value of the first /proc/cpuinfo line naming the family.
int FamilyFromKernel() {
    std::ifstream cpuinfo("/proc/cpuinfo");
    std::string line;
    while (std::getline(cpuinfo, line)) {
        if (line.rfind("cpu family", 0) != 0 && line.rfind("CPU architecture", 0) != 0) continue;
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos) continue;
        for (std::size_t i = colon + 1; i < line.size(); ++i)
            if (std::isdigit(static_cast<unsigned char>(line[i]))) return line[i] - '0';
    }
    return 0;
}

struct TAddrInfoDeleter {
    void operator()(addrinfo* info) const { freeaddrinfo(info); }
};

} // namespace

void DetectProcessorFeatures() {
#if defined(__x86_64__) || defined(__i386__)
    g_hasCpuIdInstruction = __get_cpuid_max(0, nullptr) >= 1;
#else
    g_hasCpuIdInstruction = false;
#endif
}

int CpuID() {
    return g_hasCpuIdInstruction ? FamilyFromSignature() : FamilyFromKernel();
}

bool IsPrevius(bool /*activate*/) {
    return false;
}

std::string HostAddress(const std::string& hostName) {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    addrinfo* found = nullptr;
    if (hostName.empty() || getaddrinfo(hostName.c_str(), nullptr, &hints, &found) != 0 || !found)
        return "-none-";
    const std::unique_ptr<addrinfo, TAddrInfoDeleter> owner(found);
    const auto* ipv4 = reinterpret_cast<const sockaddr_in*>(found->ai_addr);
    const auto* b = reinterpret_cast<const unsigned char*>(&ipv4->sin_addr.s_addr);
    return Format("%d.%d.%d.%d", {int{b[0]}, int{b[1]}, int{b[2]}, int{b[3]}});
}

void GetHostInfo(std::string& hostName, std::string& address) {
    char name[256] = {};
    if (gethostname(name, sizeof name - 1) != 0) name[0] = '\0';
    hostName = name;
    address = HostAddress(hostName);
}

} // namespace qv
