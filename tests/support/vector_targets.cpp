#include "vector_targets.h"

#include <hwy/targets.h>

#include "cpu/orvikTable.h"

int forEachVectorTarget(const std::function<void(const std::string& target)>& check) {
  int count = 0;
  for (int64_t remaining = ovkPelarUsableTargets(); remaining != 0; remaining &= remaining - 1) {
    const int64_t target = remaining & -remaining;
    hwy::SetSupportedTargetsForTest(target);
    ovkPelarSelectTarget();
    check(hwy::TargetName(target));
    ++count;
  }
  hwy::SetSupportedTargetsForTest(0);
  ovkPelarSelectTarget();
  return count;
}
