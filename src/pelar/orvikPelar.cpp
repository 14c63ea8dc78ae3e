// Which Highway target the vector entries use.
#include <hwy/highway.h>
#include <hwy/targets.h>

#include "cpu/orvikTable.h"

namespace {
// Highway orders targets best first by their lowest bit.
int64_t bestTarget() {
  const int64_t usable = ovkPelarUsableTargets();
  return usable & -usable;
}
}  // namespace

int64_t ovkPelarUsableTargets() {
  // A build with one target dispatches statically to its baseline, which runs
  // whether or not Highway's runtime detection knows the processor (it does
  // not recognise NEON on 32-bit ARM).
  if ((HWY_TARGETS & (HWY_TARGETS - 1)) == 0) return HWY_TARGETS;
  return hwy::SupportedTargets() & HWY_TARGETS;
}

void ovkPelarSelectTarget() { hwy::GetChosenTarget().Update(hwy::SupportedTargets()); }

const char* ovkPelarTargetName() { return hwy::TargetName(bestTarget()); }
