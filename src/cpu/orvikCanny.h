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

// Zeroes the gradients and magnitudes of the outermost rows and columns, the
// part of a gradient pass that is the same for every implementation.
void ovkCannyClearBorder(uint32_t width, uint32_t height, const ovkCannyGradients& gradients, uint16_t* magnitude);

// Classes of the edge map while it is built.
enum : uint8_t { kCannyNotEdge = 0, kCannyWeak = 1, kCannyEdge = 2 };

// Classifies the interior pixels into `map` (a packed plane; the outermost
// rows and columns are left alone): a pixel survives when its magnitude is
// above `low`, above its neighbour before it along the quantised gradient
// (left, above, or above on the diagonal) and not below the one after it;
// survivors above `high` are edges, the others weak.
using ovkCannySuppressPassFn = void (*)(const uint16_t* magnitude, const ovkCannyGradients& gradients, uint32_t width,
                                        uint32_t height, int32_t low, int32_t high, uint8_t* map);
void ovkCannySuppressPassC(const uint16_t* magnitude, const ovkCannyGradients& gradients, uint32_t width,
                           uint32_t height, int32_t low, int32_t high, uint8_t* map);

// tan(22.5 deg) in Q15; tan(67.5 deg) is 2 + it.
constexpr int32_t kCannyTan22Q15 = 13573;

struct ovkCannyPasses {
  ovkCannyGradientPassFn gradients;
  ovkCannySuppressPassFn suppress;
};

// Writes the edge map of the whole image (255 edge, 0 elsewhere) and, with
// both gradient planes given, leaves the gradients there; otherwise they
// live in scratch memory.  Returns false, writing nothing, when the scratch
// pool has no room.  Needs width and height of at least 3.
bool ovkCannyDetect(const ovkCannyPasses& passes, const uint8_t* src, uint32_t width, uint32_t height,
                    uint32_t srcStride, uint8_t* dst, uint32_t dstStride, int16_t* gx, int16_t* gy, uint32_t gradStride,
                    int32_t low, int32_t high);

#endif
