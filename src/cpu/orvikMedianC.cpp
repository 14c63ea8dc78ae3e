// Portable 3x3 median.
#include <algorithm>

#include "orvikInternal.h"
#include "orvikMedian.h"

namespace {

// Branch-free minimum and maximum of two pixel values: on real images the
// comparisons are unpredictable, and mispredicted branches would cost far
// more than the sorting itself.
int32_t lesser(int32_t a, int32_t b) {
  const int32_t difference = b - a;
  return a + (difference & (difference >> 31));
}

int32_t greater(int32_t a, int32_t b) {
  const int32_t difference = b - a;
  return b - (difference & (difference >> 31));
}

// One column of a neighbourhood, sorted.
struct SortedColumn {
  int32_t low, mid, high;
};

SortedColumn sortColumn(int32_t a, int32_t b, int32_t c) {
  const int32_t lowAB = lesser(a, b), highAB = greater(a, b);
  const int32_t high = greater(highAB, c), lowBC = lesser(highAB, c);
  return {lesser(lowAB, lowBC), greater(lowAB, lowBC), high};
}

int32_t median3(int32_t a, int32_t b, int32_t c) { return lesser(greater(a, b), greater(lesser(a, b), c)); }

// The median of nine from three sorted columns.
uint8_t medianOfColumns(const SortedColumn& l, const SortedColumn& m, const SortedColumn& r) {
  const int32_t minOfHighs = lesser(lesser(l.high, m.high), r.high);
  const int32_t maxOfLows = greater(greater(l.low, m.low), r.low);
  return static_cast<uint8_t>(median3(minOfHighs, maxOfLows, median3(l.mid, m.mid, r.mid)));
}

// out[x] for 1 <= x < width - 1; each column is sorted once.
void medianRow(const uint8_t* above, const uint8_t* row, const uint8_t* below, uint8_t* out, uint32_t width) {
  SortedColumn left = sortColumn(above[0], row[0], below[0]);
  SortedColumn centre = sortColumn(above[1], row[1], below[1]);
  for (uint32_t x = 1; x + 1 < width; ++x) {
    const SortedColumn right = sortColumn(above[x + 1], row[x + 1], below[x + 1]);
    out[x] = medianOfColumns(left, centre, right);
    left = centre;
    centre = right;
  }
}

// Taps outside the image read borderValue (constant) or the nearest edge
// pixel (replicate).
uint8_t borderMedian(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint32_t x,
                     uint32_t y, bool replicate, uint8_t borderValue) {
  uint8_t taps[9];
  int n = 0;
  for (int dy = -1; dy <= 1; ++dy) {
    const int64_t ty = int64_t(y) + dy;
    const int64_t cy = std::min<int64_t>(std::max<int64_t>(ty, 0), height - 1);
    for (int dx = -1; dx <= 1; ++dx) {
      const int64_t tx = int64_t(x) + dx;
      const int64_t cx = std::min<int64_t>(std::max<int64_t>(tx, 0), width - 1);
      const bool inside = cx == tx && cy == ty;
      taps[n++] = inside || replicate ? src[size_t(cy) * srcStride + size_t(cx)] : borderValue;
    }
  }
  std::nth_element(taps, taps + 4, taps + 9);
  return taps[4];
}

void medianBorder(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst,
                  uint32_t dstStride, bool replicate, uint8_t borderValue) {
  const auto filterAt = [&](uint32_t x, uint32_t y) {
    dst[size_t(y) * dstStride + x] = borderMedian(src, width, height, srcStride, x, y, replicate, borderValue);
  };
  for (uint32_t x = 0; x < width; ++x) filterAt(x, 0);
  if (height > 1)
    for (uint32_t x = 0; x < width; ++x) filterAt(x, height - 1);
  for (uint32_t y = 1; y + 1 < height; ++y) {
    filterAt(0, y);
    if (width > 1) filterAt(width - 1, y);
  }
}

}  // namespace

void ovkMedian3x3InteriorC(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst,
                           uint32_t dstStride) {
  if (width < 3) return;
  for (uint32_t y = 1; y + 1 < height; ++y) {
    const uint8_t* row = src + size_t(y) * srcStride;
    medianRow(row - srcStride, row, row + srcStride, dst + size_t(y) * dstStride, width);
  }
}

ovkStatusCode ovkMedian3x3FilterBorderType(ovkMedian3x3InteriorFn interior, const uint8_t* src, uint32_t width,
                                           uint32_t height, uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                           ovkBorderType borderType, uint8_t borderValue) {
  if (borderType > ORVIK_BORDER_REPLICATE) return ORVIK_STATUS_UNSUPPORTED;
  interior(src, width, height, srcStride, dst, dstStride);
  if (borderType != ORVIK_BORDER_UNDEFINED)
    medianBorder(src, width, height, srcStride, dst, dstStride, borderType == ORVIK_BORDER_REPLICATE, borderValue);
  return ORVIK_STATUS_SUCCESS;
}

void ovkFilterMedian3x3u8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                           uint8_t* dst, uint32_t dstStride) {
  ovkMedian3x3InteriorC(src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

ovkStatusCode ovkFilterMedian3x3u8_v3C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                       uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                       ovkBorderType borderType, uint8_t borderValue) {
  return ovkMedian3x3FilterBorderType(ovkMedian3x3InteriorC, src, srcWidth, srcHeight, srcStride, dst, dstStride,
                                      borderType, borderValue);
}
