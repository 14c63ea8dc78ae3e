// Vector smoothing filters.  Interior rows run in vectors of 16-bit sums; a
// row too short for one vector, and the border pixels, use the portable code.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pelar/orvikBlurV.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
#include <hwy/highway.h>

#include "cpu/orvikBlur.h"
#include "cpu/orvikInternal.h"

HWY_BEFORE_NAMESPACE();
namespace ovk {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// out[x] for 1 <= x < width - 1.  The last vector is shifted back to end at
// the last interior pixel, so nothing outside the rows is read or written.
void GaussianRow(const uint8_t* HWY_RESTRICT above, const uint8_t* HWY_RESTRICT row,
                 const uint8_t* HWY_RESTRICT below, uint8_t* HWY_RESTRICT out, uint32_t width) {
  const hn::ScalableTag<uint16_t> d16;
  const hn::Rebind<uint8_t, decltype(d16)> d8;
  const hn::RebindToSigned<decltype(d16)> di16;
  const size_t lanes = hn::Lanes(d16);
  if (width < lanes + 2) return ovkGaussian3x3RowC(above, row, below, out, width);

  const auto column = [&](size_t x) {  // above + 2 * row + below at x..x+lanes
    const auto outer = hn::Add(hn::PromoteTo(d16, hn::LoadU(d8, above + x)),
                               hn::PromoteTo(d16, hn::LoadU(d8, below + x)));
    return hn::Add(outer, hn::ShiftLeft<1>(hn::PromoteTo(d16, hn::LoadU(d8, row + x))));
  };
  const auto filter = [&](size_t x) {
    const auto sum = hn::Add(hn::Add(column(x - 1), column(x + 1)), hn::ShiftLeft<1>(column(x)));
    // At most 255 after the shift, so the signed narrowing is exact.
    hn::StoreU(hn::DemoteTo(d8, hn::BitCast(di16, hn::ShiftRight<4>(sum))), d8, out + x);
  };
  const size_t end = width - 1;
  size_t x = 1;
  for (; x + lanes <= end; x += lanes) filter(x);
  if (x < end) filter(end - lanes);
}

void GaussianInterior(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst,
                      uint32_t dstStride) {
  for (uint32_t y = 1; y + 1 < height; ++y) {
    const uint8_t* row = src + size_t(y) * srcStride;
    GaussianRow(row - srcStride, row, row + srcStride, dst + size_t(y) * dstStride, width);
  }
}

void FilterGaussian3x3u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                         uint8_t* dst, uint32_t dstStride, int32_t blurBorder) {
  GaussianInterior(src, srcWidth, srcHeight, srcStride, dst, dstStride);
  if (blurBorder == 1) ovkGaussian3x3BlurBorderC(src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

ovkStatusCode FilterGaussian3x3u8_v3(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                     uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                     ovkBorderType borderType, uint8_t borderValue) {
  if (borderType > ORVIK_BORDER_REPLICATE) return ORVIK_STATUS_UNSUPPORTED;
  GaussianInterior(src, srcWidth, srcHeight, srcStride, dst, dstStride);
  if (borderType != ORVIK_BORDER_UNDEFINED)
    ovkGaussian3x3BorderTypeC(src, srcWidth, srcHeight, srcStride, dst, dstStride, borderType, borderValue);
  return ORVIK_STATUS_SUCCESS;
}

}  // namespace HWY_NAMESPACE
}  // namespace ovk
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace ovk {
HWY_EXPORT(FilterGaussian3x3u8);
HWY_EXPORT(FilterGaussian3x3u8_v3);
}  // namespace ovk

ovkFilterGaussian3x3u8Fn ovkVectorFilterGaussian3x3u8() { return &HWY_DYNAMIC_DISPATCH(ovk::FilterGaussian3x3u8); }
ovkFilterGaussian3x3u8_v3Fn ovkVectorFilterGaussian3x3u8_v3() {
  return &HWY_DYNAMIC_DISPATCH(ovk::FilterGaussian3x3u8_v3);
}
#endif
