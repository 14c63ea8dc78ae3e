// Portable scaling kernels.  The vector kernels share the row helpers
// declared in orvikScale.h, so both give the same bytes by construction
// wherever a border or a table decides the result.
#include <math.h>
#include <string.h>

#include <algorithm>

#include "orvikGradient.h"
#include "orvikInternal.h"
#include "orvikScale.h"

// ---- Tables and helpers ------------------------------------------------------------

namespace {

constexpr uint32_t reciprocal(uint32_t n) {
  return n < 2 ? 0xFFFFFFFFu : uint32_t(((uint64_t(1) << 32) + n - 1) / n);
}

struct DivTable {
  uint32_t entries[401];
  constexpr DivTable() : entries() {
    for (uint32_t n = 0; n < 401; ++n) entries[n] = reciprocal(n);
  }
};
constexpr DivTable kDivTable;

}  // namespace

extern "C" {

// Written out by the compiler from kDivTable; exported as a plain array.
const uint32_t mn_div_table[401] = {
#define OVK_ROW(n) kDivTable.entries[n], kDivTable.entries[n + 1], kDivTable.entries[n + 2], kDivTable.entries[n + 3]
#define OVK_ROW16(n) OVK_ROW(n), OVK_ROW(n + 4), OVK_ROW(n + 8), OVK_ROW(n + 12)
#define OVK_ROW80(n) OVK_ROW16(n), OVK_ROW16(n + 16), OVK_ROW16(n + 32), OVK_ROW16(n + 48), OVK_ROW16(n + 64)
    OVK_ROW80(0), OVK_ROW80(80), OVK_ROW80(160), OVK_ROW80(240), OVK_ROW80(320), kDivTable.entries[400]
#undef OVK_ROW80
#undef OVK_ROW16
#undef OVK_ROW
};

OVK_API uint32_t ovkGetNumBits(uint16_t value) {
  uint32_t bits = 0;
  for (uint32_t v = value; v != 0; v >>= 1) ++bits;
  return bits;
}

OVK_API uint32_t ovkGetMaxNumTrail0s(uint16_t value) {
  uint32_t zeros = 0;
  for (uint32_t v = value; zeros < 15 && (v & 1) == 0; v >>= 1) ++zeros;
  return zeros;
}

}  // extern "C"

// ---- Shared row helpers -------------------------------------------------------------

ovkGaussTaps ovkGaussian5Taps(uint32_t centre, uint32_t size) {
  static const uint32_t kWeights[5] = {1, 4, 6, 4, 1};
  const int32_t first = centre >= 2 ? -2 : -int32_t(centre);
  const int32_t last = int32_t(std::min<uint64_t>(2, uint64_t(size) - 1 - centre));
  uint32_t weight = 0;
  for (int32_t i = first; i <= last; ++i) weight += kWeights[i + 2];
  return {first, last, weight};
}

// 1/W rounded to single precision: 0.0082644625 for 121, 0.0056818184 for
// 176, 0.0060606059 for 165, 0.0041666669 for 240, 0.0044444446 for 225,
// 0.0090909088 for 110, 0.0062500001 for 160, 0.0066666668 for 150 and
// 0.0099999998 for 100.
double ovkGaussianBorderFactor(uint32_t weight) { return double(ovkGaussianFloatFactor(weight)); }

float ovkGaussianFloatFactor(uint32_t weight) { return float(1.0 / double(weight)); }

uint8_t ovkGaussianDown5Finish(const uint16_t* centreSum, ovkGaussTaps columns, uint32_t rowWeight) {
  static const uint32_t kWeights[5] = {1, 4, 6, 4, 1};
  uint32_t sum = 0;
  for (int32_t i = columns.first; i <= columns.last; ++i) sum += kWeights[i + 2] * centreSum[i];
  const uint32_t weight = rowWeight * columns.weight;
  if (weight == 256) return uint8_t((sum + 128) >> 8);
  return uint8_t(int32_t(floor(0.5 + double(sum) * ovkGaussianBorderFactor(weight))));
}

// Which NaN an operation on NaNs returns depends on the processor and on
// the compiler's operand order, so every NaN result is the one quiet NaN.
float ovkGaussianDown5FinishF(const float* centreSum, ovkGaussTaps columns, uint32_t rowWeight) {
  static const float kWeights[5] = {1.0f, 4.0f, 6.0f, 4.0f, 1.0f};
  float sum = kWeights[columns.first + 2] * centreSum[columns.first];
  for (int32_t i = columns.first + 1; i <= columns.last; ++i) sum = sum + kWeights[i + 2] * centreSum[i];
  const float scaled = sum * ovkGaussianFloatFactor(rowWeight * columns.weight);
  return scaled != scaled ? ovkCanonicalNaN() : scaled;
}

uint32_t ovkGaussianDown5Rows(const uint8_t* src, uint32_t height, uint32_t stride, uint32_t y,
                              const uint8_t** rows) {
  const ovkGaussTaps taps = ovkGaussian5Taps(2 * y, height);
  for (int32_t j = -2; j <= 2; ++j)
    rows[j + 2] = j >= taps.first && j <= taps.last ? src + (size_t(2 * y) + j) * stride : nullptr;
  return taps.weight;
}

uint16_t ovkGaussianDown5Vertical(const uint8_t* const* rows, size_t x) {
  static const uint16_t kWeights[5] = {1, 4, 6, 4, 1};
  uint32_t sum = 0;
  for (int j = 0; j < 5; ++j)
    if (rows[j]) sum += kWeights[j] * rows[j][x];
  return uint16_t(sum);
}

// Kept taps in order, top to bottom; the kept rows are contiguous.  Rows
// may sit at any byte address.
float ovkGaussianDown5VerticalF(const uint8_t* const* rows, size_t x) {
  static const float kWeights[5] = {1.0f, 4.0f, 6.0f, 4.0f, 1.0f};
  int j = 0;
  while (!rows[j]) ++j;
  float sum = kWeights[j] * ovkLoadElement<float>(rows[j], x);
  for (++j; j < 5 && rows[j]; ++j) sum = sum + kWeights[j] * ovkLoadElement<float>(rows[j], x);
  return sum;
}

bool ovkNearestAxes(uint32_t srcWidth, uint32_t dstWidth, uint32_t srcHeight, uint32_t dstHeight,
                    ovkNearestAxis* columns, ovkNearestAxis* rows) {
  struct Bits {
    uint32_t nd, ns, td, ts;
  };
  const auto bitsOf = [](uint32_t src, uint32_t dst) {
    return Bits{ovkGetNumBits(uint16_t(dst)), ovkGetNumBits(uint16_t(src)), ovkGetMaxNumTrail0s(uint16_t(dst)),
                ovkGetMaxNumTrail0s(uint16_t(src))};
  };
  const Bits cb = bitsOf(srcWidth, dstWidth), rb = bitsOf(srcHeight, dstHeight);
  const bool split = cb.ns + cb.nd - cb.ts > 16 || rb.ns + rb.nd - rb.ts > 16;
  const auto axis = [split](const Bits& k, uint32_t src, uint32_t dst, ovkNearestAxis* out) {
    const uint32_t a = split ? k.nd >> 1 : 0, b = split ? (k.nd + 1) >> 1 : 0;
    const int8_t p = int8_t(32 + k.ts - k.ns - k.nd + a);
    if (int8_t(p - 32) >= 0 || p < 0) return false;
    const uint32_t od = dst >> k.td, os = src >> k.ts;
    const uint32_t r = ((uint32_t(1) << p) + (dst >> (k.td + 1))) / od;
    const int32_t s = int32_t(p) + int32_t(k.td) - int32_t(k.ts) - int32_t(b);
    if (s < 0 || s > 31) return false;
    *out = {r * os, uint32_t(s), b, ((uint32_t(1) << b) - 1) & 0xFF, split};
    return true;
  };
  return axis(cb, srcWidth, dstWidth, columns) && axis(rb, srcHeight, dstHeight, rows);
}

uint32_t ovkNearestSource(const ovkNearestAxis& axis, uint32_t i, uint32_t srcSize) {
  uint32_t scaled;
  if (axis.split)
    scaled = (((axis.R * (i & axis.mask)) >> axis.b) + ((i >> axis.b) & 0xFF) * axis.R) >> axis.S;
  else
    scaled = (i * axis.R) >> axis.S;
  return std::min(srcSize - 1, scaled & 0xFFFF);
}

void ovkBilinearTaps(uint32_t srcSize, uint32_t dstSize, const ovkBilinearTable& taps) {
  const float ratio = float(dstSize) / float(srcSize);
  const float highest = float(srcSize - 1);
  for (uint32_t i = 0; i < dstSize; ++i) {
    float s = (float(i) + 0.5f) / ratio - 0.5f;
    s = std::min(std::max(s, 0.0f), highest);
    const int32_t index = int32_t(floorf(s));
    const float f = s - float(index);
    const uint32_t w0 = uint32_t(int32_t((1.0f - f) * 2048.0f + 0.5f)), w1 = uint32_t(int32_t(f * 2048.0f + 0.5f));
    taps.index[i] = uint32_t(index);
    taps.weights[i] = w0 | w1 << 16;
    const uint32_t offset = uint32_t(index) - taps.index[i & ~3u];
    taps.shuffle[i] = offset <= 14 ? offset | 0x80u << 8 | (offset + 1) << 16 | 0x80u << 24 : 0x80808080u;
  }
}

// ---- Fixed-ratio reductions ----------------------------------------------------------

int32_t ovkScaleDownBy2u8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                           uint8_t* dst, uint32_t dstStride) {
  for (uint32_t y = 0; y < srcHeight / 2; ++y) {
    const uint8_t* top = src + size_t(2 * y) * srcStride;
    const uint8_t* bottom = top + srcStride;
    uint8_t* out = dst + size_t(y) * dstStride;
    for (uint32_t x = 0; x < srcWidth / 2; ++x)
      out[x] = uint8_t((top[2 * x] + top[2 * x + 1] + bottom[2 * x] + bottom[2 * x + 1]) >> 2);
  }
  return 0;
}

int32_t ovkScaleDownBy4u8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                           uint8_t* dst, uint32_t dstStride) {
  for (uint32_t y = 0; y < srcHeight / 4; ++y) {
    const uint8_t* block = src + size_t(4 * y) * srcStride;
    uint8_t* out = dst + size_t(y) * dstStride;
    for (uint32_t x = 0; x < srcWidth / 4; ++x) {
      uint32_t sum = 0;
      for (uint32_t j = 0; j < 4; ++j)
        for (uint32_t i = 0; i < 4; ++i) sum += block[size_t(j) * srcStride + 4 * x + i];
      out[x] = uint8_t(sum >> 4);
    }
  }
  return 0;
}

int32_t ovkScaleDown3To2u8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                            uint8_t* dst, uint32_t dstStride) {
  if (srcWidth < 3 || srcHeight < 3) return 1;
  for (uint32_t by = 0; by + 2 < srcHeight; by += 3) {
    const uint8_t* r0 = src + size_t(by) * srcStride;
    const uint8_t* r1 = r0 + srcStride;
    const uint8_t* r2 = r1 + srcStride;
    uint8_t* top = dst + size_t(by / 3 * 2) * dstStride;
    uint8_t* bottom = top + dstStride;
    for (uint32_t bx = 0; bx + 2 < srcWidth; bx += 3) {
      const uint32_t centre = r1[bx + 1], ox = bx / 3 * 2;
      top[ox] = uint8_t((9 * r0[bx] + 3 * r0[bx + 1] + 3 * r1[bx] + centre) >> 4);
      top[ox + 1] = uint8_t((9 * r0[bx + 2] + 3 * r0[bx + 1] + 3 * r1[bx + 2] + centre) >> 4);
      bottom[ox] = uint8_t((9 * r2[bx] + 3 * r2[bx + 1] + 3 * r1[bx] + centre) >> 4);
      bottom[ox + 1] = uint8_t((9 * r2[bx + 2] + 3 * r2[bx + 1] + 3 * r1[bx + 2] + centre) >> 4);
    }
  }
  return 0;
}

// ---- Nearest neighbour and integer-factor box ------------------------------------------

int32_t ovkScaleDownNNu8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                          uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  if (srcWidth == dstWidth && srcHeight == dstHeight) {
    for (uint32_t y = 0; y < dstHeight; ++y)
      memcpy(dst + size_t(y) * dstStride, src + size_t(y) * srcStride, dstWidth);
    return 0;
  }
  ovkNearestAxis columns, rows;
  if (!ovkNearestAxes(srcWidth, dstWidth, srcHeight, dstHeight, &columns, &rows)) return 1;
  for (uint32_t y = 0; y < dstHeight; ++y) {
    const uint8_t* in = src + size_t(ovkNearestSource(rows, y, srcHeight)) * srcStride;
    uint8_t* out = dst + size_t(y) * dstStride;
    for (uint32_t x = 0; x < dstWidth; ++x) out[x] = in[ovkNearestSource(columns, x, srcWidth)];
  }
  return 0;
}

void ovkScaleDownu8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                     uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  const uint32_t fx = srcWidth / dstWidth, fy = srcHeight / dstHeight;
  const uint64_t area = uint64_t(fx) * fy;
  for (uint32_t y = 0; y < dstHeight; ++y) {
    const uint8_t* block = src + size_t(y) * fy * srcStride;
    uint8_t* out = dst + size_t(y) * dstStride;
    for (uint32_t x = 0; x < dstWidth; ++x) {
      uint64_t sum = 0;
      for (uint32_t j = 0; j < fy; ++j)
        for (uint32_t i = 0; i < fx; ++i) sum += block[size_t(j) * srcStride + size_t(x) * fx + i];
      out[x] = uint8_t(sum / area);
    }
  }
}

// ---- Bilinear reduction ----------------------------------------------------------------

namespace {

// Scratch of the bilinear reduction: two Q11 rows, then the column and row
// tables.  The size requested is the one the entry has always asked for.
uint64_t bilinearScratchBytes(uint32_t dstWidth, uint32_t dstHeight) {
  return ((uint64_t(dstWidth) * 8 + 120) & ~uint64_t(127)) + (uint64_t(dstHeight) + dstWidth) * 12;
}

void interpolateRow(const uint8_t* in, const ovkBilinearTable& columns, uint32_t srcWidth, uint32_t* out,
                    uint32_t count) {
  for (uint32_t x = 0; x < count; ++x) {
    const uint32_t i = columns.index[x], next = std::min(i + 1, srcWidth - 1);  // weight 0 at the clamp
    out[x] = ovkBilinearW0(columns.weights[x]) * in[i] + ovkBilinearW1(columns.weights[x]) * in[next];
  }
}

void combineRows(const uint32_t* upper, const uint32_t* lower, uint32_t w0, uint32_t w1, uint8_t* out,
                 uint32_t count) {
  for (uint32_t x = 0; x < count; ++x) out[x] = uint8_t((w0 * upper[x] + w1 * lower[x] + 0x200000u) >> 22);
}

}  // namespace

const ovkBilinearRowOps ovkBilinearRowOpsC = {interpolateRow, combineRows};

void* ovkBilinearScratch(uint32_t dstWidth, uint32_t dstHeight) {
  const uint64_t bytes = bilinearScratchBytes(dstWidth, dstHeight);
  void* block = bytes <= UINT32_MAX ? ovkGetScratchBufferAligned_(uint32_t(bytes), 16) : nullptr;
  if (!block) ovkFatal("src/cpu/orvikScaleC", __LINE__, "buffer");
  return block;
}

void ovkScaleDownBilinear(const ovkBilinearRowOps& ops, const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                          uint32_t srcStride, uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight,
                          uint32_t dstStride) {
  void* block = ovkBilinearScratch(dstWidth, dstHeight);
  uint8_t* base = static_cast<uint8_t*>(block);
  const size_t rowBytes = (size_t(dstWidth) * 8 + 120) & ~size_t(127);
  uint32_t* columnWords = reinterpret_cast<uint32_t*>(base + rowBytes);
  uint32_t* rowWords = columnWords + 3 * size_t(dstWidth);
  const ovkBilinearTable columnTaps = {columnWords, columnWords + dstWidth, columnWords + 2 * size_t(dstWidth)};
  const ovkBilinearTable rowTaps = {rowWords, rowWords + dstHeight, rowWords + 2 * size_t(dstHeight)};
  uint32_t* rows[2] = {reinterpret_cast<uint32_t*>(base), reinterpret_cast<uint32_t*>(base) + dstWidth};
  ovkBilinearTaps(srcWidth, dstWidth, columnTaps);
  ovkBilinearTaps(srcHeight, dstHeight, rowTaps);
  int64_t held[2] = {-1, -1};  // source row interpolated into rows[i]
  for (uint32_t y = 0; y < dstHeight; ++y) {
    const uint32_t top = rowTaps.index[y], below = std::min(top + 1, srcHeight - 1);
    if (held[0] != top) {
      if (held[1] == top) {
        std::swap(rows[0], rows[1]);
        std::swap(held[0], held[1]);
      } else {
        ops.interpolateRow(src + size_t(top) * srcStride, columnTaps, srcWidth, rows[0], dstWidth);
        held[0] = top;
      }
    }
    if (held[1] != below) {
      ops.interpolateRow(src + size_t(below) * srcStride, columnTaps, srcWidth, rows[1], dstWidth);
      held[1] = below;
    }
    ops.combineRows(rows[0], rows[1], ovkBilinearW0(rowTaps.weights[y]), ovkBilinearW1(rowTaps.weights[y]),
                    dst + size_t(y) * dstStride, dstWidth);
  }
  ovkReleaseScratchBuffer_(block);
}

void ovkScaleDownBLu8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                       uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  ovkScaleDownBilinear(ovkBilinearRowOpsC, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride);
}

// ---- M-by-N area reduction -------------------------------------------------------------

void ScaleDownMNu8CoreC(const uint16_t* columnSums, const uint8_t* columnCounts, uint32_t rowCount, uint8_t* dst,
                        uint32_t dstWidth) {
  size_t next = 0;
  for (uint32_t x = 0; x < dstWidth; ++x) {
    const uint32_t count = columnCounts[x];
    uint32_t sum = 0;
    if (count == 0) {
      sum = columnSums[next - 1];
    } else {
      for (uint32_t i = 0; i < count; ++i) sum += columnSums[next + i];
      next += count;
    }
    const uint64_t divisor = mn_div_table[rowCount * std::max(count, 1u)];
    dst[x] = uint8_t((uint64_t(sum) * divisor) >> 32);
  }
}

namespace {

// Block k of an axis covers source lines [start, end): the lines after the
// previous block, or the last line of its own when enlarging leaves it empty.
struct Block {
  uint32_t start, count;
};
Block blockOf(uint32_t k, uint32_t srcSize, uint32_t dstSize) {
  const uint32_t end = ovkBlockEnd(k, srcSize, dstSize), previous = k ? ovkBlockEnd(k - 1, srcSize, dstSize) : 0;
  const uint32_t start = std::min(previous, end - 1);
  return {start, end - start};
}

// One scratch block: the column counts (32-byte aligned), then the 16-bit
// column sums of `channels` interleaved channels, then (two channels) each
// channel's sums apart.
struct MNScratch {
  explicit MNScratch(uint32_t srcWidth, uint32_t dstWidth, uint32_t channels) {
    const uint64_t bytes = uint64_t(srcWidth) * 4 * channels + uint64_t(dstWidth) * channels + 128;
    if (bytes <= UINT32_MAX) block = static_cast<uint8_t*>(ovkGetScratchBufferUnaligned_(uint32_t(bytes)));
    if (!block) return;
    counts = block + (-reinterpret_cast<uintptr_t>(block) & 31);
    const uintptr_t afterCounts = reinterpret_cast<uintptr_t>(counts) + dstWidth;
    sums = reinterpret_cast<uint16_t*>(afterCounts + (-afterCounts & 31));
    channelSums[0] = sums + size_t(srcWidth) * channels;
    channelSums[1] = channelSums[0] + srcWidth;
  }
  ~MNScratch() {
    if (block) ovkReleaseScratchBuffer_(block);
  }
  MNScratch(const MNScratch&) = delete;
  MNScratch& operator=(const MNScratch&) = delete;

  uint8_t* block = nullptr;
  uint8_t* counts = nullptr;
  uint16_t* sums = nullptr;
  uint16_t* channelSums[2] = {nullptr, nullptr};
};

void fillColumnCounts(uint32_t srcWidth, uint32_t dstWidth, uint8_t* counts) {
  uint32_t previousEnd = 0;
  for (uint32_t k = 0; k < dstWidth; ++k) {
    const uint32_t end = ovkBlockEnd(k, srcWidth, dstWidth);
    counts[k] = uint8_t(end - previousEnd);
    previousEnd = end;
  }
}

void sumRowsC(const uint8_t* first, uint32_t stride, uint32_t rows, uint32_t values, uint16_t* sums) {
  for (uint32_t i = 0; i < values; ++i) sums[i] = first[i];
  for (uint32_t j = 1; j < rows; ++j) {
    const uint8_t* row = first + size_t(j) * stride;
    for (uint32_t i = 0; i < values; ++i) sums[i] = uint16_t(sums[i] + row[i]);
  }
}

void deinterleaveC(const uint16_t* pairs, uint16_t* first, uint16_t* second, uint32_t count) {
  for (uint32_t i = 0; i < count; ++i) {
    first[i] = pairs[2 * i];
    second[i] = pairs[2 * i + 1];
  }
}

void interleaveC(const uint8_t* first, const uint8_t* second, uint8_t* pairs, uint32_t count) {
  for (uint32_t i = 0; i < count; ++i) {
    pairs[2 * i] = first[i];
    pairs[2 * i + 1] = second[i];
  }
}

// Two channels go through the row core a chunk of destination columns at a
// time, so that their results fit the stack before being interleaved.
constexpr uint32_t kMNChunk = 256;

void reduceTwoChannels(const ovkScaleDownMNRowFn core, const MNScratch& scratch, uint32_t dstWidth, uint32_t rows,
                       void (*interleave)(const uint8_t*, const uint8_t*, uint8_t*, uint32_t), uint8_t* out) {
  uint8_t results[2][kMNChunk];
  size_t consumed = 0;  // source columns before the chunk
  for (uint32_t k0 = 0; k0 < dstWidth; k0 += kMNChunk) {
    const uint32_t count = std::min(kMNChunk, dstWidth - k0);
    for (uint32_t c = 0; c < 2; ++c) core(scratch.channelSums[c] + consumed, scratch.counts + k0, rows, results[c], count);
    interleave(results[0], results[1], out + 2 * size_t(k0), count);
    for (uint32_t k = k0; k < k0 + count; ++k) consumed += scratch.counts[k];
  }
}

}  // namespace

const ovkMNRowOps ovkMNRowOpsC = {sumRowsC, deinterleaveC, interleaveC, nullptr};

void ovkScaleDownMN(const ovkMNRowOps& ops, const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                    uint32_t srcStride, uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride,
                    uint32_t channels) {
  MNScratch scratch(srcWidth, dstWidth, channels);
  if (!scratch.block) return;
  const ovkScaleDownMNRowFn core = ops.core ? ops.core : ScaleDownMNu8Core_;
  fillColumnCounts(srcWidth, dstWidth, scratch.counts);
  for (uint32_t y = 0; y < dstHeight; ++y) {
    const Block rows = blockOf(y, srcHeight, dstHeight);
    ops.sumRows(src + size_t(rows.start) * srcStride, srcStride, rows.count, srcWidth * channels, scratch.sums);
    uint8_t* out = dst + size_t(y) * dstStride;
    if (channels == 1) {
      core(scratch.sums, scratch.counts, rows.count, out, dstWidth);
      continue;
    }
    ops.deinterleave(scratch.sums, scratch.channelSums[0], scratch.channelSums[1], srcWidth);
    reduceTwoChannels(core, scratch, dstWidth, rows.count, ops.interleave, out);
  }
}

void ovkScaleDownMNu8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                       uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  ovkScaleDownMN(ovkMNRowOpsC, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride, 1);
}

void ovkScaleDownMNInterleaveu8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                 uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  ovkScaleDownMN(ovkMNRowOpsC, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride, 2);
}

// ---- Gaussian reductions -------------------------------------------------------------

void ovkScaleDownBy2Gaussian5x5u8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                   uint8_t* dst, uint32_t dstStride) {
  for (uint32_t y = 0; y < srcHeight / 2; ++y) {
    const uint8_t* rows[5];
    const uint32_t rowWeight = ovkGaussianDown5Rows(src, srcHeight, srcStride, y, rows);
    uint8_t* out = dst + size_t(y) * dstStride;
    for (uint32_t x = 0; x < srcWidth / 2; ++x) {
      const ovkGaussTaps columns = ovkGaussian5Taps(2 * x, srcWidth);
      uint16_t sums[5];
      for (int32_t i = columns.first; i <= columns.last; ++i) sums[i + 2] = ovkGaussianDown5Vertical(rows, 2 * x + i);
      out[x] = ovkGaussianDown5Finish(sums + 2, columns, rowWeight);
    }
  }
}

void ovkScaleDownBy2Gaussian5x5f32C(const float* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                    float* dst, uint32_t dstStride) {
  const uint8_t* base = reinterpret_cast<const uint8_t*>(src);
  for (uint32_t y = 0; y < srcHeight / 2; ++y) {
    const uint8_t* rows[5];
    const uint32_t rowWeight = ovkGaussianDown5Rows(base, srcHeight, srcStride, y, rows);
    uint8_t* out = reinterpret_cast<uint8_t*>(dst) + size_t(y) * dstStride;
    for (uint32_t x = 0; x < srcWidth / 2; ++x) {
      const ovkGaussTaps columns = ovkGaussian5Taps(2 * x, srcWidth);
      float sums[5];
      for (int32_t i = columns.first; i <= columns.last; ++i) sums[i + 2] = ovkGaussianDown5VerticalF(rows, 2 * x + i);
      ovkStoreElement(out, x, ovkGaussianDown5FinishF(sums + 2, columns, rowWeight));
    }
  }
}

void ovkScaleDownBy2Gaussian5x5f32_v2C(const float* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                       float* dst, uint32_t dstStride) {
  ovkScaleDownBy2Gaussian5x5f32C(src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

void ovkScaleDownBy2Gaussian3x3u8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                   uint8_t* dst, uint32_t dstStride) {
  for (uint32_t y = 0; y < srcHeight / 2; ++y) {
    const uint8_t* centre = src + size_t(2 * y) * srcStride;
    const uint8_t* above = y ? centre - srcStride : centre;
    const uint8_t* below = centre + srcStride;
    uint8_t* out = dst + size_t(y) * dstStride;
    for (uint32_t x = 0; x < srcWidth / 2; ++x) {
      const uint32_t c = 2 * x, l = x ? c - 1 : 0, r = c + 1;
      const uint32_t left = above[l] + 2 * centre[l] + below[l];
      const uint32_t middle = above[c] + 2 * centre[c] + below[c];
      const uint32_t right = above[r] + 2 * centre[r] + below[r];
      out[x] = uint8_t((left + 2 * middle + right + 8) >> 4);
    }
  }
}

// ---- Gaussian up by 2 -----------------------------------------------------------------

// Both output rows of source row y.  v(x) is the row's weighted vertical sum
// (c, or 4 d) of column x.
template <class VerticalSum>
void gaussianUpRow(VerticalSum v, uint32_t width, uint8_t* out) {
  for (uint32_t x = 0; x < width; ++x) {
    const uint32_t left = v(ovkUpSourceLine(int64_t(x) - 1, width)), right = v(ovkUpSourceLine(int64_t(x) + 1, width));
    const uint32_t centre = v(x);
    out[2 * x] = uint8_t((left + 6 * centre + right + 32) >> 6);
    out[2 * x + 1] = uint8_t((4 * centre + 4 * right + 32) >> 6);
  }
}

int32_t ovkScaleUpBy2Gaussian5x5u8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                    uint8_t* dst, uint32_t dstStride) {
  for (uint32_t y = 0; y < srcHeight; ++y) {
    const uint8_t* above = src + size_t(ovkUpSourceLine(int64_t(y) - 1, srcHeight)) * srcStride;
    const uint8_t* centre = src + size_t(y) * srcStride;
    const uint8_t* below = src + size_t(ovkUpSourceLine(int64_t(y) + 1, srcHeight)) * srcStride;
    uint8_t* even = dst + size_t(2 * y) * dstStride;
    gaussianUpRow([&](uint32_t x) { return uint32_t(above[x] + 6 * centre[x] + below[x]); }, srcWidth, even);
    gaussianUpRow([&](uint32_t x) { return uint32_t(4 * (centre[x] + below[x])); }, srcWidth, even + dstStride);
  }
  return int32_t(srcHeight);
}
