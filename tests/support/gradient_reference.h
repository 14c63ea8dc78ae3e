// The 3x3 gradients of an 8-bit image, written out pixel by pixel for the
// gradient and edge-detector tests.
#ifndef ORVIK_TEST_GRADIENT_REFERENCE_H
#define ORVIK_TEST_GRADIENT_REFERENCE_H

#include "support/guarded_image.h"

struct Gradient {
  int dx = 0, dy = 0;
};

// Right column minus left column (dx) and lower row minus upper row (dy), each
// weighted edge, centre, edge: 0 1 0 gives central differences, 1 2 1 Sobel and
// 3 10 3 Scharr.  Zero on the outermost rows and columns.
inline Gradient gradientAt(const GuardedImage& s, uint32_t x, uint32_t y, int edge, int centre) {
  if (x == 0 || y == 0 || x + 1 >= s.width() || y + 1 >= s.height()) return {};
  const auto p = [&](uint32_t cx, uint32_t cy) { return int(s.at(cx, cy)); };
  return {edge * (p(x + 1, y - 1) - p(x - 1, y - 1)) + centre * (p(x + 1, y) - p(x - 1, y)) +
              edge * (p(x + 1, y + 1) - p(x - 1, y + 1)),
          edge * (p(x - 1, y + 1) - p(x - 1, y - 1)) + centre * (p(x, y + 1) - p(x, y - 1)) +
              edge * (p(x + 1, y + 1) - p(x + 1, y - 1))};
}

inline Gradient sobelAt(const GuardedImage& s, uint32_t x, uint32_t y) { return gradientAt(s, x, y, 1, 2); }

#endif
