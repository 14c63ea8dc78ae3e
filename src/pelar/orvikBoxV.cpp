// Vector box filters: the strip frame of the portable code with vector row
// operations.  16-bit column sums hold up to 121 x 255; the mean is the high
// half of the 32-bit product plus the rounding bit from its low half.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pelar/orvikBoxV.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
#include <hwy/highway.h>

#include "cpu/orvikBox.h"
#include "pelar/orvikPelar.h"

HWY_BEFORE_NAMESPACE();
namespace ovk {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

using D16 = hn::ScalableTag<uint16_t>;
using D8 = hn::Rebind<uint8_t, D16>;

// Whole vectors only; the few sums past them are updated by the portable code,
// since a shifted-back vector would add its overlap twice.
void BoxAddRow(uint16_t* sums, const uint8_t* row, uint32_t count) {
  const D16 d16;
  const D8 d8;
  const size_t lanes = hn::Lanes(d16);
  size_t i = 0;
  for (; i + lanes <= count; i += lanes)
    hn::StoreU(hn::Add(hn::LoadU(d16, sums + i), hn::PromoteTo(d16, hn::LoadU(d8, row + i))), d16, sums + i);
  ovkBoxRowOpsC.addRow(sums + i, row + i, uint32_t(count - i));
}

void BoxSlideRow(uint16_t* sums, const uint8_t* entering, const uint8_t* leaving, uint32_t count) {
  const D16 d16;
  const D8 d8;
  const size_t lanes = hn::Lanes(d16);
  size_t i = 0;
  for (; i + lanes <= count; i += lanes) {
    const auto grown = hn::Add(hn::LoadU(d16, sums + i), hn::PromoteTo(d16, hn::LoadU(d8, entering + i)));
    hn::StoreU(hn::Sub(grown, hn::PromoteTo(d16, hn::LoadU(d8, leaving + i))), d16, sums + i);
  }
  ovkBoxRowOpsC.slideRow(sums + i, entering + i, leaving + i, uint32_t(count - i));
}

// (s * m + 32768) >> 16 == high half of s * m, plus one when the low half has
// its top bit set.
template <size_t kTaps>
void BoxMeanRowTaps(const uint16_t* sums, uint32_t multiplier, uint8_t* out, uint32_t count) {
  const D16 d16;
  const D8 d8;
  const hn::RebindToSigned<D16> di16;
  const size_t lanes = hn::Lanes(d16);
  if (count < lanes) return ovkBoxRowOpsC.meanRow(sums, kTaps, multiplier, out, count);
  const auto m = hn::Set(d16, uint16_t(multiplier));
  const auto meanAt = [&](size_t i) {
    auto window = hn::LoadU(d16, sums + i);
    for (size_t k = 1; k < kTaps; ++k) window = hn::Add(window, hn::LoadU(d16, sums + i + k));
    const auto mean = hn::Add(hn::MulHigh(window, m), hn::ShiftRight<15>(hn::Mul(window, m)));
    hn::StoreU(hn::DemoteTo(d8, hn::BitCast(di16, mean)), d8, out + i);
  };
  size_t i = 0;
  for (; i + lanes <= count; i += lanes) meanAt(i);
  if (i < count) meanAt(count - lanes);  // ends at the last pixel; recomputes some
}

void BoxMeanRow(const uint16_t* sums, uint32_t taps, uint32_t multiplier, uint8_t* out, uint32_t count) {
  switch (taps) {
    case 3: return BoxMeanRowTaps<3>(sums, multiplier, out, count);
    case 5: return BoxMeanRowTaps<5>(sums, multiplier, out, count);
    case 11: return BoxMeanRowTaps<11>(sums, multiplier, out, count);
    default: return ovkBoxRowOpsC.meanRow(sums, taps, multiplier, out, count);
  }
}

const ovkBoxRowOps kBoxRowOps = {BoxAddRow, BoxSlideRow, BoxMeanRow};

ovkStatusCode BoxFilter3x3u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                uint8_t* dst, uint32_t dstStride, ovkBorderType borderType, uint8_t borderValue) {
  return ovkBox3x3Filter(kBoxRowOps, src, srcWidth, srcHeight, srcStride, dst, dstStride, borderType, borderValue);
}

void BoxFilter3x3u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                    uint32_t dstStride) {
  ovkBox3x3Filter(kBoxRowOps, src, srcWidth, srcHeight, srcStride, dst, dstStride, ORVIK_BORDER_UNDEFINED, 0);
}

void BoxFilter5x5u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                    uint32_t dstStride) {
  ovkBoxZeroBorderFilter(kBoxRowOps, 2, OVK_BOX_MUL_5X5, src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

void BoxFilter11x11u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                      uint32_t dstStride) {
  ovkBoxZeroBorderFilter(kBoxRowOps, 5, OVK_BOX_MUL_11X11, src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

}  // namespace HWY_NAMESPACE
}  // namespace ovk
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
OVK_VECTOR_KERNEL(BoxFilter3x3u8)
OVK_VECTOR_KERNEL(BoxFilter3x3u8_v2)
OVK_VECTOR_KERNEL(BoxFilter5x5u8)
OVK_VECTOR_KERNEL(BoxFilter11x11u8)
#endif
