#include "orvikScale.h"

#include <inttypes.h>

#include <algorithm>
#include <string>
#include <vector>

#include "orvik.h"
#include "orvikCommand.h"
#include "orvikPng.h"

namespace {

// Both sides of the requested and of the input image.  Beyond this the
// nearest-neighbour reciprocals lose precision and an RGBA output nears a
// gigabyte.
constexpr uint32_t kMaxSide = 16384;

struct Size {
  uint32_t width;
  uint32_t height;

  bool operator==(const Size& other) const { return width == other.width && height == other.height; }
};

std::string sizeText(Size size) { return std::to_string(size.width) + "x" + std::to_string(size.height); }

// ---- Planes through the library ---------------------------------------------------------

// Scales one packed plane; returns 0, or what a refusing entry returned.
using PlaneScaler = int32_t (*)(const uint8_t* src, Size from, uint8_t* dst, Size to);

struct ScaleEntry {
  const char* name;  // the exported operation, for the report
  PlaneScaler scale;
};

int32_t boxBy2(const uint8_t* src, Size from, uint8_t* dst, Size) {
  return ovkScaleDownBy2u8_v2(src, from.width, from.height, 0, dst, 0);
}

int32_t boxBy4(const uint8_t* src, Size from, uint8_t* dst, Size) {
  return ovkScaleDownBy4u8_v2(src, from.width, from.height, 0, dst, 0);
}

int32_t box3To2(const uint8_t* src, Size from, uint8_t* dst, Size) {
  return ovkScaleDown3To2u8(src, from.width, from.height, 0, dst, 0);
}

// Its strides are taken as given: zero would not mean packed.
int32_t boxWholeFactors(const uint8_t* src, Size from, uint8_t* dst, Size to) {
  ovkScaleDownu8_v2(src, from.width, from.height, from.width, dst, to.width, to.height, to.width);
  return 0;
}

int32_t nearest(const uint8_t* src, Size from, uint8_t* dst, Size to) {
  return ovkScaleDownNNu8(src, from.width, from.height, 0, dst, to.width, to.height, 0);
}

int32_t bilinear(const uint8_t* src, Size from, uint8_t* dst, Size to) {
  ovkScaleDownBLu8(src, from.width, from.height, from.width, dst, to.width, to.height, to.width);
  return 0;
}

int32_t area(const uint8_t* src, Size from, uint8_t* dst, Size to) {
  return ovkScaleu8(src, from.width, from.height, from.width, dst, to.width, to.height, to.width,
                    ORVIK_INTERPOLATION_AREA);
}

int32_t mByN(const uint8_t* src, Size from, uint8_t* dst, Size to) {
  ovkScaleDownMNu8(src, from.width, from.height, 0, dst, to.width, to.height, 0);
  return 0;
}

int32_t gaussianDown(const uint8_t* src, Size from, uint8_t* dst, Size) {
  ovkScaleDownBy2Gaussian5x5u8_v2(src, from.width, from.height, 0, dst, 0);
  return 0;
}

int32_t gaussianUp(const uint8_t* src, Size from, uint8_t* dst, Size) {
  ovkScaleUpBy2Gaussian5x5u8_v2(src, from.width, from.height, 0, dst, 0);
  return 0;
}

int32_t polyphase(const uint8_t* src, Size from, uint8_t* dst, Size to) {
  ovkScaleUpPolyu8(src, from.width, from.height, 0, dst, to.width, to.height, 0);
  return 0;
}

// ---- Which sizes each method takes --------------------------------------------------------

// The entry that takes `from` to `to`, or a usage error that says which sizes
// the method takes.  Sizes reaching here are in 1..kMaxSide.
using EntryChoice = ScaleEntry (*)(Size from, Size to);

CommandError sizeRefused(const std::string& rule, Size to) {
  return {kExitUsage, rule + ", not " + sizeText(to)};
}

// Up to three whole reductions of both sides by one factor, and 1x1.
std::string wholeFactorExamples(Size from) {
  std::string examples;
  int found = 0;
  for (uint32_t k = 2; k <= std::min(from.width, from.height) && found < 3; ++k)
    if (from.width % k == 0 && from.height % k == 0) {
      examples += sizeText({from.width / k, from.height / k}) + ", ";
      ++found;
    }
  return examples + "1x1";
}

ScaleEntry chooseBox(Size from, Size to) {
  if (to.width * 2 == from.width && to.height * 2 == from.height) return {"ovkScaleDownBy2u8_v2", boxBy2};
  if (to.width * 4 == from.width && to.height * 4 == from.height) return {"ovkScaleDownBy4u8_v2", boxBy4};
  if (to.width * 3 == from.width * 2 && to.height * 3 == from.height * 2) return {"ovkScaleDown3To2u8", box3To2};
  if (from.width % to.width == 0 && from.height % to.height == 0) return {"ovkScaleDownu8_v2", boxWholeFactors};
  const bool threeToTwo = from.width % 3 == 0 && from.height % 3 == 0;
  throw sizeRefused("box divides each side of " + sizeText(from) + " by a whole factor (e.g. " +
                        wholeFactorExamples(from) + ")" +
                        (threeToTwo ? " or takes 3 to 2 (" + sizeText({from.width / 3 * 2, from.height / 3 * 2}) + ")"
                                    : ""),
                    to);
}

ScaleEntry chooseNearest(Size, Size) { return {"ovkScaleDownNNu8", nearest}; }
ScaleEntry chooseBilinear(Size, Size) { return {"ovkScaleDownBLu8", bilinear}; }
ScaleEntry chooseArea(Size, Size) { return {"ovkScaleu8", area}; }
ScaleEntry choosePolyphase(Size, Size) { return {"ovkScaleUpPolyu8", polyphase}; }

// The reduction on each axis stays below 20.
ScaleEntry chooseMByN(Size from, Size to) {
  if (to.width * 20 > from.width && to.height * 20 > from.height) return {"ovkScaleDownMNu8", mByN};
  const Size smallest{from.width / 20 + 1, from.height / 20 + 1};
  throw sizeRefused("mn reduces each side by less than 20: " + sizeText(from) + " to at least " + sizeText(smallest),
                    to);
}

ScaleEntry chooseGaussianDown(Size from, Size to) {
  if (from.width < 2 || from.height < 2)
    throw CommandError{kExitUsage, "gauss-down needs an image of at least 2x2 pixels, not " + sizeText(from)};
  const Size half{from.width / 2, from.height / 2};
  if (to == half) return {"ovkScaleDownBy2Gaussian5x5u8_v2", gaussianDown};
  throw sizeRefused("gauss-down halves " + sizeText(from) + " to " + sizeText(half) + " only", to);
}

ScaleEntry chooseGaussianUp(Size from, Size to) {
  if (from.width > kMaxSide / 2 || from.height > kMaxSide / 2)
    throw CommandError{kExitUsage, "gauss-up doubles images of up to " + sizeText({kMaxSide / 2, kMaxSide / 2}) +
                                       " pixels, not " + sizeText(from)};
  const Size twice{from.width * 2, from.height * 2};
  if (to == twice) return {"ovkScaleUpBy2Gaussian5x5u8_v2", gaussianUp};
  throw sizeRefused("gauss-up doubles " + sizeText(from) + " to " + sizeText(twice) + " only", to);
}

struct ScaleMethod {
  const char* name;
  EntryChoice choose;
  const char* help;
};

const ScaleMethod kMethods[] = {
    {"area", chooseArea, "any size: the exact mean of the area each pixel covers (ovkScaleu8, AREA)"},
    {"box", chooseBox,
     "whole factors per side: the truncated block mean (ovkScaleDownBy2u8_v2,\n"
     "                ovkScaleDownBy4u8_v2, ovkScaleDownu8_v2); or 3 to 2 (ovkScaleDown3To2u8)"},
    {"nn", chooseNearest, "any size: nearest neighbour from the left edge (ovkScaleDownNNu8)"},
    {"bilinear", chooseBilinear, "any size: centre-aligned bilinear (ovkScaleDownBLu8)"},
    {"mn", chooseMByN, "reductions below 20 per side: the mean of whole source pixels (ovkScaleDownMNu8)"},
    {"gauss-down", chooseGaussianDown, "half, rounded down: Gaussian 5x5, every other pixel\n"
                                       "                (ovkScaleDownBy2Gaussian5x5u8_v2)"},
    {"gauss-up", chooseGaussianUp, "double: Gaussian enlargement (ovkScaleUpBy2Gaussian5x5u8_v2)"},
    {"poly", choosePolyphase, "any size: 4-tap Catmull-Rom (ovkScaleUpPolyu8)"},
};

std::string methodNames() {
  std::string names;
  for (const ScaleMethod& method : kMethods) names += (names.empty() ? "" : "|") + std::string(method.name);
  return names;
}

const ScaleMethod& findMethod(const std::string& name) {
  for (const ScaleMethod& method : kMethods)
    if (name == method.name) return method;
  throw CommandError{kExitUsage, "unknown method '" + name + "' (" + methodNames() + ")"};
}

// ---- The command ------------------------------------------------------------------------

struct ScaleRequest {
  std::string input;
  std::string output;
  Size size;
  const ScaleMethod* method;
};

ScaleRequest parseScale(const std::vector<std::string>& args) {
  const Arguments split = splitArguments("scale", args, {"--size", "--method"});
  if (split.paths.size() != 2) throw CommandError{kExitUsage, "scale takes IN.png and OUT.png"};
  const std::string size = split.option("--size", "");
  if (size.empty()) throw CommandError{kExitUsage, "scale needs --size WIDTHxHEIGHT"};
  ScaleRequest request{split.paths[0], split.paths[1], {}, &findMethod(split.option("--method", "area"))};
  if (!parseSize(size, kMaxSide, request.size.width, request.size.height))
    throw CommandError{kExitUsage, "--size takes WIDTHxHEIGHT, each 1.." + std::to_string(kMaxSide) + ", not '" +
                                       size + "'"};
  return request;
}

InterleavedImage readInput(const std::string& path) {
  InterleavedImage image;
  std::string error;
  if (!readPng(path, image, error)) throw CommandError{kExitUsage, path + ": " + error};
  if (image.width > kMaxSide || image.height > kMaxSide)
    throw CommandError{kExitUsage, path + ": scale takes images of up to " + sizeText({kMaxSide, kMaxSide}) +
                                       " pixels, not " + sizeText({image.width, image.height})};
  return image;
}

struct ScaledImage {
  InterleavedImage image;
  uint64_t micros;  // spent in the library
};

// Every channel, alpha included, scaled as its own plane.
ScaledImage scaleEachPlane(const InterleavedImage& image, const ScaleEntry& entry, Size to) {
  const Size from{image.width, image.height};
  ScaledImage scaled{{to.width, to.height, image.channels, {}}, 0};
  scaled.image.pixels.resize(size_t(to.width) * to.height * image.channels);
  std::vector<uint8_t> source(size_t(from.width) * from.height), result(size_t(to.width) * to.height);
  for (uint32_t channel = 0; channel < image.channels; ++channel) {
    extractPlane(image, channel, source);
    const uint64_t start = ovkGetTime();
    const int32_t status = entry.scale(source.data(), from, result.data(), to);
    scaled.micros += ovkGetTime() - start;
    if (status != 0)
      throw CommandError{kExitFailure, std::string(entry.name) + " returned " + std::to_string(status) +
                                           " scaling " + sizeText(from) + " to " + sizeText(to)};
    insertPlane(result, channel, scaled.image);
  }
  return scaled;
}

}  // namespace

int runScale(const std::vector<std::string>& args) {
  const ScaleRequest request = parseScale(args);
  const InterleavedImage image = readInput(request.input);
  const Size from{image.width, image.height};
  const ScaleEntry entry = request.method->choose(from, request.size);
  if (setMode() != 0) return kExitFailure;
  const ScaledImage scaled = scaleEachPlane(image, entry, request.size);
  std::string error;
  if (!writePng(request.output, scaled.image, error)) throw CommandError{kExitFailure, request.output + ": " + error};
  printf("input:          %s (%s, %s)\n", request.input.c_str(), sizeText(from).c_str(), layoutName(image.channels));
  printf("scale:          %s, %s to %s\n", request.method->name, sizeText(from).c_str(),
         sizeText(request.size).c_str());
  printf("time:           %" PRIu64 " us for %u plane(s)\n", scaled.micros, image.channels);
  printf("implementation: %s %s\n", entry.name, implementationOf(entry.name).c_str());
  printf("output:         %s (%s)\n", request.output.c_str(), layoutName(image.channels));
  return 0;
}

void printScaleHelp(FILE* out) {
  fprintf(out,
          "scale IN.png OUT.png --size WxH [--method METHOD]\n"
          "  Every channel, alpha included, is scaled as its own plane; the output keeps\n"
          "  the input's layout.  Sizes up to %ux%u.  Methods (default area):\n",
          kMaxSide, kMaxSide);
  for (const ScaleMethod& method : kMethods) fprintf(out, "    %-10s  %s\n", method.name, method.help);
}
