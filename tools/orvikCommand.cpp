#include "orvikCommand.h"

#include <stdio.h>
#include <string.h>

#include <algorithm>
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

std::string Arguments::option(const std::string& name, const std::string& fallback) const {
  const auto found = options.find(name);
  return found == options.end() ? fallback : found->second;
}

Arguments splitArguments(const std::string& command, const std::vector<std::string>& args,
                         const std::vector<std::string>& known) {
  Arguments split;
  for (size_t i = 0; i < args.size(); ++i) {
    const std::string& arg = args[i];
    if (arg.size() < 2 || arg[0] != '-') {
      split.paths.push_back(arg);
      continue;
    }
    const size_t equals = arg.find('=');
    const std::string name = arg.substr(0, equals);
    if (std::find(known.begin(), known.end(), name) == known.end())
      throw CommandError{kExitUsage, command + " has no option " + name};
    if (equals == std::string::npos && i + 1 == args.size()) throw CommandError{kExitUsage, arg + " needs a value"};
    split.options[name] = equals != std::string::npos ? arg.substr(equals + 1) : args[++i];
  }
  return split;
}

namespace {

// A side in 1..maxSide written in digits only (no sign, space or exponent).
bool parseSide(const std::string& text, uint32_t maxSide, uint32_t& side) {
  if (text.empty() || text.size() > 9 || text.find_first_not_of("0123456789") != std::string::npos) return false;
  const unsigned long value = std::stoul(text);
  if (value == 0 || value > maxSide) return false;
  side = uint32_t(value);
  return true;
}

}  // namespace

bool parseSize(const std::string& text, uint32_t maxSide, uint32_t& width, uint32_t& height) {
  const size_t x = text.find('x');
  return x != std::string::npos && parseSide(text.substr(0, x), maxSide, width) &&
         parseSide(text.substr(x + 1), maxSide, height);
}
