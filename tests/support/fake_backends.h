// Fake DSP and GPU back-ends: installed while in scope, they count what the
// frame asks of them.  Their Gaussian kernels only count calls.
#ifndef ORVIK_TEST_FAKE_BACKENDS_H
#define ORVIK_TEST_FAKE_BACKENDS_H

#include <stdint.h>

#include "orvik.h"

struct FakeBackendState {
  bool dspPresent = true;
  bool gpuPresent = true;
  int32_t openResult = 0;     // 0: the DSP session opens
  int32_t gpuInitResult = 1;  // nonzero: the GPU comes up
  ovkStatusCode dspStatus = ORVIK_STATUS_FALLBACK;  // returned by the DSP's status kernel

  int opens = 0;
  int closes = 0;
  int32_t lastSessionMode = -1;
  uint32_t constraintFlag = 1;
  int gpuInits = 0;
  int gpuCleanUps = 0;
  int dspCalls = 0;
  int gpuCalls = 0;
  int sharedMemInits = 0;
  int sharedMemDeInits = 0;
};

class FakeBackends {
 public:
  FakeBackends();
  ~FakeBackends();
  FakeBackends(const FakeBackends&) = delete;
  FakeBackends& operator=(const FakeBackends&) = delete;

  FakeBackendState& state();
};

#endif
