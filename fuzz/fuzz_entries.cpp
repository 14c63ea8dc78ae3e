// A libFuzzer target for one family of the entry table, named at build time
// by ORVIK_FUZZ_FAMILY: every input is a call run on the portable kernels and
// on a vector target, and any difference is a finding.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "support/differential.h"

namespace {

Family fuzzedFamily() {
  for (const Family family : kFamilies)
    if (strcmp(familyName(family), ORVIK_FUZZ_FAMILY) == 0) return family;
  fprintf(stderr, "no family named %s\n", ORVIK_FUZZ_FAMILY);
  abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const Family family = fuzzedFamily();
  const std::string difference = runDifferential(family, data, size);
  if (!difference.empty()) {
    fprintf(stderr, "difference: %s\n", difference.c_str());
    abort();
  }
  return 0;
}
