// The hardware back-ends behind implementations 2 to 6: what the frame needs
// from a remote DSP and from a GPU.  The built-in back-ends report "not
// present"; a port to hardware (or a test) installs its own.
#ifndef ORVIK_BACKEND_H
#define ORVIK_BACKEND_H

#include <stdint.h>

#include "orvikInternal.h"

struct ovkDspBackend {
  bool (*present)();
  // Opens a session in the given mode; 0 means ready.
  int32_t (*open)(int32_t sessionMode, const char* version, uint32_t versionLength);
  void (*close)();
  // The back-end's own copy of HW_constraint_checks_enable.
  void (*setConstraintChecks)(uint32_t enable);
  // The DSP kernel of a function group, or null.
  ovkFuncPtr (*kernel)(uint32_t group);
  // Shared memory between the processor and the DSP.
  int32_t (*sharedMemInit)();
  void (*sharedMemDeInit)();
  void* (*sharedMemAlloc)(uint32_t size, uint32_t alignment);
  int32_t (*sharedMemFree)(void* ptr);  // 0 when it owned and freed ptr
};

struct ovkGpuBackend {
  bool (*present)();
  int32_t (*init)();  // nonzero means success
  void (*cleanUp)();
  ovkFuncPtr (*kernel)(uint32_t group);
};

// The back-ends in use; null restores the built-in ones.  Installing ends any
// session of the previous DSP back-end and forgets a failed one.
const ovkDspBackend& ovkDsp();
const ovkGpuBackend& ovkGpu();
void ovkInstallBackends(const ovkDspBackend* dsp, const ovkGpuBackend* gpu);

// DSP session state machine (one session per process).
enum ovkDspSessionState : int32_t { OVK_DSP_UNINITIALISED = 0, OVK_DSP_READY = 1, OVK_DSP_FAILED = 2 };
int32_t ovkR6Initialize(int32_t sessionMode);
void ovkR6DeInitialize();
bool ovkR6IsReady();
int32_t ovkR6CurrentMode();

// Brings the back-ends up for a hardware report in `mode` and returns the
// back-end bits (8 DSP ready, 32 GPU ready).
uint32_t ovkBringUpBackends(uint32_t mode);
void ovkCleanUpHW();
void ovkSetHWFlag(uint32_t flag);
// libLogPrint from the property "runtime.orvik.log" (decimal, nonzero = on).
void ovkReadLogProperty();

extern "C" {
OVK_API extern uint32_t GPU_initflag;
OVK_API extern uint32_t RDSP_initflag;
OVK_API extern void* (*ovkSharedMemAlloc_)(uint32_t size, uint32_t alignment);
OVK_API extern int32_t (*ovkSharedMemFree_)(void* ptr);
OVK_API extern void* (*ovkSharedMemAllocR_)(uint32_t size, uint32_t alignment);
OVK_API extern int32_t (*ovkSharedMemFreeR_)(void* ptr);
OVK_API extern void* (**ppovkSharedMemAlloc)(uint32_t size, uint32_t alignment);
OVK_API extern int32_t (**ppovkSharedMemFree)(void* ptr);
}

#endif
