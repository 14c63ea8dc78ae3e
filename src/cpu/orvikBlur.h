// Pieces of the 3x3 Gaussian shared by the portable and the vector kernels.
#ifndef ORVIK_BLUR_H
#define ORVIK_BLUR_H

#include <stdint.h>

#include "orvik.h"

// One interior row: out[x] for 1 <= x < width - 1, from the rows above, at
// and below it.  Pointers are row starts.
void ovkGaussian3x3RowC(const uint8_t* above, const uint8_t* row, const uint8_t* below, uint8_t* out,
                        uint32_t width);

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
