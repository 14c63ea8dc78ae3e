// The vector scaling kernels against the portable ones on every compiled
// target: guard-page images of every width up to 70 and a few long rows,
// padded strides, start addresses of both parities, destination padding left
// alone and return values equal.
#include <gtest/gtest.h>
#include <string.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "cpu/orvikInternal.h"
#include "support/guarded_image.h"
#include "support/vector_targets.h"

namespace {

struct Shape {
  uint32_t srcWidth, srcHeight, dstWidth, dstHeight;
};

// One kernel run on a source and a destination image; returns the kernel's
// result (0 for a void kernel).
using Call = std::function<int64_t(const GuardedImage& src, const GuardedImage& dst, const Shape& shape)>;

template <class T>
T* as(const GuardedImage& image) {
  return reinterpret_cast<T*>(image.data());
}

// Fixed-ratio kernels: the destination size follows from the source.
template <class R, class Src, class Dst>
Call call(R (*f)(const Src*, uint32_t, uint32_t, uint32_t, Dst*, uint32_t)) {
  return [f](const GuardedImage& s, const GuardedImage& d, const Shape& shape) -> int64_t {
    if constexpr (std::is_void_v<R>) {
      f(as<const Src>(s), shape.srcWidth, shape.srcHeight, s.stride(), as<Dst>(d), d.stride());
      return 0;
    } else {
      return f(as<const Src>(s), shape.srcWidth, shape.srcHeight, s.stride(), as<Dst>(d), d.stride());
    }
  };
}

// Kernels given the destination size.
template <class R>
Call call(R (*f)(const uint8_t*, uint32_t, uint32_t, uint32_t, uint8_t*, uint32_t, uint32_t, uint32_t)) {
  return [f](const GuardedImage& s, const GuardedImage& d, const Shape& shape) -> int64_t {
    if constexpr (std::is_void_v<R>) {
      f(s.data(), shape.srcWidth, shape.srcHeight, s.stride(), d.data(), shape.dstWidth, shape.dstHeight, d.stride());
      return 0;
    } else {
      return f(s.data(), shape.srcWidth, shape.srcHeight, s.stride(), d.data(), shape.dstWidth, shape.dstHeight,
               d.stride());
    }
  };
}

// The destination sizes the wrappers accept for a source size (none when
// they refuse it).
using Shapes = std::function<std::vector<Shape>(uint32_t width, uint32_t height)>;

Shapes fixedRatio(uint32_t multiple, uint32_t numerator, uint32_t denominator, uint32_t smallest = 1) {
  return [=](uint32_t w, uint32_t h) {
    if (w % multiple || h % multiple || w < smallest || h < smallest) return std::vector<Shape>{};
    return std::vector<Shape>{{w, h, w * numerator / denominator, h * numerator / denominator}};
  };
}

// Entries given any destination size: reductions by assorted ratios up to
// 19, equal sizes and, unless `reductionOnly`, enlargements.
Shapes freeSize(bool reductionOnly) {
  return [=](uint32_t w, uint32_t h) {
    const auto sizes = [&](uint32_t n) {
      std::vector<uint32_t> out = {n, n * 2 / 3, n / 2, n / 3, n * 3 / 7, n / 19 + 1};
      if (!reductionOnly) out.push_back(n + 5);
      out.erase(std::remove(out.begin(), out.end(), 0u), out.end());
      return out;
    };
    const std::vector<uint32_t> widths = sizes(w), heights = sizes(h);
    std::vector<Shape> shapes;
    for (size_t i = 0; i < widths.size(); ++i) shapes.push_back({w, h, widths[i], heights[(i * 5) % heights.size()]});
    return shapes;
  };
}

// The integer-factor box: every destination size that divides the source.
std::vector<Shape> wholeFactors(uint32_t w, uint32_t h) {
  std::vector<Shape> shapes;
  for (uint32_t fx = 1; fx <= std::min(w, 6u); ++fx)
    for (const uint32_t fy : {1u, 2u, 3u, 5u, h}) {
      if (w % fx || h % fy || fy > h) continue;
      shapes.push_back({w, h, w / fx, h / fy});
    }
  return shapes;
}

struct KernelPair {
  std::string name;
  uint32_t srcPixelBytes, dstPixelBytes;
  Shapes shapes;
  Call vector, portable;
};

#define OVK_PAIR(group, srcBytes, dstBytes, shapes) \
  KernelPair { #group, srcBytes, dstBytes, shapes, call(ovkVector##group()), call(ovk##group##C) }

// The vector kernel is looked up under the target chosen at the time of the call.
std::vector<KernelPair> kernelPairs() {
  return {
      OVK_PAIR(ScaleDownBy2u8, 1, 1, fixedRatio(2, 1, 2)),
      OVK_PAIR(ScaleDownBy4u8, 1, 1, fixedRatio(4, 1, 4)),
      OVK_PAIR(ScaleDownBy2Gaussian5x5u8, 1, 1, fixedRatio(1, 1, 2)),
      OVK_PAIR(ScaleDownBy2Gaussian3x3u8, 1, 1, fixedRatio(1, 1, 2, 2)),
      OVK_PAIR(ScaleUpBy2Gaussian5x5u8, 1, 1, fixedRatio(1, 2, 1)),
      OVK_PAIR(ScaleDownBy2Gaussian5x5f32, 4, 4, fixedRatio(2, 1, 2)),
      OVK_PAIR(ScaleDownBy2Gaussian5x5f32_v2, 4, 4, fixedRatio(2, 1, 2)),
      OVK_PAIR(ScaleDown3To2u8, 1, 1, fixedRatio(1, 2, 3)),
      OVK_PAIR(ScaleDownBLu8, 1, 1, freeSize(false)),
      OVK_PAIR(ScaleDownu8, 1, 1, wholeFactors),
      OVK_PAIR(ScaleDownNNu8, 1, 1, freeSize(false)),
      OVK_PAIR(ScaleDownMNu8, 1, 1, freeSize(false)),
      OVK_PAIR(ScaleDownMNInterleaveu8, 2, 2, freeSize(false)),
  };
}

// Float sources hold values with fractions of both signs, so that the order
// of products and sums shows in the low bits, and now and then a tiny value,
// an infinity or a NaN with a payload.
void fillSource(GuardedImage& src, uint32_t rowBytes, uint32_t pixelBytes, std::mt19937& rng) {
  if (pixelBytes != 4) return src.fillRandom(rng);  // bytes, or byte pairs
  std::uniform_real_distribution<float> value(-300.0f, 300.0f);
  for (uint32_t y = 0; y < src.height(); ++y)
    for (uint32_t x = 0; x < rowBytes; x += 4) {
      float v = value(rng);
      const uint32_t pick = rng() % 64;
      if (pick < 4) v *= 1e-38f;
      if (pick == 4) v = v > 0 ? INFINITY : -INFINITY;
      if (pick == 5) {
        const uint32_t bits = 0x7F800001u | (rng() & 0x803FFFFFu);
        memcpy(&v, &bits, 4);
      }
      memcpy(src.row(y) + x, &v, 4);
    }
}

std::vector<uint32_t> testWidths() {
  std::vector<uint32_t> widths;
  for (uint32_t w = 1; w <= 70; ++w) widths.push_back(w);
  for (const uint32_t w : {127u, 128u, 129u, 255u, 513u}) widths.push_back(w);
  return widths;
}

TEST(ScaleVectors, MatchPortableOnEveryTarget) {
  std::mt19937 rng(11);
  std::vector<std::string> targets;
  size_t oddStarts = 0, runs = 0;
  forEachVectorTarget([&](const std::string& target) {
    targets.push_back(target);
    for (const KernelPair& pair : kernelPairs()) {
      for (const uint32_t width : testWidths()) {
        for (const uint32_t height : {1u, 2u, 3u, 4u, 5u, 6u, 8u, 9u, 12u}) {
          for (const Shape& shape : pair.shapes(width, height)) {
            const uint32_t srcRow = width * pair.srcPixelBytes;
            const uint32_t dstWidth = std::max(shape.dstWidth, 1u), dstHeight = std::max(shape.dstHeight, 1u);
            const uint32_t dstRow = dstWidth * pair.dstPixelBytes;
            GuardedImage src(srcRow, height, strideWithStartParity(srcRow, height, runs & 1, rng));
            fillSource(src, srcRow, pair.srcPixelBytes, rng);
            const uint32_t dstStride = strideWithStartParity(dstRow, dstHeight, runs & 2, rng);
            GuardedImage vector(dstRow, dstHeight, dstStride), portable(dstRow, dstHeight, dstStride);
            oddStarts += (reinterpret_cast<uintptr_t>(src.data()) & 1) + (reinterpret_cast<uintptr_t>(vector.data()) & 1);
            ++runs;
            const int64_t vectorResult = pair.vector(src, vector, shape);
            const int64_t portableResult = pair.portable(src, portable, shape);
            const std::string where = target + " " + pair.name + " " + std::to_string(width) + "x" +
                                      std::to_string(height) + " to " + std::to_string(shape.dstWidth) + "x" +
                                      std::to_string(shape.dstHeight);
            ASSERT_EQ(vectorResult, portableResult) << where;
            ASSERT_TRUE(vector.paddingIntact()) << where;
            ASSERT_EQ(firstDifference(vector, portable), -1) << where << " (stride " << dstStride << ")";
          }
        }
      }
    }
  });
  EXPECT_FALSE(targets.empty());
  EXPECT_GT(oddStarts, runs / 4);  // both parities of start address were exercised
  std::string names;
  for (const std::string& target : targets) names += target + " ";
  RecordProperty("targets", names);
  std::printf("targets: %s\n", names.c_str());
#if defined(__ARM_NEON)
  EXPECT_NE(std::find(targets.begin(), targets.end(), "NEON"), targets.end());
#endif
}

// The M-by-N row core on column sums of blocks up to 19 x 19 pixels: rows
// of equal counts (the vector path for 1 to 3), enlarging rows with empty
// blocks, and mixed counts, every destination width up to 70 and a few long
// rows, on guard-page buffers.
TEST(ScaleVectors, MNRowCoreMatchesPortableOnEveryTarget) {
  std::mt19937 rng(23);
  forEachVectorTarget([&](const std::string& target) {
    const ovkScaleDownMNRowFn vector = ovkVectorScaleDownMNu8Core_();
    for (const uint32_t width : testWidths()) {
      for (uint32_t pattern = 0; pattern < 6; ++pattern) {
        const uint32_t rowCount = 1 + rng() % 19;
        std::vector<uint8_t> counts(width);
        for (uint32_t x = 0; x < width; ++x) {
          if (pattern < 4) counts[x] = uint8_t(pattern + 1);  // 1, 2, 3 and 4 columns everywhere
          if (pattern == 4) counts[x] = uint8_t(x == 0 || rng() % 3 ? 1 : 0);  // enlarging
          if (pattern == 5) counts[x] = uint8_t(1 + rng() % 19);
        }
        size_t columns = 0;
        for (const uint8_t count : counts) columns += count;
        GuardedBuffer sums(columns * 2), countBuffer(width), vectorOut(width), portableOut(width);
        uint16_t* columnSums = reinterpret_cast<uint16_t*>(sums.data());
        for (size_t i = 0; i < columns; ++i) columnSums[i] = uint16_t(rng() % (rowCount * 255 + 1));
        memcpy(countBuffer.data(), counts.data(), width);
        memset(vectorOut.data(), 0x5C, width);
        memset(portableOut.data(), 0x5C, width);
        vector(columnSums, countBuffer.data(), rowCount, vectorOut.data(), width);
        ScaleDownMNu8CoreC(columnSums, countBuffer.data(), rowCount, portableOut.data(), width);
        ASSERT_EQ(memcmp(vectorOut.data(), portableOut.data(), width), 0)
            << target << " width " << width << " pattern " << pattern << " rows " << rowCount;
      }
    }
  });
}

}  // namespace
