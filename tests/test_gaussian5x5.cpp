// 5x5 and 11x11 Gaussians (8-bit, signed 16- and 32-bit): the exported
// kernels, the arithmetic against a per-pixel definition including the edge
// band, vector == portable on every target, and the entries.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "cpu/orvikInternal.h"
#include "support/fake_backends.h"
#include "support/guarded_image.h"
#include "support/log_capture.h"
#include "support/vector_targets.h"

namespace {

constexpr uint8_t kUntouched = 0x5C;  // every byte of dst before a call

// Binomial coefficients of order 2 radius, by Pascal's rule.
std::vector<int64_t> binomialRow(int radius) {
  std::vector<int64_t> row = {1};
  for (int order = 1; order <= 2 * radius; ++order) {
    std::vector<int64_t> next(order + 1, 1);
    for (int k = 1; k < order; ++k) next[k] = row[k - 1] + row[k];
    row = next;
  }
  return row;
}

int64_t floorDivide(int64_t a, int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

template <class Pixel>
Pixel pixelAt(const GuardedImage& image, uint32_t x, uint32_t y) {
  Pixel pixel;
  memcpy(&pixel, image.row(y) + size_t(x) * sizeof(Pixel), sizeof pixel);
  return pixel;
}

template <class Pixel>
void setPixel(GuardedImage& image, uint32_t x, uint32_t y, Pixel pixel) {
  memcpy(image.row(y) + size_t(x) * sizeof(Pixel), &pixel, sizeof pixel);
}

template <class Pixel>
Pixel untouchedPixel() {
  Pixel pixel;
  memset(&pixel, kUntouched, sizeof pixel);
  return pixel;
}

// Every pixel on its own: interior pixels are the full weighted sum shifted
// (rounded toward minus infinity); with blurBand, the others are the in-image
// weighted sum over the in-image weight sum; otherwise they stay unwritten.
template <class Pixel>
std::vector<std::optional<int64_t>> referenceGaussian(const GuardedImage& src, int radius, bool blurBand) {
  const int w = int(src.width()), h = int(src.height());
  const std::vector<int64_t> weight = binomialRow(radius);
  std::vector<std::optional<int64_t>> out(size_t(w) * h);
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) {
      const bool interior = x >= radius && y >= radius && x < w - radius && y < h - radius;
      if (!interior && !blurBand) continue;
      int64_t sum = 0, weights = 0;
      for (int dy = -radius; dy <= radius; ++dy)
        for (int dx = -radius; dx <= radius; ++dx) {
          const int tx = x + dx, ty = y + dy;
          if (tx < 0 || ty < 0 || tx >= w || ty >= h) continue;
          const int64_t k = weight[dx + radius] * weight[dy + radius];
          sum += k * pixelAt<Pixel>(src, tx, ty);
          weights += k;
        }
      out[size_t(y) * w + x] = interior ? floorDivide(sum, int64_t(1) << (4 * radius)) : floorDivide(sum, weights);
    }
  }
  return out;
}

template <class Pixel>
void expectMatchesReference(const GuardedImage& dst, const std::vector<std::optional<int64_t>>& expected,
                            const std::string& what) {
  ASSERT_TRUE(dst.paddingIntact()) << what;
  for (uint32_t y = 0; y < dst.height(); ++y)
    for (uint32_t x = 0; x < dst.width(); ++x) {
      const std::optional<int64_t>& want = expected[size_t(y) * dst.width() + x];
      const int64_t wanted = want ? *want : int64_t(untouchedPixel<Pixel>());
      ASSERT_EQ(int64_t(pixelAt<Pixel>(dst, x, y)), wanted)
          << what << " at (" << x << "," << y << ")" << (want ? "" : " (must stay unwritten)");
    }
}

bool sameBytes(const GuardedImage& a, const GuardedImage& b, uint32_t rowBytes) {
  for (uint32_t y = 0; y < a.height(); ++y)
    if (memcmp(a.row(y), b.row(y), rowBytes) != 0) return false;
  return true;
}

template <class Pixel>
using KernelFn = void (*)(const Pixel* src, uint32_t width, uint32_t height, uint32_t srcStride, Pixel* dst,
                          uint32_t dstStride, int32_t blurBorder);

// dst starts as kUntouched bytes.
template <class Pixel>
void runKernel(KernelFn<Pixel> kernel, const GuardedImage& src, GuardedImage& dst, int32_t blurBorder) {
  dst.fill(kUntouched);
  kernel(reinterpret_cast<const Pixel*>(src.data()), src.width(), src.height(), src.stride(),
         reinterpret_cast<Pixel*>(dst.data()), dst.stride(), blurBorder);
}

// blurBorder 1 writes the band; 0 and any other value leave it.
template <class Pixel>
void checkAgainstDefinition(KernelFn<Pixel> kernel, int radius, const GuardedImage& src, uint32_t dstStride,
                            const std::string& what) {
  for (const int32_t blurBorder : {0, 1, 7}) {
    GuardedImage dst(src.width(), src.height(), dstStride, sizeof(Pixel));
    runKernel(kernel, src, dst, blurBorder);
    expectMatchesReference<Pixel>(dst, referenceGaussian<Pixel>(src, radius, blurBorder == 1),
                                  what + " blurBorder " + std::to_string(blurBorder));
  }
}

template <class Pixel>
void fillConstant(GuardedImage& image, Pixel value) {
  for (uint32_t y = 0; y < image.height(); ++y)
    for (uint32_t x = 0; x < image.width(); ++x) setPixel(image, x, y, value);
}

// Random pixels, rows padded by `extra` bytes.
template <class Pixel>
void checkRandomImage(KernelFn<Pixel> kernel, int radius, uint32_t width, uint32_t height, uint32_t extra,
                      std::mt19937& rng, const std::string& what) {
  GuardedImage src(width, height, width * uint32_t(sizeof(Pixel)) + extra, sizeof(Pixel));
  src.fillRandom(rng);
  checkAgainstDefinition<Pixel>(kernel, radius, src, width * uint32_t(sizeof(Pixel)) + 2 * extra + 1,
                                what + " " + std::to_string(width) + "x" + std::to_string(height));
}

template <class Pixel>
void expectConstantResult(KernelFn<Pixel> kernel, uint32_t width, uint32_t height, Pixel value,
                          const std::string& what) {
  GuardedImage src(width, height, width * uint32_t(sizeof(Pixel)), sizeof(Pixel));
  fillConstant(src, value);
  GuardedImage dst(width, height, width * uint32_t(sizeof(Pixel)), sizeof(Pixel));
  runKernel(kernel, src, dst, 1);
  expectMatchesReference<Pixel>(dst, std::vector<std::optional<int64_t>>(size_t(width) * height, value),
                                what + " " + std::to_string(int64_t(value)));
}

TEST(Gaussian5x5, ExportedKernelsAreBinomialOuterProducts) {
  const std::vector<int64_t> row5 = binomialRow(2), row11 = binomialRow(5);
  for (int y = 0; y < 5; ++y)
    for (int x = 0; x < 5; ++x) EXPECT_EQ(knl5x5[y * 5 + x], row5[y] * row5[x]) << x << "," << y;
  for (int y = 0; y < 11; ++y)
    for (int x = 0; x < 11; ++x) EXPECT_EQ(knl11x11[y * 11 + x], row11[y] * row11[x]) << x << "," << y;
  EXPECT_EQ(knl5x5[12], 36);
  EXPECT_EQ(knl11x11[60], 63504);
}

TEST(Gaussian5x5, HandComputedSpikes) {
  // A lone 255 in the interior: 255 * weight >> 8, truncated.
  GuardedImage spike(9, 9, 9), out(9, 9, 9);
  spike.fill(0);
  spike.at(4, 4) = 255;
  runKernel<uint8_t>(ovkFilterGaussian5x5u8C, spike, out, 0);
  EXPECT_EQ(out.at(4, 4), 35);  // 255 * 36 = 9180
  EXPECT_EQ(out.at(5, 4), 23);  // 255 * 24 = 6120
  EXPECT_EQ(out.at(5, 5), 15);  // 255 * 16 = 4080
  EXPECT_EQ(out.at(6, 4), 5);   // 255 * 6 = 1530
  EXPECT_EQ(out.at(6, 6), 0);   // 255 * 1 = 255
  EXPECT_EQ(out.at(1, 4), kUntouched);

  // 11x11: 255 * 63504 >> 20 = 15 at the centre.
  GuardedImage wide(21, 21, 21), wideOut(21, 21, 21);
  wide.fill(0);
  wide.at(10, 10) = 255;
  runKernel<uint8_t>(ovkFilterGaussian11x11u8C, wide, wideOut, 0);
  EXPECT_EQ(wideOut.at(10, 10), 15);

  // Band: at (1,0) the in-image rows weigh 6+4+1 and the columns 4+6+4+1,
  // so a 242 at (0,0), weight 6*4, gives 242 * 24 / 165 = 35; at (0,0)
  // itself 242 * 36 / 121 = 72.
  GuardedImage corner(7, 7, 7), band(7, 7, 7);
  corner.fill(0);
  corner.at(0, 0) = 242;
  runKernel<uint8_t>(ovkFilterGaussian5x5u8C, corner, band, 1);
  EXPECT_EQ(band.at(1, 0), 35);
  EXPECT_EQ(band.at(0, 0), 72);

  // Negative results round toward minus infinity: -255 * 36 / 256 = -35.9.
  GuardedImage negative(9, 9, 18, 2), signedOut(9, 9, 18, 2);
  fillConstant<int16_t>(negative, 0);
  setPixel<int16_t>(negative, 4, 4, -255);
  runKernel<int16_t>(ovkFilterGaussian5x5s16C, negative, signedOut, 1);
  EXPECT_EQ(pixelAt<int16_t>(signedOut, 4, 4), -36);
  EXPECT_EQ(pixelAt<int16_t>(signedOut, 6, 6), -1);
  EXPECT_EQ(pixelAt<int16_t>(signedOut, 8, 8), 0);
}

TEST(Gaussian5x5, ConstantImagesStayConstantWithTheirBand) {
  for (const uint8_t value : {0, 1, 128, 255}) {
    expectConstantResult<uint8_t>(ovkFilterGaussian5x5u8C, 23, 13, value, "5x5u8");
    expectConstantResult<uint8_t>(ovkFilterGaussian11x11u8C, 23, 13, value, "11x11u8");
  }
  for (const int16_t value : {-32768, -7, 32767}) expectConstantResult<int16_t>(ovkFilterGaussian5x5s16C, 9, 7, value, "5x5s16");
  // Extreme 32-bit values: the sums must not overflow.
  for (const int32_t value : {INT32_MIN, -1, INT32_MAX}) expectConstantResult<int32_t>(ovkFilterGaussian5x5s32C, 9, 7, value, "5x5s32");
}

TEST(Gaussian5x5, PortableMatchesDefinition) {
  std::mt19937 rng(5);
  for (const uint32_t width : {5u, 6u, 9u, 11u, 12u, 23u, 40u}) {
    for (const uint32_t height : {5u, 7u, 11u, 14u}) {
      checkRandomImage<uint8_t>(ovkFilterGaussian5x5u8C, 2, width, height, 3, rng, "5x5u8");
      checkRandomImage<int16_t>(ovkFilterGaussian5x5s16C, 2, width, height, 3, rng, "5x5s16");
      checkRandomImage<int32_t>(ovkFilterGaussian5x5s32C, 2, width, height, 5, rng, "5x5s32");
      if (width > 10 && height > 10)
        checkRandomImage<uint8_t>(ovkFilterGaussian11x11u8C, 5, width, height, 1, rng, "11x11u8");
    }
  }
}

// The 16-bit form accepts images down to 1x2: with no interior, all of it
// is band.
TEST(Gaussian5x5, SignedSmallImagesAreAllBand) {
  std::mt19937 rng(9);
  for (uint32_t width = 1; width <= 6; ++width)
    for (uint32_t height = 1; height <= 6; ++height)
      checkRandomImage<int16_t>(ovkFilterGaussian5x5s16C, 2, width, height, 1, rng, "5x5s16");
}

// The vector kernel gives the portable bytes; strides are random, and so is
// the start address, as the guarded buffers start wherever their size puts
// them.
template <class Pixel>
void expectSameAsPortable(KernelFn<Pixel> vector, KernelFn<Pixel> portable, const GuardedImage& src,
                          uint32_t dstStride, const std::string& what) {
  const uint32_t rowBytes = src.width() * uint32_t(sizeof(Pixel));
  for (const int32_t blurBorder : {0, 1}) {
    GuardedImage want(src.width(), src.height(), dstStride, sizeof(Pixel));
    GuardedImage got(src.width(), src.height(), dstStride, sizeof(Pixel));
    runKernel(portable, src, want, blurBorder);
    runKernel(vector, src, got, blurBorder);
    const std::string label = what + " " + std::to_string(src.width()) + "x" + std::to_string(src.height()) +
                              " blurBorder " + std::to_string(blurBorder);
    ASSERT_TRUE(got.paddingIntact()) << label;
    ASSERT_TRUE(sameBytes(got, want, rowBytes)) << label;
  }
}

// The vector kernel gives the portable bytes; strides are random, and so is
// the start address, as the guarded buffers start wherever their size puts
// them.
template <class Pixel>
void expectVectorMatchesPortable(KernelFn<Pixel> vector, KernelFn<Pixel> portable, uint32_t width, uint32_t height,
                                 std::mt19937& rng, const std::string& what) {
  const uint32_t rowBytes = width * uint32_t(sizeof(Pixel));
  GuardedImage src(width, height, rowBytes + rng() % 19, sizeof(Pixel));
  src.fillRandom(rng);
  expectSameAsPortable<Pixel>(vector, portable, src, rowBytes + rng() % 23, what);
}

// 32-bit pixels at the ends of their range, where 32-bit sums would wrap and
// negative sums must floor.
void expectVectorS32AtExtremes(uint32_t width, uint32_t height, std::mt19937& rng, const std::string& what) {
  const int32_t extremes[] = {INT32_MIN, INT32_MIN + 1, -1, 0, INT32_MAX - 1, INT32_MAX};
  GuardedImage src(width, height, width * 4 + rng() % 13, 4);
  for (uint32_t y = 0; y < height; ++y)
    for (uint32_t x = 0; x < width; ++x) setPixel<int32_t>(src, x, y, extremes[rng() % 6]);
  expectSameAsPortable<int32_t>(ovkVectorFilterGaussian5x5s32(), ovkFilterGaussian5x5s32C, src, width * 4 + 3, what);
  checkAgainstDefinition<int32_t>(ovkVectorFilterGaussian5x5s32(), 2, src, width * 4 + 5, what);
}

TEST(Gaussian5x5, VectorMatchesPortableOnEveryTarget) {
  std::mt19937 rng(17);
  std::vector<uint32_t> widths;
  for (uint32_t w = 1; w <= 70; ++w) widths.push_back(w);
  for (const uint32_t w : {127u, 128u, 129u, 255u, 513u, 641u, 1025u, 1920u}) widths.push_back(w);
  std::vector<std::string> targetNames;
  const int targets = forEachVectorTarget([&](const std::string& target) {
    targetNames.push_back(target);
    for (const uint32_t width : widths) {
      for (const uint32_t height : {2u, 5u, 6u, 9u}) {
        if (width > 4) expectVectorMatchesPortable<uint8_t>(ovkVectorFilterGaussian5x5u8(), ovkFilterGaussian5x5u8C,
                                                          width, height, rng, target + " 5x5u8");
        expectVectorMatchesPortable<int16_t>(ovkVectorFilterGaussian5x5s16(), ovkFilterGaussian5x5s16C, width,
                                             height, rng, target + " 5x5s16");
        expectVectorMatchesPortable<int32_t>(ovkVectorFilterGaussian5x5s32(), ovkFilterGaussian5x5s32C, width,
                                             height, rng, target + " 5x5s32");
      }
      if (width > 10)
        for (const uint32_t height : {11u, 12u, 13u, 16u, 19u})
          expectVectorMatchesPortable<uint8_t>(ovkVectorFilterGaussian11x11u8(), ovkFilterGaussian11x11u8C, width,
                                               height, rng, target + " 11x11u8");
    }
    // Taller frames with odd strides, as camera buffers come.
    expectVectorMatchesPortable<uint8_t>(ovkVectorFilterGaussian5x5u8(), ovkFilterGaussian5x5u8C, 333, 37, rng,
                                         target + " 5x5u8");
    expectVectorMatchesPortable<uint8_t>(ovkVectorFilterGaussian11x11u8(), ovkFilterGaussian11x11u8C, 333, 37, rng,
                                         target + " 11x11u8");
    for (const uint32_t width : {5u, 6u, 9u, 12u, 17u, 33u, 70u, 513u})
      for (const uint32_t height : {5u, 8u}) expectVectorS32AtExtremes(width, height, rng, target + " 5x5s32 extremes");
  });
  EXPECT_GE(targets, 1);
#if defined(__ARM_NEON)
  // The point of the ARM runs: NEON code, not a scalar fallback.
  EXPECT_NE(std::find(targetNames.begin(), targetNames.end(), "NEON"), targetNames.end())
      << ::testing::PrintToString(targetNames);
#endif
}

class Gaussian5x5Entries : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE), 0); }
};

template <class Pixel>
using FirstGenerationFn = void (*)(const Pixel* src, uint32_t width, uint32_t height, Pixel* dst,
                                   int32_t blurBorder);

// Both generations of one filter on a packed image; `_v2` with strides 0.
template <class Pixel>
void expectEntriesFilter(FirstGenerationFn<Pixel> first, KernelFn<Pixel> second, int radius, uint32_t width,
                         uint32_t height, std::mt19937& rng, const std::string& name) {
  const uint32_t rowBytes = width * uint32_t(sizeof(Pixel));
  GuardedImage src(width, height, rowBytes, sizeof(Pixel)), dst(width, height, rowBytes, sizeof(Pixel));
  src.fillRandom(rng);
  const auto blurred = referenceGaussian<Pixel>(src, radius, true);
  const auto* in = reinterpret_cast<const Pixel*>(src.data());
  auto* out = reinterpret_cast<Pixel*>(dst.data());
  dst.fill(kUntouched);
  first(in, width, height, out, 1);
  expectMatchesReference<Pixel>(dst, blurred, name);
  dst.fill(kUntouched);
  second(in, width, height, 0, out, 0, 1);
  expectMatchesReference<Pixel>(dst, blurred, name + "_v2");
}

TEST_F(Gaussian5x5Entries, BothGenerationsFilterThroughTheTable) {
  std::mt19937 rng(13);
  expectEntriesFilter<uint8_t>(ovkFilterGaussian5x5u8, ovkFilterGaussian5x5u8_v2, 2, 37, 19, rng,
                               "ovkFilterGaussian5x5u8");
  expectEntriesFilter<uint8_t>(ovkFilterGaussian11x11u8, ovkFilterGaussian11x11u8_v2, 5, 37, 19, rng,
                               "ovkFilterGaussian11x11u8");
  // Three rows: no interior, everything is band.
  expectEntriesFilter<int16_t>(ovkFilterGaussian5x5s16, ovkFilterGaussian5x5s16_v2, 2, 21, 3, rng,
                               "ovkFilterGaussian5x5s16");
  expectEntriesFilter<int32_t>(ovkFilterGaussian5x5s32, ovkFilterGaussian5x5s32_v2, 2, 12, 8, rng,
                               "ovkFilterGaussian5x5s32");
}

TEST_F(Gaussian5x5Entries, RejectedArgumentsLogTheConditionAndWriteNothing) {
  GuardedImage src(64, 16, 64);
  src.fill(9);
  GuardedImage dst(64, 16, 64);
  dst.fill(kUntouched);
  GuardedImage untouched(64, 16, 64);
  untouched.fill(kUntouched);
  const auto* s16 = reinterpret_cast<const int16_t*>(src.data());
  const auto* s32 = reinterpret_cast<const int32_t*>(src.data());
  auto* d16 = reinterpret_cast<int16_t*>(dst.data());
  auto* d32 = reinterpret_cast<int32_t*>(dst.data());
  LogCapture log;

  ovkFilterGaussian5x5u8(src.data(), 4, 16, dst.data(), 1);             // width 4
  ovkFilterGaussian5x5u8_v2(src.data(), 16, 8, 15, dst.data(), 16, 1);  // stride below width
  ovkFilterGaussian11x11u8(src.data(), 16, 10, dst.data(), 1);          // height 10
  ovkFilterGaussian11x11u8_v2(src.data(), 16, 16, 16, nullptr, 16, 1);
  ovkFilterGaussian5x5s16(s16, 16, 1, d16, 1);                          // height 1
  ovkFilterGaussian5x5s16_v2(s16, 16, 8, 32, d16, 31, 1);               // dst stride below 16 pixels
  ovkFilterGaussian5x5s32(s32, 4, 8, d32, 1);                           // width 4
  ovkFilterGaussian5x5s32_v2(s32, 8, 8, 31, d32, 32, 1);                // src stride below 8 pixels
  const std::string prefix = "Assertion failed @ovkFilterGaussian";
  const std::vector<std::string> expected = {
      prefix + "5x5u8: src && dst && width && height && height > 4 && width > 4\n",
      prefix + "5x5u8_v2: src && dst && srcWidth && srcHeight && (srcStride >= srcWidth) && dstStride && "
               "srcHeight > 4 && srcWidth > 4\n",
      prefix + "11x11u8: src && dst && width && height && height > 10 && width > 10\n",
      prefix + "11x11u8_v2: src && dst && srcWidth && srcHeight && (srcStride >= srcWidth) && dstStride && "
               "srcHeight > 10 && srcWidth > 10\n",
      prefix + "5x5s16: src && dst && width && height && height > 1\n",
      prefix + "5x5s16_v2: src && dst && srcWidth && srcHeight && (srcStride >= srcWidth*sizeof(int16_t)) && "
               "(dstStride >= srcWidth*sizeof(int16_t)) && srcHeight > 1\n",
      prefix + "5x5s32: src && dst && width && height && width > 4 && height > 4\n",
      prefix + "5x5s32_v2: src && dst && srcWidth && srcHeight && (srcStride >= srcWidth*sizeof(int32_t)) && "
               "(dstStride >= srcWidth*sizeof(int32_t)) && srcWidth > 4 && srcHeight > 4\n",
  };
  EXPECT_EQ(log.messages(), expected);
  for (const LogLine& line : log.lines()) {
    EXPECT_EQ(line.priority, 6);
    EXPECT_EQ(line.tag, "orvik_lib_log");
  }
  EXPECT_TRUE(sameBytes(dst, untouched, 64));
}

// The 11x11 filter goes to a DSP only above its size floor, with 8-byte
// aligned pointers; the per-call log names the implementation that runs.
TEST_F(Gaussian5x5Entries, DspRuns11x11OnlyAboveTheSizeFloor) {
  FakeBackends fakes;
  setenv("RUNTIME_ORVIK_LOG", "1", 1);
  ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_LOW_POWER), 0);
  ASSERT_EQ(ovkImplTable[ovkGroup::FilterGaussian11x11u8], OVK_IMPL_RDSP);
  const size_t bytes = 184 * 144 + 64;
  const std::unique_ptr<uint8_t, void (*)(void*)> src(static_cast<uint8_t*>(aligned_alloc(64, bytes)), free);
  const std::unique_ptr<uint8_t, void (*)(void*)> dst(static_cast<uint8_t*>(aligned_alloc(64, bytes)), free);
  memset(src.get(), 0, bytes);
  LogCapture log;
  // First generation: 176 x 144 = 25344 pixels is not above the floor.
  ovkFilterGaussian11x11u8(src.get(), 176, 144, dst.get(), 0);
  ovkFilterGaussian11x11u8(src.get(), 184, 144, dst.get(), 0);
  ovkFilterGaussian11x11u8(src.get() + 4, 184, 144, dst.get(), 0);
  // _v2 counts stride bytes.
  ovkFilterGaussian11x11u8_v2(src.get(), 168, 144, 176, dst.get(), 176, 0);
  ovkFilterGaussian11x11u8_v2(src.get(), 168, 144, 184, dst.get(), 184, 0);
  ovkFilterGaussian11x11u8_v2(src.get(), 168, 144, 184, dst.get(), 180, 0);
  unsetenv("RUNTIME_ORVIK_LOG");
  const std::vector<std::string> expected = {
      "ovkFilterGaussian11x11u8_PELAR",    "ovkFilterGaussian11x11u8_RDSP",
      "ovkFilterGaussian11x11u8_PELAR",    "ovkFilterGaussian11x11u8_v2_PELAR",
      "ovkFilterGaussian11x11u8_v2_RDSP", "ovkFilterGaussian11x11u8_v2_PELAR"};
  EXPECT_EQ(log.messages(), expected);
}

}  // namespace
