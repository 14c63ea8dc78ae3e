// Scaling pieces shared by the portable and the vector kernels: the border
// rules of the Gaussian reductions, the nearest-neighbour reciprocals, the
// M-by-N blocks and the bilinear tables.  Vector kernels run their inner
// columns themselves and hand borders to these, so both give the same bytes.
#ifndef ORVIK_SCALE_H
#define ORVIK_SCALE_H

#include <stddef.h>
#include <stdint.h>

#include "orvik.h"

// ---- Gaussian 5x5 down by 2 --------------------------------------------------------

// Taps of 1 4 6 4 1 centred on `centre` that lie on a line of `size`
// pixels: offsets first..last from the centre, and their weight sum (10, 11,
// 15 or 16).
struct ovkGaussTaps {
  int32_t first, last;
  uint32_t weight;
};
ovkGaussTaps ovkGaussian5Taps(uint32_t centre, uint32_t size);

// 1 / W rounded to single precision; the border factor is that value in
// double.
float ovkGaussianFloatFactor(uint32_t weight);
double ovkGaussianBorderFactor(uint32_t weight);

// The five source rows of output row y (null where a tap falls outside) and
// their weight sum.
uint32_t ovkGaussianDown5Rows(const uint8_t* src, uint32_t height, uint32_t stride, uint32_t y, const uint8_t** rows);

// Weighted vertical sum of column x over the kept rows; the float form adds
// the kept taps top to bottom.
uint16_t ovkGaussianDown5Vertical(const uint8_t* const* rows, size_t x);
float ovkGaussianDown5VerticalF(const uint8_t* const* rows, size_t x);

// One output pixel from the vertical sums around its centre column
// (centreSum[i] for the kept offsets i of `columns`).
uint8_t ovkGaussianDown5Finish(const uint16_t* centreSum, ovkGaussTaps columns, uint32_t rowWeight);
float ovkGaussianDown5FinishF(const float* centreSum, ovkGaussTaps columns, uint32_t rowWeight);

// ---- Gaussian up by 2 --------------------------------------------------------------

// Source line standing in for line i (-1 .. size) of a line of `size`:
// reflected before the start (the line itself when there is no second one),
// the last one repeated after the end.
inline uint32_t ovkUpSourceLine(int64_t i, uint32_t size) {
  if (i < 0) return size > 1 ? 1 : 0;
  if (i >= int64_t(size)) return size - 1;
  return uint32_t(i);
}

// ---- Nearest neighbour -------------------------------------------------------------

struct ovkNearestAxis {
  uint32_t R, S, b, mask;
  bool split;
};

// Both axes' reciprocals; false when the exponent does not fit a shift.
bool ovkNearestAxes(uint32_t srcWidth, uint32_t dstWidth, uint32_t srcHeight, uint32_t dstHeight,
                    ovkNearestAxis* columns, ovkNearestAxis* rows);
uint32_t ovkNearestSource(const ovkNearestAxis& axis, uint32_t i, uint32_t srcSize);

// ---- M-by-N blocks -----------------------------------------------------------------

// End (exclusive) of destination block k: ceil((k + 1) src / dst).
inline uint32_t ovkBlockEnd(uint32_t k, uint32_t srcSize, uint32_t dstSize) {
  return uint32_t(((uint64_t(k) + 1) * srcSize + dstSize - 1) / dstSize);
}

// Row operations of the M-by-N reductions; the schedules, the scratch block
// and the chunking of two channels are shared.
struct ovkMNRowOps {
  // sums[i] = the sum of column i over `rows` rows from `first`
  void (*sumRows)(const uint8_t* first, uint32_t stride, uint32_t rows, uint32_t values, uint16_t* sums);
  // pairs -> first[i] = pairs[2i], second[i] = pairs[2i + 1]
  void (*deinterleave)(const uint16_t* pairs, uint16_t* first, uint16_t* second, uint32_t count);
  // the reverse, on bytes
  void (*interleave)(const uint8_t* first, const uint8_t* second, uint8_t* pairs, uint32_t count);
  // null: the inner-kernel slot, whatever it holds at the time of the call
  ovkScaleDownMNRowFn core;
};

extern const ovkMNRowOps ovkMNRowOpsC;

void ovkScaleDownMN(const ovkMNRowOps& ops, const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                    uint32_t srcStride, uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride,
                    uint32_t channels);

// ---- Bilinear reduction ------------------------------------------------------------

// Taps of one axis, three arrays of one word per output carved from the
// scratch block: the first source index, both Q11 weights in one word
// (w0 | w1 << 16), and a byte-shuffle word that picks in[index] and
// in[index + 1] into the two 16-bit halves of a lane from the 16 bytes at
// the index of the output's group of four (outputs 4k .. 4k + 3); bytes 0x80
// read zero.  Groups whose indexes spread more than 14 have no usable
// shuffle words.
struct ovkBilinearTable {
  uint32_t* index;
  uint32_t* weights;
  uint32_t* shuffle;
};
void ovkBilinearTaps(uint32_t srcSize, uint32_t dstSize, const ovkBilinearTable& taps);

inline uint32_t ovkBilinearW0(uint32_t weights) { return weights & 0xFFFF; }
inline uint32_t ovkBilinearW1(uint32_t weights) { return weights >> 16; }

// Row operations of the bilinear reduction; the outer loop, its scratch and
// its fatal failure are shared.
struct ovkBilinearRowOps {
  // out[x] = w0 in[index] + w1 in[min(index + 1, srcWidth - 1)] for output x
  void (*interpolateRow)(const uint8_t* in, const ovkBilinearTable& columns, uint32_t srcWidth, uint32_t* out,
                         uint32_t count);
  // out[x] = (w0 upper[x] + w1 lower[x] + 2^21) >> 22, truncated to a byte
  void (*combineRows)(const uint32_t* upper, const uint32_t* lower, uint32_t w0, uint32_t w1, uint8_t* out,
                      uint32_t count);
};

extern const ovkBilinearRowOps ovkBilinearRowOpsC;

// The reduction's scratch block (tables and two rows), 16-byte aligned; ends
// the process when there is none.
void* ovkBilinearScratch(uint32_t dstWidth, uint32_t dstHeight);

void ovkScaleDownBilinear(const ovkBilinearRowOps& ops, const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                          uint32_t srcStride, uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight,
                          uint32_t dstStride);

#endif
