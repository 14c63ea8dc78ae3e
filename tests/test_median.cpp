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
#include "support/entry_test.h"
#include "support/fake_backends.h"
#include "support/filter_reference.h"

namespace {

constexpr uint8_t kBorderValue = 77;

// Sorts each pixel's nine taps and takes the fifth.
Expected referenceMedian(const GuardedImage& src, Outside outside, uint8_t borderValue) {
  return referenceFilter<uint8_t>(src, 1, outside, borderValue, [&](Taps taps, bool interior) {
    if (!interior && outside == Outside::kSkip) return std::optional<int64_t>();
    std::sort(taps.begin(), taps.end());
    return taps[4];
  });
}

// Both kernel kinds, every border type, on one source.
void checkKernels(ovkFilterMedian3x3u8Fn median, ovkFilterMedian3x3u8_v3Fn medianV3, const GuardedImage& src,
                  uint32_t dstStride, const std::string& what) {
  expectFiltered(
      src, dstStride,
      [&](GuardedImage& dst) { median(src.data(), src.width(), src.height(), src.stride(), dst.data(), dst.stride()); },
      referenceMedian(src, Outside::kSkip, 0), what + " interior");
  checkBorderTypes(
      medianV3, src, dstStride, kBorderValue,
      [&](ovkBorderType type) { return referenceMedian(src, outsideFor(type), kBorderValue); }, what);
}

TEST(Median3x3, HandComputedCases) {
  // 3x3 image: the one interior pixel is the median of 9, 1, 8, 2, 7, 3, 6, 4, 5.
  GuardedImage src(3, 3, 3), dst(3, 3, 3);
  const uint8_t pixels[3][3] = {{9, 1, 8}, {2, 7, 3}, {6, 4, 5}};
  for (uint32_t y = 0; y < 3; ++y)
    for (uint32_t x = 0; x < 3; ++x) src.at(x, y) = pixels[y][x];
  dst.fill(kUntouched);
  ovkFilterMedian3x3u8C(src.data(), 3, 3, 3, dst.data(), 3);
  EXPECT_EQ(dst.at(1, 1), 5);
  EXPECT_EQ(dst.at(0, 0), kUntouched);
  EXPECT_EQ(dst.at(2, 1), kUntouched);
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
      checkKernels(ovkFilterMedian3x3u8C, ovkFilterMedian3x3u8_v3C, src, width + 1, sizeText(src));
    }
}

TEST(Median3x3, VectorMatchesPortableOnEveryTarget) {
  std::mt19937 rng(23);
  forEveryVectorTarget([&](const std::string& target) {
    for (const uint32_t width : testWidths({127, 128, 129, 641, 1920})) {
      GuardedImage src(width, 1 + rng() % 7, width + rng() % 19);
      src.fillRandom(rng);
      checkKernels(ovkVectorFilterMedian3x3u8(), ovkVectorFilterMedian3x3u8_v3(), src, width + rng() % 23,
                   target + " " + sizeText(src));
    }
  });
}

class Median3x3Entries : public EntryTest {};

// Stride 0 means packed.
TEST_F(Median3x3Entries, AllGenerationsFilterThroughTheTable) {
  std::mt19937 rng(29);
  GuardedImage src(45, 13, 45);
  src.fillRandom(rng);
  const Expected interior = referenceMedian(src, Outside::kSkip, 0);
  expectFiltered(
      src, 45, [&](GuardedImage& dst) { ovkFilterMedian3x3u8(src.data(), 45, 13, dst.data()); }, interior,
      "first generation");
  expectFiltered(
      src, 45, [&](GuardedImage& dst) { ovkFilterMedian3x3u8_v2(src.data(), 45, 13, 0, dst.data(), 0); }, interior,
      "_v2");
  expectFiltered(
      src, 45,
      [&](GuardedImage& dst) {
        EXPECT_EQ(ovkFilterMedian3x3u8_v3(src.data(), 45, 13, 0, dst.data(), 0, ORVIK_BORDER_CONSTANT, 9), 0u);
      },
      referenceMedian(src, Outside::kConstant, 9), "_v3");
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
