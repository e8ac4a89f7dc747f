// Processor, host and version routines, and the unit initialization pairs.

#include "componentbase/UnitGuard.h"
#include "utility/Mystd.h"
#include "utility/Qhelper.h"

#include <gtest/gtest.h>

#include <sys/utsname.h>
#include <unistd.h>

#include <regex>

using namespace qv;

TEST(UnitGuard, BodiesRunOnTheFirstInitializationAndTheBalancingFinalization) {
    TUnitGuard guard;
    EXPECT_FALSE(guard.Leave()); // nothing to finalize yet
    EXPECT_TRUE(guard.Enter());
    EXPECT_FALSE(guard.Enter());
    EXPECT_FALSE(guard.Leave());
    EXPECT_TRUE(guard.Leave());
    EXPECT_EQ(guard.Count(), 0);
    EXPECT_TRUE(guard.Enter()); // a package loaded again starts over
}

TEST(Mystd, CpuIdReportsAFamilyOnceTheUnitHasStarted) {
    MystdInitialization();
    MystdInitialization();
#if defined(__x86_64__) || defined(__i386__)
    EXPECT_GE(CpuID(), 4);
    EXPECT_LE(CpuID(), 15); // four bits of the signature
#else
    EXPECT_GE(CpuID(), 0);
#endif
    MystdFinalization();
    MystdFinalization();
}

TEST(Mystd, HostInfoNamesThisMachineAndADottedAddress) {
    std::string name, address;
    GetHostInfo(name, address);
    char expected[256] = {};
    ASSERT_EQ(gethostname(expected, sizeof expected - 1), 0);
    EXPECT_EQ(name, expected);
    EXPECT_TRUE(address == "-none-" ||
                std::regex_match(address, std::regex(R"(\d{1,3}\.\d{1,3}\.\d{1,3}\.\d{1,3})")))
        << address;
}

TEST(Mystd, HostAddressOfLocalNamesAndUnresolvableOnes) {
    EXPECT_EQ(HostAddress("localhost"), "127.0.0.1");
    EXPECT_EQ(HostAddress("127.1.2.3"), "127.1.2.3");
    EXPECT_EQ(HostAddress(""), "-none-");
    EXPECT_EQ(HostAddress("::1"), "-none-"); // not an IPv4 address
}

TEST(Qhelper, KernelReleasesGiveMajorMinorAndBuild) {
    const TOsVersion v = ParseKernelRelease("6.1.0-13-amd64");
    EXPECT_EQ(v.type, q_Windows);
    EXPECT_EQ(v.major, 6);
    EXPECT_EQ(v.minor, 1);
    EXPECT_EQ(v.build, 0);
    const TOsVersion stable = ParseKernelRelease("5.15.120+");
    EXPECT_EQ(stable.minor, 15);
    EXPECT_EQ(stable.build, 120);
    EXPECT_EQ(ParseKernelRelease("4.19.70000").build, 70000 & 0xFFFF);
    const TOsVersion rc = ParseKernelRelease("6-rc1");
    EXPECT_EQ(rc.major, 6);
    EXPECT_EQ(rc.minor, 0);
    const TOsVersion garbage = ParseKernelRelease("abc");
    EXPECT_EQ(garbage.major, 0);
    EXPECT_EQ(ParseKernelRelease("99999999999999.1").major, 1 << 30);
}

TEST(Qhelper, TheUnitReadsTheRunningKernelOnce) {
    QhelperInitialization();
    utsname names{};
    ASSERT_EQ(uname(&names), 0);
    const TOsVersion expected = ParseKernelRelease(names.release);
    EXPECT_EQ(WindowsType(), q_Windows);
    EXPECT_EQ(MajorVersion(), expected.major);
    EXPECT_EQ(MinorVersion(), expected.minor);
    EXPECT_EQ(BuildVersion(), expected.build);
    EXPECT_GT(MajorVersion(), 0);
    EXPECT_FALSE(IsWorkgroup());
    EXPECT_FALSE(Is311());
    QhelperFinalization();
}
