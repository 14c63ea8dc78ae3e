// Pieces of the 3x3 Gaussian shared by the portable and the vector kernels.
#ifndef ORVIK_BLUR_H
#define ORVIK_BLUR_H

#include <stdint.h>

#include "orvik.h"

// One interior row: out[x] for 1 <= x < width - 1, from the rows above, at
// and below it.  Pointers are row starts.
void ovkGaussian3x3RowC(const uint8_t* above, const uint8_t* row, const uint8_t* below, uint8_t* out,
                        uint32_t width);

// Interior pixels (rows and columns 1 .. size-2) of a whole image.
using ovkGaussian3x3InteriorFn = void (*)(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                                          uint8_t* dst, uint32_t dstStride);
void ovkGaussian3x3InteriorC(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst,
                             uint32_t dstStride);

// The whole filter around an interior kernel: the interior, then the border
// the caller asked for (blurBorder == 1, or a border type).
void ovkGaussian3x3Filter(ovkGaussian3x3InteriorFn interior, const uint8_t* src, uint32_t width, uint32_t height,
                          uint32_t srcStride, uint8_t* dst, uint32_t dstStride, int32_t blurBorder);
ovkStatusCode ovkGaussian3x3FilterBorderType(ovkGaussian3x3InteriorFn interior, const uint8_t* src, uint32_t width,
                                             uint32_t height, uint32_t srcStride, uint8_t* dst,
                                             uint32_t dstStride, ovkBorderType borderType,
                                             uint8_t borderValue);

// The outermost rows and columns, each pixel the weighted sum of its in-image
// taps divided by their weight sum.
void ovkGaussian3x3BlurBorderC(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                               uint8_t* dst, uint32_t dstStride);

// The outermost rows and columns with missing taps read as borderValue
// (constant) or the nearest edge pixel (replicate); then >> 4.
void ovkGaussian3x3BorderTypeC(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                               uint8_t* dst, uint32_t dstStride, ovkBorderType borderType,
                               uint8_t borderValue);

#endif
