// YCbCr to RGB pieces shared by the portable and the vector kernels: the four
// fixed-point conversions, the output pixel formats and the walks over a frame
// (row pairs of 4:2:0 inputs, units of block-ordered inputs).
#ifndef ORVIK_COLOR_TO_RGB_H
#define ORVIK_COLOR_TO_RGB_H

#include <stdint.h>

#include <algorithm>

#include "orvikInternal.h"

// One output channel: cb * u + cr * v + offset, added to the weighted luma.
struct ovkChromaWeights {
  int32_t cb, cr, offset;
};

// channel = clamp((lumaWeight * L + chroma term) >> shift, 0, 255) with
// L = max(Y - lumaFloor, 0), u = chromaScale * Cb - chromaCentre and likewise v.
// Flooring before the clamp is the same as clamping the fixed-point value
// first and shifting afterwards.
struct ovkYccArithmetic {
  int32_t shift;
  int32_t lumaWeight;
  int32_t lumaFloor;
  int32_t chromaScale, chromaCentre;
  ovkChromaWeights r, g, b;
};

// Full range in Q8 with a rounding half (the planar and pseudo-planar family).
inline constexpr ovkYccArithmetic kOvkFullRangeQ8 = {8, 256, 0, 1, 128, {0, 359, 128}, {-88, -183, 128}, {454, 0, 128}};
// Video range in Q10, truncated, luma below 16 taken as 16 (camera RGBA).
inline constexpr ovkYccArithmetic kOvkVideoRangeQ10 = {10,          1192, 16, 1, 128, {0, 1634, 0}, {-400, -833, 0},
                                                       {2066, 0, 0}};
// Video range in Q8, truncated, luma offset inside the chroma term (camera RGB565).
inline constexpr ovkYccArithmetic kOvkVideoRangeQ8 = {
    8, 298, 0, 1, 128, {0, 409, -4768}, {-100, -208, -4768}, {517, 0, -4768}};
// Q15 with chroma centred at 127.5, rounded (block-ordered data).
inline constexpr ovkYccArithmetic kOvkBlockQ15 = {
    15, 32768, 0, 2, 255, {0, 22970, 16384}, {-5638, -11700, 16384}, {29032, 0, 16384}};

// The chroma terms of one chroma sample, shared by the pixels it covers.
struct ovkChromaTerms {
  int32_t r, g, b;
};

inline ovkChromaTerms ovkChromaTermsOf(const ovkYccArithmetic& a, int32_t cb, int32_t cr) {
  const int32_t u = a.chromaScale * cb - a.chromaCentre, v = a.chromaScale * cr - a.chromaCentre;
  return {a.r.cb * u + a.r.cr * v + a.r.offset, a.g.cb * u + a.g.cr * v + a.g.offset,
          a.b.cb * u + a.b.cr * v + a.b.offset};
}

inline uint8_t ovkClampChannel(int32_t value) { return uint8_t(std::min(std::max(value, 0), 255)); }

struct ovkRgb {
  uint8_t r, g, b;
};

inline ovkRgb ovkRgbOf(const ovkYccArithmetic& a, int32_t luma, const ovkChromaTerms& c) {
  const int32_t y = a.lumaWeight * std::max(luma - a.lumaFloor, 0);
  return {ovkClampChannel((y + c.r) >> a.shift), ovkClampChannel((y + c.g) >> a.shift),
          ovkClampChannel((y + c.b) >> a.shift)};
}

// ---- Output formats ------------------------------------------------------------

enum class ovkRgbFormat { kRgb565, kRgb888, kRgbA8888 };

template <ovkRgbFormat F>
constexpr uint32_t kOvkRgbBytes = F == ovkRgbFormat::kRgb565   ? 2
                                  : F == ovkRgbFormat::kRgb888 ? 3
                                                               : 4;

// Pixel x of an output row.  RGB565 is a little-endian word with R in the low
// bits and B in the high bits.
template <ovkRgbFormat F>
inline void ovkPutRgb(uint8_t* row, uint32_t x, ovkRgb p) {
  uint8_t* out = row + size_t(x) * kOvkRgbBytes<F>;
  if constexpr (F == ovkRgbFormat::kRgb565) {
    out[0] = uint8_t((p.r >> 3) | ((p.g << 3) & 0xE0));
    out[1] = uint8_t((p.b & 0xF8) | (p.g >> 5));
  } else {
    out[0] = p.r;
    out[1] = p.g;
    out[2] = p.b;
    if constexpr (F == ovkRgbFormat::kRgbA8888) out[3] = 255;
  }
}

// ---- Luma/chroma planes ----------------------------------------------------------

// Where the chroma of a frame lies and how it is subsampled.  Planar chroma
// has a step of 1 between samples; interleaved pairs a step of 2, with cb and
// cr one byte apart in either order.
struct ovkYccPlanes {
  const uint8_t* y;
  const uint8_t* cb;
  const uint8_t* cr;
  uint32_t yStride, cbStride, crStride;
  uint32_t chromaStep;
  uint32_t chromaShiftX, chromaShiftY;  // 0: a sample per pixel, 1: per two pixels or rows
};

inline ovkYccPlanes ovkPlanarPlanes(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint32_t yStride,
                                    uint32_t cbStride, uint32_t crStride, uint32_t shiftX, uint32_t shiftY) {
  return {y, cb, cr, yStride, cbStride, crStride, 1, shiftX, shiftY};
}

inline ovkYccPlanes ovkInterleavedPlanes(const uint8_t* y, const uint8_t* c, uint32_t yStride, uint32_t cStride,
                                         bool cbFirst, uint32_t shiftX, uint32_t shiftY) {
  return {y, cbFirst ? c : c + 1, cbFirst ? c + 1 : c, yStride, cStride, cStride, 2, shiftX, shiftY};
}

// One or two luma rows that share a chroma row.
struct ovkYccRowJob {
  const uint8_t* y[2];
  uint8_t* out[2];
  uint32_t rows;
  const uint8_t* cb;
  const uint8_t* cr;
  uint32_t chromaStep;
  bool subsampled;  // two columns per chroma sample
  uint32_t width;
  // Chroma of the unpaired last column of an odd width (subsampled columns).
  uint8_t loneCb, loneCr;
};

// The second byte of the last column's pair lies past an interleaved row of
// width bytes when the width is odd.  The byte after the row still belongs to
// the plane on every chroma row but the last; there it is taken as 128.
inline void ovkSetLoneChroma(const ovkYccPlanes& p, uint32_t width, bool lastChromaRow, ovkYccRowJob& job) {
  const uint32_t at = (width >> 1) * job.chromaStep;
  const bool pastPlane = lastChromaRow && job.chromaStep == 2;
  job.loneCb = pastPlane && p.cb > p.cr ? 128 : job.cb[at];
  job.loneCr = pastPlane && p.cr > p.cb ? 128 : job.cr[at];
}

// Walks the frame a chroma row at a time; 4:2:0 converts row pairs, and an
// odd last row uses the last chroma row alone.  `rotate180` writes source row
// y to destination row height - 1 - y (the row converter mirrors columns).
template <class ConvertRows>
void ovkConvertYccFrame(const ovkYccPlanes& p, uint32_t width, uint32_t height, uint8_t* dst, uint32_t dstStride,
                        bool rotate180, ConvertRows convertRows) {
  const uint32_t rowsPerChroma = 1u << p.chromaShiftY;
  const uint32_t chromaRows = (height + rowsPerChroma - 1) >> p.chromaShiftY;
  ovkYccRowJob job{};
  job.chromaStep = p.chromaStep;
  job.subsampled = p.chromaShiftX != 0;
  job.width = width;
  for (uint32_t c = 0; c < chromaRows; ++c) {
    const uint32_t firstRow = c << p.chromaShiftY;
    job.rows = std::min(rowsPerChroma, height - firstRow);
    for (uint32_t r = 0; r < job.rows; ++r) {
      const uint32_t y = firstRow + r;
      job.y[r] = p.y + size_t(y) * p.yStride;
      job.out[r] = dst + size_t(rotate180 ? height - 1 - y : y) * dstStride;
    }
    job.cb = p.cb + size_t(c) * p.cbStride;
    job.cr = p.cr + size_t(c) * p.crStride;
    if (p.chromaShiftX && (width & 1)) ovkSetLoneChroma(p, width, c + 1 == chromaRows, job);
    convertRows(job);
  }
}

// The subsampled row routines of the planar and pseudo-planar family work on
// column pairs and refuse a single column; this ends the process.
inline void ovkRequirePairedRow(uint32_t width) {
  if (width < 2) ovkFatal(__FILE__, __LINE__, "length > 1");
}

// ---- Block-ordered units -----------------------------------------------------

// A unit is its luma 8x8 blocks (left to right, then top to bottom), then one
// 8x8 Cb and one 8x8 Cr block, each subsampled by 2 where the unit is 16 wide
// (shiftX) or 16 high (shiftY).
struct ovkBlockUnit {
  uint32_t shiftX, shiftY;
  uint32_t width() const { return 8u << shiftX; }
  uint32_t height() const { return 8u << shiftY; }
  uint32_t lumaBytes() const { return 64u << (shiftX + shiftY); }
  uint32_t bytes() const { return lumaBytes() + 128; }
};

// Walks the units in raster order; partial units at the right and bottom
// edges convert only the columns and rows inside the image.  RGB888 output,
// packed rows.
template <class ConvertUnit>
void ovkConvertBlockUnits(const ovkBlockUnit& unit, const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst,
                          ConvertUnit convertUnit) {
  const size_t dstStride = size_t(width) * 3;
  for (uint32_t top = 0; top < height; top += unit.height())
    for (uint32_t left = 0; left < width; left += unit.width(), src += unit.bytes())
      convertUnit(unit, src, std::min(unit.width(), width - left), std::min(unit.height(), height - top),
                  dst + top * dstStride + size_t(left) * 3, dstStride);
}

// Portable conversion of one unit's first `columns` x `rows` pixels.
void ovkConvertBlockUnitC(const ovkBlockUnit& unit, const uint8_t* src, uint32_t columns, uint32_t rows, uint8_t* dst,
                          size_t dstStride);

// Converts pixels [from, to) of the job's rows; `from` is even for
// subsampled columns.  The portable kernels convert whole rows with it, the
// vector kernels the rows too short for a vector and the columns left over.
template <ovkRgbFormat F, bool kMirror = false>
void ovkConvertYccColumnsC(const ovkYccArithmetic& a, const ovkYccRowJob& job, uint32_t from, uint32_t to) {
  const uint32_t columnsPerSample = job.subsampled ? 2 : 1;
  for (uint32_t x = from; x < to; x += columnsPerSample) {
    const size_t at = size_t(x / columnsPerSample) * job.chromaStep;
    const bool lone = job.subsampled && x + 1 == job.width;
    const ovkChromaTerms terms = ovkChromaTermsOf(a, lone ? job.loneCb : job.cb[at], lone ? job.loneCr : job.cr[at]);
    const uint32_t end = std::min(x + columnsPerSample, to);
    for (uint32_t r = 0; r < job.rows; ++r)
      for (uint32_t column = x; column < end; ++column)
        ovkPutRgb<F>(job.out[r], kMirror ? job.width - 1 - column : column, ovkRgbOf(a, job.y[r][column], terms));
  }
}

// Portable conversion of row jobs and units, for ovkYccKernels.
struct ovkPortableYccRows {
  template <const ovkYccArithmetic& A, ovkRgbFormat F, bool kMirror>
  static void Convert(const ovkYccRowJob& job) {
    ovkConvertYccColumnsC<F, kMirror>(A, job, 0, job.width);
  }

  static void ConvertUnit(const ovkBlockUnit& unit, const uint8_t* src, uint32_t columns, uint32_t rows,
                          uint8_t* dst, size_t dstStride) {
    ovkConvertBlockUnitC(unit, src, columns, rows, dst, dstStride);
  }
};

// ---- Kernels of every group, given a row and a unit converter ----------------------

// Rows::template Convert<Arithmetic, Format, Mirror>(job) converts a row job,
// Rows::ConvertUnit(unit, src, columns, rows, dst, dstStride) a block unit.
template <class Rows>
struct ovkYccKernels {
  template <ovkRgbFormat F, uint32_t kShiftX, uint32_t kShiftY>
  static void Planar(const uint8_t* srcY, const uint8_t* srcCb, const uint8_t* srcCr, uint32_t srcWidth,
                     uint32_t srcHeight, uint32_t srcYStride, uint32_t srcCbStride, uint32_t srcCrStride, uint8_t* dst,
                     uint32_t dstStride) {
    Family<F>(ovkPlanarPlanes(srcY, srcCb, srcCr, srcYStride, srcCbStride, srcCrStride, kShiftX, kShiftY), srcWidth,
              srcHeight, dst, dstStride);
  }

  template <ovkRgbFormat F, uint32_t kShiftX, uint32_t kShiftY>
  static void PseudoPlanar(const uint8_t* srcY, const uint8_t* srcC, uint32_t srcWidth, uint32_t srcHeight,
                           uint32_t srcYStride, uint32_t srcCStride, uint8_t* dst, uint32_t dstStride) {
    Family<F>(ovkInterleavedPlanes(srcY, srcC, srcYStride, srcCStride, true, kShiftX, kShiftY), srcWidth, srcHeight,
              dst, dstStride);
  }

  // Luma plane, then Cr/Cb pairs at src + srcYStride * srcHeight; RGBA.
  static void CameraRgba(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcYStride,
                         uint32_t srcCStride, uint8_t* dst, uint32_t dstStride) {
    const ovkYccPlanes p =
        ovkInterleavedPlanes(src, src + size_t(srcYStride) * srcHeight, srcYStride, srcCStride, false, 1, 1);
    ovkConvertYccFrame(p, srcWidth, srcHeight, dst, dstStride, false, [](const ovkYccRowJob& job) {
      Rows::template Convert<kOvkVideoRangeQ10, ovkRgbFormat::kRgbA8888, false>(job);
    });
  }

  // Packed luma plane, then Cb/Cr pairs at src + width * height; RGB565,
  // optionally rotated by 180 degrees.
  template <bool kRotate180>
  static void Camera565(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst) {
    const ovkYccPlanes p = ovkInterleavedPlanes(src, src + size_t(width) * height, width, width, true, 1, 1);
    ovkConvertYccFrame(p, width, height, dst, width * 2, kRotate180, [](const ovkYccRowJob& job) {
      Rows::template Convert<kOvkVideoRangeQ8, ovkRgbFormat::kRgb565, kRotate180>(job);
    });
  }

  template <uint32_t kShiftX, uint32_t kShiftY>
  static void BlockUnits(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst) {
    ovkConvertBlockUnits({kShiftX, kShiftY}, src, width, height, dst, Rows::ConvertUnit);
  }

 private:
  template <ovkRgbFormat F>
  static void Family(const ovkYccPlanes& p, uint32_t width, uint32_t height, uint8_t* dst, uint32_t dstStride) {
    ovkConvertYccFrame(p, width, height, dst, dstStride, false, [](const ovkYccRowJob& job) {
      if (job.subsampled) ovkRequirePairedRow(job.width);
      Rows::template Convert<kOvkFullRangeQ8, F, false>(job);
    });
  }
};

// The planar and pseudo-planar family: X(Sampling, Layout, Output, ShiftX, ShiftY).
#define OVK_YCC_FAMILY_OF(X, Sampling, ShiftX, ShiftY) \
  X(Sampling, Planar, 565, ShiftX, ShiftY)             \
  X(Sampling, Planar, 888, ShiftX, ShiftY)             \
  X(Sampling, Planar, A8888, ShiftX, ShiftY)           \
  X(Sampling, PseudoPlanar, 565, ShiftX, ShiftY)       \
  X(Sampling, PseudoPlanar, 888, ShiftX, ShiftY)       \
  X(Sampling, PseudoPlanar, A8888, ShiftX, ShiftY)
#define OVK_YCC_FAMILY(X) \
  OVK_YCC_FAMILY_OF(X, 444, 0, 0) OVK_YCC_FAMILY_OF(X, 422, 1, 0) OVK_YCC_FAMILY_OF(X, 420, 1, 1)

#define OVK_YCC_PARAMS_Planar                                                                             \
  const uint8_t *srcY, const uint8_t *srcCb, const uint8_t *srcCr, uint32_t srcWidth, uint32_t srcHeight, \
      uint32_t srcYStride, uint32_t srcCbStride, uint32_t srcCrStride, uint8_t *dst, uint32_t dstStride
#define OVK_YCC_ARGS_Planar \
  srcY, srcCb, srcCr, srcWidth, srcHeight, srcYStride, srcCbStride, srcCrStride, dst, dstStride
#define OVK_YCC_PARAMS_PseudoPlanar                                                                     \
  const uint8_t *srcY, const uint8_t *srcC, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcYStride, \
      uint32_t srcCStride, uint8_t *dst, uint32_t dstStride
#define OVK_YCC_ARGS_PseudoPlanar srcY, srcC, srcWidth, srcHeight, srcYStride, srcCStride, dst, dstStride

// Defines Name as the family member's kernel built from Kernels.
#define OVK_YCC_FAMILY_KERNEL(Kernels, Name, Layout, Output, ShiftX, ShiftY)                     \
  void Name(OVK_YCC_PARAMS_##Layout) {                                                           \
    Kernels::template Layout<ovkRgbFormat::kRgb##Output, ShiftX, ShiftY>(OVK_YCC_ARGS_##Layout); \
  }

// The camera and block-ordered kernels built from Kernels, each named Name(Group).
#define OVK_YCC_CAMERA_AND_BLOCK_KERNELS(Kernels, Name)                                                             \
  void Name(ColorYCrCb420PseudoPlanarToRGB8888u8)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,        \
                                                  uint32_t srcYStride, uint32_t srcCStride, uint8_t* dst,           \
                                                  uint32_t dstStride) {                                             \
    Kernels::CameraRgba(src, srcWidth, srcHeight, srcYStride, srcCStride, dst, dstStride);                          \
  }                                                                                                                 \
  void Name(ColorYUV420toRGB8888u8)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcYStride, \
                                    uint32_t srcCStride, uint8_t* dst, uint32_t dstStride) {                        \
    Name(ColorYCrCb420PseudoPlanarToRGB8888u8)(src, srcWidth, srcHeight, srcYStride, srcCStride, dst, dstStride);   \
  }                                                                                                                 \
  void Name(ColorYUV420toRGB565u8)(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst) {             \
    Kernels::Camera565<false>(src, width, height, dst);                                                             \
  }                                                                                                                 \
  void Name(ColorYUV420toRGB565u8Rotate180)(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst) {    \
    Kernels::Camera565<true>(src, width, height, dst);                                                              \
  }                                                                                                                 \
  void Name(ColorYCrCbH1V1toRGB888u8)(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst) {          \
    Kernels::BlockUnits<0, 0>(src, width, height, dst);                                                             \
  }                                                                                                                 \
  void Name(ColorYCrCbH2V1toRGB888u8)(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst) {          \
    Kernels::BlockUnits<1, 0>(src, width, height, dst);                                                             \
  }                                                                                                                 \
  void Name(ColorYCrCbH1V2toRGB888u8)(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst) {          \
    Kernels::BlockUnits<0, 1>(src, width, height, dst);                                                             \
  }                                                                                                                 \
  void Name(ColorYCrCbH2V2toRGB888u8)(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst) {          \
    Kernels::BlockUnits<1, 1>(src, width, height, dst);                                                             \
  }

#define OVK_YCC_CAMERA_AND_BLOCK_GROUPS(X)                                                                           \
  X(ColorYCrCb420PseudoPlanarToRGB8888u8)                                                                            \
  X(ColorYUV420toRGB8888u8)                                                                                          \
  X(ColorYUV420toRGB565u8) X(ColorYUV420toRGB565u8Rotate180) X(ColorYCrCbH1V1toRGB888u8) X(ColorYCrCbH2V1toRGB888u8) \
      X(ColorYCrCbH1V2toRGB888u8) X(ColorYCrCbH2V2toRGB888u8)

#endif
