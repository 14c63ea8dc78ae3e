// Box filters: the arithmetic against a per-pixel definition (every window sum
// included), the border rules, vector == portable on every target, entries.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "cpu/orvikInternal.h"
#include "support/entry_test.h"
#include "support/filter_reference.h"

namespace {

constexpr uint8_t kBorderValue = 233;

struct BoxShape {
  int radius;
  uint32_t multiplier;
};
constexpr BoxShape k3x3{1, 7282}, k5x5{2, 2621}, k11x11{5, 542};

// Every tap of the window, missing ones filled or replicated, then the
// rounded multiply.
Expected referenceBox(const GuardedImage& src, BoxShape shape, Outside outside, uint8_t fill) {
  return referenceFilter<uint8_t>(src, shape.radius, outside, fill, [&](const Taps& taps, bool) {
    int64_t sum = 0;
    for (const auto& tap : taps) sum += *tap;
    return std::optional<int64_t>((sum * shape.multiplier + 32768) >> 16);
  });
}

struct BoxKernels {
  ovkBoxFilter3x3u8Fn box3x3;
  ovkBoxFilter3x3u8_v2Fn box3x3V2;
  ovkBoxFilter5x5u8Fn box5x5;
  ovkBoxFilter11x11u8Fn box11x11;
  ovkStatusCode unknownBorderStatus;  // kernels: unsupported; entries: bad parameter

  ovkBoxFilter3x3u8Fn byShape(BoxShape shape) const {
    return shape.radius == 1 ? box3x3 : shape.radius == 2 ? box5x5 : box11x11;
  }
};

const BoxKernels kPortable = {ovkBoxFilter3x3u8C, ovkBoxFilter3x3u8_v2C, ovkBoxFilter5x5u8C, ovkBoxFilter11x11u8C,
                              ORVIK_STATUS_UNSUPPORTED};

BoxKernels vectorKernels() {
  return {ovkVectorBoxFilter3x3u8(), ovkVectorBoxFilter3x3u8_v2(), ovkVectorBoxFilter5x5u8(),
          ovkVectorBoxFilter11x11u8(), ORVIK_STATUS_UNSUPPORTED};
}

// Every filter and border type of one set of kernels on one source.
void checkKernels(const BoxKernels& kernels, const GuardedImage& src, uint32_t dstStride, const std::string& what) {
  const uint32_t w = src.width(), h = src.height();
  for (const BoxShape shape : {k3x3, k5x5, k11x11})
    expectFiltered(
        src, dstStride,
        [&](GuardedImage& dst) { kernels.byShape(shape)(src.data(), w, h, src.stride(), dst.data(), dst.stride()); },
        referenceBox(src, shape, Outside::kConstant, 0), what + " radius " + std::to_string(shape.radius));
  // Undefined reads 0 outside the image.
  checkBorderTypes(
      kernels.box3x3V2, src, dstStride, kBorderValue,
      [&](ovkBorderType type) {
        return type == ORVIK_BORDER_REPLICATE
                   ? referenceBox(src, k3x3, Outside::kReplicate, 0)
                   : referenceBox(src, k3x3, Outside::kConstant, type == ORVIK_BORDER_CONSTANT ? kBorderValue : 0);
      },
      what + " _v2", kernels.unknownBorderStatus);
}

TEST(BoxFilter, ConstantImageThroughFirstGeneration) {
  // Zero fill: a corner keeps 4 of 9 taps, an edge pixel 6 of 9.
  ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE), 0);
  GuardedImage src(12, 7, 12), dst(12, 7, 12);
  src.fill(255);
  ovkBoxFilter3x3u8(src.data(), 12, 7, 12, dst.data(), 12);
  for (uint32_t y = 0; y < 7; ++y)
    for (uint32_t x = 0; x < 12; ++x) {
      const int edges = (x == 0 || x == 11) + (y == 0 || y == 6);
      ASSERT_EQ(dst.at(x, y), edges == 2 ? 113 : edges == 1 ? 170 : 255) << x << "," << y;
    }
}

TEST(BoxFilter, PortableMatchesDefinition) {
  std::mt19937 rng(5);
  for (const uint32_t width : {1u, 2u, 3u, 4u, 6u, 11u, 12u, 29u})
    for (const uint32_t height : {1u, 2u, 3u, 5u, 11u, 14u}) {
      GuardedImage src(width, height, width + 2);
      src.fillRandom(rng);
      checkKernels(kPortable, src, width + 3, sizeText(src));
    }
  // Wider than one strip of column sums.
  GuardedImage wide(2100, 12, 2111);
  wide.fillRandom(rng);
  checkKernels(kPortable, wide, 2100, "2100x12");
}

// An image of 2r+1 rows whose centre-row windows hold every sum 0, 1, 2, ...
// up to (2r+1)^2 x 255: column j sums to j / (2r+1), so each step right adds
// exactly one.
TEST(BoxFilter, EveryWindowSumRoundsAsDefined) {
  for (const BoxShape shape : {k3x3, k5x5, k11x11}) {
    const uint32_t taps = 2 * shape.radius + 1, width = taps * taps * 255 + 2 * taps;
    GuardedImage src(width, taps, width);
    src.fill(0);
    for (uint32_t j = 0; j < width; ++j) {
      uint32_t columnSum = std::min<uint32_t>(j / taps, taps * 255);
      for (uint32_t y = 0; columnSum; ++y) {
        src.at(j, y) = uint8_t(std::min<uint32_t>(columnSum, 255));
        columnSum -= src.at(j, y);
      }
    }
    const Expected expected = referenceBox(src, shape, Outside::kConstant, 0);
    const auto check = [&](const BoxKernels& kernels, const std::string& what) {
      expectFiltered(
          src, width,
          [&](GuardedImage& dst) { kernels.byShape(shape)(src.data(), width, taps, width, dst.data(), width); },
          expected, what + " radius " + std::to_string(shape.radius));
    };
    check(kPortable, "portable");
    forEveryVectorTarget([&](const std::string& target) { check(vectorKernels(), target); });
  }
}

TEST(BoxFilter, VectorMatchesPortableOnEveryTarget) {
  std::mt19937 rng(13);
  forEveryVectorTarget([&](const std::string& target) {
    const BoxKernels kernels = vectorKernels();
    for (const uint32_t width : testWidths({641, 1920, 2049})) {
      GuardedImage src(width, 1 + rng() % 13, width + rng() % 17);
      src.fillRandom(rng);
      checkKernels(kernels, src, width + rng() % 21, target + " " + sizeText(src));
    }
  });
}

class BoxEntries : public EntryTest {};

// The table's kernels with padded strides; the status entry also packed
// (stride 0).
TEST_F(BoxEntries, FilterThroughTheTable) {
  std::mt19937 rng(17);
  GuardedImage src(37, 15, 41);
  src.fillRandom(rng);
  const BoxKernels entries = {ovkBoxFilter3x3u8, ovkBoxFilter3x3u8_v2, ovkBoxFilter5x5u8, ovkBoxFilter11x11u8,
                              ORVIK_STATUS_BAD_PARAM};
  checkKernels(entries, src, 39, "entries");
  GuardedImage packed(37, 15, 37);
  packed.fillRandom(rng);
  expectFiltered(
      packed, 37,
      [&](GuardedImage& dst) {
        EXPECT_EQ(ovkBoxFilter3x3u8_v2(packed.data(), 37, 15, 0, dst.data(), 0, ORVIK_BORDER_REPLICATE, 0), 0u);
      },
      referenceBox(packed, k3x3, Outside::kReplicate, 0), "_v2 packed");
}

}  // namespace
