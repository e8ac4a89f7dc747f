#pragma once
// Processor, instance and host routines of unit Mystd.

#include <string>

namespace qv {

// Looks for the processor identification instruction once; MystdInitialization calls it.
void DetectProcessorFeatures();

// The processor family (4, 5, 6, ...). With the identification instruction (found by
// DetectProcessorFeatures): bits 8 to 11 of the processor signature (leaf 1, EAX). Without it:
// the first decimal digit of the family the kernel reports in /proc/cpuinfo ("cpu family", or
// "CPU architecture" on processors without that line). 0 when neither is available.
int CpuID();

// Always false, whatever the argument, and nothing else happens: the routine is kept for its
// callers; no search for another running instance takes place.
bool IsPrevius(bool activate);

// The machine's host name (at most 255 characters) and the first IPv4 address it resolves to
// as "%d.%d.%d.%d", or "-none-" when it does not resolve. Never raises.
void GetHostInfo(std::string& hostName, std::string& address);

// The first IPv4 address `hostName` resolves to, "%d.%d.%d.%d", or "-none-".
std::string HostAddress(const std::string& hostName);

} // namespace qv
