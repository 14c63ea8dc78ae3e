// Portable 3x3 gradients: central differences, Sobel, Scharr and the Sobel
// magnitude, over the interior of 8-bit (and, for one Sobel form, float)
// images.
#include <algorithm>
#include <cstdlib>

#include "orvikGradient.h"

namespace {

using Operator = ovkGradientOperator;

// Pairs (dx, dy) of source row y at row y - 1 of the output, pair x - 1.
template <Operator Op, class Out, class Convert>
void interleaved(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, Out* gradients,
                 uint32_t gradStride, Convert convert) {
  auto* out = reinterpret_cast<uint8_t*>(gradients);
  ovkForEachInteriorGradient<Op, uint8_t, int32_t>(src, width, height, srcStride,
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
  ovkForEachInteriorGradient<Op, Pixel, Sum>(src, width, height, srcStride,
                                             [&](uint32_t x, uint32_t y, Sum gx, Sum gy) {
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

// Processors disagree on which NaN an operation on NaNs returns (payload,
// sign, quieting), so every NaN result is stored as the one quiet NaN.
float eighthOfFloatSum(float value) {
  const float scaled = eighthf(value);
  return scaled != scaled ? ovkCanonicalNaN() : scaled;
}

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
  planar<Operator::kSobel, float, float>(src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride, eighthOfFloatSum);
}

void ovkImageGradientScharrInterleaveds16C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                           uint32_t srcStride, int16_t* gradients, uint32_t gradStride) {
  interleaved<Operator::kScharr>(src, srcWidth, srcHeight, srcStride, gradients, gradStride, unscaled<int16_t>);
}

void ovkFilterSobel3x3u8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                          uint32_t dstStride) {
  ovkForEachInteriorGradient<Operator::kSobel, uint8_t, int32_t>(
      src, srcWidth, srcHeight, srcStride, [&](uint32_t x, uint32_t y, int32_t dx, int32_t dy) {
        dst[size_t(y) * dstStride + x] = uint8_t(std::min(std::abs(dx) + std::abs(dy), 255));
      });
}
