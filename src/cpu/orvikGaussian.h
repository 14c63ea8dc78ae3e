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

// Interior pixels (at least Radius from every edge) of the (2 Radius + 1)-tap
// filter; built for 8-bit 5x5 and 11x11 and the signed 5x5 forms.
template <class Pixel, int Radius>
void ovkGaussianInteriorC(const Pixel* src, uint32_t width, uint32_t height, uint32_t srcStride, Pixel* dst,
                          uint32_t dstStride);

// The band of Radius rows and columns along each edge, each pixel the
// weighted sum of its in-image taps divided by their weight sum.  An image
// too small for an interior is band throughout.
template <class Pixel, int Radius>
void ovkGaussianBlurBandC(const Pixel* src, uint32_t width, uint32_t height, uint32_t srcStride, Pixel* dst,
                          uint32_t dstStride);

// Pixels xBegin .. xEnd-1 of row y of the band, from and to raw bytes; dstRow
// is row y of dst.  Built for the 8-bit filters.
template <class Pixel, int Radius>
void ovkGaussianBandRunC(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint32_t y,
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
