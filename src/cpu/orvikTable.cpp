// Function tables, selectors, exported kernel pointers and their fillers, all
// expanded from the registry.
#include "orvikTable.h"

#include "orvikBackend.h"

extern "C" {
OVK_API ovkFuncPtr ovkFuncTable[OVK_NUM_GROUPS * OVK_NUM_IMPLS];
OVK_API ovkFuncPtr ovkInternalFuncTable[OVK_NUM_INTERNAL_GROUPS * OVK_NUM_IMPLS];
OVK_API uint32_t ovkImplTable[OVK_NUM_GROUPS];
OVK_API uint32_t ovkInternalImplTable[OVK_NUM_INTERNAL_GROUPS];
// Exported through its declaration (the attribute cannot sit on this one).
const char* const ovkImplChar[OVK_NUM_IMPLS] = {"CPU", "PELAR", "RDSP", "GPU", "ADSP", "CDSP", "MDSP"};

// ovk<Name>_ holds the portable kernel, ppovk<Name> points at ovk<Name>_, and
// ovk<Name>R_ receives a back-end kernel in the remote-library mode.
#define OVK_REMOTE_POINTER_R(Name, Group) OVK_API ovk##Group##Fn ovk##Name##R_ = nullptr;
#define OVK_REMOTE_POINTER_N(Name, Group)
#define OVK_X(Name, SelectorGroup, Group, remote)           \
  OVK_API ovk##Group##Fn ovk##Name##_ = ovk##Group##C;      \
  OVK_API ovk##Group##Fn* ppovk##Name = &ovk##Name##_;      \
  OVK_REMOTE_POINTER_##remote(Name, Group)
OVK_ENTRIES(OVK_X)
#undef OVK_X

// Inner-kernel slots start on their portable routines, so the portable outer
// loops work even before the first mode change.
#define OVK_X(stem, Fn, vector) OVK_API Fn stem##_ = stem##C;
OVK_INNER_KERNELS(OVK_X)
#undef OVK_X
}

namespace {

// Every group number is below 506 and used once.
constexpr uint32_t kGroupNumbers[] = {
#define OVK_X(number, Group, vector, backends) number,
    OVK_GROUPS(OVK_X)
#undef OVK_X
};
constexpr bool groupNumbersValid() {
  constexpr size_t count = sizeof kGroupNumbers / sizeof kGroupNumbers[0];
  for (size_t i = 0; i < count; ++i) {
    if (kGroupNumbers[i] >= OVK_NUM_GROUPS) return false;
    for (size_t j = i + 1; j < count; ++j)
      if (kGroupNumbers[i] == kGroupNumbers[j]) return false;
  }
  return true;
}
static_assert(groupNumbersValid(), "registry group numbers must be unique and below 506");

template <class Fn>
ovkFuncPtr asEntry(Fn fn) {
  return reinterpret_cast<ovkFuncPtr>(fn);
}

#define OVK_VECTOR_V(Group) asEntry(ovkVector##Group())
#define OVK_VECTOR_N(Group) nullptr

// Writes `kernel(group)` into entry `impl` of every group whose back-ends
// include `form`, skipping groups the back-end has no kernel for and groups
// beyond a shorter table.
void storeBackendKernels(const OVK_FUNC_MANAGER* manager, uint32_t impl, uint32_t form,
                         ovkFuncPtr (*kernel)(uint32_t)) {
#define OVK_X(number, Group, vector, backends)                                  \
  if ((backends) & form) {                                                      \
    const ovkFuncPtr k = number < manager->groupCount ? kernel(number) : nullptr; \
    if (k) manager->funcTable[number * manager->implCount + impl] = k;         \
  }
  OVK_GROUPS(OVK_X)
#undef OVK_X
}

void setSelectors(const OVK_FUNC_MANAGER* manager, uint32_t mask, uint32_t impl) {
#define OVK_X(number, Group, vector, backends) \
  if (((backends) & mask) == mask && number < manager->groupCount) manager->implTable[number] = impl;
  OVK_GROUPS(OVK_X)
#undef OVK_X
}

OVK_FUNC_MANAGER gManager;
OVK_FUNC_MANAGER* gMasterManager;
bool gTablesInitialised;

bool dspReadyFor(uint32_t mode) { return (ovkAvailableHardware(mode) & 0x8) != 0; }

// Shared by the three mode tables: internal selectors 10 (response-time
// probe) and 11 (buffer registration) go to the DSP, then the mode's list.
int32_t applyModeTable(const OVK_FUNC_MANAGER* manager, uint32_t mode, uint32_t dspMask) {
  if (!manager || !manager->funcTable || !manager->internalImplTable) return 1;
  if (!dspReadyFor(mode) || manager->implCount < 3) return 1;
  if (manager->internalGroupCount >= 11) manager->internalImplTable[10] = OVK_IMPL_RDSP;
  if (manager->internalGroupCount >= 12) manager->internalImplTable[11] = OVK_IMPL_RDSP;
  setSelectors(manager, OVK_DSP_FORM | dspMask, OVK_IMPL_RDSP);
  return 0;
}

}  // namespace

int32_t uCTable(ovkFuncPtr* table, ovkFuncPtr* internalTable, uint32_t impl) {
  if (impl >= OVK_NUM_IMPLS) return 1;
#define OVK_X(number, Group, vector, backends) table[number * OVK_NUM_IMPLS + impl] = asEntry(ovk##Group##C);
  OVK_GROUPS(OVK_X)
#undef OVK_X
#define OVK_X(number, Group, vector, backends) internalTable[number * OVK_NUM_IMPLS + impl] = asEntry(ovk##Group##C);
  OVK_INTERNAL_GROUPS(OVK_X)
#undef OVK_X
  (void)internalTable;
  return 0;
}

int32_t uVTable(ovkFuncPtr* table, ovkFuncPtr* internalTable, uint32_t impl) {
  if (impl >= OVK_NUM_IMPLS) return 1;
  ovkPelarSelectTarget();
#define OVK_X(number, Group, vector, backends) \
  if (const ovkFuncPtr k = OVK_VECTOR_##vector(Group)) table[number * OVK_NUM_IMPLS + impl] = k;
  OVK_GROUPS(OVK_X)
#undef OVK_X
#define OVK_X(number, Group, vector, backends) \
  if (const ovkFuncPtr k = OVK_VECTOR_##vector(Group)) internalTable[number * OVK_NUM_IMPLS + impl] = k;
  OVK_INTERNAL_GROUPS(OVK_X)
#undef OVK_X
  (void)internalTable;
  return 0;
}

void uCHelper() {
#define OVK_X(stem, Fn, vector) stem##_ = stem##C;
  OVK_INNER_KERNELS(OVK_X)
#undef OVK_X
}

void uVHelper() {
#define OVK_VECTOR_SLOT_V(stem) stem##_ = ovkVector##stem##_();
#define OVK_VECTOR_SLOT_N(stem)
#define OVK_X(stem, Fn, vector) OVK_VECTOR_SLOT_##vector(stem)
  OVK_INNER_KERNELS(OVK_X)
#undef OVK_X
}

void uVIndex(uint32_t* implTable, uint32_t* internalImplTable) {
#define OVK_X(number, Group, vector, backends) \
  if (ovkGroupVector::Group) implTable[number] = OVK_IMPL_PELAR;
  OVK_GROUPS(OVK_X)
#undef OVK_X
#define OVK_X(number, Group, vector, backends) \
  if (#vector[0] == 'V') internalImplTable[number] = OVK_IMPL_PELAR;
  OVK_INTERNAL_GROUPS(OVK_X)
#undef OVK_X
  (void)internalImplTable;
}

int32_t uQTable(const OVK_FUNC_MANAGER* manager, uint32_t impl) {
  if (!manager || !manager->funcTable || impl >= manager->implCount) return 1;
  storeBackendKernels(manager, impl, OVK_DSP_FORM, ovkDsp().kernel);
  return 0;
}

void uQIndex(const OVK_FUNC_MANAGER* manager) { setSelectors(manager, OVK_DSP_FORM, OVK_IMPL_RDSP); }

void uGIndex(const OVK_FUNC_MANAGER* manager) { setSelectors(manager, OVK_GPU_FORM, OVK_IMPL_GPU); }

namespace {
template <class Fn>
void storeRemote(Fn& pointer, uint32_t group, uint32_t backends, uint32_t form,
                 ovkFuncPtr (*kernel)(uint32_t)) {
  if (backends & form) pointer = reinterpret_cast<Fn>(kernel(group));
}
}  // namespace

#define OVK_STORE_REMOTE_R(Name, Group, form, kernel) \
  storeRemote(ovk##Name##R_, ovkGroup::Group, ovkGroupBackends::Group, form, kernel);
#define OVK_STORE_REMOTE_N(Name, Group, form, kernel)

void uQ() {
#define OVK_X(Name, SelectorGroup, Group, remote) \
  OVK_STORE_REMOTE_##remote(Name, Group, OVK_DSP_FORM, ovkDsp().kernel)
  OVK_ENTRIES(OVK_X)
#undef OVK_X
}

void uG() {
#define OVK_X(Name, SelectorGroup, Group, remote) \
  OVK_STORE_REMOTE_##remote(Name, Group, OVK_GPU_FORM, ovkGpu().kernel)
  OVK_ENTRIES(OVK_X)
#undef OVK_X
}

void uRNull() {
#define OVK_NULL_REMOTE_R(Name) ovk##Name##R_ = nullptr;
#define OVK_NULL_REMOTE_N(Name)
#define OVK_X(Name, SelectorGroup, Group, remote) OVK_NULL_REMOTE_##remote(Name)
  OVK_ENTRIES(OVK_X)
#undef OVK_X
}

void ovkStoreGpuKernels(const OVK_FUNC_MANAGER* manager) {
  storeBackendKernels(manager, OVK_IMPL_GPU, OVK_GPU_FORM, ovkGpu().kernel);
}

int32_t ovkTableHWInit(ovkFuncPtr* table, ovkFuncPtr* internalTable, uint32_t hasDsp, uint32_t hasGpu) {
  int32_t result = 0;
  if (!table || !internalTable) return 1;
  if (hasDsp == 1) {
    ovkLog(OVK_LOG_DEBUG, OVK_LOG_TAG, "%s", "RDSP is available");
    result = uQTable(gMasterManager, OVK_IMPL_RDSP);
  }
  if (hasGpu != 1) return result;
  ovkLog(OVK_LOG_DEBUG, OVK_LOG_TAG, "%s", "GPU is available");
  if (!gMasterManager) return result + 1;
  if (!gMasterManager->funcTable) return result + 2;
  if (gMasterManager->implCount < 4) return result + 4;
  ovkStoreGpuKernels(gMasterManager);
  return result;
}

int32_t ovkInitializeMasterFuncManager(OVK_FUNC_MANAGER* manager) {
  if (!manager || !manager->funcTable || !manager->implTable || !manager->internalFuncTable ||
      !manager->internalImplTable)
    return 1;
  gMasterManager = manager;
  return 0;
}

OVK_FUNC_MANAGER* ovkMasterManager() { return gMasterManager; }

int32_t uHWLowPowerModeTable(const OVK_FUNC_MANAGER* manager) {
  return applyModeTable(manager, ORVIK_OP_LOW_POWER, OVK_DSP_LOW_POWER);
}

int32_t uHWPerformanceModeTable(const OVK_FUNC_MANAGER* manager) {
  if (applyModeTable(manager, ORVIK_OP_PERFORMANCE, OVK_DSP_PERFORMANCE) != 0) return 1;
  if (ovkAvailableHardware(ORVIK_OP_PERFORMANCE) & 0x20)
    setSelectors(manager, OVK_GPU_FORM | OVK_GPU_PERFORMANCE, OVK_IMPL_GPU);
  return 0;
}

int32_t uQCpuOffloadModeTable(const OVK_FUNC_MANAGER* manager) {
  return applyModeTable(manager, ORVIK_OP_CPU_OFFLOAD, OVK_DSP_OFFLOAD);
}

void ovkFillTables(uint64_t hardware) {
  const bool vector = (hardware & 0x4) != 0;
  if (!gTablesInitialised) {
    for (uint32_t impl = OVK_IMPL_CPU; impl <= OVK_IMPL_GPU; ++impl)
      uCTable(ovkFuncTable, ovkInternalFuncTable, impl);
    // Entries 2 and 3 run vector code until a back-end fills them, and the
    // constraint fallback to entry 1 then runs vector code too.
    if (vector)
      for (uint32_t impl = OVK_IMPL_PELAR; impl <= OVK_IMPL_GPU; ++impl)
        uVTable(ovkFuncTable, ovkInternalFuncTable, impl);
    gManager = {ovkImplTable,         OVK_NUM_GROUPS,       ovkFuncTable, ovkInternalImplTable,
                OVK_NUM_INTERNAL_GROUPS, ovkInternalFuncTable, OVK_NUM_IMPLS};
    if (ovkInitializeMasterFuncManager(&gManager) != 0)
      ovkLog(OVK_LOG_ERROR, OVK_LOG_TAG, "%s", "ovkInitializeMasterFuncManager is failed");
  } else if (vector) {
    uVTable(ovkFuncTable, ovkInternalFuncTable, OVK_IMPL_RDSP);
  } else {
    uCTable(ovkFuncTable, ovkInternalFuncTable, OVK_IMPL_RDSP);
  }
  ovkTableHWInit(ovkFuncTable, ovkInternalFuncTable, (hardware >> 3) & 1, (hardware >> 5) & 1);
  gTablesInitialised = true;
}

void ovkResetSelectors() {
  uCHelper();
  // Buffer registration and the shared-memory groups keep their selectors.
  const uint32_t registerBuf = ovkInternalImplTable[11];
  const uint32_t sharedAlloc = ovkImplTable[362], sharedFree = ovkImplTable[363];
  for (uint32_t& selector : ovkInternalImplTable) selector = 0;
  for (uint32_t& selector : ovkImplTable) selector = 0;
  ovkInternalImplTable[11] = registerBuf;
  ovkImplTable[362] = sharedAlloc;
  ovkImplTable[363] = sharedFree;
}

const ovkEntryInfo ovkEntryList[] = {
#define OVK_X(Name, SelectorGroup, Group, remote) \
  {"ovk" #Name, ovkGroup::SelectorGroup, ovkGroup::Group, ovkGroupVector::Group, #remote[0] == 'R'},
    OVK_ENTRIES(OVK_X)
#undef OVK_X
};
const uint32_t ovkEntryCount = sizeof ovkEntryList / sizeof ovkEntryList[0];
