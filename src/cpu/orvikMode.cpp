// Operation modes: a mode change probes the hardware, fills the tables and
// sets every selector.
#include "orvikBackend.h"
#include "orvikTable.h"

extern "C" {
OVK_API uint32_t mode_globalVar = ORVIK_OP_CPU_PERFORMANCE;
}

// Processors online at the last mode change, for kernels that split work.
int32_t nOvkAvailableProc = 1;

namespace {

constexpr uint32_t kExtendedBit = 0x80000000u;

bool wantsBackend(uint32_t mode) {
  switch (mode) {
    case ORVIK_OP_LOW_POWER:
    case ORVIK_OP_PERFORMANCE:
    case ORVIK_OP_CPU_OFFLOAD:
    case kExtendedBit | 0x8:
    case ORVIK_OP_EXT_GPU:
    case ORVIK_OP_EXT_RDSP:
      return true;
    default:
      return false;
  }
}

// A chip listed as CPU-only, or a build whose back-ends are all absent.
bool onlyCpu(uint32_t mode) {
  if (ovk_check_only_cpu()) return true;
  return wantsBackend(mode) && !ovkDsp().present() && !ovkGpu().present();
}

void vectorStep(uint64_t hardware) {
  if (!(hardware & 0x4)) return;
  uVHelper();
  uVIndex(ovkImplTable, ovkInternalImplTable);
}

bool knownExtendedMode(uint32_t extended) {
  return extended == 1 || extended == 4 || extended == 8 || extended == 32 || extended == 1024;
}

int32_t setExtendedMode(uint32_t mode, uint64_t hardware) {
  const uint32_t extended = mode & ~kExtendedBit;
  if (extended == 2) return 0;  // everything stays portable
  // An unknown mode leaves every selector portable.
  if (!knownExtendedMode(extended)) return -1;
  vectorStep(hardware);
  const OVK_FUNC_MANAGER* manager = ovkMasterManager();
  if (extended == 32 && (hardware & 0x20)) {
    uG();
    uGIndex(manager);
  } else if (extended == 8 || extended == 1024) {
    ovkSetHWFlag(0);
    if (hardware & 0x8) {
      uQ();
      uQIndex(manager);
    }
  }
  return 0;
}

void setNormalMode(uint32_t mode, uint64_t hardware) {
  if (!(hardware & 0x800) || mode > ORVIK_OP_CPU_PERFORMANCE) return;
  vectorStep(hardware);
  const OVK_FUNC_MANAGER* manager = ovkMasterManager();
  switch (mode) {
    case ORVIK_OP_LOW_POWER:
      uHWLowPowerModeTable(manager);
      break;
    case ORVIK_OP_PERFORMANCE:
      uHWPerformanceModeTable(manager);
      break;
    case ORVIK_OP_CPU_OFFLOAD:
      if (hardware & 0x20) {
        uG();
        uGIndex(manager);
      }
      if (hardware & 0x8) uQCpuOffloadModeTable(manager);
      break;
    default:
      break;
  }
}

// Processor probe done but neither vector unit nor floating point.
bool unusableProcessor(uint64_t hardware) { return (hardware & 0x86) == 0x2; }

}  // namespace

static int32_t ovkSetOperationMode_internal(uint32_t mode) {
  ovkSetHWFlag(1);
  nOvkAvailableProc = ovkAvailableProcessors();
  ovkReadLogProperty();
  const uint64_t hardware = ovkAvailableHardware(mode);
  if (unusableProcessor(hardware)) return 999;
  ovkFillTables(hardware);
  ovkResetSelectors();
  if (mode & kExtendedBit) return setExtendedMode(mode, hardware);
  setNormalMode(mode, hardware);
  return 0;
}

extern "C" OVK_API int32_t ovkSetOperationMode(uint32_t mode) {
  if (onlyCpu(mode)) {
    ovkLog(OVK_LOG_ERROR, OVK_LOG_TAG, "%s\n",
           "DSP and GPU not present. Setting ORVIK mode to ORVIK_OP_CPU_PERFORMANCE.");
    mode = ORVIK_OP_CPU_PERFORMANCE;
  }
  mode_globalVar = mode;
  return ovkSetOperationMode_internal(mode);
}

extern "C" OVK_API int32_t ovkSetOperationModeExt(uint32_t option) {
  static const uint32_t kModes[] = {ORVIK_OP_EXT_RDSP, ORVIK_OP_EXT_GPU};
  if (option < 2) return ovkSetOperationMode(kModes[option]) != 0 ? 1 : 0;
  const char* const self = "ovkSetOperationModeExt";
  ovkLog(OVK_LOG_DEBUG, OVK_LOG_TAG,
         "Failed in %s. Please select appropriate option for mode to %s based on the target of interest",
         self, self);
  ovkLog(OVK_LOG_DEBUG, OVK_LOG_TAG, "For mobile targets, %s supports only ORVIK_OP_EXT_RDSP and ORVIK_OP_EXT_GPU options",
         self);
  ovkLog(OVK_LOG_DEBUG, OVK_LOG_TAG,
         "For non-mobile targets, %s supports ORVIK_OP_EXT_RDSP, ORVIK_OP_EXT_GPU, ORVIK_OP_EXT_ADSP, "
         "ORVIK_OP_EXT_CDSP and ORVIK_OP_EXT_MDSP options",
         self);
  return 1;
}

extern "C" OVK_API int32_t ovkSetOperationModeRemoteLib(uint32_t mode) {
  ovkSetHWFlag(1);
  ovkReadLogProperty();
  const uint64_t hardware = ovkAvailableHardware(mode);
  if (unusableProcessor(hardware)) return 999;
  uRNull();
  const OVK_FUNC_MANAGER* manager = ovkMasterManager();
  if (hardware & 0x8) uQTable(manager, OVK_IMPL_RDSP);
  if ((hardware & 0x20) && manager && manager->funcTable && manager->implCount > OVK_IMPL_GPU)
    ovkStoreGpuKernels(manager);
  if (mode == ORVIK_OP_EXT_GPU && (hardware & 0x20)) uG();
  if (mode == ORVIK_OP_EXT_RDSP && (hardware & 0x8)) uQ();
  return 0;
}
