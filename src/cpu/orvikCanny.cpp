// Exported entries of the Canny edge detector.
#include "orvikInternal.h"

extern "C" {

// clang-format off
// The condition texts are logged as written, spacing included.

OVK_API void ovkFilterCanny3x3u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, int32_t low,
                                 int32_t high) {
  using E = ovkEntry::FilterCanny3x3u8;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && width && height && dst && (low <= high) && width > 2 && height > 2);
  OVK_REQUIRE_SPANS(E, ovkInput(height, width, width), ovkOutput(height, width, width));
  ovkCallVoid<E>(impl, src, width, height, width, dst, width, low, high);
}

OVK_API void ovkFilterCanny3x3u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                    uint8_t* dst, uint32_t dstStride, int32_t low, int32_t high) {
  using E = ovkEntry::FilterCanny3x3u8_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, srcWidth);
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && dst && (dstStride >= srcWidth) && (low <= high) && srcWidth > 2 && srcHeight > 2);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(srcHeight, srcWidth, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride, low, high);
}

OVK_API void ovkFilterCanny3x3u8_v3(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                    uint8_t* dst, uint32_t dstStride, int16_t* gx, int16_t* gy, uint32_t gradStride,
                                    int32_t low, int32_t high) {
  using E = ovkEntry::FilterCanny3x3u8_v3;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, srcWidth);
  gradStride = ovkPackedStride(gradStride, 2 * srcWidth);
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && dst && (dstStride >= srcWidth) && (gradStride >= 2*srcWidth) && low <= high && srcWidth > 2 && srcHeight > 2);
  // Gradient planes are written only when both are given.
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(srcHeight, srcWidth, dstStride),
                    ovkOutput(gx && gy ? srcHeight : 0, uint64_t(srcWidth) * 2, gradStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride, gx, gy, gradStride, low, high);
}

OVK_API void ovkFilterCannyu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                              uint8_t* dst, uint32_t dstStride, int32_t low, int32_t high) {
  using E = ovkEntry::FilterCannyu8;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, srcWidth);
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && dst && (dstStride >= srcWidth) && (low <= high) && srcWidth > 2 && srcHeight > 2);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(srcHeight, srcWidth, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride, low, high);
}

// clang-format on

}  // extern "C"
