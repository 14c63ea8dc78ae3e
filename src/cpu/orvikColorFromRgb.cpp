// Exported entries of the RGB to YCbCr and gray conversions.
#include "orvikConstraints.h"

namespace {

// Zero strides become the defaults: packed source rows, Y rows of `width`,
// chroma rows of `chromaWidth` bytes.
template <class E>
void callPlanar(uint32_t impl, const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                uint32_t bytesPerPixel, uint32_t chromaWidth, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr,
                uint32_t dstYStride, uint32_t dstCbStride, uint32_t dstCrStride) {
  ovkCallVoid<E>(impl, src, width, height, ovkPackedStride(srcStride, width * bytesPerPixel), dstY, dstCb, dstCr,
                 ovkPackedStride(dstYStride, width), ovkPackedStride(dstCbStride, chromaWidth),
                 ovkPackedStride(dstCrStride, chromaWidth));
}

template <class E>
void callPseudoPlanar(uint32_t impl, const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                      uint32_t bytesPerPixel, uint32_t chromaRowBytes, uint8_t* dstY, uint8_t* dstC,
                      uint32_t dstYStride, uint32_t dstCStride) {
  ovkCallVoid<E>(impl, src, width, height, ovkPackedStride(srcStride, width * bytesPerPixel), dstY, dstC,
                 ovkPackedStride(dstYStride, width), ovkPackedStride(dstCStride, chromaRowBytes));
}

}  // namespace

// The six entries of one source format.  `bpp` is spliced into the condition
// texts, which therefore keep their exact spacing.
// clang-format off
#define OVK_PLANAR_PARAMS                                                                                   \
  const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dstY, uint8_t* dstCb, \
      uint8_t* dstCr, uint32_t dstYStride, uint32_t dstCbStride, uint32_t dstCrStride
#define OVK_PSEUDO_PLANAR_PARAMS                                                                              \
  const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dstY, uint8_t* dstC, \
      uint32_t dstYStride, uint32_t dstCStride

#define OVK_SUBSAMPLED_PLANAR_ENTRY(Upper, Layout, bpp)                                                            \
  OVK_API void ovkColor##Upper##ToYCbCr##Layout##Planaru8(OVK_PLANAR_PARAMS) {                                      \
    using E = ovkEntry::Color##Upper##ToYCbCr##Layout##Planaru8;                                                   \
    const uint32_t impl = ovkSelectImpl<E>();                                                                      \
    OVK_REQUIRE(E, src && dstY && dstCb && dstCr && srcWidth && srcHeight && ( srcStride == 0 || srcStride >= (srcWidth*bpp) ) && ( dstYStride == 0 || dstYStride >= srcWidth ) && ( dstCbStride == 0 || dstCbStride >= ((srcWidth+1)/2) ) && ( dstCrStride == 0 || dstCrStride >= ((srcWidth+1)/2) )); \
    callPlanar<E>(impl, src, srcWidth, srcHeight, srcStride, bpp, srcWidth >> 1, dstY, dstCb, dstCr, dstYStride,  \
                  dstCbStride, dstCrStride);                                                                       \
  }

#define OVK_SUBSAMPLED_PSEUDO_PLANAR_ENTRY(Upper, Layout, bpp)                                                     \
  OVK_API void ovkColor##Upper##ToYCbCr##Layout##PseudoPlanaru8(OVK_PSEUDO_PLANAR_PARAMS) {                         \
    using E = ovkEntry::Color##Upper##ToYCbCr##Layout##PseudoPlanaru8;                                             \
    const uint32_t impl = ovkSelectImpl<E>();                                                                      \
    OVK_REQUIRE(E, src && dstY && dstC && srcWidth && srcHeight && ( srcStride == 0 || srcStride >= (srcWidth*bpp)) && ( dstYStride == 0 || dstYStride >= srcWidth ) && ( dstCStride == 0 || dstCStride >= srcWidth )); \
    callPseudoPlanar<E>(impl, src, srcWidth, srcHeight, srcStride, bpp, srcWidth, dstY, dstC, dstYStride,         \
                        dstCStride);                                                                               \
  }

#define OVK_FROM_RGB_ENTRIES(Upper, bpp)                                                                           \
  OVK_API void ovkColor##Upper##ToYCbCr444Planaru8(OVK_PLANAR_PARAMS) {                                             \
    using E = ovkEntry::Color##Upper##ToYCbCr444Planaru8;                                                          \
    const uint32_t impl = ovkSelectImpl<E>();                                                                      \
    OVK_REQUIRE(E, src && dstY && dstCb && dstCr && srcWidth && srcHeight && ( srcStride == 0 || srcStride >= (srcWidth*bpp) ) && ( dstYStride == 0 || dstYStride >= srcWidth ) && ( dstCbStride == 0 || dstCbStride >= srcWidth ) && ( dstCrStride == 0 || dstCrStride >= srcWidth )); \
    callPlanar<E>(impl, src, srcWidth, srcHeight, srcStride, bpp, srcWidth, dstY, dstCb, dstCr, dstYStride,       \
                  dstCbStride, dstCrStride);                                                                       \
  }                                                                                                                \
  OVK_API void ovkColor##Upper##ToYCbCr444PseudoPlanaru8(OVK_PSEUDO_PLANAR_PARAMS) {                                \
    using E = ovkEntry::Color##Upper##ToYCbCr444PseudoPlanaru8;                                                    \
    const uint32_t impl = ovkSelectImpl<E>();                                                                      \
    OVK_REQUIRE(E, src && dstY && dstC && srcWidth && srcHeight && ( srcStride == 0 || srcStride >= (srcWidth*bpp) ) && ( dstYStride == 0 || dstYStride >= srcWidth ) && ( dstCStride == 0 || dstCStride >= (srcWidth*2) )); \
    callPseudoPlanar<E>(impl, src, srcWidth, srcHeight, srcStride, bpp, srcWidth * 2, dstY, dstC, dstYStride,     \
                        dstCStride);                                                                               \
  }                                                                                                                \
  OVK_SUBSAMPLED_PLANAR_ENTRY(Upper, 422, bpp)                                                                     \
  OVK_SUBSAMPLED_PLANAR_ENTRY(Upper, 420, bpp)                                                                     \
  OVK_SUBSAMPLED_PSEUDO_PLANAR_ENTRY(Upper, 422, bpp)                                                              \
  OVK_SUBSAMPLED_PSEUDO_PLANAR_ENTRY(Upper, 420, bpp)
// clang-format on

extern "C" {

OVK_FROM_RGB_ENTRIES(RGB565, 2)
OVK_FROM_RGB_ENTRIES(RGB888, 3)
OVK_FROM_RGB_ENTRIES(RGBA8888, 4)

OVK_API void ovkColorRGB888toYCrCbu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint8_t* dst) {
  using E = ovkEntry::ColorRGB888toYCrCbu8;
  const uint32_t impl =
      ovkSelectImpl<E>(ovkNoGpuForm, [&] { return ovkDspTakesPacked(src, srcWidth, srcHeight, dst); });
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight);
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcWidth * 3, dst, srcWidth * 3);
}

OVK_API void ovkColorRGB888toYCrCbu8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                        uint8_t* dst, uint32_t dstStride) {
  using E = ovkEntry::ColorRGB888toYCrCbu8_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth * 3);
  dstStride = ovkPackedStride(dstStride, srcWidth * 3);
  const uint32_t impl = ovkSelectImpl<E>(
      ovkNoGpuForm, [&] { return ovkDspTakesStrided(src, srcWidth, srcHeight, srcStride, dst, dstStride); });
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && (srcStride >= srcWidth * 3) && (dstStride >= srcWidth * 3));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

OVK_API void ovkColorRGB888ToGrayu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                    uint8_t* dst, uint32_t dstStride) {
  using E = ovkEntry::ColorRGB888ToGrayu8;
  const uint32_t impl = ovkSelectImpl<E>();
  // clang-format off
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride ==0 || srcStride >= srcWidth*3) && dst && (dstStride ==0 || dstStride >= srcWidth));
  // clang-format on
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, ovkPackedStride(srcStride, srcWidth * 3), dst,
                 ovkPackedStride(dstStride, srcWidth));
}

}  // extern "C"
