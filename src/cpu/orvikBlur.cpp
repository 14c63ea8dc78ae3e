// Exported entries of the smoothing filters.
#include <limits.h>

#include "orvikConstraints.h"

namespace {

// The row kernels index with signed arithmetic; a width beyond it can only
// come from a negative value passed by mistake.
template <class E>
bool widthConsistent(uint32_t width) {
  if (width <= uint32_t(INT_MAX)) return true;
  ovkLog(OVK_LOG_ERROR, OVK_LOG_TAG, "Error at %s\n", E::name);
  return false;
}

}  // namespace

extern "C" {

OVK_API void ovkFilterGaussian3x3u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst,
                                    int32_t blurBorder) {
  using E = ovkEntry::FilterGaussian3x3u8;
  if (!widthConsistent<E>(width)) return;
  const uint32_t impl = ovkSelectImpl<E>([&] { return ovkGpuTakesPacked(src, width, dst); },
                                         [&] { return ovkDspTakesPacked(src, width, height, dst); });
  OVK_REQUIRE(E, src && dst && width && height);
  OVK_REQUIRE_SPANS(E, ovkInput(height, width, width), ovkOutput(height, width, width));
  ovkCallVoid<E>(impl, src, width, height, width, dst, width, blurBorder);
}

OVK_API void ovkFilterGaussian3x3u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                       uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                       int32_t blurBorder) {
  using E = ovkEntry::FilterGaussian3x3u8_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, srcWidth);
  if (!widthConsistent<E>(srcWidth)) return;
  const uint32_t impl = ovkSelectImpl<E>(
      [&] { return ovkGpuTakesStrided(src, srcWidth, srcStride, dst, dstStride); },
      [&] { return ovkDspTakesStrided(src, srcWidth, srcHeight, srcStride, dst, dstStride, ovkDspFloor::kFrom); });
  OVK_REQUIRE(E, src && dst && (srcWidth > 1) && (srcHeight > 1) && (srcStride >= srcWidth) && (dstStride >= srcWidth));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(srcHeight, srcWidth, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride, blurBorder);
}

OVK_API ovkStatusCode ovkFilterGaussian3x3u8_v3(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                                ovkBorderType borderType, uint8_t borderValue) {
  using E = ovkEntry::FilterGaussian3x3u8_v3;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, srcWidth);
  const uint32_t impl = ovkSelectImpl<E>(
      ovkNoGpuForm,
      [&] { return ovkDspTakesStrided(src, srcWidth, srcHeight, srcStride, dst, dstStride, ovkDspFloor::kFrom); });
  OVK_REQUIRE_STATUS(src && dst && srcWidth && srcHeight && borderType <= ORVIK_BORDER_REPLICATE &&
                     srcStride >= srcWidth && dstStride >= srcWidth);
  OVK_REQUIRE_SPANS_STATUS(ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(srcHeight, srcWidth, dstStride));
  return ovkCallStatus<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride, borderType, borderValue);
}

}  // extern "C"
