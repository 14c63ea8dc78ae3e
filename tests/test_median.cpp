// 3x3 median: against the true median of nine sorted values, the `_v3`
// border rules, vector == portable on every target, the entries and their
// DSP size floors.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "cpu/orvikInternal.h"
#include "support/fake_backends.h"
#include "support/guarded_image.h"
#include "support/log_capture.h"
#include "support/vector_targets.h"

namespace {

constexpr uint8_t kUntouched = 0x5C;

enum class Border { kNone, kConstant, kReplicate };

// Sorts each pixel's nine taps and takes the fifth; -1 where nothing is written.
std::vector<int> referenceMedian(const GuardedImage& src, Border border, uint8_t borderValue) {
  const int w = src.width(), h = src.height();
  std::vector<int> out(size_t(w) * h, -1);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const bool interior = x > 0 && y > 0 && x < w - 1 && y < h - 1;
      if (!interior && border == Border::kNone) continue;
      std::vector<int> taps;
      for (int ty = y - 1; ty <= y + 1; ++ty)
        for (int tx = x - 1; tx <= x + 1; ++tx) {
          const bool inside = tx >= 0 && ty >= 0 && tx < w && ty < h;
          taps.push_back(inside || border == Border::kReplicate
                             ? src.at(std::min(std::max(tx, 0), w - 1), std::min(std::max(ty, 0), h - 1))
                             : borderValue);
        }
      std::sort(taps.begin(), taps.end());
      out[size_t(y) * w + x] = taps[4];
    }
  return out;
}

void expectImage(const GuardedImage& dst, const std::vector<int>& expected, const std::string& what) {
  ASSERT_TRUE(dst.paddingIntact()) << what;
  for (uint32_t y = 0; y < dst.height(); ++y)
    for (uint32_t x = 0; x < dst.width(); ++x) {
      const int want = expected[size_t(y) * dst.width() + x];
      ASSERT_EQ(dst.at(x, y), want < 0 ? kUntouched : want) << what << " at (" << x << "," << y << ")";
    }
}

// Both kernel kinds, every border type, on one source.
void checkKernels(ovkFilterMedian3x3u8Fn median, ovkFilterMedian3x3u8_v3Fn medianV3, const GuardedImage& src,
                  uint32_t dstStride, const std::string& what) {
  const uint32_t w = src.width(), h = src.height();
  const uint8_t borderValue = 77;
  GuardedImage dst(w, h, dstStride);
  dst.fill(kUntouched);
  median(src.data(), w, h, src.stride(), dst.data(), dst.stride());
  expectImage(dst, referenceMedian(src, Border::kNone, 0), what + " interior");
  const struct {
    ovkBorderType type;
    Border border;
  } types[] = {{ORVIK_BORDER_UNDEFINED, Border::kNone},
               {ORVIK_BORDER_CONSTANT, Border::kConstant},
               {ORVIK_BORDER_REPLICATE, Border::kReplicate}};
  for (const auto& type : types) {
    GuardedImage out(w, h, dstStride);
    out.fill(kUntouched);
    ASSERT_EQ(medianV3(src.data(), w, h, src.stride(), out.data(), out.stride(), type.type, borderValue),
              ORVIK_STATUS_SUCCESS);
    expectImage(out, referenceMedian(src, type.border, borderValue), what + " borderType " + std::to_string(type.type));
  }
}

TEST(Median3x3, HandComputedCases) {
  // 3x3 image: the one interior pixel is the median of 9, 1, 8, 2, 7, 3, 6, 4, 5.
  GuardedImage src(3, 3, 3);
  const uint8_t pixels[3][3] = {{9, 1, 8}, {2, 7, 3}, {6, 4, 5}};
  for (uint32_t y = 0; y < 3; ++y)
    for (uint32_t x = 0; x < 3; ++x) src.at(x, y) = pixels[y][x];
  GuardedImage dst(3, 3, 3);
  dst.fill(kUntouched);
  ovkFilterMedian3x3u8C(src.data(), 3, 3, 3, dst.data(), 3);
  EXPECT_EQ(dst.at(1, 1), 5);
  EXPECT_EQ(dst.at(0, 0), kUntouched);
  EXPECT_EQ(dst.at(2, 1), kUntouched);

  // An isolated spike disappears; a line three pixels thick survives.
  GuardedImage spike(6, 6, 6);
  spike.fill(10);
  spike.at(3, 3) = 250;
  for (uint32_t x = 0; x < 6; ++x) spike.at(x, 1) = 200;
  GuardedImage cleaned(6, 6, 6);
  ovkFilterMedian3x3u8_v3C(spike.data(), 6, 6, 6, cleaned.data(), 6, ORVIK_BORDER_REPLICATE, 0);
  EXPECT_EQ(cleaned.at(3, 3), 10);
  EXPECT_EQ(cleaned.at(3, 1), 10);  // one row of 200 is only three of nine
  EXPECT_EQ(cleaned.at(0, 0), 10);  // replicated: 200 x 3, 10 x 6
}

TEST(Median3x3, ConstantBorderCornersAreTheBorderValue) {
  std::mt19937 rng(2);
  for (const uint32_t size : {1u, 2u, 3u, 9u, 40u}) {
    GuardedImage src(size, size + 1, size + 2), dst(size, size + 1, size);
    src.fillRandom(rng);
    ASSERT_EQ(ovkFilterMedian3x3u8_v3C(src.data(), size, size + 1, size + 2, dst.data(), size,
                                       ORVIK_BORDER_CONSTANT, 123), 0u);
    EXPECT_EQ(dst.at(0, 0), 123);
    EXPECT_EQ(dst.at(size - 1, 0), 123);
    EXPECT_EQ(dst.at(0, size), 123);
    EXPECT_EQ(dst.at(size - 1, size), 123);
  }
}

TEST(Median3x3, PortableMatchesDefinition) {
  std::mt19937 rng(19);
  for (const uint32_t width : {1u, 2u, 3u, 4u, 5u, 8u, 33u})
    for (const uint32_t height : {1u, 2u, 3u, 4u, 9u}) {
      GuardedImage src(width, height, width + 4);
      // Five distinct values, so ties are common.
      src.fillRandom(rng);
      for (uint32_t y = 0; y < height; ++y)
        for (uint32_t x = 0; x < width; ++x) src.at(x, y) %= 5;
      checkKernels(ovkFilterMedian3x3u8C, ovkFilterMedian3x3u8_v3C, src, width + 1,
                   std::to_string(width) + "x" + std::to_string(height));
    }
}

TEST(Median3x3, VectorMatchesPortableOnEveryTarget) {
  std::mt19937 rng(23);
  std::vector<uint32_t> widths;
  for (uint32_t w = 1; w <= 70; ++w) widths.push_back(w);
  for (const uint32_t w : {127u, 128u, 129u, 641u, 1920u}) widths.push_back(w);
  std::vector<std::string> targetNames;
  const int targets = forEachVectorTarget([&](const std::string& target) {
    targetNames.push_back(target);
    for (const uint32_t width : widths) {
      const uint32_t height = 1 + rng() % 7;
      GuardedImage src(width, height, width + rng() % 19);
      src.fillRandom(rng);
      checkKernels(ovkVectorFilterMedian3x3u8(), ovkVectorFilterMedian3x3u8_v3(), src, width + rng() % 23,
                   target + " " + std::to_string(width) + "x" + std::to_string(height));
    }
  });
  EXPECT_GE(targets, 1);
#if defined(__ARM_NEON)
  // ARM runs must exercise NEON code, not a scalar fallback.
  EXPECT_NE(std::find(targetNames.begin(), targetNames.end(), "NEON"), targetNames.end())
      << ::testing::PrintToString(targetNames);
#endif
}

TEST(Median3x3, UnknownBorderTypeIsUnsupportedByKernels) {
  GuardedImage src(40, 4, 40), dst(40, 4, 40);
  src.fill(1);
  dst.fill(kUntouched);
  EXPECT_EQ(ovkFilterMedian3x3u8_v3C(src.data(), 40, 4, 40, dst.data(), 40, 3, 0), ORVIK_STATUS_UNSUPPORTED);
  forEachVectorTarget([&](const std::string&) {
    EXPECT_EQ(ovkVectorFilterMedian3x3u8_v3()(src.data(), 40, 4, 40, dst.data(), 40, 3, 0),
              ORVIK_STATUS_UNSUPPORTED);
  });
  EXPECT_EQ(dst.at(20, 2), kUntouched);
}

class Median3x3Entries : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE), 0); }
  void TearDown() override {
    unsetenv("RUNTIME_ORVIK_LOG");
    ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE);
  }
};

TEST_F(Median3x3Entries, AllGenerationsFilterThroughTheTable) {
  std::mt19937 rng(29);
  GuardedImage src(45, 13, 45);
  src.fillRandom(rng);
  const std::vector<int> interior = referenceMedian(src, Border::kNone, 0);
  GuardedImage first(45, 13, 45), second(45, 13, 45), third(45, 13, 45);
  for (GuardedImage* dst : {&first, &second, &third}) dst->fill(kUntouched);
  ovkFilterMedian3x3u8(src.data(), 45, 13, first.data());
  expectImage(first, interior, "first generation");
  ovkFilterMedian3x3u8_v2(src.data(), 45, 13, 0, second.data(), 0);  // stride 0: packed
  expectImage(second, interior, "_v2");
  EXPECT_EQ(ovkFilterMedian3x3u8_v3(src.data(), 45, 13, 0, third.data(), 0, ORVIK_BORDER_CONSTANT, 9), 0u);
  expectImage(third, referenceMedian(src, Border::kConstant, 9), "_v3");
}

TEST_F(Median3x3Entries, RejectedArgumentsWriteNothing) {
  GuardedImage src(16, 8, 16), dst(16, 8, 16);
  src.fill(9);
  dst.fill(kUntouched);
  LogCapture log;
  ovkFilterMedian3x3u8_v2(src.data(), 16, 8, 15, dst.data(), 16);  // stride below width
  ovkFilterMedian3x3u8(src.data(), 16, 0, dst.data());
  const std::vector<std::string> expected = {
      "Assertion failed @ovkFilterMedian3x3u8_v2: src && dst && srcWidth && srcHeight && (srcStride >= srcWidth) && "
      "dstStride\n",
      "Assertion failed @ovkFilterMedian3x3u8: src && dst && width && height\n"};
  EXPECT_EQ(log.messages(), expected);
  for (const LogLine& line : log.lines()) EXPECT_EQ(line.priority, 6);

  log.clear();
  EXPECT_EQ(ovkFilterMedian3x3u8_v3(src.data(), 16, 8, 16, dst.data(), 16, 3, 0), ORVIK_STATUS_BAD_PARAM);
  EXPECT_EQ(ovkFilterMedian3x3u8_v3(src.data(), 16, 8, 16, nullptr, 16, 1, 0), ORVIK_STATUS_BAD_PARAM);
  EXPECT_EQ(ovkFilterMedian3x3u8_v3(src.data(), 16, 8, 10, dst.data(), 16, 1, 0), ORVIK_STATUS_BAD_PARAM);
  EXPECT_TRUE(log.messages().empty());
  for (uint32_t y = 0; y < 8; ++y)
    for (uint32_t x = 0; x < 16; ++x) ASSERT_EQ(dst.at(x, y), kUntouched);
}

// 64-byte aligned storage, so the size floors are what decides.
std::unique_ptr<uint8_t, void (*)(void*)> alignedBytes(size_t bytes) {
  return {static_cast<uint8_t*>(aligned_alloc(64, (bytes + 63) / 64 * 64)), free};
}

TEST_F(Median3x3Entries, DspRunsOnlyAboveTheSizeFloor) {
  FakeBackends fakes;
  setenv("RUNTIME_ORVIK_LOG", "1", 1);
  ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_LOW_POWER), 0);
  ASSERT_EQ(ovkImplTable[ovkGroup::FilterMedian3x3u8], OVK_IMPL_RDSP);
  const auto src = alignedBytes(184 * 144), dst = alignedBytes(184 * 144);
  memset(src.get(), 0, 184 * 144);
  LogCapture log;
  // First generation: 176 x 144 = 25344 pixels is not above the floor.
  ovkFilterMedian3x3u8(src.get(), 176, 144, dst.get());
  ovkFilterMedian3x3u8(src.get(), 184, 144, dst.get());
  // _v2 counts stride bytes, also strictly above 25344.
  ovkFilterMedian3x3u8_v2(src.get(), 168, 144, 176, dst.get(), 176);
  ovkFilterMedian3x3u8_v2(src.get(), 168, 144, 184, dst.get(), 184);
  EXPECT_EQ(fakes.state().dspCalls, 2);
  const std::vector<std::string> expected = {"ovkFilterMedian3x3u8_PELAR", "ovkFilterMedian3x3u8_RDSP",
                                             "ovkFilterMedian3x3u8_v2_PELAR", "ovkFilterMedian3x3u8_v2_RDSP"};
  EXPECT_EQ(log.messages(), expected);
}

}  // namespace
