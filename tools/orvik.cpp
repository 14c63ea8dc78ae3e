// The orvik command: what the library runs on this machine (`info`) and its
// filters applied to PNG files (`run`).
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "cpu/orvikTable.h"
#include "orvikPng.h"

namespace {

constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;
constexpr uint32_t kMode = ORVIK_OP_CPU_PERFORMANCE;

// Ends the command with a message and an exit status.
struct CommandError {
  int exitCode;
  std::string message;
};

// ---- Which implementation runs -----------------------------------------------

const ovkEntryInfo& findEntry(const char* name) {
  for (uint32_t i = 0; i < ovkEntryCount; ++i)
    if (strcmp(ovkEntryList[i].name, name) == 0) return ovkEntryList[i];
  throw CommandError{kExitFailure, std::string(name) + " is not in the operation registry"};
}

// The Highway target only matters when the vector implementation runs.
std::string implementationOf(const ovkEntryInfo& entry) {
  const uint32_t impl = ovkImplTable[entry.selector];
  std::string report = ovkImplChar[impl];
  if (impl == OVK_IMPL_PELAR) report += std::string(" (") + ovkPelarTargetName() + ")";
  return report;
}

const char* modeName(uint32_t mode) {
  static const char* const kNames[] = {"low power", "performance", "CPU offload", "CPU performance"};
  return mode < sizeof kNames / sizeof kNames[0] ? kNames[mode] : "extended";
}

int32_t setMode() {
  const int32_t status = ovkSetOperationMode(kMode);
  if (status != 0) fprintf(stderr, "orvik: ovkSetOperationMode(%u) returned %d\n", kMode, status);
  return status;
}

// ---- orvik info ----------------------------------------------------------------

struct HardwareBit {
  unsigned bit;
  const char* meaning;
};

const HardwareBit kHardwareBits[] = {
    {1, "probe done"},          {2, "vector unit"},              {3, "DSP ready"},       {5, "GPU ready"},
    {7, "floating-point unit"}, {8, "architecture v7 or later"}, {11, "supported board"},
};

const char* hardwareBitMeaning(unsigned bit) {
  for (const HardwareBit& known : kHardwareBits)
    if (known.bit == bit) return known.meaning;
  return "undocumented";
}

// The documented bits are in the low word of the report.
void printHardwareReport() {
  const uint64_t report = ovkAvailableHardware(kMode);
  printf("hardware report: 0x%016" PRIx64 "\n", report);
  for (unsigned bit = 0; bit < 32; ++bit)
    if ((report >> bit) & 1) printf("  bit %2u  %s\n", bit, hardwareBitMeaning(bit));
}

void printOperations() {
  size_t nameWidth = 0;
  for (uint32_t i = 0; i < ovkEntryCount; ++i) nameWidth = std::max(nameWidth, strlen(ovkEntryList[i].name));
  printf("operations (implementation that runs):\n");
  for (uint32_t i = 0; i < ovkEntryCount; ++i)
    printf("  %-*s  %s\n", int(nameWidth), ovkEntryList[i].name, implementationOf(ovkEntryList[i]).c_str());
}

int runInfo() {
  char version[16];
  ovkGetVersion(version, sizeof version);
  printf("orvik %s\n", version);
  const int32_t status = setMode();
  printf("operation mode: %u (%s)\n", mode_globalVar, modeName(mode_globalVar));
  printHardwareReport();
  printOperations();
  return status == 0 ? 0 : kExitFailure;
}

// ---- orvik run -------------------------------------------------------------------

using OptionValues = std::map<std::string, std::string>;  // option name -> value

struct FilterOption {
  std::string name;  // given as --name VALUE or --name=VALUE
  std::vector<std::string> values;
  std::string defaultValue;
  const char* help;
};

// Filters one packed 8-bit plane into dst, which starts as a copy of src so
// that pixels a filter leaves alone keep their value.
using PlaneFilter = void (*)(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst,
                             const OptionValues& options);

struct FilterCommand {
  std::string name;
  const char* entry;  // the exported operation behind it, for the report
  PlaneFilter filterPlane;
  std::vector<FilterOption> options;
};

void gaussian3x3Plane(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst,
                      const OptionValues& options) {
  const int32_t blurBorder = options.at("border") == "blur" ? 1 : 0;
  ovkFilterGaussian3x3u8_v2(src, width, height, 0, dst, 0, blurBorder);
}

void gaussian5x5Plane(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst,
                      const OptionValues& options) {
  const int32_t blurBorder = options.at("border") == "blur" ? 1 : 0;
  ovkFilterGaussian5x5u8_v2(src, width, height, 0, dst, 0, blurBorder);
}

void gaussian11x11Plane(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst,
                        const OptionValues& options) {
  const int32_t blurBorder = options.at("border") == "blur" ? 1 : 0;
  ovkFilterGaussian11x11u8_v2(src, width, height, 0, dst, 0, blurBorder);
}

// Border types by option value; constant frames the image in mid-grey.
constexpr uint8_t kConstantBorderValue = 128;

ovkBorderType borderTypeOf(const OptionValues& options) {
  const std::string& border = options.at("border");
  return border == "replicate" ? ORVIK_BORDER_REPLICATE
         : border == "constant" ? ORVIK_BORDER_CONSTANT
                                : ORVIK_BORDER_UNDEFINED;
}

void box3x3Plane(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, const OptionValues& options) {
  if (options.at("border") == "first") return ovkBoxFilter3x3u8(src, width, height, width, dst, width);
  ovkBoxFilter3x3u8_v2(src, width, height, 0, dst, 0, borderTypeOf(options), kConstantBorderValue);
}

void box5x5Plane(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, const OptionValues&) {
  ovkBoxFilter5x5u8(src, width, height, width, dst, width);
}

void box11x11Plane(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, const OptionValues&) {
  ovkBoxFilter11x11u8(src, width, height, width, dst, width);
}

void median3x3Plane(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst,
                    const OptionValues& options) {
  ovkFilterMedian3x3u8_v3(src, width, height, 0, dst, 0, borderTypeOf(options), kConstantBorderValue);
}

const FilterCommand kFilters[] = {
    {"gaussian3x3", "ovkFilterGaussian3x3u8_v2", gaussian3x3Plane,
     {{"border", {"none", "blur"}, "blur", "blur: edge pixels from their taps inside the image; none: keep them"}}},
    {"gaussian5x5", "ovkFilterGaussian5x5u8_v2", gaussian5x5Plane,
     {{"border", {"none", "blur"}, "blur",
       "blur: the 2-pixel edge band from its taps inside the image; none: keep it"}}},
    {"gaussian11x11", "ovkFilterGaussian11x11u8_v2", gaussian11x11Plane,
     {{"border", {"none", "blur"}, "blur",
       "blur: the 5-pixel edge band from its taps inside the image; none: keep it"}}},
    {"box3x3", "ovkBoxFilter3x3u8_v2", box3x3Plane,
     {{"border", {"none", "constant", "replicate", "first"}, "replicate",
       "edge taps read 0 (none), mid-grey (constant), the nearest edge pixel (replicate); first: the "
       "first-generation filter, which reads 0"}}},
    {"box5x5", "ovkBoxFilter5x5u8", box5x5Plane, {}},
    {"box11x11", "ovkBoxFilter11x11u8", box11x11Plane, {}},
    {"median3x3", "ovkFilterMedian3x3u8_v3", median3x3Plane,
     {{"border", {"none", "constant", "replicate"}, "replicate",
       "none: keep the edge pixels; constant: missing taps read mid-grey; replicate: the nearest edge pixel"}}},
};

std::string joined(const std::vector<std::string>& values) {
  std::string text;
  for (const std::string& value : values) text += (text.empty() ? "" : "|") + value;
  return text;
}

const FilterCommand& findFilter(const std::string& name) {
  for (const FilterCommand& filter : kFilters)
    if (filter.name == name) return filter;
  throw CommandError{kExitUsage, "unknown filter '" + name + "' (orvik --help lists them)"};
}

const FilterOption& findOption(const FilterCommand& filter, const std::string& name) {
  for (const FilterOption& option : filter.options)
    if (option.name == name) return option;
  throw CommandError{kExitUsage, filter.name + " has no option --" + name};
}

void setOption(const FilterCommand& filter, const std::string& name, const std::string& value,
               OptionValues& options) {
  const FilterOption& option = findOption(filter, name);
  if (std::find(option.values.begin(), option.values.end(), value) == option.values.end())
    throw CommandError{kExitUsage, "--" + name + " takes " + joined(option.values) + ", not '" + value + "'"};
  options[name] = value;
}

OptionValues defaultOptions(const FilterCommand& filter) {
  OptionValues options;
  for (const FilterOption& option : filter.options) options[option.name] = option.defaultValue;
  return options;
}

// The sample in the source tree, else the installed copy.
std::string samplePath() {
  const std::string inSourceTree = ORVIK_DATA_DIR "/astronaut.png";
  return std::filesystem::exists(inSourceTree) ? inSourceTree : ORVIK_INSTALLED_SAMPLE;
}

struct RunRequest {
  const FilterCommand* filter;
  std::string input;
  std::string output;
  OptionValues options;
};

bool isOption(const std::string& arg) { return arg.size() > 1 && arg[0] == '-'; }

// Applies the option at args[at], given as --name VALUE or --name=VALUE, and
// returns the index of its last argument.
size_t parseOption(const FilterCommand& filter, const std::vector<std::string>& args, size_t at,
                   OptionValues& options) {
  const std::string& arg = args[at];
  if (arg.compare(0, 2, "--") != 0) throw CommandError{kExitUsage, "unknown option " + arg};
  const size_t equals = arg.find('=');
  if (equals != std::string::npos) {
    setOption(filter, arg.substr(2, equals - 2), arg.substr(equals + 1), options);
    return at;
  }
  if (at + 1 == args.size()) throw CommandError{kExitUsage, arg + " needs a value"};
  setOption(filter, arg.substr(2), args[at + 1], options);
  return at + 1;
}

// args: FILTER [IN.png] [OUT.png], with options anywhere after FILTER.
RunRequest parseRun(const std::vector<std::string>& args) {
  if (args.empty()) throw CommandError{kExitUsage, "run needs a filter (orvik --help lists them)"};
  const FilterCommand& filter = findFilter(args[0]);
  OptionValues options = defaultOptions(filter);
  std::vector<std::string> paths;
  for (size_t i = 1; i < args.size(); ++i) {
    if (isOption(args[i]))
      i = parseOption(filter, args, i, options);
    else
      paths.push_back(args[i]);
  }
  if (paths.size() > 2) throw CommandError{kExitUsage, "run takes at most IN.png and OUT.png"};
  return {&filter, paths.size() > 0 ? paths[0] : samplePath(), paths.size() > 1 ? paths[1] : filter.name + ".png",
          options};
}

void extractPlane(const InterleavedImage& image, uint32_t channel, std::vector<uint8_t>& plane) {
  for (size_t i = 0; i < plane.size(); ++i) plane[i] = image.pixels[i * image.channels + channel];
}

void insertPlane(const std::vector<uint8_t>& plane, uint32_t channel, InterleavedImage& image) {
  for (size_t i = 0; i < plane.size(); ++i) image.pixels[i * image.channels + channel] = plane[i];
}

// Filters every color plane into `filtered` (alpha is copied) and returns the
// microseconds spent in the filter itself.
uint64_t filterImage(const RunRequest& request, const InterleavedImage& image, InterleavedImage& filtered) {
  filtered = image;
  std::vector<uint8_t> source(size_t(image.width) * image.height);
  std::vector<uint8_t> result(source.size());
  uint64_t micros = 0;
  for (uint32_t channel = 0; channel < image.colorChannels(); ++channel) {
    extractPlane(image, channel, source);
    result = source;
    const uint64_t start = ovkGetTime();
    request.filter->filterPlane(source.data(), image.width, image.height, result.data(), request.options);
    micros += ovkGetTime() - start;
    insertPlane(result, channel, filtered);
  }
  return micros;
}

InterleavedImage readInput(const std::string& path) {
  InterleavedImage image;
  std::string error;
  if (!readPng(path, image, error)) throw CommandError{kExitUsage, path + ": " + error};
  if (image.width < 2 || image.height < 2)
    throw CommandError{kExitUsage, path + ": the filters need at least 2x2 pixels"};
  return image;
}

std::string optionsText(const OptionValues& options) {
  std::string text;
  for (const auto& [name, value] : options) text += " --" + name + " " + value;
  return text;
}

int runFilter(const RunRequest& request) {
  const InterleavedImage image = readInput(request.input);
  if (setMode() != 0) return kExitFailure;
  InterleavedImage filtered;
  const uint64_t micros = filterImage(request, image, filtered);
  std::string error;
  if (!writePng(request.output, filtered, error)) throw CommandError{kExitFailure, request.output + ": " + error};
  static const char* const kLayouts[] = {"", "gray", "gray+alpha", "RGB", "RGBA"};
  printf("input:          %s (%ux%u, %s)\n", request.input.c_str(), image.width, image.height,
         kLayouts[image.channels]);
  printf("filter:         %s%s\n", request.filter->name.c_str(), optionsText(request.options).c_str());
  printf("time:           %" PRIu64 " us for %u plane(s)\n", micros, image.colorChannels());
  printf("implementation: %s %s\n", request.filter->entry, implementationOf(findEntry(request.filter->entry)).c_str());
  printf("output:         %s\n", request.output.c_str());
  return 0;
}

// ---- Usage ---------------------------------------------------------------------

void printFilterHelp(FILE* out) {
  for (const FilterCommand& filter : kFilters) {
    fprintf(out, "  %s  (%s)\n", filter.name.c_str(), filter.entry);
    for (const FilterOption& option : filter.options)
      fprintf(out, "    --%s %s  (default %s)\n        %s\n", option.name.c_str(), joined(option.values).c_str(),
              option.defaultValue.c_str(), option.help);
  }
}

void printUsage(FILE* out) {
  fprintf(out,
          "usage: orvik info\n"
          "       orvik run FILTER [IN.png] [OUT.png] [--OPTION VALUE ...]\n"
          "       orvik --help\n\n"
          "info  version, hardware report and the implementation each operation runs\n"
          "run   filters every color plane of IN.png (default: the astronaut sample,\n"
          "      %s), copies alpha, writes OUT.png (default: FILTER.png)\n\n"
          "filters:\n",
          samplePath().c_str());
  printFilterHelp(out);
  fprintf(out, "\nexit status: 0 done, 1 library or output failure, 2 bad usage or unreadable input\n");
}

int dispatch(const std::vector<std::string>& args) {
  if (args.empty()) {
    printUsage(stderr);
    return kExitUsage;
  }
  const std::string& command = args[0];
  if (command == "--help" || command == "-h" || command == "help") {
    printUsage(stdout);
    return 0;
  }
  if (command == "info" && args.size() == 1) return runInfo();
  if (command == "info") throw CommandError{kExitUsage, "info takes no arguments"};
  if (command == "run") return runFilter(parseRun({args.begin() + 1, args.end()}));
  throw CommandError{kExitUsage, "unknown command '" + command + "' (orvik --help)"};
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return dispatch({argv + 1, argv + argc});
  } catch (const CommandError& error) {
    fprintf(stderr, "orvik: %s\n", error.message.c_str());
    return error.exitCode;
  } catch (const std::exception& error) {
    fprintf(stderr, "orvik: %s\n", error.what());
    return kExitFailure;
  }
}
