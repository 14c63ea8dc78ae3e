// Exported entries of the YCbCr to RGB conversions.  The family's entries
// differ only in names, factors and chroma row sizes, so one macro writes
// each kind; a zero stride becomes the minimal one before validation.
#include "orvikConstraints.h"

// clang-format off
#define OVK_PLANAR_ENTRY(Sampling, Output, Factor, ChromaWidth)                                                    \
  OVK_API void ovkColorYCbCr##Sampling##PlanarToRGB##Output##u8(                                                    \
      const uint8_t* srcY, const uint8_t* srcCb, const uint8_t* srcCr, uint32_t srcWidth, uint32_t srcHeight,      \
      uint32_t srcYStride, uint32_t srcCbStride, uint32_t srcCrStride, uint8_t* dst, uint32_t dstStride) {         \
    using E = ovkEntry::ColorYCbCr##Sampling##PlanarToRGB##Output##u8;                                              \
    srcYStride = ovkPackedStride(srcYStride, srcWidth);                                                             \
    srcCbStride = ovkPackedStride(srcCbStride, ChromaWidth);                                                        \
    srcCrStride = ovkPackedStride(srcCrStride, ChromaWidth);                                                        \
    dstStride = ovkPackedStride(dstStride, srcWidth*Factor);                                                        \
    const uint32_t impl = ovkSelectImpl<E>();                                                                       \
    OVK_REQUIRE(E, srcY && srcCb && srcCr && dst && srcWidth && srcHeight && ( srcYStride == 0 || srcYStride >= (srcWidth*sizeof(uint8_t)) ) && ( srcCbStride == 0 || srcCbStride >= (ChromaWidth*sizeof(uint8_t)) ) && ( srcCrStride == 0 || srcCrStride >= (ChromaWidth*sizeof(uint8_t)) ) && ( dstStride == 0 || dstStride >= (srcWidth*Factor*sizeof(uint8_t)))); \
    ovkCallVoid<E>(impl, srcY, srcCb, srcCr, srcWidth, srcHeight, srcYStride, srcCbStride, srcCrStride, dst,       \
                   dstStride);                                                                                      \
  }

// `Extra` is an additional clause of the condition, or nothing.
#define OVK_PSEUDO_PLANAR_ENTRY(Sampling, Output, Factor, ChromaRowBytes, Extra)                                    \
  OVK_API void ovkColorYCbCr##Sampling##PseudoPlanarToRGB##Output##u8(                                              \
      const uint8_t* srcY, const uint8_t* srcC, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcYStride,        \
      uint32_t srcCStride, uint8_t* dst, uint32_t dstStride) {                                                      \
    using E = ovkEntry::ColorYCbCr##Sampling##PseudoPlanarToRGB##Output##u8;                                        \
    srcYStride = ovkPackedStride(srcYStride, srcWidth);                                                             \
    srcCStride = ovkPackedStride(srcCStride, ChromaRowBytes);                                                       \
    dstStride = ovkPackedStride(dstStride, srcWidth*Factor);                                                        \
    const uint32_t impl = ovkSelectImpl<E>();                                                                       \
    OVK_REQUIRE(E, srcY && srcC && dst && srcWidth && srcHeight && ( srcYStride == 0 || srcYStride >= (srcWidth*sizeof(uint8_t)) ) && ( srcCStride == 0 || srcCStride >= (ChromaRowBytes*sizeof(uint8_t)) ) && ( dstStride == 0 || dstStride >= (srcWidth*Factor*sizeof(uint8_t))) Extra); \
    ovkCallVoid<E>(impl, srcY, srcC, srcWidth, srcHeight, srcYStride, srcCStride, dst, dstStride);                 \
  }

// Entries without strides; the source parameter keeps the name its condition
// text uses.
#define OVK_PACKED_ENTRY(Name, Source)                                                                             \
  OVK_API void ovk##Name(const uint8_t* Source, uint32_t width, uint32_t height, uint8_t* dst) {                   \
    using E = ovkEntry::Name;                                                                                       \
    const uint32_t impl = ovkSelectImpl<E>();                                                                       \
    OVK_REQUIRE(E, Source && dst && width && height);                                                               \
    ovkCallVoid<E>(impl, Source, width, height, dst);                                                               \
  }

extern "C" {

OVK_PLANAR_ENTRY(444, 565, 2, srcWidth)
OVK_PLANAR_ENTRY(444, 888, 3, srcWidth)
OVK_PLANAR_ENTRY(444, A8888, 4, srcWidth)
OVK_PLANAR_ENTRY(422, 565, 2, (srcWidth+1)/2)
OVK_PLANAR_ENTRY(422, 888, 3, (srcWidth+1)/2)
OVK_PLANAR_ENTRY(422, A8888, 4, (srcWidth+1)/2)
OVK_PLANAR_ENTRY(420, 565, 2, (srcWidth+1)/2)
OVK_PLANAR_ENTRY(420, 888, 3, (srcWidth+1)/2)
OVK_PLANAR_ENTRY(420, A8888, 4, (srcWidth+1)/2)

OVK_PSEUDO_PLANAR_ENTRY(444, 565, 2, srcWidth*2, )
OVK_PSEUDO_PLANAR_ENTRY(444, 888, 3, srcWidth*2, )
OVK_PSEUDO_PLANAR_ENTRY(444, A8888, 4, srcWidth*2, )
OVK_PSEUDO_PLANAR_ENTRY(422, 565, 2, srcWidth, )
// Only this member refuses a single column at the entry.
OVK_PSEUDO_PLANAR_ENTRY(422, 888, 3, srcWidth, && srcWidth > 1)
OVK_PSEUDO_PLANAR_ENTRY(422, A8888, 4, srcWidth, )
OVK_PSEUDO_PLANAR_ENTRY(420, 565, 2, srcWidth, )
OVK_PSEUDO_PLANAR_ENTRY(420, 888, 3, srcWidth, )
OVK_PSEUDO_PLANAR_ENTRY(420, A8888, 4, srcWidth, )

OVK_API void ovkColorYCrCb420PseudoPlanarToRGB8888u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                     uint32_t srcYStride, uint32_t srcCStride, uint8_t* dst,
                                                     uint32_t dstStride) {
  using E = ovkEntry::ColorYCrCb420PseudoPlanarToRGB8888u8;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && srcYStride && srcCStride && dstStride);
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcYStride, srcCStride, dst, dstStride);
}
// clang-format on

OVK_API void ovkColorYUV420toRGB8888u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst) {
  using E = ovkEntry::ColorYUV420toRGB8888u8;
  const uint32_t impl = ovkSelectImpl<E>(ovkNoGpuForm, [&] { return ovkDspTakesPacked(src, width, height, dst); });
  OVK_REQUIRE(E, src && dst && width && height);
  ovkCallVoid<E>(impl, src, width, height, width, width, dst, width * 4);
}

OVK_PACKED_ENTRY(ColorYUV420toRGB565u8, src)
OVK_PACKED_ENTRY(ColorYUV420toRGB565u8Rotate180, src)
OVK_PACKED_ENTRY(ColorYCrCbH1V1toRGB888u8, src)
OVK_PACKED_ENTRY(ColorYCrCbH2V1toRGB888u8, src)
OVK_PACKED_ENTRY(ColorYCrCbH1V2toRGB888u8, ysrc)
OVK_PACKED_ENTRY(ColorYCrCbH2V2toRGB888u8, y_src)

}  // extern "C"
