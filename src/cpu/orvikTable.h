// Fillers of the function tables, the selectors and the kernel pointers.
#ifndef ORVIK_TABLE_H
#define ORVIK_TABLE_H

#include "orvikInternal.h"

// What a back-end filler is handed: the tables and their sizes.
struct OVK_FUNC_MANAGER {
  uint32_t* implTable;
  uint32_t groupCount;
  ovkFuncPtr* funcTable;
  uint32_t* internalImplTable;
  uint32_t internalGroupCount;
  ovkFuncPtr* internalFuncTable;
  uint32_t implCount;
};

int32_t uCTable(ovkFuncPtr* table, ovkFuncPtr* internalTable, uint32_t impl);
int32_t uVTable(ovkFuncPtr* table, ovkFuncPtr* internalTable, uint32_t impl);
void uCHelper();
void uVHelper();
void uVIndex(uint32_t* implTable, uint32_t* internalImplTable);
int32_t uQTable(const OVK_FUNC_MANAGER* manager, uint32_t impl);
void uQIndex(const OVK_FUNC_MANAGER* manager);
void uGIndex(const OVK_FUNC_MANAGER* manager);
void uQ();
void uG();
void uRNull();
int32_t ovkTableHWInit(ovkFuncPtr* table, ovkFuncPtr* internalTable, uint32_t hasDsp, uint32_t hasGpu);
int32_t ovkInitializeMasterFuncManager(OVK_FUNC_MANAGER* manager);

// The per-mode DSP (and GPU) selector tables; 1 when the DSP is not ready.
int32_t uHWLowPowerModeTable(const OVK_FUNC_MANAGER* manager);
int32_t uHWPerformanceModeTable(const OVK_FUNC_MANAGER* manager);
int32_t uQCpuOffloadModeTable(const OVK_FUNC_MANAGER* manager);

// Stores GPU kernels into entry 3 of their groups within the manager's
// group count.
void ovkStoreGpuKernels(const OVK_FUNC_MANAGER* manager);

// Mode change steps 6 and 7 (tables, then portable helpers and zeroed
// selectors); `hardware` is the report of the mode being set.
void ovkFillTables(uint64_t hardware);
void ovkResetSelectors();
OVK_FUNC_MANAGER* ovkMasterManager();

// Highway: refresh the chosen target and name it (for `orvik info`).
void ovkPelarSelectTarget();
const char* ovkPelarTargetName();
// The Highway targets compiled in that this processor runs.
int64_t ovkPelarUsableTargets();

// Registry facts for tools and tests.
struct ovkEntryInfo {
  const char* name;
  uint32_t selector;
  uint32_t group;
  bool hasVector;
  bool hasRemote;
};
extern const ovkEntryInfo ovkEntryList[];
extern const uint32_t ovkEntryCount;

#endif
