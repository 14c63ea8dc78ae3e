// Per-pixel references for the smoothing filters (each output pixel from its
// own window of taps, no sliding sums) and the checks their tests share.
#ifndef ORVIK_TEST_FILTER_REFERENCE_H
#define ORVIK_TEST_FILTER_REFERENCE_H

#include <gtest/gtest.h>
#include <string.h>

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "orvik.h"
#include "support/guarded_image.h"
#include "support/log_capture.h"
#include "support/vector_targets.h"

constexpr uint8_t kUntouched = 0x5C;  // every byte of dst before a call

// One value per pixel, row by row; nullopt where nothing may be written.
using Expected = std::vector<std::optional<int64_t>>;
// A window's taps, row by row; nullopt for a tap that is skipped.
using Taps = std::vector<std::optional<int64_t>>;

// What a tap outside the image reads.
enum class Outside { kSkip, kConstant, kReplicate };

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

// `pixel(taps, interior)` on every pixel's window of radius r; interior means
// the whole window lies inside the image.
template <class Pixel, class PixelFn>
Expected referenceFilter(const GuardedImage& src, int r, Outside outside, int64_t value, PixelFn pixel) {
  const int w = int(src.width()), h = int(src.height());
  Expected out;
  Taps taps;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      taps.clear();
      for (int ty = y - r; ty <= y + r; ++ty)
        for (int tx = x - r; tx <= x + r; ++tx) {
          const bool inside = tx >= 0 && ty >= 0 && tx < w && ty < h;
          if (inside || outside == Outside::kReplicate)
            taps.push_back(pixelAt<Pixel>(src, std::clamp(tx, 0, w - 1), std::clamp(ty, 0, h - 1)));
          else
            taps.push_back(outside == Outside::kConstant ? std::optional<int64_t>(value) : std::nullopt);
        }
      out.push_back(pixel(taps, x >= r && y >= r && x < w - r && y < h - r));
    }
  return out;
}

inline int64_t floorDivide(int64_t a, int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

// Binomial coefficients of order 2 radius, by Pascal's rule.
inline std::vector<int64_t> binomialRow(int radius) {
  std::vector<int64_t> row = {1};
  for (int order = 1; order <= 2 * radius; ++order) {
    std::vector<int64_t> next(order + 1, 1);
    for (int k = 1; k < order; ++k) next[k] = row[k - 1] + row[k];
    row = next;
  }
  return row;
}

// Binomial Gaussian: the weighted sum of the taps read over the sum of their
// weights, floored (a full window weighs 16^radius, so that is the shift).
// Non-interior pixels stay unwritten unless writeBorder.
template <class Pixel>
Expected referenceGaussian(const GuardedImage& src, int radius, Outside outside, int64_t value, bool writeBorder) {
  const std::vector<int64_t> weight = binomialRow(radius);
  const size_t side = weight.size();
  return referenceFilter<Pixel>(src, radius, outside, value, [&](const Taps& taps, bool interior) {
    if (!interior && !writeBorder) return std::optional<int64_t>();
    int64_t sum = 0, weights = 0;
    for (size_t i = 0; i < taps.size(); ++i) {
      if (!taps[i]) continue;
      const int64_t k = weight[i / side] * weight[i % side];
      sum += k * *taps[i];
      weights += k;
    }
    return std::optional<int64_t>(floorDivide(sum, weights));
  });
}

inline std::string sizeText(const GuardedImage& image) {
  return std::to_string(image.width()) + "x" + std::to_string(image.height());
}

template <class Pixel = uint8_t>
void expectImage(const GuardedImage& dst, const Expected& expected, const std::string& what) {
  ASSERT_TRUE(dst.paddingIntact()) << what;
  Pixel untouched;
  memset(&untouched, kUntouched, sizeof untouched);
  for (uint32_t y = 0; y < dst.height(); ++y)
    for (uint32_t x = 0; x < dst.width(); ++x) {
      const std::optional<int64_t>& want = expected[size_t(y) * dst.width() + x];
      ASSERT_EQ(int64_t(pixelAt<Pixel>(dst, x, y)), want ? *want : int64_t(untouched))
          << what << " at (" << x << "," << y << ")" << (want ? "" : " (must stay unwritten)");
    }
}

// `filter(dst)` into a kUntouched dst of src's size, then checked.
template <class Pixel = uint8_t, class Filter>
void expectFiltered(const GuardedImage& src, uint32_t dstStride, Filter filter, const Expected& expected,
                    const std::string& what) {
  GuardedImage dst(src.width(), src.height(), dstStride, sizeof(Pixel));
  dst.fill(kUntouched);
  filter(dst);
  expectImage<Pixel>(dst, expected, what);
}

// Each border type through a status kernel into a fresh dst: the known ones
// against `reference(type)`, an unknown one refused with `unknownStatus` and
// nothing written.
template <class Reference>
void checkBorderTypes(ovkFilterGaussian3x3u8_v3Fn kernel, const GuardedImage& src, uint32_t dstStride,
                      uint8_t borderValue, Reference reference, const std::string& what,
                      ovkStatusCode unknownStatus = ORVIK_STATUS_UNSUPPORTED) {
  const uint32_t w = src.width(), h = src.height();
  for (const ovkBorderType type : {ORVIK_BORDER_UNDEFINED, ORVIK_BORDER_CONSTANT, ORVIK_BORDER_REPLICATE, 3u}) {
    const bool known = type <= ORVIK_BORDER_REPLICATE;
    expectFiltered(
        src, dstStride,
        [&](GuardedImage& dst) {
          ASSERT_EQ(kernel(src.data(), w, h, src.stride(), dst.data(), dst.stride(), type, borderValue),
                    known ? ORVIK_STATUS_SUCCESS : unknownStatus);
        },
        known ? reference(type) : Expected(size_t(w) * h), what + " borderType " + std::to_string(type));
  }
}

inline Outside outsideFor(ovkBorderType type) {
  return type == ORVIK_BORDER_CONSTANT    ? Outside::kConstant
         : type == ORVIK_BORDER_REPLICATE ? Outside::kReplicate
                                          : Outside::kSkip;
}

// Every width up to 70 (every tail of every vector size), then `wider`.
inline std::vector<uint32_t> testWidths(std::initializer_list<uint32_t> wider) {
  std::vector<uint32_t> widths;
  for (uint32_t w = 1; w <= 70; ++w) widths.push_back(w);
  widths.insert(widths.end(), wider);
  return widths;
}

// forEachVectorTarget, insisting on at least one target and, on ARM, on NEON.
inline void forEveryVectorTarget(const std::function<void(const std::string& target)>& check) {
  std::vector<std::string> names;
  const int targets = forEachVectorTarget([&](const std::string& target) {
    names.push_back(target);
    check(target);
  });
  EXPECT_GE(targets, 1);
#if defined(__ARM_NEON)
  // The point of the ARM runs: NEON code, not a scalar fallback.
  EXPECT_NE(std::find(names.begin(), names.end(), "NEON"), names.end()) << ::testing::PrintToString(names);
#endif
}

#endif
