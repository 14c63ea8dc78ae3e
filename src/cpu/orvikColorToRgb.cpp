// Exported entries of the YCbCr to RGB conversions.  The family's entries
// differ only in names, factors and chroma row sizes, so one macro writes
// each kind; a zero stride becomes the minimal one before validation.
#include "orvikConstraints.h"

namespace {

uint64_t halfUp(uint32_t n) { return uint64_t(n / 2) + n % 2; }

// A camera frame without strides: the luma rows, then a row of chroma pairs
// per two of them, all `width` bytes apart.
ovkSpan cameraFrame(uint32_t width, uint32_t height) { return ovkInput(height + halfUp(height), width, width); }

// Block-ordered data: whole units of unitWidth x unitHeight pixels.
ovkSpan blockUnits(uint32_t width, uint32_t height, uint32_t unitWidth, uint32_t unitHeight, uint32_t unitBytes) {
  const uint64_t across = (uint64_t(width) + unitWidth - 1) / unitWidth;
  const uint64_t down = (uint64_t(height) + unitHeight - 1) / unitHeight;
  return ovkInput(1, across * down * unitBytes, 0);
}

}  // namespace

// clang-format off
#define OVK_PLANAR_ENTRY(Sampling, Output, Factor, ChromaWidth, ChromaRows)                                                    \
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
    OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcYStride), ovkInput(ChromaRows, ChromaWidth, srcCbStride),    \
                      ovkInput(ChromaRows, ChromaWidth, srcCrStride),                                              \
                      ovkOutput(srcHeight, uint64_t(srcWidth) * Factor, dstStride));                               \
    ovkCallVoid<E>(impl, srcY, srcCb, srcCr, srcWidth, srcHeight, srcYStride, srcCbStride, srcCrStride, dst,       \
                   dstStride);                                                                                      \
  }

// `Extra` is an additional clause of the condition, or nothing.  ChromaRowBytes
// is spliced into the condition text; ChromaBytes is the same in 64 bits.
#define OVK_PSEUDO_PLANAR_ENTRY(Sampling, Output, Factor, ChromaRowBytes, ChromaBytes, ChromaRows, Extra)                                    \
  OVK_API void ovkColorYCbCr##Sampling##PseudoPlanarToRGB##Output##u8(                                              \
      const uint8_t* srcY, const uint8_t* srcC, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcYStride,        \
      uint32_t srcCStride, uint8_t* dst, uint32_t dstStride) {                                                      \
    using E = ovkEntry::ColorYCbCr##Sampling##PseudoPlanarToRGB##Output##u8;                                        \
    srcYStride = ovkPackedStride(srcYStride, srcWidth);                                                             \
    srcCStride = ovkPackedStride(srcCStride, ChromaRowBytes);                                                       \
    dstStride = ovkPackedStride(dstStride, srcWidth*Factor);                                                        \
    const uint32_t impl = ovkSelectImpl<E>();                                                                       \
    OVK_REQUIRE(E, srcY && srcC && dst && srcWidth && srcHeight && ( srcYStride == 0 || srcYStride >= (srcWidth*sizeof(uint8_t)) ) && ( srcCStride == 0 || srcCStride >= (ChromaRowBytes*sizeof(uint8_t)) ) && ( dstStride == 0 || dstStride >= (srcWidth*Factor*sizeof(uint8_t))) Extra); \
    OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcYStride), ovkInput(ChromaRows, ChromaBytes, srcCStride),     \
                      ovkOutput(srcHeight, uint64_t(srcWidth) * Factor, dstStride));                               \
    ovkCallVoid<E>(impl, srcY, srcC, srcWidth, srcHeight, srcYStride, srcCStride, dst, dstStride);                 \
  }

// Entries without strides; the source parameter keeps the name its condition
// text uses.
#define OVK_PACKED_ENTRY(Name, Source, SourceSpan, OutBytes)                                                       \
  OVK_API void ovk##Name(const uint8_t* Source, uint32_t width, uint32_t height, uint8_t* dst) {                   \
    using E = ovkEntry::Name;                                                                                       \
    const uint32_t impl = ovkSelectImpl<E>();                                                                       \
    OVK_REQUIRE(E, Source && dst && width && height);                                                               \
    OVK_REQUIRE_SPANS(E, SourceSpan, ovkOutput(height, uint64_t(width) * OutBytes, width * OutBytes));             \
    ovkCallVoid<E>(impl, Source, width, height, dst);                                                               \
  }

extern "C" {

OVK_PLANAR_ENTRY(444, 565, 2, srcWidth, srcHeight)
OVK_PLANAR_ENTRY(444, 888, 3, srcWidth, srcHeight)
OVK_PLANAR_ENTRY(444, A8888, 4, srcWidth, srcHeight)
OVK_PLANAR_ENTRY(422, 565, 2, (srcWidth+1)/2, srcHeight)
OVK_PLANAR_ENTRY(422, 888, 3, (srcWidth+1)/2, srcHeight)
OVK_PLANAR_ENTRY(422, A8888, 4, (srcWidth+1)/2, srcHeight)
OVK_PLANAR_ENTRY(420, 565, 2, (srcWidth+1)/2, halfUp(srcHeight))
OVK_PLANAR_ENTRY(420, 888, 3, (srcWidth+1)/2, halfUp(srcHeight))
OVK_PLANAR_ENTRY(420, A8888, 4, (srcWidth+1)/2, halfUp(srcHeight))

OVK_PSEUDO_PLANAR_ENTRY(444, 565, 2, srcWidth*2, uint64_t(srcWidth) * 2, srcHeight, )
OVK_PSEUDO_PLANAR_ENTRY(444, 888, 3, srcWidth*2, uint64_t(srcWidth) * 2, srcHeight, )
OVK_PSEUDO_PLANAR_ENTRY(444, A8888, 4, srcWidth*2, uint64_t(srcWidth) * 2, srcHeight, )
OVK_PSEUDO_PLANAR_ENTRY(422, 565, 2, srcWidth, srcWidth, srcHeight, )
// Only this member refuses a single column at the entry.
OVK_PSEUDO_PLANAR_ENTRY(422, 888, 3, srcWidth, srcWidth, srcHeight, && srcWidth > 1)
OVK_PSEUDO_PLANAR_ENTRY(422, A8888, 4, srcWidth, srcWidth, srcHeight, )
OVK_PSEUDO_PLANAR_ENTRY(420, 565, 2, srcWidth, srcWidth, halfUp(srcHeight), )
OVK_PSEUDO_PLANAR_ENTRY(420, 888, 3, srcWidth, srcWidth, halfUp(srcHeight), )
OVK_PSEUDO_PLANAR_ENTRY(420, A8888, 4, srcWidth, srcWidth, halfUp(srcHeight), )

OVK_API void ovkColorYCrCb420PseudoPlanarToRGB8888u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                     uint32_t srcYStride, uint32_t srcCStride, uint8_t* dst,
                                                     uint32_t dstStride) {
  using E = ovkEntry::ColorYCrCb420PseudoPlanarToRGB8888u8;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && srcYStride && srcCStride && dstStride);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcYStride),
                    ovkInput(halfUp(srcHeight), srcWidth, srcCStride, uint64_t(srcYStride) * srcHeight),
                    ovkOutput(srcHeight, uint64_t(srcWidth) * 4, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcYStride, srcCStride, dst, dstStride);
}
// clang-format on

OVK_API void ovkColorYUV420toRGB8888u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst) {
  using E = ovkEntry::ColorYUV420toRGB8888u8;
  const uint32_t impl = ovkSelectImpl<E>(ovkNoGpuForm, [&] { return ovkDspTakesPacked(src, width, height, dst); });
  OVK_REQUIRE(E, src && dst && width && height);
  OVK_REQUIRE_SPANS(E, cameraFrame(width, height), ovkOutput(height, uint64_t(width) * 4, width * 4));
  ovkCallVoid<E>(impl, src, width, height, width, width, dst, width * 4);
}

OVK_PACKED_ENTRY(ColorYUV420toRGB565u8, src, cameraFrame(width, height), 2)
OVK_PACKED_ENTRY(ColorYUV420toRGB565u8Rotate180, src, cameraFrame(width, height), 2)
OVK_PACKED_ENTRY(ColorYCrCbH1V1toRGB888u8, src, blockUnits(width, height, 8, 8, 192), 3)
OVK_PACKED_ENTRY(ColorYCrCbH2V1toRGB888u8, src, blockUnits(width, height, 16, 8, 256), 3)
OVK_PACKED_ENTRY(ColorYCrCbH1V2toRGB888u8, ysrc, blockUnits(width, height, 8, 16, 256), 3)
OVK_PACKED_ENTRY(ColorYCrCbH2V2toRGB888u8, y_src, blockUnits(width, height, 16, 16, 384), 3)

}  // extern "C"
