// Pieces of the 5x5 and 11x11 Gaussians shared by the portable and the
// vector kernels.  Strides are in bytes; pixels may sit at any address.
#ifndef ORVIK_GAUSSIAN_H
#define ORVIK_GAUSSIAN_H

#include <stdint.h>

#include "orvik.h"

// A pass over a whole image: the interior pixels (at least the kernel radius
// from every edge) or the band along the edges.
template <class Pixel>
using ovkGaussianPassFn = void (*)(const Pixel* src, uint32_t width, uint32_t height, uint32_t srcStride,
                                   Pixel* dst, uint32_t dstStride);

void ovkGaussian5x5u8InteriorC(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                               uint8_t* dst, uint32_t dstStride);
void ovkGaussian11x11u8InteriorC(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                                 uint8_t* dst, uint32_t dstStride);
void ovkGaussian5x5s16InteriorC(const int16_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                                int16_t* dst, uint32_t dstStride);
void ovkGaussian5x5s32InteriorC(const int32_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                                int32_t* dst, uint32_t dstStride);

// The band of 2 (5x5) or 5 (11x11) rows and columns along each edge, each
// pixel the weighted sum of its in-image taps divided by their weight sum.
// An image too small for an interior is band throughout.
void ovkGaussian5x5u8BlurBandC(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                               uint8_t* dst, uint32_t dstStride);
void ovkGaussian11x11u8BlurBandC(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                                 uint8_t* dst, uint32_t dstStride);
void ovkGaussian5x5s16BlurBandC(const int16_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                                int16_t* dst, uint32_t dstStride);
void ovkGaussian5x5s32BlurBandC(const int32_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                                int32_t* dst, uint32_t dstStride);

// Pixels xBegin .. xEnd-1 of row y of the 11x11 band; dstRow is row y of dst.
void ovkGaussian11x11u8BandRunC(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint32_t y,
                                uint32_t xBegin, uint32_t xEnd, uint8_t* dstRow);

// The whole filter: the interior, then the band when blurBorder is 1.
template <class Pixel>
inline void ovkGaussianFilter(ovkGaussianPassFn<Pixel> interior, ovkGaussianPassFn<Pixel> blurBand,
                              const Pixel* src, uint32_t width, uint32_t height, uint32_t srcStride, Pixel* dst,
                              uint32_t dstStride, int32_t blurBorder) {
  interior(src, width, height, srcStride, dst, dstStride);
  if (blurBorder == 1) blurBand(src, width, height, srcStride, dst, dstStride);
}

#endif
