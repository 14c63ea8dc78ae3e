// Vector 3x3 median: each vector loads its nine shifted neighbours, sorts the
// three columns with min/max and takes the median of the sorted columns.
// Border pixels of `_v3` use the portable code.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pelar/orvikMedianV.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
#include <hwy/highway.h>

#include "cpu/orvikMedian.h"
#include "pelar/orvikPelar.h"

HWY_BEFORE_NAMESPACE();
namespace ovk {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

using D8 = hn::ScalableTag<uint8_t>;
using V8 = hn::Vec<D8>;

struct SortedColumns {
  V8 low, mid, high;
};

HWY_INLINE SortedColumns SortColumns(V8 a, V8 b, V8 c) {
  const V8 lowAB = hn::Min(a, b), highAB = hn::Max(a, b);
  const V8 lowBC = hn::Min(highAB, c);
  return {hn::Min(lowAB, lowBC), hn::Max(lowAB, lowBC), hn::Max(highAB, c)};
}

HWY_INLINE V8 Median3(V8 a, V8 b, V8 c) { return hn::Min(hn::Max(a, b), hn::Max(hn::Min(a, b), c)); }

// Medians of `lanes` pixels from column x of the middle row.
HWY_INLINE V8 MedianAt(const uint8_t* above, const uint8_t* row, const uint8_t* below, size_t x) {
  const D8 d;
  const SortedColumns l = SortColumns(hn::LoadU(d, above + x - 1), hn::LoadU(d, row + x - 1), hn::LoadU(d, below + x - 1));
  const SortedColumns m = SortColumns(hn::LoadU(d, above + x), hn::LoadU(d, row + x), hn::LoadU(d, below + x));
  const SortedColumns r = SortColumns(hn::LoadU(d, above + x + 1), hn::LoadU(d, row + x + 1), hn::LoadU(d, below + x + 1));
  const V8 minOfHighs = hn::Min(hn::Min(l.high, m.high), r.high);
  const V8 maxOfLows = hn::Max(hn::Max(l.low, m.low), r.low);
  return Median3(minOfHighs, maxOfLows, Median3(l.mid, m.mid, r.mid));
}

// The last vector of a row is shifted back to end at the last interior pixel,
// so nothing outside the rows is read or written.
void MedianInterior(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst,
                    uint32_t dstStride) {
  const D8 d;
  const size_t lanes = hn::Lanes(d);
  if (width < lanes + 2) return ovkMedian3x3InteriorC(src, width, height, srcStride, dst, dstStride);
  for (uint32_t y = 1; y + 1 < height; ++y) {
    const uint8_t* row = src + size_t(y) * srcStride;
    const uint8_t *above = row - srcStride, *below = row + srcStride;
    uint8_t* out = dst + size_t(y) * dstStride;
    size_t x = 1;
    for (; x + lanes <= width - 1; x += lanes) hn::StoreU(MedianAt(above, row, below, x), d, out + x);
    if (x < width - 1) {
      const size_t last = width - 1 - lanes;
      hn::StoreU(MedianAt(above, row, below, last), d, out + last);
    }
  }
}

void FilterMedian3x3u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                       uint32_t dstStride) {
  MedianInterior(src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

ovkStatusCode FilterMedian3x3u8_v3(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                   uint8_t* dst, uint32_t dstStride, ovkBorderType borderType,
                                   uint8_t borderValue) {
  return ovkMedian3x3FilterBorderType(MedianInterior, src, srcWidth, srcHeight, srcStride, dst, dstStride,
                                      borderType, borderValue);
}

}  // namespace HWY_NAMESPACE
}  // namespace ovk
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
OVK_VECTOR_KERNEL(FilterMedian3x3u8)
OVK_VECTOR_KERNEL(FilterMedian3x3u8_v3)
#endif
