// What the library needs from the operating system: the log, system
// properties and the processor description.  Android-specific code lives in
// orvikAndroid.cpp only.
#ifndef ORVIK_PLATFORM_H
#define ORVIK_PLATFORM_H

#include <stddef.h>
#include <stdint.h>

#include "orvik.h"

// Writes one formatted message to the current log sink.
void ovkPlatformLog(int priority, const char* tag, const char* message);
// The built-in sink: logcat on Android, stderr elsewhere.
void ovkDefaultLogSink(int priority, const char* tag, const char* message);

// Reads a system property into value (always zero-terminated); outside Android
// the property "a.b.c" is the environment variable A_B_C.  Returns its length,
// 0 when unset.
size_t ovkPropertyGet(const char* name, char* value, size_t size);

// Results of the one-time /proc/cpuinfo probe.
enum : uint32_t {
  OVK_CPU_ARCH_V7 = 0x1,  // architecture version 7 or later (always on x86-64)
  OVK_CPU_FPU = 0x2,      // floating-point unit
  OVK_CPU_VECTOR = 0x4,   // NEON / ASIMD, or SSSE3 on x86-64
};

struct ovkCpuInfo {
  uint32_t features;     // OVK_CPU_* bits
  uint32_t implementer;  // "CPU implementer" code, 0 when absent
  uint32_t cpuOnly;      // "Hardware" names a chip that runs without DSP and GPU
  uint32_t vendorKnown;  // x86-64: a "vendor_id" line was seen
};

// Parses cpuinfo text (not necessarily zero-terminated).
ovkCpuInfo ovkParseCpuInfo(const char* text, size_t length);
// Reads and parses /proc/cpuinfo once per process (thread-safe).
const ovkCpuInfo& ovkCpuProbe();

#endif
