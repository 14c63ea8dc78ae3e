// General resizers shared by the portable and the vector kernels: the
// polyphase enlargement and the nearest / bilinear / area resize run in
// strips of outputs whose tables (source columns, phases, fractions) are
// built once per strip by the same code; only the row operations differ
// between the kernels, so every kernel gives the same bytes.
#ifndef ORVIK_RESIZE_H
#define ORVIK_RESIZE_H

#include <stddef.h>
#include <stdint.h>

#include "orvik.h"

// ---- Polyphase resize -------------------------------------------------------------------

// A strip reads at most OVK_POLY_SPAN source columns and writes at most
// OVK_POLY_OUTPUTS pixels, so that its tables and the column sums of one
// output row stay on the stack.  OVK_POLY_TABLE_BYTES is room for the row
// operations' own tables of one strip.
enum : uint32_t { OVK_POLY_SPAN = 1024, OVK_POLY_OUTPUTS = 512, OVK_POLY_TABLE_BYTES = 10240 };

// The taps of one output inside its strip: offsets from the strip's first
// source column (edges already clamped) and the phase's four Q7 weights.
struct ovkPolyTap {
  uint16_t offset[4];
  const int32_t* weights;
};

struct ovkPolyStrip {
  uint32_t count;     // outputs (pixels) of the strip
  uint32_t columns;   // source columns it reads, from its first
  uint32_t channels;  // 1, or 2 interleaved
  ovkPolyTap taps[OVK_POLY_OUTPUTS];
  // Column sums of the current output row.  The portable rows keep them
  // exact in 32 bits, interleaved like the pixels; the vector rows keep one
  // 16-bit plane per channel (see orvikResizeV.cpp).  The slack after each
  // plane lets a vector window start at any column.
  union {
    int32_t wide[2 * OVK_POLY_SPAN];
    int16_t narrow[2][OVK_POLY_SPAN + 16];
  } sums;
  alignas(16) uint8_t tables[OVK_POLY_TABLE_BYTES];
};

struct ovkPolyRowOps {
  // Once per strip, after its taps are set; may be null.
  void (*prepareStrip)(ovkPolyStrip& strip);
  // Column sums of one output row: lines[j] is source row j of the output
  // row at the strip's first column, weights its phase.
  void (*verticalRow)(const uint8_t* const* lines, const int32_t* weights, ovkPolyStrip& strip);
  // The strip's outputs of that row: (sum + 8192) >> 14 clamped to a byte.
  void (*horizontalRow)(const ovkPolyStrip& strip, uint8_t* out);
};

extern const ovkPolyRowOps ovkPolyRowOpsC;

void ovkScaleUpPoly(const ovkPolyRowOps& ops, const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                    uint32_t srcStride, uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride,
                    uint32_t channels);

// ---- Nearest, bilinear and area resize ---------------------------------------------------

// Nearest and bilinear strips: at most OVK_RESIZE_OUTPUTS outputs reading at
// most OVK_RESIZE_SPAN source columns.
enum : uint32_t { OVK_RESIZE_SPAN = 1024, OVK_RESIZE_OUTPUTS = 512, OVK_RESIZE_TABLE_BYTES = 10240 };

struct ovkResizeStrip {
  ovkInterpolationType interpolation;  // nearest or bilinear
  uint32_t srcWidth;
  uint32_t count;    // outputs of the strip
  uint32_t first;    // first source column it reads
  uint32_t columns;  // source columns it reads, from `first`
  // Nearest: the source column of each output.  Bilinear: the left tap, the
  // right one (the left one again at the last column) and the Q8 fraction.
  uint32_t column[OVK_RESIZE_OUTPUTS];
  uint32_t next[OVK_RESIZE_OUTPUTS];
  uint32_t fraction[OVK_RESIZE_OUTPUTS];
  // Room for the row operations: vertical sums of a row, and their tables.
  alignas(16) int16_t vertical[OVK_RESIZE_SPAN + 16];
  alignas(16) uint8_t tables[OVK_RESIZE_TABLE_BYTES];
};

struct ovkResizeRowOps {
  // Once per strip, after its columns are set; may be null.
  void (*prepareStrip)(ovkResizeStrip& strip);
  // out[k] = in[column[k]]; `in` is a whole source row.
  void (*nearestRow)(const uint8_t* in, ovkResizeStrip& strip, uint8_t* out);
  // out[k] = ((256 - fy) upper + fy lower + 32768) >> 16 with
  // upper = (256 - fx) top[column] + fx top[next], lower the same on bottom.
  void (*bilinearRow)(const uint8_t* top, const uint8_t* bottom, uint32_t fy, ovkResizeStrip& strip,
                      uint8_t* out);
};

extern const ovkResizeRowOps ovkResizeRowOpsC;

// The whole resize; the area average is portable in every kernel.
ovkStatusCode ovkResize(const ovkResizeRowOps& ops, const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                        uint32_t srcStride, uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride,
                        ovkInterpolationType interpolation);

#endif
