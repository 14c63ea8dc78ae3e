// The hardware report: processor features from the probe, board recognition
// and the back-ends brought up for a mode.
#include <string.h>

#include "orvikBackend.h"

namespace {

// Board-platform families whose processors the back-ends support even when
// the implementer code is not one we know.
const char* const kBoardPrefixes[] = {"exy", "kir", "rk3", "mt6"};

bool boardRecognised(const ovkCpuInfo& cpu) {
  if ((cpu.implementer | 0x10) == 0x51 || cpu.vendorKnown) return true;
  char platform[92];
  ovkPropertyGet("ro.board.platform", platform, sizeof platform);
  for (const char* prefix : kBoardPrefixes)
    if (strncmp(platform, prefix, 3) == 0) return true;
  return false;
}

uint32_t processorBits(const ovkCpuInfo& cpu) {
  uint32_t bits = 0x2;
  if (cpu.features & OVK_CPU_VECTOR) bits |= 0x4;
  if (cpu.features & OVK_CPU_FPU) bits |= 0x80;
  if (cpu.features & OVK_CPU_ARCH_V7) bits |= 0x100;
  return bits;
}

// Modes that never need a back-end: CPU performance and the extended CPU ones.
bool processorOnlyMode(uint32_t mode) {
  if (mode == ORVIK_OP_CPU_PERFORMANCE) return true;
  const uint32_t extended = mode & 0x7FFFFFFFu;
  return (mode & 0x80000000u) && (extended == 1 || extended == 2 || extended == 4);
}

}  // namespace

extern "C" OVK_API uint64_t ovkAvailableHardware(uint32_t mode) {
  const ovkCpuInfo& cpu = ovkCpuProbe();
  const bool recognised = boardRecognised(cpu);
  const uint32_t report = processorBits(cpu) | (recognised ? 0x800u : 0u);
  if (processorOnlyMode(mode) || !recognised) return report | (uint64_t(report) << 32);
  const uint32_t backends = ovkBringUpBackends(mode);
  GPU_initflag = backends & 0x20;
  RDSP_initflag = backends & 0x8;
  const uint32_t high = (report & 0x186u) | (backends & 0x20 ? 1u : 0u);
  return (report | backends) | (uint64_t(high) << 32);
}

extern "C" OVK_API uint32_t ovkAvailableHWComponent(uint32_t mode) {
  const ovkCpuInfo& cpu = ovkCpuProbe();
  if (processorOnlyMode(mode) || !boardRecognised(cpu)) return 0;
  return ovkBringUpBackends(mode);
}
