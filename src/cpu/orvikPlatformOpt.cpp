// Processor count, the CPU-only check and the optional platform-optimised
// override library.
#include "orvikPlatformOpt.h"

#include <dlfcn.h>
#include <unistd.h>

#include "orvikInternal.h"

namespace {

constexpr const char* kOverrideTag = "orvik_PLATFORM";

const char* gOverridePath = "/data/local/libovkopt.so";
// Not locked: loading and closing belong to the application's set-up code.
void* gOverrideHandle = nullptr;

// dlerror() may return null; "%s" must never see that.
const char* loaderError() {
  const char* error = dlerror();
  return error ? error : "";
}

void logLookupFailure(const char* name, const char* error) {
  ovkLog(OVK_LOG_ERROR, kOverrideTag, "dlsym for %s failed! \n Error:%s\n", name, error);
}

}  // namespace

void ovkPlatformOptSetPath(const char* path) { gOverridePath = path; }

extern "C" {

OVK_API int32_t ovkAvailableProcessors(void) {
  const long online = sysconf(_SC_NPROCESSORS_ONLN);
  if (online < 1) {
    ovkLog(OVK_LOG_ERROR, OVK_LOG_TAG, "%s", "Error in getting the number of available processor");
    return 1;
  }
  return static_cast<int32_t>(online);
}

OVK_API uint32_t ovk_check_only_cpu(void) { return ovkCpuProbe().cpuOnly; }

OVK_API int32_t ovkPlatformOptLoad(void) {
  ovkLog(OVK_LOG_DEBUG, "ovk", "Loading from: %s\n", gOverridePath);
  if (gOverrideHandle == nullptr) {
    gOverrideHandle = dlopen(gOverridePath, RTLD_LAZY);
    if (gOverrideHandle == nullptr) {
      ovkLog(OVK_LOG_ERROR, kOverrideTag, "dlopen for %s failed!\n Error:%s\n", gOverridePath, loaderError());
      return -1;
    }
  }
  ovkLog(OVK_LOG_DEBUG, kOverrideTag, "dlopen for %s is successfull.\n", gOverridePath);
  return 0;
}

OVK_API void* ovkPlatformOptGetFunc(const char* name) {
  if (gOverrideHandle == nullptr) {
    logLookupFailure(name, "library not loaded");
    return nullptr;
  }
  dlerror();  // so that a stale error is not reported for this lookup
  void* address = dlsym(gOverrideHandle, name);
  if (address == nullptr) logLookupFailure(name, loaderError());
  return address;
}

OVK_API int32_t ovkPlatformOptClose(void) {
  if (gOverrideHandle != nullptr) dlclose(gOverrideHandle);
  gOverrideHandle = nullptr;
  return 0;
}

}  // extern "C"
