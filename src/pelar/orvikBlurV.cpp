// Vector smoothing filters.  Interior rows run in vectors of 16-bit sums; a
// row too short for one vector, and the border pixels, use the portable code.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pelar/orvikBlurV.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
#include <hwy/highway.h>

#include "cpu/orvikBlur.h"
#include "pelar/orvikPelar.h"

HWY_BEFORE_NAMESPACE();
namespace ovk {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Interior rows in pairs: four source rows give two output rows, so each
// source row's horizontal sum serves two outputs.  The last vector of a row
// is shifted back to end at the last interior pixel, so nothing outside the
// rows is read or written.
void GaussianInterior(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst,
                      uint32_t dstStride) {
  const hn::ScalableTag<uint16_t> d16;
  const hn::Rebind<uint8_t, decltype(d16)> d8;
  const hn::RebindToSigned<decltype(d16)> di16;
  const size_t lanes = hn::Lanes(d16);
  if (width < lanes + 2) return ovkGaussian3x3InteriorC(src, width, height, srcStride, dst, dstStride);

  // p[x-1] + 2 p[x] + p[x+1] for `lanes` pixels from x.
  const auto horizontal = [&](const uint8_t* p, size_t x) {
    const auto outer = hn::Add(hn::PromoteTo(d16, hn::LoadU(d8, p + x - 1)), hn::PromoteTo(d16, hn::LoadU(d8, p + x + 1)));
    return hn::Add(outer, hn::ShiftLeft<1>(hn::PromoteTo(d16, hn::LoadU(d8, p + x))));
  };
  // At most 255 after the shift, so the signed narrowing is exact.
  const auto store = [&](decltype(hn::Zero(d16)) above, decltype(hn::Zero(d16)) row,
                         decltype(hn::Zero(d16)) below, uint8_t* out) {
    const auto sum = hn::Add(hn::Add(above, below), hn::ShiftLeft<1>(row));
    hn::StoreU(hn::DemoteTo(d8, hn::BitCast(di16, hn::ShiftRight<4>(sum))), d8, out);
  };
  const size_t last = width - 1 - lanes;  // start of the final, shifted vector
  const auto forEachVector = [&](auto filterAt) {
    size_t x = 1;
    for (; x + lanes <= width - 1; x += lanes) filterAt(x);
    if (x < width - 1) filterAt(last);
  };

  uint32_t y = 1;
  for (; y + 2 < height; y += 2) {
    const uint8_t* r0 = src + size_t(y - 1) * srcStride;
    const uint8_t *r1 = r0 + srcStride, *r2 = r1 + srcStride, *r3 = r2 + srcStride;
    uint8_t* out0 = dst + size_t(y) * dstStride;
    uint8_t* out1 = out0 + dstStride;
    forEachVector([&](size_t x) {
      const auto h1 = horizontal(r1, x), h2 = horizontal(r2, x);
      store(horizontal(r0, x), h1, h2, out0 + x);
      store(h1, h2, horizontal(r3, x), out1 + x);
    });
  }
  if (y + 1 < height) {
    const uint8_t* r0 = src + size_t(y - 1) * srcStride;
    uint8_t* out = dst + size_t(y) * dstStride;
    forEachVector([&](size_t x) {
      store(horizontal(r0, x), horizontal(r0 + srcStride, x), horizontal(r0 + 2 * size_t(srcStride), x), out + x);
    });
  }
}

void FilterGaussian3x3u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                         uint8_t* dst, uint32_t dstStride, int32_t blurBorder) {
  ovkGaussian3x3Filter(GaussianInterior, src, srcWidth, srcHeight, srcStride, dst, dstStride, blurBorder);
}

ovkStatusCode FilterGaussian3x3u8_v3(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                     uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                     ovkBorderType borderType, uint8_t borderValue) {
  return ovkGaussian3x3FilterBorderType(GaussianInterior, src, srcWidth, srcHeight, srcStride, dst, dstStride,
                                        borderType, borderValue);
}

}  // namespace HWY_NAMESPACE
}  // namespace ovk
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
OVK_VECTOR_KERNEL(FilterGaussian3x3u8)
OVK_VECTOR_KERNEL(FilterGaussian3x3u8_v3)
#endif
