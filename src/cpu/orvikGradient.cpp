// Exported entries of the gradients and the Sobel magnitude.
#include "orvikConstraints.h"

namespace {

// Packed output strides: srcWidth - 2 pairs per interleaved row, srcWidth
// elements per planar row.  Images narrower than 3 produce no output.
template <class T>
uint32_t interleavedRowBytes(uint32_t srcWidth) {
  return srcWidth > 2 ? (srcWidth - 2) * 2 * uint32_t(sizeof(T)) : 0;
}

template <class T>
uint32_t planarRowBytes(uint32_t srcWidth) {
  return srcWidth * uint32_t(sizeof(T));
}

// What the kernels write, in 64-bit sizes: interleaved outputs have a row of
// srcWidth - 2 pairs for each interior source row; planar ones the source's
// size.
template <class T>
ovkSpan interleavedOutput(uint32_t srcWidth, uint32_t srcHeight, uint32_t gradStride) {
  const bool interior = srcWidth > 2 && srcHeight > 2;
  return ovkOutput(interior ? srcHeight - 2 : 0, interior ? uint64_t(srcWidth - 2) * 2 * sizeof(T) : 0, gradStride);
}

template <class T>
ovkSpan planarOutput(uint32_t srcWidth, uint32_t srcHeight, uint32_t dxyStride) {
  return ovkOutput(srcHeight, uint64_t(srcWidth) * sizeof(T), dxyStride);
}

}  // namespace

extern "C" {

// clang-format off
// The condition texts are logged as written, spacing included.

OVK_API void ovkFilterSobel3x3u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst) {
  using E = ovkEntry::FilterSobel3x3u8;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && width && height && dst);
  OVK_REQUIRE_SPANS(E, ovkInput(height, width, width), ovkOutput(height, width, width));
  ovkCallVoid<E>(impl, src, width, height, width, dst, width);
}

OVK_API void ovkFilterSobel3x3u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                    uint8_t* dst, uint32_t dstStride) {
  using E = ovkEntry::FilterSobel3x3u8_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, srcWidth);
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && dst && (dstStride >= srcWidth));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(srcHeight, srcWidth, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

OVK_API void ovkImageGradientInterleaveds16(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                            uint32_t srcStride, int16_t* gradients) {
  using E = ovkEntry::ImageGradientInterleaveds16;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && gradients);
  const uint32_t gradStride = interleavedRowBytes<int16_t>(srcWidth);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride),
                    interleavedOutput<int16_t>(srcWidth, srcHeight, gradStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, gradients, gradStride);
}

OVK_API void ovkImageGradientInterleaveds16_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                               uint32_t srcStride, int16_t* gradients, uint32_t gradStride) {
  using E = ovkEntry::ImageGradientInterleaveds16_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  gradStride = ovkPackedStride(gradStride, interleavedRowBytes<int16_t>(srcWidth));
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && gradients && (gradStride >= ((srcWidth-2)*2*sizeof(int16_t))));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride),
                    interleavedOutput<int16_t>(srcWidth, srcHeight, gradStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, gradients, gradStride);
}

OVK_API void ovkImageGradientInterleavedf32(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                            uint32_t srcStride, float* gradients) {
  using E = ovkEntry::ImageGradientInterleavedf32;
  const uint32_t gradStride = interleavedRowBytes<float>(srcWidth);
  const uint32_t impl = ovkSelectImpl<E>(
      ovkNoGpuForm, [&] { return ovkDspTakesStrided(src, srcWidth, srcHeight, srcStride, gradients, gradStride); });
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && gradients);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride),
                    interleavedOutput<float>(srcWidth, srcHeight, gradStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, gradients, gradStride);
}

OVK_API void ovkImageGradientInterleavedf32_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                               uint32_t srcStride, float* gradients, uint32_t gradStride) {
  using E = ovkEntry::ImageGradientInterleavedf32_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  gradStride = ovkPackedStride(gradStride, interleavedRowBytes<float>(srcWidth));
  const uint32_t impl = ovkSelectImpl<E>(
      ovkNoGpuForm, [&] { return ovkDspTakesStrided(src, srcWidth, srcHeight, srcStride, gradients, gradStride); });
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && gradients && (gradStride >= ((srcWidth-2)*2*sizeof(float))));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride),
                    interleavedOutput<float>(srcWidth, srcHeight, gradStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, gradients, gradStride);
}

OVK_API void ovkImageGradientPlanars16(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                       int16_t* dx, int16_t* dy) {
  using E = ovkEntry::ImageGradientPlanars16;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && dx && dy);
  const uint32_t dxyStride = planarRowBytes<int16_t>(srcWidth);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), planarOutput<int16_t>(srcWidth, srcHeight, dxyStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride);
}

OVK_API void ovkImageGradientPlanars16_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                          uint32_t srcStride, int16_t* dx, int16_t* dy, uint32_t dxyStride) {
  using E = ovkEntry::ImageGradientPlanars16_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dxyStride = ovkPackedStride(dxyStride, planarRowBytes<int16_t>(srcWidth));
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && dx && dy && (dxyStride >= (srcWidth*sizeof(int16_t))));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), planarOutput<int16_t>(srcWidth, srcHeight, dxyStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride);
}

OVK_API void ovkImageGradientPlanarf32(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                       float* dx, float* dy) {
  using E = ovkEntry::ImageGradientPlanarf32;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && dx && dy);
  const uint32_t dxyStride = planarRowBytes<float>(srcWidth);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), planarOutput<float>(srcWidth, srcHeight, dxyStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride);
}

OVK_API void ovkImageGradientPlanarf32_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                          uint32_t srcStride, float* dx, float* dy, uint32_t dxyStride) {
  using E = ovkEntry::ImageGradientPlanarf32_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dxyStride = ovkPackedStride(dxyStride, planarRowBytes<float>(srcWidth));
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && dx && dy && (dxyStride >= (srcWidth*sizeof(float))));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), planarOutput<float>(srcWidth, srcHeight, dxyStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride);
}

OVK_API void ovkImageGradientSobelInterleaveds16(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                 uint32_t srcStride, int16_t* gradients) {
  using E = ovkEntry::ImageGradientSobelInterleaveds16;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && gradients);
  const uint32_t gradStride = interleavedRowBytes<int16_t>(srcWidth);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride),
                    interleavedOutput<int16_t>(srcWidth, srcHeight, gradStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, gradients, gradStride);
}

OVK_API void ovkImageGradientSobelInterleaveds16_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                    uint32_t srcStride, int16_t* gradients, uint32_t gradStride) {
  using E = ovkEntry::ImageGradientSobelInterleaveds16_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  gradStride = ovkPackedStride(gradStride, interleavedRowBytes<int16_t>(srcWidth));
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && gradients && (gradStride >= ((srcWidth-2)*2*sizeof(int16_t))));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride),
                    interleavedOutput<int16_t>(srcWidth, srcHeight, gradStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, gradients, gradStride);
}

OVK_API void ovkImageGradientSobelInterleaveds16_v3(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                    uint32_t srcStride, int16_t* gradients, uint32_t gradStride) {
  using E = ovkEntry::ImageGradientSobelInterleaveds16_v3;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  gradStride = ovkPackedStride(gradStride, interleavedRowBytes<int16_t>(srcWidth));
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && gradients && (gradStride >= ((srcWidth-2)*2*sizeof(int16_t))));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride),
                    interleavedOutput<int16_t>(srcWidth, srcHeight, gradStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, gradients, gradStride);
}

OVK_API void ovkImageGradientSobelInterleavedf32(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                 uint32_t srcStride, float* gradients) {
  using E = ovkEntry::ImageGradientSobelInterleavedf32;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && gradients);
  const uint32_t gradStride = interleavedRowBytes<float>(srcWidth);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride),
                    interleavedOutput<float>(srcWidth, srcHeight, gradStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, gradients, gradStride);
}

OVK_API void ovkImageGradientSobelInterleavedf32_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                    uint32_t srcStride, float* gradients, uint32_t gradStride) {
  using E = ovkEntry::ImageGradientSobelInterleavedf32_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  gradStride = ovkPackedStride(gradStride, interleavedRowBytes<float>(srcWidth));
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && gradients && (gradStride >= ((srcWidth-2)*2*sizeof(float))));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride),
                    interleavedOutput<float>(srcWidth, srcHeight, gradStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, gradients, gradStride);
}

OVK_API void ovkImageGradientSobelPlanars16(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                            uint32_t srcStride, int16_t* dx, int16_t* dy) {
  using E = ovkEntry::ImageGradientSobelPlanars16;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && dx && dy);
  const uint32_t dxyStride = planarRowBytes<int16_t>(srcWidth);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), planarOutput<int16_t>(srcWidth, srcHeight, dxyStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride);
}

OVK_API void ovkImageGradientSobelPlanars16_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                               uint32_t srcStride, int16_t* dx, int16_t* dy, uint32_t dxyStride) {
  using E = ovkEntry::ImageGradientSobelPlanars16_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dxyStride = ovkPackedStride(dxyStride, planarRowBytes<int16_t>(srcWidth));
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && dx && dy && (dxyStride >= (srcWidth*sizeof(int16_t))));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), planarOutput<int16_t>(srcWidth, srcHeight, dxyStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride);
}

OVK_API void ovkImageGradientSobelPlanars8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                           uint32_t srcStride, int8_t* dx, int8_t* dy) {
  using E = ovkEntry::ImageGradientSobelPlanars8;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && dx && dy);
  const uint32_t dxyStride = planarRowBytes<int8_t>(srcWidth);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), planarOutput<int8_t>(srcWidth, srcHeight, dxyStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride);
}

OVK_API void ovkImageGradientSobelPlanars8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                              uint32_t srcStride, int8_t* dx, int8_t* dy, uint32_t dxyStride) {
  using E = ovkEntry::ImageGradientSobelPlanars8_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dxyStride = ovkPackedStride(dxyStride, planarRowBytes<int8_t>(srcWidth));
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && dx && dy && (dxyStride >= srcWidth));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), planarOutput<int8_t>(srcWidth, srcHeight, dxyStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride);
}

OVK_API void ovkImageGradientSobelPlanarf32(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                            uint32_t srcStride, float* dx, float* dy) {
  using E = ovkEntry::ImageGradientSobelPlanarf32;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && dx && dy);
  const uint32_t dxyStride = planarRowBytes<float>(srcWidth);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), planarOutput<float>(srcWidth, srcHeight, dxyStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride);
}

OVK_API void ovkImageGradientSobelPlanarf32_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                               uint32_t srcStride, float* dx, float* dy, uint32_t dxyStride) {
  using E = ovkEntry::ImageGradientSobelPlanarf32_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dxyStride = ovkPackedStride(dxyStride, planarRowBytes<float>(srcWidth));
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && dx && dy && (dxyStride >= (srcWidth*sizeof(float))));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), planarOutput<float>(srcWidth, srcHeight, dxyStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride);
}

// The first generation compares the byte stride with the width in pixels.
OVK_API void ovkImageGradientSobelPlanarf32f32(const float* src, uint32_t srcWidth, uint32_t srcHeight,
                                               uint32_t srcStride, float* dx, float* dy) {
  using E = ovkEntry::ImageGradientSobelPlanarf32f32;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && srcStride >= srcWidth && dx && dy);
  const uint32_t dxyStride = planarRowBytes<float>(srcWidth);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, uint64_t(srcWidth) * 4, srcStride), planarOutput<float>(srcWidth, srcHeight, dxyStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride);
}

OVK_API void ovkImageGradientSobelPlanarf32f32_v2(const float* src, uint32_t srcWidth, uint32_t srcHeight,
                                                  uint32_t srcStride, float* dx, float* dy, uint32_t dxyStride) {
  using E = ovkEntry::ImageGradientSobelPlanarf32f32_v2;
  srcStride = ovkPackedStride(srcStride, planarRowBytes<float>(srcWidth));
  dxyStride = ovkPackedStride(dxyStride, planarRowBytes<float>(srcWidth));
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= (srcWidth*sizeof(float))) && dx && dy && (dxyStride >= (srcWidth*sizeof(float))));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, uint64_t(srcWidth) * 4, srcStride), planarOutput<float>(srcWidth, srcHeight, dxyStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride);
}

OVK_API void ovkImageGradientScharrInterleaveds16(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                  uint32_t srcStride, int16_t* gradients, uint32_t gradStride) {
  using E = ovkEntry::ImageGradientScharrInterleaveds16;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  gradStride = ovkPackedStride(gradStride, interleavedRowBytes<int16_t>(srcWidth));
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth)&& gradients && (gradStride >= ((srcWidth-2)*2*sizeof(int16_t))));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride),
                    interleavedOutput<int16_t>(srcWidth, srcHeight, gradStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, gradients, gradStride);
}

// clang-format on

}  // extern "C"
