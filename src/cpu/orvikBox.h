// Box (mean) filters shared by the portable and the vector kernels.  A filter
// runs in strips of columns: per output row it keeps sliding 16-bit column
// sums over 2r+1 source rows, pads them with the column sums of the missing
// columns, then averages 2r+1 neighbouring column sums.  Only the row
// operations differ between the kernels.
#ifndef ORVIK_BOX_H
#define ORVIK_BOX_H

#include <stdint.h>

#include "orvik.h"

// Reciprocals of the tap counts, applied as (sum * m + 32768) >> 16.
enum : uint32_t { OVK_BOX_MUL_3X3 = 7282, OVK_BOX_MUL_5X5 = 2621, OVK_BOX_MUL_11X11 = 542 };

struct ovkBoxRowOps {
  // sums[i] += row[i]
  void (*addRow)(uint16_t* sums, const uint8_t* row, uint32_t count);
  // sums[i] += entering[i] - leaving[i]
  void (*slideRow)(uint16_t* sums, const uint8_t* entering, const uint8_t* leaving, uint32_t count);
  // out[i] = ((sums[i] + ... + sums[i + taps - 1]) * multiplier + 32768) >> 16
  void (*meanRow)(const uint16_t* sums, uint32_t taps, uint32_t multiplier, uint8_t* out, uint32_t count);
};

extern const ovkBoxRowOps ovkBoxRowOpsC;

// 3x3 with a border type: missing taps read 0 (undefined), borderValue
// (constant) or the nearest edge pixel (replicate); the divisor stays nine.
ovkStatusCode ovkBox3x3Filter(const ovkBoxRowOps& ops, const uint8_t* src, uint32_t width, uint32_t height,
                              uint32_t srcStride, uint8_t* dst, uint32_t dstStride, ovkBorderType borderType,
                              uint8_t borderValue);

// (2 radius + 1)^2 box whose missing taps read 0, divisor the full tap count.
void ovkBoxZeroBorderFilter(const ovkBoxRowOps& ops, uint32_t radius, uint32_t multiplier, const uint8_t* src,
                            uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst, uint32_t dstStride);

#endif
