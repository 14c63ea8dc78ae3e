// Exported entries of the 3x3 median.
#include "orvikConstraints.h"

extern "C" {

OVK_API void ovkFilterMedian3x3u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst) {
  using E = ovkEntry::FilterMedian3x3u8;
  const uint32_t impl = ovkSelectImpl<E>(
      [&] { return ovkGpuTakesPacked(src, width, dst); }, [&] { return ovkDspTakesPacked(src, width, height, dst); });
  OVK_REQUIRE(E, src && dst && width && height);
  OVK_REQUIRE_SPANS(E, ovkInput(height, width, width), ovkOutput(height, width, width));
  ovkCallVoid<E>(impl, src, width, height, width, dst, width);
}

OVK_API void ovkFilterMedian3x3u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                     uint32_t srcStride, uint8_t* dst, uint32_t dstStride) {
  using E = ovkEntry::FilterMedian3x3u8_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, srcWidth);
  const uint32_t impl = ovkSelectImpl<E>(
      [&] { return ovkGpuTakesStrided(src, srcWidth, srcStride, dst, dstStride); },
      [&] { return ovkDspTakesStrided(src, srcWidth, srcHeight, srcStride, dst, dstStride); });
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && (srcStride >= srcWidth) && dstStride);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(srcHeight, srcWidth, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

OVK_API ovkStatusCode ovkFilterMedian3x3u8_v3(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                              uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                              ovkBorderType borderType, uint8_t borderValue) {
  using E = ovkEntry::FilterMedian3x3u8_v3;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, srcWidth);
  const uint32_t impl = ovkSelectImpl<E>(
      ovkNoGpuForm,
      [&] { return ovkDspTakesStrided(src, srcWidth, srcHeight, srcStride, dst, dstStride); });
  OVK_REQUIRE_STATUS(src && dst && srcWidth && srcHeight && borderType <= ORVIK_BORDER_REPLICATE &&
                     srcStride >= srcWidth && dstStride >= srcWidth);
  OVK_REQUIRE_SPANS_STATUS(ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(srcHeight, srcWidth, dstStride));
  return ovkCallStatus<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride, borderType, borderValue);
}

}  // extern "C"
