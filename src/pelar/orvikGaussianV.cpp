// Vector 5x5 and 11x11 Gaussians.  Each interior row is filtered in strips:
// the vertical sums of a strip's columns go to a small buffer that stays in
// L1, and the horizontal pass reads them back at each tap's offset.  Rows too
// short for one vector, and the edge band, use the portable code.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pelar/orvikGaussianV.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
#include <hwy/highway.h>

#include "cpu/orvikGaussian.h"
#include "pelar/orvikPelar.h"

HWY_BEFORE_NAMESPACE();
namespace ovk {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Outputs per strip; with the halo its sums fit a few KiB of stack.
constexpr size_t kStripOutputs = 512;

// Splits `count` outputs into strips of near-equal length, so that no strip
// is shorter than a vector when the row is not.
template <class Visit>
void forEachStrip(size_t count, Visit visit) {
  const size_t strips = (count + kStripOutputs - 1) / kStripOutputs;
  const size_t length = (count + strips - 1) / strips;
  for (size_t begin = 0; begin < count; begin += length) visit(begin, HWY_MIN(length, count - begin));
}

// Vector starts covering [0, count) for count >= lanes; the last vector is
// moved back to end at count, so nothing beyond it is touched.
template <class At>
void forEachVector(size_t count, size_t lanes, At at) {
  size_t i = 0;
  for (; i + lanes <= count; i += lanes) at(i);
  if (i < count) at(count - lanes);
}

// 5x5 on 8-bit pixels in 16-bit lanes: a column sum is at most 255 * 16 and
// a full sum 255 * 256, so neither overflows.  The weights 1 4 6 4 1 are
// formed as a + e + 4 (b + c + d) + 2 c.  Rows go in pairs: six source rows
// give the column sums of two output rows.
void Interior5x5u8(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst,
                   uint32_t dstStride) {
  const hn::ScalableTag<uint16_t> d16;
  const hn::Rebind<uint8_t, decltype(d16)> d8;
  const hn::RebindToSigned<decltype(d16)> di16;
  const size_t lanes = hn::Lanes(d16);
  if (width < lanes + 4) return ovkGaussian5x5u8InteriorC(src, width, height, srcStride, dst, dstStride);
  const auto binomial = [](auto a, auto b, auto c, auto d, auto e) {
    const auto inner = hn::Add(hn::Add(b, d), c);
    return hn::Add(hn::Add(hn::Add(a, e), hn::ShiftLeft<2>(inner)), hn::ShiftLeft<1>(c));
  };
  // Output pixels i .. i+lanes-1 of a strip from its column sums.
  const auto storeRow = [&](const uint16_t* sums, size_t i, uint8_t* out) {
    const uint16_t* s = sums + i;
    const auto sum = binomial(hn::LoadU(d16, s), hn::LoadU(d16, s + 1), hn::LoadU(d16, s + 2),
                              hn::LoadU(d16, s + 3), hn::LoadU(d16, s + 4));
    // At most 255 after the shift, so the signed narrowing is exact.
    hn::StoreU(hn::DemoteTo(d8, hn::BitCast(di16, hn::ShiftRight<8>(sum))), d8, out + i);
  };
  HWY_ALIGN uint16_t upperSums[kStripOutputs + 4];
  HWY_ALIGN uint16_t lowerSums[kStripOutputs + 4];
  uint32_t y = 2;
  for (; y + 2 < height; y += 2) {
    const bool pair = y + 3 < height;
    const uint8_t* r0 = src + size_t(y - 2) * srcStride;
    const uint8_t *r1 = r0 + srcStride, *r2 = r1 + srcStride, *r3 = r2 + srcStride, *r4 = r3 + srcStride;
    const uint8_t* r5 = pair ? r4 + srcStride : r4;  // unread without a second row
    uint8_t* upperOut = dst + size_t(y) * dstStride + 2;
    uint8_t* lowerOut = upperOut + dstStride;
    forEachStrip(width - 4, [&](size_t begin, size_t count) {
      forEachVector(count + 4, lanes, [&](size_t i) {
        const size_t x = begin + i;
        const auto load = [&](const uint8_t* row) { return hn::PromoteTo(d16, hn::LoadU(d8, row + x)); };
        const auto p1 = load(r1), p2 = load(r2), p3 = load(r3), p4 = load(r4);
        hn::StoreU(binomial(load(r0), p1, p2, p3, p4), d16, upperSums + i);
        if (pair) hn::StoreU(binomial(p1, p2, p3, p4, load(r5)), d16, lowerSums + i);
      });
      forEachVector(count, lanes, [&](size_t i) {
        storeRow(upperSums, i, upperOut + begin);
        if (pair) storeRow(lowerSums, i, lowerOut + begin);
      });
    });
  }
}

// Any radius on 8- or 16-bit pixels in 32-bit lanes.  The kernel row is
// symmetric, so mirrored taps are added before their one multiply.
template <class Pixel, int Radius>
void Interior32(const Pixel* src, uint32_t width, uint32_t height, uint32_t srcStride, Pixel* dst,
                uint32_t dstStride, ovkGaussianPassFn<Pixel> portable) {
  constexpr int kTaps = 2 * Radius + 1;
  const hn::ScalableTag<int32_t> d32;
  const hn::Rebind<Pixel, decltype(d32)> dp;
  const size_t lanes = hn::Lanes(d32);
  if (width < lanes + 2 * Radius) return portable(src, width, height, srcStride, dst, dstStride);
  const int32_t* row = Radius == 2 ? knl5x5 : knl11x11;  // first row of the kernel
  const auto weighted = [&](auto tapAt) {
    auto sum = hn::Mul(tapAt(Radius), hn::Set(d32, row[Radius]));
    for (int tap = 0; tap < Radius; ++tap)
      sum = hn::Add(sum, hn::Mul(hn::Add(tapAt(tap), tapAt(kTaps - 1 - tap)), hn::Set(d32, row[tap])));
    return sum;
  };
  const auto* srcBytes = reinterpret_cast<const uint8_t*>(src);
  HWY_ALIGN int32_t sums[kStripOutputs + 2 * Radius];
  for (uint32_t y = Radius; y + Radius < height; ++y) {
    const uint8_t* top = srcBytes + size_t(y - Radius) * srcStride;
    Pixel* out = reinterpret_cast<Pixel*>(reinterpret_cast<uint8_t*>(dst) + size_t(y) * dstStride) + Radius;
    forEachStrip(width - 2 * Radius, [&](size_t begin, size_t count) {
      forEachVector(count + 2 * Radius, lanes, [&](size_t i) {
        const size_t x = begin + i;
        hn::StoreU(weighted([&](int tap) {
                     const auto* pixels = reinterpret_cast<const Pixel*>(top + size_t(tap) * srcStride);
                     return hn::PromoteTo(d32, hn::LoadU(dp, pixels + x));
                   }),
                   d32, sums + i);
      });
      forEachVector(count, lanes, [&](size_t i) {
        const auto sum = weighted([&](int tap) { return hn::LoadU(d32, sums + i + tap); });
        hn::StoreU(hn::DemoteTo(dp, hn::ShiftRight<4 * Radius>(sum)), dp, out + begin + i);
      });
    });
  }
}

void Interior11x11u8(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst,
                     uint32_t dstStride) {
  Interior32<uint8_t, 5>(src, width, height, srcStride, dst, dstStride, ovkGaussian11x11u8InteriorC);
}

void Interior5x5s16(const int16_t* src, uint32_t width, uint32_t height, uint32_t srcStride, int16_t* dst,
                    uint32_t dstStride) {
  Interior32<int16_t, 2>(src, width, height, srcStride, dst, dstStride, ovkGaussian5x5s16InteriorC);
}

void FilterGaussian5x5u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                         uint8_t* dst, uint32_t dstStride, int32_t blurBorder) {
  ovkGaussianFilter<uint8_t>(Interior5x5u8, ovkGaussian5x5u8BlurBandC, src, srcWidth, srcHeight, srcStride, dst,
                             dstStride, blurBorder);
}

void FilterGaussian11x11u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                           uint8_t* dst, uint32_t dstStride, int32_t blurBorder) {
  ovkGaussianFilter<uint8_t>(Interior11x11u8, ovkGaussian11x11u8BlurBandC, src, srcWidth, srcHeight, srcStride,
                             dst, dstStride, blurBorder);
}

void FilterGaussian5x5s16(const int16_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                          int16_t* dst, uint32_t dstStride, int32_t blurBorder) {
  ovkGaussianFilter<int16_t>(Interior5x5s16, ovkGaussian5x5s16BlurBandC, src, srcWidth, srcHeight, srcStride, dst,
                             dstStride, blurBorder);
}

}  // namespace HWY_NAMESPACE
}  // namespace ovk
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace ovk {
HWY_EXPORT(FilterGaussian5x5u8);
HWY_EXPORT(FilterGaussian11x11u8);
HWY_EXPORT(FilterGaussian5x5s16);
}  // namespace ovk

OVK_VECTOR_KERNEL(FilterGaussian5x5u8)
OVK_VECTOR_KERNEL(FilterGaussian11x11u8)
OVK_VECTOR_KERNEL(FilterGaussian5x5s16)
#endif
