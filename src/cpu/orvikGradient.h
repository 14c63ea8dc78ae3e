// The portable 3x3 gradient operators, shared by the gradient kernels and
// the Canny detector.
#ifndef ORVIK_GRADIENT_H
#define ORVIK_GRADIENT_H

#include <stdint.h>

#include "orvikInternal.h"

enum class ovkGradientOperator { kCentral, kSobel, kScharr };

// dx and dy at column x of `row`, with the rows above and below it.  Sums
// are 32-bit integers for 8-bit pixels and floats for float pixels, where
// each column is (above + 2 row) + below.
template <ovkGradientOperator Op, class Pixel, class Sum>
inline void ovkGradientAt(const uint8_t* above, const uint8_t* row, const uint8_t* below, uint32_t x, Sum& dx,
                          Sum& dy) {
  const auto at = [](const uint8_t* line, uint32_t column) { return Sum(ovkLoadElement<Pixel>(line, column)); };
  if constexpr (Op == ovkGradientOperator::kCentral) {
    dx = at(row, x + 1) - at(row, x - 1);
    dy = at(below, x) - at(above, x);
  } else {
    constexpr int kEdge = Op == ovkGradientOperator::kSobel ? 1 : 3;
    constexpr int kCentre = Op == ovkGradientOperator::kSobel ? 2 : 10;
    const auto column = [&](uint32_t c) {
      return Sum(kEdge) * at(above, c) + Sum(kCentre) * at(row, c) + Sum(kEdge) * at(below, c);
    };
    const auto line = [&](const uint8_t* l) {
      return Sum(kEdge) * at(l, x - 1) + Sum(kCentre) * at(l, x) + Sum(kEdge) * at(l, x + 1);
    };
    dx = column(x + 1) - column(x - 1);
    dy = line(below) - line(above);
  }
}

// The float-source Sobel stores every NaN as this quiet NaN (0x7FC00000).
inline float ovkCanonicalNaN() {
  const uint32_t bits = 0x7FC00000u;
  float value;
  __builtin_memcpy(&value, &bits, sizeof value);
  return value;
}

// Calls store(x, y, dx, dy) for every interior pixel; nothing for images
// narrower or lower than 3.
template <ovkGradientOperator Op, class Pixel, class Sum, class Store>
inline void ovkForEachInteriorGradient(const void* src, uint32_t width, uint32_t height, uint32_t srcStride,
                                       Store store) {
  if (width < 3 || height < 3) return;
  const auto* bytes = static_cast<const uint8_t*>(src);
  for (uint32_t y = 1; y + 1 < height; ++y) {
    const uint8_t* row = bytes + size_t(y) * srcStride;
    for (uint32_t x = 1; x + 1 < width; ++x) {
      Sum dx, dy;
      ovkGradientAt<Op, Pixel, Sum>(row - srcStride, row, row + srcStride, x, dx, dy);
      store(x, y, dx, dy);
    }
  }
}

#endif
