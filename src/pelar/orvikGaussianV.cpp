// Vector 5x5 and 11x11 Gaussians.  Each interior row is filtered in strips:
// the vertical sums of a strip's columns go to a small buffer that stays in
// L1, and the horizontal pass reads them back at each tap's offset.  The 8-bit
// filters take the side band of each interior row from the same sums and
// filter the top and bottom band rows in vectors; images too small for one
// vector, the band corners and the signed filters' band use the portable code.
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

// The low bytes of 32-bit lanes.  On AVX3_DL, Highway 1.0.3's truncations
// to bytes permute with mismatched indices and pick the wrong bytes;
// U8FromU32 has no such path.
template <class D8, class V32>
HWY_INLINE hn::Vec<D8> LowBytes(D8 d8, V32 v) {
#if HWY_TARGET == HWY_AVX3_DL
  (void)d8;
  return hn::U8FromU32(v);
#else
  return hn::TruncateTo(d8, v);
#endif
}

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

// The taps of a horizontal pass over a buffer: tap k is the vector k lanes
// past the first.  One load per 16-byte block, with the lanes of the next
// block shifted in, replaces an unaligned load per tap, most of which would
// cross a cache line.  Reads up to a block of lanes past the last tap, so
// buffers carry kPadding lanes beyond their data; those lanes are never used.
template <class D, size_t kTaps>
class Taps {
 public:
  using T = hn::TFromD<D>;
  static constexpr size_t kBlockLanes = HWY_MAX(size_t{1}, 16 / sizeof(T));
  static constexpr size_t kPadding = kBlockLanes;

  Taps(D d, const T* first) : d_(d) {
#if HWY_TARGET == HWY_SCALAR
    first_ = first;
#else
    for (size_t b = 0; b < kBlocks; ++b) blocks_[b] = hn::LoadU(d, first + b * kBlockLanes);
#endif
  }

  template <size_t k>
  hn::Vec<D> At() const {
    static_assert(k < kTaps, "tap out of range");
#if HWY_TARGET == HWY_SCALAR
    return hn::LoadU(d_, first_ + k);
#else
    constexpr size_t kBlock = k / kBlockLanes, kShift = k % kBlockLanes;
    if constexpr (kShift == 0)
      return blocks_[kBlock];
    else
      return hn::CombineShiftRightBytes<kShift * sizeof(T)>(d_, blocks_[kBlock + 1], blocks_[kBlock]);
#endif
  }

 private:
  static constexpr size_t kBlocks = (kTaps - 1) / kBlockLanes + 2;
  D d_;
#if HWY_TARGET == HWY_SCALAR
  const T* first_;
#else
  hn::Vec<D> blocks_[kBlocks];
#endif
};

// The first row of the (2 Radius + 1)-tap kernel: a binomial row summing to
// 2^(2 Radius).
template <int Radius>
const int32_t* KernelRow() {
  static_assert(Radius == 2 || Radius == 5, "5x5 or 11x11");
  return Radius == 2 ? knl5x5 : knl11x11;
}

// A band pixel of an interior row: the weighted sum of the full column sums
// in the image over 2^(2 Radius) times their weights.  Column c is at
// sums[c - first].  Flooring the power of two first gives the same quotient.
template <int Radius, class Sum>
uint8_t SideBandPixelu8(const Sum* sums, size_t first, uint32_t width, uint32_t x) {
  const int32_t* row = KernelRow<Radius>();
  const uint32_t from = x < Radius ? 0 : x - Radius, to = HWY_MIN(width - 1, x + Radius);
  uint32_t total = 0, weights = 0;
  for (uint32_t tx = from; tx <= to; ++tx) {
    const uint32_t weight = uint32_t(row[tx + Radius - x]);
    total += weight * sums[tx - first];
    weights += weight;
  }
  return uint8_t((total >> (2 * Radius)) / weights);
}

// The band pixels of an interior row that a strip's column sums cover: the
// first strip starts at column 0, the last ends at width - 1.  Computing them
// here, while the rows are in cache, is what makes the band cheap.
template <int Radius, class Sum>
void StoreSideBandu8(const Sum* sums, size_t begin, size_t count, uint32_t width, uint8_t* row) {
  if (begin == 0)
    for (uint32_t x = 0; x < Radius; ++x) row[x] = SideBandPixelu8<Radius>(sums, 0, width, x);
  if (begin + count + 2 * Radius == width)
    for (uint32_t x = width - Radius; x < width; ++x) row[x] = SideBandPixelu8<Radius>(sums, begin, width, x);
}

using Tag5x5u8 = hn::ScalableTag<uint16_t>;

// 5x5 on 8-bit pixels in 16-bit lanes: a column sum is at most 255 * 16 and
// a full sum 255 * 256, so neither overflows.  The weights 1 4 6 4 1 are
// formed as a + e + 4 (b + c + d) + 2 c.  Rows go in pairs: six source rows
// give the column sums of two output rows.  With `sides`, also the band
// pixels of the interior rows.  Needs width >= lanes + 4.
void Interior5x5u8(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst,
                   uint32_t dstStride, bool sides) {
  const Tag5x5u8 d16;
  const hn::Rebind<uint8_t, decltype(d16)> d8;
  const hn::RebindToSigned<decltype(d16)> di16;
  const size_t lanes = hn::Lanes(d16);
  const auto binomial = [](auto a, auto b, auto c, auto d, auto e) {
    const auto inner = hn::Add(hn::Add(b, d), c);
    return hn::Add(hn::Add(hn::Add(a, e), hn::ShiftLeft<2>(inner)), hn::ShiftLeft<1>(c));
  };
  // Output pixels i .. i+lanes-1 of a strip from its column sums.
  const auto storeRow = [&](const uint16_t* sums, size_t i, uint8_t* out) {
    const Taps<decltype(d16), 5> taps(d16, sums + i);
    const auto sum = binomial(taps.At<0>(), taps.At<1>(), taps.At<2>(), taps.At<3>(), taps.At<4>());
    // At most 255 after the shift, so the signed narrowing is exact.
    hn::StoreU(hn::DemoteTo(d8, hn::BitCast(di16, hn::ShiftRight<8>(sum))), d8, out + i);
  };
  constexpr size_t kSums = kStripOutputs + 4 + Taps<decltype(d16), 5>::kPadding;
  HWY_ALIGN uint16_t upperSums[kSums] = {};
  HWY_ALIGN uint16_t lowerSums[kSums] = {};
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
      if (!sides) return;
      StoreSideBandu8<2>(upperSums, begin, count, width, upperOut - 2);
      if (pair) StoreSideBandu8<2>(lowerSums, begin, count, width, lowerOut - 2);
    });
  }
}

// The kernel row applied to taps tapAt(0 .. 2 Radius) in 32-bit lanes.  The
// row is symmetric, so mirrored taps are added before their one multiply.
template <int Radius, class D, class TapAt>
hn::Vec<D> SymmetricSum(D d, TapAt tapAt) {
  const int32_t* row = KernelRow<Radius>();
  using T = hn::TFromD<D>;
  auto sum = hn::Mul(tapAt(Radius), hn::Set(d, T(row[Radius])));
  for (int tap = 0; tap < Radius; ++tap)
    sum = hn::Add(sum, hn::Mul(hn::Add(tapAt(tap), tapAt(2 * Radius - tap)), hn::Set(d, T(row[tap]))));
  return sum;
}

// Any radius on 8- or 16-bit pixels in 32-bit lanes.
template <class Pixel, int Radius>
void Interior32(const Pixel* src, uint32_t width, uint32_t height, uint32_t srcStride, Pixel* dst, uint32_t dstStride,
                ovkGaussianPassFn<Pixel> portable) {
  const hn::ScalableTag<int32_t> d32;
  const hn::Rebind<Pixel, decltype(d32)> dp;
  const size_t lanes = hn::Lanes(d32);
  if (width < lanes + 2 * Radius) return portable(src, width, height, srcStride, dst, dstStride);
  const auto* srcBytes = reinterpret_cast<const uint8_t*>(src);
  HWY_ALIGN int32_t sums[kStripOutputs + 2 * Radius];
  for (uint32_t y = Radius; y + Radius < height; ++y) {
    const uint8_t* top = srcBytes + size_t(y - Radius) * srcStride;
    Pixel* out = reinterpret_cast<Pixel*>(reinterpret_cast<uint8_t*>(dst) + size_t(y) * dstStride) + Radius;
    forEachStrip(width - 2 * Radius, [&](size_t begin, size_t count) {
      forEachVector(count + 2 * Radius, lanes, [&](size_t i) {
        const size_t x = begin + i;
        hn::StoreU(SymmetricSum<Radius>(d32,
                                        [&](int tap) {
                                          const auto* pixels =
                                              reinterpret_cast<const Pixel*>(top + size_t(tap) * srcStride);
                                          return hn::PromoteTo(d32, hn::LoadU(dp, pixels + x));
                                        }),
                   d32, sums + i);
      });
      forEachVector(count, lanes, [&](size_t i) {
        const auto sum = SymmetricSum<Radius>(d32, [&](int tap) { return hn::LoadU(d32, sums + i + tap); });
        hn::StoreU(hn::DemoteTo(dp, hn::ShiftRight<4 * Radius>(sum)), dp, out + begin + i);
      });
    });
  }
}

// 11x11 on 8-bit pixels.  A column sum reaches 255 * 1024, past 16 bits, but
// with a_k = p_k + p_(10-k) the three parts of
//   V = (a0 + 45 a2) + 2 (5 a1 + 105 a4) + 2 (60 a3 + 126 p5)
// stay below 2^16, so the vertical pass runs in 16-bit lanes and widens once.
// Its 16-bit vectors are half the width of the 32-bit ones, which keeps the
// lane count equal on every target.
// Weights come from the exported table at run time: the compiler expands a
// multiply by a known constant into shifts and adds, which is slower here.
template <class D32>
struct Binomial11x11u8 {
  D32 d32;
  hn::Rebind<uint16_t, D32> d16;
  hn::Rebind<uint8_t, D32> d8;

  using V16 = hn::Vec<hn::Rebind<uint16_t, D32>>;

  hn::Vec<D32> Column(V16 p0, V16 p1, V16 p2, V16 p3, V16 p4, V16 p5, V16 p6, V16 p7, V16 p8, V16 p9, V16 p10) const {
    const auto w = [&](int k, int divisor) { return hn::Set(d16, uint16_t(knl11x11[k] / divisor)); };
    const auto odd = hn::Add(hn::Add(p0, p10), hn::Mul(hn::Add(p2, p8), w(2, 1)));
    const auto outer = hn::Add(hn::Mul(hn::Add(p1, p9), w(1, 2)), hn::Mul(hn::Add(p4, p6), w(4, 2)));
    const auto inner = hn::Add(hn::Mul(hn::Add(p3, p7), w(3, 2)), hn::Mul(p5, w(5, 2)));
    const auto even = hn::Add(hn::PromoteTo(d32, outer), hn::PromoteTo(d32, inner));
    return hn::Add(hn::PromoteTo(d32, odd), hn::ShiftLeft<1>(even));
  }

  using RowTaps = Taps<D32, 11>;

  // The full weighted sum of columns sums[0..10], at most 255 * 2^20.
  hn::Vec<D32> Row(const uint32_t* sums) const {
    const RowTaps t(d32, sums);
    const auto w = [&](int k) { return hn::Set(d32, uint32_t(knl11x11[k])); };
    const auto outer = hn::Add(hn::Add(hn::Add(t.template At<0>(), t.template At<10>()),
                                       hn::Mul(hn::Add(t.template At<1>(), t.template At<9>()), w(1))),
                               hn::Mul(hn::Add(t.template At<2>(), t.template At<8>()), w(2)));
    const auto inner = hn::Add(hn::Add(hn::Mul(hn::Add(t.template At<3>(), t.template At<7>()), w(3)),
                                       hn::Mul(hn::Add(t.template At<4>(), t.template At<6>()), w(4))),
                               hn::Mul(t.template At<5>(), w(5)));
    return hn::Add(outer, inner);
  }

  // Pixels of at most 255 keep their value in the low byte.
  void Store(hn::Vec<D32> pixels, uint8_t* out) const { hn::StoreU(LowBytes(d8, pixels), d8, out); }
};

// The interior, and with `sides` the band pixels of the interior rows, taken
// from the first and last strip's column sums.  Rows go four at a time:
// fourteen source rows give the column sums of four outputs, with each row
// loaded once.  Needs width >= lanes + 10.
void Interior11x11u8(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst,
                     uint32_t dstStride, bool sides) {
  constexpr uint32_t kRowsPerPass = 4;
  const Binomial11x11u8<hn::ScalableTag<uint32_t>> k;
  const size_t lanes = hn::Lanes(k.d32);
  constexpr size_t kSums = kStripOutputs + 10 + decltype(k)::RowTaps::kPadding;
  HWY_ALIGN uint32_t sums[kRowsPerPass][kSums] = {};
  for (uint32_t y = 5; y + 5 < height; y += kRowsPerPass) {
    const uint32_t rows = HWY_MIN(kRowsPerPass, height - 5 - y);
    const uint8_t* r0 = src + size_t(y - 5) * srcStride;
    forEachStrip(width - 10, [&](size_t begin, size_t count) {
      forEachVector(count + 10, lanes, [&](size_t i) {
        const size_t x = begin + i;
        const auto p = [&](uint32_t row) {
          return hn::PromoteTo(k.d16, hn::LoadU(k.d8, r0 + row * size_t(srcStride) + x));
        };
        auto p0 = p(0), p1 = p(1), p2 = p(2), p3 = p(3), p4 = p(4), p5 = p(5), p6 = p(6), p7 = p(7), p8 = p(8),
             p9 = p(9), p10 = p(10);
        hn::StoreU(k.Column(p0, p1, p2, p3, p4, p5, p6, p7, p8, p9, p10), k.d32, sums[0] + i);
        for (uint32_t r = 1; r < rows; ++r) {
          p0 = p1, p1 = p2, p2 = p3, p3 = p4, p4 = p5, p5 = p6, p6 = p7, p7 = p8, p8 = p9, p9 = p10, p10 = p(10 + r);
          hn::StoreU(k.Column(p0, p1, p2, p3, p4, p5, p6, p7, p8, p9, p10), k.d32, sums[r] + i);
        }
      });
      for (uint32_t r = 0; r < rows; ++r) {
        uint8_t* out = dst + size_t(y + r) * dstStride;
        forEachVector(count, lanes,
                      [&](size_t i) { k.Store(hn::ShiftRight<20>(k.Row(sums[r] + i)), out + 5 + begin + i); });
        if (sides) StoreSideBandu8<5>(sums[r], begin, count, width, out);
      }
    });
  }
}

// Row y of the top or bottom band, columns Radius .. width-Radius-1: the
// rows in the image are summed in full width, so the pixel is the total over
// 2^(2 Radius) times the in-image row weights, floored; flooring the power of
// two first gives the same quotient.  A float quotient is off by at most one
// and is then corrected in integers.
template <int Radius>
void BandRowu8(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint32_t y, uint8_t* out) {
  const hn::ScalableTag<uint32_t> d32;
  const hn::Rebind<uint8_t, decltype(d32)> d8;
  const hn::RebindToSigned<decltype(d32)> di;
  const hn::Rebind<float, decltype(d32)> df;
  const size_t lanes = hn::Lanes(d32);
  const int32_t* row = KernelRow<Radius>();
  const uint32_t firstRow = y < Radius ? 0 : y - Radius;
  const uint32_t lastRow = HWY_MIN(height - 1, y + Radius);
  int32_t rowWeights = 0;
  for (uint32_t ty = firstRow; ty <= lastRow; ++ty) rowWeights += row[ty + Radius - y];
  const auto divisor = hn::Set(di, rowWeights);
  HWY_ALIGN uint32_t sums[kStripOutputs + 2 * Radius];
  forEachStrip(width - 2 * Radius, [&](size_t begin, size_t count) {
    forEachVector(count + 2 * Radius, lanes, [&](size_t i) {
      auto sum = hn::Zero(d32);
      for (uint32_t ty = firstRow; ty <= lastRow; ++ty) {
        const auto pixels = hn::PromoteTo(d32, hn::LoadU(d8, src + ty * size_t(srcStride) + begin + i));
        sum = hn::Add(sum, hn::Mul(pixels, hn::Set(d32, uint32_t(row[ty + Radius - y]))));
      }
      hn::StoreU(sum, d32, sums + i);
    });
    forEachVector(count, lanes, [&](size_t i) {
      const auto total = SymmetricSum<Radius>(d32, [&](int tap) { return hn::LoadU(d32, sums + i + tap); });
      const auto dividend = hn::BitCast(di, hn::ShiftRight<2 * Radius>(total));
      auto quotient = hn::ConvertTo(di, hn::Div(hn::ConvertTo(df, dividend), hn::ConvertTo(df, divisor)));
      const auto remainder = hn::Sub(dividend, hn::Mul(quotient, divisor));
      quotient = hn::IfThenElse(hn::Lt(remainder, hn::Zero(di)), hn::Sub(quotient, hn::Set(di, 1)), quotient);
      quotient = hn::IfThenElse(hn::Lt(remainder, divisor), quotient, hn::Add(quotient, hn::Set(di, 1)));
      hn::StoreU(LowBytes(d8, hn::BitCast(d32, quotient)), d8, out + Radius + begin + i);
    });
  });
}

// The top and bottom rows of the band: vectors between the corners, the
// corners by the portable rule.  Needs height >= 2 Radius + 1 and width >=
// 32-bit lanes + 2 Radius.
template <int Radius>
void TopBottomBandu8(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst,
                     uint32_t dstStride) {
  const auto bandRow = [&](uint32_t y) {
    uint8_t* out = dst + size_t(y) * dstStride;
    BandRowu8<Radius>(src, width, height, srcStride, y, out);
    ovkGaussianBandRunC<uint8_t, Radius>(src, width, height, srcStride, y, 0, Radius, out);
    ovkGaussianBandRunC<uint8_t, Radius>(src, width, height, srcStride, y, width - Radius, width, out);
  };
  for (uint32_t y = 0; y < Radius; ++y) bandRow(y);
  for (uint32_t y = height - Radius; y < height; ++y) bandRow(y);
}

void Interior5x5s16(const int16_t* src, uint32_t width, uint32_t height, uint32_t srcStride, int16_t* dst,
                    uint32_t dstStride) {
  Interior32<int16_t, 2>(src, width, height, srcStride, dst, dstStride, ovkGaussianInteriorC<int16_t, 2>);
}

// 5x5 on 32-bit pixels in 64-bit lanes: a full sum is at most 2^31 * 256,
// and the arithmetic shift floors negative sums as the portable code does.
// The weights 1 4 6 4 1 are formed with shifts, as 64-bit lanes have no
// multiply on every target.
void Interior5x5s32(const int32_t* src, uint32_t width, uint32_t height, uint32_t srcStride, int32_t* dst,
                    uint32_t dstStride) {
  const hn::ScalableTag<int64_t> d64;
  const hn::Rebind<int32_t, decltype(d64)> d32;
  const hn::RebindToUnsigned<decltype(d64)> du64;
  const hn::RebindToUnsigned<decltype(d32)> du32;
  const size_t lanes = hn::Lanes(d64);
  if (width < lanes + 4) return ovkGaussianInteriorC<int32_t, 2>(src, width, height, srcStride, dst, dstStride);
  const auto binomial = [](auto a, auto b, auto c, auto d, auto e) {
    const auto inner = hn::Add(hn::Add(b, d), c);
    return hn::Add(hn::Add(hn::Add(a, e), hn::ShiftLeft<2>(inner)), hn::ShiftLeft<1>(c));
  };
  const auto* srcBytes = reinterpret_cast<const uint8_t*>(src);
  HWY_ALIGN int64_t sums[kStripOutputs + 4];
  for (uint32_t y = 2; y + 2 < height; ++y) {
    const uint8_t* top = srcBytes + size_t(y - 2) * srcStride;
    int32_t* out = reinterpret_cast<int32_t*>(reinterpret_cast<uint8_t*>(dst) + size_t(y) * dstStride) + 2;
    forEachStrip(width - 4, [&](size_t begin, size_t count) {
      forEachVector(count + 4, lanes, [&](size_t i) {
        const auto p = [&](int row) {
          const auto* pixels = reinterpret_cast<const int32_t*>(top + size_t(row) * srcStride);
          return hn::PromoteTo(d64, hn::LoadU(d32, pixels + begin + i));
        };
        hn::StoreU(binomial(p(0), p(1), p(2), p(3), p(4)), d64, sums + i);
      });
      forEachVector(count, lanes, [&](size_t i) {
        const int64_t* s = sums + i;
        const auto total = binomial(hn::LoadU(d64, s), hn::LoadU(d64, s + 1), hn::LoadU(d64, s + 2),
                                    hn::LoadU(d64, s + 3), hn::LoadU(d64, s + 4));
        // A weighted mean of 32-bit pixels fits 32 bits: the low half is it.
        const auto mean = hn::TruncateTo(du32, hn::BitCast(du64, hn::ShiftRight<8>(total)));
        hn::StoreU(hn::BitCast(d32, mean), d32, out + begin + i);
      });
    });
  }
}

// Images narrower than a vector plus the halo, or without an interior row,
// go to the portable filter.
void FilterGaussian5x5u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                         uint32_t dstStride, int32_t blurBorder) {
  if (srcWidth < hn::Lanes(Tag5x5u8()) + 4 || srcHeight < 5)
    return ovkFilterGaussian5x5u8C(src, srcWidth, srcHeight, srcStride, dst, dstStride, blurBorder);
  Interior5x5u8(src, srcWidth, srcHeight, srcStride, dst, dstStride, blurBorder == 1);
  if (blurBorder == 1) TopBottomBandu8<2>(src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

void FilterGaussian11x11u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                           uint32_t dstStride, int32_t blurBorder) {
  if (srcWidth < hn::Lanes(hn::ScalableTag<uint32_t>()) + 10 || srcHeight < 11)
    return ovkFilterGaussian11x11u8C(src, srcWidth, srcHeight, srcStride, dst, dstStride, blurBorder);
  Interior11x11u8(src, srcWidth, srcHeight, srcStride, dst, dstStride, blurBorder == 1);
  if (blurBorder == 1) TopBottomBandu8<5>(src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

void FilterGaussian5x5s16(const int16_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, int16_t* dst,
                          uint32_t dstStride, int32_t blurBorder) {
  ovkGaussianFilter<int16_t>(Interior5x5s16, ovkGaussianBlurBandC<int16_t, 2>, src, srcWidth, srcHeight, srcStride, dst,
                             dstStride, blurBorder);
}

void FilterGaussian5x5s32(const int32_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, int32_t* dst,
                          uint32_t dstStride, int32_t blurBorder) {
  ovkGaussianFilter<int32_t>(Interior5x5s32, ovkGaussianBlurBandC<int32_t, 2>, src, srcWidth, srcHeight, srcStride, dst,
                             dstStride, blurBorder);
}

}  // namespace HWY_NAMESPACE
}  // namespace ovk
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
OVK_VECTOR_KERNEL(FilterGaussian5x5u8)
OVK_VECTOR_KERNEL(FilterGaussian11x11u8)
OVK_VECTOR_KERNEL(FilterGaussian5x5s16)
OVK_VECTOR_KERNEL(FilterGaussian5x5s32)
#endif
