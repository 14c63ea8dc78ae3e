// Which Highway target the vector entries use.
#include <hwy/highway.h>
#include <hwy/targets.h>

#include "cpu/orvikTable.h"

namespace {
// Highway orders targets best first by their lowest bit.
int64_t bestTarget() {
  const int64_t usable = hwy::SupportedTargets() & HWY_TARGETS;
  return usable & -usable;
}
}  // namespace

int64_t ovkPelarCompiledTargets() { return HWY_TARGETS; }

void ovkPelarSelectTarget() { hwy::GetChosenTarget().Update(hwy::SupportedTargets()); }

const char* ovkPelarTargetName() { return hwy::TargetName(bestTarget()); }
