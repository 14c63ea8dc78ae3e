// 3x3 Gaussian: every border rule against a per-pixel definition, vector ==
// portable on every target, and the three entries.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "cpu/orvikInternal.h"
#include "support/entry_test.h"
#include "support/filter_reference.h"

namespace {

constexpr uint8_t kBorderValue = 201;

// Every blurBorder and border type of one kernel pair on one source.
void checkKernels(ovkFilterGaussian3x3u8Fn gaussian, ovkFilterGaussian3x3u8_v3Fn gaussianV3, const GuardedImage& src,
                  uint32_t dstStride, const std::string& what) {
  for (const int32_t blurBorder : {0, 1, 7})
    expectFiltered(
        src, dstStride,
        [&](GuardedImage& dst) {
          gaussian(src.data(), src.width(), src.height(), src.stride(), dst.data(), dst.stride(), blurBorder);
        },
        referenceGaussian<uint8_t>(src, 1, Outside::kSkip, 0, blurBorder == 1),
        what + " blurBorder " + std::to_string(blurBorder));
  checkBorderTypes(
      gaussianV3, src, dstStride, kBorderValue,
      [&](ovkBorderType type) {
        return referenceGaussian<uint8_t>(src, 1, outsideFor(type), kBorderValue, type != ORVIK_BORDER_UNDEFINED);
      },
      what);
}

// Hand-worked truncations at the border: divisors, and the constant border.
TEST(Gaussian3x3, HandComputedCases) {
  // Border divisors: a corner is (4 centre + 2 + 2 + 1) / 9, an edge pixel
  // (4 centre + 3 x 2 + 2 x 1) / 12.
  GuardedImage tiny(3, 2, 3), out(3, 2, 3);
  const uint8_t pixels[2][3] = {{90, 30, 200}, {10, 250, 7}};
  for (uint32_t y = 0; y < 2; ++y)
    for (uint32_t x = 0; x < 3; ++x) tiny.at(x, y) = pixels[y][x];
  ovkFilterGaussian3x3u8C(tiny.data(), 3, 2, 3, out.data(), 3, 1);
  EXPECT_EQ(out.at(0, 0), (4 * 90 + 2 * 30 + 2 * 10 + 250) / 9);
  EXPECT_EQ(out.at(1, 0), (4 * 30 + 2 * 90 + 2 * 200 + 2 * 250 + 10 + 7) / 12);
  EXPECT_EQ(out.at(2, 1), (4 * 7 + 2 * 250 + 2 * 200 + 30) / 9);

  // Constant border: a corner adds 7 x borderValue, an edge 4 x borderValue.
  GuardedImage flat(4, 4, 4), framed(4, 4, 4);
  flat.fill(100);
  ASSERT_EQ(ovkFilterGaussian3x3u8_v3C(flat.data(), 4, 4, 4, framed.data(), 4, ORVIK_BORDER_CONSTANT, 20), 0u);
  EXPECT_EQ(framed.at(0, 0), (9 * 100 + 7 * 20) >> 4);
  EXPECT_EQ(framed.at(1, 0), (12 * 100 + 4 * 20) >> 4);
  EXPECT_EQ(framed.at(1, 1), 100);
}

// Random images, and flat ones at both ends of the range, which must stay flat.
TEST(Gaussian3x3, PortableMatchesDefinition) {
  std::mt19937 rng(7);
  for (const uint32_t width : {1u, 2u, 3u, 4u, 5u, 17u, 23u, 64u})
    for (const uint32_t height : {1u, 2u, 3u, 4u, 9u, 11u}) {
      GuardedImage src(width, height, width + 3);
      src.fillRandom(rng);
      checkKernels(ovkFilterGaussian3x3u8C, ovkFilterGaussian3x3u8_v3C, src, width + 5, sizeText(src));
      for (const uint8_t value : {0, 1, 255}) {
        src.fill(value);
        checkKernels(ovkFilterGaussian3x3u8C, ovkFilterGaussian3x3u8_v3C, src, width, sizeText(src) + " flat");
      }
    }
}

// Vector kernels give the portable bytes for every width, stride and start.
TEST(Gaussian3x3, VectorMatchesPortableOnEveryTarget) {
  std::mt19937 rng(11);
  forEveryVectorTarget([&](const std::string& target) {
    for (const uint32_t width : testWidths({127, 128, 129, 255, 641, 1920})) {
      const uint32_t height = 1 + rng() % 6;
      GuardedImage src(width, height, width + rng() % 19);
      src.fillRandom(rng);
      checkKernels(ovkVectorFilterGaussian3x3u8(), ovkVectorFilterGaussian3x3u8_v3(), src, width + rng() % 23,
                   target + " " + sizeText(src));
    }
    // A taller image with an odd stride, as camera buffers come.
    GuardedImage src(333, 37, 347);
    src.fillRandom(rng);
    checkKernels(ovkVectorFilterGaussian3x3u8(), ovkVectorFilterGaussian3x3u8_v3(), src, 336, target + " 333x37");
  });
}

class Gaussian3x3Entries : public EntryTest {};

// Stride 0 means packed.
TEST_F(Gaussian3x3Entries, AllGenerationsFilterThroughTheTable) {
  std::mt19937 rng(3);
  GuardedImage src(45, 13, 45);
  src.fillRandom(rng);
  const Expected blurred = referenceGaussian<uint8_t>(src, 1, Outside::kSkip, 0, true);
  expectFiltered(
      src, 45, [&](GuardedImage& dst) { ovkFilterGaussian3x3u8(src.data(), 45, 13, dst.data(), 1); }, blurred,
      "first generation");
  expectFiltered(
      src, 45, [&](GuardedImage& dst) { ovkFilterGaussian3x3u8_v2(src.data(), 45, 13, 0, dst.data(), 0, 1); }, blurred,
      "_v2");
  expectFiltered(
      src, 45,
      [&](GuardedImage& dst) {
        EXPECT_EQ(ovkFilterGaussian3x3u8_v3(src.data(), 45, 13, 0, dst.data(), 0, ORVIK_BORDER_REPLICATE, 0), 0u);
      },
      referenceGaussian<uint8_t>(src, 1, Outside::kReplicate, 0, true), "_v3");
}

}  // namespace
