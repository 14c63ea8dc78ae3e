#include "fake_backends.h"

#include <stdlib.h>

#include "cpu/orvikBackend.h"

namespace {

FakeBackendState gState;

void fakeDspGaussian(const uint8_t*, uint32_t, uint32_t, uint32_t, uint8_t*, uint32_t, int32_t) {
  ++gState.dspCalls;
}
ovkStatusCode fakeDspGaussianV3(const uint8_t*, uint32_t, uint32_t, uint32_t, uint8_t*, uint32_t,
                                ovkBorderType, uint8_t) {
  ++gState.dspCalls;
  return gState.dspStatus;
}
void fakeGpuGaussian(const uint8_t*, uint32_t, uint32_t, uint32_t, uint8_t*, uint32_t, int32_t) {
  ++gState.gpuCalls;
}
int32_t fakeDspReduction(const uint8_t*, uint32_t, uint32_t, uint32_t, uint8_t*, uint32_t) {
  ++gState.dspCalls;
  return 0;
}
void fakeDspMedian(const uint8_t*, uint32_t, uint32_t, uint32_t, uint8_t*, uint32_t) { ++gState.dspCalls; }
void fakeGpuMedian(const uint8_t*, uint32_t, uint32_t, uint32_t, uint8_t*, uint32_t) { ++gState.gpuCalls; }

ovkFuncPtr dspKernel(uint32_t group) {
  if (group == ovkGroup::FilterGaussian3x3u8) return reinterpret_cast<ovkFuncPtr>(fakeDspGaussian);
  if (group == ovkGroup::FilterGaussian3x3u8_v3) return reinterpret_cast<ovkFuncPtr>(fakeDspGaussianV3);
  if (group == ovkGroup::FilterMedian3x3u8) return reinterpret_cast<ovkFuncPtr>(fakeDspMedian);
  if (group == ovkGroup::ScaleDownBy2u8 || group == ovkGroup::ScaleDownBy4u8)
    return reinterpret_cast<ovkFuncPtr>(fakeDspReduction);
  return nullptr;
}
ovkFuncPtr gpuKernel(uint32_t group) {
  if (group == ovkGroup::FilterGaussian3x3u8) return reinterpret_cast<ovkFuncPtr>(fakeGpuGaussian);
  if (group == ovkGroup::FilterMedian3x3u8) return reinterpret_cast<ovkFuncPtr>(fakeGpuMedian);
  return nullptr;
}

const ovkDspBackend kFakeDsp = {
    [] { return gState.dspPresent; },
    [](int32_t mode, const char*, uint32_t) {
      ++gState.opens;
      gState.lastSessionMode = mode;
      return gState.openResult;
    },
    [] { ++gState.closes; },
    [](uint32_t flag) { gState.constraintFlag = flag; },
    dspKernel,
    [] {
      ++gState.sharedMemInits;
      return int32_t(0);
    },
    [] { ++gState.sharedMemDeInits; },
    [](uint32_t size, uint32_t) { return malloc(size); },
    [](void* p) {
      free(p);
      return int32_t(0);
    },
};

const ovkGpuBackend kFakeGpu = {
    [] { return gState.gpuPresent; },
    [] {
      ++gState.gpuInits;
      return gState.gpuInitResult;
    },
    [] { ++gState.gpuCleanUps; },
    gpuKernel,
};

}  // namespace

FakeBackends::FakeBackends() {
  gState = FakeBackendState();
  ovkInstallBackends(&kFakeDsp, &kFakeGpu);
}

FakeBackends::~FakeBackends() { ovkInstallBackends(nullptr, nullptr); }

FakeBackendState& FakeBackends::state() { return gState; }
