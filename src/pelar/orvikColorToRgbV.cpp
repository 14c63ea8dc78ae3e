// Vector YCbCr to RGB.  A vector of luma bytes is split into its even and odd
// pixels in 16-bit lanes, so that lane i of both halves meets chroma sample i
// of a subsampled row without any shuffling, and the channels are joined
// back into pixel order by a shift and an or.  The fixed-point sums exceed 16
// bits, so the chroma part is carried exactly as a quotient and a remainder of
// the final shift: with lumaWeight = 2^shift + extra,
//   (lumaWeight L + c) >> shift = L + (c >> shift) + ((extra L + (c & mask)) >> shift).
// Rows shorter than a vector and the odd last column use the portable code.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pelar/orvikColorToRgbV.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
#include <hwy/highway.h>

#include "cpu/orvikColorToRgb.h"
#include "pelar/orvikPelar.h"

HWY_BEFORE_NAMESPACE();
namespace ovk {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET == HWY_SCALAR

// One lane cannot hold a pixel pair; the portable rows are exact and as fast.
struct VectorRows {
  template <const ovkYccArithmetic& A, ovkRgbFormat F, bool kMirror>
  static void Convert(const ovkYccRowJob& job) {
    ovkConvertYccColumnsC<F, kMirror>(A, job, 0, job.width);
  }

  static void ConvertUnit(const ovkBlockUnit& unit, const uint8_t* src, uint32_t columns, uint32_t rows, uint8_t* dst,
                          size_t dstStride) {
    ovkConvertBlockUnitC(unit, src, columns, rows, dst, dstStride);
  }
};

#else

// The chroma part of one channel: the sum's quotient and remainder by 2^shift.
template <class DU>
struct ChromaTerm {
  hn::Vec<hn::RebindToSigned<DU> > quotient;
  hn::Vec<DU> remainder;
};

template <class DU>
struct ChromaTerms {
  ChromaTerm<DU> r, g, b;
};

template <const ovkYccArithmetic& A, class D8>
class Pixels {
 public:
  using DU = hn::RepartitionToWide<D8>;
  using DI = hn::RebindToSigned<DU>;
  using VU = hn::Vec<DU>;
  using VI = hn::Vec<DI>;
  using V8 = hn::Vec<D8>;
  using Term = ChromaTerm<DU>;
  using Terms = ChromaTerms<DU>;

  static constexpr int kShift = A.shift;
  static constexpr int kLumaExtra = A.lumaWeight - (1 << A.shift);
  static_assert(kLumaExtra >= 0 && kLumaExtra * 255 + (1 << kShift) <= 65535, "luma term must fit 16 bits");

  // Chroma samples 0..255 in 16-bit lanes.
  static Terms TermsOf(VU cb, VU cr) {
    const VI u = Centred(cb), v = Centred(cr);
    return {ChannelTerm<A.r.cb, A.r.cr, A.r.offset>(u, v), ChannelTerm<A.g.cb, A.g.cr, A.g.offset>(u, v),
            ChannelTerm<A.b.cb, A.b.cr, A.b.offset>(u, v)};
  }

  static VU EvenBytes(V8 v) { return hn::And(hn::BitCast(DU(), v), hn::Set(DU(), 0xFF)); }
  static VU OddBytes(V8 v) { return hn::ShiftRight<8>(hn::BitCast(DU(), v)); }

  // Lanes(D8) pixels of luma from pixel x of `row`, even pixels with
  // `even`, odd ones with `odd`.
  template <ovkRgbFormat F, bool kMirror>
  static void Write(V8 luma, const Terms& even, const Terms& odd, uint8_t* row, size_t x, uint32_t width) {
    if constexpr (A.lumaFloor != 0) luma = hn::SaturatedSub(luma, hn::Set(D8(), uint8_t(A.lumaFloor)));
    const VU lumaEven = EvenBytes(luma), lumaOdd = OddBytes(luma);
    const VU extraEven = hn::Mul(lumaEven, hn::Set(DU(), uint16_t(kLumaExtra)));
    const VU extraOdd = hn::Mul(lumaOdd, hn::Set(DU(), uint16_t(kLumaExtra)));
    const VU r[2] = {Channel(lumaEven, extraEven, even.r), Channel(lumaOdd, extraOdd, odd.r)};
    const VU g[2] = {Channel(lumaEven, extraEven, even.g), Channel(lumaOdd, extraOdd, odd.g)};
    const VU b[2] = {Channel(lumaEven, extraEven, even.b), Channel(lumaOdd, extraOdd, odd.b)};
    const D8 d8;
    if constexpr (F == ovkRgbFormat::kRgb565) {
      Write565<kMirror>(Rgb565(r[0], g[0], b[0]), Rgb565(r[1], g[1], b[1]), row, x, width);
    } else if constexpr (F == ovkRgbFormat::kRgb888) {
      hn::StoreInterleaved3(Join(r), Join(g), Join(b), d8, row + x * 3);
    } else {
      hn::StoreInterleaved4(Join(r), Join(g), Join(b), hn::Set(d8, 255), d8, row + x * 4);
    }
  }

 private:
  static VI Centred(VU c) {
    const VI s = hn::BitCast(DI(), c);
    const VI scaled = A.chromaScale == 2 ? hn::Add(s, s) : s;
    return hn::Sub(scaled, hn::Set(DI(), int16_t(A.chromaCentre)));
  }

  // Exact weight * x as quotient and remainder: the 32-bit product is
  // high * 2^16 + low.
  template <int32_t kWeight>
  static Term Product(VI x) {
    static_assert(kWeight >= -32768 && kWeight <= 32767, "weight must fit 16 bits");
    const DI di;
    const DU du;
    if constexpr (kWeight == 0) {
      return {hn::Zero(di), hn::Zero(du)};
    } else {
      const VI weight = hn::Set(di, int16_t(kWeight));
      const VU low = hn::BitCast(du, hn::Mul(x, weight));
      const VI high = hn::MulHigh(x, weight);
      return {hn::Add(hn::ShiftLeft<16 - kShift>(high), hn::BitCast(di, hn::ShiftRight<kShift>(low))),
              hn::And(low, hn::Set(du, uint16_t((1 << kShift) - 1)))};
    }
  }

  template <int32_t kConstant>
  static Term Constant() {
    return {hn::Set(DI(), int16_t(kConstant >> kShift)), hn::Set(DU(), uint16_t(kConstant & ((1 << kShift) - 1)))};
  }

  // Remainders stay below 2^shift, so two of them fit 16 bits.
  static Term Sum(const Term& a, const Term& b) {
    const VU remainder = hn::Add(a.remainder, b.remainder);
    return {hn::Add(hn::Add(a.quotient, b.quotient), hn::BitCast(DI(), hn::ShiftRight<kShift>(remainder))),
            hn::And(remainder, hn::Set(DU(), uint16_t((1 << kShift) - 1)))};
  }

  template <int32_t kCb, int32_t kCr, int32_t kOffset>
  static Term ChannelTerm(VI u, VI v) {
    return Sum(Sum(Product<kCb>(u), Product<kCr>(v)), Constant<kOffset>());
  }

  // Clamped to 0..255.
  static VU Channel(VU luma, VU extra, const Term& term) {
    const DI di;
    VI value = hn::Add(hn::BitCast(di, luma), term.quotient);
    if constexpr (kLumaExtra != 0)
      value = hn::Add(value, hn::BitCast(di, hn::ShiftRight<kShift>(hn::Add(extra, term.remainder))));
    return hn::BitCast(DU(), hn::Min(hn::Max(value, hn::Zero(di)), hn::Set(di, 255)));
  }

  static V8 Join(const VU (&evenOdd)[2]) { return hn::BitCast(D8(), hn::Or(evenOdd[0], hn::ShiftLeft<8>(evenOdd[1]))); }

  static VU Rgb565(VU r, VU g, VU b) {
    const DU du;
    return hn::Or(hn::Or(hn::ShiftRight<3>(r), hn::ShiftLeft<3>(hn::And(g, hn::Set(du, 0xFC)))),
                  hn::ShiftLeft<8>(hn::And(b, hn::Set(du, 0xF8))));
  }

  // Mirrored rows are written right to left: the pair of vectors is built in
  // order, then each half reversed into the other's place.
  template <bool kMirror>
  static void Write565(VU even, VU odd, uint8_t* row, size_t x, uint32_t width) {
    const DU du;
    uint16_t* out = reinterpret_cast<uint16_t*>(row);
    if constexpr (!kMirror) {
      hn::StoreInterleaved2(even, odd, du, out + x);
    } else {
      const size_t lanes = hn::Lanes(du);
      HWY_ALIGN uint16_t ordered[2 * hn::MaxLanes(du)];
      hn::StoreInterleaved2(even, odd, du, ordered);
      const size_t end = width - x;
      hn::StoreU(hn::Reverse(du, hn::Load(du, ordered + lanes)), du, out + end - 2 * lanes);
      hn::StoreU(hn::Reverse(du, hn::Load(du, ordered)), du, out + end - lanes);
    }
  }
};

using D8 = hn::ScalableTag<uint8_t>;

// One vector step of a row job at pixel x, which is even for subsampled rows.
template <const ovkYccArithmetic& A, ovkRgbFormat F, bool kMirror>
void ConvertStep(const ovkYccRowJob& job, size_t x) {
  using P = Pixels<A, D8>;
  using DU = typename P::DU;
  const D8 d8;
  const DU du;
  const uint8_t* pairs = std::min(job.cb, job.cr);
  const bool cbFirst = job.cb < job.cr;
  typename P::Terms even, odd;
  if (job.subsampled) {
    const size_t sample = x / 2;
    hn::Vec<DU> cb, cr;
    if (job.chromaStep == 1) {
      const hn::Rebind<uint8_t, DU> dHalf;
      cb = hn::PromoteTo(du, hn::LoadU(dHalf, job.cb + sample));
      cr = hn::PromoteTo(du, hn::LoadU(dHalf, job.cr + sample));
    } else {
      const hn::Vec<D8> both = hn::LoadU(d8, pairs + 2 * sample);
      cb = cbFirst ? P::EvenBytes(both) : P::OddBytes(both);
      cr = cbFirst ? P::OddBytes(both) : P::EvenBytes(both);
    }
    even = odd = P::TermsOf(cb, cr);
  } else {
    hn::Vec<D8> cb, cr;
    if (job.chromaStep == 1) {
      cb = hn::LoadU(d8, job.cb + x);
      cr = hn::LoadU(d8, job.cr + x);
    } else {
      hn::Vec<D8> first, second;
      hn::LoadInterleaved2(d8, pairs + 2 * x, first, second);
      cb = cbFirst ? first : second;
      cr = cbFirst ? second : first;
    }
    even = P::TermsOf(P::EvenBytes(cb), P::EvenBytes(cr));
    odd = P::TermsOf(P::OddBytes(cb), P::OddBytes(cr));
  }
  for (uint32_t r = 0; r < job.rows; ++r)
    P::template Write<F, kMirror>(hn::LoadU(d8, job.y[r] + x), even, odd, job.out[r], x, job.width);
}

struct VectorRows {
  // Vectors cover the paired columns, the last one moved back to end at the
  // last pair; an odd last column of a subsampled row is converted alone.
  template <const ovkYccArithmetic& A, ovkRgbFormat F, bool kMirror>
  static void Convert(const ovkYccRowJob& job) {
    const size_t pixels = hn::Lanes(D8());
    const uint32_t paired = job.subsampled ? job.width & ~1u : job.width;
    if (paired < pixels) return ovkConvertYccColumnsC<F, kMirror>(A, job, 0, job.width);
    for (size_t x = 0; x < paired; x += pixels) ConvertStep<A, F, kMirror>(job, std::min(x, paired - pixels));
    ovkConvertYccColumnsC<F, kMirror>(A, job, paired, job.width);
  }

  // Whole units a unit row at a time; partial ones portably.
  static void ConvertUnit(const ovkBlockUnit& unit, const uint8_t* src, uint32_t columns, uint32_t rows, uint8_t* dst,
                          size_t dstStride) {
    if (columns < unit.width()) return ovkConvertBlockUnitC(unit, src, columns, rows, dst, dstStride);
    for (uint32_t y = 0; y < rows; ++y) {
      const uint8_t* luma = src + (y >> 3) * (unit.width() / 8) * 64 + (y & 7) * 8;
      const uint8_t* cb = src + unit.lumaBytes() + (y >> unit.shiftY) * 8;
      uint8_t* out = dst + y * dstStride;
      if (unit.shiftX)
        ConvertWideUnitRow(luma, cb, out);
      else
        ConvertNarrowUnitRow(luma, cb, out);
    }
  }

 private:
  // 8 pixels, a chroma sample each.
  static void ConvertNarrowUnitRow(const uint8_t* luma, const uint8_t* cb, uint8_t* out) {
    using P = Pixels<kOvkBlockQ15, hn::CappedTag<uint8_t, 8> >;
    const hn::CappedTag<uint8_t, 8> d8;
    const auto cbs = hn::LoadU(d8, cb), crs = hn::LoadU(d8, cb + 64);
    P::Write<ovkRgbFormat::kRgb888, false>(hn::LoadU(d8, luma), P::TermsOf(P::EvenBytes(cbs), P::EvenBytes(crs)),
                                           P::TermsOf(P::OddBytes(cbs), P::OddBytes(crs)), out, 0, 16);
  }

  // 16 pixels from two side-by-side blocks, a chroma sample per pair.
  static void ConvertWideUnitRow(const uint8_t* luma, const uint8_t* cb, uint8_t* out) {
    using D16 = hn::CappedTag<uint8_t, 16>;
    using P = Pixels<kOvkBlockQ15, D16>;
    const D16 d8;
    const hn::Half<D16> dHalf;
    const typename P::DU du;
    const hn::Rebind<uint8_t, typename P::DU> dSamples;
    const auto terms =
        P::TermsOf(hn::PromoteTo(du, hn::LoadU(dSamples, cb)), hn::PromoteTo(du, hn::LoadU(dSamples, cb + 64)));
    const auto pixels = hn::Combine(d8, hn::LoadU(dHalf, luma + 64), hn::LoadU(dHalf, luma));
    P::Write<ovkRgbFormat::kRgb888, false>(pixels, terms, terms, out, 0, 16);
  }
};

#endif  // HWY_TARGET == HWY_SCALAR

using Kernels = ovkYccKernels<VectorRows>;

#define OVK_X(Sampling, Layout, Output, ShiftX, ShiftY) \
  OVK_YCC_FAMILY_KERNEL(Kernels, ColorYCbCr##Sampling##Layout##ToRGB##Output##u8, Layout, Output, ShiftX, ShiftY)
OVK_YCC_FAMILY(OVK_X)
#undef OVK_X

#define OVK_VECTOR_NAME(Group) Group
OVK_YCC_CAMERA_AND_BLOCK_KERNELS(Kernels, OVK_VECTOR_NAME)
#undef OVK_VECTOR_NAME

}  // namespace HWY_NAMESPACE
}  // namespace ovk
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace ovk {
#define OVK_X(Sampling, Layout, Output, ShiftX, ShiftY) HWY_EXPORT(ColorYCbCr##Sampling##Layout##ToRGB##Output##u8);
OVK_YCC_FAMILY(OVK_X)
#undef OVK_X
#define OVK_X(Group) HWY_EXPORT(Group);
OVK_YCC_CAMERA_AND_BLOCK_GROUPS(OVK_X)
#undef OVK_X
}  // namespace ovk

#define OVK_X(Sampling, Layout, Output, ShiftX, ShiftY) \
  OVK_VECTOR_KERNEL(ColorYCbCr##Sampling##Layout##ToRGB##Output##u8)
OVK_YCC_FAMILY(OVK_X)
#undef OVK_X
OVK_YCC_CAMERA_AND_BLOCK_GROUPS(OVK_VECTOR_KERNEL)
#endif
