// Exported entries of the 5x5 and 11x11 Gaussians.
#include "orvikConstraints.h"

extern "C" {

OVK_API void ovkFilterGaussian5x5u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst,
                                    int32_t blurBorder) {
  using E = ovkEntry::FilterGaussian5x5u8;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && width && height && height > 4 && width > 4);
  OVK_REQUIRE_SPANS(E, ovkInput(height, width, width), ovkOutput(height, width, width));
  ovkCallVoid<E>(impl, src, width, height, width, dst, width, blurBorder);
}

OVK_API void ovkFilterGaussian5x5u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                       uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                       int32_t blurBorder) {
  using E = ovkEntry::FilterGaussian5x5u8_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, srcWidth);
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && (srcStride >= srcWidth) && dstStride && srcHeight > 4 && srcWidth > 4);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(srcHeight, srcWidth, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride, blurBorder);
}

OVK_API void ovkFilterGaussian11x11u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst,
                                      int32_t blurBorder) {
  using E = ovkEntry::FilterGaussian11x11u8;
  const uint32_t impl = ovkSelectImpl<E>(ovkNoGpuForm, [&] { return ovkDspTakesPacked(src, width, height, dst); });
  OVK_REQUIRE(E, src && dst && width && height && height > 10 && width > 10);
  OVK_REQUIRE_SPANS(E, ovkInput(height, width, width), ovkOutput(height, width, width));
  ovkCallVoid<E>(impl, src, width, height, width, dst, width, blurBorder);
}

OVK_API void ovkFilterGaussian11x11u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                         uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                         int32_t blurBorder) {
  using E = ovkEntry::FilterGaussian11x11u8_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, srcWidth);
  const uint32_t impl = ovkSelectImpl<E>(
      ovkNoGpuForm, [&] { return ovkDspTakesStrided(src, srcWidth, srcHeight, srcStride, dst, dstStride); });
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && (srcStride >= srcWidth) && dstStride && srcHeight > 10 && srcWidth > 10);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(srcHeight, srcWidth, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride, blurBorder);
}

OVK_API void ovkFilterGaussian5x5s16(const int16_t* src, uint32_t width, uint32_t height, int16_t* dst,
                                     int32_t blurBorder) {
  using E = ovkEntry::FilterGaussian5x5s16;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && width && height && height > 1);
  const uint32_t stride = width * uint32_t(sizeof(int16_t));
  OVK_REQUIRE_SPANS(E, ovkInput(height, uint64_t(width) * 2, stride), ovkOutput(height, uint64_t(width) * 2, stride));
  ovkCallVoid<E>(impl, src, width, height, stride, dst, stride, blurBorder);
}

OVK_API void ovkFilterGaussian5x5s16_v2(const int16_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                        uint32_t srcStride, int16_t* dst, uint32_t dstStride,
                                        int32_t blurBorder) {
  using E = ovkEntry::FilterGaussian5x5s16_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth * uint32_t(sizeof(int16_t)));
  dstStride = ovkPackedStride(dstStride, srcWidth * uint32_t(sizeof(int16_t)));
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && (srcStride >= srcWidth*sizeof(int16_t)) && (dstStride >= srcWidth*sizeof(int16_t)) && srcHeight > 1);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, uint64_t(srcWidth) * 2, srcStride),
                    ovkOutput(srcHeight, uint64_t(srcWidth) * 2, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride, blurBorder);
}

OVK_API void ovkFilterGaussian5x5s32(const int32_t* src, uint32_t width, uint32_t height, int32_t* dst,
                                     int32_t blurBorder) {
  using E = ovkEntry::FilterGaussian5x5s32;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && width && height && width > 4 && height > 4);
  const uint32_t stride = width * uint32_t(sizeof(int32_t));
  OVK_REQUIRE_SPANS(E, ovkInput(height, uint64_t(width) * 4, stride), ovkOutput(height, uint64_t(width) * 4, stride));
  ovkCallVoid<E>(impl, src, width, height, stride, dst, stride, blurBorder);
}

OVK_API void ovkFilterGaussian5x5s32_v2(const int32_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                        uint32_t srcStride, int32_t* dst, uint32_t dstStride,
                                        int32_t blurBorder) {
  using E = ovkEntry::FilterGaussian5x5s32_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth * uint32_t(sizeof(int32_t)));
  dstStride = ovkPackedStride(dstStride, srcWidth * uint32_t(sizeof(int32_t)));
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && (srcStride >= srcWidth*sizeof(int32_t)) && (dstStride >= srcWidth*sizeof(int32_t)) && srcWidth > 4 && srcHeight > 4);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, uint64_t(srcWidth) * 4, srcStride),
                    ovkOutput(srcHeight, uint64_t(srcWidth) * 4, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride, blurBorder);
}

}  // extern "C"
