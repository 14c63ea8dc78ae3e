// 5x5 and 11x11 Gaussians (8-bit, signed 16- and 32-bit): the exported
// kernels, the arithmetic against a per-pixel definition including the edge
// band, vector == portable on every target, and the entries.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>

#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "cpu/orvikInternal.h"
#include "support/entry_test.h"
#include "support/fake_backends.h"
#include "support/filter_reference.h"

namespace {

template <class Pixel>
using KernelFn = void (*)(const Pixel* src, uint32_t width, uint32_t height, uint32_t srcStride, Pixel* dst,
                          uint32_t dstStride, int32_t blurBorder);
template <class Pixel>
using FirstGenerationFn = void (*)(const Pixel* src, uint32_t width, uint32_t height, Pixel* dst, int32_t blurBorder);

// One filter: its kernels and entries, and the smallest size its entries take.
template <class PixelType>
struct Filter {
  using Pixel = PixelType;
  const char* name;
  int radius;
  uint32_t minSize;
  KernelFn<Pixel> portable;
  KernelFn<Pixel> (*vector)();
  FirstGenerationFn<Pixel> first;
  KernelFn<Pixel> second;
};

template <class Check>
void forEachFilter(Check check) {
  check(Filter<uint8_t>{"ovkFilterGaussian5x5u8", 2, 5, ovkFilterGaussian5x5u8C, ovkVectorFilterGaussian5x5u8,
                        ovkFilterGaussian5x5u8, ovkFilterGaussian5x5u8_v2});
  check(Filter<uint8_t>{"ovkFilterGaussian11x11u8", 5, 11, ovkFilterGaussian11x11u8C, ovkVectorFilterGaussian11x11u8,
                        ovkFilterGaussian11x11u8, ovkFilterGaussian11x11u8_v2});
  check(Filter<int16_t>{"ovkFilterGaussian5x5s16", 2, 1, ovkFilterGaussian5x5s16C, ovkVectorFilterGaussian5x5s16,
                        ovkFilterGaussian5x5s16, ovkFilterGaussian5x5s16_v2});
  check(Filter<int32_t>{"ovkFilterGaussian5x5s32", 2, 5, ovkFilterGaussian5x5s32C, ovkVectorFilterGaussian5x5s32,
                        ovkFilterGaussian5x5s32, ovkFilterGaussian5x5s32_v2});
}

template <class Pixel>
GuardedImage makeImage(uint32_t width, uint32_t height, uint32_t extraStride) {
  return GuardedImage(width, height, width * uint32_t(sizeof(Pixel)) + extraStride, sizeof(Pixel));
}

// dst starts as kUntouched bytes.
template <class Pixel>
void runKernel(KernelFn<Pixel> kernel, const GuardedImage& src, GuardedImage& dst, int32_t blurBorder) {
  dst.fill(kUntouched);
  kernel(reinterpret_cast<const Pixel*>(src.data()), src.width(), src.height(), src.stride(),
         reinterpret_cast<Pixel*>(dst.data()), dst.stride(), blurBorder);
}

// blurBorder 1 writes the band; 0 and any other value leave it.
template <class Pixel>
void checkAgainstDefinition(KernelFn<Pixel> kernel, int radius, const GuardedImage& src, uint32_t extraStride,
                            const std::string& what) {
  for (const int32_t blurBorder : {0, 1, 7}) {
    GuardedImage dst = makeImage<Pixel>(src.width(), src.height(), extraStride);
    runKernel(kernel, src, dst, blurBorder);
    expectImage<Pixel>(dst, referenceGaussian<Pixel>(src, radius, Outside::kSkip, 0, blurBorder == 1),
                       what + " " + sizeText(src) + " blurBorder " + std::to_string(blurBorder));
  }
}

// The vector kernel gives the portable bytes, with the band and without.
template <class Pixel>
void expectSameAsPortable(const Filter<Pixel>& filter, const GuardedImage& src, uint32_t extraStride,
                          const std::string& what) {
  for (const int32_t blurBorder : {0, 1}) {
    GuardedImage want = makeImage<Pixel>(src.width(), src.height(), extraStride);
    GuardedImage got = makeImage<Pixel>(src.width(), src.height(), extraStride);
    runKernel(filter.portable, src, want, blurBorder);
    runKernel(filter.vector(), src, got, blurBorder);
    const std::string label = what + " " + sizeText(src) + " blurBorder " + std::to_string(blurBorder);
    ASSERT_TRUE(got.paddingIntact()) << label;
    for (uint32_t y = 0; y < src.height(); ++y)
      ASSERT_EQ(memcmp(got.row(y), want.row(y), src.width() * sizeof(Pixel)), 0) << label << " row " << y;
  }
}

// Each pixel one of `values`, at random.
template <class Pixel>
void fillFrom(GuardedImage& image, std::mt19937& rng, std::initializer_list<Pixel> values) {
  for (uint32_t y = 0; y < image.height(); ++y)
    for (uint32_t x = 0; x < image.width(); ++x) setPixel<Pixel>(image, x, y, values.begin()[rng() % values.size()]);
}

TEST(Gaussian5x5, ExportedKernelsAreBinomialOuterProducts) {
  const std::vector<int64_t> row5 = binomialRow(2), row11 = binomialRow(5);
  for (int i = 0; i < 25; ++i) EXPECT_EQ(knl5x5[i], row5[i / 5] * row5[i % 5]) << i;
  for (int i = 0; i < 121; ++i) EXPECT_EQ(knl11x11[i], row11[i / 11] * row11[i % 11]) << i;
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
  negative.fill(0);
  setPixel<int16_t>(negative, 4, 4, -255);
  runKernel<int16_t>(ovkFilterGaussian5x5s16C, negative, signedOut, 1);
  EXPECT_EQ(pixelAt<int16_t>(signedOut, 4, 4), -36);
  EXPECT_EQ(pixelAt<int16_t>(signedOut, 6, 6), -1);
  EXPECT_EQ(pixelAt<int16_t>(signedOut, 8, 8), 0);
}

// Random images from each entry's smallest size (1x1 for s16, all band), and
// flat ones at the ends of the range.
TEST(Gaussian5x5, PortableMatchesDefinition) {
  std::mt19937 rng(5);
  forEachFilter([&](const auto& filter) {
    using Pixel = typename std::decay_t<decltype(filter)>::Pixel;
    for (const uint32_t width : {1u, 2u, 3u, 4u, 5u, 6u, 9u, 11u, 12u, 23u, 40u})
      for (const uint32_t height : {1u, 2u, 3u, 4u, 5u, 6u, 7u, 11u, 14u}) {
        if (width < filter.minSize || height < filter.minSize) continue;
        GuardedImage src = makeImage<Pixel>(width, height, 3);
        src.fillRandom(rng);
        checkAgainstDefinition<Pixel>(filter.portable, filter.radius, src, 5, filter.name);
      }
    using Limits = std::numeric_limits<Pixel>;
    for (const Pixel value : {Limits::min(), Pixel(-7), Limits::max()}) {
      GuardedImage src = makeImage<Pixel>(23, 13, 0);
      fillFrom<Pixel>(src, rng, {value});
      checkAgainstDefinition<Pixel>(filter.portable, filter.radius, src, 0, std::string(filter.name) + " flat");
    }
  });
}

// Odd widths, several heights, random strides; the guarded buffers start
// wherever their size puts them, so the alignment varies too.
TEST(Gaussian5x5, VectorMatchesPortableOnEveryTarget) {
  std::mt19937 rng(17);
  forEveryVectorTarget([&](const std::string& target) {
    forEachFilter([&](const auto& filter) {
      using Pixel = typename std::decay_t<decltype(filter)>::Pixel;
      const std::string what = target + " " + filter.name;
      // 8-bit kernels take no less than the window's width.
      const uint32_t minWidth = sizeof(Pixel) == 1 ? filter.minSize : 1;
      const std::vector<uint32_t> heights =
          filter.radius == 2 ? std::vector<uint32_t>{2, 5, 6, 9} : std::vector<uint32_t>{11, 12, 13, 16, 19};
      for (const uint32_t width : testWidths({127, 128, 129, 255, 513, 641, 1025, 1920})) {
        if (width < minWidth) continue;
        for (const uint32_t height : heights) {
          GuardedImage src = makeImage<Pixel>(width, height, rng() % 19);
          src.fillRandom(rng);
          expectSameAsPortable(filter, src, rng() % 23, what);
        }
      }
      // A taller frame with an odd stride, as camera buffers come.
      GuardedImage frame = makeImage<Pixel>(333, 37, 7);
      frame.fillRandom(rng);
      expectSameAsPortable(filter, frame, 3, what);
      for (const uint32_t width : {5u, 6u, 9u, 12u, 17u, 33u, 70u, 513u}) {
        if (width < filter.minSize) continue;
        for (const uint32_t height : {filter.minSize, filter.minSize + 3}) {
          // Where narrow sums would wrap and negative sums must floor.
          using Limits = std::numeric_limits<Pixel>;
          GuardedImage src = makeImage<Pixel>(width, height, rng() % 13);
          fillFrom<Pixel>(
              src, rng,
              {Limits::min(), Pixel(Limits::min() + 1), Pixel(-1), 0, Pixel(Limits::max() - 1), Limits::max()});
          expectSameAsPortable(filter, src, 3, what + " extremes");
          checkAgainstDefinition<Pixel>(filter.vector(), filter.radius, src, 5, what + " extremes");
        }
      }
    });
  });
}

class Gaussian5x5Entries : public EntryTest {};

// Both generations on a packed image (`_v2` with strides 0); three rows of
// s16 have no interior, all of it is band.
TEST_F(Gaussian5x5Entries, BothGenerationsFilterThroughTheTable) {
  std::mt19937 rng(13);
  forEachFilter([&](const auto& filter) {
    using Pixel = typename std::decay_t<decltype(filter)>::Pixel;
    for (const uint32_t height : {3u, 19u}) {
      if (height < filter.minSize) continue;
      GuardedImage src = makeImage<Pixel>(37, height, 0), dst = makeImage<Pixel>(37, height, 0);
      src.fillRandom(rng);
      const Expected blurred = referenceGaussian<Pixel>(src, filter.radius, Outside::kSkip, 0, true);
      const auto* in = reinterpret_cast<const Pixel*>(src.data());
      auto* out = reinterpret_cast<Pixel*>(dst.data());
      dst.fill(kUntouched);
      filter.first(in, 37, height, out, 1);
      expectImage<Pixel>(dst, blurred, filter.name);
      dst.fill(kUntouched);
      filter.second(in, 37, height, 0, out, 0, 1);
      expectImage<Pixel>(dst, blurred, std::string(filter.name) + "_v2");
    }
  });
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
  const std::vector<std::string> expected = {"ovkFilterGaussian11x11u8_PELAR",   "ovkFilterGaussian11x11u8_RDSP",
                                             "ovkFilterGaussian11x11u8_PELAR",   "ovkFilterGaussian11x11u8_v2_PELAR",
                                             "ovkFilterGaussian11x11u8_v2_RDSP", "ovkFilterGaussian11x11u8_v2_PELAR"};
  EXPECT_EQ(log.messages(), expected);
}

}  // namespace
