// 3x3 median pieces shared by the portable and the vector kernels.
#ifndef ORVIK_MEDIAN_H
#define ORVIK_MEDIAN_H

#include <stdint.h>

#include "orvik.h"

// Interior pixels (rows and columns 1 .. size-2) of a whole image; nothing
// when the image is narrower or lower than 3.
using ovkMedian3x3InteriorFn = void (*)(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                                        uint8_t* dst, uint32_t dstStride);
void ovkMedian3x3InteriorC(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst,
                           uint32_t dstStride);

// The interior, then the outermost rows and columns by border type.
ovkStatusCode ovkMedian3x3FilterBorderType(ovkMedian3x3InteriorFn interior, const uint8_t* src, uint32_t width,
                                           uint32_t height, uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                           ovkBorderType borderType, uint8_t borderValue);

#endif
