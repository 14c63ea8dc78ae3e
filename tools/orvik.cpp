// The orvik command: what the library runs on this machine (`info`), its
// filters applied to PNG files (`run`), PNG to raw YCbCr frames and back
// (`convert`) and PNG files resized (`scale`).
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "cpu/orvikTable.h"
#include "orvikCommand.h"
#include "orvikConvert.h"
#include "orvikPng.h"
#include "orvikScale.h"

namespace {

const char* modeName(uint32_t mode) {
  static const char* const kNames[] = {"low power", "performance", "CPU offload", "CPU performance"};
  return mode < sizeof kNames / sizeof kNames[0] ? kNames[mode] : "extended";
}

// ---- orvik info ----------------------------------------------------------------

struct HardwareBit {
  unsigned bit;
  const char* meaning;
};

const HardwareBit kHardwareBits[] = {
    {1, "probe done"},       {2, "vector unit"},         {3, "DSP ready"},
    {5, "GPU ready"},        {7, "floating-point unit"}, {8, "architecture v7 or later"},
    {11, "supported board"},
};

const char* hardwareBitMeaning(unsigned bit) {
  for (const HardwareBit& known : kHardwareBits)
    if (known.bit == bit) return known.meaning;
  return "undocumented";
}

// The documented bits are in the low word of the report.
void printHardwareReport() {
  const uint64_t report = ovkAvailableHardware(kCommandMode);
  printf("hardware report: 0x%016" PRIx64 "\n", report);
  for (unsigned bit = 0; bit < 32; ++bit)
    if ((report >> bit) & 1) printf("  bit %2u  %s\n", bit, hardwareBitMeaning(bit));
}

void printOperations() {
  size_t nameWidth = 0;
  for (uint32_t i = 0; i < ovkEntryCount; ++i) nameWidth = std::max(nameWidth, strlen(ovkEntryList[i].name));
  printf("operations (implementation that runs):\n");
  for (uint32_t i = 0; i < ovkEntryCount; ++i)
    printf("  %-*s  %s\n", int(nameWidth), ovkEntryList[i].name, implementationOf(ovkEntryList[i].name).c_str());
}

// Portable outer loops run these inner kernels.
void printRowKernels() {
  const std::string vector = std::string("PELAR (") + ovkPelarTargetName() + ")";
  printf("inner kernels:\n");
#define OVK_X(stem, Fn, kind) printf("  %-18s %s\n", #stem "_", stem##_ == stem##C ? "CPU" : vector.c_str());
  OVK_INNER_KERNELS(OVK_X)
#undef OVK_X
}

int runInfo() {
  char version[16];
  ovkGetVersion(version, sizeof version);
  printf("orvik %s\n", version);
  const int32_t status = setMode();
  printf("operation mode: %u (%s)\n", mode_globalVar, modeName(mode_globalVar));
  printHardwareReport();
  printOperations();
  printRowKernels();
  printConversions(stdout);
  return status == 0 ? 0 : kExitFailure;
}

// ---- orvik run -------------------------------------------------------------------

using OptionValues = std::map<std::string, std::string>;  // option name -> value

struct IntegerRange {
  int32_t min;
  int32_t max;
};

struct FilterOption {
  std::string name;  // given as --name VALUE or --name=VALUE
  std::vector<std::string> values;  // none: an integer in `range`
  std::string defaultValue;
  const char* help;
  IntegerRange range{};
};

// Filters one packed 8-bit plane into dst, which starts as a copy of src so
// that pixels a filter leaves alone keep their value.
using PlaneFilter = void (*)(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst,
                             const OptionValues& options);

// Smoothing filters work on every color plane; edge detectors on one gray
// plane, since an edge map per channel is not what anyone wants.
enum class FilterInput { kEachColorPlane, kGrayPlane };

// Rejects option values that are each valid but not together.
using OptionCheck = void (*)(const OptionValues& options);

struct FilterCommand {
  std::string name;
  const char* entry;  // the exported operation behind it, for the report
  PlaneFilter filterPlane;
  FilterInput input;
  uint32_t minSide;  // the smallest width and height the operation takes
  std::vector<FilterOption> options;
  OptionCheck checkOptions = nullptr;
};

void gaussian3x3Plane(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, const OptionValues& options) {
  const int32_t blurBorder = options.at("border") == "blur" ? 1 : 0;
  ovkFilterGaussian3x3u8_v2(src, width, height, 0, dst, 0, blurBorder);
}

void gaussian5x5Plane(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, const OptionValues& options) {
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
  return border == "replicate"  ? ORVIK_BORDER_REPLICATE
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

void median3x3Plane(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, const OptionValues& options) {
  ovkFilterMedian3x3u8_v3(src, width, height, 0, dst, 0, borderTypeOf(options), kConstantBorderValue);
}

// Gradient outputs start black, so the untouched outermost rows and
// columns read as "no edge".
void sobelPlane(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, const OptionValues&) {
  memset(dst, 0, size_t(width) * height);
  ovkFilterSobel3x3u8_v2(src, width, height, 0, dst, 0);
}

// |dx| + |dy| of the Scharr gradients (up to 8160) over 16, saturated.
void scharrPlane(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, const OptionValues&) {
  memset(dst, 0, size_t(width) * height);
  if (width < 3 || height < 3) return;
  std::vector<int16_t> gradients(size_t(width - 2) * (height - 2) * 2);
  ovkImageGradientScharrInterleaveds16(src, width, height, 0, gradients.data(), 0);
  for (uint32_t y = 1; y + 1 < height; ++y)
    for (uint32_t x = 1; x + 1 < width; ++x) {
      const int16_t* pair = &gradients[(size_t(y - 1) * (width - 2) + (x - 1)) * 2];
      dst[size_t(y) * width + x] = uint8_t(std::min((abs(pair[0]) + abs(pair[1])) >> 4, 255));
    }
}

void cannyPlane(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, const OptionValues& options) {
  ovkFilterCanny3x3u8_v2(src, width, height, 0, dst, 0, std::stoi(options.at("low")), std::stoi(options.at("high")));
}

// The library refuses low > high with a log line and leaves dst alone.
void checkCannyThresholds(const OptionValues& options) {
  const std::string& low = options.at("low");
  const std::string& high = options.at("high");
  if (std::stoi(low) > std::stoi(high))
    throw CommandError{kExitUsage, "canny: --low (" + low + ") must not be above --high (" + high + ")"};
}

// Thresholds are compared with the L1 Sobel magnitude, which spans 0..2040.
constexpr IntegerRange kCannyThresholdRange{0, 2040};

// clang-format off
const FilterCommand kFilters[] = {
    {"gaussian3x3", "ovkFilterGaussian3x3u8_v2", gaussian3x3Plane, FilterInput::kEachColorPlane, 2,
     {{"border", {"none", "blur"}, "blur", "blur: edge pixels from their taps inside the image; none: keep them"}}},
    {"gaussian5x5", "ovkFilterGaussian5x5u8_v2", gaussian5x5Plane, FilterInput::kEachColorPlane, 5,
     {{"border", {"none", "blur"}, "blur",
       "blur: the 2-pixel edge band from its taps inside the image; none: keep it"}}},
    {"gaussian11x11", "ovkFilterGaussian11x11u8_v2", gaussian11x11Plane, FilterInput::kEachColorPlane, 11,
     {{"border", {"none", "blur"}, "blur",
       "blur: the 5-pixel edge band from its taps inside the image; none: keep it"}}},
    // 3x3 for the first-generation filter, --border first
    {"box3x3", "ovkBoxFilter3x3u8_v2", box3x3Plane, FilterInput::kEachColorPlane, 3,
     {{"border", {"none", "constant", "replicate", "first"}, "replicate",
       "edge taps read 0 (none), mid-grey (constant), the nearest edge pixel (replicate); first: the "
       "first-generation filter, which reads 0"}}},
    {"box5x5", "ovkBoxFilter5x5u8", box5x5Plane, FilterInput::kEachColorPlane, 5, {}},
    {"box11x11", "ovkBoxFilter11x11u8", box11x11Plane, FilterInput::kEachColorPlane, 11, {}},
    {"median3x3", "ovkFilterMedian3x3u8_v3", median3x3Plane, FilterInput::kEachColorPlane, 2,
     {{"border", {"none", "constant", "replicate"}, "replicate",
       "none: keep the edge pixels; constant: missing taps read mid-grey; replicate: the nearest edge pixel"}}},
    {"sobel", "ovkFilterSobel3x3u8_v2", sobelPlane, FilterInput::kGrayPlane, 2, {}},
    {"scharr", "ovkImageGradientScharrInterleaveds16", scharrPlane, FilterInput::kGrayPlane, 2, {}},
    {"canny", "ovkFilterCanny3x3u8_v2", cannyPlane, FilterInput::kGrayPlane, 3,
     {{"low", {}, "100", "weak edges: L1 Sobel magnitude above this; not above --high", kCannyThresholdRange},
      {"high", {}, "250", "strong edges: magnitude above this; weak ones touching them join", kCannyThresholdRange}},
     checkCannyThresholds},
};
// clang-format on

std::string joined(const std::vector<std::string>& values) {
  std::string text;
  for (const std::string& value : values) text += (text.empty() ? "" : "|") + value;
  return text;
}

bool isInteger(const std::string& text) {
  size_t digits = text.size() > 1 && text[0] == '-' ? 1 : 0;
  if (digits == text.size() || text.size() - digits > 6) return false;
  for (; digits < text.size(); ++digits)
    if (!isdigit(static_cast<unsigned char>(text[digits]))) return false;
  return true;
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

std::string rangeText(const IntegerRange& range) {
  return std::to_string(range.min) + ".." + std::to_string(range.max);
}

void requireIntegerInRange(const FilterOption& option, const std::string& value) {
  if (isInteger(value) && std::stoi(value) >= option.range.min && std::stoi(value) <= option.range.max) return;
  throw CommandError{kExitUsage, "--" + option.name + " takes an integer in " + rangeText(option.range) + ", not '" +
                                     value + "'"};
}

void setOption(const FilterCommand& filter, const std::string& name, const std::string& value, OptionValues& options) {
  const FilterOption& option = findOption(filter, name);
  if (option.values.empty())
    requireIntegerInRange(option, value);
  else if (std::find(option.values.begin(), option.values.end(), value) == option.values.end())
    throw CommandError{kExitUsage, "--" + name + " takes " + joined(option.values) + ", not '" + value + "'"};
  options[name] = value;
}

OptionValues defaultOptions(const FilterCommand& filter) {
  OptionValues options;
  for (const FilterOption& option : filter.options) options[option.name] = option.defaultValue;
  return options;
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
  if (filter.checkOptions) filter.checkOptions(options);
  return {&filter, paths.size() > 0 ? paths[0] : samplePath(), paths.size() > 1 ? paths[1] : filter.name + ".png",
          options};
}

struct FilteredImage {
  InterleavedImage image;
  uint64_t micros;  // spent in the filter itself
  uint32_t planes;
};

// Filters `source` into `result`, which starts as its copy; returns the
// microseconds the filter took.
uint64_t filterPlane(const RunRequest& request, uint32_t width, uint32_t height, const std::vector<uint8_t>& source,
                     std::vector<uint8_t>& result) {
  result = source;
  const uint64_t start = ovkGetTime();
  request.filter->filterPlane(source.data(), width, height, result.data(), request.options);
  return ovkGetTime() - start;
}

// Every color plane filtered on its own; alpha is copied.
FilteredImage filterEachColorPlane(const RunRequest& request, const InterleavedImage& image) {
  FilteredImage filtered{image, 0, image.colorChannels()};
  std::vector<uint8_t> source(size_t(image.width) * image.height);
  std::vector<uint8_t> result;
  for (uint32_t channel = 0; channel < image.colorChannels(); ++channel) {
    extractPlane(image, channel, source);
    filtered.micros += filterPlane(request, image.width, image.height, source, result);
    insertPlane(result, channel, filtered.image);
  }
  return filtered;
}

std::vector<uint8_t> rgbWithoutAlpha(const InterleavedImage& rgba) {
  const size_t pixels = size_t(rgba.width) * rgba.height;
  std::vector<uint8_t> rgb(pixels * 3);
  for (size_t i = 0; i < pixels; ++i) std::copy_n(&rgba.pixels[i * 4], 3, &rgb[i * 3]);
  return rgb;
}

// Color through the library's conversion, gray as it is; alpha is dropped.
std::vector<uint8_t> grayPlaneOf(const InterleavedImage& image) {
  std::vector<uint8_t> gray(size_t(image.width) * image.height);
  if (image.colorChannels() == 1) {
    extractPlane(image, 0, gray);
    return gray;
  }
  const std::vector<uint8_t> rgb = image.hasAlpha() ? rgbWithoutAlpha(image) : image.pixels;
  ovkColorRGB888ToGrayu8(rgb.data(), image.width, image.height, 0, gray.data(), 0);
  return gray;
}

FilteredImage filterGrayPlane(const RunRequest& request, const InterleavedImage& image) {
  FilteredImage filtered{{image.width, image.height, 1, {}}, 0, 1};
  filtered.micros = filterPlane(request, image.width, image.height, grayPlaneOf(image), filtered.image.pixels);
  return filtered;
}

// How the input became the gray plane the filter read; empty when it was gray.
std::string grayConversionText(const InterleavedImage& image) {
  if (image.colorChannels() == 1) return image.hasAlpha() ? "to gray by dropping alpha" : "";
  const std::string conversion = "to gray by ovkColorRGB888ToGrayu8 " + implementationOf("ovkColorRGB888ToGrayu8");
  return image.hasAlpha() ? conversion + ", alpha dropped" : conversion;
}

InterleavedImage readInput(const std::string& path, const FilterCommand& filter) {
  InterleavedImage image;
  std::string error;
  if (!readPng(path, image, error)) throw CommandError{kExitUsage, path + ": " + error};
  if (image.width < filter.minSide || image.height < filter.minSide)
    throw CommandError{kExitUsage, path + ": " + filter.name + " needs at least " + std::to_string(filter.minSide) +
                                       "x" + std::to_string(filter.minSide) + " pixels, not " +
                                       std::to_string(image.width) + "x" + std::to_string(image.height)};
  return image;
}

std::string optionsText(const OptionValues& options) {
  std::string text;
  for (const auto& [name, value] : options) text += " --" + name + " " + value;
  return text;
}

void printRunSummary(const RunRequest& request, const InterleavedImage& image, const FilteredImage& filtered) {
  printf("input:          %s (%ux%u, %s)\n", request.input.c_str(), image.width, image.height,
         layoutName(image.channels));
  const std::string conversion = request.filter->input == FilterInput::kGrayPlane ? grayConversionText(image) : "";
  if (!conversion.empty()) printf("converted:      %s\n", conversion.c_str());
  printf("filter:         %s%s\n", request.filter->name.c_str(), optionsText(request.options).c_str());
  printf("time:           %" PRIu64 " us for %u plane(s)\n", filtered.micros, filtered.planes);
  printf("implementation: %s %s\n", request.filter->entry, implementationOf(request.filter->entry).c_str());
  printf("output:         %s (%s)\n", request.output.c_str(), layoutName(filtered.image.channels));
}

int runFilter(const RunRequest& request) {
  const InterleavedImage image = readInput(request.input, *request.filter);
  if (setMode() != 0) return kExitFailure;
  const FilteredImage filtered = request.filter->input == FilterInput::kGrayPlane
                                     ? filterGrayPlane(request, image)
                                     : filterEachColorPlane(request, image);
  std::string error;
  if (!writePng(request.output, filtered.image, error)) throw CommandError{kExitFailure, request.output + ": " + error};
  printRunSummary(request, image, filtered);
  return 0;
}

// ---- Usage ---------------------------------------------------------------------

std::string valuesText(const FilterOption& option) {
  return option.values.empty() ? "N in " + rangeText(option.range) : joined(option.values);
}

void printFilterHelp(FILE* out) {
  for (const FilterCommand& filter : kFilters) {
    fprintf(out, "  %s  (%s%s)\n", filter.name.c_str(), filter.entry,
            filter.input == FilterInput::kGrayPlane ? ", on the gray image" : "");
    for (const FilterOption& option : filter.options)
      fprintf(out, "    --%s %s  (default %s)\n        %s\n", option.name.c_str(), valuesText(option).c_str(),
              option.defaultValue.c_str(), option.help);
  }
}

void printUsage(FILE* out) {
  fprintf(out,
          "usage: orvik info\n"
          "       orvik run FILTER [IN.png] [OUT.png] [--OPTION VALUE ...]\n"
          "       orvik convert IN OUT [--from FORMAT] [--to FORMAT] [--size WxH] [--range video|full]\n"
          "       orvik scale IN.png OUT.png --size WxH [--method METHOD]\n"
          "       orvik --help\n\n"
          "info  version, hardware report and the implementation each operation runs\n"
          "run   filters IN.png (default: the astronaut sample,\n"
          "      %s) into OUT.png (default: FILTER.png).\n"
          "      Smoothing filters work on every color plane and copy alpha; edge\n"
          "      filters convert color to gray (ovkColorRGB888ToGrayu8), drop alpha\n"
          "      and write a gray PNG\n"
          "convert  a PNG to a raw 4:2:0 YCbCr frame or back\n"
          "scale    resizes a PNG to WxH\n\n"
          "filters:\n",
          samplePath().c_str());
  printFilterHelp(out);
  fputc('\n', out);
  printConvertHelp(out);
  fputc('\n', out);
  printScaleHelp(out);
  fprintf(out,
          "\nexit status: 0 done, 1 library or output failure, 2 bad usage or unreadable input;\n"
          "a failure leaves no output file\n");
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
  if (command == "convert") return runConvert({args.begin() + 1, args.end()});
  if (command == "scale") return runScale({args.begin() + 1, args.end()});
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
