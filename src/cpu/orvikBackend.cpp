// Back-end selection, the DSP session state machine and back-end bring-up.
#include "orvikBackend.h"

#include <stdlib.h>

extern "C" {
OVK_API uint32_t GPU_initflag;
OVK_API uint32_t RDSP_initflag;
OVK_API void* (*ovkSharedMemAlloc_)(uint32_t size, uint32_t alignment);
OVK_API int32_t (*ovkSharedMemFree_)(void* ptr);
OVK_API void* (*ovkSharedMemAllocR_)(uint32_t size, uint32_t alignment);
OVK_API int32_t (*ovkSharedMemFreeR_)(void* ptr);
OVK_API void* (**ppovkSharedMemAlloc)(uint32_t size, uint32_t alignment) = &ovkSharedMemAlloc_;
OVK_API int32_t (**ppovkSharedMemFree)(void* ptr) = &ovkSharedMemFree_;
}

namespace {

// No DSP or GPU is reachable from this build: the built-in back-ends say so.
bool absent() { return false; }
int32_t refuseSession(int32_t, const char*, uint32_t) { return -1; }
void nothing() {}
void ignoreFlag(uint32_t) {}
ovkFuncPtr noKernel(uint32_t) { return nullptr; }
int32_t noSharedMem() { return -1; }
void* noSharedAlloc(uint32_t, uint32_t) { return nullptr; }
int32_t noSharedFree(void*) { return -1; }
int32_t noGpu() { return 0; }

const ovkDspBackend kBuiltinDsp = {absent,      refuseSession, nothing,       ignoreFlag,  noKernel,
                                   noSharedMem, nothing,       noSharedAlloc, noSharedFree};
const ovkGpuBackend kBuiltinGpu = {absent, noGpu, nothing, noKernel};

const ovkDspBackend* gDsp = &kBuiltinDsp;
const ovkGpuBackend* gGpu = &kBuiltinGpu;

int32_t gSessionState = OVK_DSP_UNINITIALISED;
int32_t gSessionMode = -1;
bool gGpuUp;
bool gDspSharedMemory;

constexpr char kVersion[] = "1.7.1";

// Operation modes 0, 1, 2 map to DSP session modes 0, 2, 1; others use 2.
int32_t sessionModeFor(uint32_t mode) {
  static const int32_t kSessionModes[] = {0, 2, 1};
  return mode < 3 ? kSessionModes[mode] : 2;
}

void setUpSharedMemory(uint32_t backends) {
  if (!(backends & 0x8) || gDspSharedMemory) return;
  if (gDsp->sharedMemInit() != 0) return;
  ovkSharedMemAlloc_ = gDsp->sharedMemAlloc;
  ovkSharedMemFree_ = gDsp->sharedMemFree;
  gDspSharedMemory = true;
}

}  // namespace

void ovkReadLogProperty() {
  char value[92];
  ovkPropertyGet("runtime.orvik.log", value, sizeof value);
  value[sizeof value - 1] = '\0';
  libLogPrint = atoi(value) != 0;
}

const ovkDspBackend& ovkDsp() { return *gDsp; }
const ovkGpuBackend& ovkGpu() { return *gGpu; }

void ovkInstallBackends(const ovkDspBackend* dsp, const ovkGpuBackend* gpu) {
  ovkCleanUpHW();
  gSessionState = OVK_DSP_UNINITIALISED;
  gDsp = dsp ? dsp : &kBuiltinDsp;
  gGpu = gpu ? gpu : &kBuiltinGpu;
}

int32_t ovkR6Initialize(int32_t sessionMode) {
  ovkReadLogProperty();
  if (gSessionState == OVK_DSP_READY) {
    if (gSessionMode == sessionMode) return 0;
    ovkLog(OVK_LOG_INFO, OVK_LOG_TAG, "%s", "KELVAR6_deinit");
    ovkR6DeInitialize();
  }
  if (gSessionState == OVK_DSP_FAILED) return -1;
  if (gDsp->open(sessionMode, kVersion, sizeof kVersion) != 0) {
    gSessionState = OVK_DSP_FAILED;
    gSessionMode = -1;
    ovkLog(OVK_LOG_ERROR, OVK_LOG_TAG, "%s", "R6 initialized failed. R6 Orvik functions are disabled.");
    return -1;
  }
  gSessionState = OVK_DSP_READY;
  gSessionMode = sessionMode;
  ovkLog(OVK_LOG_DEBUG, OVK_LOG_TAG, "R6 initialized successfully. R6 Orvik functions mode %d are enabled.",
         sessionMode);
  ovkLog(OVK_LOG_INFO, OVK_LOG_TAG, "%s", "FIT:(FeatureName=>KELVAR6, Initialized=>1)");
  return 0;
}

// A failed session stays failed: it is never retried.
void ovkR6DeInitialize() {
  if (gSessionState != OVK_DSP_READY) return;
  gDsp->close();
  gSessionState = OVK_DSP_UNINITIALISED;
  gSessionMode = -1;
}

bool ovkR6IsReady() { return gSessionState == OVK_DSP_READY; }
int32_t ovkR6CurrentMode() { return gSessionMode; }

uint32_t ovkBringUpBackends(uint32_t mode) {
  const int32_t sessionMode = sessionModeFor(mode);
  uint32_t backends = 0;
  if (ovkR6IsReady() && ovkR6CurrentMode() == sessionMode) {
    backends |= 0x8;
  } else {
    ovkR6DeInitialize();
    if (ovkR6Initialize(sessionMode) == 0) backends |= 0x8;
  }
  // Low power never wakes the GPU.
  if (mode != ORVIK_OP_LOW_POWER && gGpu->present() && (gGpuUp || gGpu->init() != 0)) {
    gGpuUp = true;
    backends |= 0x20;
  }
  setUpSharedMemory(backends);
  return backends;
}

void ovkCleanUpHW() {
  ovkR6DeInitialize();
  if (gGpuUp) gGpu->cleanUp();
  gGpuUp = false;
  if (gDspSharedMemory) gDsp->sharedMemDeInit();
  gDspSharedMemory = false;
  ovkSharedMemAlloc_ = nullptr;
  ovkSharedMemFree_ = nullptr;
  ovkSharedMemAllocR_ = nullptr;
  ovkSharedMemFreeR_ = nullptr;
}

void ovkSetHWFlag(uint32_t flag) {
  HW_constraint_checks_enable = flag;
  gDsp->setConstraintChecks(flag);
}

extern "C" OVK_API void ovkCleanUp(void) {
  ovkCleanUpHW();
  GPU_initflag = 0;
  RDSP_initflag = 0;
}

extern "C" OVK_API int32_t ovkHasGPU(void) { return gGpu->present() ? 1 : 0; }
