// Vector YCbCr to RGB.  A vector of luma bytes is split into its even and odd
// pixels in 16-bit lanes, so that lane i of both halves meets chroma sample i
// of a subsampled row without any shuffling; each channel ends in the high
// byte of its lanes, and one blend of the two halves puts the bytes back in
// pixel order (one permute of both, with VBMI).  The fixed-point sums exceed 16 bits; with
// lumaWeight = M 2^a (M odd, or a = shift) and p = shift - a,
//   (lumaWeight L + c) >> shift = (M L + (c >> a)) >> p,
// since lumaWeight L is a multiple of 2^a.  c >> a is carried as a pair
// (add, subtract) whose difference it is, both below 2^16, so that
//   ((M L +sat add) -sat subtract) >> p
// is already clamped at 0, and saturating doubling clamps it at 255 with the
// byte in place (p = 7).  RGBA is stored by zips inside 16-byte blocks.
// Rows shorter than a vector and the odd last column use the portable code.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pelar/orvikColorToRgbV.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
#include <hwy/highway.h>

#include "cpu/orvikColorToRgb.h"
#include "pelar/orvikBytes3-inl.h"
#include "pelar/orvikLoopConstant-inl.h"
#include "pelar/orvikPelar.h"

HWY_BEFORE_NAMESPACE();
namespace ovk {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET == HWY_SCALAR

// One lane cannot hold a pixel pair; the portable rows are exact and as fast.
using VectorRows = ovkPortableYccRows;

#else

// The chroma part of one channel in the saturating form above.
template <class DU>
struct ChromaTerm {
  hn::Vec<DU> add, subtract;
};

template <class DU>
struct ChromaTerms {
  ChromaTerm<DU> r, g, b;
};

constexpr bool Same(const ovkChromaWeights& a, const ovkChromaWeights& b) {
  return a.cb == b.cb && a.cr == b.cr && a.offset == b.offset;
}

constexpr bool Same(const ovkYccArithmetic& a, const ovkYccArithmetic& b) {
  return a.shift == b.shift && a.lumaWeight == b.lumaWeight && a.lumaFloor == b.lumaFloor &&
         a.chromaScale == b.chromaScale && a.chromaCentre == b.chromaCentre && Same(a.r, b.r) && Same(a.g, b.g) &&
         Same(a.b, b.b);
}

constexpr int TrailingZeros(int32_t v, int limit) {
  return limit == 0 || (v & 1) ? 0 : 1 + TrailingZeros(v >> 1, limit - 1);
}

// Joins a channel's even and odd pixels, each in the high byte of its 16-bit
// lanes, into bytes in pixel order.
template <class D8>
struct PixelOrder {
  template <class VU>
  HWY_INLINE static hn::Vec<D8> Join(VU even, VU odd) {
    return hn::OddEven(hn::BitCast(D8(), odd), hn::BitCast(D8(), hn::ShiftRight<8>(even)));
  }
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
  static constexpr int kA = TrailingZeros(A.lumaWeight, A.shift);
  static constexpr int kP = kShift - kA;
  static constexpr int kM = A.lumaWeight >> kA;
  // M L + (r >> a) must not saturate, and |q| << p must fit 16 bits (|q| of
  // these conversions stays below 300).
  static_assert(kM * 255 + (1 << kP) <= 65535 && (300 << kP) <= 65535, "saturating form must be exact");

  // Chroma samples 0..255 in 16-bit lanes.
  HWY_INLINE static Terms TermsOf(VU cb, VU cr) {
    if constexpr (Same(A, kOvkVideoRangeQ10)) return VideoRangeQ10TermsOf(cb, cr);
    const VI u = Centred(cb), v = Centred(cr);
    return {ChannelTerm<A.r.cb, A.r.cr, A.r.offset>(u, v), ChannelTerm<A.g.cb, A.g.cr, A.g.offset>(u, v),
            ChannelTerm<A.b.cb, A.b.cr, A.b.offset>(u, v)};
  }

  HWY_INLINE static VU EvenBytes(V8 v) { return hn::And(hn::BitCast(DU(), v), LoopConstant(DU(), 0xFF)); }
  HWY_INLINE static VU OddBytes(V8 v) { return hn::ShiftRight<8>(hn::BitCast(DU(), v)); }

  // The three channels of Lanes(D8) pixels in pixel order, even pixels with
  // `even`, odd ones with `odd`.
  struct Channels {
    V8 r, g, b;
  };
  HWY_INLINE static Channels Convert(V8 luma, const Terms& even, const Terms& odd) {
    return ConvertPrepared(luma, Prepare(even, odd), PixelOrder<D8>());
  }

  // With a luma weight of one the channel is clamp(Y + (c >> shift)), which
  // bytes add and subtract with saturation once c >> shift is split into its
  // positive and negative part (each clamped to 255): the bytes of a step
  // are prepared once for all its rows.
  static constexpr bool kBytewise = kM == 1 && kP == 0 && A.lumaFloor == 0;
  struct ChannelBytes {
    V8 add, subtract;
  };
  struct PreparedBytes {
    ChannelBytes r, g, b;
  };
  // Other weights need the terms themselves, which the step keeps.
  struct PreparedTerms {
    const Terms& even;
    const Terms& odd;
  };

  HWY_INLINE static auto Prepare(const Terms& even, const Terms& odd) {
    if constexpr (kBytewise) {
      return PreparedBytes{BytesOf(even.r, odd.r), BytesOf(even.g, odd.g), BytesOf(even.b, odd.b)};
    } else {
      return PreparedTerms{even, odd};
    }
  }

  // Bytewise channels come in the order of the luma bytes; joined ones in
  // the order `order` joins them.
  template <class Order>
  HWY_INLINE static Channels ConvertPrepared(V8 luma, const PreparedBytes& p, const Order&) {
    return {hn::SaturatedSub(hn::SaturatedAdd(luma, p.r.add), p.r.subtract),
            hn::SaturatedSub(hn::SaturatedAdd(luma, p.g.add), p.g.subtract),
            hn::SaturatedSub(hn::SaturatedAdd(luma, p.b.add), p.b.subtract)};
  }

  template <class Order>
  HWY_INLINE static Channels ConvertPrepared(V8 luma, const PreparedTerms& p, const Order& order) {
    VU lumaEven, lumaOdd;
    WeightedLuma(luma, lumaEven, lumaOdd);
    return {order.Join(Channel(lumaEven, p.even.r), Channel(lumaOdd, p.odd.r)),
            order.Join(Channel(lumaEven, p.even.g), Channel(lumaOdd, p.odd.g)),
            order.Join(Channel(lumaEven, p.even.b), Channel(lumaOdd, p.odd.b))};
  }

  // RGB565 words of the even and the odd pixels.
  HWY_INLINE static void Convert565(V8 luma, const Terms& even, const Terms& odd, VU& evenWords, VU& oddWords) {
    VU lumaEven, lumaOdd;
    WeightedLuma(luma, lumaEven, lumaOdd);
    evenWords = Rgb565(Channel(lumaEven, even.r), Channel(lumaEven, even.g), Channel(lumaEven, even.b));
    oddWords = Rgb565(Channel(lumaOdd, odd.r), Channel(lumaOdd, odd.g), Channel(lumaOdd, odd.b));
  }

 private:
  HWY_INLINE static VI Centred(VU c) {
    const VI s = hn::BitCast(DI(), c);
    const VI scaled = A.chromaScale == 2 ? hn::Add(s, s) : s;
    return hn::Sub(scaled, LoopConstant(DI(), int16_t(A.chromaCentre)));
  }

  struct Exact {
    VI quotient;
    VU remainder;
  };

  // Exact weight * x as quotient and remainder by 2^shift: the 32-bit
  // product is high * 2^16 + low.
  template <int32_t kWeight>
  HWY_INLINE static Exact Product(VI x) {
    static_assert(kWeight >= -32768 && kWeight <= 32767, "weight must fit 16 bits");
    const DI di;
    const DU du;
    if constexpr (kWeight == 0) {
      return {hn::Zero(di), hn::Zero(du)};
    } else {
      const VI weight = LoopConstant(di, int16_t(kWeight));
      const VU low = hn::BitCast(du, hn::Mul(x, weight));
      const VI high = hn::MulHigh(x, weight);
      return {hn::Add(hn::ShiftLeft<16 - kShift>(high), hn::BitCast(di, hn::ShiftRight<kShift>(low))),
              hn::And(low, LoopConstant(du, uint16_t((1 << kShift) - 1)))};
    }
  }

  template <int32_t kConstant>
  HWY_INLINE static Exact Constant() {
    return {LoopConstant(DI(), int16_t(kConstant >> kShift)),
            LoopConstant(DU(), uint16_t(kConstant & ((1 << kShift) - 1)))};
  }

  // Remainders stay below 2^shift, so two of them fit 16 bits.
  HWY_INLINE static Exact Sum(const Exact& a, const Exact& b) {
    const VU remainder = hn::Add(a.remainder, b.remainder);
    return {hn::Add(hn::Add(a.quotient, b.quotient), hn::BitCast(DI(), hn::ShiftRight<kShift>(remainder))),
            hn::And(remainder, LoopConstant(DU(), uint16_t((1 << kShift) - 1)))};
  }

  // c >> a as the pair (add, subtract): the quotient q = c >> shift and
  // the remainder r give c >> a = (q << p) + (r >> a).  Weights of zero cost
  // nothing.
  template <int32_t kCb, int32_t kCr, int32_t kOffset>
  HWY_INLINE static Term ChannelTerm(VI u, VI v) {
    static_assert(kCb != 0 || kCr != 0, "a channel without chroma");
    Exact sum = kCb == 0 ? Product<kCr>(v) : kCr == 0 ? Product<kCb>(u) : Sum(Product<kCb>(u), Product<kCr>(v));
    if constexpr (kOffset != 0) sum = Sum(sum, Constant<kOffset>());
    const DI di;
    const VU positive = hn::BitCast(DU(), hn::Max(sum.quotient, hn::Zero(di)));
    const VU negative = hn::BitCast(DU(), hn::Max(hn::Neg(sum.quotient), hn::Zero(di)));
    return {hn::Add(hn::ShiftRight<kA>(sum.remainder), hn::ShiftLeft<kP>(positive)), hn::ShiftLeft<kP>(negative)};
  }

  // c >> a, known modulo 2^16, and all ones where it is negative.
  HWY_INLINE static Term Split(VU scaled, VU negative) {
    return {hn::AndNot(negative, scaled), hn::And(negative, hn::Sub(hn::Zero(DU()), scaled))};
  }

  // The camera RGBA conversion, which sets the pace, takes a shortcut:
  // c >> 3 minus a bias of at most 2^15 comes straight from 16-bit high
  // products, so that saturation at the top still clamps to 255.  R is
  // (k Cr >> 3) - 16 k, with k Cr >> 3 the high half of (Cr << 8)(k << 5).
  // G is (k (256 - Cr) >> 3) + (k' / 8)(256 - Cb) - 16 (k + k') for its
  // weights -k of v and -k' of u, k' a multiple of 8; the product by k' / 8
  // is the high half of ((256 - Cb) << 7)((k' / 8) << 9).  B, with a bias too
  // large, is split by the sign of u: k u >> 3 = (k / 8) u + (2 u >> 3) with
  // k % 8 = 2, and 2 u >> 3 = u >> 2.
  HWY_INLINE static Terms VideoRangeQ10TermsOf(VU cb, VU cr) {
    static_assert(kA == 3 && A.chromaScale == 1 && A.chromaCentre == 128, "shift and chroma as assumed");
    static_assert(A.r.cb == 0 && A.r.offset == 0 && A.r.cr > 0 && (A.r.cr << 5) <= 65535, "R as assumed");
    static_assert(A.g.offset == 0 && A.g.cr < 0 && (-A.g.cr << 6) <= 65535 && A.g.cb < 0 && A.g.cb % 8 == 0 &&
                      (-A.g.cb / 8 << 9) <= 65535 && 16 * -(A.g.cr + A.g.cb) <= 32768,
                  "G as assumed");
    static_assert(A.b.cr == 0 && A.b.offset == 0 && A.b.cb > 0 && A.b.cb % 8 == 2, "B as assumed");
    const DU du;
    const DI di;
    const VU full = LoopConstant(du, 256);
    const Term r = {hn::MulHigh(hn::ShiftLeft<8>(cr), LoopConstant(du, uint16_t(A.r.cr << 5))),
                    LoopConstant(du, uint16_t(16 * A.r.cr))};
    const VU gFromCr = hn::MulHigh(hn::ShiftLeft<7>(hn::Sub(full, cr)), LoopConstant(du, uint16_t(-A.g.cr << 6)));
    const VU gFromCb = hn::MulHigh(hn::ShiftLeft<7>(hn::Sub(full, cb)), LoopConstant(du, uint16_t(-A.g.cb / 8 << 9)));
    const Term g = {hn::Add(gFromCr, gFromCb), LoopConstant(du, uint16_t(16 * -(A.g.cr + A.g.cb)))};
    const VI u = hn::Sub(hn::BitCast(di, cb), LoopConstant(di, 128));
    const VI scaled = hn::Add(hn::Mul(u, LoopConstant(di, int16_t(A.b.cb / 8))), hn::ShiftRight<2>(u));
    return {r, g, Split(hn::BitCast(du, scaled), hn::BitCast(du, hn::ShiftRight<15>(u)))};
  }

  // M L of the even and the odd pixels.
  HWY_INLINE static void WeightedLuma(V8 luma, VU& even, VU& odd) {
    if constexpr (A.lumaFloor != 0) luma = hn::SaturatedSub(luma, LoopConstant(D8(), uint8_t(A.lumaFloor)));
    even = EvenBytes(luma);
    odd = OddBytes(luma);
    if constexpr (kM != 1) {
      even = hn::Mul(even, LoopConstant(DU(), uint16_t(kM)));
      odd = hn::Mul(odd, LoopConstant(DU(), uint16_t(kM)));
    }
  }

  // The channel clamped to 0..255, in the high byte of each lane (the low
  // byte is not used).  With p = 7 saturating doubling clamps and shifts.
  HWY_INLINE static VU Channel(VU weightedLuma, const Term& term) {
    const VU sum = hn::SaturatedSub(hn::SaturatedAdd(weightedLuma, term.add), term.subtract);
    if constexpr (kP == 7) return hn::SaturatedAdd(sum, sum);
    return hn::ShiftLeft<8>(hn::Min(hn::ShiftRight<kP>(sum), LoopConstant(DU(), 255)));
  }

  // The positive and the negative part of add - subtract, each at most
  // 255, as bytes in pixel order.
  HWY_INLINE static ChannelBytes BytesOf(const Term& even, const Term& odd) {
    const VU most = LoopConstant(DU(), 255);
    const auto inPixelOrder = [](VU evenPart, VU oddPart) {
      return hn::BitCast(D8(), hn::Or(evenPart, hn::ShiftLeft<8>(oddPart)));
    };
    return {inPixelOrder(hn::Min(hn::SaturatedSub(even.add, even.subtract), most),
                         hn::Min(hn::SaturatedSub(odd.add, odd.subtract), most)),
            inPixelOrder(hn::Min(hn::SaturatedSub(even.subtract, even.add), most),
                         hn::Min(hn::SaturatedSub(odd.subtract, odd.add), most))};
  }

  HWY_INLINE static VU Rgb565(VU r, VU g, VU b) {
    const DU du;
    return hn::Or(hn::Or(hn::ShiftRight<11>(r), hn::And(hn::ShiftRight<5>(g), LoopConstant(du, 0x07E0))),
                  hn::And(b, LoopConstant(du, 0xF800)));
  }
};

// Mirrored rows are written right to left: the pair of vectors is built in
// order, then each half reversed into the other's place.
template <bool kMirror, class DU>
HWY_INLINE void Store565(DU du, hn::Vec<DU> even, hn::Vec<DU> odd, uint8_t* row, size_t x, uint32_t width) {
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

using D8 = hn::ScalableTag<uint8_t>;
using D32 = hn::Repartition<uint32_t, D8>;

// RGBA is stored with byte and word zips inside each 16-byte block, which
// leaves 4-pixel group k of block b of the zipped vectors for memory group
// (k * blocks + b).  Loading pixel groups in that order spares the shuffles
// across blocks.  Where the channels are joined from even and odd pixels on
// a target that permutes bytes across two vectors (VBMI), the join puts the
// pixels in that order instead, and the loads keep memory order.
constexpr size_t kVectorBytes = hn::MaxLanes(D8());

// Group k * blocks + b of 4 pixels, at group lane 4 b + k.
constexpr size_t StoredGroup(size_t lane) { return (lane & 3) * (kVectorBytes / 16) + (lane >> 2); }

template <class T, size_t kLanes>
struct LaneTable {
  alignas(64) T lanes[kLanes];
};

template <class T, size_t kLanes, class Lane>
constexpr LaneTable<T, kLanes> MakeLaneTable(Lane lane) {
  LaneTable<T, kLanes> table{};
  for (size_t i = 0; i < kLanes; ++i) table.lanes[i] = T(lane(i));
  return table;
}

#if HWY_TARGET == HWY_AVX3_DL
constexpr bool kJoinPermutes = true;

// Byte i of a join takes even pixel n from byte n + 1 of the even lanes and
// odd pixel n from byte n of the odd lanes, which the permute numbers after
// the even ones.
constexpr uint8_t JoinIndex(size_t pixel) { return uint8_t(pixel % 2 ? kVectorBytes + pixel : pixel + 1); }
constexpr auto kJoinInPixelOrder = MakeLaneTable<uint8_t, kVectorBytes>(JoinIndex);
constexpr auto kJoinInBlockOrder =
    MakeLaneTable<uint8_t, kVectorBytes>([](size_t i) { return JoinIndex(StoredGroup(i / 4) * 4 + i % 4); });
#else
constexpr bool kJoinPermutes = false;
#endif
constexpr auto kStoredGroups = MakeLaneTable<uint32_t, kVectorBytes / 4>(StoredGroup);

// `kBlocks`: the rows are RGBA, stored in block order; `kJoined`: the
// arithmetic joins even and odd pixels.
template <bool kBlocks, bool kJoined>
class StoreOrder {
 public:
  static constexpr bool kReorderLoads = kBlocks && kVectorBytes > 16 && !(kJoinPermutes && kJoined);

  StoreOrder()
      : groups_(hn::IndicesFromVec(D32(), hn::Load(D32(), kStoredGroups.lanes)))
#if HWY_TARGET == HWY_AVX3_DL
        ,
        join_(hn::Load(D8(), kBlocks ? kJoinInBlockOrder.lanes : kJoinInPixelOrder.lanes))
#endif
  {
  }

  // Loaded luma or chroma in the order the store wants.
  template <class V>
  V Apply(V v) const {
    if constexpr (kReorderLoads) {
      return hn::BitCast(hn::DFromV<V>(), hn::TableLookupLanes(hn::BitCast(D32(), v), groups_));
    } else {
      return v;
    }
  }

  template <class VU>
  HWY_INLINE hn::Vec<D8> Join(VU even, VU odd) const {
#if HWY_TARGET == HWY_AVX3_DL
    const D8 d8;
    return hn::Vec<D8>{_mm512_permutex2var_epi8(hn::BitCast(d8, even).raw, join_.raw, hn::BitCast(d8, odd).raw)};
#else
    return PixelOrder<D8>::Join(even, odd);
#endif
  }

 private:
  decltype(hn::IndicesFromVec(D32(), hn::Zero(D32()))) groups_;
#if HWY_TARGET == HWY_AVX3_DL
  hn::Vec<D8> join_;  // byte indices of the permute
#endif
};

HWY_INLINE void StoreRgbaInBlockOrder(hn::Vec<D8> r, hn::Vec<D8> g, hn::Vec<D8> b, uint8_t* out) {
  const D8 d8;
  const hn::RepartitionToWide<D8> d16;
  const D32 d32;
  const auto rgLow = hn::ZipLower(d16, r, g), rgHigh = hn::ZipUpper(d16, r, g);
  const auto baLow = hn::ZipLower(d16, b, LoopConstant(d8, 255)), baHigh = hn::ZipUpper(d16, b, LoopConstant(d8, 255));
  const size_t bytes = hn::Lanes(d8);
  hn::StoreU(hn::BitCast(d8, hn::ZipLower(d32, rgLow, baLow)), d8, out);
  hn::StoreU(hn::BitCast(d8, hn::ZipUpper(d32, rgLow, baLow)), d8, out + bytes);
  hn::StoreU(hn::BitCast(d8, hn::ZipLower(d32, rgHigh, baHigh)), d8, out + 2 * bytes);
  hn::StoreU(hn::BitCast(d8, hn::ZipUpper(d32, rgHigh, baHigh)), d8, out + 3 * bytes);
}

// The chroma terms of one step of a subsampled row, shared by the even and
// the odd pixels.
template <class P, class Order>
HWY_INLINE typename P::Terms SubsampledTerms(const ovkYccRowJob& job, size_t x, const Order& order) {
  using DU = typename P::DU;
  const DU du;
  const size_t sample = x / 2;
  if (job.chromaStep == 1) {
    const hn::Rebind<uint8_t, DU> dHalf;
    return P::TermsOf(order.Apply(hn::PromoteTo(du, hn::LoadU(dHalf, job.cb + sample))),
                      order.Apply(hn::PromoteTo(du, hn::LoadU(dHalf, job.cr + sample))));
  }
  const hn::Vec<D8> pairs = order.Apply(hn::LoadU(D8(), std::min(job.cb, job.cr) + 2 * sample));
  return job.cb < job.cr ? P::TermsOf(P::EvenBytes(pairs), P::OddBytes(pairs))
                         : P::TermsOf(P::OddBytes(pairs), P::EvenBytes(pairs));
}

template <class P>
struct PixelTerms {
  typename P::Terms even, odd;
};

// The chroma terms of the even and the odd pixels of one step of a row with
// a sample per pixel.
template <class P, class Order>
HWY_INLINE PixelTerms<P> FullTerms(const ovkYccRowJob& job, size_t x, const Order& order) {
  const D8 d8;
  hn::Vec<D8> cb, cr;
  if (job.chromaStep == 1) {
    cb = hn::LoadU(d8, job.cb + x);
    cr = hn::LoadU(d8, job.cr + x);
  } else {
    hn::Vec<D8> first, second;
    hn::LoadInterleaved2(d8, std::min(job.cb, job.cr) + 2 * x, first, second);
    cb = job.cb < job.cr ? first : second;
    cr = job.cb < job.cr ? second : first;
  }
  cb = order.Apply(cb);
  cr = order.Apply(cr);
  return {P::TermsOf(P::EvenBytes(cb), P::EvenBytes(cr)), P::TermsOf(P::OddBytes(cb), P::OddBytes(cr))};
}

// Converts the job's rows at pixel x with the terms of their even and odd pixels.
template <const ovkYccArithmetic& A, ovkRgbFormat F, bool kMirror, class Order, class Terms>
HWY_INLINE void ConvertRows(const ovkYccRowJob& job, size_t x, const Order& order, const Terms& even,
                            const Terms& odd) {
  using P = Pixels<A, D8>;
  const D8 d8;
  const auto prepared = P::Prepare(even, odd);
  for (uint32_t r = 0; r < job.rows; ++r) {
    const hn::Vec<D8> luma = order.Apply(hn::LoadU(d8, job.y[r] + x));
    if constexpr (F == ovkRgbFormat::kRgb565) {
      typename P::VU evenWords, oddWords;
      P::Convert565(luma, even, odd, evenWords, oddWords);
      Store565<kMirror>(typename P::DU(), evenWords, oddWords, job.out[r], x, job.width);
    } else if constexpr (F == ovkRgbFormat::kRgb888) {
      const typename P::Channels c = P::ConvertPrepared(luma, prepared, order);
      StoreInterleavedBytes3(c.r, c.g, c.b, d8, job.out[r] + x * 3);
    } else {
      const typename P::Channels c = P::ConvertPrepared(luma, prepared, order);
      StoreRgbaInBlockOrder(c.r, c.g, c.b, job.out[r] + x * 4);
    }
  }
}

// One vector step of a row job at pixel x, which is even for subsampled rows.
template <const ovkYccArithmetic& A, ovkRgbFormat F, bool kMirror, class Order>
HWY_INLINE void ConvertStep(const ovkYccRowJob& job, size_t x, const Order& order) {
  using P = Pixels<A, D8>;
  if (job.subsampled) {
    const typename P::Terms terms = SubsampledTerms<P>(job, x, order);
    ConvertRows<A, F, kMirror>(job, x, order, terms, terms);
  } else {
    const PixelTerms<P> terms = FullTerms<P>(job, x, order);
    ConvertRows<A, F, kMirror>(job, x, order, terms.even, terms.odd);
  }
}

struct VectorRows {
  // Vectors cover the paired columns, the last one moved back to end at the
  // last pair; an odd last column of a subsampled row is converted alone.
  template <const ovkYccArithmetic& A, ovkRgbFormat F, bool kMirror>
  static void Convert(const ovkYccRowJob& job) {
    const size_t pixels = hn::Lanes(D8());
    const uint32_t paired = job.subsampled ? job.width & ~1u : job.width;
    if (paired < pixels) return ovkConvertYccColumnsC<F, kMirror>(A, job, 0, job.width);
    const StoreOrder<F == ovkRgbFormat::kRgbA8888, !Pixels<A, D8>::kBytewise> order;
    for (size_t x = 0; x < paired; x += pixels) ConvertStep<A, F, kMirror>(job, std::min(x, paired - pixels), order);
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
  HWY_INLINE static void ConvertNarrowUnitRow(const uint8_t* luma, const uint8_t* cb, uint8_t* out) {
    using P = Pixels<kOvkBlockQ15, hn::CappedTag<uint8_t, 8> >;
    const hn::CappedTag<uint8_t, 8> d8;
    const auto cbs = hn::LoadU(d8, cb), crs = hn::LoadU(d8, cb + 64);
    const P::Channels c = P::Convert(hn::LoadU(d8, luma), P::TermsOf(P::EvenBytes(cbs), P::EvenBytes(crs)),
                                     P::TermsOf(P::OddBytes(cbs), P::OddBytes(crs)));
    hn::StoreInterleaved3(c.r, c.g, c.b, d8, out);
  }

  // 16 pixels from two side-by-side blocks, a chroma sample per pair.
  HWY_INLINE static void ConvertWideUnitRow(const uint8_t* luma, const uint8_t* cb, uint8_t* out) {
    using D16 = hn::CappedTag<uint8_t, 16>;
    using P = Pixels<kOvkBlockQ15, D16>;
    const D16 d8;
    const hn::Half<D16> dHalf;
    const typename P::DU du;
    const hn::Rebind<uint8_t, typename P::DU> dSamples;
    const auto terms =
        P::TermsOf(hn::PromoteTo(du, hn::LoadU(dSamples, cb)), hn::PromoteTo(du, hn::LoadU(dSamples, cb + 64)));
    const auto pixels = hn::Combine(d8, hn::LoadU(dHalf, luma + 64), hn::LoadU(dHalf, luma));
    const typename P::Channels c = P::Convert(pixels, terms, terms);
    hn::StoreInterleaved3(c.r, c.g, c.b, d8, out);
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
#define OVK_X(Sampling, Layout, Output, ShiftX, ShiftY) \
  OVK_VECTOR_KERNEL(ColorYCbCr##Sampling##Layout##ToRGB##Output##u8)
OVK_YCC_FAMILY(OVK_X)
#undef OVK_X
OVK_YCC_CAMERA_AND_BLOCK_GROUPS(OVK_VECTOR_KERNEL)
#endif
