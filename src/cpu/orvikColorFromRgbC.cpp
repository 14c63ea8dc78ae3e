// Portable RGB to YCbCr and gray conversions: row kernels behind the
// inner-kernel slots, the outer loops that call them through the slots, and
// the whole-image gray and interleaved YCrCb kernels.
#include <algorithm>

#include "orvikInternal.h"

namespace {

struct Rgb {
  int32_t r, g, b;
};

// Pixel readers of the planar and pseudo-planar family: byte 0 is B.
struct Rgb565Pixels {
  static constexpr uint32_t kBytes = 2;
  // Expanded by shifting alone; the low bits stay zero.
  static Rgb read(const uint8_t* p) {
    const int32_t word = p[0] | (p[1] << 8);
    return {(word >> 11) << 3, ((word >> 5) & 0x3F) << 2, (word & 0x1F) << 3};
  }
};

// RGB888, or RGBA8888 with its fourth byte ignored.
template <uint32_t kBytesPerPixel>
struct BgrPixels {
  static constexpr uint32_t kBytes = kBytesPerPixel;
  static Rgb read(const uint8_t* p) { return {p[2], p[1], p[0]}; }
};

uint8_t lumaOf(const Rgb& c) { return uint8_t((77 * c.r + 150 * c.g + 29 * c.b + 128) >> 8); }

// The shifted chroma lies in [-127, 128]; only the top needs clamping.
uint8_t chromaFromShifted(int32_t shifted) { return uint8_t(std::min(shifted + 128, 255)); }
uint8_t blueDifferenceOf(const Rgb& c) { return chromaFromShifted((128 * c.b - 85 * c.g - 43 * c.r + 128) >> 8); }
uint8_t redDifferenceOf(const Rgb& c) { return chromaFromShifted((128 * c.r - 107 * c.g - 21 * c.b + 128) >> 8); }

template <class Pixels>
void lumaRow(const uint8_t* src, uint8_t* dstY, uint32_t width) {
  for (uint32_t x = 0; x < width; ++x) dstY[x] = lumaOf(Pixels::read(src + x * Pixels::kBytes));
}

template <class Pixels>
void planarRow(const uint8_t* src, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr, uint32_t width) {
  for (uint32_t x = 0; x < width; ++x) {
    const Rgb c = Pixels::read(src + x * Pixels::kBytes);
    dstY[x] = lumaOf(c);
    dstCb[x] = blueDifferenceOf(c);
    dstCr[x] = redDifferenceOf(c);
  }
}

template <class Pixels>
void pseudoPlanarRow(const uint8_t* src, uint8_t* dstY, uint8_t* dstC, uint32_t width) {
  for (uint32_t x = 0; x < width; ++x) {
    const Rgb c = Pixels::read(src + x * Pixels::kBytes);
    dstY[x] = lumaOf(c);
    dstC[2 * x] = blueDifferenceOf(c);
    dstC[2 * x + 1] = redDifferenceOf(c);
  }
}

// The 2:1 rows take chroma from the even pixel of each pair and write
// nothing, not even luma, for an odd width.
template <class Pixels>
void subsampledPlanarRow(const uint8_t* src, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr, uint32_t width) {
  if (width & 1) return;
  for (uint32_t x = 0; x < width; x += 2) {
    const Rgb even = Pixels::read(src + x * Pixels::kBytes);
    dstY[x] = lumaOf(even);
    dstY[x + 1] = lumaOf(Pixels::read(src + (x + 1) * Pixels::kBytes));
    dstCb[x / 2] = blueDifferenceOf(even);
    dstCr[x / 2] = redDifferenceOf(even);
  }
}

template <class Pixels>
void subsampledPseudoPlanarRow(const uint8_t* src, uint8_t* dstY, uint8_t* dstC, uint32_t width) {
  if (width & 1) return;
  for (uint32_t x = 0; x < width; x += 2) {
    const Rgb even = Pixels::read(src + x * Pixels::kBytes);
    dstY[x] = lumaOf(even);
    dstY[x + 1] = lumaOf(Pixels::read(src + (x + 1) * Pixels::kBytes));
    dstC[x] = blueDifferenceOf(even);
    dstC[x + 1] = redDifferenceOf(even);
  }
}

// Where the rows of one conversion go.  The outer loops read the slots at
// every call, so a mode change swaps in the vector rows without touching them.
struct PlanarTarget {
  ovkRgbToYCbCrPlanarRowFn row;
  uint8_t *y, *cb, *cr;
  uint32_t yStride, cbStride, crStride;

  uint8_t* lumaRow(uint32_t index) const { return y + size_t(index) * yStride; }
  void convert(const uint8_t* src, uint32_t index, uint32_t chromaIndex, uint32_t width) const {
    row(src, lumaRow(index), cb + size_t(chromaIndex) * cbStride, cr + size_t(chromaIndex) * crStride, width);
  }
};

struct PseudoPlanarTarget {
  ovkRgbToYCbCrPseudoPlanarRowFn row;
  uint8_t *y, *c;
  uint32_t yStride, cStride;

  uint8_t* lumaRow(uint32_t index) const { return y + size_t(index) * yStride; }
  void convert(const uint8_t* src, uint32_t index, uint32_t chromaIndex, uint32_t width) const {
    row(src, lumaRow(index), c + size_t(chromaIndex) * cStride, width);
  }
};

// Without `lumaOnly` every row carries chroma (4:4:4, 4:2:2).  With it
// (4:2:0) rows go in pairs: the even row carries the chroma, the odd one
// only luma; a last even row without a partner is converted alone.
template <class Target>
void convertImage(const Target& target, const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                  ovkRgbToLumaRowFn lumaOnly) {
  const uint32_t step = lumaOnly ? 2 : 1;
  for (uint32_t y = 0; y < height; y += step) {
    const uint8_t* row = src + size_t(y) * srcStride;
    target.convert(row, y, y / step, width);
    if (lumaOnly && y + 1 < height) lumaOnly(row + srcStride, target.lumaRow(y + 1), width);
  }
}

}  // namespace

#define OVK_PLANAR_KERNEL(Upper, Layout, chromaRow, lumaOnly)                                                         \
  void ovkColor##Upper##ToYCbCr##Layout##Planaru8C(const uint8_t* src, uint32_t width, uint32_t height,               \
                                                   uint32_t srcStride, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr, \
                                                   uint32_t dstYStride, uint32_t dstCbStride, uint32_t dstCrStride) { \
    convertImage(PlanarTarget{chromaRow, dstY, dstCb, dstCr, dstYStride, dstCbStride, dstCrStride}, src, width,       \
                 height, srcStride, lumaOnly);                                                                        \
  }

#define OVK_PSEUDO_PLANAR_KERNEL(Upper, Layout, chromaRow, lumaOnly)                                               \
  void ovkColor##Upper##ToYCbCr##Layout##PseudoPlanaru8C(const uint8_t* src, uint32_t width, uint32_t height,      \
                                                         uint32_t srcStride, uint8_t* dstY, uint8_t* dstC,         \
                                                         uint32_t dstYStride, uint32_t dstCStride) {               \
    convertImage(PseudoPlanarTarget{chromaRow, dstY, dstC, dstYStride, dstCStride}, src, width, height, srcStride, \
                 lumaOnly);                                                                                        \
  }

// Row kernels and whole-image kernels of one source format (slot prefix
// `lower`, entry spelling `Upper`).
#define OVK_FROM_RGB_FORMAT(lower, Upper, Pixels)                                                           \
  void lower##2yuvpC(const uint8_t* src, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr, uint32_t width) {   \
    planarRow<Pixels>(src, dstY, dstCb, dstCr, width);                                                      \
  }                                                                                                         \
  void lower##2yyuvpC(const uint8_t* src, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr, uint32_t width) {  \
    subsampledPlanarRow<Pixels>(src, dstY, dstCb, dstCr, width);                                            \
  }                                                                                                         \
  void lower##2yC(const uint8_t* src, uint8_t* dstY, uint32_t width) { lumaRow<Pixels>(src, dstY, width); } \
  void lower##2yuvC(const uint8_t* src, uint8_t* dstY, uint8_t* dstC, uint32_t width) {                     \
    pseudoPlanarRow<Pixels>(src, dstY, dstC, width);                                                        \
  }                                                                                                         \
  void lower##2yyuvC(const uint8_t* src, uint8_t* dstY, uint8_t* dstC, uint32_t width) {                    \
    subsampledPseudoPlanarRow<Pixels>(src, dstY, dstC, width);                                              \
  }                                                                                                         \
  OVK_PLANAR_KERNEL(Upper, 444, lower##2yuvp_, nullptr)                                                     \
  OVK_PLANAR_KERNEL(Upper, 422, lower##2yyuvp_, nullptr)                                                    \
  OVK_PLANAR_KERNEL(Upper, 420, lower##2yyuvp_, lower##2y_)                                                 \
  OVK_PSEUDO_PLANAR_KERNEL(Upper, 444, lower##2yuv_, nullptr)                                               \
  OVK_PSEUDO_PLANAR_KERNEL(Upper, 422, lower##2yyuv_, nullptr)                                              \
  OVK_PSEUDO_PLANAR_KERNEL(Upper, 420, lower##2yyuv_, lower##2y_)

OVK_FROM_RGB_FORMAT(rgb565, RGB565, Rgb565Pixels)
OVK_FROM_RGB_FORMAT(rgb888, RGB888, BgrPixels<3>)
OVK_FROM_RGB_FORMAT(rgba8888, RGBA8888, BgrPixels<4>)
#undef OVK_FROM_RGB_FORMAT
#undef OVK_PSEUDO_PLANAR_KERNEL
#undef OVK_PLANAR_KERNEL

// Gray and interleaved YCrCb read byte 0 as R, unlike the family above.
void ovkColorRGB888ToGrayu8C(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst,
                             uint32_t dstStride) {
  for (uint32_t y = 0; y < height; ++y) {
    const uint8_t* in = src + size_t(y) * srcStride;
    uint8_t* out = dst + size_t(y) * dstStride;
    for (uint32_t x = 0; x < width; ++x, in += 3)
      out[x] = uint8_t((19595 * in[0] + 38469 * in[1] + 7471 * in[2] + 32768) >> 16);
  }
}

void ovkColorRGB888toYCrCbu8C(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst,
                              uint32_t dstStride) {
  for (uint32_t y = 0; y < height; ++y) {
    const uint8_t* in = src + size_t(y) * srcStride;
    uint8_t* out = dst + size_t(y) * dstStride;
    for (uint32_t x = 0; x < width; ++x, in += 3, out += 3) {
      const int32_t r = in[0], g = in[1], b = in[2];
      out[0] = uint8_t((9798 * r + 19235 * g + 3736 * b + 16384) >> 15);
      out[1] = uint8_t(std::min(128 + ((16384 * r - 13720 * g - 2664 * b + 16384) >> 15), 255));
      out[2] = uint8_t(std::min(128 + ((-5529 * r - 10855 * g + 16384 * b + 16384) >> 15), 255));
    }
  }
}
