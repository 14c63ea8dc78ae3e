#include "orvikCommand.h"

#include <stdio.h>
#include <string.h>

#include <filesystem>

#include "cpu/orvikTable.h"

int32_t setMode() {
  const int32_t status = ovkSetOperationMode(kCommandMode);
  if (status != 0) fprintf(stderr, "orvik: ovkSetOperationMode(%u) returned %d\n", kCommandMode, status);
  return status;
}

// The Highway target only matters when the vector implementation runs.
std::string implementationOf(const char* entryName) {
  for (uint32_t i = 0; i < ovkEntryCount; ++i) {
    if (strcmp(ovkEntryList[i].name, entryName) != 0) continue;
    const uint32_t impl = ovkImplTable[ovkEntryList[i].selector];
    std::string report = ovkImplChar[impl];
    if (impl == OVK_IMPL_PELAR) report += std::string(" (") + ovkPelarTargetName() + ")";
    return report;
  }
  throw CommandError{kExitFailure, std::string(entryName) + " is not in the operation registry"};
}

std::string samplePath() {
  const std::string inSourceTree = ORVIK_DATA_DIR "/astronaut.png";
  return std::filesystem::exists(inSourceTree) ? inSourceTree : ORVIK_INSTALLED_SAMPLE;
}
