// Exported entries of the RGB to YCbCr and gray conversions.
#include "orvikConstraints.h"

namespace {

uint32_t halfUp(uint32_t n) { return n / 2 + n % 2; }

// Zero strides become the defaults: packed source rows, Y rows of `width`,
// chroma rows of `chromaWidth` (planar) or `chromaRowBytes` (pseudo-planar)
// bytes.  Then the spans are checked with those strides.
template <class E>
void callPlanar(uint32_t impl, const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                uint32_t bytesPerPixel, uint32_t chromaWidth, uint32_t chromaRows, uint8_t* dstY, uint8_t* dstCb,
                uint8_t* dstCr, uint32_t dstYStride, uint32_t dstCbStride, uint32_t dstCrStride) {
  srcStride = ovkPackedStride(srcStride, width * bytesPerPixel);
  dstYStride = ovkPackedStride(dstYStride, width);
  dstCbStride = ovkPackedStride(dstCbStride, chromaWidth);
  dstCrStride = ovkPackedStride(dstCrStride, chromaWidth);
  OVK_REQUIRE_SPANS(E, ovkInput(height, uint64_t(width) * bytesPerPixel, srcStride), ovkOutput(height, width, dstYStride),
                    ovkOutput(chromaRows, chromaWidth, dstCbStride), ovkOutput(chromaRows, chromaWidth, dstCrStride));
  ovkCallVoid<E>(impl, src, width, height, srcStride, dstY, dstCb, dstCr, dstYStride, dstCbStride, dstCrStride);
}

template <class E>
void callPseudoPlanar(uint32_t impl, const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                      uint32_t bytesPerPixel, uint64_t chromaRowBytes, uint32_t chromaRows, uint8_t* dstY,
                      uint8_t* dstC, uint32_t dstYStride, uint32_t dstCStride) {
  srcStride = ovkPackedStride(srcStride, width * bytesPerPixel);
  dstYStride = ovkPackedStride(dstYStride, width);
  dstCStride = ovkPackedStride(dstCStride, uint32_t(chromaRowBytes));
  OVK_REQUIRE_SPANS(E, ovkInput(height, uint64_t(width) * bytesPerPixel, srcStride), ovkOutput(height, width, dstYStride),
                    ovkOutput(chromaRows, chromaRowBytes, dstCStride));
  ovkCallVoid<E>(impl, src, width, height, srcStride, dstY, dstC, dstYStride, dstCStride);
}

}  // namespace

// Chroma rows: one per row, or one per two rows in 4:2:0.
#define OVK_CHROMA_ROWS_422 srcHeight
#define OVK_CHROMA_ROWS_420 halfUp(srcHeight)

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
    callPlanar<E>(impl, src, srcWidth, srcHeight, srcStride, bpp, srcWidth >> 1, OVK_CHROMA_ROWS_##Layout, dstY,   \
                  dstCb, dstCr, dstYStride, dstCbStride, dstCrStride);                                                                       \
  }

#define OVK_SUBSAMPLED_PSEUDO_PLANAR_ENTRY(Upper, Layout, bpp)                                                     \
  OVK_API void ovkColor##Upper##ToYCbCr##Layout##PseudoPlanaru8(OVK_PSEUDO_PLANAR_PARAMS) {                         \
    using E = ovkEntry::Color##Upper##ToYCbCr##Layout##PseudoPlanaru8;                                             \
    const uint32_t impl = ovkSelectImpl<E>();                                                                      \
    OVK_REQUIRE(E, src && dstY && dstC && srcWidth && srcHeight && ( srcStride == 0 || srcStride >= (srcWidth*bpp)) && ( dstYStride == 0 || dstYStride >= srcWidth ) && ( dstCStride == 0 || dstCStride >= srcWidth )); \
    callPseudoPlanar<E>(impl, src, srcWidth, srcHeight, srcStride, bpp, srcWidth, OVK_CHROMA_ROWS_##Layout, dstY,  \
                        dstC, dstYStride, dstCStride);                                                                               \
  }

#define OVK_FROM_RGB_ENTRIES(Upper, bpp)                                                                           \
  OVK_API void ovkColor##Upper##ToYCbCr444Planaru8(OVK_PLANAR_PARAMS) {                                             \
    using E = ovkEntry::Color##Upper##ToYCbCr444Planaru8;                                                          \
    const uint32_t impl = ovkSelectImpl<E>();                                                                      \
    OVK_REQUIRE(E, src && dstY && dstCb && dstCr && srcWidth && srcHeight && ( srcStride == 0 || srcStride >= (srcWidth*bpp) ) && ( dstYStride == 0 || dstYStride >= srcWidth ) && ( dstCbStride == 0 || dstCbStride >= srcWidth ) && ( dstCrStride == 0 || dstCrStride >= srcWidth )); \
    callPlanar<E>(impl, src, srcWidth, srcHeight, srcStride, bpp, srcWidth, srcHeight, dstY, dstCb, dstCr,         \
                  dstYStride, dstCbStride, dstCrStride);                                                                       \
  }                                                                                                                \
  OVK_API void ovkColor##Upper##ToYCbCr444PseudoPlanaru8(OVK_PSEUDO_PLANAR_PARAMS) {                                \
    using E = ovkEntry::Color##Upper##ToYCbCr444PseudoPlanaru8;                                                    \
    const uint32_t impl = ovkSelectImpl<E>();                                                                      \
    OVK_REQUIRE(E, src && dstY && dstC && srcWidth && srcHeight && ( srcStride == 0 || srcStride >= (srcWidth*bpp) ) && ( dstYStride == 0 || dstYStride >= srcWidth ) && ( dstCStride == 0 || dstCStride >= (srcWidth*2) )); \
    callPseudoPlanar<E>(impl, src, srcWidth, srcHeight, srcStride, bpp, uint64_t(srcWidth) * 2, srcHeight, dstY,   \
                        dstC, dstYStride, dstCStride);                                                                               \
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
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, uint64_t(srcWidth) * 3, srcWidth * 3),
                    ovkOutput(srcHeight, uint64_t(srcWidth) * 3, srcWidth * 3));
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
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, uint64_t(srcWidth) * 3, srcStride),
                    ovkOutput(srcHeight, uint64_t(srcWidth) * 3, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

OVK_API void ovkColorRGB888ToGrayu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                    uint8_t* dst, uint32_t dstStride) {
  using E = ovkEntry::ColorRGB888ToGrayu8;
  const uint32_t impl = ovkSelectImpl<E>();
  // clang-format off
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride ==0 || srcStride >= srcWidth*3) && dst && (dstStride ==0 || dstStride >= srcWidth));
  // clang-format on
  srcStride = ovkPackedStride(srcStride, srcWidth * 3);
  dstStride = ovkPackedStride(dstStride, srcWidth);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, uint64_t(srcWidth) * 3, srcStride), ovkOutput(srcHeight, srcWidth, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

}  // extern "C"
