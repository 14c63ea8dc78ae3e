// The Canny detector shared by its entries' kernels.
#ifndef ORVIK_CANNY_H
#define ORVIK_CANNY_H

#include <stdint.h>

#include "orvikInternal.h"

// Planes of unscaled Sobel gradients, stride in bytes.
struct ovkCannyGradients {
  int16_t* gx;
  int16_t* gy;
  uint32_t stride;
};

// Writes the unscaled Sobel gradients of the interior and their L1
// magnitudes (a packed plane), 0 on the outermost rows and columns.  Needs
// width and height of at least 3.
using ovkCannyGradientPassFn = void (*)(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                                        const ovkCannyGradients& gradients, uint16_t* magnitude);
void ovkCannyGradientPassC(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                           const ovkCannyGradients& gradients, uint16_t* magnitude);

// Writes the edge map of the whole image (255 edge, 0 elsewhere) and, when
// `gradients` is given, leaves the gradients there; otherwise they live in
// scratch memory.  Returns false, writing nothing, when the scratch pool has
// no room.  Needs width and height of at least 3.
bool ovkCannyDetect(ovkCannyGradientPassFn gradientPass, const uint8_t* src, uint32_t width, uint32_t height,
                    uint32_t srcStride, uint8_t* dst, uint32_t dstStride, const ovkCannyGradients* gradients,
                    int32_t low, int32_t high);

// The same with the caller's gradient planes, which stay internal when
// either is null.
void ovkCannyDetectInto(ovkCannyGradientPassFn gradientPass, const uint8_t* src, uint32_t width, uint32_t height,
                        uint32_t srcStride, uint8_t* dst, uint32_t dstStride, int16_t* gx, int16_t* gy,
                        uint32_t gradStride, int32_t low, int32_t high);

#endif
