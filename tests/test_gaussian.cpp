// 3x3 Gaussian: the arithmetic against a per-pixel definition, the border
// rules, vector == portable on every target, and the three entries.
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

// Which border rule the reference applies.
enum class Border { kNone, kBlur, kConstant, kReplicate };

// Straight from the definition: every pixel on its own, no sliding sums.
std::vector<int> referenceGaussian(const GuardedImage& src, Border border, uint8_t borderValue) {
  const int w = src.width(), h = src.height();
  const int weight[3] = {1, 2, 1};
  std::vector<int> out(size_t(w) * h, -1);  // -1: not written
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) {
      const bool interior = x > 0 && y > 0 && x < w - 1 && y < h - 1;
      if (!interior && border == Border::kNone) continue;
      int sum = 0, weights = 0;
      for (int dy = -1; dy <= 1; ++dy) {
        for (int dx = -1; dx <= 1; ++dx) {
          const int tx = x + dx, ty = y + dy, k = weight[dx + 1] * weight[dy + 1];
          const bool inside = tx >= 0 && ty >= 0 && tx < w && ty < h;
          if (inside) {
            sum += k * src.at(tx, ty);
            weights += k;
          } else if (border == Border::kConstant) {
            sum += k * borderValue;
          } else if (border == Border::kReplicate) {
            sum += k * src.at(std::min(std::max(tx, 0), w - 1), std::min(std::max(ty, 0), h - 1));
          }
        }
      }
      out[size_t(y) * w + x] = (!interior && border == Border::kBlur) ? sum / weights : sum >> 4;
    }
  }
  return out;
}

void expectMatchesReference(const GuardedImage& src, const GuardedImage& dst, const std::vector<int>& expected,
                            const std::string& what) {
  ASSERT_TRUE(dst.paddingIntact()) << what;
  for (uint32_t y = 0; y < dst.height(); ++y)
    for (uint32_t x = 0; x < dst.width(); ++x) {
      const int want = expected[size_t(y) * src.width() + x];
      ASSERT_EQ(dst.at(x, y), want < 0 ? kUntouched : want) << what << " at (" << x << "," << y << ")";
    }
}

bool sameImages(const GuardedImage& a, const GuardedImage& b) {
  for (uint32_t y = 0; y < a.height(); ++y)
    if (memcmp(a.row(y), b.row(y), a.width()) != 0) return false;
  return true;
}

using GaussianFn = ovkFilterGaussian3x3u8Fn;
using GaussianV3Fn = ovkFilterGaussian3x3u8_v3Fn;

// Runs every border mode of both kernel kinds on one source and compares.
void checkKernels(GaussianFn gaussian, GaussianV3Fn gaussianV3, const GuardedImage& src, uint32_t dstStride,
                  const std::string& what) {
  struct Mode {
    Border border;
    int32_t blurBorder;          // for the blurBorder kernel, or -1
    ovkBorderType borderType;    // for the border-type kernel
  };
  const Mode modes[] = {{Border::kNone, 0, 0},         {Border::kBlur, 1, 0},
                        {Border::kNone, 7, 0},         {Border::kNone, -1, ORVIK_BORDER_UNDEFINED},
                        {Border::kConstant, -1, ORVIK_BORDER_CONSTANT},
                        {Border::kReplicate, -1, ORVIK_BORDER_REPLICATE}};
  const uint8_t borderValue = 201;
  for (const Mode& mode : modes) {
    GuardedImage dst(src.width(), src.height(), dstStride);
    dst.fill(kUntouched);
    if (mode.blurBorder >= 0) {
      gaussian(src.data(), src.width(), src.height(), src.stride(), dst.data(), dst.stride(), mode.blurBorder);
    } else {
      ASSERT_EQ(gaussianV3(src.data(), src.width(), src.height(), src.stride(), dst.data(), dst.stride(),
                           mode.borderType, borderValue),
                ORVIK_STATUS_SUCCESS);
    }
    const std::string label = what + " blurBorder " + std::to_string(mode.blurBorder) + " borderType " +
                              std::to_string(mode.borderType);
    expectMatchesReference(src, dst, referenceGaussian(src, mode.border, borderValue), label);
  }
}

TEST(Gaussian3x3, HandComputedCases) {
  // A lone 15: the centre gets 15 * 4 >> 4 = 3, direct neighbours 30 >> 4 = 1,
  // diagonals 15 >> 4 = 0 (truncation, no rounding).
  GuardedImage src(5, 5, 5);
  src.fill(0);
  src.at(2, 2) = 15;
  GuardedImage dst(5, 5, 5);
  dst.fill(kUntouched);
  ovkFilterGaussian3x3u8C(src.data(), 5, 5, 5, dst.data(), 5, 0);
  EXPECT_EQ(dst.at(2, 2), 3);
  EXPECT_EQ(dst.at(1, 2), 1);
  EXPECT_EQ(dst.at(2, 3), 1);
  EXPECT_EQ(dst.at(1, 1), 0);
  EXPECT_EQ(dst.at(0, 0), kUntouched);

  // Border divisors: a corner is (4 centre + 2 + 2 + 1) / 9, an edge pixel
  // (4 centre + 3 x 2 + 2 x 1) / 12.
  GuardedImage tiny(3, 2, 3);
  const uint8_t pixels[2][3] = {{90, 30, 200}, {10, 250, 7}};
  for (uint32_t y = 0; y < 2; ++y)
    for (uint32_t x = 0; x < 3; ++x) tiny.at(x, y) = pixels[y][x];
  GuardedImage out(3, 2, 3);
  ovkFilterGaussian3x3u8C(tiny.data(), 3, 2, 3, out.data(), 3, 1);
  EXPECT_EQ(out.at(0, 0), (4 * 90 + 2 * 30 + 2 * 10 + 250) / 9);
  EXPECT_EQ(out.at(1, 0), (4 * 30 + 2 * 90 + 2 * 200 + 2 * 250 + 10 + 7) / 12);
  EXPECT_EQ(out.at(2, 1), (4 * 7 + 2 * 250 + 2 * 200 + 30) / 9);

  // Constant border: a corner adds 7 x borderValue, an edge 4 x borderValue.
  GuardedImage flat(4, 4, 4);
  flat.fill(100);
  GuardedImage framed(4, 4, 4);
  ASSERT_EQ(ovkFilterGaussian3x3u8_v3C(flat.data(), 4, 4, 4, framed.data(), 4, ORVIK_BORDER_CONSTANT, 20), 0u);
  EXPECT_EQ(framed.at(0, 0), (9 * 100 + 7 * 20) >> 4);
  EXPECT_EQ(framed.at(1, 0), (12 * 100 + 4 * 20) >> 4);
  EXPECT_EQ(framed.at(1, 1), 100);
}

TEST(Gaussian3x3, ConstantImageStaysConstant) {
  for (const uint8_t value : {0, 1, 17, 128, 255}) {
    GuardedImage src(23, 9, 23);
    src.fill(value);
    GuardedImage blur(23, 9, 23), replicate(23, 9, 23);
    ovkFilterGaussian3x3u8C(src.data(), 23, 9, 23, blur.data(), 23, 1);
    ovkFilterGaussian3x3u8_v3C(src.data(), 23, 9, 23, replicate.data(), 23, ORVIK_BORDER_REPLICATE, 0);
    for (uint32_t y = 0; y < 9; ++y)
      for (uint32_t x = 0; x < 23; ++x) {
        ASSERT_EQ(blur.at(x, y), value);
        ASSERT_EQ(replicate.at(x, y), value);
      }
  }
}

TEST(Gaussian3x3, PortableMatchesDefinition) {
  std::mt19937 rng(7);
  for (const uint32_t width : {1u, 2u, 3u, 4u, 5u, 17u, 64u}) {
    for (const uint32_t height : {1u, 2u, 3u, 4u, 11u}) {
      GuardedImage src(width, height, width + 3);
      src.fillRandom(rng);
      checkKernels(ovkFilterGaussian3x3u8C, ovkFilterGaussian3x3u8_v3C, src, width + 5,
                   std::to_string(width) + "x" + std::to_string(height));
    }
  }
}

TEST(Gaussian3x3, UnknownBorderTypeIsUnsupportedByKernels) {
  GuardedImage src(8, 8, 8), dst(8, 8, 8);
  src.fill(1);
  dst.fill(kUntouched);
  EXPECT_EQ(ovkFilterGaussian3x3u8_v3C(src.data(), 8, 8, 8, dst.data(), 8, 3, 0), ORVIK_STATUS_UNSUPPORTED);
  forEachVectorTarget([&](const std::string&) {
    EXPECT_EQ(ovkVectorFilterGaussian3x3u8_v3()(src.data(), 8, 8, 8, dst.data(), 8, 3, 0),
              ORVIK_STATUS_UNSUPPORTED);
  });
  EXPECT_EQ(dst.at(4, 4), kUntouched);
}

// Vector kernels give the portable bytes for every width, stride and start.
TEST(Gaussian3x3, VectorMatchesPortableOnEveryTarget) {
  std::mt19937 rng(11);
  std::vector<std::string> targetNames;
  std::vector<uint32_t> widths;
  for (uint32_t w = 1; w <= 70; ++w) widths.push_back(w);
  for (const uint32_t w : {127u, 128u, 129u, 255u, 641u, 1920u}) widths.push_back(w);
  const int targets = forEachVectorTarget([&](const std::string& target) {
    targetNames.push_back(target);
    for (const uint32_t width : widths) {
      const uint32_t height = 1 + rng() % 6;
      const uint32_t srcStride = width + rng() % 19, dstStride = width + rng() % 23;
      GuardedImage src(width, height, srcStride);
      src.fillRandom(rng);
      const std::string what = target + " " + std::to_string(width) + "x" + std::to_string(height);
      checkKernels(ovkVectorFilterGaussian3x3u8(), ovkVectorFilterGaussian3x3u8_v3(), src, dstStride, what);
    }
    // A taller image with an odd stride, as camera buffers come.
    GuardedImage src(333, 37, 347);
    src.fillRandom(rng);
    checkKernels(ovkVectorFilterGaussian3x3u8(), ovkVectorFilterGaussian3x3u8_v3(), src, 336, target + " 333x37");
  });
  EXPECT_GE(targets, 1);
#if defined(__ARM_NEON)
  // The point of the ARM runs: NEON code, not a scalar fallback.
  EXPECT_NE(std::find(targetNames.begin(), targetNames.end(), "NEON"), targetNames.end())
      << ::testing::PrintToString(targetNames);
#endif
}

class Gaussian3x3Entries : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE), 0); }
};

TEST_F(Gaussian3x3Entries, AllGenerationsFilterThroughTheTable) {
  std::mt19937 rng(3);
  GuardedImage src(45, 13, 45);
  src.fillRandom(rng);
  const std::vector<int> blurred = referenceGaussian(src, Border::kBlur, 0);

  GuardedImage first(45, 13, 45);
  ovkFilterGaussian3x3u8(src.data(), 45, 13, first.data(), 1);
  expectMatchesReference(src, first, blurred, "first generation");

  // Stride 0 means packed.
  GuardedImage second(45, 13, 45);
  ovkFilterGaussian3x3u8_v2(src.data(), 45, 13, 0, second.data(), 0, 1);
  expectMatchesReference(src, second, blurred, "_v2");

  GuardedImage third(45, 13, 45);
  EXPECT_EQ(ovkFilterGaussian3x3u8_v3(src.data(), 45, 13, 0, third.data(), 0, ORVIK_BORDER_REPLICATE, 0), 0u);
  expectMatchesReference(src, third, referenceGaussian(src, Border::kReplicate, 0), "_v3");
}

TEST_F(Gaussian3x3Entries, RejectedArgumentsWriteNothing) {
  GuardedImage src(16, 8, 16), dst(16, 8, 16);
  src.fill(9);
  dst.fill(kUntouched);
  GuardedImage reference(16, 8, 16);
  reference.fill(kUntouched);
  LogCapture log;

  ovkFilterGaussian3x3u8_v2(src.data(), 16, 8, 15, dst.data(), 16, 1);  // stride below width
  ovkFilterGaussian3x3u8_v2(src.data(), 1, 8, 16, dst.data(), 16, 1);   // width 1
  ovkFilterGaussian3x3u8(nullptr, 16, 8, dst.data(), 1);
  const std::string v2Text =
      "src && dst && (srcWidth > 1) && (srcHeight > 1) && (srcStride >= srcWidth) && (dstStride >= srcWidth)";
  const std::vector<std::string> expected = {
      "Assertion failed @ovkFilterGaussian3x3u8_v2: " + v2Text + "\n",
      "Assertion failed @ovkFilterGaussian3x3u8_v2: " + v2Text + "\n",
      "Assertion failed @ovkFilterGaussian3x3u8: src && dst && width && height\n"};
  EXPECT_EQ(log.messages(), expected);
  for (const LogLine& line : log.lines()) {
    EXPECT_EQ(line.priority, 6);
    EXPECT_EQ(line.tag, "orvik_lib_log");
  }

  // A negative width passed by mistake is caught before anything else.
  log.clear();
  ovkFilterGaussian3x3u8(src.data(), uint32_t(-16), 8, dst.data(), 1);
  EXPECT_EQ(log.messages(), std::vector<std::string>{"Error at ovkFilterGaussian3x3u8\n"});

  // Status entry: silent, status 3.
  log.clear();
  EXPECT_EQ(ovkFilterGaussian3x3u8_v3(src.data(), 16, 8, 16, dst.data(), 16, 3, 0), ORVIK_STATUS_BAD_PARAM);
  EXPECT_EQ(ovkFilterGaussian3x3u8_v3(src.data(), 0, 8, 16, dst.data(), 16, 1, 0), ORVIK_STATUS_BAD_PARAM);
  EXPECT_EQ(ovkFilterGaussian3x3u8_v3(src.data(), 16, 8, 16, nullptr, 16, 1, 0), ORVIK_STATUS_BAD_PARAM);
  EXPECT_TRUE(log.messages().empty());
  EXPECT_TRUE(sameImages(dst, reference));
}

}  // namespace
