// Exported entries of the box filters.  No back-end forms: no constraint code.
#include "orvikInternal.h"

extern "C" {

OVK_API void ovkBoxFilter3x3u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                               uint8_t* dst, uint32_t dstStride) {
  using E = ovkEntry::BoxFilter3x3u8;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && srcStride && dstStride && ( srcStride >=srcWidth ) && srcWidth > 2 && srcHeight > 2);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(srcHeight, srcWidth, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

OVK_API ovkStatusCode ovkBoxFilter3x3u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                           uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                           ovkBorderType borderType, uint8_t borderValue) {
  using E = ovkEntry::BoxFilter3x3u8_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, srcWidth);
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE_STATUS(src && dst && srcWidth && srcHeight && borderType <= ORVIK_BORDER_REPLICATE &&
                     srcStride >= srcWidth && dstStride >= srcWidth);
  OVK_REQUIRE_SPANS_STATUS(ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(srcHeight, srcWidth, dstStride));
  return ovkCallStatus<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride, borderType, borderValue);
}

OVK_API void ovkBoxFilter5x5u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                               uint8_t* dst, uint32_t dstStride) {
  using E = ovkEntry::BoxFilter5x5u8;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && srcStride && dstStride && (srcStride >=srcWidth) && srcWidth > 4 && srcHeight > 4);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(srcHeight, srcWidth, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

OVK_API void ovkBoxFilter11x11u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                 uint8_t* dst, uint32_t dstStride) {
  using E = ovkEntry::BoxFilter11x11u8;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && srcStride && dstStride && ( srcStride >=srcWidth) && srcWidth > 10 && srcHeight > 10);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(srcHeight, srcWidth, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

}  // extern "C"
