#include "vector_targets.h"

#include <hwy/targets.h>

#include "cpu/orvikTable.h"

std::vector<int64_t> vectorTargets() {
  std::vector<int64_t> targets;
  for (int64_t remaining = ovkPelarUsableTargets(); remaining != 0; remaining &= remaining - 1)
    targets.push_back(remaining & -remaining);
  return targets;
}

std::string targetName(int64_t target) { return hwy::TargetName(target); }

int forEachVectorTarget(const std::function<void(const std::string& target)>& check) {
  int count = 0;
  for (const int64_t target : vectorTargets()) {
    hwy::SetSupportedTargetsForTest(target);
    ovkPelarSelectTarget();
    check(hwy::TargetName(target));
    ++count;
  }
  hwy::SetSupportedTargetsForTest(0);
  ovkPelarSelectTarget();
  return count;
}

void entriesRunPortable() { ovkSetOperationMode(0x80000002u); }

// The mode change fills the vector table entries only once; refill them
// for the target, then let the mode change point the selectors and the
// row-kernel slots at it.
void entriesRunVectorTarget(int64_t target) {
  hwy::SetSupportedTargetsForTest(target);
  uVTable(ovkFuncTable, ovkInternalFuncTable, OVK_IMPL_PELAR);
  ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE);
}

void entriesRunDefault() {
  hwy::SetSupportedTargetsForTest(0);
  uVTable(ovkFuncTable, ovkInternalFuncTable, OVK_IMPL_PELAR);
  ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE);
}
