// Box filters: the arithmetic against a per-pixel definition (every window sum
// included), the border rules, vector == portable on every target, entries.
#include <gtest/gtest.h>
#include <string.h>

#include <algorithm>
#include <random>
#include <vector>

#include "cpu/orvikInternal.h"
#include "support/guarded_image.h"
#include "support/log_capture.h"
#include "support/vector_targets.h"

namespace {

constexpr uint8_t kUntouched = 0x5C;

enum class Border { kFill, kReplicate };

struct BoxShape {
  int radius;
  uint32_t multiplier;
};
constexpr BoxShape k3x3{1, 7282}, k5x5{2, 2621}, k11x11{5, 542};

// Every pixel on its own: the taps of its window, missing ones filled or
// replicated, then the rounded multiply.
std::vector<uint8_t> referenceBox(const GuardedImage& src, BoxShape shape, Border border, uint8_t fill) {
  const int w = src.width(), h = src.height(), r = shape.radius;
  std::vector<uint8_t> out(size_t(w) * h);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      uint32_t sum = 0;
      for (int ty = y - r; ty <= y + r; ++ty)
        for (int tx = x - r; tx <= x + r; ++tx) {
          const bool inside = tx >= 0 && ty >= 0 && tx < w && ty < h;
          if (inside || border == Border::kReplicate)
            sum += src.at(std::min(std::max(tx, 0), w - 1), std::min(std::max(ty, 0), h - 1));
          else
            sum += fill;
        }
      out[size_t(y) * w + x] = uint8_t((sum * shape.multiplier + 32768) >> 16);
    }
  return out;
}

void expectImage(const GuardedImage& dst, const std::vector<uint8_t>& expected, const std::string& what) {
  ASSERT_TRUE(dst.paddingIntact()) << what;
  for (uint32_t y = 0; y < dst.height(); ++y)
    for (uint32_t x = 0; x < dst.width(); ++x)
      ASSERT_EQ(dst.at(x, y), expected[size_t(y) * dst.width() + x]) << what << " at (" << x << "," << y << ")";
}

struct BoxKernels {
  ovkBoxFilter3x3u8Fn box3x3;
  ovkBoxFilter3x3u8_v2Fn box3x3V2;
  ovkBoxFilter5x5u8Fn box5x5;
  ovkBoxFilter11x11u8Fn box11x11;
};

const BoxKernels kPortable = {ovkBoxFilter3x3u8C, ovkBoxFilter3x3u8_v2C, ovkBoxFilter5x5u8C, ovkBoxFilter11x11u8C};

BoxKernels vectorKernels() {
  return {ovkVectorBoxFilter3x3u8(), ovkVectorBoxFilter3x3u8_v2(), ovkVectorBoxFilter5x5u8(),
          ovkVectorBoxFilter11x11u8()};
}

// Every filter and border type of one set of kernels on one source.
void checkKernels(const BoxKernels& kernels, const GuardedImage& src, uint32_t dstStride, const std::string& what) {
  const uint32_t w = src.width(), h = src.height();
  const auto run = [&](auto filter, const std::vector<uint8_t>& expected, const std::string& label) {
    GuardedImage dst(w, h, dstStride);
    dst.fill(kUntouched);
    filter(dst);
    expectImage(dst, expected, what + " " + label);
  };
  run([&](GuardedImage& d) { kernels.box3x3(src.data(), w, h, src.stride(), d.data(), d.stride()); },
      referenceBox(src, k3x3, Border::kFill, 0), "3x3");
  run([&](GuardedImage& d) { kernels.box5x5(src.data(), w, h, src.stride(), d.data(), d.stride()); },
      referenceBox(src, k5x5, Border::kFill, 0), "5x5");
  run([&](GuardedImage& d) { kernels.box11x11(src.data(), w, h, src.stride(), d.data(), d.stride()); },
      referenceBox(src, k11x11, Border::kFill, 0), "11x11");
  const struct {
    ovkBorderType type;
    Border border;
    uint8_t fill;
  } types[] = {{ORVIK_BORDER_UNDEFINED, Border::kFill, 0},
               {ORVIK_BORDER_CONSTANT, Border::kFill, 233},
               {ORVIK_BORDER_REPLICATE, Border::kReplicate, 0}};
  for (const auto& type : types)
    run([&](GuardedImage& d) {
          ASSERT_EQ(kernels.box3x3V2(src.data(), w, h, src.stride(), d.data(), d.stride(), type.type, 233),
                    ORVIK_STATUS_SUCCESS);
        },
        referenceBox(src, k3x3, type.border, type.fill), "_v2 borderType " + std::to_string(type.type));
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
  // Replicate and constant-with-the-same-value borders keep the image flat.
  for (const ovkBorderType type : {ORVIK_BORDER_CONSTANT, ORVIK_BORDER_REPLICATE}) {
    ASSERT_EQ(ovkBoxFilter3x3u8_v2(src.data(), 12, 7, 12, dst.data(), 12, type, 255), ORVIK_STATUS_SUCCESS);
    for (uint32_t y = 0; y < 7; ++y)
      for (uint32_t x = 0; x < 12; ++x) ASSERT_EQ(dst.at(x, y), 255);
  }
}

TEST(BoxFilter, PortableMatchesDefinition) {
  std::mt19937 rng(5);
  for (const uint32_t width : {1u, 2u, 3u, 4u, 6u, 11u, 12u, 29u})
    for (const uint32_t height : {1u, 2u, 3u, 5u, 11u, 14u}) {
      GuardedImage src(width, height, width + 2);
      src.fillRandom(rng);
      checkKernels(kPortable, src, width + 3, std::to_string(width) + "x" + std::to_string(height));
    }
  // Wider than one strip of column sums.
  GuardedImage wide(2100, 12, 2111);
  wide.fillRandom(rng);
  checkKernels(kPortable, wide, 2100, "2100x12");
}

// An image of 2r+1 rows whose centre-row windows hold the sums 0, 1, 2, ...
// up to (2r+1)^2 x 255: column j sums to j / (2r+1), so each step right adds
// exactly one.
uint32_t everyWindowSumWidth(int radius) {
  const uint32_t taps = 2 * radius + 1;
  return taps * taps * 255 + 2 * radius + 1 + taps;
}

void fillEveryWindowSum(GuardedImage& image, int radius) {
  const uint32_t taps = 2 * radius + 1;
  image.fill(0);
  for (uint32_t j = 0; j < image.width(); ++j) {
    uint32_t columnSum = std::min<uint32_t>(j / taps, taps * 255);
    for (uint32_t y = 0; y < image.height() && columnSum; ++y) {
      const uint32_t part = std::min<uint32_t>(columnSum, 255);
      image.at(j, y) = uint8_t(part);
      columnSum -= part;
    }
  }
}

TEST(BoxFilter, EveryWindowSumRoundsAsDefined) {
  for (const BoxShape shape : {k3x3, k5x5, k11x11}) {
    GuardedImage src(everyWindowSumWidth(shape.radius), 2 * shape.radius + 1, everyWindowSumWidth(shape.radius));
    fillEveryWindowSum(src, shape.radius);
    const std::vector<uint8_t> expected = referenceBox(src, shape, Border::kFill, 0);
    const auto check = [&](const BoxKernels& kernels, const std::string& what) {
      const auto filter = shape.radius == 1 ? kernels.box3x3 : shape.radius == 2 ? kernels.box5x5 : kernels.box11x11;
      GuardedImage dst(src.width(), src.height(), src.width());
      filter(src.data(), src.width(), src.height(), src.stride(), dst.data(), dst.stride());
      expectImage(dst, expected, what + " radius " + std::to_string(shape.radius));
    };
    check(kPortable, "portable");
    forEachVectorTarget([&](const std::string& target) { check(vectorKernels(), target); });
  }
}

TEST(BoxFilter, VectorMatchesPortableOnEveryTarget) {
  std::mt19937 rng(13);
  std::vector<uint32_t> widths;
  for (uint32_t w = 1; w <= 70; ++w) widths.push_back(w);
  for (const uint32_t w : {641u, 1920u, 2049u}) widths.push_back(w);
  std::vector<std::string> targetNames;
  const int targets = forEachVectorTarget([&](const std::string& target) {
    targetNames.push_back(target);
    const BoxKernels kernels = vectorKernels();
    for (const uint32_t width : widths) {
      const uint32_t height = 1 + rng() % 13;
      GuardedImage src(width, height, width + rng() % 17);
      src.fillRandom(rng);
      checkKernels(kernels, src, width + rng() % 21, target + " " + std::to_string(width) + "x" + std::to_string(height));
    }
  });
  EXPECT_GE(targets, 1);
#if defined(__ARM_NEON)
  // ARM runs must exercise NEON code, not a scalar fallback.
  EXPECT_NE(std::find(targetNames.begin(), targetNames.end(), "NEON"), targetNames.end())
      << ::testing::PrintToString(targetNames);
#endif
}

TEST(BoxFilter, UnknownBorderTypeIsUnsupportedByKernels) {
  GuardedImage src(40, 4, 40), dst(40, 4, 40);
  src.fill(1);
  dst.fill(kUntouched);
  EXPECT_EQ(ovkBoxFilter3x3u8_v2C(src.data(), 40, 4, 40, dst.data(), 40, 3, 0), ORVIK_STATUS_UNSUPPORTED);
  forEachVectorTarget([&](const std::string&) {
    EXPECT_EQ(ovkVectorBoxFilter3x3u8_v2()(src.data(), 40, 4, 40, dst.data(), 40, 3, 0), ORVIK_STATUS_UNSUPPORTED);
  });
  EXPECT_EQ(dst.at(20, 2), kUntouched);
}

class BoxEntries : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE), 0); }
};

TEST_F(BoxEntries, FilterThroughTheTable) {
  std::mt19937 rng(17);
  GuardedImage src(37, 15, 41);
  src.fillRandom(rng);
  GuardedImage d3(37, 15, 39), d5(37, 15, 39), d11(37, 15, 39), packed(37, 15, 37);
  ovkBoxFilter3x3u8(src.data(), 37, 15, 41, d3.data(), 39);
  expectImage(d3, referenceBox(src, k3x3, Border::kFill, 0), "3x3");
  ovkBoxFilter5x5u8(src.data(), 37, 15, 41, d5.data(), 39);
  expectImage(d5, referenceBox(src, k5x5, Border::kFill, 0), "5x5");
  ovkBoxFilter11x11u8(src.data(), 37, 15, 41, d11.data(), 39);
  expectImage(d11, referenceBox(src, k11x11, Border::kFill, 0), "11x11");

  // Stride 0 means packed.
  GuardedImage packedSrc(37, 15, 37);
  packedSrc.fillRandom(rng);
  EXPECT_EQ(ovkBoxFilter3x3u8_v2(packedSrc.data(), 37, 15, 0, packed.data(), 0, ORVIK_BORDER_REPLICATE, 0), 0u);
  expectImage(packed, referenceBox(packedSrc, k3x3, Border::kReplicate, 0), "_v2 packed");
}

TEST_F(BoxEntries, RejectedArgumentsWriteNothing) {
  GuardedImage src(16, 12, 16), dst(16, 12, 16);
  src.fill(9);
  dst.fill(kUntouched);
  LogCapture log;
  ovkBoxFilter3x3u8(src.data(), 16, 12, 15, dst.data(), 16);  // stride below width
  ovkBoxFilter3x3u8(src.data(), 2, 12, 16, dst.data(), 16);   // too narrow
  ovkBoxFilter5x5u8(src.data(), 16, 4, 16, dst.data(), 16);   // too low
  ovkBoxFilter5x5u8(src.data(), 16, 12, 16, dst.data(), 0);   // no stride
  ovkBoxFilter11x11u8(src.data(), 16, 10, 16, dst.data(), 16);
  ovkBoxFilter11x11u8(nullptr, 16, 12, 16, dst.data(), 16);
  const std::string text3 =
      "src && dst && srcWidth && srcHeight && srcStride && dstStride && ( srcStride >=srcWidth ) && srcWidth > 2 && "
      "srcHeight > 2";
  const std::string text5 =
      "src && dst && srcWidth && srcHeight && srcStride && dstStride && (srcStride >=srcWidth) && srcWidth > 4 && "
      "srcHeight > 4";
  const std::string text11 =
      "src && dst && srcWidth && srcHeight && srcStride && dstStride && ( srcStride >=srcWidth) && srcWidth > 10 && "
      "srcHeight > 10";
  const std::vector<std::string> expected = {
      "Assertion failed @ovkBoxFilter3x3u8: " + text3 + "\n",   "Assertion failed @ovkBoxFilter3x3u8: " + text3 + "\n",
      "Assertion failed @ovkBoxFilter5x5u8: " + text5 + "\n",   "Assertion failed @ovkBoxFilter5x5u8: " + text5 + "\n",
      "Assertion failed @ovkBoxFilter11x11u8: " + text11 + "\n", "Assertion failed @ovkBoxFilter11x11u8: " + text11 + "\n"};
  EXPECT_EQ(log.messages(), expected);
  for (const LogLine& line : log.lines()) {
    EXPECT_EQ(line.priority, 6);
    EXPECT_EQ(line.tag, "orvik_lib_log");
  }

  // The status entry is silent: 3 for null pointers, zero sizes, unknown
  // border types and strides below the row.
  log.clear();
  EXPECT_EQ(ovkBoxFilter3x3u8_v2(nullptr, 16, 12, 16, dst.data(), 16, 1, 0), ORVIK_STATUS_BAD_PARAM);
  EXPECT_EQ(ovkBoxFilter3x3u8_v2(src.data(), 16, 0, 16, dst.data(), 16, 1, 0), ORVIK_STATUS_BAD_PARAM);
  EXPECT_EQ(ovkBoxFilter3x3u8_v2(src.data(), 16, 12, 16, dst.data(), 16, 3, 0), ORVIK_STATUS_BAD_PARAM);
  EXPECT_EQ(ovkBoxFilter3x3u8_v2(src.data(), 16, 12, 16, dst.data(), 15, 1, 0), ORVIK_STATUS_BAD_PARAM);
  EXPECT_TRUE(log.messages().empty());
  for (uint32_t y = 0; y < 12; ++y)
    for (uint32_t x = 0; x < 16; ++x) ASSERT_EQ(dst.at(x, y), kUntouched);
}

}  // namespace
