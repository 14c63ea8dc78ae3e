// The vector general resizers (polyphase, its two-channel form, and the
// area / nearest / bilinear resize) against the portable ones on every
// compiled target: guard-page images of every width up to 70 and a few wide
// ones that need several strips, enlargements, reductions and equal sizes,
// padded strides, start addresses of both parities, destination padding left
// alone.  Sources are random bytes or random 0 / 255, which drive the filter
// sums to both ends of their range and the results into the clamp.
#include <gtest/gtest.h>

#include <algorithm>
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

using Kernel = std::function<int64_t(const GuardedImage& src, const GuardedImage& dst, const Shape& shape)>;

struct KernelPair {
  std::string name;
  uint32_t channels;
  Kernel vector, portable;
};

Kernel polyCall(ovkScaleUpPolyu8Fn f) {
  return [f](const GuardedImage& s, const GuardedImage& d, const Shape& shape) -> int64_t {
    f(s.data(), shape.srcWidth, shape.srcHeight, s.stride(), d.data(), shape.dstWidth, shape.dstHeight, d.stride());
    return 0;
  };
}

Kernel resizeCall(ovkScaleu8Fn f, ovkInterpolationType interpolation) {
  return [f, interpolation](const GuardedImage& s, const GuardedImage& d, const Shape& shape) -> int64_t {
    return f(s.data(), shape.srcWidth, shape.srcHeight, s.stride(), d.data(), shape.dstWidth, shape.dstHeight,
             d.stride(), interpolation);
  };
}

// The vector kernels are looked up under the target chosen at the time of the call.
std::vector<KernelPair> kernelPairs() {
  return {
      {"ScaleUpPolyu8", 1, polyCall(ovkVectorScaleUpPolyu8()), polyCall(ovkScaleUpPolyu8C)},
      {"ScaleUpPolyInterleaveu8", 2, polyCall(ovkVectorScaleUpPolyInterleaveu8()),
       polyCall(ovkScaleUpPolyInterleaveu8C)},
      {"Scaleu8 area", 1, resizeCall(ovkVectorScaleu8(), ORVIK_INTERPOLATION_AREA),
       resizeCall(ovkScaleu8C, ORVIK_INTERPOLATION_AREA)},
      {"Scaleu8 nearest", 1, resizeCall(ovkVectorScaleu8(), ORVIK_INTERPOLATION_NEAREST),
       resizeCall(ovkScaleu8C, ORVIK_INTERPOLATION_NEAREST)},
      {"Scaleu8 bilinear", 1, resizeCall(ovkVectorScaleu8(), ORVIK_INTERPOLATION_BILINEAR),
       resizeCall(ovkScaleu8C, ORVIK_INTERPOLATION_BILINEAR)},
  };
}

// Destination sizes for a source side: equal, enlargements by assorted and
// odd ratios, reductions up to 19 and down to one pixel.
std::vector<uint32_t> sidesFor(uint32_t n) {
  std::vector<uint32_t> out = {n, 2 * n, n + 1, n * 3 / 2 + 1, n * 7 / 3 + 1, n + 5, n * 2 / 3, n / 2, n / 3, n / 19 + 1, 1};
  out.erase(std::remove(out.begin(), out.end(), 0u), out.end());
  std::sort(out.begin(), out.end());
  out.erase(std::unique(out.begin(), out.end()), out.end());
  return out;
}

std::vector<Shape> shapesFor(uint32_t w, uint32_t h) {
  const std::vector<uint32_t> widths = sidesFor(w), heights = sidesFor(h);
  std::vector<Shape> shapes;
  for (size_t i = 0; i < widths.size(); ++i) shapes.push_back({w, h, widths[i], heights[(i * 5) % heights.size()]});
  return shapes;
}

// Wide rows: several strips of outputs, strips cut by the span of source
// columns they read, and reductions whose strips hold a single output.
std::vector<Shape> wideShapes() {
  return {{700, 3, 1500, 5},  {1100, 2, 2203, 3}, {1500, 3, 700, 4}, {3000, 2, 100, 3}, {5000, 2, 3, 2},
          {2100, 3, 2100, 3}, {513, 2, 4099, 2},  {1030, 2, 1031, 3}, {17, 3, 1100, 7}, {2049, 4, 1024, 2}};
}

void fillSource(GuardedImage& src, uint32_t rowBytes, bool extremes, std::mt19937& rng) {
  if (!extremes) return src.fillRandom(rng);
  for (uint32_t y = 0; y < src.height(); ++y)
    for (uint32_t x = 0; x < rowBytes; ++x) src.row(y)[x] = (rng() & 1) ? 255 : 0;
}

struct Counters {
  size_t runs = 0, oddStarts = 0;
};

void compare(const KernelPair& pair, const Shape& shape, const std::string& target, std::mt19937& rng,
             Counters& counters) {
  const uint32_t srcRow = shape.srcWidth * pair.channels, dstRow = shape.dstWidth * pair.channels;
  const size_t run = counters.runs++;
  GuardedImage src(srcRow, shape.srcHeight, strideWithStartParity(srcRow, shape.srcHeight, run & 1, rng));
  fillSource(src, srcRow, run % 3 == 0, rng);
  const uint32_t dstStride = strideWithStartParity(dstRow, shape.dstHeight, run & 2, rng);
  GuardedImage vector(dstRow, shape.dstHeight, dstStride), portable(dstRow, shape.dstHeight, dstStride);
  counters.oddStarts +=
      (reinterpret_cast<uintptr_t>(src.data()) & 1) + (reinterpret_cast<uintptr_t>(vector.data()) & 1);
  const int64_t vectorResult = pair.vector(src, vector, shape);
  const int64_t portableResult = pair.portable(src, portable, shape);
  const std::string where = target + " " + pair.name + " " + std::to_string(shape.srcWidth) + "x" +
                            std::to_string(shape.srcHeight) + " to " + std::to_string(shape.dstWidth) + "x" +
                            std::to_string(shape.dstHeight);
  ASSERT_EQ(vectorResult, portableResult) << where;
  ASSERT_TRUE(vector.paddingIntact()) << where;
  ASSERT_EQ(firstDifference(vector, portable), -1) << where << " (stride " << dstStride << ")";
}

TEST(ResizeVectors, MatchPortableOnEveryTarget) {
  std::mt19937 rng(29);
  Counters counters;
  const int targets = forEachVectorTarget([&](const std::string& target) {
    for (const KernelPair& pair : kernelPairs()) {
      for (uint32_t width = 1; width <= 70; ++width)
        for (const uint32_t height : {1u, 2u, 3u, 5u, 8u})
          for (const Shape& shape : shapesFor(width, height)) {
            compare(pair, shape, target, rng, counters);
            if (HasFatalFailure()) return;
          }
      for (const Shape& shape : wideShapes()) {
        compare(pair, shape, target, rng, counters);
        if (HasFatalFailure()) return;
      }
    }
  });
  EXPECT_GT(targets, 0);
  EXPECT_GT(counters.oddStarts, counters.runs / 4);  // both parities of start address were exercised
}

// Every kernel on every target keeps a constant image constant (the weights
// of each output sum to one), whatever the sizes.
TEST(ResizeVectors, ConstantImagesStayConstant) {
  forEachVectorTarget([&](const std::string& target) {
    for (const KernelPair& pair : kernelPairs()) {
      for (const uint8_t value : {uint8_t(0), uint8_t(1), uint8_t(128), uint8_t(254), uint8_t(255)}) {
        for (const Shape& shape : {Shape{37, 5, 80, 11}, Shape{64, 4, 29, 3}, Shape{9, 9, 9, 9}, Shape{1, 1, 33, 2}}) {
          const uint32_t srcRow = shape.srcWidth * pair.channels, dstRow = shape.dstWidth * pair.channels;
          GuardedImage src(srcRow, shape.srcHeight, srcRow + 3);
          src.fill(value);
          GuardedImage dst(dstRow, shape.dstHeight, dstRow + 1);
          pair.vector(src, dst, shape);
          for (uint32_t y = 0; y < shape.dstHeight; ++y)
            for (uint32_t x = 0; x < dstRow; ++x)
              ASSERT_EQ(dst.at(x, y), value) << target << " " << pair.name << " at " << x << "," << y;
        }
      }
    }
  });
}

}  // namespace
