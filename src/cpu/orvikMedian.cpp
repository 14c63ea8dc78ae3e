// Exported entries of the 3x3 median.
#include "orvikInternal.h"

namespace {

// GPU and DSP constraints of the strided revisions.
bool gpuTakesStrided(const void* src, uint32_t width, uint32_t srcStride, const void* dst, uint32_t dstStride) {
  return ovkAligned(src, 16) && ovkAligned(dst, 16) && srcStride >= width && dstStride >= width &&
         srcStride % 8 == 0 && dstStride % 8 == 0;
}

// The size floor counts stride bytes, not pixels.
bool dspTakesStrided(const void* src, uint32_t width, uint32_t height, uint32_t srcStride, const void* dst,
                     uint32_t dstStride) {
  return height >= 4 && uint64_t(srcStride) * height > 25344 && srcStride % 8 == 0 && width % 8 == 0 &&
         dstStride % 8 == 0 && ovkAligned(src, 8) && ovkAligned(dst, 8);
}

}  // namespace

extern "C" {

OVK_API void ovkFilterMedian3x3u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst) {
  using E = ovkEntry::FilterMedian3x3u8;
  const uint32_t impl = ovkSelectImpl<E>(
      [&] { return ovkAligned(src, 16) && ovkAligned(dst, 16) && width % 8 == 0; },
      [&] {
        return width % 8 == 0 && height >= 4 && uint64_t(width) * height > 25344 && ovkAligned(src, 8) &&
               ovkAligned(dst, 8);
      });
  OVK_REQUIRE(E, src && dst && width && height);
  ovkCallVoid<E>(impl, src, width, height, width, dst, width);
}

OVK_API void ovkFilterMedian3x3u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                     uint32_t srcStride, uint8_t* dst, uint32_t dstStride) {
  using E = ovkEntry::FilterMedian3x3u8_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, srcWidth);
  const uint32_t impl = ovkSelectImpl<E>(
      [&] { return gpuTakesStrided(src, srcWidth, srcStride, dst, dstStride); },
      [&] { return dspTakesStrided(src, srcWidth, srcHeight, srcStride, dst, dstStride); });
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && (srcStride >= srcWidth) && dstStride);
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

OVK_API ovkStatusCode ovkFilterMedian3x3u8_v3(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                              uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                              ovkBorderType borderType, uint8_t borderValue) {
  using E = ovkEntry::FilterMedian3x3u8_v3;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, srcWidth);
  const uint32_t impl = ovkSelectImpl<E>(
      [&] { return gpuTakesStrided(src, srcWidth, srcStride, dst, dstStride); },
      [&] { return dspTakesStrided(src, srcWidth, srcHeight, srcStride, dst, dstStride); });
  OVK_REQUIRE_STATUS(src && dst && srcWidth && srcHeight && borderType <= ORVIK_BORDER_REPLICATE &&
                     srcStride >= srcWidth && dstStride >= srcWidth);
  return ovkCallStatus<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride, borderType, borderValue);
}

}  // extern "C"
