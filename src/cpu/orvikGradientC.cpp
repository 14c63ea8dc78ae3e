// Portable 3x3 gradients: central differences, Sobel, Scharr and the Sobel
// magnitude, over the interior of 8-bit (and, for one Sobel form, float)
// images.
#include <algorithm>
#include <cstdlib>

#include "orvikInternal.h"

namespace {

enum class Operator { kCentral, kSobel, kScharr };

// dx and dy at column x of `row`, with the rows above and below it.  Sums
// are 32-bit integers for 8-bit pixels and floats for float pixels, where
// each column is (above + 2 row) + below.
template <Operator Op, class Pixel, class Sum>
void gradientAt(const uint8_t* above, const uint8_t* row, const uint8_t* below, uint32_t x, Sum& dx, Sum& dy) {
  const auto at = [](const uint8_t* line, uint32_t column) { return Sum(ovkLoadElement<Pixel>(line, column)); };
  if constexpr (Op == Operator::kCentral) {
    dx = at(row, x + 1) - at(row, x - 1);
    dy = at(below, x) - at(above, x);
  } else {
    constexpr int kEdge = Op == Operator::kSobel ? 1 : 3;
    constexpr int kCentre = Op == Operator::kSobel ? 2 : 10;
    const auto column = [&](uint32_t c) {
      return Sum(kEdge) * at(above, c) + Sum(kCentre) * at(row, c) + Sum(kEdge) * at(below, c);
    };
    const auto line = [&](const uint8_t* l) {
      return Sum(kEdge) * at(l, x - 1) + Sum(kCentre) * at(l, x) + Sum(kEdge) * at(l, x + 1);
    };
    dx = column(x + 1) - column(x - 1);
    dy = line(below) - line(above);
  }
}

// Calls store(x, y, dx, dy) for every interior pixel; nothing for images
// narrower or lower than 3.
template <Operator Op, class Pixel, class Sum, class Store>
void forEachInteriorGradient(const void* src, uint32_t width, uint32_t height, uint32_t srcStride, Store store) {
  if (width < 3 || height < 3) return;
  const auto* bytes = static_cast<const uint8_t*>(src);
  for (uint32_t y = 1; y + 1 < height; ++y) {
    const uint8_t* row = bytes + size_t(y) * srcStride;
    for (uint32_t x = 1; x + 1 < width; ++x) {
      Sum dx, dy;
      gradientAt<Op, Pixel, Sum>(row - srcStride, row, row + srcStride, x, dx, dy);
      store(x, y, dx, dy);
    }
  }
}

// Pairs (dx, dy) of source row y at row y - 1 of the output, pair x - 1.
template <Operator Op, class Out, class Convert>
void interleaved(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, Out* gradients,
                 uint32_t gradStride, Convert convert) {
  auto* out = reinterpret_cast<uint8_t*>(gradients);
  forEachInteriorGradient<Op, uint8_t, int32_t>(src, width, height, srcStride,
                                                [&](uint32_t x, uint32_t y, int32_t dx, int32_t dy) {
                                                  uint8_t* row = out + size_t(y - 1) * gradStride;
                                                  ovkStoreElement<Out>(row, 2 * (x - 1), convert(dx));
                                                  ovkStoreElement<Out>(row, 2 * (x - 1) + 1, convert(dy));
                                                });
}

template <Operator Op, class Pixel, class Sum, class Out, class Convert>
void planar(const Pixel* src, uint32_t width, uint32_t height, uint32_t srcStride, Out* dx, Out* dy, uint32_t dxyStride,
            Convert convert) {
  auto* dxBytes = reinterpret_cast<uint8_t*>(dx);
  auto* dyBytes = reinterpret_cast<uint8_t*>(dy);
  forEachInteriorGradient<Op, Pixel, Sum>(src, width, height, srcStride, [&](uint32_t x, uint32_t y, Sum gx, Sum gy) {
    ovkStoreElement<Out>(dxBytes + size_t(y) * dxyStride, x, convert(gx));
    ovkStoreElement<Out>(dyBytes + size_t(y) * dxyStride, x, convert(gy));
  });
}

// The Sobel scaling: an arithmetic shift floors negative values.
template <class Out>
Out eighth(int32_t value) {
  return Out(value >> 3);
}

template <class Out>
Out unscaled(int32_t value) {
  return Out(value);
}

float eighthf(float value) { return value * 0.125f; }

}  // namespace

void ovkImageGradientInterleaveds16C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                     int16_t* gradients, uint32_t gradStride) {
  interleaved<Operator::kCentral>(src, srcWidth, srcHeight, srcStride, gradients, gradStride, unscaled<int16_t>);
}

void ovkImageGradientInterleavedf32C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                     float* gradients, uint32_t gradStride) {
  interleaved<Operator::kCentral>(src, srcWidth, srcHeight, srcStride, gradients, gradStride, unscaled<float>);
}

void ovkImageGradientPlanars16C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                int16_t* dx, int16_t* dy, uint32_t dxyStride) {
  planar<Operator::kCentral, uint8_t, int32_t>(src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride,
                                               unscaled<int16_t>);
}

void ovkImageGradientPlanarf32C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                float* dx, float* dy, uint32_t dxyStride) {
  planar<Operator::kCentral, uint8_t, int32_t>(src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride, unscaled<float>);
}

void ovkImageGradientSobelInterleaveds16C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                          int16_t* gradients, uint32_t gradStride) {
  interleaved<Operator::kSobel>(src, srcWidth, srcHeight, srcStride, gradients, gradStride, eighth<int16_t>);
}

void ovkImageGradientSobelInterleaveds16_v3C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                             uint32_t srcStride, int16_t* gradients, uint32_t gradStride) {
  interleaved<Operator::kSobel>(src, srcWidth, srcHeight, srcStride, gradients, gradStride, unscaled<int16_t>);
}

void ovkImageGradientSobelInterleavedf32C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                          float* gradients, uint32_t gradStride) {
  interleaved<Operator::kSobel>(src, srcWidth, srcHeight, srcStride, gradients, gradStride,
                                [](int32_t value) { return eighthf(float(value)); });
}

void ovkImageGradientSobelPlanars16C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                     int16_t* dx, int16_t* dy, uint32_t dxyStride) {
  planar<Operator::kSobel, uint8_t, int32_t>(src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride, eighth<int16_t>);
}

void ovkImageGradientSobelPlanars8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                    int8_t* dx, int8_t* dy, uint32_t dxyStride) {
  planar<Operator::kSobel, uint8_t, int32_t>(src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride, eighth<int8_t>);
}

void ovkImageGradientSobelPlanarf32C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                     float* dx, float* dy, uint32_t dxyStride) {
  planar<Operator::kSobel, uint8_t, int32_t>(src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride,
                                             [](int32_t value) { return eighthf(float(value)); });
}

void ovkImageGradientSobelPlanarf32f32C(const float* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                        float* dx, float* dy, uint32_t dxyStride) {
  planar<Operator::kSobel, float, float>(src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride, eighthf);
}

void ovkImageGradientScharrInterleaveds16C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                           uint32_t srcStride, int16_t* gradients, uint32_t gradStride) {
  interleaved<Operator::kScharr>(src, srcWidth, srcHeight, srcStride, gradients, gradStride, unscaled<int16_t>);
}

void ovkFilterSobel3x3u8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                          uint32_t dstStride) {
  forEachInteriorGradient<Operator::kSobel, uint8_t, int32_t>(
      src, srcWidth, srcHeight, srcStride, [&](uint32_t x, uint32_t y, int32_t dx, int32_t dy) {
        dst[size_t(y) * dstStride + x] = uint8_t(std::min(std::abs(dx) + std::abs(dy), 255));
      });
}
